// Orthogonal least-squares cylinder.
//
//   model      axis point P0, unit axis a, radius R; with U = OrthonormalX(a), V = a x U and
//              w = P - P0: u = U . w, v = V . w, t = a . w, rho = sqrt(w . w - t^2), the
//              distance of P from the axis (0 when w . w - t^2 < NuGetZero())
//   objective  minimise sum (rho_i - R)^2
//   step       (d0, d1, d2, d3, d4) of the linearised problem J d = R - rho, with the rows
//                (-u/rho, -v/rho, -u t/rho, -v t/rho, -1)
//              (the derivatives of rho under P0 += d0 U + d1 V, a += d2 U + d3 V, R += d4); for a
//              point on the axis (rho below NuGetZero()) the first four entries and the
//              right-hand side are multiplied by rho. The axis turns on the unit sphere:
//              a' = a sqrt(1 - d2^2 - d3^2) + d2 U + d3 V.
//   loop       undamped Gauss-Newton; only the radius step |d4| is measured, against NuGetTol()^2
//   starts     the three candidate axes of QuadricAxes; the candidate with the least sum of
//              squares wins. A candidate whose tilt leaves the unit sphere (d2^2 + d3^2 near 1)
//              is dropped; one that runs out of iterations ends the whole fit (212).
//
// Fewer than 9 points are padded to 9 by repeating them from the first on, so that the repeated
// points weigh double. The finished axis point is the foot of the mean point on the axis; an
// axis within NuGetTol()^2 of a coordinate axis is snapped onto it.
#include <cmath>
#include <limits>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/matrix.h"
#include "numorix/surfaces/cyl_surf.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuCylSurf";

// Rows of the residual system: never fewer than nine.
const int kMinimumRows = 9;

// One run of Gauss-Newton from a candidate axis.
struct SCandidateRun {
    CNuPoint axisPoint;
    CNuVector axis;
    double dRadius = 0.0;
    double dSumSquares = 0.0;
    bool bAbandoned = false;
};

// rho = sqrt(w . w - t^2), the distance from the axis of the point at w from the axis point, with
// t = a . w its place along the unit axis a; 0 when the value under the root is below NuGetZero().
double AxisDistance(const double* pdA, double wx, double wy, double wz, double* pdT) {
    double t = pdA[0] * wx + pdA[1] * wy + pdA[2] * wz;
    *pdT = t;
    double dSquare = wx * wx + wy * wy + wz * wz - t * t;
    return dSquare < NuGetZero() ? 0.0 : std::sqrt(dSquare);
}

void RunCandidate(const CNuPointArray& points, long lMaxIterations, SCandidateRun* pRun) {
    int n = points.GetSize();
    const CNuPoint* p = points.GetData();
    double adP0[3] = {pRun->axisPoint.x(), pRun->axisPoint.y(), pRun->axisPoint.z()};
    CNuVector a = pRun->axis;

    // The radius starts as the mean distance from the candidate axis.
    double dRadius = 0.0;
    {
        double t = 0.0;
        for (int i = 0; i < n; ++i)
            dRadius += AxisDistance(a.GetData(), p[i].x() - adP0[0], p[i].y() - adP0[1],
                                    p[i].z() - adP0[2], &t);
        dRadius /= n;
    }

    CNuVector U;
    CNuVector V;
    double dSum = 0.0;
    bool bAbandoned = false;
    auto build = [&](CNuMatrix& J, CNuVector& r) {
        a.OrthonormalX(&U);
        V = a * U;
        const double* pa = a.GetData();
        const double* pu = U.GetData();
        const double* pv = V.GetData();
        double dZero = NuGetZero();
        double** ppJ = J.GetData();
        double* pr = r.GetData();
        dSum = 0.0;
        for (int i = 0; i < n; ++i) {
            double wx = p[i].x() - adP0[0];
            double wy = p[i].y() - adP0[1];
            double wz = p[i].z() - adP0[2];
            double u = pu[0] * wx + pu[1] * wy + pu[2] * wz;
            double v = pv[0] * wx + pv[1] * wy + pv[2] * wz;
            double t = 0.0;
            double rho = AxisDistance(pa, wx, wy, wz, &t);
            double e = dRadius - rho;
            double* pRow = ppJ[i];
            if (rho >= dZero) {
                pRow[0] = -u / rho;
                pRow[1] = -v / rho;
                pRow[2] = -u * t / rho;
                pRow[3] = -v * t / rho;
                pr[i] = e;
            } else {
                pRow[0] = -u;
                pRow[1] = -v;
                pRow[2] = -u * t;
                pRow[3] = -v * t;
                pr[i] = e * rho;
            }
            pRow[4] = -1.0;
            dSum += e * e;
        }
    };
    auto apply = [&](const CNuVector& step) {
        const double* pd = step.GetData();
        const double* pu = U.GetData();
        const double* pv = V.GetData();
        for (int k = 0; k < 3; ++k)
            adP0[k] += pd[0] * pu[k] + pd[1] * pv[k];
        double dCos2 = 1.0 - pd[2] * pd[2] - pd[3] * pd[3];
        if (dCos2 < NuGetZero()) {
            // The tilt leaves the unit sphere: this start is given up. NaN compares as neither
            // below the threshold nor shrinking, so the loop ends here.
            bAbandoned = true;
            return std::numeric_limits<double>::quiet_NaN();
        }
        a = a * std::sqrt(dCos2) + U * pd[2] + V * pd[3];
        dRadius += pd[4];
        return std::fabs(pd[4]);
    };
    auto threshold = [] { return NuGetTol() * NuGetTol(); };

    CNuMatrix J(n, 5);
    CNuVector r(n);
    fit::GaussNewton(lMaxIterations, kLocation, J, r, build, apply, threshold);

    pRun->axisPoint = CNuPoint(adP0[0], adP0[1], adP0[2]);
    pRun->axis = a;
    pRun->dRadius = dRadius;
    pRun->dSumSquares = dSum;
    pRun->bAbandoned = bAbandoned;
}

}  // namespace

