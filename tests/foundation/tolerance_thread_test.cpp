// The nine tolerances are per thread: a thread starts from the defaults and sees only its own
// settings, also when many threads touch the registry for the first time at once. Built also under
// ThreadSanitizer, where any unsynchronised access to the shared registry is reported.
#include <atomic>
#include <thread>
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

TEST(ToleranceThreads, ManyFirstTouchesAtOnceGiveEachThreadTheDefaultsAndItsOwnValue) {
    // clang-format off
    double (*const get[])() = {NuGetLarge, NuGetZero, NuGetTol, NuGetSqrtTol, NuGetLengthTol,
                               NuGetMinEdgeLength, NuGetDegreeTol, NuGetRadianTol, NuGetMinAngle};
    void (*const set[])(double) = {NuSetLarge, NuSetZero, NuSetTol, NuSetSqrtTol,
                                   NuSetLengthTol, NuSetMinEdgeLength, NuSetDegreeTol,
                                   NuSetRadianTol, NuSetMinAngle};
    const double defaults[] = {1e300, 1e-300, 4.45e-16, 1.5e-8, 1e-12, 1e-9, 2.777777777778e-10,
                               4.848136811094e-12, 2.777777777778e-8};
    // clang-format on
    // Thread t below 9 first sets slot t, to a negative value that no check would let pass; the
    // others first read. Every thread then reads the defaults in all slots but its own.
    constexpr int kThreads = 18;
    std::atomic<int> nWaiting{kThreads}, nFailures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            nWaiting.fetch_sub(1);  // line up so that the first touches collide
            while (nWaiting.load() > 0)
                std::this_thread::yield();
            const double dMine = -1.0 - t;
            if (t < 9) set[t](dMine);
            for (int r = 0; r < 500; ++r)
                for (int i = 0; i < 9; ++i)
                    if (get[i]() != (i == t ? dMine : defaults[i])) nFailures.fetch_add(1);
        });
    }
    for (std::thread& t : threads)
        t.join();
    EXPECT_EQ(nFailures.load(), 0) << "reads of another thread's value or of a wrong default";
}

}  // namespace
}  // namespace numorix
