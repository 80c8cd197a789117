// Chebyshev cylinder fits and the line zone in space. What is refused and how; exact answers on
// degenerate sets; the least-squares cylinder where it already is the zone. (Random cylinders
// against independent answers: cylinder_oracle_test.cpp.)
#include <algorithm>
#include <cmath>
#include <string>

#include "fit_test_support.h"
#include "geometry_support.h"
#include "numorix/geometry/line.h"
#include "numorix/surfaces/cyl_surf.h"

namespace numorix {
namespace {

constexpr double kPi = 3.14159265358979323846;
// The fits' own tolerance in these tests, mm.
constexpr double kTol = 1e-9;
// Distances from an axis recomputed here by another formula: rounding of data of order 10.
constexpr double kRounding = 1e-9;
// Iteration limit of the fits on random cylinders: the least-squares start tries all three
// quadric axes, and one far from the true axis can take some thousand Gauss-Newton steps.
constexpr long kLimit = 100000;

// Nearest and farthest distance of the points from the cylinder's axis.
std::pair<double, double> Reach(const CNuPointArray& points, const CNuCylSurf& c) {
    double dNear = 1e300, dFar = 0.0;
    for (int i = 0; i < points.GetSize(); ++i) {
        double d = ((points[i] - c.GetAxisPoint()).To3DVector() * c.GetAxisDirection()).Magnitude();
        dNear = std::min(dNear, d);
        dFar = std::max(dFar, d);
    }
    return {dNear, dFar};
}

// n points on a cylinder of radius dRadius and length dLength about the z axis of a random frame
// offset by dOffset, over dArc degrees of its circumference, with a three-lobed form of relative
// amplitude dLobes and uniform noise of relative amplitude dNoise.
CNuPointArray Cylinder(test::Random& rng, int n, double dRadius, double dLength, double dArc,
                       double dOffset, double dLobes, double dNoise) {
    test::Frame f = test::RandomFrame(rng);
    f.origin = CNuPoint(f.origin.x() + dOffset, f.origin.y() - dOffset, f.origin.z() + dOffset);
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = rng.Uniform(0.0, dArc) * kPi / 180.0;
        double r = dRadius * (1.0 + dLobes * std::cos(3.0 * t) + rng.Uniform(-dNoise, dNoise));
        points.Add(f.World(r * std::cos(t), r * std::sin(t), rng.Uniform(0.0, dLength)));
    }
    return points;
}

TEST(CylinderZone, RefusesWhatHasNoCylinderWithTheCauseAndLocationOfTheFit) {
    CNuCylSurf c(1.0);
    double dZone = 0.0;
    const CNuPointArray kNone, kNaN = test::Points({{0, 0, 0}, {1, std::nan(""), 0}});
    const CNuPointArray kTetra = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    const CNuPointArray kSquare =
        test::Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5, 0.2, 0}, {0.3, 0.6, 0}});
    CNuPointArray kPrism;  // corners of a long square prism, on a cylinder
    for (int k = 0; k < 8; ++k)
        kPrism.Add(CNuPoint(2.0 + (k & 1), -1.0 + ((k >> 1) & 1), 5.0 * (k >> 2)));
    CNuLine line;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { c.FitMinZoneEx(kTetra, &dZone, kTol, 0); }, 213, nullptr, "CNuCylSurf"},
        {[&] { c.FitMinZoneEx(kTetra, &dZone, &c, &c, kTol, 0); }, 213, nullptr, "CNuCylSurf"},
        {[&] { c.FitMinEx(kTetra, kTol, 0); }, 213, nullptr, "CNuCylSurf"},
        {[&] { c.FitMaxEx(kTetra, kTol, -1); }, 213, nullptr, "CNuCylSurf"},
        {[&] { c.FitMinZone(kNone, &dZone, kTol, 5); }, 201, nullptr, "CNuCylSurf", 1},
        {[&] { c.FitMin(kNone, kTol, 5); }, 201, nullptr, "CNuCylSurf", 1},
        {[&] { c.FitMax(kNone, kTol, 5); }, 201, nullptr, "CNuCylSurf", 1},
        {[&] { c.FitMin(kNaN, kTol, 5); }, 214, nullptr, "CNuCylSurf", 1},
        {[&] { c.FitMax(kTetra, std::nan(""), 5); }, 211, nullptr, "CNuCylSurf"},
        // Four points in space have no least-squares start: 201 carrying 5 inside, which the
        // zone fit reports as not converged and FitMin as it is.
        {[&] { c.FitMinZone(kTetra, &dZone, kTol, 50); }, 212, nullptr, "CNuCylSurf"},
        {[&] { c.FitMin(kTetra, kTol, 50); }, 201, nullptr, "CNuCylSurf", 5},
        // Coplanar points: 204 inside, not converged for the circumscribed cylinder.
        {[&] { c.FitMin(kSquare, kTol, 50); }, 212, nullptr, "CNuCylSurf"},
        {[&] { line.FitMinZone(kTetra, &dZone, kTol, 50); }, 201, nullptr, "CNuCylSurf", 5},
        // Points in space have a zone, but no pair of lines bounds them.
        {[&] { line.FitMinZone(kPrism, &dZone, &line, &line, kTol, kLimit); }, 205, nullptr,
         "CNuLine"},
    });
    EXPECT_EQ(line.FitMinZoneEx(kPrism, &dZone, kTol, kLimit), eNuFitOk);
    EXPECT_NEAR(dZone, std::sqrt(2.0), kRounding) << "the prism's diagonal";
    EXPECT_EQ(c.FitMinZoneEx(kTetra, &dZone, kTol, 50), eNuFitNotConverged);
    EXPECT_EQ(c.FitMinEx(kNaN, kTol, 50), eNuFitFailed);
}

