// Circles: construction, conversion, the closed form against lines, the intersections with
// planes and with other circles (two points, tangent, none, concentric, crossing planes) checked
// by their residuals on both circles.
#include <cmath>

#include "geometry_support.h"
#include "numorix/curves/circle.h"
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

// How far a point lies from a circle: off its plane, and off its radius within the plane.
::testing::AssertionResult OnCircle(const CNuPoint& p, const CNuCircle& circle, double dTol) {
    double dPlane = p.DistanceTo(circle.GetPlane());
    double dRadius = std::fabs(p.DistanceTo(circle.GetCentre()) - circle.GetRadius());
    if (dPlane <= dTol && dRadius <= dTol) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << test::Text(p) << " is " << dPlane
                                         << " off the plane and " << dRadius << " off the radius";
}

TEST(Circle, RefusesAZeroRadiusAndBadNormalsAndStoresItsNormalUnit) {
    test::ExpectFailures<Con>({
        {[] { CNuCircle(0.0); }, 5, "radius", "CNuCircle"},
        {[] { CNuCircle(-1.0, CNuPoint()); }, 5, "radius", "CNuCircle"},
        {[] { CNuCircle(1.0, CNuPoint(), CNuVector(2)); }, 4, "", "CNuCircle"},
        {[] { CNuCircle(1.0, CNuPoint(), CNuVector(0, 0, 0)); }, 3, "", "CNuCircle"},
    });
    CNuVector normal;
    CNuCircle(2.0, CNuPoint(1, 2, 3), CNuVector(0.0, 3.0, 0.0)).GetData(nullptr, nullptr, &normal);
    EXPECT_TRUE(PointsNear(normal.To3DPoint(), CNuPoint(0, 1, 0), 0.0));
    EXPECT_FALSE(CNuCircle(1.0).IsPositionSet());
    EXPECT_TRUE(PointsNear(CNuCircle(1.0).GetCentre(), CNuPoint(), 0.0));
}

TEST(Circle, ConvertsToClosedPointListsOnTheCircle) {
    test::Random rng;
    Frame f = test::RandomFrame(rng);
    CNuCircle circle(1.75, f.origin, f.z);
    CNuPointArray points = circle.ToPointArray(25);
    ASSERT_EQ(points.GetSize(), 25);
    EXPECT_TRUE(PointsNear(points[0], points[24], 0.0)) << "closes exactly";
    for (int i = 0; i < points.GetSize(); ++i)
        EXPECT_TRUE(OnCircle(points[i], circle, kCurve)) << "point " << i;
    // Consecutive points are one step of 15 degrees apart.
    double dChord = 2.0 * 1.75 * std::sin(Nu_PI / 24.0);
    for (int i = 1; i < points.GetSize(); ++i)
        EXPECT_NEAR(points[i].DistanceTo(points[i - 1]), dChord, kCurve) << "step " << i;

    CNuPointArray two = CNuCircle(3.0).ToPointArray(2);
    ASSERT_EQ(two.GetSize(), 2);
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(PointsNear(two[i], CNuPoint(3, 0, 0), 0.0)) << "the same point twice";
    // A quarter turn is exact: the cleaned step has a cosine of exactly 0.
    CNuPointArray square = CNuCircle(2.0).ToPointArray(5);
    EXPECT_TRUE(PointsNear(square[1], CNuPoint(0, 2, 0), 0.0));
    EXPECT_TRUE(PointsNear(square[2], CNuPoint(-2, 0, 0), 0.0));
    ExpectNuFailure<Op>([] { CNuCircle(1.0).ToPointArray(1); }, 112, "conversion",
                        "CNuCircle::ToPolyline/PointArray()");
}

