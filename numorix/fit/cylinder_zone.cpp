// Chebyshev fits of a cylinder: the narrowest shell (FitMinZone: least r_out - r_in), the smallest
// cylinder holding every point (FitMin) and the largest one holding none inside (FitMax).
//
// A cylinder whose axis has the direction
//   a(theta, phi) = (cos phi cos theta, cos phi sin theta, sin phi)
// is, seen along a, a circle: a point lies at the distance rho from the axis exactly when its
// projection onto the plane normal to a lies at rho from the axis's trace. For a fixed direction
// the cylinder problem is therefore the circle problem of the projected points (annulus, smallest
// enclosing circle, largest empty circle), solved exactly by the circle fits, and what is left is
// a function of the two angles,
//   f(theta, phi) = the zone width, the circumscribed radius, or minus the inscribed radius,
// minimised by a Nelder-Mead simplex of three vertices started at the least-squares axis, with
// the vertices sorted best to worst and c the centroid of the two better ones:
//   reflection r = 2c - worst; if f(r) beats the best, expansion e = 2r - c (the better of the
//   two is kept); if f(r) only beats the worst, r is kept; otherwise the contraction
//   q = (c + worst) / 2 if f(q) is no worse than the worst, else every vertex halves its way to
//   the best.
// The search stops when the spread of the values is at most NuGetTol(), when the two best
// values differ by less than the tolerance, or after 1000 rounds (not a failure); a simplex whose
// shortest edge is less than a fiftieth of its longest has collapsed onto a line and is rebuilt as
// a right isosceles triangle at the best vertex. The inscribed search starts with wider steps when
// a neighbouring direction already doubles the radius, and stops once the radius passes 1.1
// times the best one of its start: past that the projected points no longer surround the axis.
//
// Settled here where the description of the fits leaves it open:
//   - Coincident and collinear points have a cylinder of radius 0 and a zone of 0 under all three
//     fits: about the first point with the global axes, or about the least-squares line.
//   - The start vertex is the least-squares axis as a line: an axis pointing downwards is read
//     in its upward sense, so that its elevation (90 degrees less its angle with Z, or that angle
//     less 90 degrees) and its azimuth (the angle from X to its XY components about Z, 0 when both
//     are below the tolerance) give back the same line.
//   - "The first vertex" that the search ends with is the best one: the vertices are kept sorted,
//     and sorted once more when the 1000 rounds run out.
//   - When the least-squares fit fails other than by a best-fit failure (the quadric of its start
//     has no solution, say), the search starts from the direction of the two points farthest
//     apart instead, and goes on as from the least-squares axis; what that search raises is
//     mapped as every other failure of the fit.
//   - The finished cylinder's axis point is the foot of the world origin on the axis (the trace of
//     the axis in the projection plane).
// What the fits inherit: fewer than 5 points or coplanar points (FitMinZone, FitMin) fail in the
// least-squares start, so FitMinZone and FitMax report stored 212 for them and FitMin stored 201
// or 212; FitMax solves coplanar points as a circle. A direction whose projected points the
// circle fit refuses ends the search the same way.
#include <cmath>

#include "numorix/curves/circle.h"
#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/matrix.h"
#include "numorix/surfaces/cyl_surf.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuCylSurf";

// Rounds of the axis search; running out of them is not a failure.
const int kSearchRounds = 1000;

// nMode of the objective and the search.
const int kInscribed = -1;
const int kZone = 0;
const int kCircumscribed = 1;

double Radians(double dDegrees) { return Nu_PI * dDegrees * 0.005555555555555556; }

// cos and sin of an angle, cleaned: exact 0 beside a unit value, equal values near 45 degrees.
void CleanCosSin(double dAngle, double* pdCos, double* pdSin) {
    double c = std::cos(dAngle);
    double s = std::sin(dAngle);
    if (std::fabs(std::fabs(c) - 1.0) < NuGetZero()) {
        s = 0.0;
    } else if (std::fabs(std::fabs(s) - 1.0) < NuGetZero()) {
        c = 0.0;
    } else if (std::fabs(c - s) < NuGetTol()) {
        double m = (c + s) * 0.5;
        c = m;
        s = m;
    }
    *pdCos = c;
    *pdSin = s;
}

