// CNuLinearEquSys: solves A x = b exactly (LU), in the least-squares sense (SVD) or in the
// non-negative least-squares sense (Lawson-Hanson).
//
//   exact          A square; P A = L U by CNuMatrix::LUD, then forward and back substitution.
//                  A singular A leaves no solution, unless singular solving is switched on: then
//                  a vanishing pivot divides by NuGetTol()^2 and the answer is large but finite.
//   least squares  A = U diag(w) V^T by CNuMatrix::SVD (which already cut w below
//                  NuGetTol() * max w), x = V diag(1/w) U^T b over the non-zero w: the
//                  minimum-norm minimiser of |A x - b|.
//   non-negative   minimise |A x - b| subject to x >= 0 by the Lawson-Hanson active-set method,
//                  each passive-set subproblem solved by least squares.
//
// The object keeps its factors, so that a further right-hand side costs one substitution.
// Constrained and least-distance problems are declared but unsupported: they record the request
// and fail.
#ifndef NUMORIX_LINALG_LINEAR_EQU_SYS_H
#define NUMORIX_LINALG_LINEAR_EQU_SYS_H

#include "numorix/foundation/int_array.h"
#include "numorix/foundation/object.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuLinearEquSys : public CNuAlgebra {
  public:
    // nLeastSquares 0 selects exact solving; any other value least squares.
    explicit CNuLinearEquSys(int nLeastSquares = 1);
    // Copies are deep: the copy owns its own solution and factors.
    CNuLinearEquSys(const CNuLinearEquSys& other);
    CNuLinearEquSys& operator=(const CNuLinearEquSys& other);
    ~CNuLinearEquSys() override;

    ENuBoolean SolutionExists() const;
    // A copy of the solution; a zero vector of size 3 when there is none.
    CNuVector GetSolution() const;

    void Solve(const CNuMatrix& A, const CNuVector& b);
    void SetRightHandSide(const CNuVector& b);

    void SetNonnegative();
    void SetSingularSolvable();
    void SetEquality(const CNuMatrix& E, const CNuVector& f);
    void SetInequality(const CNuMatrix& G, const CNuVector& h);
    void SetLeastDistance();
    void Solve();

    // x = V diag(1/w) U^T b, skipping the w that are exactly 0. U is m by n, w of size n, V n by
    // n, b of size m; x must have size n. Shared with the polynomial fit.
    static void SingularBackSubstitution(const CNuMatrix& U, const CNuVector& w, const CNuMatrix& V,
                                         const CNuVector& b, CNuVector* x);

  private:
    enum EMode : int {
        eModePlain = 0,
        eModeEquality = 1,
        eModeInequality = 2,
        eModeEqualityInequality = 3,
        eModeNonnegative = 4,
        eModeLeastDistance = 5,
        eModeSingularSolvable = 6
    };

    void LUDbksb();
    void SVDbksb(const CNuVector& b);
    void FreeAll();
    void CopyFrom(const CNuLinearEquSys& other);

    // Lawson-Hanson NNLS: x >= 0 minimising |A x - b|; w receives the dual A^T (b - A x).
    static void NonNegativeLeastSquares(const CNuMatrix& A, const CNuVector& b, CNuVector& x,
                                        CNuVector& w, double dTol);

    int m_nLeastSquares;
    int m_nMode;
    CNuVector* m_pSolution;
    CNuMatrix* m_pFactors;
    CNuIntArray* m_pPivots;
    CNuVector* m_pSingularValues;
    CNuMatrix* m_pRightVectors;
};

}  // namespace numorix

#endif  // NUMORIX_LINALG_LINEAR_EQU_SYS_H