TEST(Circle, MeetsLinesInItsPlaneByTheClosedForm) {
    test::Random rng;
    for (int nTrial = 0; nTrial < 30; ++nTrial) {
        Frame f = test::RandomFrame(rng);
        double r = rng.Uniform(0.5, 3.0);
        CNuCircle circle(r, f.origin, f.z);
        double t1 = rng.Uniform(0.0, Nu_2PI);
        double t2 = t1 + rng.Uniform(0.3, Nu_2PI - 0.3);
        CNuPoint w1 = f.World(r * std::cos(t1), r * std::sin(t1));
        CNuPoint w2 = f.World(r * std::cos(t2), r * std::sin(t2));
        CNuPoint a;
        CNuPoint b;
        ASSERT_EQ(circle.IntersectWith(CNuLine(w1, w2), &a, &b), 2);
        EXPECT_TRUE(PointsNear(a, w1, kCurve)) << "in the order of the line";
        EXPECT_TRUE(PointsNear(b, w2, kCurve));
        ASSERT_EQ(CNuLine(w2, w1).IntersectWith(circle, &a, &b), 2);
        EXPECT_TRUE(PointsNear(a, w2, kCurve));

        // The tangent at w1, a line through w1 that leaves the plane, a line that misses.
        CNuVector tangent = f.x * -std::sin(t1) + f.y * std::cos(t1);
        ASSERT_EQ(circle.IntersectWith(CNuLine(w1, tangent), &a, &b), 1);
        EXPECT_TRUE(PointsNear(a, w1, kCurve));
        ASSERT_EQ(circle.IntersectWith(CNuLine(w1, f.z + tangent), &a, &b), 1);
        EXPECT_TRUE(PointsNear(a, w1, kCurve));
        EXPECT_EQ(circle.IntersectWith(CNuLine(f.World(0.0, 0.0, 0.5), f.z + tangent), &a, &b), 0);
        EXPECT_EQ(circle.IntersectWith(CNuLine(f.World(1.5 * r, 0.0), f.y), &a, &b), 0);
        EXPECT_EQ(circle.IntersectWith(CNuLine(f.World(0.0, 0.0, 0.1), f.y), &a, &b), 0)
            << "parallel to the plane and off it";
    }
}

TEST(Circle, MeetsPlanesThroughItsChords) {
    CNuCircle circle(2.0, CNuPoint(0, 0, 1));
    CNuPoint a;
    CNuPoint b;
    // The plane x = 1 cuts the chord at y = -+ sqrt(3).
    ASSERT_EQ(circle.IntersectWith(CNuPlane(CNuPoint(1, 0, 0), CNuVector(1, 0, 0)), &a, &b), 2);
    EXPECT_TRUE(PointsNear(a, CNuPoint(1, -std::sqrt(3.0), 1), kCurve));
    EXPECT_TRUE(PointsNear(b, CNuPoint(1, std::sqrt(3.0), 1), kCurve));
    EXPECT_EQ(circle.IntersectWith(CNuPlane(CNuPoint(2, 0, 0), CNuVector(1, 0, 0)), &a, &b), 1);
    EXPECT_EQ(circle.IntersectWith(CNuPlane(CNuPoint(4, 0, 0), CNuVector(1, 0, 1)), &a, &b), 0);
    EXPECT_EQ(circle.IntersectWith(CNuPlane(CNuPoint(0, 0, 5), CNuVector(0, 0, 1)), &a, &b), 0)
        << "parallel planes";
}

