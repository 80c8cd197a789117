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
class CNuPlane;
class CNuPoint;
class CNuPointArray;
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

    // 1 when the points lie on one line within dTol (box tests of differences and of cross
    // products); otherwise 0, and *pNormal becomes the unit normal of the plane through the first
    // three non-collinear points. Fewer than three points are collinear.
    static int AreCollinear(const CNuPointArray& points, CNuVector* pNormal, double dTol);
    // 1 when the points lie within dTol of the plane through point 0 with the normal found by
    // AreCollinear, which is stored in *pPlane. Fewer than four points are coplanar and leave the
    // plane alone; collinear points give the plane normal to point 0 -> last point.
    static int AreCoplanar(const CNuPointArray& points, double dTol);
    static int AreCoplanar(const CNuPointArray& points, CNuPlane* pPlane, double dTol);
    // 1 as soon as nRequired mutually distinct points (distance at least dTol) are found; not a
    // count.
    static int NumberDistinctPoints(const CNuPointArray& points, int nRequired, double dTol);
    // Each point p becomes (p . x, p . y, 0) in the frame completed from zAxis by OrthonormalX.
    static CNuPointArray Projection2D(const CNuPointArray& points, const CNuVector& zAxis);
    // Each point p becomes ((p - origin) . xAxis, (p - origin) . yAxis, 0), the axes as given.
    static CNuPointArray Projection2D(const CNuPointArray& points, const CNuPoint& origin,
                                      const CNuVector& xAxis, const CNuVector& yAxis);

    CNuGeometry(const CNuGeometry&) = default;
    CNuGeometry& operator=(const CNuGeometry&) = default;
    ~CNuGeometry() override;

  protected:
    CNuGeometry() = default;
};

}  // namespace numorix

#endif  // NUMORIX_GEOMETRY_GEOMETRY_H
