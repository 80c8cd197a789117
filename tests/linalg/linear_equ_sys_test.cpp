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

// The infinity norm: the largest sum of magnitudes along a row.
double InfinityNorm(const Eigen::MatrixXd& M) { return M.cwiseAbs().rowwise().sum().maxCoeff(); }

// Exact (LU) on a square matrix, least squares (the minimum-norm minimiser) on tall,
// rank-deficient (column 2 = column 0 + column 1) and wide ones, against Eigen. A further
// right-hand side through the kept factors equals a fresh solve to the bit, and so do copies, also
// after the original is gone.
TEST(LinearEquSys, SolvesEveryKindOfSystemAndReusesItsFactors) {
    test::Random rng;
    const CNuMatrix rankTwo = test::Mat({{1, 2, 3}, {4, 5, 9}, {7, 8, 15}, {2, -1, 1}});
    for (const CNuMatrix& A : {test::WellConditioned(rng, 8), test::RandomMatrix(rng, 60, 5),
                               rankTwo, test::RandomMatrix(rng, 3, 7)}) {
        const int m = A.GetRowSize(), nKind = m == 8 ? 0 : 1;
        CNuVector b = test::RandomVector(rng, m), c = test::RandomVector(rng, m);
        auto* pSystem = new CNuLinearEquSys(nKind);
        pSystem->Solve(A, b);
        ASSERT_EQ(pSystem->SolutionExists(), eNuTrue);
        const Eigen::VectorXd x = ToEigen(A).completeOrthogonalDecomposition().solve(ToEigen(b));
        EXPECT_LT(MaxDifference(pSystem->GetSolution(), x), kSolution) << "rows " << m;
        CNuLinearEquSys copy(*pSystem), assigned, fresh(nKind);
        const CNuVector xb = pSystem->GetSolution();
        assigned = *pSystem;
        copy.SetRightHandSide(c);
        EXPECT_EQ(MaxDifference(pSystem->GetSolution(), xb), 0.0) << "the original changed";
        delete pSystem;
        assigned.SetRightHandSide(c);
        fresh.Solve(A, c);
        EXPECT_TRUE(MaxDifference(assigned.GetSolution(), fresh.GetSolution()) == 0.0 &&
                    MaxDifference(copy.GetSolution(), fresh.GetSolution()) == 0.0);
    }
}

// Each refusal from the state that leads to it: no factors kept (a singular exact system, a
// non-negative solve, a decomposition that threw), sizes that do not match (checked
// before the shape), a rectangular exact system, and the unsupported problems, whose request
// stays: least squares then end without a solution, or fail for least distance.
TEST(LinearEquSys, RefusalsStoreTheirCauseNameAndLocation) {
    const CNuMatrix singular(3, 3), rectangular(4, 3), I = CNuMatrix::Identity(3);
    CNuVector b4(4), b3 = test::Vec({1.0, 0.0, 0.0});
    CNuLinearEquSys exactSingular(0), nonNegative, failed, exact(0), tall, constrained, distant;
    exactSingular.Solve(singular, b3);
    EXPECT_EQ(MaxDifference(exactSingular.GetSolution(), CNuVector(3)), 0.0) << "no solution";
    nonNegative.SetNonnegative();
    nonNegative.Solve(rectangular, b4);
    // The decomposition's own refusal is checked with the SVD.
    EXPECT_ANY_THROW(failed.Solve(test::Mat({{std::nan(""), 1}, {1, 1}}), CNuVector(2)));
    tall.Solve(rectangular, b4);
    const char* pszSolving = "solving a set of equations";
    const char* pszRhs = "CNuLinearEquSys::SetRightHandSide()";
    const char* pszConstraints = "solving a set of equations with equality/inequality constraints";
    test::ExpectFailures<CNuOperationException>({
        {[&] { exactSingular.SetRightHandSide(b3); }, 117, pszSolving, pszRhs},
        {[&] { nonNegative.SetRightHandSide(b4); }, 117, pszSolving, pszRhs},
        {[&] { failed.SetRightHandSide(CNuVector(2)); }, 117, pszSolving, pszRhs},
        {[&] { tall.SetRightHandSide(b3); }, 117, pszSolving, pszRhs},
        {[&] { exact.Solve(rectangular, b3); }, 117, pszSolving, "CNuLinearEquSys::Solve()"},
        {[&] { exact.Solve(rectangular, b4); }, 145, "solving an exact set of equations",
         "CNuLinearEquSys"},
        {[&] { constrained.SetEquality(I, b3); }, 145, pszConstraints, "CNuLinearEquSys"},
        {[&] { constrained.SetInequality(I, b3); }, 145, pszConstraints, "CNuLinearEquSys"},
        {[&] { constrained.Solve(); }, 145, "least distance programming", "CNuLinearEquSys"},
        {[&] { distant.SetLeastDistance(); }, 145, "least distance programming", "CNuLinearEquSys"},
        {[&] { distant.Solve(I, b3); }, 145, "least distance programming", "CNuLinearEquSys"},
        {[&] { exact.SetLeastDistance(); }, 145, "least distance programming", "CNuLinearEquSys"},
    });
    constrained.Solve(I, b3);
    exact.Solve(I, b3);  // an exact solve ignores the least-distance request
    EXPECT_TRUE(exactSingular.SolutionExists() == eNuFalse &&
                constrained.SolutionExists() == eNuFalse && exact.SolutionExists() == eNuTrue);
}

