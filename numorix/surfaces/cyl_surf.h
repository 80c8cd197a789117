// CNuCylSurf: the circular cylinder of radius r > 0, in its local frame { x^2 + y^2 = r^2 } with
// the axis on the local Z axis through the local origin; the stored position carries it into the
// world.
//
// Fits (defined in numorix/fit/):
//   Fit            orthogonal least squares, min sum (dist(P_i, axis) - r)^2 over the axis point,
//                  the axis direction and r: five-parameter Gauss-Newton from the three candidate
//                  axes of QuadricAxes, the best sum of squares kept. At least 5 points, not
//                  coplanar, 5 of them distinct; fewer than 9 are padded to 9 by repetition.
//   FitMinZone     min over axes of (r_out - r_in), the narrowest shell holding the points;
//   FitMin         min over axes of r, the smallest cylinder holding them;
//   FitMax         max over axes of r, the largest cylinder holding none inside;
//                  each a Nelder-Mead search over the axis (azimuth, elevation) from the
//                  least-squares axis, solving the circle problem of the points projected along
//                  every trial axis.
#ifndef NUMORIX_SURFACES_CYL_SURF_H
#define NUMORIX_SURFACES_CYL_SURF_H

#include "numorix/fit/fit_result.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"
#include "numorix/surfaces/surface.h"

namespace numorix {

class CNuCylSurf : public CNuSurface {
  public:
    // A radius not strictly above 0.0 is construction cause 5, name "radius"; an axis of size
    // other than 3 is cause 4, a zero axis cause 3, all located "CNuCylSurf". Without an axis
    // the cylinder has no position.
    explicit CNuCylSurf(double dRadius);
    CNuCylSurf(double dRadius, const CNuPoint& axisPoint, const CNuVector& axis);
    CNuCylSurf(const CNuCylSurf& other);
    CNuCylSurf& operator=(const CNuCylSurf& other);
    ~CNuCylSurf() override;

    double GetRadius() const { return m_dRadius; }
    // World coordinates: the radius, a point on the axis and the unit axis direction.
    void GetData(double* pdRadius, CNuPoint* pAxisPoint, CNuVector* pAxis) const;
    CNuVector GetAxisDirection() const;
    CNuPoint GetAxisPoint() const;
    CNuLine GetAxis() const;

    void Fit(const CNuPointArray& points, long lMaxIterations);
    void Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
             long lMaxIterations);
    ENuFitResult FitEx(const CNuPointArray& points, long lMaxIterations);
    ENuFitResult FitEx(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                       long lMaxIterations);

    // The Chebyshev fits accept a single point. Coincident or collinear points (within
    // dTolerance) give radius 0 and zone 0 about the first point (global axes) or the
    // least-squares line; FitMax takes coplanar points as their inscribed circle. Points within
    // dTolerance of the least-squares cylinder give that cylinder and zone 0, without a search.
    // The search needs the least-squares start: fewer than 5 points in space, or coplanar points
    // in FitMinZone and FitMin, end as that fit ends, seen through each fit's guard (FitMinZone
    // and FitMax report every best-fit failure as stored 212; FitMin keeps 211 and 201 and
    // reports the rest as 212). The inscribed cylinder of points over less than the whole
    // circumference has no bound and ends with 212. The axis point is the foot of the world
    // origin on the axis.
    void FitMax(const CNuPointArray& points, double dTolerance, long lMaxIterations);
    void FitMin(const CNuPointArray& points, double dTolerance, long lMaxIterations);
    ENuFitResult FitMaxEx(const CNuPointArray& points, double dTolerance, long lMaxIterations);
    ENuFitResult FitMinEx(const CNuPointArray& points, double dTolerance, long lMaxIterations);

    void FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                    long lMaxIterations);
    void FitMinZone(const CNuPointArray& points, double* pdZone, CNuCylSurf* pInner,
                    CNuCylSurf* pOuter, double dTolerance, long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, double dTolerance,
                              long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, CNuCylSurf* pInner,
                              CNuCylSurf* pOuter, double dTolerance, long lMaxIterations);

  private:
    double m_dRadius;
};

}  // namespace numorix

#endif  // NUMORIX_SURFACES_CYL_SURF_H
