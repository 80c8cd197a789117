// Linear equation systems: exact solving through the LU factors, least squares through the SVD
// (against Eigen), non-negative least squares (by its optimality conditions), the singular modes,
// the unsupported entry points and the failures with their strings.
#include <cmath>
#include <limits>

#include "dense_support.h"
#include "nu_test.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/linear_equ_sys.h"

namespace numorix {
namespace {

// Solutions of well-conditioned systems of order 1 against another backward-stable solver.
constexpr double kSolution = 1e-12;
// Optimality of NNLS: the dual of the passive set vanishes to the accuracy of its SVD solves.
constexpr double kDualOnPassive = 1e-10;

CNuMatrix WellConditioned(test::Random& rng, int n) {
    CNuMatrix A = test::RandomMatrix(rng, n, n);
    for (int i = 0; i < n; ++i)
        A.GetData()[i][i] += n + 1.0;
    return A;
}

double MaxDifference(const CNuVector& x, const Eigen::VectorXd& expected) {
    return (test::ToEigen(x) - expected).cwiseAbs().maxCoeff();
}

void ExpectZeros(const CNuVector& x, int n) {
    ASSERT_EQ(x.GetSize(), n);
    EXPECT_EQ(test::ToEigen(x).cwiseAbs().maxCoeff(), 0.0)
        << "solution " << test::ToEigen(x).transpose();
}

TEST(LinearEquSys, ExactModeSolvesAndReusesItsFactors) {
    test::Random rng;
    const int n = 8;
    CNuMatrix A = WellConditioned(rng, n);
    CNuLinearEquSys system(0);
    EXPECT_EQ(system.GetType(), CNuObject::eTypeLinearEquSys);
    for (int k = 0; k < 3; ++k) {
        CNuVector b = test::RandomVector(rng, n);
        if (k == 0) {
            system.Solve(A, b);
        } else {
            system.SetRightHandSide(b);
        }
        ASSERT_EQ(system.SolutionExists(), eNuTrue);
        Eigen::VectorXd expected = test::ToEigen(A).partialPivLu().solve(test::ToEigen(b));
        EXPECT_LT(MaxDifference(system.GetSolution(), expected), kSolution) << "right side " << k;
    }
    // Changing A after the solve changes nothing.
    CNuVector b = test::RandomVector(rng, n);
    system.SetRightHandSide(b);
    CNuVector before = system.GetSolution();
    A.GetData()[0][0] += 100.0;
    system.SetRightHandSide(b);
    EXPECT_EQ(MaxDifference(system.GetSolution(), test::ToEigen(before)), 0.0);
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

    CNuMatrix withNaN(4, 3);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 3; ++j)
            withNaN.GetData()[i][j] = i == j ? 1.0 : 0.5;
    withNaN.GetData()[0][0] = std::numeric_limits<double>::quiet_NaN();
    CNuLinearEquSys failed;
    try {
        failed.Solve(withNaN, b4);
        ADD_FAILURE() << "a NaN should stop the decomposition";
    } catch (const CNuOperationException& e) {
        EXPECT_TRUE(e.m_nCause == 103 || e.m_nCause == 146) << test::MessageOf(e);
    }

