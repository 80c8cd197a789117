// Points and the position model of curves and surfaces. Points: the box comparison, refusals,
// distances, projections and mid planes against closed forms, rotations and frame changes, sides
// at and around their tolerance, and the binary record. The position model: lazy creation, copies,
// the two disagreeing Translate overloads, rotations, and the transformations and their inverses.
#include <cmath>
#include <fstream>

#include "dense_support.h"
#include "geometry_support.h"
#include "numorix/curves/circle.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/non_linear_geometry.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

using test::kGeometry;
using test::PointsNear;
using G = CNuGeometry;

// A positioned element whose frame the tests can set and read.
class Element : public CNuNonLinearGeometry {
  public:
    using CNuNonLinearGeometry::GetPosition;
    using CNuNonLinearGeometry::SetPosition;
};

TEST(Point, ComparesByAStrictBoxRefusesTinyDivisorsAndVanishingMidPlanesAndKeepsItsRecord) {
    CNuPoint p(1.0, 2.0, 3.0);
    EXPECT_EQ(p.IsEqual(p, 0.0), eNuFalse);
    // The corner of the box: 0.9 off in every coordinate is inside a box of 1, though 1.56 away.
    EXPECT_EQ(p.IsEqual(CNuPoint(1.9, 2.9, 3.9), 1.0), eNuTrue);
    EXPECT_EQ(p.IsEqual(CNuPoint(2.0, 2.0, 3.0), 1.0), eNuFalse);
    EXPECT_EQ(CNuPoint(0.5, 0.0, 0.0).IsZero(0.5), eNuFalse);
    test::ExpectFailures<CNuOperationException>({
        {[&] { p / 1e-301; }, 106, "operator/", "CNuPoint"},
        {[&] { p *= -1e301; }, 107, "operator*=", "CNuPoint"},
        {[&] { p.MidPlane(p); }, 119, "calculation", "CNuPoint::MidPlane(CNuPoint)"},
        {[&] { CNuPoint(7, 0, 0).MidPlane(CNuLine(CNuPoint(), CNuVector(1, 0, 0))); }, 121,
         "calculation", "CNuPoint::MidPlane(CNuLine)"},
    });
    EXPECT_EQ((p / 4.0).DistanceTo(CNuPoint(0.25, 0.5, 0.75)), 0.0);
    double x = 0.0, z = 0.0;
    p.GetData(&x, nullptr, &z);  // null outputs are skipped
    EXPECT_TRUE(PointsNear(p, CNuPoint(x, 2.0, z), test::kExact)) << "left unchanged";
    // The record: a tag and three doubles; a wrong tag reads nothing.
    test::TempPath path("point_record.bin");
    std::ofstream out(path.Name(), std::ios::binary | std::ios::trunc);
    ASSERT_TRUE(CNuPoint(1.5, -2.25, 1e-300).BinaryDump(out));
    out.write("l", 1);
    out.close();
    EXPECT_EQ(path.Bytes().size(), 26u) << "25 bytes and a stray tag";
    std::ifstream in(path.Name(), std::ios::binary);
    ASSERT_TRUE(p.BinaryRead(in));
    EXPECT_TRUE(PointsNear(p, CNuPoint(1.5, -2.25, 1e-300), test::kExact));
    EXPECT_FALSE(p.BinaryRead(in)) << "the stray tag is no point's";
}

