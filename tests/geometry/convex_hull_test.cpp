// The planar convex hull against a brute-force hull on random sets, its degenerate inputs, tie
// rules and ordering, and its refusals.
#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "geometry_test_support.h"
#include "numorix/foundation/int_array.h"
#include "numorix/geometry/point_array.h"

namespace numorix {
namespace {

using test::Points;
using Op = CNuOperationException;
using Order = std::vector<int>;

Order Hull(const CNuPointArray& points) {
    CNuIntArray hull;
    points.ConvexHull(&hull);
    return test::Elements(hull);
}

double Cross(const CNuPoint& o, const CNuPoint& a, const CNuPoint& b) {
    return (a.x() - o.x()) * (b.y() - o.y()) - (a.y() - o.y()) * (b.x() - o.x());
}

// Brute force for points in general position: i -> j is an edge of the hull when every other
// point lies strictly to its left; the vertices are the starts of such edges.
std::set<int> BruteForceVertices(const CNuPointArray& p) {
    std::set<int> vertices;
    for (int i = 0; i < p.GetSize(); ++i) {
        for (int j = 0; j < p.GetSize(); ++j) {
            bool bEdge = i != j;
            for (int k = 0; bEdge && k < p.GetSize(); ++k)
                bEdge = k == i || k == j || Cross(p[i], p[j], p[k]) > 0.0;
            if (bEdge) vertices.insert(i);
        }
    }
    return vertices;
}

TEST(ConvexHull, MatchesABruteForceHullOnRandomSetsInAnyFlatPlane) {
    test::Random rng;
    for (int nTrial = 0; nTrial < 40; ++nTrial) {
        int n = rng.Integer(3, 150);
        double z = nTrial % 2 == 0 ? 0.0 : rng.Uniform(-100.0, 100.0);
        CNuPointArray points(n);
        for (int i = 0; i < n; ++i) {
            double y = nTrial % 3 == 0 ? rng.Normal(0.0, 3.0) : rng.Uniform(-7.0, 7.0);
            points.Add(CNuPoint(rng.Uniform(-10.0, 10.0), y, z));
        }
        Order hull = Hull(points);
        EXPECT_EQ(std::set<int>(hull.begin(), hull.end()), BruteForceVertices(points))
            << "trial " << nTrial;
        EXPECT_EQ(std::set<int>(hull.begin(), hull.end()).size(), hull.size()) << "a repeat";
    }
}

TEST(ConvexHull, KeepsEveryPointOfACircleInAngularOrderFromThePositiveX) {
    const int n = 360;
    CNuPointArray circle(n);
    // Started at 200.5 degrees, so that the angular order differs from the input order and no
    // point sits on the positive x direction, where rounding could place it at either end.
    for (int i = 0; i < n; ++i) {
        double t = (200.5 + i) * M_PI / 180.0;
        circle.Add(CNuPoint(3.0 + 2.0 * std::cos(t), -1.0 + 2.0 * std::sin(t), 0.0));
    }
    Order hull = Hull(circle);
    ASSERT_EQ(hull.size(), static_cast<std::size_t>(n));
    for (int k = 0; k < n; ++k)
        EXPECT_EQ(hull[k], (k + 160) % n) << "at " << k;
}

TEST(ConvexHull, DropsPointsOnEdgesAndFollowsTheTieAndOrderRules) {
    // A full grid: exactly its four corners, thanks to the tie rules of the first chord.
    CNuPointArray grid;
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 5; ++j)
            grid.Add(CNuPoint(i, j, 0.0));
    EXPECT_EQ(Hull(grid), (Order{24, 4, 0, 20}));
    struct {
        std::vector<CNuPoint> points;
        Order hull;
    } rows[] = {
        // A square with points on its edges and inside: its four corners, from 45 degrees on.
        {{{0, 1}, {1, 1}, {1, 0}, {-1, 1}, {0, 0}, {-1, -1}, {0, -1}, {1, -1}, {-1, 0}, {0.5, 1}},
         {1, 3, 5, 7}},
        // Several rightmost points: the highest starts the split, the lower ones are no vertices.
        {{{2, -1}, {2, 0}, {2, 1}, {0, 0}, {2, 0.5}}, {2, 3, 0}},
        {{{0, 0}, {2, 0}, {1, 1}}, {2, 0, 1}},  // by angle around their centroid (1, 1/3)
        // Degenerate sets have no angular order.
        {{{3, 4}}, {0}},
        {{{3, 4}, {1, 2}}, {0, 1}},
        {{{1, 2}, {3, 4}}, {0, 1}},  // list order, not angle
        {{{3, 4}, {3, 4}}, {0}},
        {{{3, 4}, {3, 4}, {3, 4}, {3, 4}, {3, 4}}, {4}},
        {{{1, 0}, {1, 3}, {1, -2}, {1, 1}}, {1, 2}},  // vertical: the top, then the bottom
        {{{0, 0}, {1, 1}, {3, 3}, {2, 2}}, {2, 0}},   // sloped: the extremes, rightmost first
    };
    for (const auto& row : rows)
        EXPECT_EQ(Hull(Points(row.points)), row.hull) << test::Text(row.points[0]) << " first";
}

TEST(ConvexHull, RefusesSetsThatAreNotFlatInZ) {
    CNuIntArray hull;
    CNuPointArray tilted = Points({{0, 0}, {1, 0}, {0, 1}});
    tilted[2].z() = 1e-11;
    test::ExpectFailures<Op>({
        {[&] { tilted.ConvexHull(&hull); }, 145, "calculation of 3D convex hull", "CNuPointArray"},
        {[&] { CNuPointArray().ConvexHull(&hull); }, 108, "Is2D operation",
         "CNuPointArray::Is2D()"},
    });
    tilted[2].z() = 1e-13;
    EXPECT_EQ(Hull(tilted).size(), 3u) << "within NuGetLengthTol() of the first z";
}

}  // namespace
}  // namespace numorix
