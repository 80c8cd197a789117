// The constrained L1 solver against an exact linear programme of the same problem (CGAL's
// Quadratic_program in exact arithmetic) on seeded random problems of every kind, degenerate and
// infeasible ones among them; optimality certified by the multipliers the solver returns.
#include <CGAL/Gmpzf.h>
#include <CGAL/QP_functions.h>
#include <CGAL/QP_models.h>
#include <gtest/gtest.h>

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
using Rows = std::vector<std::vector<double>>;

// Objective values, constraint rows and the balance of the certificate agree to this precision:
// a few dozen pivots in doubles on data of order 1.
constexpr double kAgree = 1e-9;

struct SProblem {
    int n = 0;
    Rows A, C, E;
    std::vector<double> b, d, f, value;
    std::vector<int> pinned;
};

double Dot(const std::vector<double>& a, const std::vector<double>& x) {
    double s = 0.0;
    for (size_t j = 0; j < a.size(); ++j)
        s += a[j] * x[j];
    return s;
}

fit::SL1Result Solve(const SProblem& p) {
    auto pointers = [](const Rows& m) {
        std::vector<const double*> r;
        for (const auto& row : m)
            r.push_back(row.data());
        return r;
    };
    auto a = pointers(p.A), c = pointers(p.C), e = pointers(p.E);
    fit::SL1Problem q;
    q.nUnknowns = p.n;
    q.nObjective = static_cast<int>(a.size());
    q.ppA = a.data();
    q.pB = p.b.data();
    q.nEquality = static_cast<int>(c.size());
    q.ppC = c.data();
    q.pD = p.d.data();
    q.nInequality = static_cast<int>(e.size());
    q.ppE = e.data();
    q.pF = p.f.data();
    q.pnPinned = p.pinned.empty() ? nullptr : p.pinned.data();
    q.pdPinnedValue = p.value.empty() ? nullptr : p.value.data();
    return fit::acm552m(q);
}

// min sum e_i over (x, e) with A x - e <= b <= A x + e, solved exactly; false when infeasible.
bool ExactOptimum(const SProblem& p, double* pdObjective) {
    CGAL::Quadratic_program<double> lp(CGAL::SMALLER, false, 0, false, 0);
    int row = 0;
    auto put = [&](const std::vector<double>& a, double dRight, CGAL::Comparison_result r) {
        for (int j = 0; j < p.n; ++j)
            lp.set_a(j, row, a[j]);
        lp.set_b(row, dRight);
        lp.set_r(row++, r);
    };
    for (size_t i = 0; i < p.A.size(); ++i) {
        const int e = p.n + static_cast<int>(i);
        lp.set_l(e, true, 0.0);
        lp.set_c(e, 1.0);
        lp.set_a(e, row, -1.0);
        put(p.A[i], p.b[i], CGAL::SMALLER);
        lp.set_a(e, row, 1.0);
        put(p.A[i], p.b[i], CGAL::LARGER);
    }
    for (size_t k = 0; k < p.C.size(); ++k)
        put(p.C[k], p.d[k], CGAL::EQUAL);
    for (size_t k = 0; k < p.E.size(); ++k)
        put(p.E[k], p.f[k], CGAL::SMALLER);
    for (size_t j = 0; j < p.pinned.size(); ++j)
        if (p.pinned[j] != 0) {
            lp.set_l(static_cast<int>(j), true, p.value[j]);
            lp.set_u(static_cast<int>(j), true, p.value[j]);
        }
    auto solution = CGAL::solve_linear_program(lp, CGAL::Gmpzf());
    *pdObjective = solution.is_optimal() ? CGAL::to_double(solution.objective_value()) : 0.0;
    return !solution.is_infeasible();
}

// Feasible, and certified: weights in [-1, 1] with the signs of non-zero residuals, inequality
// multipliers >= 0 and 0 on slack rows, A^T w = C^T v + E^T u over the free unknowns.
void ExpectCertified(const SProblem& p, const fit::SL1Result& r) {
    for (size_t k = 0; k < p.C.size(); ++k)
        EXPECT_NEAR(Dot(p.C[k], r.x), p.d[k], kAgree) << "equality " << k;
    for (size_t k = 0; k < p.E.size(); ++k) {
        const double slack = p.f[k] - Dot(p.E[k], r.x);
        EXPECT_GE(slack, -kAgree) << "inequality " << k;
        EXPECT_GE(r.inequality[k], -kAgree) << "inequality " << k;
        EXPECT_TRUE(slack < 1e-7 || std::fabs(r.inequality[k]) < kAgree) << "inequality " << k;
    }
    for (size_t i = 0; i < p.A.size(); ++i) {
        const double w = r.weights[i], res = r.residuals[i];
        EXPECT_TRUE(std::fabs(w) <= 1.0 && (std::fabs(res) < 1e-7 || std::fabs(w * res - std::fabs(res)) < kAgree))
            << "row " << i << ": weight " << w << ", residual " << res;
    }
    for (int j = 0; j < p.n; ++j) {
        if (!p.pinned.empty() && p.pinned[j] != 0) continue;
        double balance = 0.0;
        for (size_t i = 0; i < p.A.size(); ++i)
            balance += p.A[i][j] * r.weights[i];
        for (size_t k = 0; k < p.C.size(); ++k)
            balance -= p.C[k][j] * r.equality[k];
        for (size_t k = 0; k < p.E.size(); ++k)
            balance -= p.E[k][j] * r.inequality[k];
        EXPECT_NEAR(balance, 0.0, kAgree) << "unknown " << j;
    }
}

