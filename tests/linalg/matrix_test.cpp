// Matrices: shape and factories, element, row, column and block access with their checks in
// order, predicates, and arithmetic against Eigen as an oracle.
#include "dense_support.h"

namespace numorix {
namespace {

using test::MaxDifference;
using test::RandomMatrix;
using test::ToEigen;

// Products of order-1 data with up to a dozen terms, against a library that may sum in another
// order or with fused multiply-adds.
constexpr double kProduct = 1e-13;

// Index refusals report the valid range of the index they refuse, rows before columns; block
// bounds are checked in the order: order of the bounds, rows, columns; sizes after indices.
TEST(Matrix, RefusalsStoreTheirCauseNameLocationAndRange) {
    CNuMatrix m(4, 6), a(2, 3);
    const char* pszSub = "CNuMatrix::SubMatrix()";
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuMatrix(0, 3); }, 1, "number of rows/columns", "CNuMatrix"},
        {[] { CNuMatrix(3, 0); }, 1, "number of rows/columns", "CNuMatrix"},
    });
    test::ExpectFailures<CNuOperationException>({
        {[&] { m.Element(-1, 9); }, 103, "operation", "CNuMatrix::Element()", 0, 3},
        {[&] { m.Element(0, 6); }, 103, "operation", "CNuMatrix::Element()", 0, 5},
        {[&] { m.SubMatrix(0, 4, 0, 9); }, 103, "operation", pszSub, 0, 3},
        {[&] { m.SubMatrix(9, 7, -1, 0); }, 115, "operation", pszSub},
        {[&] { m.SetSubMatrix(0, 1, 0, 1, a); }, 105, "operation", "CNuMatrix::SetSubMatrix()"},
        {[&] { m.GetRowVector(4); }, 103, "operation", "CNuMatrix::GetRowVector()", 0, 3},
        {[&] { m.SetColumnVector(0, CNuVector()); }, 105, "operation",
         "CNuMatrix::SetColumnVector()"},
        {[] { CNuMatrix(2, 3).Trace(); }, 116, "calculation", "CNuMatrix::Trace()"},
        {[&] { a - m; }, 105, "operator-", "CNuMatrix"},
        {[&] { a* a; }, 105, "operator*", "CNuMatrix"},
        {[&] { a* CNuVector(2); }, 105, "operator*", "CNuMatrix"},
        {[&] { a * -2e300; }, 107, "operator*", "CNuMatrix"},
        {[&] { a /= 1e-301; }, 106, "operator/=", "CNuMatrix"},
    });
    EXPECT_TRUE(m.IsZero(1e-300)) << "a refused write changed the matrix";
}

TEST(Matrix, RowsColumnsBlocksAndAssignmentsRoundTrip) {
    test::Random rng;
    CNuMatrix m = RandomMatrix(rng, 3, 4), t(4, 3), back(3, 4);
    for (int i = 0; i < 3; ++i) {
        t.SetColumnVector(i, m.GetRowVector(i));
        back.SetRowVector(i, t.GetColumnVector(i));
    }
    EXPECT_EQ(MaxDifference(t, Eigen::MatrixXd(ToEigen(m).transpose())), 0.0);
    EXPECT_EQ(MaxDifference(back, m), 0.0);
    back = t * 2.0;
    back = m;  // another shape, then the same shape: copied in place
    EXPECT_EQ(MaxDifference(back, m), 0.0);
    for (int n = 0; n < 30; ++n) {
        CNuMatrix a = RandomMatrix(rng, 5, 6), zeroed = a;
        const int r1 = rng.Integer(0, 4), r2 = rng.Integer(r1, 4);
        const int c1 = rng.Integer(0, 5), c2 = rng.Integer(c1, 5);
        CNuMatrix block = a.SubMatrix(r1, r2, c1, c2);
        EXPECT_EQ(MaxDifference(
                      block, Eigen::MatrixXd(ToEigen(a).block(r1, c1, r2 - r1 + 1, c2 - c1 + 1))),
                  0.0);
        zeroed.SetSubMatrix(r1, r2, c1, c2, block * 0.0);
        zeroed.SetSubMatrix(r1, r2, c1, c2, block);
        EXPECT_EQ(MaxDifference(zeroed, a), 0.0);
    }
}

