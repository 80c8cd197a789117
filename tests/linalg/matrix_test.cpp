// Matrices: shape and factories, element, row, column and block access with their checks in
// order, predicates, arithmetic against Eigen as an oracle; the LU factorisation with its pivot
// rule and vanishing-pivot scaling, and determinants. Inverses are tested with the near-singular
// solves.
#include <cmath>
#include <limits>
#include <vector>

#include "dense_support.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::MaxDifference;
using test::RandomMatrix;
using test::ToEigen;

// Products of order-1 data with up to a dozen terms, against a library that may sum in another
// order or with fused multiply-adds.
constexpr double kProduct = 1e-13;

// Backward error of partial-pivoting LU on well-scaled data of order 1 and size up to 12.
constexpr double kFactorError = 1e-14;
// Determinants against Eigen's own LU: same conditioning, different rounding order.
constexpr double kDeterminantRelative = 1e-12;

// Index refusals report the valid range of the index they refuse, rows before columns; block
// bounds are checked in the order: order of the bounds, rows, columns; sizes after indices. The
// square-only operations refuse a rectangular matrix before touching anything.
TEST(Matrix, RefusalsStoreTheirCauseNameLocationAndRange) {
    CNuMatrix m(4, 6), a(2, 3);
    CNuIntArray index;
    int d = 0;
    ENuStatus eStatus = eNuStatusOk;
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuMatrix(0, 3); }, 1, "number of rows/columns", "CNuMatrix"},
        {[] { CNuMatrix(3, 0); }, 1, "number of rows/columns", "CNuMatrix"},
    });
    test::ExpectFailures<CNuOperationException>({
        {[&] { m.Element(-1, 9); }, 103, "operation", "CNuMatrix::Element()", 0, 3},
        {[&] { m.Element(0, 6); }, 103, "operation", "CNuMatrix::Element()", 0, 5},
        {[&] { m.SubMatrix(0, 4, 0, 9); }, 103, "operation", "CNuMatrix::SubMatrix()", 0, 3},
        {[&] { m.SubMatrix(9, 7, -1, 0); }, 115, "operation", "CNuMatrix::SubMatrix()"},
        {[&] { m.SetSubMatrix(0, 1, 0, 1, a); }, 105, "operation", "CNuMatrix::SetSubMatrix()"},
        {[&] { m.GetRowVector(4); }, 103, "operation", "CNuMatrix::GetRowVector()", 0, 3},
        {[&] { m.SetColumnVector(0, CNuVector()); }, 105, "operation",
         "CNuMatrix::SetColumnVector()"},
        {[&] { m.SetColumnVector(6, CNuVector(4)); }, 103, "operation",
         "CNuMatrix::SetColumnVector()", 0, 5},
        {[&] { m -= a; }, 105, "operator-=", "CNuMatrix"},
        {[&] { a.Trace(); }, 116, "calculation", "CNuMatrix::Trace()"},
        {[&] { a.LUD(&index, &d, &d); }, 116, "calculation", "CNuMatrix::LUD()"},
        {[&] { a.Determinant(); }, 116, "calculation", "CNuMatrix::Determinant()"},
        {[&] { a.Inverse(&eStatus); }, 116, "calculation", "CNuMatrix::Inverse()"},
        {[&] { a - m; }, 105, "operator-", "CNuMatrix"},
        {[&] { a* a; }, 105, "operator*", "CNuMatrix"},
        {[&] { a* CNuVector(2); }, 105, "operator*", "CNuMatrix"},
        {[&] { a * -2e300; }, 107, "operator*", "CNuMatrix"},
        {[&] { a /= 1e-301; }, 106, "operator/=", "CNuMatrix"},
    });
    EXPECT_TRUE(m.IsZero(1e-300) && a.IsZero(1e-300) && index.GetSize() == 0 &&
                eStatus == eNuStatusOk)
        << "a refusal changed its object or arguments";
}

TEST(Matrix, RowsColumnsAndBlocksRoundTrip) {
    test::Random rng;
    CNuMatrix m = RandomMatrix(rng, 3, 4), t(4, 3), back(3, 4);
    for (int i = 0; i < 3; ++i) {
        t.SetColumnVector(i, m.GetRowVector(i));
        back.SetRowVector(i, t.GetColumnVector(i));
    }
    EXPECT_EQ(MaxDifference(t, Eigen::MatrixXd(ToEigen(m).transpose())), 0.0);
    EXPECT_TRUE(MaxDifference(back, m) == 0.0 && m.GetElement(2, 3) == ToEigen(m)(2, 3));
    for (const auto& c : {std::make_pair(1, 3), std::make_pair(0, 4), std::make_pair(4, 4)}) {
        const int r1 = c.first, c1 = c.first % 3, nRows = c.second - c.first + 1, nColumns = 6 - c1;
        CNuMatrix a = RandomMatrix(rng, 5, 6), zeroed(5, 6);
        zeroed.SetSubMatrix(r1, c.second, c1, 5, a.SubMatrix(r1, c.second, c1, 5));
        Eigen::MatrixXd expected = Eigen::MatrixXd::Zero(5, 6);
        expected.block(r1, c1, nRows, nColumns) = ToEigen(a).block(r1, c1, nRows, nColumns);
        EXPECT_EQ(MaxDifference(zeroed, expected), 0.0) << "rows " << r1 << " to " << c.second;
    }
}

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
    const CNuMatrix expected = test::Mat({{1, 0, 0}, {0, 2, 0}, {0, 0, 3}});
    EXPECT_EQ(MaxDifference(CNuMatrix::Identity(3) * d, expected), 0.0);
    EXPECT_TRUE(d.Trace() == 6.0 && CNuMatrix().GetRowSize() == 4 && CNuMatrix().IsZero(1e-300));
    for (int n = 0; n < 30; ++n) {
        const int p = rng.Integer(1, 7), q = rng.Integer(1, 7), r = rng.Integer(1, 7);
        CNuMatrix a = RandomMatrix(rng, p, q), b = RandomMatrix(rng, q, r), c = a;
        const Eigen::MatrixXd ea = ToEigen(a), eb = ToEigen(b);
        SCOPED_TRACE(std::to_string(p) + "x" + std::to_string(q) + " times " + std::to_string(r));
        EXPECT_LE(MaxDifference(a * b, ea * eb), kProduct);
        EXPECT_LE(MaxDifference(a * b.GetColumnVector(0), (ea * eb.col(0)).eval()), kProduct);
        EXPECT_LE(MaxDifference((a + a * 2.0 - a / 4.0) * -1.0 + 2.0 * -a, -4.75 * ea), kProduct);
        (((c += a) -= a * 4.0) *= 3.0) /= -4.0;
        EXPECT_LE(MaxDifference(c, 1.5 * ea), kProduct);
        EXPECT_EQ(MaxDifference((a * b).Transpose(), b.Transpose() * a.Transpose()) +
                      MaxDifference(a.PreMultiplyTranspose(), a.Transpose() * a) +
                      MaxDifference(a.PostMultiplyTranspose(), a * a.Transpose()),
                  0.0);
    }
}

