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
    if (p < 1) throw CNuOperationException(3, "operation", kArrays, 1, p);
    if (n < 1) throw CNuOperationException(3, "operation", kArrays, 1, n);
    const int nUnknowns = p + 2;
    const int nH = p;
    const int nSlot = p + 1;
    const long lMaxPasses = 10L * nUnknowns;

    std::vector<double> scale(p);
    for (int j = 0; j < p; ++j)
        scale[j] = model.Scale(j);

    std::vector<double> d(n), g(static_cast<size_t>(n) * p), trial(n);
    model.Evaluate(nullptr, d.data(), g.data());
    double h = LargestAbs(d);
    if (!std::isfinite(h)) throw CNuBestfitException(11, pszLocation);
    double level = dLevel < dTiny ? dTiny : dLevel;
    double radius = std::max(h, 10.0 * dTiny);
    const double dNegligible = 1e-3 * dTiny;

    // Rows of the programme: 1 objective row, the point rows, 2 p bounds.
    std::vector<double> objective(nUnknowns, 0.0);
    objective[nH] = 1.0;
    const double* ppA[1] = {objective.data()};
    const double b[1] = {0.0};
    std::vector<int> pinned(nUnknowns, 0);
    std::vector<double> pinnedValue(nUnknowns, 0.0);
    pinned[nSlot] = 1;
    pinnedValue[nSlot] = 1.0;

    // Membership per point and side: 0 out, 1 in, 2 barred for this pass (negative multiplier).
    std::vector<char> outer(n), inner(n);
    std::vector<double> rowStore;
    std::vector<const double*> rows;
    std::vector<double> right;
    std::vector<int> rowPoint;  // point index * 2 + side (0 outer, 1 inner); -1 for a bound

    SMinimaxResult result;
    std::vector<double> step(p);
    while (true) {
        if (result.nPasses >= lMaxPasses) throw CNuBestfitException(12, pszLocation);
        ++result.nPasses;
        for (int i = 0; i < n; ++i) {
            outer[i] = d[i] >= h - level ? 1 : 0;
            inner[i] = -d[i] >= h - level ? 1 : 0;
        }
        SL1Result lp;
        while (true) {
            rowStore.clear();
            rowPoint.clear();
            right.clear();
            auto addRow = [&](int nTag, double dSign, int i) {
                for (int j = 0; j < p; ++j)
                    rowStore.push_back(dSign * g[static_cast<size_t>(i) * p + j]);
                rowStore.push_back(-1.0);
                rowStore.push_back(dSign * d[i]);
                right.push_back(0.0);
                rowPoint.push_back(nTag);
            };
            for (int i = 0; i < n; ++i) {
                if (outer[i] == 1) addRow(2 * i, 1.0, i);
                if (inner[i] == 1) addRow(2 * i + 1, -1.0, i);
            }
            for (int j = 0; j < p; ++j) {
                for (double dSign : {1.0, -1.0}) {
                    for (int k = 0; k < nUnknowns; ++k)
                        rowStore.push_back(k == j ? dSign * scale[j] : 0.0);
                    right.push_back(radius);
                    rowPoint.push_back(-1);
                }
            }
            const int nRows = static_cast<int>(right.size());
            rows.resize(nRows);
            for (int k = 0; k < nRows; ++k)
                rows[k] = &rowStore[static_cast<size_t>(k) * nUnknowns];

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
            for (int k = 0; k < nRows; ++k) {
                if (rowPoint[k] >= 0 && lp.inequality[k] < dWorst) {
                    dWorst = lp.inequality[k];
                    nWorst = rowPoint[k];
                }
            }
            if (nWorst >= 0) {
                (nWorst % 2 == 0 ? outer : inner)[nWorst / 2] = 2;
                continue;
            }
            // Points left out that the step carries past the half width join.
            const double hStar = lp.x[nH];
            bool bAdded = false;
            for (int i = 0; i < n; ++i) {
                double r = d[i];
                for (int j = 0; j < p; ++j)
                    r += g[static_cast<size_t>(i) * p + j] * lp.x[j];
                if (outer[i] == 0 && r > hStar + dNegligible) {
                    outer[i] = 1;
                    bAdded = true;
                }
                if (inner[i] == 0 && -r > hStar + dNegligible) {
                    inner[i] = 1;
                    bAdded = true;
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

        model.Evaluate(step.data(), trial.data(), nullptr);
        const double hTrial = LargestAbs(trial);
        const double dActual = h - hTrial;
        if (std::isfinite(hTrial) && dActual > 0.01 * dPredicted) {
            model.Move(step.data());
            model.Evaluate(nullptr, d.data(), g.data());
            h = LargestAbs(d);
            if (!std::isfinite(h)) throw CNuBestfitException(11, pszLocation);
            if (dActual > 0.75 * dPredicted && dStep > 0.5 * radius) radius *= 2.0;
            level = LowerLevel(level, dTiny);
        } else {
            radius = dStep * 0.25;
        }
        if (dStep < level && !(level > dTiny)) break;
    }
    result.dHalfWidth = h;
    return result;
}

}  // namespace fit
}  // namespace numorix
