// The constrained L1 solver against an exact linear programme of the same problem (CGAL's
// Quadratic_program in exact arithmetic): seeded random problems of every kind, degenerate and
// infeasible ones among them; optimality certified by the multipliers the solver returns.
#include <CGAL/Gmpzf.h>
#include <CGAL/QP_functions.h>
#include <CGAL/QP_models.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "nu_test.h"
#include "numorix/fit/internal/constrained_l1.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace {

using fit::EL1Status;
using fit::SL1Result;

// Objective values agree with the exact optimum to this relative precision (the solver works
// in doubles on data of order 1 with a few dozen pivots).
constexpr double kObjective = 1e-9;
// Constraint rows hold, and the certificate balances, to this absolute precision on data of
// order 1.
constexpr double kFeasible = 1e-9;

struct SProblem {
    int n = 0;
    std::vector<std::vector<double>> A, C, E;
    std::vector<double> b, d, f;
    std::vector<int> pinned;
    std::vector<double> pinnedValue;
};

std::vector<const double*> Rows(const std::vector<std::vector<double>>& m) {
    std::vector<const double*> rows;
    for (const auto& r : m)
        rows.push_back(r.data());
    return rows;
}

SL1Result Solve(const SProblem& p) {
    auto a = Rows(p.A), c = Rows(p.C), e = Rows(p.E);
    fit::SL1Problem problem;
    problem.nUnknowns = p.n;
    problem.nObjective = static_cast<int>(p.A.size());
    problem.ppA = a.data();
    problem.pB = p.b.data();
    problem.nEquality = static_cast<int>(p.C.size());
    problem.ppC = c.data();
    problem.pD = p.d.data();
    problem.nInequality = static_cast<int>(p.E.size());
    problem.ppE = e.data();
    problem.pF = p.f.data();
    problem.pnPinned = p.pinned.empty() ? nullptr : p.pinned.data();
    problem.pdPinnedValue = p.pinnedValue.empty() ? nullptr : p.pinnedValue.data();
    return fit::acm552m(problem);
}

// The same problem as an LP over (x, e): min sum e_i, -e_i <= b_i - A_i x <= e_i, e >= 0, solved
// exactly. Returns false when infeasible.
bool ExactOptimum(const SProblem& p, double* pdObjective) {
    using Program = CGAL::Quadratic_program<double>;
    Program lp(CGAL::SMALLER, false, 0, false, 0);
    const int n = p.n;
    int row = 0;
    for (size_t i = 0; i < p.A.size(); ++i) {
        int e = n + static_cast<int>(i);
        lp.set_l(e, true, 0.0);
        lp.set_c(e, 1.0);
        for (int j = 0; j < n; ++j) {
            lp.set_a(j, row, p.A[i][j]);
            lp.set_a(j, row + 1, p.A[i][j]);
        }
        lp.set_a(e, row, -1.0);  // A x - e <= b
        lp.set_b(row, p.b[i]);
        lp.set_a(e, row + 1, 1.0);  // A x + e >= b
        lp.set_b(row + 1, p.b[i]);
        lp.set_r(row + 1, CGAL::LARGER);
        row += 2;
    }
    for (size_t k = 0; k < p.C.size(); ++k, ++row) {
        for (int j = 0; j < n; ++j)
            lp.set_a(j, row, p.C[k][j]);
        lp.set_b(row, p.d[k]);
        lp.set_r(row, CGAL::EQUAL);
    }
    for (size_t k = 0; k < p.E.size(); ++k, ++row) {
        for (int j = 0; j < n; ++j)
            lp.set_a(j, row, p.E[k][j]);
        lp.set_b(row, p.f[k]);
    }
    for (int j = 0; j < n; ++j)
        if (!p.pinned.empty() && p.pinned[j] != 0) {
            lp.set_l(j, true, p.pinnedValue[j]);
            lp.set_u(j, true, p.pinnedValue[j]);
        }
    auto solution = CGAL::solve_linear_program(lp, CGAL::Gmpzf());
    if (solution.is_infeasible()) return false;
    EXPECT_TRUE(solution.is_optimal());
    *pdObjective = CGAL::to_double(solution.objective_value());
    return true;
}

double Dot(const std::vector<double>& a, const std::vector<double>& x) {
    double s = 0.0;
    for (size_t j = 0; j < a.size(); ++j)
        s += a[j] * x[j];
    return s;
}

