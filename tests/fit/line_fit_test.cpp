// Least-squares lines and planes: agreement with the principal axes by Eigen on noisy data, exact
// answers far from the origin, the two- and three-point rules, sign cleaning, and the residuals
// behind the form and the sum of squares in each mode.
#include "fit_test_support.h"

namespace numorix {
namespace {

// Directions and normals from two different decompositions of the same well-conditioned scatter.
constexpr double kAxis = 1e-10;
// Residual sums recomputed independently on coordinates of order 10.
constexpr double kResidual = 1e-10;

CNuPointArray NoisyLine(test::Random& rng, const CNuVector& d, int n, double dNoise) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i)
        points.Add((d * rng.Uniform(-10.0, 10.0)).To3DPoint() +
                   CNuPoint(1 + rng.Normal(0.0, dNoise), 2 + rng.Normal(0.0, dNoise),
                            rng.Normal(0.0, dNoise)));
    return points;
}

TEST(LineAndPlaneFit, AgreeWithThePrincipalAxesOnNoisyDataAndAreCleaned) {
    test::Random rng;
    for (int nCase = 0; nCase < 20; ++nCase) {
        CNuVector d = test::RandomDirection(rng);
        d.Normalise();
        CNuPointArray onLine = NoisyLine(rng, d, rng.Integer(3, 60), 0.05);
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
        EXPECT_TRUE(test::PointsNear(line.GetPoint(), onLine.MeanPoint(), 0.0));
        EXPECT_TRUE(test::PointsNear(plane.GetPoint(), onPlane.MeanPoint(), 0.0));
        EXPECT_TRUE(test::IsCleaned(line.GetDirection()) && test::IsCleaned(plane.GetNormal()));
    }
}

// Points exactly on a line along (1, 2, -0.5) and on the plane z = 0.5 x - 0.25 y through an
// origin far away: the data are exact, so any error is the fit's own. Centring the points
// before forming their scatter keeps the direction to 1e-9; centring after it would lose about
// 1e-6 at 1e6.
constexpr double kFarAxis = 1e-9;
// Positions: a few units in the last place of coordinates of 1e6.
constexpr double kFarPosition = 1e-9;

TEST(LineAndPlaneFit, FarFromTheOriginGiveTheExactLineAndPlane) {
    const CNuVector along(1.0, 2.0, -0.5);
    const CNuVector normal(-0.5, 0.25, 1.0);
    for (const CNuPoint& origin : {CNuPoint(0, 0, 0), CNuPoint(1e6, 1e6, 1e6),
                                   CNuPoint(-1e6, 2e6, 5e5), CNuPoint(3e6, -4e6, 0)}) {
        CNuPointArray onLine(9), onPlane(25);
        for (int i = 0; i < 25; ++i) {
            if (i < 9) onLine.Add(origin + (along * (i - 4)).To3DPoint());
            double x = i / 5 - 2, y = i % 5 - 2;
            onPlane.Add(origin + CNuPoint(x, y, 0.5 * x - 0.25 * y));
        }
        CNuLine line;
        line.Fit(onLine);
        CNuPlane plane;
        plane.Fit(onPlane);
        EXPECT_LT(test::AxisAngle(line.GetDirection(), along), kFarAxis) << test::Text(origin);
        EXPECT_LT(test::AxisAngle(plane.GetNormal(), normal), kFarAxis) << test::Text(origin);
        EXPECT_LT(origin.DistanceTo(line), kFarPosition) << test::Text(origin);
        EXPECT_LT(origin.DistanceTo(plane), kFarPosition) << test::Text(origin);
    }
}

// Two points run from the first to the second without cleaning; three points keep the normal of
// the collinearity test, (0,1,0) x (1,0,0) = (0,0,-1), which a fourth point cleans. In space a
// line's form is twice its largest distance; for points in a plane z = const it is the span of
// the signed residuals, as it is for a plane.
TEST(LineAndPlaneFit, FormAndSumOfSquaresFollowTheResidualsOfEachMode) {
    CNuLine line;
    CNuPlane plane;
    double dForm = -1.0, dSum = -1.0;
    line.Fit(test::Points({CNuPoint(3, 0, 0), CNuPoint(0, 4, 0)}), &dForm, &dSum);
    EXPECT_TRUE(line.GetDirection()[0] == -0.6 && line.GetDirection()[1] == 0.8);
    EXPECT_EQ((std::vector<double>{line.GetPoint().x(), dForm, dSum}),
              (std::vector<double>{1.5, 0, 0}));
    CNuPointArray points = test::Points({CNuPoint(0, 0, 0), CNuPoint(0, 1, 0), CNuPoint(1, 0, 0)});
    plane.Fit(points, &dForm, &dSum);
    EXPECT_EQ((std::vector<double>{plane.GetNormal()[2], dForm, dSum}),
              (std::vector<double>{-1, 0, 0}));
    points.Add(CNuPoint(1, 1, 0));
    plane.Fit(points);
    EXPECT_EQ(plane.GetNormal()[2], 1.0);
    // Signed residuals 0.25 (four times) and -1 about their least-squares line, the x axis.
    line.Fit(test::Points({CNuPoint(-2, 0.25, 5), CNuPoint(-1, 0.25, 5), CNuPoint(0, -1, 5),
                           CNuPoint(1, 0.25, 5), CNuPoint(2, 0.25, 5)}),
             &dForm, &dSum);
    EXPECT_NEAR(dForm, 1.25, kResidual) << "a span, not twice the largest distance";
    EXPECT_NEAR(dSum, 1.25, kResidual);
    test::Random rng;
    CNuPointArray inSpace = NoisyLine(rng, CNuVector(0.6, 0.0, 0.8), 30, 0.1);
    CNuPointArray slab = test::NearPlane(rng, CNuVector(0.2, -0.3, 1.0), 40, 10.0, 0.1);
    line.Fit(inSpace, &dForm, &dSum);
    double dHigh = 0.0, dLow = 0.0, dSquares = 0.0;
    for (int i = 0; i < inSpace.GetSize(); ++i) {
        dHigh = std::max(dHigh, inSpace[i].DistanceTo(line));
        dSquares += std::pow(inSpace[i].DistanceTo(line), 2);
    }
    EXPECT_NEAR(dForm, 2.0 * dHigh, kResidual);
    EXPECT_NEAR(dSum, dSquares, kResidual);
    plane.Fit(slab, &dForm, &dSum);
    dHigh = dSquares = 0.0;
    for (int i = 0; i < slab.GetSize(); ++i) {
        double d = test::SignedDistance(slab[i], plane);
        dHigh = std::max(dHigh, d);
        dLow = std::min(dLow, d);
        dSquares += d * d;
    }
    EXPECT_NEAR(dForm, dHigh - dLow, kResidual);
    EXPECT_NEAR(dSum, dSquares, kResidual);
}

}  // namespace
}  // namespace numorix
