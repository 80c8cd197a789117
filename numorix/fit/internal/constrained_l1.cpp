// The constrained L1 problem as a linear programme, solved by the simplex exchange of Barrodale
// and Roberts (ACM TOMS Algorithm 552, 1980) on the condensed tableau.
//
// The problem. With the pinned unknowns moved to the right-hand side, the rows of A, C and E
// stacked into M and their right-hand sides into b, every row i has a residual variable
//   z_i = b_i - M_i x,
// and the problem is   min sum_i phi_i(z_i)   over the free x, with a convex piecewise linear
// cost of slope c+_i for z_i > 0 and -c-_i for z_i < 0 (a side may be forbidden):
//   objective row      c+ = c- = 1                           |z_i|
//   equality row       both sides forbidden                  z_i = 0
//   inequality row     c+ = 0, negative side forbidden       z_i >= 0
// The classical LP splits z_i = u_i - v_i with u, v >= 0; the columns of u_i and v_i are
// opposite, so the tableau keeps one column for the pair and the sign of z_i says which of them
// is basic.
//
// The condensed tableau. Of the nf free unknowns and m residuals, m are basic (one per row) and
// nf nonbasic at 0. Row r reads  B_r = beta_r - sum_c T[r][c] N_c.  At the start the residuals are
// basic and the unknowns nonbasic: T = M, beta = b. A pivot on (r, c), p = T[r][c]:
//   beta_r' = beta_r / p,  T[r][k]' = T[r][k] / p,  T[r][c]' = 1 / p
//   beta_s' = beta_s - T[s][c] beta_r',  T[s][k]' = T[s][k] - T[s][c] T[r][k]',  T[s][c]' = -T[s][c] / p.
//
// Pricing. A basic residual has the slope of its side (0 on a forbidden side: it is held at 0),
// a basic unknown slope 0. Moving a nonbasic N_c by t in the direction sigma changes the cost at
// the rate  rc = cost_c(sigma) - sigma g_c,  g_c = sum_r slope_r T[r][c],  where cost_c is 0 for
// an unknown (both directions) and c+ or c- for a residual. The column and direction of the most
// negative rc enter; none below -eps ends the stage: optimal. The simplex multipliers are
// y_i = slope of a basic residual and y_i = g_c of a nonbasic one, and M^T y = 0 over the free
// unknowns; hence the weights and multipliers of the result (w = y, v = -y, u = -y).
//
// The Barrodale-Roberts step. As t grows, a basic residual whose rate a_r = -sigma T[r][c] drives
// it towards 0 reaches its breakpoint at t_r = |beta_r| / |a_r|; passing it raises the rate of
// change of the cost by (c+ + c-) |a_r|, or makes it infinite when the other side is forbidden.
// The breakpoints are taken in order of t and passed while the rate stays negative: the row at
// which it turns non-negative leaves the basis, and the rows passed on the way change sign. One
// pivot thus does the work of several ordinary simplex iterations. Basic unknowns have no
// breakpoint and never leave. No breakpoint that stops the step means an unbounded direction,
// which cannot occur for a cost bounded below: it is reported as a failure.
//
// Stages. Stage 1 prices the violations only (equality rows c+ = c- = 1, inequality rows c- = 1,
// objective rows 0); a least sum of violations above the rounding tolerance of the data is
// infeasibility. Stage 2 restores the costs above from the same tableau. Degenerate pivots run
// under Dantzig's rule; after a run of them as long as the tableau, the smallest-index rule of
// Bland with the ordinary ratio test takes over until a pivot makes progress, so the exchange
// cannot cycle. A limit on pivots ends a run that rounding keeps going.
#include "numorix/fit/internal/constrained_l1.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace fit {

namespace {

const char* const kLocation = "CNuConSurf::acm552m()";
const double kInfinity = std::numeric_limits<double>::infinity();

enum ERowKind { eObjective, eEquality, eInequality };

struct SBreak {
    double t;
    double dRate;  // |a_r|, larger first among equal t
    double dJump;
    int r;
};

class CTableau {
  public:
    CTableau(int m, int nf) : m_m(m), m_nf(nf), m_T(static_cast<size_t>(m) * nf), m_beta(m),
                              m_basic(m), m_nonbasic(nf), m_side(m, 1), m_kind(m),
                              m_cPlus(m), m_cMinus(m), m_bForbidPlus(m), m_bForbidMinus(m) {}

