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
    // The old array is freed only after the new one is in hand, so a failed allocation leaves
    // the vector as it was.
    double* pNew = Allocate(other.m_nSize, "CNuVector::Copy()");
    std::memcpy(pNew, other.m_pdData, sizeof(double) * static_cast<std::size_t>(other.m_nSize));
    if (pNew != m_pdData) Release(m_pdData);
    m_eObjectType = eTypeVector;
    m_pdData = pNew;
    m_nSize = other.m_nSize;
    m_nCapacity = other.m_nSize;
    return *this;
}

CNuVector::~CNuVector() { Release(m_pdData); }

double* CNuVector::Allocate(int nSize, const char* pszWhere) {
    if (nSize <= kInlineSize) return m_adInline;
    double* p = new (std::nothrow) double[static_cast<std::size_t>(nSize)];
    if (p == nullptr) throw CNuMemoryException(pszWhere);
    return p;
}

void CNuVector::Release(double* pdData) {
    if (pdData != m_adInline) delete[] pdData;
}

void CNuVector::Init(int nSize) {
    m_eObjectType = eTypeVector;
    m_pdData = Allocate(nSize, "CNuVector::Init()");
    std::memset(m_pdData, 0, sizeof(double) * static_cast<std::size_t>(nSize));
    m_nSize = nSize;
    m_nCapacity = nSize;
}

void CNuVector::Copy(const CNuVector& other) {
    m_eObjectType = eTypeVector;
    m_pdData = Allocate(other.m_nSize, "CNuVector::Copy()");
    std::memcpy(m_pdData, other.m_pdData, sizeof(double) * static_cast<std::size_t>(other.m_nSize));
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
