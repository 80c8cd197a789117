// Orthogonal least-squares cone.
//
//   model      axis point P0, unit axis a, angle theta in (0, pi) between the axis and the
//              generators, radius s of the cone in the plane through P0 normal to a. With
//              U = OrthonormalX(a), V = a x U and w = P - P0: u = U . w, v = V . w, t = a . w
//              and rho = sqrt(w . w - t^2), the distance of P from the axis. In the half-plane
//              (t, rho) of a point the cone is the line rho = s + t tan(theta) and
//                d = (rho - s) cos(theta) - t sin(theta)
//              is the signed distance of the point from it, positive outside.
//   objective  minimise sum d_i^2
//   step       (d0, d1, d2, d3, d4, d5) of the linearised problem J d = -d, with the rows
//                (-cos(theta) u / rho, -cos(theta) v / rho, -e u / rho, -e v / rho,
//                 sin(theta) s - e, -cos(theta)),   e = rho sin(theta) + t cos(theta),
//              the derivatives of d under P0 += d0 U + d1 V, a += d2 U + d3 V, theta += d4 and
//              s += d5. The radius column is the derivative -cos(theta), not -1: with -1 the
//              step d5 is the move of the surface along its normal, and taken as a radius step
//              it leaves s short by (1 - cos(theta)) of it; the axis point settles first, the
//              measure stops the loop, and the cone stays offset from its points (18.9 mm on
//              PTB's b30, with an unchanged form error).
//              The axis turns on the unit sphere, a' = a sqrt(1 - d2^2 - d3^2) + d2 U + d3 V,
//              and about P0 as the point of the old axis in the plane of the old section: P0
//              also moves along a by dz = -(d0 d2 + d1 d3) / sqrt(1 - d2^2 - d3^2).
//   loop       undamped Gauss-Newton; the measure is the move of the axis point,
//              d0^2 + d1^2 + dz^2, against NuGetTol()^2
//   starts     the three candidate axes of QuadricAxes, each with s and theta from the
//              straight-line regression of rho on t (intercept s, slope tan(theta)); the
//              candidate with the least sum of squares wins. A candidate whose regression has no
//              spread in t, whose tilt leaves the unit sphere or whose angle leaves (0, pi) is
//              dropped; one that runs out of iterations ends the whole fit (212).
//
// The finished angle above 90 degrees is the same cone with its axis reversed: the angle becomes
// 180 degrees less itself and tan(theta) and a change sign. The apex, where rho = 0, is
// P0 - a s / tan(theta); its coordinates below NuGetTol() become 0 and an axis within
// NuGetTol()^2 of a coordinate axis is snapped onto it.
#include <cmath>
#include <limits>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/matrix.h"
#include "numorix/surfaces/con_surf.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuConSurf";

// One run of Gauss-Newton from a candidate axis.
struct SCandidateRun {
    CNuPoint axisPoint;
    CNuVector axis;
    double dTheta = 0.0;
    double dRadius = 0.0;
    double dSumSquares = 0.0;
    bool bAbandoned = false;
};

// t = a . w and rho = sqrt(w . w - t^2) of the point at w from the axis point; a value under the
// root that rounding has made negative is 0.
double AxisDistance(const double* pdA, double wx, double wy, double wz, double* pdT) {
    double t = pdA[0] * wx + pdA[1] * wy + pdA[2] * wz;
    *pdT = t;
    double dSquare = wx * wx + wy * wy + wz * wz - t * t;
    return dSquare > 0.0 ? std::sqrt(dSquare) : 0.0;
}