    double& T(int r, int c) { return m_T[static_cast<size_t>(r) * m_nf + c]; }

    // Stage 1 (violations) or stage 2 (the problem's own costs).
    void SetCosts(int nStage) {
        for (int i = 0; i < m_m; ++i) {
            m_bForbidPlus[i] = m_bForbidMinus[i] = false;
            switch (m_kind[i]) {
                case eObjective:
                    m_cPlus[i] = m_cMinus[i] = nStage == 1 ? 0.0 : 1.0;
                    break;
                case eEquality:
                    m_cPlus[i] = m_cMinus[i] = nStage == 1 ? 1.0 : 0.0;
                    m_bForbidPlus[i] = m_bForbidMinus[i] = nStage == 2;
                    break;
                case eInequality:
                    m_cPlus[i] = 0.0;
                    m_cMinus[i] = nStage == 1 ? 1.0 : 0.0;
                    m_bForbidMinus[i] = nStage == 2;
                    break;
            }
        }
    }

    // Slope of the variable basic in row r.
    double Slope(int r) const {
        int id = m_basic[r];
        if (id < m_nf) return 0.0;
        int i = id - m_nf;
        if (m_side[i] > 0) return m_bForbidPlus[i] ? 0.0 : m_cPlus[i];
        return m_bForbidMinus[i] ? 0.0 : -m_cMinus[i];
    }

    // g_c and the magnitude of its terms.
    void Price(int c, double* pG, double* pScale) {
        double g = 0.0;
        double s = 0.0;
        for (int r = 0; r < m_m; ++r) {
            double term = Slope(r) * T(r, c);
            g += term;
            s += std::fabs(term);
        }
        *pG = g;
        *pScale = s;
    }

    // Cost of moving nonbasic column c in direction sigma; infinite when forbidden.
    double OwnCost(int c, int sigma) const {
        int id = m_nonbasic[c];
        if (id < m_nf) return 0.0;
        int i = id - m_nf;
        if (sigma > 0) return m_bForbidPlus[i] ? kInfinity : m_cPlus[i];
        return m_bForbidMinus[i] ? kInfinity : m_cMinus[i];
    }

    void Pivot(int r, int c) {
        double p = T(r, c);
        double* pRow = &m_T[static_cast<size_t>(r) * m_nf];
        for (int k = 0; k < m_nf; ++k)
            pRow[k] /= p;
        pRow[c] = 1.0 / p;
        m_beta[r] /= p;
        for (int s = 0; s < m_m; ++s) {
            if (s == r) continue;
            double* pS = &m_T[static_cast<size_t>(s) * m_nf];
            double f = pS[c];
            if (f == 0.0) continue;
            for (int k = 0; k < m_nf; ++k)
                pS[k] -= f * pRow[k];
            pS[c] = -f / p;
            m_beta[s] -= f * m_beta[r];
        }
        std::swap(m_basic[r], m_nonbasic[c]);
    }

