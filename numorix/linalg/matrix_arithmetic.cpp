// CNuMatrix: factories, block access, predicates and arithmetic. Storage and element access are
// in matrix.cpp, the decompositions in their own files.
//
// Products are plain triple loops that accumulate each inner product in a double, in order of
// the summation index; the products with the own transpose compute the upper triangle and mirror.
#include <cmath>
#include <cstring>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/matrix.h"

namespace numorix {

namespace {

const char* const kszClass = "CNuMatrix";

// The checks shared by SubMatrix and SetSubMatrix, in their order: the bounds must be ascending
// before they are compared with the ranges.
void CheckBlock(int r1, int r2, int c1, int c2, int nRows, int nColumns, const char* pszWhere) {
    if (r1 > r2 || c1 > c2) throw CNuOperationException(15, "operation", pszWhere);
    if (r1 < 0 || r2 >= nRows) throw CNuOperationException(3, "operation", pszWhere, 0, nRows - 1);
    if (c1 < 0 || c2 >= nColumns) {
        throw CNuOperationException(3, "operation", pszWhere, 0, nColumns - 1);
    }
}

// c = a + b, or a - b, elementwise over nRows by nColumns; c may be a.
void AddScaled(double* const* ppdC, const double* const* ppdA, const double* const* ppdB, int nRows,
               int nColumns, bool bSubtract) {
    for (int i = 0; i < nRows; ++i) {
        double* pdC = ppdC[i];
        const double* pdA = ppdA[i];
        const double* pdB = ppdB[i];
        if (bSubtract) {
            for (int j = 0; j < nColumns; ++j) {
                pdC[j] = pdA[j] - pdB[j];
            }
        } else {
            for (int j = 0; j < nColumns; ++j) {
                pdC[j] = pdA[j] + pdB[j];
            }
        }
    }
}

// Every element multiplied by dFactor, or divided by it, from a into c; c may be a.
void Scale(double* const* ppdC, const double* const* ppdA, int nRows, int nColumns, double dFactor,
           bool bDivide) {
    for (int i = 0; i < nRows; ++i) {
        for (int j = 0; j < nColumns; ++j) {
            ppdC[i][j] = bDivide ? ppdA[i][j] / dFactor : ppdA[i][j] * dFactor;
        }
    }
}

}  // namespace

// Factories ------------------------------------------------------------------------------------

CNuMatrix CNuMatrix::Identity(int n) {
    CNuMatrix result(n, n);
    for (int i = 0; i < n; ++i) {
        result.m_ppdData[i][i] = 1.0;
    }
    return result;
}

CNuMatrix CNuMatrix::DiagonalMatrix(const CNuVector& diagonal) {
    const int n = diagonal.GetSize();
    CNuMatrix result(n, n);
    const double* pdDiagonal = diagonal.GetData();
    for (int i = 0; i < n; ++i) {
        result.m_ppdData[i][i] = pdDiagonal[i];
    }
    return result;
}

// Rows, columns and blocks ---------------------------------------------------------------------

CNuVector CNuMatrix::GetRowVector(int i) const {
    if (i < 0 || i >= m_nRows) {
        throw CNuOperationException(3, "operation", "CNuMatrix::GetRowVector()", 0, m_nRows - 1);
    }
    CNuVector row(m_nColumns);
    std::memcpy(row.GetData(), m_ppdData[i], sizeof(double) * static_cast<std::size_t>(m_nColumns));
    return row;
}

CNuVector CNuMatrix::GetColumnVector(int j) const {
    if (j < 0 || j >= m_nColumns) {
        throw CNuOperationException(3, "operation", "CNuMatrix::GetColumnVector()", 0,
                                    m_nColumns - 1);
    }
    CNuVector column(m_nRows);
    double* pdColumn = column.GetData();
    for (int i = 0; i < m_nRows; ++i) {
        pdColumn[i] = m_ppdData[i][j];
    }
    return column;
}

void CNuMatrix::SetRowVector(int i, const CNuVector& row) {
    const char* pszWhere = "CNuMatrix::SetRowVector()";
    if (i < 0 || i >= m_nRows)
        throw CNuOperationException(3, "operation", pszWhere, 0, m_nRows - 1);
    if (row.GetSize() != m_nColumns) throw CNuOperationException(5, "operation", pszWhere);
    std::memcpy(m_ppdData[i], row.GetData(), sizeof(double) * static_cast<std::size_t>(m_nColumns));
}

void CNuMatrix::SetColumnVector(int j, const CNuVector& column) {
    const char* pszWhere = "CNuMatrix::SetColumnVector()";
    if (j < 0 || j >= m_nColumns) {
        throw CNuOperationException(3, "operation", pszWhere, 0, m_nColumns - 1);
    }
    if (column.GetSize() != m_nRows) throw CNuOperationException(5, "operation", pszWhere);
    const double* pdColumn = column.GetData();
    for (int i = 0; i < m_nRows; ++i) {
        m_ppdData[i][j] = pdColumn[i];
    }
}

CNuMatrix CNuMatrix::SubMatrix(int r1, int r2, int c1, int c2) const {
    CheckBlock(r1, r2, c1, c2, m_nRows, m_nColumns, "CNuMatrix::SubMatrix()");
    CNuMatrix block(r2 - r1 + 1, c2 - c1 + 1);
    for (int i = r1; i <= r2; ++i) {
        std::memcpy(block.m_ppdData[i - r1], m_ppdData[i] + c1,
                    sizeof(double) * static_cast<std::size_t>(c2 - c1 + 1));
    }
    return block;
}

void CNuMatrix::SetSubMatrix(int r1, int r2, int c1, int c2, const CNuMatrix& block) {
    const char* pszWhere = "CNuMatrix::SetSubMatrix()";
    CheckBlock(r1, r2, c1, c2, m_nRows, m_nColumns, pszWhere);
    if (block.m_nRows != r2 - r1 + 1 || block.m_nColumns != c2 - c1 + 1) {
        throw CNuOperationException(5, "operation", pszWhere);
    }
    // memmove: the block may be this matrix itself.
    for (int i = r1; i <= r2; ++i) {
        std::memmove(m_ppdData[i] + c1, block.m_ppdData[i - r1],
                     sizeof(double) * static_cast<std::size_t>(c2 - c1 + 1));
    }
}

// Predicates -----------------------------------------------------------------------------------

ENuBoolean CNuMatrix::IsZero(double dTol) const {
    for (int i = 0; i < m_nRows; ++i) {
        for (int j = 0; j < m_nColumns; ++j) {
            if (!(dTol > std::fabs(m_ppdData[i][j]))) return eNuFalse;
        }
    }
    return eNuTrue;
}

ENuBoolean CNuMatrix::IsEqual(const CNuMatrix& other, double dTol) const {
    if (m_nRows != other.m_nRows || m_nColumns != other.m_nColumns) return eNuFalse;
    for (int i = 0; i < m_nRows; ++i) {
        for (int j = 0; j < m_nColumns; ++j) {
            if (!(dTol > std::fabs(m_ppdData[i][j] - other.m_ppdData[i][j]))) return eNuFalse;
        }
    }
    return eNuTrue;
}

ENuBoolean CNuMatrix::IsSymmetric(double dTol) const {
    if (m_nRows != m_nColumns) return eNuFalse;
    for (int i = 0; i < m_nRows; ++i) {
        for (int j = i + 1; j < m_nColumns; ++j) {
            if (!(dTol > std::fabs(m_ppdData[i][j] - m_ppdData[j][i]))) return eNuFalse;
        }
    }
    return eNuTrue;
}

ENuBoolean CNuMatrix::IsOrthogonal(double dTol) const {
    if (m_nRows != m_nColumns) return eNuFalse;
    return PostMultiplyTranspose().IsEqual(Identity(m_nRows), dTol);
}

// Arithmetic -----------------------------------------------------------------------------------

CNuMatrix CNuMatrix::operator+(const CNuMatrix& other) const {
    if (m_nRows != other.m_nRows || m_nColumns != other.m_nColumns) {
        throw CNuOperationException(5, "operator+", kszClass);
    }
    CNuMatrix result(m_nRows, m_nColumns);
    AddScaled(result.m_ppdData, m_ppdData, other.m_ppdData, m_nRows, m_nColumns, false);
    return result;
}

CNuMatrix CNuMatrix::operator-(const CNuMatrix& other) const {
    if (m_nRows != other.m_nRows || m_nColumns != other.m_nColumns) {
        throw CNuOperationException(5, "operator-", kszClass);
    }
    CNuMatrix result(m_nRows, m_nColumns);
    AddScaled(result.m_ppdData, m_ppdData, other.m_ppdData, m_nRows, m_nColumns, true);
    return result;
}

CNuMatrix& CNuMatrix::operator+=(const CNuMatrix& other) {
    if (m_nRows != other.m_nRows || m_nColumns != other.m_nColumns) {
        throw CNuOperationException(5, "operator+=", kszClass);
    }
    AddScaled(m_ppdData, m_ppdData, other.m_ppdData, m_nRows, m_nColumns, false);
    return *this;
}

CNuMatrix& CNuMatrix::operator-=(const CNuMatrix& other) {
    if (m_nRows != other.m_nRows || m_nColumns != other.m_nColumns) {
        throw CNuOperationException(5, "operator-=", kszClass);
    }
    AddScaled(m_ppdData, m_ppdData, other.m_ppdData, m_nRows, m_nColumns, true);
    return *this;
}

CNuMatrix CNuMatrix::operator*(const CNuMatrix& other) const {
    if (m_nColumns != other.m_nRows) throw CNuOperationException(5, "operator*", kszClass);
    const int nInner = m_nColumns;
    const int nColumns = other.m_nColumns;
    CNuMatrix result(m_nRows, nColumns);
    for (int i = 0; i < m_nRows; ++i) {
        const double* pdA = m_ppdData[i];
        double* pdC = result.m_ppdData[i];
        for (int j = 0; j < nColumns; ++j) {
            double dSum = 0.0;
            for (int k = 0; k < nInner; ++k) {
                dSum += pdA[k] * other.m_ppdData[k][j];
            }
            pdC[j] = dSum;
        }
    }
    return result;
}

CNuVector CNuMatrix::operator*(const CNuVector& column) const {
    if (column.GetSize() != m_nColumns) throw CNuOperationException(5, "operator*", kszClass);
    const double* pdV = column.GetData();
    CNuVector result(m_nRows);
    double* pdR = result.GetData();
    for (int i = 0; i < m_nRows; ++i) {
        const double* pdA = m_ppdData[i];
        double dSum = 0.0;
        for (int j = 0; j < m_nColumns; ++j) {
            dSum += pdA[j] * pdV[j];
        }
        pdR[i] = dSum;
    }
    return result;
}

CNuMatrix CNuMatrix::operator*(double dFactor) const {
    if (std::fabs(dFactor) > NuGetLarge()) throw CNuOperationException(7, "operator*", kszClass);
    CNuMatrix result(m_nRows, m_nColumns);
    Scale(result.m_ppdData, m_ppdData, m_nRows, m_nColumns, dFactor, false);
    return result;
}

CNuMatrix operator*(double dFactor, const CNuMatrix& matrix) { return matrix * dFactor; }

CNuMatrix& CNuMatrix::operator*=(double dFactor) {
    if (std::fabs(dFactor) > NuGetLarge()) throw CNuOperationException(7, "operator*=", kszClass);
    Scale(m_ppdData, m_ppdData, m_nRows, m_nColumns, dFactor, false);
    return *this;
}

CNuMatrix CNuMatrix::operator/(double dDivisor) const {
    if (NuGetZero() > std::fabs(dDivisor)) throw CNuOperationException(6, "operator/", kszClass);
    CNuMatrix result(m_nRows, m_nColumns);
    Scale(result.m_ppdData, m_ppdData, m_nRows, m_nColumns, dDivisor, true);
    return result;
}

CNuMatrix& CNuMatrix::operator/=(double dDivisor) {
    if (NuGetZero() > std::fabs(dDivisor)) throw CNuOperationException(6, "operator/=", kszClass);
    Scale(m_ppdData, m_ppdData, m_nRows, m_nColumns, dDivisor, true);
    return *this;
}

CNuMatrix CNuMatrix::operator-() const {
    CNuMatrix result(m_nRows, m_nColumns);
    for (int i = 0; i < m_nRows; ++i) {
        for (int j = 0; j < m_nColumns; ++j) {
            result.m_ppdData[i][j] = -m_ppdData[i][j];
        }
    }
    return result;
}

// A^T A: the normal-equation matrix of the columns. Upper triangle, then the mirror.
CNuMatrix CNuMatrix::PreMultiplyTranspose() const {
    const int n = m_nColumns;
    CNuMatrix result(n, n);
    for (int i = 0; i < n; ++i) {
        for (int j = i; j < n; ++j) {
            double dSum = 0.0;
            for (int k = 0; k < m_nRows; ++k) {
                dSum += m_ppdData[k][i] * m_ppdData[k][j];
            }
            result.m_ppdData[i][j] = dSum;
        }
    }
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < i; ++j) {
            result.m_ppdData[i][j] = result.m_ppdData[j][i];
        }
    }
    return result;
}

