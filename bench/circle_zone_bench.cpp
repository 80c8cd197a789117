// Circle zone fits on lobed points (a three-lobed circle of radius 10 with 0.05 lobes and
// 0.01 noise): minimum zone, minimum circumscribed and maximum inscribed circle, each beside the
// least-squares plane of the same points as a baseline of one pass over the data. The zone
// benchmarks also report the exchange rounds, as the least iteration limit that succeeds.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "numorix/curves/circle.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"
#include "peer_report.h"

namespace {

using numorix::CNuCircle;
using numorix::CNuPlane;
using numorix::CNuPoint;
using numorix::CNuPointArray;

CNuPointArray LobedCircle(int n) {
    std::mt19937_64 rng(4711);
    std::uniform_real_distribution<double> angle(0.0, 2.0 * 3.14159265358979323846);
    std::uniform_real_distribution<double> noise(-0.01, 0.01);
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = angle(rng);
        double r = 10.0 + 0.05 * std::cos(3.0 * t) + noise(rng);
        points.Add(CNuPoint(1.0 + r * std::cos(t), 2.0 + r * std::sin(t), 0.0));
    }
    return points;
}

const CNuPointArray& Lobed(int n) {
    static const CNuPointArray s_small = LobedCircle(1000);
    static const CNuPointArray s_large = LobedCircle(100000);
    return n == 1000 ? s_small : s_large;
}

// The least limit with which the zone fit succeeds: the number of exchange rounds plus one.
long LeastLimit(const CNuPointArray& points) {
    long lLow = 1;
    long lHigh = 1000;
    double dZone = 0.0;
    while (lLow < lHigh) {
        long lMid = (lLow + lHigh) / 2;
        CNuCircle c(1.0);
        if (c.FitMinZoneEx(points, &dZone, 1e-9, lMid) == numorix::eNuFitOk)
            lHigh = lMid;
        else
            lLow = lMid + 1;
    }
    return lLow;
}

void RunZone(benchmark::State& state, int n) {
    double dZone = 0.0;
    for (auto _ : state) {
        CNuCircle c(1.0);
        c.FitMinZone(Lobed(n), &dZone, 1e-9, 1000);
        benchmark::DoNotOptimize(dZone);
    }
    state.counters["zone_um"] = dZone * 1e3;
    state.counters["least_limit"] = static_cast<double>(LeastLimit(Lobed(n)));
}

void RunCircumscribed(benchmark::State& state, int n) {
    double dRadius = 0.0;
    for (auto _ : state) {
        CNuCircle c(1.0);
        c.FitMin(Lobed(n), 1e-9);
        dRadius = c.GetRadius();
        benchmark::DoNotOptimize(dRadius);
    }
}

void RunInscribed(benchmark::State& state, int n) {
    double dRadius = 0.0;
    for (auto _ : state) {
        CNuCircle c(1.0);
        c.FitMax(Lobed(n), 1e-9);
        dRadius = c.GetRadius();
        benchmark::DoNotOptimize(dRadius);
    }
}

void RunPlaneBaseline(benchmark::State& state, int n) {
    for (auto _ : state) {
        CNuPlane plane;
        plane.Fit(Lobed(n));
        benchmark::DoNotOptimize(plane.GetNormal()[2]);
    }
}

void BM_CircleMinZone1e3(benchmark::State& s) { RunZone(s, 1000); }
void BM_CircleMinCircumscribed1e3(benchmark::State& s) { RunCircumscribed(s, 1000); }
void BM_CircleMaxInscribed1e3(benchmark::State& s) { RunInscribed(s, 1000); }
void BM_CirclePlaneBaseline1e3(benchmark::State& s) { RunPlaneBaseline(s, 1000); }
void BM_CircleMinZone1e5(benchmark::State& s) { RunZone(s, 100000); }
void BM_CircleMinCircumscribed1e5(benchmark::State& s) { RunCircumscribed(s, 100000); }
void BM_CircleMaxInscribed1e5(benchmark::State& s) { RunInscribed(s, 100000); }
void BM_CirclePlaneBaseline1e5(benchmark::State& s) { RunPlaneBaseline(s, 100000); }

BENCHMARK(BM_CircleMinZone1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMinCircumscribed1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMaxInscribed1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CirclePlaneBaseline1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMinZone1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMinCircumscribed1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMaxInscribed1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CirclePlaneBaseline1e5)->Unit(benchmark::kMillisecond);

const bool kCircleZonePairs =
    numorix::bench::ComparePeers("BM_CircleMinZone1e3", "BM_CirclePlaneBaseline1e3", "report") &&
    numorix::bench::ComparePeers("BM_CircleMinCircumscribed1e3", "BM_CirclePlaneBaseline1e3",
                                 "report") &&
    numorix::bench::ComparePeers("BM_CircleMaxInscribed1e3", "BM_CirclePlaneBaseline1e3",
                                 "report") &&
    numorix::bench::ComparePeers("BM_CircleMinZone1e5", "BM_CirclePlaneBaseline1e5", "report") &&
    numorix::bench::ComparePeers("BM_CircleMinCircumscribed1e5", "BM_CirclePlaneBaseline1e5",
                                 "report") &&
    numorix::bench::ComparePeers("BM_CircleMaxInscribed1e5", "BM_CirclePlaneBaseline1e5", "report");

}  // namespace