    // Runs one stage to its end: 0 optimal, 1 unbounded or out of pivots.
    int Run(double dValueEps, int nPivotLimit, int* pnPivots) {
        int nDegenerate = 0;
        std::vector<SBreak> breaks;
        breaks.reserve(m_m);
        std::vector<SBreak> passed;  // the breakpoints in the order the step passes them
        passed.reserve(m_m);
        while (true) {
            bool bBland = nDegenerate > m_m + m_nf;
            // Entering column and direction.
            int cBest = -1;
            int sigmaBest = 0;
            double rcBest = 0.0;
            double epsBest = 0.0;
            int idBest = std::numeric_limits<int>::max();
            for (int c = 0; c < m_nf; ++c) {
                double g = 0.0;
                double scale = 0.0;
                Price(c, &g, &scale);
                double eps = 1e-11 * (1.0 + scale);
                for (int sigma = 1; sigma >= -1; sigma -= 2) {
                    double own = OwnCost(c, sigma);
                    if (own == kInfinity) continue;
                    double rc = own - sigma * g;
                    if (!(rc < -eps)) continue;
                    if (bBland ? m_nonbasic[c] < idBest : rc < rcBest) {
                        cBest = c;
                        sigmaBest = sigma;
                        rcBest = rc;
                        epsBest = eps;
                        idBest = m_nonbasic[c];
                    }
                }
            }
            if (cBest < 0) return 0;
            if (*pnPivots >= nPivotLimit) return 1;

            // Breakpoints of the basic residuals along the direction.
            double colMax = 0.0;
            for (int r = 0; r < m_m; ++r)
                colMax = std::max(colMax, std::fabs(T(r, cBest)));
            double pivotEps = 1e-11 * colMax;
            breaks.clear();
            for (int r = 0; r < m_m; ++r) {
                int id = m_basic[r];
                if (id < m_nf) continue;
                double tr = T(r, cBest);
                if (!(std::fabs(tr) > pivotEps)) continue;
                int i = id - m_nf;
                double a = -sigmaBest * tr;
                double mag = std::fabs(a);
                if (m_bForbidPlus[i] && m_bForbidMinus[i]) {
                    breaks.push_back({0.0, mag, kInfinity, r});
                    continue;
                }
                int s = m_side[i];
                if (s * a >= 0.0) continue;
                bool bOtherForbidden = s > 0 ? m_bForbidMinus[i] : m_bForbidPlus[i];
                double jump = bOtherForbidden ? kInfinity : (m_cPlus[i] + m_cMinus[i]) * mag;
                if (jump == 0.0) continue;
                double t = std::max(0.0, s * m_beta[r] / mag);
                breaks.push_back({t, mag, jump, r});
            }
            // Passed in order of t, the larger |a_r| first among equal t (the lower basic index
            // under Bland's rule), then the lower row. The step usually stops after a few, so
            // they come off a heap one at a time instead of being sorted all.
            auto later = [&](const SBreak& x, const SBreak& y) {
                if (x.t != y.t) return x.t > y.t;
                if (bBland) return m_basic[x.r] > m_basic[y.r];
                if (x.dRate != y.dRate) return x.dRate < y.dRate;
                return x.r > y.r;
            };
            std::make_heap(breaks.begin(), breaks.end(), later);
            passed.clear();
            int nLeave = -1;
            double rate = rcBest;
            for (auto end = breaks.end(); end != breaks.begin(); --end) {
                std::pop_heap(breaks.begin(), end, later);
                passed.push_back(*(end - 1));
                rate += passed.back().dJump;
                // A rate within rounding of 0 after the last breakpoint is a flat direction.
                bool bLast = end - 1 == breaks.begin();
                if (bBland || rate >= 0.0 || (bLast && rate >= -epsBest)) {
                    nLeave = static_cast<int>(passed.size()) - 1;
                    break;
                }
            }
            if (nLeave < 0) return 1;
            const SBreak& leave = passed[static_cast<size_t>(nLeave)];
            for (int k = 0; k < nLeave; ++k) {
                int i = m_basic[passed[static_cast<size_t>(k)].r] - m_nf;
                m_side[i] = -m_side[i];
            }
            if (leave.t * leave.dRate <= dValueEps)
                ++nDegenerate;
            else
                nDegenerate = 0;
            int idEnter = m_nonbasic[cBest];
            Pivot(leave.r, cBest);
            ++*pnPivots;
            if (idEnter >= m_nf) m_side[idEnter - m_nf] = sigmaBest;
            for (int r = 0; r < m_m; ++r) {
                int id = m_basic[r];
                if (id < m_nf) continue;
                int i = id - m_nf;
                if (std::fabs(m_beta[r]) > dValueEps) {
                    m_side[i] = m_beta[r] > 0.0 ? 1 : -1;
                } else if ((m_side[i] > 0 && m_bForbidMinus[i]) ||
                           (m_side[i] < 0 && m_bForbidPlus[i])) {
                    m_beta[r] = 0.0;  // rounding across a bound that may not be crossed
                }
            }
        }
    }

    // Value of every residual variable (basic: beta, nonbasic: 0).
    double ResidualValue(int i) const {
        for (int r = 0; r < m_m; ++r)
            if (m_basic[r] == m_nf + i) return m_beta[r];
        return 0.0;
    }

