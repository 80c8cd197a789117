// Cost of a tolerance read against a plain thread-local read, and of filling a growable array
// against std::vector.
#include <benchmark/benchmark.h>

#include <vector>

#include "numorix/foundation/double_array.h"
#include "numorix/foundation/tolerance.h"
#include "peer_report.h"

namespace {

thread_local double t_dPlain = 4.45e-16;

void BM_PlainThreadLocalRead(benchmark::State& state) {
    for (auto _ : state) {
        double d = t_dPlain;
        benchmark::DoNotOptimize(d);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_PlainThreadLocalRead);

void BM_NuGetTol(benchmark::State& state) {
    numorix::NuGetTol();  // the thread's first touch happens outside the timing
    for (auto _ : state) {
        double d = numorix::NuGetTol();
        benchmark::DoNotOptimize(d);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_NuGetTol);

constexpr int kAddCount = 100000;

// Constant-step growth: 10^4 reallocations for 10^5 elements with the default step of 10.
void BM_DoubleArrayAdd(benchmark::State& state) {
    for (auto _ : state) {
        numorix::CNuDoubleArray a;
        for (int i = 0; i < kAddCount; ++i)
            a.Add(i);
        benchmark::DoNotOptimize(a.GetData());
    }
    state.SetItemsProcessed(state.iterations() * kAddCount);
}
BENCHMARK(BM_DoubleArrayAdd)->Unit(benchmark::kMillisecond);

void BM_StdVectorPushBack(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<double> v;
        for (int i = 0; i < kAddCount; ++i)
            v.push_back(i);
        benchmark::DoNotOptimize(v.data());
    }
    state.SetItemsProcessed(state.iterations() * kAddCount);
}
BENCHMARK(BM_StdVectorPushBack)->Unit(benchmark::kMillisecond);

const bool kPairs =
    numorix::bench::ComparePeers("BM_NuGetTol", "BM_PlainThreadLocalRead", "within 2x") &&
    numorix::bench::ComparePeers("BM_DoubleArrayAdd", "BM_StdVectorPushBack",
                                 "report (constant-step growth)");

}  // namespace
