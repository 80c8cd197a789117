// Circle zone fits. The minimum circumscribed and maximum inscribed circles against CGAL's exact
// answers, the minimum zone within the bounds of CGAL's least-area annulus (see
// cgal_circle_oracle.h) and equal to brute force over all supports on small sets: arcs, lobes,
// scattered points, offsets, tilts, radii from 1e-3 to 1e3. Sets whose answers are known exactly
// although many points tie on them; the degenerate sets solved directly; the exchange limit.
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

// Points given by their coordinates in a plane frame, which the oracles see, and in space, which
// the fits see: a fit that mishandles the projection is caught.
struct SSet {
    std::vector<SXY> plane;
    CNuPointArray points;
    test::Frame frame;
};

SSet InFrame(const std::vector<SXY>& q, const test::Frame& f) {
    SSet s{q, CNuPointArray(static_cast<int>(q.size())), f};
    for (const SXY& p : q)
        s.points.Add(f.World(p.x, p.y));
    return s;
}

// n points of a three-lobed profile (lobes 0.5 %, noise 0.1 % of the radius) over an arc, or
// scattered over the square of half-side dRadius, in a plane z = 0.5 or a random one, whose
// origin lies dOffset from the world's.
struct SConfig {
    int n;
    double dArcDegrees;
    double dRadius;
    double dOffset;
    bool bTilted;
    bool bScatter = false;
};

SSet Make(test::Random& rng, const SConfig& c) {
    test::Frame f{CNuPoint(0, 0, 0), CNuVector(1, 0, 0), CNuVector(0, 1, 0), CNuVector(0, 0, 1)};
    if (c.bTilted) f = test::RandomFrame(rng);
    f.origin = CNuPoint(f.origin.x() + c.dOffset, f.origin.y() - c.dOffset, f.origin.z() + 0.5);
    std::vector<SXY> q;
    double dStart = rng.Uniform(0.0, 360.0);
    for (int i = 0; i < c.n; ++i) {
        double t = (dStart + rng.Uniform(0.0, c.dArcDegrees)) * kPi / 180.0;
        double r = c.dRadius * (1.0 + 0.005 * std::cos(3.0 * t) + rng.Uniform(-1e-3, 1e-3));
        q.push_back({0.3 * c.dRadius + r * std::cos(t), -0.2 * c.dRadius + r * std::sin(t)});
        if (c.bScatter) q.back() = {rng.Uniform(-1, 1) * c.dRadius, rng.Uniform(-1, 1) * c.dRadius};
    }
    return InFrame(q, f);
}

// Least and greatest distance of the points from a fitted circle's centre.
void DistanceRange(const CNuPointArray& points, const CNuCircle& c, double* pdMin, double* pdMax) {
    *pdMin = 1e300;
    *pdMax = -1e300;
    for (int i = 0; i < points.GetSize(); ++i) {
        *pdMin = std::min(*pdMin, test::Gap(points[i], c.GetCentre()));
        *pdMax = std::max(*pdMax, test::Gap(points[i], c.GetCentre()));
    }
}

// Least annulus width over the centres of all 4-point supports, paired 2 + 2 on the two circles
// (a 3 + 1 support's centre, the circumcentre of the three, is that of each of its pairings).
double BruteMinZone(const std::vector<SXY>& p) {
    double dBest = 1e300;
    auto bisect = [&](const SXY& a, const SXY& b, const SXY& c, const SXY& d) {
        double d1x = a.x - b.x, d1y = a.y - b.y, d2x = c.x - d.x, d2y = c.y - d.y;
        double t1 = a.x * a.x + a.y * a.y - b.x * b.x - b.y * b.y;
        double t2 = c.x * c.x + c.y * c.y - d.x * d.x - d.y * d.y;
        double det = 2.0 * (d1x * d2y - d2x * d1y);
        if (std::fabs(det) < 1e-12) return;
        double x = (d2y * t1 - d1y * t2) / det, y = (d1x * t2 - d2x * t1) / det;
        double dMin = 1e300, dMax = -1e300;
        for (const SXY& q : p) {
            dMin = std::min(dMin, std::hypot(q.x - x, q.y - y));
            dMax = std::max(dMax, std::hypot(q.x - x, q.y - y));
        }
        dBest = std::min(dBest, dMax - dMin);
    };
    for (std::size_t i = 0; i < p.size(); ++i)
        for (std::size_t j = i + 1; j < p.size(); ++j)
            for (std::size_t k = j + 1; k < p.size(); ++k)
                for (std::size_t l = k + 1; l < p.size(); ++l) {
                    bisect(p[i], p[j], p[k], p[l]);
                    bisect(p[i], p[k], p[j], p[l]);
                    bisect(p[i], p[l], p[j], p[k]);
                }
    return dBest;
}

