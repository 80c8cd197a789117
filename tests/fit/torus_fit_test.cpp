// The minimum circumscribed torus (the thinnest tube about a circle in space holding all points)
// and the circle zone of points in space, which is that tube. Distances from a circle are
// recomputed here in Eigen by the cross product, independently of the fit's own formula.
#include <gtest/gtest.h>

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <string>

#include "geometry_support.h"
#include "nu_test.h"
#include "numorix/curves/circle.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/surfaces/tor_surf.h"

namespace numorix {
namespace {

constexpr double kPi = 3.14159265358979323846;
// The fits' tolerance relative to the radius, and their iteration limit.
constexpr double kTol = 1e-9;
constexpr long kLimit = 1000;
// Rounding of distances recomputed for data of size 100 some 1000 from the origin, relative to
// the radius.
constexpr double kRounding = 1e-10;
// How much thinner, relative to the radius, a perturbed circle's tube may be than the fitted
// one: the driver's resolution is 5e-9 of the radius, its last steps go far below that.
constexpr double kOptimality = 1e-9;

struct SCircle {
    Eigen::Vector3d c, n;
    double R;
};
Eigen::Vector3d E(const CNuPoint& p) { return {p.x(), p.y(), p.z()}; }
Eigen::Vector3d E(const CNuVector& v) { return {v[0], v[1], v[2]}; }

// Largest distance of the points from a circle: sqrt((|w x n| - R)^2 + (w . n)^2).
double Reach(const CNuPointArray& points, const SCircle& s) {
    double dFar = 0.0;
    for (int i = 0; i < points.GetSize(); ++i) {
        Eigen::Vector3d w = E(points[i]) - s.c, n = s.n.normalized();
        dFar = std::max(dFar, std::hypot(w.cross(n).norm() - s.R, w.dot(n)));
    }
    return dFar;
}

// n points of a circle of radius R in a random frame some 1000 from the origin, over an arc,
// with uniform noise across the circle in its plane and out of it.
CNuPointArray NoisyCircle(test::Random& random, int n, double R, double dArc, double dIn,
                          double dOut) {
    test::Frame f = test::RandomFrame(random);
    f.origin = f.origin + CNuPoint(random.Uniform(-1e3, 1e3), random.Uniform(-1e3, 1e3), 700.0);
    CNuPointArray points;
    for (int i = 0; i < n; ++i) {
        const double a = random.Uniform(0.0, dArc), r = R + random.Uniform(-dIn, dIn);
        points.Add(f.World(r * std::cos(a), r * std::sin(a), random.Uniform(-dOut, dOut)));
    }
    return points;
}

TEST(TorusFit, RefusesBadDataWithTheCausesOfTheFrame) {
    CNuTorSurf torus(1.0, 1.0);
    const CNuPointArray kTwo = test::Points({{0, 0, 0}, {1, 0, 0}});
    const CNuPointArray kLine = test::Points({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}});
    const CNuPointArray kNaN = test::Points({{0, 0, 0}, {1, 0, 0}, {0, std::nan(""), 0}});
    test::ExpectFailures<CNuBestfitException>({
        {[&] { torus.FitMin(kLine, kTol, 0); }, 213, nullptr, "CNuTorSurf"},
        {[&] { torus.FitMinEx(kLine, kTol, -1); }, 213, nullptr, "CNuTorSurf"},
        {[&] { torus.FitMin(kNaN, kTol, 10); }, 214, nullptr, "CNuTorSurf", 2},
        {[&] { torus.FitMin(kLine, std::nan(""), 10); }, 211, nullptr, "CNuTorSurf"},
        {[&] { torus.FitMin(kTwo, kTol, 10); }, 201, nullptr, "CNuTorSurf", 3},
        {[&] { torus.FitMin(kLine, kTol, 10); }, 203, nullptr, "CNuTorSurf", 3},
    });
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuTorSurf(0.0, 1.0); }, 5, "major radius", "CNuTorSurf"},
        {[] { CNuTorSurf(2.0, -1.0); }, 5, "minor radius", "CNuTorSurf"},
    });
    // The Ex form fails without throwing and gives back the length tolerance it found.
    const double dSaved = NuGetLengthTol();
    EXPECT_EQ(torus.FitMinEx(kLine, 0.25, 10), eNuFitFailed);
    EXPECT_EQ(NuGetLengthTol(), dSaved);
}

