// Circle fit benchmarks.
//   least-squares circle of 10^5 points of a lobed bore profile in a tilted plane
//                                         vs an independent orthogonal fit by Eigen: plane by
//                                         the scatter matrix's eigenvectors, circle by
//                                         Levenberg-Marquardt from the algebraic circle
#include <benchmark/benchmark.h>

#include <Eigen/Dense>
#include <cmath>
#include <random>

#include "numorix/curves/circle.h"
#include "numorix/geometry/point_array.h"
#include "peer_report.h"
#include "circle_oracle.h"

namespace {

using numorix::CNuCircle;
using numorix::CNuPoint;
using numorix::CNuPointArray;

// A bore of radius 25 mm about (100, 50, 12) in a plane tilted by a few degrees: three lobes of
// 4 um, probe noise of 0.3 um, n points round the full circle.
Eigen::MatrixX3d LobedBore(int n) {
    std::mt19937_64 engine(20261124u);
    std::normal_distribution<double> noise(0.0, 3e-4);
    Eigen::Vector3d normal(0.03, -0.05, 1.0);
    normal.normalize();
    Eigen::Vector3d e1 = normal.unitOrthogonal();
    Eigen::Vector3d e2 = normal.cross(e1);
    Eigen::Vector3d centre(100.0, 50.0, 12.0);
    Eigen::MatrixX3d m(n, 3);
    for (int i = 0; i < n; ++i) {
        double t = 2.0 * M_PI * i / n;
        double r = 25.0 + 4e-3 * std::cos(3.0 * t) + noise(engine);
        m.row(i) = (centre + r * std::cos(t) * e1 + r * std::sin(t) * e2).transpose();
    }
    return m;
}

const Eigen::MatrixX3d& Bore() {
    static const Eigen::MatrixX3d s_points = LobedBore(100000);
    return s_points;
}

const CNuPointArray& BorePoints() {
    static const CNuPointArray s_points = [] {
        const Eigen::MatrixX3d& m = Bore();
        CNuPointArray points(static_cast<int>(m.rows()));
        for (Eigen::Index i = 0; i < m.rows(); ++i)
            points.Add(CNuPoint(m(i, 0), m(i, 1), m(i, 2)));
        return points;
    }();
    return s_points;
}

void BM_CircleFit1e5(benchmark::State& state) {
    const CNuPointArray& points = BorePoints();
    CNuCircle circle(1.0);
    for (auto _ : state) {
        circle.Fit(points, 100);
        benchmark::DoNotOptimize(circle.GetRadius());
    }
    // Distance of the centre from the oracle's, in um, to show that both solve the same problem.
    numorix::oracle::SCircle ref = numorix::oracle::FitCircle(Bore());
    CNuPoint c = circle.GetCentre();
    state.counters["centre_vs_eigen_um"] =
        (Eigen::Vector3d(c.x(), c.y(), c.z()) - ref.centre).norm() * 1e3;
    state.counters["radius_vs_eigen_um"] = std::fabs(circle.GetRadius() - ref.dRadius) * 1e3;
}

void BM_EigenCircle1e5(benchmark::State& state) {
    const Eigen::MatrixX3d& m = Bore();
    for (auto _ : state) {
        numorix::oracle::SCircle c = numorix::oracle::FitCircle(m);
        benchmark::DoNotOptimize(c.dRadius);
    }
}

BENCHMARK(BM_CircleFit1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EigenCircle1e5)->Unit(benchmark::kMillisecond);

const bool kPairs =
    numorix::bench::ComparePeers("BM_CircleFit1e5", "BM_EigenCircle1e5", "within 3x");

}  // namespace
