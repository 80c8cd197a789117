// Inline kernels of two scalar operations, shared by the library's out-of-line functions and by
// hot loops that should not pay a call for them (the Laguerre iteration of the equation solver):
//
//   Pythag(a, b)        sqrt(a^2 + b^2) scaled by the larger magnitude p so that no square
//                       overflows: p sqrt(1 + (q / p)^2); 0.0 when p is below NuGetZero().
//   Pythag(a, b, c)     the same for three terms: p sqrt((q / p)^2 + 1 + (r / p)^2).
//   ComplexSqrt(x, y)   the principal root of x + i y: w = sqrt(|z| + |x|) / sqrt(2), written with
//                       the ratio of the smaller to the larger part; the other part is y / (2 w).
//                       Both parts below NuGetZero() give 0.
#ifndef NUMORIX_FOUNDATION_INTERNAL_SCALAR_KERNELS_H
#define NUMORIX_FOUNDATION_INTERNAL_SCALAR_KERNELS_H

#include <cmath>
#include <utility>

#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace internal {

struct ComplexParts {
    double re;
    double im;
};

inline double Pythag(double a, double b) {
    double p = std::fabs(a);
    double q = std::fabs(b);
    if (q > p) std::swap(p, q);
    if (NuGetZero() > p) return 0.0;
    double r = q / p;
    return p * std::sqrt(1.0 + r * r);
}

inline double Pythag(double a, double b, double c) {
    double p = std::fabs(a);
    double q = std::fabs(b);
    double r = std::fabs(c);
    if (q > p) std::swap(p, q);
    if (r > p) std::swap(p, r);
    if (NuGetZero() > p) return 0.0;
    double qp = q / p;
    double rp = r / p;
    return p * std::sqrt(qp * qp + 1.0 + rp * rp);
}

inline ComplexParts ComplexSqrt(double dRe, double dIm) {
    double x = std::fabs(dRe);
    double y = std::fabs(dIm);
    double dZero = NuGetZero();
    if (x < dZero && y < dZero) return {0.0, 0.0};
    double w;
    if (x >= y) {
        double r = y / x;
        w = std::sqrt(x) * std::sqrt((1.0 + std::sqrt(1.0 + r * r)) * 0.5);
    } else {
        double r = x / y;
        w = std::sqrt(y) * std::sqrt((r + std::sqrt(1.0 + r * r)) * 0.5);
    }
    if (dRe >= 0.0) return {w, dIm / (2.0 * w)};
    if (dIm < 0.0) w = -w;
    return {dIm / (2.0 * w), w};
}

}  // namespace internal
}  // namespace numorix

#endif  // NUMORIX_FOUNDATION_INTERNAL_SCALAR_KERNELS_H
