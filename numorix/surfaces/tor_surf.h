// CNuTorSurf: the torus of major radius R > 0 and minor radius r > 0, in its local frame the
// points at the distance r from the circle { x^2 + y^2 = R^2, z = 0 }: the centre is the local
// origin and the axis the local Z axis; the stored position carries it into the world.
//
// Fit (defined in numorix/fit/torus_fit.cpp):
//   FitMin    the thinnest tube about a circle in space that holds every point: min over the
//             circle (centre, axis, R) of max_i dist(P_i, circle), the minor radius being that
//             largest distance. Started from the least-squares circle and solved by successive
//             constrained L1 programmes (the Chebyshev driver). Points within dTolerance of the
//             least-squares circle give that circle with minor radius 0.
#ifndef NUMORIX_SURFACES_TOR_SURF_H
#define NUMORIX_SURFACES_TOR_SURF_H

#include "numorix/fit/fit_result.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"
#include "numorix/surfaces/surface.h"

namespace numorix {

class CNuTorSurf : public CNuSurface {
  public:
    // A radius not strictly above 0.0 is construction cause 5, name "major radius" or "minor
    // radius"; an axis of size other than 3 is cause 4, a zero axis cause 3, all located
    // "CNuTorSurf". Without an axis the torus has no position.
    CNuTorSurf(double dMajorRadius, double dMinorRadius);
    CNuTorSurf(double dMajorRadius, double dMinorRadius, const CNuPoint& centre,
               const CNuVector& axis);
    CNuTorSurf(const CNuTorSurf& other);
    CNuTorSurf& operator=(const CNuTorSurf& other);
    ~CNuTorSurf() override;

    double GetMajorRadius() const { return m_dMajorRadius; }
    double GetMinorRadius() const { return m_dMinorRadius; }
    // World coordinates: both radii, the centre and the unit axis direction.
    void GetData(double* pdMajorRadius, double* pdMinorRadius, CNuPoint* pCentre,
                 CNuVector* pAxis) const;
    CNuPoint GetCentre() const;
    CNuVector GetAxisDirection() const;

    // Checks in this order: lMaxIterations (213), non-finite coordinates (214) and tolerance
    // (211), fewer than 3 points (201 carrying 3), no three points out of line within dTolerance
    // (203 carrying 3), all located "CNuTorSurf". Every best-fit failure after these is reported
    // as stored 212 located "CNuTorSurf". A fit that failed leaves the torus undefined.
    void FitMin(const CNuPointArray& points, double dTolerance, long lMaxIterations);
    ENuFitResult FitMinEx(const CNuPointArray& points, double dTolerance, long lMaxIterations);

  private:
    double m_dMajorRadius;
    double m_dMinorRadius;
};

}  // namespace numorix

#endif  // NUMORIX_SURFACES_TOR_SURF_H
