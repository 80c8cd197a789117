// Maximum inscribed circle (FitMax) and minimum circumscribed circle (FitMin) of points in their
// least-squares plane.
//
// Both walk the centre C across the plane from contact to contact. With contacts on the circle
// of radius r, the centre moves along a unit direction e that keeps them equidistant; a point P
// meets the moving circle (as far from C + t e as contact 0) at the travel
//   t = (|P - C| - r)(|P - C| + r) / (2 (P - contact 0) . e),
// and the nearest such point becomes the next contact. The inscribed circle (side -1) grows away
// from its contacts; the circumscribed one (side +1) shrinks toward them. With three contacts
// the multipliers l_k of
//   sum l_k 2 (C - P_k) = 0,  sum l_k 2 (-r) = -1
// decide: all strictly positive means the contacts enclose the centre and the circle is optimal;
// otherwise the contact of the least multiplier is dropped and the walk goes on. At most ten
// times as many exchange rounds as there are points are run.
#include <algorithm>
#include <cmath>
#include <vector>

#include "numorix/curves/circle.h"
#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/double_array.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"

namespace numorix {

namespace {

const double kPi = 3.14159265358979323846;

struct SWalk {
    const double* x;
    const double* y;
    int n;
    double dTolerance;
    int nSide;  // -1 inscribed, +1 circumscribed
    double cx;
    double cy;
    double r;
    std::vector<int> contacts;
};

enum EStep { eMoved, eTouched, eStopped };

double DistanceTo(const SWalk& w, int i) {
    return fit::ScaledDistance(w.x[i] - w.cx, w.y[i] - w.cy, 0.0);
}

bool IsContact(const SWalk& w, int i) {
    for (int c : w.contacts)
        if (!(std::fabs(w.x[i] - w.x[c]) > w.dTolerance) &&
            !(std::fabs(w.y[i] - w.y[c]) > w.dTolerance))
            return true;
    return false;
}

// One move of the centre along (ex, ey) to the next contact.
EStep Step(SWalk& w, double ex, double ey, int nExclude) {
    int c0 = w.contacts[0];
    double dLimit = 0.0;
    if (w.nSide == 1) {
        dLimit = ex * (w.x[c0] - w.cx) + ey * (w.y[c0] - w.cy);
        if (!(dLimit > w.dTolerance)) return eStopped;
    }
    double dBest = NuGetLarge();
    int nBest = -1;
    for (int i = 0; i < w.n; ++i) {
        if (i == nExclude || IsContact(w, i)) continue;
        double g = (w.x[i] - w.x[c0]) * ex + (w.y[i] - w.y[c0]) * ey;
        if (!(w.nSide * g < 0.0)) continue;
        double d = DistanceTo(w, i);
        double t = (d - w.r) * (d + w.r) / g * 0.5;
        if (t < 0.0 || std::fabs(t) < NuGetTol()) {
            w.contacts.push_back(i);
            return eTouched;
        }
        if (t < dBest) {
            dBest = t;
            nBest = i;
        }
    }
    if (nBest < 0 || (w.nSide == 1 && !(dBest < dLimit))) {
        // Nothing stops the centre before the chord: the two contacts are antipodal.
        if (w.contacts.size() != 2) throw CNuBestfitException(11, "CNuCircle");
        if (w.nSide == 1) {
            int c1 = w.contacts[1];
            w.cx = (w.x[c0] + w.x[c1]) * 0.5;
            w.cy = (w.y[c0] + w.y[c1]) * 0.5;
            w.r = DistanceTo(w, c0);
        }
        return eStopped;
    }
    w.cx += dBest * ex;
    w.cy += dBest * ey;
    w.r = DistanceTo(w, c0);
    w.contacts.push_back(nBest);
    return eMoved;
}

// The direction that keeps the first two contacts equidistant: the sum of the unit vectors
// from the centre to them, or the perpendicular of one when they are antipodal; it points away
// from them for the inscribed circle and toward them for the circumscribed one. In the
// antipodal case it turns away from nRemoved, the contact just given up.
void Bisector(const SWalk& w, int nRemoved, double* pEx, double* pEy) {
    double adU[2][2];
    for (int k = 0; k < 2; ++k) {
        int c = w.contacts[static_cast<std::size_t>(k)];
        double dx = w.x[c] - w.cx;
        double dy = w.y[c] - w.cy;
        double d = std::sqrt(dx * dx + dy * dy);
        if (d > NuGetZero()) {
            dx /= d;
            dy /= d;
        }
        adU[k][0] = dx;
        adU[k][1] = dy;
    }
    double ex = adU[0][0] + adU[1][0];
    double ey = adU[0][1] + adU[1][1];
    double dLen = std::sqrt(ex * ex + ey * ey);
    if (dLen < w.dTolerance) {
        ex = -adU[0][1];
        ey = adU[0][0];
        if (nRemoved >= 0 && ex * (w.x[nRemoved] - w.cx) + ey * (w.y[nRemoved] - w.cy) > 0.0) {
            ex = -ex;
            ey = -ey;
        }
    } else {
        ex /= dLen;
        ey /= dLen;
        if (w.nSide == -1) {
            ex = -ex;
            ey = -ey;
        }
    }
    *pEx = ex;
    *pEy = ey;
}

// Multipliers of the three contacts; false when the system has no solution.
bool Multipliers(const SWalk& w, double* pdLambda) {
    CNuMatrix A(3, 3);
    double** a = A.GetData();
    for (int k = 0; k < 3; ++k) {
        int c = w.contacts[static_cast<std::size_t>(k)];
        a[0][k] = 2.0 * (w.cx - w.x[c]);
        a[1][k] = 2.0 * (w.cy - w.y[c]);
        a[2][k] = 2.0 * -w.r;
    }
    CNuLinearEquSys system;
    system.Solve(A, CNuVector(0.0, 0.0, -1.0));
    if (system.SolutionExists() == eNuFalse) return false;
    CNuVector l = system.GetSolution();
    for (int k = 0; k < 3; ++k)
        pdLambda[k] = l[k];
    return true;
}

// Whether the points within dTolerance of the circle enclose its centre: no angular gap
// between neighbours wider than 180 degrees plus NuGetDegreeTol().
bool TiesEnclose(const SWalk& w) {
    CNuDoubleArray angles(8);
    for (int i = 0; i < w.n; ++i)
        if (!(std::fabs(DistanceTo(w, i) - w.r) > w.dTolerance))
            angles.Add(std::atan2(w.y[i] - w.cy, w.x[i] - w.cx) * 180.0 / kPi);
    int m = angles.GetSize();
    if (m < 2) return false;
    angles.Sort();
    const double* a = angles.GetData();
    double dGap = a[0] + 360.0 - a[m - 1];
    for (int i = 1; i < m; ++i)
        if (a[i] - a[i - 1] > dGap) dGap = a[i] - a[i - 1];
    return !(dGap > 180.0 + NuGetDegreeTol());
}

// The walk from the seeded centre and first contact to the optimal circle.
void Walk(SWalk& w) {
    double ex = 0.0;
    double ey = 0.0;
    int nRemoved = -1;
    double dLastExchange = -1.0;
    long lRounds = 0;
    const long lMaxRounds = 10L * w.n;
    for (;;) {
        if (w.contacts.size() == 1) {
            int c = w.contacts[0];
            ex = w.nSide * (w.x[c] - w.cx);
            ey = w.nSide * (w.y[c] - w.cy);
            double d = std::sqrt(ex * ex + ey * ey);
            if (d > NuGetZero()) {
                ex /= d;
                ey /= d;
            }
            if (Step(w, ex, ey, nRemoved) == eStopped) throw CNuBestfitException(11, "CNuCircle");
            continue;
        }
        if (w.contacts.size() == 2) {
            Bisector(w, nRemoved, &ex, &ey);
            if (Step(w, ex, ey, nRemoved) == eStopped) {
                // The circumscribed circle on an antipodal pair is optimal; an inscribed one
                // that can grow without meeting any point has left the points.
                if (w.nSide == 1) return;
                throw CNuBestfitException(11, "CNuCircle");
            }
            continue;
        }
        // An exchange round.
        if (++lRounds > lMaxRounds) throw CNuBestfitException(11, "CNuCircle");
        if (w.contacts.size() > 3 ||
            (dLastExchange >= 0.0 && std::fabs(w.r - dLastExchange) < w.dTolerance)) {
            // Ties: several points on the circle. The circle is optimal if they enclose the
            // centre; otherwise three of them are kept and the multipliers decide.
            if (TiesEnclose(w)) return;
            w.contacts.resize(3);
        }
        double adLambda[3];
        if (!Multipliers(w, adLambda)) throw CNuBestfitException(11, "CNuCircle");
        if (adLambda[0] > 0.0 && adLambda[1] > 0.0 && adLambda[2] > 0.0) return;
        int nMin = 0;
        for (int k = 1; k < 3; ++k)
            if (adLambda[k] < adLambda[nMin]) nMin = k;
        nRemoved = w.contacts[static_cast<std::size_t>(nMin)];
        w.contacts.erase(w.contacts.begin() + nMin);
        dLastExchange = w.r;
    }
}

// The rounding of a finished walk, relative to the size of the circle and of the coordinates.
// Walks on sound data leave up to about 1e-11 (a certified cylinder of radius 225 seen along a
// trial axis: a point 3.5e-9 inside); the failures this check is for leave 1e-7 and more.
constexpr double kWalkRounding = 1e-10;

// Stored 211 unless the finished circle is finite and holds every point on its side: none
// inside the inscribed circle, none outside the circumscribed one, by more than the tolerance
// and the rounding. Two contacts nearly opposite about the centre (points far from the origin
// of their plane, nearly in line) give a sum of unit vectors whose direction is rounding, and
// the walk along it ends on a circle that a point crosses.
void CheckHolds(const SWalk& w) {
    if (!std::isfinite(w.cx) || !std::isfinite(w.cy) || !std::isfinite(w.r))
        throw CNuBestfitException(11, "CNuCircle");
    double dScale = std::fabs(w.r);
    for (int i = 0; i < w.n; ++i)
        dScale = std::max(dScale, std::max(std::fabs(w.x[i]), std::fabs(w.y[i])));
    double dSlack = std::max(w.dTolerance, 0.0) + kWalkRounding * dScale;
    for (int i = 0; i < w.n; ++i)
        if (w.nSide * (DistanceTo(w, i) - w.r) > dSlack) throw CNuBestfitException(11, "CNuCircle");
}

// The plane of the points and their coordinates in it.
struct SPlaneFrame {
    CNuPlane plane;
    CNuVector U;
    CNuVector V;
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> z;
};

void Project(const CNuPointArray& points, SPlaneFrame* pFrame) {
    CNuVector normal = pFrame->plane.GetNormal();
    normal.OrthonormalX(&pFrame->U);
    pFrame->V = normal * pFrame->U;
    const CNuPoint& o = pFrame->plane.GetPoint();
    int n = points.GetSize();
    pFrame->x.resize(static_cast<std::size_t>(n));
    pFrame->y.resize(static_cast<std::size_t>(n));
    pFrame->z.resize(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        CNuVector d = (points[i] - o).To3DVector();
        pFrame->x[static_cast<std::size_t>(i)] = d % pFrame->U;
        pFrame->y[static_cast<std::size_t>(i)] = d % pFrame->V;
        pFrame->z[static_cast<std::size_t>(i)] = d % normal;
    }
}

CNuPoint WorldCentre(const SPlaneFrame& f, double cx, double cy) {
    const CNuPoint& o = f.plane.GetPoint();
    return CNuPoint(o.x() + cx * f.U[0] + cy * f.V[0], o.y() + cx * f.U[1] + cy * f.V[1],
                    o.z() + cx * f.U[2] + cy * f.V[2]);
}

}  // namespace

void CNuCircle::FitMax(const CNuPointArray& points, double dTolerance) {
    fit::CheckFinite(points, "CNuCircle");
    fit::CheckTolerance(dTolerance, "CNuCircle");
    CNuVector v;
    int nCollinear = CNuGeometry::AreCollinear(points, &v, dTolerance);
    int n = points.GetSize();
    if (n < 3) throw CNuBestfitException(1, "CNuCircle", 3);
    if (nCollinear != 0) throw CNuBestfitException(3, "CNuCircle", 3);
    SPlaneFrame f;
    f.plane.Fit(points);
    Project(points, &f);
    for (double z : f.z)
        if (std::fabs(z) > dTolerance) throw CNuBestfitException(5, "CNuCircle");

    SWalk w{f.x.data(), f.y.data(), n, dTolerance, -1, 0.0, 0.0, 0.0, {}};
    double dNear = NuGetLarge();
    int nNear = -1;
    bool bOnMean = false;
    for (int i = 0; i < n; ++i) {
        double d = DistanceTo(w, i);
        if (d > NuGetTol()) {
            if (d < dNear) {
                dNear = d;
                nNear = i;
            }
        } else {
            bOnMean = true;
        }
    }
    if (nNear < 0) throw CNuBestfitException(11, "CNuCircle");
    w.r = dNear;
    if (bOnMean) {
        w.cx = 0.5 * w.x[nNear];
        w.cy = 0.5 * w.y[nNear];
        w.r *= 0.5;
    }
    w.contacts.push_back(nNear);
    Walk(w);
    CheckHolds(w);
    m_dRadius = w.r;
    SetPosition(WorldCentre(f, w.cx, w.cy), f.U, f.plane.GetNormal());
}

void CNuCircle::FitMin(const CNuPointArray& points, double dTolerance) {
    fit::CheckFinite(points, "CNuCircle");
    fit::CheckTolerance(dTolerance, "CNuCircle");
    int n = points.GetSize();
    if (n < 1) throw CNuBestfitException(1, "CNuCircle", 1);
    CNuVector v;
    if (CNuGeometry::AreCollinear(points, &v, dTolerance) != 0 &&
        fit::OnOneLine(points, dTolerance)) {
        if (CNuGeometry::NumberDistinctPoints(points, 2, dTolerance) == 0) {
            m_dRadius = 0.0;
            SetPosition(points[0], CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
            return;
        }
        CNuVector direction;
        int nLow = 0;
        int nHigh = 0;
        fit::ExtremesAlongLine(points, &nLow, &nHigh, &direction);
        const CNuPoint& a = points[nLow];
        const CNuPoint& b = points[nHigh];
        CNuPoint centre((a.x() + b.x()) * 0.5, (a.y() + b.y()) * 0.5, (a.z() + b.z()) * 0.5);
        m_dRadius = 0.5 * fit::ScaledDistance(b.x() - a.x(), b.y() - a.y(), b.z() - a.z());
        CNuVector normal;
        direction.OrthonormalX(&normal);
        SetPosition(centre, direction, normal);
        return;
    }
    SPlaneFrame f;
    double dForm = 0.0;
    double dSum = 0.0;
    f.plane.Fit(points, &dForm, &dSum);
    if (dTolerance * 2.0 < dForm) throw CNuBestfitException(5, "CNuCircle");
    Project(points, &f);

    SWalk w{f.x.data(), f.y.data(), n, dTolerance, 1, 0.0, 0.0, 0.0, {}};
    double dFar = -1.0;
    int nFar = 0;
    for (int i = 0; i < n; ++i) {
        double d = DistanceTo(w, i);
        if (d > dFar) {
            dFar = d;
            nFar = i;
        }
    }
    w.r = dFar;
    w.contacts.push_back(nFar);
    Walk(w);
    CheckHolds(w);
    m_dRadius = w.r;
    SetPosition(WorldCentre(f, w.cx, w.cy), f.U, f.plane.GetNormal());
}

ENuFitResult CNuCircle::FitMaxEx(const CNuPointArray& points, double dTolerance) {
    return fit::RunFitExCatchAll(dTolerance, [&] { FitMax(points, dTolerance); });
}

ENuFitResult CNuCircle::FitMinEx(const CNuPointArray& points, double dTolerance) {
    return fit::RunFitExCatchAll(dTolerance, [&] { FitMin(points, dTolerance); });
}

}  // namespace numorix
