// Vectors: blocks, the homogeneous pair, predicates, arithmetic with every refusal, rotations and
// rotation matrices, angles, orthonormal frames, sorting and extremes.
#include <cmath>
#include <initializer_list>
#include <string>

#include "dense_support.h"
#include "numorix/foundation/double_array.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace {

using Op = CNuOperationException;

// Geometric results of a few dozen operations on unit-sized data: rotations, cross products.
constexpr double kGeometry = 1e-13;
// Angles in degrees compared with atan2: the quotient form of the arc tangent loses a few ulps
// of the angle near 0 and 180 degrees, more than the plain relative rounding.
constexpr double kDegrees = 1e-11;

CNuVector RandomVector(test::Random& rng) { return test::RandomVector(rng, 3, -2.0, 2.0); }

using test::Vec;

double Distance(const CNuVector& a, const CNuVector& b) { return (a - b).Magnitude(); }

// Expects v to hold exactly the given elements; a failure names the element.
void ExpectElements(const CNuVector& v, std::initializer_list<double> expected) {
    ASSERT_EQ(v.GetSize(), static_cast<int>(expected.size()));
    int i = 0;
    for (double d : expected) {
        EXPECT_EQ(v[i], d) << "element " << i;
        ++i;
    }
}

double Determinant3(const CNuMatrix& m) {
    const double* const* a = m.GetData();
    return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) -
           a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
           a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
}

TEST(VectorBlocks, ConstructionAndConversionRefuseEmptySizes) {
    CNuDoubleArray empty;
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuVector v(0); }, 1, "size", "CNuVector"},
        {[] { CNuVector v(-2); }, 1, "size", "CNuVector"},
        {[&] { empty.ToVector(); }, 1, "size", "CNuVector"},
    });
    try {
        CNuVector v(-2);
        ADD_FAILURE() << "a size of -2 passed";
    } catch (const CNuConstructionException& e) {
        EXPECT_NE(test::MessageOf(e).find("size should be greater than 0"), std::string::npos)
            << test::MessageOf(e);
    }
    CNuDoubleArray a;
    a.Add(1.5);
    a.Add(-2.0);
    ExpectElements(a.ToVector(), {1.5, -2.0});
}

TEST(VectorBlocks, SubVectorTestsTheRangeBeforeTheOrder) {
    CNuVector v = Vec({0.0, 10.0, 20.0, 30.0, 40.0});
    ExpectElements(v.SubVector(1, 3), {10.0, 20.0, 30.0});
    for (int i : {-1, 3, 7}) {  // (-1, 2), (3, 5), (7, 5): out of range, whatever the order
        const int j = i < 0 ? 2 : 5;
        try {
            v.SubVector(i, j);
            ADD_FAILURE() << "SubVector(" << i << ", " << j << ") passed";
        } catch (const Op& e) {
            EXPECT_EQ(e.m_nCause, 103);
            EXPECT_EQ(e.m_nValue1, 0);
            EXPECT_EQ(e.m_nValue2, 4);
            EXPECT_STREQ(e.m_szLocation, "CNuVector::SubVector(i, j)");
        }
    }
}

TEST(VectorHomogeneous, ConvertsBetweenThreeAndFourElementsReusingTheArray) {
    CNuVector p(2.0, 4.0, 6.0);
    p.Homogeneous();
    ExpectElements(p, {2.0, 4.0, 6.0, 1.0});
    EXPECT_EQ(p.GetCapacity(), 4);
    p[3] = 2.0;
    p.Homogeneous();  // a 4-vector stays as it is, element 3 included
    EXPECT_EQ(p[3], 2.0);
    const double* pdArray = p.GetData();
    p.NonHomogeneous();
    p.NonHomogeneous();  // a 3-vector stays as it is
    ExpectElements(p, {1.0, 2.0, 3.0});
    EXPECT_EQ(p.GetCapacity(), 4);
    p.Homogeneous();
    EXPECT_EQ(p.GetData(), pdArray) << "Homogeneous allocated although the capacity was 4";
    ExpectElements(p, {1.0, 2.0, 3.0, 1.0});
    // Same-size assignment copies in place and keeps the spare capacity.
    p.NonHomogeneous();
    p = CNuVector(7.0, 8.0, 9.0);
    EXPECT_EQ(p.GetCapacity(), 4);

    CNuVector atInfinity = Vec({2.0, 4.0, 6.0, 0.0});
    atInfinity.NonHomogeneous();  // w = 0 is taken as 1
    ExpectElements(atInfinity, {2.0, 4.0, 6.0});
}

