// Point arrays, their planar convex hull and the point-set statics of CNuGeometry: the array's
// own refusals, insertion, duplicates, the degeneracy tests, frame changes, extreme edges and
// bounds; the hull against a brute-force hull, its tie rules, degenerate sets and refusals.
#include <set>
#include <vector>

#include "geometry_support.h"
#include "numorix/foundation/scalar.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

using test::Points;
using test::PointsNear;
using Op = CNuOperationException;
using XList = std::vector<double>;

TEST(PointArray, RefusesBadIndicesSizesAndEmptyMeasuresAndInsertsItsOwnElements) {
    CNuPointArray a = Points({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}});
    CNuPointArray empty;
    test::ExpectFailures<Op>({
        {[&] { empty[0]; }, 108, "element operator[]", "CNuPointArray"},
        {[&] { a.Append(a); }, 118, "Append operation", "CNuPointArray::Append()"},
        {[&] { empty.Insert(CNuPoint(), 0); }, 103, "element operator[]", "CNuIntArray"},
        {[&] { empty.MaxEdge(nullptr, nullptr); }, 108, "MaxEdge operation",
         "CNuPointArray::MaxEdge(int* m, int* n) const"},
    });
    test::ExpectNuFailure<CNuConstructionException>([] { CNuPointArray b(-1, 4); }, 2, "Size",
                                                    "CNuPointArray");
    EXPECT_EQ(test::Xs(a.SubArray(test::Ints({1, 0, 1}))), (XList{0, 2}));
    EXPECT_EQ(a.SubArray(1, 2).GetCapacity(), 2) << "the range's length";
    a.Insert(CNuPoint(9, 0, 0), 1);
    a.Insert(a[3], 0);  // an element of the array itself, while the array grows
    EXPECT_EQ(test::Xs(a), (XList{2, 0, 9, 1, 2}));
}

TEST(PointArray, DuplicatesAreJudgedAgainstSurvivorsOnly) {
    // Not transitive: 0.6 is close to 0 and dropped; 1.2 is close to 0.6 but not to 0, and kept.
    CNuPointArray chain = Points({{0, 0, 0}, {0.6, 0, 0}, {1.2, 0, 0}, {1.7, 0, 0}});
    CNuPointArray run(chain);
    chain.RemoveDuplicate(1.0);
    EXPECT_EQ(test::Xs(chain), (XList{0, 1.2}));
    run.Add(CNuPoint(0, 0, 0));
    run.RemoveAdjacentDuplicate(1.0);  // against the last kept point only
    EXPECT_EQ(test::Xs(run), (XList{0, 1.2, 0}));
    int nIndex = -7;
    EXPECT_EQ(run.IsIn(CNuPoint(1, 0, 0), nIndex, 0.5), eNuTrue);
    EXPECT_EQ(nIndex, 1);
}

TEST(PointArray, FindsWitnessesOfBendsAndFlatness) {
    CNuIntArray indices;
    EXPECT_EQ(Points({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}}).IsNoncollinear(nullptr, 1e-9), eNuFalse);
    CNuPointArray bent = Points({{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 0, 7}});
    EXPECT_EQ(bent.IsNoncollinear(nullptr, 1e-9), eNuTrue);
    ASSERT_EQ(bent.IsNoncoplanar(&indices, 1e-9), eNuTrue);
    EXPECT_EQ(test::Elements(indices), (std::vector<int>{0, 2, 4, 5}));
    bent.Truncate(5);
    EXPECT_EQ(bent.IsNoncoplanar(nullptr, 1e-9), eNuFalse);
    EXPECT_EQ(Points({{1, 1, 5.0}}).Is2D(100.0), eNuFalse) << "one point: only z exactly 0";
    EXPECT_EQ(Points({{1, 1, 5.0}, {2, 3, 5.0}}).Is2D(1e-9), eNuTrue);
    EXPECT_EQ(Points({{1, 1, 5.0}, {2, 3, 5.0}}).Is2D(0.0), eNuFalse) << "strict test";
}

TEST(PointArray, MoveToIsRigidWhicheverAxesAreGivenAndProjectionFlattensTheSame) {
    test::Random rng;
    CNuPointArray original = test::RandomPoints(rng, 20);
    CNuVector axis = test::RandomDirection(rng);
    CNuPoint origin = test::RandomPoint(rng);
    CNuPointArray byAxis(original);
    byAxis.MoveTo(origin, axis);
    CNuPointArray stepwise(original);  // the origin, then the axis
    stepwise.MoveTo(origin);
    stepwise.MoveTo(axis * 2.0);
    // Flattened along the axis, the points keep the in-plane coordinates of the move.
    CNuPointArray flat = CNuGeometry::Projection2D(original, axis);
    for (int i = 0; i < 20; ++i) {
        EXPECT_NEAR(byAxis[i].z(), (original[i] - origin).To3DVector() % axis / axis.Magnitude(),
                    test::kGeometry);
        CNuPoint d = byAxis[i] - byAxis[0];
        EXPECT_TRUE(PointsNear(flat[i] - flat[0], CNuPoint(d.x(), d.y(), 0.0), test::kGeometry));
        EXPECT_TRUE(PointsNear(stepwise[i], byAxis[i], test::kGeometry));
    }
}