TEST(CircleZoneFits, AgreeWithCgalAndWithBruteForceOnSmallSets) {
    std::vector<SConfig> configs{{3, 360, 10, 0, true},       {12, 360, 5, 0, false, true},
                                 {25, 360, 5, 0, true, true}, {20, 360, 10, 0, false},
                                 {30, 360, 10, 0, true},      {15, 120, 10, 0, false},
                                 {10000, 360, 25, 0, true}};
    for (double dArc : {360.0, 180.0, 90.0, 30.0})
        for (int n : {10, 100, 2000})
            configs.push_back({n, dArc, 10.0, 0.0, false});
    for (double dRadius : {1e-3, 1.0, 1e3})
        for (bool bTilted : {false, true})
            configs.push_back({500, 360.0, dRadius, 1e3, bTilted});
    test::Random rng;
    for (const SConfig& c : configs) {
        SSet s = Make(rng, c);
        SCOPED_TRACE("n " + std::to_string(c.n) + " arc " + std::to_string(c.dArcDegrees) +
                     " radius " + std::to_string(c.dRadius) + " offset " +
                     std::to_string(c.dOffset) + (c.bTilted ? " tilted" : "") +
                     (c.bScatter ? " scattered" : ""));
        // The fits are asked for 1e-9 of the radius; coordinates far from the origin round at
        // 1e-16 of the offset, grown by the projection. An objective may miss by a few such.
        // In a plane z = const the zone is found in world coordinates, where the bisector
        // intercepts |a|^2 - |b|^2 cancel: the centre moves by about 1e-16 offset^2 / radius.
        double dTol = 1e-9 * c.dRadius + 1e-14 * c.dOffset, dSlack = 20.0 * dTol;
        double dZoneSlack = dSlack + (c.bTilted ? 0.0 : 4e-16 * c.dOffset * c.dOffset / c.dRadius);
        CNuCircle min(1.0), max(1.0), zone(1.0), inner(1.0), outer(1.0);
        double dZone = -1.0, dLeast = 0.0, dMost = 0.0;
        ASSERT_NO_THROW(min.FitMin(s.points, dTol));
        EXPECT_NEAR(min.GetRadius(), oracle::MinEnclosingCircle(s.plane).r, dSlack);
        DistanceRange(s.points, min, &dLeast, &dMost);
        EXPECT_LE(dMost, min.GetRadius() + dSlack);
        // The inscribed circle is the metrological one of closed profiles only: on an arc the
        // largest empty circle is not bounded by the profile.
        if (c.dArcDegrees == 360.0 && !c.bScatter && c.n > 3) {
            ASSERT_NO_THROW(max.FitMax(s.points, dTol));
            EXPECT_NEAR(max.GetRadius(), oracle::LargestEmptyCircle(s.plane).r, dSlack);
            DistanceRange(s.points, max, &dLeast, &dMost);
            EXPECT_GE(dLeast, max.GetRadius() - dSlack);
        }
        // No wider than the least-area annulus (A), and w (R + r) >= w_A (R_A + r_A).
        ASSERT_NO_THROW(zone.FitMinZone(s.points, &dZone, &inner, &outer, dTol, 1000));
        oracle::SAnnulusXY a = oracle::MinAreaAnnulus(s.plane);
        EXPECT_LE(dZone, a.rOuter - a.rInner + dZoneSlack) << "CGAL " << a.rOuter - a.rInner;
        EXPECT_GE(dZone * (inner.GetRadius() + outer.GetRadius()),
                  (a.rOuter - a.rInner) * (a.rOuter + a.rInner) - dZoneSlack * c.dRadius);
        EXPECT_NEAR(outer.GetRadius() - inner.GetRadius(), dZone, dZoneSlack);
        DistanceRange(s.points, zone, &dLeast, &dMost);
        EXPECT_LE(dMost - zone.GetRadius(), dZone / 2 + dZoneSlack);
        EXPECT_LE(zone.GetRadius() - dLeast, dZone / 2 + dZoneSlack);
        if (c.n > 3 && c.n <= 30) {
            EXPECT_NEAR(dZone, BruteMinZone(s.plane), dSlack);
        }
    }
}