// Short vectors keep their elements inside the object, long ones on the heap: copies and
// assignments across that boundary must stay deep and independent (run under the sanitizers).
TEST(VectorStorage, CopiesAndAssignmentsAcrossSizesAreDeepAndIndependent) {
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
            EXPECT_EQ(to.GetCapacity(), nFrom == nTo ? nTo : nFrom);
            for (int i = 0; i < nFrom; ++i)
                EXPECT_EQ(to[i], 1.5 * i + 1.0) << nFrom << " into " << nTo << ", element " << i;
            EXPECT_NE(copy.GetData(), to.GetData());
        }
    CNuVector self(1.0, 2.0, 3.0);
    const CNuVector& alias = self;
    self = alias;
    ExpectElements(self, {1.0, 2.0, 3.0});
}

TEST(VectorPredicates, SignZeroParallelAndOrthogonalTestsAreStrict) {
    EXPECT_TRUE(CNuVector(1.0, 2.0, 3.0).IsPositive());
    EXPECT_FALSE(CNuVector(1.0, 0.0, 3.0).IsPositive());
    EXPECT_TRUE(CNuVector(1.0, 0.0, 3.0).IsNonNegative());
    EXPECT_FALSE(CNuVector(1.0, -1e-300, 3.0).IsNonNegative());
    EXPECT_TRUE(CNuVector(0.5, -0.5, 0.0).IsZero(0.6));
    EXPECT_FALSE(CNuVector(0.5, -0.5, 0.0).IsZero(0.5));
    // Parallel and orthogonal tests ignore length and take radians.
    CNuVector x(3.0, 0.0, 0.0);
    CNuVector nearX(1.0, 1e-3, 0.0);  // 1e-3 rad off the X axis
    EXPECT_TRUE(x.IsParallelTo(nearX, 2e-3));
    EXPECT_FALSE(x.IsParallelTo(nearX, 5e-4));
    CNuVector nearY(1e-3, 5.0, 0.0);  // 2e-4 rad off orthogonal
    EXPECT_TRUE(x.IsOrthogonalTo(nearY, 3e-4));
    EXPECT_FALSE(x.IsOrthogonalTo(nearY, 1e-4));
}

TEST(VectorPredicates, EqualityOfDirectionsUsesTheMinimumAngleNotTheTolerance) {
    CNuVector x(1.0, 0.0, 0.0);
    EXPECT_FALSE(x.IsEqual(-x, 10.0));
    EXPECT_TRUE(x.IsParallelTo(-x, 1e-9));
    CNuVector oneDegree(std::cos(Nu_PI / 180.0), std::sin(Nu_PI / 180.0), 0.0);
    EXPECT_FALSE(x.IsEqual(oneDegree, 1e-3));
    CNuVector tiny(1.0, 1e-11, 0.0);  // about 6e-10 degrees apart, far below the minimum angle
    EXPECT_TRUE(x.IsEqual(tiny, 1e-12));
    EXPECT_FALSE(x.IsEqual(x, 0.0));  // the lengths must differ by less than dTol
    EXPECT_FALSE(x.IsEqual(CNuVector(4), 10.0));
    // Other sizes and zero vectors compare element by element.
    CNuVector a(2), b = Vec({0.0, 0.01});
    EXPECT_TRUE(a.IsEqual(b, 0.02));
    EXPECT_FALSE(a.IsEqual(b, 0.01));
    EXPECT_TRUE(CNuVector().IsEqual(CNuVector(0.0, 0.0, 1e-9), 1e-8));
}

