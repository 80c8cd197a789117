// Complex scalars in Cartesian form (CNuComplex, re + i im) and in polar form (CNuComplexPolar,
// modulus and argument in radians).
//
//   a / b         Smith's scaled division: with r the ratio of the smaller to the larger part of b,
//                 neither |b|^2 nor the products overflow early. A zero divisor is not tested and
//                 gives non-finite parts.
//   Modulus       the scaled hypotenuse NuPythag(re, im).
//   Sqrt          the principal root: non-negative real part, and for a negative real axis the
//                 root on the positive imaginary axis.
//   Power, Roots  through the polar form: z^n = (m^n, n arg); the n roots of z are
//                 (m^(1/n), (2 k pi + arg) / n), k = 0 .. n-1, arguments not reduced.
//
// A polar number has a strictly positive modulus, so zero has no polar form: ToPolarForm, Power
// and Roots of zero fail with construction cause 5.
#ifndef NUMORIX_COMPLEX_COMPLEX_H
#define NUMORIX_COMPLEX_COMPLEX_H

#include "numorix/foundation/object.h"

namespace numorix {

class CNuComplexArray;
class CNuComplexPolarArray;
class CNuComplexPolar;

class CNuComplex : public CNuAlgebra {
  public:
    CNuComplex(double dReal = 0.0, double dImaginary = 0.0);
    CNuComplex(const CNuComplex& other);
    CNuComplex& operator=(const CNuComplex& other);
    ~CNuComplex() override;

    void GetData(double* pdReal, double* pdImaginary) const;
    double Real() const { return m_dReal; }
    double Imaginary() const { return m_dImaginary; }

    CNuComplexPolar ToPolarForm() const;

    ENuBoolean IsZero(double dTol) const;
    ENuBoolean IsEqual(const CNuComplex& other, double dTol) const;
    ENuBoolean IsReal(double dTol) const;
    ENuBoolean IsImaginary(double dTol) const;

    CNuComplex operator+(const CNuComplex& other) const;
    CNuComplex operator-(const CNuComplex& other) const;
    CNuComplex operator-() const;
    CNuComplex& operator+=(const CNuComplex& other);
    CNuComplex& operator-=(const CNuComplex& other);
    CNuComplex operator*(const CNuComplex& other) const;
    CNuComplex operator/(const CNuComplex& other) const;
    CNuComplex operator*(double dFactor) const;
    CNuComplex& operator*=(double dFactor);
    CNuComplex operator/(double dDivisor) const;
    CNuComplex& operator/=(double dDivisor);

    double Modulus() const;
    CNuComplex Conjugate() const;
    CNuComplex Sqrt() const;
    CNuComplex Power(int n) const;
    CNuComplexArray Roots(int n) const;

  private:
    double m_dReal;
    double m_dImaginary;
};

CNuComplex operator*(double dFactor, const CNuComplex& z);

class CNuComplexPolar : public CNuAlgebra {
  public:
    // The default number is 1 (modulus 1, argument 0): a polar number cannot be zero.
    CNuComplexPolar(double dModulus = 1.0, double dArgument = 0.0);
    CNuComplexPolar(const CNuComplexPolar& other);
    CNuComplexPolar& operator=(const CNuComplexPolar& other);
    ~CNuComplexPolar() override;

    double Modulus() const { return m_dModulus; }
    double Argument() const { return m_dArgument; }
    void GetData(double* pdModulus, double* pdArgument) const;
    CNuComplex ToCartesianForm() const;

    CNuComplexPolar operator*(const CNuComplexPolar& other) const;
    CNuComplexPolar operator/(const CNuComplexPolar& other) const;
    CNuComplexPolar Power(int n) const;
    CNuComplexPolarArray Roots(int n) const;

  private:
    double m_dModulus;
    double m_dArgument;
};

}  // namespace numorix

#endif  // NUMORIX_COMPLEX_COMPLEX_H
