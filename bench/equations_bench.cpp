// Cost of finding all roots of random real polynomials, against GSL's companion-matrix solver on
// the same coefficients: 10^5 quartics (Ferrari with Laguerre refinement and Newton polish) and
// 10^4 polynomials of degree 8 (Laguerre with deflation and polish).
#include <benchmark/benchmark.h>
#include <gsl/gsl_poly.h>

#include <random>
#include <vector>

#include "numorix/equations/alg_equ.h"
#include "numorix/foundation/exception.h"
#include "peer_report.h"

namespace {

constexpr int kQuarticCount = 100000;
constexpr int kOcticCount = 10000;

// nCount polynomials of degree nDegree, coefficients uniform in [-1, 1], stored one after the
// other in ascending order; the leading coefficient is kept away from zero.
std::vector<double> RandomCoefficients(int nCount, int nDegree, unsigned nSeed) {
    std::mt19937_64 engine(nSeed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<double> c(static_cast<std::size_t>(nCount) * (nDegree + 1));
    for (std::size_t i = 0; i < c.size(); ++i) {
        c[i] = uniform(engine);
        if (i % (nDegree + 1) == static_cast<std::size_t>(nDegree)) c[i] += c[i] < 0.0 ? -0.5 : 0.5;
    }
    return c;
}

void SolveAll(benchmark::State& state, int nCount, int nDegree) {
    const std::vector<double> c = RandomCoefficients(nCount, nDegree, 20261122u);
    numorix::CNuPolynomial p(nDegree);
    numorix::CNuAlgEqu e;
    for (auto _ : state) {
        int nRoots = 0;
        for (int k = 0; k < nCount; ++k) {
            for (int i = 0; i <= nDegree; ++i)
                p[i] = c[static_cast<std::size_t>(k) * (nDegree + 1) + i];
            try {
                e.Solve(p);
            } catch (const numorix::CNuException&) {
                // an exact double root in Ferrari's factors; does not occur with this seed
            }
            nRoots += e.GetNumberRealRoots() + e.GetNumberComplexRoots();
        }
        benchmark::DoNotOptimize(nRoots);
    }
    state.SetItemsProcessed(state.iterations() * nCount);
}

void GslSolveAll(benchmark::State& state, int nCount, int nDegree) {
    const std::vector<double> c = RandomCoefficients(nCount, nDegree, 20261122u);
    gsl_poly_complex_workspace* w = gsl_poly_complex_workspace_alloc(nDegree + 1);
    std::vector<double> z(2 * nDegree);
    for (auto _ : state) {
        for (int k = 0; k < nCount; ++k) {
            gsl_poly_complex_solve(&c[static_cast<std::size_t>(k) * (nDegree + 1)], nDegree + 1, w,
                                   z.data());
        }
        benchmark::DoNotOptimize(z.data());
    }
    gsl_poly_complex_workspace_free(w);
    state.SetItemsProcessed(state.iterations() * nCount);
}

void BM_AlgEquQuartics(benchmark::State& state) { SolveAll(state, kQuarticCount, 4); }
void BM_GslQuartics(benchmark::State& state) { GslSolveAll(state, kQuarticCount, 4); }
void BM_AlgEquDegree8(benchmark::State& state) { SolveAll(state, kOcticCount, 8); }
void BM_GslDegree8(benchmark::State& state) { GslSolveAll(state, kOcticCount, 8); }
BENCHMARK(BM_AlgEquQuartics)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GslQuartics)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AlgEquDegree8)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GslDegree8)->Unit(benchmark::kMillisecond);

const bool kPairs = numorix::bench::ComparePeers("BM_AlgEquQuartics", "BM_GslQuartics", "report") &&
                    numorix::bench::ComparePeers("BM_AlgEquDegree8", "BM_GslDegree8", "report");

}  // namespace
