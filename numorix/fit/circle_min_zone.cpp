// Minimum-zone circle: the annulus of least radial width that holds every point, found in the
// plane of the points.
//
// The narrowest annulus touches the points in four places, in one of three ways: two on each
// circle, three on the outer and one on the inner, or one on the outer and three on the inner.
// For two pairs (a, b | c, d) the centre lies on both perpendicular bisectors; with
//   d1 = a - b, d2 = c - d, t1 = |a|^2 - |b|^2, t2 = |c|^2 - |d|^2,
//   det = 2 (d1.x d2.y - d2.x d1.y),
//   centre = ((d2.y t1 - d1.y t2) / det, (d1.x t2 - d2.x t1) / det),
// the mean radius is the mean of the two distances and the half width half their difference.
// The three pairings of a quadruple cover all three ways (a 3 + 1 support has the same centre
// as each of its 2 + 2 pairings). The annulus of a small active set is solved exactly over all
// quadruples; a round-robin scan of all points then finds one outside it, which joins the set
// (at most 10 points are kept, and needless ones are dropped), until no point is left outside.
//
// The exchange, with its cycle finder and its end tests, is shared with the sphere's shell
// (numorix/fit/internal/zone_exchange.h).
//
// Collinear points have no unique annulus: the circle about the midpoint of the two extreme
// points is taken. Points truly out of one plane (their plane's form error above 2 dTolerance)
// have the zone of the thinnest torus tube about a circle in space that holds them: the circle
// is the torus's central circle and the zone twice its minor radius.
#include <algorithm>
#include <atomic>
#include <cmath>

#include "numorix/curves/circle.h"
#include "numorix/fit/internal/fit_frame.h"
#include "numorix/fit/internal/zone_exchange.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/tor_surf.h"

