// The fit frame: how the Ex operations map failures and keep the thread's length tolerance, the
// refusals of the line, plane and circle fits, the Gauss-Newton skeleton's counting of iterations,
// the sign cleaning of directions, the conic fit and its focal form, and the quadric axes.
#include <cmath>
#include <limits>
#include <stdexcept>

#include "fit_test_support.h"
#include "numorix/curves/circle.h"
#include "numorix/curves/curve.h"
#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/surfaces/surface.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// Closed forms of a few dozen operations on coordinates of order 1 to 10.
constexpr double kClosedForm = 1e-10;
// A thread length tolerance that no fit uses by default, to see it restored.
constexpr double kThreadTol = 2e-12;

TEST(FitEx, MapsNotConvergedAndEveryOtherFailureAndLetsTheLimitTestEscape) {
    EXPECT_EQ(fit::RunFitEx(1, "CNuCircle", [] {}), eNuFitOk);
    EXPECT_EQ(fit::RunFitEx(1, "CNuCircle", [] { throw CNuBestfitException(12, "X"); }),
              eNuFitNotConverged);
    EXPECT_EQ(fit::RunFitEx(1, "CNuCircle", [] { throw CNuBestfitException(11, "X"); }),
              eNuFitFailed);
    EXPECT_EQ(fit::RunFitEx(1, "CNuCircle", [] { throw CNuOperationException(12, "n", "X"); }),
              eNuFitFailed)
        << "cause 12 of another class is not a missed convergence";
    EXPECT_EQ(fit::RunFitEx(1, "CNuCircle", [] { throw std::runtime_error("x"); }), eNuFitFailed);
    bool bCalled = false;
    ExpectNuFailure<CNuBestfitException>(
        [&] { fit::RunFitEx(0, "CNuCircle", [&] { bCalled = true; }); }, 213, nullptr, "CNuCircle");
    EXPECT_FALSE(bCalled);
    test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, kThreadTol);
    double dSeen = 0.0;
    EXPECT_EQ(fit::RunFitExCatchAll(1e-3, [&] { dSeen = NuGetLengthTol(); }), eNuFitOk);
    EXPECT_EQ(dSeen, 1e-3);
    EXPECT_EQ(fit::RunFitExCatchAll(1e-3, [] { throw CNuBestfitException(12, "X"); }), eNuFitFailed)
        << "the form without a limit never reports not converged";
    EXPECT_EQ(NuGetLengthTol(), kThreadTol);
}

// The point sets of the Ex and refusal tables.
struct SSets {
    CNuPointArray none;
    CNuPointArray one = test::Points({CNuPoint(1, 2, 3)});
    CNuPointArray two = test::Points({CNuPoint(1, 2, 3), CNuPoint(2, 2, 3)});
    CNuPointArray same = test::Points({CNuPoint(1, 1, 0), CNuPoint(1, 1, 0), CNuPoint(1, 1, 0)});
    CNuPointArray diagonal =
        test::Points({CNuPoint(0, 0, 0), CNuPoint(1, 1, 1), CNuPoint(2, 2, 2), CNuPoint(5, 5, 5)});
    CNuPointArray square =
        test::Points({CNuPoint(0, 0, 0), CNuPoint(1, 0, 0), CNuPoint(1, 1, 0), CNuPoint(0, 1, 0)});
    CNuPointArray tetra =
        test::Points({CNuPoint(0, 0, 0), CNuPoint(1, 0, 0), CNuPoint(0, 1, 0), CNuPoint(0, 0, 1)});
    CNuPointArray nan =
        test::Points({CNuPoint(0, 0, 0), CNuPoint(4, 0, 0), CNuPoint(0, 3, 0),
                      CNuPoint(std::numeric_limits<double>::quiet_NaN(), 1, 0), CNuPoint(2, 2, 0)});
};

