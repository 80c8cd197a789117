// The minimum-zone sphere: refusals and the guard that reports inner failures as 212, the limit,
// the flat ring through the circle, and the shell of small sets against a search over every
// support. Larger sets are held to CGAL's least-volume shell in sphere_cgal_test.cpp.
#include <cmath>
#include <vector>

#include "fit_test_support.h"
#include "numorix/surfaces/sph_surf.h"
#include "sphere_oracle.h"

namespace numorix {
namespace {

constexpr long kLimit = 1000;
// The tolerance asked of the zone fits, and the slack of the answers: a point may lie the
// tolerance outside the shell at every end of the exchange, on either side.
constexpr double kZoneTolerance = 1e-12;
// Shells of points of size 10 compared after rounding of the exact supports.
constexpr double kShellAgreement = 1e-9;

Eigen::Vector3d Vec(const CNuPoint& p) { return Eigen::Vector3d(p.x(), p.y(), p.z()); }

TEST(SphereZone, RefusesBadArgumentsBeforeTheGuardAndReportsInnerFailuresAs212) {
    CNuPointArray bad = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}});
    bad.GetData()[3] = CNuPoint(std::nan(""), 0, 0);
    const CNuPointArray good =
        test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}});
    CNuSphSurf s(1.0);
    double dZone = -1.0;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { s.FitMinZoneEx(good, &dZone, 1e-9, 0); }, 213, nullptr, "CNuSphSurf"},
        {[&] { s.FitMinZone(good, &dZone, nullptr, nullptr, 1e-9, -1); }, 213, nullptr,
         "CNuSphSurf"},
        {[&] { s.FitMinZone(bad, &dZone, 1e-9, 10); }, 214, nullptr, "CNuSphSurf", 3},
        {[&] { s.FitMinZone(good, &dZone, std::nan(""), 10); }, 211, nullptr, "CNuSphSurf"},
        {[&] { s.FitMinZone(CNuPointArray(), &dZone, 1e-9, 10); }, 201, nullptr, "CNuSphSurf", 1},
        // The least-squares start needs two iterations at least: its 212 is the zone's.
        {[&] { s.FitMinZone(good, &dZone, 1e-9, 1); }, 212, nullptr, "CNuSphSurf"},
    });
    const double dSaved = NuGetLengthTol();
    EXPECT_EQ(s.FitMinZoneEx(good, &dZone, 1e-3, 1), eNuFitNotConverged);
    EXPECT_EQ(NuGetLengthTol(), dSaved);
}

// The limit bounds the least-squares start and the exchange alike; reaching it is 212.
TEST(SphereZone, NeedsOneRoundMoreThanTheLimitThatRaises212) {
    test::Random rng;
    const CNuPointArray points =
        test::SpherePoints(rng, test::RandomFrame(rng), 4.0, 60, 2.0, 0.01);
    CNuSphSurf s(1.0);
    double dZone = 0.0;
    test::ExpectLimitRule([&](long l) { s.FitMinZone(points, &dZone, kZoneTolerance, l); },
                          [&](long l) { return s.FitMinZoneEx(points, &dZone, kZoneTolerance, l); },
                          200, "CNuSphSurf");
}

// One point, and points in a plane: the circle's zone, also where two rings of two points each
// make the width the difference of their radii.
TEST(SphereZone, TakesTheCircleZoneOfPointsInOnePlane) {
    const struct {
        CNuPointArray points;
        double dZone, dRadius;
        CNuPoint centre;
    } rows[] = {
        {test::Points({{3, -4, 5}}), 0.0, 0.0, CNuPoint(3, -4, 5)},
        {test::Points({{2, 0, 7}, {-2, 0, 7}, {0, 3, 7}, {0, -3, 7}}), 1.0, 2.5, CNuPoint(0, 0, 7)},
        {test::Points({{5, 0, 0}, {0, 5, 0}, {-5, 0, 0}, {0, -5, 0}, {3, 4, 0}}), 0.0, 5.0,
         CNuPoint(0, 0, 0)},
    };
    for (const auto& r : rows) {
        CNuSphSurf s(1.0), inner(1.0), outer(1.0);
        double dZone = -1.0;
        s.FitMinZone(r.points, &dZone, &inner, &outer, 1e-9, kLimit);
        EXPECT_NEAR(dZone, r.dZone, test::kTight) << r.points.GetSize() << " points";
        EXPECT_NEAR(s.GetRadius(), r.dRadius, test::kTight);
        EXPECT_TRUE(test::PointsNear(s.GetCentre(), r.centre, test::kTight));
        EXPECT_NEAR(inner.GetRadius(), r.dRadius - 0.5 * r.dZone, test::kTight);
        EXPECT_NEAR(outer.GetRadius(), r.dRadius + 0.5 * r.dZone, test::kTight);
    }
}

// Small sets, from a cap of noisy points to a cloud in a box, against the narrowest shell over
// every support of five points in every split: the same width, a shell that holds every point.
TEST(SphereZone, SmallSetsMatchASearchOverEverySupport) {
    test::Random rng;
    for (int trial = 0; trial < 60; ++trial) {
        const int n = 6 + trial % 4;
        test::Frame f = test::RandomFrame(rng);
        CNuPointArray points =
            trial % 3 == 2 ? test::RandomPoints(rng, n)
                           : test::SpherePoints(rng, f, 10.0, n, trial % 3 == 0 ? 1.0 : M_PI, 0.5);
        CNuSphSurf s(1.0), inner(1.0), outer(1.0);
        double dZone = -1.0;
        ASSERT_EQ(s.FitMinZoneEx(points, &dZone, &inner, &outer, kZoneTolerance, kLimit), eNuFitOk)
            << "trial " << trial;
        Eigen::MatrixX3d P = test::Rows(points);
        oracle::SShell best = oracle::BruteShell(P);
        oracle::SShell held = oracle::ShellAbout(P, Vec(s.GetCentre()));
        EXPECT_NEAR(dZone, best.Width(), kShellAgreement) << "trial " << trial;
        EXPECT_LT(held.Width(), dZone + kShellAgreement) << "trial " << trial;
        EXPECT_NEAR(inner.GetRadius(), held.dInner, kShellAgreement) << "trial " << trial;
        EXPECT_NEAR(outer.GetRadius(), held.dOuter, kShellAgreement) << "trial " << trial;
    }
}

// Found by fuzzing: five points in z = 0 but one at z = 2.2e-318 pass the coplanarity test at
// tolerance 0, and spheres through four of them divide by a vanishing determinant. Not a number
// is no zone: the guard reports 212.
TEST(SphereZone, ReportsAZoneThatIsNoNumberAsNotConverged) {
    const CNuPointArray points = test::Points({{0x1.737469d81f949p+9, -0x1.299542a0a1e34p-1, 0},
                                               {0x1.72c1682574ad2p+9, 0x1.9f5844d7670f4p-1, 0},
                                               {0x1.738b8d44dac3ap+9, -0x1.ac543a999cp-4, 0},
                                               {0x1.ada769eda99dp+10, 0, 0x0.000000006bae4p-1022},
                                               {0x1.737768731117p+9, 0x1.180e2c8c876d8p-1, 0}});
    CNuSphSurf s(1.0), inner(1.0), outer(1.0);
    double dZone = -1.0;
    EXPECT_EQ(s.FitMinZoneEx(points, &dZone, &inner, &outer, 0.0, 64), eNuFitNotConverged);
}

}  // namespace
}  // namespace numorix
