#include "numorix/equations/polynomial.h"

#include <climits>
#include <cmath>
#include <new>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {

void CNuPolynomial::Init(int nDegree, const char* pszLocation) {
    m_eObjectType = eTypePolynomial;
    m_nDegree = 0;
    m_pdCoefficients = nullptr;
    if (nDegree < 0) throw CNuConstructionException(2, "CNuPolynomial", "degree");
    // degree + 1 entries must be countable in an int.
    if (nDegree == INT_MAX) throw CNuMemoryException(pszLocation);
    m_pdCoefficients = new (std::nothrow) double[static_cast<std::size_t>(nDegree) + 1]();
    if (m_pdCoefficients == nullptr) throw CNuMemoryException(pszLocation);
    m_nDegree = nDegree;
}

void CNuPolynomial::Copy(const CNuPolynomial& other) {
    double* pdNew = new (std::nothrow) double[static_cast<std::size_t>(other.m_nDegree) + 1];
    if (pdNew == nullptr) throw CNuMemoryException("CNuPolynomial::Copy()");
    for (int i = 0; i <= other.m_nDegree; ++i)
        pdNew[i] = other.m_pdCoefficients[i];
    delete[] m_pdCoefficients;
    m_pdCoefficients = pdNew;
    m_nDegree = other.m_nDegree;
    m_eObjectType = eTypePolynomial;
}

CNuPolynomial::CNuPolynomial(int nDegree) : CNuAlgebra() { Init(nDegree, "CNuPolynomial()"); }

CNuPolynomial::CNuPolynomial(const CNuPolynomial& other)
    : CNuAlgebra(other), m_nDegree(0), m_pdCoefficients(nullptr) {
    Copy(other);
}

CNuPolynomial& CNuPolynomial::operator=(const CNuPolynomial& other) {
    if (this != &other) Copy(other);
    return *this;
}

CNuPolynomial::~CNuPolynomial() { delete[] m_pdCoefficients; }

double& CNuPolynomial::operator[](int i) {
    if (i < 0 || i > m_nDegree) {
        throw CNuOperationException(3, "element operator[]", "CNuPolynomial", 0, m_nDegree);
    }
    return m_pdCoefficients[i];
}

double CNuPolynomial::operator[](int i) const { return const_cast<CNuPolynomial&>(*this)[i]; }

ENuBoolean CNuPolynomial::IsZero(double dTol) const {
    for (int i = 0; i <= m_nDegree; ++i) {
        if (!(std::fabs(m_pdCoefficients[i]) < dTol)) return eNuFalse;
    }
    return eNuTrue;
}

ENuBoolean CNuPolynomial::IsEqual(const CNuPolynomial& other, double dTol) const {
    if (m_nDegree != other.m_nDegree) return eNuFalse;
    for (int i = 0; i <= m_nDegree; ++i) {
        if (!(std::fabs(m_pdCoefficients[i] - other.m_pdCoefficients[i]) < dTol)) return eNuFalse;
    }
    return eNuTrue;
}

CNuPolynomial CNuPolynomial::operator+(const CNuPolynomial& other) const {
    CNuPolynomial result(m_nDegree > other.m_nDegree ? m_nDegree : other.m_nDegree);
    for (int i = 0; i <= m_nDegree; ++i)
        result.m_pdCoefficients[i] = m_pdCoefficients[i];
    for (int i = 0; i <= other.m_nDegree; ++i)
        result.m_pdCoefficients[i] += other.m_pdCoefficients[i];
    result.Simplify();
    return result;
}

CNuPolynomial CNuPolynomial::operator-(const CNuPolynomial& other) const {
    CNuPolynomial result(m_nDegree > other.m_nDegree ? m_nDegree : other.m_nDegree);
    for (int i = 0; i <= m_nDegree; ++i)
        result.m_pdCoefficients[i] = m_pdCoefficients[i];
    for (int i = 0; i <= other.m_nDegree; ++i)
        result.m_pdCoefficients[i] -= other.m_pdCoefficients[i];
    result.Simplify();
    return result;
}

