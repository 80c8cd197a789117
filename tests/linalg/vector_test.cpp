// Vectors: blocks, the homogeneous pair, predicates, arithmetic with one refusal per rule,
// rotations and rotation matrices, angles, orthonormal frames, sorting and extremes.
#include <cmath>
#include <string>
#include <vector>

#include "dense_support.h"
#include "numorix/foundation/double_array.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/point.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace {

using Op = CNuOperationException;
using test::Vec;

// Geometric results of a few dozen operations on unit-sized data: rotations, cross products.
constexpr double kGeometry = 1e-13;
// Angles in degrees compared with atan2: the quotient form of the arc tangent loses a few ulps
// of the angle near 0 and 180 degrees, more than the plain relative rounding.
constexpr double kDegrees = 1e-11;

CNuVector RandomVector(test::Random& rng) { return test::RandomVector(rng, 3, -2.0, 2.0); }
double Distance(const CNuVector& a, const CNuVector& b) { return (a - b).Magnitude(); }
std::vector<double> Elements(const CNuVector& v) {
    return std::vector<double>(v.GetData(), v.GetData() + v.GetSize());
}

TEST(Vector, BlocksAndConversionsKeepTheirElementsAndTestTheRangeBeforeTheOrder) {
    EXPECT_EQ(Elements(test::Doubles({1.5, -2.0}).ToVector()), std::vector<double>({1.5, -2.0}));
    CNuVector v = Vec({0.0, 10.0, 20.0, 30.0, 40.0});
    EXPECT_EQ(Elements(v.SubVector(1, 3)), std::vector<double>({10.0, 20.0, 30.0}));
    const char* pszSub = "CNuVector::SubVector(i, j)";
    CNuDoubleArray empty;
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuVector v(0); }, 1, "size", "CNuVector"},
        {[&] { empty.ToVector(); }, 1, "size", "CNuVector"},
    });
    test::ExpectFailures<Op>({
        {[&] { v.SubVector(-1, 2); }, 103, "operation", pszSub, 0, 4},
        {[&] { v.SubVector(3, 5); }, 103, "operation", pszSub, 0, 4},
        {[&] { v.SubVector(7, 5); }, 103, "operation", pszSub, 0, 4},
        {[&] { v.SubVector(3, 2); }, 115, "operation", pszSub},
    });
}

TEST(Vector, HomogeneousFormsConvertBetweenThreeAndFourElements) {
    CNuVector p(2.0, 4.0, 6.0);
    p.Homogeneous();
    EXPECT_EQ(Elements(p), std::vector<double>({2.0, 4.0, 6.0, 1.0}));
    p[3] = 2.0;
    p.Homogeneous();  // a 4-vector stays as it is, element 3 included
    p.NonHomogeneous();
    p.NonHomogeneous();  // a 3-vector stays as it is
    EXPECT_EQ(Elements(p), std::vector<double>({1.0, 2.0, 3.0}));
    EXPECT_EQ(p.GetCapacity(), 4);
    p.Homogeneous();
    EXPECT_EQ(Elements(p), std::vector<double>({1.0, 2.0, 3.0, 1.0}));
    CNuVector atInfinity = Vec({2.0, 4.0, 6.0, 0.0});
    atInfinity.NonHomogeneous();  // w = 0 is taken as 1
    EXPECT_EQ(Elements(atInfinity), std::vector<double>({2.0, 4.0, 6.0}));
}

// Short vectors keep their elements inside the object, long ones on the heap: copies and
// assignments across that boundary must stay deep and independent (run under the sanitizers).
TEST(Vector, CopiesAndAssignmentsAcrossSizesAreDeepAndIndependent) {
    for (int nFrom : {1, 3, 4, 5, 12})
        for (int nTo : {1, 3, 4, 5, 12}) {
            CNuVector from(nFrom), to(nTo);
            for (int i = 0; i < nFrom; ++i)
                from[i] = 1.5 * i + 1.0;
            to = from;
            CNuVector copy(to);
            from[0] = -7.0;
            copy[nFrom - 1] = -9.0;
            ASSERT_EQ(to.GetSize(), nFrom) << nFrom << " into " << nTo;
            for (int i = 0; i < nFrom; ++i)
                EXPECT_EQ(to[i], 1.5 * i + 1.0) << nFrom << " into " << nTo << ", element " << i;
        }
    CNuVector self(1.0, 2.0, 3.0);
    const CNuVector& alias = self;
    self = alias;
    EXPECT_EQ(Elements(self), std::vector<double>({1.0, 2.0, 3.0}));
}