    int m_m;
    int m_nf;
    std::vector<double> m_T;
    std::vector<double> m_beta;
    std::vector<int> m_basic;
    std::vector<int> m_nonbasic;
    std::vector<int> m_side;
    std::vector<int> m_kind;
    std::vector<double> m_cPlus;
    std::vector<double> m_cMinus;
    std::vector<char> m_bForbidPlus;
    std::vector<char> m_bForbidMinus;
};

// Rows of no unknowns are never read, so their pointers may be null.
void CheckBlock(int nRows, const double* const* ppRows, const double* pRight, int nUnknowns) {
    if (nRows < 0) throw CNuOperationException(3, "operation", kLocation, 0, 0);
    if (nRows > 0 && (ppRows == nullptr || pRight == nullptr))
        throw CNuOperationException(3, "operation", kLocation, 0, nRows - 1);
    for (int k = 0; k < nRows && nUnknowns > 0; ++k)
        if (ppRows[k] == nullptr) throw CNuOperationException(3, "operation", kLocation, 0, k);
}

}  // namespace

SL1Result acm552m(const SL1Problem& problem) {
    const int n = problem.nUnknowns;
    if (n < 0) throw CNuOperationException(3, "operation", kLocation, 0, 0);
    CheckBlock(problem.nObjective, problem.ppA, problem.pB, n);
    CheckBlock(problem.nEquality, problem.ppC, problem.pD, n);
    CheckBlock(problem.nInequality, problem.ppE, problem.pF, n);

    SL1Result result;
    result.x.assign(n, 0.0);
    std::vector<int> freeIndex;
    for (int j = 0; j < n; ++j) {
        bool bPinned = problem.pnPinned != nullptr && problem.pnPinned[j] != 0;
        if (bPinned)
            result.x[j] = problem.pdPinnedValue != nullptr ? problem.pdPinnedValue[j] : 0.0;
        else
            freeIndex.push_back(j);
    }
    const int nf = static_cast<int>(freeIndex.size());
    const int m = problem.nObjective + problem.nEquality + problem.nInequality;

    CTableau tableau(m, nf);
    double dScale = 0.0;
    bool bFinite = true;
    int i = 0;
    auto load = [&](int nRows, const double* const* ppRows, const double* pRight, int kind) {
        for (int k = 0; k < nRows; ++k, ++i) {
            const double* pRow = ppRows[k];
            double rhs = pRight[k];
            for (int j = 0; j < n; ++j)
                if (problem.pnPinned != nullptr && problem.pnPinned[j] != 0)
                    rhs -= pRow[j] * result.x[j];
            for (int c = 0; c < nf; ++c) {
                tableau.T(i, c) = pRow[freeIndex[c]];
                if (!std::isfinite(pRow[freeIndex[c]])) bFinite = false;
            }
            if (!std::isfinite(rhs)) bFinite = false;
            tableau.m_beta[i] = rhs;
            tableau.m_basic[i] = nf + i;
            tableau.m_kind[i] = kind;
            tableau.m_side[i] = rhs < 0.0 ? -1 : 1;
            dScale = std::max(dScale, std::fabs(rhs));
        }
    };
    load(problem.nObjective, problem.ppA, problem.pB, eObjective);
    load(problem.nEquality, problem.ppC, problem.pD, eEquality);
    load(problem.nInequality, problem.ppE, problem.pF, eInequality);
    for (int c = 0; c < nf; ++c)
        tableau.m_nonbasic[c] = c;

    result.residuals.assign(problem.nObjective, 0.0);
    result.weights.assign(problem.nObjective, 0.0);
    result.equality.assign(problem.nEquality, 0.0);
    result.inequality.assign(problem.nInequality, 0.0);
    if (!bFinite) return result;

    const double dValueEps = 1e-12 * (1.0 + dScale);
    const int nPivotLimit = 50 * (m + nf) + 100;
    const int nConstraintRows = problem.nEquality + problem.nInequality;

    // Stage 1: the constraints.
    if (nConstraintRows > 0) {
        tableau.SetCosts(1);
        if (tableau.Run(dValueEps, nPivotLimit, &result.nPivots) != 0) return result;
        double dViolation = 0.0;
        for (int r = 0; r < m; ++r) {
            int id = tableau.m_basic[r];
            if (id < nf) continue;
            int k = tableau.m_kind[id - nf];
            double v = tableau.m_beta[r];
            if (k == eEquality) dViolation += std::fabs(v);
            if (k == eInequality && v < 0.0) dViolation -= v;
        }
        if (dViolation > 1e-9 * (1.0 + dScale)) {
            result.eStatus = EL1Status::eInfeasible;
            return result;
        }
        // What is left is rounding: the constraint residuals go to their bounds.
        for (int r = 0; r < m; ++r) {
            int id = tableau.m_basic[r];
            if (id < nf) continue;
            int k = tableau.m_kind[id - nf];
            double& v = tableau.m_beta[r];
            if (k == eEquality || (k == eInequality && v < 0.0)) v = 0.0;
            if (k != eObjective) tableau.m_side[id - nf] = 1;
        }
    }
    for (int r = 0; r < m; ++r) {
        int id = tableau.m_basic[r];
        if (id >= nf && tableau.m_kind[id - nf] == eObjective)
            tableau.m_side[id - nf] = tableau.m_beta[r] < 0.0 ? -1 : 1;
    }

    // Stage 2: the sum of absolute residuals.
    tableau.SetCosts(2);
    if (tableau.Run(dValueEps, nPivotLimit, &result.nPivots) != 0) return result;

    for (int r = 0; r < m; ++r)
        if (tableau.m_basic[r] < nf) result.x[freeIndex[tableau.m_basic[r]]] = tableau.m_beta[r];

    // Multipliers: y of a basic residual is its slope, of a nonbasic one g of its column.
    std::vector<double> y(m, 0.0);
    for (int r = 0; r < m; ++r)
        if (tableau.m_basic[r] >= nf) y[tableau.m_basic[r] - nf] = tableau.Slope(r);
    for (int c = 0; c < nf; ++c) {
        int id = tableau.m_nonbasic[c];
        if (id < nf) continue;
        double g = 0.0;
        double scale = 0.0;
        tableau.Price(c, &g, &scale);
        y[id - nf] = g;
    }
    for (int k = 0; k < problem.nObjective; ++k) {
        const double* pRow = problem.ppA[k];
        double r = problem.pB[k];
        for (int j = 0; j < n; ++j)
            r -= pRow[j] * result.x[j];
        result.residuals[k] = r;
        result.dObjective += std::fabs(r);
        result.weights[k] = std::max(-1.0, std::min(1.0, y[k]));
    }
    for (int k = 0; k < problem.nEquality; ++k)
        result.equality[k] = -y[problem.nObjective + k];
    for (int k = 0; k < problem.nInequality; ++k)
        result.inequality[k] = -y[problem.nObjective + problem.nEquality + k];
    result.eStatus = EL1Status::eOptimal;
    return result;
}

