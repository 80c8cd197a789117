// Least-squares lines: agreement with the principal axis by Eigen on noisy data, the two-point
// rule, sign cleaning, both residual modes, refusals, hostile data, and the certified PTB sets.
#include <cmath>
#include <limits>

#include "fit_test_support.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// Directions from two different decompositions of the same well-conditioned scatter.
constexpr double kAxis = 1e-10;
// Residual sums recomputed independently on coordinates of order 10.
constexpr double kResidual = 1e-10;

CNuPointArray NoisyLine(test::Random& rng, const CNuPoint& q, const CNuVector& d, int n,
                        double dNoise) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = rng.Uniform(-10.0, 10.0);
        points.Add(CNuPoint(q.x() + t * d[0] + rng.Normal(0.0, dNoise),
                            q.y() + t * d[1] + rng.Normal(0.0, dNoise),
                            q.z() + t * d[2] + rng.Normal(0.0, dNoise)));
    }
    return points;
}

TEST(LineFit, AgreesWithThePrincipalAxisOnNoisyData) {
    test::Random rng;
    for (int nCase = 0; nCase < 20; ++nCase) {
        CNuVector d(rng.Uniform(-1, 1), rng.Uniform(-1, 1), rng.Uniform(-1, 1));
        d.Normalise();
        CNuPointArray points =
            NoisyLine(rng, CNuPoint(rng.Uniform(-5, 5), 1, 2), d, rng.Integer(3, 60), 0.05);
        CNuLine line;
        line.Fit(points);
        Eigen::Vector3d mean;
        Eigen::Matrix3d axes = test::PrincipalAxes(points, &mean);
        CNuVector oracle(axes(0, 2), axes(1, 2), axes(2, 2));
        EXPECT_LT(test::AxisAngle(line.GetDirection(), oracle), kAxis) << "case " << nCase;
        EXPECT_EQ(line.GetPoint().x(), points.MeanPoint().x());
        // Cleaned: the first largest component is positive.
        const CNuVector& r = line.GetDirection();
        int nLargest = 0;
        for (int i = 1; i < 3; ++i)
            if (std::fabs(r[i]) > std::fabs(r[nLargest])) nLargest = i;
        EXPECT_GT(r[nLargest], 0.0) << "case " << nCase;
    }
}

TEST(LineFit, TwoPointsRunFromFirstToSecondWithoutCleaning) {
    CNuLine line;
    line.Fit(test::Points({CNuPoint(3, 0, 0), CNuPoint(0, 4, 0)}));
    EXPECT_EQ(line.GetDirection()[0], -0.6);
    EXPECT_EQ(line.GetDirection()[1], 0.8);
    EXPECT_EQ(line.GetPoint().x(), 1.5);
    double dForm = -1.0;
    double dSum = -1.0;
    line.Fit(test::Points({CNuPoint(3, 0, 0), CNuPoint(0, 4, 0)}), &dForm, &dSum);
    EXPECT_EQ(dForm, 0.0);
    EXPECT_EQ(dSum, 0.0);
}

TEST(LineFit, RefusesTooFewAndCoincidentPoints) {
    CNuLine line;
    ExpectNuFailure<CNuBestfitException>([&] { line.Fit(test::Points({CNuPoint(1, 2, 3)})); }, 201,
                                         nullptr, "CNuLine");
    ExpectNuFailure<CNuBestfitException>(
        [&] {
            line.Fit(test::Points({CNuPoint(1, 2, 3), CNuPoint(1, 2, 3 + 1e-13)}));
        },
        202, nullptr, "CNuLine");
    CNuPointArray same = test::Points({CNuPoint(1, 2, 3), CNuPoint(1, 2, 3), CNuPoint(1, 2, 3)});
    try {
        line.Fit(same);
        ADD_FAILURE() << "coincident points accepted";
    } catch (const CNuBestfitException& e) {
        EXPECT_EQ(e.m_nCause, 202);
        EXPECT_EQ(e.GetSize(), 2);
    }
}

TEST(LineFit, ResidualsInSpaceAreDistancesAndTheFormIsADiameter) {
    test::Random rng;
    CNuVector d(1, 1, 1);
    d.Normalise();
    CNuPointArray points = NoisyLine(rng, CNuPoint(0, 0, 0), d, 30, 0.1);
    CNuLine line;
    double dForm = 0.0;
    double dSum = 0.0;
    line.Fit(points, &dForm, &dSum);
    double dMax = 0.0;
    double dSumExpected = 0.0;
    for (int i = 0; i < points.GetSize(); ++i) {
        double r = points[i].DistanceTo(line);
        dMax = std::max(dMax, r);
        dSumExpected += r * r;
    }
    EXPECT_NEAR(dForm, 2.0 * dMax, kResidual);
    EXPECT_NEAR(dSum, dSumExpected, kResidual);
}

TEST(LineFit, ResidualsInThePlaneAreSignedAndTheFormIsTheirSpan) {
    // Points above and below the x axis at z = 5: signed residuals +0.5, -0.5, +0.25, -0.25.
    CNuPointArray points = test::Points(
        {CNuPoint(-3, 0.5, 5), CNuPoint(-1, -0.5, 5), CNuPoint(1, 0.25, 5), CNuPoint(3, -0.25, 5)});
    CNuLine line;
    double dForm = 0.0;
    double dSum = 0.0;
    line.Fit(points, &dForm, &dSum);
    double dLow = 0.0;
    double dHigh = 0.0;
    double dSumExpected = 0.0;
    const CNuVector& v = line.GetDirection();
    for (int i = 0; i < 4; ++i) {
        double r = v[0] * (points[i].y() - line.GetPoint().y()) -
                   v[1] * (points[i].x() - line.GetPoint().x());
        dLow = std::min(dLow, r);
        dHigh = std::max(dHigh, r);
        dSumExpected += r * r;
    }
    EXPECT_NEAR(dForm, dHigh - dLow, kResidual);
    EXPECT_NEAR(dSum, dSumExpected, kResidual);
    EXPECT_GT(dForm, 2.0 * std::sqrt(dSum / 4.0)) << "a span, not twice the largest distance";
}

TEST(LineFit, MeetsPtbLimitsOnTheCertifiedLines) {
    if (test::RefDataDir().empty()) GTEST_SKIP() << "NUMORIX_REFDATA not set: no PTB data";
    for (int k = 1; k <= 4; ++k) {
        std::string id = test::SetName("b", k);
        CNuPointArray points;
        std::vector<double> a;
        if (!test::ReadGaussSet(id, &points, &a)) GTEST_SKIP() << "PTB set " << id << " absent";
        CNuLine line;
        line.Fit(points);
        CNuPoint ref(a[0], a[1], a[2]);
        EXPECT_LT(ref.DistanceTo(line), test::kPtbPosition) << id;
        EXPECT_LT(test::AxisAngle(line.GetDirection(), CNuVector(a[3], a[4], a[5])),
                  test::kPtbAngle)
            << id;
    }
}

}  // namespace
}  // namespace numorix
