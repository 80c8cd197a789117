// Scalar utilities used throughout the library.
//
//   NuPythag(a, b)        sqrt(a^2 + b^2) as p sqrt(1 + (q/p)^2), p = max(|a|, |b|), q the other:
//                         no overflow of the squares; 0 when p is below NuGetZero().
//   NuPythag(a, b, c)     the same for three terms.
//   NuSort                straight insertion sorts, ascending by a strict comparison, so equal
//                         keys keep their order. Every sort of the library is one of these.
//   NuAngleIn360Degree    reduction into [0, 360) by repeated addition or subtraction of 360,
//   NuAngleIn2Pi          or of 2 pi; a result within NuGetZero() of 0 or of the period is 0.
//   NuArcCosSin           the angle in [0, 2 pi) of a cosine and sine, by the arc tangent of
//                         their quotient with a quadrant repair.
//   NuCosSin              cosine and sine, cleaned so that multiples of 90 degrees give exact
//                         zeros and 45 degrees gives two equal numbers.
//   acosh                 ln(x + sqrt(x^2 - 1)) for x >= 1; below 1 an operation failure.
//   NuIsTriangle          whether three lengths form a triangle with margin dTol.
//   NuIsEqual             element-wise equality of two arrays within dTol (strict).
#ifndef NUMORIX_FOUNDATION_SCALAR_H
#define NUMORIX_FOUNDATION_SCALAR_H

#include "numorix/foundation/object.h"

namespace numorix {

ENuBoolean NuIsEqual(int nSize1, int nSize2, const double* pdData1, const double* pdData2,
                     double dTol);

double NuPythag(double a, double b);
double NuPythag(double a, double b, double c);

void NuSort(int nSize, double* pdData);
void NuSort(int nSize, const double* pdData, int* pnIndex);
void NuSort(int nSize, double* pdKeys, double* pdCompanion);

double NuAngleIn360Degree(double dDegrees);
double NuAngleIn2Pi(double dRadians);

double NuArcCosSin(double dCos, double dSin);
void NuCosSin(double dAngle, double* pdCos, double* pdSin);

// Inverse hyperbolic cosine. x below 1.0 raises operation cause 1 (stored 101).
double acosh(double x);

ENuBoolean NuIsTriangle(double a, double b, double c, double dTol);

}  // namespace numorix

#endif  // NUMORIX_FOUNDATION_SCALAR_H
