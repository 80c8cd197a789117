// Matrices: shape and factories, element, row, column and block access with their checks in
// order, predicates, and arithmetic against identities and against Eigen as an oracle.
#include <functional>
#include <string>

#include "dense_support.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace {

using Op = CNuOperationException;

// Products of order-1 data with up to a dozen terms, against a library that may sum in another
// order or with fused multiply-adds.
constexpr double kProduct = 1e-13;

using test::RandomMatrix;
using test::ToEigen;

double MaxDifference(const CNuMatrix& m, const Eigen::MatrixXd& e) {
    return (ToEigen(m) - e).cwiseAbs().maxCoeff();
}

TEST(MatrixShape, DefaultIsFourByFourZerosAndEmptyShapesAreRefused) {
    CNuMatrix m;
    ASSERT_EQ(m.GetRowSize(), 4);
    ASSERT_EQ(m.GetColumnSize(), 4);
    EXPECT_TRUE(m.IsZero(1e-300));
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuMatrix a(0, 3); }, 1, "number of rows/columns", "CNuMatrix"},
        {[] { CNuMatrix::Identity(0); }, 1, "number of rows/columns", "CNuMatrix"},
    });
    CNuMatrix d = CNuMatrix::DiagonalMatrix(CNuVector(1.0, 2.0, 3.0));
    EXPECT_TRUE(d.IsEqual(test::Mat({{1.0, 0.0, 0.0}, {0.0, 2.0, 0.0}, {0.0, 0.0, 3.0}}), 1e-300));
    EXPECT_TRUE((CNuMatrix::Identity(3) * d).IsEqual(d, 1e-300));
    EXPECT_EQ(d.Trace(), 6.0);
}

// Element access and block bounds report the valid range of the index they refuse: rows are
// checked before columns. Each row is a call, then the upper bound it must report.
TEST(MatrixAccess, RangeFailuresReportTheRowBoundBeforeTheColumnBound) {
    CNuMatrix m(4, 6), b(4, 5);
    const struct {
        std::function<void()> call;
        int nUpper;
    } aCases[] = {
        {[&] { m.Element(4, 0); }, 3},         {[&] { m.Element(-1, 9); }, 3},
        {[&] { m.Element(0, 6); }, 5},         {[&] { b.SubMatrix(-1, 9, 0, 9); }, 3},
        {[&] { b.SubMatrix(0, 4, 0, 9); }, 3}, {[&] { b.SubMatrix(0, 3, -1, 10); }, 4},
        {[&] { b.SubMatrix(0, 3, 0, 5); }, 4},
    };
    int nRow = 0;
    for (const auto& c : aCases) {
        SCOPED_TRACE("case " + std::to_string(nRow++));
        try {
            c.call();
            ADD_FAILURE() << "no failure";
        } catch (const Op& e) {
            EXPECT_EQ(e.m_nCause, 103);
            EXPECT_EQ(e.m_nValue1, 0);
            EXPECT_EQ(e.m_nValue2, c.nUpper);
            EXPECT_STREQ(e.m_szName, "operation");
        }
    }
    test::ExpectNuFailure<Op>([&] { m.Element(4, 0); }, 103, nullptr, "CNuMatrix::Element()");
}

TEST(MatrixAccess, RowsColumnsAndBlocksRoundTrip) {
    test::Random rng;
    CNuMatrix m = RandomMatrix(rng, 3, 4), rows = m, reversed = m;
    for (int i = 0; i < 3; ++i)
        rows.SetRowVector(i, m.GetRowVector(2 - i));
    for (int j = 0; j < 4; ++j)
        reversed.SetColumnVector(3 - j, rows.GetColumnVector(j));
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 4; ++j)
            EXPECT_EQ(reversed.GetElement(i, j), m.GetElement(2 - i, 3 - j)) << i << ", " << j;
    for (int n = 0; n < 30; ++n) {
        CNuMatrix m = RandomMatrix(rng, 5, 6);
        int r1 = rng.Integer(0, 4), r2 = rng.Integer(r1, 4);
        int c1 = rng.Integer(0, 5), c2 = rng.Integer(c1, 5);
        CNuMatrix block = m.SubMatrix(r1, r2, c1, c2);
        ASSERT_EQ(block.GetRowSize(), r2 - r1 + 1);
        ASSERT_EQ(block.GetColumnSize(), c2 - c1 + 1);
        EXPECT_EQ(block.GetElement(0, 0), m.GetElement(r1, c1));
        EXPECT_EQ(block.GetElement(r2 - r1, c2 - c1), m.GetElement(r2, c2));
        CNuMatrix zeroed = m;
        zeroed.SetSubMatrix(r1, r2, c1, c2, block * 0.0);
        zeroed.SetSubMatrix(r1, r2, c1, c2, block);
        EXPECT_TRUE(zeroed.IsEqual(m, 1e-300));
    }
}

