// Linear equation systems: exact solving through the LU factors, least squares through the SVD
// (against Eigen), non-negative least squares (by its optimality conditions), near-singular
// systems, the singular modes, the unsupported entry points and the refusals with their strings.
#include <cmath>
#include <limits>

#include "dense_support.h"
#include "nu_test.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/linear_equ_sys.h"

namespace numorix {
namespace {

using test::MaxDifference;
using test::ToEigen;

// Solutions of well-conditioned systems of order 1 against another backward-stable solver.
constexpr double kSolution = 1e-12;
// Optimality of NNLS: the dual of the passive set vanishes to the accuracy of its SVD solves.
constexpr double kDualOnPassive = 1e-10;

void ExpectZeros(const CNuVector& x, int n) {
    ASSERT_EQ(x.GetSize(), n);
    EXPECT_EQ(MaxDifference(x, CNuVector(n)), 0.0) << "solution " << ToEigen(x).transpose();
}

TEST(LinearEquSys, ExactModeSolvesAndReusesItsFactors) {
    test::Random rng;
    const int n = 8;
    CNuMatrix A = test::WellConditioned(rng, n);
    CNuLinearEquSys system(0);
    for (int k = 0; k < 3; ++k) {
        CNuVector b = test::RandomVector(rng, n);
        k == 0 ? system.Solve(A, b) : system.SetRightHandSide(b);
        ASSERT_EQ(system.SolutionExists(), eNuTrue);
        EXPECT_LT(MaxDifference(system.GetSolution(), ToEigen(A).partialPivLu().solve(ToEigen(b))),
                  kSolution)
            << "right side " << k;
    }
    // Changing A after the solve changes nothing.
    CNuVector b = test::RandomVector(rng, n);
    system.SetRightHandSide(b);
    CNuVector before = system.GetSolution();
    A.GetData()[0][0] += 100.0;
    system.SetRightHandSide(b);
    EXPECT_EQ(MaxDifference(system.GetSolution(), before), 0.0);
}

// Every refusal of the solver, each from the state that leads to it: no factors kept (none made
// yet, a singular exact system, a non-negative solve, a decomposition that threw), sizes that do
// not match, and a rectangular exact system.
TEST(LinearEquSys, RefusalsStoreTheirCauseNameAndLocation) {
    CNuMatrix singular(5, 5);
    for (int i = 0; i < 5; ++i) {
        singular.GetData()[i][0] = 1.0;
        singular.GetData()[i][1] = 2.0;  // rank 1 in the first two columns, zero elsewhere
    }
    CNuVector b5(5), b4(4), b3(3);
    b5[0] = 1.0;
    CNuLinearEquSys exactSingular(0);
    exactSingular.Solve(singular, b5);
    EXPECT_EQ(exactSingular.SolutionExists(), eNuFalse);
    ExpectZeros(exactSingular.GetSolution(), 3);  // the default vector stands for no solution

    test::Random rng;
    CNuMatrix A = test::RandomMatrix(rng, 6, 4);
    CNuLinearEquSys nonNegative;
    nonNegative.SetNonnegative();
    nonNegative.Solve(A, CNuVector(6));
    ExpectZeros(nonNegative.GetSolution(), 4);  // a zero right side stops at once at zero

    CNuMatrix withNaN = test::Mat({{std::nan(""), 0.5, 0.5}, {0.5, 1.0, 0.5}, {0.5, 0.5, 1.0}});
    CNuLinearEquSys failed;  // the cause of the failed decomposition is the SVD's own
    EXPECT_THROW(failed.Solve(withNaN, b3), CNuOperationException);

    CNuMatrix rectangular(4, 3);
    CNuLinearEquSys exact(0), fresh, leastSquares;
    leastSquares.Solve(rectangular, b4);
    const char* pszSolving = "solving a set of equations";
    const char* pszRhs = "CNuLinearEquSys::SetRightHandSide()";
    test::ExpectFailures<CNuOperationException>({
        {[&] { exactSingular.SetRightHandSide(b5); }, 117, pszSolving, pszRhs},
        {[&] { nonNegative.SetRightHandSide(CNuVector(6)); }, 117, pszSolving, pszRhs},
        {[&] { failed.SetRightHandSide(b3); }, 117, pszSolving, pszRhs},
        {[&] { fresh.SetRightHandSide(b4); }, 117, pszSolving, pszRhs},
        {[&] { leastSquares.SetRightHandSide(b3); }, 117, pszSolving, pszRhs},
        {[&] { nonNegative.Solve(A, CNuVector(5)); }, 117, pszSolving, "CNuLinearEquSys::Solve()"},
        {[&] { exact.Solve(rectangular, b3); }, 117, pszSolving, "CNuLinearEquSys::Solve()"},
        {[&] { exact.Solve(rectangular, b4); }, 145, "solving an exact set of equations",
         "CNuLinearEquSys"},
    });
}

// An inconsistent singular system: the answer is huge but finite and satisfies the row that
// survives elimination (2 x0 + 4 x1 = 3) to the rounding of its terms.
TEST(LinearEquSys, SingularSolvableModeGivesALargeFiniteSolutionOfTheIndependentRow) {
    CNuLinearEquSys system(0);
    system.SetSingularSolvable();
    system.Solve(test::Mat({{1.0, 2.0}, {2.0, 4.0}}), test::Vec({1.0, 3.0}));
    ASSERT_EQ(system.SolutionExists(), eNuTrue);
    CNuVector x = system.GetSolution();
    ASSERT_TRUE(std::isfinite(x[0]) && std::isfinite(x[1])) << ToEigen(x).transpose();
    EXPECT_GT(std::fabs(x[1]), 1.0 / NuGetTol()) << "no large answer";
    EXPECT_LE(std::fabs(2.0 * x[0] + 4.0 * x[1] - 3.0), 16.0 * test::kUlp * std::fabs(x[1]));
}

// Near-singular systems (Hilbert matrices, condition 1e10 to 1e16) are not refused while every
// pivot stays above the zero tolerance: the answer may be far from the true one, but it is
// backward stable, |A x - b| <= kBackward * n * eps * |A| |x| (infinity norms), and so is the
// inverse. A zero tolerance above the smallest pivot (6e-15 for n = 12) gives the singular outcome.
TEST(LinearEquSys, NearSingularSystemsGiveBackwardStableAnswersOrTheSingularOutcome) {
    // Partial-pivoting LU and the truncated SVD leave residuals of a few n eps |A| |x| at most.
    constexpr double kBackward = 2.0;
    const double kDefaultZero = NuGetZero();
    const struct {
        int n;
        double dZero;
        bool bSolved;
    } aCases[] = {{8, kDefaultZero, true},
                  {10, kDefaultZero, true},
                  {12, kDefaultZero, true},
                  {13, kDefaultZero, true},
                  {10, 1e-13, true},
                  {12, 1e-13, false}};
    for (const auto& c : aCases) {
        SCOPED_TRACE("Hilbert " + std::to_string(c.n) + ", zero tolerance " +
                     std::to_string(c.dZero));
        test::ScopedTolerance guard(NuGetZero, NuSetZero, c.dZero);
        Eigen::MatrixXd E(c.n, c.n);
        for (int i = 0; i < c.n; ++i)
            for (int j = 0; j < c.n; ++j)
                E(i, j) = 1.0 / (i + j + 1);
        const CNuMatrix A = test::FromEigen(E);
        const CNuVector b = test::FromEigen(Eigen::VectorXd(E.rowwise().sum()));
        const double dBound = kBackward * c.n * test::kUlp * E.cwiseAbs().rowwise().sum().maxCoeff();
        ENuStatus eStatus = eNuStatusFailed;
        const Eigen::MatrixXd X = ToEigen(A.Inverse(&eStatus));
        // The raised zero tolerance is a setting of the exact solve; least squares keep the default.
        for (int nLeastSquares : {0, 1}) {
            if (nLeastSquares == 1 && c.dZero > kDefaultZero) continue;
            CNuLinearEquSys system(nLeastSquares);
            system.Solve(A, b);
            if (nLeastSquares == 0 && !c.bSolved) {
                EXPECT_EQ(system.SolutionExists(), eNuFalse);
                continue;
            }
            ASSERT_EQ(system.SolutionExists(), eNuTrue) << "mode " << nLeastSquares;
            const Eigen::VectorXd x = ToEigen(system.GetSolution());
            EXPECT_LE((E * x - ToEigen(b)).cwiseAbs().maxCoeff(), dBound * x.cwiseAbs().maxCoeff())
                << "mode " << nLeastSquares << ", x " << x.transpose();
        }
        EXPECT_EQ(eStatus, c.bSolved ? eNuStatusOk : eNuStatusFailed);
        const double dNormX = X.cwiseAbs().rowwise().sum().maxCoeff();
        EXPECT_LE((E * X - Eigen::MatrixXd::Identity(c.n, c.n)).cwiseAbs().rowwise().sum().maxCoeff(),
                  c.bSolved ? dBound * dNormX : 1.0)
            << "inverse, |X| " << dNormX;
        EXPECT_TRUE(c.bSolved || dNormX == 0.0) << "a refused inverse is the zero matrix";
    }
}

// Overdetermined, rank-deficient and underdetermined systems: the minimum-norm minimiser, as a
// complete orthogonal decomposition gives it; a further right-hand side through the kept factors
// equals a fresh solve to the bit.
TEST(LinearEquSys, LeastSquaresGivesTheMinimumNormMinimiserOfEveryShape) {
    test::Random rng;
    CNuMatrix rankFour = test::RandomMatrix(rng, 6, 6);
    for (int i = 0; i < 6; ++i) {
        rankFour.GetData()[i][4] = rankFour.GetData()[i][0] - rankFour.GetData()[i][1];
        rankFour.GetData()[i][5] = 2.0 * rankFour.GetData()[i][2];
    }
    for (const CNuMatrix& A : {test::RandomMatrix(rng, 30, 2), test::RandomMatrix(rng, 60, 5),
                               rankFour, test::RandomMatrix(rng, 3, 7)}) {
        SCOPED_TRACE(std::to_string(A.GetRowSize()) + " x " + std::to_string(A.GetColumnSize()));
        CNuVector b = test::RandomVector(rng, A.GetRowSize());
        CNuLinearEquSys system;
        system.Solve(A, b);
        ASSERT_EQ(system.SolutionExists(), eNuTrue);
        Eigen::VectorXd expected = ToEigen(A).completeOrthogonalDecomposition().solve(ToEigen(b));
        EXPECT_LT(MaxDifference(system.GetSolution(), expected), kSolution);
        CNuVector c = test::RandomVector(rng, A.GetRowSize());
        system.SetRightHandSide(c);
        CNuLinearEquSys fresh;
        fresh.Solve(A, c);
        EXPECT_EQ(MaxDifference(system.GetSolution(), fresh.GetSolution()), 0.0);
    }
}

// x >= 0; w = A^T (b - A x) <= tol where x = 0 and |w| small where x > 0.
void ExpectKkt(const CNuMatrix& A, const CNuVector& b, const CNuVector& x) {
    Eigen::MatrixXd E = ToEigen(A);
    Eigen::VectorXd X = ToEigen(x);
    Eigen::VectorXd w = E.transpose() * (ToEigen(b) - E * X);
    for (int j = 0; j < x.GetSize(); ++j) {
        EXPECT_GE(X(j), 0.0) << "x[" << j << "]";
        if (X(j) > 0.0) {
            EXPECT_LT(std::fabs(w(j)), kDualOnPassive) << "dual on passive " << j;
        } else {
            EXPECT_LE(w(j), NuGetLengthTol()) << "dual on active " << j;
        }
    }
}

TEST(LinearEquSys, NonNegativeLeastSquaresMeetsItsOptimalityConditions) {
    test::Random rng;
    int nBoundSeen = 0;
    for (int nCase = 0; nCase < 12; ++nCase) {
        const int m = 8 + nCase, n = 3 + nCase % 5;
        CNuMatrix A = test::RandomMatrix(rng, m, n);
        CNuVector b = test::RandomVector(rng, m);
        CNuLinearEquSys system;
        system.SetNonnegative();
        system.Solve(A, b);
        ASSERT_EQ(system.SolutionExists(), eNuTrue);
        CNuVector x = system.GetSolution();
        ASSERT_EQ(x.GetSize(), n);
        ExpectKkt(A, b, x);
        for (int j = 0; j < n; ++j)
            nBoundSeen += x[j] == 0.0;
    }
    EXPECT_GT(nBoundSeen, 0) << "the cases should exercise the bound";
    // A positive unconstrained minimiser is the answer itself.
    CNuMatrix A = test::RandomMatrix(rng, 20, 4);
    CNuVector b = A * test::Vec({0.5, 1.5, 2.0, 0.25}) + test::RandomVector(rng, 20, -1e-3, 1e-3);
    CNuLinearEquSys nnls, plain;
    nnls.SetNonnegative();
    nnls.Solve(A, b);
    plain.Solve(A, b);
    EXPECT_LT(MaxDifference(nnls.GetSolution(), plain.GetSolution()), kSolution);
}

// With a zero length tolerance, rounding noise in the dual can admit a column whose subproblem
// solution is not positive; it is dropped at once and readmitted, for ever. The iteration stops
// when it meets a state it has been in before.
TEST(LinearEquSys, NonNegativeLeastSquaresStopsWhereItsIterationWouldCycle) {
    CNuMatrix A = test::Mat(
        {{0x1.af6ff556d2b28p-2, 0x1.0d3162bc747ecp-2, -0x1.2e4623b84066p-5, 0x1.af6ff556d2b3p-2},
         {-0x1.70e9f26e6aa44p-3, 0x1.0227031096768p-1, -0x1.9447818c1d423p-1,
          -0x1.70e9f26e6aa4bp-3},
         {-0x1.bedf58a0e391p-1, -0x1.42062ffa63ff6p-1, 0x1.5868abd40b3ap-1,
          -0x1.bedf58a0e3919p-1}});
    CNuVector b = test::Vec({0x1.af6ff556d2edbp-3, -0x1.70e9f26e69c13p-4, -0x1.bedf58a0e3d7dp-2});
    CNuLinearEquSys system;
    system.SetNonnegative();
    {
        test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, 0.0);
        system.Solve(A, b);
    }
    ASSERT_EQ(system.SolutionExists(), eNuTrue);
    CNuVector x = system.GetSolution();
    EXPECT_GE(ToEigen(x).minCoeff(), 0.0) << ToEigen(x).transpose();
    // b is half of column 0 plus a trace of column 1: the fit is all but exact.
    EXPECT_LT((ToEigen(b) - ToEigen(A) * ToEigen(x)).norm(), 1e-12) << "residual";
}

TEST(LinearEquSys, ModesActOnlyInTheirKindOfSystem) {
    test::Random rng;
    CNuMatrix A = test::WellConditioned(rng, 4);
    CNuVector b = test::RandomVector(rng, 4);
    // Non-negative in an exact system: an ordinary exact solve, negative entries included.
    CNuLinearEquSys exact(0);
    exact.SetNonnegative();
    exact.Solve(A, b);
    EXPECT_LT(MaxDifference(exact.GetSolution(), ToEigen(A).partialPivLu().solve(ToEigen(b))),
              kSolution);
    // Singular solving in a least-squares system: no solution, no failure.
    CNuLinearEquSys leastSquares(1);
    leastSquares.SetSingularSolvable();
    leastSquares.Solve(A, b);
    EXPECT_EQ(leastSquares.SolutionExists(), eNuFalse);
}

TEST(LinearEquSys, UnsupportedProblemsRecordTheRequestAndFail) {
    CNuMatrix A = CNuMatrix::Identity(3);
    CNuVector b(3);
    const char* pszConstraints = "solving a set of equations with equality/inequality constraints";
    const char* pszLeastDistance = "least distance programming";
    CNuLinearEquSys system, exact(0);
    test::ExpectFailures<CNuOperationException>({
        {[&] { system.SetEquality(A, b); }, 145, pszConstraints, "CNuLinearEquSys"},
        {[&] { system.SetInequality(A, b); }, 145, pszConstraints, "CNuLinearEquSys"},
        {[&] { system.Solve(); }, 145, pszLeastDistance, "CNuLinearEquSys"},
        {[&] { exact.SetLeastDistance(); }, 145, pszLeastDistance, "CNuLinearEquSys"},
    });
    // The request stays: a least-squares solve now returns without a solution.
    system.Solve(A, b);
    EXPECT_EQ(system.SolutionExists(), eNuFalse);
    // A least-distance request fails every least-squares solve; an exact solve ignores it.
    EXPECT_NU_THROW(system.SetLeastDistance(), CNuOperationException, 145);
    EXPECT_NU_THROW(system.Solve(A, b), CNuOperationException, 145);
    exact.Solve(A, b);
    EXPECT_EQ(exact.SolutionExists(), eNuTrue);
}

TEST(LinearEquSys, CopiesAreDeepAndOutliveTheOriginal) {
    test::Random rng;
    CNuMatrix A = test::WellConditioned(rng, 5);
    CNuVector b = test::RandomVector(rng, 5), c = test::RandomVector(rng, 5);
    for (int nSwitch : {0, 1}) {
        auto* pOriginal = new CNuLinearEquSys(nSwitch);
        pOriginal->Solve(A, b);
        CNuLinearEquSys copy(*pOriginal), assigned;
        assigned = *pOriginal;
        CNuVector xb = pOriginal->GetSolution();
        copy.SetRightHandSide(c);
        EXPECT_EQ(MaxDifference(pOriginal->GetSolution(), xb), 0.0) << "the original changed";
        delete pOriginal;
        assigned.SetRightHandSide(c);
        EXPECT_EQ(MaxDifference(assigned.GetSolution(), copy.GetSolution()), 0.0);
        assigned = assigned;  // self-assignment keeps the state
        EXPECT_EQ(assigned.SolutionExists(), eNuTrue);
    }
}

}  // namespace
}  // namespace numorix
