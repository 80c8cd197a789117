// Circle zone fits against brute force over all supports (minimum circumscribed, maximum
// inscribed, minimum zone) on random, lobed, arc-only and grid sets; the degenerate and hostile
// inputs, the exchange limit, and the certified PTB Chebyshev circles. Refusals and the Ex
// mapping are in the tables of fit_frame_test.cpp.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "fit_test_support.h"
#include "numorix/curves/circle.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// The tolerance handed to the fits: the objective may miss the true optimum by about this much.
constexpr double kFitTol = 1e-9;
// Objective and containment checks on coordinates of order 10.
constexpr double kObjective = 1e-7;
constexpr double kInside = 1e-7;
// Closed-form answers of the direct solutions: a few operations on coordinates of order 1 to 5.
constexpr double kDirect = 1e-13;

struct SCircle2 {
    double x;
    double y;
    double r;
};

double Dist(const CNuPoint& p, double x, double y) { return std::hypot(p.x() - x, p.y() - y); }

bool Circumcentre(const CNuPoint& a, const CNuPoint& b, const CNuPoint& c, SCircle2* pOut) {
    double bx = b.x() - a.x(), by = b.y() - a.y(), cx = c.x() - a.x(), cy = c.y() - a.y();
    double d = 2.0 * (bx * cy - by * cx);
    if (std::fabs(d) < 1e-12) return false;
    double b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
    pOut->x = a.x() + (cy * b2 - by * c2) / d;
    pOut->y = a.y() + (bx * c2 - cx * b2) / d;
    pOut->r = Dist(a, pOut->x, pOut->y);
    return true;
}

// Smallest circle holding all points, over every 2- and 3-point support.
double BruteMinCircumscribed(const CNuPointArray& p) {
    int n = p.GetSize();
    double dBest = 1e300;
    auto tryCircle = [&](const SCircle2& c) {
        if (c.r >= dBest) return;
        for (int i = 0; i < n; ++i)
            if (Dist(p[i], c.x, c.y) > c.r + 1e-12) return;
        dBest = c.r;
    };
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j) {
            tryCircle({(p[i].x() + p[j].x()) / 2, (p[i].y() + p[j].y()) / 2,
                       Dist(p[i], p[j].x(), p[j].y()) / 2});
            for (int k = j + 1; k < n; ++k) {
                SCircle2 c;
                if (Circumcentre(p[i], p[j], p[k], &c)) tryCircle(c);
            }
        }
    return dBest;
}

// Width of the annulus about (x, y) that holds all points.
double WidthAbout(const CNuPointArray& p, double x, double y) {
    double dMin = 1e300, dMax = -1e300;
    for (int i = 0; i < p.GetSize(); ++i) {
        double d = Dist(p[i], x, y);
        dMin = std::min(dMin, d);
        dMax = std::max(dMax, d);
    }
    return dMax - dMin;
}

// Least annulus width over the centres of all 4-point supports in the pairings 2+2, 3+1, 1+3
// (a 3+1 centre is the circumcentre of the three).
double BruteMinZone(const CNuPointArray& p) {
    int n = p.GetSize();
    double dBest = 1e300;
    auto bisect = [&](const CNuPoint& a, const CNuPoint& b, const CNuPoint& c, const CNuPoint& d) {
        double d1x = a.x() - b.x(), d1y = a.y() - b.y(), d2x = c.x() - d.x(), d2y = c.y() - d.y();
        double t1 = a.x() * a.x() + a.y() * a.y() - b.x() * b.x() - b.y() * b.y();
        double t2 = c.x() * c.x() + c.y() * c.y() - d.x() * d.x() - d.y() * d.y();
        double det = 2.0 * (d1x * d2y - d2x * d1y);
        if (std::fabs(det) < 1e-12) return;
        dBest = std::min(dBest,
                         WidthAbout(p, (d2y * t1 - d1y * t2) / det, (d1x * t2 - d2x * t1) / det));
    };
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j)
            for (int k = j + 1; k < n; ++k) {
                SCircle2 c;
                if (Circumcentre(p[i], p[j], p[k], &c))
                    dBest = std::min(dBest, WidthAbout(p, c.x, c.y));
                for (int l = k + 1; l < n; ++l) {
                    bisect(p[i], p[j], p[k], p[l]);
                    bisect(p[i], p[k], p[j], p[l]);
                    bisect(p[i], p[l], p[j], p[k]);
                }
            }
    return dBest;
}

