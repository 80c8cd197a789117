// The cone and its least-squares fit: checks in their order, exact cones recovered (opening
// either way along a snapped axis, narrow and wide, through six points), the limit, cones that
// degenerate towards a cylinder or a plane, and random measured cones beside an independent
// orthogonal-distance fit. The minimum zone: refusals, data on a cone within the tolerance, and
// random measured cones whose zone holds every point, is no wider than the least-squares form and
// is not beaten by any nearby cone, its distances recomputed here in Eigen.
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "cone_oracle.h"
#include "fit_test_support.h"
#include "numorix/surfaces/con_surf.h"

namespace numorix {
namespace {

constexpr long kIterations = 1000;
// Coordinates of size 10 to 100 after some hundred roundings of an exact fit.
constexpr double kExactFit = 1e-11;
// Two least-squares answers of 40 points on part of a cone up to 1e3 from the origin: rounding of
// the coordinates amplified by the conditioning of the cone's six parameters.
constexpr double kSameLeastSquares = 1e-7;

// n points on the cone of semi-angle dDegrees with its apex at the frame's origin, opening along
// the frame's z axis times nSign: heights in [dLow, dHigh], angles in [0, dSpan], normal noise
// dNoise across the surface.
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

TEST(ConSurf, ChecksAngleThenAxisAndGivesItsDataInWorldCoordinates) {
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuConSurf c(0.0); }, 6, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(90.0); }, 6, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(std::nan("")); }, 6, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(120.0, CNuPoint(), CNuVector(2)); }, 6, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(30.0, CNuPoint(), CNuVector(2)); }, 4, nullptr, "CNuConSurf"},
        {[] { CNuConSurf c(30.0, CNuPoint(), CNuVector()); }, 3, nullptr, "CNuConSurf"},
    });
    CNuConSurf c(1.0);
    c = CNuConSurf(25.0, CNuPoint(1, 2, 3), CNuVector(0, -3, 4));
    double dAngle = 0.0;
    CNuPoint apex;
    CNuVector axis;
    c.GetData(&dAngle, &apex, &axis);
    EXPECT_EQ(std::vector<double>({dAngle, apex.z(), axis[1], c.GetAxis().GetDirection()[2],
                                   c.GetApex().y(), double(c.GetType())}),
              std::vector<double>({25.0, 3.0, -0.6, 0.8, 2.0, double(CNuObject::eTypeConSurf)}));
}

// The limit before anything, finiteness next, then 201 carrying 6, 204 carrying 4, 202 carrying 6.
TEST(ConeFit, RefusesBadDataWithCauseLocationAndCarriedValueInOrder) {
    const CNuPointArray five = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}});
    const CNuPointArray flat =
        test::Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 3, 0}, {5, -1, 0}});
    CNuPointArray repeated = five, bad = five;
    repeated.Append(five.SubArray(0, 1));
    bad.Add(CNuPoint(0, 0, std::nan("")));
    CNuConSurf c(30.0);
    double dForm = -1.0, dSum = -1.0;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { c.FitEx(bad, &dForm, &dSum, 0); }, 213, nullptr, "CNuConSurf"},
        {[&] { c.Fit(bad, 10); }, 214, nullptr, "CNuConSurf", 5},
        {[&] { c.Fit(five, &dForm, &dSum, 10); }, 201, nullptr, "CNuConSurf", 6},
        {[&] { c.Fit(flat, 10); }, 204, nullptr, "CNuConSurf", 4},
        {[&] { c.Fit(repeated, 10); }, 202, nullptr, "CNuConSurf", 6},
    });
    EXPECT_EQ(std::vector<double>({dForm, dSum, double(c.FitEx(repeated, 10))}),
              std::vector<double>({0.0, 0.0, double(eNuFitFailed)}));
}