CNuPolynomial CNuPolynomial::operator*(const CNuPolynomial& other) const {
    long long nDegree = static_cast<long long>(m_nDegree) + other.m_nDegree;
    if (nDegree >= INT_MAX) throw CNuMemoryException("CNuPolynomial()");
    CNuPolynomial result(static_cast<int>(nDegree));
    for (int i = 0; i <= m_nDegree; ++i) {
        for (int j = 0; j <= other.m_nDegree; ++j)
            result.m_pdCoefficients[i + j] += m_pdCoefficients[i] * other.m_pdCoefficients[j];
    }
    result.Simplify();
    return result;
}

CNuPolynomial CNuPolynomial::operator+(double dValue) const {
    CNuPolynomial result(*this);
    result.m_pdCoefficients[0] += dValue;
    return result;
}

CNuPolynomial CNuPolynomial::operator-(double dValue) const {
    CNuPolynomial result(*this);
    result.m_pdCoefficients[0] -= dValue;
    return result;
}

CNuPolynomial& CNuPolynomial::operator+=(double dValue) {
    m_pdCoefficients[0] += dValue;
    return *this;
}

CNuPolynomial& CNuPolynomial::operator-=(double dValue) {
    m_pdCoefficients[0] -= dValue;
    return *this;
}

CNuPolynomial CNuPolynomial::operator*(double dFactor) const {
    if (std::fabs(dFactor) > NuGetLarge()) {
        throw CNuOperationException(7, "operator*", "CNuPolynomial");
    }
    CNuPolynomial result(*this);
    for (int i = 0; i <= m_nDegree; ++i)
        result.m_pdCoefficients[i] *= dFactor;
    return result;
}

CNuPolynomial& CNuPolynomial::operator*=(double dFactor) {
    if (std::fabs(dFactor) > NuGetLarge()) {
        throw CNuOperationException(7, "operator*=", "CNuPolynomial");
    }
    for (int i = 0; i <= m_nDegree; ++i)
        m_pdCoefficients[i] *= dFactor;
    return *this;
}

CNuPolynomial CNuPolynomial::operator/(double dDivisor) const {
    if (std::fabs(dDivisor) < NuGetZero()) {
        throw CNuOperationException(6, "operator/", "CNuPolynomial");
    }
    CNuPolynomial result(*this);
    for (int i = 0; i <= m_nDegree; ++i)
        result.m_pdCoefficients[i] /= dDivisor;
    return result;
}

CNuPolynomial& CNuPolynomial::operator/=(double dDivisor) {
    if (std::fabs(dDivisor) < NuGetZero()) {
        throw CNuOperationException(6, "operator/=", "CNuPolynomial");
    }
    for (int i = 0; i <= m_nDegree; ++i)
        m_pdCoefficients[i] /= dDivisor;
    return *this;
}

CNuPolynomial CNuPolynomial::operator-() const {
    CNuPolynomial result(*this);
    for (int i = 0; i <= m_nDegree; ++i)
        result.m_pdCoefficients[i] = -m_pdCoefficients[i];
    return result;
}

CNuPolynomial operator*(double dFactor, const CNuPolynomial& polynomial) {
    return polynomial * dFactor;
}

double CNuPolynomial::ValueAt(double x) const {
    double p = m_pdCoefficients[m_nDegree];
    for (int i = m_nDegree - 1; i >= 0; --i)
        p = p * x + m_pdCoefficients[i];
    return p;
}

double CNuPolynomial::DerivativeAt(double x) const {
    double p = m_pdCoefficients[m_nDegree];
    double d = 0.0;
    for (int i = m_nDegree - 1; i >= 0; --i) {
        d = d * x + p;
        p = p * x + m_pdCoefficients[i];
    }
    return d;
}

void CNuPolynomial::Simplify() {
    while (m_nDegree != 0 && std::fabs(m_pdCoefficients[m_nDegree]) < NuGetZero())
        --m_nDegree;
}

}  // namespace numorix
