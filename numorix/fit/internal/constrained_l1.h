// acm552m: the constrained L1 solver of the Chebyshev drivers (private to the fit sources).
//
//   minimise    sum_i |b_i - A_i x|                  (A: nObjective rows)
//   subject to  C_k x  = d_k                         (C: nEquality rows)
//               E_k x <= f_k                         (E: nInequality rows)
//               x_j = value_j for the pinned unknowns, the others free
//
// by the simplex exchange of Barrodale and Roberts on the condensed tableau, two stages: the
// first makes the constraints hold (least sum of violations), the second minimises the sum of
// absolute residuals while they keep holding. See constrained_l1.cpp for the method.
//
// The result:
//   x             the solution (pinned unknowns hold their values)
//   residuals     r_i = b_i - A_i x of the objective rows
//   weights       w_i in [-1, 1], w_i = sign(r_i) where r_i is not 0
//   equality      multipliers v_k of the equality rows (any sign)
//   inequality    multipliers u_k >= 0 of the inequality rows, u_k = 0 where the row is slack
// which certify optimality: over the free unknowns, A^T w = C^T v + E^T u.
#ifndef NUMORIX_FIT_INTERNAL_CONSTRAINED_L1_H
#define NUMORIX_FIT_INTERNAL_CONSTRAINED_L1_H

#include <vector>

namespace numorix {

class CNuMatrix;
class CNuVector;
class CNuIntArray;

namespace fit {

// Each row is a pointer to nUnknowns doubles; a block with no rows may have null pointers.
struct SL1Problem {
    int nUnknowns = 0;
    int nObjective = 0;
    const double* const* ppA = nullptr;
    const double* pB = nullptr;
    int nEquality = 0;
    const double* const* ppC = nullptr;
    const double* pD = nullptr;
    int nInequality = 0;
    const double* const* ppE = nullptr;
    const double* pF = nullptr;
    // Null, or per unknown: non-zero pins the unknown at pdPinnedValue[j] (null: 0.0).
    const int* pnPinned = nullptr;
    const double* pdPinnedValue = nullptr;
};

enum class EL1Status {
    eOptimal,     // x is a minimiser; the multipliers certify it
    eInfeasible,  // the constraints admit no x (to a rounding tolerance of their scale)
    eFailed       // the exchange did not finish (pivot limit) or met non-finite numbers
};

struct SL1Result {
    EL1Status eStatus = EL1Status::eFailed;
    std::vector<double> x;
    std::vector<double> residuals;
    std::vector<double> weights;
    std::vector<double> equality;
    std::vector<double> inequality;
    double dObjective = 0.0;  // sum |r_i|
    int nPivots = 0;
};

// Rows of inconsistent length (a block pointer missing for rows it claims, a negative count) are
// stored 103 located "CNuConSurf::acm552m()".
SL1Result acm552m(const SL1Problem& problem);

// The same with the blocks as matrices: the constraint blocks null when absent, every matrix with
// the columns of A and its vector as long as its rows, pPinned and pPinnedValues null or as long
// as a row.
SL1Result acm552m(const CNuMatrix& A, const CNuVector& b, const CNuMatrix* pC, const CNuVector* pD,
                  const CNuMatrix* pE, const CNuVector* pF, const CNuIntArray* pPinned,
                  const CNuVector* pPinnedValues);

}  // namespace fit
}  // namespace numorix

#endif  // NUMORIX_FIT_INTERNAL_CONSTRAINED_L1_H
