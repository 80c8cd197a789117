// Minimax by successive linear programmes with a trust region.
//
//   min over parameters q of  H(q) = max_i |d_i(q)|
//
// At the present q, with d_i and g_i = grad d_i, the linearised problem in the step s is
//   min h   subject to   -h <= d_i + g_i . s <= h   for all i,   |s_j| S_j <= radius,
// written for acm552m as the L1 problem  min |h|  with the inequality rows of the header
// (unknowns s, h and the pinned slot 1). Its value h* <= H(q) predicts the new half width. The
// step is tried on the element itself: with H' = H(q + s),
//   rho = (H - H') / (H - h*)
// decides: rho > 0.01 keeps the step (and doubles the radius when rho > 0.75 and the step
// reached half the radius), otherwise the radius shrinks to a quarter of the step. At a
// minimax point no step predicts a gain (H - h* = 0): first-order stationarity of the Chebyshev
// problem, which is the end.
//
// Only rows near the active bounds are handed to the solver: all rows would be 2n, and the
// optimum depends on the few that bind. A row left out that the step would violate joins and
// the programme is solved again, until none does, so the step is the step of the full problem.
#include "numorix/fit/internal/minimax_driver.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "numorix/fit/internal/constrained_l1.h"
#include "numorix/foundation/exception.h"

