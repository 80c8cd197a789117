// Minimum-zone lines (points in a plane) and planes against brute force over all supports on
// random, near-degenerate and grid sets, the bounding pairs and their supports, the degenerate
// and hostile inputs, the exchange limit, and the certified PTB Chebyshev sets. Refusals are in
// the table of fit_frame_test.cpp.
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "fit_test_support.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// The tolerance handed to the zone fits: the zone may exceed the true minimum by this much.
constexpr double kZoneTol = 1e-9;
// Distance checks of points against the returned pair, on coordinates of order 10.
constexpr double kInside = 1e-9;

// Every point lies between the two bounding planes, and they are zone apart.
void ExpectPlanePair(const CNuPointArray& points, const CNuPlane& inner, const CNuPlane& outer,
                     double dZone) {
    EXPECT_NEAR(test::SignedDistance(outer.GetPoint(), inner), dZone, kInside);
    for (int i = 0; i < points.GetSize(); ++i) {
        double d = test::SignedDistance(points[i], inner);
        EXPECT_GT(d, -kInside) << "point " << i;
        EXPECT_LT(d, dZone + kInside) << "point " << i;
    }
}

void ExpectLinePair(const CNuPointArray& points, const CNuLine& inner, const CNuLine& outer,
                    double dZone) {
    double dGap = std::fabs(test::Side(outer.GetPoint(), inner));
    EXPECT_NEAR(dGap, dZone, kInside);
    for (int i = 0; i < points.GetSize(); ++i) {
        double a = test::Side(points[i], inner);
        double b = test::Side(points[i], outer);
        EXPECT_LT(std::fabs(a) + std::fabs(b), dZone + kInside) << "point " << i << " outside";
    }
}

CNuPointArray RandomPlanar(test::Random& rng, int n, double dSpreadY) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i)
        points.Add(CNuPoint(rng.Uniform(-5, 5), rng.Uniform(-dSpreadY, dSpreadY) + 0.1 * i, 2.0));
    return points;
}

TEST(LineMinZone, MatchesBruteForceOnRandomNearDegenerateAndGridSets) {
    test::Random rng;
    std::vector<CNuPointArray> sets;
    for (int k = 0; k < 10; ++k)
        sets.push_back(RandomPlanar(rng, rng.Integer(3, 40), 1.0));
    for (int k = 0; k < 4; ++k)
        sets.push_back(RandomPlanar(rng, 25, 1e-6));
    CNuPointArray grid(36);
    for (int i = 0; i < 6; ++i)
        for (int j = 0; j < 6; ++j)
            grid.Add(CNuPoint(i, j, 0.0));
    sets.push_back(grid);
    for (std::size_t k = 0; k < sets.size(); ++k) {
        const CNuPointArray& points = sets[k];
        CNuLine line, inner, outer;
        double dZone = -1.0;
        line.FitMinZone(points, &dZone, &inner, &outer, kZoneTol, 100);
        double dOracle = test::BruteLineZone(points);
        EXPECT_LT(dZone, dOracle + kZoneTol)
            << "set " << k << ": zone " << dZone << " oracle " << dOracle;
        EXPECT_GT(dZone, dOracle - kZoneTol) << "set " << k << ": narrower than possible";
        ExpectLinePair(points, inner, outer, dZone);
        EXPECT_NEAR(line.GetPoint().z(), points[0].z(), 0.0);
        // The zone rests on its supports: at least two points on one bounding line and one on
        // the other, and the middle line half the zone from its farthest points.
        int nOnInner = 0;
        int nOnOuter = 0;
        double dWorst = 0.0;
        for (int i = 0; i < points.GetSize(); ++i) {
            if (std::fabs(test::Side(points[i], inner)) < kInside) ++nOnInner;
            if (std::fabs(test::Side(points[i], outer)) < kInside) ++nOnOuter;
            dWorst = std::max(dWorst, std::fabs(test::Side(points[i], line)));
        }
        EXPECT_GE(nOnInner, 1) << "set " << k;
        EXPECT_GE(nOnOuter, 1) << "set " << k;
        EXPECT_GE(nOnInner + nOnOuter, 3) << "set " << k << ": zone " << dZone;
        EXPECT_NEAR(2.0 * dWorst, dZone, kInside) << "set " << k;
    }
}

TEST(LineMinZone, SolvesATiltedPlaneAsItsOwnPlanarProblem) {
    test::Random rng;
    CNuPointArray flat = RandomPlanar(rng, 30, 1.0);
    double dExpected = test::BruteLineZone(flat);
    // Carry the points into a tilted plane by a rotation and a shift.
    CNuPointArray tilted(flat);
    for (int i = 0; i < tilted.GetSize(); ++i) {
        tilted[i].Rotate(35.0, CNuVector(1.0, 2.0, 0.5));
        tilted[i].Translate(3.0, -1.0, 7.0);
    }
    CNuLine line, inner, outer;
    double dZone = -1.0;
    line.FitMinZone(tilted, &dZone, &inner, &outer, kZoneTol, 100);
    EXPECT_NEAR(dZone, dExpected, kZoneTol);
    double dWorst = 0.0;
    for (int i = 0; i < tilted.GetSize(); ++i)
        dWorst = std::max(dWorst, tilted[i].DistanceTo(line));
    EXPECT_NEAR(2.0 * dWorst, dZone, kInside) << "the line lies midway in the zone";
    EXPECT_NEAR(inner.GetPoint().DistanceTo(outer), dZone, kInside);
}

