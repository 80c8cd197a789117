// Fuzz target: every fit of a cylinder (least squares, minimum circumscribed, maximum inscribed,
// minimum zone with and without the bounding cylinders, and their Ex forms) on decoded points,
// tolerances and iteration limits.
//
// Whatever the input: a refusal is one of the library's exceptions (stored 214 naming the first
// NaN or infinite coordinate). On data of representable size a returned cylinder has a finite
// axis point, a unit axis and a finite radius that is not negative, and, measured from its axis,
// up to the tolerance and rounding: the minimum circumscribed cylinder holds every point; no point
// lies inside the maximum inscribed cylinder; every point lies in the shell of the zone and
// between the bounding cylinders.
#include "fuzz_support.h"

using numorix::CNuCylSurf;

namespace {

void CheckCylinder(const CNuCylSurf& cylinder) {
    NUMORIX_FUZZ_CHECK(fuzz::IsFinite(cylinder.GetAxisPoint()) &&
                       fuzz::IsUnit(cylinder.GetAxisDirection()));
    NUMORIX_FUZZ_CHECK(cylinder.GetRadius() >= 0.0 && std::isfinite(cylinder.GetRadius()));
}

// Every point's distance from the axis within [dLow, dHigh].
void CheckBetween(const fuzz::CNuPointArray& points, const CNuCylSurf& cylinder, fuzz::Real dLow,
                  fuzz::Real dHigh, fuzz::Real dSlack) {
    CheckCylinder(cylinder);
    fuzz::CheckAxisBand(points, cylinder.GetAxisPoint(), cylinder.GetAxisDirection(), dLow, dHigh,
                        dSlack, cylinder.GetRadius());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    const fuzz::CNuPointArray points = fuzz::Points(fdp);
    const double dTolerance = fuzz::Tolerance(fdp);
    const long lMax = fuzz::Iterations(fdp);
    const bool bCheck = fuzz::Representable(points);
    fuzz::Real dSlack = fuzz::Slack(dTolerance, points);
    const fuzz::Real kAll = std::numeric_limits<fuzz::Real>::max();
    const int nOperation = fuzz::Dump("operation", fdp.ConsumeIntegralInRange<int>(0, 9));
    const bool bBounds = nOperation == 5 || (nOperation == 9 && fdp.ConsumeBool());
    CNuCylSurf cylinder(1.0), inner(1.0), outer(1.0);
    double dZone = -1.0, dForm = -1.0, dSumSquares = -1.0;
    bool bDone = false;
    const bool bLimitFirst = lMax <= 0;
    switch (nOperation) {
        case 0:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst,
                                      [&] { cylinder.Fit(points, &dForm, &dSumSquares, lMax); });
            break;
        case 1: bDone = fuzz::FitOrRefuse(points, bLimitFirst, [&] { cylinder.Fit(points, lMax); }); break;
        case 2:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst, [&] { cylinder.FitMin(points, dTolerance, lMax); });
            break;
        case 3:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst, [&] { cylinder.FitMax(points, dTolerance, lMax); });
            break;
        case 4:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst,
                                      [&] { cylinder.FitMinZone(points, &dZone, dTolerance, lMax); });
            break;
        case 5:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst, [&] {
                cylinder.FitMinZone(points, &dZone, &inner, &outer, dTolerance, lMax);
            });
            break;
        case 6:
            bDone = fuzz::FitEx(points, lMax, [&] { return cylinder.FitEx(points, &dForm, &dSumSquares, lMax); });
            break;
        case 7: bDone = fuzz::FitEx(points, lMax, [&] { return cylinder.FitMinEx(points, dTolerance, lMax); }); break;
        case 8: bDone = fuzz::FitEx(points, lMax, [&] { return cylinder.FitMaxEx(points, dTolerance, lMax); }); break;
        default:
            bDone = fuzz::FitEx(points, lMax, [&] {
                return bBounds ? cylinder.FitMinZoneEx(points, &dZone, &inner, &outer, dTolerance, lMax)
                               : cylinder.FitMinZoneEx(points, &dZone, dTolerance, lMax);
            });
            break;
    }
    if (!bDone || !bCheck) return 0;
    CheckCylinder(cylinder);
    const bool bZone = nOperation == 4 || nOperation == 5 || nOperation == 9;
    NUMORIX_FUZZ_CHECK(!bZone || (dZone >= 0.0 && std::isfinite(dZone)));
    if (nOperation >= 2 && fuzz::CollinearByRule(points, dTolerance))
        dSlack = fuzz::LineAnswerSlack(dTolerance, points);  // perhaps a line's answer
    const fuzz::Real r = cylinder.GetRadius();
    switch (nOperation) {
        case 0:
        case 6: NUMORIX_FUZZ_CHECK(dForm >= 0.0 && std::isfinite(dForm) && dSumSquares >= 0.0); break;
        case 1: break;
        case 2:
        case 7: CheckBetween(points, cylinder, 0.0L, r, dSlack); break;
        case 3:
        case 8: CheckBetween(points, cylinder, r, kAll, dSlack); break;
        default:
            CheckBetween(points, cylinder, r - dZone / 2.0L, r + dZone / 2.0L, dSlack);
            if (!bBounds) break;
            NUMORIX_FUZZ_CHECK(inner.GetRadius() <= outer.GetRadius());
            CheckBetween(points, inner, inner.GetRadius(), kAll, dSlack);
            CheckBetween(points, outer, 0.0L, outer.GetRadius(), dSlack);
            break;
    }
    return 0;
}
