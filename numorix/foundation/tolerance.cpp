#include "numorix/foundation/tolerance.h"

#include <pthread.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <mutex>
#if !defined(__linux__)
#include <functional>
#include <thread>
#endif

namespace numorix {

// Constant-initialised, so that they hold their values before any other static initialiser of
// the library runs. The literals are the correctly rounded values of acos(-1), exp(1), sqrt(2).
namespace {
constexpr double kPi = 3.141592653589793115997963468544185161590576171875;
}
const double Nu_PI = kPi;
const double Nu_2PI = 2.0 * kPi;
const double Nu_E = 2.718281828459045090795598298427648842334747314453125;
const double Nu_SQRT2 = 1.4142135623730951454746218587388284504413604736328125;

const std::uint32_t NuMajorVersionLabel = 3;
const std::uint32_t NuMinorVersionLabel = 0;
const std::uint32_t NuBuildVersionLabel = 0;

namespace tolerance_detail {

__thread ThreadTolerances* t_pThreadTolerances __attribute__((tls_model("initial-exec"))) = nullptr;

namespace {

constexpr ThreadTolerances kDefaults = {{
    1e300,               // Large
    1e-300,              // Zero
    4.45e-16,            // Tol
    1.5e-8,              // SqrtTol
    1e-12,               // LengthTol
    1e-9,                // MinEdgeLength
    2.777777777778e-10,  // DegreeTol
    4.848136811094e-12,  // RadianTol
    2.777777777778e-8,   // MinAngle
}};

// The map from thread identifier to that thread's tolerances. Records are never removed, so a
// thread's cached pointer stays valid for its life, and a later thread given the same identifier
// finds the record again. The registry is never destroyed: a thread that reads a tolerance while
// the process unwinds its statics still reads valid memory.
struct Registry {
    std::mutex mutex;
    std::map<std::uint32_t, std::unique_ptr<ThreadTolerances>> records;
};

Registry* g_pRegistry = nullptr;
std::once_flag g_registryOnce;

// A forked child runs on a new thread identifier: drop the parent's cached record so that the
// child looks itself up. The lock is held across the fork so that the child never inherits it
// locked by a thread that does not exist there.
void LockBeforeFork() { g_pRegistry->mutex.lock(); }
void UnlockInParent() { g_pRegistry->mutex.unlock(); }
void UnlockInChild() {
    g_pRegistry->mutex.unlock();
    t_pThreadTolerances = nullptr;
}

Registry& TheRegistry() {
    std::call_once(g_registryOnce, [] {
        g_pRegistry = new Registry;
        pthread_atfork(LockBeforeFork, UnlockInParent, UnlockInChild);
    });
    return *g_pRegistry;
}

}  // namespace

ThreadTolerances& AttachThread() {
    Registry& registry = TheRegistry();
    std::lock_guard<std::mutex> lock(registry.mutex);
    std::unique_ptr<ThreadTolerances>& record = registry.records[NuCurrentThreadId()];
    if (!record) record = std::make_unique<ThreadTolerances>(kDefaults);
    t_pThreadTolerances = record.get();
    return *record;
}

}  // namespace tolerance_detail

std::uint32_t NuCurrentThreadId() {
#if defined(__linux__)
    return static_cast<std::uint32_t>(::gettid());
#else
    return static_cast<std::uint32_t>(std::hash<std::thread::id>{}(std::this_thread::get_id()));
#endif
}

}  // namespace numorix
