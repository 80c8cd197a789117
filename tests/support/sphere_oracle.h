// Independent answers for the sphere tests and benchmarks; nothing here calls the library.
//
//   FitSphere      orthogonal least squares by Eigen's Levenberg-Marquardt (unsupported
//                  NonLinearOptimization) on the parameters (centre, r) with the residuals
//                  |p - c| - r and their analytic Jacobian ((c - p) / |p - c|, -1).
//   ShellThrough   the spherical shell whose inner sphere passes through one group of points and
//                  whose outer one through the rest (or the other way round), centre equidistant
//                  from the points of each group: linear equations 2 (q - p) . c = |q|^2 - |p|^2.
//   BruteShell     the minimum-zone shell of a few points by trying every support of five points
//                  in every split (1+4, 2+3; the sides are symmetric), keeping the narrowest shell
//                  that holds every point.
#ifndef NUMORIX_TESTS_SUPPORT_SPHERE_ORACLE_H
#define NUMORIX_TESTS_SUPPORT_SPHERE_ORACLE_H

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <unsupported/Eigen/NonLinearOptimization>
#include <vector>

namespace numorix {
namespace oracle {

struct SSphere {
    Eigen::Vector3d centre;
    double dRadius = 0.0;
};

struct SphereResiduals {
    const Eigen::MatrixX3d& P;
    int inputs() const { return 4; }
    int values() const { return static_cast<int>(P.rows()); }
    int operator()(const Eigen::VectorXd& p, Eigen::VectorXd& f) const {
        for (Eigen::Index i = 0; i < P.rows(); ++i)
            f(i) = (P.row(i).transpose() - p.head<3>()).norm() - p(3);
        return 0;
    }
    int df(const Eigen::VectorXd& p, Eigen::MatrixXd& J) const {
        for (Eigen::Index i = 0; i < P.rows(); ++i) {
            Eigen::Vector3d w = p.head<3>() - P.row(i).transpose();
            double d = w.norm();
            J.block<1, 3>(i, 0) = (w / d).transpose();
            J(i, 3) = -1.0;
        }
        return 0;
    }
};

// The least-squares sphere of the rows of P nearest the start.
inline SSphere FitSphere(const Eigen::MatrixX3d& P, const SSphere& start) {
    SphereResiduals f{P};
    Eigen::VectorXd p(4);
    p << start.centre, start.dRadius;
    Eigen::LevenbergMarquardt<SphereResiduals> lm(f);
    lm.parameters.ftol = 1e-16;
    lm.parameters.xtol = 1e-16;
    lm.parameters.gtol = 0.0;
    lm.parameters.maxfev = 2000;
    lm.minimize(p);
    return SSphere{p.head<3>(), p(3)};
}

struct SShell {
    Eigen::Vector3d centre;
    double dInner = 0.0;
    double dOuter = 0.0;
    double Width() const { return dOuter - dInner; }
};

// Distances of all rows of P from c.
inline Eigen::VectorXd Distances(const Eigen::MatrixX3d& P, const Eigen::Vector3d& c) {
    return (P.rowwise() - c.transpose()).rowwise().norm();
}

// The centre equidistant from the points of each of two groups (indices into P), by least squares
// on the three equations; false when they do not fix it.
inline bool CentreOfSplit(const Eigen::MatrixX3d& P, const std::vector<int>& a,
                          const std::vector<int>& b, Eigen::Vector3d* pCentre) {
    Eigen::Matrix3d A;
    Eigen::Vector3d rhs;
    int row = 0;
    for (const std::vector<int>* g : {&a, &b})
        for (std::size_t k = 1; k < g->size(); ++k) {
            Eigen::Vector3d p = P.row((*g)[0]).transpose(), q = P.row((*g)[k]).transpose();
            A.row(row) = 2.0 * (q - p).transpose();
            rhs(row) = q.squaredNorm() - p.squaredNorm();
            ++row;
        }
    Eigen::FullPivLU<Eigen::Matrix3d> lu(A);
    if (!lu.isInvertible()) return false;
    *pCentre = lu.solve(rhs);
    return pCentre->allFinite();
}

// The narrowest shell holding all rows of P among the supports of five points.
inline SShell BruteShell(const Eigen::MatrixX3d& P) {
    const int n = static_cast<int>(P.rows());
    SShell best;
    best.dOuter = 1e300;
    auto judge = [&](const std::vector<int>& a, const std::vector<int>& b) {
        Eigen::Vector3d c;
        if (!CentreOfSplit(P, a, b, &c)) return;
        Eigen::VectorXd d = Distances(P, c);
        if (d.maxCoeff() - d.minCoeff() < best.Width())
            best = SShell{c, d.minCoeff(), d.maxCoeff()};
    };
    std::vector<int> s(5);
    for (s[0] = 0; s[0] < n; ++s[0])
        for (s[1] = s[0] + 1; s[1] < n; ++s[1])
            for (s[2] = s[1] + 1; s[2] < n; ++s[2])
                for (s[3] = s[2] + 1; s[3] < n; ++s[3])
                    for (s[4] = s[3] + 1; s[4] < n; ++s[4])
                        for (int mask = 1; mask < 31; ++mask) {
                            std::vector<int> a, b;
                            for (int k = 0; k < 5; ++k)
                                ((mask >> k) & 1 ? a : b).push_back(s[k]);
                            if (a.size() <= b.size()) judge(a, b);
                        }
    return best;
}

// The narrowest shell about c that holds every row of P.
inline SShell ShellAbout(const Eigen::MatrixX3d& P, const Eigen::Vector3d& c) {
    Eigen::VectorXd d = Distances(P, c);
    return SShell{c, d.minCoeff(), d.maxCoeff()};
}

}  // namespace oracle
}  // namespace numorix

#endif  // NUMORIX_TESTS_SUPPORT_SPHERE_ORACLE_H
