// CNuAlgEqu: all roots of a polynomial with real or complex coefficients, separated into real
// roots (counted with multiplicity) and complex roots with a non-negligible imaginary part.
//
// Real polynomials, after the negligible leading coefficients are trimmed:
//   degree 1       -c0 / c1;
//   degree 2       the cancellation-free quadratic formula; a pair whose discriminant is
//                  negative only by rounding, so that p(re) is below NuGetTol(), is a double root;
//   degree 3       Cardano's reduction of the monic form;
//   degree 4       Ferrari's method through the smallest real root of the resolvent cubic, each
//                  root then refined by Laguerre's iteration;
//   degree >= 5    Laguerre's method with deflation, as for complex coefficients.
// For degree 2 and above every real root is then refined by Newton's method with a short scan
// in the direction of the last step, and the real roots are sorted ascending.
//
// Complex coefficients (ascending, entry i for the power i) always go through Laguerre with
// deflation; the roots are ordered by their real parts and the real ones get no Newton step.
//
// A polynomial that trims to a constant leaves the results of the previous solve in place.
#ifndef NUMORIX_EQUATIONS_ALG_EQU_H
#define NUMORIX_EQUATIONS_ALG_EQU_H

#include "numorix/complex/complex.h"
#include "numorix/complex/complex_array.h"
#include "numorix/equations/polynomial.h"
#include "numorix/foundation/double_array.h"
#include "numorix/foundation/object.h"

namespace numorix {

class CNuAlgEqu : public CNuAlgebra {
  public:
    CNuAlgEqu();
    CNuAlgEqu(const CNuAlgEqu& other);
    CNuAlgEqu& operator=(const CNuAlgEqu& other);
    ~CNuAlgEqu() override;

    void Solve(const CNuPolynomial& polynomial);
    void Solve(const CNuComplexArray& coefficients);

    int GetNumberRealRoots() const { return m_nRealRoots; }
    int GetNumberComplexRoots() const { return m_nComplexRoots; }
    CNuDoubleArray GetRealRoots() const;
    CNuComplexArray GetComplexRoots() const;
    // The first real root, then each later one strictly greater than the last kept: equal values
    // of a multiple root merge only when they are bit-equal.
    CNuDoubleArray GetDistinctRealRoots() const;

  private:
    void Reserve(int nRoots);
    void Release();
    void Copy(const CNuAlgEqu& other);
    void Swap(CNuAlgEqu& other);
    void DropEmpty();
    void AddReal(double dRoot);
    void AddComplex(const CNuComplex& root);

    void SolveQuadratic(const double* pdC);
    void SolveCubic(const double* pdC);
    void SolveQuartic(const double* pdC);
    void PolishRealRoot(const CNuPolynomial& polynomial, int n, double* pdRoot) const;

    int m_nRealRoots;
    int m_nComplexRoots;
    double* m_pdRealRoots;        // owned; null when there are none
    CNuComplex* m_pComplexRoots;  // owned; null when there are none
    int m_nRealCapacity;
    int m_nComplexCapacity;
};

}  // namespace numorix

#endif  // NUMORIX_EQUATIONS_ALG_EQU_H
