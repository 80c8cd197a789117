// Minimum-zone lines and planes against brute force over all supports. The line zone runs on
// planar sets of every kind (random, thin, collinear, grids, points sharing a coordinate,
// repeated and collinear leading points), each solved in the XY plane, in the planes
// x = const and y = const and in a tilted plane, with its bounding pair; then the exchange limit,
// and the plane zone on random, thin, cloud and levelled sets.
#include <functional>

#include "fit_test_support.h"

namespace numorix {
namespace {

// The tolerance handed to the zone fits: the zone may exceed the true minimum by this much.
constexpr double kZoneTol = 1e-9;
// Distance checks of points against the returned lines and planes, on coordinates of order 10.
constexpr double kInside = 1e-9;

// n points, point i at(i).
CNuPointArray Planar(int n, const std::function<CNuPoint(int)>& at) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i)
        points.Add(at(i));
    return points;
}

std::vector<CNuPointArray> PlanarSets(test::Random& rng) {
    std::vector<CNuPointArray> sets;
    for (double dSpread : {1.0, 1.0, 1.0, 1.0, 1e-6, 1e-6})
        sets.push_back(Planar(rng.Integer(4, 40), [&](int i) {
            return CNuPoint(rng.Uniform(-5, 5), rng.Uniform(-dSpread, dSpread) + 0.1 * i, 0);
        }));
    sets.push_back(Planar(6, [](int i) { return CNuPoint(i - 2, 2 * i - 4, 0); }));
    // Grids, columns and rows: ties in the extremes and along the chords.
    sets.push_back(Planar(36, [](int i) { return CNuPoint(i / 6, i % 6, 0); }));
    sets.push_back(Planar(21, [](int i) { return CNuPoint(i / 3, i % 3, 0); }));
    sets.push_back(Planar(16, [&](int i) { return CNuPoint(i % 2, rng.Uniform(-4, 4), 0); }));
    sets.push_back(Planar(16, [&](int i) { return CNuPoint(rng.Uniform(-4, 4), i % 2, 0); }));
    // Two parallel edges 10 apart hold four supports, yet a slanted pair is about 3 apart.
    sets.push_back(test::Points({{0, 0, 0}, {0, 1, 0}, {10, -1, 0}, {10, 2, 0}}));
    // The first point repeated, then one collinear with the first two distinct ones.
    sets.push_back(test::Points(
        {{0, 0, 0}, {0, 0, 0}, {2, 0, 0}, {1, 0, 0}, {0.5, 1.5, 0}, {2.5, 1, 0}, {1, -0.5, 0}}));
    return sets;
}

// Where a planar set is solved: z = 2, the planes x = 3 and y = -1, and a tilted plane.
CNuPoint Placed(const CNuPoint& p, int nPlacement) {
    CNuPoint q = nPlacement == 0   ? CNuPoint(p.x(), p.y(), 2.0)
                 : nPlacement == 1 ? CNuPoint(3.0, p.x(), p.y())
                                   : CNuPoint(p.y(), -1.0, p.x());
    if (nPlacement == 3) q.Rotate(35.0, CNuVector(1.0, 2.0, 0.5));
    return q;
}

TEST(LineMinZone, MatchesBruteForceOnEveryKindOfPlanarSetInEveryPlane) {
    test::Random rng;
    const std::vector<CNuPointArray> sets = PlanarSets(rng);
    for (std::size_t k = 0; k < sets.size(); ++k)
        for (int m = 0; m < 4; ++m) {
            CNuPointArray points =
                Planar(sets[k].GetSize(), [&](int i) { return Placed(sets[k][i], m); });
            CNuLine line, inner, outer;
            double dZone = -1.0;
            line.FitMinZone(points, &dZone, &inner, &outer, kZoneTol, 100);
            EXPECT_NEAR(dZone, test::BruteLineZone(sets[k]), kZoneTol)
                << "set " << k << " in " << m;
            EXPECT_NEAR(inner.GetPoint().DistanceTo(outer), dZone, kInside);
            // The middle line is half the zone from its farthest points.
            double dWorst = 0.0;
            for (int i = 0; i < points.GetSize(); ++i)
                dWorst = std::max(dWorst, points[i].DistanceTo(line));
            EXPECT_NEAR(2.0 * dWorst, dZone, kInside) << "set " << k << " in " << m;
        }
}

// The limit counts exchanges; reaching it is not convergence, and every larger limit gives the
// same zone. On a 7 by 3 grid the first bounding line, along the bottom row from the extreme
// pair, is already the zone: the parallel top row never replaces it, so one pass of exchanges
// that changes nothing is all it takes, and a limit of 2 suffices.
TEST(LineMinZone, ReachingTheExchangeLimitIsNotConverged) {
    test::Random rng;
    const std::vector<CNuPointArray> sets = PlanarSets(rng);
    for (std::size_t k : {0, 8}) {
        CNuLine line;
        double dZone = -1.0;
        long lLeast = test::ExpectLimitRule(
            [&](long l) { line.FitMinZone(sets[k], &dZone, kZoneTol, l); },
            [&](long l) { return line.FitMinZoneEx(sets[k], &dZone, kZoneTol, l); }, 50, "CNuLine");
        EXPECT_TRUE(k == 0 || lLeast == 2) << "least limit " << lLeast;
        line.FitMinZone(sets[k], &dZone, kZoneTol, 1000);
        EXPECT_NEAR(dZone, test::BruteLineZone(sets[k]), kZoneTol) << "with a larger limit";
    }
}

// Random and thin slabs, three points, a thick cloud where edge-against-edge slabs compete with
// faces, and a grid with heights in two levels: many equal slabs.
TEST(PlaneMinZone, MatchesBruteForceOnRandomThinAndLevelledSets) {
    test::Random rng;
    std::vector<CNuPointArray> sets;
    for (double dThickness : {0.5, 0.5, 0.5, 0.5, 0.5, 1e-7})
        sets.push_back(Planar(rng.Integer(4, 25), [&](int) {
            double x = rng.Uniform(-5, 5), y = rng.Uniform(-5, 5);
            return CNuPoint(x, y, 0.3 * x - 0.2 * y + rng.Uniform(-dThickness, dThickness));
        }));
    sets.push_back(test::Points({{0, 0, 1}, {2, 0, 1}, {0, 3, 2}}));
    sets.push_back(Planar(16, [&](int) { return test::RandomPoint(rng, 1.0); }));
    sets.push_back(
        Planar(25, [](int i) { return CNuPoint(i / 5, i % 5, 0.5 * ((i / 5 + i % 5) % 3 == 0)); }));
    for (std::size_t k = 0; k < sets.size(); ++k) {
        CNuPlane plane, inner, outer;
        double dZone = -1.0;
        plane.FitMinZone(sets[k], &dZone, &inner, &outer, kZoneTol);
        EXPECT_NEAR(dZone, test::BrutePlaneZone(sets[k]), 2.0 * kZoneTol) << "set " << k;
        // The middle plane is half the zone from its farthest points, and the pair is the zone
        // apart (a zone of 0 leaves the caller's pair as it was).
        double dWorst = 0.0;
        for (int i = 0; i < sets[k].GetSize(); ++i)
            dWorst = std::max(dWorst, std::fabs(test::SignedDistance(sets[k][i], plane)));
        EXPECT_NEAR(2.0 * dWorst, dZone, kInside) << "set " << k;
        EXPECT_NEAR(dZone > 0.0 ? test::SignedDistance(outer.GetPoint(), inner) : 0.0, dZone,
                    kInside);
    }
}

}  // namespace
}  // namespace numorix
