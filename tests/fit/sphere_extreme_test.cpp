// The extreme spheres: refusals, the degenerate sets of the circumscribed sphere, the largest
// empty sphere checked by its defining properties (no point inside, and no nearby centre holds a
// larger empty sphere), FitMinEx giving the inscribed sphere, and the corners of regular solids.
// The smallest sphere is held to CGAL's in sphere_cgal_test.cpp.
#include <cmath>
#include <vector>

#include "fit_test_support.h"
#include "numorix/surfaces/sph_surf.h"
#include "sphere_oracle.h"

namespace numorix {
namespace {

constexpr double kTolerance = 1e-12;
// Sizes of the spheres below are 1 to 100 at 1000 from the origin: the walk and CGAL's
// double-precision search agree to rounding of such coordinates.
constexpr double kAgreement = 1e-9;
// Trial centres about the inscribed one, as a fraction of its radius.
constexpr double kNudge = 1e-4;

Eigen::Vector3d Vec(const CNuPoint& p) { return Eigen::Vector3d(p.x(), p.y(), p.z()); }

TEST(SphereExtreme, RefusesTooFewCollinearAndNonFinitePointsWithTheirCauses) {
    CNuPointArray bad = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    bad.GetData()[1] = CNuPoint(0, -HUGE_VAL, 0);
    const CNuPointArray three = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    const CNuPointArray line = test::Points({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {5, 5, 5}});
    const CNuPointArray good = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    CNuSphSurf s(1.0);
    test::ExpectFailures<CNuBestfitException>({
        {[&] { s.FitMax(bad, 1e-9); }, 214, nullptr, "CNuSphSurf", 1},
        {[&] { s.FitMin(bad, 1e-9); }, 214, nullptr, "CNuSphSurf", 1},
        {[&] { s.FitMax(good, HUGE_VAL); }, 211, nullptr, "CNuSphSurf"},
        {[&] { s.FitMin(good, std::nan("")); }, 211, nullptr, "CNuSphSurf"},
        {[&] { s.FitMax(three, 1e-9); }, 201, nullptr, "CNuSphSurf", 4},
        {[&] { s.FitMax(line, 1e-9); }, 203, nullptr, "CNuSphSurf", 3},
        {[&] { s.FitMin(CNuPointArray(), 1e-9); }, 201, nullptr, "CNuSphSurf", 1},
    });
    const double dSaved = NuGetLengthTol();
    EXPECT_EQ(s.FitMaxEx(line, 1e-3), eNuFitFailed);
    EXPECT_EQ(s.FitMinEx(three, 1e-3), eNuFitFailed);  // FitMax's 201, not FitMin's answer
    EXPECT_EQ(NuGetLengthTol(), dSaved);
}

// One point, coincident points and points on a line: the sphere on the two extreme points.
TEST(SphereExtreme, CircumscribesDegenerateSetsByTheirExtremes) {
    const struct {
        CNuPointArray points;
        double dRadius;
        CNuPoint centre;
    } rows[] = {
        {test::Points({{3, -4, 5}}), 0.0, CNuPoint(3, -4, 5)},
        {test::Points({{3, -4, 5}, {3, -4, 5}, {3, -4, 5}}), 0.0, CNuPoint(3, -4, 5)},
        {test::Points({{1, 1, 1}, {4, 5, 1}, {2.5, 3, 1}, {-2, -3, 1}}), 5.0, CNuPoint(1, 1, 1)},
        {test::Points({{0, 0, 0}, {0, 0, 6}}), 3.0, CNuPoint(0, 0, 3)},
    };
    for (const auto& r : rows) {
        CNuSphSurf s(1.0);
        s.FitMin(r.points, kTolerance);
        EXPECT_NEAR(s.GetRadius(), r.dRadius, test::kTight) << r.points.GetSize() << " points";
        EXPECT_TRUE(test::PointsNear(s.GetCentre(), r.centre, test::kTight));
    }
}

// Points about whole spheres: no point inside the inscribed sphere, and every trial centre
// nearby comes nearer some point, so that no larger empty sphere lies about it. FitMinEx is the
// same inscribed sphere.
TEST(SphereExtreme, InscribedSphereIsEmptyAndLocallyLargestAndIsWhatFitMinExGives) {
    test::Random rng;
    for (int trial = 0; trial < 20; ++trial) {
        const int n = 20 + 15 * trial;
        test::Frame f = test::RandomFrame(rng);
        f.origin = CNuPoint(-300, 800, 100) + f.origin;
        const double dRadius = rng.Uniform(1.0, 100.0);
        CNuPointArray points = test::SpherePoints(rng, f, dRadius, n, M_PI, 0.05 * dRadius);
        CNuSphSurf s(1.0), viaMinEx(1.0);
        ASSERT_EQ(s.FitMaxEx(points, kTolerance), eNuFitOk) << "trial " << trial;
        ASSERT_EQ(viaMinEx.FitMinEx(points, kTolerance), eNuFitOk) << "trial " << trial;
        EXPECT_EQ(std::vector<double>({s.GetRadius(), s.GetCentre().x(), s.GetCentre().z()}),
                  std::vector<double>(
                      {viaMinEx.GetRadius(), viaMinEx.GetCentre().x(), viaMinEx.GetCentre().z()}));
        Eigen::MatrixX3d P = test::Rows(points);
        const Eigen::Vector3d c = Vec(s.GetCentre());
        EXPECT_GT(oracle::Distances(P, c).minCoeff(), s.GetRadius() - kAgreement * dRadius)
            << "trial " << trial;
        for (int k = 0; k < 200; ++k) {
            Eigen::Vector3d d(rng.Normal(0, 1), rng.Normal(0, 1), rng.Normal(0, 1));
            Eigen::Vector3d trialCentre = c + kNudge * s.GetRadius() * d.normalized();
            ASSERT_LT(oracle::Distances(P, trialCentre).minCoeff(), s.GetRadius())
                << "trial " << trial << ": a larger empty sphere about a nearby centre";
        }
    }
}

// Points exactly on a sphere, every one tied: the corners of an octahedron (opposite pairs, whose
// unit vectors sum to zero) and of a cube, at tolerances 0 and 1e-9. Both extreme spheres are the
// sphere through them.
TEST(SphereExtreme, CornersOfRegularSolidsGiveTheirSphereEvenAtToleranceZero) {
    const CNuPointArray octahedron = test::Points(
        {{105, 0, 0}, {95, 0, 0}, {100, 5, 0}, {100, -5, 0}, {100, 0, 5}, {100, 0, -5}});
    const CNuPointArray cube = test::Points({{-1, -1, -1},
                                             {1, -1, -1},
                                             {-1, 1, -1},
                                             {1, 1, -1},
                                             {-1, -1, 1},
                                             {1, -1, 1},
                                             {-1, 1, 1},
                                             {1, 1, 1}});
    for (double dTolerance : {0.0, 1e-9}) {
        for (const auto& solid :
             {std::make_pair(&octahedron, 5.0), std::make_pair(&cube, std::sqrt(3.0))}) {
            CNuSphSurf inscribed(1.0), circumscribed(1.0);
            ASSERT_EQ(inscribed.FitMaxEx(*solid.first, dTolerance), eNuFitOk) << dTolerance;
            circumscribed.FitMin(*solid.first, dTolerance);
            EXPECT_NEAR(inscribed.GetRadius(), solid.second, test::kTight) << dTolerance;
            EXPECT_NEAR(circumscribed.GetRadius(), solid.second, test::kTight) << dTolerance;
        }
    }
}

}  // namespace
}  // namespace numorix
