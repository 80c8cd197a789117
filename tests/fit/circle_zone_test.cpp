// Circle zone fits. The minimum circumscribed and maximum inscribed circles against CGAL's exact
// answers, the minimum zone within the bounds of CGAL's least-area annulus (see
// cgal_circle_oracle.h) and equal to brute force over all supports on small sets: arcs, lobes,
// scattered points, offsets, tilts, radii from 1e-3 to 1e3. Sets whose answers are known exactly:
// degenerate ones, and ones on which many points tie. The exchange limit. What is no circle is
// refused; every loop ends on degenerate data.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "cgal_circle_oracle.h"
#include "fit_test_support.h"
#include "geometry_support.h"
#include "numorix/curves/circle.h"

namespace numorix {
namespace {

using oracle::SXY;
constexpr double kPi = 3.14159265358979323846;

// n points of a three-lobed profile (lobes 0.5 %, noise 0.1 % of the radius) over an arc, or with
// no arc scattered over the square of half-side dRadius, in a plane z = 0.5 or a random one whose
// origin lies dOffset from the world's. The oracles see the plane coordinates, the fits the
// points in space: a fit that mishandles the projection is caught.
struct SConfig {
    int n;
    double dArcDegrees, dRadius, dOffset;
    bool bTilted;
};

std::vector<SXY> Make(test::Random& rng, const SConfig& c, CNuPointArray* pPoints) {
    test::Frame f{CNuPoint(0, 0, 0), CNuVector(1, 0, 0), CNuVector(0, 1, 0), CNuVector(0, 0, 1)};
    if (c.bTilted) f = test::RandomFrame(rng);
    f.origin = CNuPoint(f.origin.x() + c.dOffset, f.origin.y() - c.dOffset, f.origin.z() + 0.5);
    std::vector<SXY> q;
    double dStart = rng.Uniform(0.0, 360.0);
    for (int i = 0; i < c.n; ++i) {
        double t = (dStart + rng.Uniform(0.0, c.dArcDegrees)) * kPi / 180.0;
        double r = c.dRadius * (1.0 + 0.005 * std::cos(3.0 * t) + rng.Uniform(-1e-3, 1e-3));
        q.push_back({0.3 * c.dRadius + r * std::cos(t), -0.2 * c.dRadius + r * std::sin(t)});
        if (c.dArcDegrees == 0.0)
            q.back() = {rng.Uniform(-1, 1) * c.dRadius, rng.Uniform(-1, 1) * c.dRadius};
        pPoints->Add(f.World(q.back().x, q.back().y));
    }
    return q;
}

// The greatest distance of the points from a circle's centre (dSign 1), or less the least (-1).
double Reach(const CNuPointArray& points, const CNuCircle& c, double dSign) {
    double d = -1e300;
    for (int i = 0; i < points.GetSize(); ++i)
        d = std::max(d, dSign * test::Gap(points[i], c.GetCentre()));
    return d;
}

// Least annulus width over all candidate centres: the meeting points of the perpendicular
// bisectors of two pairs of points (2 + 2 points on the two circles, or 3 + 1 when the pairs
// share a point, whose centre is the circumcentre of the three).
double BruteMinZone(const std::vector<SXY>& p) {
    std::vector<SXY> normals;  // bisector of a and b: 2 (a - b) . c = |a|^2 - |b|^2
    std::vector<double> rhs;
    for (std::size_t i = 0; i < p.size(); ++i)
        for (std::size_t j = i + 1; j < p.size(); ++j) {
            normals.push_back({2.0 * (p[i].x - p[j].x), 2.0 * (p[i].y - p[j].y)});
            rhs.push_back(p[i].x * p[i].x + p[i].y * p[i].y - p[j].x * p[j].x - p[j].y * p[j].y);
        }
    double dBest = 1e300;
    for (std::size_t a = 0; a < normals.size(); ++a)
        for (std::size_t b = a + 1; b < normals.size(); ++b) {
            const SXY &u = normals[a], &v = normals[b];
            double det = u.x * v.y - v.x * u.y;
            if (std::fabs(det) < 1e-12) continue;
            SXY c{(rhs[a] * v.y - rhs[b] * u.y) / det, (u.x * rhs[b] - v.x * rhs[a]) / det};
            double dMin = 1e300, dMax = 0.0;
            for (const SXY& q : p) {
                dMin = std::min(dMin, std::hypot(q.x - c.x, q.y - c.y));
                dMax = std::max(dMax, std::hypot(q.x - c.x, q.y - c.y));
            }
            dBest = std::min(dBest, dMax - dMin);
        }
    return dBest;
}

TEST(CircleZoneFits, AgreeWithCgalAndWithBruteForceOnSmallSets) {
    std::vector<SConfig> configs{{3, 360, 10, 0, true},    {12, 0, 5, 0, false},
                                 {25, 0, 5, 0, true},      {20, 360, 10, 0, false},
                                 {30, 360, 10, 0, true},   {15, 120, 10, 0, false},
                                 {10000, 360, 25, 0, true}};
    for (double dArc : {360.0, 180.0, 90.0, 30.0})
        for (int n : {10, 100, 2000})
            configs.push_back({n, dArc, 10.0, 0.0, false});
    for (double dRadius : {1e-3, 1.0, 1e3})
        for (bool bTilted : {false, true})
            configs.push_back({500, 360.0, dRadius, 1e3, bTilted});
    test::Random rng;
    for (const SConfig& c : configs) {
        CNuPointArray points;
        std::vector<SXY> plane = Make(rng, c, &points);
        SCOPED_TRACE(testing::Message()
                     << "n " << c.n << ", arc " << c.dArcDegrees << ", radius " << c.dRadius
                     << ", offset " << c.dOffset << ", tilted " << c.bTilted);
        // The fits are asked for 1e-9 of the radius; coordinates far from the origin round at
        // 1e-16 of the offset, grown by the projection. An objective may miss by a few such.
        // In a plane z = const the zone is found in world coordinates, where the bisector
        // intercepts |a|^2 - |b|^2 cancel: the centre moves by about 1e-16 offset^2 / radius.
        double dTol = 1e-9 * c.dRadius + 1e-14 * c.dOffset, dSlack = 20.0 * dTol;
        double dZoneSlack = dSlack + (c.bTilted ? 0.0 : 4e-16 * c.dOffset * c.dOffset / c.dRadius);
        CNuCircle min(1.0), max(1.0), zone(1.0), inner(1.0), outer(1.0);
        double dZone = -1.0;
        ASSERT_NO_THROW(min.FitMin(points, dTol));
        EXPECT_NEAR(min.GetRadius(), oracle::MinEnclosingCircle(plane).r, dSlack);
        EXPECT_LE(Reach(points, min, 1.0), min.GetRadius() + dSlack);
        // The inscribed circle is the metrological one of closed profiles only: on an arc the
        // largest empty circle is not bounded by the profile.
        if (c.dArcDegrees == 360.0 && c.n > 3) {
            ASSERT_NO_THROW(max.FitMax(points, dTol));
            EXPECT_NEAR(max.GetRadius(), oracle::LargestEmptyCircle(plane).r, dSlack);
            EXPECT_GE(-Reach(points, max, -1.0), max.GetRadius() - dSlack);
        }
        // No wider than the least-area annulus (A), and w (R + r) >= w_A (R_A + r_A).
        ASSERT_NO_THROW(zone.FitMinZone(points, &dZone, &inner, &outer, dTol, 1000));
        oracle::SAnnulusXY a = oracle::MinAreaAnnulus(plane);
        EXPECT_LE(dZone, a.rOuter - a.rInner + dZoneSlack) << "CGAL " << a.rOuter - a.rInner;
        EXPECT_GE(dZone * (inner.GetRadius() + outer.GetRadius()),
                  (a.rOuter - a.rInner) * (a.rOuter + a.rInner) - dZoneSlack * c.dRadius);
        EXPECT_NEAR(outer.GetRadius() - inner.GetRadius(), dZone, dZoneSlack);
        EXPECT_LE(Reach(points, zone, 1.0) - zone.GetRadius(), dZone / 2 + dZoneSlack);
        EXPECT_LE(zone.GetRadius() + Reach(points, zone, -1.0), dZone / 2 + dZoneSlack);
        if (c.n > 3 && c.n <= 30) {
            EXPECT_NEAR(dZone, BruteMinZone(plane), dSlack);
        }
    }
}

// Answers known exactly. Degenerate sets are solved directly: one point, collinear points (zone
// half the length less the nearest distance from the midpoint; circumscribed circle on the two
// extremes), coincident points, three points, two on each of two concentric circles. On the
// others many points tie: the walks must take points already on the circle as contacts, give
// one up for another at the same radius, and stop when the tied points enclose the centre. A
// regular polygon's circumcircle is both its circles (points only), a grid's inscribed circle that
// of a cell; with its centre a hexagon's inscribed circle passes through the centre. NaN: not
// fitted.
TEST(CircleZoneFits, GiveTheExactAnswersOfDegenerateAndTiedSets) {
    constexpr double kExactTol = 1e-12;  // rounding of coordinates of order 1 to 10, tilted
    const double x = std::nan(""), r2 = std::sqrt(2.0), r5 = std::sqrt(5.0);
    auto polygon = [](int k, double dPhase, int m) {
        std::vector<SXY> q;
        for (int i = 0; i < m; ++i)
            q.push_back({2.0 * std::cos(dPhase + 2.0 * kPi * i / k),
                         2.0 * std::sin(dPhase + 2.0 * kPi * i / k)});
        return q;
    };
    auto grid = [](int nx, int ny, double dx, double dy) {
        std::vector<SXY> q;
        for (int i = 0; i < nx * ny; ++i)
            q.push_back({i / ny * dx, i % ny * dy});
        return q;
    };
    std::vector<SXY> centred = polygon(6, 0.0, 6);
    centred.push_back({0.0, 0.0});
    const struct {
        std::vector<SXY> q;
        double dZone, dMin, dMax;
    } cases[] = {{{{1, 2}}, 0.0, 0.0, x},
                 {{{0, 0}, {1, 0}, {4, 0}}, 1.0, 2.0, x},
                 {{{2, 2}, {2, 2}}, 0.0, 0.0, x},
                 {{{3, 0}, {-3, 0}, {0, 4}, {0, -4}}, 1.0, 4.0, x},
                 {polygon(3, 0.3, 3), 0.0, 2.0, 2.0},
                 {polygon(4, 0.1, 4), 0.0, 2.0, 2.0},
                 {polygon(6, 0.0, 6), 0.0, 2.0, 2.0},
                 {polygon(8, 0.2, 8), 0.0, 2.0, 2.0},
                 {polygon(12, 0.0, 12), 0.0, 2.0, 2.0},
                 {polygon(8, 0.0, 5), 0.0, 2.0, x},
                 {centred, x, 2.0, 2.0 / std::sqrt(3.0)},
                 {grid(2, 2, 4.0, 2.0), 0.0, r5, r5},
                 {grid(3, 3, 2.0, 1.0), x, r5, r5 / 2},
                 {grid(4, 4, 1.0, 1.0), x, 1.5 * r2, r2 / 2}};
    test::Random rng;
    int nRow = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE("row " + std::to_string(nRow++));
        test::Frame f = test::RandomFrame(rng);
        CNuPointArray points;
        for (const SXY& q : c.q)
            points.Add(f.World(q.x, q.y));
        CNuCircle zone(1.0), min(1.0), max(1.0);
        double dZone = -1.0;
        if (!std::isnan(c.dZone)) {
            ASSERT_NO_THROW(zone.FitMinZone(points, &dZone, 1e-9, 5));
            EXPECT_NEAR(dZone, c.dZone, kExactTol);
            EXPECT_LE(Reach(points, zone, 1.0) - zone.GetRadius(), dZone / 2 + kExactTol);
            EXPECT_LE(zone.GetRadius() + Reach(points, zone, -1.0), dZone / 2 + kExactTol);
        }
        ASSERT_NO_THROW(min.FitMin(points, 1e-9));
        EXPECT_NEAR(min.GetRadius(), c.dMin, kExactTol);
        EXPECT_LE(Reach(points, min, 1.0), min.GetRadius() + kExactTol);
        if (std::isnan(c.dMax)) continue;
        ASSERT_NO_THROW(max.FitMax(points, 1e-9));
        EXPECT_NEAR(max.GetRadius(), c.dMax, kExactTol);
        EXPECT_GE(-Reach(points, max, -1.0), max.GetRadius() - kExactTol);
    }
}

// What is no circle is refused (211), not returned: a tolerance that is not a number, the circle
// through points 1e-150 apart (0 / 0), an inscribed circle of points nearly in line far from their
// mean that would hold a point. Collinear points near the largest double keep a finite centre.
TEST(CircleZoneFits, RefuseWhatIsNoCircleAndSolveCollinearPointsNearTheLargestDouble) {
    const double s = 1e-150, dBig = 0x1.8c13dfd6eeb22p+1023;
    const CNuPoint a(-0x1.28838daaef5bep+7, 0x1.30322fd403b61p+9, 0x1.c473f6a97b64p+8),
        b(-0x1.1d154e264f362p+9, -0x1.44b3dd7c42a9ap+8, 0x1.97d0ad8e7d177p+8),
        c(0x1.04fb2d5c1edf1p+9, -0x1.4c0fdb9dbad0bp+6, -0x1.19bc2b15fa8c2p+9);
    const CNuPointArray mixed = test::Points({a, a, a, a, a, a, a, a, a, a, b, a, a, c});
    CNuPointArray huge, tiny;
    for (double x : {-1.0, -0.5, 0.0, 0.25, 0.5})
        huge.Add(CNuPoint(x, dBig, -40.0));
    for (SXY q : std::vector<SXY>{{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {0.6, 0.8}})
        tiny.Add(CNuPoint(s * q.x, s * q.y, -296.9));
    const CNuPointArray thin = test::Points({{0x1.bdf662560447ep+3, -0x1.556ec1b3fa43bp+0, 0},
                                             {-0x1.47803f222f8d8p+3, -0x1.31b0f3799dc97p+3, 0},
                                             {0x1.2fceaf577dde5p+57, 0x1.6d1d6cf780557p+54, 0},
                                             {0x1.6ac19478f7037p+57, 0x1.b3f5a05484b28p+54, 0},
                                             {0x1.bdf662560447ep+3, -0x1.556ec1b3fa43bp+0, 0}});
    CNuCircle circle(1.0);
    double dZone = -1.0;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { circle.FitMinZone(mixed, &dZone, std::nan(""), 8); }, 211, nullptr, "CNuCircle"},
        {[&] { circle.FitMin(mixed, HUGE_VAL); }, 211, nullptr, "CNuCircle"},
        {[&] { circle.FitMax(mixed, -HUGE_VAL); }, 211, nullptr, "CNuCircle"},
        {[&] { circle.FitMax(thin, 1e-12); }, 211, nullptr, "CNuCircle"},
    });
    EXPECT_EQ(circle.FitMinZoneEx(tiny, &dZone, 1e-300, 100), eNuFitFailed)
        << "radius " << circle.GetRadius();
    circle.FitMinZone(huge, &dZone, 1e-5, 1075);  // from x = -1 to 0.5, nearest 0.25 from -0.25
    EXPECT_EQ(std::vector<double>({dZone, circle.GetRadius(), circle.GetCentre().y()}),
              std::vector<double>({0.5, 0.5, dBig}));
    // Two points whose distance from their midpoint rounds past half their distance: zone 0.
    circle.FitMinZone(test::Points({{-0x1.a7f148a9baa7dp-1, 0x1.1f154a5761b14p-1, 0},
                                    {-0x1.fae04be85e5d2p-1, 0x1.210386db6d55bp-3, 0}}),
                      &dZone, 0.1, 6);
    EXPECT_EQ(dZone, 0.0);
}

