// CNuBoundedCurve: the abstract base of the curves with two ends (line segments, circular arcs,
// polylines, composite curves). It fixes the one protocol by which a composite curve and its
// offsets treat all of them alike: the ends, the tangent and curvature at the ends, a bounding
// box and circle, distances to a point and to another bounded curve, the length, and the two
// offsets. Every Offset returns a new curve that the caller deletes.
//
// A bounded curve is stored in the local frame of its position; the two protected helpers carry
// local points (as homogeneous rows times GetTransformation()) and local vectors (times
// GetRotation()) into the world, and are plain copies for a curve without a position.
#ifndef NUMORIX_CURVES_BOUNDED_CURVE_H
#define NUMORIX_CURVES_BOUNDED_CURVE_H

#include "numorix/curves/curve.h"
#include "numorix/geometry/point.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuBoundedCurve : public CNuCurve {
  public:
    CNuBoundedCurve(const CNuBoundedCurve&) = default;
    CNuBoundedCurve& operator=(const CNuBoundedCurve&) = default;
    ~CNuBoundedCurve() override;

    // The protocol, in the order of its virtual slots after the position operations.
    virtual CNuPoint GetStartPoint() const = 0;
    virtual CNuPoint GetEndPoint() const = 0;
    virtual void GetStartData(CNuPoint* pPoint, CNuVector* pTangent,
                              CNuVector* pCurvature) const = 0;
    virtual void GetEndData(CNuPoint* pPoint, CNuVector* pTangent, CNuVector* pCurvature) const = 0;
    virtual void BoundingBox(CNuPoint* pMin, CNuPoint* pMax) const = 0;
    virtual void BoundingCircle(double* pdRadius, CNuPoint* pCentre) const = 0;
    virtual double DistanceTo(const CNuBoundedCurve* pCurve, CNuPoint* pOnThis,
                              CNuPoint* pOnOther) const = 0;
    virtual double DistanceTo(const CNuPoint& point) const = 0;
    virtual double Length() const = 0;
    // Offsets in the plane whose normal is the reference (pointing at the viewer, a positive
    // distance goes to the left of the direction of travel), or in the XY plane.
    virtual CNuBoundedCurve* Offset(double dDistance, const CNuVector& reference,
                                    int nDimension) = 0;
    virtual CNuBoundedCurve* Offset(double dDistance) = 0;

  protected:
    CNuBoundedCurve() = default;

    CNuPoint GetPointInSpace(const CNuPoint& local) const;
    CNuVector GetVectorInSpace(const CNuVector& local) const;
};

}  // namespace numorix

#endif  // NUMORIX_CURVES_BOUNDED_CURVE_H