// Separated factors: P A = L U, L unit lower, U upper, P a permutation. Packed factors append their
// pivots to the record. Determinants (the parity times the pivots above 3 by 3) agree with Eigen,
// and a zero row makes them exactly 0.
TEST(Matrix, FactorsReproduceThePermutedMatrixAndDeterminantsAgreeWithEigen) {
    test::Random rng;
    for (int n : {1, 2, 3, 5, 8, 12}) {
        CNuMatrix A = test::RandomMatrix(rng, n, n), P(1, 1), L(1, 1), U(1, 1), packed(A);
        A.LUD2(&P, &L, &U);
        const Eigen::MatrixXd l = ToEigen(L), u = ToEigen(U), p = ToEigen(P);
        EXPECT_LT((p * ToEigen(A) - l * u).cwiseAbs().maxCoeff(), kFactorError) << n;
        EXPECT_TRUE(l.isLowerTriangular(0) && l.diagonal().isOnes(0) && u.isUpperTriangular(0))
            << "shapes, n " << n;
        EXPECT_TRUE(p.rowwise().sum().isOnes(0) && p.colwise().sum().isOnes(0)) << p;
        CNuIntArray index = test::Ints({42});
        int nParity = 0, nSingular = -1;
        packed.LUD(&index, &nParity, &nSingular);  // the parity is seen through the determinant
        EXPECT_TRUE(index.GetSize() == n + 1 && index[0] == 42 && nSingular == 0);
        const double dExpected = ToEigen(A).determinant();
        EXPECT_NEAR(A.Determinant(), dExpected, kDeterminantRelative * std::fabs(dExpected)) << n;
        A.SetRowVector(n / 2, CNuVector(n));
        EXPECT_EQ(A.Determinant(), 0.0) << "zero row, n = " << n;
    }
}

// Row-scaled figures (each row by its own largest element, however small): among equal ones the
// lower row wins; a column of NaN compares nowhere and
// keeps its rows; a zero row marks the matrix singular and is taken last; a pivot below the zero
// tolerance marks it singular, stays in place and scales its multipliers by 1 / NuGetTol()^2.
TEST(Matrix, PivotsFollowTheRowScaledFiguresAndVanishingPivotsMarkTheMatrixSingular) {
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const struct {
        CNuMatrix A;
        double dZero;
        std::vector<int> pivots;
        int nSingular;
    } aCases[] = {
        {test::Mat({{1.0, 0.5, 0.25}, {2.0, 1.0, 0.0}, {-4.0, 3.0, 1.0}}), 1e-300, {2, 2, 2}, 0},
        {test::Mat({{dNaN, 1.0, 2.0}, {dNaN, 3.0, 1.0}, {dNaN, 5.0, 4.0}}), 1e-300, {0, 1, 2}, 0},
        {test::Mat({{0.0, 0.0, 0.0}, {1.0, 2.0, 3.0}, {4.0, 5.0, 7.0}}), 1e-300, {2, 1, 2}, 1},
        {test::Mat({{1e-4, 1.0, 2.0}, {2e-4, 3.0, 4.0}, {5e-5, 5.0, 7.0}}), 1e-3, {1, 1, 2}, 1},
        {test::Mat({{0.05, 0.06, 0.01}, {0.7, 1.0, 0.5}, {0.3, 0.2, 1.0}}), 1e-300, {0, 1, 2}, 0},
    };
    for (auto c : aCases) {
        test::ScopedTolerance guard(NuGetZero, NuSetZero, c.dZero);
        CNuIntArray index;
        int d = 0, s = 0;
        c.A.LUD(&index, &d, &s);
        EXPECT_TRUE(test::Elements(index) == c.pivots && s == c.nSingular) << "singular " << s;
        const double dFactor = c.dZero > 1e-300 ? 1.0 / (NuGetTol() * NuGetTol()) : 0.0;
        const Eigen::Vector3d scaled(2e-4, 1e-4 * dFactor, 5e-5 * dFactor);
        EXPECT_TRUE(dFactor == 0.0 || ToEigen(c.A).col(0) == scaled) << ToEigen(c.A);
    }
}

}  // namespace
}  // namespace numorix
