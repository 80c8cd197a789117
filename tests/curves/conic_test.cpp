// The conics (circle, ellipse, hyperbola, parabola): the refused shapes, frames and conversions,
// point conversions that lie on the curve also after a move, intersections with lines and planes
// through known points of the curve (secants, tangents, misses), circles against circles, and
// the sides of points by the focal properties.
#include <cmath>

#include "geometry_support.h"
#include "numorix/curves/circle.h"
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
using G = CNuGeometry;

// Secants through two random points of the curve, local(s) in the frame f, give both; a line
// through one of them that leaves the plane, given by a point off the plane, gives that one; a
// plane through the secant gives both again; a parallel plane, and a parallel line off the plane
// whose shadow crosses the curve, none.
template <class Conic, class Local>
void CheckSecantsAndPiercings(const char* pszName, const Conic& conic, const Frame& f, Local local,
                              test::Random& rng, double dLow, double dHigh) {
    SCOPED_TRACE(pszName);
    CNuPoint a, b;
    for (int nTrial = 0; nTrial < 20; ++nTrial) {
        CNuPoint l1 = local(rng.Uniform(dLow, dHigh)), l2 = local(rng.Uniform(dLow, dHigh));
        if (test::Gap(l1, l2) < 0.3) continue;
        CNuPoint w1 = f.World(l1.x(), l1.y()), w2 = f.World(l2.x(), l2.y());
        ASSERT_EQ(conic.IntersectWith(CNuLine(w1, w2), &a, &b), 2) << test::Text(l1);
        EXPECT_TRUE(test::PairNear(a, b, w1, w2, kCurve));
        // Not steep: the roots are found in the plane's coordinates, so the height of a root is
        // only as good as that root times the slope.
        double dTurn = rng.Uniform(0.0, Nu_2PI);
        CNuVector leaving =
            f.x * std::cos(dTurn) + f.y * std::sin(dTurn) + f.z * rng.Uniform(0.2, 0.6);
        ASSERT_EQ(conic.IntersectWith(CNuLine(w1 + (leaving * 0.7).To3DPoint(), leaving), &a, &b),
                  1);
        EXPECT_TRUE(PointsNear(a, w1, kCurve));
        CNuPlane plane(w1, (w2 - w1).To3DVector() * (f.z + f.y * rng.Uniform(-1.0, 1.0)));
        ASSERT_EQ(conic.IntersectWith(plane, &a, &b), 2);
        EXPECT_TRUE(test::PairNear(a, b, w1, w2, kCurve));
    }
    EXPECT_EQ(conic.IntersectWith(CNuPlane(f.World(0.0, 0.0, 1.0), f.z), &a, &b), 0);
    CNuPoint l = local(0.5 * (dLow + dHigh));
    EXPECT_EQ(conic.IntersectWith(CNuLine(f.World(l.x(), l.y(), 0.5), f.y), &a, &b), 0);
}

TEST(Conic, RefusesBadShapesFramesAndConversionsWithTheirCauses) {
    CNuPoint o;
    CNuVector z(0.0, 0.0, 1.0);
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuCircle(0.0); }, 5, "radius", "CNuCircle"},
        {[] { CNuEllipse(2.0, 2.0); }, 7, "semi-axis", "CNuEllipse"},
        {[] { CNuParabola(0.0); }, 5, "focal-length", "CNuParabola"},
        {[&] { CNuParabola(1.0, o, CNuVector(0, 0, 0), z); }, 3, "", "CNuParabola"},
        {[&] { CNuEllipse(2.0, 1.0, o, z, CNuVector(1.0, 0.0, 0.01)); }, 8, "", "CNuEllipse"},
    });
    CNuHyperbola hyperbola(2.0, 1.0);
    const char* pszH = "CNuHyperbola::ToPolyline/PointArray()";
    test::ExpectFailures<CNuOperationException>({
        {[] { CNuCircle(1.0).ToPointArray(1); }, 112, "conversion",
         "CNuCircle::ToPolyline/PointArray()"},
        {[&] { hyperbola.ToPointArray(5, 3.0, 3.0, 0); }, 115, "conversion", pszH},
        {[&] { hyperbola.ToPointArray(5, 1.9, 3.0, 0); }, 114, "conversion", pszH},
    });
    EXPECT_EQ(hyperbola.ToPointArray(2, 2.0, 3.0, 0).GetSize(), 2) << "the vertex is a valid bound";
    EXPECT_EQ(CNuCircle(1.0).ToPointArray(2).GetSize(), 2);
    // Given a centre only, a conic takes the world axes: the vertex lies at centre + (a, 0, 0).
    EXPECT_EQ(CNuHyperbola(2.0, 1.0, CNuPoint(1, 2, 3)).ToPointArray(2, 2.0, 3.0, 0)[0].DistanceTo(
                  CNuPoint(3, 2, 3)), 0.0);
}

