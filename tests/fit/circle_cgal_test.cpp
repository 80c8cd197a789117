// Circle zone fits on larger sets against CGAL (see cgal_circle_oracle.h): full circles and arcs
// of 180, 90 and 30 degrees, three-lobed profiles with noise, tilted planes, offsets of 1e3 and
// radii from 1e-3 to 1e3, n up to 10^4. Each set is made in a plane frame of its own and the
// oracle works on those plane coordinates, so a fit that mishandles the projection is caught too.
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

struct SConfig {
    int n;
    double dArcDegrees;
    double dRadius;
    double dOffset;  // distance of the plane frame's origin from the world origin
    bool bTilted;
};

// A measured-looking profile: three lobes of 0.5 % and noise of 0.1 % of the radius.
struct SProfile {
    std::vector<SXY> plane;  // coordinates in the profile's own plane
    CNuPointArray points;    // the same points in space
    double dScale;           // length scale of the answers: the radius
    double dOffset;          // the offset, whose coordinates round at about 1e-16 of it
    bool bWorldPlane;        // the points lie in a plane z = const
    std::string name;
};

SProfile MakeProfile(test::Random& rng, const SConfig& c) {
    SProfile p;
    test::Frame f;
    if (c.bTilted) {
        f = test::RandomFrame(rng);
    } else {
        f.origin = CNuPoint(0, 0, 0);
        f.x = CNuVector(1, 0, 0);
        f.y = CNuVector(0, 1, 0);
        f.z = CNuVector(0, 0, 1);
    }
    f.origin = CNuPoint(f.origin.x() + c.dOffset, f.origin.y() - c.dOffset, f.origin.z());
    double dStart = rng.Uniform(0.0, 360.0);
    p.points = CNuPointArray(c.n);
    for (int i = 0; i < c.n; ++i) {
        double t = (dStart + rng.Uniform(0.0, c.dArcDegrees)) * kPi / 180.0;
        double r = c.dRadius * (1.0 + 0.005 * std::cos(3.0 * t) + rng.Uniform(-1e-3, 1e-3));
        SXY q{0.3 * c.dRadius + r * std::cos(t), -0.2 * c.dRadius + r * std::sin(t)};
        p.plane.push_back(q);
        p.points.Add(f.World(q.x, q.y));
    }
    p.dScale = c.dRadius;
    p.dOffset = c.dOffset;
    p.bWorldPlane = !c.bTilted;
    p.name = "n " + std::to_string(c.n) + ", arc " + std::to_string(c.dArcDegrees) +
             ", radius " + std::to_string(c.dRadius) + ", offset " + std::to_string(c.dOffset) +
             (c.bTilted ? ", tilted" : "");
    return p;
}

// Distances from a fitted circle's centre to every point, least and greatest.
void DistanceRange(const CNuPointArray& points, const CNuCircle& c, double* pdMin,
                   double* pdMax) {
    CNuPoint o = c.GetCentre();
    *pdMin = 1e300;
    *pdMax = -1e300;
    for (int i = 0; i < points.GetSize(); ++i) {
        double d = test::Gap(points[i], o);
        *pdMin = std::min(*pdMin, d);
        *pdMax = std::max(*pdMax, d);
    }
}

std::vector<SConfig> Configs() {
    std::vector<SConfig> v;
    for (double dArc : {360.0, 180.0, 90.0, 30.0})
        for (int n : {10, 100, 2000}) v.push_back({n, dArc, 10.0, 0.0, false});
    for (double dRadius : {1e-3, 1.0, 1e3})
        for (bool bTilted : {false, true}) v.push_back({500, 360.0, dRadius, 1e3, bTilted});
    v.push_back({10000, 360.0, 25.0, 0.0, true});
    v.push_back({3, 360.0, 10.0, 0.0, true});
    return v;
}

