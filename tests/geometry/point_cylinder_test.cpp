// A point against a cylinder: the distance is |distance from the axis - r|, the projection lies on
// the cylinder straight out from the axis (a point on the axis goes out in some direction across
// it), and the side is inner within r.
#include <cmath>

#include "geometry_support.h"
#include "numorix/surfaces/cyl_surf.h"

namespace numorix {
namespace {

// Products and square roots of coordinates of size 10.
constexpr double kOnCylinder = 1e-12;

double FromAxis(const CNuCylSurf& c, const CNuPoint& p) {
    return ((p - c.GetAxisPoint()).To3DVector() * c.GetAxisDirection()).Magnitude();
}

// Points at local (x, 0, z) about a cylinder of radius 2 on a tilted axis: outside, inside, near
// the surface either side of a tolerance, and on the axis.
TEST(PointOnCylinder, DistanceProjectionAndSideFollowTheDistanceFromTheAxis) {
    test::Random rng;
    const test::Frame f = test::RandomFrame(rng);
    const CNuCylSurf cylinder(2.0, f.origin, f.z);
    const struct {
        double x, z, dTol;
        CNuGeometry::ESurfaceSideType eSide;
    } rows[] = {{5.0, 3.0, 1e-9, CNuGeometry::eSurfaceSideOuter},
                {0.5, -7.0, 1e-9, CNuGeometry::eSurfaceSideInner},
                {2.0 + 1e-3, 1.0, 1e-2, CNuGeometry::eSurfaceSideOn},
                {2.0 - 1e-3, 1.0, 1e-4, CNuGeometry::eSurfaceSideInner},
                {0.0, 4.0, 1e-9, CNuGeometry::eSurfaceSideInner}};
    for (const auto& r : rows) {
        SCOPED_TRACE("(" + std::to_string(r.x) + ", 0, " + std::to_string(r.z) + ")");
        const CNuPoint p = f.World(r.x, 0.0, r.z);
        EXPECT_NEAR(p.DistanceTo(cylinder), std::fabs(r.x - 2.0), kOnCylinder);
        const CNuPoint foot = p.ProjectionOn(cylinder);
        EXPECT_NEAR(FromAxis(cylinder, foot), 2.0, kOnCylinder);
        EXPECT_NEAR(p.DistanceTo(foot), std::fabs(r.x - 2.0), kOnCylinder);
        EXPECT_NEAR((foot - p).To3DVector() % f.z, 0.0, kOnCylinder) << "not across the axis";
        EXPECT_EQ(p.SurfaceSide(cylinder, r.dTol), r.eSide);
    }
}

}  // namespace
}  // namespace numorix
