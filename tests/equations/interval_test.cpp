// Intervals: bounds must ascend, and membership and overlap are closed whatever the open flags
// say.
#include <cmath>
#include <limits>

#include "nu_test.h"
#include "numorix/equations/interval.h"

namespace numorix {
namespace {

TEST(Interval, RefusesBoundsThatDoNotAscend) {
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuInterval(1.0, 1.0, 0, 0); }, 11, "", "CNuInterval"},
        {[] { CNuInterval(2.0, 1.0, 1, 1); }, 11, "", "CNuInterval"},
        {[] { CNuInterval(std::numeric_limits<double>::quiet_NaN(), 1.0, 0, 0); }, 11, "",
         "CNuInterval"},
    });
    CNuInterval i(-1.0, 2.0, 1, 0);
    EXPECT_EQ(i.GetType(), CNuObject::eTypeInterval);
    EXPECT_EQ(i.IsLeftOpen(), 1);
    EXPECT_EQ(i.IsRightOpen(), 0);
    double dLower = 0.0, dUpper = 0.0;
    i.GetBounds(&dLower, &dUpper);
    EXPECT_EQ(dLower, -1.0);
    EXPECT_EQ(dUpper, 2.0);
}

TEST(Interval, MembershipIsClosedEvenForOpenFlags) {
    CNuInterval open(0.0, 1.0, 1, 1);
    EXPECT_EQ(open.IsIn(0.0), 1);
    EXPECT_EQ(open.IsIn(1.0), 1);
    EXPECT_EQ(open.IsIn(0.5), 1);
    EXPECT_EQ(open.IsIn(std::nextafter(1.0, 2.0)), 0);
    EXPECT_EQ(open.IsIn(-1e-300), 0);
    EXPECT_EQ(open.IsIn(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(Interval, OverlapIsSymmetricAndCountsTouchingAndContainment) {
    struct Case {
        double a0, a1, b0, b1;
        int nExpected;
    };
    const Case cases[] = {
        {0.0, 1.0, 1.0, 2.0, 1},    // touching at one point, open or not
        {0.0, 1.0, 0.25, 0.5, 1},   // b inside a
        {0.0, 1.0, -5.0, 5.0, 1},   // a inside b
        {0.0, 1.0, 0.5, 3.0, 1},    // partial
        {0.0, 1.0, 1.5, 3.0, 0},    // apart
        {-3.0, -2.0, 2.0, 3.0, 0},  // apart on the other side
    };
    for (const Case& c : cases) {
        CNuInterval a(c.a0, c.a1, 1, 1);
        CNuInterval b(c.b0, c.b1, 1, 0);
        EXPECT_EQ(a.IsOverlapping(b), c.nExpected) << c.a0 << " " << c.a1 << " / " << c.b0;
        EXPECT_EQ(b.IsOverlapping(a), c.nExpected) << c.a0 << " " << c.a1 << " / " << c.b0;
    }
}

}  // namespace
}  // namespace numorix
