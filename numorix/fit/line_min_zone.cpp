// Minimum-zone line of coplanar points: the pair of parallel lines of least distance that holds
// every point (the zone being twice the largest orthogonal distance from the middle line).
//
// Planar solver, in the frame of the least-squares line (u along it, v across it):
//   1. Linear Chebyshev step: min over (a, b) of max_i |v_i - a - b u_i|, solved by a two-stage
//      exchange on a 5 by (n + 1) tableau: rows 0 and 1 the system (1, u_i), row 2 the
//      right-hand side v_i, row 3 the residuals, row 4 the column labels; column n holds the
//      solution (a, b), the levelled deviation, the iteration count and the rank. Stage 1
//      pivots on the largest entry (pivots not above dTolerance do not count towards the rank),
//      stage 2 exchanges one reference point at a time until no residual exceeds the levelled
//      deviation by dTolerance. A rank below 2 turns the frame by the slope b and repeats it.
//   2. Support-point exchange: starting from the wider of the x and y extreme pairs, the chord
//      through the pair splits the points; a chord with no point off it by dTolerance on its
//      outer side is a bounding line, and its outermost point on the inner side the third
//      support. One exchange moves the chord along the bounding lines (each next chord leaves
//      every point on its inner side) until a strictly narrower zone appears, and flags the
//      change. A bounding line whose inner side holds a parallel edge has 4 supports and its
//      zone is settled: the parallel edge, of the same width, never replaces it. The pass ends
//      when an exchange flags no change: the bounding lines have been gone round.
//   lMaxIterations bounds the exchanges; when the count reaches it, even with the last exchange
//   flagging no change, the fit is not converged (stored 212).
// Points in space (not within dTolerance of one plane) have the minimum circumscribed cylinder as
// their zone: the line is its axis and the zone its diameter; the two-line form refuses them
// (stored 205), since no pair of lines bounds them.
#include <cmath>
#include <vector>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/cyl_surf.h"

