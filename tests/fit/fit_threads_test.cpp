// Fits running on several threads at once, each thread with its own length tolerance: every
// result equals, bit for bit, the one computed alone on the main thread with the same tolerance.
// Only gtest, nu_test.h and the library, so that the file also builds under ThreadSanitizer.
#include <cmath>
#include <thread>
#include <vector>

#include "nu_test.h"
#include "numorix/curves/circle.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

// Figures of the line, plane and circle zones and of the least-squares, circumscribed and
// inscribed circles of p[0] near a line, p[1] off a plane and p[2] a lobed circle; and whether
// p[3], three points 5e-10 off a line, make a circle, as under a length tolerance below that
// only. Zones are asked for 1e3 length tolerances.
std::vector<double> FitAll(const CNuPointArray* p) {
    const double dTol = 1e3 * NuGetLengthTol();
    double adZone[3] = {}, dForm = 0.0, dSum = 0.0;
    CNuLine line;
    CNuPlane plane;
    CNuCircle ls(1.0), zone(1.0), min(1.0), max(1.0);
    line.FitMinZone(p[0], &adZone[0], dTol, 200);
    plane.FitMinZone(p[1], &adZone[1], dTol);
    ls.Fit(p[2], &dForm, &dSum, 100);
    zone.FitMinZone(p[2], &adZone[2], dTol, 200);
    min.FitMin(p[2], dTol);
    max.FitMax(p[2], dTol);
    std::vector<double> v{adZone[0], adZone[1], adZone[2], dForm, dSum, min.GetRadius()};
    for (const CNuPoint& q : {line.GetPoint(), plane.GetPoint(), ls.GetCentre(), zone.GetCentre(),
                              min.GetCentre(), max.GetCentre()})
        v.insert(v.end(), {q.x(), q.y(), q.z()});
    v.insert(v.end(), {max.GetRadius(), line.GetDirection()[1], plane.GetNormal()[1]});
    v.push_back(ls.FitEx(p[3], 10));
    return v;
}

TEST(FitThreads, FitsOnFourThreadsEqualTheSingleThreadResultsBitForBit) {
    CNuPointArray p[4];
    for (int i = 0; i < 40; ++i) {
        double t = 0.157 * i, r = 10.0 + 0.05 * std::cos(3.0 * t) + 0.01 * std::sin(11.0 * t);
        p[0].Add(CNuPoint(i * 0.5, 0.2 * i + 0.3 * std::sin(7.0 * t), 1.0));
        p[1].Add(CNuPoint(r * std::cos(t), r * std::sin(t), 0.5 + 0.1 * std::cos(5.0 * t)));
        p[2].Add(CNuPoint(2.0 + r * std::cos(t), -1.0 + r * std::sin(t), 0.5));
        if (i < 3) p[3].Add(CNuPoint(i, i == 1 ? 5e-10 : 0.0, 0.0));
    }
    constexpr int kThreads = 4;
    const double adTol[kThreads] = {1e-12, 1e-11, 1e-9, 1e-8};
    std::vector<std::vector<double>> expected;
    for (double dTol : adTol) {
        test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, dTol);
        expected.push_back(FitAll(p));
    }
    ASSERT_NE(expected.front(), expected.back()) << "the tolerances must matter to see a mix-up";
    int anMismatches[kThreads] = {};
    std::vector<std::thread> threads;
    for (int k = 0; k < kThreads; ++k)
        threads.emplace_back([&, k] {
            NuSetLengthTol(adTol[k]);
            for (int nRound = 0; nRound < 50; ++nRound)
                anMismatches[k] += FitAll(p) != expected[static_cast<std::size_t>(k)];
        });
    for (std::thread& t : threads)
        t.join();
    for (int k = 0; k < kThreads; ++k)
        EXPECT_EQ(anMismatches[k], 0) << "thread " << k << " of length tolerance " << adTol[k];
}

}  // namespace
}  // namespace numorix