TEST(Vector, SignZeroParallelAndOrthogonalTestsAreStrict) {
    EXPECT_TRUE(CNuVector(1.0, 2.0, 3.0).IsPositive());
    EXPECT_FALSE(CNuVector(1.0, 0.0, 3.0).IsPositive());
    EXPECT_TRUE(CNuVector(1.0, 0.0, 3.0).IsNonNegative());
    EXPECT_FALSE(CNuVector(1.0, -1e-300, 3.0).IsNonNegative());
    EXPECT_TRUE(CNuVector(0.5, -0.5, 0.0).IsZero(0.6));
    EXPECT_FALSE(CNuVector(0.5, -0.5, 0.0).IsZero(0.5));
    // Parallel and orthogonal tests ignore length and take radians.
    CNuVector x(3.0, 0.0, 0.0), nearX(1.0, 1e-3, 0.0), nearY(1e-3, 5.0, 0.0);
    EXPECT_TRUE(x.IsParallelTo(nearX, 2e-3));
    EXPECT_FALSE(x.IsParallelTo(nearX, 5e-4));
    EXPECT_TRUE(x.IsOrthogonalTo(nearY, 3e-4));  // 2e-4 rad off orthogonal
    EXPECT_FALSE(x.IsOrthogonalTo(nearY, 1e-4));
}

TEST(Vector, EqualityOfDirectionsUsesTheMinimumAngleNotTheTolerance) {
    CNuVector x(1.0, 0.0, 0.0);
    EXPECT_FALSE(x.IsEqual(-x, 10.0));
    EXPECT_TRUE(x.IsParallelTo(-x, 1e-9));
    EXPECT_FALSE(x.IsEqual(CNuVector(std::cos(Nu_PI / 180.0), std::sin(Nu_PI / 180.0), 0.0), 1e-3));
    EXPECT_TRUE(x.IsEqual(CNuVector(1.0, 1e-11, 0.0), 1e-12));  // far below the minimum angle
    EXPECT_FALSE(x.IsEqual(x, 0.0));  // the lengths must differ by less than dTol
    EXPECT_FALSE(x.IsEqual(CNuVector(4), 10.0));
    // Other sizes and zero vectors compare element by element.
    CNuVector a(2), b = Vec({0.0, 0.01});
    EXPECT_TRUE(a.IsEqual(b, 0.02));
    EXPECT_FALSE(a.IsEqual(b, 0.01));
    EXPECT_TRUE(CNuVector().IsEqual(CNuVector(0.0, 0.0, 1e-9), 1e-8));
}

