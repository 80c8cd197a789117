// CNuGeometry: the family base of points, vectors, coordinate systems, lines, planes, curves and
// surfaces. It adds no data; the geometric statics that every geometric class shares (rotation
// matrices, collinearity and coplanarity tests, projections) hang from it.
//
// Frame rule used throughout: vectors are rows, and a local point becomes a world point as
// (local point) x R + T, the rows of R being the local X, Y and Z axes.
#ifndef NUMORIX_GEOMETRY_GEOMETRY_H
#define NUMORIX_GEOMETRY_GEOMETRY_H

#include "numorix/foundation/object.h"

namespace numorix {

class CNuGeometry : public CNuObject {
  public:
    CNuGeometry(const CNuGeometry&) = default;
    CNuGeometry& operator=(const CNuGeometry&) = default;
    ~CNuGeometry() override;

  protected:
    CNuGeometry() = default;
};

}  // namespace numorix

#endif  // NUMORIX_GEOMETRY_GEOMETRY_H
