// Fuzz target: the least-squares fit of a cone, with and without the residual outputs, the minimum
// zone with and without the bounding cones, and their Ex forms, on decoded points, tolerances and
// iteration limits.
//
// Whatever the input: a refusal is one of the library's exceptions (stored 214 naming the first
// NaN or infinite coordinate). On data of representable size a returned cone has a semi-angle in
// (0, 90] degrees, a unit axis and an apex that is not NaN, and its form error and sum of squares
// are not negative. A zone is finite and not negative, its cone's apex finite, and every point's
// signed distance from the cone, |w x a| cos(alpha) - (w . a) sin(alpha) with w its offset from
// the apex, lies within half the zone, up to the tolerance and rounding; the inner bounding cone
// has no point inside, the outer none outside.
#include "fuzz_support.h"
#include "numorix/surfaces/con_surf.h"

using numorix::CNuConSurf;

namespace {

// Every point's signed distance from the cone within [dLow, dHigh], up to the slack and the
// rounding of an apex far from the data (a narrow cone).
void CheckConeBand(const fuzz::CNuPointArray& points, const CNuConSurf& cone, fuzz::Real dLow,
                   fuzz::Real dHigh, fuzz::Real dSlack) {
    const numorix::CNuPoint apex = cone.GetApex();
    const numorix::CNuVector a = cone.GetAxisDirection();
    NUMORIX_FUZZ_CHECK(fuzz::IsFinite(apex) && fuzz::IsUnit(a));
    const fuzz::Real dAngle = cone.GetSemiAngle() * 3.14159265358979323846L / 180.0L;
    const fuzz::Real c = std::cos(dAngle), s = std::sin(dAngle);
    const fuzz::Real dSize = std::fabs(apex.x()) + std::fabs(apex.y()) + std::fabs(apex.z());
    auto distance = [&](const numorix::CNuPoint& p) {
        return fuzz::Across(p, apex, a) * c - fuzz::Along(p, apex, a) * s;
    };
    fuzz::CheckBand(points, distance, dLow, dHigh, dSlack + 1e-9L * dSize);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    const fuzz::CNuPointArray points = fuzz::Points(fdp);
    const long lMax = fuzz::Iterations(fdp);
    const bool bCheck = fuzz::Representable(points);
    const int nOperation = fuzz::Dump("operation", fdp.ConsumeIntegralInRange<int>(0, 7));
    const double dTolerance = nOperation >= 4 ? fuzz::Tolerance(fdp) : 0.0;
    const bool bBounds = nOperation == 5 || (nOperation == 7 && fdp.ConsumeBool());
    CNuConSurf cone(45.0), inner(45.0), outer(45.0);
    double dForm = -1.0, dSumSquares = -1.0, dZone = -1.0;
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
        case 3: bDone = fuzz::FitEx(points, lMax, [&] { return cone.FitEx(points, lMax); }); break;
        case 4:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst,
                                      [&] { cone.FitMinZone(points, &dZone, dTolerance, lMax); });
            break;
        case 5:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst, [&] {
                cone.FitMinZone(points, &dZone, &inner, &outer, dTolerance, lMax);
            });
            break;
        case 6:
            bDone = fuzz::FitEx(points, lMax,
                                [&] { return cone.FitMinZoneEx(points, &dZone, dTolerance, lMax); });
            break;
        default:
            bDone = fuzz::FitEx(points, lMax, [&] {
                return bBounds ? cone.FitMinZoneEx(points, &dZone, &inner, &outer, dTolerance, lMax)
                               : cone.FitMinZoneEx(points, &dZone, dTolerance, lMax);
            });
            break;
    }
    if (!bDone || !bCheck) return 0;
    const double dAngle = cone.GetSemiAngle();
    const numorix::CNuPoint apex = cone.GetApex();
    NUMORIX_FUZZ_CHECK(dAngle > 0.0 && dAngle <= 90.0 && fuzz::IsUnit(cone.GetAxisDirection()));
    NUMORIX_FUZZ_CHECK(!std::isnan(apex.x()) && !std::isnan(apex.y()) && !std::isnan(apex.z()));
    if (nOperation < 4) {
        if (nOperation % 2 == 0 && fuzz::IsFinite(apex)) {
            NUMORIX_FUZZ_CHECK(dForm >= 0.0 && dSumSquares >= 0.0);
        }
        return 0;
    }
    NUMORIX_FUZZ_CHECK(dZone >= 0.0 && std::isfinite(dZone));
    const fuzz::Real dSlack = fuzz::Slack(dTolerance, points);
    CheckConeBand(points, cone, -dZone / 2.0L, dZone / 2.0L, dSlack);
    if (!bBounds) return 0;
    const fuzz::Real kAll = std::numeric_limits<fuzz::Real>::max();
    CheckConeBand(points, inner, 0.0L, kAll, dSlack);
    CheckConeBand(points, outer, -kAll, 0.0L, dSlack);
    return 0;
}