// The regression start: rho = s + t tan(theta) by least squares over the points. False when the
// points have no spread along the axis (|den| below NuGetZero()).
bool RegressionStart(const CNuPointArray& points, SCandidateRun* pRun) {
    int n = points.GetSize();
    const CNuPoint* p = points.GetData();
    const double* pa = pRun->axis.GetData();
    const CNuPoint& P0 = pRun->axisPoint;
    double dSumT = 0.0, dSumRho = 0.0, dSumTRho = 0.0, dSumT2 = 0.0;
    for (int i = 0; i < n; ++i) {
        double t = 0.0;
        double rho = AxisDistance(pa, p[i].x() - P0.x(), p[i].y() - P0.y(), p[i].z() - P0.z(), &t);
        dSumT += t;
        dSumRho += rho;
        dSumTRho += t * rho;
        dSumT2 += t * t;
    }
    double den = n * dSumT2 - dSumT * dSumT;
    if (std::fabs(den) < NuGetZero()) return false;
    pRun->dRadius = (dSumT2 * dSumRho - dSumTRho * dSumT) / den;
    double dTheta = std::atan((n * dSumTRho - dSumRho * dSumT) / den);
    if (dTheta < 0.0) dTheta += Nu_PI;
    pRun->dTheta = dTheta;
    return true;
}

void RunCandidate(const CNuPointArray& points, long lMaxIterations, SCandidateRun* pRun) {
    if (!RegressionStart(points, pRun)) {
        pRun->bAbandoned = true;
        return;
    }
    int n = points.GetSize();
    const CNuPoint* p = points.GetData();
    double adP0[3] = {pRun->axisPoint.x(), pRun->axisPoint.y(), pRun->axisPoint.z()};
    CNuVector a = pRun->axis;
    double dTheta = pRun->dTheta;
    double s = pRun->dRadius;

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
        double dCos = std::cos(dTheta);
        double dSin = std::sin(dTheta);
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
            double e = rho * dSin + t * dCos;
            double* pRow = ppJ[i];
            pRow[0] = -dCos * u / rho;
            pRow[1] = -dCos * v / rho;
            pRow[2] = -e * u / rho;
            pRow[3] = -e * v / rho;
            pRow[4] = dSin * s - e;
            pRow[5] = -dCos;
            double dMinus = (s - rho) * dCos + t * dSin;
            pr[i] = dMinus;
            dSum += dMinus * dMinus;
        }
    };
    auto apply = [&](const CNuVector& step) {
        const double* pd = step.GetData();
        const double* pa = a.GetData();
        const double* pu = U.GetData();
        const double* pv = V.GetData();
        double dCos2 = 1.0 - pd[2] * pd[2] - pd[3] * pd[3];
        if (dCos2 < NuGetZero()) {
            // The tilt leaves the unit sphere: this start is given up. NaN compares as neither
            // below the threshold nor shrinking, so the loop ends here.
            bAbandoned = true;
            return std::numeric_limits<double>::quiet_NaN();
        }
        double dRoot = std::sqrt(dCos2);
        double dz = (-pd[0] * pd[2] - pd[1] * pd[3]) / dRoot;
        for (int k = 0; k < 3; ++k)
            adP0[k] += pd[0] * pu[k] + pd[1] * pv[k] + dz * pa[k];
        a = a * dRoot + U * pd[2] + V * pd[3];
        dTheta += pd[4];
        s += pd[5];
        if (!(dTheta > 0.0 && dTheta < Nu_PI)) {
            // The angle leaves (0, pi): no cone, this start is given up.
            bAbandoned = true;
            return std::numeric_limits<double>::quiet_NaN();
        }
        return pd[0] * pd[0] + pd[1] * pd[1] + dz * dz;
    };
    auto threshold = [] { return NuGetTol() * NuGetTol(); };

    CNuMatrix J(n, 6);
    CNuVector r(n);
    fit::GaussNewton(lMaxIterations, kLocation, J, r, build, apply, threshold);

    pRun->axisPoint = CNuPoint(adP0[0], adP0[1], adP0[2]);
    pRun->axis = a;
    pRun->dTheta = dTheta;
    pRun->dRadius = s;
    pRun->dSumSquares = dSum;
    pRun->bAbandoned = bAbandoned;
}

}  // namespace

