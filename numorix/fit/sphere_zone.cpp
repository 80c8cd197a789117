// Minimum-zone sphere: the spherical shell of least radial width that holds every point.
//
// The narrowest shell touches the points in five places, two on one sphere and three on the other.
// With u_i the unit vectors from the points to the centre, the first-order condition of
// min (R - r) under |X - P_i| <= R (outer) and |X - P_j| >= r (inner) asks that the convex hulls
// of the outer u_i and of the inner u_j meet; a hull of several unit vectors holds a unit vector
// only where they coincide, so one point against four never carries the optimum, and the ten
// splits of two against three of each five points are all there is to try.
//
// For a split (a, b | c, d, e) the centre X is equidistant from a and b, a plane, and from c, d
// and e, the axis of the circle through them (centre m, unit normal n):
//   X = m + t n,  t = (b - a) . (a + b - 2 m) / (2 (b - a) . n);
// the split is dropped when dTolerance exceeds |2 (b - a) . n|, the plane along the axis. The
// mean radius is the mean of the distances from X to a and to c, the half width half their
// difference, widened to hold all five points. The shell of a small active set is solved exactly
// over all its five-point subsets; the exchange of the circle's zone
// (numorix/fit/internal/zone_exchange.h) then adds the points found outside it.
//
// Points in one plane (within dTolerance) give the circle's annulus about them.
#include <cmath>
#include <map>
#include <tuple>

#include "numorix/curves/circle.h"
#include "numorix/fit/internal/fit_frame.h"
#include "numorix/fit/internal/zone_exchange.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/sph_surf.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuSphSurf";

struct SShell {
    double adCentre[3];
    double dRadius;
    double dHalfWidth;
};

double Distance(const CNuPoint& p, const double* c) {
    return fit::ScaledDistance(p.x() - c[0], p.y() - c[1], p.z() - c[2]);
}

void AddCandidate(const SShell& s, CNuPointArray* pCandidates) {
    pCandidates->Add(CNuPoint(s.adCentre[0], s.adCentre[1], s.adCentre[2]));
    pCandidates->Add(CNuPoint(s.dRadius, s.dHalfWidth, 0.0));
}

// Whether the shell differs from every listed candidate by dTolerance or more in its centre's
// coordinates, mean radius or half width.
bool DiffersFromAll(const SShell& s, const CNuPointArray& candidates, double dTolerance) {
    int m = candidates.GetSize() / 2;
    const CNuPoint* c = candidates.GetData();
    for (int k = 0; k < m; ++k) {
        double ad[5] = {s.adCentre[0] - c[2 * k].x(), s.adCentre[1] - c[2 * k].y(),
                        s.adCentre[2] - c[2 * k].z(), s.dRadius - c[2 * k + 1].x(),
                        s.dHalfWidth - c[2 * k + 1].y()};
        bool bDiffers = false;
        for (double d : ad)
            if (std::fabs(d) >= dTolerance) bDiffers = true;
        if (!bDiffers) return false;
    }
    return true;
}

// The centre and axis of the circle through three points; unusable when they are collinear.
struct SCentre {
    bool bUsable = false;
    double adCentre[3] = {0.0, 0.0, 0.0};
    double adNormal[3] = {0.0, 0.0, 0.0};
};

// The circles through three of the active points, each fitted once per solve.
class CExactFits {
  public:
    CExactFits(const CNuPoint* p, const int* a, long lMaxIterations)
        : m_p(p), m_a(a), m_lMaxIterations(lMaxIterations) {}

    const SCentre& Circle(int i, int j, int k) {
        auto key = std::make_tuple(i, j, k);
        auto it = m_fits.find(key);
        if (it != m_fits.end()) return it->second;
        SCentre c;
        CNuPointArray three(3);
        three.Add(m_p[m_a[i]]);
        three.Add(m_p[m_a[j]]);
        three.Add(m_p[m_a[k]]);
        try {
            CNuCircle circle(1.0);
            circle.Fit(three, m_lMaxIterations);
            CNuPoint centre = circle.GetCentre();
            CNuVector normal = circle.GetNormal();
            c = SCentre{
                true, {centre.x(), centre.y(), centre.z()}, {normal[0], normal[1], normal[2]}};
        } catch (const CNuBestfitException&) {
            // Collinear: no circle, no axis.
        }
        return m_fits[key] = c;
    }

  private:
    const CNuPoint* m_p;
    const int* m_a;
    long m_lMaxIterations;
    std::map<std::tuple<int, int, int>, SCentre> m_fits;
};

// The shell about a centre with the points s[0] .. s[nFirstOther - 1] of the active set on one
// sphere and the rest of the five on the other, widened to hold all five.
SShell ShellAbout(const double* adCentre, const CNuPoint* p, const int* a, const int* s,
                  int nFirstOther) {
    SShell r{{adCentre[0], adCentre[1], adCentre[2]}, 0.0, 0.0};
    double ra = Distance(p[a[s[0]]], adCentre);
    double rb = Distance(p[a[s[nFirstOther]]], adCentre);
    r.dRadius = (ra + rb) / 2.0;
    r.dHalfWidth = std::fabs(ra - rb) / 2.0;
    for (int k = 0; k < 5; ++k) {
        double e = std::fabs(Distance(p[a[s[k]]], adCentre) - r.dRadius);
        if (e > r.dHalfWidth) r.dHalfWidth = e;
    }
    return r;
}