TEST(VectorFailures, EveryRefusalStoresItsCauseNameAndLocation) {
    CNuVector a, b(4), two(2), zero, five = Vec({0.0, 10.0, 20.0, 30.0, 40.0}), axis, y;
    CNuVector v(1.0, 2.0, 3.0), x(1.0, 0.0, 0.0), z(0.0, 0.0, 2.0);
    double d = 0.0;
    const char* pszAngle = "CNuVector::AngleWith()";
    const char* pszFrame = "CNuVector::OrthonormalX()";
    test::ExpectFailures<Op>({
        {[&] { five.SubVector(3, 2); }, 115, "operation", "CNuVector::SubVector(i, j)"},
        {[&] { two.Homogeneous(); }, 111, "calculation", "CNuVector::Homogeneous()"},
        {[&] { two.NonHomogeneous(); }, 111, nullptr, "CNuVector::NonHomogeneous()"},
        {[&] { two.IsParallelTo(two, 0.1); }, 110, "operator*", "CNuVector"},
        {[&] { a + b; }, 105, "operator+", "CNuVector"},
        {[&] { a - b; }, 105, "operator-", "CNuVector"},
        {[&] { a += b; }, 105, "operator+=", "CNuVector"},
        {[&] { a -= b; }, 105, "operator-=", "CNuVector"},
        {[&] { a % b; }, 105, "operator%", "CNuVector"},
        {[&] { a& b; }, 105, "operator&", "CNuVector"},
        {[&] { a* b; }, 105, "operator*", "CNuVector"},
        {[&] { b* b; }, 110, "operator*", "CNuVector"},
        {[&] { b* CNuMatrix(3, 4); }, 105, "operator*", "CNuVector"},
        {[&] { a * 2e300; }, 107, "operator*", "CNuVector"},
        {[&] { -2e300 * a; }, 107, "operator*", "CNuVector"},
        {[&] { a *= 2e300; }, 107, "operator*=", "CNuVector"},
        {[&] { a / 1e-301; }, 106, "operator/", "CNuVector"},
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
        {[&] { v.AngleWith(b); }, 110, "calculation", pszAngle},
        {[&] { two.AngleWith(v); }, 110, "calculation", pszAngle},
        {[&] { v.AngleWith(zero); }, 109, "calculation", pszAngle},
        {[&] { x.AngleWith(CNuVector(1.0, 0.0, 1.0), z); }, 114, "calculation", pszAngle},
        {[&] { two.OrthonormalX(&axis); }, 110, "calculation", pszFrame},
        {[&] { zero.OrthonormalX(&axis); }, 109, "calculation", pszFrame},
        {[&] { b.OrthonormalY(&y); }, 110, "calculation", "CNuVector::OrthonormalY()"},
    });
    EXPECT_EQ((v * 1e300)[2], 3e300);  // a factor of exactly Large passes
}

TEST(VectorArithmetic, ProductsObeyTheirIdentities) {
    test::Random rng;
    for (int n = 0; n < 100; ++n) {
        CNuVector a = RandomVector(rng), b = RandomVector(rng);
        CNuVector c = a * b;
        double dScale = a.Magnitude() * b.Magnitude();
        EXPECT_NEAR(c % a, 0.0, kGeometry * dScale * a.Magnitude());
        EXPECT_NEAR(c % b, 0.0, kGeometry * dScale * b.Magnitude());
        double dLagrange = c % c + (a % b) * (a % b) - (a % a) * (b % b);
        EXPECT_NEAR(dLagrange, 0.0, kGeometry * dScale * dScale);
        CNuVector e = a & b;
        EXPECT_EQ(e.Sum(), a[0] * b[0] + a[1] * b[1] + a[2] * b[2]);
        EXPECT_NEAR(Distance(-(a * 3.0) / 3.0, -a), 0.0, kGeometry);
    }
    // Row vector times matrix: the combination of the rows.
    CNuMatrix m(2, 3);
    m.SetRowVector(0, CNuVector(1.0, 2.0, 3.0));
    m.SetRowVector(1, CNuVector(4.0, 5.0, 6.0));
    ExpectElements(Vec({2.0, -1.0}) * m, {-2.0, -1.0, 0.0});
}

