// Many threads touching their tolerances for the first time at once. Built also under
// ThreadSanitizer, where any unsynchronised access to the shared registry is reported.
#include <atomic>
#include <thread>
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

TEST(ToleranceThreads, ManyFirstTouchesAtOnceKeepEachThreadsOwnValues) {
    constexpr int kThreads = 16;
    constexpr int kRounds = 2000;
    std::atomic<int> nWaiting{kThreads};
    std::atomic<int> nFailures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            // Line up so that the first touches collide.
            nWaiting.fetch_sub(1);
            while (nWaiting.load() > 0)
                std::this_thread::yield();
            if (t % 2 == 0) {
                if (NuGetTol() != 4.45e-16) nFailures.fetch_add(1);  // first touch by a read
            }
            double dMine = 1.0 + t;
            NuSetTol(dMine);
            NuSetLengthTol(-dMine);
            NuSetMinAngle(dMine * 0.5);
            for (int r = 0; r < kRounds; ++r) {
                if (NuGetTol() != dMine || NuGetLengthTol() != -dMine ||
                    NuGetMinAngle() != dMine * 0.5 || NuGetZero() != 1e-300) {
                    nFailures.fetch_add(1);
                }
            }
        });
    }
    for (std::thread& t : threads)
        t.join();
    EXPECT_EQ(nFailures.load(), 0);
}

}  // namespace
}  // namespace numorix
