// Points and Cartesian frames: the box comparison, arithmetic refusals, distances and projections
// against closed forms, rotations, frame changes, sides, the dispatch on curves and surfaces, and
// the binary record.
#include <cstdio>
#include <fstream>
#include <string>

#include "geometry_test_support.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/cartesian_coord.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/linalg/matrix.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;
using test::kGeometry;
using test::PointsNear;
using Op = CNuOperationException;

TEST(PointComparison, UsesAStrictBoxNotASphere) {
    CNuPoint p(1.0, 2.0, 3.0);
    EXPECT_EQ(p.IsEqual(CNuPoint(1.0, 2.0, 3.0), 0.0), eNuFalse);
    EXPECT_EQ(p.IsEqual(CNuPoint(1.0, 2.0, 3.0), 1e-300), eNuTrue);
    // Corner of the box: 0.9 in every coordinate is inside a box of 1, though 1.56 away.
    EXPECT_EQ(p.IsEqual(CNuPoint(1.9, 2.9, 3.9), 1.0), eNuTrue);
    EXPECT_EQ(p.IsEqual(CNuPoint(2.0, 2.0, 3.0), 1.0), eNuFalse);
    EXPECT_EQ(CNuPoint(0.5, -0.5, 0.0).IsZero(0.5), eNuFalse);
    EXPECT_EQ(CNuPoint(0.4, -0.4, 0.0).IsZero(0.5), eNuTrue);
    EXPECT_EQ(p.GetType(), CNuObject::eTypePoint);
}

TEST(PointArithmetic, WorksByCoordinatesAndRefusesHugeFactorsAndTinyDivisors) {
    CNuPoint a(1.0, -2.0, 4.0);
    CNuPoint b(0.5, 0.5, -1.0);
    EXPECT_TRUE(PointsNear(a + b, CNuPoint(1.5, -1.5, 3.0), test::kExact));
    EXPECT_TRUE(PointsNear(a - b, CNuPoint(0.5, -2.5, 5.0), test::kExact));
    EXPECT_TRUE(PointsNear(-a, CNuPoint(-1.0, 2.0, -4.0), test::kExact));
    EXPECT_TRUE(PointsNear(a * 2.0, CNuPoint(2.0, -4.0, 8.0), test::kExact));
    EXPECT_TRUE(PointsNear(a / 4.0, CNuPoint(0.25, -0.5, 1.0), test::kExact));
    CNuPoint c(a);
    c += b;
    c -= a;
    c *= 2.0;
    c /= 2.0;
    EXPECT_TRUE(PointsNear(c, b, test::kExact));
    CNuPoint::Swap(a, b);
    EXPECT_EQ(a.x(), 0.5);
    EXPECT_EQ(b.z(), 4.0);

    ExpectNuFailure<Op>([&] { a / 0.0; }, 106, "operator/", "CNuPoint");
    ExpectNuFailure<Op>([&] { a /= 1e-301; }, 106, "operator/=", "CNuPoint");
    ExpectNuFailure<Op>([&] { a * 1e301; }, 107, "operator*", "CNuPoint");
    ExpectNuFailure<Op>([&] { a *= -1e301; }, 107, "operator*=", "CNuPoint");
    EXPECT_EQ(a.x(), 0.5) << "a refused operation leaves the point as it was";
}

TEST(PointConversion, GivesThreeAndFourVectorsAndComesBackFromHomogeneousForm) {
    CNuPoint p(1.0, 2.0, 3.0);
    CNuVector v = p;
    EXPECT_EQ(v.GetSize(), 3);
    EXPECT_EQ(p.To3DVector()[2], 3.0);
    CNuVector h = p.To4DVector();
    ASSERT_EQ(h.GetSize(), 4);
    EXPECT_EQ(h[3], 1.0);
    CNuVector w(4);
    w[0] = 2.0;
    w[1] = 4.0;
    w[2] = 6.0;
    w[3] = 2.0;
    EXPECT_TRUE(PointsNear(w.To3DPoint(), CNuPoint(1.0, 2.0, 3.0), test::kExact));
    EXPECT_TRUE(PointsNear(v.To3DPoint(), p, test::kExact));
    double x = 0.0, y = 0.0, z = 0.0;
    p.GetData(&x, &y, &z);
    EXPECT_EQ(x + y + z, 6.0);
}

