// What every fit of the library shares, private to the fit sources:
//
//   the three ways an Ex operation maps failures onto ENuFitResult
//     RunFitEx                 limit test (213) outside the guard; 212 -> not converged,
//                              anything else -> failed
//     RunFitExWithTolerance    as RunFitEx, and the thread's length tolerance is dTolerance for
//                              the guarded call and restored afterwards on every path
//     RunFitExCatchAll         no limit; tolerance as above; every failure -> failed
//   CheckIterations            the limit test: lMaxIterations > 0, else stored 213
//   CheckFinite                every coordinate finite, else stored 214 with the first bad index
//   CheckTolerance             a finite tolerance argument, else stored 211
//   GaussNewton                the undamped loop: solve J step = -r, add the step, stop when the
//                              element's measure falls below its threshold or stops shrinking;
//                              reaching the limit, even in a converging last iteration, is 212
//   CleanDirection             components below NuGetTol() become 0, then the largest component
//                              (first of equals) is made positive
//   SnapAxis                   an axis within NuGetTol()^2 of a coordinate axis becomes that axis
//   CentredSvd                 the SVD of the n by 3 matrix of points less their mean, whose right
//                              singular vectors give the directions of the line and plane fits
#ifndef NUMORIX_FIT_INTERNAL_FIT_FRAME_H
#define NUMORIX_FIT_INTERNAL_FIT_FRAME_H

#include <cmath>

#include "numorix/fit/fit_result.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/internal/scalar_kernels.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace fit {

// Stored 213 located at pszLocation unless lMaxIterations is greater than 0.
inline void CheckIterations(long lMaxIterations, const char* pszLocation) {
    if (lMaxIterations <= 0) throw CNuBestfitException(13, pszLocation);
}

// Stored 214 located at pszLocation, carrying the index of the first point that has a coordinate
// which is not a finite number (NaN or infinite). Every public fit runs this before it reads its
// points otherwise, so that bad data are named instead of failing deep inside a decomposition or
// being passed over by a comparison.
void CheckFinite(const CNuPointArray& points, const char* pszLocation);

// Stored 211 located at pszLocation unless dTolerance is a finite number. Under a NaN tolerance
// every test of the fit fails silently and the fit reports a circle that fits nothing; an
// infinite one makes all points one point.
inline void CheckTolerance(double dTolerance, const char* pszLocation) {
    if (!std::isfinite(dTolerance)) throw CNuBestfitException(11, pszLocation);
}

// Calls fit() and reports how it ended: a best-fit failure of cause 12 is "not converged",
// every other failure of any type "failed".
template <class F>
ENuFitResult Guarded(F&& fit) {
    ENuFitResult eResult = eNuFitOk;
    try {
        fit();
    } catch (const CNuBestfitException& e) {
        eResult = e.GetCause() == 12 ? eNuFitNotConverged : eNuFitFailed;
    } catch (...) {
        eResult = eNuFitFailed;
    }
    return eResult;
}

// Ex form of the least-squares fits: the limit test escapes, the rest is guarded.
template <class F>
ENuFitResult RunFitEx(long lMaxIterations, const char* pszLocation, F&& fit) {
    CheckIterations(lMaxIterations, pszLocation);
    return Guarded(fit);
}

// Ex form of the zone fits and of the cylinder's and torus's extreme fits.
template <class F>
ENuFitResult RunFitExWithTolerance(long lMaxIterations, const char* pszLocation, double dTolerance,
                                   F&& fit) {
    CheckIterations(lMaxIterations, pszLocation);
    double dSaved = NuGetLengthTol();
    NuSetLengthTol(dTolerance);
    ENuFitResult eResult = Guarded(fit);
    NuSetLengthTol(dSaved);
    return eResult;
}

// Ex form of the extreme fits without an iteration limit: any failure is "failed", even 212.
template <class F>
ENuFitResult RunFitExCatchAll(double dTolerance, F&& fit) {
    double dSaved = NuGetLengthTol();
    NuSetLengthTol(dTolerance);
    ENuFitResult eResult = eNuFitOk;
    try {
        fit();
    } catch (...) {
        eResult = eNuFitFailed;
    }
    NuSetLengthTol(dSaved);
    return eResult;
}