// Exact cones about z through (1, 2, 3): the axis comes back snapped onto z, pointing into the
// opening. A cone opening downwards starts from an upward candidate axis along which the radius
// shrinks: its angle iterates past 90 degrees and is mirrored. Six points lie on finitely many
// cones, and the fit interpolates one of them (fixed points: from six random ones the three
// starts may all lead elsewhere).
TEST(ConeFit, RecoversExactConesWithTheAxisSnappedIntoTheOpening) {
    test::Random rng;
    const test::Frame f{CNuPoint(1, 2, 3), CNuVector(1, 0, 0), CNuVector(0, 1, 0), CNuVector(0, 0, 1)};
    const struct {
        double dDegrees;
        int nSign;
        double dLow, dHigh;
    } cases[] = {{30.0, 1, 5.0, 20.0}, {30.0, -1, 5.0, 20.0}, {1.0, 1, 5.0, 200.0},
                 {80.0, -1, 1.0, 5.0}, {89.99, 1, 1e-3, 5e-3}, {35.0, 1, 0.0, 0.0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.dDegrees << " degrees, sign " << c.nSign);
        CNuPointArray points = ConePoints(rng, f, c.dDegrees, c.nSign, 30, c.dLow, c.dHigh, 6.0, 0.0);
        if (c.dHigh == 0.0) {
            const double angles[] = {0, 70, 140, 200, 260, 320}, heights[] = {4, 9, 6, 12, 5, 10};
            points.Clear();
            for (int i = 0; i < 6; ++i) {
                double r = heights[i] * std::tan(c.dDegrees * M_PI / 180.0), t = angles[i] * M_PI / 180.0;
                points.Add(CNuPoint(heights[i], r * std::cos(t), r * std::sin(t)));
            }
        }
        CNuConSurf cone(45.0);
        double dForm = -1.0, dSum = -1.0;
        ASSERT_NO_THROW(cone.Fit(points, &dForm, &dSum, kIterations));
        EXPECT_LT(dForm + std::sqrt(dSum), kExactFit * std::max(1.0, c.dHigh));
        if (c.dHigh == 0.0) continue;
        CNuVector axis = cone.GetAxisDirection();
        EXPECT_EQ(std::vector<double>({axis[0], axis[1], axis[2]}),
                  std::vector<double>({0.0, 0.0, double(c.nSign)}));
        EXPECT_NEAR(cone.GetSemiAngle(), c.dDegrees, kExactFit * 100.0);
        EXPECT_TRUE(test::PointsNear(cone.GetApex(), f.origin, kExactFit * std::max(1.0, c.dHigh)));
    }
}

// Towards a cylinder the angle goes to 0 and the apex away: a start whose angle steps below 0 is
// dropped, and the others settle on some cone or none is left (211). 1e-12 degrees short of a
// plane the points lie within the tolerance of one (204). Either way the fit ends.
TEST(ConeFit, ConesDegeneratingTowardsACylinderOrAPlaneEndWithinTheLimit) {
    test::Random rng;
    CNuConSurf cone(45.0);
    for (int nSet = 0; nSet < 20; ++nSet) {
        CNuPointArray cylinder;
        for (int i = 0; i < 40; ++i) {
            double t = rng.Uniform(0.0, 2.0 * M_PI);
            cylinder.Add(CNuPoint(5.0 * std::cos(t), 5.0 * std::sin(t), rng.Uniform(0.0, 10.0)));
        }
        EXPECT_NE(cone.FitEx(cylinder, kIterations), eNuFitNotConverged) << "set " << nSet;
    }
    const test::Frame f{CNuPoint(), CNuVector(1, 0, 0), CNuVector(0, 1, 0), CNuVector(0, 0, 1)};
    const double dFlat = 90.0 - 1e-12, dLow = 1.0 / std::tan(dFlat * M_PI / 180.0);
    CNuPointArray flat = ConePoints(rng, f, dFlat, 1, 30, dLow, 10.0 * dLow, 6.0, 0.0);
    test::ExpectNuFailure<CNuBestfitException>([&] { cone.Fit(flat, kIterations); }, 204, nullptr,
                                               "CNuConSurf", 4);
}