// The minimal shell of the active points: the candidate list receives the best shell and its
// ties, pSupport the indices of the five points that carry the best one.
void FindMinimalSphericalShell(double dLower, double dTolerance, const CNuPoint* p,
                               const CNuIntArray& active, CNuIntArray* pSupport,
                               CNuPointArray* pCandidates, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, "FindMinimalSphericalShell");
    int m = active.GetSize();
    const int* a = active.GetData();
    if (m < 4) return;
    if (m == 4) {
        CNuPointArray four(4);
        for (int i = 0; i < 4; ++i)
            four.Add(p[a[i]]);
        CNuSphSurf sphere(1.0);
        sphere.Fit(four, lMaxIterations);
        CNuPoint centre = sphere.GetCentre();
        SShell r{{centre.x(), centre.y(), centre.z()}, sphere.GetRadius(), 0.0};
        for (int i = 0; i < 4; ++i) {
            double e = std::fabs(Distance(p[a[i]], r.adCentre) - r.dRadius);
            if (e > r.dHalfWidth) r.dHalfWidth = e;
        }
        *pSupport = active;
        pCandidates->Clear();
        AddCandidate(r, pCandidates);
        return;
    }
    pCandidates->Clear();
    CExactFits fits(p, a, lMaxIterations);
    auto judge = [&](const SShell& shell, const int* s) {
        double dBest = pCandidates->GetSize() == 0 ? NuGetLarge() : pCandidates->GetData()[1].y();
        double h = shell.dHalfWidth;
        if (!(h < NuGetLarge()) || !(h > dLower - dTolerance) || !(h < dBest + dTolerance)) return;
        for (int t = 0; t < m; ++t)
            if (std::fabs(Distance(p[a[t]], shell.adCentre) - shell.dRadius) > h + dTolerance)
                return;
        if (std::fabs(h - dBest) < dTolerance) {
            if (DiffersFromAll(shell, *pCandidates, dTolerance)) AddCandidate(shell, pCandidates);
        } else {
            pSupport->Clear();
            for (int k = 0; k < 5; ++k)
                pSupport->Add(a[s[k]]);
            pCandidates->Clear();
            AddCandidate(shell, pCandidates);
        }
    };
    int q[5];
    for (q[0] = 0; q[0] < m; ++q[0])
        for (q[1] = q[0] + 1; q[1] < m; ++q[1])
            for (q[2] = q[1] + 1; q[2] < m; ++q[2])
                for (q[3] = q[2] + 1; q[3] < m; ++q[3])
                    for (q[4] = q[3] + 1; q[4] < m; ++q[4]) {
                        // Two against three: the pair (u, v) and the circle of the other three.
                        for (int u = 0; u < 5; ++u)
                            for (int v = u + 1; v < 5; ++v) {
                                int s[5] = {q[u], q[v], 0, 0, 0};
                                int nRest = 2;
                                for (int k = 0; k < 5; ++k)
                                    if (k != u && k != v) s[nRest++] = q[k];
                                const SCentre& c = fits.Circle(s[2], s[3], s[4]);
                                if (!c.bUsable) continue;
                                const CNuPoint& A = p[a[s[0]]];
                                const CNuPoint& B = p[a[s[1]]];
                                double ad[3] = {B.x() - A.x(), B.y() - A.y(), B.z() - A.z()};
                                double dAlong =
                                    2.0 * (ad[0] * c.adNormal[0] + ad[1] * c.adNormal[1] +
                                           ad[2] * c.adNormal[2]);
                                if (dTolerance > std::fabs(dAlong)) continue;
                                double t = (ad[0] * (A.x() + B.x() - 2.0 * c.adCentre[0]) +
                                            ad[1] * (A.y() + B.y() - 2.0 * c.adCentre[1]) +
                                            ad[2] * (A.z() + B.z() - 2.0 * c.adCentre[2])) /
                                           dAlong;
                                double adX[3] = {c.adCentre[0] + t * c.adNormal[0],
                                                 c.adCentre[1] + t * c.adNormal[1],
                                                 c.adCentre[2] + t * c.adNormal[2]};
                                judge(ShellAbout(adX, p, a, s, 2), s);
                            }
                    }
}

// Whether every point lies within the candidate's own half width plus dTolerance of its mean
// radius; c holds the candidate's two points.
bool CoversAll(const CNuPoint* c, double dTolerance, const CNuPointArray& points) {
    double adCentre[3] = {c[0].x(), c[0].y(), c[0].z()};
    double dLimit = dTolerance + c[1].y();
    for (int i = 0; i < points.GetSize(); ++i)
        if (dLimit < std::fabs(Distance(points[i], adCentre) - c[1].x())) return false;
    return true;
}

}  // namespace

