// The position model of curves and surfaces: lazy creation, the two disagreeing Translate
// overloads, rotations and their refusals, and the transformations and their inverses.
#include "dense_support.h"
#include "geometry_test_support.h"
#include "numorix/linalg/matrix.h"

namespace numorix {
namespace {

using test::Element;
using test::kGeometry;
using test::PointsNear;

CNuPoint OriginOf(const Element& e) {
    CNuPoint origin;
    e.GetPosition(&origin, nullptr, nullptr);
    return origin;
}

TEST(PositionModel, IsCreatedOnlyByAMoveAndTheTwoTranslationsDisagree) {
    Element e;
    e.Rotate(0.0, CNuGeometry::eZAxis);
    e.Rotate(1e-301, CNuVector(0.0, 0.0, 0.0));  // returns before the axis is tested
    EXPECT_FALSE(e.IsPositionSet()) << "a rotation by zero creates no position";
    EXPECT_EQ(test::MaxDifference(e.GetTransformation(), CNuMatrix::Identity(4)), 0.0);
    Element relative;
    relative.Translate(1.0, 2.0, 3.0);
    relative.Translate(1.0, 2.0, 3.0);
    EXPECT_TRUE(PointsNear(OriginOf(relative), CNuPoint(2.0, 4.0, 6.0), test::kExact));
    Element absolute;
    CNuNonLinearGeometry& base = absolute;  // reached through the virtual slots
    base.Translate(CNuPoint(1.0, 2.0, 3.0));
    base.Translate(CNuPoint(1.0, 2.0, 3.0));
    EXPECT_TRUE(PointsNear(OriginOf(absolute), CNuPoint(1.0, 2.0, 3.0), test::kExact));
}

TEST(PositionModel, RotationsCarryOriginAndAxesAndRefuseBadAxes) {
    Element e;
    e.Rotate(90.0, CNuGeometry::eZAxis);
    CNuVector x;
    e.GetPosition(nullptr, &x, nullptr);
    EXPECT_TRUE(PointsNear(x.To3DPoint(), CNuPoint(0.0, 1.0, 0.0), test::kExact));
    Element f;
    f.Translate(CNuPoint(1.0, 1.0, 0.0));
    f.Rotate(90.0, CNuVector(0.0, 0.0, 5.0), CNuPoint(1.0, 1.0, 0.0));
    EXPECT_TRUE(PointsNear(OriginOf(f), CNuPoint(1.0, 1.0, 0.0), kGeometry)) << "centre stays";
    f.Rotate(90.0, CNuGeometry::eXAxis, CNuPoint(0.0, 0.0, 1.0));
    EXPECT_TRUE(PointsNear(OriginOf(f), CNuPoint(1.0, 1.0, 2.0), kGeometry));

    Element g;
    test::ExpectFailures<CNuOperationException>({
        {[&] { g.Rotate(-10.0, CNuVector(2), CNuPoint()); }, 110, "rotation",
         "CNuNonLinearGeometry"},
        {[&] { g.Rotate(10.0, CNuVector(0, 0, 0)); }, 109, "rotation", "CNuNonLinearGeometry"},
    });
    EXPECT_FALSE(g.IsPositionSet()) << "a refused rotation creates no position";
}

TEST(PositionModel, TransformationTimesItsInverseIsTheIdentity) {
    test::Random rng;
    for (int k = 0; k < 50; ++k) {
        Element e;
        e.Rotate(rng.Uniform(-180.0, 180.0), test::RandomDirection(rng));
        e.Rotate(rng.Uniform(-180.0, 180.0), CNuGeometry::eXAxis);
        e.Translate(rng.Uniform(-5.0, 5.0), rng.Uniform(-5.0, 5.0), rng.Uniform(-5.0, 5.0));
        CNuMatrix t = e.GetTransformation();
        CNuMatrix inverse = e.GetInverseTransformation();
        double dError = test::MaxDifference(t * inverse, CNuMatrix::Identity(4));
        EXPECT_LE(dError, kGeometry) << "T T^-1 - I reaches " << dError;
        EXPECT_EQ(test::MaxDifference(e.GetInverseRotation(), e.GetRotation().Transpose()), 0.0);
        // A local point reaches the world as local R + T in one homogeneous product.
        CNuPoint local = test::RandomPoint(rng);
        CNuPoint world = (local.To4DVector() * t).To3DPoint();
        CNuVector expected = local.To3DVector() * e.GetRotation() + e.GetTranslation();
        EXPECT_TRUE(PointsNear(world, expected.To3DPoint(), kGeometry));
        EXPECT_TRUE(PointsNear((world.To4DVector() * inverse).To3DPoint(), local, kGeometry));
    }
}

TEST(PositionModel, CopiesOwnTheirFramesAndAnUnplacedSourceCopiesNothing) {
    Element a;
    a.Translate(1.0, 0.0, 0.0);
    Element b(a);
    b.Translate(1.0, 0.0, 0.0);
    EXPECT_EQ(OriginOf(a).x(), 1.0);
    b.CopyPosition(Element());
    EXPECT_EQ(OriginOf(b).x(), 2.0);
    b = Element();
    EXPECT_FALSE(b.IsPositionSet());
    b.CopyPosition(a);
    EXPECT_EQ(OriginOf(b).x(), 1.0);
    Element d;
    d.SetPosition(CNuPoint(), CNuVector(2.0, 0.0, 0.0), CNuVector(0.0, 0.0, 3.0));
    EXPECT_EQ(d.GetRotation().GetElement(1, 1), 6.0) << "Y = Z x X of the axes as stored";
}

}  // namespace
}  // namespace numorix
