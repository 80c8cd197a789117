// Matrix and vector dump files: exact byte layout and round trips (one-row, one-column and
// one-element objects included), the lenient reader (missing, empty, foreign, zero-count and short
// files) beside the strict writer (147 and 148).
#include <cstdint>
#include <cstring>
#include <fstream>
#include <vector>

#include "dense_support.h"
#include "nu_test.h"
#include "numorix/foundation/exception.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace {

template <class T>
T ReadAt(const std::vector<unsigned char>& bytes, std::size_t nOffset) {
    T value;
    std::memcpy(&value, bytes.data() + nOffset, sizeof(T));
    return value;
}

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

CNuMatrix Sample2x3() { return test::Mat({{1.5, -2.0, 3.25}, {1e-300, -0.0, 6.02e23}}); }

// Expects the matrix to be the 2 by 3 sample still, bit for bit.
void ExpectSample(const CNuMatrix& A) {
    ASSERT_TRUE(A.GetRowSize() == 2 && A.GetColumnSize() == 3) << "shape changed";
    for (int k = 0; k < 6; ++k)
        EXPECT_TRUE(SameBits(A.GetData()[k / 3][k % 3], Sample2x3().GetData()[k / 3][k % 3]))
            << "element " << k;
}

// "Matrix\0", rows and columns as 32-bit integers, then the elements row by row.
TEST(BinaryDump, MatrixFilesHoldTheMagicTheCountsAndTheRowsAndReadBackBitForBit) {
    for (const CNuMatrix& A : {Sample2x3(), test::Mat({{7.0, -0.5, 1e-310, 4.0}}),
                               test::Mat({{7.0}, {-0.5}, {1e-310}})}) {
        const int m = A.GetRowSize(), n = A.GetColumnSize();
        SCOPED_TRACE(std::to_string(m) + " x " + std::to_string(n));
        test::TempPath file("matrix");
        ASSERT_TRUE(A.BinaryDump(file.Name()));
        std::vector<unsigned char> bytes = file.Bytes();
        ASSERT_EQ(bytes.size(), 15u + 8u * static_cast<std::size_t>(m * n));
        EXPECT_EQ(std::memcmp(bytes.data(), "Matrix\0", 7), 0);
        EXPECT_EQ(ReadAt<std::int32_t>(bytes, 7), m);
        EXPECT_EQ(ReadAt<std::int32_t>(bytes, 11), n);
        CNuMatrix B(5, 5);
        ASSERT_TRUE(B.BinaryRead(file.Name()));
        ASSERT_TRUE(B.GetRowSize() == m && B.GetColumnSize() == n);
        for (int k = 0; k < m * n; ++k) {
            const double d = A.GetData()[k / n][k % n];
            EXPECT_TRUE(SameBits(ReadAt<double>(bytes, 15 + 8 * static_cast<std::size_t>(k)), d));
            EXPECT_TRUE(SameBits(B.GetData()[k / n][k % n], d)) << "element " << k;
        }
    }
}

// "Vector\0", the size, then the elements; a longer file underneath is truncated.
TEST(BinaryDump, VectorFilesHoldTheMagicTheSizeAndTheElementsAndReadBack) {
    for (const CNuVector& v : {CNuVector(1.0, -2.5, 1e-310), test::Vec({-4.0})}) {
        test::TempPath file("vector");
        file.Write(std::vector<unsigned char>(500, 0xAB));
        ASSERT_TRUE(v.BinaryDump(file.Name()));
        std::vector<unsigned char> bytes = file.Bytes();
        ASSERT_EQ(bytes.size(), 11u + 8u * static_cast<std::size_t>(v.GetSize()));
        EXPECT_EQ(std::memcmp(bytes.data(), "Vector\0", 7), 0);
        EXPECT_EQ(ReadAt<std::int32_t>(bytes, 7), v.GetSize());
        CNuVector w(7);
        ASSERT_TRUE(w.BinaryRead(file.Name()));
        EXPECT_EQ(test::MaxDifference(w, v), 0.0) << "size " << v.GetSize();
    }
}

