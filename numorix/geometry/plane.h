// CNuPlane: the unbounded 3D plane { x : (x - q) . n = 0 }, held as a point q and a unit normal n
// whose sign is kept as given.
//
// The folded angle of two planes is the angle a of their normals, or 180 - a above 90, so it lies
// in [0, 90] and a plane and its reverse make the angle 0. Two planes are parallel when
// NuGetDegreeTol() exceeds the folded angle. Their line of intersection runs along n1 x n2
// through the point found by Cramer's rule with the coordinate of largest |n1 x n2| set to 0.
// Translate(point) is absolute: it makes the point the plane's point.
#ifndef NUMORIX_GEOMETRY_PLANE_H
#define NUMORIX_GEOMETRY_PLANE_H

#include "numorix/fit/fit_result.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/point.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuLine;
class CNuPointArray;

class CNuPlane : public CNuGeometry {
  public:
    // Through the origin with normal (0, 0, 1).
    CNuPlane();
    // Refuses a normal of size other than 3 (construction cause 4), then a zero one (cause 3).
    CNuPlane(const CNuPoint& point, const CNuVector& normal);
    // Through the line and the point, normal = direction x (point - line point), turned up when
    // its z component is below -0.8; a point on the line is construction cause 9.
    CNuPlane(const CNuPoint& point, const CNuLine& line);
    CNuPlane(const CNuPlane& other);
    CNuPlane& operator=(const CNuPlane& other);
    ~CNuPlane() override;

    const CNuPoint& GetPoint() const { return m_point; }
    const CNuVector& GetNormal() const { return m_normal; }
    void GetData(CNuPoint* pPoint, CNuVector* pNormal) const;

    void Translate(double dx, double dy, double dz);
    void Translate(const CNuPoint& point);
    void Rotate(double dAngle, CNuGeometry::EAxisType eAxis);
    void Rotate(double dAngle, const CNuVector& axis);
    void Rotate(double dAngle, CNuGeometry::EAxisType eAxis, const CNuPoint& centre);
    void Rotate(double dAngle, const CNuVector& axis, const CNuPoint& centre);

    ENuBoolean IsEqual(const CNuPlane& other, double dLengthTol, double dAngleTol) const;
    ENuBoolean IsParallelTo(const CNuPlane& other, double dTol) const;
    double AngleWith(const CNuPlane& other) const;  // the folded angle, [0, 90]

    CNuPlane MidPlane(const CNuPoint& point) const;
    CNuPlane MidPlane(const CNuLine& line) const;
    CNuPlane MidPlane(const CNuPlane& other) const;

    double DistanceTo(const CNuPlane& other) const;
    int IntersectWith(const CNuLine& line, CNuPoint* pPoint) const;
    int IntersectWith(const CNuPlane& other, CNuLine* pLine) const;

    // Orthogonal least squares (numorix/fit/plane_fit.cpp): the plane through the mean point
    // normal to the least principal direction of the centred points. The second form also gives
    // the form error and the sum of squared residuals of the finished plane.
    void Fit(const CNuPointArray& points);
    void Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares);
    // Minimum zone (numorix/fit/plane_min_zone.cpp): the narrowest pair of parallel planes about
    // the points; *pdZone receives their distance, pInner and pOuter the two planes.
    void FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance);
    void FitMinZone(const CNuPointArray& points, double* pdZone, CNuPlane* pInner, CNuPlane* pOuter,
                    double dTolerance);

  private:
    // The first point, from the scan cursor round to it, that lies farther than dTolerance
    // beyond the half width of any candidate slab; -1 when every point is covered.
    long PointNotCovered(double dTolerance, int nPoints, const CNuPoint* pPoints,
                         const CNuPointArray& candidates);

    CNuPoint m_point;
    CNuVector m_normal;
    SPointCoverage m_pointCoverage;
};

}  // namespace numorix

#endif  // NUMORIX_GEOMETRY_PLANE_H
