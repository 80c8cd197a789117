// The position model of curves and surfaces: lazy creation, the two disagreeing Translate
// overloads, rotations about the origin and about a centre, the transformation getters and their
// inverses, and the statics that rotation builds on.
#include <cmath>

#include "geometry_test_support.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/cartesian_coord.h"
#include "numorix/linalg/matrix.h"

namespace numorix {
namespace {

using test::Element;
using test::ExpectNuFailure;
using test::kGeometry;
using test::PointsNear;
using Op = CNuOperationException;

CNuPoint OriginOf(const Element& e) {
    CNuPoint origin;
    e.GetPosition(&origin, nullptr, nullptr);
    return origin;
}

// A random right-handed orthonormal frame, turned from the world frame by random rotations.
Element RandomlyPlaced(test::Random& rng) {
    Element e;
    e.Rotate(rng.Uniform(-180.0, 180.0), test::RandomDirection(rng));
    e.Rotate(rng.Uniform(-180.0, 180.0), CNuGeometry::eXAxis);
    e.Translate(rng.Uniform(-5.0, 5.0), rng.Uniform(-5.0, 5.0), rng.Uniform(-5.0, 5.0));
    return e;
}

double MaxDifference(const CNuMatrix& a, const CNuMatrix& b) {
    double d = 0.0;
    for (int i = 0; i < a.GetRowSize(); ++i)
        for (int j = 0; j < a.GetColumnSize(); ++j)
            d = std::fmax(d, std::fabs(a.GetElement(i, j) - b.GetElement(i, j)));
    return d;
}

TEST(PositionModel, IsCreatedOnlyByAMoveAndDefaultsToTheWorldFrame) {
    Element e;
    EXPECT_FALSE(e.IsPositionSet());
    e.Rotate(0.0, CNuGeometry::eZAxis);
    e.Rotate(0.0, CNuVector(0.0, 0.0, 0.0));  // a zero angle returns before the axis is tested
    e.Rotate(1e-301, CNuVector(1.0, 2.0, 3.0), CNuPoint(1.0, 1.0, 1.0));
    EXPECT_FALSE(e.IsPositionSet()) << "a rotation by zero creates no position";
    EXPECT_EQ(MaxDifference(e.GetTransformation(), CNuMatrix::Identity(4)), 0.0);
    EXPECT_EQ(MaxDifference(e.GetInverseTransformation(), CNuMatrix::Identity(4)), 0.0);
    EXPECT_EQ(e.GetTranslation().Magnitude(), 0.0);
    CNuPoint origin(9.0, 9.0, 9.0);
    CNuVector x;
    CNuVector z;
    e.GetPosition(&origin, &x, &z);
    EXPECT_TRUE(PointsNear(origin, CNuPoint(), test::kExact));
    EXPECT_EQ(x[0], 1.0);
    EXPECT_EQ(z[2], 1.0);
}

TEST(PositionModel, RelativeAndAbsoluteTranslationsDeliberatelyDisagree) {
    Element relative;
    relative.Translate(1.0, 2.0, 3.0);
    relative.Translate(1.0, 2.0, 3.0);
    EXPECT_TRUE(relative.IsPositionSet());
    EXPECT_TRUE(PointsNear(OriginOf(relative), CNuPoint(2.0, 4.0, 6.0), test::kExact));

    Element absolute;
    absolute.Translate(CNuPoint(1.0, 2.0, 3.0));
    absolute.Translate(CNuPoint(1.0, 2.0, 3.0));
    EXPECT_TRUE(PointsNear(OriginOf(absolute), CNuPoint(1.0, 2.0, 3.0), test::kExact));

    // Through the base class the same overloads are reached by virtual dispatch.
    CNuNonLinearGeometry& base = relative;
    base.Translate(CNuPoint(0.0, 0.0, 0.0));
    EXPECT_TRUE(PointsNear(OriginOf(relative), CNuPoint(), test::kExact));
}

TEST(PositionModel, RotationsCarryOriginAndAxes) {
    Element e;
    e.Rotate(90.0, CNuGeometry::eZAxis);
    CNuPoint origin;
    CNuVector x;
    CNuVector z;
    e.GetPosition(&origin, &x, &z);
    EXPECT_EQ(x[0], 0.0);
    EXPECT_EQ(x[1], 1.0);
    EXPECT_EQ(z[2], 1.0);

    // About a centre, the centre stays where it is: an origin placed on it does not move.
    Element f;
    f.Translate(CNuPoint(1.0, 1.0, 0.0));
    f.Rotate(90.0, CNuVector(0.0, 0.0, 5.0), CNuPoint(1.0, 1.0, 0.0));
    EXPECT_TRUE(PointsNear(OriginOf(f), CNuPoint(1.0, 1.0, 0.0), kGeometry));
    f.Rotate(180.0, CNuGeometry::eZAxis, CNuPoint(0.0, 0.0, 0.0));
    EXPECT_TRUE(PointsNear(OriginOf(f), CNuPoint(-1.0, -1.0, 0.0), kGeometry));
    f.Rotate(90.0, CNuGeometry::eXAxis);
    EXPECT_TRUE(PointsNear(OriginOf(f), CNuPoint(-1.0, 0.0, -1.0), kGeometry));
}

TEST(PositionModel, RefusesBadRotationAxes) {
    Element e;
    ExpectNuFailure<Op>([&] { e.Rotate(10.0, CNuVector(4)); }, 110, "rotation",
                        "CNuNonLinearGeometry");
    ExpectNuFailure<Op>([&] { e.Rotate(10.0, CNuVector(0.0, 0.0, 0.0)); }, 109, "rotation",
                        "CNuNonLinearGeometry");
    ExpectNuFailure<Op>([&] { e.Rotate(10.0, CNuVector(2), CNuPoint()); }, 110, "rotation",
                        "CNuNonLinearGeometry");
    ExpectNuFailure<Op>([&] { e.Rotate(-10.0, CNuVector(0.0, 0.0, 0.0), CNuPoint()); }, 109,
                        "rotation", "CNuNonLinearGeometry");
    EXPECT_FALSE(e.IsPositionSet()) << "a refused rotation creates no position";
}

TEST(PositionModel, TransformationTimesItsInverseIsTheIdentity) {
    test::Random rng;
    for (int k = 0; k < 50; ++k) {
        Element e = RandomlyPlaced(rng);
        CNuMatrix t = e.GetTransformation();
        CNuMatrix inverse = e.GetInverseTransformation();
        double dError = MaxDifference(t * inverse, CNuMatrix::Identity(4));
        EXPECT_LE(dError, kGeometry) << "T T^-1 - I reaches " << dError;
        EXPECT_LE(MaxDifference(inverse * t, CNuMatrix::Identity(4)), kGeometry);
        EXPECT_EQ(MaxDifference(e.GetInverseRotation(), e.GetRotation().Transpose()), 0.0);
        CNuVector minusT = e.GetInverseTranslation() + e.GetTranslation();
        EXPECT_EQ(minusT.Magnitude(), 0.0);

        // A local point reaches the world as local R + T, in one homogeneous product, and a point
        // carried out and back lands where it started.
        CNuPoint local = test::RandomPoint(rng);
        CNuPoint world = (local.To4DVector() * t).To3DPoint();
        CNuPoint expected = (local.To3DVector() * e.GetRotation() + e.GetTranslation()).To3DPoint();
        EXPECT_TRUE(PointsNear(world, expected, kGeometry));
        CNuPoint back = (world.To4DVector() * inverse).To3DPoint();
        EXPECT_TRUE(PointsNear(back, local, kGeometry));
    }
}

TEST(PositionModel, CopiesOwnTheirFramesAndCopyPositionKeepsAnOwnFrameWhenTheSourceHasNone) {
    Element a;
    a.Translate(1.0, 0.0, 0.0);
    Element b(a);
    b.Translate(1.0, 0.0, 0.0);
    EXPECT_EQ(OriginOf(a).x(), 1.0);
    EXPECT_EQ(OriginOf(b).x(), 2.0);
    Element c;
    c = b;
    c = c;
    EXPECT_EQ(OriginOf(c).x(), 2.0);

    Element unplaced;
    c.CopyPosition(unplaced);
    EXPECT_TRUE(c.IsPositionSet());
    EXPECT_EQ(OriginOf(c).x(), 2.0);
    unplaced.CopyPosition(a);
    EXPECT_EQ(OriginOf(unplaced).x(), 1.0);
    c = Element();
    EXPECT_FALSE(c.IsPositionSet());

    // SetPosition stores the frame as given, unnormalised.
    Element d;
    d.SetPosition(CNuPoint(0.0, 0.0, 1.0), CNuVector(2.0, 0.0, 0.0), CNuVector(0.0, 0.0, 3.0));
    EXPECT_EQ(d.GetRotation().GetElement(1, 1), 6.0) << "Y = Z x X, from the unnormalised axes";
}

}  // namespace
}  // namespace numorix
