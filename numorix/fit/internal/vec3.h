// SV3: a plain three-vector for the kernels of the fits that carry axes and offsets through many
// small products (the cone's zone, the torus tube), without the growable storage of CNuVector.
#ifndef NUMORIX_FIT_INTERNAL_VEC3_H
#define NUMORIX_FIT_INTERNAL_VEC3_H

#include "numorix/fit/internal/fit_frame.h"

namespace numorix {
namespace fit {

struct SV3 {
    double x, y, z;
};
inline SV3 operator+(SV3 a, SV3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline SV3 operator-(SV3 a, SV3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline SV3 operator*(double s, SV3 a) { return {s * a.x, s * a.y, s * a.z}; }
inline double Dot(SV3 a, SV3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline SV3 Cross(SV3 a, SV3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
// The length, scaled as NuPythag scales; 0 below NuGetZero().
inline double Length(SV3 a) { return ScaledDistance(a.x, a.y, a.z); }
inline SV3 Unit(SV3 a) { return (1.0 / Length(a)) * a; }

}  // namespace fit
}  // namespace numorix

#endif  // NUMORIX_FIT_INTERNAL_VEC3_H
