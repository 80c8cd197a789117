// The sphere and its least-squares fit: constructors and accessors, refusals in their order, the
// sphere through four points, agreement with an independent orthogonal-distance fit on partial
// spheres far from the origin, the limit rule, and the point's sphere operations.
#include <cmath>
#include <vector>

#include "fit_test_support.h"
#include "numorix/linalg/matrix.h"
#include "numorix/surfaces/sph_surf.h"
#include "sphere_oracle.h"

namespace numorix {
namespace {

// Enough for every fit below; converged runs take fewer than ten.
constexpr long kIterations = 100;
// The sphere through four points of size 100 by 4 by 4 determinants: the determinants reach
// 1e8 and cancel to the radius, about 1e-16 relative each.
constexpr double kFourPoints = 1e-9;
// Least squares against the oracle: the loop stops on a centre step below sqrt(NuGetTol()) = 2.1e-8
// and does not take it; on a narrow cap the radius moves with the centre.
constexpr double kAgreement = 5e-8;

TEST(SphSurf, ConstructorRefusesARadiusNotAboveZeroAndGivesCentreAndRadiusBack) {
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuSphSurf s(0.0); }, 5, "radius", "CNuSphSurf"},
        {[] { CNuSphSurf s(-1.0, CNuPoint(1, 2, 3)); }, 5, "radius", "CNuSphSurf"},
        {[] { CNuSphSurf s(std::nan("")); }, 5, "radius", "CNuSphSurf"},
    });
    CNuSphSurf placed(2.5, CNuPoint(1, -2, 3)), bare(4.0);
    CNuSphSurf copy(placed);
    bare = copy;
    double dRadius = 0.0, x = 0.0, y = 0.0, z = 0.0;
    CNuPoint centre;
    bare.GetData(&dRadius, &centre);
    bare.GetCentre(&x, &y, &z);
    EXPECT_EQ(std::vector<double>({dRadius, centre.x(), centre.y(), centre.z(), x, y, z}),
              std::vector<double>({2.5, 1, -2, 3, 1, -2, 3}));
    EXPECT_EQ(CNuSphSurf(1.0).GetCentre().x(), 0.0);
    EXPECT_EQ(placed.GetType(), CNuObject::eTypeSphSurf);
}

// The limit before anything, finiteness next, then 201 carrying 4 and 204 carrying 4.
TEST(SphereFit, RefusesBadDataWithCauseLocationAndCarriedValueInOrder) {
    const CNuPointArray three = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    const CNuPointArray flat =
        test::Points({{0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}, {3, 2, 1}});
    // A repeated point that the coplanarity test finds 4.2e-12 off the plane of the other three
    // (rounding at 1000): the sphere of four points has D0 = 0 and no radius.
    const CNuPoint a(-680.32627644788681, -323.59176776688963, -951.07199244768549),
        b(-841.76741531378116, -0.2133914885792052, -627.94166544263589),
        c(-841.18950245029373, 0.94243423839568619, -627.94166544263589);
    const CNuPointArray repeated = test::Points({a, b, c, b});
    CNuPointArray bad = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    bad.GetData()[2] = CNuPoint(0, 0, HUGE_VAL);
    CNuSphSurf s(1.0);
    double dForm = -1.0, dSum = -1.0;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { s.FitEx(bad, &dForm, &dSum, 0); }, 213, nullptr, "CNuSphSurf"},
        {[&] { s.FitEx(bad, -5); }, 213, nullptr, "CNuSphSurf"},
        {[&] { s.Fit(bad, 10); }, 214, nullptr, "CNuSphSurf", 2},
        {[&] { s.Fit(three, &dForm, &dSum, 10); }, 201, nullptr, "CNuSphSurf", 4},
        {[&] { s.Fit(flat, 10); }, 204, nullptr, "CNuSphSurf", 4},
        {[&] { s.Fit(repeated, 10); }, 211, nullptr, "CNuSphSurf"},
    });
    EXPECT_EQ(std::vector<double>({dForm, dSum, double(s.FitEx(flat, 10)),
                                   double(s.FitEx(bad, &dForm, &dSum, 10))}),
              std::vector<double>({0.0, 0.0, double(eNuFitFailed), double(eNuFitFailed)}));
}

// Four points: the sphere through them, with no iteration (a limit of 1 suffices) and both
// residual outputs exactly 0.0, at the world axes.
TEST(SphereFit, FourPointsGiveTheSphereThroughThemWithoutIteration) {
    test::Random rng;
    for (int trial = 0; trial < 20; ++trial) {
        test::Frame f = test::RandomFrame(rng);
        f.origin = f.origin * 20.0;
        double dRadius = rng.Uniform(1.0, 10.0);
        // About the corners of a regular tetrahedron, so that the four are far from one plane.
        CNuPointArray points(4);
        for (const auto& v : {CNuVector(1, 1, 1), CNuVector(1, -1, -1), CNuVector(-1, 1, -1),
                              CNuVector(-1, -1, 1)}) {
            CNuVector d = v + CNuVector(rng.Uniform(-0.3, 0.3), rng.Uniform(-0.3, 0.3), 0.0);
            d.Normalise();
            points.Add(f.World(dRadius * d[0], dRadius * d[1], dRadius * d[2]));
        }
        CNuSphSurf s(1.0);
        double dForm = -1.0, dSum = -1.0;
        ASSERT_EQ(s.FitEx(points, &dForm, &dSum, 1), eNuFitOk) << "trial " << trial;
        EXPECT_TRUE(test::PointsNear(s.GetCentre(), f.origin, kFourPoints)) << "trial " << trial;
        EXPECT_NEAR(s.GetRadius(), dRadius, kFourPoints) << "trial " << trial;
        EXPECT_EQ(std::vector<double>({dForm, dSum, s.GetRotation().GetElement(0, 0),
                                       s.GetRotation().GetElement(2, 2)}),
                  std::vector<double>({0.0, 0.0, 1.0, 1.0}));
    }
}

