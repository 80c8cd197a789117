// The planar convex hull of CNuPointArray against a plain Andrew monotone chain on the same
// points: 10^6 random points in a square, and 10^5 points on a circle, where every point is a
// vertex and the angular ordering of the vertices dominates.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "numorix/foundation/int_array.h"
#include "numorix/geometry/point_array.h"
#include "peer_report.h"

namespace {

using numorix::CNuIntArray;
using numorix::CNuPoint;
using numorix::CNuPointArray;

struct SXY {
    double x;
    double y;
    int i;
};

CNuPointArray RandomSquare(int n) {
    std::mt19937_64 engine(20261122u);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i)
        points.Add(CNuPoint(uniform(engine), uniform(engine), 0.0));
    return points;
}

CNuPointArray Circle(int n) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = 2.0 * M_PI * (i + 0.5) / n;
        points.Add(CNuPoint(std::cos(t), std::sin(t), 0.0));
    }
    return points;
}

double Cross(const SXY& o, const SXY& a, const SXY& b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

// Andrew's monotone chain: sort by x then y, then the lower and upper chains; indices out.
std::vector<int> MonotoneChain(const CNuPointArray& points) {
    int n = points.GetSize();
    std::vector<SXY> p(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        p[i] = {points[i].x(), points[i].y(), i};
    std::sort(p.begin(), p.end(),
              [](const SXY& a, const SXY& b) { return a.x < b.x || (a.x == b.x && a.y < b.y); });
    std::vector<SXY> hull(2 * p.size());
    std::size_t k = 0;
    for (const SXY& q : p) {
        while (k >= 2 && Cross(hull[k - 2], hull[k - 1], q) <= 0.0)
            --k;
        hull[k++] = q;
    }
    for (std::size_t i = p.size() - 1, t = k + 1; i-- > 0;) {
        while (k >= t && Cross(hull[k - 2], hull[k - 1], p[i]) <= 0.0)
            --k;
        hull[k++] = p[i];
    }
    std::vector<int> result;
    for (std::size_t i = 0; i + 1 < k; ++i)
        result.push_back(hull[i].i);
    return result;
}

void RunNumorix(benchmark::State& state, const CNuPointArray& points) {
    CNuIntArray hull;
    for (auto _ : state) {
        points.ConvexHull(&hull);
        benchmark::DoNotOptimize(hull.GetData());
    }
    state.counters["vertices"] = hull.GetSize();
}

void RunMonotoneChain(benchmark::State& state, const CNuPointArray& points) {
    std::vector<int> hull;
    for (auto _ : state) {
        hull = MonotoneChain(points);
        benchmark::DoNotOptimize(hull.data());
    }
    state.counters["vertices"] = static_cast<double>(hull.size());
}

const CNuPointArray& Square() {
    static const CNuPointArray s_points = RandomSquare(1000000);
    return s_points;
}

const CNuPointArray& Ring() {
    static const CNuPointArray s_points = Circle(100000);
    return s_points;
}

void BM_ConvexHullRandom1e6(benchmark::State& state) { RunNumorix(state, Square()); }
void BM_MonotoneChainRandom1e6(benchmark::State& state) { RunMonotoneChain(state, Square()); }
void BM_ConvexHullCircle1e5(benchmark::State& state) { RunNumorix(state, Ring()); }
void BM_MonotoneChainCircle1e5(benchmark::State& state) { RunMonotoneChain(state, Ring()); }

BENCHMARK(BM_ConvexHullRandom1e6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MonotoneChainRandom1e6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ConvexHullCircle1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MonotoneChainCircle1e5)->Unit(benchmark::kMillisecond);

const bool kPairs =
    numorix::bench::ComparePeers("BM_ConvexHullRandom1e6", "BM_MonotoneChainRandom1e6",
                                 "within 2x") &&
    numorix::bench::ComparePeers("BM_ConvexHullCircle1e5", "BM_MonotoneChainCircle1e5",
                                 "report (every point a vertex)");

}  // namespace
