// Maximum inscribed sphere (FitMax) and minimum circumscribed sphere (FitMin) of points in space.
//
// Both walk the centre C from contact to contact, as the circle's extreme fits do in the plane.
// With the contacts on the sphere of radius r, the centre moves along a unit direction e that
// keeps them equidistant: along the line to the one contact, along the sum of the unit vectors to
// two contacts (the line through their midpoint, normal to their chord), along the normal of the
// plane of three. A point P meets the moving sphere (lies as far from C + t e as contact 0 does)
// at the travel
//   t = (|P - C| - r)(|P - C| + r) / (2 (P - contact 0) . e),
// and the nearest such point becomes the next contact. The inscribed sphere (side -1) grows away
// from its contacts; the circumscribed one (side +1) shrinks toward them and stops, at the latest,
// where the line of travel comes nearest contact 0. With four contacts the multipliers l_k of
//   sum l_k 2 (C - P_k) = 0,  sum l_k 2 (-r) = -1
// decide (with three, for the circumscribed sphere whose centre reached their plane, the same
// equations by least squares): all strictly positive means the contacts enclose the centre and
// the sphere is optimal; otherwise the contact of the least multiplier is dropped and the walk
// goes on away from it. When an exchange leaves the radius as it was, the points on the sphere
// are tied, and they end the walk if they enclose the centre: the least |sum l_k u_k|^2 +
// (sum l_k - 1)^2 over l >= 0 (non-negative least squares on the unit vectors u_k from the centre)
// vanishes exactly when the centre lies in their convex hull. At most ten times as many exchange
// rounds as there are points are run.
#include <algorithm>
#include <cmath>
#include <vector>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"
#include "numorix/surfaces/sph_surf.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuSphSurf";

// The residual below which tied unit vectors count as enclosing the centre: the distance of the
// centre from their hull, in units of the radius.
constexpr double kEnclosed = 1e-9;

// The rounding of a finished walk, relative to the size of the sphere and of the coordinates.
constexpr double kWalkRounding = 1e-10;

struct SWalk {
    const CNuPoint* p;
    int n;
    double dTolerance;
    int nSide;  // -1 inscribed, +1 circumscribed
    double c[3];
    double r;
    std::vector<int> contacts;
};

enum EStep { eMoved, eTouched, eStopped };

double DistanceTo(const SWalk& w, int i) {
    return fit::ScaledDistance(w.p[i].x() - w.c[0], w.p[i].y() - w.c[1], w.p[i].z() - w.c[2]);
}

void Offset(const SWalk& w, int i, double* pd) {
    pd[0] = w.p[i].x() - w.c[0];
    pd[1] = w.p[i].y() - w.c[1];
    pd[2] = w.p[i].z() - w.c[2];
}

double At(const CNuPoint& q, int k) { return k == 0 ? q.x() : (k == 1 ? q.y() : q.z()); }

