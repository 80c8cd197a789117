// Circle zone fits on lobed points (a three-lobed circle of radius 10 with 0.05 lobes and
// 0.01 noise), each beside an independent CGAL solver of the same points: the minimum zone
// beside the least-area annulus (Min_annulus_d, exact linear programming), the minimum
// circumscribed circle beside Min_circle_2, the maximum inscribed circle beside the largest
// empty circle of a Delaunay triangulation. The zone benchmarks report the exchange rounds, as
// the least iteration limit that succeeds less one, and how they grow with n.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "numorix/curves/circle.h"
#include "cgal_circle_oracle.h"
#include "numorix/geometry/point_array.h"
#include "peer_report.h"

namespace {

using numorix::CNuCircle;
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

const std::vector<numorix::oracle::SXY>& LobedXY(int n) {
    auto toXY = [](const CNuPointArray& p) {
        std::vector<numorix::oracle::SXY> v;
        for (int i = 0; i < p.GetSize(); ++i) v.push_back({p[i].x(), p[i].y()});
        return v;
    };
    static const std::vector<numorix::oracle::SXY> s_small = toXY(Lobed(1000));
    static const std::vector<numorix::oracle::SXY> s_large = toXY(Lobed(100000));
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
    state.counters["rounds"] = static_cast<double>(LeastLimit(Lobed(n)) - 1);
}

// Rounds of the exchange against n, on lobed points of the same profile.
void BM_CircleMinZoneRounds(benchmark::State& state) {
    CNuPointArray points = LobedCircle(static_cast<int>(state.range(0)));
    long lLimit = 0;
    for (auto _ : state) lLimit = LeastLimit(points);
    state.counters["rounds"] = static_cast<double>(lLimit - 1);
}

void RunCircumscribed(benchmark::State& state, int n) {
    double dRadius = 0.0;
    for (auto _ : state) {
        CNuCircle c(1.0);
        c.FitMin(Lobed(n), 1e-9);
        const double r = c.GetRadius();
        benchmark::DoNotOptimize(r);
        dRadius = r;
    }
    state.counters["radius"] = dRadius;
}

void RunInscribed(benchmark::State& state, int n) {
    double dRadius = 0.0;
    for (auto _ : state) {
        CNuCircle c(1.0);
        c.FitMax(Lobed(n), 1e-9);
        const double r = c.GetRadius();
        benchmark::DoNotOptimize(r);
        dRadius = r;
    }
    state.counters["radius"] = dRadius;
}

void RunCgalAnnulus(benchmark::State& state, int n) {
    numorix::oracle::SAnnulusXY a{};
    for (auto _ : state) {
        a = numorix::oracle::MinAreaAnnulus(LobedXY(n));
        benchmark::DoNotOptimize(a);
    }
    state.counters["zone_um"] = (a.rOuter - a.rInner) * 1e3;
}

void RunCgalMinCircle(benchmark::State& state, int n) {
    numorix::oracle::SCircleXY c{};
    for (auto _ : state) {
        c = numorix::oracle::MinEnclosingCircle(LobedXY(n));
        benchmark::DoNotOptimize(c);
    }
    state.counters["radius"] = c.r;
}

void RunCgalEmptyCircle(benchmark::State& state, int n) {
    numorix::oracle::SCircleXY c{};
    for (auto _ : state) {
        c = numorix::oracle::LargestEmptyCircle(LobedXY(n));
        benchmark::DoNotOptimize(c);
    }
    state.counters["radius"] = c.r;
}

void BM_CircleMinZone1e3(benchmark::State& s) { RunZone(s, 1000); }
void BM_CgalMinAnnulus1e3(benchmark::State& s) { RunCgalAnnulus(s, 1000); }
void BM_CircleMinCircumscribed1e3(benchmark::State& s) { RunCircumscribed(s, 1000); }
void BM_CgalMinCircle1e3(benchmark::State& s) { RunCgalMinCircle(s, 1000); }
void BM_CircleMaxInscribed1e3(benchmark::State& s) { RunInscribed(s, 1000); }
void BM_CgalEmptyCircle1e3(benchmark::State& s) { RunCgalEmptyCircle(s, 1000); }
void BM_CircleMinZone1e5(benchmark::State& s) { RunZone(s, 100000); }
void BM_CgalMinAnnulus1e5(benchmark::State& s) { RunCgalAnnulus(s, 100000); }
void BM_CircleMinCircumscribed1e5(benchmark::State& s) { RunCircumscribed(s, 100000); }
void BM_CgalMinCircle1e5(benchmark::State& s) { RunCgalMinCircle(s, 100000); }
void BM_CircleMaxInscribed1e5(benchmark::State& s) { RunInscribed(s, 100000); }
void BM_CgalEmptyCircle1e5(benchmark::State& s) { RunCgalEmptyCircle(s, 100000); }

BENCHMARK(BM_CircleMinZone1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CgalMinAnnulus1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMinCircumscribed1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CgalMinCircle1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMaxInscribed1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CgalEmptyCircle1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMinZone1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CgalMinAnnulus1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMinCircumscribed1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CgalMinCircle1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMaxInscribed1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CgalEmptyCircle1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CircleMinZoneRounds)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

const bool kCircleZonePairs =
    numorix::bench::ComparePeers("BM_CircleMinZone1e3", "BM_CgalMinAnnulus1e3", "report") &&
    numorix::bench::ComparePeers("BM_CircleMinCircumscribed1e3", "BM_CgalMinCircle1e3",
                                 "report") &&
    numorix::bench::ComparePeers("BM_CircleMaxInscribed1e3", "BM_CgalEmptyCircle1e3", "report") &&
    numorix::bench::ComparePeers("BM_CircleMinZone1e5", "BM_CgalMinAnnulus1e5", "report") &&
    numorix::bench::ComparePeers("BM_CircleMinCircumscribed1e5", "BM_CgalMinCircle1e5",
                                 "report") &&
    numorix::bench::ComparePeers("BM_CircleMaxInscribed1e5", "BM_CgalEmptyCircle1e5", "report");

}  // namespace
