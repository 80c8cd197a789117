// CNuCartesianCoord: a local coordinate system held as an origin, a local X axis and a local Z
// axis; the local Y axis is Z x X and is never stored. A local point becomes a world point as
// (local point) R + origin, the rows of R being X, Y and Z.
//
// The setters store exactly what they are given: nothing is normalised, orthogonality is not
// tested, and an axis of another size replaces the stored one.
#ifndef NUMORIX_GEOMETRY_CARTESIAN_COORD_H
#define NUMORIX_GEOMETRY_CARTESIAN_COORD_H

#include "numorix/geometry/geometry.h"
#include "numorix/geometry/point.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuCartesianCoord : public CNuGeometry {
  public:
    // The world frame: origin (0, 0, 0), X (1, 0, 0), Z (0, 0, 1).
    CNuCartesianCoord();
    CNuCartesianCoord(const CNuCartesianCoord& other);
    CNuCartesianCoord& operator=(const CNuCartesianCoord& other);
    ~CNuCartesianCoord() override;

    const CNuPoint& GetOrigin() const { return m_origin; }
    const CNuVector& GetLocalXaxis() const { return m_xAxis; }
    const CNuVector& GetLocalZaxis() const { return m_zAxis; }
    void GetData(CNuPoint* pOrigin, CNuVector* pXAxis, CNuVector* pZAxis) const;

    void SetOrigin(const CNuPoint& origin);
    void SetLocalXaxis(const CNuVector& xAxis);
    void SetLocalZaxis(const CNuVector& zAxis);
    void SetData(const CNuPoint& origin, const CNuVector& xAxis, const CNuVector& zAxis);

  private:
    CNuPoint m_origin;
    CNuVector m_xAxis;
    CNuVector m_zAxis;
};

}  // namespace numorix

#endif  // NUMORIX_GEOMETRY_CARTESIAN_COORD_H
