#include "numorix/foundation/exception.h"

#include <cstdio>
#include <cstring>

namespace numorix {

std::int32_t CNuException::m_nAssert = 0;

namespace {

// How a row's placeholders are filled.
enum class Fill {
    kNone,
    kName,
    kNameNameSame,
    kNameValue1,
    kNameValue1Value2,
    kValue1,
    kValue1Value2,
    kReal1,
    kReal1Real2
};

struct MessageRow {
    int nStored;
    const char* pszText;
    Fill eFill;
};

// The message table. Codes without a row (15, 147, 148, 212, 213, 301, and every other code)
// compose to the header and the indent alone.
constexpr MessageRow kMessageTable[] = {
    {1, "%s should be greater than %d\n", Fill::kNameValue1},
    {2, "%s should be greater than or equal to 0\n", Fill::kName},
    {3, "vector should not be zero\n", Fill::kNone},
    {4, "size of vector should be 3\n", Fill::kNone},
    {5, "%s specified not greater than 0.0\n", Fill::kName},
    {6, "cone semi-angle not in open interval (0.0, 90.0)\n", Fill::kNone},
    {7, "major %s not greater than minor %s\n", Fill::kNameNameSame},
    {8, "X axis is not orthogonal to plane normal\n", Fill::kNone},
    {9, "point is too close to line\n", Fill::kNone},
    {10, "start point should not be equal to end point\n", Fill::kNone},
    {11, "interval bounds not in ascending numerical order\n", Fill::kNone},
    {12, "bad data specified\n", Fill::kNone},
    {13, "bad knots type specified\n", Fill::kNone},
    {14, "%s expected to be %d or %d\n", Fill::kNameValue1Value2},

    {101, "argument should not be less than 1.0\n", Fill::kNone},
    {102, "argument should be greater than %d\n", Fill::kValue1},
    {103, "index not in valid range [%d, %d]\n", Fill::kValue1Value2},
    {104, "sum of indices should not be greater than %d\n", Fill::kValue1},
    {105, "operands/parameters have unmatched sizes\n", Fill::kNone},
    {106, "divide by zero\n", Fill::kNone},
    {107, "multiply by large\n", Fill::kNone},
    {108, "array defined with size zero\n", Fill::kNone},
    {109, "vector should not be zero\n", Fill::kNone},
    {110, "size of vector should be 3\n", Fill::kNone},
    {111, "size of vector should be 3 or 4\n", Fill::kNone},
    {112, "size of polyline/point-array should be greater than 1\n", Fill::kNone},
    {113, "size of polyline/point-array should be greater than %d\n", Fill::kValue1},
    {114, "invalid parametric/variable value specified\n", Fill::kNone},
    {115, "variable values specified not in ascending numerical order\n", Fill::kNone},
    {116, "matrix is not square\n", Fill::kNone},
    {117, "matrix equation not defined or defined incorrectly\n", Fill::kNone},
    {118, "cannot append an array to itself\n", Fill::kNone},
    {119, "distance between points is zero\n", Fill::kNone},
    {120, "distance between lines is zero\n", Fill::kNone},
    {121, "distance between point and line is zero\n", Fill::kNone},
    {122, "point and curve are not on the same plane\n", Fill::kNone},
    {123, "lines are not parallel\n", Fill::kNone},
    {124, "planes are not parallel\n", Fill::kNone},
    {125, "line and plane are not parallel\n", Fill::kNone},
    {126, "bad or no reference direction specified\n", Fill::kNone},
    {127, "the absolute value of distance should be less than %f\n", Fill::kReal1},
    {128, "the segment added does not join the previous one\n", Fill::kNone},
    {129, "the composite curve has no segments\n", Fill::kNone},
    {130, "the composite curve is self-intersecting due to segments %d and %d\n",
     Fill::kValue1Value2},
    {131, "B-spline has no data\n", Fill::kNone},
    {132, "size of knots should be %d\n", Fill::kValue1},
    {133, "size of knots not in valid range [%d, %d]\n", Fill::kValue1Value2},
    {134, "knots not in non-decreasing order\n", Fill::kNone},
    {135, "knots not in strictly increasing order\n", Fill::kNone},
    {136, "interior knot should not be equal to an end knot\n", Fill::kNone},
    {137, "knot multiplicity should not be greater than %d\n", Fill::kValue1},
    {138, "size of weights/parameters expected to be %d\n", Fill::kValue1},
    {139, "all weights should be positive\n", Fill::kNone},
    {140, "parametric value not in valid interval [%f, %f]\n", Fill::kReal1Real2},
    {141, "parameters not in strictly increasing order\n", Fill::kNone},
    {142, "Schoenberg and Whitney conditions do not hold\n", Fill::kNone},
    {143, "integral's lower limit should be less than its upper limit\n", Fill::kNone},
    {144, "integral's lower limit and upper limit expected to have the same sign\n", Fill::kNone},
    {145, "operation not supported currently\n", Fill::kNone},
    {146, "algorithm failure\n", Fill::kNone},

    {201, "size of given points less than minimum %d\n", Fill::kValue1},
    {202, "minimum %d distinct points not found\n", Fill::kValue1},
    {203, "minimum %d non-collinear points not found\n", Fill::kValue1},
    {204, "minimum %d non-coplanar points not found\n", Fill::kValue1},
    {205, "data points expected to be two-dimensional or on the same plane\n", Fill::kNone},
    {206, "bad data points specified\n", Fill::kNone},
    {207, "insufficient data points\n", Fill::kNone},
    {208, "degree specified not greater than %d\n", Fill::kValue1},
    {209, "size of distinct data points should be greater than %d\n", Fill::kValue1},
    {210, "operation not supported currently\n", Fill::kNone},
    {211, "algorithm failure\n", Fill::kNone},
    // Not one of the documented rows: a fit given a point with a NaN or infinite coordinate.
    {214, "point %d has a coordinate that is not a finite number\n", Fill::kValue1},
};

const MessageRow* FindRow(int nStored) {
    if (nStored < 1 || nStored > 214) return nullptr;
    for (const MessageRow& row : kMessageTable) {
        if (row.nStored == nStored) return &row;
    }
    return nullptr;
}

// The composed text never exceeds this: a header with a full name and location, the indent and
// the longest row with two reals printed in full (a %f of the largest double has 317 characters).
constexpr int kWorkArea = 1024;

// Appends a formatted piece at offset nUsed of the work area and returns the characters printed.
template <class... Args>
int Print(char* pszWork, int nUsed, const char* pszFormat, Args... args) {
    // The formats come from the table above; each row's arguments match its placeholders.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
#endif
    int n = std::snprintf(pszWork + nUsed, static_cast<std::size_t>(kWorkArea - nUsed), pszFormat,
                          args...);
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
    return n < 0 ? 0 : n;
}

// Shifts a cause by its class offset, wrapping instead of overflowing for absurd arguments.
std::int32_t Offset(std::int32_t nCause, std::int32_t nOffset) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(nCause) +
                                     static_cast<std::uint32_t>(nOffset));
}

