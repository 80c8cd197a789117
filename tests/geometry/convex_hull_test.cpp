// The planar convex hull against a brute-force hull on random sets, its degenerate inputs, tie
// rules and ordering, and its refusals; the bounding sphere lives with the other bounds.
#include <algorithm>
#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "geometry_test_support.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/point_array.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;
using Op = CNuOperationException;
using XY = std::pair<double, double>;

CNuPointArray Planar(std::initializer_list<XY> points, double z = 0.0) {
    CNuPointArray a;
    for (const XY& p : points)
        a.Add(CNuPoint(p.first, p.second, z));
    return a;
}

std::vector<int> Hull(const CNuPointArray& points) {
    CNuIntArray hull;
    points.ConvexHull(&hull);
    return std::vector<int>(hull.GetData(), hull.GetData() + hull.GetSize());
}

double Cross(const XY& o, const XY& a, const XY& b) {
    return (a.first - o.first) * (b.second - o.second) -
           (a.second - o.second) * (b.first - o.first);
}

// Whether p, collinear with a and b, lies between them.
bool Between(const XY& a, const XY& b, const XY& p) {
    return p.first >= std::min(a.first, b.first) && p.first <= std::max(a.first, b.first) &&
           p.second >= std::min(a.second, b.second) && p.second <= std::max(a.second, b.second);
}

// Brute force: the edges a -> b with every point strictly to their left or on them between
// their ends. Their ends are the strict vertices: no repeats, no points in the middle of edges.
std::vector<std::pair<XY, XY>> BruteForceEdges(const CNuPointArray& points) {
    std::set<XY> unique;
    for (int i = 0; i < points.GetSize(); ++i)
        unique.insert({points[i].x(), points[i].y()});
    std::vector<std::pair<XY, XY>> edges;
    for (const XY& a : unique) {
        for (const XY& b : unique) {
            bool bEdge = a != b;
            for (auto it = unique.begin(); bEdge && it != unique.end(); ++it) {
                double c = Cross(a, b, *it);
                bEdge = c > 0.0 || (c == 0.0 && Between(a, b, *it));
            }
            if (bEdge) edges.push_back({a, b});
        }
    }
    return edges;
}

std::set<XY> VerticesOf(const std::vector<std::pair<XY, XY>>& edges) {
    std::set<XY> vertices;
    for (const auto& edge : edges) {
        vertices.insert(edge.first);
        vertices.insert(edge.second);
    }
    return vertices;
}

std::set<XY> Found(const CNuPointArray& points, const std::vector<int>& hull) {
    std::set<XY> found;
    for (int i : hull)
        found.insert({points[i].x(), points[i].y()});
    return found;
}

// Angle of a vertex around the centroid of the hull's vertices, in [0, 360).
std::vector<double> CentroidAngles(const CNuPointArray& points, const std::vector<int>& hull) {
    double cx = 0.0;
    double cy = 0.0;
    for (int i : hull) {
        cx += points[i].x();
        cy += points[i].y();
    }
    cx /= static_cast<double>(hull.size());
    cy /= static_cast<double>(hull.size());
    std::vector<double> angles;
    for (int i : hull) {
        double a = std::atan2(points[i].y() - cy, points[i].x() - cx) * 180.0 / M_PI;
        angles.push_back(a < 0.0 ? a + 360.0 : a);
    }
    return angles;
}

TEST(ConvexHull, MatchesABruteForceHullOnRandomSetsInAnyFlatPlane) {
    test::Random rng;
    for (int nTrial = 0; nTrial < 40; ++nTrial) {
        int n = rng.Integer(3, 150);
        double z = nTrial % 2 == 0 ? 0.0 : rng.Uniform(-100.0, 100.0);
        CNuPointArray points(n);
        for (int i = 0; i < n; ++i) {
            double x = rng.Uniform(-10.0, 10.0);
            double y = nTrial % 3 == 0 ? rng.Normal(0.0, 3.0) : rng.Uniform(-1.0, 1.0) * 7.0;
            points.Add(CNuPoint(x, y, z));
        }
        std::vector<int> hull = Hull(points);
        std::set<XY> found = Found(points, hull);
        std::set<XY> expected = VerticesOf(BruteForceEdges(points));
        EXPECT_EQ(found.size(), hull.size()) << "a vertex repeats; trial " << nTrial;
        EXPECT_EQ(found, expected) << "trial " << nTrial << ": " << hull.size()
                                   << " vertices, brute force " << expected.size();
        std::vector<double> angles = CentroidAngles(points, hull);
        for (std::size_t k = 1; k < angles.size(); ++k)
            EXPECT_LT(angles[k - 1], angles[k]) << "vertices out of angular order at " << k;
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
    std::vector<int> hull = Hull(circle);
    ASSERT_EQ(hull.size(), static_cast<std::size_t>(n));
    for (int k = 0; k < n; ++k)
        EXPECT_EQ(hull[k], (k + 160) % n) << "at " << k;
}

TEST(ConvexHull, OnGridAlignedSetsFindsTheCornersAndStaysOnTheBoundary) {
    // A full grid: exactly its four corners, thanks to the tie rules of the first chord.
    CNuPointArray grid;
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 5; ++j)
            grid.Add(CNuPoint(i, j, 0.0));
    std::vector<int> corners = Hull(grid);
    EXPECT_EQ(corners, (std::vector<int>{24, 4, 0, 20}));

    // Random integer points with repeats and collinear runs: every strict vertex is found, and
    // every point reported lies on the boundary of the true hull.
    test::Random rng;
    for (int nTrial = 0; nTrial < 30; ++nTrial) {
        int n = rng.Integer(3, 120);
        CNuPointArray points(n);
        for (int i = 0; i < n; ++i)
            points.Add(CNuPoint(rng.Integer(-4, 4), rng.Integer(-4, 4), 2.0));
        std::set<XY> found = Found(points, Hull(points));
        std::vector<std::pair<XY, XY>> edges = BruteForceEdges(points);
        for (const XY& v : VerticesOf(edges))
            EXPECT_EQ(found.count(v), 1u) << "strict vertex missed; trial " << nTrial;
        for (const XY& p : found) {
            bool bOnEdge = false;
            for (std::size_t k = 0; k < edges.size() && !bOnEdge; ++k)
                bOnEdge = Cross(edges[k].first, edges[k].second, p) == 0.0 &&
                          Between(edges[k].first, edges[k].second, p);
            EXPECT_TRUE(bOnEdge) << "(" << p.first << ", " << p.second << ") is not on the hull";
        }
    }
}

