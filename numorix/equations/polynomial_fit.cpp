// Least-squares fitting of a polynomial of fixed degree, through the singular value
// decomposition of the Vandermonde matrix.
#include <cmath>
#include <new>

#include "numorix/equations/polynomial.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

// Singular values below this fraction of the largest are treated as zero in Fit, and fitted
// coefficients below it in magnitude are set to zero: the power basis is ill-conditioned, and
// the decomposition's own cut at NuGetTol() keeps directions that are noise.
constexpr double kFitCut = 1e-10;

}  // namespace

void CNuPolynomial::Fit(const CNuDoubleArray& x, const CNuDoubleArray& y) {
    double dChiSquare = 0.0;
    Fit(x, y, &dChiSquare);
}

void CNuPolynomial::Fit(const CNuDoubleArray& x, const CNuDoubleArray& y, double* pdChiSquare) {
    if (x.GetSize() != y.GetSize()) {
        throw CNuOperationException(5, "data checking", "CNuPolynomial::Fit()");
    }
    const int m = x.GetSize();
    const int n = m_nDegree + 1;
    if (m < 1 || n < 1) throw CNuConstructionException(1, "CNuMatrix", "number of rows/columns", 0);
    const double* pdX = x.GetData();
    const double* pdY = y.GetData();

    // Vandermonde rows 1, x, x^2, ..., each power the previous one times x.
    CNuMatrix design(m, n);
    double** ppdA = design.GetData();
    for (int i = 0; i < m; ++i) {
        double dPower = 1.0;
        for (int j = 0; j < n; ++j) {
            ppdA[i][j] = dPower;
            dPower *= pdX[i];
        }
    }

    CNuVector w;
    CNuMatrix v;
    design.SVD(&w, &v);
    double* pdW = w.GetData();
    double dMax = -NuGetLarge();
    for (int j = 0; j < n; ++j) {
        if (pdW[j] > dMax) dMax = pdW[j];
    }
    const double dThreshold = kFitCut * dMax;
    for (int j = 0; j < n; ++j) {
        if (pdW[j] < dThreshold) pdW[j] = 0.0;
    }

    CNuVector b(m);
    for (int i = 0; i < m; ++i)
        b[i] = pdY[i];
    CNuVector solution(n);
    CNuLinearEquSys::SingularBackSubstitution(design, w, v, b, &solution);

    double* pdNew = new (std::nothrow) double[static_cast<std::size_t>(n)];
    if (pdNew == nullptr) throw CNuMemoryException("CNuPolynomial()");
    const double* pdSolution = solution.GetData();
    for (int j = 0; j < n; ++j)
        pdNew[j] = std::fabs(pdSolution[j]) < kFitCut ? 0.0 : pdSolution[j];
    delete[] m_pdCoefficients;
    m_pdCoefficients = pdNew;

    double dChiSquare = 0.0;
    for (int i = 0; i < m; ++i) {
        double dValue = 0.0;
        double dPower = 1.0;
        for (int j = 0; j < n; ++j) {
            dValue += m_pdCoefficients[j] * dPower;
            dPower *= pdX[i];
        }
        double dResidual = pdY[i] - dValue;
        dChiSquare += dResidual * dResidual;
    }
    if (dChiSquare < NuGetTol()) dChiSquare = 0.0;
    if (pdChiSquare != nullptr) *pdChiSquare = dChiSquare;
}

}  // namespace numorix
