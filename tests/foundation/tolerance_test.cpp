// Tolerances, per thread, and the constants.
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <iterator>
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

TEST(Tolerances, AFreshThreadReadsTheDefaultsAndASetterStoresAnyValueInItsOwnSlotOnly) {
    constexpr double kInf = std::numeric_limits<double>::infinity();
    const struct {
        const char* pszName;
        double (*pfGet)();
        void (*pfSet)(double);
        double dDefault, dStored;  // the literal default, and a value no check would let pass
    } slots[] = {
        {"Large", NuGetLarge, NuSetLarge, 1e300, -kInf},
        {"Zero", NuGetZero, NuSetZero, 1e-300, -1.0},
        {"Tol", NuGetTol, NuSetTol, 4.45e-16, std::numeric_limits<double>::quiet_NaN()},
        {"SqrtTol", NuGetSqrtTol, NuSetSqrtTol, 1.5e-8, 6.0},
        {"LengthTol", NuGetLengthTol, NuSetLengthTol, 1e-12, 2.0},
        {"MinEdgeLength", NuGetMinEdgeLength, NuSetMinEdgeLength, 1e-9, 3.0},
        {"DegreeTol", NuGetDegreeTol, NuSetDegreeTol, 2.777777777778e-10, 0.0},
        {"RadianTol", NuGetRadianTol, NuSetRadianTol, 4.848136811094e-12, 4.0},
        {"MinAngle", NuGetMinAngle, NuSetMinAngle, 2.777777777778e-8, 5.0},
    };
    const int nSlots = static_cast<int>(std::size(slots));
    // Round -1 only reads, so that every slot is first touched by a read; round k sets slot k
    // first, on its own thread, which later rounds must not see.
    for (int nSet = -1; nSet < nSlots; ++nSet) {
        OnFreshThread([&] {
            if (nSet >= 0) slots[nSet].pfSet(slots[nSet].dStored);
            for (int i = 0; i < nSlots; ++i) {
                const double dExpected = i == nSet ? slots[i].dStored : slots[i].dDefault;
                const double dSeen = slots[i].pfGet();
                EXPECT_TRUE(dSeen == dExpected || (std::isnan(dSeen) && std::isnan(dExpected)))
                    << "Get" << slots[i].pszName << " read " << dSeen << " after setting "
                    << (nSet >= 0 ? slots[nSet].pszName : "nothing");
            }
        });
    }
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

}  // namespace
}  // namespace numorix
