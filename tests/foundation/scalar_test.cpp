// Scalar utilities: hypotenuse, sorts, angle reductions and the small predicates.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::numeric_limits<double>::quiet_NaN();
// A scaled hypotenuse against std::hypot: a square root and a few products of order 1.
constexpr double kHypot = 4 * test::kUlp;

TEST(Pythag, IsExactOnTriplesAndNeitherOverflowsNorUnderflowsWhereTheSquaresWould) {
    EXPECT_EQ(NuPythag(0.0, 0.0), 0.0);
    EXPECT_EQ(NuPythag(3.0, -4.0), 5.0);
    EXPECT_EQ(NuPythag(-4.0, 3.0, 0.0), 5.0);
    EXPECT_EQ(NuPythag(1.0, 2.0, -2.0), 3.0);
    EXPECT_EQ(NuPythag(2.0, -2.0, 1.0), 3.0);
    test::Random rng;
    for (int k = 0; k < 200; ++k) {
        const double a = rng.Uniform(-1, 1), b = rng.Uniform(-1, 1), c = rng.Uniform(-1, 1);
        const double d2 = std::hypot(a, b), d3 = std::hypot(d2, c);
        for (double s : {1e-200, 1.0, 1e200}) {
            EXPECT_NEAR(NuPythag(a * s, b * s) / s, d2, kHypot * d2) << a << ", " << b << " by " << s;
            EXPECT_NEAR(NuPythag(a * s, b * s, c * s) / s, d3, kHypot * d3) << "scale " << s;
        }
    }
    test::ScopedTolerance zero(NuGetZero, NuSetZero, 1.0);
    EXPECT_EQ(NuPythag(0.5, -0.9), 0.0) << "magnitudes below the zero tolerance";
    EXPECT_EQ(NuPythag(0.5, -0.9, 0.99), 0.0);
    EXPECT_EQ(NuPythag(1.0, 0.0), 1.0) << "not strictly below";
}

TEST(Sort, AllThreeFormsAgreeWithAStableSortOnRandomKeysWithTies) {
    test::Random rng;
    for (int n : {0, 1, 2, 3, 17, 200}) {
        std::vector<double> keys(static_cast<std::size_t>(n));
        for (double& d : keys)
            d = rng.Integer(0, 9);  // many ties
        std::vector<int> expected(keys.size());
        std::iota(expected.begin(), expected.end(), 0);
        std::stable_sort(expected.begin(), expected.end(),
                         [&](int i, int j) { return keys[i] < keys[j]; });
        const std::vector<double> original = keys;
        std::vector<int> index(keys.size(), -1);
        NuSort(n, keys.data(), index.data());
        EXPECT_EQ(index, expected) << "index form, n = " << n;
        EXPECT_EQ(keys, original) << "the index form leaves the keys";
        std::vector<double> companion(keys.size());
        std::iota(companion.begin(), companion.end(), 0.0);
        NuSort(n, keys.data(), companion.data());
        EXPECT_EQ(companion, std::vector<double>(expected.begin(), expected.end())) << "n = " << n;
        std::vector<double> sorted = original;
        NuSort(n, sorted.data());
        EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
        EXPECT_EQ(sorted, keys);
    }
    double ad[2] = {2.0, 1.0};
    NuSort(-1, ad);
    NuSort(-1, ad, ad + 1);
    EXPECT_EQ(std::vector<double>(ad, ad + 2), (std::vector<double>{2.0, 1.0})) << "size -1";
}

TEST(AngleReductions, ReduceIntoTheHalfOpenRangeStepByStepAndSnapTheEdgesToZero) {
    const double dBelow360 = std::nextafter(360.0, 0.0);
    const double cases[][2] = {{-1e-301, 0.0},  {720.0, 0.0},      {360.0, 0.0},
                               {-360.0, 0.0},   {0.0, 0.0},        {-90.0, 270.0},
                               {359.5, 359.5},  {1000.25, 280.25}, {dBelow360, dBelow360}};
    for (const auto& c : cases)
        EXPECT_EQ(NuAngleIn360Degree(c[0]), c[1]) << "degrees " << c[0];
    // Three subtractions of 2 pi, each rounded: not the exact remainder.
    EXPECT_EQ(NuAngleIn2Pi(20.0), ((20.0 - Nu_2PI) - Nu_2PI) - Nu_2PI);
    EXPECT_EQ(NuAngleIn2Pi(-Nu_PI), -Nu_PI + Nu_2PI);
    EXPECT_EQ(NuAngleIn2Pi(Nu_2PI), 0.0);
    EXPECT_EQ(NuAngleIn2Pi(-1e-301), 0.0);
    test::Random rng;
    for (double d : {rng.Uniform(-50, 50), rng.Uniform(-50, 50), 3e20, -1e300, 1e300}) {
        const double r = NuAngleIn2Pi(d), g = NuAngleIn360Degree(d);
        EXPECT_TRUE(r >= 0.0 && r < Nu_2PI && g >= 0.0 && g < 360.0) << d << ": " << r << ", " << g;
        if (std::fabs(d) < 100) {
            EXPECT_NEAR(std::remainder(r - d, Nu_2PI), 0.0, 1e-13) << d;
        }
    }
    for (double d : {kInf, -kInf, kNaN})
        EXPECT_TRUE(std::isnan(NuAngleIn360Degree(d)) && std::isnan(NuAngleIn2Pi(d))) << d;
    test::ScopedTolerance zero(NuGetZero, NuSetZero, 1e-3);
    EXPECT_EQ(NuAngleIn360Degree(359.9995), 0.0);
    EXPECT_EQ(NuAngleIn360Degree(720.0005), 0.0);
    EXPECT_EQ(NuAngleIn360Degree(0.002), 0.002);
}