void CopyBounded(char* pszField, std::size_t nField, const char* pszSource) {
    if (pszSource == nullptr) return;
    std::size_t n = std::strlen(pszSource);
    if (n > nField - 1) n = nField - 1;
    std::memcpy(pszField, pszSource, n);
    pszField[n] = '\0';
}

}  // namespace

CNuException::CNuException(int nCause)
    : m_nCause(nCause), m_nValue1(0), m_nValue2(0), m_dValue1(0.0), m_dValue2(0.0) {
    std::memset(m_szName, 0, sizeof m_szName);
    std::memset(m_szLocation, 0, sizeof m_szLocation);
}

CNuException::CNuException(const CNuException& other) { *this = other; }

CNuException& CNuException::operator=(const CNuException& other) {
    m_nCause = other.m_nCause;
    m_nValue1 = other.m_nValue1;
    m_nValue2 = other.m_nValue2;
    m_dValue1 = other.m_dValue1;
    m_dValue2 = other.m_dValue2;
    std::memcpy(m_szName, other.m_szName, sizeof m_szName);
    std::memcpy(m_szLocation, other.m_szLocation, sizeof m_szLocation);
    return *this;
}

CNuException::~CNuException() = default;

void CNuException::SetName(const char* pszName) { CopyBounded(m_szName, sizeof m_szName, pszName); }

void CNuException::SetLocation(const char* pszLocation) {
    CopyBounded(m_szLocation, sizeof m_szLocation, pszLocation);
}

void CNuException::SetAssert() { m_nAssert = 1; }

int CNuException::IsAssertEnabled() { return m_nAssert; }