TEST(PointDistance, MatchesClosedFormsForLinesAndPlanes) {
    test::Random rng;
    for (int k = 0; k < 200; ++k) {
        CNuPoint p = test::RandomPoint(rng);
        CNuPoint q = test::RandomPoint(rng);
        CNuVector d = test::RandomDirection(rng);
        CNuLine line(q, d);
        // |(p - q) x d| / |d| is the distance to the line.
        CNuVector pq = (p - q).To3DVector();
        double dLine = (pq * d).Magnitude() / d.Magnitude();
        EXPECT_NEAR(p.DistanceTo(line), dLine, kGeometry);
        CNuPoint f = p.ProjectionOn(line);
        EXPECT_NEAR((p - f).To3DVector() % line.GetDirection(), 0.0, kGeometry);
        EXPECT_NEAR(f.DistanceTo(line), 0.0, kGeometry);

        CNuPlane plane(q, d);
        double dPlane = std::fabs(pq % d) / d.Magnitude();
        EXPECT_NEAR(p.DistanceTo(plane), dPlane, kGeometry);
        CNuPoint g = p.ProjectionOn(plane);
        EXPECT_NEAR(g.DistanceTo(plane), 0.0, kGeometry);
        EXPECT_NEAR(p.DistanceTo(g), dPlane, kGeometry);
        EXPECT_TRUE(PointsNear(p.MidPoint(plane), p.MidPoint(g), test::kExact));
        EXPECT_TRUE(PointsNear(p.MidPoint(line), p.MidPoint(f), test::kExact));
    }
    EXPECT_EQ(CNuPoint(1.0, 1.0, 1.0).DistanceTo(CNuPoint(1.0, 1.0, 1.0 + 1e-301)), 0.0)
        << "below NuGetZero() a distance is 0";
    EXPECT_EQ(CNuPoint(3.0, 4.0, 0.0).DistanceTo(CNuPoint()), 5.0);
}

TEST(PointRotation, TurnsAboutTheOriginOrACentreInDegrees) {
    CNuPoint p(1.0, 0.0, 0.0);
    p.Rotate(90.0, CNuGeometry::eZAxis);
    EXPECT_TRUE(PointsNear(p, CNuPoint(0.0, 1.0, 0.0), test::kExact));
    CNuPoint q(2.0, 1.0, 5.0);
    q.Rotate(180.0, CNuGeometry::eZAxis, CNuPoint(1.0, 1.0, 0.0));
    EXPECT_TRUE(PointsNear(q, CNuPoint(0.0, 1.0, 5.0), test::kExact));

    test::Random rng;
    for (int k = 0; k < 50; ++k) {
        CNuPoint a = test::RandomPoint(rng);
        CNuPoint centre = test::RandomPoint(rng);
        CNuVector axis = test::RandomDirection(rng);
        double dAngle = rng.Uniform(-170.0, 170.0);
        CNuPoint b(a);
        b.Rotate(dAngle, axis, centre);
        EXPECT_NEAR(b.DistanceTo(centre), a.DistanceTo(centre), kGeometry);
        b.Rotate(-dAngle, axis, centre);
        EXPECT_TRUE(PointsNear(b, a, kGeometry));
    }
    ExpectNuFailure<Op>([&] { p.Rotate(10.0, CNuVector(0.0, 0.0, 0.0)); }, 109, "rotation",
                        "CNuVector");
}

TEST(PointFrames, MoveToAFrameIsUndoneByTheFrameItself) {
    test::Random rng;
    for (int k = 0; k < 50; ++k) {
        CNuPoint p = test::RandomPoint(rng);
        CNuPoint origin = test::RandomPoint(rng);
        CNuVector z = test::RandomDirection(rng);
        CNuVector x;
        CNuVector zUnit(z);
        zUnit.OrthonormalX(&x);
        CNuVector y = zUnit * x;
        CNuPoint local(p);
        // Axes given at any length: the frame normalises copies.
        local.MoveTo(origin, x * 3.0, z);
        CNuVector world = x * local.x() + y * local.y() + zUnit * local.z();
        EXPECT_TRUE(PointsNear(origin + world.To3DPoint(), p, kGeometry));
    }
}

TEST(PointFrames, MoveToAnElementAppliesItsTranslationThenItsRotation) {
    test::Element element;
    element.SetPosition(CNuPoint(1.0, 2.0, 3.0), CNuVector(0.0, 1.0, 0.0),
                        CNuVector(0.0, 0.0, 1.0));
    // R has the rows X (0, 1, 0), Y = Z x X (-1, 0, 0), Z (0, 0, 1); p becomes (p - T) R.
    CNuPoint p(2.0, 2.0, 3.0);
    p.MoveTo(element);
    EXPECT_TRUE(PointsNear(p, CNuPoint(0.0, 1.0, 0.0), test::kExact));
    CNuPoint q(4.0, -1.0, 0.0);
    q.MoveTo(test::Element());
    EXPECT_TRUE(PointsNear(q, CNuPoint(4.0, -1.0, 0.0), test::kExact));
}

