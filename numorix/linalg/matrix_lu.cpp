// LU factorisation (Crout, implicit partial pivoting), the separated factors, the determinant and
// the inverse of a square matrix.
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"

namespace numorix {

namespace {

constexpr int kCauseNotSquare = 16;  // stored 116
const char kCalculation[] = "calculation";

// Crout's method on the n by n rows behind ppdA, with each row's pivot figure scaled by the
// reciprocal of its largest magnitude. Row exchanges swap row pointers. Among equal figures the
// last row wins; a vanishing pivot marks the matrix singular and scales the multipliers below it
// as if the pivot were NuGetTol()^2.
void CroutFactor(double** ppdA, int n, CNuIntArray* pIndex, int* pnParity, int* pnSingular) {
    std::vector<double> scale(static_cast<std::size_t>(n));
    if (pIndex->GetCapacity() < pIndex->GetSize() + n) {
        pIndex->SetCapacity(pIndex->GetSize() + n);
    }
    *pnParity = 1;
    *pnSingular = 0;

    for (int i = 0; i < n; ++i) {
        double dBig = 0.0;
        const double* pdRow = ppdA[i];
        for (int j = 0; j < n; ++j) {
            double dAbs = std::fabs(pdRow[j]);
            if (dAbs > dBig) dBig = dAbs;
        }
        if (dBig == 0.0) {
            *pnSingular = 1;
            scale[static_cast<std::size_t>(i)] = 0.0;
        } else {
            scale[static_cast<std::size_t>(i)] = 1.0 / dBig;
        }
    }

    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < j; ++i) {
            double* pdRow = ppdA[i];
            double dSum = pdRow[j];
            for (int k = 0; k < i; ++k)
                dSum -= pdRow[k] * ppdA[k][j];
            pdRow[j] = dSum;
        }
        double dBest = 0.0;
        int iMax = j;
        for (int i = j; i < n; ++i) {
            double* pdRow = ppdA[i];
            double dSum = pdRow[j];
            for (int k = 0; k < j; ++k)
                dSum -= pdRow[k] * ppdA[k][j];
            pdRow[j] = dSum;
            double dFigure = scale[static_cast<std::size_t>(i)] * std::fabs(dSum);
            if (dFigure >= dBest) {
                dBest = dFigure;
                iMax = i;
            }
        }
        if (iMax != j) {
            std::swap(ppdA[iMax], ppdA[j]);
            *pnParity = -*pnParity;
            scale[static_cast<std::size_t>(iMax)] = scale[static_cast<std::size_t>(j)];
        }
        pIndex->Add(iMax);
        const double dPivot = ppdA[j][j];
        const bool bVanishing = std::fabs(dPivot) < NuGetZero();
        if (bVanishing) *pnSingular = 1;
        if (j == n - 1) break;
        const double dFactor = bVanishing ? 1.0 / (NuGetTol() * NuGetTol()) : 1.0 / dPivot;
        for (int i = j + 1; i < n; ++i)
            ppdA[i][j] *= dFactor;
    }
}

}  // namespace

void CNuMatrix::LUD(CNuIntArray* indx, int* d, int* singular) {
    if (m_nRows != m_nColumns) {
        throw CNuOperationException(kCauseNotSquare, kCalculation, "CNuMatrix::LUD()");
    }
    CroutFactor(m_ppdData, m_nRows, indx, d, singular);
}

void CNuMatrix::LUD2(CNuMatrix* P, CNuMatrix* L, CNuMatrix* U) const {
    CNuMatrix packed(*this);
    CNuIntArray index;
    int nParity = 1;
    int nSingular = 0;
    packed.LUD(&index, &nParity, &nSingular);
    const int n = m_nRows;

    CNuMatrix identity(n, n);
    for (int i = 0; i < n; ++i)
        identity.m_ppdData[i][i] = 1.0;
    *P = identity;
    *L = packed;
    *U = packed;

    for (int i = 0; i < n; ++i) {
        const int p = index[i];
        if (p != i) {
            // Exchange the contents of rows i and p of P.
            std::vector<double> row(P->m_ppdData[i], P->m_ppdData[i] + n);
            std::memcpy(P->m_ppdData[i], P->m_ppdData[p],
                        sizeof(double) * static_cast<std::size_t>(n));
            std::memcpy(P->m_ppdData[p], row.data(), sizeof(double) * static_cast<std::size_t>(n));
        }
        double* pdL = L->m_ppdData[i];
        pdL[i] = 1.0;
        for (int j = i + 1; j < n; ++j)
            pdL[j] = 0.0;
        double* pdU = U->m_ppdData[i];
        for (int j = 0; j < i; ++j)
            pdU[j] = 0.0;
    }
}

double CNuMatrix::Determinant() const {
    if (m_nRows != m_nColumns) {
        throw CNuOperationException(kCauseNotSquare, kCalculation, "CNuMatrix::Determinant()");
    }
    double** a = m_ppdData;
    switch (m_nRows) {
        case 1:
            return a[0][0];
        case 2:
            return a[1][1] * a[0][0] - a[0][1] * a[1][0];
        case 3:
            return a[1][1] * a[0][0] * a[2][2] + a[1][2] * a[0][1] * a[2][0] +
                   a[1][0] * a[0][2] * a[2][1] - a[1][2] * a[0][0] * a[2][1] -
                   a[1][0] * a[0][1] * a[2][2] - a[1][1] * a[0][2] * a[2][0];
        default:
            break;
    }
    CNuMatrix packed(*this);
    CNuIntArray index;
    int nParity = 1;
    int nSingular = 0;
    packed.LUD(&index, &nParity, &nSingular);
    if (nSingular != 0) return 0.0;
    double dDet = static_cast<double>(nParity);
    for (int i = 0; i < m_nRows; ++i)
        dDet *= packed.m_ppdData[i][i];
    return dDet;
}

CNuMatrix CNuMatrix::Inverse(ENuStatus* status) const {
    if (m_nRows != m_nColumns) {
        throw CNuOperationException(kCauseNotSquare, kCalculation, "CNuMatrix::Inverse()");
    }
    const int n = m_nRows;
    CNuVector e(n);
    CNuVector x(n);
    CNuMatrix result(n, n);
    *status = eNuStatusFailed;

    CNuLinearEquSys system(0);
    e[0] = 1.0;
    system.Solve(*this, e);
    if (system.SolutionExists() == eNuFalse) return CNuMatrix(n, n);
    x = system.GetSolution();
    for (int i = 0; i < n; ++i)
        result.m_ppdData[i][0] = x[i];

    for (int k = 1; k < n; ++k) {
        for (int i = 0; i < n; ++i)
            e[i] = 0.0;
        e[k] = 1.0;
        system.SetRightHandSide(e);
        if (system.SolutionExists() == eNuFalse) return result;
        x = system.GetSolution();
        for (int i = 0; i < n; ++i)
            result.m_ppdData[i][k] = x[i];
    }
    *status = eNuStatusOk;
    return result;
}

}  // namespace numorix