long CNuSphSurf::PointNotCovered(double dTolerance, const CNuPointArray& points,
                                 const CNuPointArray& candidates) {
    int n = points.GetSize();
    if (!(n > m_pointCoverage.m_nCursor)) m_pointCoverage.m_nCursor = 0;
    if (candidates.GetSize() == 0) throw CNuBestfitException(9, kLocation, 0);
    const CNuPoint* c = candidates.GetData();
    const CNuPoint* p = points.GetData();
    int m = candidates.GetSize() / 2;
    double dLimit = dTolerance + c[1].y();
    return fit::FirstUncovered(&m_pointCoverage, n, [&](int i) {
        for (int k = 0; k < m; ++k) {
            double adCentre[3] = {c[2 * k].x(), c[2 * k].y(), c[2 * k].z()};
            if (dLimit < std::fabs(Distance(p[i], adCentre) - c[2 * k + 1].x())) return true;
        }
        return false;
    });
}

void CNuSphSurf::MinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                         long lMaxIterations) {
    if (CNuGeometry::AreCoplanar(points, dTolerance) != 0) {
        // A flat ring: the annulus of the circle's zone.
        CNuCircle circle(1.0);
        circle.FitMinZone(points, pdZone, dTolerance, lMaxIterations);
        m_dRadius = circle.GetRadius();
        CopyPosition(circle);
        return;
    }
    // The least-squares sphere comes first; its failures are the zone's.
    double dForm = 0.0;
    double dSum = 0.0;
    Fit(points, &dForm, &dSum, lMaxIterations);

    int n = points.GetSize();
    const CNuPoint* p = points.GetData();
    CNuIntArray active(fit::kMaxActive + 1);
    CNuIntArray four(4);
    // Rounding between the coplanarity test and the search for four points can leave none.
    if (points.IsNoncoplanar(&four, dTolerance) == eNuFalse)
        throw CNuBestfitException(11, kLocation);
    for (int k = 0; k < 4; ++k)
        active.Add(four.GetData()[k]);

    m_pointCoverage.m_nCursor = 0;
    CNuIntArray support(5);
    CNuPointArray candidates(8);
    FindMinimalSphericalShell(0.0, dTolerance, p, active, &support, &candidates, lMaxIterations);
    long k = PointNotCovered(dTolerance, points, candidates);
    fit::RunExchange(
        n, k, dTolerance, lMaxIterations, kLocation, &active, &support, &candidates,
        [&](const CNuIntArray& set, CNuIntArray* pSupport, CNuPointArray* pList) {
            FindMinimalSphericalShell(0.0, dTolerance, p, set, pSupport, pList, lMaxIterations);
        },
        [&](const CNuPointArray& list) { return PointNotCovered(dTolerance, points, list); },
        [&](const CNuPoint* c) { return CoversAll(c, dTolerance, points); });
    if (candidates.GetSize() == 0) throw CNuBestfitException(9, kLocation, 0);

    const CNuPoint* c = candidates.GetData();
    // Points nearly in one plane, let through by a tolerance of 0, give spheres through four of
    // them whose determinants vanish: a centre or radius that is no number is no zone.
    double adZone[5] = {c[0].x(), c[0].y(), c[0].z(), c[1].x(), c[1].y()};
    for (double d : adZone)
        if (!std::isfinite(d)) throw CNuBestfitException(11, kLocation);
    m_dRadius = c[1].x();
    *pdZone = 2.0 * c[1].y();
    SetPosition(c[0], CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
}

void CNuSphSurf::FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                            long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    fit::CheckFinite(points, kLocation);
    fit::CheckTolerance(dTolerance, kLocation);
    if (points.GetSize() < 1) throw CNuBestfitException(1, kLocation, 1);
    try {
        MinZone(points, pdZone, dTolerance, lMaxIterations);
    } catch (const CNuBestfitException&) {
        throw CNuBestfitException(12, kLocation);
    }
}

void CNuSphSurf::FitMinZone(const CNuPointArray& points, double* pdZone, CNuSphSurf* pInner,
                            CNuSphSurf* pOuter, double dTolerance, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    double dRadius = m_dRadius;
    if (pInner != nullptr) *pInner = *this;
    if (pOuter != nullptr) *pOuter = *this;
    if (NuGetTol() > std::fabs(*pdZone)) return;
    if (pInner != nullptr) pInner->m_dRadius = dRadius - 0.5 * *pdZone;
    if (pOuter != nullptr) pOuter->m_dRadius = dRadius + 0.5 * *pdZone;
}

ENuFitResult CNuSphSurf::FitMinZoneEx(const CNuPointArray& points, double* pdZone,
                                      double dTolerance, long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, kLocation, dTolerance, [&] {
        FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    });
}

ENuFitResult CNuSphSurf::FitMinZoneEx(const CNuPointArray& points, double* pdZone,
                                      CNuSphSurf* pInner, CNuSphSurf* pOuter, double dTolerance,
                                      long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, kLocation, dTolerance, [&] {
        FitMinZone(points, pdZone, pInner, pOuter, dTolerance, lMaxIterations);
    });
}

}  // namespace numorix