namespace numorix {
namespace fit {

namespace {

const char* const kArrays = "CNuConSurf::FitMinZone()::mzconp()";

double LargestAbs(const std::vector<double>& d) {
    double h = 0.0;
    for (double v : d) {
        if (!(std::fabs(v) <= h)) h = std::fabs(v);  // a NaN is kept and ends the run
    }
    return h;
}

double LowerLevel(double dLevel, double dTiny) {
    if (!(dLevel > dTiny)) return dTiny;
    double d = std::pow(10.0, (3.0 * std::log10(dLevel) + std::log10(dTiny)) / 4.0);
    return d < 10.0 * dTiny ? dTiny : d;
}

}  // namespace

SMinimaxResult mzconp(CMinimaxModel& model, double dLevel, double dTiny, const char* pszLocation) {
    const int p = model.Parameters();
    const int n = model.Points();
    const int k = model.Components();
    if (p < 1) throw CNuOperationException(3, "operation", kArrays, 1, p);
    if (n < 1) throw CNuOperationException(3, "operation", kArrays, 1, n);
    if (k < 1) throw CNuOperationException(3, "operation", kArrays, 1, k);
    const int nUnknowns = p + 2;
    const int nH = p;
    const int nSlot = p + 1;
    const long lMaxPasses = 10L * nUnknowns;

    std::vector<double> scale(p);
    for (int j = 0; j < p; ++j)
        scale[j] = model.Scale(j);

    // Values (n k), Jacobian (n k p), distances (n).
    std::vector<double> value(static_cast<size_t>(n) * k), jac(static_cast<size_t>(n) * k * p);
    std::vector<double> trialValue(value.size()), d(n), trial(n);
    auto distances = [&](const std::vector<double>& v, std::vector<double>* pD) {
        for (int i = 0; i < n; ++i) {
            if (k == 1) {
                (*pD)[i] = v[i];
            } else {
                double s = 0.0;
                for (int c = 0; c < k; ++c)
                    s += v[static_cast<size_t>(i) * k + c] * v[static_cast<size_t>(i) * k + c];
                (*pD)[i] = std::sqrt(s);
            }
        }
    };
    model.Evaluate(nullptr, value.data(), jac.data());
    distances(value, &d);
    double h = LargestAbs(d);
    if (!std::isfinite(h)) throw CNuBestfitException(11, pszLocation);
    double level = dLevel < dTiny ? dTiny : dLevel;
    double radius = std::max(h, 10.0 * dTiny);
    const double dNegligible = 1e-3 * dTiny;

    std::vector<double> objective(nUnknowns, 0.0);
    objective[nH] = 1.0;
    const double* ppA[1] = {objective.data()};
    const double b[1] = {0.0};
    std::vector<int> pinned(nUnknowns, 0);
    std::vector<double> pinnedValue(nUnknowns, 0.0);
    pinned[nSlot] = 1;
    pinnedValue[nSlot] = 1.0;

    // The rows of the present pass: the first p + 2 of each are the coefficients of the
    // unknowns (step, h, slot); tag = point * 2 + side for a point's row, -1 for a bound.
    std::vector<double> rowStore;
    std::vector<int> rowTag;
    std::vector<const double*> rows;
    std::vector<double> right;
    std::vector<char> barred(static_cast<size_t>(n) * 2);
    std::vector<int> cuts(n);
    const int nMaxCuts = 4 * p;

    // The row v . (value_i + J_i step) - h <= 0 of point i along the direction v (k components);
    // for one component v is the side +1 or -1.
    auto addPointRow = [&](int i, int nSide, const double* pdV) {
        for (int j = 0; j < p; ++j) {
            double a = 0.0;
            for (int c = 0; c < k; ++c)
                a += pdV[c] * jac[(static_cast<size_t>(i) * k + c) * p + j];
            rowStore.push_back(a);
        }
        rowStore.push_back(-1.0);
        double a = 0.0;
        for (int c = 0; c < k; ++c)
            a += pdV[c] * value[static_cast<size_t>(i) * k + c];
        rowStore.push_back(a);
        right.push_back(0.0);
        rowTag.push_back(2 * i + nSide);
    };
    auto predicted = [&](int i, int c, const std::vector<double>& x) {
        double r = value[static_cast<size_t>(i) * k + c];
        for (int j = 0; j < p; ++j)
            r += jac[(static_cast<size_t>(i) * k + c) * p + j] * x[j];
        return r;
    };

    SMinimaxResult result;
    std::vector<double> step(p), v(k);
    while (true) {
        if (result.nPasses >= lMaxPasses) throw CNuBestfitException(12, pszLocation);
        ++result.nPasses;
        rowStore.clear();
        rowTag.clear();
        right.clear();
        std::fill(barred.begin(), barred.end(), 0);
        std::fill(cuts.begin(), cuts.end(), 0);
        for (int j = 0; j < p; ++j) {
            for (double dSign : {1.0, -1.0}) {
                for (int c = 0; c < nUnknowns; ++c)
                    rowStore.push_back(c == j ? dSign * scale[j] : 0.0);
                right.push_back(radius);
                rowTag.push_back(-1);
            }
        }
        for (int i = 0; i < n; ++i) {
            if (k == 1) {
                double one = 1.0, minusOne = -1.0;
                if (d[i] >= h - level) addPointRow(i, 0, &one);
                if (-d[i] >= h - level) addPointRow(i, 1, &minusOne);
            } else if (d[i] >= h - level && d[i] > 0.0) {
                for (int c = 0; c < k; ++c)
                    v[c] = value[static_cast<size_t>(i) * k + c] / d[i];
                addPointRow(i, 0, v.data());
                ++cuts[i];
            }
        }
        SL1Result lp;
        while (true) {
            const int nRows = static_cast<int>(right.size());
            rows.resize(nRows);
            for (int r = 0; r < nRows; ++r)
                rows[r] = &rowStore[static_cast<size_t>(r) * nUnknowns];
            SL1Problem problem;
            problem.nUnknowns = nUnknowns;
            problem.nObjective = 1;
            problem.ppA = ppA;
            problem.pB = b;
            problem.nInequality = nRows;
            problem.ppE = rows.data();
            problem.pF = right.data();
            problem.pnPinned = pinned.data();
            problem.pdPinnedValue = pinnedValue.data();
            lp = acm552m(problem);
            if (lp.eStatus != EL1Status::eOptimal) throw CNuBestfitException(11, pszLocation);

            // A point row with a negative multiplier leaves, and the programme is solved again.
            int nWorst = -1;
            double dWorst = -1e-12;
            for (int r = 0; r < nRows; ++r) {
                if (rowTag[r] >= 0 && lp.inequality[r] < dWorst) {
                    dWorst = lp.inequality[r];
                    nWorst = r;
                }
            }
            if (nWorst >= 0) {
                barred[rowTag[nWorst]] = 1;
                rowStore.erase(rowStore.begin() + static_cast<long>(nWorst) * nUnknowns,
                               rowStore.begin() + static_cast<long>(nWorst + 1) * nUnknowns);
                rowTag.erase(rowTag.begin() + nWorst);
                right.erase(right.begin() + nWorst);
                continue;
            }
            // Points whose linearised distance the step carries past h join (one component: the
            // side left out; several: a row along the predicted residual, up to 4 p per point).
            const double hStar = lp.x[nH];
            bool bAdded = false;
            for (int i = 0; i < n; ++i) {
                if (k == 1) {
                    double r = predicted(i, 0, lp.x);
                    for (int nSide = 0; nSide < 2; ++nSide) {
                        double dSigned = nSide == 0 ? r : -r;
                        if (dSigned > hStar + dNegligible && barred[2 * i + nSide] == 0) {
                            bool bIn = false;
                            for (int t : rowTag)
                                bIn = bIn || t == 2 * i + nSide;
                            if (bIn) continue;
                            double sign = nSide == 0 ? 1.0 : -1.0;
                            addPointRow(i, nSide, &sign);
                            bAdded = true;
                        }
                    }
                } else if (barred[2 * i] == 0 && cuts[i] < nMaxCuts) {
                    double s = 0.0;
                    for (int c = 0; c < k; ++c) {
                        v[c] = predicted(i, c, lp.x);
                        s += v[c] * v[c];
                    }
                    s = std::sqrt(s);
                    if (s > hStar + dNegligible) {
                        for (int c = 0; c < k; ++c)
                            v[c] /= s;
                        addPointRow(i, 0, v.data());
                        ++cuts[i];
                        bAdded = true;
                    }
                }
            }
            if (!bAdded) break;
        }

        double dStep = 0.0;
        for (int j = 0; j < p; ++j) {
            step[j] = lp.x[j];
            dStep = std::max(dStep, std::fabs(step[j]) * scale[j]);
        }
        const double dPredicted = h - lp.x[nH];
        if (!(dPredicted > dNegligible)) break;  // no step gains: a minimax point
        // At the finest level a gain below ten times tiny is the last step tried: in a curved valley the
        // steps creep on by less than the resolution per pass until the limit.
        const bool bLast = !(level > dTiny) && dPredicted < 10.0 * dTiny;

        model.Evaluate(step.data(), trialValue.data(), nullptr);
        distances(trialValue, &trial);
        const double hTrial = LargestAbs(trial);
        const double dActual = h - hTrial;
        if (std::isfinite(hTrial) && dActual > 0.01 * dPredicted) {
            model.Move(step.data());
            model.Evaluate(nullptr, value.data(), jac.data());
            distances(value, &d);
            h = LargestAbs(d);
            if (!std::isfinite(h)) throw CNuBestfitException(11, pszLocation);
            if (dActual > 0.75 * dPredicted && dStep > 0.5 * radius) radius *= 2.0;
            level = LowerLevel(level, dTiny);
        } else {
            radius = dStep * 0.25;
        }
        if (bLast || (dStep < level && !(level > dTiny))) break;
    }
    result.dHalfWidth = h;
    return result;
}

}  // namespace fit
}  // namespace numorix
