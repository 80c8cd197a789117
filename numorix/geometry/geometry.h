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

class CNuMatrix;
class CNuVector;

class CNuGeometry : public CNuObject {
  public:
    enum EAxisType : std::int32_t { eXAxis = 0, eYAxis = 1, eZAxis = 2 };
    enum ELineSideType : std::int32_t {
        eLineSidePositive = 0,
        eLineSideNegative = 1,
        eLineSideOn = 2
    };
    enum ECurveSideType : std::int32_t {
        eCurveSideInner = 0,
        eCurveSideOuter = 1,
        eCurveSideOn = 2
    };
    enum ESurfaceSideType : std::int32_t {
        eSurfaceSideOuter = 0,
        eSurfaceSideInner = 1,
        eSurfaceSideOn = 2
    };

    // Rotation by dDegrees about a coordinate axis or about an arbitrary axis through the origin,
    // for row vectors: v' = v R. Cosine and sine are cleaned as NuCosSin cleans them.
    static CNuMatrix RotationMatrix(double dDegrees, EAxisType eAxis);
    static CNuMatrix RotationMatrix(double dDegrees, const CNuVector& axis);

    CNuGeometry(const CNuGeometry&) = default;
    CNuGeometry& operator=(const CNuGeometry&) = default;
    ~CNuGeometry() override;

  protected:
    CNuGeometry() = default;
};

}  // namespace numorix

#endif  // NUMORIX_GEOMETRY_GEOMETRY_H