// The public Ex forms give their mapped result and leave the thread's length tolerance as they
// found it on every path; the least-squares circle, which takes no tolerance, uses the thread's.
TEST(FitEx, PublicFormsMapTheirResultAndRestoreTheLengthTolerance) {
    test::ScopedTolerance guard(NuGetLengthTol, NuSetLengthTol, kThreadTol);
    const SSets s;
    CNuLine line;
    CNuCircle circle(1.0);
    double dZone = -1.0;
    EXPECT_EQ(line.FitMinZoneEx(s.square, &dZone, 1e-6, 10), eNuFitOk);
    EXPECT_NEAR(dZone, 1.0, kClosedForm);
    EXPECT_EQ(line.FitMinZoneEx(s.square, &dZone, 1e-6, 1), eNuFitNotConverged);
    EXPECT_EQ(line.FitMinZoneEx(s.tetra, &dZone, 1e-6, 10), eNuFitFailed);
    EXPECT_EQ(circle.FitMaxEx(s.diagonal, 1e-7), eNuFitFailed);
    EXPECT_EQ(NuGetLengthTol(), kThreadTol);
    // 1e-7 off the line is collinear at 1e-6 and a circle at 1e-12.
    CNuPointArray flat = test::Points({CNuPoint(0, 0, 0), CNuPoint(1, 1e-7, 0), CNuPoint(2, 0, 0)});
    NuSetLengthTol(1e-6);
    EXPECT_EQ(circle.FitEx(flat, 10), eNuFitFailed);
    NuSetLengthTol(1e-12);
    EXPECT_EQ(circle.FitEx(flat, 10), eNuFitOk);
}

// One row per fit and rule, with the stored cause, location and the count of points named.
// Limits below 1 escape even the Ex forms.
TEST(FitRefusals, EveryFitRefusesBadInputWithItsCauseAndLocation) {
    const SSets s;
    CNuLine line;
    CNuPlane plane;
    CNuCircle circle(1.0);
    double dZone = -1.0;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { line.Fit(s.one); }, 201, nullptr, "CNuLine", 2},
        {[&] { line.Fit(s.same); }, 202, nullptr, "CNuLine", 2},
        {[&] { line.FitMinZoneEx(s.square, &dZone, 1e-6, 0); }, 213, nullptr, "CNuLine"},
        {[&] { line.FitMinZone(s.one, &dZone, 1e-9, 5); }, 201, nullptr, "CNuLine", 2},
        {[&] { line.FitMinZone(s.same, &dZone, 1e-9, 5); }, 202, nullptr, "CNuLine", 2},
        {[&] { plane.Fit(s.two); }, 201, nullptr, "CNuPlane", 3},
        {[&] { plane.Fit(s.diagonal); }, 203, nullptr, "CNuPlane", 3},
        {[&] { plane.FitMinZone(s.two, &dZone, 1e-9); }, 201, nullptr, "CNuPlane"},
        {[&] { plane.FitMinZone(s.diagonal, &dZone, 1e-9); }, 203, nullptr, "CNuPlane"},
        {[&] { circle.FitEx(s.square, 0); }, 213, nullptr, "CNuCircle"},
        {[&] { circle.Fit(s.two, 10); }, 201, nullptr, "CNuPlane", 3},
        {[&] { circle.Fit(s.diagonal, 10); }, 203, nullptr, "CNuPlane"},
        {[&] { circle.FitMinZoneEx(s.square, &dZone, 1e-9, 0); }, 213, nullptr, "CNuCircle"},
        {[&] { circle.FitMinZone(s.none, &dZone, 1e-9, 5); }, 201, nullptr, "CNuCircle"},
        {[&] { circle.FitMin(s.none, 1e-9); }, 201, nullptr, "CNuCircle"},
        {[&] { circle.FitMax(s.two, 1e-9); }, 201, nullptr, "CNuCircle"},
        {[&] { circle.FitMax(s.diagonal, 1e-9); }, 203, nullptr, "CNuCircle"},
    });
    // Zone fits of points in space hand over to the cylinder and torus fits, not yet offered.
    test::ExpectFailures<CNuOperationException>({
        {[&] { line.FitMinZone(s.tetra, &dZone, 1e-9, 10); }, 145, "FitMinZone", "CNuLine"},
        {[&] { circle.FitMinZone(s.tetra, &dZone, 1e-9, 10); }, 145, "FitMinZone", "CNuCircle"},
    });
    // A NaN coordinate ends the line zone with a cause, never the exchange limit's.
    try {
        line.FitMinZone(s.nan, &dZone, 1e-9, 100);
        ADD_FAILURE() << "NaN data gave zone " << dZone;
    } catch (const CNuException& e) {
        EXPECT_NE(e.m_nCause, 212) << test::MessageOf(e);
    }
}

