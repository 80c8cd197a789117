// Least-squares circles: agreement with an independent orthogonal fit on random full circles,
// arcs, lobed profiles, tilted planes, large offsets and radii over six decades, the form error
// reported with it; the exact three-point circle; the iteration limit; hostile data.
#include <cmath>
#include <limits>

#include "circle_oracle.h"
#include "fit_test_support.h"
#include "numorix/curves/circle.h"
#include "numorix/linalg/matrix.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// Two converged orthogonal fits stop on different criteria; their centres and radii agree to
// this fraction of the radius (short noisy arcs included, whose centre is ill-conditioned).
constexpr double kAgreeRelative = 1e-7;
// Coordinates of size 1e3 carry rounding of about 1e-13; this absolute floor covers it.
constexpr double kAgreeAbsolute = 1e-9;
// Normals of the two plane fits (different eigen solvers) on planes spanned by the points.
constexpr double kNormalAngle = 1e-9;
// The residual outputs lag the final circle by the last step, whose squared length is below
// NuGetTol() (4.45e-16 by default): each residual moves by at most sqrt(2) |step|, so the form
// by at most 2 sqrt(2 NuGetTol()) ~ 6e-8, and the sum of squares exceeds the optimum by about
// |J step|^2 <= 2 n NuGetTol().
constexpr double kFormLag = 6e-8;
constexpr double kSumLagPerPoint = 2.0 * 4.45e-16;
// Sums of squares of the two fits, from different rounding of the same residuals.
constexpr double kSumRounding = 1e-9;

CNuPointArray FromEigen(const Eigen::MatrixX3d& m) {
    CNuPointArray points(static_cast<int>(m.rows()));
    for (Eigen::Index i = 0; i < m.rows(); ++i)
        points.Add(CNuPoint(m(i, 0), m(i, 1), m(i, 2)));
    return points;
}

Eigen::Vector3d E(const CNuPoint& p) { return Eigen::Vector3d(p.x(), p.y(), p.z()); }
Eigen::Vector3d E(const CNuVector& v) { return Eigen::Vector3d(v[0], v[1], v[2]); }

CNuVector V(const Eigen::Vector3d& v) { return CNuVector(v.x(), v.y(), v.z()); }

// A measured circle: n points over an arc of dSpan degrees, radius dRadius with a form of
// nLobes lobes of relative height dLobe, radial noise dNoise (relative), out-of-plane noise
// dLift (relative), in a random plane about a centre at distance dOffset from the origin.
struct SProfile {
    int n = 50;
    double dRadius = 1.0;
    double dSpan = 360.0;
    int nLobes = 0;
    double dLobe = 0.0;
    double dNoise = 0.0;
    double dLift = 0.0;
    double dOffset = 0.0;
};

Eigen::MatrixX3d Generate(test::Random& rng, const SProfile& s) {
    Eigen::Vector3d normal(rng.Normal(0, 1), rng.Normal(0, 1), rng.Normal(0, 1));
    normal.normalize();
    Eigen::Vector3d e1 = normal.unitOrthogonal();
    Eigen::Vector3d e2 = normal.cross(e1);
    Eigen::Vector3d centre(rng.Normal(0, 1), rng.Normal(0, 1), rng.Normal(0, 1));
    centre *= s.dOffset / centre.norm();
    double dStart = rng.Uniform(0.0, 2.0 * M_PI);
    Eigen::MatrixX3d m(s.n, 3);
    for (int i = 0; i < s.n; ++i) {
        double t = dStart + (s.dSpan * M_PI / 180.0) * (i + rng.Uniform(0.0, 0.5)) / s.n;
        double r = s.dRadius * (1.0 + s.dLobe * std::cos(s.nLobes * t) + rng.Normal(0, s.dNoise));
        double h = s.dRadius * rng.Normal(0, s.dLift);
        m.row(i) = (centre + r * std::cos(t) * e1 + r * std::sin(t) * e2 + h * normal).transpose();
    }
    return m;
}

