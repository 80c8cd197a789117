// Binary dump files of matrices and vectors: a magic string with its terminating zero, 32-bit
// counts, then the elements as binary64, all in host byte order, with no padding or trailer.
//
//   matrix file   "Matrix\0"  rows  columns  elements row by row
//   vector file   "Vector\0"  size           elements
//
// The writer refuses an empty object and raises on a stream that cannot be opened or written;
// the reader never raises on input, returns false on a wrong magic (a missing file reads as a
// zero-filled magic) and accepts zero counts and short files.
#include <cstdint>
#include <cstring>
#include <fstream>

#include "numorix/foundation/exception.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

constexpr char kMatrixMagic[] = "Matrix";
constexpr char kVectorMagic[] = "Vector";
constexpr std::streamsize kMagicSize = 7;  // both magics with their terminating zero

constexpr int kCauseOpen = 47;   // stored 147
constexpr int kCauseWrite = 48;  // stored 148

// Opens pszFileName for writing (truncating it) and writes the magic, then checks the stream:
// a bad stream could not write, a failed one could not open.
void OpenForWriting(std::ofstream& out, const char* pszFileName, const char* pszMagic,
                    const char* pszClass) {
    if (pszFileName != nullptr) {
        out.open(pszFileName, std::ios::out | std::ios::binary | std::ios::trunc);
    } else {
        out.setstate(std::ios::failbit);
    }
    out.write(pszMagic, kMagicSize);
    // Push the magic through the buffer, so that a file that opens but refuses data (a full
    // device) shows it here rather than silently at close.
    if (out.good()) out.flush();
    if (out.bad()) {
        throw CNuOperationException(kCauseWrite, "Read only file.. Unable to write into file",
                                    pszClass);
    }
    if (out.bad() || out.fail()) {
        throw CNuOperationException(kCauseOpen, "Open a Binary file", pszClass);
    }
}

// Opens pszFileName for reading and tells whether its first bytes are the magic. A file that
// cannot be opened reads as zeros and so fails the comparison.
bool OpenForReading(std::ifstream& in, const char* pszFileName, const char* pszMagic) {
    if (pszFileName != nullptr) in.open(pszFileName, std::ios::in | std::ios::binary);
    char szMagic[kMagicSize + 1] = {};  // one zero beyond the magic ends the comparison
    in.read(szMagic, kMagicSize);
    return std::strcmp(szMagic, pszMagic) == 0;
}

template <class T>
void WriteRaw(std::ofstream& out, const T* p, std::size_t nCount) {
    out.write(reinterpret_cast<const char*>(p), static_cast<std::streamsize>(sizeof(T) * nCount));
}

template <class T>
void ReadRaw(std::ifstream& in, T* p, std::size_t nCount) {
    in.read(reinterpret_cast<char*>(p), static_cast<std::streamsize>(sizeof(T) * nCount));
}

}  // namespace

bool CNuMatrix::BinaryDump(const char* pszFileName) const {
    if (m_nRows < 1 || m_nColumns < 1) return false;
    std::ofstream out;
    OpenForWriting(out, pszFileName, kMatrixMagic, "CNuMatrix");
    const std::int32_t anCounts[2] = {m_nRows, m_nColumns};
    WriteRaw(out, anCounts, 2);
    for (int i = 0; i < m_nRows; ++i)
        WriteRaw(out, m_ppdData[i], static_cast<std::size_t>(m_nColumns));
    out.close();
    return true;
}

bool CNuMatrix::BinaryRead(const char* pszFileName) {
    std::ifstream in;
    if (!OpenForReading(in, pszFileName, kMatrixMagic)) return false;
    std::int32_t nRows = 0;
    std::int32_t nColumns = 0;
    ReadRaw(in, &nRows, 1);
    ReadRaw(in, &nColumns, 1);
    if (nRows > 0 && nColumns > 0) {
        *this = CNuMatrix(nRows, nColumns);
        for (int i = 0; i < m_nRows; ++i)
            ReadRaw(in, m_ppdData[i], static_cast<std::size_t>(m_nColumns));
    }
    in.close();
    return true;
}

bool CNuVector::BinaryDump(const char* pszFileName) const {
    if (m_nSize < 1) return false;
    std::ofstream out;
    OpenForWriting(out, pszFileName, kVectorMagic, "CNuVector");
    const std::int32_t nSize = m_nSize;
    WriteRaw(out, &nSize, 1);
    WriteRaw(out, m_pdData, static_cast<std::size_t>(m_nSize));
    out.close();
    return true;
}

bool CNuVector::BinaryRead(const char* pszFileName) {
    std::ifstream in;
    if (!OpenForReading(in, pszFileName, kVectorMagic)) return false;
    std::int32_t nSize = 0;
    ReadRaw(in, &nSize, 1);
    if (nSize > 0) {
        *this = CNuVector(static_cast<int>(nSize));
        ReadRaw(in, m_pdData, static_cast<std::size_t>(m_nSize));
    }
    in.close();
    return true;
}

}  // namespace numorix
