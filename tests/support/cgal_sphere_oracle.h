// Independent answers to the sphere's extreme problems from CGAL, for tests and benchmarks only.
//
//   MinEnclosingSphere    the smallest sphere holding all points (CGAL::Min_sphere_of_spheres_d
//                         on spheres of radius 0, with the default Farthest_first_heuristic).
//   MinVolumeShell        the spherical shell of least R^2 - r^2 holding all points
//                         (CGAL::Min_annulus_d, a linear program solved in exact arithmetic). It is
//                         not the shell of least width, but it bounds it from both sides:
//                             w_A (R_A + r_A) / (R + r)  <=  w_min  <=  w_A,
//                         where w = R - r and (R, r) are the radii of the least-width shell, since
//                         R^2 - r^2 = w (R + r) is least for the CGAL shell.
//
// Include this header in one translation unit per target: CGAL is heavy to compile.
#ifndef NUMORIX_TESTS_SUPPORT_CGAL_SPHERE_ORACLE_H
#define NUMORIX_TESTS_SUPPORT_CGAL_SPHERE_ORACLE_H

#include <CGAL/Cartesian_d.h>
#include <CGAL/Gmpzf.h>
#include <CGAL/Homogeneous.h>
#include <CGAL/Min_annulus_d.h>
#include <CGAL/Min_sphere_annulus_d_traits_3.h>
#include <CGAL/Min_sphere_of_spheres_d.h>
#include <CGAL/Min_sphere_of_spheres_d_traits_d.h>

#include <CGAL/Quotient.h>

#include <Eigen/Dense>
#include <cmath>
#include <vector>

namespace numorix {
namespace oracle {

struct SEnclosingSphere {
    Eigen::Vector3d centre;
    double dRadius = 0.0;
};

// The rows of P are the points.
inline SEnclosingSphere MinEnclosingSphere(const Eigen::MatrixX3d& P) {
    using K = CGAL::Cartesian_d<double>;
    using Traits = CGAL::Min_sphere_of_spheres_d_traits_d<K, double, 3>;
    std::vector<Traits::Sphere> spheres;
    spheres.reserve(static_cast<std::size_t>(P.rows()));
    for (Eigen::Index i = 0; i < P.rows(); ++i) {
        double ad[3] = {P(i, 0), P(i, 1), P(i, 2)};
        spheres.emplace_back(K::Point_d(3, ad, ad + 3), 0.0);
    }
    CGAL::Min_sphere_of_spheres_d<Traits> ms(spheres.begin(), spheres.end());
    SEnclosingSphere s;
    auto it = ms.center_cartesian_begin();
    for (int k = 0; k < 3; ++k, ++it)
        s.centre(k) = CGAL::to_double(*it);
    s.dRadius = CGAL::to_double(ms.radius());
    return s;
}

struct SShellRadii {
    double dInner = 0.0;
    double dOuter = 0.0;
};

inline SShellRadii MinVolumeShell(const Eigen::MatrixX3d& P) {
    using K = CGAL::Homogeneous<double>;
    using Traits = CGAL::Min_sphere_annulus_d_traits_3<K, CGAL::Gmpzf, double>;
    std::vector<K::Point_3> points;
    points.reserve(static_cast<std::size_t>(P.rows()));
    for (Eigen::Index i = 0; i < P.rows(); ++i)
        points.emplace_back(P(i, 0), P(i, 1), P(i, 2));
    CGAL::Min_annulus_d<Traits> ma(points.begin(), points.end());
    // Squared radii over a common denominator, exact: divide as exact quotients, then round.
    using Q = CGAL::Quotient<CGAL::Gmpzf>;
    CGAL::Gmpzf den = ma.squared_radii_denominator();
    return {std::sqrt(CGAL::to_double(Q(ma.squared_inner_radius_numerator(), den))),
            std::sqrt(CGAL::to_double(Q(ma.squared_outer_radius_numerator(), den)))};
}

}  // namespace oracle
}  // namespace numorix

#endif  // NUMORIX_TESTS_SUPPORT_CGAL_SPHERE_ORACLE_H
