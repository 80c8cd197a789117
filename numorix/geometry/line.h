// CNuLine: the unbounded 3D line { q + t d }, held as a point q and a unit direction d.
//
// Invariant: every constructor normalises d, and d is never zero. Two lines are parallel under
// a tolerance t (degrees) when t exceeds their angle a or 180 - a, so opposite directions count;
// the relations below use t = NuGetDegreeTol() unless a tolerance is an argument.
//   distance of skew lines      |(q2 - q1) . n| / |n|,  n = d1 x d2
//   intersection                the least-squares solution of q1 + s d1 = q2 + t d2, accepted
//                               when the two feet agree within NuGetLengthTol()
//   intersection with a plane   q + t d, t = ((p - q) . n) / (n . d), refused when
//                               |n . d| < NuGetZero()
// Translate(point) is absolute: it makes the point the line's point.
#ifndef NUMORIX_GEOMETRY_LINE_H
#define NUMORIX_GEOMETRY_LINE_H

#include "numorix/fit/fit_result.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/point.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuCircle;
class CNuNonLinearGeometry;
class CNuPlane;
class CNuPointArray;

class CNuLine : public CNuGeometry {
  public:
    // Through the origin along (1, 0, 0).
    CNuLine();
    // Refuses a direction of size other than 3 (construction cause 4), then a zero one (cause 3).
    CNuLine(const CNuPoint& point, const CNuVector& direction);
    // From a towards b; a and b equal within NuGetLengthTol() is construction cause 10.
    CNuLine(const CNuPoint& a, const CNuPoint& b);
    CNuLine(const CNuLine& other);
    CNuLine& operator=(const CNuLine& other);
    ~CNuLine() override;

    const CNuPoint& GetPoint() const { return m_point; }
    const CNuVector& GetDirection() const { return m_direction; }
    void GetData(CNuPoint* pPoint, CNuVector* pDirection) const;

    void Translate(double dx, double dy, double dz);
    void Translate(const CNuPoint& point);
    void Rotate(double dAngle, CNuGeometry::EAxisType eAxis);
    void Rotate(double dAngle, const CNuVector& axis);
    void Rotate(double dAngle, CNuGeometry::EAxisType eAxis, const CNuPoint& centre);
    void Rotate(double dAngle, const CNuVector& axis, const CNuPoint& centre);
    // Into the local frame of a positioned element, by the inverse rotation.
    void MoveTo(const CNuNonLinearGeometry& geometry);

    ENuBoolean IsParallelTo(const CNuLine& other, double dTol) const;
    ENuBoolean IsParallelTo(const CNuPlane& plane, double dTol) const;
    ENuBoolean IsCoplanarWith(const CNuLine& other, double dLengthTol, double dAngleTol) const;

    double AngleWith(const CNuLine& other) const;                         // [0, 180]
    double AngleWith(const CNuLine& other, const CNuVector& axis) const;  // [0, 360)
    double AngleWith(const CNuPlane& plane) const;                        // [0, 90]

    CNuLine MidLine(const CNuPoint& point) const;
    CNuLine MidLine(const CNuLine& other) const;
    CNuLine MidLine(const CNuPlane& plane) const;
    CNuPlane MidPlane(const CNuLine& other) const;

    // 1 with the point of the other line nearest to this one, 0 for parallel lines.
    int ClosestPointsTo(const CNuLine& other, CNuPoint* pPoint) const;
    double DistanceTo(const CNuLine& other) const;
    double DistanceTo(const CNuPlane& plane) const;
    int IntersectWith(const CNuLine& other, CNuPoint* pPoint) const;
    int IntersectWith(const CNuPlane& plane, CNuPoint* pPoint) const;
    // 0, 1 or 2 points on the circle, in the order of the line's parameter (closed form with
    // the circle, curves/circle.cpp).
    int IntersectWith(const CNuCircle& circle, CNuPoint* pFirst, CNuPoint* pSecond) const;

    // Orthogonal least squares (numorix/fit/line_fit.cpp): the line through the mean point along
    // the principal direction of the centred points. The second form also gives the form error
    // and the sum of squared residuals of the finished line.
    void Fit(const CNuPointArray& points);
    void Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares);
    // Minimum zone (numorix/fit/line_min_zone.cpp): the narrowest pair of parallel lines about
    // coplanar points; *pdZone receives their distance, pInner and pOuter the two lines.
    void FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                    long lMaxIterations);
    void FitMinZone(const CNuPointArray& points, double* pdZone, CNuLine* pInner, CNuLine* pOuter,
                    double dTolerance, long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, double dTolerance,
                              long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, CNuLine* pInner,
                              CNuLine* pOuter, double dTolerance, long lMaxIterations);

  private:
    bool IsParallelByDegreeTol(const CNuLine& other) const;

    CNuPoint m_point;
    CNuVector m_direction;
};

}  // namespace numorix

#endif  // NUMORIX_GEOMETRY_LINE_H
