// Singular value decomposition A = U diag(w) V^T by the Golub-Reinsch method: Householder
// reduction to bidiagonal form, accumulation of both transformations, and implicitly shifted QR
// on the bidiagonal form.
//
// Storage is row by row, so a loop down a column touches one element per row. The kernel keeps
// the operations of every element in their textbook order (each sum accumulated from 0.0 in
// ascending row order, each update applied in the order of its column and its step) but arranges
// the loops to sweep the rows once where the textbook sweeps a column at a time:
//   - the dot products of one Householder step with all later columns are gathered in one pass,
//     and the updates of all those columns are applied in a second;
//   - the update of the rows below the diagonal, the right-hand Householder step on those rows
//     and the scale of the next column share one pass;
//   - the plane rotations of the QR sweeps are queued and applied row by row, each row receiving
//     them in the order in which they were made.
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

// The sweep limit: at the 124th pass for one singular value the decomposition gives up.
constexpr int kMaxPasses = 124;
constexpr int kCauseIndexRange = 3;         // stored 103
constexpr int kCauseAlgorithmFailure = 46;  // stored 146

inline bool Negligible(double d) { return std::fabs(d) < NuGetZero(); }

// |b| with the sign of a; a zero or positive a gives +|b|.
inline double WithSignOf(double b, double a) { return a >= 0.0 ? std::fabs(b) : -std::fabs(b); }

// Whether d is negligible beside the norm of the bidiagonal form.
inline bool NegligibleBeside(double d, double dNorm) {
    return Negligible((std::fabs(d) + dNorm) - dNorm);
}

// A queue of plane rotations on pairs of columns of a row-pointer matrix. Each row receives the
// queued operations in the order in which they were added; since every operation acts within a
// row, applying them block by block of rows gives each element exactly the arithmetic of applying
// them one at a time down the columns. A block of rows is copied into a column-major tile so that
// each rotation runs over contiguous data.
class CRotationQueue {
  public:
    CRotationQueue(double** ppdRows, int nRows, int nColumns)
        : m_ppdRows(ppdRows), m_nRows(nRows), m_nColumns(nColumns) {
        m_ops.reserve(kCapacity);
        // Rows per tile: the tile stays within the first-level cache.
        int nBlock = kTileDoubles / (nColumns > 0 ? nColumns : 1);
        m_nBlock = nBlock < kMinBlock ? kMinBlock : (nBlock > kMaxBlock ? kMaxBlock : nBlock);
    }

    // (r[j1], r[j2]) <- (r[j1] c + r[j2] s, r[j2] c - r[j1] s) for every row r.
    void Rotate(int j1, int j2, double c, double s) {
        m_ops.push_back(SOp{j1, j2, c, s});
        if (m_ops.size() >= kCapacity) Flush();
    }

    // r[j] <- -r[j] for every row r.
    void Negate(int j) {
        m_ops.push_back(SOp{j, -1, 0.0, 0.0});
        if (m_ops.size() >= kCapacity) Flush();
    }

    void Flush() {
        if (m_ops.empty()) return;
        const int nCols = m_nColumns;
        const int nBlock = m_nBlock;
        m_tile.resize(static_cast<std::size_t>(nCols) * static_cast<std::size_t>(nBlock));
        double* pdTile = m_tile.data();
        const SOp* pOps = m_ops.data();
        const std::size_t nOps = m_ops.size();
        for (int r0 = 0; r0 < m_nRows; r0 += nBlock) {
            const int nb = m_nRows - r0 < nBlock ? m_nRows - r0 : nBlock;
            for (int t = 0; t < nb; ++t) {
                const double* p = m_ppdRows[r0 + t];
                for (int j = 0; j < nCols; ++j)
                    pdTile[j * nBlock + t] = p[j];
            }
            for (std::size_t k = 0; k < nOps; ++k) {
                const SOp& op = pOps[k];
                double* __restrict pdY = pdTile + op.j1 * nBlock;
                if (op.j2 < 0) {
                    for (int t = 0; t < nb; ++t)
                        pdY[t] = -pdY[t];
                    continue;
                }
                double* __restrict pdZ = pdTile + op.j2 * nBlock;
                const double c = op.c;
                const double s = op.s;
                for (int t = 0; t < nb; ++t) {
                    const double y = pdY[t];
                    const double z = pdZ[t];
                    pdY[t] = y * c + z * s;
                    pdZ[t] = z * c - y * s;
                }
            }
            for (int t = 0; t < nb; ++t) {
                double* p = m_ppdRows[r0 + t];
                for (int j = 0; j < nCols; ++j)
                    p[j] = pdTile[j * nBlock + t];
            }
        }
        m_ops.clear();
    }

