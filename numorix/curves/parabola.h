// CNuParabola: the parabola y^2 = 4 f x, z = 0 in its local frame, with the vertex at the local
// origin, the axis along the local X axis opening towards +x, and the focal length f > 0.
//
//   ToPointArray(n, xLow, xHigh, nHalf)
//                         n points (f s^2, 2 f s) between x = xLow and x = xHigh, evenly spaced
//                         in s (so in y, not in x), built by running differences; nHalf 0 takes
//                         the half y < 0, non-zero the half y > 0.
//   IntersectWith(line)   the local line p + t d in the canonical equation:
//                         d.y^2 t^2 + (2 p.y d.y - 4 f d.x) t + p.y^2 - 4 f p.x = 0.
#ifndef NUMORIX_CURVES_PARABOLA_H
#define NUMORIX_CURVES_PARABOLA_H

#include "numorix/curves/curve.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuLine;
class CNuPlane;

class CNuParabola : public CNuCurve {
  public:
    // A focal length not strictly above 0.0: construction cause 5, "focal-length". A normal or
    // X axis of size other than 3 is cause 4, a zero one cause 3, an X axis not orthogonal to the
    // normal cause 8.
    explicit CNuParabola(double dFocalLength);
    CNuParabola(double dFocalLength, const CNuPoint& vertex);
    CNuParabola(double dFocalLength, const CNuPoint& vertex, const CNuVector& normal);
    CNuParabola(double dFocalLength, const CNuPoint& vertex, const CNuVector& normal,
                const CNuVector& xAxis);
    CNuParabola(const CNuParabola& other);
    CNuParabola& operator=(const CNuParabola& other);
    ~CNuParabola() override;

    double GetFocalLength() const { return m_dFocalLength; }
    CNuPoint GetVertex() const;
    CNuVector GetNormal() const;
    CNuVector GetXaxis() const;
    CNuPlane GetPlane() const;
    void GetData(double* pdFocalLength, CNuPoint* pVertex, CNuVector* pNormal,
                 CNuVector* pXAxis) const;

    // Location "CNuParabola::ToPolyline/PointArray()", name "conversion": nPoints below 2 is
    // stored 112, dLow not below dHigh stored 115, dLow below 0.0 stored 114.
    CNuPointArray ToPointArray(int nPoints, double dLow, double dHigh, int nHalf) const;

    int IntersectWith(const CNuLine& line, CNuPoint* pFirst, CNuPoint* pSecond) const;
    int IntersectWith(const CNuPlane& plane, CNuPoint* pFirst, CNuPoint* pSecond) const;

  private:
    double m_dFocalLength;
};

}  // namespace numorix

#endif  // NUMORIX_CURVES_PARABOLA_H