TEST(Conic, ConvertsToPointsOnTheCurveAndMeetsSecantsOnEveryBranchAlsoWhenMoved) {
    test::Random rng;
    Frame f = test::RandomFrame(rng);
    CNuCircle circle(1.5, f.origin, f.z * 3.0);  // a normal of any length
    CNuPointArray round = circle.ToPointArray(25);
    EXPECT_TRUE(PointsNear(round[0], round[24], 0.0)) << "closes exactly";
    EXPECT_NEAR(round[0].DistanceTo(round[1]), 3.0 * std::sin(Nu_PI / 24.0), kCurve) << "15 deg";
    test::ExpectOnCurve(round, f, [](double x, double y) { return x * x + y * y - 2.25; });
    CheckSecantsAndPiercings(
        "circle", circle, f,
        [](double t) { return CNuPoint(1.5 * std::cos(t), 1.5 * std::sin(t)); }, rng, 0.0, Nu_2PI);

    CNuEllipse ellipse(2.5, 1.5);
    ellipse.Rotate(70.0, CNuVector(1.0, -2.0, 0.5));
    ellipse.Translate(1.0, -3.0, 2.0);
    Frame moved = test::MovedFrame(70.0, CNuVector(1.0, -2.0, 0.5), CNuPoint(1.0, -3.0, 2.0));
    CNuPointArray oval = ellipse.ToPointArray(37);
    EXPECT_TRUE(PointsNear(oval[9], moved.World(0.0, 1.5), kCurve)) << "a quarter turn";
    test::ExpectOnCurve(oval, moved,
                        [](double x, double y) { return x * x / 6.25 + y * y / 2.25 - 1; });
    CheckSecantsAndPiercings(
        "moved ellipse", ellipse, moved,
        [](double t) { return CNuPoint(2.5 * std::cos(t), 1.5 * std::sin(t)); }, rng, 0.0, Nu_2PI);

    f = test::RandomFrame(rng);
    CNuHyperbola hyperbola(1.5, 2.0, f.origin, f.z, f.x);
    for (int nHalf = 0; nHalf < 2; ++nHalf) {  // the right branch, then the left one
        CNuPointArray h = hyperbola.ToPointArray(11, 3.0, 7.0, nHalf);
        EXPECT_NEAR(f.Local(h[10]).x(), nHalf == 0 ? 7.0 : -7.0, kCurve) << "to the high bound";
        test::ExpectOnCurve(h, f,
                            [](double x, double y) { return x * x / 2.25 - y * y / 4.0 - 1; });
    }
    // Parameters below -2 map to the left branch, the others to the right one.
    auto branches = [](double s) {
        double u = s < -2.0 ? s + 3.5 : s;
        return CNuPoint((s < -2.0 ? -1.0 : 1.0) * 1.5 * std::cosh(u), 2.0 * std::sinh(u));
    };
    CheckSecantsAndPiercings("hyperbola", hyperbola, f, branches, rng, -5.0, 1.5);

    f = test::RandomFrame(rng);
    CNuParabola parabola(0.75, f.origin, f.z, f.x);
    test::ExpectOnCurve(parabola.ToPointArray(9, 0.0, 1.0, 1), f,
                        [](double x, double y) { return y * y - 3.0 * x; });
    EXPECT_NEAR(f.Local(parabola.ToPointArray(9, 0.0, 1.0, 0)[8]).y(), -std::sqrt(3.0), kCurve)
        << "nHalf 0 takes the lower half";
    CheckSecantsAndPiercings(
        "parabola", parabola, f, [](double s) { return CNuPoint(0.75 * s * s, 1.5 * s); }, rng,
        -2.5, 2.5);
}