  private:
    struct SOp {
        int j1;
        int j2;  // negative: negate column j1
        double c;
        double s;
    };
    static constexpr std::size_t kCapacity = 4096;
    static constexpr int kTileDoubles = 3072;  // 24 KiB
    static constexpr int kMinBlock = 8;
    static constexpr int kMaxBlock = 128;

    double** m_ppdRows;
    int m_nRows;
    int m_nColumns;
    int m_nBlock;
    std::vector<SOp> m_ops;
    std::vector<double> m_tile;
};

// Row passes of the kernel. Each keeps its running sums in locals (registers), accumulated from
// 0.0 in ascending row order. Where the number of columns a pass touches is small (the tall
// matrices of point-set fits have three), a fixed-width version keeps whole rows in registers;
// kDynamic selects the general loops.
constexpr int kDynamic = -1;

// Sum of |a[k][c]| for k in [k0, m).
double ColumnAbsSum(double* const* a, int k0, int m, int c) {
    double dSum = 0.0;
    for (int k = k0; k < m; ++k)
        dSum += std::fabs(a[k][c]);
    return dSum;
}

// a[k][c] /= dScale for k in [k0, m), returning the sum of the squares of the results.
double ScaleColumnAndSumSquares(double* const* a, int k0, int m, int c, double dScale) {
    double dSum = 0.0;
    for (int k = k0; k < m; ++k) {
        double* p = a[k] + c;
        *p /= dScale;
        dSum += *p * *p;
    }
    return dSum;
}

// pdSums[j] = sum over k in [k0, m) of a[k][c] a[k][j], for j in [l, l + nWidth).
template <int kWidth>
void ColumnDotsFixed(double* const* a, int k0, int m, int c, int l, double* pdSums) {
    double adAcc[kWidth];
    for (int t = 0; t < kWidth; ++t)
        adAcc[t] = 0.0;
    for (int k = k0; k < m; ++k) {
        const double* pdRow = a[k];
        const double dAkc = pdRow[c];
        for (int t = 0; t < kWidth; ++t)
            adAcc[t] += dAkc * pdRow[l + t];
    }
    for (int t = 0; t < kWidth; ++t)
        pdSums[l + t] = adAcc[t];
}

void ColumnDots(double* const* a, int k0, int m, int c, int l, int n, double* pdSums) {
    switch (n - l) {
        case 0:
            return;
        case 1:
            ColumnDotsFixed<1>(a, k0, m, c, l, pdSums);
            return;
        case 2:
            ColumnDotsFixed<2>(a, k0, m, c, l, pdSums);
            return;
        case 3:
            ColumnDotsFixed<3>(a, k0, m, c, l, pdSums);
            return;
        case 4:
            ColumnDotsFixed<4>(a, k0, m, c, l, pdSums);
            return;
        default:
            break;
    }
    for (int j = l; j < n; ++j)
        pdSums[j] = 0.0;
    for (int k = k0; k < m; ++k) {
        const double* pdRow = a[k];
        const double dAkc = pdRow[c];
        for (int j = l; j < n; ++j)
            pdSums[j] += dAkc * pdRow[j];
    }
}

// What the shared pass of reduction step i does to each row j below i.
struct SSharedPass {
    int i;
    int l;
    int n;
    bool bColumn;  // a[j][k] += factor[k] a[j][i] (k >= l), then a[j][i] *= dColumnScale
    const double* pdFactors;
    double dColumnScale;
    bool bRow;  // s = a[j][l..] . a[i][l..], then a[j][k] += s rv1[k] (k >= l)
    const double* pdRowI;
    const double* pdRv1;
    bool bNextScale;  // return the sum of |a[j][l]|
};

template <int kWidth>
double SharedPassRows(double* const* a, int j0, int m, const SSharedPass& p) {
    const int nWidth = kWidth >= 0 ? kWidth : p.n - p.l;
    const int l = p.l;
    const int i = p.i;
    double dNextScale = 0.0;
    for (int j = j0; j < m; ++j) {
        double* pdRow = a[j];
        if (p.bColumn) {
            const double dAji = pdRow[i];
            for (int t = 0; t < nWidth; ++t)
                pdRow[l + t] += p.pdFactors[l + t] * dAji;
            pdRow[i] = dAji * p.dColumnScale;
        }
        if (p.bRow) {
            double dDot = 0.0;
            for (int t = 0; t < nWidth; ++t)
                dDot += pdRow[l + t] * p.pdRowI[l + t];
            for (int t = 0; t < nWidth; ++t)
                pdRow[l + t] += dDot * p.pdRv1[l + t];
        }
        if (p.bNextScale) dNextScale += std::fabs(pdRow[l]);
    }
    return dNextScale;
}

