// Minimum-zone lines and planes against brute force over all supports. The line zone runs on
// planar sets of every kind (random, thin, collinear, grids, points sharing a coordinate,
// repeated and collinear leading points), each solved in the XY plane, in the planes
// x = const and y = const and in a tilted plane, with its bounding pair; then degenerate and far
// data, the exchange limit, the plane zone on random, thin, cloud and levelled sets at two scales,
// and a table on which both exchanges must end.
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

// Fuzzed inputs once gave a zone of 0 and a zero direction: any spread points with a tolerance
// of 0 (the chord's own ends lay "outside" it); points in x = X so far out that their rounded
// mean turns the least-squares line across the plane; points 1e-100 apart, whose frame axis is
// too short to square. Refused: twins let through by a length tolerance of 0 (no direction), and
// a frame through point 2, within the tolerance of point 0, that misses point 3 by 1000.
TEST(LineMinZone, GivesTheTrueZoneAndAUnitDirectionAtToleranceZeroAndFarFromTheOrigin) {
    const double X = 0x1.fffffffffffffp+60, s = 1e-100;  // 5 copies of X average to X - 256
    const struct {
        double dTolerance, dZone;
        std::vector<CNuPoint> points;
    } cases[] = {
        {0.0, 2.0, {{0, 0, 1}, {2, 0, 1}, {0, 1, 1}, {2, 1, 1}, {1, 3, 1}}},
        {1e-9, 2.0, {{X, 0, 0}, {X, 2, 0}, {X, 0, 1}, {X, 2, 1}, {X, 1, 3}}},
        {1e-300, 2 * s, {{1, 0, 0}, {1, 2 * s, 0}, {1, 0, s}, {1, 2 * s, s}, {1, s, 3 * s}}}};
    CNuLine line, inner, outer;
    double dZone = -1.0;
    for (const auto& c : cases) {
        line.FitMinZone(test::Points(c.points), &dZone, &inner, &outer, c.dTolerance, 100);
        EXPECT_NEAR(dZone, c.dZone, kZoneTol * c.dZone) << c.dTolerance;
        for (const CNuLine* l : {&line, &inner, &outer})
            EXPECT_NEAR(l->GetDirection().Magnitude(), 1.0, test::kTight) << c.dTolerance;
    }
    test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, 0.0);
    const CNuPointArray kTwins = test::Points({{-416.06, -0.9, 905.5}, {-416.06, -0.9, 905.5}});
    const CNuPointArray kOffFrame =
        test::Points({{0, 0, 0}, {0, 0, -10}, {0.5, 0, 0}, {0, 1000, 100}});
    test::ExpectFailures<CNuBestfitException>({
        {[&] { line.FitMinZone(kTwins, &dZone, 0.0, 100); }, 202, nullptr, "CNuLine", 2},
        {[&] { line.FitMinZone(kOffFrame, &dZone, 1.0, 100); }, 211, nullptr, "CNuLine"},
    });
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
        EXPECT_TRUE(dZone >= NuGetTol() || inner.GetPoint().DistanceTo(CNuPoint()) == 0.0)
            << "a zone of 0 leaves the pair unwritten, set " << k;
        // Scaled by 1e150, the chords' squares overflow; the width scales all the same.
        double dHuge = -1.0;
        plane.FitMinZone(Planar(sets[k].GetSize(), [&](int i) { return sets[k][i] * 1e150; }),
                         &dHuge, kZoneTol * 1e150);
        EXPECT_NEAR(dHuge / 1e150, dZone, 4.0 * kZoneTol) << "set " << k << " scaled";
    }
}

// Both exchanges end, with a zone or a refusal, on a grid, doubled corners, coincident points,
// a point a hair off a line, data near both ends of the double range and odd tolerances. The
// test process is the hang detector.
TEST(LineAndPlaneMinZone, EndOnTiesCoincidencesExtremeScalesAndOddTolerances) {
    const std::function<CNuPoint(int)> kSets[] = {
        [](int i) { return CNuPoint(8 * i % 25 / 5, 8 * i % 5, i * 7 % 5 / 4.0); },
        [](int i) { return CNuPoint(i % 2, i / 2 % 2, i % 3); },
        [](int i) { return i < 6 ? CNuPoint(1, 1, 0) : CNuPoint(i, i * i % 4, i % 2); },
        [](int i) { return CNuPoint(i, 2 * i + (i == 0 ? 1e-13 : 0.0), i == 0); }};
    CNuLine line;
    CNuPlane plane;
    double dZone = -1.0;
    for (const auto& at : kSets)
        for (double s : {1e-150, 1.0, 1e150})
            for (double dTol : {-1.0, 0.0, 1e-300, 1e-9 * s, 1e300}) {
                line.FitMinZoneEx(
                    Planar(12, [&](int i) { return CNuPoint(at(i).x(), at(i).y(), 0) * s; }),
                    &dZone, dTol, 1000);
                try {
                    plane.FitMinZone(Planar(12, [&](int i) { return at(i) * s; }), &dZone, dTol);
                } catch (const CNuException&) {
                }
            }
}

}  // namespace
}  // namespace numorix
