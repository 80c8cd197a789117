// Matrices: shape and factories, element, row, column and block access with their checks in
// order, predicates, and arithmetic against Eigen as an oracle.
#include <string>

#include "dense_support.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace {

using Op = CNuOperationException;
using test::RandomMatrix;
using test::ToEigen;

// Products of order-1 data with up to a dozen terms, against a library that may sum in another
// order or with fused multiply-adds.
constexpr double kProduct = 1e-13;
// For comparisons that must hold to the last bit: IsEqual and IsZero test strictly below dTol.
constexpr double kBitEqual = 1e-300;

TEST(Matrix, FreshMatricesHoldZerosAndFactoriesBuildTheirPattern) {
    CNuMatrix m;
    ASSERT_TRUE(m.GetRowSize() == 4 && m.GetColumnSize() == 4);
    EXPECT_TRUE(m.IsZero(kBitEqual));
    CNuMatrix d = CNuMatrix::DiagonalMatrix(CNuVector(1.0, 2.0, 3.0));
    EXPECT_EQ(test::MaxDifference(d, Eigen::Vector3d(1.0, 2.0, 3.0).asDiagonal().toDenseMatrix()),
              0.0);
    EXPECT_EQ(test::MaxDifference(CNuMatrix::Identity(3) * d, d), 0.0);
    EXPECT_EQ(d.Trace(), 6.0);
}

// Index refusals report the valid range of the index they refuse, rows before columns; block
// bounds are checked in the order: order of the bounds, rows, columns; sizes after indices.
TEST(Matrix, RefusalsStoreTheirCauseNameLocationAndRange) {
    CNuMatrix m(4, 6), a(2, 3), b(3, 2);
    CNuVector col3;
    const char* pszSub = "CNuMatrix::SubMatrix()";
    const char* pszSet = "CNuMatrix::SetSubMatrix()";
    const char* pszElement = "CNuMatrix::Element()";
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuMatrix(0, 3); }, 1, "number of rows/columns", "CNuMatrix"},
        {[] { CNuMatrix(3, 0); }, 1, "number of rows/columns", "CNuMatrix"},
    });
    test::ExpectFailures<Op>({
        {[&] { m.Element(4, 0); }, 103, "operation", pszElement, 0, 3},
        {[&] { m.Element(-1, 9); }, 103, "operation", pszElement, 0, 3},
        {[&] { m.Element(0, 6); }, 103, "operation", pszElement, 0, 5},
        {[&] { m.SubMatrix(0, 4, 0, 9); }, 103, "operation", pszSub, 0, 3},
        {[&] { m.SubMatrix(0, 3, -1, 10); }, 103, "operation", pszSub, 0, 5},
        {[&] { m.SubMatrix(2, 1, 0, 0); }, 115, "operation", pszSub},
        {[&] { m.SubMatrix(9, 7, -1, 0); }, 115, "operation", pszSub},
        {[&] { m.SetSubMatrix(1, 0, 0, 0, CNuMatrix(9, 9)); }, 115, "operation", pszSet},
        {[&] { m.SetSubMatrix(0, 4, 0, 0, CNuMatrix(9, 9)); }, 103, "operation", pszSet},
        {[&] { m.SetSubMatrix(0, 1, 0, 1, CNuMatrix(2, 3)); }, 105, "operation", pszSet},
        {[&] { m.GetRowVector(4); }, 103, "operation", "CNuMatrix::GetRowVector()"},
        {[&] { m.GetColumnVector(-1); }, 103, "operation", "CNuMatrix::GetColumnVector()"},
        {[&] { m.SetRowVector(4, col3); }, 103, "operation", "CNuMatrix::SetRowVector()"},
        {[&] { m.SetRowVector(0, col3); }, 105, "operation", "CNuMatrix::SetRowVector()"},
        {[&] { m.SetColumnVector(6, col3); }, 103, "operation", "CNuMatrix::SetColumnVector()"},
        {[&] { m.SetColumnVector(0, col3); }, 105, "operation", "CNuMatrix::SetColumnVector()"},
        {[] { CNuMatrix(2, 3).Trace(); }, 116, "calculation", "CNuMatrix::Trace()"},
        {[&] { a + b; }, 105, "operator+", "CNuMatrix"},
        {[&] { a* a; }, 105, "operator*", "CNuMatrix"},
        {[&] { a* CNuVector(2); }, 105, "operator*", "CNuMatrix"},
        {[&] { a * -2e300; }, 107, "operator*", "CNuMatrix"},
        {[&] { a /= 1e-301; }, 106, "operator/=", "CNuMatrix"},
    });
    EXPECT_TRUE(m.IsZero(kBitEqual)) << "a refused write changed the matrix";
}

