#include "numorix/geometry/line.h"

#include <cmath>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/non_linear_geometry.h"
#include "numorix/geometry/plane.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"

namespace numorix {

namespace {

// The default direction, built on first use so that lines made by other static initialisers
// find it ready.
const CNuVector& UnitX() {
    static const CNuVector s_unitX(1.0, 0.0, 0.0);
    return s_unitX;
}

// Parallel under dTol degrees: the angle a or 180 - a below dTol, so opposite directions count.
bool IsParallelAngle(double dAngle, double dTol) { return dTol > dAngle || dTol > 180.0 - dAngle; }

CNuPoint AlongLine(const CNuPoint& q, const CNuVector& d, double t) {
    const double* pd = d.GetData();
    return CNuPoint(q.x() + t * pd[0], q.y() + t * pd[1], q.z() + t * pd[2]);
}

}  // namespace

CNuLine::CNuLine() : m_point(0.0, 0.0, 0.0), m_direction(UnitX()) { m_eObjectType = eTypeLine; }

CNuLine::CNuLine(const CNuPoint& point, const CNuVector& direction)
    : m_point(point), m_direction(direction) {
    m_eObjectType = eTypeLine;
    if (direction.GetSize() != 3) throw CNuConstructionException(4, "CNuLine");
    if (direction.IsZero(NuGetZero()) == eNuTrue) throw CNuConstructionException(3, "CNuLine");
    m_direction.Normalise();
}

CNuLine::CNuLine(const CNuPoint& a, const CNuPoint& b) : m_point(a), m_direction(0.0, 0.0, 0.0) {
    m_eObjectType = eTypeLine;
    if (a.IsEqual(b, NuGetLengthTol()) == eNuTrue) throw CNuConstructionException(10, "CNuLine");
    m_direction = (b - a).To3DVector();
    // With a length tolerance of zero or below, coincident points pass the test above; they
    // would leave a zero direction.
    if (m_direction.IsZero(NuGetZero()) == eNuTrue) throw CNuConstructionException(10, "CNuLine");
    m_direction.Normalise();
}

CNuLine::CNuLine(const CNuLine& other) = default;
CNuLine& CNuLine::operator=(const CNuLine& other) = default;
CNuLine::~CNuLine() = default;

void CNuLine::GetData(CNuPoint* pPoint, CNuVector* pDirection) const {
    if (pPoint != nullptr) *pPoint = m_point;
    if (pDirection != nullptr) *pDirection = m_direction;
}

void CNuLine::Translate(double dx, double dy, double dz) { m_point.Translate(dx, dy, dz); }

void CNuLine::Translate(const CNuPoint& point) { m_point = point; }

void CNuLine::Rotate(double dAngle, CNuGeometry::EAxisType eAxis) {
    m_point.Rotate(dAngle, eAxis);
    m_direction.Rotate(dAngle, eAxis);
}

void CNuLine::Rotate(double dAngle, const CNuVector& axis) {
    m_point.Rotate(dAngle, axis);
    m_direction.Rotate(dAngle, axis);
}

void CNuLine::Rotate(double dAngle, CNuGeometry::EAxisType eAxis, const CNuPoint& centre) {
    m_point.Rotate(dAngle, eAxis, centre);
    m_direction.Rotate(dAngle, eAxis);
}

void CNuLine::Rotate(double dAngle, const CNuVector& axis, const CNuPoint& centre) {
    m_point.Rotate(dAngle, axis, centre);
    m_direction.Rotate(dAngle, axis);
}

void CNuLine::MoveTo(const CNuNonLinearGeometry& geometry) {
    CNuMatrix inverseRotation = geometry.GetInverseRotation();
    CNuVector offset = (m_point - geometry.GetTranslation().To3DPoint()).To3DVector();
    m_point = (offset * inverseRotation).To3DPoint();
    m_direction = m_direction * inverseRotation;
}

ENuBoolean CNuLine::IsParallelTo(const CNuLine& other, double dTol) const {
    return IsParallelAngle(AngleWith(other), dTol) ? eNuTrue : eNuFalse;
}

ENuBoolean CNuLine::IsParallelTo(const CNuPlane& plane, double dTol) const {
    double dAngle = m_direction.AngleWith(plane.GetNormal());
    return dTol > std::fabs(90.0 - dAngle) ? eNuTrue : eNuFalse;
}

bool CNuLine::IsParallelByDegreeTol(const CNuLine& other) const {
    return IsParallelAngle(AngleWith(other), NuGetDegreeTol());
}

ENuBoolean CNuLine::IsCoplanarWith(const CNuLine& other, double dLengthTol,
                                   double dAngleTol) const {
    if (IsParallelAngle(AngleWith(other), dAngleTol)) return eNuTrue;
    CNuVector n = m_direction * other.m_direction;
    double m = n.Magnitude();
    double dGap = std::fabs((other.m_point - m_point).To3DVector() % n) / m;
    return dLengthTol > dGap ? eNuTrue : eNuFalse;
}

double CNuLine::AngleWith(const CNuLine& other) const {
    return m_direction.AngleWith(other.m_direction);
}

double CNuLine::AngleWith(const CNuLine& other, const CNuVector& axis) const {
    return m_direction.AngleWith(other.m_direction, axis);
}

double CNuLine::AngleWith(const CNuPlane& plane) const {
    double a = m_direction.AngleWith(plane.GetNormal());
    return a > 90.0 ? a - 90.0 : 90.0 - a;
}

CNuLine CNuLine::MidLine(const CNuPoint& point) const {
    CNuLine result(*this);
    result.m_point = point.MidPoint(*this);
    return result;
}

CNuLine CNuLine::MidLine(const CNuLine& other) const {
    if (!IsParallelByDegreeTol(other)) {
        throw CNuOperationException(23, "calculation", "CNuLine::MidLine()");
    }
    CNuLine result(*this);
    result.m_point = m_point.MidPoint(other);
    return result;
}

CNuLine CNuLine::MidLine(const CNuPlane& plane) const {
    if (IsParallelTo(plane, NuGetDegreeTol()) == eNuFalse) {
        throw CNuOperationException(25, "calculation", "CNuLine::MidLine()");
    }
    CNuLine result(*this);
    result.m_point = m_point.MidPoint(plane);
    return result;
}

CNuPlane CNuLine::MidPlane(const CNuLine& other) const {
    if (!IsParallelByDegreeTol(other)) {
        throw CNuOperationException(23, "calculation", "CNuLine::MidPlane()");
    }
    CNuPoint m = m_point.MidPoint(other);
    CNuVector v = (m_point - m).To3DVector();
    if (v.IsZero(NuGetZero()) == eNuTrue) {
        throw CNuOperationException(20, "calculation", "CNuLine::MidPlane()");
    }
    return CNuPlane(m, v);
}

// The other line meets the plane that holds this line and the common normal at the point of the
// other line nearest to this one.
int CNuLine::ClosestPointsTo(const CNuLine& other, CNuPoint* pPoint) const {
    if (IsParallelByDegreeTol(other)) return 0;
    CNuVector n = (m_direction * other.m_direction) * m_direction;
    return other.IntersectWith(CNuPlane(m_point, n), pPoint);
}

double CNuLine::DistanceTo(const CNuLine& other) const {
    if (IsParallelByDegreeTol(other)) return m_point.DistanceTo(other);
    CNuVector n = m_direction * other.m_direction;
    return std::fabs((other.m_point - m_point).To3DVector() % n) / n.Magnitude();
}

double CNuLine::DistanceTo(const CNuPlane& plane) const {
    if (IsParallelTo(plane, NuGetDegreeTol()) == eNuFalse) return 0.0;
    return m_point.DistanceTo(plane);
}

// Least squares for s d1 + t d2 = q2 - q1; the feet are q1 + s d1 and q2 - t d2.
int CNuLine::IntersectWith(const CNuLine& other, CNuPoint* pPoint) const {
    if (IsParallelByDegreeTol(other)) return 0;
    CNuMatrix a(3, 2);
    a.SetColumnVector(0, m_direction);
    a.SetColumnVector(1, other.m_direction);
    CNuLinearEquSys system(1);
    system.Solve(a, (other.m_point - m_point).To3DVector());
    CNuVector st = system.GetSolution();
    CNuPoint onThis = AlongLine(m_point, m_direction, st[0]);
    CNuPoint onOther = AlongLine(other.m_point, other.m_direction, -st[1]);
    if (onThis.To3DVector().IsEqual(onOther.To3DVector(), NuGetLengthTol()) == eNuFalse) return 0;
    if (pPoint != nullptr) *pPoint = onThis.MidPoint(onOther);
    return 1;
}

int CNuLine::IntersectWith(const CNuPlane& plane, CNuPoint* pPoint) const {
    const CNuVector& n = plane.GetNormal();
    double dCos = n % m_direction;
    if (NuGetZero() > std::fabs(dCos)) return 0;
    double t = ((plane.GetPoint() - m_point).To3DVector() % n) / dCos;
    if (pPoint != nullptr) *pPoint = AlongLine(m_point, m_direction, t);
    return 1;
}

}  // namespace numorix