// A linear model y = a + b x solved by the skeleton from (0, 0): the first step is exact and the
// second is zero, so convergence is seen in iteration 2.
long FitStraightLine(long lMaxIterations, double* pdA, double* pdB) {
    const double adX[4] = {0.0, 1.0, 2.0, 3.0};
    double a = 0.0;
    double b = 0.0;
    CNuMatrix J(4, 2);
    CNuVector r(4);
    long iter = fit::GaussNewton(
        lMaxIterations, "Test", J, r,
        [&](CNuMatrix& jac, CNuVector& rhs) {
            for (int i = 0; i < 4; ++i) {
                jac.Element(i, 0) = 1.0;
                jac.Element(i, 1) = adX[i];
                rhs[i] = (1.0 + 2.0 * adX[i]) - (a + b * adX[i]);
            }
        },
        [&](const CNuVector& step) {
            a += step[0];
            b += step[1];
            return step % step;
        },
        [] { return NuGetTol(); });
    *pdA = a;
    *pdB = b;
    return iter;
}

TEST(GaussNewton, ConvergingInTheLastPermittedIterationIsNotConverged) {
    double a = 0.0;
    double b = 0.0;
    ExpectNuFailure<CNuBestfitException>([&] { FitStraightLine(2, &a, &b); }, 212, nullptr, "Test");
    EXPECT_EQ(FitStraightLine(3, &a, &b), 2);
    EXPECT_NEAR(a, 1.0, kClosedForm);
    EXPECT_NEAR(b, 2.0, kClosedForm);
}

TEST(GaussNewton, StepThatFailsToShrinkEndsTheLoopAsAccepted) {
    CNuMatrix J(1, 1);
    CNuVector r(1);
    int nCalls = 0;
    long iter = fit::GaussNewton(
        10, "Test", J, r,
        [](CNuMatrix& jac, CNuVector& rhs) {
            jac.Element(0, 0) = 1.0;
            rhs[0] = 1.0;
        },
        [&](const CNuVector&) { return ++nCalls == 1 ? 1.0 : 2.0; }, [] { return 1e-30; });
    EXPECT_EQ(iter, 2);
}

TEST(CleanDirection, ZeroesTinyComponentsAndMakesTheFirstLargestPositive) {
    CNuVector v(-0.6, 1e-17, -0.8);
    fit::CleanDirection(&v);
    EXPECT_EQ(v[0], 0.6);
    EXPECT_EQ(v[1], 0.0);
    EXPECT_EQ(v[2], 0.8);
    CNuVector tie(-0.5, 0.5, 0.0);
    fit::CleanDirection(&tie);
    EXPECT_EQ(tie[0], 0.5) << "the first of equal magnitudes decides";
    EXPECT_EQ(tie[1], -0.5);
}

// Points of the conic with centre (cx, cy), semi-axes s1 along angle t and s2 across it;
// bHyperbola takes the branches x^2/s1^2 - y^2/s2^2 = 1 instead of the ellipse.
void Conic(bool bHyperbola, double cx, double cy, double t, double s1, double s2, CNuVector* pX,
           CNuVector* pY) {
    const int n = 12;
    *pX = CNuVector(n);
    *pY = CNuVector(n);
    for (int i = 0; i < n; ++i) {
        double u, v;
        if (bHyperbola) {
            double s = -1.2 + 2.4 * (i / 2) / (n / 2 - 1);
            u = (i % 2 == 0 ? 1.0 : -1.0) * s1 * std::cosh(s);
            v = s2 * std::sinh(s);
        } else {
            double s = 2.0 * M_PI * i / n + 0.1;
            u = s1 * std::cos(s);
            v = s2 * std::sin(s);
        }
        (*pX)[i] = cx + u * std::cos(t) - v * std::sin(t);
        (*pY)[i] = cy + u * std::sin(t) + v * std::cos(t);
    }
}

// The conic and quadric starts are protected helpers of the curve and surface families.
struct CurveStarts : CNuCurve {
    using CNuCurve::CentredQuadraticFit;
    using CNuCurve::QuadraticFit;
};
struct SurfaceStarts : CNuSurface {
    using CNuSurface::QuadricAxes;
};

TEST(QuadraticFit, ReproducesAnExactConicNormalisedToConstantOne) {
    CNuVector x, y;
    Conic(false, 0.0, 0.0, 0.0, 2.0, 1.0, &x, &y);
    CNuVector coefficients(5);
    CurveStarts::QuadraticFit(x, y, &coefficients);
    const double adExpected[5] = {-0.25, 0.0, -1.0, 0.0, 0.0};
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(coefficients[i], adExpected[i], kClosedForm) << "coefficient " << i;
}