TEST(TorusFit, PointsOnACircleGiveMinorRadiusZeroAndTheLeastSquaresCircle) {
    test::Random random;
    for (int n = 3; n < 13; ++n) {
        const double R = random.Uniform(1.0, 100.0);
        CNuPointArray points = NoisyCircle(random, n, R, 2.0 * kPi, 0.0, 0.0);
        CNuTorSurf torus(1.0, 1.0);
        torus.FitMin(points, kTol * R, kLimit);
        CNuCircle circle(1.0);
        circle.Fit(points, kLimit);
        EXPECT_EQ(torus.GetMinorRadius(), 0.0) << n << " points";
        EXPECT_EQ(torus.GetMajorRadius(), circle.GetRadius()) << n << " points";
        EXPECT_TRUE(test::PointsNear(torus.GetCentre(), circle.GetCentre(), 0.0));
    }
}

TEST(TorusFit, ASaddleRingRoundInItsPlaneIsATubeNotACircle) {
    // (R cos t, R sin t, s cos 2t): the least-squares circle fits the projections exactly (form
    // error 0) while the points leave its plane by s; the thinnest tube has the minor radius s.
    for (double s : {1e-3, 0.1, 2.0}) {
        CNuPointArray points;
        for (int i = 0; i < 24; ++i) {
            const double t = 2.0 * kPi * i / 24.0;
            points.Add(CNuPoint(10.0 * std::cos(t) + 500.0, 10.0 * std::sin(t), s * std::cos(2 * t)));
        }
        CNuCircle circle(1.0);
        double dZone = 0.0;
        circle.FitMinZone(points, &dZone, kTol, kLimit);
        EXPECT_NEAR(dZone, 2.0 * s, 10.0 * kRounding) << "s " << s;
        EXPECT_NEAR(circle.GetRadius(), 10.0, 10.0 * kRounding) << "s " << s;
    }
}

TEST(TorusFit, TheTubeHoldsEveryPointAndNoNearbyCircleGivesAThinnerOne) {
    struct SKind {
        const char* pszName;
        double dArc, dIn, dOut;  // radians covered; noise in and out of plane, relative to R
        int n;
    } const kinds[] = {
        {"full circle", 2.0 * kPi, 1e-3, 1e-3, 40},   {"out of plane", 2.0 * kPi, 0.0, 1e-2, 30},
        {"few points", 2.0 * kPi, 1e-2, 1e-2, 8},     {"three quarters", 1.5 * kPi, 1e-3, 2e-3, 50},
        {"many points", 2.0 * kPi, 1e-4, 1e-4, 500},
    };
    test::Random random;
    for (const SKind& kind : kinds) {
        for (int trial = 0; trial < 8; ++trial) {
            const double R = random.Uniform(5.0, 100.0);
            SCOPED_TRACE(std::string(kind.pszName) + ", trial " + std::to_string(trial));
            CNuPointArray points =
                NoisyCircle(random, kind.n, R, kind.dArc, kind.dIn * R, kind.dOut * R);
            CNuTorSurf torus(1.0, 1.0);
            ASSERT_EQ(torus.FitMinEx(points, kTol * R, kLimit), eNuFitOk);
            const SCircle fitted{E(torus.GetCentre()), E(torus.GetAxisDirection()),
                                 torus.GetMajorRadius()};
            const double r = torus.GetMinorRadius();
            EXPECT_LE(Reach(points, fitted), r + kRounding * R);
            CNuCircle lsq(1.0);
            lsq.Fit(points, kLimit);
            EXPECT_LE(r, Reach(points, {E(lsq.GetCentre()), E(lsq.GetNormal()), lsq.GetRadius()}) +
                             kRounding * R);
            // Moving the centre, the axis and the radius by the tube's size and less never holds
            // the points in a thinner tube.
            Eigen::Vector3d u = fitted.n.unitOrthogonal(), v = fitted.n.cross(u);
            for (int k = 0; k < 120; ++k) {
                const double s = r * std::pow(10.0, -(k % 3));
                SCircle moved = fitted;
                moved.c += s * Eigen::Vector3d(random.Uniform(-1, 1), random.Uniform(-1, 1),
                                               random.Uniform(-1, 1));
                moved.n += (s / R) * (random.Uniform(-1, 1) * u + random.Uniform(-1, 1) * v);
                moved.R += s * random.Uniform(-1, 1);
                EXPECT_GE(Reach(points, moved), r - kOptimality * R) << "move by " << s;
            }
            // The circle zone of the same points is this tube; it has no pair of circles.
            CNuCircle zone(1.0);
            double dZone = 0.0;
            zone.FitMinZone(points, &dZone, kTol * R, kLimit);
            EXPECT_EQ(zone.GetRadius(), torus.GetMajorRadius());
            EXPECT_EQ(dZone, 2.0 * r);
            test::ExpectFailures<CNuBestfitException>({
                {[&] { zone.FitMinZone(points, &dZone, &zone, &zone, kTol * R, kLimit); }, 205,
                 nullptr, "CNuCircle"},
            });
        }
    }
}

}  // namespace
}  // namespace numorix
