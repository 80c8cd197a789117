// CNuPolynomial: a dense real polynomial p(x) = c[0] + c[1] x + ... + c[n] x^n, coefficients in
// ascending order.
//
// The degree is a storage fact: the leading coefficient may be zero until Simplify drops the
// leading terms below NuGetZero() (never the constant term). Sums and products simplify their
// result; scaling does not.
//
//   ValueAt, DerivativeAt   Horner's rule, and its paired recurrence for p'.
//   Fit(x, y, chisq)        least squares in the power basis of the polynomial's degree:
//                           minimise sum (y[i] - p(x[i]))^2 through the singular value
//                           decomposition of the Vandermonde matrix, with singular values below
//                           1e-10 of the largest treated as zero (the basis is ill-conditioned),
//                           so a rank-deficient or under-determined problem gives the
//                           minimum-norm solution. Coefficients below 1e-10 in magnitude are set
//                           to zero. chisq is the residual sum of squares, 0 below NuGetTol().
#ifndef NUMORIX_EQUATIONS_POLYNOMIAL_H
#define NUMORIX_EQUATIONS_POLYNOMIAL_H

#include "numorix/foundation/double_array.h"
#include "numorix/foundation/object.h"

namespace numorix {

class CNuPolynomial : public CNuAlgebra {
  public:
    explicit CNuPolynomial(int nDegree = 0);
    CNuPolynomial(const CNuPolynomial& other);
    CNuPolynomial& operator=(const CNuPolynomial& other);
    ~CNuPolynomial() override;

    double& operator[](int i);
    double operator[](int i) const;
    int GetDegree() const { return m_nDegree; }
    double* GetData() { return m_pdCoefficients; }
    const double* GetData() const { return m_pdCoefficients; }

    ENuBoolean IsZero(double dTol) const;
    ENuBoolean IsEqual(const CNuPolynomial& other, double dTol) const;

    CNuPolynomial operator+(const CNuPolynomial& other) const;
    CNuPolynomial operator-(const CNuPolynomial& other) const;
    CNuPolynomial operator*(const CNuPolynomial& other) const;
    CNuPolynomial operator+(double dValue) const;
    CNuPolynomial operator-(double dValue) const;
    CNuPolynomial& operator+=(double dValue);
    CNuPolynomial& operator-=(double dValue);
    CNuPolynomial operator*(double dFactor) const;
    CNuPolynomial& operator*=(double dFactor);
    CNuPolynomial operator/(double dDivisor) const;
    CNuPolynomial& operator/=(double dDivisor);
    CNuPolynomial operator-() const;

    void Fit(const CNuDoubleArray& x, const CNuDoubleArray& y);
    void Fit(const CNuDoubleArray& x, const CNuDoubleArray& y, double* pdChiSquare);

    double ValueAt(double x) const;
    double DerivativeAt(double x) const;
    void Simplify();

  private:
    void Init(int nDegree, const char* pszLocation);
    void Copy(const CNuPolynomial& other);

    int m_nDegree;
    double* m_pdCoefficients;  // m_nDegree + 1 entries
};

CNuPolynomial operator*(double dFactor, const CNuPolynomial& polynomial);

}  // namespace numorix

#endif  // NUMORIX_EQUATIONS_POLYNOMIAL_H