void CNuException::GetErrorMessage(int nLength, char* pszBuffer) const {
    if (nLength < 1) return;
    if (m_nCause == 0) {
        pszBuffer[0] = '\0';
        return;
    }

    char szWork[kWorkArea];
    szWork[0] = '\0';
    int nUsed = 0;

    // Header, by signed comparison of the stored cause.
    if (m_nCause < 100) {
        nUsed +=
            Print(szWork, nUsed, "Numorix exception: construction failed for %s\n", m_szLocation);
    } else if (m_nCause < 200) {
        nUsed +=
            Print(szWork, nUsed, "Numorix exception: %s failed in %s\n", m_szName, m_szLocation);
    } else if (m_nCause < 300) {
        nUsed += Print(szWork, nUsed, "Numorix exception: fitting failed for %s\n", m_szLocation);
    } else if (m_nCause < 400) {
        nUsed += Print(szWork, nUsed, "Numorix exception: memory allocation failed in %s\n",
                       m_szLocation);
    }

    nUsed += Print(szWork, nUsed, "    ");

    if (const MessageRow* row = FindRow(m_nCause)) {
        const char* f = row->pszText;
        switch (row->eFill) {
            case Fill::kNone:
                nUsed += Print(szWork, nUsed, "%s", f);
                break;
            case Fill::kName:
                nUsed += Print(szWork, nUsed, f, m_szName);
                break;
            case Fill::kNameNameSame:
                nUsed += Print(szWork, nUsed, f, m_szName, m_szName);
                break;
            case Fill::kNameValue1:
                nUsed += Print(szWork, nUsed, f, m_szName, m_nValue1);
                break;
            case Fill::kNameValue1Value2:
                nUsed += Print(szWork, nUsed, f, m_szName, m_nValue1, m_nValue2);
                break;
            case Fill::kValue1:
                nUsed += Print(szWork, nUsed, f, m_nValue1);
                break;
            case Fill::kValue1Value2:
                nUsed += Print(szWork, nUsed, f, m_nValue1, m_nValue2);
                break;
            case Fill::kReal1:
                nUsed += Print(szWork, nUsed, f, m_dValue1);
                break;
            case Fill::kReal1Real2:
                nUsed += Print(szWork, nUsed, f, m_dValue1, m_dValue2);
                break;
        }
    }

    // nUsed is the composed length T.
    if (nLength < nUsed) {
        std::memcpy(pszBuffer, szWork, static_cast<std::size_t>(nLength - 1));
        pszBuffer[nLength - 1] = '\0';
    } else {
        // Bounded by nLength - 1: with nLength of T or T + 1 no terminator is written.
        std::strncpy(pszBuffer, szWork, static_cast<std::size_t>(nLength - 1));
    }
}

CNuConstructionException::CNuConstructionException(int nCause, const char* pszLocation,
                                                   const char* pszName, int nValue1, int nValue2)
    : CNuException(0) {
    if (nCause == 0) return;
    m_nCause = nCause;
    SetLocation(pszLocation);
    SetName(pszName);
    m_nValue1 = nValue1;
    m_nValue2 = nValue2;
}

int CNuConstructionException::GetCause() const { return m_nCause; }

CNuOperationException::CNuOperationException(int nCause, const char* pszName,
                                             const char* pszLocation, int nValue1, int nValue2,
                                             double dValue1, double dValue2)
    : CNuException(0) {
    if (nCause == 0) return;
    m_nCause = Offset(nCause, 100);
    SetName(pszName);
    SetLocation(pszLocation);
    m_nValue1 = nValue1;
    m_nValue2 = nValue2;
    m_dValue1 = dValue1;
    m_dValue2 = dValue2;
}

int CNuOperationException::GetCause() const { return m_nCause == 0 ? 0 : Offset(m_nCause, -100); }

CNuBestfitException::CNuBestfitException(int nCause, const char* pszLocation, int nValue1)
    : CNuException(0) {
    if (nCause == 0) return;
    m_nCause = Offset(nCause, 200);
    SetLocation(pszLocation);
    m_nValue1 = nValue1;
}

int CNuBestfitException::GetCause() const { return m_nCause == 0 ? 0 : Offset(m_nCause, -200); }

CNuMemoryException::CNuMemoryException(const char* pszLocation) : CNuException(0) {
    if (pszLocation == nullptr) return;
    m_nCause = 301;
    SetLocation(pszLocation);
}

int CNuMemoryException::GetCause() const { return m_nCause; }

}  // namespace numorix