// Feasibility, and the certificate: weights in [-1, 1] equal to the signs of non-zero residuals,
// inequality multipliers >= 0 and zero on slack rows, A^T w = C^T v + E^T u over free unknowns.
void ExpectCertified(const SProblem& p, const SL1Result& r) {
    for (size_t k = 0; k < p.C.size(); ++k)
        EXPECT_NEAR(Dot(p.C[k], r.x), p.d[k], kFeasible) << "equality row " << k;
    for (size_t k = 0; k < p.E.size(); ++k) {
        double slack = p.f[k] - Dot(p.E[k], r.x);
        EXPECT_GE(slack, -kFeasible) << "inequality row " << k;
        EXPECT_GE(r.inequality[k], -kFeasible) << "multiplier of inequality row " << k;
        if (slack > 1e-7) {
            EXPECT_NEAR(r.inequality[k], 0.0, kFeasible) << "slack row " << k;
        }
    }
    for (size_t i = 0; i < p.A.size(); ++i) {
        EXPECT_LE(std::fabs(r.weights[i]), 1.0) << "row " << i;
        if (std::fabs(r.residuals[i]) > 1e-7) {
            EXPECT_NEAR(r.weights[i], r.residuals[i] > 0 ? 1.0 : -1.0, kFeasible) << "row " << i;
        }
    }
    for (int j = 0; j < p.n; ++j) {
        if (!p.pinned.empty() && p.pinned[j] != 0) {
            EXPECT_EQ(r.x[j], p.pinnedValue[j]);
            continue;
        }
        double balance = 0.0;
        for (size_t i = 0; i < p.A.size(); ++i)
            balance += p.A[i][j] * r.weights[i];
        for (size_t k = 0; k < p.C.size(); ++k)
            balance -= p.C[k][j] * r.equality[k];
        for (size_t k = 0; k < p.E.size(); ++k)
            balance -= p.E[k][j] * r.inequality[k];
        EXPECT_NEAR(balance, 0.0, kFeasible) << "unknown " << j;
    }
}

TEST(ConstrainedL1, FitsTheStraightLineOfBarrodaleAndRobertsWithTheSumTwo) {
    // Their worked example: a1 + a2 x through (1,1), (2,1), (3,2), (4,3), (5,2); the optimum
    // interpolates the first and third points, a = (1/2, 1/2), and the sum of errors is 2.
    SProblem p;
    p.n = 2;
    for (double x : {1.0, 2.0, 3.0, 4.0, 5.0})
        p.A.push_back({1.0, x});
    p.b = {1, 1, 2, 3, 2};
    SL1Result r = Solve(p);
    ASSERT_EQ(r.eStatus, EL1Status::eOptimal);
    EXPECT_NEAR(r.dObjective, 2.0, 1e-14);
    EXPECT_NEAR(r.x[0], 0.5, 1e-14);
    EXPECT_NEAR(r.x[1], 0.5, 1e-14);
    ExpectCertified(p, r);
}

struct SKind {
    const char* pszName;
    int nObjective, nUnknowns, nEquality, nInequality, nPinned;
    bool bTies;       // small integers: many equal residuals and degenerate vertices
    bool bDuplicate;  // the last column of A a copy of the first: A rank-deficient
};