TEST(LineMinZone, CollinearPointsGiveZoneZeroAndTheLeastSquaresLine) {
    CNuPointArray points = test::Points(
        {CNuPoint(0, 0, 1), CNuPoint(1, 2, 1), CNuPoint(2, 4, 1), CNuPoint(-1, -2, 1)});
    CNuLine zone, ls;
    double dZone = -1.0;
    zone.FitMinZone(points, &dZone, kZoneTol, 10);
    ls.Fit(points);
    EXPECT_EQ(dZone, 0.0);
    EXPECT_EQ(zone.GetDirection()[0], ls.GetDirection()[0]);
    EXPECT_EQ(zone.GetPoint().x(), ls.GetPoint().x());
    CNuLine inner, outer;
    zone.FitMinZone(points, &dZone, &inner, &outer, kZoneTol, 10);
    EXPECT_EQ(inner.GetPoint().y(), zone.GetPoint().y());
    EXPECT_EQ(outer.GetPoint().y(), zone.GetPoint().y());
}

// Two parallel edges 10 apart hold four supports, yet a slanted pair of bounding lines is about
// 3 apart: a parallel pair settles only its own chord, never the search.
TEST(LineMinZone, ParallelEdgesDoNotCutTheSearchShort) {
    CNuPointArray kite = test::Points(
        {CNuPoint(0, 0, 0), CNuPoint(0, 1, 0), CNuPoint(10, -1, 0), CNuPoint(10, 2, 0)});
    CNuLine line;
    double dZone = -1.0;
    line.FitMinZone(kite, &dZone, kZoneTol, 100);
    EXPECT_NEAR(dZone, test::BruteLineZone(kite), kZoneTol);
    EXPECT_LT(dZone, 3.0) << "zone " << dZone;
}

// The limit counts exchanges, and reaching it fails even when the last exchange found nothing
// to change: one exchange can never finish, the least limit that succeeds fails one lower with
// 212 located "CNuLine", and every larger limit gives the same zone.
TEST(LineMinZone, ReachingTheExchangeLimitIsNotConverged) {
    test::Random rng;
    CNuPointArray points = RandomPlanar(rng, 25, 1.0);
    CNuLine line;
    double dZone = -1.0;
    ExpectNuFailure<CNuBestfitException>([&] { line.FitMinZone(points, &dZone, kZoneTol, 1); }, 212,
                                         nullptr, "CNuLine");
    long lLeast = 0;
    for (long l = 2; l <= 50 && lLeast == 0; ++l)
        if (line.FitMinZoneEx(points, &dZone, kZoneTol, l) == eNuFitOk) lLeast = l;
    ASSERT_GT(lLeast, 1) << "no limit up to 50 sufficed";
    ExpectNuFailure<CNuBestfitException>(
        [&] { line.FitMinZone(points, &dZone, kZoneTol, lLeast - 1); }, 212, nullptr, "CNuLine");
    double dSaved = NuGetLengthTol();
    EXPECT_EQ(line.FitMinZoneEx(points, &dZone, kZoneTol, lLeast - 1), eNuFitNotConverged);
    EXPECT_EQ(NuGetLengthTol(), dSaved);
    double dFirst = -1.0;
    line.FitMinZone(points, &dFirst, kZoneTol, lLeast);
    for (long l : {lLeast + 1, lLeast + 7, 1000L}) {
        double dMore = -1.0;
        line.FitMinZone(points, &dMore, kZoneTol, l);
        EXPECT_EQ(dMore, dFirst) << "limit " << l;
    }
    EXPECT_NEAR(dFirst, test::BruteLineZone(points), kZoneTol);
}

TEST(PlaneMinZone, MatchesBruteForceOnRandomNearDegenerateAndGridSets) {
    test::Random rng;
    const CNuVector kSlabNormal(0.3, -0.2, 1.0);
    std::vector<CNuPointArray> sets;
    for (int k = 0; k < 6; ++k)
        sets.push_back(test::NearPlane(rng, kSlabNormal, rng.Integer(4, 25), 5.0, 0.5));
    sets.push_back(test::NearPlane(rng, kSlabNormal, 30, 5.0, 1e-7));
    // A thick random cloud, where edge-against-edge slabs compete with faces.
    CNuPointArray cloud(16);
    for (int i = 0; i < 16; ++i)
        cloud.Add(CNuPoint(rng.Uniform(-1, 1), rng.Uniform(-1, 1), rng.Uniform(-1, 1)));
    sets.push_back(cloud);
    // A grid with heights in a few levels: many equal slabs.
    CNuPointArray grid(25);
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 5; ++j)
            grid.Add(CNuPoint(i, j, (i + j) % 3 == 0 ? 0.5 : 0.0));
    sets.push_back(grid);
    for (std::size_t k = 0; k < sets.size(); ++k) {
        const CNuPointArray& points = sets[k];
        CNuPlane plane, inner, outer;
        double dZone = -1.0;
        plane.FitMinZone(points, &dZone, &inner, &outer, kZoneTol);
        double dOracle = test::BrutePlaneZone(points);
        EXPECT_LT(dZone, dOracle + 2.0 * kZoneTol)
            << "set " << k << ": zone " << dZone << " oracle " << dOracle;
        EXPECT_GT(dZone, dOracle - 2.0 * kZoneTol) << "set " << k;
        ExpectPlanePair(points, inner, outer, dZone);
    }
}