double Dot(const double* a, const double* b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

// Normalises when the length is above NuGetZero(); returns the length.
double Normalise(double* pd) {
    double d = std::sqrt(Dot(pd, pd));
    if (d > NuGetZero())
        for (int k = 0; k < 3; ++k)
            pd[k] /= d;
    return d;
}

bool IsContact(const SWalk& w, int i) {
    for (int c : w.contacts)
        if (!(std::fabs(w.p[i].x() - w.p[c].x()) > w.dTolerance) &&
            !(std::fabs(w.p[i].y() - w.p[c].y()) > w.dTolerance) &&
            !(std::fabs(w.p[i].z() - w.p[c].z()) > w.dTolerance))
            return true;
    return false;
}

// One move of the centre along e to the next contact. The circumscribed sphere stops where the
// line of travel comes nearest contact 0, when no point meets it before.
EStep Step(SWalk& w, const double* e, int nExclude) {
    int c0 = w.contacts[0];
    double ad0[3];
    Offset(w, c0, ad0);
    double dLimit = 0.0;
    if (w.nSide == 1) {
        dLimit = Dot(e, ad0);
        if (!(dLimit > w.dTolerance)) return eStopped;
    }
    double dBest = NuGetLarge();
    int nBest = -1;
    for (int i = 0; i < w.n; ++i) {
        if (i == nExclude || IsContact(w, i)) continue;
        double adW[3] = {w.p[i].x() - w.p[c0].x(), w.p[i].y() - w.p[c0].y(),
                         w.p[i].z() - w.p[c0].z()};
        double g = Dot(adW, e);
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
        if (w.nSide == 1) {
            for (int k = 0; k < 3; ++k)
                w.c[k] += dLimit * e[k];
            w.r = DistanceTo(w, c0);
        }
        return eStopped;
    }
    for (int k = 0; k < 3; ++k)
        w.c[k] += dBest * e[k];
    w.r = DistanceTo(w, c0);
    w.contacts.push_back(nBest);
    return eMoved;
}

// A unit vector normal to a (unit or not), from v with its part along a removed; false when v
// has no such part.
bool NormalPart(const double* a, const double* v, double* pe) {
    double adA[3] = {a[0], a[1], a[2]};
    Normalise(adA);
    double t = Dot(v, adA);
    for (int k = 0; k < 3; ++k)
        pe[k] = v[k] - t * adA[k];
    double dLength = std::sqrt(Dot(pe, pe));
    double dScale = std::sqrt(Dot(v, v));
    if (!(dLength > 1e-8 * dScale) || !(dLength > NuGetZero())) return false;
    for (int k = 0; k < 3; ++k)
        pe[k] /= dLength;
    return true;
}

// The direction of travel for the present contacts (two or three): equidistant from them, away
// from them for the inscribed sphere and toward them for the circumscribed one, and, where the
// contacts leave the choice open, away from the contact nRemoved just given up.
bool Direction(const SWalk& w, int nRemoved, const double* adMean, double* e) {
    int c0 = w.contacts[0];
    double adRemoved[3] = {0.0, 0.0, 0.0};
    if (nRemoved >= 0)
        for (int k = 0; k < 3; ++k)
            adRemoved[k] = At(w.p[nRemoved], k) - At(w.p[c0], k);
    if (w.contacts.size() == 2) {
        double adU[2][3];
        for (int j = 0; j < 2; ++j) {
            Offset(w, w.contacts[static_cast<std::size_t>(j)], adU[j]);
            Normalise(adU[j]);
        }
        double adSum[3] = {adU[0][0] + adU[1][0], adU[0][1] + adU[1][1], adU[0][2] + adU[1][2]};
        double dLength = std::sqrt(Dot(adSum, adSum));
        // A sum of zero length is opposite contacts, also when the tolerance is 0 or below.
        if (!(dLength < w.dTolerance) && dLength > NuGetZero()) {
            for (int k = 0; k < 3; ++k)
                e[k] = w.nSide * adSum[k] / dLength;
            return true;
        }
        // Opposite contacts: any direction normal to their chord keeps them equidistant. The
        // circumscribed sphere on them cannot shrink; the inscribed one turns away from the
        // contact given up, else toward the mean of the points.
        double adChord[3] = {adU[1][0] - adU[0][0], adU[1][1] - adU[0][1], adU[1][2] - adU[0][2]};
        double adAway[3] = {-adRemoved[0], -adRemoved[1], -adRemoved[2]};
        double adMeanDir[3] = {adMean[0] - w.c[0], adMean[1] - w.c[1], adMean[2] - w.c[2]};
        if (nRemoved >= 0 && NormalPart(adChord, adAway, e)) return true;
        if (NormalPart(adChord, adMeanDir, e)) return true;
        CNuVector chord(adChord[0], adChord[1], adChord[2]);
        CNuVector x;
        chord.OrthonormalX(&x);
        for (int k = 0; k < 3; ++k)
            e[k] = x[k];
        return true;
    }
    // Three contacts: the normal of their plane.
    double ad1[3] = {0.0, 0.0, 0.0};
    double ad2[3] = {0.0, 0.0, 0.0};
    for (int k = 0; k < 3; ++k) {
        ad1[k] = At(w.p[w.contacts[1]], k) - At(w.p[c0], k);
        ad2[k] = At(w.p[w.contacts[2]], k) - At(w.p[c0], k);
    }
    e[0] = ad1[1] * ad2[2] - ad1[2] * ad2[1];
    e[1] = ad1[2] * ad2[0] - ad1[0] * ad2[2];
    e[2] = ad1[0] * ad2[1] - ad1[1] * ad2[0];
    double dLength = std::sqrt(Dot(e, e));
    if (!(dLength > NuGetZero())) return false;
    for (int k = 0; k < 3; ++k)
        e[k] /= dLength;
    double ad0[3];
    Offset(w, c0, ad0);
    double dToward = Dot(e, ad0);  // > 0: e runs toward the plane of the contacts
    double dSign = 1.0;
    if (w.nSide == 1) {
        dSign = dToward < 0.0 ? -1.0 : 1.0;
    } else if (nRemoved >= 0 && Dot(e, adRemoved) != 0.0) {
        // The contact given up must not come inside: e . (removed - contact 0) <= 0.
        dSign = Dot(e, adRemoved) > 0.0 ? -1.0 : 1.0;
    } else if (std::fabs(dToward) > w.dTolerance) {
        dSign = dToward > 0.0 ? -1.0 : 1.0;  // away from the plane: the sphere grows
    } else {
        double adMeanDir[3] = {adMean[0] - w.c[0], adMean[1] - w.c[1], adMean[2] - w.c[2]};
        dSign = Dot(e, adMeanDir) < 0.0 ? -1.0 : 1.0;
    }
    for (int k = 0; k < 3; ++k)
        e[k] *= dSign;
    return true;
}

// Multipliers of the present contacts (three or four); false when the system has no solution.
bool Multipliers(const SWalk& w, double* pdLambda) {
    int m = static_cast<int>(w.contacts.size());
    CNuMatrix A(4, m);
    double** a = A.GetData();
    for (int k = 0; k < m; ++k) {
        int c = w.contacts[static_cast<std::size_t>(k)];
        a[0][k] = 2.0 * (w.c[0] - w.p[c].x());
        a[1][k] = 2.0 * (w.c[1] - w.p[c].y());
        a[2][k] = 2.0 * (w.c[2] - w.p[c].z());
        a[3][k] = 2.0 * -w.r;
    }
    CNuVector b(4);
    b[3] = -1.0;
    CNuLinearEquSys system;
    system.Solve(A, b);
    if (system.SolutionExists() == eNuFalse) return false;
    CNuVector l = system.GetSolution();
    for (int k = 0; k < m; ++k)
        pdLambda[k] = l[k];
    return true;
}

// Whether the points within dTolerance of the sphere enclose its centre.
bool TiesEnclose(const SWalk& w) {
    std::vector<int> tied;
    for (int i = 0; i < w.n; ++i)
        if (!(std::fabs(DistanceTo(w, i) - w.r) > w.dTolerance)) tied.push_back(i);
    int m = static_cast<int>(tied.size());
    if (m < 2) return false;
    CNuMatrix A(4, m);
    double** a = A.GetData();
    for (int k = 0; k < m; ++k) {
        double adU[3];
        Offset(w, tied[static_cast<std::size_t>(k)], adU);
        Normalise(adU);
        a[0][k] = adU[0];
        a[1][k] = adU[1];
        a[2][k] = adU[2];
        a[3][k] = 1.0;
    }
    CNuVector b(4);
    b[3] = 1.0;
    CNuLinearEquSys system;
    system.SetNonnegative();
    system.Solve(A, b);
    if (system.SolutionExists() == eNuFalse) return false;
    CNuVector l = system.GetSolution();
    double dResidual = 0.0;
    for (int row = 0; row < 4; ++row) {
        double s = -b[row];
        for (int k = 0; k < m; ++k)
            s += a[row][k] * l[k];
        dResidual += s * s;
    }
    return std::sqrt(dResidual) < kEnclosed;
}

// The walk from the seeded centre and first contact to the optimal sphere.
void Walk(SWalk& w, const double* adMean) {
    double e[3] = {0.0, 0.0, 0.0};
    int nRemoved = -1;
    double dLastExchange = -1.0;
    long lRounds = 0;
    const long lMaxRounds = 10L * w.n;
    for (;;) {
        std::size_t m = w.contacts.size();
        if (m == 1) {
            Offset(w, w.contacts[0], e);
            for (double& d : e)
                d *= w.nSide;
            Normalise(e);
            if (Step(w, e, nRemoved) == eStopped) throw CNuBestfitException(11, kLocation);
            continue;
        }
        if (m == 2 || m == 3) {
            if (!Direction(w, nRemoved, adMean, e)) throw CNuBestfitException(11, kLocation);
            if (Step(w, e, nRemoved) != eStopped) continue;
            // An inscribed sphere that can grow without meeting any point has left the points.
            if (w.nSide == -1) throw CNuBestfitException(11, kLocation);
            // The circumscribed sphere on two contacts has reached their midpoint: optimal.
            if (m == 2) return;
            // On three, its centre lies in their plane: the multipliers decide.
        }
        // An exchange round.
        if (++lRounds > lMaxRounds) throw CNuBestfitException(11, kLocation);
        // An exchange that left the radius as it was (also exactly, under a tolerance of 0):
        // the points on the sphere are tied.
        if (dLastExchange >= 0.0 && !(std::fabs(w.r - dLastExchange) > w.dTolerance) &&
            TiesEnclose(w))
            return;
        double adLambda[4];
        if (!Multipliers(w, adLambda)) throw CNuBestfitException(11, kLocation);
        m = w.contacts.size();
        std::size_t nMin = 0;
        bool bAllPositive = true;
        for (std::size_t k = 0; k < m; ++k) {
            if (!(adLambda[k] > 0.0)) bAllPositive = false;
            if (adLambda[k] < adLambda[nMin]) nMin = k;
        }
        if (bAllPositive) return;
        nRemoved = w.contacts[nMin];
        w.contacts.erase(w.contacts.begin() + static_cast<long>(nMin));
        dLastExchange = w.r;
    }
}

// Stored 211 unless the finished sphere is finite and holds every point on its side: none inside
// the inscribed sphere, none outside the circumscribed one, by more than the tolerance and the
// rounding.
void CheckHolds(const SWalk& w) {
    if (!std::isfinite(w.c[0]) || !std::isfinite(w.c[1]) || !std::isfinite(w.c[2]) ||
        !std::isfinite(w.r))
        throw CNuBestfitException(11, kLocation);
    double dScale = std::fabs(w.r);
    for (int i = 0; i < w.n; ++i)
        for (int k = 0; k < 3; ++k)
            dScale = std::max(dScale, std::fabs(At(w.p[i], k) - w.c[k]));
    double dSlack = std::max(w.dTolerance, 0.0) + kWalkRounding * dScale;
    for (int i = 0; i < w.n; ++i)
        if (w.nSide * (DistanceTo(w, i) - w.r) > dSlack) throw CNuBestfitException(11, kLocation);
}

}  // namespace

