// Shared decoding for the fuzz targets: turns the fuzzer's bytes into what a caller could hand the
// library (numbers ordinary, huge, tiny, denormal, zero, NaN or infinite; point sets shaped like
// measurements: duplicates, collinear, coplanar, on a circle; tolerances; iteration limits), and
// the checks every target shares. NUMORIX_FUZZ_CHECK is the one way a target reports a broken
// promise; with NUMORIX_FUZZ_DUMP set, the decoded input is printed exactly (hexadecimal), so that
// a reproducer can be written down as a plain test.
#ifndef NUMORIX_TESTS_FUZZ_FUZZ_SUPPORT_H
#define NUMORIX_TESTS_FUZZ_FUZZ_SUPPORT_H

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include <numorix/numorix.h>

#define NUMORIX_FUZZ_CHECK(condition)                                                              \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "broken promise at %s:%d: %s\n", __FILE__, __LINE__, #condition); \
            __builtin_trap();                                                                      \
        }                                                                                          \
    } while (0)

namespace fuzz {

using numorix::CNuPoint;
using numorix::CNuPointArray;
using numorix::CNuVector;
using Real = long double;  // the checks' own arithmetic, finer than the library's

inline double Dump(const char* pszWhat, double d) {
    static const bool bDump = std::getenv("NUMORIX_FUZZ_DUMP") != nullptr;
    if (bDump) std::fprintf(stderr, "%s %a (%.17g)\n", pszWhat, d, d);
    return d;
}
inline int Dump(const char* pszWhat, int n) { return static_cast<int>(Dump(pszWhat, double(n))); }

// One number from the mix; non-finite ones are rare so that most sets reach the fits.
inline double Number(FuzzedDataProvider& fdp) {
    const double dSign = fdp.ConsumeBool() ? -1.0 : 1.0;
    switch (fdp.ConsumeIntegralInRange<int>(0, 15)) {
        case 0: return 0.0;
        case 1: return dSign * std::pow(10.0, fdp.ConsumeFloatingPointInRange<double>(150, 300));
        case 2: return dSign * 1e-300 * fdp.ConsumeFloatingPointInRange<double>(0.0, 1000.0);
        case 3:
            return dSign * std::numeric_limits<double>::denorm_min() *
                   fdp.ConsumeIntegralInRange<int>(1, 1 << 20);
        case 4: return fdp.ConsumeBool() ? std::nan("") : dSign * HUGE_VAL;
        case 5: return fdp.ConsumeFloatingPoint<double>();
        case 6: return dSign * std::pow(10.0, fdp.ConsumeFloatingPointInRange<double>(-20, 20));
        case 7:
        case 8: return fdp.ConsumeIntegralInRange<int>(-100, 100);
        default: return fdp.ConsumeFloatingPointInRange<double>(-1000.0, 1000.0);
    }
}

// A fit tolerance: usual, zero, negative, extreme, or any number.
inline double Tolerance(FuzzedDataProvider& fdp) {
    const int nKind = fdp.ConsumeIntegralInRange<int>(0, 7);
    const double d = nKind == 0   ? 0.0
                     : nKind == 1 ? -fdp.ConsumeFloatingPointInRange<double>(0.0, 1.0)
                     : nKind == 2 ? 1e-300
                     : nKind == 3 ? 1e300
                     : nKind == 4 ? Number(fdp)
                                  : std::pow(10.0, -fdp.ConsumeIntegralInRange<int>(1, 15));
    return Dump("tolerance", d);
}

// An iteration limit: usual, zero, negative, one, or small.
inline long Iterations(FuzzedDataProvider& fdp) {
    const int nKind = fdp.ConsumeIntegralInRange<int>(0, 5);
    const long l = nKind == 0   ? 0
                   : nKind == 1 ? -fdp.ConsumeIntegralInRange<long>(1, 1000000)
                   : nKind == 2 ? 1
                   : nKind == 3 ? fdp.ConsumeIntegralInRange<long>(1, 10)
                                : fdp.ConsumeIntegralInRange<long>(10, 2000);
    Dump("iterations", static_cast<double>(l));
    return l;
}

// Up to nMax points on a shape (free, line, plane, circle), flat in z or turned about (1, 1, 1),
// scaled and offset by numbers from the mix, some with noise, some exact copies of earlier ones.
inline CNuPointArray Points(FuzzedDataProvider& fdp, int nMax = 64) {
    const int nCount = fdp.ConsumeIntegralInRange<int>(0, nMax);
    const int nShape = fdp.ConsumeIntegralInRange<int>(0, 4);
    const bool bFlat = fdp.ConsumeBool();
    const double dScale = fdp.ConsumeBool() ? 1.0 : Number(fdp);
    double o[3];
    for (double& d : o) d = fdp.ConsumeBool() ? 0.0 : Number(fdp);
    const double dNoise = fdp.ConsumeBool() ? 0.0 : Number(fdp);
    CNuPointArray points;
    for (int i = 0; i < nCount && fdp.remaining_bytes() > 0; ++i) {
        const int nKind = fdp.ConsumeIntegralInRange<int>(0, 9);
        if (nKind == 0 && points.GetSize() > 0) {
            points.Add(points[fdp.ConsumeIntegralInRange<int>(0, points.GetSize() - 1)]);
            Dump("x", points[i].x()), Dump("y", points[i].y()), Dump("z", points[i].z());
            continue;
        }
        double a[3] = {0.0, 0.0, 0.0};
        if (nKind == 1 || nShape == 0) {
            for (double& d : a) d = Number(fdp);
        } else {
            const double t = fdp.ConsumeFloatingPointInRange<double>(-1.0, 1.0);
            const double s = fdp.ConsumeFloatingPointInRange<double>(-1.0, 1.0);
            const double e = nKind == 2 ? dNoise * fdp.ConsumeFloatingPointInRange<double>(-1, 1) : 0;
            if (nShape == 1) {
                a[0] = t, a[1] = 0.5 * t + e;
            } else if (nShape == 2) {
                a[0] = t, a[1] = s, a[2] = e;
            } else {
                a[0] = std::cos(3.0 * t) * (1.0 + e), a[1] = std::sin(3.0 * t) * (1.0 + e);
            }
            if (!bFlat) {
                const double b[3] = {a[0], a[1], a[2]};
                a[0] = (2 * b[0] - b[1] + 2 * b[2]) / 3.0;
                a[1] = (2 * b[0] + 2 * b[1] - b[2]) / 3.0;
                a[2] = (-b[0] + 2 * b[1] + 2 * b[2]) / 3.0;
            }
        }
        points.Add(CNuPoint(o[0] + dScale * a[0], o[1] + dScale * a[1], o[2] + dScale * a[2]));
        Dump("x", points[i].x()), Dump("y", points[i].y()), Dump("z", points[i].z());
    }
    return points;
}

inline bool IsFinite(const CNuPoint& p) {
    return std::isfinite(p.x()) && std::isfinite(p.y()) && std::isfinite(p.z());
}

inline int FirstNonFinite(const CNuPointArray& points) {
    for (int i = 0; i < points.GetSize(); ++i)
        if (!IsFinite(points[i])) return i;
    return -1;
}

// The largest coordinate magnitude: the scale of the data's rounding.
inline double Magnitude(const CNuPointArray& points) {
    double d = 0.0;
    for (int i = 0; i < points.GetSize(); ++i)
        d = std::max({d, std::fabs(points[i].x()), std::fabs(points[i].y()), std::fabs(points[i].z())});
    return d;
}


inline bool IsUnit(const CNuVector& v) {
    const double d = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    return v.GetSize() == 3 && std::isfinite(d) && std::fabs(d - 1.0) < 1e-9;
}

// Component of p - q along the unit vector n, and the distance of p from the line through q
// along n.
inline Real Along(const CNuPoint& p, const CNuPoint& q, const CNuVector& n) {
    return (Real(p.x()) - q.x()) * n[0] + (Real(p.y()) - q.y()) * n[1] + (Real(p.z()) - q.z()) * n[2];
}
inline Real Across(const CNuPoint& p, const CNuPoint& q, const CNuVector& n) {
    const Real t = Along(p, q, n);
    const Real e[3] = {p.x() - q.x() - t * n[0], p.y() - q.y() - t * n[1], p.z() - q.z() - t * n[2]};
    return std::sqrt(e[0] * e[0] + e[1] * e[1] + e[2] * e[2]);
}

// Every point's measure f(point) within [dLow - dSlack, dHigh + dSlack].
template <class F>
void CheckBand(const CNuPointArray& points, F&& f, Real dLow, Real dHigh, Real dSlack) {
    for (int i = 0; i < points.GetSize(); ++i) {
        const Real d = f(points[i]);
        NUMORIX_FUZZ_CHECK(d >= dLow - dSlack && d <= dHigh + dSlack);
    }
}

// Every point's distance from the axis through q along the unit u within [dLow, dHigh], up to the
// slack and the rounding of an axis point or a radius dSize far larger than the data (a circle
// through three nearly collinear points, an axis point at the foot of the world origin).
inline void CheckAxisBand(const CNuPointArray& points, const CNuPoint& q, const CNuVector& u,
                          Real dLow, Real dHigh, Real dSlack, Real dSize = 0.0L) {
    dSize += std::fabs(q.x()) + std::fabs(q.y()) + std::fabs(q.z());
    auto across = [&](const CNuPoint& p) { return Across(p, q, u); };
    CheckBand(points, across, dLow, dHigh, dSlack + 1e-9L * dSize);
}

// Runs f(); false when it refused with one of the library's exceptions (anything else escapes).
template <class F>
bool Attempt(F&& f) {
    try {
        f();
        return true;
    } catch (const numorix::CNuException&) {
        return false;
    }
}

// Data whose squares and sums of squares stay normal numbers, as must the squares of their
// differences (lengths are taken unscaled): on such data every figure a fit returns is finite,
// and every direction a unit vector.
inline bool Representable(const CNuPointArray& points) {
    Real dRange = 0.0L;
    for (int i = 1; i < points.GetSize(); ++i)
        dRange = std::max({dRange, std::fabs(Real(points[i].x()) - points[0].x()),
                           std::fabs(Real(points[i].y()) - points[0].y()),
                           std::fabs(Real(points[i].z()) - points[0].z())});
    return Magnitude(points) < 1e140 && (dRange == 0.0L || dRange > 1e-140L);
}

// The slack of a containment check: rounding relative to the size of the data, plus twice the
// fit's tolerance when positive (a point may sit a tolerance off the plane the exchange works in
// and a tolerance off its chords).
inline Real Slack(double dTolerance, const CNuPointArray& points) {
    return 1e-9L * Magnitude(points) + 1e-300L + (dTolerance > 0.0 ? 2.0L * dTolerance : 0.0L);
}

// True when the library's collinearity test passes the points at dTolerance. It compares cross
// products of unscaled differences from the first point with the tolerance, so it can pass
// points far off any line; the zone fits then give their answer for collinear points, which need
// not contain them.
inline bool CollinearByRule(const CNuPointArray& points, double dTolerance) {
    CNuVector v;
    int n = 0;
    return Attempt([&] { n = numorix::CNuGeometry::AreCollinear(points, &v, dTolerance); }) && n != 0;
}

// The slack of a containment check where the fit gave a line's answer (collinear by the rule):
// such points need only lie within 5 tolerances of a line, and a few more of the fitted one.
inline Real LineAnswerSlack(double dTolerance, const CNuPointArray& points) {
    return Slack(dTolerance, points) + (dTolerance > 0.0 ? 10.0L * dTolerance : 0.0L);
}

// Runs fit(); true when it gave a result. A refusal must be one of the library's exceptions, and a
// NaN or infinite coordinate must be refused as such (stored 214 naming the first bad point),
// unless the iteration limit was refused first (bLimitFirst). A result is never non-finite data's.
template <class F>
bool FitOrRefuse(const CNuPointArray& points, bool bLimitFirst, F&& fit) {
    const int nBad = FirstNonFinite(points);
    try {
        fit();
    } catch (const numorix::CNuException& e) {
        NUMORIX_FUZZ_CHECK(nBad < 0 || bLimitFirst || (e.m_nCause == 214 && e.m_nValue1 == nBad));
        return false;
    }
    NUMORIX_FUZZ_CHECK(nBad < 0);
    return true;
}

// Runs an Ex form; true when it reported success. Only the iteration limit may escape as an
// exception (stored 213); a NaN or infinite coordinate must fail.
template <class F>
bool FitEx(const CNuPointArray& points, long lMaxIterations, F&& fit) {
    numorix::ENuFitResult eResult = numorix::eNuFitFailed;
    try {
        eResult = fit();
    } catch (const numorix::CNuException& e) {
        NUMORIX_FUZZ_CHECK(lMaxIterations <= 0 && e.m_nCause == 213);
        return false;
    }
    NUMORIX_FUZZ_CHECK(eResult == numorix::eNuFitOk || eResult == numorix::eNuFitNotConverged ||
                       eResult == numorix::eNuFitFailed);
    NUMORIX_FUZZ_CHECK(FirstNonFinite(points) < 0 || eResult == numorix::eNuFitFailed);
    return eResult == numorix::eNuFitOk;
}

}  // namespace fuzz

#endif  // NUMORIX_TESTS_FUZZ_FUZZ_SUPPORT_H
