// Matrix and vector dump files: exact records and round trips (one-row, one-column and
// one-element objects included), the lenient reader beside the strict writer (147 and 148).
#include <cstdint>
#include <fstream>
#include <vector>

#include "dense_support.h"
#include "nu_test.h"
#include "numorix/foundation/exception.h"

namespace numorix {
namespace {

// A record: the magic with its zero, 32-bit counts, then the elements as binary64, host order.
std::vector<unsigned char> Record(const char* pszMagic, std::vector<std::int32_t> counts,
                                  std::vector<double> elements = {}) {
    std::vector<unsigned char> bytes(pszMagic, pszMagic + 7);
    const auto* pc = reinterpret_cast<const unsigned char*>(counts.data());
    bytes.insert(bytes.end(), pc, pc + 4 * counts.size());
    const auto* pe = reinterpret_cast<const unsigned char*>(elements.data());
    bytes.insert(bytes.end(), pe, pe + 8 * elements.size());
    return bytes;
}

bool Same(const CNuMatrix& a, const CNuMatrix& b) {
    return a.GetRowSize() == b.GetRowSize() && a.GetColumnSize() == b.GetColumnSize() &&
           test::MaxDifference(a, b) == 0.0;
}
bool Same(const CNuVector& a, const CNuVector& b) {
    return a.GetSize() == b.GetSize() && test::MaxDifference(a, b) == 0.0;
}
std::vector<double> Elements(const CNuVector& v) {
    return std::vector<double>(v.GetData(), v.GetData() + v.GetSize());
}

TEST(BinaryDump, FilesHoldExactlyTheirRecordAndReadBack) {
    test::TempPath file("dump");
    for (const CNuMatrix& A : {test::Mat({{1.5, -2.0, 3.25}, {1e-300, -0.0, 6.02e23}}),
                               test::Mat({{7.0, -0.5, 1e-310, 4.0}}), test::Mat({{7.0}, {-0.5}})}) {
        std::vector<double> rows;
        for (int i = 0; i < A.GetRowSize(); ++i)
            for (double d : Elements(A.GetRowVector(i)))
                rows.push_back(d);
        ASSERT_TRUE(A.BinaryDump(file.Name()));
        EXPECT_EQ(file.Bytes(), Record("Matrix", {A.GetRowSize(), A.GetColumnSize()}, rows));
        CNuMatrix B(5, 5);
        EXPECT_TRUE(B.BinaryRead(file.Name()) && Same(B, A)) << A.GetRowSize() << " rows";
    }
    file.Write(std::vector<unsigned char>(500, 0xAB));  // a longer file is truncated
    for (const CNuVector& v : {CNuVector(1.0, -2.5, 1e-310), test::Vec({-4.0})}) {
        ASSERT_TRUE(v.BinaryDump(file.Name()));
        EXPECT_EQ(file.Bytes(), Record("Vector", {v.GetSize()}, Elements(v)));
        CNuVector w(7);
        EXPECT_TRUE(w.BinaryRead(file.Name()) && Same(w, v)) << "size " << v.GetSize();
    }
}

const std::vector<unsigned char> kMissing = {0xFF}, kNull = {0xFE};  // no file, a null name

template <class T>
struct SRead {
    std::vector<unsigned char> bytes;
    bool bRead;
    T after;
};

template <class T>
void ExpectReads(const T& start, std::initializer_list<SRead<T>> rows) {
    test::TempPath file("read");
    int nRow = 0;
    for (const auto& c : rows) {
        c.bytes == kMissing ? (void)std::remove(file.Name()) : file.Write(c.bytes);
        T object = start;
        EXPECT_EQ(object.BinaryRead(c.bytes == kNull ? nullptr : file.Name()), c.bRead) << nRow;
        EXPECT_TRUE(Same(object, c.after)) << "row " << nRow++;
    }
}

// A file of the other kind, missing, empty or with an unterminated magic reads as false; a record
// with a zero or negative count reads as true; neither changes the object. A short record leaves
// the elements of the new object that it does not reach at zero.
TEST(BinaryDump, TheReaderIsLenientAndChangesOnlyWhatARecordHolds) {
    const CNuMatrix A = test::Mat({{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}});
    ExpectReads<CNuMatrix>(A, {{Record("Vector", {2}, {1.0, 2.0}), false, A},
                               {kMissing, false, A},
                               {kNull, false, A},
                               {{}, false, A},
                               {Record("MatrixX", {1, 1}), false, A},
                               {Record("Matrix", {0, 3}), true, A},
                               {Record("Matrix", {3, 0}), true, A},
                               {Record("Matrix", {2, 2}, {7.5}), true, test::Mat({{7.5, 0}, {0, 0}})}});
    const CNuVector v(4.0, 5.0, 6.0);
    ExpectReads<CNuVector>(v, {{Record("Matrix", {1, 1}, {1.0}), false, v},
                               {kMissing, false, v},
                               {kNull, false, v},
                               {{}, false, v},
                               {Record("Vector", {0}), true, v},
                               {Record("Vector", {-1}), true, v},
                               {Record("Vector", {4}), true, CNuVector(4)}});
}

TEST(BinaryDump, TheWriterRaisesWhenTheFileCannotBeOpenedOrWritten) {
    CNuMatrix A(2, 3);
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
