// The sphere's fits against CGAL: the smallest sphere against its minimum enclosing sphere, and
// the minimum zone of larger sets, which a search over all supports cannot reach, between the
// bounds that CGAL's least-volume shell gives it, holding every point and no wider than the
// least-squares form. CGAL is heavy to compile: this is the one file of the target that uses it.
#include <cmath>
#include <vector>

#include "cgal_sphere_oracle.h"
#include "fit_test_support.h"
#include "numorix/surfaces/sph_surf.h"
#include "sphere_oracle.h"

namespace numorix {
namespace {

constexpr double kTolerance = 1e-12;
// Sizes of the spheres below are 1 to 300 at 1000 from the origin: the fits and CGAL's answers
// agree to rounding of such coordinates.
constexpr double kAgreement = 1e-9;

Eigen::Vector3d Vec(const CNuPoint& p) { return Eigen::Vector3d(p.x(), p.y(), p.z()); }

// Shells, caps and clouds far from the origin: the same sphere as CGAL's.
TEST(SphereExtreme, CircumscribedSphereIsCgalsMinimumEnclosingSphere) {
    test::Random rng;
    for (int trial = 0; trial < 40; ++trial) {
        const int n = 4 + 7 * trial;
        test::Frame f = test::RandomFrame(rng);
        f.origin = CNuPoint(1000, 200, -500) + f.origin;
        const double dRadius = rng.Uniform(1.0, 100.0);
        CNuPointArray points = test::SpherePoints(rng, f, dRadius, n, trial % 2 ? M_PI : 1.0,
                                                  trial % 3 == 0 ? dRadius : 0.01 * dRadius);
        CNuSphSurf s(1.0);
        ASSERT_NO_THROW(s.FitMin(points, kTolerance)) << "trial " << trial;
        Eigen::MatrixX3d P = test::Rows(points);
        oracle::SEnclosingSphere o = oracle::MinEnclosingSphere(P);
        EXPECT_NEAR(s.GetRadius(), o.dRadius, kAgreement * dRadius) << "trial " << trial;
        EXPECT_LT((Vec(s.GetCentre()) - o.centre).norm(), kAgreement * dRadius)
            << "trial " << trial;
        EXPECT_LT(oracle::Distances(P, Vec(s.GetCentre())).maxCoeff(),
                  s.GetRadius() + kAgreement * dRadius)
            << "trial " << trial;
    }
}

// Partial spheres of 30 to 300 points far from the origin: the zone w holds every point, is no
// wider than the least-volume shell (w_A) nor the least-squares form, and w (R + r) is at least
// w_A (R_A + r_A).
TEST(SphereZone, LargerSetsLieBetweenTheBoundsOfTheLeastVolumeShell) {
    test::Random rng;
    const struct {
        double dCapDegrees, dRadius, dSpread;
        int n;
    } cases[] = {{20, 25, 1e-3, 30},
                 {90, 5, 1e-2, 100},
                 {180, 50, 1e-4, 300},
                 {60, 1, 0.1, 60},
                 {150, 300, 0.5, 200}};
    for (const auto& c : cases) {
        test::Frame f = test::RandomFrame(rng);
        f.origin = CNuPoint(400, 300, -700) + f.origin;
        CNuPointArray points =
            test::SpherePoints(rng, f, c.dRadius, c.n, c.dCapDegrees * M_PI / 180.0, c.dSpread);
        CNuSphSurf ls(1.0), s(1.0), inner(1.0), outer(1.0);
        double dForm = 0.0, dSum = 0.0, dZone = -1.0;
        ls.Fit(points, &dForm, &dSum, 1000);
        ASSERT_EQ(s.FitMinZoneEx(points, &dZone, &inner, &outer, kTolerance, 1000), eNuFitOk)
            << "cap " << c.dCapDegrees;
        const Eigen::MatrixX3d P = test::Rows(points);
        const oracle::SShell held = oracle::ShellAbout(P, Vec(s.GetCentre()));
        const oracle::SShellRadii a = oracle::MinVolumeShell(P);
        const double dSlack = kTolerance + kAgreement * c.dRadius;
        EXPECT_LT(held.dOuter, outer.GetRadius() + dSlack) << "cap " << c.dCapDegrees;
        EXPECT_GT(held.dInner, inner.GetRadius() - dSlack) << "cap " << c.dCapDegrees;
        EXPECT_LE(dZone, std::min(dForm, a.dOuter - a.dInner) + dSlack) << "cap " << c.dCapDegrees;
        EXPECT_GE(dZone * (inner.GetRadius() + outer.GetRadius()),
                  (a.dOuter - a.dInner) * (a.dOuter + a.dInner) - dSlack * c.dRadius)
            << "cap " << c.dCapDegrees;
    }
}

}  // namespace
}  // namespace numorix