// A A^T: the inner products of the rows. Upper triangle, then the mirror.
CNuMatrix CNuMatrix::PostMultiplyTranspose() const {
    const int n = m_nRows;
    CNuMatrix result(n, n);
    for (int i = 0; i < n; ++i) {
        const double* pdI = m_ppdData[i];
        for (int j = i; j < n; ++j) {
            const double* pdJ = m_ppdData[j];
            double dSum = 0.0;
            for (int k = 0; k < m_nColumns; ++k) {
                dSum += pdI[k] * pdJ[k];
            }
            result.m_ppdData[i][j] = dSum;
        }
    }
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < i; ++j) {
            result.m_ppdData[i][j] = result.m_ppdData[j][i];
        }
    }
    return result;
}

CNuMatrix CNuMatrix::Transpose() const {
    CNuMatrix result(m_nColumns, m_nRows);
    for (int i = 0; i < m_nRows; ++i) {
        for (int j = 0; j < m_nColumns; ++j) {
            result.m_ppdData[j][i] = m_ppdData[i][j];
        }
    }
    return result;
}

double CNuMatrix::Trace() const {
    if (m_nRows != m_nColumns) throw CNuOperationException(16, "calculation", "CNuMatrix::Trace()");
    double dSum = 0.0;
    for (int i = 0; i < m_nRows; ++i) {
        dSum += m_ppdData[i][i];
    }
    return dSum;
}

}  // namespace numorix
