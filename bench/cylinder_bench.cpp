// Cylinder fits on a measured bore: radius 10, length 40, three lobes of 0.02 and noise of 0.002,
// its axis tilted and 1000 from the origin. The least-squares fit of 10^5 and 10^6 points beside
// an Eigen Levenberg-Marquardt orthogonal-distance cylinder of the same points (tests/support,
// started at the generating cylinder: the peer is given the answer's neighbourhood, the library
// finds its own start). The minimum zone, minimum circumscribed and maximum inscribed cylinders
// of 10^3, 10^4 and 10^5 points beside the least-squares fit of the same points, with the number
// of evaluations of the axis objective, each of which projects the points along a trial axis.
//
// The library does not count evaluations, so this program counts them from outside: it defines
// CNuGeometry::Projection2D(points, axis) itself, which the dynamic linker then binds in place of
// the library's, counts the call and passes it on to the library's definition (RTLD_NEXT).
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cmath>
#include <random>

#include "cylinder_oracle.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/cyl_surf.h"
#include "peer_report.h"

namespace {
long g_lProjections = 0;
}

namespace numorix {
CNuPointArray CNuGeometry::Projection2D(const CNuPointArray& points, const CNuVector& zAxis) {
    using Fn = CNuPointArray (*)(const CNuPointArray&, const CNuVector&);
    static const Fn pfnLibrary = reinterpret_cast<Fn>(
        dlsym(RTLD_NEXT, "_ZN7numorix11CNuGeometry12Projection2DERKNS_13CNuPointArrayERKNS_9CNuVectorE"));
    ++g_lProjections;
    return pfnLibrary(points, zAxis);
}
}  // namespace numorix

namespace {

using numorix::CNuCylSurf;
using numorix::CNuPoint;
using numorix::CNuPointArray;

const Eigen::Vector3d kAxis = Eigen::Vector3d(0.3, -0.2, 1.0).normalized();
const Eigen::Vector3d kOrigin(1000.0, -500.0, 250.0);

CNuPointArray Bore(int n) {
    std::mt19937_64 rng(4711);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const Eigen::Vector3d e1 = kAxis.unitOrthogonal(), e2 = kAxis.cross(e1);
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = 2.0 * 3.14159265358979323846 * unit(rng);
        double r = 10.0 + 0.02 * std::cos(3.0 * t) + 0.004 * (unit(rng) - 0.5);
        Eigen::Vector3d p = kOrigin + r * std::cos(t) * e1 + r * std::sin(t) * e2 + 40.0 * unit(rng) * kAxis;
        points.Add(CNuPoint(p.x(), p.y(), p.z()));
    }
    return points;
}

const CNuPointArray& Points(int n) {
    static const CNuPointArray s_1e3 = Bore(1000), s_1e4 = Bore(10000), s_1e5 = Bore(100000),
                               s_1e6 = Bore(1000000);
    return n == 1000 ? s_1e3 : n == 10000 ? s_1e4 : n == 100000 ? s_1e5 : s_1e6;
}

void RunLeastSquares(benchmark::State& state, int n) {
    CNuCylSurf c(1.0);
    for (auto _ : state) {
        c.Fit(Points(n), 1000);
        benchmark::ClobberMemory();
    }
    state.counters["radius"] = c.GetRadius();
}

void RunEigen(benchmark::State& state, int n) {
    const CNuPointArray& points = Points(n);
    Eigen::MatrixX3d P(points.GetSize(), 3);
    for (int i = 0; i < points.GetSize(); ++i) P.row(i) << points[i].x(), points[i].y(), points[i].z();
    numorix::oracle::SCylinder c;
    for (auto _ : state) {
        c = numorix::oracle::FitCylinder(P, {kOrigin, kAxis, 10.0});
        benchmark::DoNotOptimize(c);
    }
    state.counters["radius"] = c.dRadius;
}

// nMode -1 maximum inscribed, 0 minimum zone, 1 minimum circumscribed.
void RunChebyshev(benchmark::State& state, int n, int nMode) {
    CNuCylSurf c(1.0);
    double dZone = 0.0;
    long lEvaluations = 0;
    for (auto _ : state) {
        const long lBefore = g_lProjections;
        if (nMode == 0) c.FitMinZone(Points(n), &dZone, 1e-9, 1000);
        if (nMode == 1) c.FitMin(Points(n), 1e-9, 1000);
        if (nMode == -1) c.FitMax(Points(n), 1e-9, 1000);
        lEvaluations = g_lProjections - lBefore;
        benchmark::ClobberMemory();
    }
    if (nMode == 0) state.counters["zone_um"] = dZone * 1e3;
    state.counters["radius"] = c.GetRadius();
    state.counters["evaluations"] = static_cast<double>(lEvaluations);
}

void BM_CylinderFit1e5(benchmark::State& s) { RunLeastSquares(s, 100000); }
void BM_EigenOdrCylinder1e5(benchmark::State& s) { RunEigen(s, 100000); }
void BM_CylinderFit1e6(benchmark::State& s) { RunLeastSquares(s, 1000000); }
void BM_EigenOdrCylinder1e6(benchmark::State& s) { RunEigen(s, 1000000); }
BENCHMARK(BM_CylinderFit1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EigenOdrCylinder1e5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CylinderFit1e6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EigenOdrCylinder1e6)->Unit(benchmark::kMillisecond);

#define NUMORIX_CYLINDER_CHEBYSHEV(N, n)                                                          \
    void BM_CylinderLs##N(benchmark::State& s) { RunLeastSquares(s, n); }                        \
    void BM_CylinderMinZone##N(benchmark::State& s) { RunChebyshev(s, n, 0); }                  \
    void BM_CylinderMinCircumscribed##N(benchmark::State& s) { RunChebyshev(s, n, 1); }         \
    void BM_CylinderMaxInscribed##N(benchmark::State& s) { RunChebyshev(s, n, -1); }            \
    BENCHMARK(BM_CylinderLs##N)->Unit(benchmark::kMillisecond);                                  \
    BENCHMARK(BM_CylinderMinZone##N)->Unit(benchmark::kMillisecond);                             \
    BENCHMARK(BM_CylinderMinCircumscribed##N)->Unit(benchmark::kMillisecond);                    \
    BENCHMARK(BM_CylinderMaxInscribed##N)->Unit(benchmark::kMillisecond);                        \
    const bool kPairs##N =                                                                        \
        numorix::bench::ComparePeers("BM_CylinderMinZone" #N, "BM_CylinderLs" #N, "report") &&   \
        numorix::bench::ComparePeers("BM_CylinderMinCircumscribed" #N, "BM_CylinderLs" #N,       \
                                     "report") &&                                                 \
        numorix::bench::ComparePeers("BM_CylinderMaxInscribed" #N, "BM_CylinderLs" #N, "report");
NUMORIX_CYLINDER_CHEBYSHEV(1e3, 1000)
NUMORIX_CYLINDER_CHEBYSHEV(1e4, 10000)
NUMORIX_CYLINDER_CHEBYSHEV(1e5, 100000)

const bool kLeastSquaresPairs =
    numorix::bench::ComparePeers("BM_CylinderFit1e5", "BM_EigenOdrCylinder1e5", "report") &&
    numorix::bench::ComparePeers("BM_CylinderFit1e6", "BM_EigenOdrCylinder1e6", "report");

}  // namespace
