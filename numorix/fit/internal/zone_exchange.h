// The exchange of the circle and sphere zones, private to the fit sources.
//
// A zone of a small active set is solved exactly over all its supports (four points of a
// circle's annulus, five of a sphere's shell); a round-robin scan of all points finds one outside
// the zone, which leads the next active set; at most kMaxActive points are kept and needless ones
// are dropped (those whose removal leaves the zone as it is), until no point is left outside.
//
// Ties make the exchange cycle: on sparse points over an arc, or seen along a trial axis of a
// cylinder near its optimum, many supports give zones within dTolerance of one width, a point
// outside any one of the tied candidates counts as uncovered, and the reduction drops points that
// come back later. A round is a function of the active set and the point k alone, so once that
// pair repeats the exchange can only run into its limit. Brent's cycle finder spots the repeat
// (one comparison per round, a copy at powers of two); the cycle is then walked once more and the
// narrowest candidate that holds every point within its own half width plus dTolerance ends the
// exchange. That zone is the exact zone of a subset of the points (up to the tie tolerance), which
// bounds the zone of all points from below: it is the minimum zone, to dTolerance on either side
// (a point may lie dTolerance outside, as at every end of the exchange). When no candidate of the
// cycle holds every point, the exchange goes on with the scan testing the first candidate alone
// (the ties no longer count); it ends as the exchange does, with a first candidate that holds
// every point. If that cycles too without such a candidate, no point is dropped any more: the
// first candidate holds every active point, so each point the scan finds is new, the active set
// grows, and the exchange ends at the latest with all points active. The limit counts every
// round, so a low limit still ends in 212.
//
// Candidates are listed as two points each: the centre, and (mean radius, half width, 0).
#ifndef NUMORIX_FIT_INTERNAL_ZONE_EXCHANGE_H
#define NUMORIX_FIT_INTERNAL_ZONE_EXCHANGE_H

#include <algorithm>
#include <cmath>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/geometry/point_array.h"

namespace numorix {
namespace fit {

// The most active points kept from one round to the next.
const int kMaxActive = 10;

// Brent's cycle finder over the states of the exchange: the point k and the active set, in order.
// Repeats is given each state once; it keeps a copy of the state at the powers of two and reports
// the first state equal to the copy, the distance from it being the length of the cycle.
class CExchangeCycle {
  public:
    bool Repeats(int nK, const CNuIntArray& active) {
        if (m_lPower == 0) {
            Save(nK, active);
            m_lPower = 1;
            return false;
        }
        ++m_lLength;
        if (Equals(nK, active)) return true;
        if (m_lLength == m_lPower) {
            Save(nK, active);
            m_lPower *= 2;
            m_lLength = 0;
        }
        return false;
    }
    long Length() const { return m_lLength; }

  private:
    void Save(int nK, const CNuIntArray& active) {
        m_saved.Clear();
        m_saved.Add(nK);
        for (int i = 0; i < active.GetSize(); ++i)
            m_saved.Add(active.GetData()[i]);
    }
    bool Equals(int nK, const CNuIntArray& active) const {
        if (m_saved.GetSize() != active.GetSize() + 1 || m_saved.GetData()[0] != nK) return false;
        return std::equal(active.GetData(), active.GetData() + active.GetSize(),
                          m_saved.GetData() + 1);
    }

