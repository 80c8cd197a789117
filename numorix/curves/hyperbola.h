// CNuHyperbola: the hyperbola x^2 / a^2 - y^2 / b^2 = 1, z = 0 in its local frame, with the
// semi-transverse axis a along the local X axis and the semi-conjugate axis b; a, b > 0 in any
// order.
//
//   ToPointArray(n, xLow, xHigh, nHalf)
//                         n points of the upper half of the branch x > 0 between x = xLow and
//                         x = xHigh, evenly spaced in t where (a cosh t, b sinh t), by the
//                         hyperbolic rotation recurrence; nHalf non-zero mirrors them onto the
//                         other branch (x negated).
//   IntersectWith(line)   the local line p + t d in the canonical equation: with u = d.x / a,
//                         v = d.y / b, w = p.x / a, q = p.y / b,
//                         (u^2 - v^2) t^2 + 2 (w u - q v) t + w^2 - q^2 - 1 = 0.
#ifndef NUMORIX_CURVES_HYPERBOLA_H
#define NUMORIX_CURVES_HYPERBOLA_H

#include "numorix/curves/curve.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuLine;
class CNuPlane;

class CNuHyperbola : public CNuCurve {
  public:
    // Semi-axes not strictly above 0.0: construction cause 5, "semi-axis". A normal or X axis of
    // size other than 3 is cause 4, a zero one cause 3, an X axis not orthogonal to the normal
    // cause 8.
    CNuHyperbola(double dTransverse, double dConjugate);
    CNuHyperbola(double dTransverse, double dConjugate, const CNuPoint& centre);
    CNuHyperbola(double dTransverse, double dConjugate, const CNuPoint& centre,
                 const CNuVector& normal);
    CNuHyperbola(double dTransverse, double dConjugate, const CNuPoint& centre,
                 const CNuVector& normal, const CNuVector& xAxis);
    CNuHyperbola(const CNuHyperbola& other);
    CNuHyperbola& operator=(const CNuHyperbola& other);
    ~CNuHyperbola() override;

    double GetXRadius() const { return m_dXRadius; }
    double GetYRadius() const { return m_dYRadius; }
    CNuPoint GetCentre() const;
    CNuVector GetNormal() const;
    CNuVector GetXaxis() const;
    CNuPlane GetPlane() const;
    void GetData(double* pdXRadius, double* pdYRadius, CNuPoint* pCentre, CNuVector* pNormal,
                 CNuVector* pXAxis) const;

    // Location "CNuHyperbola::ToPolyline/PointArray()", name "conversion": nPoints below 2 is
    // stored 112, dLow not below dHigh stored 115, a bound below the X radius stored 114.
    CNuPointArray ToPointArray(int nPoints, double dLow, double dHigh, int nHalf) const;

    int IntersectWith(const CNuLine& line, CNuPoint* pFirst, CNuPoint* pSecond) const;
    int IntersectWith(const CNuPlane& plane, CNuPoint* pFirst, CNuPoint* pSecond) const;

  private:
    void Check() const;

    double m_dXRadius;
    double m_dYRadius;
};

}  // namespace numorix

#endif  // NUMORIX_CURVES_HYPERBOLA_H
