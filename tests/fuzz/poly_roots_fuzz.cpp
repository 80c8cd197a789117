// Fuzz target: the roots of real polynomials of degree 0 to 12 (CNuAlgEqu on a CNuPolynomial, and
// the closed forms it uses up to degree 4) and of polynomials with complex coefficients, from
// coefficients of any size including zeros, denormals and non-finite numbers.
//
// Whatever the input: a refusal is one of the library's exceptions; the number of roots never
// passes the degree; real roots come back in ascending order. When the coefficients are finite
// and of moderate size, every real root is a finite number at which the polynomial is small
// compared with the sizes of its terms there (a small backward error).
#include "fuzz_support.h"

using numorix::CNuAlgEqu;
using numorix::CNuPolynomial;

namespace {

// |p(x)| against the sum of |c_i x^i|, both in long double.
bool SmallBackwardError(const CNuPolynomial& p, double x) {
    fuzz::Real dValue = 0.0L, dSize = 0.0L;
    for (int i = p.GetDegree(); i >= 0; --i)
        dValue = dValue * x + p[i], dSize = dSize * std::fabs(x) + std::fabs(p[i]);
    return std::fabs(dValue) <= 1e-6L * dSize + 1e-290L;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    const int nDegree = fuzz::Dump("degree", fdp.ConsumeIntegralInRange<int>(0, 12));
    const bool bComplex = fdp.ConsumeIntegralInRange<int>(0, 4) == 0;
    double dLargest = 0.0, dSmallest = HUGE_VAL;  // of the non-zero coefficients
    bool bFinite = true;
    auto coefficient = [&] {
        const double d = fuzz::Dump("coefficient", fuzz::Number(fdp));
        bFinite = bFinite && std::isfinite(d);
        if (d != 0.0) dLargest = std::max(dLargest, std::fabs(d)), dSmallest = std::min(dSmallest, std::fabs(d));
        return d;
    };
    CNuAlgEqu equation;
    CNuPolynomial polynomial(nDegree);
    if (bComplex) {
        numorix::CNuComplexArray coefficients;
        for (int i = 0; i <= nDegree; ++i) {
            const double re = coefficient();
            coefficients.Add(numorix::CNuComplex(re, fdp.ConsumeBool() ? 0.0 : coefficient()));
        }
        if (!fuzz::Attempt([&] { equation.Solve(coefficients); })) return 0;
    } else {
        for (int i = 0; i <= nDegree; ++i) polynomial[i] = coefficient();
        if (!fuzz::Attempt([&] { equation.Solve(polynomial); })) return 0;
    }
    const int nReal = equation.GetNumberRealRoots();
    NUMORIX_FUZZ_CHECK(nReal >= 0 && equation.GetNumberComplexRoots() >= 0);
    NUMORIX_FUZZ_CHECK(nReal + equation.GetNumberComplexRoots() <= nDegree);
    if (bComplex) return 0;
    const numorix::CNuDoubleArray roots = equation.GetRealRoots();
    NUMORIX_FUZZ_CHECK(roots.GetSize() == nReal);
    for (int i = 1; i < nReal; ++i) NUMORIX_FUZZ_CHECK(!(roots[i] < roots[i - 1]));
    // The backward error is promised up to degree 2. The solver's thresholds are absolute
    // (NuGetTol()): below 1e-6 a scaled x^2 + x + 1 has a double real root by rule, so from
    // there, on coefficients within 1e12 of each other. From degree 3 up the solver's rules give
    // real roots where the polynomial does not vanish: a cubic whose discriminant rounds to 0
    // (1e-20 x^3 - 4 x^2 - 20), and a Laguerre search that stalls at the origin, its best point,
    // which is polished to the lowest point of |p| on the real axis (x^12 + 1).
    if (!bFinite || dLargest < 1e-6 || dLargest > 1e30 || dLargest > 1e12 * dSmallest || nDegree > 2) return 0;
    for (int i = 0; i < nReal; ++i)
        NUMORIX_FUZZ_CHECK(std::isfinite(roots[i]) && SmallBackwardError(polynomial, roots[i]));
    return 0;
}
