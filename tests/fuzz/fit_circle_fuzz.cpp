// Fuzz target: every fit of a circle (least squares, minimum circumscribed, maximum inscribed,
// minimum zone with and without the bounding circles, and their Ex forms), and the torus tube that
// holds a circle's points in space, on decoded points, tolerances and iteration limits.
//
// Whatever the input: a refusal is one of the library's exceptions (stored 214 naming the first
// NaN or infinite coordinate). On data of representable size a returned circle has a finite
// centre, a unit normal and a finite radius that is not negative, and, measured from the axis of
// the circle, up to the tolerance and rounding: the minimum circumscribed circle holds every
// point; no point lies inside
// the maximum inscribed circle; every point lies in the annulus of the zone and between the
// bounding circles; every point lies within the tube's minor radius of its circle.
#include "fuzz_support.h"

using numorix::CNuCircle;
using numorix::CNuTorSurf;

namespace {

void CheckCircle(const CNuCircle& circle) {
    NUMORIX_FUZZ_CHECK(fuzz::IsFinite(circle.GetCentre()) && fuzz::IsUnit(circle.GetNormal()));
    NUMORIX_FUZZ_CHECK(circle.GetRadius() >= 0.0 && std::isfinite(circle.GetRadius()));
}

// Every point's distance from the axis of the circle within [dLow, dHigh].
void CheckBetween(const fuzz::CNuPointArray& points, const CNuCircle& circle, fuzz::Real dLow,
                  fuzz::Real dHigh, fuzz::Real dSlack) {
    CheckCircle(circle);
    fuzz::CheckAxisBand(points, circle.GetCentre(), circle.GetNormal(), dLow, dHigh, dSlack,
                        circle.GetRadius());
}

// The smallest tube: finite, and every point within its minor radius of its circle.
void CheckTube(const fuzz::CNuPointArray& points, const CNuTorSurf& torus, fuzz::Real dSlack) {
    NUMORIX_FUZZ_CHECK(fuzz::IsFinite(torus.GetCentre()) && fuzz::IsUnit(torus.GetAxisDirection()));
    const fuzz::Real R = torus.GetMajorRadius(), a = torus.GetMinorRadius();
    NUMORIX_FUZZ_CHECK(std::isfinite(torus.GetMajorRadius()) && R > 0.0L && a >= 0.0L &&
                       std::isfinite(torus.GetMinorRadius()));
    auto fromCircle = [&](const numorix::CNuPoint& p) {
        const fuzz::Real h = fuzz::Along(p, torus.GetCentre(), torus.GetAxisDirection());
        const fuzz::Real rho = fuzz::Across(p, torus.GetCentre(), torus.GetAxisDirection());
        return std::sqrt((rho - R) * (rho - R) + h * h);
    };
    fuzz::CheckBand(points, fromCircle, 0.0L, a, dSlack + 1e-9L * R);
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
    const int nOperation = fuzz::Dump("operation", fdp.ConsumeIntegralInRange<int>(0, 10));
    const bool bBounds = nOperation == 5 || (nOperation == 9 && fdp.ConsumeBool());
    CNuCircle circle(1.0), inner(1.0), outer(1.0);
    CNuTorSurf torus(1.0, 1.0);
    double dZone = -1.0, dForm = -1.0, dSumSquares = -1.0;
    bool bDone = false;
    switch (nOperation) {
        case 0:
            bDone = fuzz::FitOrRefuse(points, lMax <= 0,
                                      [&] { circle.Fit(points, &dForm, &dSumSquares, lMax); });
            break;
        case 1: bDone = fuzz::FitOrRefuse(points, lMax <= 0, [&] { circle.Fit(points, lMax); }); break;
        case 2: bDone = fuzz::FitOrRefuse(points, false, [&] { circle.FitMin(points, dTolerance); }); break;
        case 3: bDone = fuzz::FitOrRefuse(points, false, [&] { circle.FitMax(points, dTolerance); }); break;
        case 4:
            bDone = fuzz::FitOrRefuse(points, lMax <= 0,
                                      [&] { circle.FitMinZone(points, &dZone, dTolerance, lMax); });
            break;
        case 5:
            bDone = fuzz::FitOrRefuse(points, lMax <= 0, [&] {
                circle.FitMinZone(points, &dZone, &inner, &outer, dTolerance, lMax);
            });
            break;
        case 6:
            bDone = fuzz::FitEx(points, lMax, [&] { return circle.FitEx(points, &dForm, &dSumSquares, lMax); });
            break;
        case 7: bDone = fuzz::FitEx(points, 1, [&] { return circle.FitMinEx(points, dTolerance); }); break;
        case 8: bDone = fuzz::FitEx(points, 1, [&] { return circle.FitMaxEx(points, dTolerance); }); break;
        case 10:
            bDone = fuzz::FitEx(points, lMax, [&] { return torus.FitMinEx(points, dTolerance, lMax); });
            if (bDone && bCheck) CheckTube(points, torus, fuzz::Slack(dTolerance, points));
            return 0;
        default:
            bDone = fuzz::FitEx(points, lMax, [&] {
                return bBounds ? circle.FitMinZoneEx(points, &dZone, &inner, &outer, dTolerance, lMax)
                               : circle.FitMinZoneEx(points, &dZone, dTolerance, lMax);
            });
            break;
    }
    if (!bDone || !bCheck) return 0;
    CheckCircle(circle);
    const bool bZone = nOperation == 4 || nOperation == 5 || nOperation == 9;
    NUMORIX_FUZZ_CHECK(!bZone || (dZone >= 0.0 && std::isfinite(dZone)));
    if (nOperation >= 2 && fuzz::CollinearByRule(points, dTolerance))
        dSlack = fuzz::LineAnswerSlack(dTolerance, points);  // perhaps a line's answer
    const fuzz::Real r = circle.GetRadius();
    switch (nOperation) {
        case 0:
        case 6:
            // The form error describes the circle before the last step, which ends the iteration
            // even when it fails to shrink the residuals: points need not lie within it.
            NUMORIX_FUZZ_CHECK(dForm >= 0.0 && std::isfinite(dForm) && dSumSquares >= 0.0);
            break;
        case 1: break;
        case 2:
        case 7: CheckBetween(points, circle, 0.0L, r, dSlack); break;
        case 3:
        case 8: CheckBetween(points, circle, r, kAll, dSlack); break;
        default:
            CheckBetween(points, circle, r - dZone / 2.0L, r + dZone / 2.0L, dSlack);
            if (!bBounds) break;
            NUMORIX_FUZZ_CHECK(inner.GetRadius() <= outer.GetRadius());
            CheckBetween(points, inner, inner.GetRadius(), kAll, dSlack);
            CheckBetween(points, outer, 0.0L, outer.GetRadius(), dSlack);
            break;
    }
    return 0;
}