TEST(ConvexHull, DropsPointsOnEdgesAndFollowsTheTieRules) {
    // A square with points on its edges and inside: its four corners, from 45 degrees on.
    CNuPointArray square = Planar(
        {{0, 1}, {1, 1}, {1, 0}, {-1, 1}, {0, 0}, {-1, -1}, {0, -1}, {1, -1}, {-1, 0}, {0.5, 1}});
    EXPECT_EQ(Hull(square), (std::vector<int>{1, 3, 5, 7}));

    // Several rightmost points: the highest starts the split, so the lower ones on the right
    // edge are no vertices; likewise the lowest of the leftmost points.
    CNuPointArray right = Planar({{2, -1}, {2, 0}, {2, 1}, {0, 0}, {2, 0.5}});
    std::vector<int> r = Hull(right);
    EXPECT_EQ(std::set<int>(r.begin(), r.end()), (std::set<int>{0, 2, 3}));
    CNuPointArray left = Planar({{-2, 1}, {-2, 0}, {-2, -1}, {0, 0}, {-2, -0.5}});
    std::vector<int> l = Hull(left);
    EXPECT_EQ(std::set<int>(l.begin(), l.end()), (std::set<int>{0, 2, 3}));

    // Three vertices are ordered by angle around their centroid (1, 1/3).
    EXPECT_EQ(Hull(Planar({{0, 0}, {2, 0}, {1, 1}})), (std::vector<int>{2, 0, 1}));
}

TEST(ConvexHull, HandlesDegenerateSetsWithoutAngularOrder) {
    EXPECT_EQ(Hull(Planar({{3, 4}})), (std::vector<int>{0}));
    EXPECT_EQ(Hull(Planar({{3, 4}, {1, 2}})), (std::vector<int>{0, 1}));
    EXPECT_EQ(Hull(Planar({{1, 2}, {3, 4}})), (std::vector<int>{0, 1})) << "list order, not angle";
    EXPECT_EQ(Hull(Planar({{3, 4}, {3, 4}})), (std::vector<int>{0}));
    EXPECT_EQ(Hull(Planar({{3, 4}, {3, 4}, {3, 4}, {3, 4}, {3, 4}})), (std::vector<int>{4}));
    // All on a vertical line: the top, then the bottom.
    EXPECT_EQ(Hull(Planar({{1, 0}, {1, 3}, {1, -2}, {1, 1}})), (std::vector<int>{1, 2}));
    // All on a sloped line: the extremes in x, the rightmost first.
    EXPECT_EQ(Hull(Planar({{0, 0}, {1, 1}, {3, 3}, {2, 2}})), (std::vector<int>{2, 0}));
    // The result is the work array, handed over with its capacity.
    CNuIntArray hull;
    Planar({{0, 0}, {2, 0}, {1, 1}, {1, 0.2}, {1, 0.3}}).ConvexHull(&hull);
    EXPECT_EQ(hull.GetSize(), 3);
    EXPECT_EQ(hull.GetCapacity(), 5);
}

TEST(ConvexHull, RefusesSetsThatAreNotFlatInZ) {
    CNuIntArray hull;
    CNuPointArray tilted = Planar({{0, 0}, {1, 0}, {0, 1}});
    tilted[2].z() = 1e-11;
    ExpectNuFailure<Op>([&] { tilted.ConvexHull(&hull); }, 145, "calculation of 3D convex hull",
                        "CNuPointArray");
    tilted[2].z() = 1e-13;
    EXPECT_EQ(Hull(tilted).size(), 3u) << "within NuGetLengthTol() of the first z";
    ExpectNuFailure<Op>(
        [&] {
            Planar({{1, 1}}, 1.0).ConvexHull(&hull);
        },
        145, "calculation of 3D convex hull", "CNuPointArray");
    ExpectNuFailure<Op>([&] { CNuPointArray().ConvexHull(&hull); }, 108, "Is2D operation",
                        "CNuPointArray::Is2D()");
    EXPECT_EQ(hull.GetSize(), 0);
}

}  // namespace
}  // namespace numorix