TEST(MatrixFailures, EveryRefusalStoresItsCauseNameAndLocation) {
    // Indices before sizes; block bounds in the order: order, rows, columns.
    CNuMatrix m(4, 5), a(2, 3), b(3, 2);
    CNuVector row5(5), col3;
    const char* pszSub = "CNuMatrix::SubMatrix()";
    const char* pszSet = "CNuMatrix::SetSubMatrix()";
    test::ExpectFailures<Op>({
        {[] { CNuMatrix(2, 3).Trace(); }, 116, "calculation", "CNuMatrix::Trace()"},
        {[&] { m.GetRowVector(4); }, 103, "operation", "CNuMatrix::GetRowVector()"},
        {[&] { m.GetColumnVector(-1); }, 103, "operation", "CNuMatrix::GetColumnVector()"},
        {[&] { m.SetRowVector(4, col3); }, 103, "operation", "CNuMatrix::SetRowVector()"},
        {[&] { m.SetRowVector(0, col3); }, 105, "operation", "CNuMatrix::SetRowVector()"},
        {[&] { m.SetColumnVector(5, row5); }, 103, "operation", "CNuMatrix::SetColumnVector()"},
        {[&] { m.SetColumnVector(0, row5); }, 105, "operation", "CNuMatrix::SetColumnVector()"},
        {[&] { m.SubMatrix(2, 1, 0, 0); }, 115, "operation", pszSub},
        {[&] { m.SubMatrix(0, 0, 3, 9); }, 103, "operation", pszSub},
        {[&] { m.SubMatrix(9, 7, -1, 0); }, 115, "operation", pszSub},
        {[&] { m.SetSubMatrix(1, 0, 0, 0, CNuMatrix(9, 9)); }, 115, "operation", pszSet},
        {[&] { m.SetSubMatrix(0, 4, 0, 0, CNuMatrix(9, 9)); }, 103, "operation", pszSet},
        {[&] { m.SetSubMatrix(0, 1, 0, 1, CNuMatrix(2, 3)); }, 105, "operation", pszSet},
        {[&] { a + b; }, 105, "operator+", "CNuMatrix"},
        {[&] { a - b; }, 105, "operator-", "CNuMatrix"},
        {[&] { a += b; }, 105, "operator+=", "CNuMatrix"},
        {[&] { a -= b; }, 105, "operator-=", "CNuMatrix"},
        {[&] { a* a; }, 105, "operator*", "CNuMatrix"},
        {[&] { a* CNuVector(2); }, 105, "operator*", "CNuMatrix"},
        {[&] { a * -2e300; }, 107, "operator*", "CNuMatrix"},
        {[&] { 2e300 * a; }, 107, "operator*", "CNuMatrix"},
        {[&] { a *= 2e300; }, 107, "operator*=", "CNuMatrix"},
        {[&] { a / 0.0; }, 106, "operator/", "CNuMatrix"},
        {[&] { a /= 1e-301; }, 106, "operator/=", "CNuMatrix"},
    });
    EXPECT_TRUE(m.IsZero(1e-300)) << "a refused write changed the matrix";
}

TEST(MatrixPredicates, ToleranceComparisonsAreStrictAndNonSquareIsNeverSymmetric) {
    CNuMatrix m = CNuMatrix::Identity(3);
    EXPECT_FALSE(m.IsEqual(m, 0.0));
    EXPECT_TRUE(m.IsEqual(m, 1e-300));
    EXPECT_FALSE(m.IsEqual(CNuMatrix(3, 4), 10.0));
    EXPECT_FALSE(m.IsZero(1.0));
    EXPECT_TRUE(m.IsZero(1.0 + 1e-15));
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

TEST(MatrixArithmetic, ProductsAgreeWithEigenAndTransposesFollowTheProductRulesExactly) {
    test::Random rng;
    for (int n = 0; n < 30; ++n) {
        int p = rng.Integer(1, 7), q = rng.Integer(1, 7), r = rng.Integer(1, 7);
        CNuMatrix a = RandomMatrix(rng, p, q), b = RandomMatrix(rng, q, r);
        Eigen::MatrixXd ea = ToEigen(a), eb = ToEigen(b);
        double dSeen = MaxDifference(a * b, ea * eb);
        EXPECT_LE(dSeen, kProduct) << p << "x" << q << " times " << q << "x" << r;
        EXPECT_LE(MaxDifference(a.PreMultiplyTranspose(), ea.transpose() * ea), kProduct);
        EXPECT_LE(MaxDifference(a.PostMultiplyTranspose(), ea * ea.transpose()), kProduct);
        EXPECT_LE(MaxDifference((a + a * 2.0 - a / 4.0) * -1.0, -2.75 * ea), kProduct);
        CNuVector v = b.GetColumnVector(0);
        CNuMatrix av = a * b.SubMatrix(0, q - 1, 0, 0);
        CNuVector column = a * v;
        ASSERT_EQ(column.GetSize(), p);
        for (int i = 0; i < p; ++i)
            EXPECT_EQ(column[i], av.GetElement(i, 0));
        // Same products in the same order of summation: equal to the last bit.
        EXPECT_TRUE((a * b).Transpose().IsEqual(b.Transpose() * a.Transpose(), 1e-300));
        EXPECT_TRUE(a.PreMultiplyTranspose().IsEqual(a.Transpose() * a, 1e-300));
        EXPECT_TRUE(a.PostMultiplyTranspose().IsEqual(a * a.Transpose(), 1e-300));
        EXPECT_TRUE(a.PreMultiplyTranspose().IsSymmetric(1e-300));
        EXPECT_TRUE(a.Transpose().Transpose().IsEqual(a, 1e-300));
    }
}

TEST(MatrixArithmetic, InPlaceOperatorsMatchTheirCopyingForms) {
    test::Random rng;
    CNuMatrix a = RandomMatrix(rng, 3, 5), b = RandomMatrix(rng, 3, 5);
    CNuMatrix c = a;
    c += b;
    EXPECT_TRUE(c.IsEqual(a + b, 1e-300));
    c -= b;
    c -= b;
    EXPECT_TRUE(c.IsEqual(a + b - b - b, 1e-300));
    c = a;
    c *= 3.0;
    c /= 7.0;
    EXPECT_TRUE(c.IsEqual(a * 3.0 / 7.0, 1e-300));
    EXPECT_TRUE((-a + a).IsZero(1e-300));
}

}  // namespace
}  // namespace numorix
