// Dense helpers of the linear algebra and geometry tests: conversions between CNuMatrix / CNuVector
// and Eigen (the oracle for products and solves), random and well-conditioned matrices.
#ifndef NUMORIX_TESTS_SUPPORT_DENSE_SUPPORT_H
#define NUMORIX_TESTS_SUPPORT_DENSE_SUPPORT_H

#include <Eigen/Dense>

#include <initializer_list>

#include "nu_test.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace test {

inline Eigen::MatrixXd ToEigen(const CNuMatrix& A) {
    Eigen::MatrixXd E(A.GetRowSize(), A.GetColumnSize());
    const double* const* ppd = A.GetData();
    for (int i = 0; i < A.GetRowSize(); ++i)
        for (int j = 0; j < A.GetColumnSize(); ++j)
            E(i, j) = ppd[i][j];
    return E;
}

inline Eigen::VectorXd ToEigen(const CNuVector& v) {
    Eigen::VectorXd E(v.GetSize());
    for (int i = 0; i < v.GetSize(); ++i)
        E(i) = v.GetData()[i];
    return E;
}

inline CNuMatrix FromEigen(const Eigen::MatrixXd& E) {
    CNuMatrix A(static_cast<int>(E.rows()), static_cast<int>(E.cols()));
    for (int i = 0; i < A.GetRowSize(); ++i)
        for (int j = 0; j < A.GetColumnSize(); ++j)
            A.GetData()[i][j] = E(i, j);
    return A;
}

inline CNuVector FromEigen(const Eigen::VectorXd& E) {
    CNuVector v(static_cast<int>(E.size()));
    for (int i = 0; i < v.GetSize(); ++i)
        v.GetData()[i] = E(i);
    return v;
}

// A vector of any size from its elements.
inline CNuVector Vec(std::initializer_list<double> elements) {
    CNuVector v(static_cast<int>(elements.size()));
    int i = 0;
    for (double d : elements)
        v[i++] = d;
    return v;
}

// A matrix from its rows, written out.
inline CNuMatrix Mat(std::initializer_list<std::initializer_list<double>> rows) {
    CNuMatrix A(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size()));
    int i = 0;
    for (const auto& row : rows) {
        int j = 0;
        for (double d : row)
            A.GetData()[i][j++] = d;
        ++i;
    }
    return A;
}

inline CNuMatrix RandomMatrix(Random& rng, int m, int n, double dLow = -1.0, double dHigh = 1.0) {
    CNuMatrix A(m, n);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            A.GetData()[i][j] = rng.Uniform(dLow, dHigh);
    return A;
}

inline CNuVector RandomVector(Random& rng, int n, double dLow = -1.0, double dHigh = 1.0) {
    CNuVector v(n);
    for (int i = 0; i < n; ++i)
        v.GetData()[i] = rng.Uniform(dLow, dHigh);
    return v;
}

// Diagonally dominant with off-diagonal elements in [-1, 1], so well conditioned (below 10).
inline CNuMatrix WellConditioned(Random& rng, int n) {
    CNuMatrix A = RandomMatrix(rng, n, n);
    for (int i = 0; i < n; ++i)
        A.GetData()[i][i] += n + 1.0;
    return A;
}

// Largest absolute elementwise difference of two matrices or vectors of the same shape.
inline double MaxDifference(const CNuMatrix& A, const Eigen::MatrixXd& B) {
    return (ToEigen(A) - B).cwiseAbs().maxCoeff();
}
inline double MaxDifference(const CNuMatrix& A, const CNuMatrix& B) {
    return MaxDifference(A, ToEigen(B));
}
inline double MaxDifference(const CNuVector& a, const Eigen::VectorXd& b) {
    return (ToEigen(a) - b).cwiseAbs().maxCoeff();
}
inline double MaxDifference(const CNuVector& a, const CNuVector& b) {
    return MaxDifference(a, ToEigen(b));
}

}  // namespace test
}  // namespace numorix

#endif  // NUMORIX_TESTS_SUPPORT_DENSE_SUPPORT_H