TEST(ArcCosSin, InvertsCosSinInEveryQuadrantAndTheQuarterTurnsAreExact) {
    const double exact[][3] = {{0.0, 1.0, 0.0}, {Nu_PI * 0.5, 0.0, 1.0}, {Nu_PI, -1.0, 0.0},
                               {Nu_PI * 1.5, 0.0, -1.0}};
    for (const auto& e : exact) {
        double c = 9.0, s = 9.0;
        NuCosSin(e[0], &c, &s);
        EXPECT_TRUE(c == e[1] && s == e[2]) << "angle " << e[0] << ": " << c << ", " << s;
        EXPECT_EQ(NuArcCosSin(e[1], e[2]), e[0]);
    }
    EXPECT_EQ(NuArcCosSin(0.0, 0.0), Nu_PI * 1.5);  // a sine not above 0
    for (int nDegrees = 1; nDegrees < 360; nDegrees += 7) {
        const double dAngle = nDegrees * Nu_PI / 180.0;
        EXPECT_NEAR(NuArcCosSin(3 * std::cos(dAngle), 3 * std::sin(dAngle)), dAngle, 8 * test::kUlp)
            << nDegrees << " degrees";
    }
    double c = 0.0, s = 1.0;
    NuCosSin(Nu_PI * 0.25, &c, &s);
    EXPECT_EQ(c, s) << "forty-five degrees";
}

TEST(Acosh, FollowsTheLogarithmicFormAndRefusesArgumentsBelowOne) {
    EXPECT_EQ(acosh(1.0), 0.0);
    for (double x : {1.5, 2.0, 10.0, 1e6})
        EXPECT_NEAR(acosh(x), std::acosh(x), 4 * test::kUlp * std::acosh(x)) << "x = " << x;
    test::ExpectNuFailure<CNuOperationException>([] { acosh(0.999); }, 101, "calculation", "acosh");
    EXPECT_NU_THROW(acosh(-kInf), CNuOperationException, 101);
}

TEST(Predicates, TrianglesAndEqualityCompareStrictlyAndRefuseBadArguments) {
    EXPECT_EQ(NuIsTriangle(1.0, 1.0, 2.0, 0.0), eNuFalse);
    EXPECT_EQ(NuIsTriangle(3.0, 4.0, 5.0, 1.9), eNuTrue);
    EXPECT_EQ(NuIsTriangle(3.0, 4.0, 5.0, 2.0), eNuFalse);  // 5 + 2 >= 3 + 4
    EXPECT_EQ(NuIsTriangle(5.0, 3.0, 4.0, 2.0), eNuFalse);
    EXPECT_EQ(NuIsTriangle(4.0, 5.0, 3.0, 2.0), eNuFalse);
    double a[3] = {1.0, 2.0, 3.0};
    double b[3] = {1.0, 2.5, 3.0};
    EXPECT_EQ(NuIsEqual(0, 0, a, b, 0.0), eNuTrue);
    EXPECT_EQ(NuIsEqual(0, 0, nullptr, b, 1.0), eNuFalse);
    EXPECT_EQ(NuIsEqual(3, 3, a, nullptr, 1.0), eNuFalse);
    EXPECT_EQ(NuIsEqual(-1, -1, a, b, 1.0), eNuFalse);
    EXPECT_EQ(NuIsEqual(3, 2, a, b, 1.0), eNuFalse);
    EXPECT_EQ(NuIsEqual(3, 3, a, b, 0.5), eNuFalse);  // a difference equal to the tolerance
    EXPECT_EQ(NuIsEqual(3, 3, a, b, 0.5000001), eNuTrue);
    b[1] = kNaN;
    EXPECT_EQ(NuIsEqual(3, 3, a, b, 1e300), eNuFalse);
}

}  // namespace
}  // namespace numorix
