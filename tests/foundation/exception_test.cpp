// The exception family: cause partitioning, the message table, the gaps, and the copy rules of
// GetErrorMessage.
#include <climits>
#include <initializer_list>
#include <string>
#include <utility>
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

TEST(ExceptionMessages, EveryRowComposesHeaderIndentAndFilledText) {
    for (const Row& row : kConstructionRows) {
        CNuConstructionException e(row.nStored, "CNuVector", "size", 7, 9);
        EXPECT_EQ(MessageOf(e), kConstructionHeader + row.sBody) << "stored " << row.nStored;
    }
    for (const Row& row : kOperationRows) {
        CNuOperationException e(row.nStored - 100, "operation", "CNuMatrix", 2, 5, 1.5, -2.25);
        EXPECT_EQ(MessageOf(e), kOperationHeader + row.sBody) << "stored " << row.nStored;
    }
    for (const Row& row : kFitRows) {
        CNuBestfitException e(row.nStored - 200, "CNuCircle", 3);
        EXPECT_EQ(MessageOf(e), kFitHeader + row.sBody) << "stored " << row.nStored;
    }
}

TEST(ExceptionMessages, CodesWithoutARowComposeToTheHeaderChosenBySignedComparison) {
    const std::string kMemory = "Numorix exception: memory allocation failed in ";
    const std::pair<std::string, std::string> cases[] = {
        // The raised codes without text, and codes in the unused stretches of each range.
        {MessageOf(CNuConstructionException(15, "CNuVector", "nArrayExpandSize")),
         kConstructionHeader},
        {MessageOf(CNuConstructionException(99, "CNuVector")), kConstructionHeader},
        {MessageOf(CNuOperationException(47, "Open a Binary file", "CNuMatrix")),
         "Numorix exception: Open a Binary file failed in CNuMatrix\n    "},
        {MessageOf(CNuOperationException(48, "operation", "CNuMatrix")), kOperationHeader},
        {MessageOf(CNuOperationException(99, "operation", "CNuMatrix")), kOperationHeader},
        {MessageOf(CNuBestfitException(12, "CNuCircle", 3)), kFitHeader},
        {MessageOf(CNuBestfitException(13, "CNuCircle")), kFitHeader},
        {MessageOf(CNuBestfitException(99, "CNuCircle")), kFitHeader},
        {MessageOf(CNuMemoryException("CNuMatrix::Init()")), kMemory + "CNuMatrix::Init()\n    "},
        // Negative stored codes take the construction header: -4 as given, -150 stored as -50.
        {MessageOf(CNuConstructionException(-4, "CNuVector", "size")), kConstructionHeader},
        {MessageOf(CNuOperationException(-150, "operation", "CNuMatrix")),
         "Numorix exception: construction failed for CNuMatrix\n    "},
        // 300 and 399 take the memory header; from 400 on there is no header at all.
        {MessageOf(CNuBestfitException(100, "CNuCircle")), kMemory + "CNuCircle\n    "},
        {MessageOf(CNuBestfitException(199, "CNuCircle")), kMemory + "CNuCircle\n    "},
        {MessageOf(CNuConstructionException(400, "CNuVector")), "    "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.first, c.second);
}

TEST(ExceptionCauses, EachClassStoresItsOffsetAndReportsTheCauseWithoutIt) {
    CNuConstructionException c(5, "CNuCircle", "radius");
    EXPECT_EQ(c.m_nCause, 5);
    EXPECT_EQ(c.GetCause(), 5);
    // Null strings are skipped.
    CNuOperationException o(3, nullptr, nullptr, 0, 0, 2.5);
    EXPECT_EQ(o.m_nCause, 103);
    EXPECT_EQ(o.GetCause(), 3);
    EXPECT_EQ(o.GetValue(), 2.5);
    EXPECT_STREQ(o.m_szName, "");
    EXPECT_STREQ(o.m_szLocation, "");
    EXPECT_EQ(CNuOperationException(-150, "operation", "CNuMatrix").m_nCause, -50);
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
         std::initializer_list<const CNuException*>{&c, &o, &b, &m, &mNull}) {
        EXPECT_EQ(e->m_nCause, 0);
        EXPECT_EQ(e->GetCause(), 0);  // not -100 or -200
        char sz[8] = "XXXXXXX";
        e->GetErrorMessage(sizeof sz, sz);
        EXPECT_STREQ(sz, "");
        EXPECT_STREQ(e->m_szName, "");
        EXPECT_STREQ(e->m_szLocation, "");
    }
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

TEST(ExceptionMessages, CopiesBoundedByTheLengthLessOneAndTerminatedOnlyWhenCutOrShort) {
    // The representative composes to T characters. A length below 1 writes nothing; a length
    // below T cuts the text and terminates it; T and T + 1 copy T - 1 and T characters with no
    // terminator; from T + 2 on the whole text is terminated.
    const CNuOperationException e(3, "element operator[]", "CNuVector", 0, 4);
    const std::string sText = MessageOf(e);
    EXPECT_EQ(sText,
              "Numorix exception: element operator[] failed in CNuVector\n"
              "    index not in valid range [0, 4]\n");
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
