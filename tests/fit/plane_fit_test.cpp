// Least-squares planes: agreement with the principal axes by Eigen on noisy data, the
// three-point rule, sign cleaning, residuals, refusals, hostile data, and the certified PTB sets.
#include <cmath>
#include <limits>

#include "fit_test_support.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// Normals from two different decompositions of the same well-conditioned scatter.
constexpr double kAxis = 1e-10;
// Residual sums recomputed independently on coordinates of order 10.
constexpr double kResidual = 1e-10;

CNuPointArray NoisyPlane(test::Random& rng, const CNuVector& normal, int n, double dNoise) {
    CNuVector n0(normal);
    CNuVector u;
    n0.OrthonormalX(&u);
    CNuVector v = n0 * u;
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        CNuVector p = u * rng.Uniform(-10, 10) + v * rng.Uniform(-10, 10) +
                      n0 * rng.Normal(0.0, dNoise) + CNuVector(1, 2, 3);
        points.Add(p.To3DPoint());
    }
    return points;
}

TEST(PlaneFit, AgreesWithThePrincipalAxesOnNoisyData) {
    test::Random rng;
    for (int nCase = 0; nCase < 20; ++nCase) {
        CNuVector normal(rng.Uniform(-1, 1), rng.Uniform(-1, 1), rng.Uniform(-1, 1));
        normal.Normalise();
        CNuPointArray points = NoisyPlane(rng, normal, rng.Integer(4, 60), 0.05);
        CNuPlane plane;
        plane.Fit(points);
        Eigen::Vector3d mean;
        Eigen::Matrix3d axes = test::PrincipalAxes(points, &mean);
        CNuVector oracle(axes(0, 0), axes(1, 0), axes(2, 0));
        EXPECT_LT(test::AxisAngle(plane.GetNormal(), oracle), kAxis) << "case " << nCase;
        const CNuVector& r = plane.GetNormal();
        int nLargest = 0;
        for (int i = 1; i < 3; ++i)
            if (std::fabs(r[i]) > std::fabs(r[nLargest])) nLargest = i;
        EXPECT_GT(r[nLargest], 0.0) << "case " << nCase;
    }
}

TEST(PlaneFit, ThreePointsKeepTheCollinearityNormalSignIncluded) {
    // (0,0,0), (0,1,0), (1,0,0): the collinearity test's normal is (0,1,0) x (1,0,0) = (0,0,-1).
    CNuPointArray points = test::Points({CNuPoint(0, 0, 0), CNuPoint(0, 1, 0), CNuPoint(1, 0, 0)});
    CNuVector expected;
    CNuGeometry::AreCollinear(points, &expected, NuGetLengthTol());
    CNuPlane plane;
    double dForm = -1.0;
    double dSum = -1.0;
    plane.Fit(points, &dForm, &dSum);
    EXPECT_EQ(plane.GetNormal()[2], expected[2]);
    EXPECT_EQ(plane.GetNormal()[2], -1.0);
    EXPECT_EQ(dForm, 0.0);
    EXPECT_EQ(dSum, 0.0);
    points.Add(CNuPoint(1, 1, 0));
    plane.Fit(points);
    EXPECT_EQ(plane.GetNormal()[2], 1.0) << "four points are cleaned";
}

TEST(PlaneFit, RefusesTooFewAndCollinearPointsAsThePlane) {
    CNuPlane plane;
    try {
        plane.Fit(test::Points({CNuPoint(0, 0, 0), CNuPoint(1, 0, 0)}));
        ADD_FAILURE() << "two points accepted";
    } catch (const CNuBestfitException& e) {
        EXPECT_EQ(e.m_nCause, 201);
        EXPECT_EQ(e.GetSize(), 3);
        EXPECT_STREQ(e.m_szLocation, "CNuPlane");
    }
    ExpectNuFailure<CNuBestfitException>(
        [&] {
            plane.Fit(test::Points(
                {CNuPoint(0, 0, 0), CNuPoint(1, 1, 1), CNuPoint(2, 2, 2), CNuPoint(3, 3, 3)}));
        },
        203, nullptr, "CNuPlane");
}

TEST(PlaneFit, ResidualsAreSignedDistancesAndTheFormTheirSpan) {
    test::Random rng;
    CNuPointArray points = NoisyPlane(rng, CNuVector(0.2, -0.3, 1.0), 40, 0.1);
    CNuPlane plane;
    double dForm = 0.0;
    double dSum = 0.0;
    plane.Fit(points, &dForm, &dSum);
    double dLow = 0.0;
    double dHigh = 0.0;
    double dSumExpected = 0.0;
    for (int i = 0; i < points.GetSize(); ++i) {
        double d = (points[i] - plane.GetPoint()).To3DVector() % plane.GetNormal();
        dLow = std::min(dLow, d);
        dHigh = std::max(dHigh, d);
        dSumExpected += d * d;
    }
    EXPECT_NEAR(dForm, dHigh - dLow, kResidual);
    EXPECT_NEAR(dSum, dSumExpected, kResidual);
}

TEST(PlaneFit, MeetsPtbLimitsOnTheCertifiedPlanes) {
    if (test::RefDataDir().empty()) GTEST_SKIP() << "NUMORIX_REFDATA not set: no PTB data";
    for (int k = 5; k <= 8; ++k) {
        std::string id = test::SetName("b", k);
        CNuPointArray points;
        std::vector<double> a;
        if (!test::ReadGaussSet(id, &points, &a)) GTEST_SKIP() << "PTB set " << id << " absent";
        CNuPlane plane;
        plane.Fit(points);
        CNuPoint ref(a[0], a[1], a[2]);
        EXPECT_LT(ref.DistanceTo(plane), test::kPtbPosition) << id;
        EXPECT_LT(test::AxisAngle(plane.GetNormal(), CNuVector(a[3], a[4], a[5])), test::kPtbAngle)
            << id;
    }
}

}  // namespace
}  // namespace numorix