TEST(ConstrainedL1, MatchesTheExactLinearProgrammeOnRandomProblemsOfEveryKind) {
    const SKind kinds[] = {
        {"plain regression", 20, 4, 0, 0, 0, false, false},
        {"plain regression, 40 rows", 40, 6, 0, 0, 0, false, false},
        {"with equalities", 15, 5, 2, 0, 0, false, false},
        {"with inequalities", 15, 4, 0, 6, 0, false, false},
        {"with both", 25, 5, 2, 8, 0, false, false},
        {"with pinned unknowns", 15, 5, 1, 3, 2, false, false},
        {"ties", 12, 3, 1, 3, 0, true, false},
        {"rank-deficient", 12, 4, 0, 2, 0, false, true},
        {"ties, rank-deficient, pinned", 10, 4, 1, 2, 1, true, true},
        {"a few rows", 3, 2, 0, 1, 0, false, false},
        {"more unknowns than rows", 4, 6, 1, 2, 0, false, false},
    };
    test::Random random;
    for (const SKind& kind : kinds) {
        for (int trial = 0; trial < 25; ++trial) {
            SCOPED_TRACE(std::string(kind.pszName) + ", trial " + std::to_string(trial));
            auto value = [&] {
                return kind.bTies ? static_cast<double>(random.Integer(-2, 2))
                                  : random.Uniform(-1.0, 1.0);
            };
            SProblem p;
            p.n = kind.nUnknowns;
            auto block = [&](int nRows, std::vector<std::vector<double>>* pM,
                             std::vector<double>* pV) {
                for (int i = 0; i < nRows; ++i) {
                    std::vector<double> row(p.n);
                    for (double& a : row)
                        a = value();
                    if (kind.bDuplicate) row[p.n - 1] = row[0];
                    pM->push_back(row);
                    pV->push_back(value());
                }
            };
            block(kind.nObjective, &p.A, &p.b);
            block(kind.nEquality, &p.C, &p.d);
            block(kind.nInequality, &p.E, &p.f);
            // Inequalities that hold at a random point keep most problems feasible.
            std::vector<double> x0(p.n);
            for (double& v : x0)
                v = value();
            for (size_t k = 0; k < p.E.size(); ++k)
                p.f[k] = Dot(p.E[k], x0) + std::fabs(value());
            if (kind.nPinned > 0) {
                p.pinned.assign(p.n, 0);
                p.pinnedValue.assign(p.n, 0.0);
                for (int j = 0; j < kind.nPinned; ++j) {
                    p.pinned[j + 1] = 1;
                    p.pinnedValue[j + 1] = value();
                }
            }
            double dExact = 0.0;
            bool bFeasible = ExactOptimum(p, &dExact);
            SL1Result r = Solve(p);
            if (!bFeasible) {
                EXPECT_EQ(r.eStatus, EL1Status::eInfeasible);
                continue;
            }
            ASSERT_EQ(r.eStatus, EL1Status::eOptimal);
            EXPECT_NEAR(r.dObjective, dExact, kObjective * std::max(1.0, dExact));
            ExpectCertified(p, r);
        }
    }
}

TEST(ConstrainedL1, ReportsInfeasibleConstraintsAndNeverAnAnswer) {
    // x0 <= -1 with x0 >= 1; x0 + x1 = 1 with x0 + x1 = 2; x0 = 2 against x0 <= 1 with x0 pinned.
    SProblem opposite;
    opposite.n = 2;
    opposite.A = {{1, 0}, {0, 1}, {1, 1}};
    opposite.b = {0, 1, 2};
    opposite.E = {{1, 0}, {-1, 0}};
    opposite.f = {-1, -1};
    SProblem parallel = opposite;
    parallel.E.clear();
    parallel.f.clear();
    parallel.C = {{1, 1}, {1, 1}};
    parallel.d = {1, 2};
    SProblem pinned = opposite;
    pinned.E = {{1, 0}};
    pinned.f = {1};
    pinned.pinned = {1, 0};
    pinned.pinnedValue = {2, 0};
    for (const SProblem* p : {&opposite, &parallel, &pinned}) {
        double dExact = 0.0;
        EXPECT_FALSE(ExactOptimum(*p, &dExact));
        EXPECT_EQ(Solve(*p).eStatus, EL1Status::eInfeasible);
    }
}

TEST(ConstrainedL1, SolvesTheMatrixFormAndRefusesInconsistentSizes) {
    // |x - 3| + |x - 5| + |x - 10| with x <= 4: the median 5 is cut off, the optimum is x = 4.
    CNuMatrix A(3, 1), E(1, 1);
    A.GetData()[0][0] = A.GetData()[1][0] = A.GetData()[2][0] = 1.0;
    E.GetData()[0][0] = 1.0;
    CNuVector b(3), f(1);
    b[0] = 3;
    b[1] = 5;
    b[2] = 10;
    f[0] = 4;
    SL1Result r = fit::acm552m(A, b, nullptr, nullptr, &E, &f, nullptr, nullptr);
    ASSERT_EQ(r.eStatus, EL1Status::eOptimal);
    EXPECT_NEAR(r.x[0], 4.0, 1e-14);
    EXPECT_NEAR(r.dObjective, 1.0 + 1.0 + 6.0, 1e-13);
    // Residuals b - x = (-1, 1, 6) give the weights (-1, 1, 1); the bound balances their sum:
    // u = -1 + 1 + 1 = 1.
    EXPECT_NEAR(r.inequality[0], 1.0, 1e-14);
    CNuVector shortB(2);
    CNuIntArray pinned;
    pinned.Add(0);
    pinned.Add(0);
    test::ExpectFailures<CNuOperationException>({
        {[&] { fit::acm552m(A, shortB, nullptr, nullptr, &E, &f, nullptr, nullptr); }, 103, nullptr,
         "CNuConSurf::acm552m()"},
        {[&] { fit::acm552m(A, b, nullptr, nullptr, &E, &f, &pinned, nullptr); }, 103, nullptr,
         "CNuConSurf::acm552m()"},
    });
}

}  // namespace
}  // namespace numorix