// The form error of the points about a circle, measured in the circle's plane.
double FormAbout(const CNuCircle& circle, const Eigen::MatrixX3d& m) {
    Eigen::Vector3d n = E(circle.GetNormal()).normalized();
    Eigen::ArrayXd r(m.rows());
    for (Eigen::Index i = 0; i < m.rows(); ++i) {
        Eigen::Vector3d d = m.row(i).transpose() - E(circle.GetCentre());
        r(i) = (d - d.dot(n) * n).norm() - circle.GetRadius();
    }
    return r.maxCoeff() - r.minCoeff();
}

TEST(CircleFit, AgreesWithAnIndependentOrthogonalFitOnManyConfigurations) {
    test::Random rng;
    const double spans[] = {360.0, 180.0, 90.0, 30.0};
    const double radii[] = {1e-3, 1.0, 1e3};
    const double offsets[] = {0.0, 1e3};
    // Every span, radius and offset, each with few points, points lifted off their plane, and
    // lobed points in turn; one case has 10^4 points.
    for (int nCase = 0; nCase < 72; ++nCase) {
        int nRepeat = nCase % 3;
        int n = nRepeat == 0 ? rng.Integer(3, 8) : rng.Integer(9, 300);
        double dRadius = radii[nCase / 6 % 3] * rng.Uniform(1.0, 3.0);
        int nLobes = rng.Integer(2, 5);
        double dLobe = nRepeat == 2 ? 1e-3 : 0.0;
        double dLift = nRepeat == 1 ? 1e-4 : 0.0;
        SProfile s{nCase == 5 ? 10000 : n, dRadius, spans[nCase / 18], nLobes, dLobe, 1e-5, dLift,
                   offsets[nCase / 3 % 2]};
        Eigen::MatrixX3d m = Generate(rng, s);
        CNuCircle circle(1.0);
        double dForm = -1.0;
        double dSum = -1.0;
        circle.Fit(FromEigen(m), &dForm, &dSum, 100);
        oracle::SCircle ref = oracle::FitCircle(m);
        double dLimit = kAgreeRelative * s.dRadius + kAgreeAbsolute;
        EXPECT_LT((E(circle.GetCentre()) - ref.centre).norm(), dLimit) << "case " << nCase;
        EXPECT_LT(std::fabs(circle.GetRadius() - ref.dRadius), dLimit) << "case " << nCase;
        EXPECT_LT(test::AxisAngle(circle.GetNormal(), V(ref.normal)), kNormalAngle)
            << "case " << nCase;
        // The form describes the circle before the last step: close to the final one's.
        EXPECT_NEAR(dForm, FormAbout(circle, m), kFormLag) << "case " << nCase;
        EXPECT_GE(dSum, ref.dSumSquares * (1.0 - kSumRounding) - kSumLagPerPoint * s.n)
            << "case " << nCase;
        EXPECT_LE(dSum, ref.dSumSquares * (1.0 + kSumRounding) + kSumLagPerPoint * s.n)
            << "case " << nCase;
        if (s.n == 3) {
            EXPECT_EQ(dForm, 0.0);
            EXPECT_EQ(dSum, 0.0);
        }
    }
}

TEST(CircleFit, ThreePointsGiveTheExactCircleWithoutIterating) {
    // A circle of radius 5 about (1, 2, 3) in the plane z = 3, through 3-4-5 triangles.
    CNuPointArray points =
        test::Points({CNuPoint(6, 2, 3), CNuPoint(4, 6, 3), CNuPoint(-2, -2, 3)});
    CNuCircle circle(1.0);
    double dForm = -1.0;
    double dSum = -1.0;
    circle.Fit(points, &dForm, &dSum, 1);
    EXPECT_NEAR(circle.GetRadius(), 5.0, 10 * test::kTight);
    EXPECT_LT(circle.GetCentre().DistanceTo(CNuPoint(1, 2, 3)), 10 * test::kTight);
    EXPECT_EQ(dForm, 0.0);
    EXPECT_EQ(dSum, 0.0);
    EXPECT_LT(test::AxisAngle(circle.GetNormal(), CNuVector(0, 0, 1)), test::kTight);
    // The frame's X axis lies in the circle's plane.
    CNuMatrix R = circle.GetRotation();
    Eigen::Vector3d x(R.Element(0, 0), R.Element(0, 1), R.Element(0, 2));
    EXPECT_NEAR(E(circle.GetNormal()).dot(x), 0.0, test::kTight);
    EXPECT_NEAR(x.norm(), 1.0, test::kTight);
}