// The Gauss-Newton loop of the nonlinear fits.
//   build(J, r)      writes the Jacobian (one row per point) and the negated residuals for the
//                    present parameters; J and r keep their contents between iterations
//   apply(step)      adds the step to the parameters and returns the element's measure s
//   threshold()      the element's threshold, read at call time
// Returns the number of iterations run.
template <class Build, class Apply, class Threshold>
long GaussNewton(long lMaxIterations, const char* pszLocation, CNuMatrix& J, CNuVector& r,
                 Build&& build, Apply&& apply, Threshold&& threshold) {
    long iter = 0;
    double dPrevious = NuGetLarge() / 10.0;
    if (NuGetLarge() > dPrevious) {
        CNuLinearEquSys system;
        while (iter < lMaxIterations) {
            ++iter;
            build(J, r);
            system.Solve(J, r);
            if (system.SolutionExists() == eNuFalse) throw CNuBestfitException(11, pszLocation);
            double s = apply(system.GetSolution());
            if (s < threshold()) break;
            // A step that does not shrink ends the loop, accepted.
            if (!(dPrevious > s)) break;
            dPrevious = s;
        }
    }
    if (!(iter < lMaxIterations)) throw CNuBestfitException(12, pszLocation);
    return iter;
}

// Sign cleaning of a fitted direction of size 3.
void CleanDirection(CNuVector* pDirection);

// The snapping of a fitted axis (cylinder, cone): the components are tested in the order z, y, x,
// and the first whose magnitude lies within NuGetTol()^2 of 1 keeps its value while the two others
// become 0. The sign is left as it stands.
inline void SnapAxis(CNuVector* pAxis) {
    double* pdA = pAxis->GetData();
    double dTol = NuGetTol();
    double dSnap = dTol * dTol;
    for (int k = 2; k >= 0; --k) {
        if (std::fabs(std::fabs(pdA[k]) - 1.0) < dSnap) {
            pdA[(k + 1) % 3] = 0.0;
            pdA[(k + 2) % 3] = 0.0;
            return;
        }
    }
}

// The SVD A = U diag(w) V^T of the n by 3 matrix A whose rows are the points less the mean: the
// singular values into pW (size 3), the right singular vectors into the columns of pV (3 by 3).
void CentredSvd(const CNuPointArray& points, const CNuPoint& mean, CNuVector* pW, CNuMatrix* pV);

// Whether the points really lie on one line, as the answer a fit gives for collinear points
// assumes: every point within 5 max(dTolerance, 0), plus 2^-40 of the largest coordinate for
// rounding, of the line through a (the point farthest from point 0) and b (the point farthest from
// a). The collinearity test of the geometry kernel compares cross products with the tolerance
// unscaled, so when its first direction joins two points about a tolerance apart every cross
// product is small and a triangle passes as a line. If all points lie within t of some line, a
// and b do, |ab| is at least half the diameter D, and line ab strays from that line by at most
// 2t D / |ab| <= 4t over the data: hence the factor 5. A distance that is not a finite number
// (differences that overflow) leaves the verdict to the collinearity test.
bool OnOneLine(const CNuPointArray& points, double dTolerance);

// Three points far apart: a, the point farthest from point 0; b, the point farthest from a; c, the
// point farthest from the line ab. The frame of points that the collinearity test takes for a
// line although they are not on one (see OnOneLine).
void WideTriangle(const CNuPointArray& points, int* pnA, int* pnB, int* pnC);

// The points of least and greatest abscissa along the least-squares line of the points (the first
// of equals), and that line's direction: the ends of collinear points.
void ExtremesAlongLine(const CNuPointArray& points, int* pnLow, int* pnHigh,
                       CNuVector* pDirection);

// Column j of a 3 by 3 matrix as a vector of size 3.
CNuVector Column3(const CNuMatrix& m, int j);

// The scan of the zone fits' PointNotCovered: the first point, from the cursor round to it, for
// which isUncovered(i) holds. The cursor moves past that point; the index or -1 is returned.
template <class Uncovered>
long FirstUncovered(SPointCoverage* pCoverage, int nPoints, Uncovered isUncovered) {
    int nStart = pCoverage->m_nCursor;
    for (int step = 0; step < nPoints; ++step) {
        int i = nStart + step;
        if (i >= nPoints) i -= nPoints;
        if (isUncovered(i)) {
            pCoverage->m_nCursor = i + 1;
            return i;
        }
    }
    return -1;
}

// sqrt(dx^2 + dy^2 + dz^2), scaled by the largest difference; 0 when that is below NuGetZero().
// The same arithmetic as NuPythag(dx, dy, dz), inline: the extreme fits call it per point per step.
inline double ScaledDistance(double dx, double dy, double dz) {
    return internal::Pythag(dx, dy, dz);
}

// Makes *pQuadruple hold the four indices of the support that carries a zone.
inline void SetQuadruple(CNuIntArray* pQuadruple, int i, int j, int k, int l) {
    pQuadruple->Clear();
    pQuadruple->Add(i);
    pQuadruple->Add(j);
    pQuadruple->Add(k);
    pQuadruple->Add(l);
}

}  // namespace fit
}  // namespace numorix

#endif  // NUMORIX_FIT_INTERNAL_FIT_FRAME_H