// k points evenly on a circle of radius 2 about the origin from the angle dPhase (the first m of
// them when m > 0), and an nx by ny grid of steps dx and dy from the origin.
std::vector<SXY> Polygon(int k, double dPhase, int m = 0) {
    std::vector<SXY> q;
    for (int i = 0; i < (m > 0 ? m : k); ++i)
        q.push_back({2.0 * std::cos(dPhase + 2.0 * kPi * i / k),
                     2.0 * std::sin(dPhase + 2.0 * kPi * i / k)});
    return q;
}
std::vector<SXY> Grid(int nx, int ny, double dx, double dy) {
    std::vector<SXY> q;
    for (int i = 0; i < nx * ny; ++i)
        q.push_back({i / ny * dx, i % ny * dy});
    return q;
}

// Answers on which three or more points tie: the walks must take points already on the circle
// as contacts, give one up for another at the same radius, and stop when the tied points
// enclose the centre. A regular polygon's circumcircle is both its circles (points only); a
// grid's inscribed circle is any cell's (centre not checked); the half circle has none.
TEST(CircleZoneFits, TiedContactsGiveTheExactlyKnownCircles) {
    constexpr double kTie = 1e-12;  // rounding of coordinates of order 1 to 10 in a tilted plane
    const double kNone = std::nan("");
    struct SCase {
        std::vector<SXY> plane;
        double dMin;
        SXY minCentre;
        double dMax;
        SXY maxCentre;
    };
    std::vector<SXY> centred = Polygon(6, 0.0);
    centred.push_back({0.0, 0.0});
    const SCase cases[] = {
        {Polygon(3, 0.3), 2.0, {0, 0}, 2.0, {0, 0}},
        {Polygon(4, 0.1), 2.0, {0, 0}, 2.0, {0, 0}},
        {Polygon(5, 0.0), 2.0, {0, 0}, 2.0, {0, 0}},
        {Polygon(6, 0.0), 2.0, {0, 0}, 2.0, {0, 0}},
        {Polygon(8, 0.2), 2.0, {0, 0}, 2.0, {0, 0}},
        {Polygon(12, 0.0), 2.0, {0, 0}, 2.0, {0, 0}},
        {Polygon(8, 0.0, 5), 2.0, {0, 0}, kNone, {kNone, 0}},
        {centred, 2.0, {0, 0}, 2.0 / std::sqrt(3.0), {kNone, 0}},
        {Grid(2, 2, 4.0, 2.0), std::sqrt(5.0), {2, 1}, std::sqrt(5.0), {2, 1}},
        {Grid(3, 3, 2.0, 1.0), std::sqrt(5.0), {2, 1}, std::sqrt(1.25), {kNone, 0}},
        {Grid(4, 4, 1.0, 1.0), 1.5 * std::sqrt(2.0), {1.5, 1.5}, std::sqrt(0.5), {kNone, 0}},
    };
    test::Random rng;
    int nRow = 0;
    for (const SCase& row : cases) {
        SCOPED_TRACE("row " + std::to_string(nRow++));
        SSet s = InFrame(row.plane, test::RandomFrame(rng));
        CNuCircle min(1.0), max(1.0);
        double dLeast = 0.0, dMost = 0.0;
        ASSERT_NO_THROW(min.FitMin(s.points, 1e-9));
        EXPECT_NEAR(min.GetRadius(), row.dMin, kTie);
        EXPECT_TRUE(test::PointsNear(min.GetCentre(),
                                     s.frame.World(row.minCentre.x, row.minCentre.y), kTie));
        if (std::isnan(row.dMax)) continue;
        ASSERT_NO_THROW(max.FitMax(s.points, 1e-9));
        EXPECT_NEAR(max.GetRadius(), row.dMax, kTie);
        DistanceRange(s.points, max, &dLeast, &dMost);
        EXPECT_GE(dLeast, max.GetRadius() - kTie);
        if (!std::isnan(row.maxCentre.x)) {
            EXPECT_TRUE(test::PointsNear(max.GetCentre(),
                                         s.frame.World(row.maxCentre.x, row.maxCentre.y), kTie));
        }
    }
}

