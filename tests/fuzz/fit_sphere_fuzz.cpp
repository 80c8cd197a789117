// Fuzz target: every fit of a sphere (least squares, minimum circumscribed, maximum inscribed,
// minimum zone with and without the bounding spheres, and their Ex forms) on decoded points,
// tolerances and iteration limits.
//
// Whatever the input: a refusal is one of the library's exceptions (stored 214 naming the first
// NaN or infinite coordinate). On data of representable size a returned sphere has a finite
// centre and a finite radius, not negative for the Chebyshev fits, and, measured from its centre,
// up to the tolerance and rounding: the minimum circumscribed sphere holds every point; no point
// lies inside the maximum inscribed sphere (which FitMinEx gives as well); every point lies in
// the shell of the zone and between the bounding spheres.
#include "fuzz_support.h"

using numorix::CNuSphSurf;

namespace {

void CheckSphere(const CNuSphSurf& sphere, bool bChebyshev) {
    NUMORIX_FUZZ_CHECK(fuzz::IsFinite(sphere.GetCentre()) && std::isfinite(sphere.GetRadius()));
    NUMORIX_FUZZ_CHECK(!bChebyshev || sphere.GetRadius() >= 0.0);
}

// Every point's distance from the centre within [dLow, dHigh], up to the slack and the rounding
// of a centre far from the data.
void CheckBetween(const fuzz::CNuPointArray& points, const CNuSphSurf& sphere, fuzz::Real dLow,
                  fuzz::Real dHigh, fuzz::Real dSlack) {
    CheckSphere(sphere, true);
    const numorix::CNuPoint c = sphere.GetCentre();
    const fuzz::Real dSize =
        sphere.GetRadius() + std::fabs(c.x()) + std::fabs(c.y()) + std::fabs(c.z());
    auto distance = [&](const numorix::CNuPoint& p) {
        const fuzz::Real e[3] = {fuzz::Real(p.x()) - c.x(), fuzz::Real(p.y()) - c.y(),
                                 fuzz::Real(p.z()) - c.z()};
        return std::sqrt(e[0] * e[0] + e[1] * e[1] + e[2] * e[2]);
    };
    fuzz::CheckBand(points, distance, dLow, dHigh, dSlack + 1e-9L * dSize);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    const fuzz::CNuPointArray points = fuzz::Points(fdp);
    const double dTolerance = fuzz::Tolerance(fdp);
    const long lMax = fuzz::Iterations(fdp);
    const bool bCheck = fuzz::Representable(points);
    const fuzz::Real dSlack = fuzz::Slack(dTolerance, points);
    const fuzz::Real kAll = std::numeric_limits<fuzz::Real>::max();
    const int nOperation = fuzz::Dump("operation", fdp.ConsumeIntegralInRange<int>(0, 9));
    const bool bBounds = nOperation == 5 || (nOperation == 9 && fdp.ConsumeBool());
    CNuSphSurf sphere(1.0), inner(1.0), outer(1.0);
    double dZone = -1.0, dForm = -1.0, dSumSquares = -1.0;
    bool bDone = false;
    const bool bLimitFirst = lMax <= 0;
    switch (nOperation) {
        case 0:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst,
                                      [&] { sphere.Fit(points, &dForm, &dSumSquares, lMax); });
            break;
        case 1: bDone = fuzz::FitOrRefuse(points, bLimitFirst, [&] { sphere.Fit(points, lMax); }); break;
        case 2: bDone = fuzz::FitOrRefuse(points, false, [&] { sphere.FitMin(points, dTolerance); }); break;
        case 3: bDone = fuzz::FitOrRefuse(points, false, [&] { sphere.FitMax(points, dTolerance); }); break;
        case 4:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst,
                                      [&] { sphere.FitMinZone(points, &dZone, dTolerance, lMax); });
            break;
        case 5:
            bDone = fuzz::FitOrRefuse(points, bLimitFirst, [&] {
                sphere.FitMinZone(points, &dZone, &inner, &outer, dTolerance, lMax);
            });
            break;
        case 6:
            bDone = fuzz::FitEx(points, lMax, [&] { return sphere.FitEx(points, &dForm, &dSumSquares, lMax); });
            break;
        case 7: bDone = fuzz::FitEx(points, 1, [&] { return sphere.FitMinEx(points, dTolerance); }); break;
        case 8: bDone = fuzz::FitEx(points, 1, [&] { return sphere.FitMaxEx(points, dTolerance); }); break;
        default:
            bDone = fuzz::FitEx(points, lMax, [&] {
                return bBounds ? sphere.FitMinZoneEx(points, &dZone, &inner, &outer, dTolerance, lMax)
                               : sphere.FitMinZoneEx(points, &dZone, dTolerance, lMax);
            });
            break;
    }
    if (!bDone || !bCheck) return 0;
    const bool bZone = nOperation == 4 || nOperation == 5 || nOperation == 9;
    CheckSphere(sphere, nOperation >= 2 && nOperation != 6);
    NUMORIX_FUZZ_CHECK(!bZone || (dZone >= 0.0 && std::isfinite(dZone)));
    if (nOperation >= 2 && fuzz::CollinearByRule(points, dTolerance)) return 0;  // a line's answer
    const fuzz::Real r = sphere.GetRadius();
    switch (nOperation) {
        case 0:
        case 6: NUMORIX_FUZZ_CHECK(dForm >= 0.0 && std::isfinite(dForm) && dSumSquares >= 0.0); break;
        case 1: break;
        case 2: CheckBetween(points, sphere, 0.0L, r, dSlack); break;
        case 3:
        case 7:
        case 8: CheckBetween(points, sphere, r, kAll, dSlack); break;
        default:
            CheckBetween(points, sphere, r - dZone / 2.0L, r + dZone / 2.0L, dSlack);
            if (!bBounds) break;
            NUMORIX_FUZZ_CHECK(inner.GetRadius() <= outer.GetRadius());
            CheckBetween(points, inner, inner.GetRadius(), kAll, dSlack);
            CheckBetween(points, outer, 0.0L, outer.GetRadius(), dSlack);
            break;
    }
    return 0;
}