// An inconsistent singular system gets a huge but finite answer that satisfies the row surviving
// elimination (2 x0 + 4 x1 = 3) to the rounding of its terms. Singular solving acts only in exact
// systems (least squares end without a solution), non-negativity only in least squares.
TEST(LinearEquSys, SingularSolvingGivesAFiniteAnswerAndModesActOnlyInTheirKindOfSystem) {
    CNuLinearEquSys system(0), leastSquares(1), exact(0);
    system.SetSingularSolvable();
    system.Solve(test::Mat({{1.0, 2.0}, {2.0, 4.0}}), test::Vec({1.0, 3.0}));
    CNuVector x = system.GetSolution();
    ASSERT_TRUE(std::isfinite(x[0]) && std::isfinite(x[1])) << ToEigen(x).transpose();
    EXPECT_GT(std::fabs(x[1]), 1.0 / NuGetTol()) << "no large answer";
    EXPECT_LE(std::fabs(2.0 * x[0] + 4.0 * x[1] - 3.0), 16.0 * test::kUlp * std::fabs(x[1]));
    leastSquares.SetSingularSolvable();
    exact.SetNonnegative();
    leastSquares.Solve(CNuMatrix::Identity(2), test::Vec({1.0, -1.0}));
    exact.Solve(test::Mat({{2.0, 1.0}, {1.0, 3.0}}), test::Vec({1.0, -1.0}));
    EXPECT_EQ(leastSquares.SolutionExists(), eNuFalse);
    EXPECT_LT(MaxDifference(exact.GetSolution(), test::Vec({0.8, -0.6})), kSolution);
}

