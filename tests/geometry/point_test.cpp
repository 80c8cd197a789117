// Points and Cartesian frames: the box comparison, refusals, distances and projections against
// closed forms, rotations and frame changes, sides, the dispatch on curves and surfaces, and the
// binary record.
#include <cstdio>
#include <fstream>
#include <string>

#include "geometry_test_support.h"
#include "numorix/curves/circle.h"
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

TEST(Point, ComparesByAStrictBoxAndRefusesHugeFactorsAndTinyDivisors) {
    CNuPoint p(1.0, 2.0, 3.0);
    EXPECT_EQ(p.IsEqual(p, 0.0), eNuFalse);
    // The corner of the box: 0.9 off in every coordinate is inside a box of 1, though 1.56 away.
    EXPECT_EQ(p.IsEqual(CNuPoint(1.9, 2.9, 3.9), 1.0), eNuTrue);
    EXPECT_EQ(p.IsEqual(CNuPoint(2.0, 2.0, 3.0), 1.0), eNuFalse);
    EXPECT_EQ(CNuPoint(0.5, 0.0, 0.0).IsZero(0.5), eNuFalse);
    test::ExpectFailures<Op>({{[&] { p / 0.0; }, 106, "operator/", "CNuPoint"},
                              {[&] { p /= 1e-301; }, 106, "operator/=", "CNuPoint"},
                              {[&] { p * 1e301; }, 107, "operator*", "CNuPoint"},
                              {[&] { p *= -1e301; }, 107, "operator*=", "CNuPoint"}});
    EXPECT_TRUE(PointsNear(p, CNuPoint(1.0, 2.0, 3.0), test::kExact)) << "left unchanged";
}

TEST(Point, DistancesAndProjectionsMatchClosedForms) {
    test::Random rng;
    for (int k = 0; k < 200; ++k) {
        CNuPoint p = test::RandomPoint(rng);
        CNuPoint q = test::RandomPoint(rng);
        CNuVector d = test::RandomDirection(rng);
        CNuVector pq = (p - q).To3DVector();
        CNuLine line(q, d);
        EXPECT_NEAR(p.DistanceTo(line), (pq * d).Magnitude() / d.Magnitude(), kGeometry);
        CNuPoint f = p.ProjectionOn(line);
        EXPECT_NEAR((p - f).To3DVector() % line.GetDirection(), 0.0, kGeometry);
        CNuPlane plane(q, d);
        double dPlane = std::fabs(pq % d) / d.Magnitude();
        EXPECT_NEAR(p.DistanceTo(plane), dPlane, kGeometry);
        CNuPoint g = p.ProjectionOn(plane);
        EXPECT_NEAR(g.DistanceTo(plane), 0.0, kGeometry);
        EXPECT_NEAR(p.DistanceTo(g), dPlane, kGeometry);
        EXPECT_TRUE(PointsNear(p.MidPoint(line), p.MidPoint(f), test::kExact));
    }
    EXPECT_EQ(CNuPoint(1.0, 1.0, 1.0).DistanceTo(CNuPoint(1.0, 1.0, 1.0 + 1e-301)), 0.0)
        << "a distance below NuGetZero() is 0";
}

