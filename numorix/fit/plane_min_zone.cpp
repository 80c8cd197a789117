// Minimum-zone plane: the pair of parallel planes of least distance that holds every point.
// The narrowest slab of a point set touches it in one of two ways: three points on one plane
// and one on the other (face against vertex), or two on each with the planes parallel to both
// chords (edge against edge). The slab of a small active set is therefore solved exactly by
// trying every quadruple in its seven arrangements; a scan of all points then finds one outside
// that slab, which joins the active set, until no point is left outside.
#include <cmath>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"

namespace numorix {

namespace {

const double kDegreesToRadians = 3.14159265358979323846 / 180.0;

struct SSlab {
    double adLocation[3];
    double adNormal[3];
    double dHalfWidth;
};

void Difference(const CNuPoint& a, const CNuPoint& b, double* pd) {
    pd[0] = a.x() - b.x();
    pd[1] = a.y() - b.y();
    pd[2] = a.z() - b.z();
}

void CrossProduct(const double* u, const double* v, double* w) {
    w[0] = u[1] * v[2] - u[2] * v[1];
    w[1] = u[2] * v[0] - u[0] * v[2];
    w[2] = u[0] * v[1] - u[1] * v[0];
}

double Length(const double* u) { return std::sqrt(u[0] * u[0] + u[1] * u[1] + u[2] * u[2]); }

// The slab whose one plane holds a and has the unit normal of u x v and whose other plane holds
// s; half width NuGetLarge() when u and v are parallel within NuGetDegreeTol().
SSlab SlabFrom(const CNuPoint& a, const double* u, const double* v, const CNuPoint& s) {
    SSlab slab{{0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, NuGetLarge()};
    double n[3];
    CrossProduct(u, v, n);
    double dN = Length(n);
    double dUV = Length(u) * Length(v);
    if (!std::isfinite(dN) || !std::isfinite(dUV)) {
        // The squares overflowed (chords beyond about 1e150), and the normal would come out as
        // zero, the slab as one of width 0: the same normal from the chords scaled to order 1.
        double su = std::fmax(std::fabs(u[0]), std::fmax(std::fabs(u[1]), std::fabs(u[2])));
        double sv = std::fmax(std::fabs(v[0]), std::fmax(std::fabs(v[1]), std::fabs(v[2])));
        double us[3] = {u[0] / su, u[1] / su, u[2] / su};
        double vs[3] = {v[0] / sv, v[1] / sv, v[2] / sv};
        CrossProduct(us, vs, n);
        dN = Length(n);
        dUV = Length(us) * Length(vs);
    }
    if (!(dN > NuGetDegreeTol() * kDegreesToRadians * dUV) || !(dN > NuGetZero())) return slab;
    for (int c = 0; c < 3; ++c)
        n[c] /= dN;
    double d = n[0] * (s.x() - a.x()) + n[1] * (s.y() - a.y()) + n[2] * (s.z() - a.z());
    slab.adLocation[0] = a.x() + n[0] * d * 0.5;
    slab.adLocation[1] = a.y() + n[1] * d * 0.5;
    slab.adLocation[2] = a.z() + n[2] * d * 0.5;
    for (int c = 0; c < 3; ++c)
        slab.adNormal[c] = n[c];
    slab.dHalfWidth = std::fabs(d) * 0.5;
    return slab;
}

// Face of a, b, c against the vertex s.
SSlab FaceVertex(const CNuPoint& a, const CNuPoint& b, const CNuPoint& c, const CNuPoint& s) {
    double u[3];
    double v[3];
    Difference(b, a, u);
    Difference(c, a, v);
    return SlabFrom(a, u, v, s);
}

// Edge a b against the edge c d.
SSlab EdgeEdge(const CNuPoint& a, const CNuPoint& b, const CNuPoint& c, const CNuPoint& d) {
    double u[3];
    double v[3];
    Difference(b, a, u);
    Difference(d, c, v);
    return SlabFrom(a, u, v, c);
}

double SignedDistance(const CNuPoint& p, const double* pdLocation, const double* pdNormal) {
    return (p.x() - pdLocation[0]) * pdNormal[0] + (p.y() - pdLocation[1]) * pdNormal[1] +
           (p.z() - pdLocation[2]) * pdNormal[2];
}

// Appends a slab to the candidate list as its three points.
void AddCandidate(const SSlab& slab, CNuPointArray* pCandidates) {
    pCandidates->Add(CNuPoint(slab.adLocation[0], slab.adLocation[1], slab.adLocation[2]));
    pCandidates->Add(CNuPoint(slab.adNormal[0], slab.adNormal[1], slab.adNormal[2]));
    pCandidates->Add(CNuPoint(slab.dHalfWidth, 0.0, 0.0));
}

// Whether the slab differs from every candidate by dTolerance or more in some coordinate.
bool DiffersFromAll(const SSlab& slab, const CNuPointArray& candidates, double dTolerance) {
    int m = candidates.GetSize() / 3;
    const CNuPoint* c = candidates.GetData();
    for (int k = 0; k < m; ++k) {
        const CNuPoint& loc = c[3 * k];
        const CNuPoint& nor = c[3 * k + 1];
        double ad[7] = {slab.adLocation[0] - loc.x(),      slab.adLocation[1] - loc.y(),
                        slab.adLocation[2] - loc.z(),      slab.adNormal[0] - nor.x(),
                        slab.adNormal[1] - nor.y(),        slab.adNormal[2] - nor.z(),
                        slab.dHalfWidth - c[3 * k + 2].x()};
        bool bDiffers = false;
        for (double d : ad)
            if (std::fabs(d) >= dTolerance) bDiffers = true;
        if (!bDiffers) return false;
    }
    return true;
}

// The minimal slab of the active points. The candidate list receives the best slab and its ties;
// pQuadruple the indices that carry the best one.
void MinimalSlab(double dTolerance, const CNuPoint* p, const CNuIntArray& active,
                 CNuIntArray* pQuadruple, CNuPointArray* pCandidates) {
    int m = active.GetSize();
    const int* a = active.GetData();
    if (m < 3) return;
    if (m == 3) {
        SSlab slab = FaceVertex(p[a[0]], p[a[1]], p[a[2]], p[a[0]]);
        pQuadruple->Clear();
        for (int i = 0; i < 3; ++i)
            pQuadruple->Add(a[i]);
        pCandidates->Clear();
        if (slab.dHalfWidth < NuGetLarge()) AddCandidate(slab, pCandidates);
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
                    SSlab aSlab[7] = {FaceVertex(P, Q, R, S), FaceVertex(P, Q, S, R),
                                      FaceVertex(P, R, S, Q), FaceVertex(Q, R, S, P),
                                      EdgeEdge(P, Q, R, S),   EdgeEdge(P, R, Q, S),
                                      EdgeEdge(P, S, Q, R)};
                    for (const SSlab& slab : aSlab) {
                        double dBest = pCandidates->GetSize() == 0 ? NuGetLarge()
                                                                   : pCandidates->GetData()[2].x();
                        double h = slab.dHalfWidth;
                        if (!(h < NuGetLarge()) || !(h < dBest + dTolerance)) continue;
                        bool bHolds = true;
                        for (int t = 0; t < m && bHolds; ++t)
                            bHolds = !(std::fabs(SignedDistance(p[a[t]], slab.adLocation,
                                                                slab.adNormal)) > h + dTolerance);
                        if (!bHolds) continue;
                        if (std::fabs(h - dBest) < dTolerance) {
                            if (DiffersFromAll(slab, *pCandidates, dTolerance))
                                AddCandidate(slab, pCandidates);
                        } else {
                            fit::SetQuadruple(pQuadruple, a[i], a[j], a[k], a[l]);
                            pCandidates->Clear();
                            AddCandidate(slab, pCandidates);
                        }
                    }
                }
            }
        }
    }
}

}  // namespace

