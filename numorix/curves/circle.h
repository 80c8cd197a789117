// CNuCircle: the circle of radius r > 0, in its local frame { x^2 + y^2 = r^2, z = 0 } with the
// centre at the local origin and the normal along the local Z axis; the stored position carries
// it into the world.
//
//   ToPointArray(n)       n points from angle 0 round to 2 pi, the last equal to the first,
//                         by the rotation recurrence with the step 2 pi / (n - 1).
//   IntersectWith(line)   closed form in the local frame: a line crossing the plane meets the
//                         circle at most where it pierces it; a line in the plane (within
//                         NuGetDegreeTol() and NuGetLengthTol()) meets it where its foot f on the
//                         centre gives h = |f| <= r, at f -+ sqrt(r^2 - h^2) d, and once when
//                         |h - r| < NuGetLengthTol().
//   IntersectWith(circle) coplanar circles through their radical line; crossing planes through
//                         their common line, whose points on this circle are kept when they lie on
//                         the other. Concentric and parallel circles give no point.
#ifndef NUMORIX_CURVES_CIRCLE_H
#define NUMORIX_CURVES_CIRCLE_H

#include "numorix/curves/curve.h"
#include "numorix/fit/fit_result.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuLine;
class CNuPlane;

class CNuCircle : public CNuCurve {
  public:
    // A radius not strictly above 0.0 is construction cause 5, name "radius". Without a centre
    // the circle has no position; with a centre it takes the world axes; with a normal it takes
    // an X axis derived from the normal (normal of size other than 3: cause 4, zero: cause 3).
    explicit CNuCircle(double dRadius);
    CNuCircle(double dRadius, const CNuPoint& centre);
    CNuCircle(double dRadius, const CNuPoint& centre, const CNuVector& normal);
    CNuCircle(const CNuCircle& other);
    CNuCircle& operator=(const CNuCircle& other);
    ~CNuCircle() override;

    double GetRadius() const { return m_dRadius; }
    CNuPoint GetCentre() const;
    CNuVector GetNormal() const;
    CNuPlane GetPlane() const;
    void GetData(double* pdRadius, CNuPoint* pCentre, CNuVector* pNormal) const;

    // nPoints below 2: stored 112, "conversion", "CNuCircle::ToPolyline/PointArray()".
    CNuPointArray ToPointArray(int nPoints) const;

    int IntersectWith(const CNuLine& line, CNuPoint* pFirst, CNuPoint* pSecond) const;
    int IntersectWith(const CNuPlane& plane, CNuPoint* pFirst, CNuPoint* pSecond) const;
    int IntersectWith(const CNuCircle& other, CNuPoint* pFirst, CNuPoint* pSecond) const;

    // Fits (defined in numorix/fit/). Least squares: orthogonal distances by Gauss-Newton from
    // the algebraic (Kasa) circle, in the plane of the points.
    void Fit(const CNuPointArray& points, long lMaxIterations);
    void Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
             long lMaxIterations);
    ENuFitResult FitEx(const CNuPointArray& points, long lMaxIterations);
    ENuFitResult FitEx(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                       long lMaxIterations);
    // Maximum inscribed and minimum circumscribed circles.
    void FitMax(const CNuPointArray& points, double dTolerance);
    void FitMin(const CNuPointArray& points, double dTolerance);
    ENuFitResult FitMaxEx(const CNuPointArray& points, double dTolerance);
    ENuFitResult FitMinEx(const CNuPointArray& points, double dTolerance);
    // Minimum zone: the annulus of least width about the points.
    void FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                    long lMaxIterations);
    void FitMinZone(const CNuPointArray& points, double* pdZone, CNuCircle* pInner,
                    CNuCircle* pOuter, double dTolerance, long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, double dTolerance,
                              long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, CNuCircle* pInner,
                              CNuCircle* pOuter, double dTolerance, long lMaxIterations);

    SPointCoverage m_pointCoverage;

  private:
    // The first point, from the scan cursor round to it, that lies farther than dTolerance
    // beyond the first candidate's half width from the mean circle of any candidate annulus;
    // -1 when every point is covered.
    long PointNotCovered(double dTolerance, int nPoints, const CNuPoint* pPoints,
                         const CNuPointArray& candidates);

    double m_dRadius;
};

}  // namespace numorix

#endif  // NUMORIX_CURVES_CIRCLE_H
