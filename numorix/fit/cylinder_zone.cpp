// Minimum zone, minimum circumscribed and maximum inscribed cylinders. Not yet available: each
// fit raises stored 145 ("FitMinZone", "FitMin" or "FitMax", located "CNuCylSurf"), which the Ex
// forms report as a failed fit.
#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/surfaces/cyl_surf.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuCylSurf";

}  // namespace

void CNuCylSurf::FitMax(const CNuPointArray& points, double dTolerance, long lMaxIterations) {
    static_cast<void>(points);
    static_cast<void>(dTolerance);
    static_cast<void>(lMaxIterations);
    throw CNuOperationException(45, "FitMax", kLocation);
}

void CNuCylSurf::FitMin(const CNuPointArray& points, double dTolerance, long lMaxIterations) {
    static_cast<void>(points);
    static_cast<void>(dTolerance);
    static_cast<void>(lMaxIterations);
    throw CNuOperationException(45, "FitMin", kLocation);
}

ENuFitResult CNuCylSurf::FitMaxEx(const CNuPointArray& points, double dTolerance,
                                  long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, kLocation, dTolerance,
                                      [&] { FitMax(points, dTolerance, lMaxIterations); });
}

ENuFitResult CNuCylSurf::FitMinEx(const CNuPointArray& points, double dTolerance,
                                  long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, kLocation, dTolerance,
                                      [&] { FitMin(points, dTolerance, lMaxIterations); });
}

void CNuCylSurf::FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                            long lMaxIterations) {
    static_cast<void>(points);
    static_cast<void>(pdZone);
    static_cast<void>(dTolerance);
    static_cast<void>(lMaxIterations);
    throw CNuOperationException(45, "FitMinZone", kLocation);
}

void CNuCylSurf::FitMinZone(const CNuPointArray& points, double* pdZone, CNuCylSurf* pInner,
                            CNuCylSurf* pOuter, double dTolerance, long lMaxIterations) {
    static_cast<void>(pInner);
    static_cast<void>(pOuter);
    FitMinZone(points, pdZone, dTolerance, lMaxIterations);
}

ENuFitResult CNuCylSurf::FitMinZoneEx(const CNuPointArray& points, double* pdZone,
                                      double dTolerance, long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, kLocation, dTolerance, [&] {
        FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    });
}

ENuFitResult CNuCylSurf::FitMinZoneEx(const CNuPointArray& points, double* pdZone,
                                      CNuCylSurf* pInner, CNuCylSurf* pOuter, double dTolerance,
                                      long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, kLocation, dTolerance, [&] {
        FitMinZone(points, pdZone, pInner, pOuter, dTolerance, lMaxIterations);
    });
}

}  // namespace numorix
