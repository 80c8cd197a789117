#include "numorix/linalg/linear_equ_sys.h"

#include <cmath>
#include <cstring>
#include <vector>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {

namespace {

const char kSolving[] = "solving a set of equations";
const char kSolveLocation[] = "CNuLinearEquSys::Solve()";
const char kRightHandSideLocation[] = "CNuLinearEquSys::SetRightHandSide()";
const char kClassLocation[] = "CNuLinearEquSys";

// Cause codes as the operation family numbers them (stored code less 100).
constexpr int kCauseEquationUndefined = 17;
constexpr int kCauseNotSupported = 45;

template <class T>
T* CloneOrNull(const T* p) {
    return p != nullptr ? new T(*p) : nullptr;
}

// Removes the first occurrence of nValue from the ordered list, closing the gap.
void RemoveValue(std::vector<int>& list, int nValue) {
    for (std::size_t k = 0; k < list.size(); ++k) {
        if (list[k] == nValue) {
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(k));
            return;
        }
    }
}

// pdW = A^T (b - A x) for the m by n matrix behind ppdA; pdResidual is work of size m. Each dot
// product is accumulated from 0.0 in ascending index order; the transpose product runs row by row
// so that it reads A in storage order.
void DualVector(const double* const* ppdA, int m, int n, const double* pdB, const double* pdX,
                double* pdResidual, double* pdW) {
    for (int i = 0; i < m; ++i) {
        const double* pdRow = ppdA[i];
        double dSum = 0.0;
        for (int j = 0; j < n; ++j)
            dSum += pdRow[j] * pdX[j];
        pdResidual[i] = pdB[i] - dSum;
    }
    for (int j = 0; j < n; ++j)
        pdW[j] = 0.0;
    for (int i = 0; i < m; ++i) {
        const double* pdRow = ppdA[i];
        double dR = pdResidual[i];
        for (int j = 0; j < n; ++j)
            pdW[j] += pdRow[j] * dR;
    }
}

// A snapshot of the active-set iteration: where it stands (outer or inner step), the iterate and
// both index lists. The iteration is deterministic, so meeting a snapshot again means it would
// cycle for ever.
struct SNnlsState {
    bool bInner = false;
    std::vector<double> x;
    std::vector<int> passive;
    std::vector<int> active;

    bool SameAs(bool bOtherInner, const double* pdX, int n, const std::vector<int>& otherPassive,
                const std::vector<int>& otherActive) const {
        // Bitwise, so that a NaN iterate compares equal to itself.
        return bInner == bOtherInner && static_cast<int>(x.size()) == n &&
               std::memcmp(x.data(), pdX, sizeof(double) * static_cast<std::size_t>(n)) == 0 &&
               passive == otherPassive && active == otherActive;
    }
};

// Brent's cycle detection over the states of the iteration: a snapshot is kept at every power of
// two of the step count and each new state is compared with it. Any cycle is found within a few
// of its periods; a run that ends never compares equal.
class CNnlsCycleGuard {
  public:
    bool Repeats(bool bInner, const double* pdX, int n, const std::vector<int>& passive,
                 const std::vector<int>& active) {
        if (m_nSteps > 0 && m_snapshot.SameAs(bInner, pdX, n, passive, active)) return true;
        ++m_nSteps;
        if (m_nSteps == m_nNextSnapshot) {
            m_snapshot.bInner = bInner;
            m_snapshot.x.assign(pdX, pdX + n);
            m_snapshot.passive = passive;
            m_snapshot.active = active;
            m_nNextSnapshot *= 2;
        }
        return false;
    }

  private:
    SNnlsState m_snapshot;
    long long m_nSteps = 0;
    long long m_nNextSnapshot = 1;
};

}  // namespace

CNuLinearEquSys::CNuLinearEquSys(int nLeastSquares)
    : m_nLeastSquares(nLeastSquares),
      m_nMode(eModePlain),
      m_pSolution(nullptr),
      m_pFactors(nullptr),
      m_pPivots(nullptr),
      m_pSingularValues(nullptr),
      m_pRightVectors(nullptr) {
    m_eObjectType = eTypeLinearEquSys;
}

CNuLinearEquSys::CNuLinearEquSys(const CNuLinearEquSys& other)
    : CNuAlgebra(other),
      m_nLeastSquares(other.m_nLeastSquares),
      m_nMode(other.m_nMode),
      m_pSolution(nullptr),
      m_pFactors(nullptr),
      m_pPivots(nullptr),
      m_pSingularValues(nullptr),
      m_pRightVectors(nullptr) {
    try {
        CopyFrom(other);
    } catch (...) {
        FreeAll();
        throw;
    }
}

