// A point against a cone (both nappes): the projection lies on the cone, the segment to it is
// normal to the generator through it, and no point sampled on the cone is nearer; the distance
// is that of the foot wherever the point is in front of the apex; the side follows r against
// h tan(alpha).
#include <cmath>
#include <memory>
#include <vector>

#include "geometry_support.h"
#include "numorix/foundation/obj_array.h"
#include "numorix/surfaces/con_surf.h"

namespace numorix {
namespace {

// Products and square roots of coordinates of size 10.
constexpr double kOnCone = 1e-12;
// Every sample lies on the cone, so none may be nearer than the foot but by rounding.
constexpr double kSampled = 1e-12;

struct SLocal {  // a point seen from the cone: h along the axis, r across it
    double h, r;
};

SLocal Local(const CNuConSurf& cone, const CNuPoint& p) {
    CNuVector w = (p - cone.GetApex()).To3DVector(), a = cone.GetAxisDirection();
    return {w % a, (w * a).Magnitude()};
}

// |r - |h| tan(alpha)| cos(alpha): zero on either nappe.
double OffCone(const CNuConSurf& cone, const CNuPoint& p) {
    SLocal l = Local(cone, p);
    double alpha = cone.GetSemiAngle() * M_PI / 180.0;
    return std::fabs(l.r - std::fabs(l.h) * std::tan(alpha)) * std::cos(alpha);
}

// The least distance from p to points of the cone on a grid: angles round the axis in steps of
// 1 degree, distances along the generators of both nappes in steps of dStep up to dReach.
double SampledDistance(const CNuConSurf& cone, const test::Frame& f, const CNuPoint& p,
                       double dReach, double dStep) {
    double alpha = cone.GetSemiAngle() * M_PI / 180.0, dBest = 1e300;
    for (int k = 0; k < 360; ++k) {
        double phi = k * M_PI / 180.0;
        for (double sign : {1.0, -1.0})
            for (double l = 0.0; l <= dReach; l += dStep)
                dBest = std::min(dBest, p.DistanceTo(f.World(l * std::sin(alpha) * std::cos(phi),
                                                             l * std::sin(alpha) * std::sin(phi),
                                                             sign * l * std::cos(alpha))));
    }
    return dBest;
}

// The feet of ProjectionOnCone, copied out and freed.
std::vector<CNuPoint> Feet(const CNuPoint& p, CNuConSurf& cone) {
    CNuObjArray array = p.ProjectionOnCone(cone);
    std::vector<CNuPoint> feet;
    for (int i = 0; i < array.GetSize(); ++i) {
        std::unique_ptr<CNuPoint> owned(static_cast<CNuPoint*>(array[i]));
        feet.push_back(*owned);
    }
    return feet;
}

// Points in front of the apex outside and inside, behind it, in the plane of the apex, near the
// axis, and on the cone.
const struct SCase {
    double dDegrees, x, y, z;
    const char* pszWhere;
} kCases[] = {{30.0, 6.0, 1.0, 4.0, "outside"},        {30.0, 0.5, 0.2, 7.0, "inside"},
              {60.0, 3.0, -2.0, -5.0, "behind the apex"}, {20.0, 2.0, 3.0, -0.5, "behind, outside"},
              {45.0, 4.0, 1.0, 0.0, "beside the apex"},   {75.0, 1e-3, 0.0, 6.0, "near the axis"},
              {10.0, 0.7053, 0.0, 4.0, "near the cone"}};

TEST(PointOnCone, ProjectionLiesOnTheConeAlongItsNormalAndIsNearest) {
    test::Random rng;
    for (const SCase& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.pszWhere << ", " << c.dDegrees << " degrees");
        test::Frame f = test::RandomFrame(rng);
        CNuConSurf cone(c.dDegrees, f.origin, f.z);
        CNuPoint p = f.World(c.x, c.y, c.z);
        CNuPoint foot = p.ProjectionOn(cone);
        EXPECT_LT(OffCone(cone, foot), kOnCone) << test::Text(foot);
        // Normal: the segment is orthogonal to the generator from the apex through the foot.
        CNuVector generator = (foot - cone.GetApex()).To3DVector(), segment = (p - foot).To3DVector();
        EXPECT_LT(std::fabs(generator % segment), kOnCone * generator.Magnitude() * 10.0);
        double d = p.DistanceTo(foot);
        EXPECT_GE(SampledDistance(cone, f, p, 2.0 * p.DistanceTo(cone.GetApex()) + 1.0, 1e-2),
                  d - kSampled);
        // ProjectionOnCone finds the same foot first.
        std::vector<CNuPoint> feet = Feet(p, cone);
        ASSERT_FALSE(feet.empty());
        EXPECT_NEAR(p.DistanceTo(feet[0]), d, kOnCone);
        for (const CNuPoint& q : feet) EXPECT_LT(OffCone(cone, q), kOnCone) << test::Text(q);
        // In front of the apex the distance is that of the foot.
        if (Local(cone, p).h > 0.0) {
            EXPECT_NEAR(p.DistanceTo(static_cast<const CNuSurface&>(cone)), d, kOnCone);
        }
    }
}

TEST(PointOnCone, ProjectionOnConeGivesBothNappesBesideTheApexAndOneFootOnTheAxis) {
    const test::Frame f{CNuPoint(1, 2, 3), CNuVector(1, 0, 0), CNuVector(0, 1, 0), CNuVector(0, 0, 1)};
    CNuConSurf cone(30.0, f.origin, f.z);
    std::vector<CNuPoint> beside = Feet(f.World(3.0, 4.0, 0.0), cone);
    ASSERT_EQ(beside.size(), 2u) << "a point in the plane of the apex is as near to both nappes";
    EXPECT_NEAR(Local(cone, beside[0]).h, -Local(cone, beside[1]).h, kOnCone);
    // On the axis the feet form a circle at the distance |h| sin(alpha).
    for (double h : {8.0, -8.0}) {
        std::vector<CNuPoint> feet = Feet(f.World(0.0, 0.0, h), cone);
        ASSERT_EQ(feet.size(), 1u) << "h " << h;
        EXPECT_NEAR(feet[0].DistanceTo(f.World(0.0, 0.0, h)), 4.0, kOnCone) << "h " << h;
        EXPECT_LT(OffCone(cone, feet[0]), kOnCone);
        EXPECT_NEAR(f.World(0.0, 0.0, h).ProjectionOn(cone).DistanceTo(f.World(0.0, 0.0, h)), 4.0, kOnCone);
    }
    // A point on the cone is its own foot, and the apex is the apex.
    CNuPoint on = f.World(std::tan(M_PI / 6.0) * 5.0, 0.0, 5.0);
    EXPECT_TRUE(test::PointsNear(Feet(on, cone).at(0), on, kOnCone));
    EXPECT_TRUE(test::PointsNear(Feet(f.origin, cone).at(0), f.origin, kOnCone));
}

TEST(PointOnCone, SurfaceSideIsInsideWithinTheOpeningAndOnWithinTheTolerance) {
    const test::Frame f{CNuPoint(-4, 0, 1), CNuVector(0, 1, 0), CNuVector(0, 0, 1), CNuVector(1, 0, 0)};
    CNuConSurf cone(45.0, f.origin, f.z);
    const struct {
        double x, y, z, dTol;
        CNuGeometry::ESurfaceSideType eSide;
    } rows[] = {{1.0, 0.0, 5.0, 1e-9, CNuGeometry::eSurfaceSideInner},
                {6.0, 0.0, 5.0, 1e-9, CNuGeometry::eSurfaceSideOuter},
                {3.0, 4.0, 5.0, 1e-9, CNuGeometry::eSurfaceSideOn},
                {3.0, 4.0, 5.001, 1e-2, CNuGeometry::eSurfaceSideOn},
                {3.0, 4.0, 5.001, 1e-4, CNuGeometry::eSurfaceSideInner},
                {1.0, 0.0, -5.0, 1e-9, CNuGeometry::eSurfaceSideOuter}};
    for (const auto& r : rows)
        EXPECT_EQ(f.World(r.x, r.y, r.z).SurfaceSide(cone, r.dTol), r.eSide)
            << "(" << r.x << ", " << r.y << ", " << r.z << ") tolerance " << r.dTol;
}

}  // namespace
}  // namespace numorix
