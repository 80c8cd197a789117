// Tolerances, constants and version labels.
//
// Nine tolerances steer every comparison of reals in the library. Each is held separately for
// each thread, keyed by the operating system's 32-bit thread identifier: a value set on one
// thread is never seen on another, and the first read by a thread creates its entry with the
// default. Setters store any double unchecked (0, negatives and NaN included); nothing resets a
// tolerance to its default, and a thread that is given the identifier of an ended thread inherits
// that thread's values.
//
//   tolerance        default             read by
//   Large            1e300               refusal of huge multipliers; start of minimum searches
//   Zero             1e-300              what counts as zero; refusal of tiny divisors
//   Tol              4.45e-16            decompositions, solvers, rotation matrices, fits
//   SqrtTol          1.5e-8              the trigonometric equation solver
//   LengthTol        1e-12               distances, intersections, closest points
//   MinEdgeLength    1e-9                polyline distances and offsets
//   DegreeTol        2.777777777778e-10  parallelism of lines and planes, in degrees
//   RadianTol        4.848136811094e-12  arcs, conics, sine and cosine curves, in radians
//   MinAngle         2.777777777778e-8   equality of vectors
//
// Reads sit in the inner loops of every numerical routine, so a read is two loads from the
// calling thread's own record; only a thread's first touch takes the registry's lock.
#ifndef NUMORIX_FOUNDATION_TOLERANCE_H
#define NUMORIX_FOUNDATION_TOLERANCE_H

#include <cstdint>

namespace numorix {

namespace tolerance_detail {

enum ETolerance : int {
    eLarge,
    eZero,
    eTol,
    eSqrtTol,
    eLengthTol,
    eMinEdgeLength,
    eDegreeTol,
    eRadianTol,
    eMinAngle,
    eToleranceCount
};

// One thread's tolerances, in the order of ETolerance.
struct ThreadTolerances {
    double adValue[eToleranceCount];
};

// The calling thread's record, or null before its first touch.
extern __thread ThreadTolerances* t_pThreadTolerances __attribute__((tls_model("initial-exec")));

// Finds or creates the calling thread's record in the registry and caches it for the thread.
ThreadTolerances& AttachThread();

inline double& Slot(ETolerance eWhich) {
    ThreadTolerances* p = t_pThreadTolerances;
    return (p != nullptr ? *p : AttachThread()).adValue[eWhich];
}

}  // namespace tolerance_detail

inline double NuGetLarge() { return tolerance_detail::Slot(tolerance_detail::eLarge); }
inline double NuGetZero() { return tolerance_detail::Slot(tolerance_detail::eZero); }
inline double NuGetTol() { return tolerance_detail::Slot(tolerance_detail::eTol); }
inline double NuGetSqrtTol() { return tolerance_detail::Slot(tolerance_detail::eSqrtTol); }
inline double NuGetLengthTol() { return tolerance_detail::Slot(tolerance_detail::eLengthTol); }
inline double NuGetMinEdgeLength() {
    return tolerance_detail::Slot(tolerance_detail::eMinEdgeLength);
}
inline double NuGetDegreeTol() { return tolerance_detail::Slot(tolerance_detail::eDegreeTol); }
inline double NuGetRadianTol() { return tolerance_detail::Slot(tolerance_detail::eRadianTol); }
inline double NuGetMinAngle() { return tolerance_detail::Slot(tolerance_detail::eMinAngle); }

inline void NuSetLarge(double d) { tolerance_detail::Slot(tolerance_detail::eLarge) = d; }
inline void NuSetZero(double d) { tolerance_detail::Slot(tolerance_detail::eZero) = d; }
inline void NuSetTol(double d) { tolerance_detail::Slot(tolerance_detail::eTol) = d; }
inline void NuSetSqrtTol(double d) { tolerance_detail::Slot(tolerance_detail::eSqrtTol) = d; }
inline void NuSetLengthTol(double d) { tolerance_detail::Slot(tolerance_detail::eLengthTol) = d; }
inline void NuSetMinEdgeLength(double d) {
    tolerance_detail::Slot(tolerance_detail::eMinEdgeLength) = d;
}
inline void NuSetDegreeTol(double d) { tolerance_detail::Slot(tolerance_detail::eDegreeTol) = d; }
inline void NuSetRadianTol(double d) { tolerance_detail::Slot(tolerance_detail::eRadianTol) = d; }
inline void NuSetMinAngle(double d) { tolerance_detail::Slot(tolerance_detail::eMinAngle) = d; }

// The identifier that keys a thread's tolerances: 32 bits, distinct among running threads.
std::uint32_t NuCurrentThreadId();

// pi = acos(-1), 2 pi, e = exp(1), sqrt(2), each the double nearest the true value.
extern const double Nu_PI;
extern const double Nu_2PI;
extern const double Nu_E;
extern const double Nu_SQRT2;

extern const std::uint32_t NuMajorVersionLabel;  // 3
extern const std::uint32_t NuMinorVersionLabel;  // 0
extern const std::uint32_t NuBuildVersionLabel;  // 0

}  // namespace numorix

#endif  // NUMORIX_FOUNDATION_TOLERANCE_H