TEST(VectorRotation, RotationMatricesAreProperAndCleanAtRightAngles) {
    test::Random rng;
    for (int n = 0; n < 50; ++n) {
        double dDegrees = rng.Uniform(-400.0, 400.0);
        CNuMatrix r = CNuGeometry::RotationMatrix(dDegrees, RandomVector(rng));
        EXPECT_TRUE(r.IsOrthogonal(kGeometry)) << "angle " << dDegrees;
        EXPECT_NEAR(Determinant3(r), 1.0, kGeometry);
        for (auto eAxis : {CNuGeometry::eXAxis, CNuGeometry::eYAxis, CNuGeometry::eZAxis}) {
            CNuMatrix q = CNuGeometry::RotationMatrix(dDegrees, eAxis);
            CNuVector e;
            e[eAxis] = 1.0;
            EXPECT_TRUE(q.IsEqual(CNuGeometry::RotationMatrix(dDegrees, e * 5.0), kGeometry));
            EXPECT_NEAR(Determinant3(q), 1.0, kGeometry);
        }
    }
    // Quarter turns are exact, 45 degrees gives equal cosine and sine.
    CNuVector x(1.0, 0.0, 0.0);
    x.Rotate(90.0, CNuGeometry::eZAxis);
    ExpectElements(x, {0.0, 1.0, 0.0});
    CNuMatrix h = CNuGeometry::RotationMatrix(45.0, CNuGeometry::eXAxis);
    EXPECT_EQ(h.GetElement(1, 1), h.GetElement(1, 2));
}

TEST(VectorRotation, RotatingForthAndBackRestoresTheVectorAndTheFoundAxisCarriesItOntoAnother) {
    test::Random rng;
    // The point class is not at hand here; the centre is never read, as a vector has no position.
    alignas(16) unsigned char acNoPoint[64] = {};
    const CNuPoint& centre = *reinterpret_cast<const CNuPoint*>(acNoPoint);
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
        EXPECT_NEAR(Distance(turned * (1.0 / v.Magnitude()), b * (1.0 / b.Magnitude())), 0.0,
                    kGeometry);
    }
}

TEST(VectorRotation, EarlyExitsComeBeforeTheAxisIsChecked) {
    CNuVector zero;
    zero.Rotate(10.0, CNuVector(4));  // nothing to rotate: the bad axis goes unnoticed
    zero.Rotate(10.0, CNuVector());
    CNuVector v(1.0, 2.0, 3.0);
    v.Rotate(1e-301, CNuVector(2));  // no angle: likewise
    ExpectElements(v, {1.0, 2.0, 3.0});
    EXPECT_TRUE(v.GetRotationMatrix(0.0, CNuVector(7)).IsEqual(CNuMatrix::Identity(3), 0.5));
}

