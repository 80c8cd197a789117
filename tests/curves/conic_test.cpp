// Ellipses, hyperbolas and parabolas: the refused shapes and frames, point conversions that lie on
// the curve, intersections with lines through known points of the curve (secants, tangents,
// misses) and with planes, the sides of points, and invariance under the position model.
#include <cmath>

#include "geometry_support.h"
#include "numorix/curves/ellipse.h"
#include "numorix/curves/hyperbola.h"
#include "numorix/curves/parabola.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

using test::Frame;
using test::kCurve;
using test::PointsNear;
using Con = CNuConstructionException;
using Op = CNuOperationException;

// Both found points are the two expected ones, in either order.
::testing::AssertionResult SamePair(const CNuPoint& a, const CNuPoint& b, const CNuPoint& p,
                                    const CNuPoint& q, double dTol) {
    if ((test::Gap(a, p) <= dTol && test::Gap(b, q) <= dTol) ||
        (test::Gap(a, q) <= dTol && test::Gap(b, p) <= dTol)) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "found " << test::Text(a) << ", " << test::Text(b)
                                         << "; expected " << test::Text(p) << ", " << test::Text(q);
}

// Secants through two random points of the curve, local(s) in the frame f, give both; a line
// through one of them that leaves the plane gives that one; a plane through the secant gives both
// again; a parallel plane, and a parallel line off the plane whose shadow crosses the curve, none.
template <class Conic, class Local>
void CheckSecantsAndPiercings(const char* pszName, const Conic& conic, const Frame& f, Local local,
                              test::Random& rng, double dLow, double dHigh) {
    SCOPED_TRACE(pszName);
    CNuPoint a;
    CNuPoint b;
    for (int nTrial = 0; nTrial < 20; ++nTrial) {
        double s1 = rng.Uniform(dLow, dHigh);
        double s2 = rng.Uniform(dLow, dHigh);
        CNuPoint l1 = local(s1);
        CNuPoint l2 = local(s2);
        if (test::Gap(l1, l2) < 0.3) continue;
        CNuPoint w1 = f.World(l1.x(), l1.y());
        CNuPoint w2 = f.World(l2.x(), l2.y());
        ASSERT_EQ(conic.IntersectWith(CNuLine(w1, w2), &a, &b), 2) << "secant " << s1 << ", " << s2;
        EXPECT_TRUE(SamePair(a, b, w1, w2, kCurve));
        // Not steep: the roots are found in the plane's coordinates, so the height of a root is
        // only as good as that root times the slope.
        double dTurn = rng.Uniform(0.0, Nu_2PI);
        CNuVector leaving =
            f.x * std::cos(dTurn) + f.y * std::sin(dTurn) + f.z * rng.Uniform(0.2, 0.6);
        ASSERT_EQ(conic.IntersectWith(CNuLine(w1, leaving), &a, &b), 1);
        EXPECT_TRUE(PointsNear(a, w1, kCurve));
        CNuPlane plane(w1, (w2 - w1).To3DVector() * (f.z + f.y * rng.Uniform(-1.0, 1.0)));
        ASSERT_EQ(conic.IntersectWith(plane, &a, &b), 2);
        EXPECT_TRUE(SamePair(a, b, w1, w2, kCurve));
    }
    EXPECT_EQ(conic.IntersectWith(CNuPlane(f.World(0.0, 0.0, 1.0), f.z), &a, &b), 0);
    CNuPoint l = local(0.5 * (dLow + dHigh));
    EXPECT_EQ(conic.IntersectWith(CNuLine(f.World(l.x(), l.y(), 0.5), f.y), &a, &b), 0);
}