// Hilbert matrices (condition numbers up to beyond 1e16) are not refused while every pivot
// stays above the zero tolerance: the answer may be far from the true one, but it is backward
// stable, |A x - b| <= kBackward n eps |A| |x| in infinity norms, and so is the inverse. A zero
// tolerance above the smallest pivot (6e-15 for n = 12, 3e-16 for n = 13) gives the singular
// outcome: no solution, and the zero matrix with failed status as inverse. Least squares run
// with the default tolerance only.
TEST(LinearEquSys, NearSingularSystemsGiveBackwardStableAnswersOrTheSingularOutcome) {
    // Partial-pivoting LU and the truncated SVD leave residuals of a few n eps |A| |x| at most.
    constexpr double kBackward = 2.0;
    const double dDefault = NuGetZero();
    for (double dZero : {dDefault, 1e-13})
        for (int n : {1, 3, 8, 10, 12, 13}) {
            SCOPED_TRACE("Hilbert " + std::to_string(n) + ", zero " + std::to_string(dZero));
            test::ScopedTolerance guard(NuGetZero, NuSetZero, dZero);
            const bool bSolved = n < 12 || dZero == dDefault;
            const Eigen::MatrixXd E = Eigen::MatrixXd::NullaryExpr(
                n, n, [](Eigen::Index i, Eigen::Index j) { return 1.0 / double(i + j + 1); });
            const CNuMatrix A = test::FromEigen(E);
            const Eigen::VectorXd b = E.rowwise().sum();
            const double dBound = kBackward * n * test::kUlp * InfinityNorm(E);
            for (int nKind = 0; nKind < (dZero == dDefault ? 2 : 1); ++nKind) {
                CNuLinearEquSys system(nKind);
                system.Solve(A, test::FromEigen(b));
                ASSERT_EQ(system.SolutionExists(), bSolved ? eNuTrue : eNuFalse)
                    << "kind " << nKind;
                const Eigen::VectorXd x = ToEigen(system.GetSolution());
                EXPECT_TRUE(!bSolved || InfinityNorm(E * x - b) <= dBound * InfinityNorm(x))
                    << "kind " << nKind << ", x " << x.transpose();
            }
            ENuStatus eStatus = eNuStatusFailed;
            const Eigen::MatrixXd X = ToEigen(A.Inverse(&eStatus));
            const double dNormX = InfinityNorm(X);
            EXPECT_EQ(eStatus, bSolved ? eNuStatusOk : eNuStatusFailed);
            const Eigen::MatrixXd R = E * X - Eigen::MatrixXd::Identity(n, n);
            EXPECT_TRUE(bSolved ? InfinityNorm(R) <= dBound * dNormX : dNormX == 0.0)
                << "inverse, |X| " << dNormX;
        }
}

// x >= 0; the dual w = A^T (b - A x) vanishes where x > 0 (to the accuracy of the SVD solves) and
// stays below the length tolerance where x = 0 (plus rounding noise). The last case, with a zero
// length tolerance, makes noise in the dual readmit a column whose subproblem solution is not
// positive, for ever: the iteration stops when it meets a state it has been in.
TEST(LinearEquSys, NonNegativeLeastSquaresMeetsItsOptimalityConditionsAndNeverCycles) {
    constexpr double kDualOnPassive = 1e-10, kDualNoise = 1e-14;
    test::Random rng;
    for (int nCase = 0; nCase < 13; ++nCase) {
        CNuMatrix A = test::RandomMatrix(rng, 8 + nCase, 3 + nCase % 5);
        CNuVector b = test::RandomVector(rng, A.GetRowSize());
        if (nCase == 12) {
            A = test::Mat({{0x1.af6ff556d2b28p-2, 0x1.0d3162bc747ecp-2, -0x1.2e4623b84066p-5,
                            0x1.af6ff556d2b3p-2},
                           {-0x1.70e9f26e6aa44p-3, 0x1.0227031096768p-1, -0x1.9447818c1d423p-1,
                            -0x1.70e9f26e6aa4bp-3},
                           {-0x1.bedf58a0e391p-1, -0x1.42062ffa63ff6p-1, 0x1.5868abd40b3ap-1,
                            -0x1.bedf58a0e3919p-1}});
            b = test::Vec({0x1.af6ff556d2edbp-3, -0x1.70e9f26e69c13p-4, -0x1.bedf58a0e3d7dp-2});
        }
        test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, nCase == 12 ? 0.0 : 1e-12);
        CNuLinearEquSys system;
        system.SetNonnegative();
        system.Solve(A, b);
        const Eigen::VectorXd x = ToEigen(system.GetSolution());
        const Eigen::VectorXd w = ToEigen(A).transpose() * (ToEigen(b) - ToEigen(A) * x);
        ASSERT_EQ(x.size(), A.GetColumnSize());
        for (int j = 0; j < x.size(); ++j)
            EXPECT_TRUE(x(j) > 0.0 ? std::fabs(w(j)) < kDualOnPassive
                                   : x(j) == 0.0 && w(j) <= NuGetLengthTol() + kDualNoise)
                << "case " << nCase << ", j " << j << ": x " << x(j) << ", dual " << w(j);
    }
}