    CNuIntArray m_saved{kMaxActive + 2};
    long m_lPower = 0;
    long m_lLength = 0;
};

// Whether the active set holds every one of the n points. A point can be found outside a tied
// candidate while it is active (the scan allows the first candidate's width, the tie its own), and
// with a negative tolerance a point on the zone counts as outside it; it then joins the set
// twice, so the length of the set does not say how many points it holds.
inline bool HoldsEveryPoint(const CNuIntArray& active, int n) {
    const int* a = active.GetData();
    int m = active.GetSize();
    if (m < n) return false;
    int nDistinct = 0;
    for (int i = 0; i < m; ++i)
        if (std::find(a, a + i, a[i]) == a + i) ++nDistinct;
    return nDistinct >= n;
}

// The exchange from the first point k found outside the zone of the active set *pActive, whose
// support and candidates *pSupport and *pCandidates hold; on return *pCandidates holds the zone.
//   solve(active, pSupport, pCandidates)   the exact zone of an active set
//   scan(candidates)                       the next point outside, or -1
//   covers(c)                              whether the candidate at c holds every point within
//                                          its own half width plus dTolerance
// Reaching lMaxIterations rounds raises stored 212 located pszLocation.
template <class Solve, class Scan, class Covers>
void RunExchange(int n, long k, double dTolerance, long lMaxIterations, const char* pszLocation,
                 CNuIntArray* pActive, CNuIntArray* pSupport, CNuPointArray* pCandidates,
                 Solve&& solve, Scan&& scan, Covers&& covers) {
    CNuIntArray& active = *pActive;
    CNuIntArray& support = *pSupport;
    CNuPointArray& candidates = *pCandidates;
    long iter = 0;
    CNuIntArray trialSupport(5);
    CNuPointArray trialCandidates(8);
    CExchangeCycle cycle;
    long lWalk = 0;  // rounds of a found cycle still to be walked
    CNuPointArray covering(2);
    // After a cycle without a candidate that holds every point the scan tests the first candidate
    // alone (1); after a second one no point is dropped either (2).
    int nFallback = 0;
    while (k != -1) {
        if (!(iter < lMaxIterations)) throw CNuBestfitException(12, pszLocation);
        ++iter;
        int nK = static_cast<int>(k);
        if (lWalk == 0 && cycle.Repeats(nK, active)) lWalk = cycle.Length();
        active.Add(active.GetData()[0]);
        active.GetData()[0] = nK;
        solve(active, &support, &candidates);
        if (candidates.GetSize() == 0) solve(active, &support, &candidates);
        if (lWalk > 0) {
            const CNuPoint* c = candidates.GetData();
            for (int m = 0; m < candidates.GetSize(); m += 2) {
                bool bNarrower = covering.GetSize() == 0 || c[m + 1].y() < covering[1].y();
                if (bNarrower && covers(c + m)) {
                    covering.Clear();
                    covering.Add(c[m]);
                    covering.Add(c[m + 1]);
                }
            }
            if (--lWalk == 0) {
                if (covering.GetSize() > 0) {
                    candidates = covering;
                    break;
                }
                if (nFallback == 2) throw CNuBestfitException(12, pszLocation);
                ++nFallback;
                cycle = CExchangeCycle();
            }
        }
        if (HoldsEveryPoint(active, n)) break;
        if (nFallback == 2) {
            if (candidates.GetSize() > 2) candidates.Truncate(2);
            k = scan(candidates);
            continue;
        }

        // k leads, then the rest of the best support, then the other active points.
        CNuIntArray list(active.GetSize());
        list.Add(nK);
        for (int i = 0; i < support.GetSize(); ++i)
            if (list.Find(support.GetData()[i]) < 0) list.Add(support.GetData()[i]);
        int nFixed = list.GetSize();
        for (int i = 0; i < active.GetSize() && list.GetSize() < kMaxActive; ++i)
            if (list.Find(active.GetData()[i]) < 0) list.Add(active.GetData()[i]);

        // An extra point whose removal leaves the zone as it is is needless.
        CNuIntArray kept(list.GetSize());
        for (int i = 0; i < nFixed; ++i)
            kept.Add(list.GetData()[i]);
        for (int e = nFixed; e < list.GetSize(); ++e) {
            CNuIntArray trial(kept);
            for (int f = e + 1; f < list.GetSize(); ++f)
                trial.Add(list.GetData()[f]);
            trialCandidates.Clear();
            solve(trial, &trialSupport, &trialCandidates);
            bool bNeedless =
                trialCandidates.GetSize() == candidates.GetSize() && candidates.GetSize() > 0 &&
                std::fabs(trialCandidates.GetData()[1].y() - candidates.GetData()[1].y()) <
                    dTolerance;
            if (!bNeedless) kept.Add(list.GetData()[e]);
        }
        active = kept;
        if (nFallback == 1 && candidates.GetSize() > 2) candidates.Truncate(2);
        k = scan(candidates);
    }
}

}  // namespace fit
}  // namespace numorix

#endif  // NUMORIX_FIT_INTERNAL_ZONE_EXCHANGE_H