TEST(Conic, RefusesBadShapesFramesAndConversionsWithTheirCauses) {
    CNuPoint o;
    CNuVector z(0.0, 0.0, 1.0);
    test::ExpectFailures<Con>({
        {[] { CNuEllipse(2.0, 2.0); }, 7, "semi-axis", "CNuEllipse"},
        {[] { CNuEllipse(1.0, 2.0); }, 7, "semi-axis", "CNuEllipse"},
        {[] { CNuEllipse(2.0, 0.0); }, 5, "semi-axis", "CNuEllipse"},
        {[] { CNuHyperbola(-1.0, 2.0); }, 5, "semi-axis", "CNuHyperbola"},
        {[] { CNuParabola(0.0); }, 5, "focal-length", "CNuParabola"},
        {[&] { CNuEllipse(2.0, 1.0, o, CNuVector(4)); }, 4, "", "CNuEllipse"},
        {[&] { CNuHyperbola(2.0, 1.0, o, CNuVector(0.0, 0.0, 0.0)); }, 3, "", "CNuHyperbola"},
        {[&] { CNuParabola(1.0, o, z, CNuVector(4)); }, 4, "", "CNuParabola"},
        {[&] { CNuParabola(1.0, o, z, CNuVector(0.0, 0.0, 0.0)); }, 3, "", "CNuParabola"},
        {[&] { CNuEllipse(2.0, 1.0, o, z, CNuVector(1.0, 0.0, 0.01)); }, 8, "", "CNuEllipse"},
    });
    EXPECT_EQ(CNuHyperbola(1.0, 2.0).GetYRadius(), 2.0) << "a hyperbola's semi-axes have no order";

    CNuHyperbola hyperbola(2.0, 1.0);
    CNuParabola parabola(1.0);
    const char* pszH = "CNuHyperbola::ToPolyline/PointArray()";
    const char* pszP = "CNuParabola::ToPolyline/PointArray()";
    test::ExpectFailures<Op>({
        {[&] { hyperbola.ToPointArray(1, 2.0, 3.0, 0); }, 112, "conversion", pszH},
        {[&] { hyperbola.ToPointArray(5, 3.0, 3.0, 0); }, 115, "conversion", pszH},
        {[&] { hyperbola.ToPointArray(5, 1.9, 3.0, 0); }, 114, "conversion", pszH},
        {[&] { parabola.ToPointArray(0, 0.0, 1.0, 0); }, 112, "conversion", pszP},
        {[&] { parabola.ToPointArray(5, 1.0, 0.5, 0); }, 115, "conversion", pszP},
        {[&] { parabola.ToPointArray(5, -0.1, 1.0, 0); }, 114, "conversion", pszP},
        {[] { CNuEllipse(2.0, 1.0).ToPointArray(1); }, 112, "conversion",
         "CNuEllipse::ToPolyline/PointArray()"},
    });
    EXPECT_EQ(hyperbola.ToPointArray(2, 2.0, 3.0, 0).GetSize(), 2) << "the vertex is a valid bound";
}

TEST(Conic, IsUnpositionedUntilPlacedAndStoresItsAxesNormalised) {
    EXPECT_FALSE(CNuEllipse(2.0, 1.0).IsPositionSet());
    EXPECT_FALSE(CNuParabola(1.0).IsPositionSet());
    EXPECT_TRUE(CNuHyperbola(2.0, 1.0, CNuPoint(1, 2, 3)).IsPositionSet());
    CNuEllipse ellipse(3.0, 1.0, CNuPoint(1, 2, 3), CNuVector(0.0, 0.0, 2.0),
                       CNuVector(0.0, 5.0, 0.0));
    CNuPoint centre;
    CNuVector normal;
    CNuVector xAxis;
    ellipse.GetData(nullptr, nullptr, &centre, &normal, &xAxis);  // null outputs are skipped
    EXPECT_TRUE(PointsNear(centre, CNuPoint(1, 2, 3), 0.0));
    EXPECT_TRUE(PointsNear(normal.To3DPoint(), CNuPoint(0, 0, 1), 0.0));
    EXPECT_TRUE(PointsNear(xAxis.To3DPoint(), CNuPoint(0, 1, 0), 0.0));
    EXPECT_TRUE(PointsNear(ellipse.GetPlane().GetPoint(), centre, 0.0));
    // A normal alone gives some X axis in the plane, of unit length.
    CNuParabola parabola(1.0, CNuPoint(), CNuVector(1.0, 1.0, 1.0));
    EXPECT_NEAR(parabola.GetXaxis() % parabola.GetNormal(), 0.0, test::kTight);
    EXPECT_NEAR(parabola.GetXaxis().Magnitude(), 1.0, test::kTight);
}