// The circle problem of the points seen along the direction (theta, phi): the value to minimise,
// the outer radius, the circle's centre in the projection plane and the direction itself.
double AxisObjective(const CNuPointArray& points, double dTheta, double dPhi, double* pdOuter,
                     CNuPoint* pCentre, CNuVector* pAxis, int nMode, double dTolerance,
                     long lMaxIterations) {
    double ct = 0.0;
    double st = 0.0;
    double cp = 0.0;
    double sp = 0.0;
    CleanCosSin(dTheta, &ct, &st);
    CleanCosSin(dPhi, &cp, &sp);
    CNuVector axis(cp * ct, cp * st, sp);
    CNuPointArray projected = CNuGeometry::Projection2D(points, axis);
    CNuCircle circle(1.0);
    double dValue = 0.0;
    if (nMode == kInscribed) {
        circle.FitMax(projected, dTolerance);
        dValue = -circle.GetRadius();
        *pdOuter = circle.GetRadius();
    } else if (nMode == kZone) {
        double dZone = 0.0;
        circle.FitMinZone(projected, &dZone, dTolerance, lMaxIterations);
        dValue = dZone;
        *pdOuter = dZone * 0.5 + circle.GetRadius();
    } else {
        circle.FitMin(projected, dTolerance);
        dValue = circle.GetRadius();
        *pdOuter = dValue;
    }
    *pCentre = circle.GetCentre();
    *pAxis = axis;
    return dValue;
}

struct SVertex {
    double dTheta;
    double dPhi;
    double dValue;
};

// Insertion sort by value with strict less-than: best first, worst last.
void SortVertices(SVertex* v) {
    for (int i = 1; i < 3; ++i)
        for (int j = i; j > 0 && v[j].dValue < v[j - 1].dValue; --j) {
            SVertex t = v[j];
            v[j] = v[j - 1];
            v[j - 1] = t;
        }
}

double Edge(const SVertex& a, const SVertex& b) {
    return fit::ScaledDistance(a.dTheta - b.dTheta, a.dPhi - b.dPhi, 0.0);
}

// The Nelder-Mead search over the axis direction from *pAxis. On return *pAxis is the direction
// found, *pdValue its value (the inscribed radius itself for nMode -1), *pdOuter the outer radius
// and *pCentre the circle's centre in the projection plane of that direction.
void SearchAxis(const CNuPointArray& points, CNuVector* pAxis, double* pdValue, double* pdOuter,
                CNuPoint* pCentre, int nMode, double dTolerance, long lMaxIterations) {
    double dOuter = 0.0;
    CNuPoint centre;
    CNuVector axis;
    auto f = [&](double dTheta, double dPhi) {
        return AxisObjective(points, dTheta, dPhi, &dOuter, &centre, &axis, nMode, dTolerance,
                             lMaxIterations);
    };

    // The start: elevation and azimuth of the given axis, read as a line pointing upwards.
    const CNuVector& start = *pAxis;
    const CNuVector zAxis(0.0, 0.0, 1.0);
    const CNuVector xAxis(1.0, 0.0, 0.0);
    double dZAngle = start.AngleWith(zAxis);
    double dPhi0 = dZAngle > 90.0 ? dZAngle - 90.0 : 90.0 - dZAngle;
    double dX = dZAngle > 90.0 ? -start[0] : start[0];
    double dY = dZAngle > 90.0 ? -start[1] : start[1];
    double dTheta0 = 0.0;
    if (!(std::fabs(dX) < dTolerance && std::fabs(dY) < dTolerance))
        dTheta0 = xAxis.AngleWith(CNuVector(dX, dY, 0.0), zAxis);
    dTheta0 = Radians(dTheta0);
    dPhi0 = Radians(dPhi0);

    SVertex v[3] = {
        {dTheta0, dPhi0, 0.0}, {dTheta0 + 0.2, dPhi0, 0.0}, {dTheta0, dPhi0 + 0.2, 0.0}};
    for (SVertex& w : v)
        w.dValue = f(w.dTheta, w.dPhi);

    double dGuard = 0.0;
    if (nMode == kInscribed) {
        // A neighbour that already doubles the radius: look farther round.
        if (v[1].dValue < 2.0 * v[0].dValue) {
            v[1].dTheta = dTheta0 + 0.6000000000000001;
            v[1].dValue = f(v[1].dTheta, v[1].dPhi);
        }
        double m = v[0].dValue < v[1].dValue ? v[0].dValue : v[1].dValue;
        if (v[2].dValue < m) {
            v[2].dPhi = dPhi0 + 0.6000000000000001;
            v[2].dValue = f(v[2].dTheta, v[2].dPhi);
        }
        dGuard = m * 1.1;
    }

    for (int nRound = 0; nRound < kSearchRounds; ++nRound) {
        SortVertices(v);
        if (!(v[2].dValue - v[0].dValue > NuGetTol()) ||
            std::fabs(v[1].dValue - v[0].dValue) < dTolerance ||
            (nMode == kInscribed && v[0].dValue < dGuard))
            break;
        double dMin = Edge(v[0], v[1]);
        double dMax = dMin;
        for (double e : {Edge(v[0], v[2]), Edge(v[1], v[2])}) {
            if (e < dMin) dMin = e;
            if (e > dMax) dMax = e;
        }
        if (50.0 * dMin < dMax) {
            // Collapsed onto a line: a fresh right isosceles simplex at the best vertex.
            v[1] = SVertex{v[0].dTheta + dMin, v[0].dPhi, 0.0};
            v[2] = SVertex{v[0].dTheta, v[0].dPhi + dMin, 0.0};
            v[1].dValue = f(v[1].dTheta, v[1].dPhi);
            v[2].dValue = f(v[2].dTheta, v[2].dPhi);
            SortVertices(v);
        }
        double cTheta = (v[0].dTheta + v[1].dTheta) / 2.0;
        double cPhi = (v[0].dPhi + v[1].dPhi) / 2.0;
        SVertex r{2.0 * cTheta - v[2].dTheta, 2.0 * cPhi - v[2].dPhi, 0.0};
        r.dValue = f(r.dTheta, r.dPhi);
        if (r.dValue < v[0].dValue) {
            SVertex e{2.0 * r.dTheta - cTheta, 2.0 * r.dPhi - cPhi, 0.0};
            e.dValue = f(e.dTheta, e.dPhi);
            v[2] = e.dValue < r.dValue ? e : r;
        } else if (r.dValue < v[2].dValue) {
            v[2] = r;
        } else {
            SVertex q{0.5 * cTheta + 0.5 * v[2].dTheta, 0.5 * cPhi + 0.5 * v[2].dPhi, 0.0};
            q.dValue = f(q.dTheta, q.dPhi);
            if (q.dValue <= v[2].dValue) {
                v[2] = q;
            } else {
                SVertex best = v[0];
                for (SVertex& w : v) {
                    w.dTheta = (w.dTheta + best.dTheta) / 2.0;
                    w.dPhi = (w.dPhi + best.dPhi) / 2.0;
                    w.dValue = f(w.dTheta, w.dPhi);
                }
            }
        }
    }
    SortVertices(v);
    double dValue = f(v[0].dTheta, v[0].dPhi);
    *pdValue = nMode == kInscribed ? -dValue : dValue;
    *pdOuter = dOuter;
    *pCentre = centre;
    *pAxis = axis;
}