TEST(PointArray, ExtremeEdgesMatchABruteForceSearchFirstPairsWinningTiesAndBoundsEnclose) {
    int m = -1, n = -1;
    // A square: both diagonals are longest, and the first pair wins.
    CNuPointArray square = Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    square.MaxEdge(&m, &n);
    EXPECT_EQ(m * 10 + n, 2);
    EXPECT_EQ(Points({{4, 5, 6}}).MaxEdge(&m, &n), 0.0) << "one point";
    EXPECT_EQ(test::Elements(square.GetDataY()), std::vector<double>({0, 0, 1, 1}));
    test::Random rng;
    CNuPointArray cloud = test::RandomPoints(rng, 40);
    double dMax = -1.0, dMin = 1e300;
    for (int i = 0; i < 40; ++i) {
        for (int j = i + 1; j < 40; ++j) {
            dMax = std::fmax(dMax, cloud[i].DistanceTo(cloud[j]));
            dMin = std::fmin(dMin, cloud[i].DistanceTo(cloud[j]));
        }
    }
    EXPECT_EQ(cloud.MaxEdge(&m, &n), dMax);
    EXPECT_EQ(cloud.MinEdge(&m, &n), dMin);
    // The bounding sphere is the one about the box; an empty array's box is the origin.
    CNuPoint centre, lo(1, 1, 1), hi(1, 1, 1);
    CNuPointArray().BoundingBox(&lo, &hi);
    EXPECT_TRUE(PointsNear(lo, CNuPoint(0, 0, 0), 0.0) && PointsNear(hi, lo, 0.0));
    double dRadius = -1.0;
    Points({{1, -2, 0}, {-3, 4, 2}, {0, 0, -6}}).BoundingSphere(&dRadius, &centre);
    EXPECT_TRUE(PointsNear(centre, CNuPoint(-1, 1, -2), test::kExact));
    EXPECT_EQ(dRadius, NuPythag(2.0, 3.0, 4.0));
}

TEST(PointSetStatics, CollinearityCoplanarityAndDistinctPointsAreJudgedByDistance) {
    CNuVector normal;
    EXPECT_EQ(CNuGeometry::AreCollinear(Points({{0, 0, 0}, {1, 1, 0}, {2, 2, 0}}), &normal, 1e-9),
              1);
    EXPECT_EQ(normal.Magnitude(), 0.0) << "the vector stays as it was when 1 is returned";
    CNuPointArray bend = Points({{0, 0, 0}, {2, 0, 0}, {0, 0, 0}, {0, 3, 0}});
    EXPECT_EQ(CNuGeometry::AreCollinear(bend, &normal, 1e-9), 0);
    EXPECT_EQ(normal[2], 1.0);
    CNuPlane plane(CNuPoint(9, 9, 9), CNuVector(1, 0, 0));
    CNuPointArray flat = Points({{0, 0, 1}, {1, 0, 1}, {0, 1, 1}, {3, 4, 1}, {-1, 2, 1}});
    EXPECT_EQ(CNuGeometry::AreCoplanar(flat, &plane, 1e-9), 1);
    flat.Add(CNuPoint(0, 0, 1.1));
    EXPECT_EQ(CNuGeometry::AreCoplanar(flat, 1e-9), 0);
    EXPECT_EQ(CNuGeometry::AreCoplanar(flat, 0.2), 1);
    // Collinear: the plane normal to point 0 -> last point.
    CNuPointArray line = Points({{0, 0, 0}, {1, 0, 0}, {3, 0, 0}, {-2, 0, 0}});
    EXPECT_EQ(CNuGeometry::AreCoplanar(line, &plane, 1e-9), 1);
    EXPECT_EQ(plane.GetNormal()[0], -1.0);
    // (0.6, 0.6, 0) is 0.85 from the origin, though inside a box of 0.9.
    CNuPointArray pair = Points({{0, 0, 0}, {0.6, 0.6, 0}});
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(pair, 2, 0.8), 1);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(pair, 2, 0.9), 0);
    CNuPointArray three = Points({{0, 0, 0}, {1, 0, 0}, {0.5, 0, 0}, {1, 0, 0}, {0, 2, 0}});
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(three, 3, 0.7), 1);
    EXPECT_EQ(CNuGeometry::NumberDistinctPoints(three, 4, 0.7), 0);
}

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
    }
}

TEST(ConvexHull, DropsPointsOnEdgesAndFollowsTheTieAndOrderRules) {
    // A full grid: exactly its four corners, thanks to the tie rules of the first chord.
    CNuPointArray grid;
    for (int k = 0; k < 25; ++k)  // (0, 0), (0, 1), ... (4, 4)
        grid.Add(CNuPoint(k / 5, k % 5, 0.0));
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
        // A far point: seen from the centroid, the three near vertices lie at one angle, 270
        // degrees to the last digit, and keep the order they were found in, out of convex order.
        {{{-0x1.4131d7703410cp-2, -0x1.4ad15ea0981ap-1},
          {0x1.14455d5f67144p-1, -0x1.3a1d1d770342p-6},
          {0, 0x1.31bd2db03128ap+56},
          {-1, -1}},
         {2, 1, 3, 0}},
        // Degenerate sets have no angular order.
        {{{1, 2}, {3, 4}}, {0, 1}},  // list order, not angle
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