TEST(Conic, ConvertsToPointsOnTheCurveInItsFrame) {
    test::Random rng;
    Frame f = test::RandomFrame(rng);
    const double a = 2.5;
    const double b = 1.5;
    CNuPointArray points = CNuEllipse(a, b, f.origin, f.z, f.x).ToPointArray(37);
    ASSERT_EQ(points.GetSize(), 37);
    EXPECT_TRUE(PointsNear(points[0], points[36], 0.0)) << "closes exactly";
    EXPECT_TRUE(PointsNear(points[9], f.World(0.0, b), kCurve)) << "a quarter turn";
    for (int i = 0; i < points.GetSize(); ++i) {
        CNuPoint l = f.Local(points[i]);
        EXPECT_NEAR(l.x() * l.x() / (a * a) + l.y() * l.y() / (b * b), 1.0, kCurve) << i;
        EXPECT_NEAR(l.z(), 0.0, kCurve);
    }

    CNuHyperbola hyperbola(a, b, f.origin, f.z, f.x);
    for (int nHalf = 0; nHalf < 2; ++nHalf) {
        CNuPointArray h = hyperbola.ToPointArray(11, 3.0, 7.0, nHalf);
        double dSign = nHalf == 0 ? 1.0 : -1.0;
        EXPECT_NEAR(f.Local(h[0]).x(), 3.0 * dSign, kCurve) << "starts at the low bound";
        EXPECT_NEAR(f.Local(h[10]).x(), 7.0 * dSign, kCurve) << "ends at the high bound";
        for (int i = 0; i < h.GetSize(); ++i) {
            CNuPoint l = f.Local(h[i]);
            EXPECT_NEAR(l.x() * l.x() / (a * a) - l.y() * l.y() / (b * b), 1.0, kCurve);
            EXPECT_GE(l.y(), -kCurve) << "the upper half";
        }
    }

    CNuParabola parabola(0.75, f.origin, f.z, f.x);
    CNuPointArray upper = parabola.ToPointArray(9, 0.0, 1.0, 1);
    CNuPointArray lower = parabola.ToPointArray(9, 0.0, 1.0, 0);
    EXPECT_TRUE(PointsNear(upper[0], f.origin, kCurve)) << "starts at the vertex";
    EXPECT_NEAR(f.Local(upper[8]).x(), 1.0, kCurve);
    for (int i = 0; i < 9; ++i) {
        CNuPoint l = f.Local(upper[i]);
        EXPECT_NEAR(l.y() * l.y(), 4.0 * 0.75 * l.x(), kCurve);
        EXPECT_NEAR(l.y(), 2.0 * 0.75 * std::sqrt(1.0 / 0.75) * i / 8.0, kCurve) << "even in y";
        EXPECT_NEAR(f.Local(lower[i]).y(), -l.y(), kCurve) << "nHalf 0 takes the lower half";
    }
}

TEST(Conic, MeetsSecantsInBothKnownPointsOnEveryBranchAndPlanesThroughThem) {
    test::Random rng;
    Frame f = test::RandomFrame(rng);
    CheckSecantsAndPiercings(
        "ellipse", CNuEllipse(3.0, 1.25, f.origin, f.z, f.x), f,
        [](double t) { return CNuPoint(3.0 * std::cos(t), 1.25 * std::sin(t)); }, rng, 0.0, Nu_2PI);
    f = test::RandomFrame(rng);
    // Parameters below -2 map to the left branch, the others to the right one.
    auto branches = [](double s) {
        double u = s < -2.0 ? s + 3.5 : s;
        return CNuPoint((s < -2.0 ? -1.0 : 1.0) * 1.5 * std::cosh(u), 2.0 * std::sinh(u));
    };
    CheckSecantsAndPiercings("hyperbola", CNuHyperbola(1.5, 2.0, f.origin, f.z, f.x), f, branches,
                             rng, -5.0, 1.5);
    f = test::RandomFrame(rng);
    CheckSecantsAndPiercings(
        "parabola", CNuParabola(0.5, f.origin, f.z, f.x), f,
        [](double s) { return CNuPoint(0.5 * s * s, 2.0 * 0.5 * s); }, rng, -2.5, 2.5);
}

