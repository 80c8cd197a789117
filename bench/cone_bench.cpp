// The least-squares cone of a measured taper: semi-angle 20 degrees, 10 to 40 from the apex along
// the axis, three lobes of 0.02 and noise of 0.002 across the surface, its axis tilted and about
// 1000 from the origin. 10^5 and 10^6 points beside an Eigen Levenberg-Marquardt
// orthogonal-distance cone of the same points (tests/support, started at the generating cone: the
// peer is given the answer's neighbourhood, the library finds its own start). The minimum zone of
// 10^3 and 10^4 points of the same taper beside the least-squares cone of the same points, its
// start; the driver's passes are not visible from outside, the zone and angle are printed.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "cone_oracle.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/con_surf.h"
#include "peer_report.h"

namespace {

using numorix::CNuConSurf;
using numorix::CNuPoint;
using numorix::CNuPointArray;

const Eigen::Vector3d kAxis = Eigen::Vector3d(0.3, -0.2, 1.0).normalized();
const Eigen::Vector3d kApex(1000.0, -500.0, 250.0);
const double kAlpha = 20.0 * 3.14159265358979323846 / 180.0;

CNuPointArray Taper(int n) {
    std::mt19937_64 rng(4711);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const Eigen::Vector3d e1 = kAxis.unitOrthogonal(), e2 = kAxis.cross(e1);
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = 2.0 * 3.14159265358979323846 * unit(rng), h = 10.0 + 30.0 * unit(rng);
        double e = 0.02 * std::cos(3.0 * t) + 0.004 * (unit(rng) - 0.5);
        double r = h * std::tan(kAlpha) + e * std::cos(kAlpha), z = h - e * std::sin(kAlpha);
        Eigen::Vector3d p = kApex + r * std::cos(t) * e1 + r * std::sin(t) * e2 + z * kAxis;
        points.Add(CNuPoint(p.x(), p.y(), p.z()));
    }
    return points;
}

const CNuPointArray& Points(int n) {
    static const CNuPointArray s_1e3 = Taper(1000), s_1e4 = Taper(10000);
    static const CNuPointArray s_1e5 = Taper(100000), s_1e6 = Taper(1000000);
    return n == 1000 ? s_1e3 : n == 10000 ? s_1e4 : n == 100000 ? s_1e5 : s_1e6;
}

void RunLeastSquares(benchmark::State& state, int n) {
    CNuConSurf c(45.0);
    for (auto _ : state) {
        c.Fit(Points(n), 1000);
        benchmark::ClobberMemory();
    }
    state.counters["semi_angle"] = c.GetSemiAngle();
}

void RunEigen(benchmark::State& state, int n) {
    const CNuPointArray& points = Points(n);
    Eigen::MatrixX3d P(points.GetSize(), 3);
    for (int i = 0; i < points.GetSize(); ++i) P.row(i) << points[i].x(), points[i].y(), points[i].z();
    numorix::oracle::SCone c;
    for (auto _ : state) {
        c = numorix::oracle::FitCone(P, {kApex + 25.0 * kAxis, kAxis, 25.0 * std::tan(kAlpha), kAlpha});
        benchmark::DoNotOptimize(c);
    }
    state.counters["semi_angle"] = std::fmin(c.dAngle, 3.14159265358979323846 - c.dAngle) * 180.0 / 3.14159265358979323846;
}

void RunMinZone(benchmark::State& state, int n) {
    CNuConSurf c(45.0);
    double dZone = 0.0;
    for (auto _ : state) {
        c.FitMinZone(Points(n), &dZone, 1e-9, 1000);
        benchmark::ClobberMemory();
    }
    state.counters["zone_um"] = dZone * 1e3;
    state.counters["semi_angle"] = c.GetSemiAngle();
}

void BM_ConeFit1e5(benchmark::State& s) { RunLeastSquares(s, 100000); }
void BM_EigenOdrCone1e5(benchmark::State& s) { RunEigen(s, 100000); }
void BM_ConeFit1e6(benchmark::State& s) { RunLeastSquares(s, 1000000); }
void BM_EigenOdrCone1e6(benchmark::State& s) { RunEigen(s, 1000000); }
BENCHMARK(BM_ConeFit1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EigenOdrCone1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ConeFit1e6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EigenOdrCone1e6)->Unit(benchmark::kMillisecond);

void BM_ConeLs1e3(benchmark::State& s) { RunLeastSquares(s, 1000); }
void BM_ConeMinZone1e3(benchmark::State& s) { RunMinZone(s, 1000); }
void BM_ConeLs1e4(benchmark::State& s) { RunLeastSquares(s, 10000); }
void BM_ConeMinZone1e4(benchmark::State& s) { RunMinZone(s, 10000); }
BENCHMARK(BM_ConeLs1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ConeMinZone1e3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ConeLs1e4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ConeMinZone1e4)->Unit(benchmark::kMillisecond);

const bool kZonePairs = numorix::bench::ComparePeers("BM_ConeMinZone1e3", "BM_ConeLs1e3", "report") &&
                        numorix::bench::ComparePeers("BM_ConeMinZone1e4", "BM_ConeLs1e4", "report");

const bool kLeastSquaresPairs =
    numorix::bench::ComparePeers("BM_ConeFit1e5", "BM_EigenOdrCone1e5", "report") &&
    numorix::bench::ComparePeers("BM_ConeFit1e6", "BM_EigenOdrCone1e6", "report");

}  // namespace
