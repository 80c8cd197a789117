// Shared steps of the four conics (circle, ellipse, hyperbola, parabola), which all live in their
// local XY plane with the centre or vertex at the local origin:
//
//   construction   the tests of a normal and an X axis (size 3, not zero, orthogonal) and the
//                  frame they make, both axes normalised;
//   conversion     local points carried into the world by the homogeneous transformation;
//   intersection   a line carried into the local frame, its parameter substituted into the
//                  canonical equation c0 + c1 t + c2 t^2 = 0, the real roots kept where the local
//                  point lies in the plane z = 0, a repeated point written once; and the
//                  intersection with a plane through the line in which both planes meet.
#ifndef NUMORIX_CURVES_INTERNAL_CONIC_SUPPORT_H
#define NUMORIX_CURVES_INTERNAL_CONIC_SUPPORT_H

#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuNonLinearGeometry;

namespace conic {

// A shape number not strictly above 0.0: construction cause 5 with the noun.
void CheckPositive(double dValue, const char* pszLocation, const char* pszName);

// The two axes a conic's position is set from.
struct Frame {
    CNuVector xAxis;
    CNuVector zAxis;
};

// The frame of a normal alone: the normal normalised and an X axis derived from it.
// Refuses a normal of size other than 3 (cause 4), then a zero one (cause 3).
Frame FrameFromNormal(const CNuVector& normal, const char* pszLocation);

// The frame of a normal and an X axis, both normalised. Sizes and zero tests as above, the normal
// first; an X axis not orthogonal to the normal within NuGetRadianTol() is cause 8.
Frame FrameFromAxes(const CNuVector& normal, const CNuVector& xAxis, const char* pszLocation);

// The local points carried into the world by GetTransformation(), when the curve has a position.
void PlaceInWorld(const CNuNonLinearGeometry& curve, CNuPointArray* pPoints);

// The line in the curve's local frame.
CNuLine LocalLine(const CNuNonLinearGeometry& curve, const CNuLine& line);

// Solves c0 + c1 t + c2 t^2 = 0 for the local line and writes the accepted points, carried into
// the world, to pFirst and pSecond in the order of the roots. Returns how many were written.
int IntersectLocalLine(const CNuNonLinearGeometry& curve, const CNuLine& localLine, double dC0,
                       double dC1, double dC2, CNuPoint* pFirst, CNuPoint* pSecond);

// Keeps the nFound written points that lie within NuGetLengthTol() of the plane, moving a kept
// second point to the first place when the first is dropped. Returns how many were kept.
int KeepOnPlane(const CNuPlane& plane, int nFound, CNuPoint* pFirst, CNuPoint* pSecond);

// A conic against a plane: the line in which the conic's plane meets the other, intersected with
// the conic, its points kept where they lie on the plane. Parallel planes give no point.
template <class TConic>
int IntersectPlane(const TConic& curve, const CNuPlane& plane, CNuPoint* pFirst,
                   CNuPoint* pSecond) {
    CNuLine line;
    if (curve.GetPlane().IntersectWith(plane, &line) == 0) return 0;
    CNuPoint first;
    CNuPoint second;
    if (pFirst == nullptr) pFirst = &first;
    if (pSecond == nullptr) pSecond = &second;
    int nFound = curve.IntersectWith(line, pFirst, pSecond);
    return KeepOnPlane(plane, nFound, pFirst, pSecond);
}

}  // namespace conic
}  // namespace numorix

#endif  // NUMORIX_CURVES_INTERNAL_CONIC_SUPPORT_H