TEST(Point, RotationsAndFrameChangesAreUndoneByTheirInverses) {
    CNuPoint q(2.0, 1.0, 5.0);
    q.Rotate(180.0, CNuGeometry::eZAxis, CNuPoint(1.0, 1.0, 0.0));
    EXPECT_TRUE(PointsNear(q, CNuPoint(0.0, 1.0, 5.0), test::kExact));
    test::Random rng;
    for (int k = 0; k < 50; ++k) {
        CNuPoint p = test::RandomPoint(rng);
        CNuPoint centre = test::RandomPoint(rng);
        CNuVector axis = test::RandomDirection(rng);
        double dAngle = rng.Uniform(-170.0, 170.0);
        CNuPoint b(p);
        b.Rotate(dAngle, axis, centre);
        EXPECT_NEAR(b.DistanceTo(centre), p.DistanceTo(centre), kGeometry);
        b.Rotate(-dAngle, axis, centre);
        EXPECT_TRUE(PointsNear(b, p, kGeometry));

        // Local coordinates in the frame (origin, x, z), the axes given at any length, rebuild
        // the point as origin + lx x + ly y + lz z.
        CNuVector z(axis);
        CNuVector x;
        z.OrthonormalX(&x);
        CNuPoint local(p);
        local.MoveTo(centre, x * 3.0, axis);
        CNuVector world = x * local.x() + (z * x) * local.y() + z * local.z();
        EXPECT_TRUE(PointsNear(centre + world.To3DPoint(), p, kGeometry));
    }
    // Into an element's frame: (p - T) R, R having the rows X (0, 1, 0), Y (-1, 0, 0), Z.
    test::Element element;
    element.SetPosition(CNuPoint(1, 2, 3), CNuVector(0, 1, 0), CNuVector(0, 0, 1));
    CNuPoint p(2.0, 2.0, 3.0);
    p.MoveTo(element);
    EXPECT_TRUE(PointsNear(p, CNuPoint(0.0, 1.0, 0.0), test::kExact));
}

TEST(Point, MidPlanesBisectAndRefuseVanishingOffsets) {
    CNuPoint a(1.0, 2.0, 3.0);
    CNuPlane mid = a.MidPlane(CNuPoint(3.0, 2.0, -1.0));
    EXPECT_TRUE(PointsNear(mid.GetPoint(), CNuPoint(2.0, 2.0, 1.0), test::kExact));
    EXPECT_NEAR(a.DistanceTo(mid), std::sqrt(5.0), kGeometry);
    ExpectNuFailure<Op>([&] { a.MidPlane(a); }, 119, "calculation", "CNuPoint::MidPlane(CNuPoint)");
    CNuLine line(CNuPoint(0.0, 0.0, 0.0), CNuVector(1.0, 0.0, 0.0));
    CNuPlane toLine = CNuPoint(5.0, 4.0, 0.0).MidPlane(line);
    EXPECT_TRUE(PointsNear(toLine.GetPoint(), CNuPoint(5.0, 2.0, 0.0), test::kExact));
    EXPECT_EQ(toLine.GetNormal()[1], 1.0);
    ExpectNuFailure<Op>([&] { CNuPoint(7.0, 0.0, 0.0).MidPlane(line); }, 121, "calculation",
                        "CNuPoint::MidPlane(CNuLine)");
}

