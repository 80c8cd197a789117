// CNuConSurf: the circular cone of semi-angle alpha in degrees, 0 < alpha < 90, in its local
// frame { x^2 + y^2 = z^2 tan^2(alpha) } with the apex at the local origin and the axis on the
// local Z axis, pointing from the apex into the opening; the stored position carries it into the
// world. Both nappes belong to the surface; the fits describe the one the points lie on.
//
// Fits (defined in numorix/fit/):
//   Fit            orthogonal least squares, min sum d_i^2 with d the distance of P_i from the
//                  cone, over the axis point, the axis direction, the angle and the radius at the
//                  axis point: six-parameter Gauss-Newton from the three candidate axes of
//                  QuadricAxes, each started from the regression of the distance from the axis
//                  on the place along it; the best sum of squares kept. At least 6 points, not
//                  coplanar, 6 of them distinct. An angle that iterates past 90 degrees is the
//                  same cone seen from the other side: the axis is reversed.
//   FitMinZone     min (d_out - d_in), the narrowest pair of coaxial cones of one angle holding
//                  the points, by a sequence of linearised problems solved under constraints
//                  in the L1 sense, from the least-squares cone; points whose least-squares form
//                  error is below the tolerance give that cone and a zone of 0. The fitted cone
//                  lies halfway; the six-argument form also gives the inner and outer cones, its
//                  apex moved along the axis by half the zone over sin(alpha) into and out of
//                  the opening (null pointers are not written).
#ifndef NUMORIX_SURFACES_CON_SURF_H
#define NUMORIX_SURFACES_CON_SURF_H

#include "numorix/fit/fit_result.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"
#include "numorix/surfaces/surface.h"

namespace numorix {

class CNuConSurf : public CNuSurface {
  public:
    // A semi-angle outside the open interval (0.0, 90.0) degrees (NaN included) is construction
    // cause 6; an axis of size other than 3 is cause 4, a zero axis cause 3, all located
    // "CNuConSurf". Without an apex and axis the cone has no position.
    explicit CNuConSurf(double dSemiAngle);
    CNuConSurf(double dSemiAngle, const CNuPoint& apex, const CNuVector& axis);
    CNuConSurf(const CNuConSurf& other);
    CNuConSurf& operator=(const CNuConSurf& other);
    ~CNuConSurf() override;

    // Degrees.
    double GetSemiAngle() const { return m_dSemiAngle; }
    // World coordinates: the semi-angle, the apex and the unit axis into the opening.
    void GetData(double* pdSemiAngle, CNuPoint* pApex, CNuVector* pAxis) const;
    CNuPoint GetApex() const;
    CNuVector GetAxisDirection() const;
    // The line through the apex along the axis.
    CNuLine GetAxis() const;

    // The apex is returned where it lands, however far; coordinates below NuGetTol() in
    // magnitude are 0. An axis within NuGetTol()^2 of a coordinate axis is snapped onto it.
    void Fit(const CNuPointArray& points, long lMaxIterations);
    void Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
             long lMaxIterations);
    ENuFitResult FitEx(const CNuPointArray& points, long lMaxIterations);
    ENuFitResult FitEx(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                       long lMaxIterations);

    void FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                    long lMaxIterations);
    void FitMinZone(const CNuPointArray& points, double* pdZone, CNuConSurf* pInner,
                    CNuConSurf* pOuter, double dTolerance, long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, double dTolerance,
                              long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, CNuConSurf* pInner,
                              CNuConSurf* pOuter, double dTolerance, long lMaxIterations);

  private:
    double m_dSemiAngle;
};

}  // namespace numorix

#endif  // NUMORIX_SURFACES_CON_SURF_H