TEST(PointMidPlanes, BisectTheSegmentAndRefuseCoincidentPoints) {
    CNuPoint a(1.0, 2.0, 3.0);
    CNuPoint b(3.0, 2.0, -1.0);
    CNuPlane mid = a.MidPlane(b);
    EXPECT_NEAR(a.DistanceTo(mid), b.DistanceTo(mid), kGeometry);
    EXPECT_TRUE(PointsNear(mid.GetPoint(), CNuPoint(2.0, 2.0, 1.0), test::kExact));
    ExpectNuFailure<Op>([&] { a.MidPlane(a); }, 119, "calculation", "CNuPoint::MidPlane(CNuPoint)");

    CNuLine line(CNuPoint(0.0, 0.0, 0.0), CNuVector(1.0, 0.0, 0.0));
    CNuPoint c(5.0, 4.0, 0.0);
    CNuPlane toLine = c.MidPlane(line);
    EXPECT_TRUE(PointsNear(toLine.GetPoint(), CNuPoint(5.0, 2.0, 0.0), test::kExact));
    EXPECT_EQ(toLine.GetNormal()[1], 1.0);
    ExpectNuFailure<Op>([&] { CNuPoint(7.0, 0.0, 0.0).MidPlane(line); }, 121, "calculation",
                        "CNuPoint::MidPlane(CNuLine)");
}

TEST(PointSides, TellTheSideOfALineAndOfAPlane) {
    CNuLine xAxis(CNuPoint(0.0, 0.0, 0.0), CNuVector(1.0, 0.0, 0.0));
    // direction x (p - foot) is +z for points above the x axis.
    EXPECT_EQ(CNuPoint(3.0, 1.0, 0.0).LineSide(xAxis, 1e-9), CNuGeometry::eLineSidePositive);
    EXPECT_EQ(CNuPoint(3.0, -1.0, 0.0).LineSide(xAxis, 1e-9), CNuGeometry::eLineSideNegative);
    EXPECT_EQ(CNuPoint(3.0, -1.0, 0.0).LineSide(xAxis, CNuVector(0.0, 0.0, -1.0), 1e-9),
              CNuGeometry::eLineSidePositive);
    // On the line whatever the reference, even a zero one.
    EXPECT_EQ(CNuPoint(3.0, 1e-12, 0.0).LineSide(xAxis, CNuVector(0.0, 0.0, 0.0), 1e-9),
              CNuGeometry::eLineSideOn);

    CNuPlane floor(CNuPoint(0.0, 0.0, 1.0), CNuVector(0.0, 0.0, 2.0));
    EXPECT_EQ(CNuPoint(5.0, 5.0, 1.0).SurfaceSide(floor, 1e-9), CNuGeometry::eSurfaceSideOn);
    EXPECT_EQ(CNuPoint(5.0, 5.0, 0.0).SurfaceSide(floor, 1e-9), CNuGeometry::eSurfaceSideInner);
    EXPECT_EQ(CNuPoint(5.0, 5.0, 2.0).SurfaceSide(floor, 1e-9), CNuGeometry::eSurfaceSideOuter);
    // With a tolerance of 0 a point on the plane is no longer "on" it, and its offset of 0
    // counts as the inside.
    EXPECT_EQ(CNuPoint(5.0, 5.0, 1.0).SurfaceSide(floor, 0.0), CNuGeometry::eSurfaceSideInner);
}

