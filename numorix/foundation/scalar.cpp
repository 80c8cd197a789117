#include "numorix/foundation/scalar.h"

#include <cmath>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/internal/scalar_kernels.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {

ENuBoolean NuIsEqual(int nSize1, int nSize2, const double* pdData1, const double* pdData2,
                     double dTol) {
    if (nSize1 < 0 || nSize2 < 0 || pdData1 == nullptr || pdData2 == nullptr) return eNuFalse;
    if (nSize1 != nSize2) return eNuFalse;
    for (int i = 0; i < nSize1; ++i) {
        if (!(dTol > std::fabs(pdData1[i] - pdData2[i]))) return eNuFalse;
    }
    return eNuTrue;
}

double NuPythag(double a, double b) { return internal::Pythag(a, b); }

double NuPythag(double a, double b, double c) { return internal::Pythag(a, b, c); }

void NuSort(int nSize, double* pdData) {
    for (int i = 1; i < nSize; ++i) {
        double dKey = pdData[i];
        int j = i - 1;
        while (j >= 0 && pdData[j] > dKey) {
            pdData[j + 1] = pdData[j];
            --j;
        }
        pdData[j + 1] = dKey;
    }
}

void NuSort(int nSize, const double* pdData, int* pnIndex) {
    for (int i = 0; i < nSize; ++i)
        pnIndex[i] = i;
    for (int i = 1; i < nSize; ++i) {
        int nKey = pnIndex[i];
        int j = i - 1;
        while (j >= 0 && pdData[pnIndex[j]] > pdData[nKey]) {
            pnIndex[j + 1] = pnIndex[j];
            --j;
        }
        pnIndex[j + 1] = nKey;
    }
}

void NuSort(int nSize, double* pdKeys, double* pdCompanion) {
    for (int i = 1; i < nSize; ++i) {
        double dKey = pdKeys[i];
        double dCompanion = pdCompanion[i];
        int j = i - 1;
        while (j >= 0 && pdKeys[j] > dKey) {
            pdKeys[j + 1] = pdKeys[j];
            pdCompanion[j + 1] = pdCompanion[j];
            --j;
        }
        pdKeys[j + 1] = dKey;
        pdCompanion[j + 1] = dCompanion;
    }
}

namespace {

// Brings an angle into [0, dPeriod) by repeated addition or subtraction of the period, so that
// the rounding of every step is part of the result. A value so large that a step cannot change it
// (an infinity among them) would never leave the loop; it is reduced by the exact remainder.
double ReduceAngle(double dAngle, double dPeriod) {
    if ((dAngle < 0.0 && dAngle + dPeriod == dAngle) ||
        (dAngle >= dPeriod && dAngle - dPeriod == dAngle)) {
        dAngle = std::fmod(dAngle, dPeriod);
    }
    while (dAngle < 0.0)
        dAngle += dPeriod;
    while (dAngle >= dPeriod)
        dAngle -= dPeriod;
    double dZero = NuGetZero();
    if (std::fabs(dAngle) < dZero || std::fabs(dAngle - dPeriod) < dZero) return 0.0;
    return dAngle;
}

}  // namespace

double NuAngleIn360Degree(double dDegrees) { return ReduceAngle(dDegrees, 360.0); }

double NuAngleIn2Pi(double dRadians) { return ReduceAngle(dRadians, Nu_2PI); }

double NuArcCosSin(double dCos, double dSin) {
    double dZero = NuGetZero();
    if (std::fabs(dCos) < dZero) return dSin > 0.0 ? Nu_PI * 0.5 : Nu_PI * 1.5;
    if (std::fabs(dSin) < dZero) return dCos > 0.0 ? 0.0 : Nu_PI;
    double t = std::atan(dSin / dCos);
    if (t > 0.0) return dSin >= 0.0 ? t : t + Nu_PI;
    return dSin <= 0.0 ? t + Nu_2PI : t + Nu_PI;
}

void NuCosSin(double dAngle, double* pdCos, double* pdSin) {
    double c = std::cos(dAngle);
    double s = std::sin(dAngle);
    double dZero = NuGetZero();
    if (std::fabs(std::fabs(c) - 1.0) < dZero) {
        s = 0.0;
    } else if (std::fabs(std::fabs(s) - 1.0) < dZero) {
        c = 0.0;
    } else if (NuGetTol() > std::fabs(c - s)) {
        double dMean = (c + s) * 0.5;
        c = dMean;
        s = dMean;
    }
    if (pdCos != nullptr) *pdCos = c;
    if (pdSin != nullptr) *pdSin = s;
}

double acosh(double x) {
    if (x < 1.0) throw CNuOperationException(1, "calculation", "acosh");
    return std::log(x + std::sqrt(x * x - 1.0));
}

ENuBoolean NuIsTriangle(double a, double b, double c, double dTol) {
    if (c + dTol >= a + b || a + dTol >= b + c || b + dTol >= a + c) return eNuFalse;
    return eNuTrue;
}

}  // namespace numorix
