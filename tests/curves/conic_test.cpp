// Ellipses, hyperbolas and parabolas: the refused shapes and frames, point conversions that lie on
// the curve, intersections with lines through known points of the curve (secants, tangents,
// misses) and with planes, the sides of points, and invariance under the position model.
#include <cmath>
#include <functional>

#include "geometry_support.h"
#include "numorix/curves/ellipse.h"
#include "numorix/curves/hyperbola.h"
#include "numorix/curves/parabola.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;
using test::Frame;
using test::kCurve;
using test::PointsNear;
using Con = CNuConstructionException;
using Op = CNuOperationException;

// A conic in the world: its frame and a local point for a curve parameter.
struct PlacedConic {
    Frame frame;
    std::function<CNuPoint(double)> local;  // a local point of the curve, z = 0
    std::function<int(const CNuLine&, CNuPoint*, CNuPoint*)> withLine;
    std::function<int(const CNuPlane&, CNuPoint*, CNuPoint*)> withPlane;
};

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

// Secants through two random points of the curve give both; a line through one of them that
// leaves the plane gives that one; a plane through the secant gives both again.
void CheckSecantsAndPiercings(const PlacedConic& conic, test::Random& rng, double dLow,
                              double dHigh) {
    for (int nTrial = 0; nTrial < 20; ++nTrial) {
        double s1 = rng.Uniform(dLow, dHigh);
        double s2 = rng.Uniform(dLow, dHigh);
        CNuPoint l1 = conic.local(s1);
        CNuPoint l2 = conic.local(s2);
        if (test::Gap(l1, l2) < 0.3) continue;
        CNuPoint w1 = conic.frame.World(l1.x(), l1.y());
        CNuPoint w2 = conic.frame.World(l2.x(), l2.y());

        CNuPoint a;
        CNuPoint b;
        ASSERT_EQ(conic.withLine(CNuLine(w1, w2), &a, &b), 2) << "secant at " << s1 << ", " << s2;
        EXPECT_TRUE(SamePair(a, b, w1, w2, kCurve));

        // Not steep: the roots are found in the plane's coordinates, so the height of a root is
        // only as good as that root times the slope.
        double dTurn = rng.Uniform(0.0, Nu_2PI);
        CNuVector leaving = conic.frame.x * std::cos(dTurn) + conic.frame.y * std::sin(dTurn) +
                            conic.frame.z * rng.Uniform(0.2, 0.6);
        ASSERT_EQ(conic.withLine(CNuLine(w1, leaving), &a, &b), 1);
        EXPECT_TRUE(PointsNear(a, w1, kCurve));

        CNuVector tilt = conic.frame.z + conic.frame.y * rng.Uniform(-1.0, 1.0);
        CNuPlane plane(w1, (w2 - w1).To3DVector() * tilt);
        ASSERT_EQ(conic.withPlane(plane, &a, &b), 2);
        EXPECT_TRUE(SamePair(a, b, w1, w2, kCurve));
    }
    // A plane parallel to the curve's plane meets nothing.
    CNuPoint a;
    CNuPoint b;
    EXPECT_EQ(conic.withPlane(CNuPlane(conic.frame.World(0.0, 0.0, 1.0), conic.frame.z), &a, &b),
              0);
    // A line parallel to the plane, outside it, meets nothing though its shadow crosses the curve.
    CNuPoint l = conic.local(0.5 * (dLow + dHigh));
    EXPECT_EQ(conic.withLine(CNuLine(conic.frame.World(l.x(), l.y(), 0.5), conic.frame.y), &a, &b),
              0);
}

