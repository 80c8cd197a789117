// Least-squares circles: agreement with an independent orthogonal fit (support/circle_oracle.h) on
// full circles, arcs, lobed profiles, points off their plane, offsets and radii over six decades,
// and the form error reported with it; three points without iterating, the iteration limit; data
// far from the origin.
#include <algorithm>
#include <cmath>

#include "circle_oracle.h"
#include "fit_test_support.h"
#include "numorix/curves/circle.h"

namespace numorix {
namespace {

// Two converged orthogonal fits stop on different criteria; their centres and radii agree to
// this fraction of the radius (short noisy arcs included, whose centre is ill-conditioned), with
// an absolute floor for the rounding of coordinates of size 1e3.
constexpr double kAgreeRelative = 1e-7;
constexpr double kAgreeAbsolute = 1e-9;
// Normals of the two plane fits (different eigen solvers) on planes spanned by the points.
constexpr double kNormalAngle = 1e-9;
// The outputs describe the circle before the last step, whose squared length is below NuGetTol()
// (4.45e-16): each residual moves by at most sqrt(2) |step|, the form by 2 sqrt(2 NuGetTol())
// ~ 6e-8, and the sum of squares exceeds the optimum by at most 2 n NuGetTol(); the two sums
// round differently by a relative 1e-9.
constexpr double kFormLag = 6e-8;
constexpr double kSumLagPerPoint = 2.0 * 4.45e-16;
constexpr double kSumRounding = 1e-9;

TEST(CircleFit, AgreesWithAnIndependentOrthogonalFitOnManyConfigurations) {
    test::Random rng;
    const double spans[] = {360.0, 180.0, 90.0, 30.0}, radii[] = {1e-3, 1.0, 1e3};
    // Every span, radius and offset (0 or 1e3), each with few points, with points lifted off
    // their plane by 1e-4 and with three lobes of 1e-3 in turn, noise 1e-5; one has 10^4 points.
    for (int nCase = 0; nCase < 72; ++nCase) {
        int nKind = nCase % 3, n = nKind == 0 ? rng.Integer(3, 8) : rng.Integer(9, 300);
        double dRadius = radii[nCase / 6 % 3] * rng.Uniform(1.0, 3.0);
        test::Frame f = test::RandomFrame(rng);
        double dOffset = nCase / 3 % 2 == 0 ? 0.0 : 1e3 / std::sqrt(3.0);
        f.origin = CNuPoint(dOffset, -dOffset, dOffset);
        Eigen::MatrixX3d m(nCase == 5 ? 10000 : n, 3);
        CNuPointArray points(static_cast<int>(m.rows()));
        double dStart = rng.Uniform(0.0, 2.0 * M_PI);
        for (int i = 0; i < m.rows(); ++i) {
            double t =
                dStart + spans[nCase / 18] * M_PI / 180.0 * (i + rng.Uniform(0, 0.5)) / m.rows();
            double r =
                dRadius * (1.0 + (nKind == 2 ? 1e-3 : 0.0) * std::cos(3 * t) + rng.Normal(0, 1e-5));
            CNuPoint p = f.World(r * std::cos(t), r * std::sin(t),
                                 dRadius * (nKind == 1 ? rng.Normal(0, 1e-4) : 0.0));
            m.row(i) << p.x(), p.y(), p.z();
            points.Add(p);
        }
        SCOPED_TRACE(testing::Message() << "case " << nCase << ": " << m.rows() << " points");
        CNuCircle circle(1.0);
        double dForm = -1.0, dSum = -1.0, dLimit = kAgreeRelative * dRadius + kAgreeAbsolute;
        circle.Fit(points, &dForm, &dSum, 100);
        oracle::SCircle ref = oracle::FitCircle(m);
        CNuPoint o = circle.GetCentre();
        CNuVector normal = circle.GetNormal();
        EXPECT_LT((Eigen::Vector3d(o.x(), o.y(), o.z()) - ref.centre).norm(), dLimit);
        EXPECT_NEAR(circle.GetRadius(), ref.dRadius, dLimit);
        EXPECT_LT(test::AxisAngle(normal, CNuVector(ref.normal(0), ref.normal(1), ref.normal(2))),
                  kNormalAngle);
        EXPECT_NEAR(dSum, ref.dSumSquares,
                    ref.dSumSquares * kSumRounding + kSumLagPerPoint * m.rows());
        // The form: the spread of the in-plane distances from the centre.
        double dLeast = 1e300, dMost = -1e300;
        for (int i = 0; i < points.GetSize(); ++i) {
            CNuVector d = (points[i] - o).To3DVector();
            double dIn = std::sqrt(d % d - (d % normal) * (d % normal) / (normal % normal));
            dLeast = std::min(dLeast, dIn);
            dMost = std::max(dMost, dIn);
        }
        EXPECT_NEAR(dForm, dMost - dLeast, kFormLag);
        EXPECT_TRUE(m.rows() > 3 || dSum + dForm == 0.0)
            << "three points: sum " << dSum << ", form " << dForm;
    }
}

TEST(CircleFit, ThreePointsNeedNoIterationAndFourOnACircleNeedALimitOfTwo) {
    // Radius 5 about (1, 2, 3) through 3-4-5 triangles; radius 3 about (0, 0, 1).
    CNuPointArray three = test::Points({CNuPoint(6, 2, 3), CNuPoint(4, 6, 3), CNuPoint(-2, -2, 3)});
    CNuPointArray four = test::Points(
        {CNuPoint(3, 0, 1), CNuPoint(0, 3, 1), CNuPoint(-3, 0, 1), CNuPoint(0, -3, 1)});
    CNuCircle circle(1.0);
    circle.Fit(three, 1);
    EXPECT_NEAR(circle.GetRadius(), 5.0, 10 * test::kTight);
    EXPECT_TRUE(test::PointsNear(circle.GetCentre(), CNuPoint(1, 2, 3), 10 * test::kTight));
    // Reaching the limit in the iteration that converges is not convergence.
    EXPECT_EQ(test::ExpectLimitRule([&](long l) { circle.Fit(four, l); },
                                    [&](long l) { return circle.FitEx(four, l); }, 50, "CNuCircle"),
              2);
    circle.Fit(four, 2);
    EXPECT_NEAR(circle.GetRadius(), 3.0, test::kTight);
    EXPECT_TRUE(test::PointsNear(circle.GetCentre(), CNuPoint(0, 0, 1), test::kTight));
}

TEST(CircleFit, FindsACircleFarFromTheOrigin) {
    // Offsets of 1e8 with a radius of 1: coordinates keep about 1e-8 of the radius.
    CNuPointArray far(12);
    for (int i = 0; i < 12; ++i)
        far.Add(CNuPoint(1e8 + std::cos(i * M_PI / 6), -1e8 + std::sin(i * M_PI / 6), 1e8));
    CNuCircle circle(1.0);
    ASSERT_EQ(circle.FitEx(far, 100), eNuFitOk);
    EXPECT_NEAR(circle.GetRadius(), 1.0, 1e-6);
    EXPECT_TRUE(test::PointsNear(circle.GetCentre(), CNuPoint(1e8, -1e8, 1e8), 1e-6));
}

}  // namespace
}  // namespace numorix
