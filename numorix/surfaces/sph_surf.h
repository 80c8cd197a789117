// CNuSphSurf: the sphere of radius r > 0, in its local frame { x^2 + y^2 + z^2 = r^2 } with the
// centre at the local origin; the stored position carries it into the world.
//
// Fits (defined in numorix/fit/):
//   Fit            orthogonal least squares, min sum (|P_i - C| - r)^2 over the centre C and r:
//                  the sphere through four points by determinants, otherwise the algebraic
//                  sphere |P - C|^2 = r^2 linearised as a start and four-parameter Gauss-Newton.
//                  At least 4 points, not coplanar.
//   FitMinZone     min over C of (max |P_i - C| - min |P_i - C|), the narrowest spherical shell
//                  holding the points: an exchange over small active sets, each solved exactly
//                  over its five-point supports; coplanar points give the circle's annulus.
//   FitMin         min over C of max |P_i - C|, the smallest sphere holding the points;
//   FitMax         max over C of min |P_i - C|, the largest sphere with no point inside, among
//                  the points; both walk the centre from contact to contact until four contacts
//                  enclose it.
#ifndef NUMORIX_SURFACES_SPH_SURF_H
#define NUMORIX_SURFACES_SPH_SURF_H

#include "numorix/fit/fit_result.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/surface.h"

namespace numorix {

class CNuSphSurf : public CNuSurface {
  public:
    // A radius not strictly above 0.0 is construction cause 5, name "radius", located
    // "CNuSphSurf". Without a centre the sphere has no position (it lies about the world origin);
    // with one it takes the world axes.
    explicit CNuSphSurf(double dRadius);
    CNuSphSurf(double dRadius, const CNuPoint& centre);
    CNuSphSurf(const CNuSphSurf& other);
    CNuSphSurf& operator=(const CNuSphSurf& other);
    ~CNuSphSurf() override;

    double GetRadius() const { return m_dRadius; }
    // World coordinates: the radius and the centre.
    void GetData(double* pdRadius, CNuPoint* pCentre) const;
    CNuPoint GetCentre() const;
    void GetCentre(double* pdX, double* pdY, double* pdZ) const;

    void Fit(const CNuPointArray& points, long lMaxIterations);
    void Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
             long lMaxIterations);
    ENuFitResult FitEx(const CNuPointArray& points, long lMaxIterations);
    ENuFitResult FitEx(const CNuPointArray& points, double* pdForm, double* pdSumSquares,
                       long lMaxIterations);

    // Maximum inscribed (at least 4 points, not collinear) and minimum circumscribed sphere
    // (from one point). FitMinEx runs FitMax, as FitMaxEx does: the smallest circumscribed
    // sphere is reached only through FitMin itself.
    void FitMax(const CNuPointArray& points, double dTolerance);
    void FitMin(const CNuPointArray& points, double dTolerance);
    ENuFitResult FitMaxEx(const CNuPointArray& points, double dTolerance);
    ENuFitResult FitMinEx(const CNuPointArray& points, double dTolerance);

    // Minimum zone: the spherical shell of least width about the points. Every best-fit failure
    // inside is reported as stored 212.
    void FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                    long lMaxIterations);
    void FitMinZone(const CNuPointArray& points, double* pdZone, CNuSphSurf* pInner,
                    CNuSphSurf* pOuter, double dTolerance, long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, double dTolerance,
                              long lMaxIterations);
    ENuFitResult FitMinZoneEx(const CNuPointArray& points, double* pdZone, CNuSphSurf* pInner,
                              CNuSphSurf* pOuter, double dTolerance, long lMaxIterations);

    SPointCoverage m_pointCoverage;

  private:
    // The first point, from the scan cursor round to it, that lies farther than dTolerance
    // beyond the first candidate's half width from the mean sphere of any candidate shell;
    // -1 when every point is covered.
    long PointNotCovered(double dTolerance, const CNuPointArray& points,
                         const CNuPointArray& candidates);
    // The zone itself, without the guard that reports its failures as 212.
    void MinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                 long lMaxIterations);

    double m_dRadius;
};

}  // namespace numorix

#endif  // NUMORIX_SURFACES_SPH_SURF_H
