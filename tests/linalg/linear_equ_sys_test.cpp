// Linear equation systems: exact solving through the LU factors, least squares through the SVD
// (against Eigen), non-negative least squares (by its optimality conditions), near-singular
// systems, the singular modes, the unsupported entry points and the refusals with their strings.
#include <cmath>

#include "dense_support.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/linear_equ_sys.h"

namespace numorix {
namespace {

using test::MaxDifference;
using test::ToEigen;

// Solutions of well-conditioned systems of order 1 against another backward-stable solver.
constexpr double kSolution = 1e-12;
// Optimality of NNLS: the dual of the passive set vanishes to the accuracy of its SVD solves; on
// the active set it may exceed the length tolerance by rounding noise of order-1 data.
constexpr double kDualOnPassive = 1e-10;
constexpr double kDualNoise = 1e-14;

// Each kind of system against Eigen: exact (LU) on a square matrix, least squares (the minimum-norm
// minimiser) on tall, rank-deficient and wide ones. A further right-hand side through the kept
// factors equals a fresh solve to the bit, and so do copies, also after the original is gone.
TEST(LinearEquSys, SolvesEveryKindOfSystemAndReusesItsFactors) {
    test::Random rng;
    CNuMatrix rankFour = test::RandomMatrix(rng, 6, 6);
    for (int i = 0; i < 6; ++i) {
        rankFour.GetData()[i][4] = rankFour.GetData()[i][0] - rankFour.GetData()[i][1];
        rankFour.GetData()[i][5] = 2.0 * rankFour.GetData()[i][2];
    }
    for (const CNuMatrix& A :
         {test::WellConditioned(rng, 8), test::RandomMatrix(rng, 30, 2),
          test::RandomMatrix(rng, 60, 5), rankFour, test::RandomMatrix(rng, 3, 7)}) {
        const int m = A.GetRowSize(), nKind = m == 8 ? 0 : 1;
        SCOPED_TRACE(std::to_string(m) + " x " + std::to_string(A.GetColumnSize()));
        CNuVector b = test::RandomVector(rng, m), c = test::RandomVector(rng, m);
        auto* pSystem = new CNuLinearEquSys(nKind);
        pSystem->Solve(A, b);
        ASSERT_EQ(pSystem->SolutionExists(), eNuTrue);
        EXPECT_LT(MaxDifference(pSystem->GetSolution(),
                                ToEigen(A).completeOrthogonalDecomposition().solve(ToEigen(b))),
                  kSolution);
        CNuLinearEquSys copy(*pSystem), assigned, fresh(nKind);
        assigned = *pSystem;
        const CNuVector xb = pSystem->GetSolution();
        copy.SetRightHandSide(c);
        EXPECT_EQ(MaxDifference(pSystem->GetSolution(), xb), 0.0) << "the original changed";
        delete pSystem;
        assigned.SetRightHandSide(c);
        fresh.Solve(A, c);
        EXPECT_EQ(MaxDifference(assigned.GetSolution(), fresh.GetSolution()), 0.0);
        EXPECT_EQ(MaxDifference(copy.GetSolution(), fresh.GetSolution()), 0.0);
    }
}

// Every refusal of the solver, each from the state that leads to it: no factors kept (none made
// yet, a singular exact system, a non-negative solve, a decomposition that threw), sizes that do
// not match (checked before the shape), and a rectangular exact system.
TEST(LinearEquSys, RefusalsStoreTheirCauseNameAndLocation) {
    CNuMatrix singular = test::Mat({{1, 2, 0}, {1, 2, 0}, {1, 2, 0}}), rectangular(4, 3);
    CNuVector b4(4), b3 = test::Vec({1.0, 0.0, 0.0});
    CNuLinearEquSys exactSingular(0), nonNegative, failed, exact(0), fresh, leastSquares;
    exactSingular.Solve(singular, b3);
    EXPECT_EQ(exactSingular.SolutionExists(), eNuFalse);
    EXPECT_EQ(MaxDifference(exactSingular.GetSolution(), CNuVector(3)), 0.0) << "no solution";
    nonNegative.SetNonnegative();
    nonNegative.Solve(rectangular, b4);
    EXPECT_THROW(failed.Solve(test::Mat({{std::nan(""), 1}, {1, 1}}), CNuVector(2)),
                 CNuOperationException);  // the cause is the SVD's own
    leastSquares.Solve(rectangular, b4);
    const char* pszSolving = "solving a set of equations";
    const char* pszRhs = "CNuLinearEquSys::SetRightHandSide()";
    test::ExpectFailures<CNuOperationException>({
        {[&] { exactSingular.SetRightHandSide(b3); }, 117, pszSolving, pszRhs},
        {[&] { nonNegative.SetRightHandSide(b4); }, 117, pszSolving, pszRhs},
        {[&] { failed.SetRightHandSide(CNuVector(2)); }, 117, pszSolving, pszRhs},
        {[&] { fresh.SetRightHandSide(b4); }, 117, pszSolving, pszRhs},
        {[&] { leastSquares.SetRightHandSide(b3); }, 117, pszSolving, pszRhs},
        {[&] { exact.Solve(rectangular, b3); }, 117, pszSolving, "CNuLinearEquSys::Solve()"},
        {[&] { exact.Solve(rectangular, b4); }, 145, "solving an exact set of equations",
         "CNuLinearEquSys"},
    });
}

// Singular solving: an inconsistent singular system gets a huge but finite answer that satisfies
// the row surviving elimination (2 x0 + 4 x1 = 3) to the rounding of its terms. It acts only in
// exact systems (a least-squares system is left without a solution), and the non-negative mode
// only in least-squares ones (an exact system solves as usual).
TEST(LinearEquSys, SingularSolvingGivesAFiniteAnswerAndModesActOnlyInTheirKindOfSystem) {
    CNuLinearEquSys system(0), leastSquares(1), exact(0);
    system.SetSingularSolvable();
    system.Solve(test::Mat({{1.0, 2.0}, {2.0, 4.0}}), test::Vec({1.0, 3.0}));
    ASSERT_EQ(system.SolutionExists(), eNuTrue);
    CNuVector x = system.GetSolution();
    ASSERT_TRUE(std::isfinite(x[0]) && std::isfinite(x[1])) << ToEigen(x).transpose();
    EXPECT_GT(std::fabs(x[1]), 1.0 / NuGetTol()) << "no large answer";
    EXPECT_LE(std::fabs(2.0 * x[0] + 4.0 * x[1] - 3.0), 16.0 * test::kUlp * std::fabs(x[1]));
    const CNuMatrix A = test::Mat({{2.0, 1.0}, {1.0, 3.0}});
    leastSquares.SetSingularSolvable();
    leastSquares.Solve(A, test::Vec({1.0, -1.0}));
    EXPECT_EQ(leastSquares.SolutionExists(), eNuFalse);
    exact.SetNonnegative();
    exact.Solve(A, test::Vec({1.0, -1.0}));
    EXPECT_LT(MaxDifference(exact.GetSolution(), test::Vec({0.8, -0.6})), kSolution);
}

// Near-singular systems (Hilbert matrices, condition 1e10 to 1e18) are not refused while every
// pivot stays above the zero tolerance: the answer may be far from the true one, but it is
// backward stable, |A x - b| <= kBackward n eps |A| |x| (infinity norms), and so is the inverse.
// A zero tolerance above the smallest pivot (6e-15 for n = 12) gives the singular outcome: no
// solution, and the zero matrix with failed status as inverse. Least squares keep the default.
TEST(LinearEquSys, NearSingularSystemsGiveBackwardStableAnswersOrTheSingularOutcome) {
    // Partial-pivoting LU and the truncated SVD leave residuals of a few n eps |A| |x| at most.
    constexpr double kBackward = 2.0;
    const double dDefault = NuGetZero();
    const struct {
        int n;
        double dZero;
    } aCases[] = {{8, dDefault},  {10, dDefault}, {12, dDefault},
                  {13, dDefault}, {10, 1e-13},    {12, 1e-13}};
    for (const auto& c : aCases) {
        SCOPED_TRACE("Hilbert " + std::to_string(c.n) + ", zero " + std::to_string(c.dZero));
        test::ScopedTolerance guard(NuGetZero, NuSetZero, c.dZero);
        const bool bSolved = c.n < 12 || c.dZero == dDefault;
        Eigen::MatrixXd E(c.n, c.n);
        for (int i = 0; i < c.n; ++i)
            for (int j = 0; j < c.n; ++j)
                E(i, j) = 1.0 / (i + j + 1);
        const CNuVector b = test::FromEigen(Eigen::VectorXd(E.rowwise().sum()));
        const double dBound =
            kBackward * c.n * test::kUlp * E.cwiseAbs().rowwise().sum().maxCoeff();
        for (int nKind = 0; nKind < (c.dZero == dDefault ? 2 : 1); ++nKind) {
            CNuLinearEquSys system(nKind);
            system.Solve(test::FromEigen(E), b);
            ASSERT_EQ(system.SolutionExists(), bSolved || nKind == 1 ? eNuTrue : eNuFalse);
            const Eigen::VectorXd x = ToEigen(system.GetSolution());
            EXPECT_TRUE(!bSolved || (E * x - ToEigen(b)).cwiseAbs().maxCoeff() <=
                                        dBound * x.cwiseAbs().maxCoeff())
                << "kind " << nKind << ", x " << x.transpose();
        }
        ENuStatus eStatus = eNuStatusFailed;
        const Eigen::MatrixXd X = ToEigen(test::FromEigen(E).Inverse(&eStatus));
        const double dNormX = X.cwiseAbs().rowwise().sum().maxCoeff();
        EXPECT_EQ(eStatus, bSolved ? eNuStatusOk : eNuStatusFailed);
        EXPECT_LE(
            (E * X - Eigen::MatrixXd::Identity(c.n, c.n)).cwiseAbs().rowwise().sum().maxCoeff(),
            bSolved ? dBound * dNormX : 1.0)
            << "|X| " << dNormX;
        EXPECT_TRUE(bSolved || dNormX == 0.0) << "a refused inverse is the zero matrix";
    }
}

// x >= 0; w = A^T (b - A x) <= tol where x = 0 and |w| small where x > 0. The last case, with a
// zero length tolerance, makes rounding noise in the dual readmit a column whose subproblem
// solution is not positive, for ever: the iteration stops when it meets a state it has been in.
TEST(LinearEquSys, NonNegativeLeastSquaresMeetsItsOptimalityConditionsAndNeverCycles) {
    test::Random rng;
    int nBoundSeen = 0;
    for (int nCase = 0; nCase < 13; ++nCase) {
        CNuMatrix A = test::RandomMatrix(rng, 8 + nCase, 3 + nCase % 5);
        CNuVector b = test::RandomVector(rng, A.GetRowSize());
        double dTol = NuGetLengthTol();
        if (nCase == 12) {
            A = test::Mat({{0x1.af6ff556d2b28p-2, 0x1.0d3162bc747ecp-2, -0x1.2e4623b84066p-5,
                            0x1.af6ff556d2b3p-2},
                           {-0x1.70e9f26e6aa44p-3, 0x1.0227031096768p-1, -0x1.9447818c1d423p-1,
                            -0x1.70e9f26e6aa4bp-3},
                           {-0x1.bedf58a0e391p-1, -0x1.42062ffa63ff6p-1, 0x1.5868abd40b3ap-1,
                            -0x1.bedf58a0e3919p-1}});
            b = test::Vec({0x1.af6ff556d2edbp-3, -0x1.70e9f26e69c13p-4, -0x1.bedf58a0e3d7dp-2});
            dTol = 0.0;
        }
        test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, dTol);
        CNuLinearEquSys system;
        system.SetNonnegative();
        system.Solve(A, b);
        ASSERT_EQ(system.SolutionExists(), eNuTrue);
        const Eigen::VectorXd x = ToEigen(system.GetSolution());
        const Eigen::VectorXd w = ToEigen(A).transpose() * (ToEigen(b) - ToEigen(A) * x);
        ASSERT_EQ(x.size(), A.GetColumnSize());
        for (int j = 0; j < x.size(); ++j) {
            nBoundSeen += x(j) == 0.0;
            EXPECT_TRUE(x(j) >= 0.0 &&
                        (x(j) > 0.0 ? std::fabs(w(j)) < kDualOnPassive : w(j) <= dTol + kDualNoise))
                << "case " << nCase << ", j " << j << ": x " << x(j) << ", dual " << w(j);
        }
    }
    EXPECT_GT(nBoundSeen, 0) << "the cases should exercise the bound";
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
    system.Solve(A, b);  // the request stays: no solution
    EXPECT_EQ(system.SolutionExists(), eNuFalse);
    // A least-distance request fails every least-squares solve; an exact solve ignores it.
    EXPECT_NU_THROW(system.SetLeastDistance(), CNuOperationException, 145);
    EXPECT_NU_THROW(system.Solve(A, b), CNuOperationException, 145);
    exact.Solve(A, b);
    EXPECT_EQ(exact.SolutionExists(), eNuTrue);
}

}  // namespace
}  // namespace numorix
