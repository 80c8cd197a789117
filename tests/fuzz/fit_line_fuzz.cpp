// Fuzz target: every fit of a line (least squares with and without form error, minimum zone with
// and without the bounding lines, and the Ex forms) on decoded points, tolerances and limits.
//
// Whatever the input: a refusal is one of the library's exceptions (stored 214 naming the first
// NaN or infinite coordinate); on data of representable size a returned line has a finite point
// and a unit direction, the form error and zone are finite and not negative, every point lies
// within the form error of the least-squares line, within half the zone of the middle line and
// within the zone of each bounding line, up to the tolerance and rounding.
#include "fuzz_support.h"

using numorix::CNuLine;

namespace {

void CheckLine(const CNuLine& line) {
    NUMORIX_FUZZ_CHECK(fuzz::IsFinite(line.GetPoint()) && fuzz::IsUnit(line.GetDirection()));
}

// Every point within dLimit of the line.
void CheckWithin(const fuzz::CNuPointArray& points, const CNuLine& line, fuzz::Real dLimit,
                 fuzz::Real dSlack) {
    fuzz::CheckAxisBand(points, line.GetPoint(), line.GetDirection(), 0.0L, dLimit, dSlack);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    const fuzz::CNuPointArray points = fuzz::Points(fdp);
    const double dTolerance = fuzz::Tolerance(fdp);
    const long lMax = fuzz::Iterations(fdp);
    const bool bCheck = fuzz::Representable(points);
    fuzz::Real dSlack = fuzz::Slack(dTolerance, points);
    CNuLine line, inner, outer;
    double dZone = -1.0, dForm = -1.0, dSumSquares = -1.0;
    bool bZone = false;  // a zone came back in dZone
    bool bBounds = false;  // and the bounding lines with it
    switch (fuzz::Dump("operation", fdp.ConsumeIntegralInRange<int>(0, 4))) {
        case 0:
            if (fuzz::FitOrRefuse(points, false, [&] { line.Fit(points, &dForm, &dSumSquares); }) &&
                bCheck) {
                CheckLine(line);
                NUMORIX_FUZZ_CHECK(dForm >= 0.0 && std::isfinite(dForm) && dSumSquares >= 0.0);
                CheckWithin(points, line, dForm, fuzz::Slack(0.0, points));
            }
            return 0;
        case 1:
            if (fuzz::FitOrRefuse(points, false, [&] { line.Fit(points); }) && bCheck) CheckLine(line);
            return 0;
        case 2:
            bZone = fuzz::FitOrRefuse(points, lMax <= 0,
                                      [&] { line.FitMinZone(points, &dZone, dTolerance, lMax); });
            break;
        case 3:
            bZone = bBounds = fuzz::FitOrRefuse(points, lMax <= 0, [&] {
                line.FitMinZone(points, &dZone, &inner, &outer, dTolerance, lMax);
            });
            break;
        default:
            bBounds = fdp.ConsumeBool();
            bZone = fuzz::FitEx(points, lMax, [&] {
                return bBounds ? line.FitMinZoneEx(points, &dZone, &inner, &outer, dTolerance, lMax)
                               : line.FitMinZoneEx(points, &dZone, dTolerance, lMax);
            });
            bBounds = bBounds && bZone;
            break;
    }
    if (!bZone || !bCheck) return 0;
    NUMORIX_FUZZ_CHECK(dZone >= 0.0 && std::isfinite(dZone));
    CheckLine(line);
    // Collinear by the rule: perhaps the least-squares line with zone 0.
    if (fuzz::CollinearByRule(points, dTolerance)) dSlack = fuzz::LineAnswerSlack(dTolerance, points);
    CheckWithin(points, line, dZone / 2.0L, dSlack);
    if (!bBounds || dZone < numorix::NuGetTol()) return 0;
    for (const CNuLine* p : {&inner, &outer}) {
        CheckLine(*p);
        CheckWithin(points, *p, dZone, dSlack);
    }
    return 0;
}
