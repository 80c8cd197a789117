// The cylinder and its least-squares fit: refusals in their order, an exact cylinder with its
// axis snapped, the padding of short sets to nine rows, and J^T e = 0 at the optimum.
#include <cmath>
#include <vector>

#include "fit_test_support.h"
#include "numorix/surfaces/cyl_surf.h"

namespace numorix {
namespace {

// Enough for the slowest of the three starts on these data.
constexpr long kIterations = 1000;
// Coordinates of size 10 after some hundred roundings of an exact fit.
constexpr double kExactFit = 1e-12;
// |J_k . e| / (|J_k| |e|) at the end: the loop stops when the radius step no longer shrinks, at
// a rounding level of the steps rather than of the gradient.
constexpr double kStationary = 1e-7;
// The radius from 200 points with noise 1e-3 on a quarter cylinder is poorly conditioned.
constexpr double kNoisyRadius = 1e-2;

// n points on the cylinder of radius dRadius about the frame's z axis, angles in [0, dSpan],
// heights in [0, dLength], radii with normal noise dNoise.
CNuPointArray CylinderPoints(test::Random& rng, const test::Frame& f, double dRadius, int n,
                             double dSpan, double dLength, double dNoise) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = dSpan * (i + rng.Uniform(0.0, 0.5)) / n, r = dRadius + rng.Normal(0.0, dNoise);
        points.Add(f.World(r * std::cos(t), r * std::sin(t), rng.Uniform(0.0, dLength)));
    }
    return points;
}

TEST(CylSurf, ConstructorsCheckRadiusThenAxisSizeThenZeroAxis) {
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuCylSurf c(std::nan("")); }, 5, "radius", "CNuCylSurf"},
        {[] { CNuCylSurf c(0.0, CNuPoint(), CNuVector(2)); }, 5, "radius", "CNuCylSurf"},
        {[] { CNuCylSurf c(1.0, CNuPoint(), CNuVector(2)); }, 4, nullptr, "CNuCylSurf"},
        {[] { CNuCylSurf c(1.0, CNuPoint(), CNuVector()); }, 3, nullptr, "CNuCylSurf"},
    });
    EXPECT_EQ(CNuCylSurf(3.0, CNuPoint(1, 2, 3), CNuVector(0, 0, -4)).GetAxisDirection()[2], -1.0);
}

// The limit before anything, finiteness next, then 201 carrying 5, 204 carrying 4, 202 carrying 5.
TEST(CylinderFit, RefusesBadDataWithCauseLocationAndCarriedValueInOrder) {
    const CNuPointArray four = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    const CNuPointArray flat =
        test::Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 3, 0}});
    CNuPointArray repeated = four, bad = four;
    repeated.Append(four.SubArray(0, 1));
    bad.Add(CNuPoint(0, std::nan(""), 0));
    CNuCylSurf c(1.0);
    double dForm = -1.0, dSum = -1.0;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { c.FitEx(bad, &dForm, &dSum, 0); }, 213, nullptr, "CNuCylSurf"},
        {[&] { c.Fit(bad, 10); }, 214, nullptr, "CNuCylSurf", 4},
        {[&] { c.Fit(four, &dForm, &dSum, 10); }, 201, nullptr, "CNuCylSurf", 5},
        {[&] { c.Fit(flat, 10); }, 204, nullptr, "CNuCylSurf", 4},
        {[&] { c.Fit(repeated, 10); }, 202, nullptr, "CNuCylSurf", 5},
    });
    EXPECT_EQ(std::vector<double>({dForm, dSum, double(c.FitEx(repeated, 10))}),
              std::vector<double>({0.0, 0.0, double(eNuFitFailed)}));
}