// Partial spheres (caps from 30 degrees to the whole sphere) of noisy points 1000 away from the
// origin: the same sphere as Levenberg-Marquardt on the orthogonal distances, and the residual
// outputs are those of the fitted sphere.
TEST(SphereFit, AgreesWithAnIndependentOrthogonalFitOnPartialSpheresFarFromTheOrigin) {
    test::Random rng;
    const struct {
        double dCapDegrees, dRadius, dSpread;
        int n;
    } cases[] = {{30, 20, 1e-3, 40},   {60, 5, 1e-2, 25}, {90, 50, 1e-4, 200},
                 {180, 12.5, 1e-3, 9}, {45, 1, 1e-5, 60}, {120, 300, 0.1, 100}};
    for (const auto& c : cases) {
        test::Frame f = test::RandomFrame(rng);
        f.origin = CNuPoint(1000, -800, 650) + f.origin;
        CNuPointArray points =
            test::SpherePoints(rng, f, c.dRadius, c.n, c.dCapDegrees * M_PI / 180.0, c.dSpread);
        CNuSphSurf s(1.0);
        double dForm = -1.0, dSum = -1.0;
        ASSERT_NO_THROW(s.Fit(points, &dForm, &dSum, kIterations)) << "cap " << c.dCapDegrees;
        Eigen::MatrixX3d P = test::Rows(points);
        oracle::SSphere o = oracle::FitSphere(
            P, {Eigen::Vector3d(f.origin.x(), f.origin.y(), f.origin.z()), c.dRadius});
        CNuPoint centre = s.GetCentre();
        double dScale = std::max(1.0, c.dRadius);
        EXPECT_TRUE(
            test::PointsNear(centre, CNuPoint(o.centre(0), o.centre(1), o.centre(2)), kAgreement))
            << "cap " << c.dCapDegrees;
        EXPECT_NEAR(s.GetRadius(), o.dRadius, kAgreement) << "cap " << c.dCapDegrees;
        Eigen::VectorXd e =
            oracle::Distances(P, Eigen::Vector3d(centre.x(), centre.y(), centre.z())).array() -
            s.GetRadius();
        EXPECT_NEAR(dSum, e.squaredNorm(), 1e-12 * std::max(1.0, dSum)) << "cap " << c.dCapDegrees;
        EXPECT_NEAR(dForm, e.maxCoeff() - e.minCoeff(), 1e-12 * dScale) << "cap " << c.dCapDegrees;
    }
}

// Reaching the limit is not convergence, even in a converging last iteration.
TEST(SphereFit, NeedsOneIterationMoreThanTheLimitThatRaises212) {
    test::Random rng;
    test::Frame f = test::RandomFrame(rng);
    CNuPointArray points = test::SpherePoints(rng, f, 3.0, 30, 1.0, 1e-3);
    CNuSphSurf s(1.0);
    long lLeast =
        test::ExpectLimitRule([&](long l) { s.Fit(points, l); },
                              [&](long l) { return s.FitEx(points, l); }, 50, "CNuSphSurf");
    EXPECT_GE(lLeast, 2);
}

// Distance, projection and side of points about a sphere of radius 2 at (1, 2, 3).
TEST(PointOnSphere, DistanceProjectionAndSideFollowTheRayFromTheCentre) {
    const CNuSphSurf s(2.0, CNuPoint(1, 2, 3));
    const struct {
        CNuPoint p;
        double dDistance;
        CNuPoint projection;
        CNuGeometry::ESurfaceSideType eSide;
    } rows[] = {
        {CNuPoint(1, 2, 8), 3.0, CNuPoint(1, 2, 5), CNuGeometry::eSurfaceSideOuter},
        {CNuPoint(1, 3, 3), 1.0, CNuPoint(1, 4, 3), CNuGeometry::eSurfaceSideInner},
        {CNuPoint(3, 2, 3), 0.0, CNuPoint(3, 2, 3), CNuGeometry::eSurfaceSideOn},
        {CNuPoint(4, 6, 3), 3.0, CNuPoint(2.2, 3.6, 3), CNuGeometry::eSurfaceSideOuter},
        // At the centre there is no ray: the projection stays at the centre.
        {CNuPoint(1, 2, 3), 2.0, CNuPoint(1, 2, 3), CNuGeometry::eSurfaceSideInner},
    };
    for (const auto& r : rows) {
        EXPECT_NEAR(r.p.DistanceTo(s), r.dDistance, test::kTight) << test::Text(r.p);
        EXPECT_TRUE(test::PointsNear(r.p.ProjectionOn(s), r.projection, test::kTight));
        EXPECT_EQ(r.p.SurfaceSide(s, 1e-9), r.eSide) << test::Text(r.p);
    }
    // A point within the tolerance of the sphere is on it; just outside it is outer.
    EXPECT_EQ(CNuPoint(1, 2, 5.5).SurfaceSide(s, 0.5), CNuGeometry::eSurfaceSideOuter);
    EXPECT_EQ(CNuPoint(1, 2, 5.4).SurfaceSide(s, 0.5), CNuGeometry::eSurfaceSideOn);
}

}  // namespace
}  // namespace numorix
