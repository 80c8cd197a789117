// Lines and planes: construction and its refusals, parallelism and folded angles, distances and
// intersections on general and degenerate configurations against closed forms, mid elements,
// and moves.
#include <cmath>

#include "geometry_support.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

using test::kGeometry;
using test::PointsNear;

// Angles in degrees through the arc tangent of a quotient: a few ulps of 180.
constexpr double kDegrees = 1e-11;

TEST(LineAndPlane, ConstructionNormalisesTurnsSteepLinePlanesUpAndRefusesBadDirections) {
    // (1, 0, 0) x (0, -1, 0) = (0, 0, -1): turned up by the fixed -0.8 rule; z = -0.6 is not.
    CNuLine xAxis(CNuPoint(0, 0, 0), CNuVector(1, 0, 0));
    EXPECT_EQ(CNuPlane(CNuPoint(0, -1, 0), xAxis).GetNormal()[2], 1.0);
    EXPECT_NEAR(CNuPlane(CNuPoint(0, -0.6, -0.8), xAxis).GetNormal()[2], -0.6, test::kUlp);
    CNuPoint a(1, 1, 1);
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuLine(CNuPoint(), CNuVector(4)); }, 4, "", "CNuLine"},
        {[] { CNuPlane(CNuPoint(), CNuVector(0, 0, 0)); }, 3, "", "CNuPlane"},
        {[&] { CNuLine(a, CNuPoint(1, 1, 1 + 1e-13)); }, 10, "", "CNuLine"},
        {[&] { CNuPlane(CNuPoint(3, 0, 0), xAxis); }, 9, "", "CNuPlane"},
    });
    // With a length tolerance of zero, coincident points still never give a zero direction.
    test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, 0.0);
    test::ExpectNuFailure<CNuConstructionException>([&] { CNuLine(a, a); }, 10, "", "CNuLine");
}

TEST(LineAndPlane, FoldAnglesCountOppositeDirectionsAsParallelAndMeasureGaps) {
    CNuLine line(CNuPoint(0, 0, 0), CNuVector(1, 1, 0));
    CNuLine reverse(CNuPoint(5, 0, 0), CNuVector(-1, -1, 0));
    EXPECT_EQ(line.IsParallelTo(reverse, 1e-9), eNuTrue);
    EXPECT_NEAR(line.AngleWith(reverse), 180.0, kDegrees);
    CNuLine xAxis(CNuPoint(), CNuVector(1, 0, 0));
    EXPECT_NEAR(line.AngleWith(xAxis, CNuVector(0, 0, 1)), 315.0, kDegrees);
    CNuPlane floor;
    EXPECT_EQ(CNuLine(CNuPoint(), CNuVector(0, 0, -1)).AngleWith(floor), 90.0);
    // Crossing lines are coplanar when their gap along the common normal is below the tolerance.
    CNuLine skew(CNuPoint(0, 0, 1), CNuVector(0, 1, 0));
    EXPECT_EQ(line.IsCoplanarWith(skew, 1.0, 1e-6), eNuFalse) << "the gap is exactly 1";
    // The point of (2, -3, 4) + s (0, 1, 1) nearest the x axis is at s = -1/2, 7 / sqrt(2) away.
    EXPECT_NEAR(xAxis.DistanceTo(CNuLine(CNuPoint(2, -3, 4), CNuVector(0, 1, 1))),
                7.0 / std::sqrt(2.0), kGeometry);
    CNuLine parallel(CNuPoint(7, 3, 4), CNuVector(-2, 0, 0));
    EXPECT_EQ(xAxis.DistanceTo(parallel), 5.0);
    CNuPoint untouched(9, 9, 9);
    EXPECT_EQ(xAxis.IntersectWith(parallel, &untouched), 0);
    EXPECT_EQ(untouched.x(), 9.0) << "a refused intersection leaves the point alone";
    CNuPlane above(CNuPoint(0, 0, 3), CNuVector(0, 0, -2));
    EXPECT_NEAR(floor.AngleWith(CNuPlane(CNuPoint(5, 0, 0), CNuVector(1, 0, 1))), 45.0, kDegrees);
    EXPECT_EQ(floor.IsEqual(above, 3.0, 1.0), eNuFalse) << "a gap equal to the tolerance fails";
    CNuLine common;
    ASSERT_EQ(floor.IntersectWith(CNuPlane(CNuPoint(0, 5, 0), CNuVector(1, 0, 0)), &common), 1);
    EXPECT_TRUE(PointsNear(common.GetPoint(), CNuPoint(0, 0, 0), test::kExact));
    EXPECT_EQ(floor.IntersectWith(above, &common), 0);
    EXPECT_TRUE(PointsNear(common.GetPoint(), CNuPoint(0, 0, 0), test::kExact)) << "left alone";
}