double SharedPass(double* const* a, int j0, int m, const SSharedPass& p) {
    switch (p.n - p.l) {
        case 0:
            return SharedPassRows<0>(a, j0, m, p);
        case 1:
            return SharedPassRows<1>(a, j0, m, p);
        case 2:
            return SharedPassRows<2>(a, j0, m, p);
        case 3:
            return SharedPassRows<3>(a, j0, m, p);
        case 4:
            return SharedPassRows<4>(a, j0, m, p);
        default:
            return SharedPassRows<kDynamic>(a, j0, m, p);
    }
}

// The update pass of left-hand step i over rows [i, m): the zero branch clears a[k][i]; otherwise
// a[k][j] += factor[j] a[k][i] (j >= l) and a[k][i] *= g; row i then gets its 1.0 added. With
// bGather it also forms the dot products of step i - 1, sums over the same rows of
// a[k][i - 1] a[k][j] for j >= i.
template <int kWidth>
void LeftUpdateRows(double* const* a, int i, int m, int n, bool bZero, double g,
                    const double* pdFactors, bool bGather, double* pdNextSums) {
    const int l = i + 1;
    const int nWidth = kWidth >= 0 ? kWidth : n - l;
    double adAcc[kWidth >= 0 ? kWidth + 1 : 1] = {};
    if (kWidth == kDynamic && bGather) {
        for (int j = i; j < n; ++j)
            pdNextSums[j] = 0.0;
    }
    for (int k = i; k < m; ++k) {
        double* pdRow = a[k];
        if (bZero) {
            pdRow[i] = 0.0;
        } else {
            const double dAki = pdRow[i];
            for (int t = 0; t < nWidth; ++t)
                pdRow[l + t] += pdFactors[l + t] * dAki;
            pdRow[i] = dAki * g;
        }
        if (k == i) pdRow[i] += 1.0;
        if (bGather) {
            const double dAkPrev = pdRow[i - 1];
            if (kWidth != kDynamic) {
                for (int t = 0; t <= nWidth; ++t)
                    adAcc[t] += dAkPrev * pdRow[i + t];
            } else {
                for (int j = i; j < n; ++j)
                    pdNextSums[j] += dAkPrev * pdRow[j];
            }
        }
    }
    if (kWidth != kDynamic && bGather) {
        for (int t = 0; t <= nWidth; ++t)
            pdNextSums[i + t] = adAcc[t];
    }
}

void LeftUpdate(double* const* a, int i, int m, int n, bool bZero, double g,
                const double* pdFactors, bool bGather, double* pdNextSums) {
    switch (n - i - 1) {
        case 0:
            LeftUpdateRows<0>(a, i, m, n, bZero, g, pdFactors, bGather, pdNextSums);
            return;
        case 1:
            LeftUpdateRows<1>(a, i, m, n, bZero, g, pdFactors, bGather, pdNextSums);
            return;
        case 2:
            LeftUpdateRows<2>(a, i, m, n, bZero, g, pdFactors, bGather, pdNextSums);
            return;
        case 3:
            LeftUpdateRows<3>(a, i, m, n, bZero, g, pdFactors, bGather, pdNextSums);
            return;
        default:
            LeftUpdateRows<kDynamic>(a, i, m, n, bZero, g, pdFactors, bGather, pdNextSums);
            return;
    }
}

