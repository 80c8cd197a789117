// Minimum-zone lines and planes against brute force over all supports: the line zone on planar
// sets of every kind (random, thin, grids, points sharing a coordinate, convex polygons, repeated
// and collinear leading points), each solved in the XY plane, in planes x = const and y = const
// and in a tilted plane; the plane zone on random, thin and levelled sets; the bounding pairs and
// their supports; collinear points; the exchange limit.
#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "fit_test_support.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

// The tolerance handed to the zone fits: the zone may exceed the true minimum by this much.
constexpr double kZoneTol = 1e-9;
// Distance checks of points against the returned lines and planes, on coordinates of order 10.
constexpr double kInside = 1e-9;

CNuPointArray RandomPlanar(test::Random& rng, int n, double dSpreadY) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i)
        points.Add(CNuPoint(rng.Uniform(-5, 5), rng.Uniform(-dSpreadY, dSpreadY) + 0.1 * i, 0.0));
    return points;
}

// n points on a circle of radius r from angle t0: a convex polygon, every point on its hull.
CNuPointArray Polygon(int n, double r, double t0, double dStretch) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i)
        points.Add(CNuPoint(dStretch * r * std::cos(t0 + 2 * M_PI * i / n),
                            r * std::sin(t0 + 2 * M_PI * i / n), 0.0));
    return points;
}

// Planar sets in z = 0 whose zone brute force knows.
std::vector<CNuPointArray> PlanarSets() {
    test::Random rng;
    std::vector<CNuPointArray> sets;
    for (int k = 0; k < 6; ++k)
        sets.push_back(RandomPlanar(rng, rng.Integer(3, 40), k < 4 ? 1.0 : 1e-6));
    // Grids, and columns and rows with a shared x or y, give ties in both extreme searches.
    CNuPointArray square(36), oblong(21), columns(16), rows(16);
    for (int i = 0; i < 36; ++i)
        square.Add(CNuPoint(i / 6, i % 6, 0.0));
    for (int i = 0; i < 21; ++i)
        oblong.Add(CNuPoint(i / 3, i % 3, 0.0));
    for (int i = 0; i < 16; ++i) {
        columns.Add(CNuPoint(i % 2, rng.Uniform(-4, 4), 0.0));
        rows.Add(CNuPoint(rng.Uniform(-4, 4), 0.5 * (i % 2), 0.0));
    }
    sets.insert(sets.end(), {square, oblong, columns, rows});
    // Two parallel edges 10 apart hold four supports, yet a slanted pair is about 3 apart.
    sets.push_back(test::Points(
        {CNuPoint(0, 0, 0), CNuPoint(0, 1, 0), CNuPoint(10, -1, 0), CNuPoint(10, 2, 0)}));
    // The first point repeated, then one collinear with the first two distinct ones.
    sets.push_back(
        test::Points({CNuPoint(0, 0, 0), CNuPoint(0, 0, 0), CNuPoint(2, 0, 0), CNuPoint(1, 0, 0),
                      CNuPoint(0.5, 1.5, 0), CNuPoint(2.5, 1, 0), CNuPoint(1, -0.5, 0)}));
    // Convex polygons turned a sixth at a time: each edge in turn the narrowest or the last seen.
    for (int k = 0; k < 6; ++k)
        for (int n : {4, 5, 7})
            sets.push_back(Polygon(n, 2.0, k * M_PI / 3.0 + 0.1 * n, n == 5 ? 1.0 : 1.6));
    return sets;
}

// Where a planar set is solved: z = 2, the planes x = 3 and y = -1, and a tilted plane.
const std::vector<std::function<CNuPoint(const CNuPoint&)>> kPlacements = {
    [](const CNuPoint& p) { return CNuPoint(p.x(), p.y(), 2.0); },
    [](const CNuPoint& p) { return CNuPoint(3.0, p.x(), p.y()); },
    [](const CNuPoint& p) { return CNuPoint(p.y(), -1.0, p.x()); },
    [](const CNuPoint& p) {
        CNuPoint q(p);
        q.Rotate(35.0, CNuVector(1.0, 2.0, 0.5));
        q.Translate(3.0, -1.0, 7.0);
        return q;
    },
};

TEST(LineMinZone, MatchesBruteForceOnEveryKindOfPlanarSetInEveryPlane) {
    const std::vector<CNuPointArray> sets = PlanarSets();
    for (std::size_t k = 0; k < sets.size(); ++k) {
        const double dOracle = test::BruteLineZone(sets[k]);
        for (std::size_t m = 0; m < kPlacements.size(); ++m) {
            CNuPointArray points(sets[k]);
            for (int i = 0; i < points.GetSize(); ++i)
                points[i] = kPlacements[m](points[i]);
            CNuLine line, inner, outer;
            double dZone = -1.0;
            line.FitMinZone(points, &dZone, &inner, &outer, kZoneTol, 100);
            EXPECT_NEAR(dZone, dOracle, kZoneTol) << "set " << k << " placement " << m;
            EXPECT_NEAR(inner.GetPoint().DistanceTo(outer), dZone, kInside);
            // The middle line is half the zone from its farthest points, and the zone rests on
            // at least two points of one bounding line and one of the other.
            double dWorst = 0.0;
            int nOnInner = 0, nOnOuter = 0;
            for (int i = 0; i < points.GetSize(); ++i) {
                dWorst = std::max(dWorst, points[i].DistanceTo(line));
                nOnInner += points[i].DistanceTo(inner) < kInside;
                nOnOuter += points[i].DistanceTo(outer) < kInside;
            }
            EXPECT_NEAR(2.0 * dWorst, dZone, kInside) << "set " << k << " placement " << m;
            EXPECT_TRUE(nOnInner >= 1 && nOnOuter >= 1 && nOnInner + nOnOuter >= 3)
                << "set " << k << " placement " << m << ": " << nOnInner << " and " << nOnOuter
                << " supports";
            EXPECT_TRUE(m != 0 || line.GetPoint().z() == 2.0) << "set " << k << " left z = 2";
        }
    }
}

