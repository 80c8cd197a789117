// Minimum-zone line of coplanar points: the pair of parallel lines of least distance that holds
// every point (the Chebyshev line fit, min over lines of the largest orthogonal distance, the
// zone being twice that). For points in a plane the narrowest strip has one bounding line through
// an edge of the convex hull and the other through the hull vertex farthest from it, so the
// strip is found by exchanging support points around the hull: each hull edge in turn is the
// supporting chord, its antipodal vertex the third support, and the narrowest pair is kept.
// Points in space have a circumscribed cylinder as their zone, which is not offered yet.
#include <algorithm>
#include <cmath>
#include <vector>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"

namespace numorix {

namespace {

struct SXY {
    double x;
    double y;
};

double Cross(const SXY& o, const SXY& a, const SXY& b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

// Vertices of the convex hull counter-clockwise (Andrew's monotone chain), collinear points on
// edges dropped.
std::vector<SXY> Hull(std::vector<SXY> pts) {
    std::size_t n = pts.size();
    // Insertion order by (x, y) would be quadratic; the standard sort is used on the copy.
    std::sort(pts.begin(), pts.end(),
              [](const SXY& a, const SXY& b) { return a.x < b.x || (a.x == b.x && a.y < b.y); });
    std::vector<SXY> h(2 * n + 1);
    std::size_t k = 0;
    for (std::size_t i = 0; i < n; ++i) {
        while (k >= 2 && !(Cross(h[k - 2], h[k - 1], pts[i]) > 0.0))
            --k;
        h[k++] = pts[i];
    }
    for (std::size_t i = n - 1, t = k + 1; i-- > 0;) {
        while (k >= t && !(Cross(h[k - 2], h[k - 1], pts[i]) > 0.0))
            --k;
        h[k++] = pts[i];
    }
    h.resize(k > 1 ? k - 1 : k);
    return h;
}

// Stored 211 unless every coordinate is a finite number: the hull's ordering needs them.
void CheckFinite(const std::vector<SXY>& pts) {
    for (const SXY& q : pts)
        if (!std::isfinite(q.x) || !std::isfinite(q.y)) throw CNuBestfitException(11, "CNuLine");
}

// The planar solver. On return p0 and p1 lie on one bounding line and p2 on the other; the
// result is the width. Coordinates are relative to the caller's reference point.
double PlanarZone(const std::vector<SXY>& pts, SXY* p0, SXY* p1, SXY* p2) {
    CheckFinite(pts);
    std::vector<SXY> h = Hull(pts);
    std::size_t m = h.size();
    if (m < 3) {
        // All points on one line: a strip of width 0 along the extreme pair.
        *p0 = h[0];
        *p1 = m > 1 ? h[1] : h[0];
        *p2 = h[0];
        return 0.0;
    }
    double dBest = -1.0;
    std::size_t j = 1;
    for (std::size_t i = 0; i < m; ++i) {
        const SXY& a = h[i];
        const SXY& b = h[(i + 1) % m];
        double dEdge = std::hypot(b.x - a.x, b.y - a.y);
        // Advance the antipodal vertex while it moves away from the chord.
        while (Cross(a, b, h[(j + 1) % m]) > Cross(a, b, h[j % m]))
            j = (j + 1) % m;
        double dWidth = Cross(a, b, h[j % m]) / dEdge;
        if (dBest < 0.0 || dWidth < dBest) {
            dBest = dWidth;
            *p0 = a;
            *p1 = b;
            *p2 = h[j % m];
        }
    }
    return dBest;
}

// The line through the supports: direction p0 - p1 with its larger component positive, location
// halfway between p2 and its foot on the chord.
void SupportLine(const SXY& p0, const SXY& p1, const SXY& p2, double* pdDirX, double* pdDirY,
                 double* pdLocX, double* pdLocY) {
    double dx = p0.x - p1.x;
    double dy = p0.y - p1.y;
    if ((std::fabs(dx) >= std::fabs(dy) ? dx : dy) < 0.0) {
        dx = -dx;
        dy = -dy;
    }
    double dLength = std::hypot(dx, dy);
    if (dLength > NuGetZero()) {
        dx /= dLength;
        dy /= dLength;
    } else {
        dx = 1.0;
        dy = 0.0;
    }
    double t = (p2.x - p1.x) * dx + (p2.y - p1.y) * dy;
    double fx = p1.x + t * dx;
    double fy = p1.y + t * dy;
    *pdDirX = dx;
    *pdDirY = dy;
    *pdLocX = (fx + p2.x) * 0.5;
    *pdLocY = (fy + p2.y) * 0.5;
}

bool Reaches(double dx, double dy, double dz, double dTol) {
    return std::fabs(dx) >= dTol || std::fabs(dy) >= dTol || std::fabs(dz) >= dTol;
}

}  // namespace

void CNuLine::FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                         long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, "CNuLine");
    int n = points.GetSize();
    if (n < 2) throw CNuBestfitException(1, "CNuLine", 2);
    if (CNuGeometry::NumberDistinctPoints(points, 2, dTolerance) == 0)
        throw CNuBestfitException(2, "CNuLine", 2);
    Fit(points);
    *pdZone = 0.0;
    CNuVector normal;
    if (CNuGeometry::AreCollinear(points, &normal, dTolerance) != 0) return;
    CNuPlane plane;
    if (CNuGeometry::AreCoplanar(points, &plane, dTolerance) == 0) {
        // The zone of points in space is the minimum circumscribed cylinder.
        throw CNuOperationException(45, "FitMinZone", "CNuLine");
    }
    const CNuPoint* p = points.GetData();
    CNuPoint mean = points.MeanPoint();
    std::vector<SXY> local(static_cast<std::size_t>(n));
    double dDirX = 1.0;
    double dDirY = 0.0;
    double dLocX = 0.0;
    double dLocY = 0.0;
    SXY s0{0.0, 0.0};
    SXY s1{0.0, 0.0};
    SXY s2{0.0, 0.0};
    if (points.Is2D(NuGetZero()) == eNuFalse) {
        // Three non-collinear points: the first differing from point 0, then the first later
        // point off the line through those two.
        int k = 1;
        while (k < n &&
               !Reaches(p[k].x() - p[0].x(), p[k].y() - p[0].y(), p[k].z() - p[0].z(), dTolerance))
            ++k;
        if (k >= n) return;
        CNuVector axisX = (p[k] - p[0]).To3DVector();
        int l = k + 1;
        CNuVector axisZ;
        for (; l < n; ++l) {
            axisZ = axisX * (p[l] - p[0]).To3DVector();
            if (Reaches(axisZ[0], axisZ[1], axisZ[2], dTolerance)) break;
        }
        if (l >= n) return;
        axisX.Normalise();
        axisZ.Normalise();
        CNuVector axisY = axisZ * axisX;
        for (int i = 0; i < n; ++i) {
            CNuVector d = (p[i] - p[0]).To3DVector();
            local[static_cast<std::size_t>(i)] = SXY{d % axisX, d % axisY};
        }
        *pdZone = PlanarZone(local, &s0, &s1, &s2);
        SupportLine(s0, s1, s2, &dDirX, &dDirY, &dLocX, &dLocY);
        // Cleaned in the plane's own frame, then carried back as a vector.
        CNuVector inPlane(dDirX, dDirY, 0.0);
        fit::CleanDirection(&inPlane);
        CNuVector direction = axisX * inPlane[0] + axisY * inPlane[1];
        CNuPoint location = p[0] + CNuPoint(axisX[0] * dLocX + axisY[0] * dLocY,
                                            axisX[1] * dLocX + axisY[1] * dLocY,
                                            axisX[2] * dLocX + axisY[2] * dLocY);
        m_direction = direction;
        m_point = location;
    } else {
        for (int i = 0; i < n; ++i)
            local[static_cast<std::size_t>(i)] = SXY{p[i].x() - p[0].x(), p[i].y() - p[0].y()};
        *pdZone = PlanarZone(local, &s0, &s1, &s2);
        SupportLine(s0, s1, s2, &dDirX, &dDirY, &dLocX, &dLocY);
        CNuVector direction(dDirX, dDirY, 0.0);
        fit::CleanDirection(&direction);
        m_direction = direction;
        m_point = CNuPoint(p[0].x() + dLocX, p[0].y() + dLocY, p[0].z());
    }
    // The location moves to the foot of the mean point.
    CNuPoint offset = mean - m_point;
    double t = m_direction % offset.To3DVector();
    m_point += CNuPoint(m_direction[0] * t, m_direction[1] * t, m_direction[2] * t);
}