TEST(Conic, RefusesBadShapesAndFramesWithTheirCauses) {
    CNuPoint o;
    CNuVector z(0.0, 0.0, 1.0);
    ExpectNuFailure<Con>([] { CNuEllipse(2.0, 2.0); }, 7, "semi-axis", "CNuEllipse");
    ExpectNuFailure<Con>([] { CNuEllipse(1.0, 2.0); }, 7, "semi-axis", "CNuEllipse");
    ExpectNuFailure<Con>([] { CNuEllipse(2.0, 0.0); }, 5, "semi-axis", "CNuEllipse");
    ExpectNuFailure<Con>([] { CNuHyperbola(-1.0, 2.0); }, 5, "semi-axis", "CNuHyperbola");
    ExpectNuFailure<Con>([] { CNuParabola(0.0); }, 5, "focal-length", "CNuParabola");
    EXPECT_EQ(CNuHyperbola(1.0, 2.0).GetYRadius(), 2.0) << "a hyperbola's semi-axes have no order";

    ExpectNuFailure<Con>([&] { CNuEllipse(2.0, 1.0, o, CNuVector(4)); }, 4, "", "CNuEllipse");
    ExpectNuFailure<Con>([&] { CNuHyperbola(2.0, 1.0, o, CNuVector(0.0, 0.0, 0.0)); }, 3, "",
                         "CNuHyperbola");
    ExpectNuFailure<Con>([&] { CNuParabola(1.0, o, z, CNuVector(4)); }, 4, "", "CNuParabola");
    ExpectNuFailure<Con>([&] { CNuParabola(1.0, o, z, CNuVector(0.0, 0.0, 0.0)); }, 3, "",
                         "CNuParabola");
    ExpectNuFailure<Con>([&] { CNuEllipse(2.0, 1.0, o, z, CNuVector(1.0, 0.0, 0.01)); }, 8, "",
                         "CNuEllipse");
}

TEST(Conic, ReportsItsFrameAndLeavesAShapeAloneUnpositioned) {
    EXPECT_FALSE(CNuEllipse(2.0, 1.0).IsPositionSet());
    EXPECT_FALSE(CNuParabola(1.0).IsPositionSet());
    EXPECT_TRUE(CNuHyperbola(2.0, 1.0, CNuPoint(1, 2, 3)).IsPositionSet());

    CNuEllipse ellipse(3.0, 1.0, CNuPoint(1, 2, 3), CNuVector(0.0, 0.0, 2.0),
                       CNuVector(0.0, 5.0, 0.0));
    double a = 0.0;
    double b = 0.0;
    CNuPoint centre;
    CNuVector normal;
    CNuVector xAxis;
    ellipse.GetData(&a, &b, &centre, &normal, &xAxis);
    EXPECT_EQ(a, 3.0);
    EXPECT_EQ(b, 1.0);
    EXPECT_TRUE(PointsNear(centre, CNuPoint(1, 2, 3), 0.0));
    EXPECT_TRUE(PointsNear(normal.To3DPoint(), CNuPoint(0, 0, 1), 0.0)) << "stored normalised";
    EXPECT_TRUE(PointsNear(xAxis.To3DPoint(), CNuPoint(0, 1, 0), 0.0));
    CNuPlane plane = ellipse.GetPlane();
    EXPECT_TRUE(PointsNear(plane.GetPoint(), centre, 0.0));

    // A normal alone gives some X axis in the plane, of unit length.
    CNuParabola parabola(1.0, CNuPoint(), CNuVector(1.0, 1.0, 1.0));
    EXPECT_NEAR(parabola.GetXaxis() % parabola.GetNormal(), 0.0, test::kTight);
    EXPECT_NEAR(parabola.GetXaxis().Magnitude(), 1.0, test::kTight);
}

