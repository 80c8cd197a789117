// Rotation matrices for row vectors: v' = v R turns v right-handedly by the angle about the axis.
#include "numorix/geometry/geometry.h"

#include <cmath>

#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

// One over 180: turns degrees into radians as Nu_PI * degrees * kdInv180.
constexpr double kdInv180 = 0.005555555555555556;

// Cosine and sine of an angle in degrees, cleaned so that multiples of 90 degrees give exact
// zeros and 45 degrees gives two equal numbers.
void CleanCosSin(double dDegrees, double* pdCos, double* pdSin) {
    double t = Nu_PI * dDegrees * kdInv180;
    double c = std::cos(t);
    double s = std::sin(t);
    if (NuGetZero() > std::fabs(std::fabs(c) - 1.0)) {
        s = 0.0;
    } else if (NuGetZero() > std::fabs(std::fabs(s) - 1.0)) {
        c = 0.0;
    } else if (NuGetTol() > std::fabs(c - s)) {
        c = (c + s) * 0.5;
        s = c;
    }
    *pdCos = c;
    *pdSin = s;
}

void SetRow(double* pdRow, double a, double b, double c) {
    pdRow[0] = a;
    pdRow[1] = b;
    pdRow[2] = c;
}

}  // namespace

CNuGeometry::~CNuGeometry() = default;

CNuMatrix CNuGeometry::RotationMatrix(double dDegrees, EAxisType eAxis) {
    double c = 0.0;
    double s = 0.0;
    CleanCosSin(dDegrees, &c, &s);
    CNuMatrix r(3, 3);
    double** ppdR = r.GetData();
    switch (eAxis) {
        case eXAxis:
            SetRow(ppdR[0], 1.0, 0.0, 0.0);
            SetRow(ppdR[1], 0.0, c, s);
            SetRow(ppdR[2], 0.0, -s, c);
            break;
        case eYAxis:
            SetRow(ppdR[0], c, 0.0, -s);
            SetRow(ppdR[1], 0.0, 1.0, 0.0);
            SetRow(ppdR[2], s, 0.0, c);
            break;
        case eZAxis:
            SetRow(ppdR[0], c, s, 0.0);
            SetRow(ppdR[1], -s, c, 0.0);
            SetRow(ppdR[2], 0.0, 0.0, 1.0);
            break;
    }
    return r;
}

CNuMatrix CNuGeometry::RotationMatrix(double dDegrees, const CNuVector& axis) {
    CNuVector u(axis);
    u.Normalise();
    // Checked access: an axis of fewer than three elements is refused, not read past its end.
    const double x = u[0];
    const double y = u[1];
    const double z = u[2];
    double c = 0.0;
    double s = 0.0;
    CleanCosSin(dDegrees, &c, &s);
    const double k = 1.0 - c;
    CNuMatrix r(3, 3);
    double** ppdR = r.GetData();
    SetRow(ppdR[0], x * x * k + c, x * y * k + s * z, x * z * k - s * y);
    SetRow(ppdR[1], x * y * k - s * z, y * y * k + c, y * z * k + s * x);
    SetRow(ppdR[2], x * z * k + s * y, y * z * k - s * x, z * z * k + c);
    return r;
}

}  // namespace numorix