// The Gauss-Newton loop, the zone's exchange and the walks end (the test process detects a hang)
// on an octagon given twice (ties) of radius 1, 0 (coincident), 1e-150 and 1e200, about the origin
// and 1e15 from it, with tolerances of zero, below zero, tiny and huge.
TEST(CircleFits, EndOnDegenerateDataWithAnyTolerance) {
    for (double dScale : {1.0, 0.0, 1e-150, 1e200})
        for (double dOffset : {0.0, 1e15})
            for (double dTol : {0.0, -1.0, 1e-300, 1e3}) {
                CNuPointArray p;
                for (int i = 0; i < 16; ++i)
                    p.Add(CNuPoint(dOffset + dScale * std::cos(kPi * i / 4),
                                   dOffset + dScale * std::sin(kPi * i / 4), -dOffset));
                test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, dTol);
                CNuCircle c(1.0);
                double dZone = 0.0;
                c.FitEx(p, 1000);  // the Ex forms catch every refusal
                c.FitMinZoneEx(p, &dZone, dTol, 1000);
                c.FitMinEx(p, dTol);
                c.FitMaxEx(p, dTol);
            }
}

// Points of the PTB cylinders seen along trial axes (z = 0): many annuli lie within the tolerance
// of one width, and the exchange cycles among tied candidates. In the cycle of the six points
// (C50, near its axis) a candidate holds them all; in that of the ten (C50) none does, and the
// scan goes on against the first candidate alone; the twelve (C39, far from its axis) cycle that
// way too and end without dropping points. All end at the minimum zone, not at the limit.
TEST(CircleZoneFits, EndAnExchangeThatCyclesAmongTiedAnnuliAtTheMinimumZone) {
    constexpr double kTol = 1e-9;  // the cylinder's; a point may lie outside the zone by as much
    const std::vector<SXY> sets[] = {{{0x1.da6611fd9422cp+5, -0x1.a85fccea45b52p+5},
                                      {0x1.da62c1941da76p+5, -0x1.a85d64b13a217p+5},
                                      {0x1.f24528690dad3p+5, -0x1.b020d73d5c9b9p+5},
                                      {0x1.da651575d53a3p+5, -0x1.b7e298fd6832p+5},
                                      {0x1.e0fd639126946p+5, -0x1.bcb092a2210e4p+5},
                                      {0x1.e925eaba9e0fap+5, -0x1.bcacefc0a878p+5}},
                                     {{0x1.da6611fd9422cp+5, -0x1.a85fccea45b52p+5},
                                      {0x1.da62c1941da76p+5, -0x1.a85d64b13a217p+5},
                                      {0x1.d7dcfee2baa9cp+5, -0x1.b020d73126da2p+5},
                                      {0x1.e9271b3bf5bf6p+5, -0x1.bcb099557aea6p+5},
                                      {0x1.efc0e0761531fp+5, -0x1.a85e036b27f15p+5},
                                      {0x1.e926d7418f85p+5, -0x1.a391e67428e55p+5},
                                      {0x1.e9264e226101p+5, -0x1.a3938ca70ae6fp+5},
                                      {0x1.da64a760acfa6p+5, -0x1.b7e2e8f27b38p+5},
                                      {0x1.efc12f26a9316p+5, -0x1.b7e3e4527f451p+5},
                                      {0x1.efc0c167fd77ap+5, -0x1.b7e394674a371p+5}},
                                     {{-0x1.92dae5d42da0ap+7, -0x1.b616832d1dbdep+7},
                                      {-0x1.955191b23db3ap+7, -0x1.b00ce42f3e2cap+7},
                                      {-0x1.c27a9450619aap+7, -0x1.c20fb3f12afd1p+7},
                                      {-0x1.b6fe3505e85dp+7, -0x1.d15c84691a4e1p+7},
                                      {-0x1.960a6836b93fap+7, -0x1.cc5d4ad60c51ap+7},
                                      {-0x1.aa6c1ba08ae56p+7, -0x1.ab3db129ce7bdp+7},
                                      {-0x1.71a837107a7f2p+7, -0x1.a04171e3cc2a6p+7},
                                      {-0x1.7d249da1204ep+7, -0x1.90f49f44792dap+7},
                                      {-0x1.a147c36709a68p+7, -0x1.ac3a91524d62cp+7},
                                      {-0x1.9ed17a8c1fc5ep+7, -0x1.b2445f54b0662p+7},
                                      {-0x1.905af1dd95fbdp+7, -0x1.bb7148957673fp+7},
                                      {-0x1.b55565ae3bd84p+7, -0x1.a53c83046f4b6p+7}}};
    for (const std::vector<SXY>& q : sets) {
        SCOPED_TRACE(std::to_string(q.size()) + " points");
        CNuPointArray points;
        for (const SXY& s : q)
            points.Add(CNuPoint(s.x, s.y, 0.0));
        CNuCircle zone(1.0);
        double dZone = -1.0;
        ASSERT_NO_THROW(zone.FitMinZone(points, &dZone, kTol, 1000));
        EXPECT_NEAR(dZone, BruteMinZone(q), 2.0 * kTol);
        EXPECT_LE(Reach(points, zone, 1.0) - zone.GetRadius(), dZone / 2 + kTol);
        EXPECT_LE(zone.GetRadius() + Reach(points, zone, -1.0), dZone / 2 + kTol);
    }
}