TEST(Point, TellsSidesOfLinesPlanesAndCirclesAndRefusesShapesItCannotMeasure) {
    CNuLine xAxis(CNuPoint(0.0, 0.0, 0.0), CNuVector(1.0, 0.0, 0.0));
    EXPECT_EQ(CNuPoint(3, 1, 0).LineSide(xAxis, 1e-9), CNuGeometry::eLineSidePositive);
    EXPECT_EQ(CNuPoint(3, -1, 0).LineSide(xAxis, 1e-9), CNuGeometry::eLineSideNegative);
    EXPECT_EQ(CNuPoint(3, -1, 0).LineSide(xAxis, CNuVector(0, 0, -1), 1e-9),
              CNuGeometry::eLineSidePositive);
    EXPECT_EQ(CNuPoint(3, 1e-12, 0).LineSide(xAxis, CNuVector(0, 0, 0), 1e-9),
              CNuGeometry::eLineSideOn)
        << "on the line whatever the reference";

    CNuPlane floor(CNuPoint(0.0, 0.0, 1.0), CNuVector(0.0, 0.0, 2.0));
    EXPECT_EQ(CNuPoint(5, 5, 1).SurfaceSide(floor, 1e-9), CNuGeometry::eSurfaceSideOn);
    EXPECT_EQ(CNuPoint(5, 5, 0).SurfaceSide(floor, 1e-9), CNuGeometry::eSurfaceSideInner);
    EXPECT_EQ(CNuPoint(5, 5, 2).SurfaceSide(floor, 1e-9), CNuGeometry::eSurfaceSideOuter);
    EXPECT_EQ(CNuPoint(5, 5, 1).SurfaceSide(floor, 0.0), CNuGeometry::eSurfaceSideInner)
        << "an offset of 0 off the tolerance counts as inside";

    CNuPoint p(1.0, 2.0, 3.0);
    test::TaggedSurface torus(CNuObject::eTypeTorSurf);
    test::TaggedCurve pcurve(CNuObject::eTypePCurve);
    test::ExpectFailures<Op>({
        {[&] { p.DistanceTo(torus); }, 145, "calculation", "CNuPoint::DistanceTo()"},
        {[&] { p.DistanceTo(pcurve); }, 145, "calculation", "CNuPoint::DistanceTo()"},
        {[&] { p.ProjectionOn(torus); }, 145, "calculation", "CNuPoint::ProjectionOn(CNuSurface)"},
        {[&] { p.CurveSide(pcurve, 1e-9); }, 145, "calculation", "CNuPoint::CurveSide()"},
        {[&] { p.SurfaceSide(xAxis, 1e-9); }, 145, "calculation", "CNuPoint::SurfaceSide()"},
    });

    // Circles are measured in their plane, and points off it refused.
    CNuCircle circle(2.0, CNuPoint(1.0, 1.0, 1.0), CNuVector(0.0, 0.0, 1.0));
    EXPECT_NEAR(CNuPoint(4.0, 1.0, 1.0).DistanceTo(circle), 1.0, kGeometry);
    EXPECT_NEAR(CNuPoint(1.0, 1.0, 1.0).DistanceTo(circle), 2.0, kGeometry);
    EXPECT_EQ(CNuPoint(3.0, 1.0, 1.0).CurveSide(circle, 1e-9), CNuGeometry::eCurveSideOn);
    EXPECT_EQ(CNuPoint(1.5, 1.0, 1.0).CurveSide(circle, 1e-9), CNuGeometry::eCurveSideInner);
    EXPECT_EQ(CNuPoint(9.0, 1.0, 1.0).CurveSide(circle, 1e-9), CNuGeometry::eCurveSideOuter);
    CNuPoint off(1.0, 1.0, 2.0);
    test::ExpectFailures<Op>({
        {[&] { off.DistanceTo(circle); }, 122, "calculation", "CNuPoint::DistanceTo()"},
        {[&] { off.CurveSide(circle, 1e-9); }, 122, "calculation", "CNuPoint::CurveSide()"},
    });
}

TEST(Point, RecordHasTwentyFiveBytesAndAWrongTagReadsNothing) {
    std::string sPath = ::testing::TempDir() + "numorix_point_record.bin";
    {
        std::ofstream out(sPath, std::ios::binary | std::ios::trunc);
        ASSERT_TRUE(CNuPoint(1.5, -2.25, 1e-300).BinaryDump(out));
        out.write("l", 1);
    }
    std::ifstream in(sPath, std::ios::binary | std::ios::ate);
    EXPECT_EQ(static_cast<long>(in.tellg()), 26L) << "25 bytes and the stray tag";
    in.seekg(0);
    CNuPoint q;
    ASSERT_TRUE(q.BinaryRead(in));
    EXPECT_TRUE(PointsNear(q, CNuPoint(1.5, -2.25, 1e-300), test::kExact));
    EXPECT_FALSE(q.BinaryRead(in));
    EXPECT_FALSE(q.BinaryRead(in)) << "at the end of the file the tag stays '0'";
    EXPECT_EQ(q.y(), -2.25);
    std::remove(sPath.c_str());
}

TEST(CartesianCoord, StartsAsTheWorldFrameAndStoresAxesAsGiven) {
    CNuCartesianCoord frame;
    EXPECT_EQ(frame.GetLocalXaxis()[0], 1.0);
    EXPECT_EQ(frame.GetLocalZaxis()[2], 1.0);
    frame.SetData(CNuPoint(1, 2, 3), CNuVector(3, 0, 0), CNuVector(1, 1, 1));
    EXPECT_EQ(frame.GetLocalXaxis()[0], 3.0) << "no normalising";
    frame.SetLocalXaxis(CNuVector(5));
    CNuCartesianCoord copy(frame);
    EXPECT_EQ(copy.GetLocalXaxis().GetSize(), 5) << "an axis of another size replaces the axis";
    EXPECT_EQ(copy.GetOrigin().z(), 3.0);
}

}  // namespace
}  // namespace numorix
