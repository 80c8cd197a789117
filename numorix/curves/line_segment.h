// CNuLineSegment: the straight bounded curve from a start point s to an end point e, both held in
// the local frame of the segment's position; the two are never equal within NuGetLengthTol().
//
//   GetPoint(t)            s + t (e - s), the ends taken in the world
//   GetParameter(p)        0 or 1 for a point within NuGetLengthTol() of an end (box test), else
//                          (e - s) . (p - s) / |e - s|^2 for a point on the line, unclamped
//   DistanceTo(p)          to the closest point s + t (e - s), t clamped to the segment: below
//                          NuGetTol() the start, at or above 1 the end
//   DistanceTo(segment)    0 where the two cross inside both; else the least of the four
//                          distances of an end to the other segment, the earliest on a tie
//   Offset(d, ref)         both ends shifted by d (n x u), n the normalised reference and u the
//                          unit direction; the shift is not normalised, so a segment leaning out
//                          of the plane normal to n moves by d sin(angle). Offset(d) takes n = Z.
//
// The 51-byte record of a composite curve file is private to the composite curve: the tag 'l'
// and the point records of the two ends.
#ifndef NUMORIX_CURVES_LINE_SEGMENT_H
#define NUMORIX_CURVES_LINE_SEGMENT_H

#include <fstream>

#include "numorix/curves/bounded_curve.h"
#include "numorix/geometry/point.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuCircle;
class CNuCompositeCurve;

namespace test {
struct LineSegmentRecord;
}

class CNuLineSegment : public CNuBoundedCurve {
  public:
    // From (0, 0, 0) to (1, 0, 0).
    CNuLineSegment();
    // Ends equal within NuGetLengthTol() in every coordinate: construction cause 10.
    CNuLineSegment(const CNuPoint& start, const CNuPoint& end);
    CNuLineSegment(const CNuLineSegment& other);
    CNuLineSegment& operator=(const CNuLineSegment& other);
    ~CNuLineSegment() override;

    CNuPoint GetStartPoint() const override;
    CNuPoint GetEndPoint() const override;
    // The end, the unit tangent and a zero curvature of size 3.
    void GetStartData(CNuPoint* pPoint, CNuVector* pTangent, CNuVector* pCurvature) const override;
    void GetEndData(CNuPoint* pPoint, CNuVector* pTangent, CNuVector* pCurvature) const override;
    void BoundingBox(CNuPoint* pMin, CNuPoint* pMax) const override;
    // Half the distance of the ends about their midpoint.
    void BoundingCircle(double* pdRadius, CNuPoint* pCentre) const override;
    // Against a segment as below; against any other bounded curve by that curve's own measure.
    double DistanceTo(const CNuBoundedCurve* pCurve, CNuPoint* pOnThis,
                      CNuPoint* pOnOther) const override;
    double DistanceTo(const CNuPoint& point) const override;
    // From the stored ends: 0.0 when the largest difference is below NuGetZero().
    double Length() const override;
    // Stored 110 for a reference of size other than 3, stored 109 for a zero one, stored 126
    // when the reference is parallel to the segment; all "Offset", "CNuLineSegment". A distance
    // below NuGetZero() in magnitude gives a copy without looking at the reference. nDimension is
    // not read.
    CNuBoundedCurve* Offset(double dDistance, const CNuVector& reference, int nDimension) override;
    // Stored 126 when the segment is parallel to Z.
    CNuBoundedCurve* Offset(double dDistance) override;

    // Equal ends within dTol (strict box tests), in the same or in the reversed order.
    ENuBoolean IsEqual(const CNuLineSegment& other, double dTol) const;
    // A point off the line: stored 114, "calculation", "CNuLineSegment::GetParameter()".
    double GetParameter(const CNuPoint& point) const;
    CNuPoint GetPoint(double t) const;
    CNuVector GetTangent() const;

    double DistanceTo(const CNuPoint& point, CNuPoint* pClosest) const;
    double DistanceTo(const CNuLineSegment& other, CNuPoint* pOnThis, CNuPoint* pOnOther) const;
    // 1 when the lines cross inside both segments; the crossing of the lines is written even
    // when it lies outside and 0 is returned.
    int IntersectWith(const CNuLineSegment& other, CNuPoint* pPoint) const;
    // The points of the line on the circle that lie on the segment, in the line's order.
    int IntersectWith(const CNuCircle& circle, CNuPoint* pFirst, CNuPoint* pSecond) const;

  private:
    friend class CNuCompositeCurve;
    friend struct test::LineSegmentRecord;

    bool BinaryDump(std::ofstream& stream) const;
    bool BinaryRead(std::ifstream& stream);

    CNuLineSegment* Clone() const;
    CNuLineSegment* ShiftedCopy(const CNuVector& shift) const;

    CNuPoint m_start;
    CNuPoint m_end;
};

}  // namespace numorix

#endif  // NUMORIX_CURVES_LINE_SEGMENT_H
