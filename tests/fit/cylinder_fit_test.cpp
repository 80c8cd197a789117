// The cylinder and its least-squares fit: constructor refusals and accessors, the refusals of the
// fit in their order, an exact cylinder recovered with its axis snapped, the padding of short
// sets to nine rows, and the optimality condition J^T e = 0 on a noisy cylinder.
#include <cmath>
#include <vector>

#include "fit_test_support.h"
#include "numorix/surfaces/cyl_surf.h"

namespace numorix {
namespace {

// Generous enough for the slowest start of the three; the limit rule is tested on its own.
constexpr long kIterations = 1000;
// sqrt(NuGetTol()): the largest axis component the snapping may have cleared, and the distance
// of a fitted exact cylinder from the true one after rounding of coordinates of size 10.
constexpr double kExactFit = 1e-12;
// |J_k . e| / (|J_k| |e|) at the optimum: the loop stops once the radius step no longer shrinks,
// at a rounding level of the steps, not of the gradient.
constexpr double kStationary = 1e-7;
// The radius of 200 points with noise 1e-3 on a quarter cylinder of radius 12 and length 30:
// poorly conditioned, it strays by some 1e-3.
constexpr double kNoisyRadius = 1e-2;

// n points on the cylinder of radius dRadius about the frame's z axis, angles over dSpan
// radians, heights in [0, dLength], radii perturbed by dNoise (normal).
CNuPointArray CylinderPoints(test::Random& rng, const test::Frame& f, double dRadius, int n,
                             double dSpan, double dLength, double dNoise) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double t = dSpan * (i + rng.Uniform(0.0, 0.5)) / n;
        double r = dRadius + rng.Normal(0.0, dNoise);
        points.Add(f.World(r * std::cos(t), r * std::sin(t), rng.Uniform(0.0, dLength)));
    }
    return points;
}

TEST(CylSurf, ConstructorsCheckRadiusThenAxisSizeThenZeroAxisAndCopyDeeply) {
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuCylSurf c(0.0); }, 5, "radius", "CNuCylSurf"},
        {[] { CNuCylSurf c(std::nan("")); }, 5, "radius", "CNuCylSurf"},
        {[] { CNuCylSurf c(-1.0, CNuPoint(), CNuVector(2)); }, 5, "radius", "CNuCylSurf"},
        {[] { CNuCylSurf c(1.0, CNuPoint(), CNuVector(2)); }, 4, nullptr, "CNuCylSurf"},
        {[] { CNuCylSurf c(1.0, CNuPoint(), CNuVector(0.0, 0.0, 0.0)); }, 3, nullptr,
         "CNuCylSurf"},
    });
    CNuCylSurf bare(2.0);
    EXPECT_FALSE(bare.IsPositionSet());
    EXPECT_EQ(bare.GetType(), CNuObject::eTypeCylSurf);
    CNuCylSurf placed(3.0, CNuPoint(1, 2, 3), CNuVector(0.0, 0.0, -4.0));
    CNuCylSurf copy(placed);
    placed.Translate(1.0, 1.0, 1.0);
    bare = copy;
    double dRadius = 0.0;
    CNuPoint point;
    CNuVector axis;
    bare.GetData(&dRadius, &point, &axis);
    EXPECT_EQ(std::vector<double>({dRadius, point.x(), point.y(), point.z(), axis[0], axis[1],
                                   axis[2], placed.GetAxisPoint().x()}),
              std::vector<double>({3.0, 1.0, 2.0, 3.0, 0.0, 0.0, -1.0, 2.0}))
        << "the copy keeps the position the original had";
    EXPECT_EQ(copy.GetAxis().GetDirection()[2], -1.0);
}