TEST(PlaneMinZone, ThreePointsGiveZoneZero) {
    CNuPointArray points = test::Points({CNuPoint(0, 0, 1), CNuPoint(2, 0, 1), CNuPoint(0, 3, 2)});
    CNuPlane plane;
    double dZone = -1.0;
    plane.FitMinZone(points, &dZone, kZoneTol);
    EXPECT_NEAR(dZone, 0.0, kInside);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(test::SignedDistance(points[i], plane), 0.0, kInside);
}

// Sets C01 to C08 are lines in a plane, C17 to C26 planes.
TEST(LineAndPlaneMinZone, MeetPtbLimitsOnTheCertifiedLinesAndPlanes) {
    if (test::RefDataDir().empty()) GTEST_SKIP() << "NUMORIX_REFDATA not set: no PTB data";
    for (int k : {1, 2, 3, 4, 5, 6, 7, 8, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26}) {
        std::string id = test::SetName("C", k);
        CNuPointArray points;
        std::vector<double> a;
        if (!test::ReadTracimSet("ptb-tracim-chebyshev", id, 7, &points, &a))
            GTEST_SKIP() << "PTB set " << id << " absent";
        CNuPoint ref(a[0], a[1], a[2]);
        CNuVector axis(a[3], a[4], a[5]);
        double dZone = -1.0;
        CNuLine line;
        CNuPlane plane;
        if (k <= 8) {
            line.FitMinZone(points, &dZone, 1e-9, 100);
            EXPECT_LT(ref.DistanceTo(line), test::kPtbPosition) << id;
            EXPECT_LT(test::AxisAngle(line.GetDirection(), axis), test::kPtbAngle) << id;
        } else {
            plane.FitMinZone(points, &dZone, 1e-9);
            EXPECT_LT(ref.DistanceTo(plane), test::kPtbPosition) << id;
            EXPECT_LT(test::AxisAngle(plane.GetNormal(), axis), test::kPtbAngle) << id;
        }
        EXPECT_NEAR(dZone, a[6], test::kPtbPosition) << id;
    }
}

// Far from the origin with a spread of 1e-6, and with a NaN coordinate: every fit answers with a
// result or a cause (its own, or the index failure that the decomposition raises on NaN and that
// passes through), never a hang or a crash. The far sets keep a tiny extent along
// one axis so that a result, when given, can be judged.
TEST(HostileData, EveryFitGivesACauseOrAResult) {
    test::Random rng;
    CNuPointArray far(30);
    for (int i = 0; i < 30; ++i)
        far.Add(CNuPoint(1e6 + rng.Uniform(0, 1e-6), 1e6 + rng.Uniform(0, 1e-6),
                         1e6 + rng.Uniform(0, 1e-12)));
    CNuPointArray nan =
        test::Points({CNuPoint(0, 0, 0), CNuPoint(1, 0, 0), CNuPoint(0, 1, 0),
                      CNuPoint(std::numeric_limits<double>::quiet_NaN(), 0, 0), CNuPoint(1, 1, 1)});
    for (const CNuPointArray* pSet : {&far, &nan}) {
        CNuLine line;
        CNuPlane plane;
        double dForm = 0.0;
        double dSum = 0.0;
        double dZone = 0.0;
        // A fit that returns on the far set gives a form within its extent.
        auto expectSmall = [&](const char* pszFit, const std::function<double()>& fit) {
            try {
                double d = fit();
                EXPECT_FALSE(pSet == &far && !(d < 2e-6)) << pszFit << " gave " << d;
            } catch (const CNuException&) {
            }
        };
        expectSmall("line", [&] { return line.Fit(*pSet, &dForm, &dSum), dForm; });
        expectSmall("plane", [&] { return plane.Fit(*pSet, &dForm, &dSum), dForm; });
        expectSmall("plane zone", [&] { return plane.FitMinZone(*pSet, &dZone, 1e-12), dZone; });
        CNuPointArray flat(*pSet);
        for (int i = 0; i < flat.GetSize(); ++i)
            flat[i].z() = 0.0;
        EXPECT_NE(line.FitMinZoneEx(flat, &dZone, 1e-12, 10), eNuFitNotConverged);
    }
}

}  // namespace
}  // namespace numorix
