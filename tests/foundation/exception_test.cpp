// The exception family: cause offsets, the composed messages (rows with placeholders, one
// fixed row per class, the header of each code range), the copy rules of GetErrorMessage and the
// widths of the stored strings.
#include <climits>
#include <string>
#include <utility>

#include "nu_test.h"
#include "numorix/foundation/exception.h"

namespace numorix {
namespace {

using test::MessageOf;

const std::string kConstruction = "Numorix exception: construction failed for CNuVector\n    ";
const std::string kOperation = "Numorix exception: operation failed in CNuMatrix\n    ";
const std::string kFit = "Numorix exception: fitting failed for CNuCircle\n    ";
const std::string kMemory = "Numorix exception: memory allocation failed in ";

// Representatives: construction (code, "CNuVector", "size", 7, 9); operation (code - 100,
// "operation", "CNuMatrix", 2, 5, 1.5, -2.25); fit (code - 200, "CNuCircle", 3).
std::string Composed(int nStored) {
    if (nStored < 100) return MessageOf(CNuConstructionException(nStored, "CNuVector", "size", 7, 9));
    if (nStored < 200) {
        return MessageOf(
            CNuOperationException(nStored - 100, "operation", "CNuMatrix", 2, 5, 1.5, -2.25));
    }
    return MessageOf(CNuBestfitException(nStored - 200, "CNuCircle", 3));
}

TEST(ExceptionMessages, RowsFillTheirPlaceholdersAfterTheHeaderOfTheirClass) {
    const struct {
        int nStored;
        std::string sExpected;
    } rows[] = {
        {1, kConstruction + "size should be greater than 7\n"},
        {4, kConstruction + "size of vector should be 3\n"},
        {13, kConstruction + "bad knots type specified\n"},
        {14, kConstruction + "size expected to be 7 or 9\n"},
        {103, kOperation + "index not in valid range [2, 5]\n"},
        {104, kOperation + "sum of indices should not be greater than 2\n"},
        {110, kOperation + "size of vector should be 3\n"},
        {111, kOperation + "size of vector should be 3 or 4\n"},
        {127, kOperation + "the absolute value of distance should be less than 1.500000\n"},
        {130, kOperation + "the composite curve is self-intersecting due to segments 2 and 5\n"},
        {132, kOperation + "size of knots should be 2\n"},
        {133, kOperation + "size of knots not in valid range [2, 5]\n"},
        {138, kOperation + "size of weights/parameters expected to be 2\n"},
        {140, kOperation + "parametric value not in valid interval [1.500000, -2.250000]\n"},
        {146, kOperation + "algorithm failure\n"},
        {201, kFit + "size of given points less than minimum 3\n"},
        {202, kFit + "minimum 3 distinct points not found\n"},
        {208, kFit + "degree specified not greater than 3\n"},
        {209, kFit + "size of distinct data points should be greater than 3\n"},
        {211, kFit + "algorithm failure\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Composed(row.nStored), row.sExpected) << "stored " << row.nStored;
}

TEST(ExceptionMessages, CodesWithoutTextComposeToTheHeaderOfTheirRangeOnly) {
    const struct {
        std::string sSeen, sExpected;
    } cases[] = {
        {Composed(15), kConstruction},
        {Composed(99), kConstruction},
        {Composed(147), kOperation},
        {Composed(199), kOperation},
        {Composed(212), kFit},
        {Composed(299), kFit},
        {MessageOf(CNuMemoryException("CNuMatrix::Init()")), kMemory + "CNuMatrix::Init()\n    "},
        // Negative stored codes take the construction header: -4 as given, -150 stored as -50.
        {MessageOf(CNuConstructionException(-4, "CNuVector", "size")), kConstruction},
        {MessageOf(CNuOperationException(-150, "operation", "CNuMatrix")),
         "Numorix exception: construction failed for CNuMatrix\n    "},
        // 300 and 399 take the memory header; from 400 on there is no header at all.
        {MessageOf(CNuBestfitException(100, "CNuCircle")), kMemory + "CNuCircle\n    "},
        {MessageOf(CNuBestfitException(199, "CNuCircle")), kMemory + "CNuCircle\n    "},
        {MessageOf(CNuConstructionException(400, "CNuVector")), "    "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.sSeen, c.sExpected);
}

TEST(ExceptionCauses, EachClassStoresItsOffsetAndReportsTheCauseWithoutIt) {
    const CNuOperationException o(3, nullptr, nullptr, 0, 0, 2.5);  // null strings are skipped
    const CNuBestfitException b(12, "CNuCircle", 4);
    const CNuOperationException none;
    const struct {
        const CNuException& e;
        int nStored, nCause;
    } cases[] = {
        {CNuConstructionException(5, "CNuCircle", "radius"), 5, 5},
        {o, 103, 3},
        {b, 212, 12},
        {CNuMemoryException("CNuMatrix::Init()"), 301, 301},
        {none, 0, 0},
        {CNuBestfitException(), 0, 0},
        {CNuConstructionException(), 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.e.m_nCause, c.nStored);
        EXPECT_EQ(c.e.GetCause(), c.nCause) << "stored " << c.nStored;
    }
    EXPECT_EQ(o.GetValue(), 2.5);
    EXPECT_STREQ(o.m_szName, "");
    EXPECT_EQ(b.GetSize(), 4);
    EXPECT_EQ(MessageOf(none), "") << "a default-built exception has no message";
    const CNuOperationException source(40, "calculation", "CNuArc", 1, 2, 0.25, 0.75);
    CNuOperationException copy(source), assigned;
    assigned = source;
    for (const CNuOperationException* p : {&copy, &assigned}) {
        EXPECT_EQ(MessageOf(*p), "Numorix exception: calculation failed in CNuArc\n"
                                 "    parametric value not in valid interval [0.250000, 0.750000]\n");
        EXPECT_EQ(std::make_pair(p->m_nValue1, p->m_nValue2), std::make_pair(1, 2));
    }
}

TEST(ExceptionMessages, CopiesBoundedByTheLengthLessOneAndTerminatedOnlyWhenCutOrShort) {
    // The representative composes to T characters. A length below 1 writes nothing; a length
    // below T cuts the text and terminates it; T and T + 1 copy T - 1 and T characters with no
    // terminator; from T + 2 on the whole text is terminated.
    const CNuOperationException e(3, "element operator[]", "CNuVector", 0, 4);
    const std::string sText = MessageOf(e);
    const int nT = static_cast<int>(sText.size());
    const struct {
        int nLength, nCopied;
        bool bTerminated;
    } cases[] = {{-5, 0, false},      {0, 0, false},          {1, 0, true},
                 {10, 9, true},       {nT - 1, nT - 2, true}, {nT, nT - 1, false},
                 {nT + 1, nT, false}, {nT + 2, nT, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "length " << c.nLength << " of T = " << nT);
        std::string sBuffer(static_cast<std::size_t>(nT) + 8, 'X');
        e.GetErrorMessage(c.nLength, &sBuffer[0]);
        const std::size_t n = static_cast<std::size_t>(c.nCopied);
        EXPECT_EQ(sBuffer.substr(0, n), sText.substr(0, n));
        EXPECT_EQ(sBuffer[n], c.bTerminated ? '\0' : 'X');
        EXPECT_EQ(sBuffer.find_first_not_of('X', n + 1), std::string::npos);
    }
}

TEST(ExceptionFields, OverlongNamesAndLocationsAreCutToTheFieldWidthsAndStillCompose) {
    const std::string sName(300, 'n');
    const std::string sLocation(70, 'l');
    CNuOperationException wide(40, sName.c_str(), sLocation.c_str(), INT_MIN, INT_MAX,
                               -1.7976931348623157e308, 1.7976931348623157e308);
    EXPECT_EQ(std::string(wide.m_szName), sName.substr(0, 99));
    EXPECT_EQ(std::string(wide.m_szLocation), sLocation.substr(0, 49));
    const std::string sMessage = MessageOf(wide);  // the widest reals compose completely
    EXPECT_EQ(sMessage.substr(0, 19), "Numorix exception: ");
    EXPECT_EQ(sMessage.back(), '\n');
    EXPECT_GT(sMessage.size(), 700u);
    CNuConstructionException two(7, sLocation.c_str(), sName.c_str());
    EXPECT_EQ(MessageOf(two), kConstruction.substr(0, 43) + sLocation.substr(0, 49) + "\n    major " +
                                  sName.substr(0, 99) + " not greater than minor " +
                                  sName.substr(0, 99) + "\n");
}

TEST(ExceptionAssertFlag, IsOffUntilSetAndStaysOn) {
    test::ScopedTolerance flag([] { return double(CNuException::m_nAssert); },
                               [](double d) { CNuException::m_nAssert = int(d); }, 0.0);
    EXPECT_EQ(CNuException::IsAssertEnabled(), 0);
    CNuException::SetAssert();
    CNuException::SetAssert();
    EXPECT_EQ(CNuException::IsAssertEnabled(), 1);
}

}  // namespace
}  // namespace numorix