long CNuPlane::PointNotCovered(double dTolerance, int nPoints, const CNuPoint* pPoints,
                               const CNuPointArray& candidates) {
    if (!(nPoints > m_pointCoverage.m_nCursor)) m_pointCoverage.m_nCursor = 0;
    if (candidates.GetSize() == 0) throw CNuBestfitException(9, "CNuPlane", 0);
    const CNuPoint* c = candidates.GetData();
    int m = candidates.GetSize() / 3;
    double dLimit = dTolerance + c[2].x();
    return fit::FirstUncovered(&m_pointCoverage, nPoints, [&](int i) {
        const CNuPoint& P = pPoints[i];
        for (int k = 0; k < m; ++k) {
            const CNuPoint& L = c[3 * k];
            const CNuPoint& N = c[3 * k + 1];
            double d = (P.x() - L.x()) * N.x() + (P.y() - L.y()) * N.y() + (P.z() - L.z()) * N.z();
            if (std::fabs(d) > dLimit) return true;
        }
        return false;
    });
}

void CNuPlane::FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance) {
    fit::CheckFinite(points, "CNuPlane");
    fit::CheckTolerance(dTolerance, "CNuPlane");
    int n = points.GetSize();
    if (n < 3) throw CNuBestfitException(1, "CNuPlane", 3);
    CNuIntArray triple(3);
    if (points.IsNoncollinear(&triple, dTolerance) == eNuFalse)
        throw CNuBestfitException(3, "CNuPlane", 3);
    const CNuPoint* p = points.GetData();

    // Start: the extreme points about the least-squares plane, with a non-collinear triple so
    // that the first quadruples are never all degenerate.
    CNuIntArray active(8);
    if (n == 3) {
        active.Add(0);
        active.Add(1);
        active.Add(2);
    } else {
        CNuPlane ls;
        ls.Fit(points);
        double adLoc[3] = {ls.m_point.x(), ls.m_point.y(), ls.m_point.z()};
        const double* pn = ls.m_normal.GetData();
        int anLow[2] = {-1, -1};
        int anHigh[2] = {-1, -1};
        double adLow[2] = {NuGetLarge(), NuGetLarge()};
        double adHigh[2] = {-NuGetLarge(), -NuGetLarge()};
        for (int i = 0; i < n; ++i) {
            double d = SignedDistance(p[i], adLoc, pn);
            if (d < adLow[0]) {
                adLow[1] = adLow[0];
                anLow[1] = anLow[0];
                adLow[0] = d;
                anLow[0] = i;
            } else if (d < adLow[1]) {
                adLow[1] = d;
                anLow[1] = i;
            }
            if (d > adHigh[0]) {
                adHigh[1] = adHigh[0];
                anHigh[1] = anHigh[0];
                adHigh[0] = d;
                anHigh[0] = i;
            } else if (d > adHigh[1]) {
                adHigh[1] = d;
                anHigh[1] = i;
            }
        }
        int anStart[7] = {
            anHigh[0],           anLow[0],           anHigh[1], anLow[1], triple.GetData()[0],
            triple.GetData()[1], triple.GetData()[2]};
        for (int s : anStart)
            if (s >= 0 && active.Find(s) < 0) active.Add(s);
    }

    m_pointCoverage.m_nCursor = 0;
    CNuIntArray quadruple(4);
    CNuPointArray candidates(21);
    MinimalSlab(dTolerance, p, active, &quadruple, &candidates);
    long k = PointNotCovered(dTolerance, n, p, candidates);
    // Scans in a row that met only active points while a single slab was left. Each scan moves
    // the cursor past its point, so n of them have gone round every point: all uncovered points
    // are active and the slab can never change (a negative tolerance does this).
    int nActiveOnly = 0;
    while (k != -1) {
        int nK = static_cast<int>(k);
        if (active.Find(nK) >= 0) {
            // An active point outside a tied candidate only: keep the first slab, which holds
            // every active point, and scan again.
            if (candidates.GetSize() <= 3 && ++nActiveOnly > n)
                throw CNuBestfitException(11, "CNuPlane");
            candidates.Truncate(3);
            k = PointNotCovered(dTolerance, n, p, candidates);
            continue;
        }
        nActiveOnly = 0;
        active.Add(active.GetData()[0]);
        active.GetData()[0] = nK;
        MinimalSlab(dTolerance, p, active, &quadruple, &candidates);
        if (candidates.GetSize() == 0) MinimalSlab(dTolerance, p, active, &quadruple, &candidates);
        if (active.GetSize() >= n) break;
        // k leads, then the points of the best quadruple, then the rest.
        CNuIntArray rebuilt(active.GetSize());
        rebuilt.Add(nK);
        for (int i = 0; i < quadruple.GetSize(); ++i)
            if (rebuilt.Find(quadruple.GetData()[i]) < 0) rebuilt.Add(quadruple.GetData()[i]);
        for (int i = 0; i < active.GetSize(); ++i)
            if (rebuilt.Find(active.GetData()[i]) < 0) rebuilt.Add(active.GetData()[i]);
        active = rebuilt;
        k = PointNotCovered(dTolerance, n, p, candidates);
    }
    if (candidates.GetSize() == 0) throw CNuBestfitException(9, "CNuPlane", 0);
    const CNuPoint* c = candidates.GetData();
    CNuVector normal(c[1].x(), c[1].y(), c[1].z());
    fit::CleanDirection(&normal);
    m_point = c[0];
    m_normal = normal;
    *pdZone = 2.0 * c[2].x();
}

void CNuPlane::FitMinZone(const CNuPointArray& points, double* pdZone, CNuPlane* pInner,
                          CNuPlane* pOuter, double dTolerance) {
    FitMinZone(points, pdZone, dTolerance);
    if (*pdZone < NuGetTol()) return;
    double dHalf = 0.5 * *pdZone;
    CNuPoint shift(m_normal[0] * dHalf, m_normal[1] * dHalf, m_normal[2] * dHalf);
    CNuPlane self(*this);
    if (pInner != nullptr) {
        *pInner = self;
        pInner->m_point = self.m_point - shift;
    }
    if (pOuter != nullptr) {
        *pOuter = self;
        pOuter->m_point = self.m_point + shift;
    }
}

}  // namespace numorix