void CNuCylSurf::Fit(const CNuPointArray& points, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    fit::CheckFinite(points, kLocation);
    double dLengthTol = NuGetLengthTol();
    if (points.GetSize() < 5) throw CNuBestfitException(1, kLocation, 5);
    if (CNuGeometry::AreCoplanar(points, dLengthTol) != 0)
        throw CNuBestfitException(4, kLocation, 4);
    if (CNuGeometry::NumberDistinctPoints(points, 5, dLengthTol) == 0)
        throw CNuBestfitException(2, kLocation, 5);

    CNuPointArray work(points);
    for (int i = 0; work.GetSize() < kMinimumRows; ++i)
        work.Add(points[i]);

    CNuPoint mean = work.MeanPoint();
    CNuPoint centres[3];
    CNuVector axes[3];
    QuadricAxes(work, mean, centres, axes);

    double dBest = NuGetLarge();
    SCandidateRun best;
    for (int k = 0; k < 3; ++k) {
        SCandidateRun run;
        run.axisPoint = centres[k];
        run.axis = axes[k];
        RunCandidate(work, lMaxIterations, &run);
        if (!run.bAbandoned && run.dSumSquares < dBest) {
            dBest = run.dSumSquares;
            best = run;
        }
    }
    if (!(dBest < NuGetLarge()) || !(best.dRadius > 0.0)) throw CNuBestfitException(11, kLocation);

    // The axis point moves to the foot of the mean point.
    CNuVector a = best.axis;
    const double* pa = a.GetData();
    double adP0[3] = {best.axisPoint.x(), best.axisPoint.y(), best.axisPoint.z()};
    double adMean[3] = {mean.x(), mean.y(), mean.z()};
    double dAlong = 0.0;
    for (int k = 0; k < 3; ++k)
        dAlong += pa[k] * (adP0[k] - adMean[k]);
    double dTol = NuGetTol();
    for (int k = 0; k < 3; ++k) {
        adP0[k] -= pa[k] * dAlong;
        if (std::fabs(adP0[k]) < dTol) adP0[k] = 0.0;
    }

    // An axis along z, then y, then x (within NuGetTol()^2) becomes that axis; its sign stays.
    fit::SnapAxis(&a);

    m_dRadius = best.dRadius;
    CNuVector xAxis;
    a.OrthonormalX(&xAxis);
    SetPosition(CNuPoint(adP0[0], adP0[1], adP0[2]), xAxis, a);
}

void CNuCylSurf::Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                     long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    *pdForm = 0.0;
    *pdSumSquares = 0.0;
    Fit(points, lMaxIterations);

    // The residuals of the finished cylinder: distance from the axis less the radius.
    CNuPoint origin;
    CNuVector axis;
    GetPosition(&origin, nullptr, &axis);
    const double* pa = axis.GetData();
    const CNuPoint* p = points.GetData();
    double dLarge = NuGetLarge();
    double dHighest = -dLarge;
    double dLowest = dLarge;
    double dSum = 0.0;
    for (int i = 0; i < points.GetSize(); ++i) {
        double wx = p[i].x() - origin.x();
        double wy = p[i].y() - origin.y();
        double wz = p[i].z() - origin.z();
        double d = fit::ScaledDistance(pa[1] * wz - pa[2] * wy, pa[2] * wx - pa[0] * wz,
                                       pa[0] * wy - pa[1] * wx);
        double e = d - m_dRadius;
        dSum += e * e;
        if (e > dHighest) dHighest = e;
        if (e < dLowest) dLowest = e;
    }
    *pdSumSquares = dSum;
    *pdForm = dHighest - dLowest;
}

ENuFitResult CNuCylSurf::FitEx(const CNuPointArray& points, long lMaxIterations) {
    return fit::RunFitEx(lMaxIterations, kLocation, [&] { Fit(points, lMaxIterations); });
}

ENuFitResult CNuCylSurf::FitEx(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                               long lMaxIterations) {
    return fit::RunFitEx(lMaxIterations, kLocation,
                         [&] { Fit(points, pdForm, pdSumSquares, lMaxIterations); });
}

}  // namespace numorix
