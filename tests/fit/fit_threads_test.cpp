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

// Every figure of the line, plane and circle fits, least squares and zones, of fixed points. The
// zone fits are asked for 1e3 times the thread's length tolerance.
std::vector<double> FitAll(const CNuPointArray& flat, const CNuPointArray& bumpy,
                           const CNuPointArray& lobed) {
    std::vector<double> v;
    auto add = [&](const CNuPoint& p, const CNuVector& d, double dValue) {
        v.insert(v.end(), {p.x(), p.y(), p.z(), d[0], d[1], d[2], dValue});
    };
    const double dTol = 1e3 * NuGetLengthTol();
    double dZone = 0.0, dForm = 0.0, dSum = 0.0;
    CNuLine line;
    CNuPointArray pair(2);
    pair.Add(CNuPoint(1, 2, 3));
    pair.Add(CNuPoint(1, 2, 3 + 5e-11));
    try {  // two points 5e-11 apart make a line under a length tolerance below that only
        line.Fit(pair);
        v.push_back(1.0);
    } catch (const CNuBestfitException&) {
        v.push_back(0.0);
    }
    line.Fit(flat, &dForm, &dSum);
    add(line.GetPoint(), line.GetDirection(), dForm + dSum);
    line.FitMinZone(flat, &dZone, dTol, 200);
    add(line.GetPoint(), line.GetDirection(), dZone);
    CNuPlane plane;
    plane.Fit(bumpy, &dForm, &dSum);
    add(plane.GetPoint(), plane.GetNormal(), dForm + dSum);
    plane.FitMinZone(bumpy, &dZone, dTol);
    add(plane.GetPoint(), plane.GetNormal(), dZone);
    CNuCircle circle(1.0);
    circle.Fit(lobed, &dForm, &dSum, 100);
    add(circle.GetCentre(), circle.GetNormal(), circle.GetRadius() + dForm + dSum);
    circle.FitMinZone(lobed, &dZone, dTol, 200);
    add(circle.GetCentre(), circle.GetNormal(), circle.GetRadius() + dZone);
    circle.FitMin(lobed, dTol);
    add(circle.GetCentre(), circle.GetNormal(), circle.GetRadius());
    circle.FitMax(lobed, dTol);
    add(circle.GetCentre(), circle.GetNormal(), circle.GetRadius());
    return v;
}

TEST(FitThreads, FitsOnFourThreadsEqualTheSingleThreadResultsBitForBit) {
    // Points near a line in z = 1, a three-lobed circle in z = 0.5, and the same bent out of it.
    CNuPointArray flat(40), bumpy(40), lobed(40);
    for (int i = 0; i < 40; ++i) {
        double t = 0.157 * i;
        flat.Add(CNuPoint(i * 0.5, 0.2 * i + 0.3 * std::sin(7.0 * t), 1.0));
        double r = 10.0 + 0.05 * std::cos(3.0 * t) + 0.01 * std::sin(11.0 * t);
        lobed.Add(CNuPoint(2.0 + r * std::cos(t), -1.0 + r * std::sin(t), 0.5));
        bumpy.Add(CNuPoint(lobed[i].x(), lobed[i].y(), 0.5 + 0.1 * std::cos(5.0 * t)));
    }
    constexpr int kThreads = 4;
    constexpr int kRounds = 50;
    const double adTol[kThreads] = {1e-12, 1e-11, 1e-10, 1e-9};
    std::vector<std::vector<double>> expected;
    for (double dTol : adTol) {
        test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, dTol);
        expected.push_back(FitAll(flat, bumpy, lobed));
    }
    ASSERT_NE(expected.front(), expected.back()) << "the tolerances must matter to see a mix-up";
    int anMismatches[kThreads] = {};
    double adTolSeen[kThreads] = {};
    std::vector<std::thread> threads;
    for (int k = 0; k < kThreads; ++k)
        threads.emplace_back([&, k] {
            NuSetLengthTol(adTol[k]);
            for (int r = 0; r < kRounds; ++r)
                if (FitAll(flat, bumpy, lobed) != expected[static_cast<std::size_t>(k)])
                    ++anMismatches[k];
            adTolSeen[k] = NuGetLengthTol();
        });
    for (std::thread& t : threads)
        t.join();
    for (int k = 0; k < kThreads; ++k) {
        EXPECT_EQ(anMismatches[k], 0) << "thread " << k << " of tolerance " << adTol[k];
        EXPECT_EQ(adTolSeen[k], adTol[k]) << "thread " << k << "'s tolerance changed";
    }
}

}  // namespace
}  // namespace numorix
