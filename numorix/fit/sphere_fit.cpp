// Orthogonal least-squares sphere.
//
//   model      centre C, radius R; d_i = |P_i - C| (scaled as NuPythag scales)
//   objective  minimise sum (d_i - R)^2
//   n = 4      the sphere through the four points: with s = x^2 + y^2 + z^2 and the 4 by 4
//              determinants of the rows
//                D0 (x, y, z, 1), D1 (s, y, z, 1), D2 (s, x, z, 1), D3 (s, x, y, 1), D4 (s, x, y,
//                z)
//              (expanding det [s x y z 1; s_i x_i y_i z_i 1] = 0 along its first row gives
//              s D0 - x D1 + y D2 - z D3 + D4 = 0), the centre is (D1, -D2, D3) / (2 D0) and
//              R = sqrt(D1^2 + D2^2 + D3^2 - 4 D0 D4) / (2 |D0|). When 2 D0 is below NuGetZero()
//              in magnitude the points have no centre: stored 211, as for a radius or centre
//              that is not a finite number. No iteration.
//   n > 4      the algebraic sphere |P|^2 = 2 C . P - c about the mean point, linear in (C, c),
//              as start; then the undamped Gauss-Newton loop on the rows
//                ((C - P_i) / d_i, -1) step = R - d_i.
//              Only the centre's part of the step is measured, |dC|^2 against NuGetTol(), and
//              the measure is tested before the update: the step that passes is not added.
//
// The form error and the sum of squares come from a separate pass over the finished sphere.
#include <cmath>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"
#include "numorix/surfaces/sph_surf.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuSphSurf";

// det of the 4 by 4 matrix whose rows are (c0[i], c1[i], c2[i], c3[i]).
double Determinant4(const double* c0, const double* c1, const double* c2, const double* c3) {
    CNuMatrix m(4, 4);
    double** pp = m.GetData();
    for (int i = 0; i < 4; ++i) {
        pp[i][0] = c0[i];
        pp[i][1] = c1[i];
        pp[i][2] = c2[i];
        pp[i][3] = c3[i];
    }
    return m.Determinant();
}

}  // namespace