TEST(Point, MeasuresBisectsAndRotatesByClosedFormsAndFrameChangesAreUndone) {
    test::Random rng;
    for (int k = 0; k < 100; ++k) {
        CNuPoint p = test::RandomPoint(rng), q = test::RandomPoint(rng);
        CNuVector d = test::RandomDirection(rng);
        CNuVector pq = (p - q).To3DVector();
        CNuLine line(q, d);
        EXPECT_NEAR(p.DistanceTo(line), (pq * d).Magnitude() / d.Magnitude(), kGeometry);
        EXPECT_NEAR(p.DistanceTo(CNuPlane(q, d)), std::fabs(pq % d) / d.Magnitude(), kGeometry);
        // Mid planes bisect: to a point, and to the foot on a line.
        EXPECT_NEAR(p.DistanceTo(p.MidPlane(q)), 0.5 * p.DistanceTo(q), kGeometry);
        EXPECT_NEAR(p.DistanceTo(p.MidPlane(line)), 0.5 * p.DistanceTo(line), kGeometry);
        double dAngle = rng.Uniform(-170.0, 170.0);
        CNuPoint b(p);
        b.Rotate(dAngle, d, q);
        EXPECT_NEAR(b.DistanceTo(q), p.DistanceTo(q), kGeometry);
        b.Rotate(-dAngle, d, q);
        EXPECT_TRUE(PointsNear(b, p, kGeometry));
        // Local coordinates in a frame (origin, x, z), the axes given at any length, rebuild
        // the point in that frame.
        test::Frame f = test::RandomFrame(rng);
        b.MoveTo(f.origin, f.x * 3.0, f.z * 0.5);
        EXPECT_TRUE(PointsNear(f.World(b.x(), b.y(), b.z()), p, kGeometry));
    }
    // Into an element's frame: (p - T) R, R having the rows X (0, 1, 0), Y (-1, 0, 0), Z.
    Element element;
    element.SetPosition(CNuPoint(1, 2, 3), CNuVector(0, 1, 0), CNuVector(0, 0, 1));
    CNuPoint q(2.0, 2.0, 3.0);
    q.MoveTo(element);
    EXPECT_TRUE(PointsNear(q, CNuPoint(0.0, 1.0, 0.0), test::kExact));
}

TEST(Point, TellsItsSideAndIsOnAPlaneUpToTheLengthToleranceAndOffItJustBeyond) {
    CNuLine xAxis(CNuPoint(0.0, 0.0, 0.0), CNuVector(1.0, 0.0, 0.0));
    EXPECT_EQ(CNuPoint(3, 1, 0).LineSide(xAxis, 1e-9), G::eLineSidePositive);
    EXPECT_EQ(CNuPoint(3, -1, 0).LineSide(xAxis, 1e-9), G::eLineSideNegative);
    EXPECT_EQ(CNuPoint(3, -1, 0).LineSide(xAxis, CNuVector(0, 0, -1), 1e-9), G::eLineSidePositive);
    CNuCircle circle(2.0);  // in the floor, about the origin
    EXPECT_EQ(CNuPoint(1.5, 0.0, 0.0).CurveSide(circle, 1e-9), G::eCurveSideInner);

    // The default length tolerance is 1e-12; the heights are the offsets from the floor exactly.
    const double dLength = 1e-12;
    CNuPlane floor(CNuPoint(), CNuVector(0.0, 0.0, 1.0));
    struct {
        double dHeight;
        G::ESurfaceSideType eSide;  // on only strictly within the tolerance
        bool bMeasured;             // by the circle, whose limit is inclusive
    } rows[] = {{0.5 * dLength, G::eSurfaceSideOn, true},
                {dLength, G::eSurfaceSideOuter, true},
                {2.0 * dLength, G::eSurfaceSideOuter, false},
                {0.0, G::eSurfaceSideInner, true}};  // with a tolerance of 0
    for (const auto& row : rows) {
        SCOPED_TRACE("height " + std::to_string(row.dHeight / dLength) + " length tolerances");
        CNuPoint p(3.0, 0.0, row.dHeight);
        EXPECT_EQ(p.SurfaceSide(floor, row.dHeight == 0.0 ? 0.0 : NuGetLengthTol()), row.eSide);
        if (row.bMeasured) {
            EXPECT_NEAR(p.DistanceTo(circle), 1.0, kGeometry);
            EXPECT_EQ(p.CurveSide(circle, dLength), G::eCurveSideOuter);
            continue;
        }
        test::ExpectFailures<CNuOperationException>({
            {[&] { p.DistanceTo(circle); }, 122, "calculation", "CNuPoint::DistanceTo()"},
            {[&] { p.CurveSide(circle, dLength); }, 122, "calculation", "CNuPoint::CurveSide()"},
        });
    }
}

