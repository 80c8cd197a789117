// Scalar utilities (hypotenuse, sorts, angles, predicates) and the constants.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

// A hypotenuse or inverse function against the standard one: a few roundings of order-1 values.
constexpr double kFewUlps = 8 * test::kUlp;

TEST(Pythag, NeitherOverflowsNorUnderflowsAndVanishesBelowTheZeroTolerance) {
    test::Random rng;
    for (int k = 0; k < 100; ++k) {
        const double a = rng.Uniform(-1, 1), b = rng.Uniform(-1, 1), c = rng.Uniform(-1, 1);
        const double d2 = std::hypot(a, b), d3 = std::hypot(d2, c);
        for (double s : {1e-200, 1e200}) {
            EXPECT_NEAR(NuPythag(a * s, b * s) / s, d2, kFewUlps * d2) << "scale " << s;
            EXPECT_NEAR(NuPythag(a * s, b * s, c * s) / s, d3, kFewUlps * d3) << "scale " << s;
        }
    }
    test::ScopedTolerance zero(NuGetZero, NuSetZero, 1.0);
    EXPECT_EQ(NuPythag(0.5, -0.9) + NuPythag(0.5, -0.9, 0.99), 0.0) << "below the zero tolerance";
    EXPECT_EQ(NuPythag(1.0, 0.0), 1.0) << "not strictly below";
}

TEST(Sort, AllThreeFormsAgreeWithAStableSortOnRandomKeysWithTies) {
    test::Random rng;
    for (int n : {0, 1, 2, 17, 200}) {
        std::vector<double> keys(static_cast<std::size_t>(n)), companion(keys.size());
        std::generate(keys.begin(), keys.end(), [&] { return rng.Integer(0, 9); });  // many ties
        std::iota(companion.begin(), companion.end(), 0.0);
        std::vector<int> order(keys.size()), index(keys.size());
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(),
                         [&](int i, int j) { return keys[i] < keys[j]; });
        std::vector<double> sorted = keys;
        NuSort(n, keys.data(), index.data());
        EXPECT_EQ(index, order) << "index form, n = " << n;
        NuSort(n, sorted.data());
        NuSort(n, keys.data(), companion.data());
        EXPECT_EQ(companion, std::vector<double>(order.begin(), order.end())) << "n = " << n;
        EXPECT_EQ(sorted, keys) << "plain and companion forms, n = " << n;
    }
}

TEST(AngleReductions, ReduceIntoTheHalfOpenRangeStepByStepAndSnapTheEdgesToZero) {
    const double dBelow360 = std::nextafter(360.0, 0.0);
    const double cases[][2] = {{-1e-301, 0.0},    {720.0, 0.0},          {360.0, 0.0},
                               {-360.0, 0.0},     {-90.0, 270.0},        {359.5, 359.5},
                               {1000.25, 280.25}, {dBelow360, dBelow360}};
    for (const auto& c : cases)
        EXPECT_EQ(NuAngleIn360Degree(c[0]), c[1]) << "degrees " << c[0];
    // Three subtractions of 2 pi, each rounded: not the exact remainder.
    EXPECT_EQ(NuAngleIn2Pi(20.0), ((20.0 - Nu_2PI) - Nu_2PI) - Nu_2PI);
    EXPECT_EQ(NuAngleIn2Pi(-Nu_PI), -Nu_PI + Nu_2PI);
    EXPECT_EQ(NuAngleIn2Pi(Nu_2PI) + NuAngleIn2Pi(-1e-301), 0.0);
    for (double d : {-37.5, 3e20, -1e300})  // the last two beyond the reach of a step
        EXPECT_TRUE(NuAngleIn2Pi(d) < Nu_2PI && NuAngleIn360Degree(d) >= 0.0) << d;
    for (double d : {HUGE_VAL, -HUGE_VAL, std::nan("")})
        EXPECT_TRUE(std::isnan(NuAngleIn360Degree(d)) && std::isnan(NuAngleIn2Pi(d))) << d;
    test::ScopedTolerance zero(NuGetZero, NuSetZero, 1e-3);
    EXPECT_EQ(NuAngleIn360Degree(359.9995) + NuAngleIn360Degree(720.0005), 0.0);
    EXPECT_EQ(NuAngleIn360Degree(0.002), 0.002);
}

TEST(ArcCosSin, InvertsCosSinInEveryQuadrantAndTheQuarterTurnsAreExact) {
    const double exact[][3] = {
        {0.0, 1.0, 0.0}, {Nu_PI * 0.5, 0.0, 1.0}, {Nu_PI, -1.0, 0.0}, {Nu_PI * 1.5, 0.0, -1.0}};
    for (const auto& e : exact) {
        double c = 9.0, s = 9.0;
        NuCosSin(e[0], &c, &s);
        EXPECT_TRUE(c == e[1] && s == e[2]) << "angle " << e[0] << ": " << c << ", " << s;
        EXPECT_EQ(NuArcCosSin(e[1], e[2]), e[0]);
    }
    for (double dAngle = 0.01; dAngle < Nu_2PI; dAngle += 0.12)
        EXPECT_NEAR(NuArcCosSin(3 * std::cos(dAngle), 3 * std::sin(dAngle)), dAngle, kFewUlps)
            << dAngle;
    double c = 0.0, s = 1.0;
    NuCosSin(Nu_PI * 0.25, &c, &s);
    EXPECT_EQ(c, s) << "forty-five degrees";
    // The snap to a quarter turn is strict: a sine exactly NuGetZero() short of 1 keeps its cosine.
    volatile double dNear = 1.5707;
    test::ScopedTolerance zero(NuGetZero, NuSetZero, std::fabs(std::fabs(std::sin(dNear)) - 1.0));
    NuCosSin(dNear, &c, &s);
    EXPECT_NE(c, 0.0);
    EXPECT_NEAR(acosh(10.0), std::acosh(10.0), kFewUlps * std::acosh(10.0));
    test::ExpectNuFailure<CNuOperationException>([] { acosh(0.999); }, 101, "calculation", "acosh");
}

TEST(Predicates, TrianglesAndEqualityCompareStrictlyAndRefuseBadArguments) {
    EXPECT_EQ(NuIsTriangle(3.0, 4.0, 5.0, 1.9), eNuTrue);
    for (const auto& t : {std::vector<double>{3, 4, 5}, {5, 3, 4}, {4, 5, 3}})
        EXPECT_EQ(NuIsTriangle(t[0], t[1], t[2], 2.0), eNuFalse) << "5 + 2 >= 3 + 4, " << t[0];
    double a[3] = {1.0, 2.0, 3.0}, b[3] = {1.0, 2.5, 3.0};
    // Empty arrays are equal; a missing array, unequal sizes or a difference equal to the
    // tolerance are not.
    EXPECT_EQ(std::vector<int>({NuIsEqual(0, 0, a, b, 0.0), NuIsEqual(3, 3, a, nullptr, 1.0),
                                NuIsEqual(3, 2, a, b, 1.0), NuIsEqual(3, 3, a, b, 0.5),
                                NuIsEqual(3, 3, a, b, 0.5000001)}),
              std::vector<int>({1, 0, 0, 0, 1}));
}

TEST(Constants, AreTheCorrectlyRoundedValuesOfTheirDefinitions) {
    EXPECT_EQ(
        std::vector<double>({Nu_PI, Nu_2PI, Nu_E, Nu_SQRT2}),
        std::vector<double>({std::acos(-1.0), std::acos(-1.0) * 2, std::exp(1.0), std::sqrt(2.0)}));
}

}  // namespace
}  // namespace numorix