CNuLinearEquSys& CNuLinearEquSys::operator=(const CNuLinearEquSys& other) {
    if (this == &other) return *this;
    CNuLinearEquSys copy(other);  // build first, so that a failed copy leaves this unchanged
    FreeAll();
    m_nLeastSquares = copy.m_nLeastSquares;
    m_nMode = copy.m_nMode;
    m_pSolution = copy.m_pSolution;
    m_pFactors = copy.m_pFactors;
    m_pPivots = copy.m_pPivots;
    m_pSingularValues = copy.m_pSingularValues;
    m_pRightVectors = copy.m_pRightVectors;
    copy.m_pSolution = nullptr;
    copy.m_pFactors = nullptr;
    copy.m_pPivots = nullptr;
    copy.m_pSingularValues = nullptr;
    copy.m_pRightVectors = nullptr;
    return *this;
}

CNuLinearEquSys::~CNuLinearEquSys() { FreeAll(); }

void CNuLinearEquSys::CopyFrom(const CNuLinearEquSys& other) {
    m_pSolution = CloneOrNull(other.m_pSolution);
    m_pFactors = CloneOrNull(other.m_pFactors);
    m_pPivots = CloneOrNull(other.m_pPivots);
    m_pSingularValues = CloneOrNull(other.m_pSingularValues);
    m_pRightVectors = CloneOrNull(other.m_pRightVectors);
}

void CNuLinearEquSys::FreeAll() {
    delete m_pSolution;
    delete m_pFactors;
    delete m_pPivots;
    delete m_pSingularValues;
    delete m_pRightVectors;
    m_pSolution = nullptr;
    m_pFactors = nullptr;
    m_pPivots = nullptr;
    m_pSingularValues = nullptr;
    m_pRightVectors = nullptr;
}

ENuBoolean CNuLinearEquSys::SolutionExists() const {
    return m_pSolution != nullptr ? eNuTrue : eNuFalse;
}

CNuVector CNuLinearEquSys::GetSolution() const {
    if (m_pSolution == nullptr) return CNuVector(0.0, 0.0, 0.0);
    return *m_pSolution;
}

void CNuLinearEquSys::Solve(const CNuMatrix& A, const CNuVector& b) {
    // A previous factorisation is dropped with everything that belongs to it. A lone solution
    // (left by a non-negative solve) stays until a new one replaces it.
    if (m_pFactors != nullptr) FreeAll();

    if (A.GetRowSize() != b.GetSize()) {
        throw CNuOperationException(kCauseEquationUndefined, kSolving, kSolveLocation);
    }

    if (m_nLeastSquares == 0) {
        if (A.GetRowSize() != A.GetColumnSize()) {
            throw CNuOperationException(kCauseNotSupported, "solving an exact set of equations",
                                        kClassLocation);
        }
        m_pPivots = new CNuIntArray();
        m_pFactors = new CNuMatrix(A);
        int nParity = 1;
        int nSingular = 0;
        m_pFactors->LUD(m_pPivots, &nParity, &nSingular);
        if (nSingular != 0 && m_nMode != eModeSingularSolvable) {
            delete m_pFactors;
            delete m_pPivots;
            m_pFactors = nullptr;
            m_pPivots = nullptr;
            return;
        }
        auto* pSolution = new CNuVector(b);
        delete m_pSolution;
        m_pSolution = pSolution;
        LUDbksb();
        return;
    }

    switch (m_nMode) {
        case eModePlain: {
            m_pFactors = new CNuMatrix(A);
            CNuVector w;
            CNuMatrix V(1, 1);
            m_pFactors->SVD(&w, &V);
            m_pSingularValues = new CNuVector(w);
            m_pRightVectors = new CNuMatrix(V);
            auto* pSolution = new CNuVector(A.GetColumnSize());
            delete m_pSolution;
            m_pSolution = pSolution;
            SVDbksb(b);
            return;
        }
        case eModeNonnegative: {
            CNuVector x;
            CNuVector w;
            NonNegativeLeastSquares(A, b, x, w, NuGetLengthTol());
            auto* pSolution = new CNuVector(x);
            delete m_pSolution;
            m_pSolution = pSolution;
            return;
        }
        case eModeLeastDistance:
            Solve();
            return;
        default:
            return;
    }
}