CNuPoint OriginOf(const Element& e) {
    CNuPoint origin;
    e.GetPosition(&origin, nullptr, nullptr);
    return origin;
}

TEST(PositionModel, IsCreatedByAMoveOnlyCopiedWithItsOwnerAndTheTwoTranslationsDisagree) {
    Element e;
    e.Rotate(0.0, CNuGeometry::eZAxis);
    e.Rotate(1e-301, CNuVector(0.0, 0.0, 0.0));  // returns before the axis is tested
    test::ExpectNuFailure<CNuOperationException>([&] { e.Rotate(10.0, CNuVector(2)); }, 110,
                                                 "rotation", "CNuNonLinearGeometry");
    EXPECT_FALSE(e.IsPositionSet()) << "neither a rotation by zero nor a refused one places it";
    e.Translate(1.0, 2.0, 3.0);
    e.Translate(1.0, 2.0, 3.0);
    EXPECT_TRUE(PointsNear(OriginOf(e), CNuPoint(2.0, 4.0, 6.0), test::kExact)) << "relative";
    Element copy(e);
    CNuNonLinearGeometry& base = copy;  // reached through the virtual slots
    base.Translate(CNuPoint(1.0, 2.0, 3.0));
    base.Translate(CNuPoint(1.0, 2.0, 3.0));
    EXPECT_TRUE(PointsNear(OriginOf(copy), CNuPoint(1.0, 2.0, 3.0), test::kExact)) << "absolute";
    EXPECT_EQ(OriginOf(e).x(), 2.0) << "the copy owns its frame";
    copy.CopyPosition(Element());
    EXPECT_EQ(OriginOf(copy).x(), 1.0) << "an unplaced source copies nothing";
}

TEST(PositionModel, RotatesAboutItsCentreAndItsTransformationTimesItsInverseIsTheIdentity) {
    Element turned;
    turned.Translate(CNuPoint(1.0, 1.0, 0.0));
    turned.Rotate(90.0, CNuVector(0.0, 0.0, 5.0), CNuPoint(1.0, 1.0, 0.0));
    CNuVector x;
    turned.GetPosition(nullptr, &x, nullptr);
    EXPECT_TRUE(PointsNear(x.To3DPoint(), CNuPoint(0.0, 1.0, 0.0), kGeometry));
    EXPECT_TRUE(PointsNear(OriginOf(turned), CNuPoint(1.0, 1.0, 0.0), kGeometry)) << "centre stays";
    turned.Rotate(90.0, G::eXAxis, CNuPoint(0.0, 0.0, 1.0));
    EXPECT_TRUE(PointsNear(OriginOf(turned), CNuPoint(1.0, 1.0, 2.0), kGeometry));
    test::Random rng;
    for (int k = 0; k < 50; ++k) {
        Element e;
        e.Rotate(rng.Uniform(-180.0, 180.0), test::RandomDirection(rng));
        e.Rotate(rng.Uniform(-180.0, 180.0), CNuGeometry::eXAxis);
        e.Translate(rng.Uniform(-5.0, 5.0), rng.Uniform(-5.0, 5.0), rng.Uniform(-5.0, 5.0));
        CNuMatrix t = e.GetTransformation(), inverse = e.GetInverseTransformation();
        double dError = test::MaxDifference(t * inverse, CNuMatrix::Identity(4));
        EXPECT_LE(dError, kGeometry) << "T T^-1 - I reaches " << dError;
        // A local point reaches the world as local R + T in one homogeneous product.
        CNuPoint local = test::RandomPoint(rng);
        CNuPoint world = (local.To4DVector() * t).To3DPoint();
        CNuVector expected = local.To3DVector() * e.GetRotation() + e.GetTranslation();
        EXPECT_TRUE(PointsNear(world, expected.To3DPoint(), kGeometry));
        EXPECT_TRUE(PointsNear((world.To4DVector() * inverse).To3DPoint(), local, kGeometry));
    }
}

}  // namespace
}  // namespace numorix