TEST(Matrix, RowsColumnsBlocksAndAssignmentsRoundTrip) {
    test::Random rng;
    CNuMatrix m = RandomMatrix(rng, 3, 4), rows = m, reversed(3, 4);
    for (int i = 0; i < 3; ++i)
        rows.SetRowVector(i, m.GetRowVector(2 - i));
    for (int j = 0; j < 4; ++j)
        reversed.SetColumnVector(3 - j, rows.GetColumnVector(j));
    EXPECT_EQ(test::MaxDifference(reversed, ToEigen(m).reverse()), 0.0);
    reversed = m;  // same shape: copied in place
    EXPECT_EQ(test::MaxDifference(reversed, m), 0.0);
    for (int n = 0; n < 30; ++n) {
        CNuMatrix a = RandomMatrix(rng, 5, 6);
        int r1 = rng.Integer(0, 4), r2 = rng.Integer(r1, 4);
        int c1 = rng.Integer(0, 5), c2 = rng.Integer(c1, 5);
        CNuMatrix block = a.SubMatrix(r1, r2, c1, c2);
        EXPECT_EQ(test::MaxDifference(block, ToEigen(a).block(r1, c1, r2 - r1 + 1, c2 - c1 + 1)),
                  0.0);
        CNuMatrix zeroed = a;
        zeroed.SetSubMatrix(r1, r2, c1, c2, block * 0.0);
        zeroed.SetSubMatrix(r1, r2, c1, c2, block);
        EXPECT_EQ(test::MaxDifference(zeroed, a), 0.0);
    }
}

// Every comparison is strict, looks at every element (the first row and the last column
// included) and refuses other shapes.
TEST(Matrix, PredicatesAreStrictAndSeeEveryElement) {
    CNuMatrix m = CNuMatrix::Identity(3);
    EXPECT_FALSE(m.IsEqual(m, 0.0));
    EXPECT_FALSE(m.IsEqual(CNuMatrix(3, 4), 10.0));
    EXPECT_FALSE(m.IsZero(1.0));
    EXPECT_TRUE(m.IsZero(1.0 + 1e-15));
    for (int j : {0, 2}) {
        CNuMatrix other = m, lone(3, 3);
        other.SetElement(0, j, other.GetElement(0, j) + 0.5);
        lone.SetElement(0, j, 0.5);
        EXPECT_FALSE(m.IsEqual(other, 0.5)) << "row 0, column " << j;
        EXPECT_TRUE(m.IsEqual(other, 0.5 + 1e-15)) << "row 0, column " << j;
        EXPECT_FALSE(lone.IsZero(0.5)) << "row 0, column " << j;
    }
    m.SetElement(0, 2, 0.25);
    EXPECT_FALSE(m.IsSymmetric(0.25));
    m.SetElement(2, 0, 0.2);
    EXPECT_TRUE(m.IsSymmetric(0.0500001));
    CNuMatrix near = CNuMatrix::Identity(3);
    near.SetElement(1, 0, -1e-3);  // a neighbour of the diagonal counts as well
    EXPECT_FALSE(near.IsSymmetric(1e-3));
    EXPECT_TRUE(near.IsSymmetric(1.1e-3));
    EXPECT_FALSE(CNuMatrix(2, 3).IsSymmetric(1.0));
    EXPECT_FALSE(CNuMatrix(2, 3).IsOrthogonal(10.0));
    EXPECT_TRUE(
        CNuGeometry::RotationMatrix(33.0, CNuVector(1.0, 2.0, 2.0)).IsOrthogonal(test::kTight));
    EXPECT_FALSE((CNuMatrix::Identity(3) * 1.001).IsOrthogonal(1e-3));
}

TEST(Matrix, ArithmeticAgreesWithEigenAndTransposesFollowTheProductRulesExactly) {
    test::Random rng;
    for (int n = 0; n < 30; ++n) {
        int p = rng.Integer(1, 7), q = rng.Integer(1, 7), r = rng.Integer(1, 7);
        CNuMatrix a = RandomMatrix(rng, p, q), b = RandomMatrix(rng, q, r), c = a;
        Eigen::MatrixXd ea = ToEigen(a), eb = ToEigen(b);
        SCOPED_TRACE(std::to_string(p) + "x" + std::to_string(q) + " times " + std::to_string(r));
        EXPECT_LE(test::MaxDifference(a * b, ea * eb), kProduct);
        EXPECT_LE(test::MaxDifference(a * b.GetColumnVector(0), ea * eb.col(0)), kProduct);
        EXPECT_LE(test::MaxDifference(a.PreMultiplyTranspose(), ea.transpose() * ea), kProduct);
        EXPECT_LE(test::MaxDifference(a.PostMultiplyTranspose(), ea * ea.transpose()), kProduct);
        EXPECT_LE(test::MaxDifference((a + a * 2.0 - a / 4.0) * -1.0, -2.75 * ea), kProduct);
        c += a;
        c -= a * 4.0;
        c *= 3.0;
        c /= -4.0;
        EXPECT_LE(test::MaxDifference(c, 1.5 * ea), kProduct);
        EXPECT_LE(test::MaxDifference(2.0 * a + (-a), ea), kProduct);
        // Same products in the same order of summation: equal to the last bit.
        EXPECT_EQ(test::MaxDifference((a * b).Transpose(), b.Transpose() * a.Transpose()), 0.0);
        EXPECT_EQ(test::MaxDifference(a.PreMultiplyTranspose(), a.Transpose() * a), 0.0);
        EXPECT_EQ(test::MaxDifference(a.PostMultiplyTranspose(), a * a.Transpose()), 0.0);
    }
}

}  // namespace
}  // namespace numorix