void CNuConSurf::Fit(const CNuPointArray& points, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    fit::CheckFinite(points, kLocation);
    double dLengthTol = NuGetLengthTol();
    if (points.GetSize() < 6) throw CNuBestfitException(1, kLocation, 6);
    if (CNuGeometry::AreCoplanar(points, dLengthTol) != 0)
        throw CNuBestfitException(4, kLocation, 4);
    if (CNuGeometry::NumberDistinctPoints(points, 6, dLengthTol) == 0)
        throw CNuBestfitException(2, kLocation, 6);

    CNuPoint mean = points.MeanPoint();
    CNuPoint centres[3];
    CNuVector axes[3];
    QuadricAxes(points, mean, centres, axes);

    double dBest = NuGetLarge();
    SCandidateRun best;
    for (int k = 0; k < 3; ++k) {
        SCandidateRun run;
        run.axisPoint = centres[k];
        run.axis = axes[k];
        RunCandidate(points, lMaxIterations, &run);
        if (!run.bAbandoned && run.dSumSquares < dBest) {
            dBest = run.dSumSquares;
            best = run;
        }
    }
    if (!(dBest < NuGetLarge())) throw CNuBestfitException(11, kLocation);

    // Past 90 degrees the generators lean back towards the axis: the same cone, seen from the
    // other end of its axis.
    double dDegrees = best.dTheta / Nu_PI * 180.0;
    double dTan = std::tan(best.dTheta);
    CNuVector a = best.axis;
    if (dDegrees > 90.0) {
        dDegrees = 180.0 - dDegrees;
        dTan = -dTan;
        a = -a;
    }
    if (!(dDegrees > 0.0)) throw CNuBestfitException(11, kLocation);

    // The apex, where the radius rho = s + t tan(theta) vanishes.
    const double* pa = a.GetData();
    double dAlong = best.dRadius / dTan;
    double adApex[3] = {best.axisPoint.x() - pa[0] * dAlong, best.axisPoint.y() - pa[1] * dAlong,
                        best.axisPoint.z() - pa[2] * dAlong};
    double dTol = NuGetTol();
    for (double& d : adApex)
        if (std::fabs(d) < dTol) d = 0.0;
    fit::SnapAxis(&a);

    m_dSemiAngle = dDegrees;
    CNuVector xAxis;
    a.OrthonormalX(&xAxis);
    SetPosition(CNuPoint(adApex[0], adApex[1], adApex[2]), xAxis, a);
}

void CNuConSurf::Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                     long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    *pdForm = 0.0;
    *pdSumSquares = 0.0;
    Fit(points, lMaxIterations);

    // The residuals of the finished cone: r cos(alpha) - h sin(alpha) for a point at height h
    // along the axis from the apex and distance r from the axis, positive outside.
    CNuPoint apex;
    CNuVector axis;
    GetPosition(&apex, nullptr, &axis);
    double dCos = 0.0;
    double dSin = 0.0;
    NuCosSin(Nu_PI * m_dSemiAngle * 0.005555555555555556, &dCos, &dSin);
    const double* pa = axis.GetData();
    const CNuPoint* p = points.GetData();
    double dLarge = NuGetLarge();
    double dHighest = -dLarge;
    double dLowest = dLarge;
    double dSum = 0.0;
    for (int i = 0; i < points.GetSize(); ++i) {
        double wx = p[i].x() - apex.x();
        double wy = p[i].y() - apex.y();
        double wz = p[i].z() - apex.z();
        double h = pa[0] * wx + pa[1] * wy + pa[2] * wz;
        double r = fit::ScaledDistance(pa[1] * wz - pa[2] * wy, pa[2] * wx - pa[0] * wz,
                                       pa[0] * wy - pa[1] * wx);
        double e = r * dCos - h * dSin;
        dSum += e * e;
        if (e > dHighest) dHighest = e;
        if (e < dLowest) dLowest = e;
    }
    *pdSumSquares = dSum;
    *pdForm = dHighest - dLowest;
}

ENuFitResult CNuConSurf::FitEx(const CNuPointArray& points, long lMaxIterations) {
    return fit::RunFitEx(lMaxIterations, kLocation, [&] { Fit(points, lMaxIterations); });
}

ENuFitResult CNuConSurf::FitEx(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                               long lMaxIterations) {
    return fit::RunFitEx(lMaxIterations, kLocation,
                         [&] { Fit(points, pdForm, pdSumSquares, lMaxIterations); });
}

}  // namespace numorix