TEST(Conic, MeetsTangentsOnceMissesParallelsAndTellsSidesByTheFocalProperties) {
    // A point on the curve with the tangent there, a point on either side, and a point through
    // which the parallel to the tangent misses the curve.
    auto check = [](const auto& conic, CNuPoint on, CNuVector tangent, CNuPoint inner,
                    CNuPoint outer, CNuPoint miss) {
        SCOPED_TRACE(test::Text(on));
        CNuPoint a, b(7, 7, 7);
        ASSERT_EQ(conic.IntersectWith(CNuLine(on + (tangent * 3.0).To3DPoint(), tangent), &a, &b),
                  1);
        EXPECT_TRUE(PointsNear(a, on, kCurve));
        EXPECT_TRUE(PointsNear(b, CNuPoint(7, 7, 7), 0.0)) << "the second point is not written";
        EXPECT_EQ(conic.IntersectWith(CNuLine(miss, tangent), &a, &b), 0);
        EXPECT_EQ(on.CurveSide(conic, 1e-9), G::eCurveSideOn);
        EXPECT_EQ(inner.CurveSide(conic, 1e-9), G::eCurveSideInner);
        EXPECT_EQ(outer.CurveSide(conic, 1e-9), G::eCurveSideOuter);
    };
    CNuPoint c(1.0, -2.0, 0.5);
    check(CNuCircle(2.0, c), {3, -2, 0.5}, {0, 1, 0}, {2, -1, 0.5}, {5, -2, 0.5}, {4, -2, 0.5});
    // Foci at 1 -+ sqrt(3) along x: the sum of their distances is 2a at the co-vertex.
    CNuEllipse ellipse(2.0, 1.0, c);
    check(ellipse, {1, -1, 0.5}, {1, 0, 0}, {2.5, -2, 0.5}, {1, 0, 0.5}, {1, -0.5, 0.5});
    // Foci at -+ sqrt(2); their side of a branch is outer, between the branches inner.
    CNuHyperbola hyperbola(1.0, 1.0);
    check(hyperbola, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}, {5, 0, 0}, {0, 0, 0});
    EXPECT_EQ(CNuPoint(5.0 / 3.0, 4.0 / 3.0, 0).CurveSide(hyperbola, 1e-9), G::eCurveSideOn);
    // Focus (1, 0), directrix x = -1: the focus side is inner.
    check(CNuParabola(1.0), {0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {-0.5, 0, 0}, {-1, 0, 0});
    // Parallel to the axis: the equation is linear and the line crosses once.
    CNuLine axial(CNuPoint(-3, 1, 0), CNuVector(1, 0, 0));
    CNuPoint a;
    ASSERT_EQ(CNuParabola(0.5).IntersectWith(axial, &a, nullptr), 1);
    EXPECT_TRUE(PointsNear(a, CNuPoint(0.5, 1.0, 0.0), kCurve));
}

TEST(Circle, MeetsCirclesThroughTwoOfItsPointsThereInItsOwnOrACrossingPlane) {
    test::Random rng;
    for (int nTrial = 0; nTrial < 20; ++nTrial) {
        Frame f = test::RandomFrame(rng);
        double r = rng.Uniform(1.0, 2.0);
        CNuCircle first(r, f.origin, f.z);
        // Two points of the first circle; other circles pass through both, their centres on the
        // mid plane of the chord, their planes turned about it: not at all, half a turn (the same
        // plane with the normal reversed), or partly (a crossing plane).
        double t1 = rng.Uniform(0.0, Nu_2PI), t2 = t1 + rng.Uniform(0.5, Nu_2PI - 0.5);
        CNuPoint w1 = f.World(r * std::cos(t1), r * std::sin(t1)),
                 w2 = f.World(r * std::cos(t2), r * std::sin(t2));
        CNuVector chord = (w2 - w1).To3DVector();
        chord.Normalise();
        for (double dTurn : {0.0, Nu_PI, rng.Uniform(0.3, 1.3)}) {
            CNuVector lean = (f.z * chord) * std::cos(dTurn) + f.z * std::sin(dTurn);
            CNuPoint centre = w1.MidPoint(w2) + (lean * rng.Uniform(-1.0, 1.0)).To3DPoint();
            CNuCircle other(centre.DistanceTo(w1), centre, chord * lean);
            CNuPoint p, q;
            ASSERT_EQ(first.IntersectWith(other, &p, &q), 2) << "turned by " << dTurn;
            EXPECT_TRUE(test::PairNear(p, q, w1, w2, kCurve)) << "turned by " << dTurn;
            if (std::sin(dTurn) < 0.2) continue;
            // In the crossing plane, a small circle off the chord stays clear of the first.
            CNuCircle clear(0.1, w1.MidPoint(w2) + (lean * 0.5).To3DPoint(), chord * lean);
            EXPECT_EQ(first.IntersectWith(clear, &p, &q), 0) << "turned by " << dTurn;
        }
    }
    // Apart, inside, concentric, the same, in a parallel plane: no points.
    CNuCircle unit(1.0);
    CNuPoint p(7, 7, 7);
    for (const CNuCircle& other :
         {CNuCircle(1.0, CNuPoint(2.5, 0, 0)), CNuCircle(2.0, CNuPoint(0.5, 0, 0)), CNuCircle(3.0),
          CNuCircle(1.0), CNuCircle(1.0, CNuPoint(0, 0, 1))})
        EXPECT_EQ(unit.IntersectWith(other, &p, nullptr), 0) << test::Text(other.GetCentre());
}

}  // namespace
}  // namespace numorix