void CNuSphSurf::FitMax(const CNuPointArray& points, double dTolerance) {
    fit::CheckFinite(points, kLocation);
    fit::CheckTolerance(dTolerance, kLocation);
    int n = points.GetSize();
    if (n < 4) throw CNuBestfitException(1, kLocation, 4);
    CNuVector v;
    if (CNuGeometry::AreCollinear(points, &v, dTolerance) != 0)
        throw CNuBestfitException(3, kLocation, 3);
    CNuPoint mean = points.MeanPoint();
    double adMean[3] = {mean.x(), mean.y(), mean.z()};
    SWalk w{points.GetData(), n, dTolerance, -1, {mean.x(), mean.y(), mean.z()}, 0.0, {}};
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
    if (nNear < 0) throw CNuBestfitException(11, kLocation);
    w.r = dNear;
    if (bOnMean) {
        // The mean is a point: start halfway to the nearest other one.
        for (int k = 0; k < 3; ++k)
            w.c[k] = 0.5 * (w.c[k] + At(points[nNear], k));
        w.r *= 0.5;
    }
    w.contacts.push_back(nNear);
    Walk(w, adMean);
    CheckHolds(w);
    m_dRadius = w.r;
    SetPosition(CNuPoint(w.c[0], w.c[1], w.c[2]), CNuVector(1.0, 0.0, 0.0),
                CNuVector(0.0, 0.0, 1.0));
}

