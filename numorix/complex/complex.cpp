#include "numorix/complex/complex.h"

#include <cmath>

#include "numorix/complex/complex_array.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/internal/scalar_kernels.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {

// ---- CNuComplex ---------------------------------------------------------------------------------

CNuComplex::CNuComplex(double dReal, double dImaginary) : m_dReal(dReal), m_dImaginary(dImaginary) {
    m_eObjectType = eTypeComplex;
}

CNuComplex::CNuComplex(const CNuComplex& other) = default;
CNuComplex& CNuComplex::operator=(const CNuComplex& other) = default;
CNuComplex::~CNuComplex() = default;

void CNuComplex::GetData(double* pdReal, double* pdImaginary) const {
    if (pdReal != nullptr) *pdReal = m_dReal;
    if (pdImaginary != nullptr) *pdImaginary = m_dImaginary;
}

CNuComplexPolar CNuComplex::ToPolarForm() const {
    double dZero = NuGetZero();
    if (std::fabs(m_dReal) < dZero && std::fabs(m_dImaginary) < dZero) {
        throw CNuConstructionException(5, "CNuComplexPolar", "modulus");
    }
    double dModulus = Modulus();
    return CNuComplexPolar(dModulus, NuArcCosSin(m_dReal / dModulus, m_dImaginary / dModulus));
}

ENuBoolean CNuComplex::IsZero(double dTol) const {
    return (std::fabs(m_dReal) < dTol && std::fabs(m_dImaginary) < dTol) ? eNuTrue : eNuFalse;
}

ENuBoolean CNuComplex::IsEqual(const CNuComplex& other, double dTol) const {
    return (std::fabs(m_dReal - other.m_dReal) < dTol &&
            std::fabs(m_dImaginary - other.m_dImaginary) < dTol)
               ? eNuTrue
               : eNuFalse;
}

ENuBoolean CNuComplex::IsReal(double dTol) const {
    return std::fabs(m_dImaginary) < dTol ? eNuTrue : eNuFalse;
}

ENuBoolean CNuComplex::IsImaginary(double dTol) const {
    return (!IsReal(dTol) && std::fabs(m_dReal) < dTol) ? eNuTrue : eNuFalse;
}

CNuComplex CNuComplex::operator+(const CNuComplex& other) const {
    return CNuComplex(m_dReal + other.m_dReal, m_dImaginary + other.m_dImaginary);
}

CNuComplex CNuComplex::operator-(const CNuComplex& other) const {
    return CNuComplex(m_dReal - other.m_dReal, m_dImaginary - other.m_dImaginary);
}

CNuComplex CNuComplex::operator-() const { return CNuComplex(-m_dReal, -m_dImaginary); }

CNuComplex& CNuComplex::operator+=(const CNuComplex& other) {
    m_dReal += other.m_dReal;
    m_dImaginary += other.m_dImaginary;
    return *this;
}

CNuComplex& CNuComplex::operator-=(const CNuComplex& other) {
    m_dReal -= other.m_dReal;
    m_dImaginary -= other.m_dImaginary;
    return *this;
}

CNuComplex CNuComplex::operator*(const CNuComplex& other) const {
    return CNuComplex(m_dReal * other.m_dReal - m_dImaginary * other.m_dImaginary,
                      m_dReal * other.m_dImaginary + m_dImaginary * other.m_dReal);
}

// Smith's division: divide through by the larger part of the divisor.
CNuComplex CNuComplex::operator/(const CNuComplex& other) const {
    double dRe = other.m_dReal;
    double dIm = other.m_dImaginary;
    if (std::fabs(dRe) >= std::fabs(dIm)) {
        double r = dIm / dRe;
        double d = dRe + dIm * r;
        return CNuComplex((m_dReal + m_dImaginary * r) / d, (m_dImaginary - m_dReal * r) / d);
    }
    double r = dRe / dIm;
    double d = dRe * r + dIm;
    return CNuComplex((m_dReal * r + m_dImaginary) / d, (m_dImaginary * r - m_dReal) / d);
}

CNuComplex CNuComplex::operator*(double dFactor) const {
    if (std::fabs(dFactor) > NuGetLarge())
        throw CNuOperationException(7, "operator*", "CNuComplex");
    return CNuComplex(m_dReal * dFactor, m_dImaginary * dFactor);
}

CNuComplex& CNuComplex::operator*=(double dFactor) {
    if (std::fabs(dFactor) > NuGetLarge()) {
        throw CNuOperationException(7, "operator*=", "CNuComplex");
    }
    m_dReal *= dFactor;
    m_dImaginary *= dFactor;
    return *this;
}

