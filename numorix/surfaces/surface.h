// CNuSurface: the family base of the quadric surfaces (cylinder, cone, sphere, torus). It adds no
// data. QuadricAxes gives three candidate (centre, axis) pairs of a point set about its mean
// point, the starts of the cylinder and cone fits.
#ifndef NUMORIX_SURFACES_SURFACE_H
#define NUMORIX_SURFACES_SURFACE_H

#include "numorix/geometry/non_linear_geometry.h"

namespace numorix {

class CNuPoint;
class CNuPointArray;
class CNuVector;

class CNuSurface : public CNuNonLinearGeometry {
  public:
    CNuSurface(const CNuSurface&) = default;
    CNuSurface& operator=(const CNuSurface&) = default;
    ~CNuSurface() override;

  protected:
    CNuSurface() = default;

    // Starts of the cylinder and cone fits: fills arrays of three centres and three axes.
    static void QuadricAxes(const CNuPointArray& points, const CNuPoint& mean, CNuPoint* pCentres,
                            CNuVector* pAxes);
};

}  // namespace numorix

#endif  // NUMORIX_SURFACES_SURFACE_H
