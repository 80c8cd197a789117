// The cone and its least-squares fit: construction checks and accessors, refusals in their
// order, exact cones recovered (opening either way along a snapped axis, narrow and wide, through
// six points), the iteration limit, cones that degenerate towards a cylinder, and random measured
// cones beside an independent orthogonal-distance fit.
#include <algorithm>
#include <cmath>
#include <vector>

#include "cone_oracle.h"
#include "fit_test_support.h"
#include "numorix/surfaces/con_surf.h"

namespace numorix {
namespace {

constexpr long kIterations = 1000;
// Coordinates of size 10 to 100 after some hundred roundings of an exact fit.
constexpr double kExactFit = 1e-11;
// Two least-squares answers of a few dozen points on part of a cone up to 1e3 from the origin:
// rounding of the coordinates amplified by the conditioning of the cone's six parameters.
constexpr double kSameLeastSquares = 1e-7;

// n points on the cone of semi-angle dDegrees with its apex at the frame's origin, opening along
// the frame's z axis times nSign: heights in [dLow, dHigh], angles in [0, dSpan] and a normal
// noise dNoise across the surface.
CNuPointArray ConePoints(test::Random& rng, const test::Frame& f, double dDegrees, int nSign,
                         int n, double dLow, double dHigh, double dSpan, double dNoise) {
    double c = std::cos(dDegrees * M_PI / 180.0), s = std::sin(dDegrees * M_PI / 180.0);
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double h = rng.Uniform(dLow, dHigh), phi = dSpan * (i + rng.Uniform(0.0, 0.5)) / n;
        double e = rng.Normal(0.0, dNoise), r = h * s / c + e * c;
        points.Add(f.World(r * std::cos(phi), r * std::sin(phi), nSign * (h - e * s)));
    }
    return points;
}

// Signed distance of p from the cone: r cos(alpha) - h sin(alpha) about the apex.
double ConeDistance(const CNuConSurf& cone, const CNuPoint& p) {
    CNuVector w = (p - cone.GetApex()).To3DVector(), a = cone.GetAxisDirection();
    double h = w % a, r = (w * a).Magnitude(), alpha = cone.GetSemiAngle() * M_PI / 180.0;
    return r * std::cos(alpha) - h * std::sin(alpha);
}

TEST(ConSurf, ConstructorsCheckSemiAngleThenAxisSizeThenZeroAxis) {
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuConSurf c(0.0); }, 6, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(90.0); }, 6, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(-30.0); }, 6, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(std::nan("")); }, 6, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(120.0, CNuPoint(), CNuVector(2)); }, 6, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(30.0, CNuPoint(), CNuVector(2)); }, 4, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(30.0, CNuPoint(), CNuVector()); }, 3, nullptr, "CNuConSurf"},
    });
}

TEST(ConSurf, GivesItsAngleApexAndUnitAxisInWorldCoordinates) {
    CNuConSurf c(25.0, CNuPoint(1, 2, 3), CNuVector(0, -3, 4));
    double dAngle = 0.0;
    CNuPoint apex;
    CNuVector axis;
    c.GetData(&dAngle, &apex, &axis);
    EXPECT_EQ(std::vector<double>({dAngle, apex.x(), apex.y(), apex.z(), axis[0], axis[1], axis[2]}),
              std::vector<double>({25.0, 1, 2, 3, 0.0, -0.6, 0.8}));
    CNuConSurf copy(1.0);
    copy = c;
    EXPECT_EQ(copy.GetType(), CNuObject::eTypeConSurf);
    EXPECT_TRUE(test::PointsNear(copy.GetApex(), CNuPoint(1, 2, 3), 0.0 + 1e-300));
    EXPECT_EQ(copy.GetAxis().GetDirection()[2], 0.8);
    EXPECT_EQ(CNuConSurf(89.5).GetSemiAngle(), 89.5);
}