namespace numorix {

namespace {

// Set by a zone taken from a torus; read by the overload that returns the two circles. The flag is
// shared by all threads, as documented; it is atomic so that concurrent zone fits are no data race
// (a thread may still see another thread's flag in the two-circle form).
std::atomic<int> g_nTorusZone{0};

struct SAnnulus {
    double dX;
    double dY;
    double dRadius;
    double dHalfWidth;
};

double Distance2D(const CNuPoint& p, double x, double y) {
    return fit::ScaledDistance(p.x() - x, p.y() - y, 0.0);
}

void AddCandidate(const SAnnulus& a, CNuPointArray* pCandidates) {
    pCandidates->Add(CNuPoint(a.dX, a.dY, 0.0));
    pCandidates->Add(CNuPoint(a.dRadius, a.dHalfWidth, 0.0));
}

// The annulus with a and b on one circle and c and d on the other, widened to hold all four;
// half width NuGetLarge() when the two bisectors are parallel within dTolerance.
SAnnulus Pairing(const CNuPoint& a, const CNuPoint& b, const CNuPoint& c, const CNuPoint& d,
                 double dTolerance) {
    SAnnulus r{0.0, 0.0, 0.0, NuGetLarge()};
    double d1x = a.x() - b.x();
    double d1y = a.y() - b.y();
    double d2x = c.x() - d.x();
    double d2y = c.y() - d.y();
    double t1 = a.x() * a.x() + a.y() * a.y() - b.x() * b.x() - b.y() * b.y();
    double t2 = c.x() * c.x() + c.y() * c.y() - d.x() * d.x() - d.y() * d.y();
    double det = 2.0 * (d1x * d2y - d2x * d1y);
    if (dTolerance > std::fabs(det)) return r;
    r.dX = (d2y * t1 - d1y * t2) / det;
    r.dY = (d1x * t2 - d2x * t1) / det;
    double ra = Distance2D(a, r.dX, r.dY);
    double rc = Distance2D(c, r.dX, r.dY);
    r.dRadius = (ra + rc) / 2.0;
    r.dHalfWidth = std::fabs(ra - rc) / 2.0;
    const CNuPoint* ap[4] = {&a, &b, &c, &d};
    for (const CNuPoint* p : ap) {
        double e = std::fabs(Distance2D(*p, r.dX, r.dY) - r.dRadius);
        if (e > r.dHalfWidth) r.dHalfWidth = e;
    }
    return r;
}

// Whether the annulus differs from every listed candidate by dTolerance or more in its centre's
// coordinates, mean radius or half width.
bool DiffersFromAll(const SAnnulus& a, const CNuPointArray& candidates, double dTolerance) {
    int m = candidates.GetSize() / 2;
    const CNuPoint* c = candidates.GetData();
    for (int k = 0; k < m; ++k) {
        double ad[4] = {a.dX - c[2 * k].x(), a.dY - c[2 * k].y(), a.dRadius - c[2 * k + 1].x(),
                        a.dHalfWidth - c[2 * k + 1].y()};
        bool bDiffers = false;
        for (double d : ad)
            if (std::fabs(d) >= dTolerance) bDiffers = true;
        if (!bDiffers) return false;
    }
    return true;
}

// The circle through three points by the least-squares circle fit (exact for three points), its
// half width the largest miss of the three, which is rounding only.
SAnnulus ExactCircle(const CNuPoint& a, const CNuPoint& b, const CNuPoint& c, long lMaxIterations) {
    CNuPointArray three(3);
    three.Add(a);
    three.Add(b);
    three.Add(c);
    CNuCircle circle(1.0);
    double dForm = 0.0;
    double dSumSquares = 0.0;
    circle.Fit(three, &dForm, &dSumSquares, lMaxIterations);
    CNuPoint centre = circle.GetCentre();
    SAnnulus r{centre.x(), centre.y(), circle.GetRadius(), 0.0};
    const CNuPoint* ap[3] = {&a, &b, &c};
    for (const CNuPoint* p : ap) {
        double e = std::fabs(Distance2D(*p, r.dX, r.dY) - r.dRadius);
        if (e > r.dHalfWidth) r.dHalfWidth = e;
    }
    return r;
}

// The minimal annulus of the active points: the candidate list receives the best annulus and
// its ties, pQuadruple the indices that carry the best one.
void FindMinimalAnnulus(double dLower, double dTolerance, const CNuPoint* p,
                        const CNuIntArray& active, CNuIntArray* pQuadruple,
                        CNuPointArray* pCandidates, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, "FindMinimalAnnulus");
    int m = active.GetSize();
    const int* a = active.GetData();
    if (m < 3) return;
    if (m == 3) {
        SAnnulus circle = ExactCircle(p[a[0]], p[a[1]], p[a[2]], lMaxIterations);
        *pQuadruple = active;
        pCandidates->Clear();
        AddCandidate(circle, pCandidates);
        return;
    }
    pCandidates->Clear();
    for (int i = 0; i < m; ++i) {
        for (int j = i + 1; j < m; ++j) {
            for (int k = j + 1; k < m; ++k) {
                for (int l = k + 1; l < m; ++l) {
                    const CNuPoint& P = p[a[i]];
                    const CNuPoint& Q = p[a[j]];
                    const CNuPoint& R = p[a[k]];
                    const CNuPoint& S = p[a[l]];
                    SAnnulus aPairing[3] = {Pairing(P, Q, R, S, dTolerance),
                                            Pairing(P, R, Q, S, dTolerance),
                                            Pairing(P, S, Q, R, dTolerance)};
                    for (const SAnnulus& ann : aPairing) {
                        double dBest = pCandidates->GetSize() == 0 ? NuGetLarge()
                                                                   : pCandidates->GetData()[1].y();
                        double h = ann.dHalfWidth;
                        if (!(h < NuGetLarge()) || !(h > dLower - dTolerance) ||
                            !(h < dBest + dTolerance))
                            continue;
                        bool bHolds = true;
                        for (int t = 0; t < m && bHolds; ++t)
                            bHolds = !(std::fabs(Distance2D(p[a[t]], ann.dX, ann.dY) -
                                                 ann.dRadius) > h + dTolerance);
                        if (!bHolds) continue;
                        if (std::fabs(h - dBest) < dTolerance) {
                            if (DiffersFromAll(ann, *pCandidates, dTolerance))
                                AddCandidate(ann, pCandidates);
                        } else {
                            fit::SetQuadruple(pQuadruple, a[i], a[j], a[k], a[l]);
                            pCandidates->Clear();
                            AddCandidate(ann, pCandidates);
                        }
                    }
                }
            }
        }
    }
}

// Whether every point lies within the candidate's own half width plus dTolerance of its mean
// radius; c holds the candidate's two points.
bool CoversAll(const CNuPoint* c, double dTolerance, int n, const CNuPoint* p) {
    double dLimit = dTolerance + c[1].y();
    for (int i = 0; i < n; ++i)
        if (dLimit < std::fabs(Distance2D(p[i], c[0].x(), c[0].y()) - c[1].x())) return false;
    return true;
}

// Stored 211 unless every number of the finished zone is finite: squares of coordinates that
// underflow make the circle through three points 0 / 0 (three points 1e-150 apart), and sums
// of coordinates that overflow make an infinite centre. Such a zone is no answer.
void CheckUsable(double a, double b, double c, double d) {
    if (!std::isfinite(a) || !std::isfinite(b) || !std::isfinite(c) || !std::isfinite(d))
        throw CNuBestfitException(11, "CNuCircle");
}

}  // namespace

