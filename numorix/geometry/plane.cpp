#include "numorix/geometry/plane.h"

#include <cmath>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"

namespace numorix {

namespace {

// The default normal, built on first use so that planes made by other static initialisers find
// it ready.
const CNuVector& UnitZ() {
    static const CNuVector s_unitZ(0.0, 0.0, 1.0);
    return s_unitZ;
}

// The folded angle: a or 180 - a, so that a plane and its reverse make 0.
double FoldedAngle(const CNuVector& n1, const CNuVector& n2) {
    double a = n1.AngleWith(n2);
    return a > 90.0 ? 180.0 - a : a;
}

// The two unknowns u, v of  a1 u + b1 v = c1,  a2 u + b2 v = c2  by Cramer's rule.
void Cramer(double a1, double b1, double c1, double a2, double b2, double c2, double* pdU,
            double* pdV) {
    double dDet = a1 * b2 - b1 * a2;
    *pdU = (c1 * b2 - b1 * c2) / dDet;
    *pdV = (a1 * c2 - c1 * a2) / dDet;
}

}  // namespace

CNuPlane::CNuPlane() : m_point(0.0, 0.0, 0.0), m_normal(UnitZ()) { m_eObjectType = eTypePlane; }

CNuPlane::CNuPlane(const CNuPoint& point, const CNuVector& normal)
    : m_point(point), m_normal(normal) {
    m_eObjectType = eTypePlane;
    if (normal.GetSize() != 3) throw CNuConstructionException(4, "CNuPlane");
    if (normal.IsZero(NuGetZero()) == eNuTrue) throw CNuConstructionException(3, "CNuPlane");
    m_normal.Normalise();
}

CNuPlane::CNuPlane(const CNuPoint& point, const CNuLine& line)
    : m_point(point), m_normal(0.0, 0.0, 1.0) {
    m_eObjectType = eTypePlane;
    CNuVector normal = line.GetDirection() * (point - line.GetPoint()).To3DVector();
    if (normal.IsZero(NuGetZero()) == eNuTrue) throw CNuConstructionException(9, "CNuPlane");
    normal.Normalise();
    // A plane of this kind that faces steeply down is turned up.
    if (normal[2] < -0.8) normal = -normal;
    m_normal = normal;
}

CNuPlane::CNuPlane(const CNuPlane& other) = default;
CNuPlane& CNuPlane::operator=(const CNuPlane& other) = default;
CNuPlane::~CNuPlane() = default;

void CNuPlane::GetData(CNuPoint* pPoint, CNuVector* pNormal) const {
    if (pPoint != nullptr) *pPoint = m_point;
    if (pNormal != nullptr) *pNormal = m_normal;
}

void CNuPlane::Translate(double dx, double dy, double dz) { m_point.Translate(dx, dy, dz); }

void CNuPlane::Translate(const CNuPoint& point) { m_point = point; }

void CNuPlane::Rotate(double dAngle, CNuGeometry::EAxisType eAxis) {
    m_point.Rotate(dAngle, eAxis);
    m_normal.Rotate(dAngle, eAxis);
}

void CNuPlane::Rotate(double dAngle, const CNuVector& axis) {
    m_point.Rotate(dAngle, axis);
    m_normal.Rotate(dAngle, axis);
}

void CNuPlane::Rotate(double dAngle, CNuGeometry::EAxisType eAxis, const CNuPoint& centre) {
    m_point.Rotate(dAngle, eAxis, centre);
    m_normal.Rotate(dAngle, eAxis);
}

void CNuPlane::Rotate(double dAngle, const CNuVector& axis, const CNuPoint& centre) {
    m_point.Rotate(dAngle, axis, centre);
    m_normal.Rotate(dAngle, axis);
}

ENuBoolean CNuPlane::IsEqual(const CNuPlane& other, double dLengthTol, double dAngleTol) const {
    if (m_point.DistanceTo(other) >= dLengthTol) return eNuFalse;
    if (FoldedAngle(m_normal, other.m_normal) >= dAngleTol) return eNuFalse;
    return eNuTrue;
}

ENuBoolean CNuPlane::IsParallelTo(const CNuPlane& other, double dTol) const {
    return dTol > FoldedAngle(m_normal, other.m_normal) ? eNuTrue : eNuFalse;
}

double CNuPlane::AngleWith(const CNuPlane& other) const {
    return FoldedAngle(m_normal, other.m_normal);
}

CNuPlane CNuPlane::MidPlane(const CNuPoint& point) const {
    CNuPlane result(*this);
    result.m_point = point.MidPoint(*this);
    return result;
}

CNuPlane CNuPlane::MidPlane(const CNuLine& line) const {
    if (line.IsParallelTo(*this, NuGetDegreeTol()) == eNuFalse) {
        throw CNuOperationException(25, "calculation", "CNuPlane::MidPlane()");
    }
    CNuPlane result(*this);
    result.m_point = line.GetPoint().MidPoint(*this);
    return result;
}

CNuPlane CNuPlane::MidPlane(const CNuPlane& other) const {
    if (IsParallelTo(other, NuGetDegreeTol()) == eNuFalse) {
        throw CNuOperationException(24, "calculation", "CNuPlane::MidPlane()");
    }
    CNuPlane result(*this);
    result.m_point = m_point.MidPoint(other);
    return result;
}

double CNuPlane::DistanceTo(const CNuPlane& other) const {
    if (IsParallelTo(other, NuGetDegreeTol()) == eNuFalse) return 0.0;
    return m_point.DistanceTo(other);
}

int CNuPlane::IntersectWith(const CNuLine& line, CNuPoint* pPoint) const {
    return line.IntersectWith(*this, pPoint);
}

int CNuPlane::IntersectWith(const CNuPlane& other, CNuLine* pLine) const {
    if (IsParallelTo(other, NuGetDegreeTol()) == eNuTrue) return 0;
    const double* n1 = m_normal.GetData();
    const double* n2 = other.m_normal.GetData();
    double c1 = m_normal % m_point.To3DVector();
    double c2 = other.m_normal % other.m_point.To3DVector();
    CNuVector w = m_normal * other.m_normal;
    if (1e-6 > w.Magnitude()) return 0;
    w.Normalise();
    double ax = std::fabs(w[0]);
    double ay = std::fabs(w[1]);
    double az = std::fabs(w[2]);
    // The coordinate along which the line runs most steeply is set to 0; ties go to x, then y.
    CNuPoint p(0.0, 0.0, 0.0);
    if (ax >= ay && ax >= az) {
        Cramer(n1[1], n1[2], c1, n2[1], n2[2], c2, &p.y(), &p.z());
    } else if (ay >= az) {
        Cramer(n1[0], n1[2], c1, n2[0], n2[2], c2, &p.x(), &p.z());
    } else {
        Cramer(n1[0], n1[1], c1, n2[0], n2[1], c2, &p.x(), &p.y());
    }
    if (pLine != nullptr) *pLine = CNuLine(p, w);
    return 1;
}

}  // namespace numorix
