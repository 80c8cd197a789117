#include "numorix/linalg/vector.h"

#include <cstring>
#include <new>

#include "numorix/foundation/exception.h"

namespace numorix {

// Storage. The operations of the vector are in vector_operations.cpp.

CNuVector::CNuVector(double x, double y, double z) : m_pdData(nullptr), m_nSize(0), m_nCapacity(0) {
    Init(3);
    m_pdData[0] = x;
    m_pdData[1] = y;
    m_pdData[2] = z;
}

CNuVector::CNuVector(int nSize) : m_pdData(nullptr), m_nSize(0), m_nCapacity(0) {
    if (nSize < 1) throw CNuConstructionException(1, "CNuVector", "size", 0);
    Init(nSize);
}

CNuVector::CNuVector(const CNuVector& other)
    : CNuGeometry(other), m_pdData(nullptr), m_nSize(0), m_nCapacity(0) {
    Copy(other);
}

CNuVector& CNuVector::operator=(const CNuVector& other) {
    if (this == &other) return *this;
    if (m_nSize == other.m_nSize) {
        std::memcpy(m_pdData, other.m_pdData, sizeof(double) * static_cast<std::size_t>(m_nSize));
        return *this;
    }
    double* pOld = m_pdData;
    m_pdData = nullptr;
    try {
        Copy(other);
    } catch (...) {
        m_pdData = pOld;
        throw;
    }
    delete[] pOld;
    return *this;
}

CNuVector::~CNuVector() { delete[] m_pdData; }

void CNuVector::Init(int nSize) {
    m_eObjectType = eTypeVector;
    m_pdData = new (std::nothrow) double[static_cast<std::size_t>(nSize)]();
    if (m_pdData == nullptr) throw CNuMemoryException("CNuVector::Init()");
    m_nSize = nSize;
    m_nCapacity = nSize;
}

void CNuVector::Copy(const CNuVector& other) {
    m_eObjectType = eTypeVector;
    double* p = new (std::nothrow) double[static_cast<std::size_t>(other.m_nSize)];
    if (p == nullptr) throw CNuMemoryException("CNuVector::Copy()");
    std::memcpy(p, other.m_pdData, sizeof(double) * static_cast<std::size_t>(other.m_nSize));
    m_pdData = p;
    m_nSize = other.m_nSize;
    m_nCapacity = other.m_nSize;
}

void CNuVector::CheckIndex(const int& i) const {
    if (i < 0 || i >= m_nSize) {
        throw CNuOperationException(3, "element operator[]", "CNuVector", 0, m_nSize - 1);
    }
}

double& CNuVector::operator[](int i) {
    CheckIndex(i);
    return m_pdData[i];
}

const double& CNuVector::operator[](int i) const {
    CheckIndex(i);
    return m_pdData[i];
}

}  // namespace numorix