TEST(CylinderFit, RecoversAnExactCylinderWithItsAxisSnappedToZ) {
    test::Random rng;
    test::Frame f{CNuPoint(0, 0, -2), CNuVector(1, 0, 0), CNuVector(0, 1, 0), CNuVector(0, 0, 1)};
    CNuPointArray points = CylinderPoints(rng, f, 7.5, 40, 2.0 * M_PI, 10.0, 0.0);
    CNuCylSurf c(1.0);
    double dForm = -1.0, dSum = -1.0;
    c.Fit(points, &dForm, &dSum, kIterations);
    CNuVector axis = c.GetAxisDirection();
    EXPECT_EQ(std::vector<double>({std::fabs(axis[2]), axis[0], axis[1]}),
              std::vector<double>({1.0, 0.0, 0.0}));
    EXPECT_TRUE(
        test::PointsNear(c.GetAxisPoint(), CNuPoint(0, 0, points.MeanPoint().z()), kExactFit));
    EXPECT_NEAR(c.GetRadius(), 7.5, kExactFit);
    EXPECT_LT(dForm + std::sqrt(dSum), kExactFit);
}

// Five points are fitted as points 0-4, 0-3: the same bits as that set given whole, and another
// cylinder when points 4-1 repeat instead. Fixed data: from five points the quadric's candidate
// axes may be poor enough for every start to be abandoned (211), as the rules have it.
TEST(CylinderFit, PadsFivePointsToNineByRepeatingThemFromTheFirst) {
    const double angles[] = {0, 100, 150, 230, 300}, heights[] = {0, 4, 8, 2, 6},
                 offsets[] = {0.01, -0.02, 0.015, 0.0, -0.01};
    CNuPointArray points;
    for (int i = 0; i < 5; ++i) {
        double r = 4.0 + offsets[i], t = angles[i] * M_PI / 180.0;
        points.Add(CNuPoint(r * std::cos(t), r * std::sin(t), heights[i]));
    }
    CNuPointArray padded = points, otherwise = points;
    padded.Append(points.SubArray(0, 3));
    otherwise.Append(points.SubArray(1, 4));
    CNuCylSurf fitted(1.0), whole(1.0), other(1.0);
    fitted.Fit(points, kIterations);
    whole.Fit(padded, kIterations);
    other.Fit(otherwise, kIterations);
    EXPECT_EQ(std::vector<double>({fitted.GetRadius(), fitted.GetAxisPoint().x()}),
              std::vector<double>({whole.GetRadius(), whole.GetAxisPoint().x()}));
    EXPECT_GT(std::fabs(fitted.GetRadius() - other.GetRadius()), 1e-3) << "repeats weigh double";
}

// The columns: shifts and tilts of the axis across it in a basis of the test's own, the radius.
TEST(CylinderFit, LeavesResidualsOrthogonalToTheJacobianOnNoisyCylinders) {
    test::Random rng;
    for (double dSpan : {2.0 * M_PI, M_PI, 0.5 * M_PI}) {
        test::Frame f = test::RandomFrame(rng);
        f.origin = CNuPoint(100.0, -50.0, 20.0);
        CNuPointArray points = CylinderPoints(rng, f, 12.0, 200, dSpan, 30.0, 1e-3);
        CNuCylSurf c(1.0);
        c.Fit(points, kIterations);
        CNuVector a = c.GetAxisDirection();
        CNuVector u = a * (std::fabs(a[0]) < 0.6 ? CNuVector(1, 0, 0) : CNuVector(0, 1, 0));
        u.Normalise();
        CNuVector v = a * u;
        Eigen::MatrixXd J(points.GetSize(), 5);
        Eigen::VectorXd e(points.GetSize());
        for (int i = 0; i < points.GetSize(); ++i) {
            CNuVector w = (points[i] - c.GetAxisPoint()).To3DVector();
            double t = w % a, x = w % u, y = w % v, rho = std::hypot(x, y);
            J.row(i) << x / rho, y / rho, x * t / rho, y * t / rho, 1.0;
            e(i) = rho - c.GetRadius();
        }
        Eigen::VectorXd cosines =
            (J.transpose() * e).cwiseAbs().cwiseQuotient(J.colwise().norm().transpose()) / e.norm();
        EXPECT_LT(cosines.maxCoeff(), kStationary)
            << "span " << dSpan << ": " << cosines.transpose();
        EXPECT_NEAR(c.GetRadius(), 12.0, kNoisyRadius) << "span " << dSpan;
    }
}

}  // namespace
}  // namespace numorix
