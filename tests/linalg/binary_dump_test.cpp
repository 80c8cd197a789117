// Matrix and vector dump files: exact records and round trips (one-row, one-column and
// one-element objects included), the lenient reader beside the strict writer (147 and 148).
#include <cstdint>
#include <utility>

#include "dense_support.h"

namespace numorix {
namespace {

using SSeen = std::pair<bool, std::vector<double>>;  // what a read returned, and the object after

// A record: the magic with its zero, 32-bit counts, then the elements as binary64, host order.
std::vector<unsigned char> Record(const char* pszMagic, std::vector<std::int32_t> counts,
                                  std::vector<double> elements = {}) {
    std::vector<unsigned char> bytes(pszMagic, pszMagic + 7);
    const auto* pc = reinterpret_cast<const unsigned char*>(counts.data());
    const auto* pe = reinterpret_cast<const unsigned char*>(elements.data());
    bytes.insert(bytes.end(), pc, pc + 4 * counts.size());
    bytes.insert(bytes.end(), pe, pe + 8 * elements.size());
    return bytes;
}

// The shape, then the elements row by row (a vector is a column).
std::vector<double> Flat(const Eigen::MatrixXd& E) {
    const Eigen::MatrixXd T = E.transpose();
    std::vector<double> v = {double(E.rows()), double(E.cols())};
    v.insert(v.end(), T.data(), T.data() + T.size());
    return v;
}

const std::vector<unsigned char> kMissing = {0xFF}, kNull = {0xFE};  // no file, a null name

template <class T>
SSeen Read(const test::TempPath& file, const std::vector<unsigned char>& bytes, T object) {
    bytes == kMissing ? (void)std::remove(file.Name()) : file.Write(bytes);
    const bool bRead = object.BinaryRead(bytes == kNull ? nullptr : file.Name());
    return {bRead, Flat(test::ToEigen(object))};
}

TEST(BinaryDump, FilesHoldExactlyTheirRecordAndReadBack) {
    test::TempPath file("dump");
    // The file holds the record; read into an object of another size, it gives the object back.
    const auto expectRoundTrip = [&](const auto& object, const char* pszMagic,
                                     std::vector<std::int32_t> counts, auto other) {
        const std::vector<double> flat = Flat(test::ToEigen(object));
        ASSERT_TRUE(object.BinaryDump(file.Name()));
        EXPECT_EQ(file.Bytes(), Record(pszMagic, counts, {flat.begin() + 2, flat.end()}));
        EXPECT_EQ(Read(file, file.Bytes(), other), SSeen(true, flat));
    };
    for (const CNuMatrix& A : {test::Mat({{1.5, -2.0, 3.25}, {1e-300, -0.0, 6.02e23}}),
                               test::Mat({{7.0, -0.5, 1e-310, 4.0}}), test::Mat({{7.0}, {-0.5}})})
        expectRoundTrip(A, "Matrix", {A.GetRowSize(), A.GetColumnSize()}, CNuMatrix(5, 5));
    file.Write(std::vector<unsigned char>(500, 0xAB));  // a longer file is truncated
    for (const CNuVector& v : {CNuVector(1.0, -2.5, 1e-310), test::Vec({-4.0})})
        expectRoundTrip(v, "Vector", {v.GetSize()}, CNuVector(7));
}

// Each row is read by a matrix and by a vector. A record of the other kind, a missing, empty or
// null file, an unterminated magic read as false; a zero or negative count reads as true; neither
// changes the object. A short record leaves what it does not reach at zero.
TEST(BinaryDump, TheReaderIsLenientAndChangesOnlyWhatARecordHolds) {
    const CNuMatrix A = test::Mat({{1, 2, 3}, {4, 5, 6}});
    const CNuVector v(4.0, 5.0, 6.0);
    const SSeen a(false, Flat(test::ToEigen(A))), b(false, Flat(test::ToEigen(v)));
    const SSeen aRead(true, a.second), bRead(true, b.second);
    const struct {
        std::vector<unsigned char> bytes;
        SSeen matrix, vector;
    } aCases[] = {
        {kMissing, a, b},
        {kNull, a, b},
        {{}, a, b},
        {Record("MatrixX", {1, 1}), a, b},
        {Record("Matrix", {0, 3}), aRead, b},
        {Record("Matrix", {3, 0}), aRead, b},
        {Record("Vector", {0}), a, bRead},
        {Record("Vector", {-1}), a, bRead},
        {Record("Matrix", {2, 2}, {7.5}), {true, {2, 2, 7.5, 0, 0, 0}}, b},
        {Record("Vector", {4}), a, {true, {4, 1, 0, 0, 0, 0}}},
        {Record("Vector", {2}, {1, 2}), a, {true, {2, 1, 1, 2}}},
    };
    test::TempPath file("read");
    int nRow = 0;
    for (const auto& c : aCases) {
        EXPECT_EQ(Read(file, c.bytes, A), c.matrix) << "row " << nRow;
        EXPECT_EQ(Read(file, c.bytes, v), c.vector) << "row " << nRow++;
    }
}

TEST(BinaryDump, TheWriterRaisesWhenTheFileCannotBeOpenedOrWritten) {
    const char* pszFull = "Read only file.. Unable to write into file";
    test::ExpectFailures<CNuOperationException>({
        {[] { CNuVector(3).BinaryDump("/nonexistent-numorix-dir/f"); }, 147, "Open a Binary file",
         "CNuVector"},
        {[] { CNuMatrix(2, 3).BinaryDump(nullptr); }, 147, "Open a Binary file", "CNuMatrix"},
        // /dev/full opens but refuses the data.
        {[] { CNuMatrix(2, 3).BinaryDump("/dev/full"); }, 148, pszFull, "CNuMatrix"},
        {[] { CNuVector(3).BinaryDump("/dev/full"); }, 148, pszFull, "CNuVector"},
    });
}

}  // namespace
}  // namespace numorix
