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

// Sets a tolerance for the length of a scope and restores it.
class ScopedZero {
  public:
    explicit ScopedZero(double d) : m_dSaved(NuGetZero()) { NuSetZero(d); }
    ~ScopedZero() { NuSetZero(m_dSaved); }

  private:
    double m_dSaved;
};

TEST(Pythag, IsExactOnPythagoreanTriplesAndZeroWithoutDivision) {
    const double aCases[][4] = {
        {0, 0, 0, 0}, {3, -4, 0, 5}, {-4, 3, 0, 5}, {1, 2, -2, 3}, {2, -2, 1, 3}};
    for (const auto& c : aCases) {
        if (c[2] == 0.0) {
            EXPECT_EQ(NuPythag(c[0], c[1]), c[3]) << c[0] << ", " << c[1];
        }
        EXPECT_EQ(NuPythag(c[0], c[1], c[2]), c[3]) << c[0] << ", " << c[1] << ", " << c[2];
    }
}

TEST(Pythag, NeitherOverflowsNorUnderflowsWhereTheSquaresWould) {
    test::Random rng;
    for (int k = 0; k < 200; ++k) {
        double a = rng.Uniform(-1.0, 1.0);
        double b = rng.Uniform(-1.0, 1.0);
        double c = rng.Uniform(-1.0, 1.0);
        double dTrue2 = std::hypot(a, b);
        double dTrue3 = std::sqrt(a * a + b * b + c * c);
        for (double dScale : {1e-200, 1.0, 1e200}) {
            double d2 = NuPythag(a * dScale, b * dScale) / dScale;
            double d3 = NuPythag(a * dScale, b * dScale, c * dScale) / dScale;
            EXPECT_NEAR(d2, dTrue2, 4 * test::kUlp * dTrue2) << "scale " << dScale;
            EXPECT_NEAR(d3, dTrue3, 4 * test::kUlp * dTrue3) << "scale " << dScale;
        }
    }
}

TEST(Pythag, MagnitudesBelowTheZeroToleranceGiveZero) {
    ScopedZero zero(1.0);
    EXPECT_EQ(NuPythag(0.5, -0.9), 0.0);
    EXPECT_EQ(NuPythag(0.5, -0.9, 0.99), 0.0);
    EXPECT_EQ(NuPythag(1.0, 0.0), 1.0);  // not strictly below
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

        std::vector<int> index(keys.size(), -1);
        const std::vector<double> original = keys;
        NuSort(n, keys.data(), index.data());
        EXPECT_EQ(index, expected) << "index form, n = " << n;
        EXPECT_EQ(keys, original) << "the index form leaves the keys";

        std::vector<double> companion(keys.size());
        std::iota(companion.begin(), companion.end(), 0.0);
        NuSort(n, keys.data(), companion.data());
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(companion[static_cast<std::size_t>(i)], expected[static_cast<std::size_t>(i)])
                << "companion form keeps equal keys in order, n = " << n << ", i = " << i;
        }
        std::vector<double> sorted = original;
        NuSort(n, sorted.data());
        EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
        EXPECT_EQ(sorted, keys);
    }
}

TEST(Sort, ANegativeSizeDoesNothing) {
    double ad[2] = {2.0, 1.0};
    NuSort(-1, ad);
    NuSort(-1, ad, ad + 1);
    EXPECT_EQ(ad[0], 2.0);
    EXPECT_EQ(ad[1], 1.0);
}

TEST(AngleIn360Degree, ReducesIntoTheHalfOpenRangeAndSnapsTheEdgesToZero) {
    // -1e-301 + 360 is 360, then 0.
    const double dBelow360 = std::nextafter(360.0, 0.0);
    const double aCases[][2] = {{-1e-301, 0.0}, {720.0, 0.0},      {360.0, 0.0},
                                {-360.0, 0.0},  {0.0, 0.0},        {-90.0, 270.0},
                                {359.5, 359.5}, {1000.25, 280.25}, {dBelow360, dBelow360}};
    for (const auto& c : aCases)
        EXPECT_EQ(NuAngleIn360Degree(c[0]), c[1]) << "angle " << c[0];
}

TEST(AngleIn360Degree, SnapsResultsWithinTheZeroToleranceOfEitherEnd) {
    ScopedZero zero(1e-3);
    EXPECT_EQ(NuAngleIn360Degree(359.9995), 0.0);
    EXPECT_EQ(NuAngleIn360Degree(720.0005), 0.0);
    EXPECT_EQ(NuAngleIn360Degree(0.002), 0.002);
}

