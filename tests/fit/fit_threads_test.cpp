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

// Zones, residuals, radii and positions of the line and plane zones of p[0] (near a line) and
// p[1] (off a plane), and of the four circle fits of p[2] (a lobed circle), zones asked for 1e3
// length tolerances; last whether p[3], three points 5e-10 off a line, make a circle, as they do
// only under a length tolerance below that.
std::vector<double> FitAll(const CNuPointArray* p) {
    const double dTol = 1e3 * NuGetLengthTol();
    std::vector<double> v(5, 0.0);
    CNuLine line;
    CNuPlane plane;
    CNuCircle c[4] = {CNuCircle(1.0), CNuCircle(1.0), CNuCircle(1.0), CNuCircle(1.0)};
    line.FitMinZone(p[0], &v[0], dTol, 200);
    plane.FitMinZone(p[1], &v[1], dTol);
    c[0].Fit(p[2], &v[2], &v[3], 100);
    c[1].FitMinZone(p[2], &v[4], dTol, 200);
    c[2].FitMin(p[2], dTol);
    c[3].FitMax(p[2], dTol);
    for (const CNuPoint& q : {line.GetPoint(), plane.GetPoint(), c[0].GetCentre(), c[1].GetCentre(),
                              c[2].GetCentre(), c[3].GetCentre()})
        v.insert(v.end(), {q.x(), q.y(), q.z()});
    v.insert(v.end(), {c[2].GetRadius(), c[3].GetRadius(), line.GetDirection()[1],
                       plane.GetNormal()[1], static_cast<double>(c[0].FitEx(p[3], 10))});
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
    const std::vector<double> tolerances = {1e-12, 1e-11, 1e-9, 1e-8};
    std::vector<std::vector<double>> expected;
    for (double dTol : tolerances) {
        test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, dTol);
        expected.push_back(FitAll(p));
    }
    ASSERT_NE(expected.front(), expected.back()) << "the tolerances must matter to see a mix-up";
    std::vector<int> mismatches(tolerances.size(), 0);
    std::vector<std::thread> threads;
    for (std::size_t k = 0; k < tolerances.size(); ++k)
        threads.emplace_back([&, k] {
            NuSetLengthTol(tolerances[k]);
            for (int nRound = 0; nRound < 50; ++nRound)
                mismatches[k] += FitAll(p) != expected[k];
        });
    for (std::thread& t : threads)
        t.join();
    EXPECT_EQ(mismatches, std::vector<int>(tolerances.size(), 0)) << "rounds that differed";
}

}  // namespace
}  // namespace numorix
