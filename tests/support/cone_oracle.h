// An independent orthogonal least-squares cone for the tests and benchmarks: Eigen's
// Levenberg-Marquardt (unsupported NonLinearOptimization) with an analytic Jacobian, over a
// parametrisation of its own, started from a cone the caller knows to be near.
//
// Around the start (point c0 on the axis, unit axis a0, e1 and e2 completing the frame) the
// parameters are (x, y, alpha, beta, r, phi): the axis passes through P0 = c0 + x e1 + y e2 with
// the direction d = a0 + alpha e1 + beta e2, not normalised; r is the radius of the cone in the
// plane through P0 normal to d and phi the angle of its generators with d. With w = p - P0,
// u = d / |d|, t = w . u, q = w - t u, rho = |q| and n = q / rho, the residual of p is
//   f = (rho - r) cos(phi) - t sin(phi),
// the signed distance from the cone in the half-plane of p, and
//   df/dx = -cos(phi) n . e1 + sin(phi) u . e1
//   df/dalpha = -(cos(phi) t n . e1 + sin(phi) (w . e1 - t u . e1)) / |d|
//   df/dr = -cos(phi),   df/dphi = -(rho - r) sin(phi) - t cos(phi)
// (y and beta with e2 likewise). Nothing here calls the library.
#ifndef NUMORIX_TESTS_SUPPORT_CONE_ORACLE_H
#define NUMORIX_TESTS_SUPPORT_CONE_ORACLE_H

#include <Eigen/Dense>
#include <cmath>
#include <unsupported/Eigen/NonLinearOptimization>

namespace numorix {
namespace oracle {

struct SCone {
    Eigen::Vector3d point;  // on the axis
    Eigen::Vector3d axis;   // unit
    double dRadius = 0.0;   // at the point, across the axis
    double dAngle = 0.0;    // of the generators with the axis, radians in (0, pi)
};

struct ConeResiduals {
    const Eigen::MatrixX3d& P;
    Eigen::Vector3d c0, a0, e1, e2;

    int inputs() const { return 6; }
    int values() const { return static_cast<int>(P.rows()); }
    void Frame(const Eigen::VectorXd& p, Eigen::Vector3d* pP0, Eigen::Vector3d* pU,
               double* pdNorm) const {
        *pP0 = c0 + p(0) * e1 + p(1) * e2;
        Eigen::Vector3d d = a0 + p(2) * e1 + p(3) * e2;
        *pdNorm = d.norm();
        *pU = d / *pdNorm;
    }
    int operator()(const Eigen::VectorXd& p, Eigen::VectorXd& f) const {
        Eigen::Vector3d P0, u;
        double dNorm;
        Frame(p, &P0, &u, &dNorm);
        for (Eigen::Index i = 0; i < P.rows(); ++i) {
            Eigen::Vector3d w = P.row(i).transpose() - P0;
            double t = w.dot(u);
            f(i) = ((w - t * u).norm() - p(4)) * std::cos(p(5)) - t * std::sin(p(5));
        }
        return 0;
    }
    int df(const Eigen::VectorXd& p, Eigen::MatrixXd& J) const {
        Eigen::Vector3d P0, u;
        double dNorm;
        Frame(p, &P0, &u, &dNorm);
        double c = std::cos(p(5)), s = std::sin(p(5));
        for (Eigen::Index i = 0; i < P.rows(); ++i) {
            Eigen::Vector3d w = P.row(i).transpose() - P0;
            double t = w.dot(u);
            Eigen::Vector3d q = w - t * u;
            double rho = q.norm();
            Eigen::Vector3d n = rho > 0.0 ? Eigen::Vector3d(q / rho) : Eigen::Vector3d::Zero();
            const Eigen::Vector3d* axes[2] = {&e1, &e2};
            for (int k = 0; k < 2; ++k) {
                const Eigen::Vector3d& e = *axes[k];
                J(i, k) = -c * n.dot(e) + s * u.dot(e);
                J(i, 2 + k) = -(c * t * n.dot(e) + s * (w.dot(e) - t * u.dot(e))) / dNorm;
            }
            J(i, 4) = -c;
            J(i, 5) = -(rho - p(4)) * s - t * c;
        }
        return 0;
    }
};

// The least-squares cone of the rows of P nearest the start.
inline SCone FitCone(const Eigen::MatrixX3d& P, const SCone& start) {
    ConeResiduals f{P, start.point, start.axis.normalized(), {}, {}};
    f.e1 = f.a0.unitOrthogonal();
    f.e2 = f.a0.cross(f.e1);
    Eigen::VectorXd p(6);
    p << 0.0, 0.0, 0.0, 0.0, start.dRadius, start.dAngle;
    Eigen::LevenbergMarquardt<ConeResiduals> lm(f);
    lm.parameters.ftol = 1e-16;
    lm.parameters.xtol = 1e-16;
    lm.parameters.gtol = 0.0;
    lm.parameters.maxfev = 4000;
    lm.minimize(p);
    SCone c;
    double dNorm;
    f.Frame(p, &c.point, &c.axis, &dNorm);
    c.dRadius = p(4);
    c.dAngle = p(5);
    return c;
}

}  // namespace oracle
}  // namespace numorix

#endif  // NUMORIX_TESTS_SUPPORT_CONE_ORACLE_H
