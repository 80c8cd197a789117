// An independent orthogonal least-squares circle for the tests and benchmarks: the plane from
// Eigen's symmetric eigen solver of the scatter matrix, the in-plane circle by Eigen's
// Levenberg-Marquardt (unsupported NonLinearOptimization) with an analytic Jacobian, started
// from the algebraic circle solved by Householder QR. Nothing here calls the library's solvers.
#ifndef NUMORIX_TESTS_FIT_CIRCLE_ORACLE_H
#define NUMORIX_TESTS_FIT_CIRCLE_ORACLE_H

#include <Eigen/Dense>
#include <cmath>
#include <unsupported/Eigen/NonLinearOptimization>
#include <vector>

namespace numorix {
namespace oracle {

struct SCircle {
    Eigen::Vector3d centre;
    Eigen::Vector3d normal;
    double dRadius = 0.0;
    double dSumSquares = 0.0;  // at the returned circle, in the plane
};

// Residuals d_i - R of the planar points about (a, b) with radius R.
struct CircleResiduals {
    const Eigen::VectorXd& x;
    const Eigen::VectorXd& y;

    int inputs() const { return 3; }
    int values() const { return static_cast<int>(x.size()); }
    int operator()(const Eigen::VectorXd& p, Eigen::VectorXd& f) const {
        for (Eigen::Index i = 0; i < x.size(); ++i)
            f(i) = std::hypot(x(i) - p(0), y(i) - p(1)) - p(2);
        return 0;
    }
    int df(const Eigen::VectorXd& p, Eigen::MatrixXd& J) const {
        for (Eigen::Index i = 0; i < x.size(); ++i) {
            double d = std::hypot(x(i) - p(0), y(i) - p(1));
            J(i, 0) = (p(0) - x(i)) / d;
            J(i, 1) = (p(1) - y(i)) / d;
            J(i, 2) = -1.0;
        }
        return 0;
    }
};

// Points as rows of an n by 3 matrix.
inline SCircle FitCircle(const Eigen::MatrixX3d& P) {
    Eigen::Index n = P.rows();
    Eigen::RowVector3d mean = P.colwise().mean();
    Eigen::MatrixX3d C = P.rowwise() - mean;
    Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> eig(C.transpose() * C);
    Eigen::Vector3d normal = eig.eigenvectors().col(0);
    Eigen::Vector3d e1 = eig.eigenvectors().col(2);
    Eigen::Vector3d e2 = normal.cross(e1);
    Eigen::VectorXd x = C * e1;
    Eigen::VectorXd y = C * e2;

    Eigen::MatrixX3d A(n, 3);
    A.col(0) = 2.0 * x;
    A.col(1) = 2.0 * y;
    A.col(2).setConstant(-1.0);
    Eigen::VectorXd s = x.array().square() + y.array().square();
    Eigen::Vector3d k = A.colPivHouseholderQr().solve(s);
    Eigen::VectorXd p(3);
    p << k(0), k(1), std::sqrt(k(0) * k(0) + k(1) * k(1) - k(2));

    if (n > 3) {
        CircleResiduals f{x, y};
        Eigen::LevenbergMarquardt<CircleResiduals> lm(f);
        lm.parameters.ftol = 1e-16;
        lm.parameters.xtol = 1e-16;
        lm.parameters.gtol = 0.0;
        lm.parameters.maxfev = 2000;
        lm.minimize(p);
    }
    SCircle c;
    c.centre = mean.transpose() + p(0) * e1 + p(1) * e2;
    c.normal = normal;
    c.dRadius = p(2);
    for (Eigen::Index i = 0; i < n; ++i) {
        double r = std::hypot(x(i) - p(0), y(i) - p(1)) - p(2);
        c.dSumSquares += r * r;
    }
    return c;
}

}  // namespace oracle
}  // namespace numorix

#endif  // NUMORIX_TESTS_FIT_CIRCLE_ORACLE_H