// One point, collinear points (half the length less the nearest distance from the midpoint),
// three points (the exact circle) and two points on each of two concentric circles are zoned
// without an exchange; the circumscribed circle of collinear or coincident points is their
// smallest enclosing circle.
TEST(CircleZoneFits, DegenerateSetsAreSolvedDirectly) {
    constexpr double kDirect = 1e-13;  // a few operations on coordinates of order 1 to 5
    struct SCase {
        std::vector<CNuPoint> points;
        double dZone;  // negative: the circumscribed circle
        double dRadius;
        CNuPoint centre;
    };
    const SCase cases[] = {
        {{CNuPoint(1, 2, 3)}, 0.0, 0.0, CNuPoint(1, 2, 3)},
        {{CNuPoint(0, 0, 0), CNuPoint(1, 0, 0), CNuPoint(4, 0, 0)}, 1.0, 1.5, CNuPoint(2, 0, 0)},
        {{CNuPoint(5, 0, 0), CNuPoint(0, 5, 0), CNuPoint(-5, 0, 0)}, 0.0, 5.0, CNuPoint(0, 0, 0)},
        {{CNuPoint(3, 0, 0), CNuPoint(-3, 0, 0), CNuPoint(0, 4, 0), CNuPoint(0, -4, 0)},
         1.0,
         3.5,
         CNuPoint(0, 0, 0)},
        {{CNuPoint(0, 0, 0), CNuPoint(1, 1, 0), CNuPoint(2, 2, 0)},
         -1,
         std::sqrt(2.0),
         CNuPoint(1, 1, 0)},
        {{CNuPoint(2, 2, 2), CNuPoint(2, 2, 2)}, -1, 0.0, CNuPoint(2, 2, 2)},
    };
    CNuCircle c(1.0);
    for (const SCase& row : cases) {
        SCOPED_TRACE(std::to_string(row.points.size()) + " points, zone " +
                     std::to_string(row.dZone));
        double dZone = -1.0;
        if (row.dZone < 0.0) {
            c.FitMin(test::Points(row.points), 1e-9);
        } else {
            c.FitMinZone(test::Points(row.points), &dZone, 1e-9, 5);
        }
        EXPECT_NEAR(dZone, row.dZone, kDirect);
        EXPECT_NEAR(c.GetRadius(), row.dRadius, kDirect);
        EXPECT_TRUE(test::PointsNear(c.GetCentre(), row.centre, kDirect));
    }
}

TEST(CircleZoneFits, ReachingTheExchangeLimitIsNotConvergence) {
    test::Random rng;
    SSet s = Make(rng, {30, 360.0, 10.0, 0.0, false});
    CNuCircle c(1.0);
    double dZone = -1.0;
    test::ExpectLimitRule([&](long l) { c.FitMinZone(s.points, &dZone, 1e-9, l); },
                          [&](long l) { return c.FitMinZoneEx(s.points, &dZone, 1e-9, l); }, 100,
                          "CNuCircle");
}

}  // namespace
}  // namespace numorix