void CNuLinearEquSys::SetRightHandSide(const CNuVector& b) {
    if (m_pFactors == nullptr || m_pFactors->GetRowSize() != b.GetSize()) {
        throw CNuOperationException(kCauseEquationUndefined, kSolving, kRightHandSideLocation);
    }
    if (m_nLeastSquares != 0) {
        // A decomposition that failed part way kept its factors but no singular values.
        if (m_pSingularValues == nullptr || m_pRightVectors == nullptr) {
            throw CNuOperationException(kCauseEquationUndefined, kSolving, kRightHandSideLocation);
        }
        if (m_pSolution == nullptr) m_pSolution = new CNuVector(m_pFactors->GetColumnSize());
        SVDbksb(b);
        return;
    }
    if (m_pSolution == nullptr) {
        m_pSolution = new CNuVector(b);
    } else {
        *m_pSolution = b;
    }
    LUDbksb();
}

void CNuLinearEquSys::SetNonnegative() { m_nMode = eModeNonnegative; }

void CNuLinearEquSys::SetSingularSolvable() { m_nMode = eModeSingularSolvable; }

void CNuLinearEquSys::SetEquality(const CNuMatrix& /*E*/, const CNuVector& /*f*/) {
    if (m_nMode == eModeInequality) {
        m_nMode = eModeEqualityInequality;
    } else if (m_nMode != eModeEqualityInequality) {
        m_nMode = eModeEquality;
    }
    throw CNuOperationException(kCauseNotSupported,
                                "solving a set of equations with equality/inequality constraints",
                                kClassLocation);
}

void CNuLinearEquSys::SetInequality(const CNuMatrix& /*G*/, const CNuVector& /*h*/) {
    if (m_nMode == eModeEquality) {
        m_nMode = eModeEqualityInequality;
    } else if (m_nMode != eModeEqualityInequality) {
        m_nMode = eModeInequality;
    }
    throw CNuOperationException(kCauseNotSupported,
                                "solving a set of equations with equality/inequality constraints",
                                kClassLocation);
}

void CNuLinearEquSys::SetLeastDistance() {
    m_nMode = eModeLeastDistance;
    Solve();
}

void CNuLinearEquSys::Solve() {
    throw CNuOperationException(kCauseNotSupported, "least distance programming", kClassLocation);
}

// Forward substitution through the recorded row exchanges, skipping the leading run of
// negligible right-hand entries, then back substitution. A vanishing diagonal divides by the
// square of NuGetTol(), the same figure by which LUD scaled the multipliers below it.
void CNuLinearEquSys::LUDbksb() {
    double* pdB = m_pSolution->GetData();
    double** ppdA = m_pFactors->GetData();
    const int* pnIndex = m_pPivots->GetData();
    const int n = m_pPivots->GetSize();

    int nStart = -1;
    for (int i = 0; i < n; ++i) {
        const int p = pnIndex[i];
        double dSum = pdB[p];
        pdB[p] = pdB[i];
        if (nStart >= 0) {
            const double* pdRow = ppdA[i];
            for (int j = nStart; j < i; ++j)
                dSum -= pdRow[j] * pdB[j];
        } else if (!(std::fabs(dSum) < NuGetZero())) {
            nStart = i;
        }
        pdB[i] = dSum;
    }
    for (int i = n - 1; i >= 0; --i) {
        const double* pdRow = ppdA[i];
        double dSum = pdB[i];
        for (int j = i + 1; j < n; ++j)
            dSum -= pdRow[j] * pdB[j];
        if (std::fabs(pdRow[i]) < NuGetZero()) {
            pdB[i] = dSum / (NuGetTol() * NuGetTol());
        } else {
            pdB[i] = dSum / pdRow[i];
        }
    }
}

void CNuLinearEquSys::SVDbksb(const CNuVector& b) {
    SingularBackSubstitution(*m_pFactors, *m_pSingularValues, *m_pRightVectors, b, m_pSolution);
}

