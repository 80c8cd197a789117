// Fits of lines and planes against peers measured in the same run:
//   least-squares plane of 10^6 points    vs Eigen: scatter matrix + SelfAdjointEigenSolver
//   minimum-zone plane, 10^4 and 10^5 points of a lobed flat surface
//                                         vs the least-squares plane of the same points
//   minimum-zone line, 10^5 planar points vs the least-squares line of the same points
#include <benchmark/benchmark.h>

#include <Eigen/Dense>
#include <cmath>
#include <random>

#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"
#include "peer_report.h"

namespace {

using numorix::CNuLine;
using numorix::CNuPlane;
using numorix::CNuPoint;
using numorix::CNuPointArray;

// A tilted flat surface with three lobes of 20 um and measurement noise of 1 um, in mm.
CNuPointArray LobedFlat(int n) {
    std::mt19937_64 engine(20261122u);
    std::uniform_real_distribution<double> uniform(-50.0, 50.0);
    std::normal_distribution<double> noise(0.0, 1e-3);
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double x = uniform(engine);
        double y = uniform(engine);
        double a = std::atan2(y, x);
        double z = 0.01 * x - 0.02 * y + 0.02 * std::cos(3.0 * a) + noise(engine) + 10.0;
        points.Add(CNuPoint(x, y, z));
    }
    return points;
}

// A straight edge in the XY plane with a wavy form of 10 um.
CNuPointArray WavyEdge(int n) {
    std::mt19937_64 engine(20261123u);
    std::uniform_real_distribution<double> uniform(-100.0, 100.0);
    std::normal_distribution<double> noise(0.0, 1e-3);
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = uniform(engine);
        double y = 0.3 * t + 0.01 * std::sin(t / 7.0) + noise(engine);
        points.Add(CNuPoint(t, y, 0.0));
    }
    return points;
}

const CNuPointArray& Flat(int n) {
    static const CNuPointArray s_1e4 = LobedFlat(10000);
    static const CNuPointArray s_1e5 = LobedFlat(100000);
    static const CNuPointArray s_1e6 = LobedFlat(1000000);
    return n == 10000 ? s_1e4 : (n == 100000 ? s_1e5 : s_1e6);
}

void BM_PlaneFit1e6(benchmark::State& state) {
    const CNuPointArray& points = Flat(1000000);
    for (auto _ : state) {
        CNuPlane plane;
        plane.Fit(points);
        benchmark::DoNotOptimize(plane.GetNormal()[2]);
    }
}

void BM_EigenPlane1e6(benchmark::State& state) {
    const CNuPointArray& points = Flat(1000000);
    for (auto _ : state) {
        int n = points.GetSize();
        Eigen::Vector3d mean = Eigen::Vector3d::Zero();
        for (int i = 0; i < n; ++i)
            mean += Eigen::Vector3d(points[i].x(), points[i].y(), points[i].z());
        mean /= n;
        Eigen::Matrix3d scatter = Eigen::Matrix3d::Zero();
        for (int i = 0; i < n; ++i) {
            Eigen::Vector3d d = Eigen::Vector3d(points[i].x(), points[i].y(), points[i].z()) - mean;
            scatter.noalias() += d * d.transpose();
        }
        Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver(scatter);
        benchmark::DoNotOptimize(solver.eigenvectors()(2, 0));
    }
}

void RunPlaneZone(benchmark::State& state, int n) {
    const CNuPointArray& points = Flat(n);
    double dZone = 0.0;
    for (auto _ : state) {
        CNuPlane plane;
        plane.FitMinZone(points, &dZone, 1e-9);
        benchmark::DoNotOptimize(dZone);
    }
    state.counters["zone_um"] = dZone * 1e3;
}

void RunPlaneLeastSquares(benchmark::State& state, int n) {
    const CNuPointArray& points = Flat(n);
    for (auto _ : state) {
        CNuPlane plane;
        plane.Fit(points);
        benchmark::DoNotOptimize(plane.GetNormal()[2]);
    }
}

void BM_PlaneMinZone1e4(benchmark::State& state) { RunPlaneZone(state, 10000); }
void BM_PlaneLeastSquares1e4(benchmark::State& state) { RunPlaneLeastSquares(state, 10000); }
void BM_PlaneMinZone1e5(benchmark::State& state) { RunPlaneZone(state, 100000); }
void BM_PlaneLeastSquares1e5(benchmark::State& state) { RunPlaneLeastSquares(state, 100000); }

const CNuPointArray& Edge() {
    static const CNuPointArray s_points = WavyEdge(100000);
    return s_points;
}

void BM_LineMinZone1e5(benchmark::State& state) {
    double dZone = 0.0;
    for (auto _ : state) {
        CNuLine line;
        line.FitMinZone(Edge(), &dZone, 1e-9, 100);
        benchmark::DoNotOptimize(dZone);
    }
    state.counters["zone_um"] = dZone * 1e3;
}

void BM_LineLeastSquares1e5(benchmark::State& state) {
    for (auto _ : state) {
        CNuLine line;
        line.Fit(Edge());
        benchmark::DoNotOptimize(line.GetDirection()[0]);
    }
}

BENCHMARK(BM_PlaneFit1e6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EigenPlane1e6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlaneMinZone1e4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlaneLeastSquares1e4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlaneMinZone1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlaneLeastSquares1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LineMinZone1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LineLeastSquares1e5)->Unit(benchmark::kMillisecond);

const bool kPairs =
    numorix::bench::ComparePeers("BM_PlaneFit1e6", "BM_EigenPlane1e6", "within 3x") &&
    numorix::bench::ComparePeers("BM_PlaneMinZone1e4", "BM_PlaneLeastSquares1e4", "report") &&
    numorix::bench::ComparePeers("BM_PlaneMinZone1e5", "BM_PlaneLeastSquares1e5", "report") &&
    numorix::bench::ComparePeers("BM_LineMinZone1e5", "BM_LineLeastSquares1e5", "report");

}  // namespace
