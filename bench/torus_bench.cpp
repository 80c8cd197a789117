// The minimum circumscribed torus (CNuTorSurf::FitMin, the thinnest tube about a circle in space
// holding every point) of a measured ring: radius 25, three lobes of 0.01 in its plane, a
// two-lobed warp of 0.02 out of it and 0.004 of noise both ways, its axis tilted and about 1000
// from the origin. 10^3 and 10^4 points beside the least-squares circle of the same points, the
// tube's start.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "numorix/curves/circle.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/tor_surf.h"
#include "peer_report.h"

namespace {

using numorix::CNuCircle;
using numorix::CNuPoint;
using numorix::CNuPointArray;
using numorix::CNuTorSurf;

const double kPi = 3.14159265358979323846;

CNuPointArray Ring(int n) {
    std::mt19937_64 rng(4711);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    // The ring's frame: axis (0.3, -0.2, 1) normalised, centre (1000, -500, 250).
    const double an = std::sqrt(0.09 + 0.04 + 1.0);
    const double a[3] = {0.3 / an, -0.2 / an, 1.0 / an};
    const double e1n = std::sqrt(a[2] * a[2] + a[0] * a[0]);
    const double e1[3] = {a[2] / e1n, 0.0, -a[0] / e1n};
    const double e2[3] = {a[1] * e1[2] - a[2] * e1[1], a[2] * e1[0] - a[0] * e1[2],
                          a[0] * e1[1] - a[1] * e1[0]};
    const double c[3] = {1000.0, -500.0, 250.0};
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = 2.0 * kPi * unit(rng);
        double r = 25.0 + 0.01 * std::cos(3.0 * t) + 0.004 * (unit(rng) - 0.5);
        double h = 0.02 * std::cos(2.0 * t) + 0.004 * (unit(rng) - 0.5);
        double p[3];
        for (int k = 0; k < 3; ++k)
            p[k] = c[k] + r * std::cos(t) * e1[k] + r * std::sin(t) * e2[k] + h * a[k];
        points.Add(CNuPoint(p[0], p[1], p[2]));
    }
    return points;
}

const CNuPointArray& Points(int n) {
    static const CNuPointArray s_1e3 = Ring(1000), s_1e4 = Ring(10000);
    return n == 1000 ? s_1e3 : s_1e4;
}

void RunCircle(benchmark::State& state, int n) {
    CNuCircle c(1.0);
    double dForm = 0.0, dSumSquares = 0.0;
    for (auto _ : state) {
        c.Fit(Points(n), &dForm, &dSumSquares, 1000);
        benchmark::ClobberMemory();
    }
    state.counters["radius"] = c.GetRadius();
}

void RunTube(benchmark::State& state, int n) {
    CNuTorSurf t(1.0, 1.0);
    for (auto _ : state) {
        t.FitMin(Points(n), 1e-9, 1000);
        benchmark::ClobberMemory();
    }
    state.counters["major"] = t.GetMajorRadius();
    state.counters["minor_um"] = t.GetMinorRadius() * 1e3;
}

void BM_CircleLs1e3(benchmark::State& s) { RunCircle(s, 1000); }
void BM_TorusTube1e3(benchmark::State& s) { RunTube(s, 1000); }
void BM_CircleLs1e4(benchmark::State& s) { RunCircle(s, 10000); }
void BM_TorusTube1e4(benchmark::State& s) { RunTube(s, 10000); }
BENCHMARK(BM_CircleLs1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TorusTube1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleLs1e4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TorusTube1e4)->Unit(benchmark::kMillisecond);

const bool kPairs = numorix::bench::ComparePeers("BM_TorusTube1e3", "BM_CircleLs1e3", "report") &&
                    numorix::bench::ComparePeers("BM_TorusTube1e4", "BM_CircleLs1e4", "report");

}  // namespace
