// An independent orthogonal least-squares cylinder for the tests and benchmarks: Eigen's
// Levenberg-Marquardt (unsupported NonLinearOptimization) with an analytic Jacobian, over a
// parametrisation of its own, started from a cylinder the caller knows to be near.
//
// Around the start (point c0 on the axis, unit axis a0, e1 and e2 completing the frame) the
// parameters are (x, y, alpha, beta, r): the axis passes through P0 = c0 + x e1 + y e2 with the
// direction d = a0 + alpha e1 + beta e2, not normalised. With w = p - P0 and u = d / |d|, the
// residual of p is |q| - r, q = w - (w . u) u, and with n = q / |q|:
//   d|q|/dx = -n . e1,   d|q|/dy = -n . e2,
//   d|q|/dalpha = -(w . u)(n . e1) / |d|,   d|q|/dbeta = -(w . u)(n . e2) / |d|.
// Nothing here calls the library.
#ifndef NUMORIX_TESTS_SUPPORT_CYLINDER_ORACLE_H
#define NUMORIX_TESTS_SUPPORT_CYLINDER_ORACLE_H

#include <Eigen/Dense>
#include <cmath>
#include <unsupported/Eigen/NonLinearOptimization>

namespace numorix {
namespace oracle {

struct SCylinder {
    Eigen::Vector3d point;  // on the axis
    Eigen::Vector3d axis;   // unit
    double dRadius = 0.0;
};

struct CylinderResiduals {
    const Eigen::MatrixX3d& P;
    Eigen::Vector3d c0, a0, e1, e2;

    int inputs() const { return 5; }
    int values() const { return static_cast<int>(P.rows()); }
    // w, u and |d| of the present parameters.
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
            f(i) = (w - (w.dot(u)) * u).norm() - p(4);
        }
        return 0;
    }
    int df(const Eigen::VectorXd& p, Eigen::MatrixXd& J) const {
        Eigen::Vector3d P0, u;
        double dNorm;
        Frame(p, &P0, &u, &dNorm);
        for (Eigen::Index i = 0; i < P.rows(); ++i) {
            Eigen::Vector3d w = P.row(i).transpose() - P0;
            double t = w.dot(u);
            Eigen::Vector3d q = w - t * u;
            double dq = q.norm();
            Eigen::Vector3d n = dq > 0.0 ? Eigen::Vector3d(q / dq) : Eigen::Vector3d::Zero();
            J(i, 0) = -n.dot(e1);
            J(i, 1) = -n.dot(e2);
            J(i, 2) = -t * n.dot(e1) / dNorm;
            J(i, 3) = -t * n.dot(e2) / dNorm;
            J(i, 4) = -1.0;
        }
        return 0;
    }
};

// The least-squares cylinder of the rows of P nearest the start.
inline SCylinder FitCylinder(const Eigen::MatrixX3d& P, const SCylinder& start) {
    CylinderResiduals f{P, start.point, start.axis.normalized(), {}, {}};
    f.e1 = f.a0.unitOrthogonal();
    f.e2 = f.a0.cross(f.e1);
    Eigen::VectorXd p(5);
    p << 0.0, 0.0, 0.0, 0.0, start.dRadius;
    Eigen::LevenbergMarquardt<CylinderResiduals> lm(f);
    lm.parameters.ftol = 1e-16;
    lm.parameters.xtol = 1e-16;
    lm.parameters.gtol = 0.0;
    lm.parameters.maxfev = 2000;
    lm.minimize(p);
    SCylinder c;
    double dNorm;
    f.Frame(p, &c.point, &c.axis, &dNorm);
    c.dRadius = p(4);
    return c;
}

}  // namespace oracle
}  // namespace numorix

#endif  // NUMORIX_TESTS_SUPPORT_CYLINDER_ORACLE_H
