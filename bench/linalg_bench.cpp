// Singular value decomposition and least-squares solving against LAPACK on the same data: a tall
// 100000 by 3 matrix (the shape of point-set fits) and a square 200 by 200 matrix.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"
#include "peer_report.h"

extern "C" {
void dgesvd_(const char* jobu, const char* jobvt, const int* m, const int* n, double* a,
             const int* lda, double* s, double* u, const int* ldu, double* vt, const int* ldvt,
             double* work, const int* lwork, int* info);
void dgelss_(const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b,
             const int* ldb, double* s, const double* rcond, int* rank, double* work,
             const int* lwork, int* info);
}

namespace {

using numorix::CNuLinearEquSys;
using numorix::CNuMatrix;
using numorix::CNuVector;

// Column-major data for LAPACK, the same values as the row-major CNuMatrix.
struct SData {
    CNuMatrix A{1, 1};
    CNuVector b;
    std::vector<double> colMajor;
    std::vector<double> rhs;
};

SData MakeData(int m, int n) {
    std::mt19937_64 engine(20261122u);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    SData d;
    d.A = CNuMatrix(m, n);
    d.b = CNuVector(m);
    d.colMajor.resize(static_cast<std::size_t>(m) * static_cast<std::size_t>(n));
    d.rhs.resize(static_cast<std::size_t>(m));
    for (int i = 0; i < m; ++i) {
        for (int j = 0; j < n; ++j) {
            double x = uniform(engine);
            d.A.GetData()[i][j] = x;
            d.colMajor[static_cast<std::size_t>(j) * static_cast<std::size_t>(m) +
                       static_cast<std::size_t>(i)] = x;
        }
        d.b.GetData()[i] = uniform(engine);
        d.rhs[static_cast<std::size_t>(i)] = d.b.GetData()[i];
    }
    return d;
}

void NumorixSvd(benchmark::State& state, int m, int n) {
    SData d = MakeData(m, n);
    CNuVector w;
    CNuMatrix V(1, 1);
    for (auto _ : state) {
        state.PauseTiming();
        CNuMatrix U(d.A);
        state.ResumeTiming();
        U.SVD(&w, &V);
        benchmark::DoNotOptimize(U.GetData()[0][0]);
    }
}

// dgesvd with U and V^T computed: thin U ('S') for the tall shape, full ('A') for the square one.
void LapackSvd(benchmark::State& state, int m, int n, const char* pszJobU) {
    SData d = MakeData(m, n);
    int ldu = m;
    int ucols = pszJobU[0] == 'S' ? n : m;
    std::vector<double> s(static_cast<std::size_t>(n));
    std::vector<double> u(static_cast<std::size_t>(m) * static_cast<std::size_t>(ucols));
    std::vector<double> vt(static_cast<std::size_t>(n) * static_cast<std::size_t>(n));
    int lwork = -1;
    int info = 0;
    double dQuery = 0.0;
    std::vector<double> a = d.colMajor;
    dgesvd_(pszJobU, "A", &m, &n, a.data(), &m, s.data(), u.data(), &ldu, vt.data(), &n, &dQuery,
            &lwork, &info);
    lwork = static_cast<int>(dQuery);
    std::vector<double> work(static_cast<std::size_t>(lwork));
    for (auto _ : state) {
        state.PauseTiming();
        a = d.colMajor;
        state.ResumeTiming();
        dgesvd_(pszJobU, "A", &m, &n, a.data(), &m, s.data(), u.data(), &ldu, vt.data(), &n,
                work.data(), &lwork, &info);
        benchmark::DoNotOptimize(u.data());
    }
}

void BM_NumorixSvd_100000x3(benchmark::State& state) { NumorixSvd(state, 100000, 3); }
void BM_LapackDgesvd_100000x3(benchmark::State& state) { LapackSvd(state, 100000, 3, "S"); }
void BM_NumorixSvd_200x200(benchmark::State& state) { NumorixSvd(state, 200, 200); }
void BM_LapackDgesvd_200x200(benchmark::State& state) { LapackSvd(state, 200, 200, "A"); }
BENCHMARK(BM_NumorixSvd_100000x3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LapackDgesvd_100000x3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_NumorixSvd_200x200)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LapackDgesvd_200x200)->Unit(benchmark::kMillisecond);

// Least squares: the whole solve (copy, SVD, back-substitution) against dgelss (SVD based too).
void BM_NumorixLeastSquares_100000x3(benchmark::State& state) {
    SData d = MakeData(100000, 3);
    for (auto _ : state) {
        CNuLinearEquSys system(1);
        system.Solve(d.A, d.b);
        benchmark::DoNotOptimize(system.GetSolution().GetData()[0]);
    }
}

void BM_LapackDgelss_100000x3(benchmark::State& state) {
    SData d = MakeData(100000, 3);
    int m = 100000;
    int n = 3;
    int nrhs = 1;
    int rank = 0;
    int info = 0;
    double rcond = -1.0;
    std::vector<double> s(3);
    int lwork = -1;
    double dQuery = 0.0;
    std::vector<double> a = d.colMajor;
    std::vector<double> b = d.rhs;
    dgelss_(&m, &n, &nrhs, a.data(), &m, b.data(), &m, s.data(), &rcond, &rank, &dQuery, &lwork,
            &info);
    lwork = static_cast<int>(dQuery);
    std::vector<double> work(static_cast<std::size_t>(lwork));
    for (auto _ : state) {
        a = d.colMajor;
        b = d.rhs;
        dgelss_(&m, &n, &nrhs, a.data(), &m, b.data(), &m, s.data(), &rcond, &rank, work.data(),
                &lwork, &info);
        benchmark::DoNotOptimize(b.data());
    }
}
BENCHMARK(BM_NumorixLeastSquares_100000x3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LapackDgelss_100000x3)->Unit(benchmark::kMillisecond);

const bool kPairs =
    numorix::bench::ComparePeers("BM_NumorixSvd_100000x3", "BM_LapackDgesvd_100000x3",
                                 "within 2x") &&
    numorix::bench::ComparePeers("BM_NumorixSvd_200x200", "BM_LapackDgesvd_200x200", "within 3x") &&
    numorix::bench::ComparePeers("BM_NumorixLeastSquares_100000x3", "BM_LapackDgelss_100000x3", "");

}  // namespace
