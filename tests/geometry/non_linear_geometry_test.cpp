// The position model of curves and surfaces: lazy creation, copies, the two disagreeing
// Translate overloads, rotations and their refusals, and the transformations and inverses.
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
    copy.CopyPosition(e);
    EXPECT_EQ(OriginOf(copy).x(), 2.0);
}

TEST(PositionModel, RotationsCarryOriginAndAxesAboutTheirCentre) {
    Element e;
    e.Translate(CNuPoint(1.0, 1.0, 0.0));
    e.Rotate(90.0, CNuVector(0.0, 0.0, 5.0), CNuPoint(1.0, 1.0, 0.0));
    CNuVector x;
    e.GetPosition(nullptr, &x, nullptr);
    EXPECT_TRUE(PointsNear(x.To3DPoint(), CNuPoint(0.0, 1.0, 0.0), kGeometry));
    EXPECT_TRUE(PointsNear(OriginOf(e), CNuPoint(1.0, 1.0, 0.0), kGeometry)) << "centre stays";
    e.Rotate(90.0, CNuGeometry::eXAxis, CNuPoint(0.0, 0.0, 1.0));
    EXPECT_TRUE(PointsNear(OriginOf(e), CNuPoint(1.0, 1.0, 2.0), kGeometry));
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

}  // namespace
}  // namespace numorix