// A finished cylinder: radius, zone, and the frame (origin on the axis, X axis, axis).
struct SCylinder {
    double dRadius = 0.0;
    double dZone = 0.0;
    CNuPoint origin;
    CNuVector xAxis{1.0, 0.0, 0.0};
    CNuVector axis{0.0, 0.0, 1.0};
};

// The search from a start axis and the cylinder it gives.
SCylinder Search(const CNuPointArray& points, const CNuVector& start, int nMode, double dTolerance,
                 long lMaxIterations) {
    SCylinder c;
    CNuVector axis(start);
    double dValue = 0.0;
    double dOuter = 0.0;
    CNuPoint centre;
    SearchAxis(points, &axis, &dValue, &dOuter, &centre, nMode, dTolerance, lMaxIterations);
    if (nMode == kZone) {
        c.dZone = dValue;
        c.dRadius = dOuter - dValue * 0.5;
    } else {
        c.dRadius = dValue;
    }
    // The trace of the axis in the projection plane, back in space: the frame of Projection2D.
    CNuVector x;
    axis.OrthonormalX(&x);
    CNuVector y = axis * x;
    c.origin = (x * centre.x() + y * centre.y()).To3DPoint();
    c.xAxis = x;
    c.axis = axis;
    return c;
}

// The cylinder of a fit, after the checks and before any guard.
SCylinder Solve(const CNuPointArray& points, int nMode, double dTolerance, long lMaxIterations) {
    SCylinder c;
    CNuVector normal;
    if (CNuGeometry::NumberDistinctPoints(points, 2, dTolerance) == 0) {
        c.origin = points[0];
        return c;
    }
    if (CNuGeometry::AreCollinear(points, &normal, dTolerance) != 0 &&
        fit::OnOneLine(points, dTolerance)) {
        CNuLine line;
        line.Fit(points);
        c.axis = line.GetDirection();
        c.axis.OrthonormalX(&c.xAxis);
        c.origin = line.GetPoint();
        return c;
    }
    if (nMode == kInscribed && CNuGeometry::AreCoplanar(points, dTolerance) != 0) {
        CNuCircle circle(1.0);
        circle.FitMax(points, dTolerance);
        c.dRadius = circle.GetRadius();
        c.origin = circle.GetCentre();
        c.axis = circle.GetNormal();
        c.axis.OrthonormalX(&c.xAxis);
        return c;
    }
    CNuCylSurf scratch(1.0);
    double dForm = 0.0;
    double dSumSquares = 0.0;
    scratch.Fit(points, &dForm, &dSumSquares, lMaxIterations);
    if (dForm < dTolerance) {
        CNuMatrix rotation = scratch.GetRotation();
        c.dRadius = scratch.GetRadius();
        c.origin = scratch.GetAxisPoint();
        c.xAxis = CNuVector(rotation.GetElement(0, 0), rotation.GetElement(0, 1),
                            rotation.GetElement(0, 2));
        c.axis = scratch.GetAxisDirection();
        return c;
    }
    return Search(points, scratch.GetAxisDirection(), nMode, dTolerance, lMaxIterations);
}