TEST(CircleFit, ReachingTheIterationLimitIsNotConvergenceAndALargerLimitChangesNothing) {
    CNuCircle circle(1.0);
    auto rule = [&](const CNuPointArray& points) {
        return test::ExpectLimitRule([&](long l) { circle.Fit(points, l); },
                                     [&](long l) { return circle.FitEx(points, l); }, 50,
                                     "CNuCircle");
    };
    // Four points on a circle: the first iteration converges, and it needs a limit of two.
    CNuPointArray four = test::Points(
        {CNuPoint(3, 0, 1), CNuPoint(0, 3, 1), CNuPoint(-3, 0, 1), CNuPoint(0, -3, 1)});
    EXPECT_EQ(rule(four), 2);
    circle.Fit(four, 2);
    EXPECT_NEAR(circle.GetRadius(), 3.0, test::kTight);
    EXPECT_TRUE(test::PointsNear(circle.GetCentre(), CNuPoint(0, 0, 1), test::kTight));

    test::Random rng;
    CNuPointArray arc = FromEigen(Generate(rng, SProfile{40, 10.0, 120.0, 5, 5e-3, 1e-3}));
    long lNeeded = rule(arc);
    ASSERT_GE(lNeeded, 3) << "an arc with form error needs more than the start's step";
    CNuCircle first(1.0), second(1.0);
    double dForm1 = 0.0, dSum1 = 0.0, dForm2 = 0.0, dSum2 = 0.0;
    first.Fit(arc, &dForm1, &dSum1, lNeeded);
    second.Fit(arc, &dForm2, &dSum2, lNeeded + 40);
    EXPECT_EQ(first.GetRadius(), second.GetRadius());
    EXPECT_EQ(first.GetCentre().x(), second.GetCentre().x());
    EXPECT_EQ(dForm1, dForm2);
    EXPECT_EQ(dSum1, dSum2);
}

TEST(CircleFit, HostileDataEndsWithAResultOrACauseAndNeverHangs) {
    CNuCircle circle(1.0);
    // Offsets of 1e8 with a radius of 1: coordinates keep about 1e-8 of the radius.
    std::vector<CNuPoint> far;
    for (int i = 0; i < 12; ++i) {
        double t = i * M_PI / 6.0;
        far.push_back(CNuPoint(1e8 + std::cos(t), -1e8 + std::sin(t), 1e8));
    }
    ASSERT_EQ(circle.FitEx(test::Points(far), 100), eNuFitOk);
    EXPECT_NEAR(circle.GetRadius(), 1.0, 1e-6);
    EXPECT_LT(circle.GetCentre().DistanceTo(CNuPoint(1e8, -1e8, 1e8)), 1e-6);

    // A NaN coordinate is a failure.
    std::vector<CNuPoint> nan = {CNuPoint(1, 0, 0), CNuPoint(0, 1, 0), CNuPoint(-1, 0, 0),
                                 CNuPoint(0, std::numeric_limits<double>::quiet_NaN(), 0)};
    EXPECT_EQ(circle.FitEx(test::Points(nan), 100), eNuFitFailed)
        << "radius " << circle.GetRadius();

    // Offsets of 1e300, whose squares overflow, and a point at the centre of a symmetric set,
    // where the start lands at distance 0: whatever comes out, the call returns.
    for (CNuPoint& p : far)
        p = CNuPoint(p.x() * 1e292, p.y() * 1e292, p.z());
    std::vector<CNuPoint> centred = {CNuPoint(1, 0, 0), CNuPoint(0, 1, 0), CNuPoint(-1, 0, 0),
                                     CNuPoint(0, -1, 0), CNuPoint(0, 0, 0)};
    for (const std::vector<CNuPoint>* pSet : {&far, &centred}) {
        ENuFitResult e = circle.FitEx(test::Points(*pSet), 100);
        EXPECT_TRUE(e == eNuFitOk || e == eNuFitFailed || e == eNuFitNotConverged) << e;
    }
}

}  // namespace
}  // namespace numorix