TEST(Vector, EveryRefusalStoresItsCauseNameAndLocation) {
    CNuVector a, b(4), two(2), zero, axis, y;
    CNuVector v(1.0, 2.0, 3.0), x(1.0, 0.0, 0.0), z(0.0, 0.0, 2.0);
    double d = 0.0;
    const char* pszAngle = "CNuVector::AngleWith()";
    const char* pszFrame = "CNuVector::OrthonormalX()";
    test::ExpectFailures<Op>({
        {[&] { two.Homogeneous(); }, 111, "calculation", "CNuVector::Homogeneous()"},
        {[&] { two.NonHomogeneous(); }, 111, nullptr, "CNuVector::NonHomogeneous()"},
        {[&] { two.IsParallelTo(two, 0.1); }, 110, "operator*", "CNuVector"},
        {[&] { a - b; }, 105, "operator-", "CNuVector"},
        {[&] { b* b; }, 110, "operator*", "CNuVector"},
        {[&] { b* CNuMatrix(3, 4); }, 105, "operator*", "CNuVector"},
        {[&] { -2e300 * a; }, 107, "operator*", "CNuVector"},
        {[&] { a /= -1e-301; }, 106, "operator/=", "CNuVector"},
        // An axis of two elements is refused by checked access rather than read past its end.
        {[&] { CNuGeometry::RotationMatrix(10.0, two); }, 103, "element operator[]", "CNuVector"},
        {[&] { v.Rotate(10.0, two); }, 110, "rotation", "CNuVector"},
        {[&] { v.Rotate(10.0, zero); }, 109, "rotation", "CNuVector"},
        {[&] { zero.GetRotationMatrix(0.0, v); }, 109, "rotation", "CNuVector"},
        {[&] { v.GetRotationMatrix(1.0, two); }, 110, "rotation", "CNuVector"},
        {[&] { v.GetRotationMatrix(1.0, zero); }, 109, "rotation", "CNuVector"},
        {[&] { zero.GetRotationAxis(x, axis, d); }, 109, "rotation", "CNuVector"},
        {[&] { x.GetRotationAxis(b, axis, d); }, 110, "rotation", "CNuVector"},
        // A zero `other` passes the first checks and fails in the angle.
        {[&] { x.GetRotationAxis(zero, axis, d); }, 109, "calculation", pszAngle},
        {[&] { two.AngleWith(v); }, 110, "calculation", pszAngle},
        {[&] { v.AngleWith(zero); }, 109, "calculation", pszAngle},
        {[&] { x.AngleWith(CNuVector(1.0, 0.0, 1.0), z); }, 114, "calculation", pszAngle},
        {[&] { two.OrthonormalX(&axis); }, 110, "calculation", pszFrame},
        {[&] { zero.OrthonormalX(&axis); }, 109, "calculation", pszFrame},
        {[&] { b.OrthonormalY(&y); }, 110, "calculation", "CNuVector::OrthonormalY()"},
    });
    EXPECT_EQ((v * 1e300)[2], 3e300);  // a factor of exactly Large passes
}

TEST(Vector, ProductsObeyTheirIdentities) {
    test::Random rng;
    for (int n = 0; n < 100; ++n) {
        CNuVector a = RandomVector(rng), b = RandomVector(rng), c = a * b;
        double dScale = a.Magnitude() * b.Magnitude();
        EXPECT_NEAR(c % a, 0.0, kGeometry * dScale * a.Magnitude());
        EXPECT_NEAR(c % b, 0.0, kGeometry * dScale * b.Magnitude());
        double dLagrange = c % c + (a % b) * (a % b) - (a % a) * (b % b);
        EXPECT_NEAR(dLagrange, 0.0, kGeometry * dScale * dScale);
        EXPECT_EQ((a & b).Sum(), a[0] * b[0] + a[1] * b[1] + a[2] * b[2]);
        CNuVector e = a;
        e += b;
        e -= a * 2.0;
        e *= 3.0;
        e /= 3.0;
        EXPECT_NEAR(Distance(-(e + a) / 2.0, -b / 2.0), 0.0, kGeometry);
    }
    // Row vector times matrix: the combination of the rows.
    CNuMatrix m = test::Mat({{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}});
    EXPECT_EQ(Elements(Vec({2.0, -1.0}) * m), std::vector<double>({-2.0, -1.0, 0.0}));
}

TEST(Vector, RotationMatricesAreProperAndCleanAtRightAngles) {
    test::Random rng;
    for (int n = 0; n < 50; ++n) {
        double dDegrees = rng.Uniform(-400.0, 400.0);
        CNuMatrix r = CNuGeometry::RotationMatrix(dDegrees, RandomVector(rng));
        EXPECT_TRUE(r.IsOrthogonal(kGeometry)) << "angle " << dDegrees;
        EXPECT_NEAR(test::ToEigen(r).determinant(), 1.0, kGeometry);
        for (auto eAxis : {CNuGeometry::eXAxis, CNuGeometry::eYAxis, CNuGeometry::eZAxis}) {
            CNuMatrix q = CNuGeometry::RotationMatrix(dDegrees, eAxis);
            CNuVector e;
            e[eAxis] = 1.0;
            EXPECT_LT(test::MaxDifference(q, CNuGeometry::RotationMatrix(dDegrees, e * 5.0)),
                      kGeometry);
            EXPECT_NEAR(test::ToEigen(q).determinant(), 1.0, kGeometry);
        }
    }
    // Quarter turns are exact, 45 degrees gives equal cosine and sine.
    CNuVector x(1.0, 0.0, 0.0);
    x.Rotate(90.0, CNuGeometry::eZAxis);
    EXPECT_EQ(Elements(x), std::vector<double>({0.0, 1.0, 0.0}));
    CNuMatrix h = CNuGeometry::RotationMatrix(45.0, CNuGeometry::eXAxis);
    EXPECT_EQ(h.GetElement(1, 1), h.GetElement(1, 2));
}