// Solve inside the guard of the Chebyshev fits: a best-fit failure goes to rethrow (called in the
// handler, so that it may rethrow); any other failure restarts the search from the direction of
// the two points farthest apart, whose best-fit failures go to rethrow as well.
template <class Rethrow>
SCylinder Guarded(const CNuPointArray& points, int nMode, double dTolerance, long lMaxIterations,
                  Rethrow rethrow) {
    try {
        return Solve(points, nMode, dTolerance, lMaxIterations);
    } catch (const CNuBestfitException& e) {
        rethrow(e);
    } catch (...) {
    }
    int i = 0;
    int j = 0;
    points.MaxEdge(&i, &j);
    CNuVector start = (points[j] - points[i]).To3DVector();
    start.Normalise();
    try {
        return Search(points, start, nMode, dTolerance, lMaxIterations);
    } catch (const CNuBestfitException& e) {
        rethrow(e);
    }
    throw CNuBestfitException(12, kLocation);
}

// The guard of FitMinZone and FitMax: every best-fit failure is "not converged".
void NotConverged(const CNuBestfitException&) { throw CNuBestfitException(12, kLocation); }

// The guard of FitMin: 211 and 201 stay what they are, any other cause is "not converged".
void MapForFitMin(const CNuBestfitException& e) {
    int nCause = e.GetCause();
    if (nCause == 11) throw CNuBestfitException(11, kLocation);
    if (nCause == 1) throw CNuBestfitException(1, kLocation, e.GetSize());
    if (nCause != 0) throw CNuBestfitException(12, kLocation);
    throw;
}

void CheckArguments(const CNuPointArray& points, double dTolerance, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    fit::CheckFinite(points, kLocation);
    fit::CheckTolerance(dTolerance, kLocation);
    if (points.GetSize() < 1) throw CNuBestfitException(1, kLocation, 1);
}

}  // namespace

void CNuCylSurf::FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                            long lMaxIterations) {
    CheckArguments(points, dTolerance, lMaxIterations);
    SCylinder c = Guarded(points, kZone, dTolerance, lMaxIterations, NotConverged);
    *pdZone = c.dZone;
    m_dRadius = c.dRadius;
    SetPosition(c.origin, c.xAxis, c.axis);
}

void CNuCylSurf::FitMin(const CNuPointArray& points, double dTolerance, long lMaxIterations) {
    CheckArguments(points, dTolerance, lMaxIterations);
    SCylinder c = Guarded(points, kCircumscribed, dTolerance, lMaxIterations, MapForFitMin);
    m_dRadius = c.dRadius;
    SetPosition(c.origin, c.xAxis, c.axis);
}

void CNuCylSurf::FitMax(const CNuPointArray& points, double dTolerance, long lMaxIterations) {
    CheckArguments(points, dTolerance, lMaxIterations);
    SCylinder c = Guarded(points, kInscribed, dTolerance, lMaxIterations, NotConverged);
    m_dRadius = c.dRadius;
    SetPosition(c.origin, c.xAxis, c.axis);
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

void CNuCylSurf::FitMinZone(const CNuPointArray& points, double* pdZone, CNuCylSurf* pInner,
                            CNuCylSurf* pOuter, double dTolerance, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    double dRadius = m_dRadius;
    if (pInner != nullptr) *pInner = *this;
    if (pOuter != nullptr) *pOuter = *this;
    if (*pdZone < NuGetTol()) return;
    if (pInner != nullptr) pInner->m_dRadius = dRadius - 0.5 * *pdZone;
    if (pOuter != nullptr) pOuter->m_dRadius = dRadius + 0.5 * *pdZone;
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
