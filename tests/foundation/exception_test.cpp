// The exception family: cause partitioning, the message table, the gaps, and the copy rules of
// GetErrorMessage.
#include <climits>
#include <string>
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/exception.h"

namespace numorix {
namespace {

using test::MessageOf;

const std::string kConstructionHeader =
    "Numorix exception: construction failed for CNuVector\n    ";
const std::string kOperationHeader = "Numorix exception: operation failed in CNuMatrix\n    ";
const std::string kFitHeader = "Numorix exception: fitting failed for CNuCircle\n    ";

struct Row {
    int nStored;
    std::string sBody;  // the row's text with the placeholders of the representative filled
};

// Representative: CNuConstructionException(code, "CNuVector", "size", 7, 9).
const std::vector<Row> kConstructionRows = {
    {1, "size should be greater than 7\n"},
    {2, "size should be greater than or equal to 0\n"},
    {3, "vector should not be zero\n"},
    {4, "size of vector should be 3\n"},
    {5, "size specified not greater than 0.0\n"},
    {6, "cone semi-angle not in open interval (0.0, 90.0)\n"},
    {7, "major size not greater than minor size\n"},
    {8, "X axis is not orthogonal to plane normal\n"},
    {9, "point is too close to line\n"},
    {10, "start point should not be equal to end point\n"},
    {11, "interval bounds not in ascending numerical order\n"},
    {12, "bad data specified\n"},
    {13, "bad knots type specified\n"},
    {14, "size expected to be 7 or 9\n"},
};

// Representative: CNuOperationException(code - 100, "operation", "CNuMatrix", 2, 5, 1.5, -2.25).
const std::vector<Row> kOperationRows = {
    {101, "argument should not be less than 1.0\n"},
    {102, "argument should be greater than 2\n"},
    {103, "index not in valid range [2, 5]\n"},
    {104, "sum of indices should not be greater than 2\n"},
    {105, "operands/parameters have unmatched sizes\n"},
    {106, "divide by zero\n"},
    {107, "multiply by large\n"},
    {108, "array defined with size zero\n"},
    {109, "vector should not be zero\n"},
    {110, "size of vector should be 3\n"},
    {111, "size of vector should be 3 or 4\n"},
    {112, "size of polyline/point-array should be greater than 1\n"},
    {113, "size of polyline/point-array should be greater than 2\n"},
    {114, "invalid parametric/variable value specified\n"},
    {115, "variable values specified not in ascending numerical order\n"},
    {116, "matrix is not square\n"},
    {117, "matrix equation not defined or defined incorrectly\n"},
    {118, "cannot append an array to itself\n"},
    {119, "distance between points is zero\n"},
    {120, "distance between lines is zero\n"},
    {121, "distance between point and line is zero\n"},
    {122, "point and curve are not on the same plane\n"},
    {123, "lines are not parallel\n"},
    {124, "planes are not parallel\n"},
    {125, "line and plane are not parallel\n"},
    {126, "bad or no reference direction specified\n"},
    {127, "the absolute value of distance should be less than 1.500000\n"},
    {128, "the segment added does not join the previous one\n"},
    {129, "the composite curve has no segments\n"},
    {130, "the composite curve is self-intersecting due to segments 2 and 5\n"},
    {131, "B-spline has no data\n"},
    {132, "size of knots should be 2\n"},
    {133, "size of knots not in valid range [2, 5]\n"},
    {134, "knots not in non-decreasing order\n"},
    {135, "knots not in strictly increasing order\n"},
    {136, "interior knot should not be equal to an end knot\n"},
    {137, "knot multiplicity should not be greater than 2\n"},
    {138, "size of weights/parameters expected to be 2\n"},
    {139, "all weights should be positive\n"},
    {140, "parametric value not in valid interval [1.500000, -2.250000]\n"},
    {141, "parameters not in strictly increasing order\n"},
    {142, "Schoenberg and Whitney conditions do not hold\n"},
    {143, "integral's lower limit should be less than its upper limit\n"},
    {144, "integral's lower limit and upper limit expected to have the same sign\n"},
    {145, "operation not supported currently\n"},
    {146, "algorithm failure\n"},
};

// Representative: CNuBestfitException(code - 200, "CNuCircle", 3).
const std::vector<Row> kFitRows = {
    {201, "size of given points less than minimum 3\n"},
    {202, "minimum 3 distinct points not found\n"},
    {203, "minimum 3 non-collinear points not found\n"},
    {204, "minimum 3 non-coplanar points not found\n"},
    {205, "data points expected to be two-dimensional or on the same plane\n"},
    {206, "bad data points specified\n"},
    {207, "insufficient data points\n"},
    {208, "degree specified not greater than 3\n"},
    {209, "size of distinct data points should be greater than 3\n"},
    {210, "operation not supported currently\n"},
    {211, "algorithm failure\n"},
};

TEST(ExceptionMessages, EveryConstructionRowComposesHeaderIndentAndFilledText) {
    for (const Row& row : kConstructionRows) {
        CNuConstructionException e(row.nStored, "CNuVector", "size", 7, 9);
        EXPECT_EQ(MessageOf(e), kConstructionHeader + row.sBody) << "stored " << row.nStored;
    }
}

TEST(ExceptionMessages, EveryOperationRowComposesHeaderIndentAndFilledText) {
    for (const Row& row : kOperationRows) {
        CNuOperationException e(row.nStored - 100, "operation", "CNuMatrix", 2, 5, 1.5, -2.25);
        EXPECT_EQ(MessageOf(e), kOperationHeader + row.sBody) << "stored " << row.nStored;
    }
}

TEST(ExceptionMessages, EveryFitRowComposesHeaderIndentAndFilledText) {
    for (const Row& row : kFitRows) {
        CNuBestfitException e(row.nStored - 200, "CNuCircle", 3);
        EXPECT_EQ(MessageOf(e), kFitHeader + row.sBody) << "stored " << row.nStored;
    }
}

TEST(ExceptionMessages, CodesWithoutARowComposeToHeaderAndIndentAlone) {
    // The raised codes without text, and codes in the unused stretches of each range.
    EXPECT_EQ(MessageOf(CNuConstructionException(15, "CNuVector", "nArrayExpandSize")),
              kConstructionHeader);
    EXPECT_EQ(MessageOf(CNuConstructionException(99, "CNuVector")), kConstructionHeader);
    EXPECT_EQ(MessageOf(CNuOperationException(47, "Open a Binary file", "CNuMatrix")),
              "Numorix exception: Open a Binary file failed in CNuMatrix\n    ");
    EXPECT_EQ(MessageOf(CNuOperationException(48, "operation", "CNuMatrix")), kOperationHeader);
    EXPECT_EQ(MessageOf(CNuOperationException(99, "operation", "CNuMatrix")), kOperationHeader);
    EXPECT_EQ(MessageOf(CNuBestfitException(12, "CNuCircle", 3)), kFitHeader);
    EXPECT_EQ(MessageOf(CNuBestfitException(13, "CNuCircle")), kFitHeader);
    EXPECT_EQ(MessageOf(CNuBestfitException(99, "CNuCircle")), kFitHeader);
    EXPECT_EQ(MessageOf(CNuMemoryException("CNuMatrix::Init()")),
              "Numorix exception: memory allocation failed in CNuMatrix::Init()\n    ");
}

TEST(ExceptionMessages, HeaderIsChosenBySignedComparisonOfTheStoredCode) {
    // A negative code takes the construction header and no text.
    EXPECT_EQ(MessageOf(CNuConstructionException(-4, "CNuVector", "size")), kConstructionHeader);
    // An operation built with -150 stores -50: construction header, no text.
    CNuOperationException eNegative(-150, "operation", "CNuMatrix");
    EXPECT_EQ(eNegative.m_nCause, -50);
    EXPECT_EQ(MessageOf(eNegative), "Numorix exception: construction failed for CNuMatrix\n    ");
    // 300 and 399 take the memory header; from 400 on there is no header at all.
    EXPECT_EQ(MessageOf(CNuBestfitException(100, "CNuCircle")),
              "Numorix exception: memory allocation failed in CNuCircle\n    ");
    EXPECT_EQ(MessageOf(CNuBestfitException(199, "CNuCircle")),
              "Numorix exception: memory allocation failed in CNuCircle\n    ");
    EXPECT_EQ(MessageOf(CNuConstructionException(400, "CNuVector")), "    ");
}

TEST(ExceptionMessages, RepresentativeIndexFailureReadsAsDocumented) {
    CNuOperationException e(3, "element operator[]", "CNuVector", 0, 4);
    EXPECT_EQ(MessageOf(e),
              "Numorix exception: element operator[] failed in CNuVector\n"
              "    index not in valid range [0, 4]\n");
}

TEST(ExceptionCauses, EachClassStoresItsOffsetAndReportsTheCauseWithoutIt) {
    CNuConstructionException c(5, "CNuCircle", "radius");
    EXPECT_EQ(c.m_nCause, 5);
    EXPECT_EQ(c.GetCause(), 5);
    CNuOperationException o(3, "element operator[]", "CNuVector");
    EXPECT_EQ(o.m_nCause, 103);
    EXPECT_EQ(o.GetCause(), 3);
    CNuBestfitException b(12, "CNuCircle", 4);
    EXPECT_EQ(b.m_nCause, 212);
    EXPECT_EQ(b.GetCause(), 12);
    EXPECT_EQ(b.GetSize(), 4);
    CNuMemoryException m("CNuMatrix::Init()");
    EXPECT_EQ(m.m_nCause, 301);
    EXPECT_EQ(m.GetCause(), 301);
    // Through the base class, as a caller catches them.
    const CNuException& base = o;
    EXPECT_EQ(base.GetCause(), 3);
}

TEST(ExceptionCauses, DefaultBuiltExceptionsHoldNoFailureAndAnEmptyMessage) {
    CNuConstructionException c;
    CNuOperationException o;
    CNuBestfitException b;
    CNuMemoryException m;
    CNuMemoryException mNull(nullptr);
    for (const CNuException* e :
         {static_cast<const CNuException*>(&c), static_cast<const CNuException*>(&o),
          static_cast<const CNuException*>(&b), static_cast<const CNuException*>(&m),
          static_cast<const CNuException*>(&mNull)}) {
        EXPECT_EQ(e->m_nCause, 0);
        EXPECT_EQ(e->GetCause(), 0);  // not -100 or -200
        char sz[8] = "XXXXXXX";
        e->GetErrorMessage(sizeof sz, sz);
        EXPECT_STREQ(sz, "");
        EXPECT_STREQ(e->m_szName, "");
        EXPECT_STREQ(e->m_szLocation, "");
    }
}

TEST(ExceptionCauses, ArgumentOrderDiffersBetweenConstructionAndOperation) {
    CNuConstructionException c(1, "CNuVector", "size", 0);
    EXPECT_STREQ(c.m_szLocation, "CNuVector");
    EXPECT_STREQ(c.m_szName, "size");
    CNuOperationException o(8, "Max operation", "CNuDoubleArray::Max()");
    EXPECT_STREQ(o.m_szName, "Max operation");
    EXPECT_STREQ(o.m_szLocation, "CNuDoubleArray::Max()");
    CNuOperationException r(27, "operation", "CNuLine", 0, 0, 2.5, 3.5);
    EXPECT_EQ(r.GetValue(), 2.5);
    EXPECT_EQ(r.m_dValue2, 3.5);
    // Null strings are skipped.
    CNuOperationException n(6, nullptr, nullptr);
    EXPECT_STREQ(n.m_szName, "");
    EXPECT_STREQ(n.m_szLocation, "");
}

TEST(ExceptionCauses, CopiesCarryEveryMember) {
    CNuOperationException o(40, "calculation", "CNuCircularArc", 1, 2, 0.25, 0.75);
    CNuOperationException copy(o);
    CNuOperationException assigned;
    assigned = o;
    for (const CNuOperationException* e : {&copy, &assigned}) {
        EXPECT_EQ(e->m_nCause, 140);
        EXPECT_EQ(e->m_nValue1, 1);
        EXPECT_EQ(e->m_nValue2, 2);
        EXPECT_EQ(e->m_dValue1, 0.25);
        EXPECT_EQ(e->m_dValue2, 0.75);
        EXPECT_EQ(std::memcmp(e->m_szName, o.m_szName, sizeof o.m_szName), 0);
        EXPECT_EQ(std::memcmp(e->m_szLocation, o.m_szLocation, sizeof o.m_szLocation), 0);
        EXPECT_EQ(MessageOf(*e), MessageOf(o));
    }
}

TEST(ExceptionCauses, ThrownByValueAndCaughtAsTheBase) {
    try {
        throw CNuBestfitException(1, "CNuPlane", 3);
    } catch (const CNuException& e) {
        EXPECT_EQ(e.GetCause(), 1);
        EXPECT_EQ(e.m_nCause, 201);
    }
}

// The composed length T of the representative below.
class MessageCopy : public ::testing::Test {
  protected:
    const CNuOperationException m_e{3, "element operator[]", "CNuVector", 0, 4};
    const std::string m_sText = MessageOf(m_e);
    const int m_nT = static_cast<int>(m_sText.size());
};

TEST_F(MessageCopy, ALengthBelowOneWritesNothing) {
    char sz[4] = {'a', 'b', 'c', 'd'};
    m_e.GetErrorMessage(0, sz);
    m_e.GetErrorMessage(-5, sz);
    EXPECT_EQ(std::string(sz, 4), "abcd");
}

TEST_F(MessageCopy, AShortBufferGetsACutAndTerminatedText) {
    std::vector<char> buffer(64, 'X');
    m_e.GetErrorMessage(10, buffer.data());
    EXPECT_EQ(std::string(buffer.data()), m_sText.substr(0, 9));
    EXPECT_EQ(buffer[10], 'X');
    m_e.GetErrorMessage(1, buffer.data());
    EXPECT_EQ(buffer[0], '\0');
    // One short of T: T - 2 characters and the terminator in the last byte.
    std::vector<char> almost(static_cast<std::size_t>(m_nT - 1), 'X');
    m_e.GetErrorMessage(m_nT - 1, almost.data());
    EXPECT_EQ(std::string(almost.data()), m_sText.substr(0, static_cast<std::size_t>(m_nT - 2)));
}

TEST_F(MessageCopy, BuffersOfTAndTPlusOneReceiveNoTerminator) {
    // The copy is bounded by nLength - 1, so T bytes get T - 1 characters and T + 1 bytes get
    // all T characters, neither with a terminating zero.
    std::vector<char> exact(static_cast<std::size_t>(m_nT) + 8, 'X');
    m_e.GetErrorMessage(m_nT, exact.data());
    EXPECT_EQ(std::string(exact.data(), static_cast<std::size_t>(m_nT - 1)),
              m_sText.substr(0, static_cast<std::size_t>(m_nT - 1)));
    EXPECT_EQ(exact[static_cast<std::size_t>(m_nT - 1)], 'X');

    std::vector<char> plusOne(static_cast<std::size_t>(m_nT) + 8, 'X');
    m_e.GetErrorMessage(m_nT + 1, plusOne.data());
    EXPECT_EQ(std::string(plusOne.data(), static_cast<std::size_t>(m_nT)), m_sText);
    EXPECT_EQ(plusOne[static_cast<std::size_t>(m_nT)], 'X');

    std::vector<char> plusTwo(static_cast<std::size_t>(m_nT) + 8, 'X');
    m_e.GetErrorMessage(m_nT + 2, plusTwo.data());
    EXPECT_EQ(std::string(plusTwo.data()), m_sText);
}

TEST(ExceptionFields, OverlongNamesAndLocationsAreCutToTheFieldWidths) {
    const std::string sLongName(300, 'n');
    const std::string sLongLocation =
        "CNuPointArray::MoveTo(const CNuPoint& origin, const CNuVector& xaxis, const CNuVector& "
        "zaxis)";
    CNuOperationException e(45, sLongName.c_str(), sLongLocation.c_str(), INT_MIN, INT_MAX,
                            -1.7976931348623157e308, 1.7976931348623157e308);
    EXPECT_EQ(std::string(e.m_szName), sLongName.substr(0, 99));
    EXPECT_EQ(std::string(e.m_szLocation), sLongLocation.substr(0, 49));
    // The longest texts compose completely: a full name and location with the widest reals.
    CNuOperationException wide(40, sLongName.c_str(), sLongLocation.c_str(), 0, 0,
                               -1.7976931348623157e308, 1.7976931348623157e308);
    std::string sMessage = MessageOf(wide);
    EXPECT_EQ(sMessage.substr(0, 19), "Numorix exception: ");
    EXPECT_EQ(sMessage.back(), '\n');
    EXPECT_GT(sMessage.size(), 700u);
    CNuConstructionException two(7, sLongLocation.c_str(), sLongName.c_str());
    EXPECT_EQ(MessageOf(two), "Numorix exception: construction failed for " +
                                  sLongLocation.substr(0, 49) + "\n    major " +
                                  sLongName.substr(0, 99) + " not greater than minor " +
                                  sLongName.substr(0, 99) + "\n");
}

TEST(ExceptionAssertFlag, IsOffUntilSetAndStaysOn) {
    const int nSaved = CNuException::m_nAssert;
    CNuException::m_nAssert = 0;
    EXPECT_EQ(CNuException::IsAssertEnabled(), 0);
    CNuException::SetAssert();
    EXPECT_EQ(CNuException::IsAssertEnabled(), 1);
    CNuException::SetAssert();
    EXPECT_EQ(CNuException::IsAssertEnabled(), 1);
    // Raising sites ignore the flag.
    EXPECT_NU_THROW(throw CNuOperationException(6, "operator/", "CNuVector"), CNuOperationException,
                    106);
    CNuException::m_nAssert = nSaved;
}

}  // namespace
}  // namespace numorix