// The fits are asked for this accuracy relative to the radius; the rounding of coordinates far
// from the origin (1e-16 of the offset, grown by the projection into the plane) adds to it.
constexpr double kRelTol = 1e-9;
constexpr double kOffsetRounding = 1e-14;
double FitTolerance(const SProfile& p) { return kRelTol * p.dScale + kOffsetRounding * p.dOffset; }
// An objective may miss the optimum by a few fit tolerances.
double ObjectiveSlack(const SProfile& p) { return 20.0 * FitTolerance(p); }
// Points in a plane z = const are zoned in world coordinates, where the bisector intercepts
// |a|^2 - |b|^2 of the exchange cancel: the centre moves by about 1e-16 offset^2 / radius.
double ZoneSlack(const SProfile& p) {
    return ObjectiveSlack(p) + (p.bWorldPlane ? 4e-16 * p.dOffset * p.dOffset / p.dScale : 0.0);
}

// Runs a check on one profile; a library failure is reported with the profile's description.
template <class F>
void Check(const SProfile& p, F f) {
    try {
        f();
    } catch (const CNuException& e) {
        ADD_FAILURE() << p.name << ": " << test::MessageOf(e);
    }
}

TEST(CircleMinCircumscribed, EqualsCgalMinCircleOnArcsLobesOffsetsAndTilts) {
    test::Random rng;
    for (const SConfig& config : Configs()) {
        SProfile p = MakeProfile(rng, config);
        oracle::SCircleXY ref = oracle::MinEnclosingCircle(p.plane);
        CNuCircle c(1.0);
        Check(p, [&] { c.FitMin(p.points, FitTolerance(p)); });
        EXPECT_NEAR(c.GetRadius(), ref.r, ObjectiveSlack(p)) << p.name;
        double dMin, dMax;
        DistanceRange(p.points, c, &dMin, &dMax);
        EXPECT_LE(dMax, c.GetRadius() + ObjectiveSlack(p)) << p.name;
    }
}

TEST(CircleMinZone, IsNoWiderThanCgalMinAreaAnnulusAndHoldsEveryPoint) {
    test::Random rng;
    for (const SConfig& config : Configs()) {
        SProfile p = MakeProfile(rng, config);
        oracle::SAnnulusXY ref = oracle::MinAreaAnnulus(p.plane);
        double dRefWidth = ref.rOuter - ref.rInner;
        CNuCircle c(1.0), inner(1.0), outer(1.0);
        double dZone = -1.0;
        Check(p, [&] { c.FitMinZone(p.points, &dZone, &inner, &outer, FitTolerance(p), 1000); });
        double dSlack = ZoneSlack(p);
        EXPECT_LE(dZone, dRefWidth + dSlack) << p.name << ": CGAL width " << dRefWidth;
        // Lower bound from the least area: w (R + r) >= w_A (R_A + r_A).
        if (config.n > 3) {
            double dRadii = inner.GetRadius() + outer.GetRadius();
            EXPECT_GE(dZone, dRefWidth * (ref.rOuter + ref.rInner) / dRadii - dSlack) << p.name;
        }
        double dMin, dMax;
        DistanceRange(p.points, c, &dMin, &dMax);
        EXPECT_LE(dMax - c.GetRadius(), dZone / 2 + dSlack) << p.name;
        EXPECT_LE(c.GetRadius() - dMin, dZone / 2 + dSlack) << p.name;
    }
}

// The inscribed circle is the metrological one of closed profiles: full circles only (on an arc
// the largest empty circle is not bounded by the profile).
TEST(CircleMaxInscribed, EqualsTheLargestEmptyDelaunayCircleOfClosedProfiles) {
    test::Random rng;
    for (const SConfig& config : Configs()) {
        if (config.dArcDegrees < 360.0 || config.n < 100) continue;
        SProfile p = MakeProfile(rng, config);
        oracle::SCircleXY ref = oracle::LargestEmptyCircle(p.plane);
        CNuCircle c(1.0);
        Check(p, [&] { c.FitMax(p.points, FitTolerance(p)); });
        EXPECT_NEAR(c.GetRadius(), ref.r, ObjectiveSlack(p)) << p.name;
        double dMin, dMax;
        DistanceRange(p.points, c, &dMin, &dMax);
        EXPECT_GE(dMin, c.GetRadius() - ObjectiveSlack(p)) << p.name;
    }
}

}  // namespace
}  // namespace numorix