TEST(LineAndPlane, ThroughACommonPointMeetThereUnlessSkewOrParallel) {
    test::Random rng;
    for (int k = 0; k < 100; ++k) {
        SCOPED_TRACE("trial " + std::to_string(k));
        CNuPoint c = test::RandomPoint(rng);
        CNuVector d1 = test::RandomDirection(rng), d2 = test::RandomDirection(rng);
        CNuLine a(c + (d1 * rng.Uniform(-3.0, 3.0)).To3DPoint(), d1);
        CNuLine b(c - (d2 * rng.Uniform(-3.0, 3.0)).To3DPoint(), d2);
        CNuPlane one(c, test::RandomDirection(rng)), two(c, test::RandomDirection(rng));
        CNuPoint p, q;
        // Grazing crossings lose digits as the sine of the angle between the line and the other.
        double dSine =
            std::fmin((d1 * d2).Magnitude() / d2.Magnitude(), std::fabs(one.GetNormal() % d1));
        ASSERT_TRUE(a.IntersectWith(b, &p) == 1 && a.ClosestPointsTo(b, &q) == 1);
        EXPECT_TRUE(test::PairNear(p, q, c, c, kGeometry * d1.Magnitude() / dSine));
        ASSERT_TRUE(a.IntersectWith(one, &p) == 1 && one.IntersectWith(a, &q) == 1);
        EXPECT_TRUE(test::PairNear(p, q, c, c, kGeometry * d1.Magnitude() / dSine));
        // Nearly parallel planes meet far away, where the common line is known less well.
        CNuLine line;
        ASSERT_EQ(one.IntersectWith(two, &line), 1);
        double dTol = kGeometry * (1.0 + line.GetPoint().DistanceTo(c)) / one.AngleWith(two);
        EXPECT_NEAR(c.DistanceTo(line), 0.0, dTol);
        EXPECT_NEAR(line.GetDirection() % one.GetNormal(), 0.0, dTol);
        EXPECT_NEAR(line.GetDirection() % two.GetNormal(), 0.0, dTol);
        // Lifted off the common plane, the lines are skew and do not meet. The feet are compared
        // as position vectors, by length and by the fixed minimum angle seen from the origin, so
        // the lift must also exceed that angle at a distance of up to 15 from the origin.
        CNuVector lift = (d1 * d2) * (1e-7 / (d1 * d2).Magnitude());
        EXPECT_EQ(a.IntersectWith(CNuLine(b.GetPoint() + lift.To3DPoint(), d2), &p), 0);
    }
    CNuPlane floor(CNuPoint(0, 0, 2), CNuVector(0, 0, 1));
    CNuLine level(CNuPoint(0, 0, 5), CNuVector(1, 1, 0));
    EXPECT_EQ(level.IntersectWith(floor, nullptr), 0);
    EXPECT_EQ(level.DistanceTo(floor), 3.0);
}

TEST(LineAndPlane, MidElementsLieHalfwayAndRefuseWhatIsNotParallel) {
    CNuLine a(CNuPoint(0, 0, 0), CNuVector(1, 0, 0));
    CNuLine b(CNuPoint(3, 0, 4), CNuVector(-1, 0, 0));
    EXPECT_TRUE(PointsNear(a.MidLine(b).GetPoint(), CNuPoint(0, 0, 2), test::kExact));
    CNuPlane low(CNuPoint(0, 0, -6), CNuVector(0, 0, 1));
    CNuPlane high(CNuPoint(0, 0, 4), CNuVector(0, 0, -2));
    EXPECT_EQ(low.MidPlane(high).GetPoint().z(), -1.0);
    CNuLine across(CNuPoint(0, 0, 1), CNuVector(0, 1, 0));
    CNuPlane wall(CNuPoint(), CNuVector(1, 0, 1));
    test::ExpectFailures<CNuOperationException>({
        {[&] { a.MidLine(across); }, 123, "calculation", "CNuLine::MidLine()"},
        {[&] { a.MidLine(wall); }, 125, "calculation", "CNuLine::MidLine()"},
        {[&] { a.MidPlane(CNuLine(CNuPoint(4, 0, 0), CNuVector(-3, 0, 0))); }, 120, "calculation",
         "CNuLine::MidPlane()"},
        {[&] { low.MidPlane(wall); }, 124, "calculation", "CNuPlane::MidPlane()"},
    });
}

TEST(LineAndPlane, TranslateAbsolutelyAndRotateAboutACentre) {
    CNuLine line(CNuPoint(5, 5, 5), CNuVector(0, 1, 0));
    line.Translate(CNuPoint(1, 0, 0));
    line.Translate(1, 2, 3);
    line.Rotate(90.0, CNuGeometry::eZAxis, CNuPoint(-2, 0, 0));
    EXPECT_TRUE(PointsNear(line.GetPoint(), CNuPoint(-4, 4, 3), kGeometry));
    EXPECT_EQ(line.GetDirection()[0], -1.0) << "the direction turns as a free vector";
    CNuPlane plane(CNuPoint(1, 1, 1), CNuVector(0, 0, 1));
    plane.Translate(CNuPoint(0, 0, 7));
    plane.Translate(0, 0, 1);
    plane.Rotate(90.0, CNuGeometry::eXAxis, CNuPoint(0, 0, 7));
    EXPECT_TRUE(PointsNear(plane.GetPoint(), CNuPoint(0, -1, 7), kGeometry));
    EXPECT_EQ(plane.GetNormal()[1], -1.0);
}

}  // namespace
}  // namespace numorix
