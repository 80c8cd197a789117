// LU factorisation, determinant and inverse: P A = L U on random data, the pivot rule and the
// vanishing-pivot scaling, determinants and inverses against Eigen, and the refusals.
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

TEST(MatrixLu, SeparatedFactorsAreTriangularAndReproduceThePermutedMatrix) {
    test::Random rng;
    for (int n : {1, 2, 3, 5, 12}) {
        CNuMatrix A = test::RandomMatrix(rng, n, n);
        CNuMatrix P(1, 1), L(1, 1), U(1, 1);
        A.LUD2(&P, &L, &U);
        const Eigen::MatrixXd l = test::ToEigen(L), u = test::ToEigen(U), p = test::ToEigen(P);
        EXPECT_LT((p * test::ToEigen(A) - l * u).cwiseAbs().maxCoeff(), kFactorError) << n;
        EXPECT_EQ(test::MaxDifference(L, Eigen::MatrixXd(l.triangularView<Eigen::UnitLower>())),
                  0.0);
        EXPECT_EQ(test::MaxDifference(U, Eigen::MatrixXd(u.triangularView<Eigen::Upper>())), 0.0);
        // P is a permutation: one 1 in each row and column.
        EXPECT_EQ(p.rowwise().sum(), Eigen::VectorXd::Ones(n));
        EXPECT_EQ(p.colwise().sum(), Eigen::RowVectorXd::Ones(n));
    }
}

TEST(MatrixLu, PackedFactorsFollowTheRecordedExchangesAndParity) {
    test::Random rng;
    const int n = 7;
    CNuMatrix A = test::RandomMatrix(rng, n, n), packed(A);
    CNuIntArray index = test::Ints({42});  // the pivots are appended to what the record holds
    int nParity = 0, nSingular = -1;
    packed.LUD(&index, &nParity, &nSingular);
    ASSERT_EQ(index.GetSize(), n + 1);
    EXPECT_EQ(index[0], 42);
    EXPECT_EQ(nSingular, 0);
    Eigen::MatrixXd PA = test::ToEigen(A);
    int nExchanges = 0;
    for (int j = 0; j < n; ++j) {
        if (index[j + 1] != j) {
            PA.row(j).swap(PA.row(index[j + 1]));
            ++nExchanges;
        }
    }
    EXPECT_EQ(nParity, nExchanges % 2 == 0 ? 1 : -1);
    const Eigen::MatrixXd F = test::ToEigen(packed);
    Eigen::MatrixXd L = F.triangularView<Eigen::UnitLower>();
    EXPECT_LT((PA - L * F.triangularView<Eigen::Upper>()).cwiseAbs().maxCoeff(), kFactorError);
}

TEST(MatrixLu, TiesInThePivotChoiceGoToTheLowerRowAndAColumnOfNaNKeepsItsRow) {
    // Every row-scaled figure of column 0 is 1: row 2 becomes the pivot row.
    CNuMatrix A = test::Mat({{1.0, 0.5, 0.25}, {2.0, 1.0, 0.0}, {-4.0, 3.0, 1.0}});
    CNuIntArray index;
    int d = 0, s = 0;
    A.LUD(&index, &d, &s);
    EXPECT_EQ(index[0], 2);
    EXPECT_EQ(A.GetData()[0][0], -4.0);
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    CNuMatrix B = test::Mat({{dNaN, 1.0, 2.0}, {dNaN, 3.0, 1.0}, {dNaN, 5.0, 4.0}});
    CNuIntArray nanIndex;
    B.LUD(&nanIndex, &d, &s);
    ASSERT_EQ(nanIndex.GetSize(), 3);
    EXPECT_EQ(nanIndex[0], 0);
}