TEST(PointDispatch, RefusesCurvesAndSurfacesItCannotMeasure) {
    CNuPoint p(1.0, 2.0, 3.0);
    test::TaggedSurface torus(CNuObject::eTypeTorSurf);
    test::TaggedSurface cylinder(CNuObject::eTypeCylSurf);
    test::TaggedCurve circle(CNuObject::eTypeCircle);
    test::TaggedCurve segment(CNuObject::eTypeLineSegment);
    CNuLine line;
    ExpectNuFailure<Op>([&] { p.DistanceTo(torus); }, 145, "calculation", "CNuPoint::DistanceTo()");
    ExpectNuFailure<Op>([&] { p.DistanceTo(cylinder); }, 145, "calculation",
                        "CNuPoint::DistanceTo()");
    ExpectNuFailure<Op>([&] { p.DistanceTo(circle); }, 145, "calculation",
                        "CNuPoint::DistanceTo()");
    ExpectNuFailure<Op>([&] { p.DistanceTo(segment); }, 145, "calculation",
                        "CNuPoint::DistanceTo()");
    ExpectNuFailure<Op>([&] { p.ProjectionOn(torus); }, 145, "calculation",
                        "CNuPoint::ProjectionOn(CNuSurface)");
    ExpectNuFailure<Op>([&] { p.CurveSide(circle, 1e-9); }, 145, "calculation",
                        "CNuPoint::CurveSide()");
    ExpectNuFailure<Op>([&] { p.CurveSide(line, 1e-9); }, 145, "calculation",
                        "CNuPoint::CurveSide()");
    ExpectNuFailure<Op>([&] { p.SurfaceSide(line, 1e-9); }, 145, "calculation",
                        "CNuPoint::SurfaceSide()");
    ExpectNuFailure<Op>([&] { p.SurfaceSide(torus, 1e-9); }, 145, "calculation",
                        "CNuPoint::SurfaceSide()");
}

TEST(PointRecord, WritesTwentyFiveBytesAndReadsThemBack) {
    std::string sPath = ::testing::TempDir() + "numorix_point_record.bin";
    CNuPoint p(1.5, -2.25, 1e-300);
    {
        std::ofstream out(sPath, std::ios::binary | std::ios::trunc);
        ASSERT_TRUE(p.BinaryDump(out));
        ASSERT_TRUE(CNuPoint(7.0, 8.0, 9.0).BinaryDump(out));
    }
    std::ifstream probe(sPath, std::ios::binary | std::ios::ate);
    EXPECT_EQ(static_cast<long>(probe.tellg()), 50L);
    probe.close();

    std::ifstream in(sPath, std::ios::binary);
    CNuPoint q;
    ASSERT_TRUE(q.BinaryRead(in));
    EXPECT_TRUE(PointsNear(q, p, test::kExact));
    EXPECT_EQ(q.z(), 1e-300);
    ASSERT_TRUE(q.BinaryRead(in));
    EXPECT_EQ(q.y(), 8.0);
    // At the end of the file the tag stays "0": no point is read and q keeps its value.
    EXPECT_FALSE(q.BinaryRead(in));
    EXPECT_EQ(q.x(), 7.0);
    in.close();

    {
        std::ofstream out(sPath, std::ios::binary | std::ios::trunc);
        out.write("l", 1);
    }
    std::ifstream wrong(sPath, std::ios::binary);
    CNuPoint r(1.0, 1.0, 1.0);
    EXPECT_FALSE(r.BinaryRead(wrong));
    EXPECT_TRUE(PointsNear(r, CNuPoint(1.0, 1.0, 1.0), test::kExact));
    wrong.close();
    std::remove(sPath.c_str());
}

TEST(CartesianCoord, StartsAsTheWorldFrameAndStoresAxesAsGiven) {
    CNuCartesianCoord frame;
    EXPECT_EQ(frame.GetType(), CNuObject::eTypeCartesianCoord);
    EXPECT_EQ(frame.GetLocalXaxis()[0], 1.0);
    EXPECT_EQ(frame.GetLocalZaxis()[2], 1.0);
    frame.SetLocalXaxis(CNuVector(3.0, 0.0, 0.0));
    frame.SetLocalZaxis(CNuVector(1.0, 1.0, 1.0));
    EXPECT_EQ(frame.GetLocalXaxis()[0], 3.0) << "no normalising";
    EXPECT_EQ(frame.GetLocalZaxis()[0], 1.0) << "no orthogonality test";
    frame.SetLocalXaxis(CNuVector(5));
    EXPECT_EQ(frame.GetLocalXaxis().GetSize(), 5) << "an axis of another size replaces the axis";
    frame.SetData(CNuPoint(1.0, 2.0, 3.0), CNuVector(0.0, 1.0, 0.0), CNuVector(1.0, 0.0, 0.0));
    CNuPoint origin;
    CNuVector x;
    CNuVector z;
    CNuCartesianCoord copy(frame);
    copy.GetData(&origin, &x, &z);
    EXPECT_EQ(origin.z(), 3.0);
    EXPECT_EQ(x[1], 1.0);
    EXPECT_EQ(z[0], 1.0);
}

}  // namespace
}  // namespace numorix