void CNuLinearEquSys::SingularBackSubstitution(const CNuMatrix& U, const CNuVector& w,
                                               const CNuMatrix& V, const CNuVector& b,
                                               CNuVector* x) {
    const int m = U.GetRowSize();
    const int n = U.GetColumnSize();
    CNuVector t(n);  // raises the size failure for n below 1
    if (b.GetSize() != m || w.GetSize() != n || V.GetRowSize() != n || V.GetColumnSize() != n ||
        x->GetSize() != n) {
        throw CNuOperationException(kCauseEquationUndefined, kSolving,
                                    "CNuLinearEquSys::SVDbksb()");
    }
    const double* const* ppdU = U.GetData();
    const double* const* ppdV = V.GetData();
    const double* pdW = w.GetData();
    const double* pdB = b.GetData();
    double* pdT = t.GetData();
    double* pdX = x->GetData();

    // t[j] = (sum over i of U[i][j] b[i]) / w[j]; the sums run over the rows of U in storage
    // order, each still accumulated from 0.0 in ascending i.
    for (int j = 0; j < n; ++j)
        pdT[j] = 0.0;
    for (int i = 0; i < m; ++i) {
        const double* pdRow = ppdU[i];
        const double dB = pdB[i];
        for (int j = 0; j < n; ++j)
            pdT[j] += pdRow[j] * dB;
    }
    for (int j = 0; j < n; ++j)
        pdT[j] = pdW[j] == 0.0 ? 0.0 : pdT[j] / pdW[j];

    for (int j = 0; j < n; ++j) {
        const double* pdRow = ppdV[j];
        double dSum = 0.0;
        for (int k = 0; k < n; ++k)
            dSum += pdRow[k] * pdT[k];
        pdX[j] = dSum;
    }
}

void CNuLinearEquSys::NonNegativeLeastSquares(const CNuMatrix& A, const CNuVector& b, CNuVector& x,
                                              CNuVector& w, double dTol) {
    const int m = A.GetRowSize();
    const int n = A.GetColumnSize();
    if (m != b.GetSize()) {
        throw CNuOperationException(kCauseEquationUndefined,
                                    "solving nonnegative least-squares problem", "nnls()");
    }
    x = CNuVector(n);
    w = CNuVector(n);
    std::vector<int> active(static_cast<std::size_t>(n));  // Z
    for (int j = 0; j < n; ++j)
        active[static_cast<std::size_t>(j)] = j;
    std::vector<int> passive;  // P
    CNuVector z(n);
    std::vector<double> residual(static_cast<std::size_t>(m));

    const double* const* ppdA = A.GetData();
    const double* pdB = b.GetData();
    double* pdX = x.GetData();
    double* pdW = w.GetData();
    DualVector(ppdA, m, n, pdB, pdX, residual.data(), pdW);

    CNnlsCycleGuard guard;
    for (;;) {
        if (active.empty()) break;
        if (guard.Repeats(false, pdX, n, passive, active)) break;
        int t = -1;
        double dBest = dTol;
        for (int j : active) {
            if (pdW[j] > dBest) {
                dBest = pdW[j];
                t = j;
            }
        }
        if (t < 0) break;

        CNuLinearEquSys subproblem(1);
        passive.push_back(t);
        RemoveValue(active, t);

        bool bCycle = false;
        for (;;) {
            if (guard.Repeats(true, pdX, n, passive, active)) {
                bCycle = true;
                break;
            }
            // The columns of the passive set in their own places; the zero columns cost
            // nothing because their singular values are cut.
            CNuMatrix Ap(m, n);
            double** ppdAp = Ap.GetData();
            for (int i = 0; i < m; ++i) {
                for (int j : passive)
                    ppdAp[i][j] = ppdA[i][j];
            }
            subproblem.Solve(Ap, b);
            z = subproblem.GetSolution();
            double* pdZ = z.GetData();
            for (int j : active)
                pdZ[j] = 0.0;

            double dAlpha = NuGetLarge();
            if (passive.empty()) break;
            bool bFound = false;
            // An entry whose trial value equals its current one stays where it is for every step
            // length, so it bounds none: its ratio would be 0/0 (a column just taken in with a
            // trial value of exactly 0) or -inf (an entry left below 0 under a zero length
            // tolerance). When such entries are all there is, the step is not taken: left at
            // NuGetLarge(), alpha would throw x out to about 1e300.
            bool bBounded = false;
            for (int i : passive) {
                if (pdZ[i] <= 0.0) {
                    bFound = true;
                    if (pdX[i] == pdZ[i]) continue;
                    bBounded = true;
                    double dRatio = pdX[i] / (pdX[i] - pdZ[i]);
                    if (dRatio < dAlpha) dAlpha = dRatio;
                }
            }
            if (!bFound) break;
            if (!bBounded) dAlpha = 0.0;
            for (int j = 0; j < n; ++j)
                pdX[j] = pdX[j] + dAlpha * (pdZ[j] - pdX[j]);
            for (std::size_t k = 0; k < passive.size();) {
                const int i = passive[k];
                if (std::fabs(pdX[i]) < dTol) {
                    passive.erase(passive.begin() + static_cast<std::ptrdiff_t>(k));
                    active.push_back(i);
                } else {
                    ++k;
                }
            }
        }
        if (bCycle) break;
        x = z;
        DualVector(ppdA, m, n, pdB, pdX, residual.data(), pdW);
    }
}

}  // namespace numorix