SL1Result acm552m(const CNuMatrix& A, const CNuVector& b, const CNuMatrix* pC, const CNuVector* pD,
                  const CNuMatrix* pE, const CNuVector* pF, const CNuIntArray* pPinned,
                  const CNuVector* pPinnedValues) {
    const int n = A.GetColumnSize();
    auto check = [&](const CNuMatrix* pM, const CNuVector* pV) {
        if ((pM == nullptr) != (pV == nullptr))
            throw CNuOperationException(3, "operation", kLocation, 0, 0);
        if (pM == nullptr) return;
        if (pM->GetColumnSize() != n)
            throw CNuOperationException(3, "operation", kLocation, 0, n - 1);
        if (pV->GetSize() != pM->GetRowSize())
            throw CNuOperationException(3, "operation", kLocation, 0, pM->GetRowSize() - 1);
    };
    check(&A, &b);
    check(pC, pD);
    check(pE, pF);
    if (pPinned != nullptr && pPinned->GetSize() != n)
        throw CNuOperationException(3, "operation", kLocation, 0, n - 1);
    if (pPinnedValues != nullptr && pPinnedValues->GetSize() != n)
        throw CNuOperationException(3, "operation", kLocation, 0, n - 1);
    SL1Problem problem;
    problem.nUnknowns = n;
    problem.nObjective = A.GetRowSize();
    problem.ppA = A.GetData();
    problem.pB = b.GetData();
    if (pC != nullptr) {
        problem.nEquality = pC->GetRowSize();
        problem.ppC = pC->GetData();
        problem.pD = pD->GetData();
    }
    if (pE != nullptr) {
        problem.nInequality = pE->GetRowSize();
        problem.ppE = pE->GetData();
        problem.pF = pF->GetData();
    }
    problem.pnPinned = pPinned != nullptr ? pPinned->GetData() : nullptr;
    problem.pdPinnedValue = pPinnedValues != nullptr ? pPinnedValues->GetData() : nullptr;
    return acm552m(problem);
}

}  // namespace fit
}  // namespace numorix
