// Shared test support: named tolerances, a seeded random generator whose seed is printed, the
// location of the external reference data, and checks of the library's exceptions.
#ifndef NUMORIX_TESTS_SUPPORT_NU_TEST_H
#define NUMORIX_TESTS_SUPPORT_NU_TEST_H

#include <gtest/gtest.h>

#include <unistd.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "numorix/foundation/double_array.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"

namespace numorix {
namespace test {

// Tolerances used across the suites, each with its reason.
// Results that the library computes by the same arithmetic as the check: no rounding difference.
constexpr double kExact = 0.0;
// One rounding of a double near 1 (2^-52), for results that differ from a closed form by one step.
constexpr double kUlp = 2.220446049250313e-16;
// Results of a few dozen floating-point operations on data of order 1.
constexpr double kTight = 1e-14;

// Random numbers for property tests. The seed comes from NUMORIX_TEST_SEED when set, otherwise
// a fixed default, and is printed once per process so that a failing run can be repeated.
class Random {
  public:
    Random() : m_engine(Seed()) {}

    static std::uint64_t Seed() {
        static const std::uint64_t nSeed = [] {
            std::uint64_t n = 20261122u;
            if (const char* psz = std::getenv("NUMORIX_TEST_SEED")) {
                n = std::strtoull(psz, nullptr, 10);
            }
            std::cout << "[ numorix ] random seed " << n << " (set NUMORIX_TEST_SEED to repeat)\n";
            return n;
        }();
        return nSeed;
    }

    double Uniform(double dLow, double dHigh) {
        return std::uniform_real_distribution<double>(dLow, dHigh)(m_engine);
    }
    int Integer(int nLow, int nHigh) {
        return std::uniform_int_distribution<int>(nLow, nHigh)(m_engine);
    }
    double Normal(double dMean, double dSigma) {
        return std::normal_distribution<double>(dMean, dSigma)(m_engine);
    }
    std::mt19937_64& Engine() { return m_engine; }

  private:
    std::mt19937_64 m_engine;
};

// Sets one tolerance for the life of the guard and restores the value it found, also when an
// assertion or an exception leaves the test early:
//   test::ScopedTolerance guard(NuGetZero, NuSetZero, 1e-3);
class ScopedTolerance {
  public:
    ScopedTolerance(double (*pfnGet)(), void (*pfnSet)(double), double dValue)
        : m_pfnSet(pfnSet), m_dSaved(pfnGet()) {
        pfnSet(dValue);
    }
    ~ScopedTolerance() { m_pfnSet(m_dSaved); }
    ScopedTolerance(const ScopedTolerance&) = delete;
    ScopedTolerance& operator=(const ScopedTolerance&) = delete;

  private:
    void (*m_pfnSet)(double);
    double m_dSaved;
};

// A file name in the temporary folder, unique to this process and tag, absent at the start and
// removed at the end, also when an assertion leaves the test early.
class TempPath {
  public:
    explicit TempPath(const std::string& sTag)
        : m_sPath(::testing::TempDir() + "numorix_" + std::to_string(::getpid()) + "_" + sTag) {
        std::remove(m_sPath.c_str());
    }
    ~TempPath() { std::remove(m_sPath.c_str()); }
    TempPath(const TempPath&) = delete;
    TempPath& operator=(const TempPath&) = delete;

    const char* Name() const { return m_sPath.c_str(); }
    std::vector<unsigned char> Bytes() const {
        std::ifstream in(m_sPath, std::ios::binary);
        return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), {});
    }
    void Write(const std::vector<unsigned char>& bytes) const {
        std::ofstream out(m_sPath, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
    }

  private:
    std::string m_sPath;
};

// Arrays from their elements, and the elements of an array for comparison as a whole.
inline CNuDoubleArray Doubles(std::initializer_list<double> values, int nCapacity = 0) {
    CNuDoubleArray a(nCapacity);
    for (double d : values)
        a.Add(d);
    return a;
}
inline CNuDoubleArray Doubles(const std::vector<double>& values) {
    CNuDoubleArray a(static_cast<int>(values.size()));
    for (double d : values)
        a.Add(d);
    return a;
}
inline CNuIntArray Ints(std::initializer_list<int> values) {
    CNuIntArray a;
    for (int n : values)
        a.Add(n);
    return a;
}
inline std::vector<double> Elements(const CNuDoubleArray& a) {
    return std::vector<double>(a.GetData(), a.GetData() + a.GetSize());
}
inline std::vector<int> Elements(const CNuIntArray& a) {
    return std::vector<int>(a.GetData(), a.GetData() + a.GetSize());
}

// Folder of the external reference data sets, or empty when it is not there.
inline std::string RefDataDir() {
    const char* psz = std::getenv("NUMORIX_REFDATA");
    return psz != nullptr ? std::string(psz) : std::string();
}

// The composed message of an exception, read through a generous buffer.
inline std::string MessageOf(const CNuException& e) {
    char sz[2048];
    e.GetErrorMessage(static_cast<int>(sizeof sz), sz);
    return sz;
}

// Marks a value of a refusal that a check leaves open.
constexpr int kAnyValue = INT_MIN;

// Runs f, expects it to throw E with the given stored cause, name and location (and, unless
// kAnyValue, the two values the exception carries), and reports what was seen when it does not.
// A null name or location is not checked.
template <class E, class F>
void ExpectNuFailure(F&& f, int nStored, const char* pszName, const char* pszLocation,
                     int nValue1 = kAnyValue, int nValue2 = kAnyValue) {
    try {
        f();
        ADD_FAILURE() << "no exception; expected stored cause " << nStored;
    } catch (const E& e) {
        EXPECT_EQ(e.m_nCause, nStored) << "message seen: " << MessageOf(e);
        if (pszName != nullptr) {
            EXPECT_STREQ(e.m_szName, pszName);
        }
        if (pszLocation != nullptr) {
            EXPECT_STREQ(e.m_szLocation, pszLocation);
        }
        if (nValue1 != kAnyValue) {
            EXPECT_EQ(e.m_nValue1, nValue1) << "first value of the refusal";
        }
        if (nValue2 != kAnyValue) {
            EXPECT_EQ(e.m_nValue2, nValue2) << "second value of the refusal";
        }
    } catch (const CNuException& e) {
        ADD_FAILURE() << "exception of another class, stored cause " << e.m_nCause << ": "
                      << MessageOf(e);
    }
}

// One expected refusal of a table: the call, and the stored cause, name and location it raises,
// optionally the two values it carries (an index and its bound, say).
struct SFailure {
    std::function<void()> call;
    int nStored;
    const char* pszName;
    const char* pszLocation;
    int nValue1 = kAnyValue, nValue2 = kAnyValue;
};

// Runs every row of a table of refusals, each expected to throw E; a failing row prints its index.
template <class E>
void ExpectFailures(std::initializer_list<SFailure> rows) {
    int nRow = 0;
    for (const SFailure& row : rows) {
        SCOPED_TRACE("failure table row " + std::to_string(nRow++));
        ExpectNuFailure<E>(row.call, row.nStored, row.pszName, row.pszLocation, row.nValue1,
                           row.nValue2);
    }
}

}  // namespace test
}  // namespace numorix

// Expects `statement` to throw `ExceptionClass` holding the stored cause `storedCause`.
#define EXPECT_NU_THROW(statement, ExceptionClass, storedCause)                                    \
    ::numorix::test::ExpectNuFailure<ExceptionClass>([&]() { statement; }, (storedCause), nullptr, \
                                                     nullptr)

#endif  // NUMORIX_TESTS_SUPPORT_NU_TEST_H
