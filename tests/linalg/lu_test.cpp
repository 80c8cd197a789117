// LU factorisation, determinant and inverse: P A = L U on random data, the pivot rule and the
// vanishing-pivot scaling, closed-form and factored determinants, inverses, and the failures.
#include <cmath>
#include <limits>

#include "dense_support.h"
#include "nu_test.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/matrix.h"

namespace numorix {
namespace {

// Backward error of partial-pivoting LU on well-scaled data of order 1 and size up to 12.
constexpr double kFactorError = 1e-14;
// A A^-1 - I for diagonally dominant matrices (condition number below 10).
constexpr double kInverseError = 1e-13;
// Determinants against Eigen's own LU: same conditioning, different rounding order.
constexpr double kDeterminantRelative = 1e-12;

// Diagonally dominant, so well conditioned.
CNuMatrix WellConditioned(test::Random& rng, int n) {
    CNuMatrix A = test::RandomMatrix(rng, n, n);
    for (int i = 0; i < n; ++i)
        A.GetData()[i][i] += n + 1.0;
    return A;
}

TEST(Lu, SeparatedFactorsReproducePermutedMatrix) {
    test::Random rng;
    for (int n : {1, 2, 3, 5, 12}) {
        CNuMatrix A = test::RandomMatrix(rng, n, n);
        CNuMatrix P(1, 1), L(1, 1), U(1, 1);
        A.LUD2(&P, &L, &U);
        Eigen::MatrixXd e =
            test::ToEigen(P) * test::ToEigen(A) - test::ToEigen(L) * test::ToEigen(U);
        EXPECT_LT(e.cwiseAbs().maxCoeff(), kFactorError) << "n = " << n;
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(L.GetData()[i][i], 1.0);
            for (int j = i + 1; j < n; ++j)
                EXPECT_EQ(L.GetData()[i][j], 0.0) << "L above the diagonal";
            for (int j = 0; j < i; ++j)
                EXPECT_EQ(U.GetData()[i][j], 0.0) << "U below the diagonal";
        }
        // P is a permutation: one 1 in each row and column.
        Eigen::MatrixXd p = test::ToEigen(P);
        EXPECT_EQ(p.rowwise().sum(), Eigen::VectorXd::Ones(n));
        EXPECT_EQ(p.colwise().sum(), Eigen::RowVectorXd::Ones(n));
    }
}

TEST(Lu, PackedFactorsFollowTheRecordedExchangesAndParity) {
    test::Random rng;
    const int n = 7;
    CNuMatrix A = test::RandomMatrix(rng, n, n);
    CNuMatrix packed(A);
    CNuIntArray index;
    index.Add(42);  // the pivots are appended to what the record holds
    int nParity = 0, nSingular = -1;
    packed.LUD(&index, &nParity, &nSingular);
    ASSERT_EQ(index.GetSize(), n + 1);
    EXPECT_EQ(index[0], 42);
    EXPECT_EQ(nSingular, 0);

    // Apply the exchanges in order to A and count them.
    Eigen::MatrixXd PA = test::ToEigen(A);
    int nExchanges = 0;
    for (int j = 0; j < n; ++j) {
        if (index[j + 1] != j) {
            PA.row(j).swap(PA.row(index[j + 1]));
            ++nExchanges;
        }
    }
    EXPECT_EQ(nParity, nExchanges % 2 == 0 ? 1 : -1);
    Eigen::MatrixXd F = test::ToEigen(packed);
    Eigen::MatrixXd L = F.triangularView<Eigen::StrictlyLower>();
    L += Eigen::MatrixXd::Identity(n, n);
    Eigen::MatrixXd U = F.triangularView<Eigen::Upper>();
    EXPECT_LT((PA - L * U).cwiseAbs().maxCoeff(), kFactorError);
}

TEST(Lu, AmongEqualPivotFiguresTheLastRowWinsAndNaNFiguresKeepTheirRow) {
    // Every figure of column 0 is 1: row 2 becomes the pivot row.
    CNuMatrix A = test::Mat({{1.0, 0.5, 0.25}, {2.0, 1.0, 0.0}, {-4.0, 3.0, 1.0}});
    CNuIntArray index;
    int d = 0, s = 0;
    A.LUD(&index, &d, &s);
    EXPECT_EQ(index[0], 2);
    EXPECT_EQ(d, index[1] == 1 ? -1 : 1) << "one exchange at step 0, maybe one at step 1";
    EXPECT_EQ(A.GetData()[0][0], -4.0);
    // A column of NaN: no figure compares, so the pivot row is the step's own row.
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    CNuMatrix B = test::Mat({{dNaN, 1.0, 2.0}, {dNaN, 3.0, 1.0}, {dNaN, 5.0, 4.0}});
    CNuIntArray nanIndex;
    B.LUD(&nanIndex, &d, &s);
    ASSERT_EQ(nanIndex.GetSize(), 3);
    EXPECT_EQ(nanIndex[0], 0);
}

TEST(Lu, ZeroRowMarksSingularAndTheFactorisationGoesOn) {
    CNuMatrix A = test::Mat({{0.0, 0.0, 0.0}, {1.0, 2.0, 3.0}, {4.0, 5.0, 7.0}});
    CNuIntArray index;
    int d = 0, s = 0;
    A.LUD(&index, &d, &s);
    EXPECT_EQ(s, 1);
    ASSERT_EQ(index.GetSize(), 3);
    // The zero row's figures are all 0.0 and it is taken last, as the final pivot.
    EXPECT_EQ(index[2], 2);
    EXPECT_EQ(A.GetData()[2][2], 0.0);
}

TEST(Lu, VanishingPivotScalesItsMultipliersByTheSquaredTolerance) {
    const double dSavedZero = NuGetZero();
    NuSetZero(1e-3);
    // Column 0 figures: 1e-4 / 2 and 2e-4 / 4 tie, so row 1 is the pivot, below the zero test.
    CNuMatrix A = test::Mat({{1e-4, 1.0, 2.0}, {2e-4, 3.0, 4.0}, {5e-5, 5.0, 7.0}});
    CNuIntArray index;
    int d = 0, s = 0;
    A.LUD(&index, &d, &s);
    NuSetZero(dSavedZero);
    EXPECT_EQ(index[0], 1);
    EXPECT_EQ(s, 1);
    EXPECT_EQ(A.GetData()[0][0], 2e-4) << "the pivot stays in place";
    const double dFactor = 1.0 / (NuGetTol() * NuGetTol());
    EXPECT_EQ(A.GetData()[1][0], 1e-4 * dFactor);
    EXPECT_EQ(A.GetData()[2][0], 5e-5 * dFactor);
    EXPECT_TRUE(test::ToEigen(A).allFinite()) << test::ToEigen(A);
}

// Closed forms up to 3 by 3, above that the parity times the diagonal of the factors, exactly.
TEST(Determinant, ClosedFormsAndFactoredFormAgreeWithEigen) {
    test::Random rng;
    for (int n = 1; n <= 8; ++n) {
        CNuMatrix A = test::RandomMatrix(rng, n, n);
        double dExpected = test::ToEigen(A).determinant();
        double dSeen = A.Determinant();
        EXPECT_NEAR(dSeen, dExpected, kDeterminantRelative * std::fabs(dExpected)) << "n = " << n;
        if (n <= 3) continue;
        CNuMatrix packed(A);
        CNuIntArray index;
        int d = 0, s = 0;
        packed.LUD(&index, &d, &s);
        double dProduct = d;
        for (int i = 0; i < n; ++i)
            dProduct *= packed.GetData()[i][i];
        EXPECT_EQ(dSeen, dProduct) << "n = " << n;
    }
}

TEST(Determinant, SingularityIsExactZeroOnlyAboveThree) {
    // 2 by 2 with proportional rows formed in floating point: the closed form leaves a residue.
    CNuMatrix A = test::Mat({{0.3, 0.2}, {0.3 * 0.1, 0.2 * 0.1}});
    EXPECT_EQ(A.Determinant(), 0.2 * 0.1 * 0.3 - 0.2 * (0.3 * 0.1));
    EXPECT_NE(A.Determinant(), 0.0);

    CNuMatrix Z(1, 1);
    EXPECT_EQ(Z.Determinant(), 0.0);

    // 4 by 4 with a zero row: flagged by the factorisation, exactly 0.0.
    test::Random rng;
    CNuMatrix B = test::RandomMatrix(rng, 4, 4);
    for (int j = 0; j < 4; ++j)
        B.GetData()[2][j] = 0.0;
    EXPECT_EQ(B.Determinant(), 0.0);
}

TEST(Inverse, InvertsWellConditionedMatrices) {
    test::Random rng;
    for (int n : {1, 2, 3, 4, 9, 16}) {
        CNuMatrix A = WellConditioned(rng, n);
        ENuStatus eStatus = eNuStatusFailed;
        CNuMatrix X = A.Inverse(&eStatus);
        EXPECT_EQ(eStatus, eNuStatusOk);
        Eigen::MatrixXd e = test::ToEigen(A) * test::ToEigen(X) - Eigen::MatrixXd::Identity(n, n);
        EXPECT_LT(e.cwiseAbs().maxCoeff(), kInverseError) << "n = " << n;
    }
}

TEST(Inverse, SingularMatricesGiveTheZeroMatrixAndFailedStatus) {
    CNuMatrix A(4, 4);
    for (int i = 0; i < 4; ++i) {
        A.GetData()[i][0] = i + 1.0;
        A.GetData()[i][1] = 2.0 * (i + 1.0);  // twice column 0: an exactly zero pivot
        A.GetData()[i][2] = i * i;
        A.GetData()[i][3] = 1.0;
    }
    for (const CNuMatrix& S : {CNuMatrix(1, 1), A}) {
        ENuStatus eStatus = eNuStatusOk;
        CNuMatrix X = S.Inverse(&eStatus);
        EXPECT_EQ(eStatus, eNuStatusFailed) << "n = " << S.GetRowSize();
        ASSERT_EQ(X.GetRowSize(), S.GetRowSize());
        EXPECT_EQ(test::ToEigen(X).cwiseAbs().maxCoeff(), 0.0) << "n = " << S.GetRowSize();
    }
}

TEST(SquareOnlyOperations, RefuseRectangularMatricesWithTheirOwnLocationAndChangeNothing) {
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
    EXPECT_EQ(eStatus, eNuStatusOk) << "status untouched by the failed check";
    EXPECT_EQ(A.GetData()[0][1], 5.0);
    EXPECT_EQ(index.GetSize(), 0);
}

}  // namespace
}  // namespace numorix
