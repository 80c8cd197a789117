// CNuNonLinearGeometry: the base of curves and surfaces. Each such element is defined in its own
// canonical local frame, and an optional position carries that frame into the world:
//
//   world point = (local point) R + T,  rows of R = local X, Y = Z x X, Z;  T = the origin.
//
// The position is created lazily: an element without one lies at the world origin with the
// world axes, and the first Translate, Rotate or SetPosition creates it. Nothing removes it.
//
// The two Translate overloads deliberately disagree: Translate(dx, dy, dz) moves the origin by an
// offset, Translate(point) makes the point the new origin. Rotations are in degrees, about the
// world origin or about a given centre, and carry the origin and both axes.
//
// CNuCurve and CNuSurface are the two family bases beneath it; they add no data.
#ifndef NUMORIX_GEOMETRY_NON_LINEAR_GEOMETRY_H
#define NUMORIX_GEOMETRY_NON_LINEAR_GEOMETRY_H

#include "numorix/geometry/geometry.h"

namespace numorix {

class CNuCartesianCoord;
class CNuMatrix;
class CNuPoint;
class CNuVector;

class CNuNonLinearGeometry : public CNuGeometry {
  public:
    CNuNonLinearGeometry(const CNuNonLinearGeometry& other);
    CNuNonLinearGeometry& operator=(const CNuNonLinearGeometry& other);
    ~CNuNonLinearGeometry() override;

    // The position operations, in the order of their virtual slots.
    virtual void Translate(const CNuPoint& origin);
    virtual void Translate(double dx, double dy, double dz);
    virtual void Rotate(double dAngle, const CNuVector& axis, const CNuPoint& centre);
    virtual void Rotate(double dAngle, CNuGeometry::EAxisType eAxis, const CNuPoint& centre);
    virtual void Rotate(double dAngle, const CNuVector& axis);
    virtual void Rotate(double dAngle, CNuGeometry::EAxisType eAxis);

    bool IsPositionSet() const { return m_pPosition != nullptr; }
    // Takes over a copy of the other's position; a source without one leaves this element as it is.
    void CopyPosition(const CNuNonLinearGeometry& other);

    CNuMatrix GetRotation() const;               // R, 3 by 3
    CNuVector GetTranslation() const;            // T
    CNuMatrix GetTransformation() const;         // [R 0; T 1], for homogeneous row vectors
    CNuMatrix GetInverseRotation() const;        // R^T
    CNuVector GetInverseTranslation() const;     // -T
    CNuMatrix GetInverseTransformation() const;  // [R^T 0; -T R^T 1]

  protected:
    CNuNonLinearGeometry();
    // Origin, X axis and Z axis; (0, 0, 0), (1, 0, 0), (0, 0, 1) without a position.
    void GetPosition(CNuPoint* pOrigin, CNuVector* pXAxis, CNuVector* pZAxis) const;
    // The three parts of GetPosition one at a time, for the accessors of the derived elements.
    CNuPoint GetFrameOrigin() const;
    CNuVector GetFrameXAxis() const;
    CNuVector GetFrameZAxis() const;
    // Replaces the position by a new frame, stored as given (nothing is normalised).
    void SetPosition(const CNuPoint& origin, const CNuVector& xAxis, const CNuVector& zAxis);

  private:
    void EnsurePosition();
    void Rotate_1(const CNuMatrix& rotation);
    void Rotate_2(const CNuMatrix& rotation, const CNuPoint& centre);

    CNuCartesianCoord* m_pPosition;
};

}  // namespace numorix

#endif  // NUMORIX_GEOMETRY_NON_LINEAR_GEOMETRY_H
