// Fuzz target: the decompositions and solvers of real matrices of any shape up to 12 by 12, with
// entries from the full mix of numbers (free, with repeated rows, or mostly diagonal).
//
// Whatever the input: a refusal is one of the library's exceptions. When every entry is finite
// and of moderate size: the SVD gives non-negative singular values and U diag(w) V^T rebuilds A up
// to rounding relative to the size of A; LUD2 gives P A = L U up to rounding relative to the
// factors; the determinant is a number; a least-squares or a non-negative least-squares solution
// is finite and leaves a residual no longer than that of x = 0, the non-negative one has no
// negative element.
#include "fuzz_support.h"

using numorix::CNuLinearEquSys;
using numorix::CNuMatrix;
using numorix::CNuVector;
using fuzz::Real;

namespace {

Real MaxAbs(const CNuMatrix& m) {
    Real d = 0.0L;
    for (int i = 0; i < m.GetRowSize(); ++i)
        for (int j = 0; j < m.GetColumnSize(); ++j) d = std::max(d, Real(std::fabs(m.GetElement(i, j))));
    return d;
}

// Every |sum_k x(i,k) y(k,j) - c(i,j)| within dAbsolute plus dRelative times the sum of the terms'
// sizes; the factors are functions, so that a transpose or a scaling comes in passing.
template <class X, class Y, class C>
void CheckProduct(int m, int n, int l, X x, Y y, C c, Real dAbsolute, Real dRelative) {
    for (int i = 0; i < m; ++i) {
        for (int j = 0; j < n; ++j) {
            Real s = 0.0L, size = 0.0L;
            for (int k = 0; k < l; ++k) s += x(i, k) * y(k, j), size += std::fabs(x(i, k) * y(k, j));
            NUMORIX_FUZZ_CHECK(std::fabs(s - c(i, j)) <= dAbsolute + dRelative * size + 1e-300L);
        }
    }
}

// x finite and |A x - b| no longer than |b|, up to rounding: that of the products, and the
// backward error of the solve, x exact for A + dA with |dA| of the order of eps |A| (a singular
// value kept at 5e-16 of the largest gives a direction of x that is rounding).
void CheckNoWorseThanZero(const CNuMatrix& a, const CNuVector& b, const CNuVector& x) {
    NUMORIX_FUZZ_CHECK(x.GetSize() == a.GetColumnSize());
    Real dResidual = 0.0L, dRight = 0.0L, dScale = 0.0L, dX = 0.0L;
    for (int j = 0; j < x.GetSize(); ++j) NUMORIX_FUZZ_CHECK(std::isfinite(x[j]));
    for (int j = 0; j < x.GetSize(); ++j) dX = std::max(dX, Real(std::fabs(x[j])));
    for (int i = 0; i < a.GetRowSize(); ++i) {
        Real r = -Real(b[i]), s = std::fabs(b[i]);
        for (int j = 0; j < x.GetSize(); ++j)
            r += Real(a.GetElement(i, j)) * x[j], s += std::fabs(Real(a.GetElement(i, j)) * x[j]);
        dResidual += r * r, dRight += Real(b[i]) * b[i], dScale = std::max(dScale, s);
    }
    const Real dBackward = 1e-14L * x.GetSize() * MaxAbs(a) * dX * std::sqrt(Real(a.GetRowSize()));
    NUMORIX_FUZZ_CHECK(std::sqrt(dResidual) <=
                       std::sqrt(dRight) + 1e-8L * dScale * a.GetRowSize() + dBackward + 1e-300L);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    const int m = fuzz::Dump("rows", fdp.ConsumeIntegralInRange<int>(0, 12));
    const int n = fuzz::Dump("columns", fdp.ConsumeIntegralInRange<int>(0, 12));
    const int nOperation = fuzz::Dump("operation", fdp.ConsumeIntegralInRange<int>(0, 6));
    bool bModerate = true;  // every entry finite, and zero or between 1e-100 and 1e100 in size
    auto entry = [&] {
        const double d = fuzz::Number(fdp);
        bModerate = bModerate && std::isfinite(d) && (d == 0.0 || (std::fabs(d) > 1e-100 && std::fabs(d) < 1e100));
        return d;
    };
    CNuMatrix a;
    CNuVector b;
    if (!fuzz::Attempt([&] { a = CNuMatrix(m, n), b = CNuVector(m); })) return 0;
    const int nShape = fdp.ConsumeIntegralInRange<int>(0, 3);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            a.SetElement(i, j, nShape == 1 && i > 0 && fdp.ConsumeBool() ? a.GetElement(i - 1, j)
                               : nShape == 2 && i != j && fdp.ConsumeBool() ? 0.0
                                                                            : entry());
    for (int i = 0; i < m; ++i) b[i] = entry();
    for (int i = 0; i < m; ++i)
        for (int j = 0; j <= n; ++j) fuzz::Dump(j < n ? "a" : "b", j < n ? a.GetElement(i, j) : b[i]);
    auto at = [](const CNuMatrix& x) { return [&x](int i, int j) { return Real(x.GetElement(i, j)); }; };

    CNuMatrix u(a), v, p, l;
    CNuVector w, x;
    CNuLinearEquSys system(nOperation == 4 ? 0 : 1);
    switch (nOperation) {
        case 0:
            if (!fuzz::Attempt([&] { u.SVD(&w, &v); }) || !bModerate) break;
            NUMORIX_FUZZ_CHECK(w.GetSize() == n && u.GetRowSize() == m && v.GetRowSize() == n);
            for (int k = 0; k < n; ++k) NUMORIX_FUZZ_CHECK(std::isfinite(w[k]) && w[k] >= 0.0);
            CheckProduct(m, n, n, [&](int i, int k) { return Real(u.GetElement(i, k)) * w[k]; },
                         [&](int k, int j) { return Real(v.GetElement(j, k)); }, at(a),
                         1e-10L * (m + n) * MaxAbs(a), 0.0L);
            break;
        case 1:
            if (!fuzz::Attempt([&] { a.LUD2(&p, &l, &u); }) || !bModerate) break;
            NUMORIX_FUZZ_CHECK(p.GetRowSize() == m && l.GetRowSize() == m && u.GetRowSize() == m);
            CheckProduct(m, m, m, at(p), at(a), [&](int i, int j) {
                Real s = 0.0L;
                for (int k = 0; k < m; ++k) s += Real(l.GetElement(i, k)) * u.GetElement(k, j);
                return s;
            }, 1e-10L * m * MaxAbs(a), 1e-10L * m);
            break;
        case 2: {
            double d = 0.0;
            if (fuzz::Attempt([&] { d = a.Determinant(); }) && bModerate) NUMORIX_FUZZ_CHECK(!std::isnan(d));
            break;
        }
        case 3: {
            numorix::ENuStatus eStatus;
            fuzz::Attempt([&] { u = a.Inverse(&eStatus); });
            break;
        }
        default: {
            const double dLength = numorix::NuGetLengthTol();
            if (nOperation == 4 && fdp.ConsumeBool()) system.SetSingularSolvable();
            if (nOperation == 6) system.SetNonnegative();
            if (nOperation == 6 && fdp.ConsumeBool()) numorix::NuSetLengthTol(fuzz::Tolerance(fdp));
            const bool bSolved = fuzz::Attempt([&] {
                system.Solve(a, b);
                if (system.SolutionExists() == numorix::eNuTrue) x = system.GetSolution();
            });
            numorix::NuSetLengthTol(dLength);
            if (bSolved && nOperation == 5 && fdp.ConsumeBool())  // a further right-hand side
                fuzz::Attempt([&] { system.SetRightHandSide(b * 2.0); });
            if (!bSolved || !bModerate || nOperation == 4 || system.SolutionExists() != numorix::eNuTrue) break;
            // Non-negative up to the rounding of the last step (x += alpha (z - x) can leave an
            // entry at -1e-20 of an x of size 1).
            Real dLargest = 1.0L;
            for (int j = 0; j < x.GetSize(); ++j) dLargest = std::max(dLargest, Real(std::fabs(x[j])));
            for (int j = 0; j < x.GetSize() && nOperation == 6; ++j)
                NUMORIX_FUZZ_CHECK(fuzz::Dump("x", x[j]) >= -1e-15L * dLargest);
            CheckNoWorseThanZero(a, b, x);
            break;
        }
    }
    return 0;
}