void CNuSphSurf::Fit(const CNuPointArray& points, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    fit::CheckFinite(points, kLocation);
    int n = points.GetSize();
    if (n < 4) throw CNuBestfitException(1, kLocation, 4);
    CNuPlane plane;
    if (CNuGeometry::AreCoplanar(points, &plane, NuGetLengthTol()) != 0)
        throw CNuBestfitException(4, kLocation, 4);
    const CNuPoint* p = points.GetData();

    double adCentre[3] = {0.0, 0.0, 0.0};
    double dRadius = 0.0;
    if (n == 4) {
        // Four points that are flat to rounding have no sphere: the coplanarity test can pass them
        // (a repeated point, a plane through points 1000 from the origin), and the determinants
        // on raw coordinates then give a sphere of rounding. Flat means a tetrahedron whose
        // volume, from the differences to the first point, is below 2^-40 of the cube of its
        // longest edge.
        double e[3][3];
        double dLongest = 0.0;
        for (int i = 0; i < 4; ++i)
            for (int j = i + 1; j < 4; ++j)
                dLongest = std::fmax(dLongest, fit::ScaledDistance(p[j].x() - p[i].x(),
                                                                   p[j].y() - p[i].y(),
                                                                   p[j].z() - p[i].z()));
        for (int i = 0; i < 3; ++i) {
            e[i][0] = (p[i + 1].x() - p[0].x()) / dLongest;
            e[i][1] = (p[i + 1].y() - p[0].y()) / dLongest;
            e[i][2] = (p[i + 1].z() - p[0].z()) / dLongest;
        }
        double dVolume = e[0][0] * (e[1][1] * e[2][2] - e[1][2] * e[2][1]) -
                         e[0][1] * (e[1][0] * e[2][2] - e[1][2] * e[2][0]) +
                         e[0][2] * (e[1][0] * e[2][1] - e[1][1] * e[2][0]);
        if (!(std::fabs(dVolume) > 0x1p-40)) throw CNuBestfitException(11, kLocation);
        double x[4];
        double y[4];
        double z[4];
        double s[4];
        double one[4] = {1.0, 1.0, 1.0, 1.0};
        for (int i = 0; i < 4; ++i) {
            x[i] = p[i].x();
            y[i] = p[i].y();
            z[i] = p[i].z();
            s[i] = x[i] * x[i] + y[i] * y[i] + z[i] * z[i];
        }
        double d0 = Determinant4(x, y, z, one);
        double d1 = Determinant4(s, y, z, one);
        double d2 = Determinant4(s, x, z, one);
        double d3 = Determinant4(s, x, y, one);
        double d4 = Determinant4(s, x, y, z);
        dRadius = 0.5 * std::sqrt(d1 * d1 + d2 * d2 + d3 * d3 - 4.0 * d0 * d4) / std::fabs(d0);
        double q = 2.0 * d0;
        // Four points in one plane have no sphere; the coplanarity test can pass them by rounding
        // (a repeated point, a plane through points 1000 from the origin), and D0 is then 0 or
        // rounding below NuGetZero(): no centre, and no sphere is stored.
        if (std::fabs(q) < NuGetZero()) throw CNuBestfitException(11, kLocation);
        adCentre[0] = d1 / q;
        adCentre[1] = -d2 / q;
        adCentre[2] = d3 / q;
    } else {
        // Algebraic start about the mean: rows (2 dx, 2 dy, 2 dz, -1) against dx^2 + dy^2 + dz^2.
        // The last column stays as the radius column of the Jacobian.
        CNuPoint mean = points.MeanPoint();
        CNuMatrix jacobian(n, 4);
        CNuVector rhs(n);
        double** ppJ = jacobian.GetData();
        double* pr = rhs.GetData();
        for (int i = 0; i < n; ++i) {
            double dx = p[i].x() - mean.x();
            double dy = p[i].y() - mean.y();
            double dz = p[i].z() - mean.z();
            ppJ[i][0] = 2.0 * dx;
            ppJ[i][1] = 2.0 * dy;
            ppJ[i][2] = 2.0 * dz;
            ppJ[i][3] = -1.0;
            pr[i] = dx * dx + dy * dy + dz * dz;
        }
        CNuLinearEquSys start;
        start.Solve(jacobian, rhs);
        if (start.SolutionExists() == eNuFalse) throw CNuBestfitException(11, kLocation);
        CNuVector algebraic = start.GetSolution();
        double adOffset[3] = {algebraic[0], algebraic[1], algebraic[2]};
        double dLengthTol = NuGetLengthTol();
        for (double& c : adOffset)
            if (std::fabs(c) < dLengthTol) c = 0.0;
        adCentre[0] = mean.x() + adOffset[0];
        adCentre[1] = mean.y() + adOffset[1];
        adCentre[2] = mean.z() + adOffset[2];
        dRadius = std::sqrt(adOffset[0] * adOffset[0] + adOffset[1] * adOffset[1] +
                            adOffset[2] * adOffset[2] - algebraic[3]);

        auto build = [&](CNuMatrix& J, CNuVector& r) {
            double** pp = J.GetData();
            double* pd = r.GetData();
            for (int i = 0; i < n; ++i) {
                double ex = adCentre[0] - p[i].x();
                double ey = adCentre[1] - p[i].y();
                double ez = adCentre[2] - p[i].z();
                double d = fit::ScaledDistance(ex, ey, ez);
                pp[i][0] = ex / d;
                pp[i][1] = ey / d;
                pp[i][2] = ez / d;
                pd[i] = dRadius - d;
            }
        };
        auto apply = [&](const CNuVector& step) {
            double s = step[0] * step[0] + step[1] * step[1] + step[2] * step[2];
            // Tested before the update: a step small enough to stop on is not taken.
            if (s < NuGetTol()) return s;
            adCentre[0] += step[0];
            adCentre[1] += step[1];
            adCentre[2] += step[2];
            dRadius += step[3];
            return s;
        };
        auto threshold = [] { return NuGetTol(); };
        fit::GaussNewton(lMaxIterations, kLocation, jacobian, rhs, build, apply, threshold);
    }

    // Four points that the coplanarity test passes by rounding (a duplicate 4e-12 off the plane of
    // the others) have D0 = 0: the radius is 0 / 0 or infinite, and no sphere is stored.
    if (!std::isfinite(dRadius) || !std::isfinite(adCentre[0]) || !std::isfinite(adCentre[1]) ||
        !std::isfinite(adCentre[2]))
        throw CNuBestfitException(11, kLocation);
    m_dRadius = dRadius;
    SetPosition(CNuPoint(adCentre[0], adCentre[1], adCentre[2]), CNuVector(1.0, 0.0, 0.0),
                CNuVector(0.0, 0.0, 1.0));
}

void CNuSphSurf::Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                     long lMaxIterations) {
    *pdForm = 0.0;
    *pdSumSquares = 0.0;
    Fit(points, lMaxIterations);
    int n = points.GetSize();
    if (n == 4) return;
    const CNuPoint* p = points.GetData();
    CNuPoint c = GetCentre();
    double dLarge = NuGetLarge();
    double dHighest = -dLarge;
    double dLowest = dLarge;
    double dSum = 0.0;
    for (int i = 0; i < n; ++i) {
        double r =
            fit::ScaledDistance(p[i].x() - c.x(), p[i].y() - c.y(), p[i].z() - c.z()) - m_dRadius;
        dSum += r * r;
        if (r > dHighest) dHighest = r;
        if (r < dLowest) dLowest = r;
    }
    *pdSumSquares = dSum;
    *pdForm = dHighest - dLowest;
}

ENuFitResult CNuSphSurf::FitEx(const CNuPointArray& points, long lMaxIterations) {
    return fit::RunFitEx(lMaxIterations, kLocation, [&] { Fit(points, lMaxIterations); });
}

ENuFitResult CNuSphSurf::FitEx(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                               long lMaxIterations) {
    return fit::RunFitEx(lMaxIterations, kLocation,
                         [&] { Fit(points, pdForm, pdSumSquares, lMaxIterations); });
}

}  // namespace numorix
