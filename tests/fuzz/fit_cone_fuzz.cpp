// Fuzz target: the least-squares fit of a cone, with and without the residual outputs, and its Ex
// forms, on decoded points and iteration limits.
//
// Whatever the input: a refusal is one of the library's exceptions (stored 214 naming the first
// NaN or infinite coordinate). On data of representable size a returned cone has a semi-angle in
// (0, 90] degrees, a unit axis and an apex that is not NaN, and its form error and sum of squares
// are not negative.
#include "fuzz_support.h"
#include "numorix/surfaces/con_surf.h"

using numorix::CNuConSurf;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    const fuzz::CNuPointArray points = fuzz::Points(fdp);
    const long lMax = fuzz::Iterations(fdp);
    const bool bCheck = fuzz::Representable(points);
    const int nOperation = fuzz::Dump("operation", fdp.ConsumeIntegralInRange<int>(0, 3));
    CNuConSurf cone(45.0);
    double dForm = -1.0, dSumSquares = -1.0;
    bool bDone = false;
    const bool bLimitFirst = lMax <= 0;
    switch (nOperation) {
        case 0:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst,
                                      [&] { cone.Fit(points, &dForm, &dSumSquares, lMax); });
            break;
        case 1: bDone = fuzz::FitOrRefuse(points, bLimitFirst, [&] { cone.Fit(points, lMax); }); break;
        case 2:
            bDone = fuzz::FitEx(points, lMax, [&] { return cone.FitEx(points, &dForm, &dSumSquares, lMax); });
            break;
        default: bDone = fuzz::FitEx(points, lMax, [&] { return cone.FitEx(points, lMax); }); break;
    }
    if (!bDone || !bCheck) return 0;
    const double dAngle = cone.GetSemiAngle();
    const numorix::CNuPoint apex = cone.GetApex();
    NUMORIX_FUZZ_CHECK(dAngle > 0.0 && dAngle <= 90.0 && fuzz::IsUnit(cone.GetAxisDirection()));
    NUMORIX_FUZZ_CHECK(!std::isnan(apex.x()) && !std::isnan(apex.y()) && !std::isnan(apex.z()));
    if (nOperation % 2 == 0 && fuzz::IsFinite(apex)) {
        NUMORIX_FUZZ_CHECK(dForm >= 0.0 && dSumSquares >= 0.0);
    }
    return 0;
}
