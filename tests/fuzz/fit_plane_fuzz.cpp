// Fuzz target: every fit of a plane (least squares with and without form error, minimum zone with
// and without the bounding planes) on decoded points and tolerances.
//
// Whatever the input: a refusal is one of the library's exceptions (stored 214 naming the first
// NaN or infinite coordinate); on data of representable size a returned plane has a finite point
// and a unit normal, the form error and zone are finite and not negative, every point lies within
// the form error of the least-squares plane, within half the zone of the middle plane and between
// the bounding planes, up to the tolerance and rounding.
#include "fuzz_support.h"

using numorix::CNuPlane;

namespace {

void CheckPlane(const CNuPlane& plane) {
    NUMORIX_FUZZ_CHECK(fuzz::IsFinite(plane.GetPoint()) && fuzz::IsUnit(plane.GetNormal()));
}

// Every point's signed distance from the plane within [dLow, dHigh].
void CheckBetween(const fuzz::CNuPointArray& points, const CNuPlane& plane, fuzz::Real dLow,
                  fuzz::Real dHigh, fuzz::Real dSlack) {
    CheckPlane(plane);
    auto distance = [&](const fuzz::CNuPoint& p) {
        return fuzz::Along(p, plane.GetPoint(), plane.GetNormal());
    };
    fuzz::CheckBand(points, distance, dLow, dHigh, dSlack);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    const fuzz::CNuPointArray points = fuzz::Points(fdp);
    const double dTolerance = fuzz::Tolerance(fdp);
    const bool bCheck = fuzz::Representable(points);
    const fuzz::Real dSlack = fuzz::Slack(dTolerance, points);
    CNuPlane plane, inner, outer;
    double dZone = -1.0, dForm = -1.0, dSumSquares = -1.0;
    switch (fuzz::Dump("operation", fdp.ConsumeIntegralInRange<int>(0, 3))) {
        case 0:
            if (fuzz::FitOrRefuse(points, false, [&] { plane.Fit(points, &dForm, &dSumSquares); }) &&
                bCheck) {
                NUMORIX_FUZZ_CHECK(dForm >= 0.0 && std::isfinite(dForm) && dSumSquares >= 0.0);
                // Three points have a form error of 0 by definition.
                const fuzz::Real dLimit = points.GetSize() == 3 ? 1e300L : dForm;
                CheckBetween(points, plane, -dLimit, dLimit, fuzz::Slack(0.0, points));
            }
            break;
        case 1:
            if (fuzz::FitOrRefuse(points, false, [&] { plane.Fit(points); }) && bCheck)
                CheckPlane(plane);
            break;
        case 2:
            if (fuzz::FitOrRefuse(points, false, [&] { plane.FitMinZone(points, &dZone, dTolerance); }) &&
                bCheck) {
                NUMORIX_FUZZ_CHECK(dZone >= 0.0 && std::isfinite(dZone));
                CheckBetween(points, plane, -dZone / 2.0L, dZone / 2.0L, dSlack);
            }
            break;
        default:
            if (fuzz::FitOrRefuse(points, false, [&] {
                    plane.FitMinZone(points, &dZone, &inner, &outer, dTolerance);
                }) && bCheck) {
                NUMORIX_FUZZ_CHECK(dZone >= 0.0 && std::isfinite(dZone));
                CheckBetween(points, plane, -dZone / 2.0L, dZone / 2.0L, dSlack);
                // A zone below the length tolerance leaves the bounding planes as they were.
                if (dZone < numorix::NuGetTol()) break;
                CheckBetween(points, inner, 0.0L, dZone, dSlack);
                CheckBetween(points, outer, -dZone, 0.0L, dSlack);
            }
            break;
    }
    return 0;
}
