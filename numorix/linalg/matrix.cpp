#include "numorix/linalg/matrix.h"

#include <cstring>
#include <new>

#include "numorix/foundation/exception.h"

namespace numorix {

// Storage. The rows live in one block behind the row-pointer table; the table is what routines
// see and permute. Arithmetic is in matrix_arithmetic.cpp, the decompositions in their own files.

CNuMatrix::CNuMatrix() : m_nRows(0), m_nColumns(0), m_ppdData(nullptr), m_pEigen(nullptr) {
    Init(4, 4);
}

CNuMatrix::CNuMatrix(int nRows, int nColumns)
    : m_nRows(0), m_nColumns(0), m_ppdData(nullptr), m_pEigen(nullptr) {
    if (nRows < 1 || nColumns < 1) {
        throw CNuConstructionException(1, "CNuMatrix", "number of rows/columns", 0);
    }
    Init(nRows, nColumns);
}

CNuMatrix::CNuMatrix(const CNuMatrix& other)
    : CNuAlgebra(other), m_nRows(0), m_nColumns(0), m_ppdData(nullptr), m_pEigen(nullptr) {
    Copy(other);
}

CNuMatrix& CNuMatrix::operator=(const CNuMatrix& other) {
    if (this == &other) return *this;
    if (m_nRows == other.m_nRows && m_nColumns == other.m_nColumns) {
        // Same shape: overwrite in place; the eigen cache stays.
        for (int i = 0; i < m_nRows; ++i) {
            std::memcpy(m_ppdData[i], other.m_ppdData[i],
                        sizeof(double) * static_cast<std::size_t>(m_nColumns));
        }
        return *this;
    }
    CNuMatrix copy(other);
    Free();
    m_nRows = copy.m_nRows;
    m_nColumns = copy.m_nColumns;
    m_ppdData = copy.m_ppdData;
    m_pEigen = copy.m_pEigen;
    copy.m_ppdData = nullptr;
    copy.m_pEigen = nullptr;
    return *this;
}

CNuMatrix::~CNuMatrix() { Free(); }

void CNuMatrix::Free() {
    if (m_ppdData != nullptr) {
        // The block of rows starts at the lowest row pointer: rows may have been permuted.
        double* pBlock = m_ppdData[0];
        for (int i = 1; i < m_nRows; ++i) {
            if (m_ppdData[i] < pBlock) pBlock = m_ppdData[i];
        }
        delete[] pBlock;
        delete[] m_ppdData;
        m_ppdData = nullptr;
    }
    if (m_pEigen != nullptr) {
        delete m_pEigen->pMatrix;
        delete m_pEigen->pVectors;
        delete m_pEigen;
        m_pEigen = nullptr;
    }
}

namespace {

// Allocates the row-pointer table and one block for all rows; zero-filled when bZero is set.
double** AllocateRows(int nRows, int nColumns, bool bZero, const char* pszLocation) {
    std::size_t nElements = static_cast<std::size_t>(nRows) * static_cast<std::size_t>(nColumns);
    double** ppTable = new (std::nothrow) double*[static_cast<std::size_t>(nRows)];
    double* pBlock = nullptr;
    if (ppTable != nullptr) {
        pBlock =
            bZero ? new (std::nothrow) double[nElements]() : new (std::nothrow) double[nElements];
    }
    if (pBlock == nullptr) {
        delete[] ppTable;
        throw CNuMemoryException(pszLocation);
    }
    for (int i = 0; i < nRows; ++i) {
        ppTable[i] = pBlock + static_cast<std::size_t>(i) * static_cast<std::size_t>(nColumns);
    }
    return ppTable;
}

}  // namespace

void CNuMatrix::Init(int nRows, int nColumns) {
    m_eObjectType = eTypeMatrix;
    double** ppTable = AllocateRows(nRows, nColumns, true, "CNuMatrix::Init()");
    m_ppdData = ppTable;
    m_nRows = nRows;
    m_nColumns = nColumns;
}

void CNuMatrix::Copy(const CNuMatrix& other) {
    // Every element is overwritten, so the block needs no zero-fill.
    m_eObjectType = eTypeMatrix;
    m_ppdData = AllocateRows(other.m_nRows, other.m_nColumns, false, "CNuMatrix::Copy()");
    m_nRows = other.m_nRows;
    m_nColumns = other.m_nColumns;
    for (int i = 0; i < m_nRows; ++i) {
        std::memcpy(m_ppdData[i], other.m_ppdData[i],
                    sizeof(double) * static_cast<std::size_t>(m_nColumns));
    }
    if (other.m_pEigen != nullptr) {
        auto* pEigen = new SEigen(*other.m_pEigen);
        pEigen->pMatrix = nullptr;
        pEigen->pVectors = nullptr;
        m_pEigen = pEigen;
        if (other.m_pEigen->pMatrix != nullptr) {
            pEigen->pMatrix = new CNuMatrix(*other.m_pEigen->pMatrix);
        }
        if (other.m_pEigen->pVectors != nullptr) {
            pEigen->pVectors = new CNuMatrix(*other.m_pEigen->pVectors);
        }
    }
}

void CNuMatrix::CheckRowColumnIndex(const int& i, const int& j) const {
    if (i < 0 || i >= m_nRows) {
        throw CNuOperationException(3, "operation", "CNuMatrix::Element()", 0, m_nRows - 1);
    }
    if (j < 0 || j >= m_nColumns) {
        throw CNuOperationException(3, "operation", "CNuMatrix::Element()", 0, m_nColumns - 1);
    }
}

double& CNuMatrix::Element(int i, int j) {
    CheckRowColumnIndex(i, j);
    return m_ppdData[i][j];
}

const double& CNuMatrix::Element(int i, int j) const {
    CheckRowColumnIndex(i, j);
    return m_ppdData[i][j];
}

double CNuMatrix::GetElement(int i, int j) const { return Element(i, j); }

void CNuMatrix::SetElement(int i, int j, double dValue) { Element(i, j) = dValue; }

}  // namespace numorix
