// Independent answers to the circle zone problems from CGAL, for tests and benchmarks only.
//
//   MinEnclosingCircle    the smallest circle holding all points (CGAL::Min_circle_2, Welzl's
//                         randomised algorithm, exact predicates).
//   LargestEmptyCircle    the largest circle with no point inside whose centre lies inside the
//                         convex hull: the largest circumcircle of a Delaunay triangle whose
//                         centre falls in a finite face. On points around a closed profile this
//                         is the maximum inscribed circle.
//   MinAreaAnnulus        the annulus of least R^2 - r^2 holding all points (CGAL::Min_annulus_d,
//                         a linear program solved in exact arithmetic). It is not the annulus of
//                         least width, but it bounds it from both sides:
//                             w_A (R_A + r_A) / (R + r)  <=  w_min  <=  w_A,
//                         where w = R - r and (R, r) are the radii of the least-width annulus,
//                         since R^2 - r^2 = w (R + r) is least for the CGAL annulus.
//
// Include this header in one translation unit per target: CGAL is heavy to compile.
#ifndef NUMORIX_TESTS_SUPPORT_CGAL_CIRCLE_ORACLE_H
#define NUMORIX_TESTS_SUPPORT_CGAL_CIRCLE_ORACLE_H

#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Gmpzf.h>
#include <CGAL/Homogeneous.h>
#include <CGAL/Min_annulus_d.h>
#include <CGAL/Min_circle_2.h>
#include <CGAL/Min_circle_2_traits_2.h>
#include <CGAL/Min_sphere_annulus_d_traits_2.h>
#include <CGAL/Quotient.h>

#include <cmath>
#include <vector>

namespace numorix {
namespace oracle {

struct SXY {
    double x, y;
};

struct SCircleXY {
    double x, y, r;
};

struct SAnnulusXY {
    double x, y, rInner, rOuter;
};

using KEpick = CGAL::Exact_predicates_inexact_constructions_kernel;

inline SCircleXY MinEnclosingCircle(const std::vector<SXY>& points) {
    using Traits = CGAL::Min_circle_2_traits_2<KEpick>;
    std::vector<KEpick::Point_2> p;
    p.reserve(points.size());
    for (const SXY& q : points)
        p.emplace_back(q.x, q.y);
    CGAL::Min_circle_2<Traits> mc(p.begin(), p.end(), true);
    const auto& c = mc.circle();
    return {CGAL::to_double(c.center().x()), CGAL::to_double(c.center().y()),
            std::sqrt(CGAL::to_double(c.squared_radius()))};
}

inline SCircleXY LargestEmptyCircle(const std::vector<SXY>& points) {
    using Delaunay = CGAL::Delaunay_triangulation_2<KEpick>;
    std::vector<KEpick::Point_2> p;
    p.reserve(points.size());
    for (const SXY& q : points)
        p.emplace_back(q.x, q.y);
    Delaunay dt(p.begin(), p.end());
    SCircleXY best{0.0, 0.0, -1.0};
    for (auto f = dt.finite_faces_begin(); f != dt.finite_faces_end(); ++f) {
        KEpick::Point_2 c = dt.circumcenter(f);
        double r = std::sqrt(CGAL::to_double(CGAL::squared_distance(c, f->vertex(0)->point())));
        if (r <= best.r) continue;
        if (dt.is_infinite(dt.locate(c))) continue;  // centre outside the hull
        best = {c.x(), c.y(), r};
    }
    return best;
}

inline SAnnulusXY MinAreaAnnulus(const std::vector<SXY>& points) {
    using K = CGAL::Homogeneous<double>;
    using Traits = CGAL::Min_sphere_annulus_d_traits_2<K, CGAL::Gmpzf, double>;
    std::vector<K::Point_2> p;
    p.reserve(points.size());
    for (const SXY& q : points)
        p.emplace_back(q.x, q.y);
    CGAL::Min_annulus_d<Traits> ma(p.begin(), p.end());
    // Homogeneous centre (hx, hy, hw) and squared radii over a common denominator, all exact:
    // divide as exact quotients before rounding to double.
    using Q = CGAL::Quotient<CGAL::Gmpzf>;
    auto it = ma.center_coordinates_begin();
    CGAL::Gmpzf hx = *it++;
    CGAL::Gmpzf hy = *it++;
    CGAL::Gmpzf hw = *it;
    CGAL::Gmpzf den = ma.squared_radii_denominator();
    return {CGAL::to_double(Q(hx, hw)), CGAL::to_double(Q(hy, hw)),
            std::sqrt(CGAL::to_double(Q(ma.squared_inner_radius_numerator(), den))),
            std::sqrt(CGAL::to_double(Q(ma.squared_outer_radius_numerator(), den)))};
}

}  // namespace oracle
}  // namespace numorix

#endif  // NUMORIX_TESTS_SUPPORT_CGAL_CIRCLE_ORACLE_H
