// Tolerances, constants and version labels.
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <limits>
#include <thread>

#include "nu_test.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

// Runs f on a new thread and waits for it.
template <class F>
void OnFreshThread(F&& f) {
    std::thread t(std::forward<F>(f));
    t.join();
}

TEST(Tolerances, AFreshThreadReadsTheLiteralDefaults) {
    OnFreshThread([] {
        EXPECT_EQ(NuGetLarge(), 1e300);
        EXPECT_EQ(NuGetZero(), 1e-300);
        EXPECT_EQ(NuGetTol(), 4.45e-16);
        EXPECT_EQ(NuGetSqrtTol(), 1.5e-8);
        EXPECT_EQ(NuGetLengthTol(), 1e-12);
        EXPECT_EQ(NuGetMinEdgeLength(), 1e-9);
        EXPECT_EQ(NuGetDegreeTol(), 2.777777777778e-10);
        EXPECT_EQ(NuGetRadianTol(), 4.848136811094e-12);
        EXPECT_EQ(NuGetMinAngle(), 2.777777777778e-8);
    });
}

TEST(Tolerances, SettersStoreAnyValueAndTouchNoOtherTolerance) {
    OnFreshThread([] {
        NuSetZero(-1.0);
        EXPECT_EQ(NuGetZero(), -1.0);
        NuSetTol(std::numeric_limits<double>::quiet_NaN());
        EXPECT_TRUE(std::isnan(NuGetTol()));
        EXPECT_EQ(NuGetSqrtTol(), 1.5e-8);  // no link between Tol and SqrtTol
        NuSetDegreeTol(0.0);
        EXPECT_EQ(NuGetDegreeTol(), 0.0);
        EXPECT_EQ(NuGetRadianTol(), 4.848136811094e-12);
        NuSetLarge(-std::numeric_limits<double>::infinity());
        EXPECT_EQ(NuGetLarge(), -std::numeric_limits<double>::infinity());
        NuSetLengthTol(2.0);
        NuSetMinEdgeLength(3.0);
        NuSetRadianTol(4.0);
        NuSetMinAngle(5.0);
        NuSetSqrtTol(6.0);
        EXPECT_EQ(NuGetLengthTol(), 2.0);
        EXPECT_EQ(NuGetMinEdgeLength(), 3.0);
        EXPECT_EQ(NuGetRadianTol(), 4.0);
        EXPECT_EQ(NuGetMinAngle(), 5.0);
        EXPECT_EQ(NuGetSqrtTol(), 6.0);
    });
}

TEST(Tolerances, AValueSetOnOneThreadIsNotSeenOnAnother) {
    double dSeenByOther = 0.0;
    OnFreshThread([&] {
        NuSetLengthTol(1e-3);
        EXPECT_EQ(NuGetLengthTol(), 1e-3);
        OnFreshThread([&] { dSeenByOther = NuGetLengthTol(); });
        EXPECT_EQ(NuGetLengthTol(), 1e-3);
    });
    EXPECT_EQ(dSeenByOther, 1e-12);
}

TEST(Tolerances, ThreadIdentifiersAreDistinctAmongLiveThreads) {
    std::uint32_t nOther = 0;
    OnFreshThread([&] { nOther = NuCurrentThreadId(); });
    EXPECT_NE(nOther, 0u);
    // The main thread is alive while the other ran.
    EXPECT_NE(nOther, NuCurrentThreadId());
}

TEST(Tolerances, AForkedChildLooksItselfUpUnderItsOwnIdentifier) {
    OnFreshThread([] {
        NuSetTol(0.5);
        pid_t pid = fork();
        if (pid == 0) {
            // The child's thread has a new identifier: it starts from the default.
            _exit(NuGetTol() == 4.45e-16 ? 0 : 1);
        }
        ASSERT_GT(pid, 0);
        int nStatus = 0;
        waitpid(pid, &nStatus, 0);
        EXPECT_TRUE(WIFEXITED(nStatus));
        EXPECT_EQ(WEXITSTATUS(nStatus), 0);
        EXPECT_EQ(NuGetTol(), 0.5);
    });
}

TEST(Constants, AreTheCorrectlyRoundedValuesOfTheirDefinitions) {
    EXPECT_EQ(Nu_PI, std::acos(-1.0));
    EXPECT_EQ(Nu_2PI, std::acos(-1.0) * 2.0);
    EXPECT_EQ(Nu_E, std::exp(1.0));
    EXPECT_EQ(Nu_SQRT2, std::sqrt(2.0));
}

TEST(Constants, VersionLabelsAreThreeZeroZero) {
    EXPECT_EQ(NuMajorVersionLabel, 3u);
    EXPECT_EQ(NuMinorVersionLabel, 0u);
    EXPECT_EQ(NuBuildVersionLabel, 0u);
}

}  // namespace
}  // namespace numorix