void CNuLine::FitMinZone(const CNuPointArray& points, double* pdZone, CNuLine* pInner,
                         CNuLine* pOuter, double dTolerance, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, "CNuLine");
    FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    CNuVector normal(0.0, 0.0, 1.0);
    if (points.Is2D(NuGetZero()) == eNuFalse) {
        CNuPlane plane;
        if (CNuGeometry::AreCoplanar(points, &plane, dTolerance) == 0)
            throw CNuBestfitException(5, "CNuLine");
        normal = plane.GetNormal();
    }
    CNuLine self(*this);
    if (pInner != nullptr) *pInner = self;
    if (pOuter != nullptr) *pOuter = self;
    if (*pdZone < NuGetTol()) return;
    CNuVector perpendicular = normal * m_direction;
    double dLength = perpendicular.Magnitude();
    if (dLength > NuGetZero()) perpendicular /= dLength;
    double dHalf = 0.5 * *pdZone;
    CNuPoint shift(perpendicular[0] * dHalf, perpendicular[1] * dHalf, perpendicular[2] * dHalf);
    if (pInner != nullptr) pInner->m_point = self.m_point - shift;
    if (pOuter != nullptr) pOuter->m_point = self.m_point + shift;
}

ENuFitResult CNuLine::FitMinZoneEx(const CNuPointArray& points, double* pdZone, double dTolerance,
                                   long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, "CNuLine", dTolerance, [&]() {
        FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    });
}

ENuFitResult CNuLine::FitMinZoneEx(const CNuPointArray& points, double* pdZone, CNuLine* pInner,
                                   CNuLine* pOuter, double dTolerance, long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, "CNuLine", dTolerance, [&]() {
        FitMinZone(points, pdZone, pInner, pOuter, dTolerance, lMaxIterations);
    });
}

}  // namespace numorix
