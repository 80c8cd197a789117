// CNuPoint: the 3D point (x, y, z), a location rather than a direction.
//
// Points compare by a box test: two points are equal within dTol when dTol is strictly greater
// than every coordinate difference. Distances to lines and planes assume the unit direction or
// normal that their constructors guarantee:
//   to a line through q along d:   |p - f| with the foot f = q + ((p - q) . d) d
//   to a plane through q, normal n: |(p - q) . n|
// Rotations are in degrees about the world origin, or about a given centre. MoveTo carries the
// point into a local frame.
#ifndef NUMORIX_GEOMETRY_POINT_H
#define NUMORIX_GEOMETRY_POINT_H

#include <fstream>

#include "numorix/geometry/geometry.h"

namespace numorix {

class CNuConSurf;
class CNuCurve;
class CNuObjArray;
class CNuLine;
class CNuNonLinearGeometry;
class CNuPlane;
class CNuSurface;
class CNuVector;

class CNuPoint : public CNuGeometry {
  public:
    CNuPoint(double x = 0.0, double y = 0.0, double z = 0.0);
    CNuPoint(const CNuPoint& other);
    CNuPoint& operator=(const CNuPoint& other);
    ~CNuPoint() override;

    double x() const { return m_dX; }
    double y() const { return m_dY; }
    double z() const { return m_dZ; }
    double& x() { return m_dX; }
    double& y() { return m_dY; }
    double& z() { return m_dZ; }
    void GetData(double* pdX, double* pdY, double* pdZ) const;
    static void Swap(CNuPoint& a, CNuPoint& b);

    operator CNuVector() const;
    CNuVector To3DVector() const;
    CNuVector To4DVector() const;  // (x, y, z, 1)

    ENuBoolean IsZero(double dTol) const;
    ENuBoolean IsEqual(const CNuPoint& other, double dTol) const;

    CNuPoint operator+(const CNuPoint& other) const;
    CNuPoint operator-(const CNuPoint& other) const;
    CNuPoint& operator+=(const CNuPoint& other);
    CNuPoint& operator-=(const CNuPoint& other);
    CNuPoint operator-() const;
    CNuPoint operator*(double dFactor) const;
    CNuPoint& operator*=(double dFactor);
    CNuPoint operator/(double dDivisor) const;
    CNuPoint& operator/=(double dDivisor);

    void Translate(double dx, double dy, double dz);
    void Translate(const CNuPoint& offset);
    void Rotate(double dAngle, CNuGeometry::EAxisType eAxis);
    void Rotate(double dAngle, const CNuVector& axis);
    void Rotate(double dAngle, CNuGeometry::EAxisType eAxis, const CNuPoint& centre);
    void Rotate(double dAngle, const CNuVector& axis, const CNuPoint& centre);

    // Into the local frame of a positioned element: p becomes (p - T) R.
    void MoveTo(const CNuNonLinearGeometry& geometry);
    // Into the frame (origin, x, z): the coordinates become d . x, d . y, d . z with
    // d = p - origin, the axes normalised copies and y = z x x.
    void MoveTo(const CNuPoint& origin, const CNuVector& xAxis, const CNuVector& zAxis);

    CNuPoint MidPoint(const CNuPoint& other) const;
    CNuPoint MidPoint(const CNuLine& line) const;
    CNuPoint MidPoint(const CNuPlane& plane) const;
    CNuPlane MidPlane(const CNuPoint& other) const;
    CNuPlane MidPlane(const CNuLine& line) const;

    double DistanceTo(const CNuPoint& other) const;
    double DistanceTo(const CNuLine& line) const;
    double DistanceTo(const CNuPlane& plane) const;
    double DistanceTo(const CNuCurve& curve) const;
    double DistanceTo(const CNuSurface& surface) const;

    CNuPoint ProjectionOn(const CNuLine& line) const;
    CNuPoint ProjectionOn(const CNuPlane& plane) const;
    CNuPoint ProjectionOn(const CNuSurface& surface) const;
    // The nearest points of the cone (both nappes) as one or two new CNuPoint objects, which the
    // caller deletes: two when the point is as near to both nappes within NuGetLengthTol(); one
    // foot in a chosen direction for a point on the axis, whose feet form a circle.
    CNuObjArray ProjectionOnCone(CNuConSurf& cone) const;

    // 2 on the line within dTol; else 0 when (direction x (p - foot)) lies within 90 degrees of
    // ref, 1 beyond. The two-argument form uses ref = (0, 0, 1).
    CNuGeometry::ELineSideType LineSide(const CNuLine& line, double dTol) const;
    CNuGeometry::ELineSideType LineSide(const CNuLine& line, const CNuVector& ref,
                                        double dTol) const;
    // For curves 1 is the outside, for surfaces 1 is the inside.
    CNuGeometry::ECurveSideType CurveSide(const CNuGeometry& curve, double dTol) const;
    CNuGeometry::ESurfaceSideType SurfaceSide(const CNuGeometry& surface, double dTol) const;

    // The 25-byte record: the tag 'p', then x, y and z as host doubles.
    bool BinaryDump(std::ofstream& stream) const;
    bool BinaryRead(std::ifstream& stream);

  private:
    double m_dX;
    double m_dY;
    double m_dZ;
};

}  // namespace numorix

#endif  // NUMORIX_GEOMETRY_POINT_H