    CNuMatrix rectangular(4, 3);
    CNuLinearEquSys exact(0), fresh, leastSquares;
    leastSquares.Solve(rectangular, b4);
    const char* pszSolving = "solving a set of equations";
    const char* pszRhs = "CNuLinearEquSys::SetRightHandSide()";
    test::ExpectFailures<CNuOperationException>({
        {[&] { exactSingular.SetRightHandSide(b5); }, 117, pszSolving, pszRhs},
        {[&] { nonNegative.SetRightHandSide(CNuVector(6)); }, 117, pszSolving, pszRhs},
        {[&] { failed.SetRightHandSide(b4); }, 117, pszSolving, pszRhs},
        {[&] { fresh.SetRightHandSide(b4); }, 117, pszSolving, pszRhs},
        {[&] { leastSquares.SetRightHandSide(b3); }, 117, pszSolving, pszRhs},
        {[&] { nonNegative.Solve(A, CNuVector(5)); }, 117, pszSolving, "CNuLinearEquSys::Solve()"},
        {[&] { exact.Solve(rectangular, b3); }, 117, pszSolving, "CNuLinearEquSys::Solve()"},
        {[&] { exact.Solve(rectangular, b4); }, 145, "solving an exact set of equations",
         "CNuLinearEquSys"},
    });
}

TEST(LinearEquSys, SingularSolvableModeGivesALargeFiniteSolution) {
    CNuMatrix A = test::Mat({{1.0, 2.0}, {2.0, 4.0}});
    CNuVector b = test::Vec({1.0, 3.0});
    CNuLinearEquSys system(0);
    system.SetSingularSolvable();
    system.Solve(A, b);
    ASSERT_EQ(system.SolutionExists(), eNuTrue);
    CNuVector x = system.GetSolution();
    // Rows exchanged: U = [2 4; 0 0], L multiplier 0.5; forward gives (3, 1 - 0.5 * 3), and the
    // vanishing pivot divides by the squared tolerance.
    const double dTol2 = NuGetTol() * NuGetTol();
    EXPECT_EQ(x[1], -0.5 / dTol2);
    EXPECT_EQ(x[0], (3.0 - 4.0 * x[1]) / 2.0);
    EXPECT_TRUE(std::isfinite(x[0]) && std::isfinite(x[1]));
}

TEST(LinearEquSys, LeastSquaresAgreesWithAQrSolverOnOverdeterminedSystems) {
    test::Random rng;
    for (int nCase = 0; nCase < 4; ++nCase) {
        const int m = 30 + 10 * nCase;
        const int n = 2 + nCase;
        CNuMatrix A = test::RandomMatrix(rng, m, n);
        CNuVector b = test::RandomVector(rng, m);
        CNuLinearEquSys system;
        system.Solve(A, b);
        ASSERT_EQ(system.SolutionExists(), eNuTrue);
        Eigen::VectorXd expected = test::ToEigen(A).colPivHouseholderQr().solve(test::ToEigen(b));
        EXPECT_LT(MaxDifference(system.GetSolution(), expected), kSolution) << m << " x " << n;

        // A further right-hand side through the kept factors equals a fresh solve to the bit.
        CNuVector c = test::RandomVector(rng, m);
        system.SetRightHandSide(c);
        CNuLinearEquSys fresh;
        fresh.Solve(A, c);
        EXPECT_EQ(MaxDifference(system.GetSolution(), test::ToEigen(fresh.GetSolution())), 0.0);
    }
}

TEST(LinearEquSys, LeastSquaresGivesTheMinimumNormSolutionOfSingularSystems) {
    test::Random rng;
    CNuMatrix singular = test::RandomMatrix(rng, 6, 6);
    for (int i = 0; i < 6; ++i) {
        singular.GetData()[i][4] = singular.GetData()[i][0] - singular.GetData()[i][1];
        singular.GetData()[i][5] = 2.0 * singular.GetData()[i][2];
    }
    CNuLinearEquSys system(1);
    // Rank 4 of 6, then underdetermined: the minimum-norm interpolant.
    for (const CNuMatrix& A : {singular, test::RandomMatrix(rng, 3, 7)}) {
        CNuVector b = test::RandomVector(rng, A.GetRowSize());
        system.Solve(A, b);
        ASSERT_EQ(system.SolutionExists(), eNuTrue);
        Eigen::VectorXd expected =
            test::ToEigen(A).completeOrthogonalDecomposition().solve(test::ToEigen(b));
        EXPECT_LT(MaxDifference(system.GetSolution(), expected), kSolution)
            << A.GetRowSize() << " x " << A.GetColumnSize();
    }
}

// x >= 0; w = A^T (b - A x) <= tol where x = 0 and |w| small where x > 0.
void ExpectKkt(const CNuMatrix& A, const CNuVector& b, const CNuVector& x, const char* pszWhat) {
    Eigen::MatrixXd E = test::ToEigen(A);
    Eigen::VectorXd X = test::ToEigen(x);
    Eigen::VectorXd w = E.transpose() * (test::ToEigen(b) - E * X);
    for (int j = 0; j < x.GetSize(); ++j) {
        EXPECT_GE(X(j), 0.0) << pszWhat << ": x[" << j << "]";
        if (X(j) > 0.0) {
            EXPECT_LT(std::fabs(w(j)), kDualOnPassive) << pszWhat << ": dual on passive " << j;
        } else {
            EXPECT_LE(w(j), NuGetLengthTol()) << pszWhat << ": dual on active " << j;
        }
    }
}

TEST(LinearEquSys, NonNegativeLeastSquaresMeetsItsOptimalityConditions) {
    test::Random rng;
    int nBoundSeen = 0;
    for (int nCase = 0; nCase < 12; ++nCase) {
        const int m = 8 + nCase;
        const int n = 3 + nCase % 5;
        CNuMatrix A = test::RandomMatrix(rng, m, n);
        CNuVector b = test::RandomVector(rng, m);
        CNuLinearEquSys system;
        system.SetNonnegative();
        system.Solve(A, b);
        ASSERT_EQ(system.SolutionExists(), eNuTrue);
        CNuVector x = system.GetSolution();
        ASSERT_EQ(x.GetSize(), n);
        ExpectKkt(A, b, x, "random");
        for (int j = 0; j < n; ++j)
            nBoundSeen += x[j] == 0.0;
    }
    EXPECT_GT(nBoundSeen, 0) << "the cases should exercise the bound";
}

TEST(LinearEquSys, NonNegativeLeastSquaresKeepsAPositiveUnconstrainedSolution) {
    test::Random rng;
    CNuMatrix A = test::RandomMatrix(rng, 20, 4);
    Eigen::VectorXd xTrue(4);
    xTrue << 0.5, 1.5, 2.0, 0.25;
    Eigen::VectorXd noise(20);
    for (int i = 0; i < 20; ++i)
        noise(i) = rng.Uniform(-1e-3, 1e-3);
    CNuVector b = test::FromEigen(Eigen::VectorXd(test::ToEigen(A) * xTrue + noise));
    CNuLinearEquSys nnls;
    nnls.SetNonnegative();
    nnls.Solve(A, b);
    CNuLinearEquSys plain;
    plain.Solve(A, b);
    EXPECT_LT(MaxDifference(nnls.GetSolution(), test::ToEigen(plain.GetSolution())), kSolution);
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
    const double dSaved = NuGetLengthTol();
    NuSetLengthTol(0.0);
    CNuLinearEquSys system;
    system.SetNonnegative();
    system.Solve(A, b);
    NuSetLengthTol(dSaved);
    ASSERT_EQ(system.SolutionExists(), eNuTrue);
    CNuVector x = system.GetSolution();
    Eigen::VectorXd r = test::ToEigen(b) - test::ToEigen(A) * test::ToEigen(x);
    for (int j = 0; j < 4; ++j)
        EXPECT_GE(x[j], 0.0) << "x[" << j << "]";
    // b is half of column 0 plus a trace of column 1: the fit is all but exact.
    EXPECT_LT(r.norm(), 1e-12) << "residual";
}

TEST(LinearEquSys, ModesActOnlyInTheirKindOfSystem) {
    test::Random rng;
    CNuMatrix A = WellConditioned(rng, 4);
    CNuVector b = test::RandomVector(rng, 4);
    // Non-negative in an exact system: an ordinary exact solve, negative entries included.
    Eigen::VectorXd expected = test::ToEigen(A).partialPivLu().solve(test::ToEigen(b));
    CNuLinearEquSys exact(0);
    exact.SetNonnegative();
    exact.Solve(A, b);
    EXPECT_LT(MaxDifference(exact.GetSolution(), expected), kSolution);
    // Singular solving in a least-squares system: no solution, no failure.
    CNuLinearEquSys leastSquares(1);
    leastSquares.SetSingularSolvable();
    leastSquares.Solve(A, b);
    EXPECT_EQ(leastSquares.SolutionExists(), eNuFalse);
}

TEST(LinearEquSys, UnsupportedProblemsRecordTheRequestAndFail) {
    CNuMatrix A(3, 3);
    CNuVector b(3);
    const char* pszConstraints = "solving a set of equations with equality/inequality constraints";
    CNuLinearEquSys system;
    test::ExpectFailures<CNuOperationException>({
        {[&] { system.SetEquality(A, b); }, 145, pszConstraints, "CNuLinearEquSys"},
        {[&] { system.SetInequality(A, b); }, 145, pszConstraints, "CNuLinearEquSys"},
    });
    // The request stays: a least-squares solve now returns without a solution.
    A.GetData()[0][0] = A.GetData()[1][1] = A.GetData()[2][2] = 1.0;
    system.Solve(A, b);
    EXPECT_EQ(system.SolutionExists(), eNuFalse);

    test::ExpectFailures<CNuOperationException>({
        {[&] { system.Solve(); }, 145, "least distance programming", "CNuLinearEquSys"},
        {[&] { system.SetLeastDistance(); }, 145, "least distance programming", "CNuLinearEquSys"},
        {[&] { system.Solve(A, b); }, 145, "least distance programming", "CNuLinearEquSys"},
    });
    // In an exact system least distance has no effect on Solve(A, b).
    CNuLinearEquSys exact(0);
    EXPECT_NU_THROW(exact.SetLeastDistance(), CNuOperationException, 145);
    exact.Solve(A, b);
    EXPECT_EQ(exact.SolutionExists(), eNuTrue);
}

TEST(LinearEquSys, CopiesAreDeepAndOutliveTheOriginal) {
    test::Random rng;
    CNuMatrix A = WellConditioned(rng, 5);
    CNuVector b = test::RandomVector(rng, 5);
    CNuVector c = test::RandomVector(rng, 5);
    for (int nSwitch : {0, 1}) {
        auto* pOriginal = new CNuLinearEquSys(nSwitch);
        pOriginal->Solve(A, b);
        CNuLinearEquSys copy(*pOriginal);
        CNuLinearEquSys assigned;
        assigned = *pOriginal;
        CNuVector xb = pOriginal->GetSolution();
        copy.SetRightHandSide(c);
        EXPECT_EQ(MaxDifference(pOriginal->GetSolution(), test::ToEigen(xb)), 0.0)
            << "the original keeps its solution";
        delete pOriginal;
        assigned.SetRightHandSide(c);
        EXPECT_EQ(MaxDifference(assigned.GetSolution(), test::ToEigen(copy.GetSolution())), 0.0);
        assigned = assigned;  // self-assignment keeps the state
        EXPECT_EQ(assigned.SolutionExists(), eNuTrue);
    }
}

}  // namespace
}  // namespace numorix