namespace numorix {

namespace {

struct SXY {
    double x;
    double y;
};

// Relative rounding of a point's distance from the frame's plane: 2^-40 of the largest
// coordinate difference from point 0, some thousands of units in the last place.
constexpr double kProjectionRounding = 0x1p-40;

// Twice the signed area of (o, a, b): positive when b lies to the left of o -> a.
double Cross(const SXY& o, const SXY& a, const SXY& b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

// Stored 211 unless every projected coordinate is a finite number: no exchange can order NaN
// residuals. The points were checked on entry (fit::CheckFinite); finite coordinates near the
// largest double can still overflow in the projection.
void CheckProjectedFinite(const std::vector<SXY>& pts) {
    for (const SXY& q : pts)
        if (!std::isfinite(q.x) || !std::isfinite(q.y)) throw CNuBestfitException(11, "CNuLine");
}

// What the Chebyshev step gives back.
struct SChebyshev {
    int nRank = 0;
    long lIterations = 0;
    double dA = 0.0;
    double dB = 0.0;
    int anSupport[3] = {-1, -1, -1};
};

// Rows of the tableau.
enum { kRowOne = 0, kRowU = 1, kRowRhs = 2, kRowWork = 3, kRowLabel = 4, kRows = 5 };

// Levelled line through three reference columns ordered by u: residuals +h, -h, +h.
// False when the outer two share their u within dTolerance.
bool Level(double** ppT, const int* pnRef, double dTolerance, double* pdA, double* pdB,
           double* pdH) {
    double u1 = ppT[kRowU][pnRef[0]];
    double u2 = ppT[kRowU][pnRef[1]];
    double u3 = ppT[kRowU][pnRef[2]];
    double v1 = ppT[kRowRhs][pnRef[0]];
    double v2 = ppT[kRowRhs][pnRef[1]];
    double v3 = ppT[kRowRhs][pnRef[2]];
    if (!(std::fabs(u3 - u1) > dTolerance)) return false;
    double b = (v3 - v1) / (u3 - u1);
    double c1 = v1 - b * u1;
    double c2 = v2 - b * u2;
    *pdB = b;
    *pdA = 0.5 * (c1 + c2);
    *pdH = 0.5 * (c1 - c2);
    return true;
}

// Sorts three reference columns by u (three compares, stable).
void OrderByU(double** ppT, int* pnRef) {
    for (int i = 1; i < 3; ++i)
        for (int j = i; j > 0 && ppT[kRowU][pnRef[j]] < ppT[kRowU][pnRef[j - 1]]; --j) {
            int t = pnRef[j];
            pnRef[j] = pnRef[j - 1];
            pnRef[j - 1] = t;
        }
}

// The linear Chebyshev step on the points (u_i, v_i).
SChebyshev ChebyshevStep(const std::vector<SXY>& uv, double dTolerance) {
    SChebyshev result;
    int n = static_cast<int>(uv.size());
    int nCols = n + 1;
    std::vector<double> storage(static_cast<std::size_t>(kRows * nCols));
    double* apRows[kRows];
    for (int r = 0; r < kRows; ++r)
        apRows[r] = storage.data() + static_cast<std::size_t>(r * nCols);
    double** ppT = apRows;
    for (int i = 0; i < n; ++i) {
        ppT[kRowOne][i] = 1.0;
        ppT[kRowU][i] = uv[static_cast<std::size_t>(i)].x;
        ppT[kRowRhs][i] = uv[static_cast<std::size_t>(i)].y;
        ppT[kRowWork][i] = 0.0;
        ppT[kRowLabel][i] = i;
    }
    // Entries are compared on the scale of the tolerance: a pivot counts when it exceeds 1.
    double dScale = dTolerance > 0.0 ? 1.0 / dTolerance : 1.0;
    double dUnit = dTolerance > 0.0 ? 1.0 : 0.0;

    // Stage 1: Gauss-Jordan on the system rows with the largest remaining entry as pivot. The
    // work row keeps the system rows' eliminated copy of u; rows 0 and 1 stay as they were so
    // that stage 2 reads the data.
    double* pdWork = ppT[kRowWork];
    int nFirst = -1;
    {
        // First pivot: the largest entry of rows 0 and 1.
        double dBest = -1.0;
        int nRow = 0;
        for (int r = kRowOne; r <= kRowU; ++r)
            for (int i = 0; i < n; ++i)
                if (std::fabs(ppT[r][i]) > dBest) {
                    dBest = std::fabs(ppT[r][i]);
                    nFirst = i;
                    nRow = r;
                }
        if (nFirst >= 0 && dBest * dScale > dUnit) {
            result.nRank = 1;
            // Eliminate the pivot row from the other row: what is left of the system in the
            // other row, column by column, lands in the work row.
            int nOther = nRow == kRowOne ? kRowU : kRowOne;
            double dFactor = ppT[nOther][nFirst] / ppT[nRow][nFirst];
            for (int i = 0; i < n; ++i)
                pdWork[i] = ppT[nOther][i] - dFactor * ppT[nRow][i];
        } else {
            for (int i = 0; i < n; ++i)
                pdWork[i] = 0.0;
        }
    }
    int nSecond = -1;
    if (result.nRank == 1) {
        double dBest = -1.0;
        for (int i = 0; i < n; ++i)
            if (i != nFirst && std::fabs(pdWork[i]) > dBest) {
                dBest = std::fabs(pdWork[i]);
                nSecond = i;
            }
        if (nSecond >= 0 && dBest * dScale > dUnit) result.nRank = 2;
    }
    if (result.nRank < 2) {
        // One direction only: a horizontal line through the middle of the v range.
        double dLow = NuGetLarge();
        double dHigh = -NuGetLarge();
        for (int i = 0; i < n; ++i) {
            dLow = std::fmin(dLow, ppT[kRowRhs][i]);
            dHigh = std::fmax(dHigh, ppT[kRowRhs][i]);
        }
        result.dA = 0.5 * (dLow + dHigh);
        result.dB = 0.0;
        ppT[kRowOne][n] = result.dA;
        ppT[kRowU][n] = result.dB;
        ppT[kRowLabel][n] = result.nRank;
        return result;
    }

    // Stage 2: a reference of three columns, the two pivots and the column farthest from the
    // line through them, levelled and exchanged one column at a time. Each exchange raises the
    // levelled deviation, so no reference returns; n + 1 exchanges bound the loop all the same.
    int anRef[3] = {nFirst, nSecond, -1};
    {
        double du = ppT[kRowU][nSecond] - ppT[kRowU][nFirst];
        double b = du != 0.0 ? (ppT[kRowRhs][nSecond] - ppT[kRowRhs][nFirst]) / du : 0.0;
        double a = ppT[kRowRhs][nFirst] - b * ppT[kRowU][nFirst];
        double dBest = -1.0;
        for (int i = 0; i < n; ++i) {
            if (i == nFirst || i == nSecond) continue;
            double r = std::fabs(ppT[kRowRhs][i] - a - b * ppT[kRowU][i]);
            if (r > dBest) {
                dBest = r;
                anRef[2] = i;
            }
        }
    }
    if (anRef[2] < 0) anRef[2] = nFirst;
    OrderByU(ppT, anRef);
    double a = 0.0;
    double b = 0.0;
    double h = 0.0;
    long lIter = 0;
    while (lIter <= n && Level(ppT, anRef, dTolerance, &a, &b, &h)) {
        ++lIter;
        int k = -1;
        double dWorst = std::fabs(h) + dTolerance;
        for (int i = 0; i < n; ++i) {
            pdWork[i] = ppT[kRowRhs][i] - a - b * ppT[kRowU][i];
            if (std::fabs(pdWork[i]) > dWorst) {
                dWorst = std::fabs(pdWork[i]);
                k = i;
            }
        }
        if (k < 0) break;
        // Exchange: k takes the place of the neighbour in u order whose residual has its sign,
        // or, beyond an end whose residual has the other sign, the far end goes.
        double dSign = pdWork[k] > 0.0 ? 1.0 : -1.0;
        double uk = ppT[kRowU][k];
        auto same = [&](int j) { return (pdWork[anRef[j]] > 0.0 ? 1.0 : -1.0) == dSign; };
        if (uk < ppT[kRowU][anRef[0]]) {
            if (same(0)) {
                anRef[0] = k;
            } else {
                anRef[2] = anRef[1];
                anRef[1] = anRef[0];
                anRef[0] = k;
            }
        } else if (uk > ppT[kRowU][anRef[2]]) {
            if (same(2)) {
                anRef[2] = k;
            } else {
                anRef[0] = anRef[1];
                anRef[1] = anRef[2];
                anRef[2] = k;
            }
        } else if (uk < ppT[kRowU][anRef[1]]) {
            anRef[same(0) ? 0 : 1] = k;
        } else {
            anRef[same(2) ? 2 : 1] = k;
        }
    }
    result.lIterations = lIter;
    result.dA = a;
    result.dB = b;
    for (int j = 0; j < 3; ++j)
        result.anSupport[j] = static_cast<int>(ppT[kRowLabel][anRef[j]]);
    ppT[kRowOne][n] = a;
    ppT[kRowU][n] = b;
    ppT[kRowRhs][n] = h;
    ppT[kRowWork][n] = static_cast<double>(lIter);
    ppT[kRowLabel][n] = result.nRank;
    return result;
}

// Next bounding chord from vertex nFrom: the point c with no point to the right of nFrom -> c,
// the farthest one among points on that line.
int Wrap(const std::vector<SXY>& pts, int nFrom) {
    int n = static_cast<int>(pts.size());
    const SXY& o = pts[static_cast<std::size_t>(nFrom)];
    int c = -1;
    for (int i = 0; i < n; ++i) {
        const SXY& p = pts[static_cast<std::size_t>(i)];
        if (p.x == o.x && p.y == o.y) continue;
        if (c < 0) {
            c = i;
            continue;
        }
        const SXY& q = pts[static_cast<std::size_t>(c)];
        double s = Cross(o, q, p);
        if (s < 0.0 || (s == 0.0 && (p.x - o.x) * (p.x - o.x) + (p.y - o.y) * (p.y - o.y) >
                                        (q.x - o.x) * (q.x - o.x) + (q.y - o.y) * (q.y - o.y)))
            c = i;
    }
    return c;
}

// The zone of the chord a -> b: the largest distance at its left, its point, and whether the
// chord bounds the set (nothing right of it by dTolerance or more).
double ChordZone(const std::vector<SXY>& pts, int a, int b, double dTolerance, int* pnFar,
                 bool* pbBounding) {
    const SXY& pa = pts[static_cast<std::size_t>(a)];
    const SXY& pb = pts[static_cast<std::size_t>(b)];
    double dLength = std::hypot(pb.x - pa.x, pb.y - pa.y);
    double dLeft = 0.0;
    double dRight = 0.0;
    int nFar = a;
    int n = static_cast<int>(pts.size());
    for (int i = 0; i < n; ++i) {
        double d = Cross(pa, pb, pts[static_cast<std::size_t>(i)]) / dLength;
        if (d > dLeft) {
            dLeft = d;
            nFar = i;
        }
        if (d < dRight) dRight = d;
    }
    *pnFar = nFar;
    // A point on the chord, its own ends at least, lies on neither side: with a tolerance of 0
    // or less the chord still bounds the set when no point lies strictly at its right.
    *pbBounding = !(dRight < 0.0) || -dRight < dTolerance;
    return dLeft;
}

// Result of the support-point exchange: p0 and p1 on one bounding line, p2 on the other.
struct SSupports {
    int n0 = -1;
    int n1 = -1;
    int n2 = -1;
    double dZone = 0.0;
};

SSupports SupportExchange(const std::vector<SXY>& pts, double dTolerance, long lMaxIterations) {
    int n = static_cast<int>(pts.size());
    // Extreme points, from NuGetLarge() as start.
    double dLarge = NuGetLarge();
    double dMinX = dLarge, dMaxX = -dLarge, dMinY = dLarge, dMaxY = -dLarge;
    int nMinX = 0, nMaxX = 0, nMinY = 0, nMaxY = 0;
    for (int i = 0; i < n; ++i) {
        const SXY& p = pts[static_cast<std::size_t>(i)];
        if (p.x < dMinX) dMinX = p.x, nMinX = i;
        if (p.x > dMaxX) dMaxX = p.x, nMaxX = i;
        if (p.y < dMinY) dMinY = p.y, nMinY = i;
        if (p.y > dMaxY) dMaxY = p.y, nMaxY = i;
    }
    bool bAlongX = dMaxX - dMinX >= dMaxY - dMinY;
    int nStart = bAlongX ? nMinX : nMinY;
    int nEnd = bAlongX ? nMaxX : nMaxY;

    SSupports best;
    best.dZone = NuGetLarge();
    // The starting pair's chord splits the set; when one side of it is empty it is already a
    // bounding line and its zone the first to beat.
    for (int nSide = 0; nSide < 2 && nStart != nEnd; ++nSide) {
        int a = nSide == 0 ? nStart : nEnd;
        int b = nSide == 0 ? nEnd : nStart;
        int nFar = -1;
        bool bBounding = false;
        double dZone = ChordZone(pts, a, b, dTolerance, &nFar, &bBounding);
        if (bBounding && dZone < best.dZone) {
            best.n0 = a;
            best.n1 = b;
            best.n2 = nFar;
            best.dZone = dZone;
        }
    }
    // The walk along the bounding chords: from vertex nA, each chord nA -> Wrap(nA). It ends
    // when it returns to its first chord; n + 1 steps bound it whatever the arithmetic does.
    int nA = nStart;
    int nMark = -1;
    long lSteps = 0;
    bool bClosed = false;
    long iter = 0;
    while (iter < lMaxIterations) {
        ++iter;
        bool bChange = false;
        while (!bClosed && lSteps <= n) {
            ++lSteps;
            int nB = Wrap(pts, nA);
            if (nB < 0) {
                bClosed = true;
                break;
            }
            int nFar = -1;
            bool bBounding = false;
            double dZone = ChordZone(pts, nA, nB, dTolerance, &nFar, &bBounding);
            int nFrom = nA;
            nA = nB;
            // The first chord ends at a true vertex; coming back to it closes the round.
            if (nMark < 0)
                nMark = nB;
            else if (nA == nMark)
                bClosed = true;
            if (bBounding && dZone < best.dZone) {
                best.n0 = nFrom;
                best.n1 = nB;
                best.n2 = nFar;
                best.dZone = dZone;
                bChange = true;
                break;
            }
        }
        if (!bChange) break;
    }
    if (!(iter < lMaxIterations)) throw CNuBestfitException(12, "CNuLine");
    return best;
}

// Last pass when the exchange found no bounding line: every pair, both ways, as chord.
SSupports ScanAllPairs(const std::vector<SXY>& pts, double dTolerance) {
    SSupports best;
    best.dZone = NuGetLarge();
    int n = static_cast<int>(pts.size());
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            const SXY& a = pts[static_cast<std::size_t>(i)];
            const SXY& b = pts[static_cast<std::size_t>(j)];
            if (i == j || (a.x == b.x && a.y == b.y)) continue;
            int nFar = -1;
            bool bBounding = false;
            double dZone = ChordZone(pts, i, j, dTolerance, &nFar, &bBounding);
            if (bBounding && dZone < best.dZone) {
                best.n0 = i;
                best.n1 = j;
                best.n2 = nFar;
                best.dZone = dZone;
            }
        }
    return best;
}

// The line through the supports: direction p0 - p1 with its larger component positive, location
// halfway between p2 and its foot on the chord.
void SupportLine(const SXY& p0, const SXY& p1, const SXY& p2, SXY* pDir, SXY* pLoc) {
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
    *pDir = SXY{dx, dy};
    *pLoc = SXY{(p1.x + t * dx + p2.x) * 0.5, (p1.y + t * dy + p2.y) * 0.5};
}

// The planar solver on points relative to a reference point, with the least-squares direction
// (dDirX, dDirY) in the same frame. Returns the zone; *pDir and *pLoc are the middle line.
double PlanarZone(const std::vector<SXY>& pts, double dDirX, double dDirY, double dTolerance,
                  long lMaxIterations, SXY* pDir, SXY* pLoc) {
    CheckProjectedFinite(pts);
    // The working frame: axes e1 (u) and e2 (v) in the caller's coordinates.
    SXY e1{dDirX, dDirY};
    SXY e2{-dDirY, dDirX};
    std::size_t n = pts.size();
    std::vector<SXY> uv(n);
    auto project = [&]() {
        for (std::size_t i = 0; i < n; ++i)
            uv[i] = SXY{e1.x * pts[i].x + e1.y * pts[i].y, e2.x * pts[i].x + e2.y * pts[i].y};
    };
    project();
    SChebyshev cheb = ChebyshevStep(uv, dTolerance);
    if (cheb.nRank < 2) {
        // Turn the frame by the slope and solve again there.
        double c = 1.0 / std::sqrt(cheb.dB * cheb.dB + 1.0);
        double s = cheb.dB * c;
        SXY f1{c * e1.x + s * e2.x, c * e1.y + s * e2.y};
        SXY f2{-s * e1.x + c * e2.x, -s * e1.y + c * e2.y};
        e1 = f1;
        e2 = f2;
        project();
        cheb = ChebyshevStep(uv, dTolerance);
    }
    SSupports sup = SupportExchange(uv, dTolerance, lMaxIterations);
    if (sup.n0 < 0) sup = ScanAllPairs(uv, dTolerance);
    if (sup.n0 < 0) {
        // No chord at all (every point the same within the arithmetic): the strip of width 0.
        *pDir = SXY{dDirX, dDirY};
        *pLoc = pts.empty() ? SXY{0.0, 0.0} : pts[0];
        return 0.0;
    }
    SXY dir{1.0, 0.0};
    SXY loc{0.0, 0.0};
    SupportLine(uv[static_cast<std::size_t>(sup.n0)], uv[static_cast<std::size_t>(sup.n1)],
                uv[static_cast<std::size_t>(sup.n2)], &dir, &loc);
    *pDir = SXY{dir.x * e1.x + dir.y * e2.x, dir.x * e1.y + dir.y * e2.y};
    *pLoc = SXY{loc.x * e1.x + loc.y * e2.x, loc.x * e1.y + loc.y * e2.y};
    return sup.dZone;
}

bool Reaches(double dx, double dy, double dz, double dTol) {
    return std::fabs(dx) >= dTol || std::fabs(dy) >= dTol || std::fabs(dz) >= dTol;
}

// Makes an axis of the plane's frame a unit vector. Outside 1e-150 to 1e150 its squares lose
// their digits or overflow, so it is scaled by its largest component first; a zero axis (points
// that coincide, let through by a tolerance of 0 or less) spans no frame: stored 211.
void UnitAxis(CNuVector* pAxis) {
    CNuVector& a = *pAxis;
    double m = a.Magnitude();
    if (!(m > 1e-150 && m < 1e150)) {
        double dLargest = std::fmax(std::fabs(a[0]), std::fmax(std::fabs(a[1]), std::fabs(a[2])));
        if (!(dLargest > 0.0) || !std::isfinite(dLargest)) throw CNuBestfitException(11, "CNuLine");
        a = CNuVector(a[0] / dLargest, a[1] / dLargest, a[2] / dLargest);
    }
    a.Normalise();
}

// The least-squares direction as the first axis of the planar solver, in the plane's frame. A
// direction with no part in the plane (its length there not above NuGetZero()) gives no frame:
// the frame's own x axis takes its place. That happens far from the origin, where the rounded
// mean point puts the whole scatter into the coordinate that all points share.
SXY InPlaneDirection(double dX, double dY) {
    double dLength = std::hypot(dX, dY);
    if (!(dLength > NuGetZero())) return SXY{1.0, 0.0};
    return SXY{dX / dLength, dY / dLength};
}

}  // namespace

void CNuLine::FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                         long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, "CNuLine");
    fit::CheckFinite(points, "CNuLine");
    fit::CheckTolerance(dTolerance, "CNuLine");
    int n = points.GetSize();
    if (n < 2) throw CNuBestfitException(1, "CNuLine", 2);
    if (CNuGeometry::NumberDistinctPoints(points, 2, dTolerance) == 0)
        throw CNuBestfitException(2, "CNuLine", 2);
    Fit(points);
    *pdZone = 0.0;
    CNuVector normal;
    if (CNuGeometry::AreCollinear(points, &normal, dTolerance) != 0 &&
        fit::OnOneLine(points, dTolerance))
        return;
    CNuPlane plane;
    const CNuPoint* p = points.GetData();
    CNuPoint mean = points.MeanPoint();
    std::vector<SXY> local(static_cast<std::size_t>(n));
    SXY dir{1.0, 0.0};
    SXY loc{0.0, 0.0};
    if (CNuGeometry::AreCoplanar(points, &plane, dTolerance) == 0) {
        // Points in space: the zone is the diameter of the minimum circumscribed cylinder, whose
        // axis is the line.
        CNuCylSurf cylinder(1.0);
        cylinder.FitMin(points, dTolerance, lMaxIterations);
        *pdZone = 2.0 * cylinder.GetRadius();
        m_point = cylinder.GetAxisPoint();
        m_direction = cylinder.GetAxisDirection();
    } else if (points.Is2D(NuGetZero()) == eNuFalse) {
        // Three non-collinear points: the first differing from point 0, then the first later
        // point off the line through those two.
        int k = 1;
        while (k < n &&
               !Reaches(p[k].x() - p[0].x(), p[k].y() - p[0].y(), p[k].z() - p[0].z(), dTolerance))
            ++k;
        CNuVector axisX;
        CNuVector axisZ;
        int l = k + 1;
        if (k < n) {
            axisX = (p[k] - p[0]).To3DVector();
            for (; l < n; ++l) {
                axisZ = axisX * (p[l] - p[0]).To3DVector();
                if (Reaches(axisZ[0], axisZ[1], axisZ[2], dTolerance)) break;
            }
        }
        if (k >= n || l >= n) {
            // Taken for a line by the rule but not on one (its cross products are unscaled):
            // the frame of the widest triangle.
            int a = 0;
            int b = 0;
            int c = 0;
            fit::WideTriangle(points, &a, &b, &c);
            axisX = (p[b] - p[a]).To3DVector();
            axisZ = axisX * (p[c] - p[a]).To3DVector();
        }
        UnitAxis(&axisX);
        UnitAxis(&axisZ);
        CNuVector axisY = axisZ * axisX;
        // The zone is solved on the points' projections into the frame's plane. That plane holds
        // points 0, k and l; the coplanarity test measured the others against the plane of
        // another triple, so a point may lie far off this one, and the projection would drop
        // that part of its distance from the line: stored 211 when a point lies farther off than
        // the tolerance and the rounding of the projection.
        double dOff = 0.0;
        double dSpan = 0.0;
        for (int i = 0; i < n; ++i) {
            CNuVector d = (p[i] - p[0]).To3DVector();
            local[static_cast<std::size_t>(i)] = SXY{d % axisX, d % axisY};
            dOff = std::fmax(dOff, std::fabs(d % axisZ));
            dSpan = std::fmax(
                dSpan, std::fmax(std::fabs(d[0]), std::fmax(std::fabs(d[1]), std::fabs(d[2]))));
        }
        if (dOff > std::fmax(dTolerance, 0.0) + kProjectionRounding * dSpan)
            throw CNuBestfitException(11, "CNuLine");
        SXY ls = InPlaneDirection(m_direction % axisX, m_direction % axisY);
        *pdZone = PlanarZone(local, ls.x, ls.y, dTolerance, lMaxIterations, &dir, &loc);
        // Cleaned in the plane's own frame, then carried back as a vector.
        CNuVector inPlane(dir.x, dir.y, 0.0);
        fit::CleanDirection(&inPlane);
        CNuVector direction = axisX * inPlane[0] + axisY * inPlane[1];
        CNuPoint location = p[0] + CNuPoint(axisX[0] * loc.x + axisY[0] * loc.y,
                                            axisX[1] * loc.x + axisY[1] * loc.y,
                                            axisX[2] * loc.x + axisY[2] * loc.y);
        m_direction = direction;
        m_point = location;
    } else {
        for (int i = 0; i < n; ++i)
            local[static_cast<std::size_t>(i)] = SXY{p[i].x() - p[0].x(), p[i].y() - p[0].y()};
        SXY ls = InPlaneDirection(m_direction[0], m_direction[1]);
        *pdZone = PlanarZone(local, ls.x, ls.y, dTolerance, lMaxIterations, &dir, &loc);
        CNuVector direction(dir.x, dir.y, 0.0);
        fit::CleanDirection(&direction);
        m_direction = direction;
        m_point = CNuPoint(p[0].x() + loc.x, p[0].y() + loc.y, p[0].z());
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
        CNuVector v;
        if (CNuGeometry::AreCollinear(points, &v, dTolerance) != 0 &&
            !fit::OnOneLine(points, dTolerance)) {
            // The plane of the rule is normal to a line the points are not on: that of the
            // widest triangle.
            const CNuPoint* p = points.GetData();
            int a = 0;
            int b = 0;
            int c = 0;
            fit::WideTriangle(points, &a, &b, &c);
            normal = (p[b] - p[a]).To3DVector() * (p[c] - p[a]).To3DVector();
            UnitAxis(&normal);
        }
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