TEST(CentredQuadraticFit, GivesTheFociAndSemiAxisOfEllipseAndHyperbola) {
    CNuVector x, y;
    double t = 0.5;
    Conic(false, 1.0, 2.0, t, 3.0, 1.5, &x, &y);
    CNuVector result(5);
    CurveStarts::CentredQuadraticFit(x, y, &result, 1);
    double f = std::sqrt(9.0 - 2.25);
    // The foci may come in either order along the major axis.
    double dSign = (result[2] - result[0]) * std::cos(t) >= 0.0 ? 1.0 : -1.0;
    EXPECT_NEAR(result[0], 1.0 - dSign * f * std::cos(t), kClosedForm);
    EXPECT_NEAR(result[1], 2.0 - dSign * f * std::sin(t), kClosedForm);
    EXPECT_NEAR(result[2], 1.0 + dSign * f * std::cos(t), kClosedForm);
    EXPECT_NEAR(result[3], 2.0 + dSign * f * std::sin(t), kClosedForm);
    EXPECT_NEAR(result[4], 3.0, kClosedForm);

    Conic(true, -1.0, 0.5, t, 1.0, 2.0, &x, &y);
    CurveStarts::CentredQuadraticFit(x, y, &result, 0);
    f = std::sqrt(1.0 + 4.0);
    double dFocal = std::hypot(result[2] - result[0], result[3] - result[1]) / 2.0;
    EXPECT_NEAR(dFocal, f, kClosedForm);
    EXPECT_NEAR((result[0] + result[2]) / 2.0, -1.0, kClosedForm);
    EXPECT_NEAR((result[1] + result[3]) / 2.0, 0.5, kClosedForm);
    // The focal line is the transverse axis, at angle t.
    EXPECT_NEAR(
        std::fabs((result[2] - result[0]) * std::sin(t) - (result[3] - result[1]) * std::cos(t)),
        0.0, kClosedForm);
    EXPECT_NEAR(result[4], 1.0, kClosedForm);

    // An ellipse asked for as a hyperbola is the wrong kind of conic.
    Conic(false, 1.0, 2.0, t, 3.0, 1.5, &x, &y);
    ExpectNuFailure<CNuBestfitException>(
        [&] { CurveStarts::CentredQuadraticFit(x, y, &result, 0); }, 206, nullptr, "CNuCurve");
}

TEST(QuadricAxes, OffersTheAxisOfACylinderWithAPointOnIt) {
    test::Random rng;
    CNuVector axis(1.0, 2.0, 2.0);
    axis /= 3.0;
    CNuVector u;
    axis.OrthonormalX(&u);
    CNuVector v = axis * u;
    CNuPoint base(1.0, -2.0, 0.5);
    CNuPointArray points(40);
    for (int i = 0; i < 40; ++i) {
        double s = rng.Uniform(-3.0, 3.0);
        double a = rng.Uniform(0.0, 2.0 * M_PI);
        CNuVector d = axis * s + u * (2.0 * std::cos(a)) + v * (2.0 * std::sin(a));
        points.Add(base + d.To3DPoint());
    }
    CNuPoint centres[3];
    CNuVector axes[3];
    SurfaceStarts::QuadricAxes(points, points.MeanPoint(), centres, axes);
    int nFound = -1;
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(axes[k].Magnitude(), 1.0, kClosedForm);
        if (test::AxisAngle(axes[k], axis) < 1e-8) nFound = k;
    }
    ASSERT_GE(nFound, 0) << "no candidate along the cylinder's axis";
    EXPECT_GT(axes[nFound][2], 0.0) << "the largest component is made positive";
    CNuVector off = (centres[nFound] - base).To3DVector();
    EXPECT_LT((off * axis).Magnitude(), 1e-8) << "the candidate point lies on the axis";
    // The candidate points are the centre less its part along each axis: all three lie in the
    // plane through the mean normal to their own axis.
    for (int k = 0; k < 3; ++k)
        EXPECT_NEAR((centres[k] - points.MeanPoint()).To3DVector() % axes[k], 0.0, kClosedForm);
}

}  // namespace
}  // namespace numorix
