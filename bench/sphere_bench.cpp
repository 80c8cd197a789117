// Sphere fits on a probed reference ball: radius 12.5, probed down to 60 degrees below its equator
// (the stem hides the rest), three lobes of 0.002 about the polar axis and noise of 0.001, about
// 1000 from the origin. The least-squares fit of 10^5 and 10^6 points beside an Eigen
// Levenberg-Marquardt orthogonal-distance sphere of the same points (tests/support, started at
// the generating sphere: the peer is given the answer's neighbourhood, the library finds its own
// start). The minimum zone, minimum circumscribed and maximum inscribed spheres of 10^3 and 10^4
// points: the zone and the inscribed sphere beside the least-squares fit of the same points, the
// circumscribed sphere beside CGAL's minimum enclosing sphere.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "cgal_sphere_oracle.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/sph_surf.h"
#include "peer_report.h"
#include "sphere_oracle.h"

namespace {

using numorix::CNuPoint;
using numorix::CNuPointArray;
using numorix::CNuSphSurf;

const Eigen::Vector3d kCentre(1000.0, -500.0, 250.0);
const double kRadius = 12.5;

CNuPointArray Ball(int n) {
    std::mt19937_64 rng(4711);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        // Uniform on the sphere down to 60 degrees below the equator: cos(polar) in [-0.866, 1].
        double c = 1.0 - 1.8660254037844386 * unit(rng), s = std::sqrt(1.0 - c * c);
        double phi = 2.0 * 3.14159265358979323846 * unit(rng);
        double r = kRadius + 0.002 * std::cos(3.0 * phi) * s + 0.001 * (unit(rng) - 0.5);
        Eigen::Vector3d p = kCentre + r * Eigen::Vector3d(s * std::cos(phi), s * std::sin(phi), c);
        points.Add(CNuPoint(p.x(), p.y(), p.z()));
    }
    return points;
}

const CNuPointArray& Points(int n) {
    static const CNuPointArray s_1e3 = Ball(1000), s_1e4 = Ball(10000), s_1e5 = Ball(100000),
                               s_1e6 = Ball(1000000);
    return n == 1000 ? s_1e3 : n == 10000 ? s_1e4 : n == 100000 ? s_1e5 : s_1e6;
}

Eigen::MatrixX3d Rows(const CNuPointArray& points) {
    Eigen::MatrixX3d P(points.GetSize(), 3);
    for (int i = 0; i < points.GetSize(); ++i) P.row(i) << points[i].x(), points[i].y(), points[i].z();
    return P;
}

void RunLeastSquares(benchmark::State& state, int n) {
    CNuSphSurf s(1.0);
    for (auto _ : state) {
        s.Fit(Points(n), 1000);
        benchmark::ClobberMemory();
    }
    state.counters["radius"] = s.GetRadius();
}

void RunEigen(benchmark::State& state, int n) {
    const Eigen::MatrixX3d P = Rows(Points(n));
    numorix::oracle::SSphere s;
    for (auto _ : state) {
        s = numorix::oracle::FitSphere(P, {kCentre, kRadius});
        benchmark::DoNotOptimize(s);
    }
    state.counters["radius"] = s.dRadius;
}

void RunCgal(benchmark::State& state, int n) {
    const Eigen::MatrixX3d P = Rows(Points(n));
    numorix::oracle::SEnclosingSphere s;
    for (auto _ : state) {
        s = numorix::oracle::MinEnclosingSphere(P);
        benchmark::DoNotOptimize(s);
    }
    state.counters["radius"] = s.dRadius;
}

// nMode -1 maximum inscribed, 0 minimum zone, 1 minimum circumscribed.
void RunChebyshev(benchmark::State& state, int n, int nMode) {
    CNuSphSurf s(1.0);
    double dZone = 0.0;
    for (auto _ : state) {
        if (nMode == 0) s.FitMinZone(Points(n), &dZone, 1e-9, 1000);
        if (nMode == 1) s.FitMin(Points(n), 1e-9);
        if (nMode == -1) s.FitMax(Points(n), 1e-9);
        benchmark::ClobberMemory();
    }
    if (nMode == 0) state.counters["zone_um"] = dZone * 1e3;
    state.counters["radius"] = s.GetRadius();
}

void BM_SphereFit1e5(benchmark::State& s) { RunLeastSquares(s, 100000); }
void BM_EigenOdrSphere1e5(benchmark::State& s) { RunEigen(s, 100000); }
void BM_SphereFit1e6(benchmark::State& s) { RunLeastSquares(s, 1000000); }
void BM_EigenOdrSphere1e6(benchmark::State& s) { RunEigen(s, 1000000); }
BENCHMARK(BM_SphereFit1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EigenOdrSphere1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SphereFit1e6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EigenOdrSphere1e6)->Unit(benchmark::kMillisecond);

#define NUMORIX_SPHERE_CHEBYSHEV(N, n)                                                            \
    void BM_SphereLs##N(benchmark::State& s) { RunLeastSquares(s, n); }                          \
    void BM_SphereMinZone##N(benchmark::State& s) { RunChebyshev(s, n, 0); }                    \
    void BM_SphereMinCircumscribed##N(benchmark::State& s) { RunChebyshev(s, n, 1); }           \
    void BM_CgalMinSphere##N(benchmark::State& s) { RunCgal(s, n); }                             \
    void BM_SphereMaxInscribed##N(benchmark::State& s) { RunChebyshev(s, n, -1); }              \
    BENCHMARK(BM_SphereLs##N)->Unit(benchmark::kMillisecond);                                    \
    BENCHMARK(BM_SphereMinZone##N)->Unit(benchmark::kMillisecond);                               \
    BENCHMARK(BM_SphereMinCircumscribed##N)->Unit(benchmark::kMillisecond);                      \
    BENCHMARK(BM_CgalMinSphere##N)->Unit(benchmark::kMillisecond);                               \
    BENCHMARK(BM_SphereMaxInscribed##N)->Unit(benchmark::kMillisecond);                          \
    const bool kPairs##N =                                                                        \
        numorix::bench::ComparePeers("BM_SphereMinZone" #N, "BM_SphereLs" #N, "report") &&       \
        numorix::bench::ComparePeers("BM_SphereMinCircumscribed" #N, "BM_CgalMinSphere" #N,      \
                                     "report") &&                                                 \
        numorix::bench::ComparePeers("BM_SphereMaxInscribed" #N, "BM_SphereLs" #N, "report");
NUMORIX_SPHERE_CHEBYSHEV(1e3, 1000)
NUMORIX_SPHERE_CHEBYSHEV(1e4, 10000)
NUMORIX_SPHERE_CHEBYSHEV(1e5, 100000)

const bool kLeastSquaresPairs =
    numorix::bench::ComparePeers("BM_SphereFit1e5", "BM_EigenOdrSphere1e5", "report") &&
    numorix::bench::ComparePeers("BM_SphereFit1e6", "BM_EigenOdrSphere1e6", "report");

}  // namespace
