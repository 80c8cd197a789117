// The outcome of every non-throwing fit (the operations whose names end in Ex), and the scan
// cursor that the zone fits of planes, circles and spheres keep between rounds of their exchange.
//
//   eNuFitOk            the fit finished; the element holds the result
//   eNuFitNotConverged  the fit reached its iteration limit (best-fit cause 12, stored 212)
//   eNuFitFailed        any other failure was caught inside the operation
//
// An iteration limit not above 0 is refused with stored cause 213 before any guarded region, so
// an Ex operation lets that one failure escape as an exception.
#ifndef NUMORIX_FIT_FIT_RESULT_H
#define NUMORIX_FIT_FIT_RESULT_H

namespace numorix {

enum ENuFitResult : int { eNuFitOk = 0, eNuFitNotConverged = 1, eNuFitFailed = 2 };

// The index at which PointNotCovered resumes its round-robin scan. A zone fit resets it to 0
// before it starts scanning; it records nothing about which points are covered.
struct SPointCoverage {
    SPointCoverage() : m_nCursor(0) {}
    SPointCoverage(const SPointCoverage&) = default;
    SPointCoverage& operator=(const SPointCoverage&) = default;

    int m_nCursor;
};

}  // namespace numorix

#endif  // NUMORIX_FIT_FIT_RESULT_H
