// Matrix and vector dump files: exact byte layout, round trips, and the lenient reader (missing,
// empty, short and foreign files) beside the strict writer (147 and 148).
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/exception.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace {

// A file name in the temporary folder, unique to this process and test, removed at the end.
class TempFile {
  public:
    explicit TempFile(const char* pszTag) {
        const char* pszDir = std::getenv("TMPDIR");
        m_sPath = std::string(pszDir != nullptr ? pszDir : "/tmp") + "/numorix_dump_" +
                  std::to_string(::getpid()) + "_" + pszTag + ".bin";
        std::remove(m_sPath.c_str());
    }
    ~TempFile() { std::remove(m_sPath.c_str()); }
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

template <class T>
T ReadAt(const std::vector<unsigned char>& bytes, std::size_t nOffset) {
    T value;
    std::memcpy(&value, bytes.data() + nOffset, sizeof(T));
    return value;
}

CNuMatrix Sample2x3() {
    CNuMatrix A(2, 3);
    const double aValues[6] = {1.5, -2.0, 3.25, 1e-300, -0.0, 6.02e23};
    for (int k = 0; k < 6; ++k)
        A.GetData()[k / 3][k % 3] = aValues[k];
    return A;
}

// Expects the matrix to be the 2 by 3 sample still, bit for bit.
void ExpectSample(const CNuMatrix& A) {
    const CNuMatrix S = Sample2x3();
    ASSERT_EQ(A.GetRowSize(), 2);
    ASSERT_EQ(A.GetColumnSize(), 3);
    for (int k = 0; k < 6; ++k)
        EXPECT_EQ(std::memcmp(&A.GetData()[k / 3][k % 3], &S.GetData()[k / 3][k % 3], 8), 0)
            << "element " << k;
}

TEST(BinaryDump, MatrixFileHasTheMagicCountsAndRowsInSixtyThreeBytes) {
    TempFile file("matrix");
    CNuMatrix A = Sample2x3();
    ASSERT_TRUE(A.BinaryDump(file.Name()));
    std::vector<unsigned char> bytes = file.Bytes();
    ASSERT_EQ(bytes.size(), 63u);
    EXPECT_EQ(std::memcmp(bytes.data(), "Matrix\0", 7), 0);
    EXPECT_EQ(ReadAt<std::int32_t>(bytes, 7), 2);
    EXPECT_EQ(ReadAt<std::int32_t>(bytes, 11), 3);
    for (int k = 0; k < 6; ++k) {
        double d = ReadAt<double>(bytes, 15 + 8 * static_cast<std::size_t>(k));
        EXPECT_EQ(std::memcmp(&d, &A.GetData()[k / 3][k % 3], 8), 0) << "element " << k;
    }

    CNuMatrix B(5, 5);
    ASSERT_TRUE(B.BinaryRead(file.Name()));
    ExpectSample(B);
}

// Written over a longer file, which the writer truncates.
TEST(BinaryDump, VectorFileHasTheMagicSizeAndElementsInThirtyFiveBytes) {
    TempFile file("vector");
    file.Write(std::vector<unsigned char>(500, 0xAB));
    CNuVector v(1.0, -2.5, 1e-310);
    ASSERT_TRUE(v.BinaryDump(file.Name()));
    std::vector<unsigned char> bytes = file.Bytes();
    ASSERT_EQ(bytes.size(), 35u);
    const unsigned char aMagic[7] = {0x56, 0x65, 0x63, 0x74, 0x6F, 0x72, 0x00};
    EXPECT_EQ(std::memcmp(bytes.data(), aMagic, 7), 0);
    EXPECT_EQ(ReadAt<std::int32_t>(bytes, 7), 3);
    EXPECT_EQ(ReadAt<double>(bytes, 27), 1e-310);

    CNuVector w(7);
    ASSERT_TRUE(w.BinaryRead(file.Name()));
    ASSERT_EQ(w.GetSize(), 3);
    for (int k = 0; k < 3; ++k)
        EXPECT_EQ(w[k], v[k]) << "element " << k;
}

TEST(BinaryDump, ForeignMissingAndEmptyFilesReadAsFalseAndChangeNothing) {
    TempFile vectorFile("foreign"), matrixFile("foreign2"), missing("missing"), empty("empty");
    TempFile noZero("nozero");
    ASSERT_TRUE(CNuVector(1.0, 2.0, 3.0).BinaryDump(vectorFile.Name()));
    ASSERT_TRUE(Sample2x3().BinaryDump(matrixFile.Name()));
    empty.Write({});
    // Seven bytes that are not a magic: the comparison stops at the buffer's end.
    noZero.Write({'M', 'a', 't', 'r', 'i', 'x', 'X', 1, 0, 0, 0, 1, 0, 0, 0});
    // A null name reads as a missing file.
    for (const char* pszName : {vectorFile.Name(), missing.Name(), empty.Name(), noZero.Name(),
                                static_cast<const char*>(nullptr)}) {
        CNuMatrix A = Sample2x3();
        EXPECT_FALSE(A.BinaryRead(pszName)) << (pszName ? pszName : "null name");
        ExpectSample(A);
    }
    for (const char* pszName :
         {matrixFile.Name(), missing.Name(), empty.Name(), static_cast<const char*>(nullptr)}) {
        CNuVector v(4.0, 5.0, 6.0);
        EXPECT_FALSE(v.BinaryRead(pszName)) << (pszName ? pszName : "null name");
        EXPECT_EQ((v - CNuVector(4.0, 5.0, 6.0)).Magnitude(), 0.0);
    }
}

TEST(BinaryDump, ZeroCountsAreAcceptedAndLeaveTheObject) {
    TempFile file("zero");
    file.Write({'M', 'a', 't', 'r', 'i', 'x', 0, 0, 0, 0, 0, 3, 0, 0, 0});
    CNuMatrix A = Sample2x3();
    EXPECT_TRUE(A.BinaryRead(file.Name()));
    ExpectSample(A);

    file.Write({'V', 'e', 'c', 't', 'o', 'r', 0, 0xFF, 0xFF, 0xFF, 0xFF});  // size -1
    CNuVector v(4.0, 5.0, 6.0);
    EXPECT_TRUE(v.BinaryRead(file.Name()));
    EXPECT_EQ(v.GetSize(), 3);
    EXPECT_EQ(v[2], 6.0);
}

TEST(BinaryDump, ShortFilesReadWithZerosWhereDataIsMissing) {
    TempFile file("short");
    // Header of a 2 by 2 matrix and one element: the rest stays as the new matrix made it.
    std::vector<unsigned char> bytes = {'M', 'a', 't', 'r', 'i', 'x', 0, 2, 0, 0, 0, 2, 0, 0, 0};
    const double dFirst = 7.5;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(&dFirst);
    bytes.insert(bytes.end(), p, p + 8);
    file.Write(bytes);
    CNuMatrix A = Sample2x3();
    EXPECT_TRUE(A.BinaryRead(file.Name()));
    ASSERT_EQ(A.GetRowSize(), 2);
    ASSERT_EQ(A.GetColumnSize(), 2);
    for (int k = 0; k < 4; ++k)
        EXPECT_EQ(A.GetData()[k / 2][k % 2], k == 0 ? 7.5 : 0.0) << "element " << k;

    file.Write({'V', 'e', 'c', 't', 'o', 'r', 0, 4, 0, 0, 0});  // truncated after its header
    CNuVector v(1.0, 2.0, 3.0);
    EXPECT_TRUE(v.BinaryRead(file.Name()));
    ASSERT_EQ(v.GetSize(), 4);
    EXPECT_EQ(v[3], 0.0);
}

TEST(BinaryDump, WriterRaisesWhenTheFileCannotBeOpenedOrWritten) {
    const char* pszNoDir = "/nonexistent-numorix-dir/sub/file.bin";
    CNuMatrix A = Sample2x3();
    CNuVector v(1.0, 2.0, 3.0);
    test::ExpectFailures<CNuOperationException>({
        {[&] { A.BinaryDump(pszNoDir); }, 147, "Open a Binary file", "CNuMatrix"},
        {[&] { v.BinaryDump(pszNoDir); }, 147, "Open a Binary file", "CNuVector"},
        {[&] { A.BinaryDump(nullptr); }, 147, "Open a Binary file", "CNuMatrix"},
        {[&] { v.BinaryDump(nullptr); }, 147, "Open a Binary file", "CNuVector"},
    });
    if (!std::ifstream("/dev/full")) GTEST_SKIP() << "no /dev/full to refuse writes";
    const char* pszFull = "Read only file.. Unable to write into file";
    test::ExpectFailures<CNuOperationException>({
        {[&] { A.BinaryDump("/dev/full"); }, 148, pszFull, "CNuMatrix"},
        {[&] { v.BinaryDump("/dev/full"); }, 148, pszFull, "CNuVector"},
    });
}

}  // namespace
}  // namespace numorix