// Files of the other kind, missing, empty or without a terminated magic read as false; records
// with a zero or negative count read as true. Neither changes the object.
TEST(BinaryDump, ReadsThatFindNothingToTakeLeaveTheObjectAsItWas) {
    test::TempPath vectorFile("v"), matrixFile("m"), missing("none"), empty("empty"), bad("bad");
    test::TempPath noRows("r0"), noColumns("c0"), noSize("s0"), negativeSize("s-1");
    ASSERT_TRUE(CNuVector(1.0, 2.0, 3.0).BinaryDump(vectorFile.Name()));
    ASSERT_TRUE(Sample2x3().BinaryDump(matrixFile.Name()));
    empty.Write({});
    bad.Write({'M', 'a', 't', 'r', 'i', 'x', 'X', 1, 0, 0, 0, 1, 0, 0, 0});
    noRows.Write({'M', 'a', 't', 'r', 'i', 'x', 0, 0, 0, 0, 0, 3, 0, 0, 0});
    noColumns.Write({'M', 'a', 't', 'r', 'i', 'x', 0, 3, 0, 0, 0, 0, 0, 0, 0});
    noSize.Write({'V', 'e', 'c', 't', 'o', 'r', 0, 0, 0, 0, 0});
    negativeSize.Write({'V', 'e', 'c', 't', 'o', 'r', 0, 0xFF, 0xFF, 0xFF, 0xFF});
    const char* pszNull = nullptr;
    for (const char* psz : {vectorFile.Name(), missing.Name(), empty.Name(), bad.Name(), pszNull,
                            noRows.Name(), noColumns.Name()}) {
        CNuMatrix A = Sample2x3();
        EXPECT_EQ(A.BinaryRead(psz), psz == noRows.Name() || psz == noColumns.Name())
            << (psz ? psz : "null name");
        ExpectSample(A);
    }
    for (const char* psz :
         {matrixFile.Name(), missing.Name(), empty.Name(), pszNull, noSize.Name(),
          negativeSize.Name()}) {
        CNuVector v(4.0, 5.0, 6.0);
        EXPECT_EQ(v.BinaryRead(psz), psz == noSize.Name() || psz == negativeSize.Name())
            << (psz ? psz : "null name");
        EXPECT_EQ(test::MaxDifference(v, CNuVector(4.0, 5.0, 6.0)), 0.0);
    }
}

TEST(BinaryDump, ShortFilesReadWithZerosWhereDataIsMissing) {
    test::TempPath file("short");
    // Header of a 2 by 2 matrix and one element (7.5): the rest stays as the new matrix made it.
    file.Write({'M', 'a', 't', 'r', 'i', 'x', 0, 2, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x1E,
                0x40});
    CNuMatrix A = Sample2x3();
    EXPECT_TRUE(A.BinaryRead(file.Name()));
    EXPECT_EQ(test::MaxDifference(A, test::Mat({{7.5, 0.0}, {0.0, 0.0}})), 0.0);
    file.Write({'V', 'e', 'c', 't', 'o', 'r', 0, 4, 0, 0, 0});  // truncated after its header
    CNuVector v(1.0, 2.0, 3.0);
    EXPECT_TRUE(v.BinaryRead(file.Name()));
    EXPECT_EQ(test::MaxDifference(v, CNuVector(4)), 0.0);
}

TEST(BinaryDump, WriterRaisesWhenTheFileCannotBeOpenedOrWritten) {
    CNuMatrix A = Sample2x3();
    CNuVector v(1.0, 2.0, 3.0);
    test::ExpectFailures<CNuOperationException>({
        {[&] { A.BinaryDump("/nonexistent-numorix-dir/file.bin"); }, 147, "Open a Binary file",
         "CNuMatrix"},
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
