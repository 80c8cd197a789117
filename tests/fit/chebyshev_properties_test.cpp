// Properties every Chebyshev fit must have, whatever its algorithm: the line and plane zones, the
// circle's minimum zone, minimum circumscribed and maximum inscribed circles give the same zone or
// radius after the points are permuted, after some are duplicated and after a point inside the
// answer joins them, and s times it after the data are scaled by s, for s far above and below the
// data of order 10 that the other suites use (an absolute threshold inside a fit shows there).
#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "fit_test_support.h"
#include "numorix/curves/circle.h"

namespace numorix {
namespace {

// What a fit reports (a zone or a radius), and a point that may join the data without changing
// it: inside the zone, or for a circle on the ray from its centre to the point farthest from it,
// midway between the circle and that point (inside the circumscribed disc, inside the minimum
// zone, and inside the hull but outside the inscribed circle).
struct SAnswer {
    double dValue;
    CNuPoint inside;
};
using Fit = std::function<SAnswer(const CNuPointArray&, double dTolerance)>;

CNuPoint Mean(const CNuPointArray& p) {
    double x = 0.0, y = 0.0, z = 0.0;
    for (int i = 0; i < p.GetSize(); ++i) {
        x += p[i].x() / p.GetSize();
        y += p[i].y() / p.GetSize();
        z += p[i].z() / p.GetSize();
    }
    return CNuPoint(x, y, z);
}

SAnswer Circle(const CNuPointArray& p, const CNuCircle& c, double dValue) {
    const CNuPoint& o = c.GetCentre();
    int nFar = 0;
    for (int i = 1; i < p.GetSize(); ++i)
        if (test::Gap(p[i], o) > test::Gap(p[nFar], o)) nFar = i;
    double t = 0.5 * (1.0 + c.GetRadius() / test::Gap(p[nFar], o));
    return {dValue, CNuPoint(o.x() + t * (p[nFar].x() - o.x()), o.y() + t * (p[nFar].y() - o.y()),
                             o.z() + t * (p[nFar].z() - o.z()))};
}

CNuPointArray Transformed(const CNuPointArray& p, const std::vector<int>& order, double s) {
    CNuPointArray q(static_cast<int>(order.size()));
    for (int i : order)
        q.Add(CNuPoint(p[i].x() * s, p[i].y() * s, p[i].z() * s));
    return q;
}

TEST(ChebyshevFits, KeepTheirAnswerUnderPermutationDuplicationInsidePointsAndScaling) {
    test::Random rng;
    CNuPointArray lined(30), lobed(30);
    for (int i = 0; i < 30; ++i) {
        double x = rng.Uniform(-10.0, 10.0), t = rng.Uniform(0.0, 2.0 * M_PI);
        lined.Add(CNuPoint(x, 0.3 * x + 1.0 + rng.Uniform(-0.5, 0.5), 0.5));
        double r = 10.0 + 0.05 * std::cos(3.0 * t) + rng.Uniform(-0.01, 0.01);
        lobed.Add(CNuPoint(2.0 + r * std::cos(t), -1.0 + r * std::sin(t), 0.5));
    }
    CNuPointArray slab = test::NearPlane(rng, CNuVector(1, 2, 3), 30, 10.0, 0.5);
    CNuLine line;
    CNuPlane plane;
    CNuCircle circle(1.0);
    double dZone = 0.0;
    struct SCase {
        const char* name;
        const CNuPointArray& points;
        Fit fit;
    };
    const SCase cases[] = {
        {"line zone", lined,
         [&](const CNuPointArray& p, double dTol) {
             line.FitMinZone(p, &dZone, dTol, 200);
             return SAnswer{dZone, Mean(p)};
         }},
        {"plane zone", slab,
         [&](const CNuPointArray& p, double dTol) {
             plane.FitMinZone(p, &dZone, dTol);
             return SAnswer{dZone, Mean(p)};
         }},
        {"circle zone", lobed,
         [&](const CNuPointArray& p, double dTol) {
             circle.FitMinZone(p, &dZone, dTol, 200);
             return Circle(p, circle, dZone);
         }},
        {"circumscribed", lobed,
         [&](const CNuPointArray& p, double dTol) {
             circle.FitMin(p, dTol);
             return Circle(p, circle, circle.GetRadius());
         }},
        {"inscribed", lobed,
         [&](const CNuPointArray& p, double dTol) {
             circle.FitMax(p, dTol);
             return Circle(p, circle, circle.GetRadius());
         }},
    };
    // The fits are asked for 1e-9 of the data's size; an answer may miss by a few such.
    constexpr double kFitTol = 1e-8;
    constexpr double kSlack = 20.0 * kFitTol;
    for (const SCase& c : cases) {
        std::vector<int> order(static_cast<std::size_t>(c.points.GetSize()));
        std::iota(order.begin(), order.end(), 0);
        SAnswer base = c.fit(c.points, kFitTol);
        CNuPointArray inside(c.points);
        inside.Add(base.inside);
        std::vector<int> shuffled(order), doubled(order);
        std::shuffle(shuffled.begin(), shuffled.end(), rng.Engine());
        for (int i = 0; i < c.points.GetSize(); i += 3)
            doubled.push_back(i);
        struct SVariant {
            std::string name;
            CNuPointArray points;
            double s;
        };
        const SVariant variants[] = {{"permuted", Transformed(c.points, shuffled, 1.0), 1.0},
                                     {"duplicated", Transformed(c.points, doubled, 1.0), 1.0},
                                     {"inside point", inside, 1.0},
                                     {"scaled by 1e3", Transformed(c.points, order, 1e3), 1e3},
                                     {"scaled by 1e-3", Transformed(c.points, order, 1e-3), 1e-3}};
        for (const SVariant& v : variants) {
            SCOPED_TRACE(std::string(c.name) + ", " + v.name);
            double dValue = 0.0;
            ASSERT_NO_THROW(dValue = c.fit(v.points, kFitTol * v.s).dValue);
            EXPECT_NEAR(dValue / v.s, base.dValue, kSlack) << "unscaled " << base.dValue;
        }
    }
}

}  // namespace
}  // namespace numorix