TEST(Conic, TangentAndAxisParallelLinesGiveOnePointAndMissingLinesNone) {
    // Each case: the line through p along d, how many points it meets, and the first of them.
    auto check = [](const auto& conic, CNuPoint p, CNuVector d, int nCount, CNuPoint first) {
        CNuPoint a;
        CNuPoint b(7, 7, 7);
        ASSERT_EQ(conic.IntersectWith(CNuLine(p, d), &a, &b), nCount) << test::Text(p);
        if (nCount == 1) {
            EXPECT_TRUE(PointsNear(a, first, kCurve));
            EXPECT_TRUE(PointsNear(b, CNuPoint(7, 7, 7), 0.0)) << "the second point is not written";
        }
    };
    CNuEllipse ellipse(2.0, 1.0, CNuPoint(1.0, -2.0, 0.5));
    check(ellipse, CNuPoint(5, -1, 0.5), CNuVector(1, 0, 0), 1, CNuPoint(1.0, -1.0, 0.5));
    check(ellipse, CNuPoint(3, 0, 0.5), CNuVector(0, 1, 0), 1, CNuPoint(3.0, -2.0, 0.5));
    check(ellipse, CNuPoint(5, 0, 0.5), CNuVector(1, -1, 0), 0, CNuPoint());
    CNuHyperbola hyperbola(1.0, 1.0);
    check(hyperbola, CNuPoint(1, 5, 0), CNuVector(0, 1, 0), 1, CNuPoint(1, 0, 0));
    check(hyperbola, CNuPoint(0, 5, 0), CNuVector(1, 0, 1), 0, CNuPoint());
    CNuParabola parabola(1.0);
    check(parabola, CNuPoint(0, 3, 0), CNuVector(0, 1, 0), 1, CNuPoint(0, 0, 0));  // the vertex
    check(parabola, CNuPoint(-1, 3, 0), CNuVector(0, 1, 0), 0, CNuPoint());
    // Parallel to the axis: the equation is linear and the line crosses once.
    check(CNuParabola(0.5), CNuPoint(-3, 1, 0), CNuVector(1, 0, 0), 1, CNuPoint(0.5, 1.0, 0.0));
    // Null outputs are skipped, for lines and for planes.
    EXPECT_EQ(
        ellipse.IntersectWith(CNuLine(CNuPoint(1, -2, 0.5), CNuVector(1, 0, 0)), nullptr, nullptr),
        2);
    EXPECT_EQ(
        ellipse.IntersectWith(CNuPlane(CNuPoint(1, -2, 0.5), CNuVector(1, 0, 0)), nullptr, nullptr),
        2);
}

TEST(Conic, IntersectionsFollowTheCurveUnderRotationAndTranslation) {
    test::Random rng;
    for (int nTrial = 0; nTrial < 10; ++nTrial) {
        CNuEllipse home(2.0, 1.0);
        CNuEllipse moved(home);
        CNuVector axis = test::RandomDirection(rng);
        double dAngle = rng.Uniform(-180.0, 180.0);
        CNuPoint shift = test::RandomPoint(rng);
        moved.Rotate(dAngle, axis);
        moved.Translate(shift.x(), shift.y(), shift.z());

        CNuPoint p(rng.Uniform(-0.5, 0.5), rng.Uniform(-0.5, 0.5), 0.0);
        CNuPoint q = p + CNuPoint(std::cos(rng.Uniform(0.0, 6.0)), 0.3, 0.0);
        CNuPoint a;
        CNuPoint b;
        ASSERT_EQ(home.IntersectWith(CNuLine(p, q), &a, &b), 2);
        // The same line carried by the same motion.
        auto carry = [&](CNuPoint x) {
            x.Rotate(dAngle, axis);
            return x + shift;
        };
        CNuPoint c;
        CNuPoint d;
        ASSERT_EQ(moved.IntersectWith(CNuLine(carry(p), carry(q)), &c, &d), 2);
        EXPECT_TRUE(PointsNear(c, carry(a), kCurve));
        EXPECT_TRUE(PointsNear(d, carry(b), kCurve));
    }
}

TEST(Conic, PointsTellTheirSideByTheFocalProperties) {
    const double dTol = 1e-9;
    const auto on = CNuGeometry::eCurveSideOn;
    const auto inner = CNuGeometry::eCurveSideInner;
    const auto outer = CNuGeometry::eCurveSideOuter;
    CNuEllipse ellipse(5.0, 3.0, CNuPoint(1, 1, 1));  // foci at 1 -+ 4 along x
    CNuHyperbola hyperbola(3.0, 4.0);                 // foci at -+ 5; their side is outer
    CNuParabola parabola(1.0);                        // focus (1, 0), directrix x = -1; inner
    struct {
        const CNuGeometry& conic;
        CNuPoint p;
        CNuGeometry::ECurveSideType eSide;
    } cases[] = {{ellipse, {6, 1, 1}, on},      {ellipse, {1, 4, 1}, on},
                 {ellipse, {5, 1, 1}, inner},   {ellipse, {1, 5, 1}, outer},
                 {hyperbola, {-3, 0, 0}, on},   {hyperbola, {5, 0, 0}, outer},
                 {hyperbola, {0, 0, 0}, inner}, {parabola, {1, 2, 0}, on},
                 {parabola, {1, 0, 0}, inner},  {parabola, {-0.5, 0, 0}, outer}};
    for (const auto& c : cases)
        EXPECT_EQ(c.p.CurveSide(c.conic, dTol), c.eSide) << test::Text(c.p);
    test::ExpectNuFailure<Op>([&] { CNuPoint(1, 1, 2).CurveSide(ellipse, dTol); }, 122,
                              "calculation", "CNuPoint::CurveSide()");
}

}  // namespace
}  // namespace numorix
