// Orthogonal least-squares circle of points in space, worked in the least-squares plane.
//
//   plane    the fitted plane of the points: origin = mean, normal n; U = OrthonormalX(n),
//            V = n x U; each point becomes (x_i, y_i) = (U . (P_i - origin), V . (P_i - origin))
//   model    (a, b, R): centre a U + b V about the origin and radius R
//   objective  minimise sum r_i^2 with r_i = sqrt((x_i - a)^2 + (y_i - b)^2) - R
//   n = 3    the circle through the three points, by four 3 by 3 determinants; no iteration
//   n > 3    the algebraic circle x^2 + y^2 = 2 a x + 2 b y - c as start, then the undamped
//            Gauss-Newton loop with measure |step|^2 against NuGetTol()
//
// The form error and the sum of squares come from the residual pass of the last iteration,
// before its step was added. Out-of-plane offsets of the points never enter a residual.
#include <cmath>

#include "numorix/curves/circle.h"
#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuCircle";

// det of the 3 by 3 matrix with rows (c0[i], c1[i], c2[i]).
double Determinant3(const double* c0, const double* c1, const double* c2) {
    CNuMatrix m(3, 3);
    double** pp = m.GetData();
    for (int i = 0; i < 3; ++i) {
        pp[i][0] = c0[i];
        pp[i][1] = c1[i];
        pp[i][2] = c2[i];
    }
    return m.Determinant();
}

}  // namespace

void CNuCircle::Fit(const CNuPointArray& points, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    double dForm = 0.0;
    double dSumSquares = 0.0;
    Fit(points, &dForm, &dSumSquares, lMaxIterations);
}

void CNuCircle::Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                    long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    fit::CheckFinite(points, kLocation);
    // The plane is the only test of the data: too few points and collinear points are refused
    // there, under the plane's own location.
    CNuPlane plane;
    plane.Fit(points);
    CNuVector normal = plane.GetNormal();
    CNuPoint origin = plane.GetPoint();
    CNuVector u;
    normal.OrthonormalX(&u);
    CNuVector v = normal * u;

    int n = points.GetSize();
    const CNuPoint* p = points.GetData();
    const double* pu = u.GetData();
    const double* pv = v.GetData();
    double ox = origin.x();
    double oy = origin.y();
    double oz = origin.z();
    CNuVector xs(n);
    CNuVector ys(n);
    double* px = xs.GetData();
    double* py = ys.GetData();
    for (int i = 0; i < n; ++i) {
        double dx = p[i].x() - ox;
        double dy = p[i].y() - oy;
        double dz = p[i].z() - oz;
        px[i] = pu[0] * dx + pu[1] * dy + pu[2] * dz;
        py[i] = pv[0] * dx + pv[1] * dy + pv[2] * dz;
    }
    *pdForm = 0.0;
    *pdSumSquares = 0.0;

    double a = 0.0;
    double b = 0.0;
    double dRadius = 0.0;
    if (n == 3) {
        // The circle through three points: expanding det [s x y 1; s_i x_i y_i 1] = 0 gives
        // s D0 - x D1 + y D2 - D3 = 0. Near-collinear points give a huge radius; D0 is not tested.
        double s[3];
        double one[3] = {1.0, 1.0, 1.0};
        for (int i = 0; i < 3; ++i)
            s[i] = px[i] * px[i] + py[i] * py[i];
        double d0 = Determinant3(px, py, one);
        double d1 = Determinant3(s, py, one);
        double d2 = Determinant3(s, px, one);
        double d3 = Determinant3(s, px, py);
        dRadius = 0.5 * std::sqrt(d2 * d2 + d1 * d1 + 4.0 * d0 * d3) / std::fabs(d0);
        a = 0.5 * d1 / d0;
        b = -0.5 * d2 / d0;
    } else {
        // Algebraic start: rows (2 x_i, 2 y_i, -1) against x_i^2 + y_i^2. The third column stays
        // as the radius column of the Jacobian.
        CNuMatrix jacobian(n, 3);
        CNuVector rhs(n);
        double** ppJ = jacobian.GetData();
        double* pr = rhs.GetData();
        for (int i = 0; i < n; ++i) {
            ppJ[i][0] = 2.0 * px[i];
            ppJ[i][1] = 2.0 * py[i];
            ppJ[i][2] = -1.0;
            pr[i] = px[i] * px[i] + py[i] * py[i];
        }
        CNuLinearEquSys start;
        start.Solve(jacobian, rhs);
        if (start.SolutionExists() == eNuFalse) throw CNuBestfitException(11, kLocation);
        CNuVector kasa = start.GetSolution();
        a = kasa[0];
        b = kasa[1];
        dRadius = std::sqrt(a * a + b * b - kasa[2]);

        // Sums of the latest residual pass; each pass starts them afresh.
        double dLarge = NuGetLarge();
        double dSum = 0.0;
        double dHighest = -dLarge;
        double dLowest = dLarge;
        auto build = [&](CNuMatrix& J, CNuVector& r) {
            double** pp = J.GetData();
            double* pd = r.GetData();
            double dLargeNow = NuGetLarge();
            dSum = 0.0;
            dHighest = -dLargeNow;
            dLowest = dLargeNow;
            for (int i = 0; i < n; ++i) {
                double ex = px[i] - a;
                double ey = py[i] - b;
                // Plain root, unguarded: a point at the centre divides by zero.
                double d = std::sqrt(ex * ex + ey * ey);
                double ri = d - dRadius;
                pp[i][0] = (a - px[i]) / d;
                pp[i][1] = (b - py[i]) / d;
                pd[i] = -ri;
                dSum += ri * ri;
                if (ri > dHighest) dHighest = ri;
                if (ri < dLowest) dLowest = ri;
            }
        };
        auto apply = [&](const CNuVector& step) {
            a += step[0];
            b += step[1];
            dRadius += step[2];
            return step % step;
        };
        auto threshold = [] { return NuGetTol(); };
        fit::GaussNewton(lMaxIterations, kLocation, jacobian, rhs, build, apply, threshold);
        *pdSumSquares = dSum;
        *pdForm = dHighest - dLowest;
    }

    // Replaced only now, after the fit succeeded. The radius keeps whatever sign it came with.
    CNuPoint centre(ox + a * pu[0] + b * pv[0], oy + a * pu[1] + b * pv[1],
                    oz + a * pu[2] + b * pv[2]);
    m_dRadius = dRadius;
    SetPosition(centre, u, normal);
}

ENuFitResult CNuCircle::FitEx(const CNuPointArray& points, long lMaxIterations) {
    return fit::RunFitEx(lMaxIterations, kLocation, [&] { Fit(points, lMaxIterations); });
}

ENuFitResult CNuCircle::FitEx(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                              long lMaxIterations) {
    return fit::RunFitEx(lMaxIterations, kLocation,
                         [&] { Fit(points, pdForm, pdSumSquares, lMaxIterations); });
}

}  // namespace numorix