// An entry that the step leaves where it is bounds no step: x stays non-negative and no worse
// than x = 0, where a column taken in with a trial value of exactly 0 threw it out to about
// 1e290, and an entry left below 0 under a zero length tolerance made it NaN. Degenerate data
// (equal columns, far-apart magnitudes, a zero matrix, non-finite entries, length or zero
// tolerances of 0 and below) must end the SVD and the non-negative iteration, with a solution or an
// exception.
TEST(LinearEquSys, NonNegativeAndSvdSolvesEndAndStayNonNegativeOnDegenerateData) {
    const double kNaN = std::nan(""), kInf = HUGE_VAL;
    const struct {
        CNuMatrix A;
        CNuVector b;
    } cases[] = {
        {test::Mat({{-0x1.45c683041331fp-35, -0x1.04c8c8d868c8cp+9}, {0.0, -0x1.04c8c8c8c8c7p+9}}),
         test::Vec({-0x1.f3ffffffffff1p+9, 0.0})},
        {test::Mat({{3, -2, -3}, {-2, 2, -2}, {2, 1, -1}}), test::Vec({-1, -2, -3})},
        {test::Mat({{1, 1, 1}, {1, 1, 1}}), test::Vec({1, 1})},
        {test::Mat({{1e300, 1e-300}, {1e-300, -1e300}}), test::Vec({1e300, -1e-300})},
        {test::Mat({{0x1p-1074, 0}, {0, 0}}), test::Vec({1, -1})},
        {CNuMatrix(2, 3), test::Vec({1, 2})},
        {test::Mat({{kNaN, 1}, {1, 1}}), test::Vec({1, 1})},
        {test::Mat({{kInf, 1}, {1, -kInf}}), test::Vec({1, 1})},
        {test::Mat({{1, 2}, {3, 4}}), test::Vec({kNaN, 1})},
    };
    using Tolerances = std::pair<double, double>;  // NuGetLengthTol(), NuGetZero()
    for (const Tolerances& t :
         {Tolerances{1e-12, 1e-300}, {0.0, 1e-300}, {-1.0, 1e-300}, {1e-12, 0.0}, {1e-12, -1.0}}) {
        test::ScopedTolerance length(NuGetLengthTol, NuSetLengthTol, t.first),
            zero(NuGetZero, NuSetZero, t.second);
        for (const auto& k : cases) {
            const bool bFinite = ToEigen(k.A).allFinite() && ToEigen(k.b).allFinite();
            CNuLinearEquSys leastSquares, nonNegative;
            nonNegative.SetNonnegative();
            try {
                leastSquares.Solve(k.A, k.b);
                nonNegative.Solve(k.A, k.b);
            } catch (const CNuException& e) {
                // Non-finite data, or a zero tolerance of 0 or below that no split test passes.
                EXPECT_TRUE(!bFinite || t.second <= 0.0) << "cause " << e.m_nCause;
                continue;
            }
            const Eigen::VectorXd x = ToEigen(nonNegative.GetSolution()), b = ToEigen(k.b);
            EXPECT_TRUE(!bFinite ||
                        (x.minCoeff() >= 0.0 && (ToEigen(k.A) * x - b).norm() <= b.norm()))
                << "tolerances " << t.first << ", " << t.second << ", x " << x.transpose();
        }
    }
}

}  // namespace
}  // namespace numorix