TEST(Circle, MeetsCoplanarCirclesInTwoOneOrNoPoints) {
    test::Random rng;
    for (int nTrial = 0; nTrial < 20; ++nTrial) {
        Frame f = test::RandomFrame(rng);
        double r1 = rng.Uniform(1.0, 2.0);
        double r2 = rng.Uniform(1.0, 2.0);
        CNuCircle first(r1, f.origin, f.z);
        // The second centre at a distance d along a random in-plane direction.
        double dAngle = rng.Uniform(0.0, Nu_2PI);
        auto at = [&](double d) { return f.World(d * std::cos(dAngle), d * std::sin(dAngle)); };
        double d = rng.Uniform(std::fabs(r1 - r2) + 0.1, r1 + r2 - 0.1);
        CNuCircle second(r2, at(d), -f.z);  // the reversed normal is the same plane
        CNuPoint a;
        CNuPoint b;
        ASSERT_EQ(first.IntersectWith(second, &a, &b), 2) << "d " << d;
        for (const CNuCircle* pCircle : {&first, &second})
            EXPECT_TRUE(OnCircle(a, *pCircle, kCurve) && OnCircle(b, *pCircle, kCurve));
        EXPECT_GT(a.DistanceTo(b), 1e-3);
        // Apart, one inside the other, concentric, the same circle.
        for (const CNuCircle& other :
             {CNuCircle(r2, at(r1 + r2 + 0.1), f.z), CNuCircle(r1 + 0.5, at(0.2), f.z),
              CNuCircle(r2, f.origin, f.z), CNuCircle(r1, f.origin, f.z)})
            EXPECT_EQ(first.IntersectWith(other, &a, &b), 0) << test::Text(other.GetCentre());
    }
    // Touching from outside and from inside, with exact data.
    CNuCircle unit(1.0, CNuPoint(0, 0, 0));
    CNuPoint a;
    CNuPoint b;
    for (double dCentre : {3.0, -1.0}) {
        ASSERT_EQ(unit.IntersectWith(CNuCircle(2.0, CNuPoint(dCentre, 0, 0)), &a, &b), 1);
        EXPECT_TRUE(PointsNear(a, CNuPoint(1, 0, 0), kCurve)) << "centre at " << dCentre;
    }
}

TEST(Circle, MeetsCirclesInCrossingPlanesOnTheirCommonLine) {
    test::Random rng;
    for (int nTrial = 0; nTrial < 20; ++nTrial) {
        Frame f = test::RandomFrame(rng);
        double r = rng.Uniform(1.0, 2.0);
        CNuCircle first(r, f.origin, f.z);
        // Two points of the first circle; the second circle passes through both, in a plane
        // turned about their chord.
        double t1 = rng.Uniform(0.0, Nu_2PI);
        double t2 = t1 + rng.Uniform(0.5, Nu_2PI - 0.5);
        CNuPoint w1 = f.World(r * std::cos(t1), r * std::sin(t1));
        CNuPoint w2 = f.World(r * std::cos(t2), r * std::sin(t2));
        CNuPoint mid = w1.MidPoint(w2);
        CNuVector chord = (w2 - w1).To3DVector();
        chord.Normalise();
        CNuVector across = f.z * chord;  // in the first plane, across the chord
        double dTurn = rng.Uniform(0.3, 1.3);
        CNuVector lean = across * std::cos(dTurn) + f.z * std::sin(dTurn);
        double h = rng.Uniform(-1.0, 1.0);
        CNuPoint centre = mid + (lean * h).To3DPoint();
        CNuCircle second(centre.DistanceTo(w1), centre, chord * lean);

        CNuPoint a;
        CNuPoint b;
        ASSERT_EQ(first.IntersectWith(second, &a, &b), 2);
        EXPECT_TRUE(OnCircle(a, first, kCurve));
        EXPECT_TRUE(OnCircle(a, second, kCurve));
        EXPECT_TRUE(OnCircle(b, second, kCurve));
        EXPECT_TRUE(PointsNear(a, w1, kCurve) || PointsNear(a, w2, kCurve));

        // A circle of the crossing plane that stays clear of the first.
        CNuCircle clear(0.1, mid + (lean * 0.5).To3DPoint(), chord * lean);
        EXPECT_EQ(first.IntersectWith(clear, &a, &b), 0);
    }
    // Parallel planes never meet.
    CNuPoint a;
    EXPECT_EQ(
        CNuCircle(1.0, CNuPoint()).IntersectWith(CNuCircle(1.0, CNuPoint(0, 0, 1)), &a, nullptr),
        0);
}

}  // namespace
}  // namespace numorix