// The limit before anything, finiteness next, then 201 carrying 6, 204 carrying 4, 202 carrying 6.
TEST(ConeFit, RefusesBadDataWithCauseLocationAndCarriedValueInOrder) {
    const CNuPointArray five =
        test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}});
    const CNuPointArray flat =
        test::Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 3, 0}, {5, -1, 0}});
    const CNuPointArray line =
        test::Points({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, 4}, {5, 5, 5}});
    CNuPointArray repeated = five, bad = five;
    repeated.Append(five.SubArray(0, 1));
    bad.Add(CNuPoint(0, 0, std::nan("")));
    bad.Add(CNuPoint(INFINITY, 0, 0));
    CNuConSurf c(30.0);
    double dForm = -1.0, dSum = -1.0;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { c.FitEx(bad, &dForm, &dSum, 0); }, 213, nullptr, "CNuConSurf"},
        {[&] { c.FitEx(five, -3); }, 213, nullptr, "CNuConSurf"},
        {[&] { c.Fit(bad, 10); }, 214, nullptr, "CNuConSurf", 5},
        {[&] { c.Fit(five, &dForm, &dSum, 10); }, 201, nullptr, "CNuConSurf", 6},
        {[&] { c.Fit(flat, 10); }, 204, nullptr, "CNuConSurf", 4},
        {[&] { c.Fit(line, 10); }, 204, nullptr, "CNuConSurf", 4},
        {[&] { c.Fit(repeated, 10); }, 202, nullptr, "CNuConSurf", 6},
    });
    EXPECT_EQ(std::vector<double>({dForm, dSum, double(c.FitEx(repeated, 10)),
                                   double(c.FitEx(bad, &dForm, &dSum, 10))}),
              std::vector<double>({0.0, 0.0, double(eNuFitFailed), double(eNuFitFailed)}));
}

// Exact cones about the z axis through (1, 2, 3): the axis comes back snapped onto z, pointing
// into the opening whichever way that is. A cone opening downwards starts from an upward
// candidate axis, along which the radius shrinks: its angle iterates past 90 degrees and is
// mirrored.
TEST(ConeFit, RecoversExactConesWithTheAxisSnappedIntoTheOpening) {
    test::Random rng;
    const test::Frame f{CNuPoint(1, 2, 3), CNuVector(1, 0, 0), CNuVector(0, 1, 0),
                        CNuVector(0, 0, 1)};
    const struct {
        double dDegrees;
        int nSign;
        double dLow, dHigh;
    } cases[] = {{30.0, 1, 5.0, 20.0}, {30.0, -1, 5.0, 20.0}, {1.0, 1, 5.0, 200.0},
                 {80.0, -1, 1.0, 5.0}, {89.99, 1, 1e-3, 5e-3}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.dDegrees << " degrees, sign " << c.nSign);
        CNuPointArray points =
            ConePoints(rng, f, c.dDegrees, c.nSign, 30, c.dLow, c.dHigh, 2.0 * M_PI, 0.0);
        CNuConSurf cone(45.0);
        double dForm = -1.0, dSum = -1.0;
        ASSERT_NO_THROW(cone.Fit(points, &dForm, &dSum, kIterations));
        CNuVector axis = cone.GetAxisDirection();
        EXPECT_EQ(std::vector<double>({axis[0], axis[1], axis[2]}),
                  std::vector<double>({0.0, 0.0, double(c.nSign)}));
        EXPECT_NEAR(cone.GetSemiAngle(), c.dDegrees, kExactFit * 100.0);
        EXPECT_TRUE(test::PointsNear(cone.GetApex(), f.origin, kExactFit * std::max(1.0, c.dHigh)));
        EXPECT_LT(dForm + std::sqrt(dSum), kExactFit);
    }
}

// A cone has six parameters: six points in general position lie on it exactly (on one of the
// finitely many cones through them), and the fit interpolates.
TEST(ConeFit, InterpolatesSixPointsOnACone) {
    const double angles[] = {0, 70, 140, 200, 260, 320}, heights[] = {4, 9, 6, 12, 5, 10};
    const test::Frame f{CNuPoint(-3, 7, 2), CNuVector(0, 1, 0), CNuVector(0, 0, 1),
                        CNuVector(1, 0, 0)};
    CNuPointArray points;
    for (int i = 0; i < 6; ++i) {
        double r = heights[i] * std::tan(35.0 * M_PI / 180.0), t = angles[i] * M_PI / 180.0;
        points.Add(f.World(r * std::cos(t), r * std::sin(t), heights[i]));
    }
    CNuConSurf cone(45.0);
    double dForm = -1.0, dSum = -1.0;
    ASSERT_NO_THROW(cone.Fit(points, &dForm, &dSum, kIterations));
    EXPECT_LT(dSum, kExactFit * kExactFit);
    EXPECT_LT(dForm, kExactFit);
    for (int i = 0; i < 6; ++i)
        EXPECT_NEAR(ConeDistance(cone, points[i]), 0.0, kExactFit) << "point " << i;
}

TEST(ConeFit, ReachingTheIterationLimitIsNotConvergence) {
    test::Random rng;
    test::Frame f = test::RandomFrame(rng);
    CNuPointArray points = ConePoints(rng, f, 20.0, 1, 40, 5.0, 20.0, M_PI, 1e-3);
    CNuConSurf cone(45.0);
    test::ExpectLimitRule([&](long l) { cone.Fit(points, l); },
                          [&](long l) { return cone.FitEx(points, l); }, 200, "CNuConSurf");
}