TEST(ConeFit, AgreesWithAnIndependentFitOnRandomMeasuredConesAndCountsItsLimit) {
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
        CNuPointArray points = ConePoints(rng, f, c.dDegrees, 1, 40, 10.0, 30.0,
                                          2.0 * M_PI * c.dCoverage, 2e-3);
        CNuConSurf cone(45.0);
        ASSERT_NO_THROW(cone.Fit(points, kIterations));
        const Eigen::Vector3d z(f.z[0], f.z[1], f.z[2]), o(f.origin.x(), f.origin.y(), f.origin.z());
        const double alpha = c.dDegrees * M_PI / 180.0;
        const oracle::SCone e =
            oracle::FitCone(test::Rows(points), {o + 20.0 * z, z, 20.0 * std::tan(alpha), alpha});
        const CNuPoint foot(e.point[0], e.point[1], e.point[2]);
        const CNuVector axis = cone.GetAxisDirection(), oracleAxis(e.axis[0], e.axis[1], e.axis[2]);
        EXPECT_LT(test::AxisAngle(axis, oracleAxis), kSameLeastSquares);
        EXPECT_LT(foot.DistanceTo(cone.GetAxis()), kSameLeastSquares);
        EXPECT_NEAR(((foot - cone.GetApex()).To3DVector() % axis) * std::tan(cone.GetSemiAngle() * M_PI / 180.0),
                    e.dRadius, kSameLeastSquares);
        EXPECT_NEAR(cone.GetSemiAngle(), std::min(e.dAngle, M_PI - e.dAngle) * 180.0 / M_PI,
                    kSameLeastSquares * 180.0 / M_PI);
        EXPECT_GT((oracleAxis % axis) * (e.dAngle < M_PI / 2.0 ? 1.0 : -1.0), 0.0) << "into the opening";
        if (c.dCoverage == 0.5) {
            test::ExpectLimitRule([&](long l) { cone.Fit(points, l); },
                                  [&](long l) { return cone.FitEx(points, l); }, 200, "CNuConSurf");
        }
    }
}

// ---- The minimum zone ----

// A cone as apex, unit axis into the opening and semi-angle in radians; the smallest and largest
// signed distance |w x a| cos(alpha) - (w . a) sin(alpha) of the points from it.
struct SConeShape {
    Eigen::Vector3d apex, axis;
    double dAngle;
};
SConeShape Shape(const CNuConSurf& c) {
    const CNuPoint p = c.GetApex();
    const CNuVector a = c.GetAxisDirection();
    return {{p.x(), p.y(), p.z()},
            Eigen::Vector3d(a[0], a[1], a[2]).normalized(),
            c.GetSemiAngle() * M_PI / 180.0};
}
std::pair<double, double> DistanceRange(const CNuPointArray& points, const SConeShape& c) {
    std::pair<double, double> range(1e300, -1e300);
    for (int i = 0; i < points.GetSize(); ++i) {
        const Eigen::Vector3d w =
            Eigen::Vector3d(points[i].x(), points[i].y(), points[i].z()) - c.apex;
        const double d =
            w.cross(c.axis).norm() * std::cos(c.dAngle) - w.dot(c.axis) * std::sin(c.dAngle);
        range = {std::min(range.first, d), std::max(range.second, d)};
    }
    return range;
}

constexpr double kZoneTol = 1e-9;
// Rounding of distances recomputed for points of size 30 up to 1e3 from the origin.
constexpr double kZoneRounding = 1e-9;
// How much thinner, relative to the zone, a perturbed cone may hold the points: the driver
// resolves 1e-9 of the half width, and near the optimum a move of r changes the zone by r^2.
constexpr double kZoneOptimality = 1e-7;

