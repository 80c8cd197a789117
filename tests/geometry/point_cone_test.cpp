// A point against a cone (both nappes): the projection lies on the cone, the segment to it is
// normal to the generator through it, and no point sampled on the cone is nearer; in front of
// the apex the distance is that of the foot; the side follows r against h tan(alpha).
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

// h along the axis from the apex and |r - |h| tan(alpha)| cos(alpha), zero on either nappe.
double Height(const CNuConSurf& cone, const CNuPoint& p) {
    return (p - cone.GetApex()).To3DVector() % cone.GetAxisDirection();
}
double OffCone(const CNuConSurf& cone, const CNuPoint& p) {
    double r = ((p - cone.GetApex()).To3DVector() * cone.GetAxisDirection()).Magnitude();
    double alpha = cone.GetSemiAngle() * M_PI / 180.0;
    return std::fabs(r - std::fabs(Height(cone, p)) * std::tan(alpha)) * std::cos(alpha);
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

// Points in front of the apex outside and inside, behind it, beside it (as near to both
// nappes: two feet), on the axis on either side (a circle of feet, one given) and on the cone.
TEST(PointOnCone, ProjectionLiesOnTheConeAlongItsNormalAndIsNearest) {
    test::Random rng;
    const struct {
        double dDegrees, x, y, z;
        int nFeet;
    } cases[] = {{30.0, 6.0, 1.0, 4.0, 1},  {30.0, 0.5, 0.2, 7.0, 1}, {60.0, 3.0, -2.0, -5.0, 1},
                 {20.0, 2.0, 3.0, -0.5, 1}, {45.0, 4.0, 1.0, 0.0, 2}, {75.0, 0.0, 0.0, 6.0, 1},
                 {30.0, 0.0, 0.0, -8.0, 1}, {10.0, 0.7053, 0.0, 4.0, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "(" << c.x << ", " << c.y << ", " << c.z << "), "
                                        << c.dDegrees << " degrees");
        test::Frame f = test::RandomFrame(rng);
        CNuConSurf cone(c.dDegrees, f.origin, f.z);
        CNuPoint p = f.World(c.x, c.y, c.z), foot = p.ProjectionOn(cone);
        double d = p.DistanceTo(foot), alpha = c.dDegrees * M_PI / 180.0;
        EXPECT_LT(OffCone(cone, foot), kOnCone) << test::Text(foot);
        CNuVector generator = (foot - cone.GetApex()).To3DVector(), segment = (p - foot).To3DVector();
        EXPECT_LT(std::fabs(generator % segment), kOnCone * 10.0 * generator.Magnitude());
        // Samples every degree round the axis and every 1e-2 along the generators of both
        // nappes: each lies on the cone, so none is nearer than the foot but by rounding.
        double dSampled = 1e300;
        for (int k = 0; k < 360; ++k)
            for (double l = -20.0; l <= 20.0; l += 1e-2)
                dSampled = std::min(dSampled, p.DistanceTo(f.World(
                    std::fabs(l) * std::sin(alpha) * std::cos(k * M_PI / 180.0),
                    std::fabs(l) * std::sin(alpha) * std::sin(k * M_PI / 180.0), l * std::cos(alpha))));
        EXPECT_GE(dSampled, d - kOnCone);
        std::vector<CNuPoint> feet = Feet(p, cone);
        ASSERT_EQ(feet.size(), std::size_t(c.nFeet));
        for (const CNuPoint& q : feet) {
            EXPECT_LT(OffCone(cone, q), kOnCone) << test::Text(q);
            EXPECT_NEAR(p.DistanceTo(q), d, kOnCone) << test::Text(q);
        }
        EXPECT_NEAR(c.x == 0.0 ? std::fabs(c.z) * std::sin(alpha) : d, d, kOnCone) << "on the axis";
        // The distance measures r as sqrt(w . w - h^2), which keeps sqrt(eps) |w| on the axis.
        if (Height(cone, p) > 0.0 && c.x != 0.0) {
            EXPECT_NEAR(p.DistanceTo(static_cast<const CNuSurface&>(cone)), d, kOnCone);
        }
    }
}

TEST(PointOnCone, SurfaceSideIsInsideWithinTheOpeningAndOnWithinTheTolerance) {
    const test::Frame f{CNuPoint(-4, 0, 1), CNuVector(0, 1, 0), CNuVector(0, 0, 1), CNuVector(1, 0, 0)};
    CNuConSurf cone(45.0, f.origin, f.z);
    const struct {
        double x, z, dTol;
        CNuGeometry::ESurfaceSideType eSide;
    } rows[] = {{1.0, 5.0, 1e-9, CNuGeometry::eSurfaceSideInner},
                {6.0, 5.0, 1e-9, CNuGeometry::eSurfaceSideOuter},
                {5.0, 5.0 + 1e-3, 1e-2, CNuGeometry::eSurfaceSideOn},
                {5.0, 5.0 + 1e-3, 1e-4, CNuGeometry::eSurfaceSideInner},
                {1.0, -5.0, 1e-9, CNuGeometry::eSurfaceSideOuter}};
    for (const auto& r : rows)
        EXPECT_EQ(f.World(r.x, 0.0, r.z).SurfaceSide(cone, r.dTol), r.eSide)
            << "(" << r.x << ", 0, " << r.z << ") tolerance " << r.dTol;
}

}  // namespace
}  // namespace numorix