long CNuCircle::PointNotCovered(double dTolerance, int nPoints, const CNuPoint* pPoints,
                                const CNuPointArray& candidates) {
    if (!(nPoints > m_pointCoverage.m_nCursor)) m_pointCoverage.m_nCursor = 0;
    if (candidates.GetSize() == 0) throw CNuBestfitException(9, "CNuCircle", 0);
    const CNuPoint* c = candidates.GetData();
    int m = candidates.GetSize() / 2;
    double dLimit = dTolerance + c[1].y();
    return fit::FirstUncovered(&m_pointCoverage, nPoints, [&](int i) {
        for (int k = 0; k < m; ++k) {
            double d = Distance2D(pPoints[i], c[2 * k].x(), c[2 * k].y());
            if (dLimit < std::fabs(d - c[2 * k + 1].x())) return true;
        }
        return false;
    });
}

void CNuCircle::FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                           long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, "CNuCircle");
    g_nTorusZone.store(0, std::memory_order_relaxed);
    fit::CheckFinite(points, "CNuCircle");
    fit::CheckTolerance(dTolerance, "CNuCircle");
    int n = points.GetSize();
    if (n < 1) throw CNuBestfitException(1, "CNuCircle", 1);
    const CNuPoint* pIn = points.GetData();

    CNuVector planeNormal;
    if (CNuGeometry::AreCollinear(points, &planeNormal, dTolerance) != 0 &&
        fit::OnOneLine(points, dTolerance)) {
        if (CNuGeometry::NumberDistinctPoints(points, 2, dTolerance) == 0) {
            *pdZone = 0.0;
            m_dRadius = 0.0;
            SetPosition(pIn[0], CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
            return;
        }
        int i = 0;
        int j = 0;
        double dHalf = points.MaxEdge(&i, &j) * 0.5;
        CNuPoint centre = pIn[i].MidPoint(pIn[j]);
        CNuVector direction = (pIn[j] - pIn[i]).To3DVector();
        direction.Normalise();
        CNuVector normal;
        direction.OrthonormalX(&normal);
        double dNear = NuGetLarge();
        for (int k = 0; k < n; ++k) {
            double d = fit::ScaledDistance(pIn[k].x() - centre.x(), pIn[k].y() - centre.y(),
                                           pIn[k].z() - centre.z());
            if (d < dNear) dNear = d;
        }
        CheckUsable(centre.x(), centre.y(), centre.z(), dNear + dHalf);
        m_dRadius = (dNear + dHalf) * 0.5;
        // near <= half exactly (the ends of the longest edge lie at half from the centre), but
        // its rounding can pass half by an ulp: a zone of -3e-17 would be no zone.
        *pdZone = std::max(0.0, dHalf - dNear);
        SetPosition(centre, direction, normal);
        return;
    }

    // The working points lie in z = 0: the points themselves when they are already planar in
    // the world, otherwise their projection onto the least-squares plane.
    bool bProjected = false;
    CNuPointArray work;
    CNuPlane plane;
    CNuVector U;
    CNuVector V;
    if (points.Is2D(NuGetZero()) == eNuTrue) {
        work = points;
        for (int k = 0; k < n; ++k)
            work.GetData()[k].z() = 0.0;
    } else {
        double dForm = 0.0;
        double dSum = 0.0;
        plane.Fit(points, &dForm, &dSum);
        if (dTolerance * 2.0 < dForm) {
            // The zone of points in space is the minimum circumscribed torus.
            CNuTorSurf torus(1.0, 1.0);
            torus.FitMin(points, dTolerance, lMaxIterations);
            m_dRadius = torus.GetMajorRadius();
            *pdZone = 2.0 * torus.GetMinorRadius();
            CopyPosition(torus);
            g_nTorusZone.store(1, std::memory_order_relaxed);
            return;
        }
        CNuVector normal = plane.GetNormal();
        normal.OrthonormalX(&U);
        V = normal * U;
        work = CNuGeometry::Projection2D(points, plane.GetPoint(), U, V);
        bProjected = true;
    }
    const CNuPoint* p = work.GetData();

    CNuIntArray active(fit::kMaxActive + 1);
    CNuIntArray triple(3);
    if (work.IsNoncollinear(&triple, dTolerance) == eNuFalse)
        throw CNuBestfitException(11, "CNuCircle");
    for (int k = 0; k < 3; ++k)
        active.Add(triple.GetData()[k]);

    m_pointCoverage.m_nCursor = 0;
    CNuIntArray quadruple(4);
    CNuPointArray candidates(8);
    FindMinimalAnnulus(0.0, dTolerance, p, active, &quadruple, &candidates, lMaxIterations);
    long k = PointNotCovered(dTolerance, n, p, candidates);
    fit::RunExchange(
        n, k, dTolerance, lMaxIterations, "CNuCircle", &active, &quadruple, &candidates,
        [&](const CNuIntArray& set, CNuIntArray* pSupport, CNuPointArray* pList) {
            FindMinimalAnnulus(0.0, dTolerance, p, set, pSupport, pList, lMaxIterations);
        },
        [&](const CNuPointArray& list) { return PointNotCovered(dTolerance, n, p, list); },
        [&](const CNuPoint* c) { return CoversAll(c, dTolerance, n, p); });
    if (candidates.GetSize() == 0) throw CNuBestfitException(9, "CNuCircle", 0);

    const CNuPoint* c = candidates.GetData();
    CheckUsable(c[0].x(), c[0].y(), c[1].x(), c[1].y());
    m_dRadius = c[1].x();
    *pdZone = 2.0 * c[1].y();
    if (bProjected) {
        const CNuPoint& o = plane.GetPoint();
        CNuPoint centre(o.x() + c[0].x() * U[0] + c[0].y() * V[0],
                        o.y() + c[0].x() * U[1] + c[0].y() * V[1],
                        o.z() + c[0].x() * U[2] + c[0].y() * V[2]);
        SetPosition(centre, U, plane.GetNormal());
    } else {
        SetPosition(CNuPoint(c[0].x(), c[0].y(), pIn[0].z()), CNuVector(1.0, 0.0, 0.0),
                    CNuVector(0.0, 0.0, 1.0));
    }
}

