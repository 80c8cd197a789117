// LU factorisation, determinant and inverse: P A = L U on random data, the pivot rule and the
// vanishing-pivot scaling, determinants and inverses against Eigen, and the refusals.
#include <cmath>
#include <limits>
#include <vector>

#include "dense_support.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::ToEigen;

// Backward error of partial-pivoting LU on well-scaled data of order 1 and size up to 12.
constexpr double kFactorError = 1e-14;
// A A^-1 - I for diagonally dominant matrices (condition number below 10).
constexpr double kInverseError = 1e-13;
// Determinants against Eigen's own LU: same conditioning, different rounding order.
constexpr double kDeterminantRelative = 1e-12;

// Separated factors: P A = L U, L unit lower, U upper, P a permutation. Packed factors append their
// pivots to the record. Determinants (the parity times the pivots above 3 by 3) agree with Eigen,
// and a zero row makes them exactly 0.
TEST(MatrixLu, FactorsReproduceThePermutedMatrixAndDeterminantsAgreeWithEigen) {
    test::Random rng;
    for (int n : {1, 2, 3, 5, 8, 12}) {
        CNuMatrix A = test::RandomMatrix(rng, n, n), P(1, 1), L(1, 1), U(1, 1), packed(A);
        A.LUD2(&P, &L, &U);
        const Eigen::MatrixXd l = ToEigen(L), u = ToEigen(U), p = ToEigen(P);
        EXPECT_LT((p * ToEigen(A) - l * u).cwiseAbs().maxCoeff(), kFactorError) << n;
        EXPECT_TRUE(Eigen::MatrixXd(l.triangularView<Eigen::UnitLower>()) == l &&
                    Eigen::MatrixXd(u.triangularView<Eigen::Upper>()) == u)
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

// Row-scaled figures: among equal ones the lower row wins; a column of NaN compares nowhere and
// keeps its rows; a zero row marks the matrix singular and is taken last; a pivot below the zero
// tolerance marks it singular, stays in place and scales its multipliers by 1 / NuGetTol()^2.
TEST(MatrixLu, PivotsFollowTheRowScaledFiguresAndVanishingPivotsMarkTheMatrixSingular) {
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
    };
    for (auto c : aCases) {
        test::ScopedTolerance guard(NuGetZero, NuSetZero, c.dZero);
        CNuIntArray index;
        int d = 0, s = 0;
        c.A.LUD(&index, &d, &s);
        EXPECT_TRUE(test::Elements(index) == c.pivots && s == c.nSingular) << "singular " << s;
        const double dFactor = c.dZero > 1e-300 ? 1.0 / (NuGetTol() * NuGetTol()) : 0.0;
        EXPECT_TRUE(!dFactor ||
                    (c.A.GetData()[0][0] == 2e-4 && c.A.GetData()[1][0] == 1e-4 * dFactor &&
                     c.A.GetData()[2][0] == 5e-5 * dFactor))
            << ToEigen(c.A);
    }
}

// Singular matrices (a zero 1 by 1, an exactly zero pivot) have the zero matrix as inverse.
TEST(MatrixLu, InversesAreAccurateOrTheZeroMatrixWithFailedStatus) {
    test::Random rng;
    for (int n : {1, 2, 3, 4, 9, 16}) {
        CNuMatrix A = test::WellConditioned(rng, n);
        ENuStatus eStatus = eNuStatusFailed;
        Eigen::MatrixXd X = ToEigen(A.Inverse(&eStatus));
        EXPECT_EQ(eStatus, eNuStatusOk);
        EXPECT_LT((ToEigen(A) * X - Eigen::MatrixXd::Identity(n, n)).cwiseAbs().maxCoeff(),
                  kInverseError)
            << n;
    }
    for (const CNuMatrix& S :
         {CNuMatrix(1, 1), test::Mat({{1, 2, 0, 1}, {2, 4, 1, 1}, {3, 6, 4, 1}, {4, 8, 9, 1}})}) {
        ENuStatus eStatus = eNuStatusOk;
        CNuMatrix X = S.Inverse(&eStatus);
        EXPECT_EQ(eStatus, eNuStatusFailed);
        EXPECT_TRUE(X.GetRowSize() == S.GetRowSize() && X.IsZero(1e-300)) << ToEigen(X);
    }
}

TEST(MatrixLu, RectangularMatricesAreRefusedAndLeftUnchanged) {
    CNuMatrix A(2, 3);
    A.GetData()[0][1] = 5.0;
    ENuStatus eStatus = eNuStatusOk;
    CNuIntArray index;
    int d = 0, s = 0;
    test::ExpectFailures<CNuOperationException>({
        {[&] { A.LUD(&index, &d, &s); }, 116, "calculation", "CNuMatrix::LUD()"},
        {[&] { A.Determinant(); }, 116, "calculation", "CNuMatrix::Determinant()"},
        {[&] { A.Inverse(&eStatus); }, 116, "calculation", "CNuMatrix::Inverse()"},
    });
    EXPECT_TRUE(eStatus == eNuStatusOk && A.GetData()[0][1] == 5.0 && index.GetSize() == 0);
}

}  // namespace
}  // namespace numorix
