#include "numorix/curves/circle.h"

#include <cmath>

#include "numorix/curves/internal/conic_support.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/linalg/matrix.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuCircle";
const char* const kConversion = "CNuCircle::ToPolyline/PointArray()";

CNuPoint Along(const CNuPoint& p, const double* pd, double t) {
    return CNuPoint(p.x() + t * pd[0], p.y() + t * pd[1], p.z() + t * pd[2]);
}

}  // namespace

CNuCircle::CNuCircle(double dRadius) : m_dRadius(dRadius) {
    m_eObjectType = eTypeCircle;
    conic::CheckPositive(dRadius, kLocation, "radius");
}

CNuCircle::CNuCircle(double dRadius, const CNuPoint& centre) : CNuCircle(dRadius) {
    SetPosition(centre, CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
}

CNuCircle::CNuCircle(double dRadius, const CNuPoint& centre, const CNuVector& normal)
    : CNuCircle(dRadius) {
    conic::Frame frame = conic::FrameFromNormal(normal, kLocation);
    SetPosition(centre, frame.xAxis, frame.zAxis);
}

CNuCircle::CNuCircle(const CNuCircle& other) = default;
CNuCircle& CNuCircle::operator=(const CNuCircle& other) = default;
CNuCircle::~CNuCircle() = default;

CNuPoint CNuCircle::GetCentre() const { return GetFrameOrigin(); }
CNuVector CNuCircle::GetNormal() const { return GetFrameZAxis(); }

CNuPlane CNuCircle::GetPlane() const { return CNuPlane(GetCentre(), GetNormal()); }

void CNuCircle::GetData(double* pdRadius, CNuPoint* pCentre, CNuVector* pNormal) const {
    if (pdRadius != nullptr) *pdRadius = m_dRadius;
    GetPosition(pCentre, nullptr, pNormal);
}

CNuPointArray CNuCircle::ToPointArray(int nPoints) const {
    if (nPoints < 2) throw CNuOperationException(12, "conversion", kConversion);
    int k = nPoints - 1;
    double c = 0.0;
    double s = 0.0;
    NuCosSin(Nu_2PI / k, &c, &s);  // cleaned: quarter turns give exact zeros

    CNuPointArray points(nPoints);
    for (int i = 0; i < nPoints; ++i)
        points.Add(CNuPoint());
    CNuPoint* pData = points.GetData();
    // The first and the last point are the same, so the closed curve closes exactly.
    pData[0] = CNuPoint(m_dRadius, 0.0, 0.0);
    pData[k] = pData[0];
    double x = m_dRadius;
    double y = 0.0;
    for (int i = 1; i < k; ++i) {
        double xNext = x * c - y * s;
        y = x * s + y * c;
        x = xNext;
        pData[i] = CNuPoint(x, y, 0.0);
    }
    conic::PlaceInWorld(*this, &points);
    return points;
}

int CNuCircle::IntersectWith(const CNuLine& line, CNuPoint* pFirst, CNuPoint* pSecond) const {
    return line.IntersectWith(*this, pFirst, pSecond);
}

int CNuCircle::IntersectWith(const CNuPlane& plane, CNuPoint* pFirst, CNuPoint* pSecond) const {
    return conic::IntersectPlane(*this, plane, pFirst, pSecond);
}

int CNuCircle::IntersectWith(const CNuCircle& other, CNuPoint* pFirst, CNuPoint* pSecond) const {
    double dLengthTol = NuGetLengthTol();
    CNuPlane thisPlane = GetPlane();
    CNuPlane otherPlane = other.GetPlane();
    CNuPoint centre = GetCentre();

    if (thisPlane.IsEqual(otherPlane, dLengthTol, NuGetDegreeTol()) == eNuTrue) {
        // Coplanar: both circles meet on their radical line, at the signed distance
        // a = (d^2 + r1^2 - r2^2) / (2 d) from this centre towards the other.
        CNuPoint otherCentre = other.GetCentre().ProjectionOn(thisPlane);
        double d = centre.DistanceTo(otherCentre);
        if (d < dLengthTol) return 0;  // concentric: none, or the whole circle
        CNuVector u = (otherCentre - centre).To3DVector() / d;
        double r1 = m_dRadius;
        double r2 = other.m_dRadius;
        double a = (d * d + r1 * r1 - r2 * r2) / (2.0 * d);
        CNuPoint foot = centre + (u * a).To3DPoint();
        CNuLine radical(foot, thisPlane.GetNormal() * u);
        return radical.IntersectWith(*this, pFirst, pSecond);
    }

    // Crossing planes: the common points lie on the line in which the planes meet.
    CNuLine common;
    if (thisPlane.IntersectWith(otherPlane, &common) == 0) return 0;
    CNuPoint candidates[2];
    int nFound = common.IntersectWith(*this, &candidates[0], &candidates[1]);
    int nKept = 0;
    for (int i = 0; i < nFound; ++i) {
        const CNuPoint& p = candidates[i];
        // Off the other plane only by rounding of the common line; such a point is no common one.
        if (!(p.DistanceTo(otherPlane) <= dLengthTol)) continue;
        if (p.CurveSide(other, dLengthTol) != eCurveSideOn) continue;
        CNuPoint* pTarget = nKept == 0 ? pFirst : pSecond;
        if (pTarget != nullptr) *pTarget = p;
        ++nKept;
    }
    return nKept;
}

// The line against a circle, in the circle's local frame where the circle is x^2 + y^2 = r^2 in
// the plane z = 0.
int CNuLine::IntersectWith(const CNuCircle& circle, CNuPoint* pFirst, CNuPoint* pSecond) const {
    CNuLine local = conic::LocalLine(circle, *this);
    const CNuPoint& p = local.GetPoint();
    const double* pd = local.GetDirection().GetData();
    double r = circle.GetRadius();
    double dLengthTol = NuGetLengthTol();

    CNuPoint hits[2];
    int nHits = 0;
    if (local.IsParallelTo(CNuPlane(), NuGetDegreeTol()) == eNuFalse) {
        // Crossing the plane: only the piercing point can lie on the circle.
        double t = -p.z() / pd[2];
        CNuPoint q = Along(p, pd, t);
        if (std::fabs(NuPythag(q.x(), q.y()) - r) < dLengthTol) hits[nHits++] = q;
    } else if (std::fabs(p.z()) < dLengthTol) {
        // In the plane: the foot of the centre, then half the chord on either side.
        double dPlanar = pd[0] * pd[0] + pd[1] * pd[1];
        double tFoot = -(p.x() * pd[0] + p.y() * pd[1]) / dPlanar;
        CNuPoint foot = Along(p, pd, tFoot);
        double h = NuPythag(foot.x(), foot.y());
        if (std::fabs(h - r) < dLengthTol) {
            hits[nHits++] = foot;
        } else if (h < r) {
            double dHalf = std::sqrt((r - h) * (r + h) / dPlanar);
            hits[nHits++] = Along(p, pd, tFoot - dHalf);
            hits[nHits++] = Along(p, pd, tFoot + dHalf);
        }
    }

    if (circle.IsPositionSet()) {
        CNuMatrix transformation = circle.GetTransformation();
        for (int i = 0; i < nHits; ++i)
            hits[i] = (hits[i].To4DVector() * transformation).To3DPoint();
    }
    if (nHits >= 1 && pFirst != nullptr) *pFirst = hits[0];
    if (nHits >= 2 && pSecond != nullptr) *pSecond = hits[1];
    return nHits;
}

}  // namespace numorix