// Towards a cylinder the angle goes to 0 and the apex to infinity: a start whose angle steps
// below 0 is dropped, and the others may settle on any cone, or none be left (211). Towards a
// plane the points come within the tolerance of one plane (204). Either way the fit ends within
// its limit.
TEST(ConeFit, ConesDegeneratingTowardsACylinderOrAPlaneEndWithinTheLimit) {
    test::Random rng;
    for (int nSet = 0; nSet < 20; ++nSet) {
        CNuPointArray cylinder;
        for (int i = 0; i < 40; ++i) {
            double t = rng.Uniform(0.0, 2.0 * M_PI);
            cylinder.Add(CNuPoint(5.0 * std::cos(t), 5.0 * std::sin(t), rng.Uniform(0.0, 10.0)));
        }
        CNuConSurf cone(45.0);
        double dForm = 0.0, dSum = 0.0;
        ENuFitResult eResult = cone.FitEx(cylinder, &dForm, &dSum, kIterations);
        EXPECT_NE(eResult, eNuFitNotConverged) << "set " << nSet;
        if (eResult == eNuFitOk) {
            EXPECT_TRUE(std::isfinite(dForm)) << "set " << nSet;
        }
    }
    // 1e-12 degrees short of a plane: radii 1 to 10 at heights below 2e-13.
    const test::Frame f{CNuPoint(), CNuVector(1, 0, 0), CNuVector(0, 1, 0), CNuVector(0, 0, 1)};
    const double dFlat = 90.0 - 1e-12, dLow = 1.0 / std::tan(dFlat * M_PI / 180.0);
    CNuPointArray nearlyFlat = ConePoints(rng, f, dFlat, 1, 30, dLow, 10.0 * dLow, 2.0 * M_PI, 0.0);
    CNuConSurf cone(45.0);
    test::ExpectNuFailure<CNuBestfitException>([&] { cone.Fit(nearlyFlat, kIterations); }, 204,
                                               nullptr, "CNuConSurf", 4);
}

TEST(ConeFit, AgreesWithAnIndependentFitOnRandomMeasuredCones) {
    test::Random rng;
    const struct {
        double dDegrees, dCoverage, dDistance;
    } cases[] = {{5.0, 1.0, 0.0}, {20.0, 0.5, 1e3}, {45.0, 0.25, 0.0},
                 {75.0, 1.0, 1e3}, {60.0, 0.5, 1e2}, {2.0, 0.5, 1e3}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.dDegrees << " degrees, coverage " << c.dCoverage
                                        << ", " << c.dDistance << " from the origin");
        test::Frame f = test::RandomFrame(rng);
        CNuVector shift = test::RandomDirection(rng);
        shift.Normalise();
        f.origin = f.origin + (shift * c.dDistance).To3DPoint();
        CNuPointArray points =
            ConePoints(rng, f, c.dDegrees, 1, 40, 10.0, 30.0, 2.0 * M_PI * c.dCoverage, 2e-3);
        CNuConSurf cone(45.0);
        ASSERT_NO_THROW(cone.Fit(points, kIterations));

        const Eigen::Vector3d z(f.z[0], f.z[1], f.z[2]), o(f.origin.x(), f.origin.y(),
                                                            f.origin.z());
        const double alpha = c.dDegrees * M_PI / 180.0;
        const oracle::SCone e =
            oracle::FitCone(test::Rows(points), {o + 20.0 * z, z, 20.0 * std::tan(alpha), alpha});
        const double dOracleAngle = std::min(e.dAngle, M_PI - e.dAngle) * 180.0 / M_PI;
        const CNuPoint foot(e.point[0], e.point[1], e.point[2]);
        const CNuVector axis = cone.GetAxisDirection();
        const double dAlong = (foot - cone.GetApex()).To3DVector() % axis;
        EXPECT_LT(test::AxisAngle(axis, CNuVector(e.axis[0], e.axis[1], e.axis[2])),
                  kSameLeastSquares);
        EXPECT_LT(foot.DistanceTo(cone.GetAxis()), kSameLeastSquares);
        EXPECT_NEAR(dAlong * std::tan(cone.GetSemiAngle() * M_PI / 180.0), e.dRadius,
                    kSameLeastSquares);
        EXPECT_NEAR(cone.GetSemiAngle(), dOracleAngle, kSameLeastSquares * 180.0 / M_PI);
        EXPECT_GT((CNuVector(e.axis[0], e.axis[1], e.axis[2]) % axis) *
                      (e.dAngle < M_PI / 2.0 ? 1.0 : -1.0),
                  0.0)
            << "the axis points into the opening";
    }
}

}  // namespace
}  // namespace numorix