TEST(MatrixLu, AZeroRowMarksTheMatrixSingularAndIsTakenAsTheLastPivot) {
    CNuMatrix A = test::Mat({{0.0, 0.0, 0.0}, {1.0, 2.0, 3.0}, {4.0, 5.0, 7.0}});
    CNuIntArray index;
    int d = 0, s = 0;
    A.LUD(&index, &d, &s);
    EXPECT_EQ(s, 1);
    EXPECT_EQ(test::Elements(index), std::vector<int>({2, 1, 2}));
    EXPECT_EQ(A.GetData()[2][2], 0.0);
}

TEST(MatrixLu, AVanishingPivotStaysAndScalesItsMultipliersByTheSquaredTolerance) {
    test::ScopedTolerance guard(NuGetZero, NuSetZero, 1e-3);
    // Column 0 figures: 1e-4 / 2 and 2e-4 / 4 tie, so row 1 is the pivot, below the zero test.
    CNuMatrix A = test::Mat({{1e-4, 1.0, 2.0}, {2e-4, 3.0, 4.0}, {5e-5, 5.0, 7.0}});
    CNuIntArray index;
    int d = 0, s = 0;
    A.LUD(&index, &d, &s);
    EXPECT_EQ(index[0], 1);
    EXPECT_EQ(s, 1);
    EXPECT_EQ(A.GetData()[0][0], 2e-4) << "the pivot stays in place";
    const double dFactor = 1.0 / (NuGetTol() * NuGetTol());
    EXPECT_EQ(A.GetData()[1][0], 1e-4 * dFactor);
    EXPECT_EQ(A.GetData()[2][0], 5e-5 * dFactor);
}

// Closed forms up to 3 by 3, the factors above: every size against Eigen, singular ones exactly 0.
TEST(MatrixLu, DeterminantsAgreeWithEigenAndSingularOnesAreZero) {
    test::Random rng;
    for (int n = 1; n <= 8; ++n) {
        CNuMatrix A = test::RandomMatrix(rng, n, n);
        double dExpected = test::ToEigen(A).determinant();
        EXPECT_NEAR(A.Determinant(), dExpected, kDeterminantRelative * std::fabs(dExpected)) << n;
        A.SetRowVector(n / 2, CNuVector(n));
        EXPECT_EQ(A.Determinant(), 0.0) << "zero row, n = " << n;
    }
}

TEST(MatrixLu, InversesOfWellConditionedMatricesAreAccurate) {
    test::Random rng;
    for (int n : {1, 2, 3, 4, 9, 16}) {
        CNuMatrix A = test::WellConditioned(rng, n);
        ENuStatus eStatus = eNuStatusFailed;
        CNuMatrix X = A.Inverse(&eStatus);
        EXPECT_EQ(eStatus, eNuStatusOk);
        Eigen::MatrixXd e = test::ToEigen(A) * test::ToEigen(X) - Eigen::MatrixXd::Identity(n, n);
        EXPECT_LT(e.cwiseAbs().maxCoeff(), kInverseError) << "n = " << n;
    }
}

TEST(MatrixLu, SingularMatricesHaveTheZeroMatrixAsInverseAndFailedStatus) {
    CNuMatrix A = test::Mat({{1, 2, 0, 1}, {2, 4, 1, 1}, {3, 6, 4, 1}, {4, 8, 9, 1}});
    for (const CNuMatrix& S : {CNuMatrix(1, 1), A}) {
        ENuStatus eStatus = eNuStatusOk;
        CNuMatrix X = S.Inverse(&eStatus);
        EXPECT_EQ(eStatus, eNuStatusFailed) << "n = " << S.GetRowSize();
        EXPECT_EQ(test::MaxDifference(X, CNuMatrix(S.GetRowSize(), S.GetRowSize())), 0.0);
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
    EXPECT_EQ(eStatus, eNuStatusOk) << "status untouched by the failed check";
    EXPECT_EQ(A.GetData()[0][1], 5.0);
    EXPECT_EQ(index.GetSize(), 0);
}

}  // namespace
}  // namespace numorix
