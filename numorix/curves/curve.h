// CNuCurve: the family base of the curves (conics, bounded curves, parametric curves). It adds
// no data. Its statics fit the general conic that starts the ellipse and hyperbola fits:
//
//   QuadraticFit         a x^2 + b x y + c y^2 + d x + e y + 1 = 0 by least squares over the
//                        points (x_i, y_i); the result is (a, b, c, d, e).
//   CentredQuadraticFit  the same conic brought to focal form (foci and semi-axis); nMode 0 for
//                        a hyperbola, non-zero for an ellipse.
#ifndef NUMORIX_CURVES_CURVE_H
#define NUMORIX_CURVES_CURVE_H

#include "numorix/geometry/non_linear_geometry.h"

namespace numorix {

class CNuVector;

class CNuCurve : public CNuNonLinearGeometry {
  public:
    CNuCurve(const CNuCurve&) = default;
    CNuCurve& operator=(const CNuCurve&) = default;
    ~CNuCurve() override;

  protected:
    CNuCurve() = default;

    // Starts of the conic fits, for the derived curves.
    static void QuadraticFit(const CNuVector& x, const CNuVector& y, CNuVector* pCoefficients);
    static void CentredQuadraticFit(const CNuVector& x, const CNuVector& y, CNuVector* pResult,
                                    int nMode);
};

}  // namespace numorix

#endif  // NUMORIX_CURVES_CURVE_H
