// Line segments: the refused construction, parameters, distances and closest points against
// closed forms, segment against segment and against circles, offsets with their refusals, the
// measures through the bounded-curve protocol, and the binary record.
#include <cmath>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include "geometry_support.h"
#include "numorix/curves/circle.h"
#include "numorix/curves/line_segment.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace test {

// The record operations are private to the composite curve; the tests reach them here.
struct LineSegmentRecord {
    static bool Dump(const CNuLineSegment& s, std::ofstream& out) { return s.BinaryDump(out); }
    static bool Read(CNuLineSegment& s, std::ifstream& in) { return s.BinaryRead(in); }
};

}  // namespace test

namespace {

using test::ExpectNuFailure;
using test::kCurve;
using test::PointsNear;
using Con = CNuConstructionException;
using Op = CNuOperationException;

TEST(LineSegment, RefusesEqualEndsAndDefaultsToTheUnitSegment) {
    ExpectNuFailure<Con>([] { CNuLineSegment(CNuPoint(1, 1, 1), CNuPoint(1, 1, 1 + 1e-13)); }, 10,
                         "", "CNuLineSegment");
    CNuLineSegment unit;
    EXPECT_EQ(unit.GetType(), CNuObject::eTypeLineSegment);
    EXPECT_TRUE(PointsNear(unit.GetEndPoint(), CNuPoint(1, 0, 0), 0.0));
    EXPECT_EQ(unit.Length(), 1.0);

    CNuPoint p;
    CNuVector tangent;
    CNuVector curvature(7);
    CNuLineSegment s(CNuPoint(1, 2, 3), CNuPoint(4, 6, 3));
    s.GetStartData(&p, &tangent, &curvature);
    EXPECT_TRUE(PointsNear(p, CNuPoint(1, 2, 3), 0.0));
    EXPECT_TRUE(PointsNear(tangent.To3DPoint(), CNuPoint(0.6, 0.8, 0.0), test::kTight));
    ASSERT_EQ(curvature.GetSize(), 3) << "a zero curvature of size 3";
    EXPECT_EQ(curvature.Magnitude(), 0.0);
    s.GetEndData(&p, nullptr, nullptr);
    EXPECT_TRUE(PointsNear(p, CNuPoint(4, 6, 3), 0.0));
    EXPECT_EQ(s.Length(), 5.0);
}

TEST(LineSegment, GivesParametersOnItsLineAndRefusesPointsOffIt) {
    CNuLineSegment s(CNuPoint(1, 0, 0), CNuPoint(3, 0, 0));
    EXPECT_EQ(s.GetParameter(CNuPoint(2, 0, 0)), 0.5);
    EXPECT_EQ(s.GetParameter(CNuPoint(5, 0, 0)), 2.0) << "no clamp beyond the end";
    EXPECT_EQ(s.GetParameter(CNuPoint(1, 5e-13, 0)), 0.0) << "the end test comes first";
    EXPECT_EQ(s.GetParameter(CNuPoint(3, 0, -5e-13)), 1.0);
    ExpectNuFailure<Op>([&] { s.GetParameter(CNuPoint(2, 1e-9, 0)); }, 114, "calculation",
                        "CNuLineSegment::GetParameter()");
    EXPECT_TRUE(PointsNear(s.GetPoint(0.25), CNuPoint(1.5, 0, 0), 0.0));

    EXPECT_EQ(s.IsEqual(CNuLineSegment(CNuPoint(3, 0, 0), CNuPoint(1, 0, 0)), 1e-9), eNuTrue)
        << "a reversed segment is equal";
    EXPECT_EQ(s.IsEqual(CNuLineSegment(CNuPoint(1, 0, 0), CNuPoint(3, 0, 1e-9)), 1e-9), eNuFalse);
}

TEST(LineSegment, MeasuresPointsToTheClosestPointOfTheSegment) {
    test::Random rng;
    for (int nTrial = 0; nTrial < 50; ++nTrial) {
        CNuPoint a = test::RandomPoint(rng);
        CNuPoint b = test::RandomPoint(rng);
        CNuLineSegment s(a, b);
        // A point at a known parameter and a known distance across the segment.
        CNuVector v = (b - a).To3DVector();
        CNuVector across = v * test::RandomDirection(rng);
        across.Normalise();
        double t = rng.Uniform(-0.5, 1.5);
        double h = rng.Uniform(0.0, 2.0);
        CNuPoint p = a + (v * t).To3DPoint() + (across * h).To3DPoint();
        double dClamped = std::min(1.0, std::max(0.0, t));
        CNuPoint expected = a + (v * dClamped).To3DPoint();
        CNuPoint closest;
        EXPECT_NEAR(s.DistanceTo(p, &closest), test::Gap(p, expected), kCurve);
        EXPECT_TRUE(PointsNear(closest, expected, kCurve));
        EXPECT_NEAR(s.DistanceTo(p), p.DistanceTo(s), 0.0) << "the point dispatches to the segment";
    }
}

TEST(LineSegment, MeasuresSegmentsCrossingSkewAndOverlapping) {
    CNuLineSegment s(CNuPoint(0, 0, 0), CNuPoint(2, 0, 0));
    CNuPoint p;
    CNuPoint q;
    EXPECT_EQ(s.DistanceTo(CNuLineSegment(CNuPoint(1, -1, 0), CNuPoint(1, 1, 0)), &p, &q), 0.0);
    EXPECT_TRUE(PointsNear(p, CNuPoint(1, 0, 0), kCurve));
    EXPECT_TRUE(PointsNear(q, p, 0.0));

    // Skew: the lines' common perpendicular lies outside the other segment, so an end wins.
    CNuLineSegment skew(CNuPoint(1, 2, 1), CNuPoint(1, 5, 1));
    EXPECT_NEAR(s.DistanceTo(skew, &p, &q), std::sqrt(5.0), kCurve);
    EXPECT_TRUE(PointsNear(p, CNuPoint(1, 0, 0), kCurve));
    EXPECT_TRUE(PointsNear(q, CNuPoint(1, 2, 1), kCurve));

    // Collinear and overlapping: the line intersection finds nothing; the first tied end wins.
    CNuLineSegment overlap(CNuPoint(1, 0, 0), CNuPoint(3, 0, 0));
    EXPECT_EQ(s.DistanceTo(overlap, &p, &q), 0.0);
    EXPECT_TRUE(PointsNear(p, CNuPoint(2, 0, 0), 0.0)) << "this end against the other";
    EXPECT_TRUE(PointsNear(q, CNuPoint(2, 0, 0), 0.0));

    // Through the protocol, with the other segment held as a bounded curve.
    const CNuBoundedCurve* pOther = &skew;
    EXPECT_NEAR(s.DistanceTo(pOther, &p, &q), std::sqrt(5.0), kCurve);
}

TEST(LineSegment, IntersectsSegmentsAndCirclesOnlyWithinItsEnds) {
    CNuLineSegment s(CNuPoint(0, 0, 0), CNuPoint(2, 0, 0));
    CNuPoint p(9, 9, 9);
    EXPECT_EQ(s.IntersectWith(CNuLineSegment(CNuPoint(1, -1, 0), CNuPoint(1, 1, 0)), &p), 1);
    EXPECT_TRUE(PointsNear(p, CNuPoint(1, 0, 0), kCurve));
    EXPECT_EQ(s.IntersectWith(CNuLineSegment(CNuPoint(3, -1, 0), CNuPoint(3, 1, 0)), &p), 0);
    EXPECT_TRUE(PointsNear(p, CNuPoint(3, 0, 0), kCurve)) << "the crossing is written anyway";
    EXPECT_EQ(s.IntersectWith(CNuLineSegment(CNuPoint(0, 1, 0), CNuPoint(2, 1, 0)), &p), 0);

    CNuCircle circle(1.0, CNuPoint(2, 0, 0));
    CNuPoint a;
    CNuPoint b;
    ASSERT_EQ(s.IntersectWith(circle, &a, &b), 1) << "only the crossing at x = 1 is on it";
    EXPECT_TRUE(PointsNear(a, CNuPoint(1, 0, 0), kCurve));
    CNuLineSegment through(CNuPoint(-1, 0, 0), CNuPoint(5, 0, 0));
    ASSERT_EQ(through.IntersectWith(circle, &a, &b), 2);
    EXPECT_TRUE(PointsNear(a, CNuPoint(1, 0, 0), kCurve));
    EXPECT_TRUE(PointsNear(b, CNuPoint(3, 0, 0), kCurve));
    EXPECT_EQ(CNuLineSegment(CNuPoint(0, 2, 0), CNuPoint(4, 2, 0)).IntersectWith(circle, &a, &b),
              0);
}

TEST(LineSegment, OffsetsToTheLeftAndRefusesBadReferences) {
    CNuLineSegment s(CNuPoint(0, 0, 0), CNuPoint(2, 0, 0));
    std::unique_ptr<CNuBoundedCurve> left(s.Offset(0.5));
    EXPECT_TRUE(PointsNear(left->GetStartPoint(), CNuPoint(0, 0.5, 0), 0.0));
    EXPECT_TRUE(PointsNear(left->GetEndPoint(), CNuPoint(2, 0.5, 0), 0.0));
    std::unique_ptr<CNuBoundedCurve> down(s.Offset(0.5, CNuVector(0, 0, -3), 2));
    EXPECT_TRUE(PointsNear(down->GetStartPoint(), CNuPoint(0, -0.5, 0), 0.0));

    // A leaning segment shifts by the distance times the sine of its angle with Z.
    CNuLineSegment leaning(CNuPoint(0, 0, 0), CNuPoint(1, 0, 1));
    std::unique_ptr<CNuBoundedCurve> shifted(leaning.Offset(1.0));
    EXPECT_NEAR(shifted->GetStartPoint().y(), std::sqrt(0.5), test::kTight);

    std::unique_ptr<CNuBoundedCurve> copy(s.Offset(0.0, CNuVector(5), 2));
    EXPECT_TRUE(PointsNear(copy->GetEndPoint(), CNuPoint(2, 0, 0), 0.0)) << "reference not read";

    CNuLineSegment vertical(CNuPoint(0, 0, 0), CNuPoint(0, 0, 1));
    test::ExpectFailures<Op>({
        {[&] { delete vertical.Offset(1.0); }, 126, "Offset", "CNuLineSegment"},
        {[&] { delete s.Offset(1.0, CNuVector(1, 0, 0), 2); }, 126, "Offset", "CNuLineSegment"},
        {[&] { delete s.Offset(1.0, CNuVector(4), 2); }, 110, "Offset", "CNuLineSegment"},
        {[&] { delete s.Offset(1.0, CNuVector(0, 0, 0), 2); }, 109, "Offset", "CNuLineSegment"},
    });
}

TEST(LineSegment, ReportsBoundsAndWorldEndsOfAPositionedSegment) {
    CNuLineSegment s(CNuPoint(1, 5, -1), CNuPoint(3, 2, 4));
    CNuPoint lo;
    CNuPoint hi;
    s.BoundingBox(&lo, &hi);
    EXPECT_TRUE(PointsNear(lo, CNuPoint(1, 2, -1), 0.0));
    EXPECT_TRUE(PointsNear(hi, CNuPoint(3, 5, 4), 0.0));
    double r = 0.0;
    CNuPoint centre;
    s.BoundingCircle(&r, &centre);
    EXPECT_NEAR(r, 0.5 * std::sqrt(38.0), test::kTight);
    EXPECT_TRUE(PointsNear(centre, CNuPoint(2, 3.5, 1.5), 0.0));

    // A rigid position moves the ends reported by the getters; the length stays.
    CNuLineSegment moved(s);
    moved.Rotate(90.0, CNuGeometry::eZAxis);
    moved.Translate(10.0, 0.0, 0.0);
    EXPECT_TRUE(PointsNear(moved.GetStartPoint(), CNuPoint(5, 1, -1), kCurve));
    EXPECT_TRUE(PointsNear(moved.GetEndPoint(), CNuPoint(8, 3, 4), kCurve));
    EXPECT_EQ(moved.Length(), s.Length());
}

TEST(LineSegment, RecordHasFiftyOneBytesAndReadsLeniently) {
    std::string sPath = ::testing::TempDir() + "numorix_segment_record.bin";
    auto read = [&](CNuLineSegment& into) {
        std::ifstream in(sPath, std::ios::binary);
        return test::LineSegmentRecord::Read(into, in);
    };
    auto poke = [&](long nOffset, char c) {
        std::fstream io(sPath, std::ios::binary | std::ios::in | std::ios::out);
        io.seekp(nOffset);
        io.put(c);
    };
    CNuLineSegment s(CNuPoint(1.5, -2, 3), CNuPoint(4, 5, -6.25));
    {
        std::ofstream out(sPath, std::ios::binary | std::ios::trunc);
        ASSERT_TRUE(test::LineSegmentRecord::Dump(s, out));
    }
    EXPECT_EQ(static_cast<long>(std::ifstream(sPath, std::ios::binary | std::ios::ate).tellg()),
              51L);
    CNuLineSegment copy;
    ASSERT_TRUE(read(copy));
    EXPECT_EQ(copy.IsEqual(s, 1e-300), eNuTrue);
    // A wrong point tag keeps that end and still reads true; a wrong record tag reads false.
    poke(26, 'q');
    CNuLineSegment lenient;
    EXPECT_TRUE(read(lenient));
    EXPECT_TRUE(PointsNear(lenient.GetStartPoint(), CNuPoint(1.5, -2, 3), 0.0));
    EXPECT_TRUE(PointsNear(lenient.GetEndPoint(), CNuPoint(1, 0, 0), 0.0));
    poke(0, 'x');
    EXPECT_FALSE(read(lenient));
    std::remove(sPath.c_str());
}

}  // namespace
}  // namespace numorix
