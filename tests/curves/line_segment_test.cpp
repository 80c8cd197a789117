// Line segments: the refused construction, parameters, tangents and bounds, distances and
// intersections against segments (crossing, skew, overlapping, meeting at an end) and circles,
// offsets and copies. The binary record is written only for the composite curve, which is not part
// of the library yet.
#include <cmath>
#include <memory>

#include "geometry_support.h"
#include "numorix/curves/circle.h"
#include "numorix/curves/line_segment.h"

namespace numorix {
namespace test {

// The copies are private to the composite curve; the tests reach them here.
struct LineSegmentRecord {
    static CNuLineSegment* Clone(const CNuLineSegment& s) { return s.Clone(); }
    static CNuLineSegment* Shifted(const CNuLineSegment& s, const CNuVector& v) {
        return s.ShiftedCopy(v);
    }
};

}  // namespace test

namespace {

using test::kCurve;
using test::PointsNear;
using Record = test::LineSegmentRecord;
using Op = CNuOperationException;

TEST(LineSegment, RefusesEqualEndsAndGivesParametersOnItsLineAndTangentsAndBoxesAsPlaced) {
    test::ExpectNuFailure<CNuConstructionException>(
        [] { CNuLineSegment(CNuPoint(1, 1, 1), CNuPoint(1, 1, 1 + 1e-13)); }, 10, "",
        "CNuLineSegment");
    CNuLineSegment s(CNuPoint(1, 0, 0), CNuPoint(3, 0, 0));
    EXPECT_EQ(s.GetParameter(CNuPoint(5, 0, 0)), 2.0) << "no clamp beyond the end";
    EXPECT_EQ(s.GetParameter(CNuPoint(1, 5e-13, 0)), 0.0) << "the end test comes first";
    test::ExpectNuFailure<Op>([&] { s.GetParameter(CNuPoint(2, 1e-9, 0)); }, 114, "calculation",
                              "CNuLineSegment::GetParameter()");
    EXPECT_TRUE(PointsNear(s.GetPoint(0.25), CNuPoint(1.5, 0, 0), 0.0));
    EXPECT_EQ(CNuLineSegment(CNuPoint(1, 2, 3), CNuPoint(3, 5, 9)).Length(), 7.0);
    // A rigid position moves the ends and turns the tangent.
    CNuLineSegment moved(CNuPoint(1, 5, -1), CNuPoint(4, 9, -1));
    moved.Rotate(90.0, CNuGeometry::eZAxis);
    moved.Translate(10.0, 0.0, 0.0);
    CNuVector tangent, curvature(7);
    moved.GetEndData(nullptr, &tangent, &curvature);
    EXPECT_TRUE(PointsNear(moved.GetEndPoint(), CNuPoint(1, 4, -1), kCurve));
    EXPECT_TRUE(PointsNear(tangent.To3DPoint(), CNuPoint(-0.8, 0.6, 0.0), kCurve));
    EXPECT_TRUE(PointsNear(moved.GetTangent().To3DPoint(), CNuPoint(-0.8, 0.6, 0.0), kCurve));
    CNuPoint lo, hi;
    moved.BoundingBox(&lo, &hi);
    EXPECT_TRUE(PointsNear(lo, CNuPoint(1, 1, -1), kCurve)) << "the box of the ends as placed";
    EXPECT_TRUE(PointsNear(hi, CNuPoint(5, 4, -1), kCurve));
    ASSERT_EQ(curvature.GetSize(), 3) << "a zero curvature of size 3";
    EXPECT_EQ(curvature.Magnitude(), 0.0);
}

TEST(LineSegment, MeetsAndMeasuresSegmentsCrossingSkewOverlappingOrMeetingAtAnEndAndCircles) {
    CNuLineSegment s(CNuPoint(0, 0, 0), CNuPoint(2, 0, 0));
    CNuPoint p, q;
    // Skew: the lines' common perpendicular lies outside the other segment, so an end wins.
    CNuLineSegment skew(CNuPoint(1, 5, 1), CNuPoint(1, 2, 1));
    const CNuBoundedCurve* pSkew = &skew;  // through the protocol
    EXPECT_NEAR(s.DistanceTo(pSkew, &p, &q), std::sqrt(5.0), kCurve);
    EXPECT_TRUE(test::PairNear(p, q, CNuPoint(1, 0, 0), CNuPoint(1, 2, 1), kCurve));
    // Collinear and overlapping: the line intersection finds nothing; the first tied end wins.
    EXPECT_EQ(s.DistanceTo(CNuLineSegment(CNuPoint(1, 0, 0), CNuPoint(3, 0, 0)), &p, &q), 0.0);
    EXPECT_TRUE(test::PairNear(p, q, CNuPoint(2, 0, 0), CNuPoint(2, 0, 0), 0.0)) << "this end";
    // Crossing inside, meeting exactly at an end of either, crossing just beyond, and parallel.
    struct {
        CNuPoint a, b;
        int nMeet;
        CNuPoint at;
    } rows[] = {{{1, -1, 0}, {1, 1, 0}, 1, {1, 0, 0}}, {{2, 0, 0}, {2, 3, 0}, 1, {2, 0, 0}},
                {{0, 1, 0}, {0, 0, 0}, 1, {0, 0, 0}},  {{-1, 1, 0}, {0, 0, 0}, 1, {0, 0, 0}},
                {{3, -1, 0}, {3, 1, 0}, 0, {3, 0, 0}}, {{1, 1, 0}, {1, 1e-9, 0}, 0, {1, 0, 0}},
                {{0, 1, 0}, {2, 1, 0}, 0, {9, 9, 9}}};
    for (const auto& row : rows) {
        SCOPED_TRACE("segment from " + test::Text(row.a) + " to " + test::Text(row.b));
        CNuLineSegment other(row.a, row.b);
        p = CNuPoint(9, 9, 9);
        EXPECT_EQ(s.IntersectWith(other, &p), row.nMeet);
        EXPECT_TRUE(PointsNear(p, row.at, kCurve)) << "the crossing is written even outside";
        if (row.nMeet == 0) continue;
        EXPECT_EQ(s.DistanceTo(other, &p, &q), 0.0);
        EXPECT_TRUE(test::PairNear(p, q, row.at, row.at, kCurve));
    }
    // Circles are met only within the ends, in the order of the segment.
    CNuCircle circle(1.0, CNuPoint(2, 0, 0));
    ASSERT_EQ(s.IntersectWith(circle, &p, &q), 1);
    EXPECT_TRUE(PointsNear(p, CNuPoint(1, 0, 0), kCurve));
    ASSERT_EQ(CNuLineSegment(CNuPoint(5, 0, 0), CNuPoint(-1, 0, 0)).IntersectWith(circle, &p, &q),
              2);
    EXPECT_TRUE(test::PairNear(p, q, CNuPoint(3, 0, 0), CNuPoint(1, 0, 0), kCurve));
    EXPECT_GT(p.x(), q.x()) << "in the order of the segment";
    // The distance to a point is to the nearest point of the segment.
    EXPECT_EQ(s.DistanceTo(CNuPoint(-3, 4, 0), &p), 5.0);
    EXPECT_TRUE(PointsNear(p, CNuPoint(), 0.0)) << "the start, for a point before it";
    EXPECT_EQ(CNuPoint(5, 4, 0).DistanceTo(s), 5.0) << "the end, for a point beyond it";
}

TEST(LineSegment, OffsetsToTheLeftCopiesAndRefusesBadReferences) {
    CNuLineSegment s(CNuPoint(0, 0, 0), CNuPoint(2, 0, 0));
    std::unique_ptr<CNuBoundedCurve> left(s.Offset(0.5));
    EXPECT_TRUE(PointsNear(left->GetEndPoint(), CNuPoint(2, 0.5, 0), 0.0));
    std::unique_ptr<CNuBoundedCurve> down(s.Offset(0.5, CNuVector(0, 0, -3), 2));
    EXPECT_TRUE(PointsNear(down->GetStartPoint(), CNuPoint(0, -0.5, 0), 0.0));
    test::ExpectFailures<Op>({
        {[&] { delete CNuLineSegment(CNuPoint(), CNuPoint(0, 0, 1)).Offset(1.0); }, 126, "Offset",
         "CNuLineSegment"},
        {[&] { delete s.Offset(1.0, CNuVector(4), 2); }, 110, "Offset", "CNuLineSegment"},
        {[&] { delete s.Offset(1.0, CNuVector(0, 0, 0), 2); }, 109, "Offset", "CNuLineSegment"},
    });
    // Copies are whole and independent; a shifted copy moves both ends by the vector.
    std::unique_ptr<CNuLineSegment> clone(Record::Clone(s));
    s.Translate(5.0, 0.0, 0.0);
    std::unique_ptr<CNuLineSegment> moved(Record::Shifted(*clone, CNuVector(1, -2, 3)));
    EXPECT_EQ(clone->IsEqual(CNuLineSegment(CNuPoint(2, 0, 0), CNuPoint()), 1e-300), eNuTrue)
        << "the clone stays, and a reversed segment is equal";
    EXPECT_TRUE(PointsNear(moved->GetEndPoint(), CNuPoint(3, -2, 3), 0.0));
}

}  // namespace
}  // namespace numorix