TEST(ConeZone, RefusesBadDataInOrderAndReportsFailuresInsideAsNotConverged) {
    const CNuPointArray five =
        test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}});
    const CNuPointArray flat =
        test::Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 3, 0}, {5, -1, 0}});
    CNuPointArray repeated = five, bad = five, bent = flat;
    repeated.Append(five.SubArray(0, 1));
    bad.Add(CNuPoint(0, 0, std::nan("")));
    bent.Add(CNuPoint(3, 3, 1e-13));  // coplanar for the start's length tolerance 1e-12, not for 0
    test::Random rng;
    const CNuPointArray measured =
        ConePoints(rng, test::RandomFrame(rng), 30.0, 1, 40, 5.0, 20.0, 6.0, 1e-3);
    CNuConSurf c(30.0);
    double dZone = -1.0;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { c.FitMinZone(bad, &dZone, kZoneTol, 0); }, 213, nullptr, "CNuConSurf"},
        {[&] { c.FitMinZoneEx(bad, &dZone, nullptr, nullptr, kZoneTol, -1); }, 213, nullptr,
         "CNuConSurf"},
        {[&] { c.FitMinZone(bad, &dZone, kZoneTol, 10); }, 214, nullptr, "CNuConSurf", 5},
        {[&] { c.FitMinZone(five, &dZone, std::nan(""), 10); }, 211, nullptr, "CNuConSurf"},
        {[&] { c.FitMinZone(five, &dZone, kZoneTol, 10); }, 201, nullptr, "CNuConSurf", 6},
        {[&] { c.FitMinZone(flat, &dZone, kZoneTol, 10); }, 204, nullptr, "CNuConSurf", 4},
        {[&] { c.FitMinZone(repeated, &dZone, kZoneTol, 10); }, 202, nullptr, "CNuConSurf", 6},
        {[&] { c.FitMinZone(bent, &dZone, 0.0, 10); }, 212, nullptr, "CNuConSurf"},
        {[&] { c.FitMinZone(measured, &dZone, kZoneTol, 1); }, 212, nullptr, "CNuConSurf"},
    });
    const double dSaved = NuGetLengthTol();
    EXPECT_EQ(
        std::vector<double>({dZone, double(c.FitMinZoneEx(measured, &dZone, kZoneTol, 1)),
                             double(c.FitMinZoneEx(flat, &dZone, kZoneTol, 10)), NuGetLengthTol()}),
        std::vector<double>({-1.0, double(eNuFitNotConverged), double(eNuFitFailed), dSaved}));
}