TEST(ConstrainedL1, FitsTheStraightLineOfBarrodaleAndRobertsWithTheSumTwo) {
    // Their worked example: a1 + a2 x through (1,1), (2,1), (3,2), (4,3), (5,2); the optimum
    // interpolates the first and third points, a = (1/2, 1/2), and the errors sum to 2.
    SProblem p;
    p.n = 2;
    p.A = {{1, 1}, {1, 2}, {1, 3}, {1, 4}, {1, 5}};
    p.b = {1, 1, 2, 3, 2};
    fit::SL1Result r = Solve(p);
    ASSERT_EQ(r.eStatus, EL1Status::eOptimal);
    EXPECT_NEAR(r.dObjective, 2.0, 1e-14);
    EXPECT_NEAR(r.x[0], 0.5, 1e-14);
    EXPECT_NEAR(r.x[1], 0.5, 1e-14);
    ExpectCertified(p, r);
}

TEST(ConstrainedL1, MatchesTheExactLinearProgrammeOnRandomProblemsOfEveryKind) {
    struct SKind {
        const char* pszName;
        int nObjective, n, nEquality, nInequality, nPinned;
        bool bTies;       // entries in -2..2: equal residuals, degenerate vertices
        bool bDuplicate;  // the last column a copy of the first: rank-deficient
    } const kinds[] = {
        {"plain regression", 20, 4, 0, 0, 0, false, false},
        {"40 rows", 40, 6, 0, 0, 0, false, false},
        {"equalities", 15, 5, 2, 0, 0, false, false},
        {"inequalities", 15, 4, 0, 6, 0, false, false},
        {"both", 25, 5, 2, 8, 0, false, false},
        {"pinned", 15, 5, 1, 3, 2, false, false},
        {"ties", 12, 3, 1, 3, 0, true, false},
        {"rank-deficient", 12, 4, 0, 2, 0, false, true},
        {"ties, rank-deficient, pinned", 10, 4, 1, 2, 1, true, true},
        {"more unknowns than rows", 4, 6, 1, 2, 0, false, false},
    };
    test::Random random;
    for (const SKind& kind : kinds) {
        for (int trial = 0; trial < 25; ++trial) {
            SCOPED_TRACE(std::string(kind.pszName) + ", trial " + std::to_string(trial));
            auto value = [&] {
                return kind.bTies ? random.Integer(-2, 2) : random.Uniform(-1.0, 1.0);
            };
            SProblem p;
            p.n = kind.n;
            auto block = [&](int nRows, Rows* pM, std::vector<double>* pV) {
                for (int i = 0; i < nRows; ++i) {
                    std::vector<double> row(p.n);
                    for (double& a : row)
                        a = value();
                    row[p.n - 1] = kind.bDuplicate ? row[0] : row[p.n - 1];
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
            for (int j = 0; j < kind.nPinned; ++j) {
                p.pinned.resize(p.n);
                p.value.resize(p.n);
                p.pinned[j + 1] = 1;
                p.value[j + 1] = value();
            }
            double dExact = 0.0;
            const bool bFeasible = ExactOptimum(p, &dExact);
            fit::SL1Result r = Solve(p);
            ASSERT_EQ(r.eStatus, bFeasible ? EL1Status::eOptimal : EL1Status::eInfeasible);
            if (!bFeasible) continue;
            EXPECT_NEAR(r.dObjective, dExact, kAgree * std::max(1.0, dExact));
            for (size_t j = 0; j < p.pinned.size(); ++j)
                EXPECT_TRUE(p.pinned[j] == 0 || r.x[j] == p.value[j]) << "pinned " << j;
            ExpectCertified(p, r);
        }
    }
}

TEST(ConstrainedL1, ReportsInfeasibleConstraintsAndNeverAnAnswer) {
    // x0 <= -1 with x0 >= 1; x0 + x1 = 1 with x0 + x1 = 2; x0 pinned at 2 with x0 <= 1.
    SProblem opposite, parallel, pinned;
    opposite.n = parallel.n = pinned.n = 2;
    opposite.A = parallel.A = pinned.A = {{1, 0}, {0, 1}, {1, 1}};
    opposite.b = parallel.b = pinned.b = {0, 1, 2};
    opposite.E = {{1, 0}, {-1, 0}};
    opposite.f = {-1, -1};
    parallel.C = {{1, 1}, {1, 1}};
    parallel.d = {1, 2};
    pinned.E = {{1, 0}};
    pinned.f = {1};
    pinned.pinned = {1, 0};
    pinned.value = {2, 0};
    for (const SProblem* p : {&opposite, &parallel, &pinned}) {
        double dExact = 0.0;
        EXPECT_FALSE(ExactOptimum(*p, &dExact));
        EXPECT_EQ(Solve(*p).eStatus, EL1Status::eInfeasible);
    }
}

TEST(ConstrainedL1, TheMatrixFormRefusesBlocksOfTheWrongSize) {
    CNuMatrix A(3, 2), E(1, 1);
    CNuVector b(3), shortB(2), f(1);
    CNuIntArray pinned;
    pinned.Add(0);
    test::ExpectFailures<CNuOperationException>({
        {[&] { fit::acm552m(A, shortB, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); },
         103, nullptr, "CNuConSurf::acm552m()"},
        {[&] { fit::acm552m(A, b, nullptr, nullptr, &E, &f, nullptr, nullptr); }, 103, nullptr,
         "CNuConSurf::acm552m()"},
        {[&] { fit::acm552m(A, b, nullptr, nullptr, nullptr, nullptr, &pinned, nullptr); }, 103,
         nullptr, "CNuConSurf::acm552m()"},
    });
}

}  // namespace
}  // namespace numorix