CNuComplex CNuComplex::operator/(double dDivisor) const {
    if (std::fabs(dDivisor) < NuGetZero())
        throw CNuOperationException(6, "operator/", "CNuComplex");
    return CNuComplex(m_dReal / dDivisor, m_dImaginary / dDivisor);
}

CNuComplex& CNuComplex::operator/=(double dDivisor) {
    if (std::fabs(dDivisor) < NuGetZero()) {
        throw CNuOperationException(6, "operator/=", "CNuComplex");
    }
    m_dReal /= dDivisor;
    m_dImaginary /= dDivisor;
    return *this;
}

CNuComplex operator*(double dFactor, const CNuComplex& z) {
    if (std::fabs(dFactor) > NuGetLarge())
        throw CNuOperationException(7, "operator*", "CNuComplex");
    return CNuComplex(dFactor * z.Real(), dFactor * z.Imaginary());
}

double CNuComplex::Modulus() const { return NuPythag(m_dReal, m_dImaginary); }

CNuComplex CNuComplex::Conjugate() const { return CNuComplex(m_dReal, -m_dImaginary); }

// Principal root, with the ratio of the smaller to the larger part so that no square overflows.
CNuComplex CNuComplex::Sqrt() const {
    internal::ComplexParts r = internal::ComplexSqrt(m_dReal, m_dImaginary);
    return CNuComplex(r.re, r.im);
}

CNuComplex CNuComplex::Power(int n) const {
    if (n <= 0) throw CNuOperationException(2, "Power operation", "CNuComplex::Power()", 0);
    return ToPolarForm().Power(n).ToCartesianForm();
}

CNuComplexArray CNuComplex::Roots(int n) const {
    if (n < 2) throw CNuOperationException(2, "Roots operation", "CNuComplex::Roots()", 1);
    CNuComplexPolarArray polar = ToPolarForm().Roots(n);
    CNuComplexArray roots(n);
    for (int k = 0; k < polar.GetSize(); ++k)
        roots.Add(polar[k].ToCartesianForm());
    return roots;
}

// ---- CNuComplexPolar ----------------------------------------------------------------------------

CNuComplexPolar::CNuComplexPolar(double dModulus, double dArgument)
    : m_dModulus(dModulus), m_dArgument(dArgument) {
    m_eObjectType = eTypeComplexPolar;
    if (!(dModulus > 0.0)) throw CNuConstructionException(5, "CNuComplexPolar", "modulus");
}

CNuComplexPolar::CNuComplexPolar(const CNuComplexPolar& other) = default;
CNuComplexPolar& CNuComplexPolar::operator=(const CNuComplexPolar& other) = default;
CNuComplexPolar::~CNuComplexPolar() = default;

void CNuComplexPolar::GetData(double* pdModulus, double* pdArgument) const {
    if (pdModulus != nullptr) *pdModulus = m_dModulus;
    if (pdArgument != nullptr) *pdArgument = m_dArgument;
}

CNuComplex CNuComplexPolar::ToCartesianForm() const {
    return CNuComplex(m_dModulus * std::cos(m_dArgument), m_dModulus * std::sin(m_dArgument));
}

CNuComplexPolar CNuComplexPolar::operator*(const CNuComplexPolar& other) const {
    return CNuComplexPolar(m_dModulus * other.m_dModulus, m_dArgument + other.m_dArgument);
}

CNuComplexPolar CNuComplexPolar::operator/(const CNuComplexPolar& other) const {
    return CNuComplexPolar(m_dModulus / other.m_dModulus, m_dArgument - other.m_dArgument);
}

// The refusal looks at the modulus itself, not at its power.
CNuComplexPolar CNuComplexPolar::Power(int n) const {
    if (m_dModulus > NuGetLarge()) {
        throw CNuOperationException(7, "Power operation", "CNuComplexPolar::Power()");
    }
    if (n <= 0) throw CNuOperationException(2, "Power operation", "CNuComplexPolar::Power()", 0);
    return CNuComplexPolar(std::pow(m_dModulus, n), n * m_dArgument);
}

CNuComplexPolarArray CNuComplexPolar::Roots(int n) const {
    if (n < 2) throw CNuOperationException(2, "Roots operation", "CNuComplexPolar::Roots()", 1);
    double dModulus = std::pow(m_dModulus, 1.0 / n);
    CNuComplexPolarArray roots(n);
    for (int k = 0; k < n; ++k)
        roots.Add(CNuComplexPolar(dModulus, (2.0 * k * Nu_PI + m_dArgument) / n));
    return roots;
}

}  // namespace numorix