TEST(Conic, ConvertsToPointsOnTheCurveInItsFrame) {
    test::Random rng;
    Frame f = test::RandomFrame(rng);
    double a = 2.5;
    double b = 1.5;
    CNuEllipse ellipse(a, b, f.origin, f.z, f.x);
    CNuPointArray points = ellipse.ToPointArray(37);
    ASSERT_EQ(points.GetSize(), 37);
    EXPECT_TRUE(PointsNear(points[0], points[36], 0.0)) << "closes exactly";
    EXPECT_TRUE(PointsNear(points[9], f.World(0.0, b), kCurve)) << "a quarter turn";
    for (int i = 0; i < points.GetSize(); ++i) {
        CNuPoint l = f.Local(points[i]);
        EXPECT_NEAR(l.x() * l.x() / (a * a) + l.y() * l.y() / (b * b), 1.0, kCurve)
            << "point " << i;
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
    EXPECT_TRUE(PointsNear(upper[0], f.origin, kCurve)) << "starts at the vertex";
    CNuPointArray lower = parabola.ToPointArray(9, 0.0, 1.0, 0);
    for (int i = 0; i < 9; ++i) {
        CNuPoint l = f.Local(upper[i]);
        EXPECT_NEAR(l.y() * l.y(), 4.0 * 0.75 * l.x(), kCurve);
        EXPECT_NEAR(l.y(), 2.0 * 0.75 * std::sqrt(1.0 / 0.75) * i / 8.0, kCurve) << "even in y";
        EXPECT_NEAR(f.Local(lower[i]).y(), -l.y(), kCurve) << "nHalf 0 takes the lower half";
    }
    EXPECT_NEAR(f.Local(upper[8]).x(), 1.0, kCurve);
}

TEST(Conic, RefusesConversionsWithTheirCauses) {
    CNuHyperbola hyperbola(2.0, 1.0);
    const char* pszH = "CNuHyperbola::ToPolyline/PointArray()";
    ExpectNuFailure<Op>([&] { hyperbola.ToPointArray(1, 2.0, 3.0, 0); }, 112, "conversion", pszH);
    ExpectNuFailure<Op>([&] { hyperbola.ToPointArray(5, 3.0, 3.0, 0); }, 115, "conversion", pszH);
    ExpectNuFailure<Op>([&] { hyperbola.ToPointArray(5, 1.9, 3.0, 0); }, 114, "conversion", pszH);
    EXPECT_EQ(hyperbola.ToPointArray(2, 2.0, 3.0, 0).GetSize(), 2) << "the vertex is a valid bound";

    CNuParabola parabola(1.0);
    const char* pszP = "CNuParabola::ToPolyline/PointArray()";
    ExpectNuFailure<Op>([&] { parabola.ToPointArray(0, 0.0, 1.0, 0); }, 112, "conversion", pszP);
    ExpectNuFailure<Op>([&] { parabola.ToPointArray(5, 1.0, 0.5, 0); }, 115, "conversion", pszP);
    ExpectNuFailure<Op>([&] { parabola.ToPointArray(5, -0.1, 1.0, 0); }, 114, "conversion", pszP);
    ExpectNuFailure<Op>([] { CNuEllipse(2.0, 1.0).ToPointArray(1); }, 112, "conversion",
                        "CNuEllipse::ToPolyline/PointArray()");
}

TEST(Conic, EllipseMeetsSecantsInBothKnownPointsAndPlanesThroughThem) {
    test::Random rng;
    Frame f = test::RandomFrame(rng);
    CNuEllipse ellipse(3.0, 1.25, f.origin, f.z, f.x);
    PlacedConic conic{
        f, [](double t) { return CNuPoint(3.0 * std::cos(t), 1.25 * std::sin(t)); },
        [&](const CNuLine& l, CNuPoint* p, CNuPoint* q) { return ellipse.IntersectWith(l, p, q); },
        [&](const CNuPlane& pl, CNuPoint* p, CNuPoint* q) {
            return ellipse.IntersectWith(pl, p, q);
        }};
    CheckSecantsAndPiercings(conic, rng, 0.0, Nu_2PI);
}

TEST(Conic, HyperbolaMeetsSecantsOnOneOrBothBranches) {
    test::Random rng;
    Frame f = test::RandomFrame(rng);
    CNuHyperbola hyperbola(1.5, 2.0, f.origin, f.z, f.x);
    // Parameters below -2 map to the left branch, the others to the right one.
    auto local = [](double s) {
        double u = s < -2.0 ? s + 3.5 : s;
        double dBranch = s < -2.0 ? -1.0 : 1.0;
        return CNuPoint(dBranch * 1.5 * std::cosh(u), 2.0 * std::sinh(u));
    };
    PlacedConic conic{f, local,
                      [&](const CNuLine& l, CNuPoint* p, CNuPoint* q) {
                          return hyperbola.IntersectWith(l, p, q);
                      },
                      [&](const CNuPlane& pl, CNuPoint* p, CNuPoint* q) {
                          return hyperbola.IntersectWith(pl, p, q);
                      }};
    CheckSecantsAndPiercings(conic, rng, -5.0, 1.5);
}

TEST(Conic, ParabolaMeetsSecantsAndALineAlongItsAxisOnce) {
    test::Random rng;
    Frame f = test::RandomFrame(rng);
    CNuParabola parabola(0.5, f.origin, f.z, f.x);
    PlacedConic conic{
        f, [](double s) { return CNuPoint(0.5 * s * s, 2.0 * 0.5 * s); },
        [&](const CNuLine& l, CNuPoint* p, CNuPoint* q) { return parabola.IntersectWith(l, p, q); },
        [&](const CNuPlane& pl, CNuPoint* p, CNuPoint* q) {
            return parabola.IntersectWith(pl, p, q);
        }};
    CheckSecantsAndPiercings(conic, rng, -2.5, 2.5);

    // A line parallel to the axis crosses the parabola once: the equation is linear.
    CNuPoint a;
    CNuPoint b;
    CNuParabola home(0.5);
    ASSERT_EQ(home.IntersectWith(CNuLine(CNuPoint(-3.0, 1.0, 0.0), CNuVector(1, 0, 0)), &a, &b), 1);
    EXPECT_TRUE(PointsNear(a, CNuPoint(0.5, 1.0, 0.0), kCurve));
}

TEST(Conic, TangentLinesGiveOnePointAndMissingLinesNone) {
    CNuPoint a;
    CNuPoint b(7, 7, 7);
    CNuEllipse ellipse(2.0, 1.0, CNuPoint(1.0, -2.0, 0.5));
    EXPECT_EQ(ellipse.IntersectWith(CNuLine(CNuPoint(5, -1, 0.5), CNuVector(1, 0, 0)), &a, &b), 1);
    EXPECT_TRUE(PointsNear(a, CNuPoint(1.0, -1.0, 0.5), kCurve));
    EXPECT_TRUE(PointsNear(b, CNuPoint(7, 7, 7), 0.0)) << "the second point is not written";
    EXPECT_EQ(ellipse.IntersectWith(CNuLine(CNuPoint(3, 0, 0.5), CNuVector(0, 1, 0)), &a, &b), 1);
    EXPECT_TRUE(PointsNear(a, CNuPoint(3.0, -2.0, 0.5), kCurve));
    EXPECT_EQ(ellipse.IntersectWith(CNuLine(CNuPoint(5, 0, 0.5), CNuVector(1, -1, 0)), &a, &b), 0);

    CNuHyperbola hyperbola(1.0, 1.0);
    EXPECT_EQ(hyperbola.IntersectWith(CNuLine(CNuPoint(1, 5, 0), CNuVector(0, 1, 0)), &a, &b), 1);
    EXPECT_TRUE(PointsNear(a, CNuPoint(1, 0, 0), kCurve));
    EXPECT_EQ(hyperbola.IntersectWith(CNuLine(CNuPoint(0, 5, 0), CNuVector(1, 0, 1)), &a, &b), 0);

    CNuParabola parabola(1.0);
    EXPECT_EQ(parabola.IntersectWith(CNuLine(CNuPoint(0, 3, 0), CNuVector(0, 1, 0)), &a, &b), 1);
    EXPECT_TRUE(PointsNear(a, CNuPoint(0, 0, 0), kCurve)) << "tangent at the vertex";
    EXPECT_EQ(parabola.IntersectWith(CNuLine(CNuPoint(-1, 3, 0), CNuVector(0, 1, 0)), &a, &b), 0);
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
    CNuEllipse ellipse(5.0, 3.0, CNuPoint(1, 1, 1));  // foci at 1 -+ 4 along x
    EXPECT_EQ(CNuPoint(6, 1, 1).CurveSide(ellipse, dTol), CNuGeometry::eCurveSideOn);
    EXPECT_EQ(CNuPoint(1, 4, 1).CurveSide(ellipse, dTol), CNuGeometry::eCurveSideOn);
    EXPECT_EQ(CNuPoint(5, 1, 1).CurveSide(ellipse, dTol), CNuGeometry::eCurveSideInner);
    EXPECT_EQ(CNuPoint(1, 5, 1).CurveSide(ellipse, dTol), CNuGeometry::eCurveSideOuter);
    ExpectNuFailure<Op>([&] { CNuPoint(1, 1, 2).CurveSide(ellipse, dTol); }, 122, "calculation",
                        "CNuPoint::CurveSide()");

    CNuHyperbola hyperbola(3.0, 4.0);  // foci at -+ 5
    EXPECT_EQ(CNuPoint(-3, 0, 0).CurveSide(hyperbola, dTol), CNuGeometry::eCurveSideOn);
    EXPECT_EQ(CNuPoint(5, 0, 0).CurveSide(hyperbola, dTol), CNuGeometry::eCurveSideOuter)
        << "the side of the foci is 1";
    EXPECT_EQ(CNuPoint(0, 0, 0).CurveSide(hyperbola, dTol), CNuGeometry::eCurveSideInner);

    CNuParabola parabola(1.0);  // focus (1, 0), directrix x = -1
    EXPECT_EQ(CNuPoint(1, 2, 0).CurveSide(parabola, dTol), CNuGeometry::eCurveSideOn);
    EXPECT_EQ(CNuPoint(1, 0, 0).CurveSide(parabola, dTol), CNuGeometry::eCurveSideInner)
        << "the focus side is 0";
    EXPECT_EQ(CNuPoint(-0.5, 0, 0).CurveSide(parabola, dTol), CNuGeometry::eCurveSideOuter);
}

}  // namespace
}  // namespace numorix