// The limit is tested before anything, the finiteness of the points next, then the count (201
// carrying 5), coplanarity (204 carrying 4) and distinctness (202 carrying 5).
TEST(CylinderFit, RefusesBadDataWithCauseLocationAndCarriedValueInOrder) {
    const CNuPointArray square =
        test::Points({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 3, 0}, {5, 1, 0}});
    const CNuPointArray four = test::Points({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    CNuPointArray repeated = four;
    repeated.Add(four[3]);
    repeated.Add(four[0]);
    CNuPointArray bad = four;
    bad.Add(CNuPoint(0, std::nan(""), 0));
    CNuCylSurf c(1.0);
    double dForm = -1.0, dSum = -1.0;
    test::ExpectFailures<CNuBestfitException>({
        {[&] { c.Fit(CNuPointArray(), 0); }, 213, nullptr, "CNuCylSurf"},
        {[&] { c.FitEx(bad, &dForm, &dSum, 0); }, 213, nullptr, "CNuCylSurf"},
        {[&] { c.Fit(bad, 10); }, 214, nullptr, "CNuCylSurf", 4},
        {[&] { c.Fit(four, &dForm, &dSum, 10); }, 201, nullptr, "CNuCylSurf", 5},
        {[&] { c.Fit(square, 10); }, 204, nullptr, "CNuCylSurf", 4},
        {[&] { c.Fit(repeated, 10); }, 202, nullptr, "CNuCylSurf", 5},
    });
    EXPECT_EQ(std::vector<int>({c.FitEx(bad, 10), c.FitEx(repeated, &dForm, &dSum, 10)}),
              std::vector<int>({eNuFitFailed, eNuFitFailed}));
    EXPECT_EQ(std::vector<double>({dForm, dSum}), std::vector<double>({0.0, 0.0}))
        << "both outputs are cleared before the data are checked";
}

// A cylinder about the z axis comes back with the axis exactly (0, 0, 1), the axis point at the
// foot of the mean, its small coordinates cleared, and no residual.
TEST(CylinderFit, RecoversAnExactCylinderWithItsAxisSnappedToZ) {
    test::Random rng;
    test::Frame f{CNuPoint(0, 0, -2), CNuVector(1, 0, 0), CNuVector(0, 1, 0), CNuVector(0, 0, 1)};
    CNuPointArray points = CylinderPoints(rng, f, 7.5, 40, 2.0 * M_PI, 10.0, 0.0);
    CNuCylSurf c(1.0);
    double dForm = -1.0, dSum = -1.0;
    c.Fit(points, &dForm, &dSum, kIterations);
    CNuVector axis = c.GetAxisDirection();
    CNuPoint point = c.GetAxisPoint();
    EXPECT_EQ(std::vector<double>({std::fabs(axis[2]), axis[0], axis[1]}),
              std::vector<double>({1.0, 0.0, 0.0}));
    EXPECT_TRUE(test::PointsNear(point, CNuPoint(0.0, 0.0, points.MeanPoint().z()), kExactFit));
    EXPECT_NEAR(c.GetRadius(), 7.5, kExactFit);
    EXPECT_LT(dForm, kExactFit);
    EXPECT_LT(dSum, kExactFit * kExactFit);
}

// Fewer than nine points are fitted as the set repeated from its first point on to nine: the
// same bits as the padded set given whole, and another cylinder when other points repeat. The
// data are fixed: from so few points the quadric's candidate axes can be poor enough for every
// start to be abandoned (stored 211), as the rules have it.
TEST(CylinderFit, PadsFewerThanNinePointsByRepeatingThemFromTheFirst) {
    const double angles[] = {0, 100, 150, 230, 300, 40, 190}, heights[] = {0, 4, 8, 2, 6, 8, 1},
                 offsets[] = {0.01, -0.02, 0.015, 0.0, -0.01, 0.02, -0.015};
    for (int n : {5, 7}) {
        CNuPointArray points, padded, otherwise;
        for (int i = 0; i < n; ++i) {
            double r = 4.0 + offsets[i], t = angles[i] * M_PI / 180.0;
            points.Add(CNuPoint(r * std::cos(t), r * std::sin(t), heights[i]));
        }
        padded = points;
        otherwise = points;
        for (int i = 0; i < 9 - n; ++i) {
            padded.Add(points[i]);
            otherwise.Add(points[n - 1 - i]);
        }
        CNuCylSurf fitted(1.0), whole(1.0), other(1.0);
        fitted.Fit(points, kIterations);
        whole.Fit(padded, kIterations);
        other.Fit(otherwise, kIterations);
        SCOPED_TRACE(testing::Message() << n << " points");
        EXPECT_EQ(fitted.GetRadius(), whole.GetRadius());
        EXPECT_EQ(test::Gap(fitted.GetAxisPoint(), whole.GetAxisPoint()), 0.0);
        EXPECT_GT(std::fabs(fitted.GetRadius() - other.GetRadius()), 1e-4)
            << "the repeated points weigh double";
    }
}

// At the least-squares optimum the residuals e_i = rho_i - R are orthogonal to each column of
// the Jacobian: shifts and tilts of the axis across it, and the radius. Checked with a basis of
// the test's own, on full, half and quarter cylinders.
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
        std::vector<std::vector<double>> columns(5);
        std::vector<double> e;
        for (int i = 0; i < points.GetSize(); ++i) {
            CNuVector w = (points[i] - c.GetAxisPoint()).To3DVector();
            double t = w % a, x = w % u, y = w % v, rho = std::hypot(x, y);
            e.push_back(rho - c.GetRadius());
            std::vector<double> row = {x / rho, y / rho, x * t / rho, y * t / rho, 1.0};
            for (int k = 0; k < 5; ++k)
                columns[k].push_back(row[k]);
        }
        auto dot = [](const std::vector<double>& p, const std::vector<double>& q) {
            double s = 0.0;
            for (std::size_t i = 0; i < p.size(); ++i)
                s += p[i] * q[i];
            return s;
        };
        for (int k = 0; k < 5; ++k)
            EXPECT_LT(std::fabs(dot(columns[k], e)) / std::sqrt(dot(columns[k], columns[k]) *
                                                                dot(e, e)),
                      kStationary)
                << "column " << k << ", span " << dSpan << ", radius " << c.GetRadius();
        EXPECT_NEAR(c.GetRadius(), 12.0, kNoisyRadius) << "span " << dSpan;
    }
}

// A candidate that runs out of iterations ends the whole fit: 212, reported as not converged.
TEST(CylinderFit, ReachingTheIterationLimitIsNotConvergence) {
    test::Random rng;
    CNuPointArray points =
        CylinderPoints(rng, test::RandomFrame(rng), 2.0, 30, M_PI, 4.0, 1e-3);
    CNuCylSurf c(1.0);
    test::ExpectLimitRule([&](long l) { c.Fit(points, l); },
                          [&](long l) { return c.FitEx(points, l); }, kIterations, "CNuCylSurf");
}

}  // namespace
}  // namespace numorix
