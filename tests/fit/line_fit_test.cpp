// Least-squares lines and planes: exact answers near and far from the origin, the two- and
// three-point rules, sign cleaning, and the form and sum of squares of each residual mode.
#include "fit_test_support.h"

namespace numorix {
namespace {

// Points exactly on a line along (1, 2, -0.5) and on the plane z = 0.5 x - 0.25 y through an
// origin near or far: the data are exact, so any error is the fit's own. Centring the points
// before forming their scatter keeps the direction to 1e-9 at 1e6; centring after it would lose
// about 1e-6 there.
constexpr double kAxis = 1e-9;
// Positions: a few units in the last place of coordinates of 1e6.
constexpr double kPosition = 1e-9;
// Forms and sums of squares of residuals of order 0.1 to 1.
constexpr double kResidual = 1e-12;

TEST(LineAndPlaneFit, GiveTheExactCleanedLineAndPlaneNearAndFarFromTheOrigin) {
    const CNuVector along(-1.0, -2.0, 0.5);
    const CNuVector normal(-0.5, 0.25, 1.0);
    for (const CNuPoint& origin : {CNuPoint(0, 0, 0), CNuPoint(1e6, 1e6, 1e6),
                                   CNuPoint(-1e6, 2e6, 5e5), CNuPoint(3e6, -4e6, 0)}) {
        CNuPointArray onLine(9), onPlane(25);
        for (int i = 0; i < 25; ++i) {
            double x = i / 5 - 2, y = i % 5 - 2;
            if (i < 9) onLine.Add(origin + (along * (i - 4)).To3DPoint());
            onPlane.Add(origin + CNuPoint(x, y, 0.5 * x - 0.25 * y));
        }
        CNuLine line;
        line.Fit(onLine);
        CNuPlane plane;
        plane.Fit(onPlane);
        EXPECT_LT(test::AxisAngle(line.GetDirection(), along), kAxis) << test::Text(origin);
        EXPECT_LT(test::AxisAngle(plane.GetNormal(), normal), kAxis) << test::Text(origin);
        EXPECT_LT(origin.DistanceTo(line), kPosition) << test::Text(origin);
        EXPECT_LT(origin.DistanceTo(plane), kPosition) << test::Text(origin);
        EXPECT_TRUE(line.GetDirection()[1] > 0.0 && plane.GetNormal()[2] > 0.0) << "not cleaned";
    }
}

// Two points run from the first to the second without cleaning; three points keep the normal of
// the collinearity test, (0,1,0) x (1,0,0) = (0,0,-1). A line in space has twice its largest
// distance as form; in a plane z = const, as for a plane, the form is the span of the signed
// residuals.
TEST(LineAndPlaneFit, FormAndSumOfSquaresFollowTheResidualsOfEachMode) {
    CNuLine line;
    CNuPlane plane;
    double dForm = -1.0, dSum = -1.0;
    line.Fit(test::Points({{3, 0, 0}, {0, 4, 0}}), &dForm, &dSum);
    EXPECT_EQ((std::vector<double>{line.GetDirection()[0], line.GetDirection()[1], dForm, dSum}),
              (std::vector<double>{-0.6, 0.8, 0, 0}));
    plane.Fit(test::Points({{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}), &dForm, &dSum);
    EXPECT_EQ((std::vector<double>{plane.GetNormal()[2], dForm, dSum}),
              (std::vector<double>{-1, 0, 0}));
    // Along (1, -1, 0) the two largest components tie in size: the first is made positive.
    line.Fit(test::Points({{0, 0, 0}, {1, -1, 0}, {2, -2, 0}}));
    EXPECT_GT(line.GetDirection()[0], 0.0);
    // Signed residuals 0.25 (four times) and -1 about the line x = 10.25 in z = 5; distances 0.3,
    // sqrt(0.1) and 0.1 (each twice) about the line x = y = 0 in space; residuals 0.14, 0.14,
    // -0.06, -0.06 and -0.16 about the plane z = -0.04. The lines stand off the origin and off
    // the x axis, so that every coordinate enters the residuals.
    const struct {
        double dForm, dSum;
        bool bPlane;
        std::vector<CNuPoint> points;
    } cases[] = {
        // clang-format off
        {1.25, 1.25, false, {{10.5, -2, 5}, {10.5, -1, 5}, {9.25, 0, 5}, {10.5, 1, 5}, {10.5, 2, 5}}},
        {2.0 * std::sqrt(0.1), 0.4, false,
         {{0, 0.3, 8}, {0, 0.3, 12}, {0.1, -0.3, 9}, {0.1, -0.3, 11}, {-0.1, 0, 7}, {-0.1, 0, 13}}},
        {0.3, 0.072, true, {{2, 2, 0.1}, {-2, -2, 0.1}, {2, -2, -0.1}, {-2, 2, -0.1}, {0, 0, -0.2}}},
        // clang-format on
    };
    for (const auto& c : cases) {
        c.bPlane ? plane.Fit(test::Points(c.points), &dForm, &dSum)
                 : line.Fit(test::Points(c.points), &dForm, &dSum);
        EXPECT_NEAR(dForm, c.dForm, kResidual);
        EXPECT_NEAR(dSum, c.dSum, kResidual);
    }
}

}  // namespace
}  // namespace numorix