TEST(CylinderZone, DegenerateSetsGiveRadiusZeroOrTheInscribedCircleOfCoplanarPoints) {
    const CNuPointArray kOne = test::Points({{1, 2, 3}});
    const CNuPointArray kSame = test::Points({{1, 2, 3}, {1, 2, 3}, {1, 2, 3}});
    const CNuPointArray kLine = test::Points({{1, 2, 3}, {2, 4, 5}, {3, 6, 7}, {4, 8, 9}});
    for (const CNuPointArray* p : {&kOne, &kSame, &kLine}) {
        for (int nFit = 0; nFit < 3; ++nFit) {
            SCOPED_TRACE("set of " + std::to_string(p->GetSize()) + ", fit " +
                         std::to_string(nFit));
            CNuCylSurf c(5.0);
            double dZone = -1.0;
            if (nFit == 0) c.FitMinZone(*p, &dZone, kTol, 20);
            if (nFit == 1) c.FitMin(*p, kTol, 20);
            if (nFit == 2) c.FitMax(*p, kTol, 20);
            EXPECT_EQ(c.GetRadius(), 0.0);
            if (nFit == 0) {
                EXPECT_EQ(dZone, 0.0);
            }
            EXPECT_LT(Reach(*p, c).second, test::kTight);
            if (p != &kLine) {
                EXPECT_TRUE(test::PointsNear(c.GetAxisPoint(), (*p)[0], test::kExact));
                EXPECT_EQ(c.GetAxisDirection()[2], 1.0);
            }
        }
    }
    CNuPointArray circle;  // on the circle of radius 2 about (1, -1, 4) in the plane z = 4
    for (int k = 0; k < 6; ++k)
        circle.Add(CNuPoint(1 + 2 * std::cos(k * 1.1), -1 + 2 * std::sin(k * 1.1), 4.0));
    CNuCylSurf c(1.0);
    c.FitMax(circle, kTol, 20);
    EXPECT_NEAR(c.GetRadius(), 2.0, kRounding);
    EXPECT_TRUE(test::PointsNear(c.GetAxisPoint(), CNuPoint(1, -1, 4), kRounding));
    EXPECT_NEAR(std::fabs(c.GetAxisDirection()[2]), 1.0, kRounding);
}

TEST(CylinderZone, PointsWithinTheToleranceOfACylinderHaveZoneZeroAndTheLeastSquaresCylinder) {
    test::Random rng;
    CNuPointArray points = Cylinder(rng, 40, 3.0, 10.0, 360.0, 5.0, 0.0, 1e-7);
    CNuCylSurf ls(1.0), zone(1.0);
    ASSERT_EQ(ls.FitEx(points, kLimit), eNuFitOk);
    double dZone = -1.0;
    zone.FitMinZone(points, &dZone, 1e-5, kLimit);
    EXPECT_EQ(dZone, 0.0);
    EXPECT_EQ(zone.GetRadius(), ls.GetRadius());
    EXPECT_TRUE(test::PointsNear(zone.GetAxisPoint(), ls.GetAxisPoint(), test::kExact));
}

// A patch 1e-3 wide 1e6 from the origin: every fit ends, and the circumscribed cylinder holds
// every point up to the rounding of coordinates of 1e6.
TEST(CylinderZone, EveryFitEndsOnATinyPatchFarFromTheOrigin) {
    test::Random rng;
    CNuPointArray p;
    for (int i = 0; i < 12; ++i)
        p.Add(CNuPoint(1e6 + rng.Uniform(0, 1e-3), 1e6 + rng.Uniform(0, 1e-3),
                       1e6 + rng.Uniform(0, 1e-3)));
    CNuCylSurf c(1.0);
    double dZone = -1.0;
    c.FitEx(p, kLimit);
    c.FitMinZoneEx(p, &dZone, kTol, kLimit);
    c.FitMaxEx(p, kTol, kLimit);
    ASSERT_EQ(c.FitMinEx(p, kTol, kLimit), eNuFitOk);
    EXPECT_LE(Reach(p, c).second, c.GetRadius() + 1e-9);
}

}  // namespace
}  // namespace numorix
