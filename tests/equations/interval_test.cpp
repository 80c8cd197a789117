// Intervals: bounds must ascend, and membership and overlap are closed whatever the open flags
// say.
#include <cmath>
#include <limits>

#include "nu_test.h"
#include "numorix/equations/interval.h"

namespace numorix {
namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(Interval, RefusesBoundsThatDoNotAscendAndIsClosedEvenWhenFlaggedOpen) {
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuInterval(1.0, 1.0, 0, 0); }, 11, "", "CNuInterval"},
        {[] { CNuInterval(2.0, 1.0, 1, 1); }, 11, "", "CNuInterval"},
        {[] { CNuInterval(kNaN, 1.0, 0, 0); }, 11, "", "CNuInterval"},
    });
    const CNuInterval open(0.0, 1.0, 1, 1);
    const double members[][2] = {{0.0, 1},     {1.0, 1}, {0.5, 1}, {std::nextafter(1.0, 2.0), 0},
                                 {-1e-300, 0}, {kNaN, 0}};
    for (const auto& m : members)
        EXPECT_EQ(open.IsIn(m[0]), m[1]) << m[0];
    // Touching at one point, one inside the other both ways, partial, apart on either side.
    const double overlaps[][3] = {{1.0, 2.0, 1}, {0.25, 0.5, 1}, {-5.0, 5.0, 1},
                                  {0.5, 3.0, 1}, {1.5, 3.0, 0},  {-3.0, -2.0, 0}};
    for (const auto& o : overlaps) {
        const CNuInterval other(o[0], o[1], 1, 0);
        EXPECT_EQ(open.IsOverlapping(other), o[2]) << "[0, 1] and [" << o[0] << ", " << o[1] << "]";
        EXPECT_EQ(other.IsOverlapping(open), o[2]) << "[" << o[0] << ", " << o[1] << "] and [0, 1]";
    }
}

}  // namespace
}  // namespace numorix