// A point can be found outside the zone while it is already active: outside a tied candidate
// (coarse tolerance), or on the annulus when the tolerance is below zero. It then enters the
// active set twice, and a set as long as the data no longer holds all of them: the exchange must
// go on until it does. Six points of size 1 at a tolerance of 0.1, in every order, and four
// points in a denormal plane at a tolerance of -1.9e-318 (found by fuzzing).
TEST(CircleZoneFits, AnActivePointFoundAgainDoesNotEndTheExchange) {
    const std::vector<SXY> six = {{0.53586355794903773, -0.37708489473940204},
                                  {-0.020091669663617379, 0.52189957251836427},
                                  {-0.4655123820114988, -0.9648987972055435},
                                  {0.47526272709636902, 0.1493550855886705},
                                  {0.62314349361301724, 0.72787676315432892},
                                  {-0.14023838390147367, 0.35089192248398388}};
    constexpr double kTol = 0.1;  // ties within it make either half width uncertain by as much
    const double dBrute = BruteMinZone(six);
    std::vector<int> order = {0, 1, 2, 3, 4, 5};
    CNuCircle zone(1.0);
    double dZone = -1.0;
    do {
        CNuPointArray points;
        for (int i : order)
            points.Add(CNuPoint(six[i].x, six[i].y, 0.0));
        ASSERT_NO_THROW(zone.FitMinZone(points, &dZone, kTol, 6));
        EXPECT_NEAR(dZone, dBrute, 2.0 * kTol);
        EXPECT_LE(Reach(points, zone, 1.0) - zone.GetRadius(), dZone / 2 + kTol);
        EXPECT_LE(zone.GetRadius() + Reach(points, zone, -1.0), dZone / 2 + kTol);
    } while (std::next_permutation(order.begin(), order.end()));
    const CNuPointArray four = test::Points({{-0.53866121055845406, 0.43272131907164058, -3.1e-318},
                                             {-0.58346663662101683, 0.9390437169322432, -3.1e-318},
                                             {0.60455642936201914, 0.010932235444799154, -3.1e-318},
                                             {0.44389015816256827, -0.63412684396152796, -3.1e-318}});
    zone.FitMinZone(four, &dZone, -1.865305320621959e-318, 100);
    EXPECT_NEAR(dZone, BruteMinZone({{-0.53866121055845406, 0.43272131907164058},
                                           {-0.58346663662101683, 0.9390437169322432},
                                           {0.60455642936201914, 0.010932235444799154},
                                           {0.44389015816256827, -0.63412684396152796}}),
                1e-12);
}

TEST(CircleZoneFits, ReachingTheExchangeLimitIsNotConvergence) {
    test::Random rng;
    CNuPointArray points;
    Make(rng, {30, 360.0, 10.0, 0.0, false}, &points);
    CNuCircle c(1.0);
    double dZone = -1.0;
    test::ExpectLimitRule([&](long l) { c.FitMinZone(points, &dZone, 1e-9, l); },
                          [&](long l) { return c.FitMinZoneEx(points, &dZone, 1e-9, l); }, 100,
                          "CNuCircle");
}

}  // namespace
}  // namespace numorix
