// Properties every Chebyshev fit must have, whatever its algorithm: the line and plane zones, the
// circle's minimum zone, minimum circumscribed and maximum inscribed circles give the same zone or
// radius after the points are permuted, after some are duplicated and after a point inside the
// answer joins them, and s times it after the data are scaled by s, for s far above and below the
// data of order 10 that the other suites use (an absolute threshold inside a fit shows there).
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "fit_test_support.h"
#include "numorix/curves/circle.h"
#include "numorix/surfaces/sph_surf.h"

namespace numorix {
namespace {

// The fits, in the order of the trace's numbers.
enum EFit { eLineZone, ePlaneZone, eCircleZone, eCircumscribed, eInscribed };

// The zone or radius of a fit, and a point that may join the data without changing it: for the
// line and plane the mean point, inside the convex zone; for a circle the point on the ray from
// its centre to the first point, midway between the circle and that point, which lies inside the
// circumscribed disc, inside the zone, and inside the hull but outside the inscribed circle.
double Answer(EFit eFit, const CNuPointArray& p, double dTol, CNuPoint* pInside) {
    double dZone = 0.0;
    CNuLine line;
    CNuPlane plane;
    CNuCircle c(1.0);
    *pInside = p.MeanPoint();
    if (eFit == eLineZone) line.FitMinZone(p, &dZone, dTol, 200);
    if (eFit == ePlaneZone) plane.FitMinZone(p, &dZone, dTol);
    if (eFit <= ePlaneZone) return dZone;
    if (eFit == eCircleZone) c.FitMinZone(p, &dZone, dTol, 200);
    if (eFit == eCircumscribed) c.FitMin(p, dTol);
    if (eFit == eInscribed) c.FitMax(p, dTol);
    const CNuPoint& o = c.GetCentre();
    *pInside = o + (p[0] - o) * (0.5 * (1.0 + c.GetRadius() / test::Gap(p[0], o)));
    return eFit == eCircleZone ? dZone : c.GetRadius();
}

// The collinearity test compares cross products with the tolerance unscaled: when its first two
// points lie just a tolerance apart, every cross product with them is below it, and a triangle
// passes the test. The fits that answer collinear points with a line must not take such a set
// for one: its answer is the one of the same points in an order that starts with a wide pair. The
// zone's exchange starts from those two points, whose circle with a third the least-squares
// circle refuses (203 of the plane: they coincide at the length tolerance): a refusal, not a
// wrong zone.
TEST(ChebyshevFits, DoNotTakePointsForALineWhenTheFirstTwoLieAToleranceApart) {
    constexpr double kTol = 1e-15;  // the first two points are 1.5 of it apart
    const CNuPointArray close = test::Points(
        {{0, 0, 0}, {1.5e-15, 0, 0}, {1, 0.6, 0}, {-0.5, 0.4, 0}, {0.2, -0.5, 0}});
    const CNuPointArray wide = test::Points(
        {{1, 0.6, 0}, {-0.5, 0.4, 0}, {0.2, -0.5, 0}, {0, 0, 0}, {1.5e-15, 0, 0}});
    CNuPoint inside;
    for (EFit eFit : {eLineZone, eCircumscribed})
        EXPECT_NEAR(Answer(eFit, close, kTol, &inside), Answer(eFit, wide, kTol, &inside), 1e-12)
            << "fit " << eFit;
    EXPECT_NU_THROW(Answer(eCircleZone, close, kTol, &inside), CNuBestfitException, 203);
    CNuSphSurf sphere(1.0), reordered(1.0);
    sphere.FitMin(close, kTol);
    reordered.FitMin(wide, kTol);
    EXPECT_NEAR(sphere.GetRadius(), reordered.GetRadius(), 1e-12) << "smallest sphere";
}

// Five points 1e-11 in size, two of them 3e-10 apart along z, at a tolerance of 1e-12: the rule
// takes them for a line, and its plane for them is normal to that line. The zone and its
// bounding lines are found in the plane of their widest triangle instead (found by fuzzing: zone
// 0 with a point 1e-11 off the line).
TEST(LineMinZone, TakesPointsTheRuleCallsALineInThePlaneOfTheirWidestTriangle) {
    constexpr double kTol = 1e-12, kRounding = 1e-24;  // products of coordinates of 1e-11
    const CNuPointArray p = test::Points({{9.1365937174111358e-15, 0, 2.8813190928262316e-10},
                                          {9.1365937174111358e-15, 2.4832332238756061e-318, 0},
                                          {3.1108872212841162e-13, -6.0390425682200096e-13,
                                           -6.0390425682200096e-13},
                                          {6.1866092533295789e-12, -1.2354945319224336e-11,
                                           -1.2354945319224336e-11},
                                          {9.1365937174111358e-15, 1.4546915372463277e-156, 0}});
    CNuLine line, inner, outer;
    double dZone = -1.0;
    line.FitMinZone(p, &dZone, &inner, &outer, kTol, 100);
    EXPECT_NEAR(dZone, 1.32313e-11, 1e-16);
    for (int i = 0; i < p.GetSize(); ++i) {
        EXPECT_LE(p[i].DistanceTo(line), dZone / 2 + kRounding) << "point " << i;
        EXPECT_LE(p[i].DistanceTo(inner) + p[i].DistanceTo(outer), dZone + kRounding) << i;
    }
}

TEST(ChebyshevFits, KeepTheirAnswerUnderPermutationDuplicationInsidePointsAndScaling) {
    test::Random rng;
    CNuPointArray lined(30), lobed(30), slab(30);
    for (int i = 0; i < 30; ++i) {
        double x = rng.Uniform(-10.0, 10.0), y = rng.Uniform(-10.0, 10.0);
        double t = rng.Uniform(0.0, 2.0 * M_PI);
        double r = 10.0 + 0.05 * std::cos(3.0 * t) + rng.Uniform(-0.01, 0.01);
        lined.Add(CNuPoint(x, 0.3 * x + 1.0 + rng.Uniform(-0.5, 0.5), 0.5));
        lobed.Add(CNuPoint(2.0 + r * std::cos(t), -1.0 + r * std::sin(t), 0.5));
        slab.Add(CNuPoint(x, y, 0.2 * x - 0.4 * y + rng.Uniform(-0.5, 0.5)));
    }
    // The fits are asked for 1e-9 of the data's size (10); an answer may miss by a few such.
    constexpr double kFitTol = 1e-8, kSlack = 20.0 * kFitTol;
    for (EFit eFit : {eLineZone, ePlaneZone, eCircleZone, eCircumscribed, eInscribed}) {
        const CNuPointArray& p = eFit == eLineZone ? lined : eFit == ePlaneZone ? slab : lobed;
        CNuPoint inside;
        double dBase = Answer(eFit, p, kFitTol, &inside);
        // The indices into p and its inside point of the variants, each scaled by s: permuted,
        // a third of the points repeated, the inside point added, scaled by 1e3 and by 1e-3.
        std::vector<int> order;
        for (int i = 0; i < p.GetSize(); ++i)
            order.push_back(i);
        std::vector<int> shuffled(order), doubled(order), added(order);
        std::shuffle(shuffled.begin(), shuffled.end(), rng.Engine());
        doubled.insert(doubled.end(), order.begin(), order.begin() + p.GetSize() / 3);
        added.push_back(p.GetSize());
        CNuPointArray extended(p);
        extended.Add(inside);
        const std::pair<std::vector<int>, double> variants[] = {
            {shuffled, 1.0}, {doubled, 1.0}, {added, 1.0}, {order, 1e3}, {order, 1e-3}};
        for (const auto& v : variants) {
            SCOPED_TRACE(testing::Message() << "fit " << eFit << ", " << v.first.size()
                                            << " points scaled by " << v.second);
            CNuPointArray q;
            for (int i : v.first)
                q.Add(extended[i] * v.second);
            double dValue = 0.0;
            ASSERT_NO_THROW(dValue = Answer(eFit, q, kFitTol * v.second, &inside));
            EXPECT_NEAR(dValue / v.second, dBase, kSlack) << "unscaled " << dBase;
        }
    }
}

}  // namespace
}  // namespace numorix
