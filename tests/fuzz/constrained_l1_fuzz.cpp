// Fuzz target: the constrained L1 solver on small random programmes (up to 8 unknowns, 20
// objective rows, 4 equality and 8 inequality rows, unknowns pinned at will), with entries from
// the full mix of numbers or from small integers (ties and degenerate vertices).
//
// Whatever the input: the solver returns (no exception, no hang) with a status. When every entry
// is finite and of moderate size, an "optimal" answer is finite, holds pinned unknowns at their
// values, keeps the equality and inequality rows up to rounding relative to the sizes of their
// terms, and reports the sum of its absolute residuals.
#include <vector>

#include "fuzz_support.h"
#include "numorix/fit/internal/constrained_l1.h"

using fuzz::Real;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    const int n = fuzz::Dump("unknowns", fdp.ConsumeIntegralInRange<int>(0, 8));
    const int nObjective = fuzz::Dump("objective rows", fdp.ConsumeIntegralInRange<int>(0, 20));
    const int nEquality = fuzz::Dump("equality rows", fdp.ConsumeIntegralInRange<int>(0, 4));
    const int nInequality = fuzz::Dump("inequality rows", fdp.ConsumeIntegralInRange<int>(0, 8));
    const bool bIntegers = fdp.ConsumeBool();
    bool bModerate = true;  // every entry finite, and zero or between 1e-6 and 1e6 in size
    auto entry = [&](const char* pszWhat) {
        const double d = bIntegers ? fdp.ConsumeIntegralInRange<int>(-3, 3) : fuzz::Number(fdp);
        bModerate = bModerate && std::isfinite(d) && (d == 0.0 || (std::fabs(d) > 1e-6 && std::fabs(d) < 1e6));
        return fuzz::Dump(pszWhat, d);
    };
    auto block = [&](int nRows, std::vector<std::vector<double>>* pRows, std::vector<double>* pRight) {
        for (int i = 0; i < nRows; ++i) {
            std::vector<double> row(n);
            for (double& a : row) a = entry("a");
            pRows->push_back(row);
            pRight->push_back(entry("b"));
        }
    };
    std::vector<std::vector<double>> A, C, E;
    std::vector<double> b, d, f, value(n);
    std::vector<int> pinned(n);
    block(nObjective, &A, &b);
    block(nEquality, &C, &d);
    block(nInequality, &E, &f);
    for (int j = 0; j < n; ++j) {
        pinned[j] = fdp.ConsumeIntegralInRange<int>(0, 3) == 0 ? 1 : 0;
        value[j] = pinned[j] != 0 ? entry("pinned") : 0.0;
    }
    auto pointers = [](const std::vector<std::vector<double>>& m) {
        std::vector<const double*> p;
        for (const auto& row : m) p.push_back(row.data());
        return p;
    };
    auto a = pointers(A), c = pointers(C), e = pointers(E);
    numorix::fit::SL1Problem problem;
    problem.nUnknowns = n;
    problem.nObjective = nObjective;
    problem.ppA = a.data();
    problem.pB = b.data();
    problem.nEquality = nEquality;
    problem.ppC = c.data();
    problem.pD = d.data();
    problem.nInequality = nInequality;
    problem.ppE = e.data();
    problem.pF = f.data();
    problem.pnPinned = pinned.data();
    problem.pdPinnedValue = value.data();
    const numorix::fit::SL1Result r = numorix::fit::acm552m(problem);
    if (r.eStatus != numorix::fit::EL1Status::eOptimal || !bModerate) return 0;

    NUMORIX_FUZZ_CHECK(static_cast<int>(r.x.size()) == n && std::isfinite(r.dObjective));
    for (int j = 0; j < n; ++j) NUMORIX_FUZZ_CHECK(std::isfinite(r.x[j]) && (pinned[j] == 0 || r.x[j] == value[j]));
    // Row k of M holds to rounding of its terms: |M_k x - rhs_k| within 1e-7 (n + 1) of their sizes.
    auto within = [&](const std::vector<double>& row, double dRight, bool bEquality) {
        Real s = -Real(dRight), size = std::fabs(dRight);
        for (int j = 0; j < n; ++j) s += Real(row[j]) * r.x[j], size += std::fabs(Real(row[j]) * r.x[j]);
        const Real dSlack = 1e-7L * (n + 1) * (1.0L + size);
        NUMORIX_FUZZ_CHECK(s <= dSlack && (!bEquality || s >= -dSlack));
    };
    for (int k = 0; k < nEquality; ++k) within(C[k], d[k], true);
    for (int k = 0; k < nInequality; ++k) within(E[k], f[k], false);
    Real dSum = 0.0L, dSize = 0.0L;
    for (int i = 0; i < nObjective; ++i) {
        Real s = b[i];
        for (int j = 0; j < n; ++j) s -= Real(A[i][j]) * r.x[j], dSize += std::fabs(Real(A[i][j]) * r.x[j]);
        dSum += std::fabs(s), dSize += std::fabs(b[i]);
    }
    NUMORIX_FUZZ_CHECK(std::fabs(dSum - r.dObjective) <= 1e-9L * (1.0L + dSize));
    return 0;
}
