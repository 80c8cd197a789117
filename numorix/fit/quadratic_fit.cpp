// The general conic a x^2 + b x y + c y^2 + d x + e y + 1 = 0 fitted by linear least squares
// (the algebraic distance, not the orthogonal one), and its reduction to focal form: the
// principal axes from the eigenvalues of ((a, b/2), (b/2, c)), the centre from the gradient
// condition, the semi-axes from the constant of the centred conic. The result starts the ellipse
// and hyperbola fits.
#include <cmath>

#include "numorix/curves/curve.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

double Determinant3(double a11, double a12, double a13, double a21, double a22, double a23,
                    double a31, double a32, double a33) {
    return a11 * (a22 * a33 - a23 * a32) - a12 * (a21 * a33 - a23 * a31) +
           a13 * (a21 * a32 - a22 * a31);
}

}  // namespace

void CNuCurve::QuadraticFit(const CNuVector& x, const CNuVector& y, CNuVector* pCoefficients) {
    int n = x.GetSize();
    if (n == 0) return;
    CNuMatrix A(n, 5);
    CNuVector b(n);
    double** ppA = A.GetData();
    for (int i = 0; i < n; ++i) {
        double xi = x[i];
        double yi = y[i];
        ppA[i][0] = xi * xi;
        ppA[i][1] = xi * yi;
        ppA[i][2] = yi * yi;
        ppA[i][3] = xi;
        ppA[i][4] = yi;
        b[i] = -1.0;
    }
    CNuLinearEquSys system;
    system.Solve(A, b);
    if (system.SolutionExists() == eNuFalse) throw CNuBestfitException(6, "CNuCurve");
    *pCoefficients = system.GetSolution();
}

void CNuCurve::CentredQuadraticFit(const CNuVector& x, const CNuVector& y, CNuVector* pResult,
                                   int nMode) {
    CNuVector coefficients(5);
    QuadraticFit(x, y, &coefficients);
    double a = coefficients[0];
    double b = coefficients[1];
    double c = coefficients[2];
    double d = coefficients[3];
    double e = coefficients[4];

    double dCos = 1.0;
    double dSin = 0.0;
    double l1 = a;
    double l2 = c;
    if (!(std::fabs(b) < NuGetLengthTol())) {
        double t = c - a;
        double w = std::sqrt(t * t + b * b);
        double k1 = (t + w) / b;
        double k2 = (t - w) / b;
        double k = k1 < k2 ? k1 : k2;
        if (!(k > -NuGetTol())) k = k1 < k2 ? k2 : k1;
        if (!(k > 1e18)) {
            dCos = 1.0 / std::sqrt(k * k + 1.0);
            dSin = k * dCos;
        } else {
            dCos = 0.0;
            dSin = 1.0;
        }
        l1 = (a + c + w) / 2.0;
        l2 = (a + c - w) / 2.0;
        if ((l1 - l2) * b < 0.0) {
            double dSwap = l1;
            l1 = l2;
            l2 = dSwap;
        }
    }

    // The quadratic part must be indefinite for a hyperbola, definite for an ellipse.
    double D = a * c - (b / 2.0) * (b / 2.0);
    double dTol2 = NuGetTol() * NuGetTol();
    bool bKind = nMode == 0 ? D < -dTol2 : D > dTol2;
    if (!bKind) throw CNuBestfitException(6, "CNuCurve");

    // Centre: ((a, b/2), (b/2, c)) (cx, cy) = (-d/2, -e/2) by Cramer's rule.
    double cx = ((-d / 2.0) * c - (b / 2.0) * (-e / 2.0)) / D;
    double cy = (a * (-e / 2.0) - (-d / 2.0) * (b / 2.0)) / D;

    double k0 = Determinant3(a, b / 2.0, d / 2.0, b / 2.0, c, e / 2.0, d / 2.0, e / 2.0, 1.0) / D;
    double s1 = std::sqrt(std::fabs(k0 / l1));
    double s2 = std::sqrt(std::fabs(k0 / l2));

    bool bExchange = nMode == 0 ? !(k0 * l1 < 0.0) : std::fabs(l2) < std::fabs(l1);
    if (bExchange) {
        double dNewCos = dSin;
        double dNewSin = -dCos;
        dCos = dNewCos;
        dSin = dNewSin;
        double dSwap = s1;
        s1 = s2;
        s2 = dSwap;
    }
    double f = nMode == 0 ? std::sqrt(s1 * s1 + s2 * s2) : std::sqrt(s1 * s1 - s2 * s2);

    if (pResult->GetSize() < 4) *pResult = CNuVector(4);
    CNuVector& r = *pResult;
    r[0] = cx - f * dCos;
    r[1] = cy - f * dSin;
    r[2] = cx + f * dCos;
    r[3] = cy + f * dSin;
    if (r.GetSize() > 4) r[4] = s1;
}

}  // namespace numorix
