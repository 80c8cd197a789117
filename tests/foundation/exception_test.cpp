// The exception family: cause offsets, the composed messages (each way of filling a row, under
// the header of its class; the header of each code range), the copy rules of GetErrorMessage and
// the widths of the stored strings; and the fixed numbers of the object model's tags.
#include <climits>
#include <string>
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/object.h"

namespace numorix {
namespace {

using test::MessageOf;

const std::string kConstruction = "Numorix exception: construction failed for CNuVector\n    ";
const std::string kOperation = "Numorix exception: operation failed in CNuMatrix\n    ";
const std::string kFit = "Numorix exception: fitting failed for CNuCircle\n    ";
const std::string kMemory = "Numorix exception: memory allocation failed in ";

// Representatives: construction (code, "CNuVector", "size", 7, 9); operation (code - 100,
// "operation", "CNuMatrix", 2, 5, 1.5, -2.25); fit (code - 200, "CNuCircle", 3).
std::string Composed(int n) {
    if (n < 100) return MessageOf(CNuConstructionException(n, "CNuVector", "size", 7, 9));
    if (n >= 200) return MessageOf(CNuBestfitException(n - 200, "CNuCircle", 3));
    return MessageOf(CNuOperationException(n - 100, "operation", "CNuMatrix", 2, 5, 1.5, -2.25));
}

// One row for each way of filling the placeholders, under each class's header; that every code
// has a row is checked below.
TEST(ExceptionMessages, RowsFillTheirPlaceholdersAfterTheHeaderOfTheirClass) {
    const struct {
        int nStored;
        std::string sExpected;
    } rows[] = {
        {1, kConstruction + "size should be greater than 7\n"},
        {2, kConstruction + "size should be greater than or equal to 0\n"},
        {7, kConstruction + "major size not greater than minor size\n"},
        {14, kConstruction + "size expected to be 7 or 9\n"},
        {103, kOperation + "index not in valid range [2, 5]\n"},
        {127, kOperation + "the absolute value of distance should be less than 1.500000\n"},
        {140, kOperation + "parametric value not in valid interval [1.500000, -2.250000]\n"},
        {201, kFit + "size of given points less than minimum 3\n"},
        {211, kFit + "algorithm failure\n"},
        {214, kFit + "point 3 has a coordinate that is not a finite number\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Composed(row.nStored), row.sExpected) << "stored " << row.nStored;
}

TEST(ExceptionMessages, CodesWithoutTextComposeToTheHeaderOfTheirRangeOnly) {
    // Every code from 1 to 14, 101 to 146 and 201 to 211 has a text of its own.
    for (int n = 1; n <= 211; n += n == 14 ? 87 : n == 146 ? 55 : 1)
        EXPECT_NE(Composed(n), n < 100 ? kConstruction : n < 200 ? kOperation : kFit) << n;
    for (int n : {-4, 15, 99, 147, 199, 212, 299})
        EXPECT_EQ(Composed(n), n < 100 ? kConstruction : n < 200 ? kOperation : kFit) << n;
    // -150 is stored as -50: construction. 300 and 399 take the memory header; 400 none at all.
    EXPECT_EQ(MessageOf(CNuOperationException(-150, "operation", "CNuVector")), kConstruction);
    for (int n : {100, 199})  // stored 300 and 399
        EXPECT_EQ(MessageOf(CNuBestfitException(n, "CNuCircle")), kMemory + "CNuCircle\n    ");
    EXPECT_EQ(MessageOf(CNuConstructionException(400, "CNuVector")), "    ");
}

TEST(ExceptionCauses, EachClassStoresItsOffsetAndReportsTheCauseWithoutIt) {
    const CNuException& c = CNuConstructionException(5, "CNuCircle", "radius");
    CNuOperationException o(3, nullptr, nullptr, 0, 0, 2.5), noOperation;  // null strings
    const CNuBestfitException b(12, "CNuCircle", 4), noFit;
    const CNuException& m = CNuMemoryException("CNuMatrix::Init()");
    std::vector<int> seen;
    const CNuException* all[] = {&c, &o, &b, &m, &noOperation, &noFit};
    for (const CNuException* e : all)
        seen.insert(seen.end(), {e->m_nCause, e->GetCause()});
    EXPECT_EQ(seen, (std::vector<int>{5, 5, 103, 3, 212, 12, 301, 301, 0, 0, 0, 0}));
    EXPECT_TRUE(o.GetValue() == 2.5 && b.GetSize() == 4) << o.GetValue() << ", " << b.GetSize();
    EXPECT_EQ(MessageOf(noFit) + o.m_szName, "") << "no failure, no message; a null name";
    const CNuOperationException source(40, "calculation", "CNuArc", 1, 2, 0.25, 0.75);
    noOperation = CNuOperationException(source);  // copied, then assigned
    EXPECT_EQ(MessageOf(noOperation),
              "Numorix exception: calculation failed in CNuArc\n"
              "    parametric value not in valid interval [0.250000, 0.750000]\n");
}

TEST(ExceptionMessages, CopiesBoundedByTheLengthLessOneAndTerminatedOnlyWhenCutOrShort) {
    // The representative composes to T characters. A length below 1 writes nothing; a length
    // below T cuts the text and terminates it; T and T + 1 copy T - 1 and T characters with no
    // terminator; from T + 2 on the whole text is terminated.
    const CNuOperationException e(3, "element operator[]", "CNuVector", 0, 4);
    const std::string sText = MessageOf(e);
    const int nT = static_cast<int>(sText.size());
    const int cases[][3] = {// length, characters copied, terminated
                            {-5, 0, 0},          {0, 0, 0},       {1, 0, 1},       {10, 9, 1},
                            {nT - 1, nT - 2, 1}, {nT, nT - 1, 0}, {nT + 1, nT, 0}, {nT + 2, nT, 1}};
    for (const auto& c : cases) {
        std::string sBuffer(static_cast<std::size_t>(nT) + 8, 'X');
        e.GetErrorMessage(c[0], &sBuffer[0]);
        std::string sExpected = sText.substr(0, c[1]) + (c[2] != 0 ? '\0' : 'X');
        EXPECT_EQ(sBuffer, sExpected.append(nT + 7 - c[1], 'X')) << "length " << c[0];
    }
}

TEST(ExceptionFields, OverlongNamesAndLocationsAreCutToTheFieldWidthsAndStillCompose) {
    const std::string sName(300, 'n'), sLocation(70, 'l');
    CNuOperationException wide(40, sName.c_str(), sLocation.c_str(), INT_MIN, INT_MAX,
                               -1.7976931348623157e308, 1.7976931348623157e308);
    EXPECT_EQ(std::string(wide.m_szName), sName.substr(0, 99));
    EXPECT_EQ(std::string(wide.m_szLocation), sLocation.substr(0, 49));
    const std::string sMessage = MessageOf(wide);  // the widest reals compose completely
    EXPECT_TRUE(sMessage.size() > 700u && sMessage.back() == '\n') << sMessage;
}

TEST(ObjectModel, TagsAndEnumerationsKeepTheirFixedNumbers) {
    EXPECT_EQ(std::vector<int>({eNuTrue, eNuStatusOk, CNuObject::eTypeInterval,
                                CNuObject::eTypePolyline, CNuObject::eTypeInterpolation2D}),
              std::vector<int>({1, 1, 1, 26, 42}));
}

}  // namespace
}  // namespace numorix