// Golub-Reinsch on the m by n rows behind a, which become U. w (n entries) receives the singular
// values, v (n by n rows, zero on entry) the right singular vectors, rv1 (n entries) is work.
void GolubReinsch(double** a, int m, int n, double* w, double** v, double* rv1) {
    std::vector<double> sums(static_cast<std::size_t>(n));
    std::vector<double> factors(static_cast<std::size_t>(n));
    double* pdSums = sums.data();
    double* pdFactors = factors.data();

    // Stage 1: Householder reduction to bidiagonal form.
    double g = 0.0;
    double scale = 0.0;
    double anorm = 0.0;
    double s = 0.0;
    // Sum of |a[k][i]|, k >= i, gathered by the previous pass.
    double dNextColumnScale = ColumnAbsSum(a, 0, m, 0);

    for (int i = 0; i < n; ++i) {
        const int l = i + 1;
        rv1[i] = scale * g;
        g = s = scale = 0.0;
        bool bColumnPending = false;  // the rows below i still await the column step
        double dColumnScale = 0.0;
        if (i < m) {
            scale = dNextColumnScale;
            if (!Negligible(scale)) {
                s = ScaleColumnAndSumSquares(a, i, m, i, scale);
                double f = a[i][i];
                g = -WithSignOf(std::sqrt(s), f);
                const double h = f * g - s;
                a[i][i] = f - g;
                ColumnDots(a, i, m, i, l, n, pdSums);
                for (int j = l; j < n; ++j)
                    pdFactors[j] = pdSums[j] / h;
                // Row i now; the rows below follow in the shared pass.
                double* pdRow = a[i];
                const double dAii = pdRow[i];
                for (int j = l; j < n; ++j)
                    pdRow[j] += pdFactors[j] * dAii;
                pdRow[i] = dAii * scale;
                dColumnScale = scale;
                bColumnPending = true;
            }
        }
        w[i] = scale * g;
        g = s = scale = 0.0;
        bool bRowPending = false;  // the rows below i still await the row step
        double dRowScale = 0.0;
        if (i < m && i != n - 1) {
            double* pdRowI = a[i];
            for (int k = l; k < n; ++k)
                scale += std::fabs(pdRowI[k]);
            if (!Negligible(scale)) {
                for (int k = l; k < n; ++k) {
                    pdRowI[k] /= scale;
                    s += pdRowI[k] * pdRowI[k];
                }
                const double f = pdRowI[l];
                g = -WithSignOf(std::sqrt(s), f);
                const double h = f * g - s;
                pdRowI[l] = f - g;
                for (int k = l; k < n; ++k)
                    rv1[k] = pdRowI[k] / h;
                dRowScale = scale;
                bRowPending = true;
            }
        }
        {
            const double dCandidate = std::fabs(w[i]) + std::fabs(rv1[i]);
            anorm = anorm > dCandidate ? anorm : dCandidate;
        }

        // The shared pass over the rows below i: column step, row step, next column's scale.
        const bool bNextScale = l < n && l < m;
        dNextColumnScale = 0.0;
        if (bColumnPending || bRowPending || bNextScale) {
            SSharedPass pass{i,           l,    n,   bColumnPending, pdFactors, dColumnScale,
                             bRowPending, a[i], rv1, bNextScale};
            dNextColumnScale = SharedPass(a, l, m, pass);
        }
        if (bRowPending) {
            double* pdRowI = a[i];
            for (int k = l; k < n; ++k)
                pdRowI[k] *= dRowScale;
        }
    }

    // Stage 2: accumulation of the right-hand transformations.
    {
        int l = 0;
        for (int i = n - 1; i >= 0; --i) {
            if (i < n - 1) {
                if (!Negligible(g)) {
                    const double* pdRowI = a[i];
                    for (int j = l; j < n; ++j)
                        v[j][i] = (pdRowI[j] / pdRowI[l]) / g;
                    for (int j = l; j < n; ++j)
                        pdSums[j] = 0.0;
                    for (int k = l; k < n; ++k) {
                        const double dAik = pdRowI[k];
                        const double* pdV = v[k];
                        for (int j = l; j < n; ++j)
                            pdSums[j] += dAik * pdV[j];
                    }
                    for (int k = l; k < n; ++k) {
                        double* pdV = v[k];
                        const double dVki = pdV[i];
                        for (int j = l; j < n; ++j)
                            pdV[j] += pdSums[j] * dVki;
                    }
                }
                for (int j = l; j < n; ++j) {
                    v[i][j] = 0.0;
                    v[j][i] = 0.0;
                }
            }
            v[i][i] = 1.0;
            g = rv1[i];
            l = i;
        }
    }

    // Stage 3: accumulation of the left-hand transformations. The pass that updates the rows
    // below i also gathers the dot products of step i - 1, which read exactly those rows.
    {
        std::vector<double> nextSums(static_cast<std::size_t>(n));
        double* pdNextSums = nextSums.data();
        bool bSumsReady = false;  // pdSums already holds the dot products of this step
        for (int i = (m < n ? m : n) - 1; i >= 0; --i) {
            const int l = i + 1;
            g = w[i];
            double* pdRowI = a[i];
            for (int j = l; j < n; ++j)
                pdRowI[j] = 0.0;
            const bool bZero = Negligible(g);
            if (!bZero) {
                g = 1.0 / g;
                if (!bSumsReady) ColumnDots(a, l, m, i, l, n, pdSums);
                for (int j = l; j < n; ++j)
                    pdFactors[j] = (pdSums[j] / pdRowI[i]) * g;
            }
            // Step i - 1 needs its dot products only when its w is not negligible.
            const bool bGatherNext = i > 0 && !Negligible(w[i - 1]);
            LeftUpdate(a, i, m, n, bZero, g, pdFactors, bGatherNext, pdNextSums);
            std::swap(pdSums, pdNextSums);
            bSumsReady = bGatherNext;
        }
    }

    // Stage 4: diagonalisation of the bidiagonal form by implicitly shifted QR.
    CRotationQueue rotateU(a, m, n);
    CRotationQueue rotateV(v, n, n);
    for (int k = n - 1; k >= 0; --k) {
        for (int its = 1;; ++its) {
            bool bCancel = true;
            int l = k;
            int nm = k - 1;
            for (; l >= 0; --l) {
                nm = l - 1;
                if (NegligibleBeside(rv1[l], anorm)) {
                    bCancel = false;
                    break;
                }
                // w[nm] is read through the bounds test of the vector's index: non-finite data
                // fail the test above at l = 0 and leave here.
                if (nm < 0) {
                    rotateU.Flush();
                    rotateV.Flush();
                    throw CNuOperationException(kCauseIndexRange, "element operator[]", "CNuVector",
                                                0, n - 1);
                }
                if (NegligibleBeside(w[nm], anorm)) break;
            }
            if (bCancel) {
                double c = 0.0;
                double sn = 1.0;
                for (int i = l; i <= k; ++i) {
                    const double f = sn * rv1[i];
                    rv1[i] = c * rv1[i];
                    if (NegligibleBeside(f, anorm)) break;
                    g = w[i];
                    double h = NuPythag(f, g);
                    w[i] = h;
                    h = 1.0 / h;
                    c = g * h;
                    sn = -f * h;
                    rotateU.Rotate(nm, i, c, sn);
                }
            }
            double z = w[k];
            if (l == k) {
                if (z < 0.0) {
                    w[k] = -z;
                    rotateV.Negate(k);
                }
                break;
            }
            if (its >= kMaxPasses) {
                rotateU.Flush();
                rotateV.Flush();
                throw CNuOperationException(kCauseAlgorithmFailure, "calculation",
                                            "CNuMatrix::SVD()");
            }
            double x = w[l];
            nm = k - 1;
            double y = w[nm];
            g = rv1[nm];
            double h = rv1[k];
            double f = ((y - z) * (y + z) + (g - h) * (g + h)) / (2.0 * h * y);
            g = NuPythag(f, 1.0);
            f = ((x - z) * (x + z) + h * ((y / (f + WithSignOf(g, f))) - h)) / x;
            double c = 1.0;
            double sn = 1.0;
            for (int j = l; j <= nm; ++j) {
                const int i = j + 1;
                g = rv1[i];
                y = w[i];
                h = sn * g;
                g = c * g;
                z = NuPythag(f, h);
                rv1[j] = z;
                c = f / z;
                sn = h / z;
                f = x * c + g * sn;
                g = g * c - x * sn;
                h = y * sn;
                y = y * c;
                rotateV.Rotate(j, i, c, sn);
                z = NuPythag(f, h);
                w[j] = z;
                if (z != 0.0) {
                    z = 1.0 / z;
                    c = f * z;
                    sn = h * z;
                }
                f = c * g + sn * y;
                x = c * y - sn * g;
                rotateU.Rotate(j, i, c, sn);
            }
            rv1[l] = 0.0;
            rv1[k] = f;
            w[k] = x;
        }
    }
    rotateU.Flush();
    rotateV.Flush();

    // Stage 5: the rank cut.
    double wmax = 0.0;
    for (int j = 0; j < n; ++j) {
        if (w[j] > wmax) wmax = w[j];
    }
    const double dThreshold = NuGetTol() * wmax;
    for (int j = 0; j < n; ++j) {
        if (w[j] < dThreshold) w[j] = 0.0;
    }
}

}  // namespace

void CNuMatrix::SVD(CNuVector* w, CNuMatrix* V) {
    const int n = m_nColumns;
    CNuVector rv1(n);
    *w = CNuVector(n);
    *V = CNuMatrix(n, n);
    GolubReinsch(m_ppdData, m_nRows, n, w->GetData(), V->GetData(), rv1.GetData());
}

}  // namespace numorix
