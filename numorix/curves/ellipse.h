// CNuEllipse: the ellipse x^2 / a^2 + y^2 / b^2 = 1, z = 0 in its local frame, with the
// semi-major axis a along the local X axis and a > b > 0: a circle is not an ellipse here.
//
//   ToPointArray(n)       n points (a cos t, b sin t) from t = 0 round to 2 pi, the last equal to
//                         the first, by the rotation recurrence on (cos t, sin t).
//   IntersectWith(line)   the local line p + t d in the canonical equation: with u = d.x / a,
//                         v = d.y / b, w = p.x / a, q = p.y / b,
//                         (u^2 + v^2) t^2 + 2 (w u + q v) t + w^2 + q^2 - 1 = 0.
#ifndef NUMORIX_CURVES_ELLIPSE_H
#define NUMORIX_CURVES_ELLIPSE_H

#include "numorix/curves/curve.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuLine;
class CNuPlane;

class CNuEllipse : public CNuCurve {
  public:
    // Semi-axes not strictly above 0.0: construction cause 5, "semi-axis"; major not strictly
    // above minor: cause 7. A normal or X axis of size other than 3 is cause 4, a zero one
    // cause 3, an X axis not orthogonal to the normal cause 8.
    CNuEllipse(double dMajor, double dMinor);
    CNuEllipse(double dMajor, double dMinor, const CNuPoint& centre);
    CNuEllipse(double dMajor, double dMinor, const CNuPoint& centre, const CNuVector& normal);
    CNuEllipse(double dMajor, double dMinor, const CNuPoint& centre, const CNuVector& normal,
               const CNuVector& xAxis);
    CNuEllipse(const CNuEllipse& other);
    CNuEllipse& operator=(const CNuEllipse& other);
    ~CNuEllipse() override;

    double GetXRadius() const { return m_dXRadius; }
    double GetYRadius() const { return m_dYRadius; }
    CNuPoint GetCentre() const;
    CNuVector GetNormal() const;
    CNuVector GetXaxis() const;
    CNuPlane GetPlane() const;
    void GetData(double* pdXRadius, double* pdYRadius, CNuPoint* pCentre, CNuVector* pNormal,
                 CNuVector* pXAxis) const;

    // nPoints below 2: stored 112, "conversion", "CNuEllipse::ToPolyline/PointArray()".
    CNuPointArray ToPointArray(int nPoints) const;

    int IntersectWith(const CNuLine& line, CNuPoint* pFirst, CNuPoint* pSecond) const;
    int IntersectWith(const CNuPlane& plane, CNuPoint* pFirst, CNuPoint* pSecond) const;

  private:
    void Check() const;

    double m_dXRadius;
    double m_dYRadius;
};

}  // namespace numorix

#endif  // NUMORIX_CURVES_ELLIPSE_H