// Rows with a tolerance above the least-squares form are that cone with zone 0 and no driver.
TEST(ConeZone, HoldsEveryPointNoWiderThanLeastSquaresAndNoNearbyConeIsThinner) {
    const struct {
        double dDegrees, dCoverage, dDistance, dNoise;
        int n;
        bool bWithinTolerance;
    } cases[] = {{3.0, 1.0, 0.0, 1e-3, 40, false},   {30.0, 0.25, 1e3, 1e-3, 40, false},
                 {60.0, 0.5, 1e2, 1e-2, 30, false},  {80.0, 1.0, 1e3, 1e-3, 60, false},
                 {20.0, 1.0, 0.0, 1e-4, 300, false}, {45.0, 0.5, 0.0, 5e-2, 12, false},
                 {3.0, 0.7, 1e2, 1e-4, 30, true},    {75.0, 0.7, 1e2, 1e-4, 30, true}};
    test::Random rng;
    for (const auto& c : cases) {
        for (int trial = 0; trial < 3; ++trial) {
            SCOPED_TRACE(testing::Message() << c.dDegrees << " degrees, coverage " << c.dCoverage
                                            << ", " << c.dDistance << " from the origin, noise "
                                            << c.dNoise << ", trial " << trial);
            test::Frame f = test::RandomFrame(rng);
            CNuVector shift = test::RandomDirection(rng);
            shift.Normalise();
            f.origin = f.origin + (shift * c.dDistance).To3DPoint();
            const CNuPointArray points = ConePoints(rng, f, c.dDegrees, 1, c.n, 10.0, 30.0,
                                                    2.0 * M_PI * c.dCoverage, c.dNoise);
            CNuConSurf ls(45.0), zone(45.0), inner(10.0), outer(10.0);
            double dForm = 0.0, dSum = 0.0, dZone = -1.0;
            ls.Fit(points, &dForm, &dSum, kIterations);
            const double dTol = c.bWithinTolerance ? 1.01 * dForm : kZoneTol;
            ASSERT_EQ(zone.FitMinZoneEx(points, &dZone, &inner, &outer, dTol, kIterations),
                      eNuFitOk);
            if (c.bWithinTolerance) {
                EXPECT_EQ(std::vector<double>({dZone, zone.GetSemiAngle(), inner.GetApex().x(),
                                               outer.GetApex().y()}),
                          std::vector<double>(
                              {0.0, ls.GetSemiAngle(), ls.GetApex().x(), ls.GetApex().y()}));
                continue;
            }
            // The bounding cones, half the zone off the fitted one, hold the points between them.
            EXPECT_LE(dZone, dForm + kZoneRounding);
            EXPECT_LE(DistanceRange(points, Shape(outer)).second, kZoneRounding) << "outside";
            EXPECT_GE(DistanceRange(points, Shape(inner)).first, -kZoneRounding) << "inside";
            // Apex, axis and angle moved by up to the zone (over the data's size 30 for angles).
            auto jitter = [&] {
                return Eigen::Vector3d(rng.Uniform(-1, 1), rng.Uniform(-1, 1), rng.Uniform(-1, 1));
            };
            double dThinnest = 1e300;
            for (int k = 0; k < 150; ++k) {
                const double s = dZone * std::pow(10.0, -(k % 3));
                SConeShape moved = Shape(zone);
                moved.apex += s * jitter();
                moved.axis = (moved.axis + s / 30.0 * jitter()).normalized();
                moved.dAngle += s / 30.0 * rng.Uniform(-1, 1);
                const auto r = DistanceRange(points, moved);
                dThinnest = std::min(dThinnest, r.second - r.first);
            }
            EXPECT_GE(dThinnest, dZone * (1.0 - kZoneOptimality) - kZoneRounding);
        }
    }
}

// PTB's least-squares cones b26-b37 (3 to 87 degrees, 10 to 48 points) as measured data: each
// zone lies between bounding cones that hold all points and is narrower than the form error.
TEST(ConeZone, PtbConesHaveZonesBetweenTheirBoundingConesNarrowerThanTheirForm) {
    if (test::RefDataDir().empty()) GTEST_SKIP() << "NUMORIX_REFDATA not set: no PTB data";
    for (int k = 26; k <= 37; ++k) {
        const std::string id = "b" + std::to_string(k);
        CNuPointArray points;
        std::vector<double> a;
        if (!test::ReadTracimSet("ptb-tracim-gauss", id, 8, &points, &a))
            GTEST_SKIP() << "PTB set " << id << " absent from " << test::RefDataDir();
        CNuConSurf ls(45.0), zone(45.0), inner(10.0), outer(10.0);
        double dForm = 0.0, dSum = 0.0, dZone = -1.0;
        ls.Fit(points, &dForm, &dSum, kIterations);
        ASSERT_EQ(zone.FitMinZoneEx(points, &dZone, &inner, &outer, kZoneTol, kIterations),
                  eNuFitOk)
            << id;
        EXPECT_LT(dZone, dForm) << id;
        EXPECT_LE(DistanceRange(points, Shape(outer)).second, kZoneRounding) << id << " outside";
        EXPECT_GE(DistanceRange(points, Shape(inner)).first, -kZoneRounding) << id << " inside";
    }
}

}  // namespace
}  // namespace numorix