void CNuSphSurf::FitMin(const CNuPointArray& points, double dTolerance) {
    fit::CheckFinite(points, kLocation);
    fit::CheckTolerance(dTolerance, kLocation);
    int n = points.GetSize();
    if (n < 1) throw CNuBestfitException(1, kLocation, 1);
    CNuVector v;
    if (CNuGeometry::AreCollinear(points, &v, dTolerance) != 0 &&
        fit::OnOneLine(points, dTolerance)) {
        // One point, coincident points and points on a line: the sphere on the two extremes.
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
        m_dRadius = 0.5 * fit::ScaledDistance(b.x() - a.x(), b.y() - a.y(), b.z() - a.z());
        SetPosition(a.MidPoint(b), CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
        return;
    }
    CNuPoint mean = points.MeanPoint();
    double adMean[3] = {mean.x(), mean.y(), mean.z()};
    SWalk w{points.GetData(), n, dTolerance, 1, {mean.x(), mean.y(), mean.z()}, 0.0, {}};
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
    Walk(w, adMean);
    CheckHolds(w);
    m_dRadius = w.r;
    SetPosition(CNuPoint(w.c[0], w.c[1], w.c[2]), CNuVector(1.0, 0.0, 0.0),
                CNuVector(0.0, 0.0, 1.0));
}

// Both names lead to the inscribed sphere: FitMinEx runs FitMax, as the interface has it.
ENuFitResult CNuSphSurf::FitMaxEx(const CNuPointArray& points, double dTolerance) {
    return fit::RunFitExCatchAll(dTolerance, [&] { FitMax(points, dTolerance); });
}

ENuFitResult CNuSphSurf::FitMinEx(const CNuPointArray& points, double dTolerance) {
    return FitMaxEx(points, dTolerance);
}

}  // namespace numorix