TEST(LineMinZone, CollinearPointsGiveZoneZeroAndTheLeastSquaresLine) {
    CNuPointArray points = test::Points(
        {CNuPoint(0, 0, 1), CNuPoint(1, 2, 1), CNuPoint(2, 4, 1), CNuPoint(-1, -2, 1)});
    CNuLine zone, ls, inner, outer;
    double dZone = -1.0;
    zone.FitMinZone(points, &dZone, &inner, &outer, kZoneTol, 10);
    ls.Fit(points);
    EXPECT_EQ(dZone, 0.0);
    EXPECT_EQ(zone.GetDirection()[0], ls.GetDirection()[0]);
    EXPECT_TRUE(test::PointsNear(zone.GetPoint(), ls.GetPoint(), 0.0));
    EXPECT_TRUE(test::PointsNear(inner.GetPoint(), ls.GetPoint(), 0.0));
    EXPECT_TRUE(test::PointsNear(outer.GetPoint(), ls.GetPoint(), 0.0));
}

// The limit counts exchanges; reaching it is not convergence, and every larger limit gives the
// same zone. On a 7 by 3 grid the first bounding line, along the bottom row from the extreme
// pair, is already the zone: the parallel top row never replaces it, so one pass of exchanges
// that changes nothing is all it takes, and a limit of 2 suffices.
TEST(LineMinZone, ReachingTheExchangeLimitIsNotConverged) {
    test::Random rng;
    CNuPointArray grid(21);
    for (int i = 0; i < 21; ++i)
        grid.Add(CNuPoint(i / 3, i % 3, 0.0));
    for (const CNuPointArray& points : {RandomPlanar(rng, 25, 1.0), grid}) {
        CNuLine line;
        double dZone = -1.0;
        long lLeast = test::ExpectLimitRule(
            [&](long l) { line.FitMinZone(points, &dZone, kZoneTol, l); },
            [&](long l) { return line.FitMinZoneEx(points, &dZone, kZoneTol, l); }, 50, "CNuLine");
        EXPECT_TRUE(lLeast > 2 || points.GetSize() == 21) << "least limit " << lLeast;
        EXPECT_TRUE(lLeast == 2 || points.GetSize() == 25) << "least limit " << lLeast;
        for (long l : {lLeast, lLeast + 7, 1000L}) {
            line.FitMinZone(points, &dZone, kZoneTol, l);
            EXPECT_NEAR(dZone, test::BruteLineZone(points), kZoneTol) << "limit " << l;
        }
    }
}

TEST(PlaneMinZone, MatchesBruteForceOnRandomThinAndLevelledSets) {
    test::Random rng;
    const CNuVector kSlabNormal(0.3, -0.2, 1.0);
    std::vector<CNuPointArray> sets;
    for (int k = 0; k < 6; ++k)
        sets.push_back(test::NearPlane(rng, kSlabNormal, rng.Integer(4, 25), 5.0, 0.5));
    sets.push_back(test::NearPlane(rng, kSlabNormal, 30, 5.0, 1e-7));
    sets.push_back(test::Points({CNuPoint(0, 0, 1), CNuPoint(2, 0, 1), CNuPoint(0, 3, 2)}));
    // A thick random cloud, where edge-against-edge slabs compete with faces, and a grid with
    // heights in two levels: many equal slabs.
    CNuPointArray cloud(16), grid(25);
    for (int i = 0; i < 16; ++i)
        cloud.Add(CNuPoint(rng.Uniform(-1, 1), rng.Uniform(-1, 1), rng.Uniform(-1, 1)));
    for (int i = 0; i < 25; ++i)
        grid.Add(CNuPoint(i / 5, i % 5, (i / 5 + i % 5) % 3 == 0 ? 0.5 : 0.0));
    sets.insert(sets.end(), {cloud, grid});
    for (std::size_t k = 0; k < sets.size(); ++k) {
        const CNuPointArray& points = sets[k];
        CNuPlane plane, inner, outer;
        double dZone = -1.0;
        plane.FitMinZone(points, &dZone, &inner, &outer, kZoneTol);
        EXPECT_NEAR(dZone, test::BrutePlaneZone(points), 2.0 * kZoneTol) << "set " << k;
        // The middle plane is half the zone from its farthest points, and the pair is the zone
        // apart (a zone of 0 leaves the caller's pair as it was).
        double dWorst = 0.0;
        for (int i = 0; i < points.GetSize(); ++i)
            dWorst = std::max(dWorst, std::fabs(test::SignedDistance(points[i], plane)));
        EXPECT_NEAR(2.0 * dWorst, dZone, kInside) << "set " << k;
        EXPECT_NEAR(dZone > 0.0 ? test::SignedDistance(outer.GetPoint(), inner) : 0.0, dZone,
                    kInside);
    }
}

}  // namespace
}  // namespace numorix