// Every comparison is strict, looks at every element (the first row and the last column
// included) and refuses other shapes.
TEST(Matrix, PredicatesAreStrictAndSeeEveryElement) {
    const CNuMatrix I = CNuMatrix::Identity(3);
    CNuMatrix corner = I, first = I, lone(3, 3), asym = I, near = I;
    corner.SetElement(0, 2, 0.5);
    first.SetElement(0, 0, 1.5);
    lone.SetElement(0, 2, 0.5);
    asym.SetElement(0, 2, 0.25);
    near.SetElement(1, 0, -1e-3);  // a neighbour of the diagonal counts as well
    // clang-format off
    const std::vector<int> seen = {
        I.IsEqual(I, 0.0), I.IsEqual(CNuMatrix(3, 4), 10.0), I.IsZero(1.0), I.IsZero(1.0 + 1e-15),
        I.IsEqual(corner, 0.5), I.IsEqual(corner, 0.5 + 1e-15), I.IsEqual(first, 0.5),
        lone.IsZero(0.5), first.IsZero(1.2), asym.IsSymmetric(0.25), asym.IsSymmetric(0.26),
        near.IsSymmetric(1e-3), near.IsSymmetric(1.1e-3), CNuMatrix(2, 3).IsSymmetric(1.0),
        CNuMatrix(2, 3).IsOrthogonal(10.0), (I * 1.001).IsOrthogonal(1e-3),
        CNuGeometry::RotationMatrix(33.0, CNuVector(1.0, 2.0, 2.0)).IsOrthogonal(test::kTight)};
    // clang-format on
    EXPECT_EQ(seen, std::vector<int>({0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 1}));
}

// Products, transposes, sums and scalings against Eigen; the factories; A^T A, A A^T and the
// transpose of a product equal to the last bit to the same products summed in the same order.
TEST(Matrix, ArithmeticAgreesWithEigenAndTransposesFollowTheProductRulesExactly) {
    test::Random rng;
    const CNuMatrix d = CNuMatrix::DiagonalMatrix(CNuVector(1.0, 2.0, 3.0));
    EXPECT_EQ(MaxDifference(CNuMatrix::Identity(3) * d,
                            Eigen::MatrixXd(Eigen::Vector3d(1.0, 2.0, 3.0).asDiagonal())),
              0.0);
    EXPECT_TRUE(d.Trace() == 6.0 && CNuMatrix().GetRowSize() == 4 && CNuMatrix().IsZero(1e-300));
    for (int n = 0; n < 30; ++n) {
        const int p = rng.Integer(1, 7), q = rng.Integer(1, 7), r = rng.Integer(1, 7);
        CNuMatrix a = RandomMatrix(rng, p, q), b = RandomMatrix(rng, q, r), c = a;
        const Eigen::MatrixXd ea = ToEigen(a), eb = ToEigen(b);
        SCOPED_TRACE(std::to_string(p) + "x" + std::to_string(q) + " times " + std::to_string(r));
        EXPECT_LE(MaxDifference(a * b, ea * eb), kProduct);
        EXPECT_LE(MaxDifference(a * b.GetColumnVector(0), Eigen::VectorXd(ea * eb.col(0))),
                  kProduct);
        EXPECT_LE(MaxDifference((a + a * 2.0 - a / 4.0) * -1.0 + 2.0 * -a, -4.75 * ea), kProduct);
        c += a;
        c -= a * 4.0;
        c *= 3.0;
        c /= -4.0;
        EXPECT_LE(MaxDifference(c, 1.5 * ea), kProduct);
        EXPECT_EQ(MaxDifference((a * b).Transpose(), b.Transpose() * a.Transpose()) +
                      MaxDifference(a.PreMultiplyTranspose(), a.Transpose() * a) +
                      MaxDifference(a.PostMultiplyTranspose(), a * a.Transpose()),
                  0.0);
    }
}

}  // namespace
}  // namespace numorix
