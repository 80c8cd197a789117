// Least-squares lines and planes: agreement with the principal axes by Eigen on noisy data, the
// two- and three-point rules, sign cleaning, both residual modes, and the certified PTB sets.
// Their refusals are in the table of fit_frame_test.cpp.
#include <algorithm>
#include <cmath>

#include "fit_test_support.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

// Directions and normals from two different decompositions of the same well-conditioned scatter.
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

TEST(LineAndPlaneFit, AgreeWithThePrincipalAxesOnNoisyDataAndAreCleaned) {
    test::Random rng;
    for (int nCase = 0; nCase < 20; ++nCase) {
        CNuVector d(rng.Uniform(-1, 1), rng.Uniform(-1, 1), rng.Uniform(-1, 1));
        d.Normalise();
        CNuPointArray onLine =
            NoisyLine(rng, CNuPoint(rng.Uniform(-5, 5), 1, 2), d, rng.Integer(3, 60), 0.05);
        CNuPointArray onPlane =
            test::NearPlane(rng, d, rng.Integer(4, 60), 10.0, 0.05, CNuVector(1, 2, 3));
        CNuLine line;
        line.Fit(onLine);
        CNuPlane plane;
        plane.Fit(onPlane);
        EXPECT_LT(test::AxisAngle(line.GetDirection(), test::PrincipalAxis(onLine, 2)), kAxis)
            << "case " << nCase;
        EXPECT_LT(test::AxisAngle(plane.GetNormal(), test::PrincipalAxis(onPlane, 0)), kAxis)
            << "case " << nCase;
        EXPECT_EQ(line.GetPoint().x(), onLine.MeanPoint().x());
        EXPECT_TRUE(test::IsCleaned(line.GetDirection())) << "case " << nCase;
        EXPECT_TRUE(test::IsCleaned(plane.GetNormal())) << "case " << nCase;
    }
}

TEST(LineFit, TwoPointsRunFromFirstToSecondWithoutCleaning) {
    CNuLine line;
    double dForm = -1.0;
    double dSum = -1.0;
    line.Fit(test::Points({CNuPoint(3, 0, 0), CNuPoint(0, 4, 0)}), &dForm, &dSum);
    EXPECT_EQ(line.GetDirection()[0], -0.6);
    EXPECT_EQ(line.GetDirection()[1], 0.8);
    EXPECT_EQ(line.GetPoint().x(), 1.5);
    EXPECT_EQ(dForm, 0.0);
    EXPECT_EQ(dSum, 0.0);
}

TEST(PlaneFit, ThreePointsKeepTheCollinearityNormalSignIncluded) {
    // (0,0,0), (0,1,0), (1,0,0): the collinearity test's normal is (0,1,0) x (1,0,0) = (0,0,-1).
    CNuPointArray points = test::Points({CNuPoint(0, 0, 0), CNuPoint(0, 1, 0), CNuPoint(1, 0, 0)});
    CNuVector expected;
    CNuGeometry::AreCollinear(points, &expected, NuGetLengthTol());
    CNuPlane plane;
    double dForm = -1.0;
    double dSum = -1.0;
    plane.Fit(points, &dForm, &dSum);
    EXPECT_EQ(plane.GetNormal()[2], expected[2]);
    EXPECT_EQ(plane.GetNormal()[2], -1.0);
    EXPECT_EQ(dForm, 0.0);
    EXPECT_EQ(dSum, 0.0);
    points.Add(CNuPoint(1, 1, 0));
    plane.Fit(points);
    EXPECT_EQ(plane.GetNormal()[2], 1.0) << "four points are cleaned";
}

// The smallest and largest of a set of residuals (0 included) and the sum of their squares.
struct SResiduals {
    double dLow = 0.0;
    double dHigh = 0.0;
    double dSum = 0.0;
    void Add(double r) {
        dLow = std::min(dLow, r);
        dHigh = std::max(dHigh, r);
        dSum += r * r;
    }
};

// In space a line's residuals are distances and its form is a diameter; for points in a plane
// they are signed and the form is their span, as it is for a plane.
TEST(LineAndPlaneFit, FormAndSumOfSquaresFollowTheResidualsOfEachMode) {
    test::Random rng;
    CNuVector d(1, 1, 1);
    d.Normalise();
    CNuPointArray inSpace = NoisyLine(rng, CNuPoint(0, 0, 0), d, 30, 0.1);
    // Signed residuals +0.5, -0.5, +0.25, -0.25 about the x axis at z = 5.
    CNuPointArray inPlane = test::Points(
        {CNuPoint(-3, 0.5, 5), CNuPoint(-1, -0.5, 5), CNuPoint(1, 0.25, 5), CNuPoint(3, -0.25, 5)});
    CNuPointArray slab = test::NearPlane(rng, CNuVector(0.2, -0.3, 1.0), 40, 10.0, 0.1);
    CNuLine line;
    CNuPlane plane;
    double dForm = 0.0;
    double dSum = 0.0;

    line.Fit(inSpace, &dForm, &dSum);
    SResiduals space;
    for (int i = 0; i < inSpace.GetSize(); ++i)
        space.Add(inSpace[i].DistanceTo(line));
    EXPECT_NEAR(dForm, 2.0 * space.dHigh, kResidual);
    EXPECT_NEAR(dSum, space.dSum, kResidual);

    line.Fit(inPlane, &dForm, &dSum);
    SResiduals flat;
    for (int i = 0; i < inPlane.GetSize(); ++i)
        flat.Add(test::Side(inPlane[i], line));
    EXPECT_NEAR(dForm, flat.dHigh - flat.dLow, kResidual);
    EXPECT_NEAR(dSum, flat.dSum, kResidual);
    EXPECT_GT(dForm, 2.0 * std::sqrt(dSum / 4.0)) << "a span, not twice the largest distance";

    plane.Fit(slab, &dForm, &dSum);
    SResiduals across;
    for (int i = 0; i < slab.GetSize(); ++i)
        across.Add(test::SignedDistance(slab[i], plane));
    EXPECT_NEAR(dForm, across.dHigh - across.dLow, kResidual);
    EXPECT_NEAR(dSum, across.dSum, kResidual);
}

// Sets b01 to b04 are lines, b05 to b08 planes.
TEST(LineAndPlaneFit, MeetPtbLimitsOnTheCertifiedLinesAndPlanes) {
    if (test::RefDataDir().empty()) GTEST_SKIP() << "NUMORIX_REFDATA not set: no PTB data";
    for (int k = 1; k <= 8; ++k) {
        std::string id = test::SetName("b", k);
        CNuPointArray points;
        std::vector<double> a;
        if (!test::ReadTracimSet("ptb-tracim-gauss", id, 6, &points, &a))
            GTEST_SKIP() << "PTB set " << id << " absent";
        CNuPoint ref(a[0], a[1], a[2]);
        CNuVector axis(a[3], a[4], a[5]);
        CNuLine line;
        CNuPlane plane;
        if (k <= 4) {
            line.Fit(points);
            EXPECT_LT(ref.DistanceTo(line), test::kPtbPosition) << id;
            EXPECT_LT(test::AxisAngle(line.GetDirection(), axis), test::kPtbAngle) << id;
        } else {
            plane.Fit(points);
            EXPECT_LT(ref.DistanceTo(plane), test::kPtbPosition) << id;
            EXPECT_LT(test::AxisAngle(plane.GetNormal(), axis), test::kPtbAngle) << id;
        }
    }
}

}  // namespace
}  // namespace numorix