TEST(VectorAngles, AngleAgreesWithTheTwoArgumentArcTangent) {
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

TEST(VectorAngles, SignedAngleTurnsAroundTheAxis) {
    CNuVector z(0.0, 0.0, 2.0);
    test::Random rng;
    for (int n = 0; n < 100; ++n) {
        double dFrom = rng.Uniform(0.0, 360.0), dTurn = rng.Uniform(1.0, 359.0);
        double dTilt = rng.Uniform(10.0, 80.0);  // same angle with the axis for both vectors
        CNuVector u(std::cos(dFrom * Nu_PI / 180.0), std::sin(dFrom * Nu_PI / 180.0), 0.0);
        u[2] = std::tan(dTilt * Nu_PI / 180.0);
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

TEST(VectorFrames, OrthonormalFramesAreRightHandedAndChangeTheVector) {
    test::Random rng;
    for (int n = 0; n < 100; ++n) {
        CNuVector z = RandomVector(rng), x, y;
        CNuVector original = z;
        z.OrthonormalXY(&x, &y);
        EXPECT_NEAR(Distance(z, original * (1.0 / original.Magnitude())), 0.0, kGeometry);
        EXPECT_NEAR(x.Magnitude(), 1.0, kGeometry);
        EXPECT_NEAR(x % z, 0.0, kGeometry);
        EXPECT_NEAR(Distance(x * y, z), 0.0, kGeometry);  // x, y, z right-handed
    }
    // The smallest coordinate is the helper axis; ties fall to z, then to y.
    CNuVector x;
    CNuVector v(0.0, 0.0, 2.0);
    v.OrthonormalX(&x);  // x and y tie: e = y, y cross z = x
    EXPECT_EQ(x[0], 1.0);
    CNuVector w(1.0, 1.0, 1.0);
    w.OrthonormalX(&x);  // a three-way tie takes z
    EXPECT_EQ(x[2], 0.0);
    EXPECT_LT(x[0], 0.0);
}

TEST(VectorFrames, OrthonormalYFlattensTheVectorAndStaysInsideTwoElements) {
    CNuVector v(3.0, 4.0, 7.0), flat = Vec({3.0, 4.0}), y;
    v.OrthonormalY(&y);
    ExpectElements(v, {0.6, 0.8, 0.0});
    EXPECT_DOUBLE_EQ(y[0], -0.8);
    EXPECT_DOUBLE_EQ(y[1], 0.6);
    flat.OrthonormalY(&y);
    ExpectElements(flat, {0.6, 0.8});
    EXPECT_DOUBLE_EQ(y[1], 0.6);
}

TEST(VectorOrder, SymmetricAxisClearsSmallElementsAndFixesTheSign) {
    CNuVector v(1e-9, -3.0, 3.0);
    v.SymmetricAxis(1e-6, 1);  // the first of the equal maxima is negative: negate
    ExpectElements(v, {0.0, 3.0, -3.0});
    v.SymmetricAxis(1e-6, 0);
    EXPECT_EQ(v[1], 3.0);
    CNuVector w(-0.5, 0.25, 0.0);
    w.SymmetricAxis(0.25, 1);  // an element equal to dTol stays
    ExpectElements(w, {0.5, -0.25, 0.0});
}

TEST(VectorOrder, SortsStablyAndFindsExtremesWithinTheLargeBound) {
    CNuVector v = Vec({2.0, -1.0, 2.0, 0.5});
    CNuIntArray index;
    v.Sort(&index);
    ASSERT_EQ(index.GetSize(), 4);
    const int aOrder[4] = {1, 3, 0, 2};  // equal keys keep their order
    for (int k = 0; k < 4; ++k)
        EXPECT_EQ(index[k], aOrder[k]) << "rank " << k;
    ExpectElements(v, {2.0, -1.0, 2.0, 0.5});  // the index sort leaves the vector alone
    EXPECT_EQ(v.Max(), 2.0);
    EXPECT_EQ(v.Min(), -1.0);
    v.Sort();
    ExpectElements(v, {-1.0, 0.5, 2.0, 2.0});
    EXPECT_EQ(CNuVector(-2e300, -5e300, -3e300).Max(), -1e300);
    EXPECT_EQ(CNuVector(2e300, 5e300, 3e300).Min(), 1e300);
}

TEST(VectorOrder, NormaliseLeavesZeroAndMagnitudeIsUnscaled) {
    CNuVector zero;
    zero.Normalise();
    EXPECT_EQ(zero.Magnitude(), 0.0);
    CNuVector v(3.0, 0.0, 4.0);
    v.Normalise();
    ExpectElements(v, {0.6, 0.0, 0.8});
    EXPECT_EQ(CNuVector(1e200, 0.0, 0.0).Magnitude(), HUGE_VAL);  // the squares overflow
    EXPECT_EQ(CNuVector(1.0, -2.5, 4.0).Sum(), 2.5);
}

}  // namespace
}  // namespace numorix