bool InsideHull(const CNuPointArray& p, double x, double y) {
    // Inside when no chord has every point on one side with (x, y) strictly on the other.
    int n = p.GetSize();
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            if (i == j) continue;
            double ex = p[j].x() - p[i].x(), ey = p[j].y() - p[i].y();
            auto side = [&](double qx, double qy) {
                return ex * (qy - p[i].y()) - ey * (qx - p[i].x());
            };
            bool bAllLeft = true;
            for (int k = 0; k < n && bAllLeft; ++k)
                bAllLeft = side(p[k].x(), p[k].y()) >= -1e-12;
            if (bAllLeft && side(x, y) < -1e-12) return false;
        }
    return true;
}

// Largest empty circle centred inside the hull, over the circumcircles of all triples.
double BruteMaxInscribed(const CNuPointArray& p) {
    int n = p.GetSize();
    double dBest = -1.0;
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j)
            for (int k = j + 1; k < n; ++k) {
                SCircle2 c;
                if (!Circumcentre(p[i], p[j], p[k], &c) || c.r <= dBest) continue;
                bool bEmpty = true;
                for (int t = 0; t < n && bEmpty; ++t)
                    bEmpty = Dist(p[t], c.x, c.y) > c.r - 1e-12;
                if (bEmpty && InsideHull(p, c.x, c.y)) dBest = c.r;
            }
    return dBest;
}

CNuPointArray Lobed(test::Random& rng, int n, double dArcDegrees) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = rng.Uniform(0.0, dArcDegrees) * 3.14159265358979 / 180.0;
        double r = 10.0 + 0.05 * std::cos(3 * t) + rng.Uniform(-0.01, 0.01);
        points.Add(CNuPoint(2.0 + r * std::cos(t), -1.0 + r * std::sin(t), 0.5));
    }
    return points;
}

CNuPointArray RandomSquare(test::Random& rng, int n) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i)
        points.Add(CNuPoint(rng.Uniform(-5, 5), rng.Uniform(-5, 5), 0.0));
    return points;
}

CNuPointArray Grid(int m) {
    CNuPointArray points(m * m);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < m; ++j)
            points.Add(CNuPoint(i, j, 0.0));
    return points;
}

// Every point lies within the annulus of the fitted circle and the zone.
void ExpectWithinZone(const CNuPointArray& points, const CNuCircle& c, double dZone) {
    CNuPoint o = c.GetCentre();
    for (int i = 0; i < points.GetSize(); ++i)
        EXPECT_LT(std::fabs(Dist(points[i], o.x(), o.y()) - c.GetRadius()), dZone / 2 + kInside)
            << "point " << i;
}

std::vector<CNuPointArray> SmallSets() {
    test::Random rng;
    return {RandomSquare(rng, 12), RandomSquare(rng, 25), Lobed(rng, 20, 360.0),
            Lobed(rng, 30, 360.0), Lobed(rng, 15, 120.0), Grid(4)};
}

TEST(CircleMinZoneAndCircumscribed, MatchBruteForceOnRandomLobedArcAndGridSets) {
    int nSet = 0;
    for (const CNuPointArray& points : SmallSets()) {
        CNuCircle zone(1.0), circumscribed(1.0);
        double dZone = -1.0;
        zone.FitMinZone(points, &dZone, kFitTol, 200);
        EXPECT_NEAR(dZone, BruteMinZone(points), kObjective) << "set " << nSet;
        ExpectWithinZone(points, zone, dZone);
        circumscribed.FitMin(points, kFitTol);
        EXPECT_NEAR(circumscribed.GetRadius(), BruteMinCircumscribed(points), kObjective)
            << "set " << nSet;
        CNuPoint o = circumscribed.GetCentre();
        for (int i = 0; i < points.GetSize(); ++i)
            EXPECT_LT(Dist(points[i], o.x(), o.y()), circumscribed.GetRadius() + kInside)
                << "set " << nSet << " point " << i;
        ++nSet;
    }
}

TEST(CircleMaxInscribed, MatchesTheLargestEmptyCircleOnLobedSets) {
    test::Random rng;
    for (int n : {12, 20, 30}) {
        CNuPointArray points = Lobed(rng, n, 360.0);
        CNuCircle c(1.0);
        c.FitMax(points, kFitTol);
        EXPECT_NEAR(c.GetRadius(), BruteMaxInscribed(points), kObjective) << "n " << n;
        CNuPoint o = c.GetCentre();
        for (int i = 0; i < points.GetSize(); ++i)
            EXPECT_GT(Dist(points[i], o.x(), o.y()), c.GetRadius() - kInside) << "point " << i;
    }
}