void CNuCircle::FitMinZone(const CNuPointArray& points, double* pdZone, CNuCircle* pInner,
                           CNuCircle* pOuter, double dTolerance, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, "CNuCircle");
    FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    if (g_nTorusZone.load(std::memory_order_relaxed) == 1)
        throw CNuBestfitException(5, "CNuCircle");
    CNuCircle* apOut[2] = {pInner, pOuter};
    for (CNuCircle* pOut : apOut) {
        if (pOut == nullptr || pOut == this) continue;
        pOut->CopyPosition(*this);
        pOut->m_dRadius = m_dRadius;
    }
    if (NuGetTol() > std::fabs(*pdZone)) return;
    double dRadius = m_dRadius;
    if (pInner != nullptr) pInner->m_dRadius = dRadius - 0.5 * *pdZone;
    if (pOuter != nullptr) pOuter->m_dRadius = dRadius + 0.5 * *pdZone;
}

ENuFitResult CNuCircle::FitMinZoneEx(const CNuPointArray& points, double* pdZone, double dTolerance,
                                     long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, "CNuCircle", dTolerance, [&] {
        FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    });
}

ENuFitResult CNuCircle::FitMinZoneEx(const CNuPointArray& points, double* pdZone, CNuCircle* pInner,
                                     CNuCircle* pOuter, double dTolerance, long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, "CNuCircle", dTolerance, [&] {
        FitMinZone(points, pdZone, pInner, pOuter, dTolerance, lMaxIterations);
    });
}

}  // namespace numorix
