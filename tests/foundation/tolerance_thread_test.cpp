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
    std::atomic<int> nWaiting{kThreads}, nFailures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            nWaiting.fetch_sub(1);  // line up so that the first touches collide
            while (nWaiting.load() > 0)
                std::this_thread::yield();
            if (t % 2 == 0 && NuGetTol() != 4.45e-16) nFailures.fetch_add(1);  // a read first
            const double dMine = 1.0 + t;
            NuSetTol(dMine);
            NuSetLengthTol(-dMine);
            for (int r = 0; r < 2000; ++r) {
                if (NuGetTol() != dMine || NuGetLengthTol() != -dMine || NuGetZero() != 1e-300) {
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