// A tilted plane is solved as its own planar problem: the zone of a rotated copy is the same.
TEST(CircleMinZone, TiltedCopyGivesTheSameZoneAndAPairAboutIt) {
    test::Random rng;
    CNuPointArray flat = Lobed(rng, 25, 360.0);
    CNuPointArray tilted(flat.GetSize());
    for (int i = 0; i < flat.GetSize(); ++i) {
        CNuPoint q = flat[i];
        q.Rotate(35.0, CNuVector(1.0, 2.0, 0.5));
        tilted.Add(q);
    }
    CNuCircle a(1.0), b(1.0), inner(1.0), outer(1.0);
    double dFlat = -1.0, dTilted = -1.0;
    a.FitMinZone(flat, &dFlat, kFitTol, 200);
    b.FitMinZone(tilted, &dTilted, &inner, &outer, kFitTol, 200);
    EXPECT_NEAR(dTilted, dFlat, kObjective);
    EXPECT_NEAR(outer.GetRadius() - inner.GetRadius(), dTilted, 1e-12);
    EXPECT_NEAR(inner.GetCentre().DistanceTo(b.GetCentre()), 0.0, 1e-12);
}

// One point, collinear points (half the length less the nearest distance from the midpoint),
// three points (the exact circle) and two points on each of two concentric circles are solved
// without an exchange; the circumscribed circle of collinear or coincident points is their
// smallest enclosing circle.
TEST(CircleZoneFits, DegenerateSetsAreSolvedDirectly) {
    struct SCase {
        std::vector<CNuPoint> points;
        double dZone;
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
    };
    CNuCircle c(1.0);
    for (const SCase& row : cases) {
        SCOPED_TRACE(std::to_string(row.points.size()) + " points, zone " +
                     std::to_string(row.dZone));
        double dZone = -1.0;
        c.FitMinZone(test::Points(row.points), &dZone, kFitTol, 5);
        EXPECT_NEAR(dZone, row.dZone, kDirect);
        EXPECT_NEAR(c.GetRadius(), row.dRadius, kDirect);
        EXPECT_LT(c.GetCentre().DistanceTo(row.centre), kDirect);
    }
    c.FitMin(test::Points({CNuPoint(0, 0, 0), CNuPoint(1, 1, 0), CNuPoint(2, 2, 0)}), 1e-9);
    EXPECT_NEAR(c.GetRadius(), std::sqrt(2.0), kDirect);
    EXPECT_LT(c.GetCentre().DistanceTo(CNuPoint(1, 1, 0)), kDirect);
    c.FitMin(test::Points({CNuPoint(2, 2, 2), CNuPoint(2, 2, 2)}), 1e-9);
    EXPECT_EQ(c.GetRadius(), 0.0);
}

TEST(CircleMinZone, ReachingTheExchangeLimitIsNotConverged) {
    test::Random rng;
    CNuPointArray points = Lobed(rng, 30, 360.0);
    CNuCircle c(1.0);
    double dZone = -1.0;
    long lLeast = 0;
    for (long l = 1; l <= 100 && lLeast == 0; ++l)
        if (c.FitMinZoneEx(points, &dZone, kFitTol, l) == eNuFitOk) lLeast = l;
    ASSERT_GT(lLeast, 1) << "no limit up to 100 sufficed";
    ExpectNuFailure<CNuBestfitException>([&] { c.FitMinZone(points, &dZone, kFitTol, lLeast - 1); },
                                         212, nullptr, "CNuCircle");
    double dSaved = NuGetLengthTol();
    EXPECT_EQ(c.FitMinZoneEx(points, &dZone, kFitTol, lLeast - 1), eNuFitNotConverged);
    EXPECT_EQ(NuGetLengthTol(), dSaved);
    EXPECT_EQ(c.FitMinZoneEx(points, &dZone, kFitTol, lLeast), eNuFitOk);
    EXPECT_EQ(NuGetLengthTol(), dSaved);
}

TEST(CircleMinZone, MeetsPtbLimitsOnTheCertifiedCircles) {
    if (test::RefDataDir().empty()) GTEST_SKIP() << "NUMORIX_REFDATA not set: no PTB data";
    for (int k = 9; k <= 16; ++k) {
        std::string id = test::SetName("C", k);
        CNuPointArray points;
        std::vector<double> a;
        if (!test::ReadTracimSet("ptb-tracim-chebyshev", id, 5, &points, &a))
            GTEST_SKIP() << "PTB set " << id << " absent";
        CNuCircle c(1.0);
        double dZone = -1.0;
        c.FitMinZone(points, &dZone, 1e-9, 200);
        EXPECT_NEAR(dZone, a[4], test::kPtbPosition) << id;
        EXPECT_NEAR(c.GetRadius(), a[3], test::kPtbPosition) << id;
        EXPECT_LT(c.GetCentre().DistanceTo(CNuPoint(a[0], a[1], a[2])), test::kPtbPosition) << id;
    }
}

}  // namespace
}  // namespace numorix