// A vector has no position: rotating about an axis through any centre is the same turn.
TEST(Vector, RotatingForthAndBackRestoresTheVectorAndTheFoundAxisCarriesItOntoAnother) {
    test::Random rng;
    const CNuPoint centre(5.0, -3.0, 2.0);
    for (int n = 0; n < 50; ++n) {
        CNuVector v = RandomVector(rng), axis = RandomVector(rng), w = v;
        double dDegrees = rng.Uniform(-180.0, 180.0);
        w.Rotate(dDegrees, axis);
        EXPECT_NEAR(w.Magnitude(), v.Magnitude(), kGeometry);
        EXPECT_NEAR(w % axis, v % axis, kGeometry * 4.0);
        w.Rotate(-dDegrees, axis, centre);
        EXPECT_NEAR(Distance(w, v), 0.0, kGeometry);
        w.Rotate(dDegrees, CNuGeometry::eYAxis, centre);
        w.Rotate(-dDegrees, CNuGeometry::eYAxis);
        EXPECT_NEAR(Distance(w, v), 0.0, kGeometry);
        // The axis and angle found between v and another vector carry v onto it.
        CNuVector b = RandomVector(rng), found;
        double dRadians = 0.0;
        v.GetRotationAxis(b, found, dRadians);
        EXPECT_NEAR(found.Magnitude(), 1.0, kGeometry);
        CNuVector turned = v * v.GetRotationMatrix(dRadians, found);
        EXPECT_NEAR(Distance(turned / v.Magnitude(), b / b.Magnitude()), 0.0, kGeometry);
    }
}

TEST(Vector, RotationsWithNothingToTurnReturnBeforeTheAxisIsChecked) {
    CNuVector zero;
    zero.Rotate(10.0, CNuVector(4));  // nothing to rotate: the bad axis goes unnoticed
    CNuVector v(1.0, 2.0, 3.0);
    v.Rotate(1e-301, CNuVector(2));  // no angle: likewise
    EXPECT_EQ(Elements(v), std::vector<double>({1.0, 2.0, 3.0}));
    EXPECT_EQ(test::MaxDifference(v.GetRotationMatrix(0.0, CNuVector(7)), CNuMatrix::Identity(3)),
              0.0);
}

TEST(Vector, AngleAgreesWithTheTwoArgumentArcTangent) {
    test::Random rng;
    for (int n = 0; n < 200; ++n) {
        CNuVector a = RandomVector(rng), b = RandomVector(rng);
        double dExpected = std::atan2((a * b).Magnitude(), a % b) * 180.0 / Nu_PI;
        EXPECT_NEAR(a.AngleWith(b), dExpected, kDegrees);
    }
    CNuVector a(1.0, 2.0, -3.0);
    EXPECT_EQ(a.AngleWith(a * 2.5), 0.0);
    EXPECT_EQ(a.AngleWith(-a), 180.0);
}

TEST(Vector, SignedAngleTurnsAroundTheAxis) {
    CNuVector z(0.0, 0.0, 2.0);
    test::Random rng;
    for (int n = 0; n < 100; ++n) {
        double dFrom = rng.Uniform(0.0, 360.0), dTurn = rng.Uniform(1.0, 359.0);
        double dTilt = rng.Uniform(10.0, 80.0);  // same angle with the axis for both vectors
        CNuVector u(std::cos(dFrom * Nu_PI / 180.0), std::sin(dFrom * Nu_PI / 180.0),
                    std::tan(dTilt * Nu_PI / 180.0));
        CNuVector v = u;
        v.Rotate(dTurn, z);
        EXPECT_NEAR(u.AngleWith(v, z), dTurn, kDegrees);
        EXPECT_NEAR(u.AngleWith(v, -z), 360.0 - dTurn, kDegrees);
    }
    CNuVector x(1.0, 0.0, 0.0);
    EXPECT_EQ(x.AngleWith(x * 3.0, z), 0.0);
    EXPECT_EQ(CNuVector(0.0, 0.0, 1.0).AngleWith(z * 4.0, z), 0.0);  // along the axis
    // Against the axis, equal directions are caught before their projections vanish.
    EXPECT_EQ(CNuVector(0.0, 0.0, -1.0).AngleWith(-z, z), 0.0);
}

