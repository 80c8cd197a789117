// Vectors: blocks, the homogeneous pair, predicates, arithmetic with one refusal per rule,
// rotations and rotation matrices, angles, orthonormal frames, sorting and extremes.
#include <cmath>
#include <vector>

#include "dense_support.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/point.h"

namespace numorix {
namespace {

using test::MaxDifference;
using test::Vec;
using V = std::vector<double>;

// Geometric results of a few dozen operations on unit-sized data: rotations, cross products.
constexpr double kGeometry = 1e-13;
// Angles in degrees compared with atan2: the quotient form of the arc tangent loses a few ulps
// of the angle near 0 and 180 degrees, more than the plain relative rounding.
constexpr double kDegrees = 1e-11;

CNuVector RandomVector(test::Random& rng) { return test::RandomVector(rng, 3, -2.0, 2.0); }
double Distance(const CNuVector& a, const CNuVector& b) { return (a - b).Magnitude(); }
V Elements(const CNuVector& v) { return V(v.GetData(), v.GetData() + v.GetSize()); }
double Degrees(double d) { return d * Nu_PI / 180.0; }

// Blocks and conversion from a double array, the homogeneous pair (w = 0 taken as 1; a 4-vector
// stays 4, a 3-vector 3; the documented capacity of 4 after NonHomogeneous), sorting (stable index
// sort) and extremes (clamped to the Large bound), normalising (zero stays zero) and the unscaled
// magnitude.
TEST(Vector, ElementOperationsGiveExactResults) {
    CNuVector p(1.0, 2.0, 3.0), q = Vec({2.0, 4.0, 6.0, 2.0}), r = Vec({2.0, 4.0, 6.0, 0.0});
    p.Homogeneous();
    q.Homogeneous();
    EXPECT_EQ(Elements(p), V({1.0, 2.0, 3.0, 1.0}));
    q.NonHomogeneous();
    q.NonHomogeneous();
    r.NonHomogeneous();
    EXPECT_TRUE(Elements(q) == V({1, 2, 3}) && q.GetCapacity() == 4 && Elements(r) == V({2, 4, 6}));
    CNuVector v = Vec({2.0, -1.0, 2.0, 0.5}), zero, n(3.0, 0.0, 4.0);
    EXPECT_EQ(Elements(v.SubVector(1, 3)), V({-1.0, 2.0, 0.5}));
    EXPECT_EQ(Elements(test::Doubles({1.5, -2.0}).ToVector()), V({1.5, -2.0}));
    CNuIntArray index;
    v.Sort(&index);
    EXPECT_EQ(test::Elements(index), std::vector<int>({1, 3, 0, 2}));  // equal keys keep order
    EXPECT_TRUE(Elements(v) == V({2.0, -1.0, 2.0, 0.5}) && v.Max() == 2.0 && v.Min() == -1.0);
    v.Sort();
    EXPECT_EQ(Elements(v), V({-1.0, 0.5, 2.0, 2.0}));
    EXPECT_EQ(CNuVector(-2e300, -5e300, -3e300).Max(), -1e300);
    EXPECT_EQ(CNuVector(2e300, 5e300, 3e300).Min(), 1e300);
    zero.Normalise();
    n.Normalise();
    EXPECT_TRUE(zero.Magnitude() == 0.0 && Elements(n) == V({0.6, 0.0, 0.8}));
    EXPECT_EQ(CNuVector(1e200, 0.0, 0.0).Magnitude(), HUGE_VAL);  // the squares overflow
    CNuVector s(1e-9, -3.0, 3.0), t(-0.5, 0.25, 0.0);
    s.SymmetricAxis(1e-6, 1);  // small elements cleared; the first of the maxima made positive
    t.SymmetricAxis(0.25, 1);  // an element equal to dTol stays
    EXPECT_TRUE(Elements(s) == V({0.0, 3.0, -3.0}) && Elements(t) == V({0.5, -0.25, 0.0}));
}

// Short vectors keep their elements inside the object, long ones on the heap: copies and
// assignments across that boundary must stay deep and independent (run under the sanitizers).
TEST(Vector, CopiesAndAssignmentsAcrossSizesAreDeepAndIndependent) {
    for (int nFrom : {1, 3, 4, 5, 12})
        for (int nTo : {1, 3, 4, 5, 12}) {
            CNuVector from = Vec({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}).SubVector(0, nFrom - 1);
            CNuVector to(nTo);
            const V expected = Elements(from);
            CNuVector copy(to = from);
            from[0] = copy[nFrom - 1] = -7.0;
            const CNuVector& alias = to;
            EXPECT_EQ(Elements(to = alias), expected) << nFrom << " into " << nTo;
        }
}

// Strict comparisons; parallel and orthogonal tests ignore length and take radians; equality of
// 3D directions uses the fixed minimum angle and a length difference below dTol, other sizes and
// zero vectors compare element by element.
TEST(Vector, PredicatesAreStrict) {
    CNuVector x(1.0, 0.0, 0.0), nearX(1.0, 1e-3, 0.0), nearY(1e-3, 5.0, 0.0), two(2);
    const CNuVector oneDegree(std::cos(Degrees(1.0)), std::sin(Degrees(1.0)), 0.0);
    // clang-format off
    const std::vector<int> seen = {
        CNuVector(1, 2, 3).IsPositive(), CNuVector(1, 0, 3).IsPositive(),
        CNuVector(1, 0, 3).IsNonNegative(), CNuVector(1, -1e-300, 3).IsNonNegative(),
        CNuVector(0.5, -0.5, 0).IsZero(0.6), CNuVector(0.5, -0.5, 0).IsZero(0.5),
        x.IsParallelTo(nearX * 3.0, 2e-3), x.IsParallelTo(nearX, 5e-4), x.IsParallelTo(-x, 1e-9),
        x.IsOrthogonalTo(nearY, 3e-4), x.IsOrthogonalTo(nearY, 1e-4), x.IsEqual(-x, 10.0),
        x.IsEqual(oneDegree, 1e-3), x.IsEqual(CNuVector(1.0, 1e-11, 0.0), 1e-12), x.IsEqual(x, 0.0),
        x.IsEqual(CNuVector(4), 10.0), two.IsEqual(Vec({0.0, 0.01}), 0.02),
        two.IsEqual(Vec({0.0, 0.01}), 0.01), CNuVector().IsEqual(CNuVector(0, 0, 1e-9), 1e-8)};
    // clang-format on
    EXPECT_EQ(seen, std::vector<int>({1, 0, 1, 0, 1, 0, 1, 0, 1, 1, 0, 0, 0, 1, 0, 0, 1, 0, 1}));
}

TEST(Vector, EveryRefusalStoresItsCauseNameAndLocation) {
    CNuVector a, b(4), two(2), zero, axis, v(1.0, 2.0, 3.0), x(1.0, 0.0, 0.0);
    double d = 0.0;
    const char* pszAngle = "CNuVector::AngleWith()";
    test::ExpectNuFailure<CNuConstructionException>([] { CNuVector v(0); }, 1, "size", "CNuVector",
                                                    0);
    test::ExpectFailures<CNuOperationException>({
        // The range is checked before the order.
        {[&] { b.SubVector(5, 4); }, 103, "operation", "CNuVector::SubVector(i, j)", 0, 3},
        {[&] { b.SubVector(3, 2); }, 115, "operation", "CNuVector::SubVector(i, j)"},
        {[&] { two.Homogeneous(); }, 111, "calculation", "CNuVector::Homogeneous()"},
        {[&] { a - b; }, 105, "operator-", "CNuVector"},
        {[&] { b* b; }, 110, "operator*", "CNuVector"},
        {[&] { b* CNuMatrix(3, 4); }, 105, "operator*", "CNuVector"},
        {[&] { -2e300 * a; }, 107, "operator*", "CNuVector"},
        {[&] { a /= -1e-301; }, 106, "operator/=", "CNuVector"},
        {[&] { v / 0.0; }, 106, "operator/", "CNuVector"},
        // An axis of two elements is refused by checked access rather than read past its end.
        {[&] { CNuGeometry::RotationMatrix(10.0, two); }, 103, "element operator[]", "CNuVector"},
        {[&] { v.Rotate(10.0, two); }, 110, "rotation", "CNuVector"},
        {[&] { v.Rotate(10.0, zero); }, 109, "rotation", "CNuVector"},
        {[&] { zero.GetRotationMatrix(0.0, v); }, 109, "rotation", "CNuVector"},
        // A zero `other` passes the first checks and fails in the angle.
        {[&] { x.GetRotationAxis(zero, axis, d); }, 109, "calculation", pszAngle},
        {[&] { two.AngleWith(v); }, 110, "calculation", pszAngle},
        {[&] { v.AngleWith(zero); }, 109, "calculation", pszAngle},
        {[&] { x.AngleWith(v, CNuVector(0.0, 0.0, 2.0)); }, 114, "calculation", pszAngle},
        {[&] { zero.OrthonormalX(&axis); }, 109, "calculation", "CNuVector::OrthonormalX()"},
        {[&] { b.OrthonormalY(&axis); }, 110, "calculation", "CNuVector::OrthonormalY()"},
    });
    EXPECT_EQ((v * 1e300)[2], 3e300);  // a factor of exactly Large passes
}

// On random vectors: cross, dot and elementwise products by their identities and the in-place
// operators; rotation matrices are proper and the named axes agree with the general form;
// rotating forth and back restores a vector (which has no position: the centre is irrelevant);
// the axis and angle found between two vectors carry one onto the other; the angle agrees with
// atan2 and the signed angle turns around its axis; frames are orthonormal and right-handed.
TEST(Vector, GeometricOperationsObeyTheirIdentities) {
    test::Random rng;
    const CNuPoint centre(5.0, -3.0, 2.0);
    const CNuVector zAxis(0.0, 0.0, 2.0);
    for (int n = 0; n < 100; ++n) {
        CNuVector a = RandomVector(rng), b = RandomVector(rng), c = a * b, e = a, w = a, x, y, axis;
        const double dScale = a.Magnitude() * b.Magnitude(), dDegrees = rng.Uniform(-400, 400);
        EXPECT_LT(std::fabs(c % a) + std::fabs(c % b), 2 * kGeometry * dScale * dScale);
        EXPECT_NEAR(c % c + (a % b) * (a % b), (a % a) * (b % b), kGeometry * dScale * dScale);
        EXPECT_EQ((a & b).Sum(), a[0] * b[0] + a[1] * b[1] + a[2] * b[2]);
        (((e += b) -= a * 2.0) *= 3.0) /= 3.0;
        EXPECT_NEAR(Distance(-(e + a) / 2.0, -b / 2.0), 0.0, kGeometry);
        const Eigen::MatrixXd r = test::ToEigen(CNuGeometry::RotationMatrix(dDegrees, b));
        EXPECT_TRUE(r.isUnitary(kGeometry) && std::fabs(r.determinant() - 1.0) < kGeometry) << r;
        const auto eAxis = static_cast<CNuGeometry::EAxisType>(n % 3);
        const CNuVector unit = CNuVector(eAxis == 0, eAxis == 1, eAxis == 2) * 5.0;
        EXPECT_LT(MaxDifference(CNuGeometry::RotationMatrix(dDegrees, eAxis),
                                CNuGeometry::RotationMatrix(dDegrees, unit)),
                  kGeometry);
        w.Rotate(dDegrees, b);
        EXPECT_NEAR(w % b, a % b, kGeometry * 4.0);
        w.Rotate(-dDegrees, b, centre);
        w.Rotate(dDegrees, eAxis, centre);
        w.Rotate(-dDegrees, eAxis);
        EXPECT_NEAR(Distance(w, a), 0.0, kGeometry);
        double dRadians = 0.0;
        a.GetRotationAxis(b, axis, dRadians);
        CNuVector turned = a * a.GetRotationMatrix(dRadians, axis);
        EXPECT_NEAR(Distance(turned / a.Magnitude(), b / b.Magnitude()), 0.0, kGeometry);
        EXPECT_NEAR(a.AngleWith(b), std::atan2(c.Magnitude(), a % b) * 180.0 / Nu_PI, kDegrees);
        CNuVector u(a[0], a[1], 1.0), v = u;
        v.Rotate(std::fabs(dDegrees) / 2.0 + 1.0, zAxis);
        EXPECT_NEAR(u.AngleWith(v, zAxis), std::fabs(dDegrees) / 2.0 + 1.0, kDegrees);
        EXPECT_NEAR(u.AngleWith(v, -zAxis), 359.0 - std::fabs(dDegrees) / 2.0, kDegrees);
        c = a;
        a.OrthonormalXY(&x, &y);
        EXPECT_NEAR(Distance(a, c / c.Magnitude()) + std::fabs(x % a), 0.0, kGeometry);
        EXPECT_NEAR(x.Magnitude() + Distance(x * y, a), 1.0, kGeometry);
    }
}

// Quarter turns are exact; no angle or nothing to turn returns before the axis is checked; equal
// directions have exactly 0 degrees between them, also with an axis they lie along, and opposite
// ones 180. The smallest coordinate is a frame's helper axis, ties falling to z, then to y;
// OrthonormalY flattens a 3-vector and keeps a 2-vector in two elements.
TEST(Vector, SpecialCasesHaveExactAnswers) {
    CNuVector x(1.0, 0.0, 0.0), h = x, zero, v(1.0, 2.0, -3.0), z(0.0, 0.0, 2.0), e, y;
    x.Rotate(90.0, CNuGeometry::eZAxis);
    EXPECT_EQ(Elements(x), V({0.0, 1.0, 0.0}));
    // 45 degrees give equal cosine and sine, which cos and sin of pi/4 are not.
    h.Rotate(45.0, CNuGeometry::eZAxis);
    EXPECT_EQ(h[0], h[1]);
    zero.Rotate(10.0, CNuVector(4));
    v.Rotate(1e-301, CNuVector(2));
    EXPECT_TRUE(zero.Magnitude() == 0.0 && Elements(v) == V({1.0, 2.0, -3.0}));
    EXPECT_EQ(MaxDifference(v.GetRotationMatrix(0.0, CNuVector(7)), CNuMatrix::Identity(3)), 0.0);
    EXPECT_EQ(V({v.AngleWith(v * 2.5), v.AngleWith(-v), v.AngleWith(v * 3.0, z),
                 CNuVector(0, 0, 1).AngleWith(z, z), (-z).AngleWith(-z, z)}),
              V({0.0, 180.0, 0.0, 0.0, 0.0}));
    CNuVector p(0.0, 0.0, 2.0), q(1.0, 1.0, 1.0), u(3.0, 4.0, 7.0), flat = Vec({3.0, 4.0});
    p.OrthonormalX(&e);  // x and y tie: e = y, y cross z = x
    EXPECT_EQ(e[0], 1.0);
    q.OrthonormalX(&e);  // a three-way tie takes z
    EXPECT_TRUE(e[2] == 0.0 && e[0] < 0.0) << e[0] << ", " << e[2];
    CNuVector(0.1, 1.0, 2.0).OrthonormalX(&e);  // x is smallest: e = x cross v, no x component
    EXPECT_EQ(e[0], 0.0);
    u.OrthonormalY(&y);
    flat.OrthonormalY(&e);
    EXPECT_TRUE(Elements(u) == V({0.6, 0.8, 0.0}) && Elements(flat) == V({0.6, 0.8}));
    EXPECT_LT(Distance(y, CNuVector(-0.8, 0.6, 0.0)), kGeometry);
    EXPECT_EQ(Elements(Vec({2.0, -1.0}) * test::Mat({{1, 2, 3}, {4, 5, 6}})), V({-2, -1, 0}));
}

}  // namespace
}  // namespace numorix