TEST(AngleIn2Pi, ReducesByRepeatedSubtractionWithTheRoundingOfEveryStep) {
    // Three subtractions of 2 pi, each rounded: not the exact remainder.
    double dExpected = ((20.0 - Nu_2PI) - Nu_2PI) - Nu_2PI;
    EXPECT_EQ(NuAngleIn2Pi(20.0), dExpected);
    EXPECT_EQ(NuAngleIn2Pi(-Nu_PI), -Nu_PI + Nu_2PI);
    EXPECT_EQ(NuAngleIn2Pi(Nu_2PI), 0.0);
    EXPECT_EQ(NuAngleIn2Pi(-1e-301), 0.0);
    test::Random rng;
    for (int k = 0; k < 100; ++k) {
        double d = rng.Uniform(-50.0, 50.0);
        double r = NuAngleIn2Pi(d);
        EXPECT_GE(r, 0.0);
        EXPECT_LT(r, Nu_2PI);
        EXPECT_NEAR(std::remainder(r - d, Nu_2PI), 0.0, 1e-13) << "angle " << d;
    }
}

TEST(AngleReductions, EndOnValuesNoStepCanChange) {
    // Infinities and values beyond the reach of a step would never leave the loop.
    for (double d : {kInf, -kInf, kNaN}) {
        EXPECT_TRUE(std::isnan(NuAngleIn360Degree(d))) << d;
        EXPECT_TRUE(std::isnan(NuAngleIn2Pi(d))) << d;
    }
    double d = NuAngleIn360Degree(-1e300);
    EXPECT_GE(d, 0.0);
    EXPECT_LT(d, 360.0);
    d = NuAngleIn2Pi(3e20);
    EXPECT_GE(d, 0.0);
    EXPECT_LT(d, Nu_2PI);
}

TEST(ArcCosSin, FindsTheAngleInEveryQuadrantAndOnTheAxes) {
    EXPECT_EQ(NuArcCosSin(0.0, 0.0), Nu_PI * 1.5);  // step 1 with a sine not above 0
    EXPECT_EQ(NuArcCosSin(-1.0, 0.0), Nu_PI);
    EXPECT_EQ(NuArcCosSin(1.0, 0.0), 0.0);
    EXPECT_EQ(NuArcCosSin(0.0, 1.0), Nu_PI * 0.5);
    EXPECT_EQ(NuArcCosSin(0.0, -1.0), Nu_PI * 1.5);
    for (int nDegrees = 1; nDegrees < 360; nDegrees += 7) {
        if (nDegrees % 90 == 0) continue;
        double dAngle = nDegrees * Nu_PI / 180.0;
        double dFound = NuArcCosSin(std::cos(dAngle), std::sin(dAngle));
        EXPECT_NEAR(dFound, dAngle, 8 * test::kUlp) << nDegrees << " degrees";
        // Scaling both does not change the angle.
        EXPECT_NEAR(NuArcCosSin(3.0 * std::cos(dAngle), 3.0 * std::sin(dAngle)), dFound,
                    4 * test::kUlp);
    }
}

TEST(CosSin, CleansQuarterTurnsAndEqualizesFortyFiveDegrees) {
    double c = 9.0;
    double s = 9.0;
    const double aCases[][3] = {{Nu_PI * 0.5, 0.0, 1.0},
                                {Nu_PI, -1.0, 0.0},
                                {0.0, 1.0, 0.0},
                                {1.0, std::cos(1.0), std::sin(1.0)}};
    for (const auto& a : aCases) {
        NuCosSin(a[0], &c, &s);
        EXPECT_EQ(c, a[1]) << "angle " << a[0];
        EXPECT_EQ(s, a[2]) << "angle " << a[0];
    }
    NuCosSin(Nu_PI * 0.25, &c, &s);
    EXPECT_EQ(c, s);
    EXPECT_NEAR(c, std::sqrt(0.5), test::kUlp);
}

TEST(Acosh, FollowsTheLogarithmicFormAndRefusesArgumentsBelowOne) {
    EXPECT_EQ(acosh(1.0), 0.0);
    for (double x : {1.5, 2.0, 10.0, 1e6}) {
        EXPECT_NEAR(acosh(x), std::acosh(x), 4 * test::kUlp * std::acosh(x)) << "x = " << x;
    }
    test::ExpectNuFailure<CNuOperationException>([] { acosh(0.999); }, 101, "calculation", "acosh");
    EXPECT_NU_THROW(acosh(-kInf), CNuOperationException, 101);
}

TEST(IsTriangle, RejectsDegenerateTrianglesWithinTheMargin) {
    EXPECT_EQ(NuIsTriangle(1.0, 1.0, 2.0, 0.0), eNuFalse);
    EXPECT_EQ(NuIsTriangle(3.0, 4.0, 5.0, 0.0), eNuTrue);
    EXPECT_EQ(NuIsTriangle(3.0, 4.0, 5.0, 2.0), eNuFalse);  // 5 + 2 >= 3 + 4
    EXPECT_EQ(NuIsTriangle(3.0, 4.0, 5.0, 1.9), eNuTrue);
    EXPECT_EQ(NuIsTriangle(5.0, 3.0, 4.0, 2.0), eNuFalse);
    EXPECT_EQ(NuIsTriangle(4.0, 5.0, 3.0, 2.0), eNuFalse);
}

TEST(IsEqual, ComparesStrictlyAndRefusesBadArguments) {
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