TEST(Vector, OrthonormalFramesAreRightHandedAndChangeTheVector) {
    test::Random rng;
    for (int n = 0; n < 100; ++n) {
        CNuVector z = RandomVector(rng), x, y;
        CNuVector original = z;
        z.OrthonormalXY(&x, &y);
        EXPECT_NEAR(Distance(z, original / original.Magnitude()), 0.0, kGeometry);
        EXPECT_NEAR(x.Magnitude(), 1.0, kGeometry);
        EXPECT_NEAR(x % z, 0.0, kGeometry);
        EXPECT_NEAR(Distance(x * y, z), 0.0, kGeometry);  // x, y, z right-handed
    }
    // The smallest coordinate is the helper axis; ties fall to z, then to y.
    CNuVector x, v(0.0, 0.0, 2.0), w(1.0, 1.0, 1.0);
    v.OrthonormalX(&x);  // x and y tie: e = y, y cross z = x
    EXPECT_EQ(x[0], 1.0);
    w.OrthonormalX(&x);  // a three-way tie takes z
    EXPECT_TRUE(x[2] == 0.0 && x[0] < 0.0) << Elements(x)[0] << ", " << Elements(x)[2];
    // OrthonormalY flattens a 3-vector and keeps a 2-vector in two elements.
    CNuVector u(3.0, 4.0, 7.0), flat = Vec({3.0, 4.0}), y;
    u.OrthonormalY(&y);
    EXPECT_EQ(Elements(u), std::vector<double>({0.6, 0.8, 0.0}));
    EXPECT_TRUE(std::fabs(y[0] + 0.8) < kGeometry && std::fabs(y[1] - 0.6) < kGeometry);
    flat.OrthonormalY(&y);
    EXPECT_EQ(Elements(flat), std::vector<double>({0.6, 0.8}));
}

TEST(Vector, SymmetricAxisClearsSmallElementsAndFixesTheSign) {
    CNuVector v(1e-9, -3.0, 3.0);
    v.SymmetricAxis(1e-6, 1);  // the first of the equal maxima is negative: negate
    EXPECT_EQ(Elements(v), std::vector<double>({0.0, 3.0, -3.0}));
    CNuVector w(-0.5, 0.25, 0.0);
    w.SymmetricAxis(0.25, 1);  // an element equal to dTol stays
    EXPECT_EQ(Elements(w), std::vector<double>({0.5, -0.25, 0.0}));
}

TEST(Vector, SortsStablyAndFindsExtremesWithinTheLargeBound) {
    CNuVector v = Vec({2.0, -1.0, 2.0, 0.5});
    CNuIntArray index;
    v.Sort(&index);
    EXPECT_EQ(test::Elements(index), std::vector<int>({1, 3, 0, 2}));  // equal keys keep order
    EXPECT_EQ(Elements(v), std::vector<double>({2.0, -1.0, 2.0, 0.5}));  // left alone
    EXPECT_TRUE(v.Max() == 2.0 && v.Min() == -1.0) << v.Max() << ", " << v.Min();
    v.Sort();
    EXPECT_EQ(Elements(v), std::vector<double>({-1.0, 0.5, 2.0, 2.0}));
    EXPECT_EQ(CNuVector(-2e300, -5e300, -3e300).Max(), -1e300);
    EXPECT_EQ(CNuVector(2e300, 5e300, 3e300).Min(), 1e300);
}

TEST(Vector, NormaliseLeavesZeroAndMagnitudeIsUnscaled) {
    CNuVector zero, v(3.0, 0.0, 4.0);
    zero.Normalise();
    EXPECT_EQ(zero.Magnitude(), 0.0);
    v.Normalise();
    EXPECT_EQ(Elements(v), std::vector<double>({0.6, 0.0, 0.8}));
    EXPECT_EQ(CNuVector(1e200, 0.0, 0.0).Magnitude(), HUGE_VAL);  // the squares overflow
    EXPECT_EQ(CNuVector(1.0, -2.5, 4.0).Sum(), 2.5);
}

}  // namespace
}  // namespace numorix
