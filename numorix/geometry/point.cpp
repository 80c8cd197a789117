#include "numorix/geometry/point.h"

#include <cmath>

#include "numorix/curves/bounded_curve.h"
#include "numorix/curves/circle.h"
#include "numorix/curves/curve.h"
#include "numorix/curves/ellipse.h"
#include "numorix/curves/hyperbola.h"
#include "numorix/curves/parabola.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/obj_array.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"
#include "numorix/surfaces/con_surf.h"
#include "numorix/surfaces/cyl_surf.h"
#include "numorix/surfaces/sph_surf.h"
#include "numorix/surfaces/surface.h"

namespace numorix {

namespace {

// (p - q) . v for a 3-vector v.
double OffsetDot(const CNuPoint& p, const CNuPoint& q, const CNuVector& v) {
    const double* pd = v.GetData();
    return (p.x() - q.x()) * pd[0] + (p.y() - q.y()) * pd[1] + (p.z() - q.z()) * pd[2];
}

// The foot of p on the line through q along the unit direction d: q + ((p - q) . d) d.
CNuPoint Foot(const CNuPoint& p, const CNuLine& line) {
    const CNuPoint& q = line.GetPoint();
    const double* pd = line.GetDirection().GetData();
    double t = OffsetDot(p, q, line.GetDirection());
    return CNuPoint(q.x() + t * pd[0], q.y() + t * pd[1], q.z() + t * pd[2]);
}

// Each component of (dx, dy, dz) below NuGetZero() in magnitude.
bool Vanishes(double dx, double dy, double dz) {
    double dZero = NuGetZero();
    return std::fabs(dx) < dZero && std::fabs(dy) < dZero && std::fabs(dz) < dZero;
}

// Curves and surfaces whose classes this build does not carry are refused as unsupported.
[[noreturn]] void Unsupported(const char* pszLocation) {
    throw CNuOperationException(45, "calculation", pszLocation);
}

// A point seen from a cone: h along the unit axis a from the apex, r >= 0 across it, and the
// semi-angle in radians. r is sqrt(w . w - h^2) for w = p - apex (0 where rounding makes the
// square negative), as the distance and the side measure it, or with bAccurate |w x a|, which
// keeps its digits near the axis, where the difference of squares leaves sqrt(eps |w|^2).
struct SConeView {
    CNuPoint apex;
    CNuVector axis;
    double h;
    double r;
    double dAlpha;
};

SConeView ViewFromCone(const CNuPoint& p, const CNuConSurf& cone, bool bAccurate = false) {
    SConeView v;
    cone.GetData(&v.dAlpha, &v.apex, &v.axis);
    v.dAlpha = Nu_PI * v.dAlpha * 0.005555555555555556;
    double dx = p.x() - v.apex.x();
    double dy = p.y() - v.apex.y();
    double dz = p.z() - v.apex.z();
    v.h = OffsetDot(p, v.apex, v.axis);
    double dSquare = dx * dx + dy * dy + dz * dz - v.h * v.h;
    v.r = dSquare > 0.0 ? std::sqrt(dSquare) : 0.0;
    if (bAccurate) v.r = (CNuVector(dx, dy, dz) * v.axis).Magnitude();
    return v;
}

// The unit direction from the axis towards p, across the axis; OrthonormalX of the axis when p
// lies on it (no part across above NuGetZero()). The part across is taken off the axis twice: for
// a point on the axis up to rounding, what is left after once is rounding, as much along the axis
// as across it.
CNuVector Across(const CNuPoint& p, const SConeView& v) {
    CNuVector across = (p - v.apex).To3DVector() - v.axis * v.h;
    across = across - v.axis * (across % v.axis);
    if (across.Magnitude() > NuGetZero()) {
        across.Normalise();
    } else {
        CNuVector axis(v.axis);
        axis.OrthonormalX(&across);
    }
    return across;
}

// The distance of p from a cylinder's axis: sqrt(w . w - h^2) for w = p - axis point and h its
// part along the unit axis, 0 where rounding makes the square negative.
double FromCylinderAxis(const CNuPoint& p, const CNuCylSurf& cylinder) {
    CNuPoint q = cylinder.GetAxisPoint();
    CNuVector a = cylinder.GetAxisDirection();
    double dx = p.x() - q.x();
    double dy = p.y() - q.y();
    double dz = p.z() - q.z();
    double h = OffsetDot(p, q, a);
    double dSquare = dx * dx + dy * dy + dz * dz - h * h;
    return dSquare > 0.0 ? std::sqrt(dSquare) : 0.0;
}

// A point farther than dTol from a curve's plane is refused.
void CheckInPlane(const CNuPoint& p, const CNuPlane& plane, double dTol, const char* pszLocation) {
    if (dTol < p.DistanceTo(plane)) throw CNuOperationException(22, "calculation", pszLocation);
}

// |pF1| + |pF2| (bSum) or ||pF1| - |pF2|| for the foci at centre -+ c xAxis.
double FocalDistances(const CNuPoint& p, const CNuPoint& centre, const CNuVector& xAxis, double c,
                      bool bSum) {
    CNuPoint offset = (xAxis * c).To3DPoint();
    double d1 = p.DistanceTo(centre + offset);
    double d2 = p.DistanceTo(centre - offset);
    return bSum ? d1 + d2 : std::fabs(d1 - d2);
}

}  // namespace

CNuPoint::CNuPoint(double x, double y, double z) : m_dX(x), m_dY(y), m_dZ(z) {
    m_eObjectType = eTypePoint;
}

CNuPoint::CNuPoint(const CNuPoint& other) = default;
CNuPoint& CNuPoint::operator=(const CNuPoint& other) = default;
CNuPoint::~CNuPoint() = default;

void CNuPoint::GetData(double* pdX, double* pdY, double* pdZ) const {
    if (pdX != nullptr) *pdX = m_dX;
    if (pdY != nullptr) *pdY = m_dY;
    if (pdZ != nullptr) *pdZ = m_dZ;
}

void CNuPoint::Swap(CNuPoint& a, CNuPoint& b) {
    CNuPoint t(a);
    a = b;
    b = t;
}

CNuPoint::operator CNuVector() const { return CNuVector(m_dX, m_dY, m_dZ); }

CNuVector CNuPoint::To3DVector() const { return CNuVector(m_dX, m_dY, m_dZ); }

CNuVector CNuPoint::To4DVector() const {
    CNuVector v(4);
    double* pd = v.GetData();
    pd[0] = m_dX;
    pd[1] = m_dY;
    pd[2] = m_dZ;
    pd[3] = 1.0;
    return v;
}

ENuBoolean CNuPoint::IsZero(double dTol) const {
    return (dTol > std::fabs(m_dX) && dTol > std::fabs(m_dY) && dTol > std::fabs(m_dZ)) ? eNuTrue
                                                                                        : eNuFalse;
}

ENuBoolean CNuPoint::IsEqual(const CNuPoint& other, double dTol) const {
    return (dTol > std::fabs(m_dX - other.m_dX) && dTol > std::fabs(m_dY - other.m_dY) &&
            dTol > std::fabs(m_dZ - other.m_dZ))
               ? eNuTrue
               : eNuFalse;
}

CNuPoint CNuPoint::operator+(const CNuPoint& other) const {
    return CNuPoint(m_dX + other.m_dX, m_dY + other.m_dY, m_dZ + other.m_dZ);
}

CNuPoint CNuPoint::operator-(const CNuPoint& other) const {
    return CNuPoint(m_dX - other.m_dX, m_dY - other.m_dY, m_dZ - other.m_dZ);
}

CNuPoint& CNuPoint::operator+=(const CNuPoint& other) {
    m_dX += other.m_dX;
    m_dY += other.m_dY;
    m_dZ += other.m_dZ;
    return *this;
}

CNuPoint& CNuPoint::operator-=(const CNuPoint& other) {
    m_dX -= other.m_dX;
    m_dY -= other.m_dY;
    m_dZ -= other.m_dZ;
    return *this;
}

CNuPoint CNuPoint::operator-() const { return CNuPoint(-m_dX, -m_dY, -m_dZ); }

CNuPoint CNuPoint::operator*(double dFactor) const {
    if (std::fabs(dFactor) > NuGetLarge()) throw CNuOperationException(7, "operator*", "CNuPoint");
    return CNuPoint(m_dX * dFactor, m_dY * dFactor, m_dZ * dFactor);
}

CNuPoint& CNuPoint::operator*=(double dFactor) {
    if (std::fabs(dFactor) > NuGetLarge()) throw CNuOperationException(7, "operator*=", "CNuPoint");
    m_dX *= dFactor;
    m_dY *= dFactor;
    m_dZ *= dFactor;
    return *this;
}

CNuPoint CNuPoint::operator/(double dDivisor) const {
    if (NuGetZero() > std::fabs(dDivisor)) throw CNuOperationException(6, "operator/", "CNuPoint");
    return CNuPoint(m_dX / dDivisor, m_dY / dDivisor, m_dZ / dDivisor);
}

CNuPoint& CNuPoint::operator/=(double dDivisor) {
    if (NuGetZero() > std::fabs(dDivisor)) {
        throw CNuOperationException(6, "operator/=", "CNuPoint");
    }
    m_dX /= dDivisor;
    m_dY /= dDivisor;
    m_dZ /= dDivisor;
    return *this;
}

void CNuPoint::Translate(double dx, double dy, double dz) {
    m_dX += dx;
    m_dY += dy;
    m_dZ += dz;
}

void CNuPoint::Translate(const CNuPoint& offset) { *this += offset; }

// Rotations go through the vector's own, so that a point and a vector turn alike.
void CNuPoint::Rotate(double dAngle, CNuGeometry::EAxisType eAxis) {
    CNuVector v = To3DVector();
    v.Rotate(dAngle, eAxis);
    const double* pd = v.GetData();
    *this = CNuPoint(pd[0], pd[1], pd[2]);
}

void CNuPoint::Rotate(double dAngle, const CNuVector& axis) {
    CNuVector v = To3DVector();
    v.Rotate(dAngle, axis);
    const double* pd = v.GetData();
    *this = CNuPoint(pd[0], pd[1], pd[2]);
}

void CNuPoint::Rotate(double dAngle, CNuGeometry::EAxisType eAxis, const CNuPoint& centre) {
    CNuPoint c(centre);
    *this -= c;
    Rotate(dAngle, eAxis);
    *this += c;
}

void CNuPoint::Rotate(double dAngle, const CNuVector& axis, const CNuPoint& centre) {
    CNuPoint c(centre);
    *this -= c;
    Rotate(dAngle, axis);
    *this += c;
}

void CNuPoint::MoveTo(const CNuNonLinearGeometry& geometry) {
    CNuVector d = (*this - geometry.GetTranslation().To3DPoint()).To3DVector();
    CNuVector local = d * geometry.GetRotation();
    const double* pd = local.GetData();
    *this = CNuPoint(pd[0], pd[1], pd[2]);
}

void CNuPoint::MoveTo(const CNuPoint& origin, const CNuVector& xAxis, const CNuVector& zAxis) {
    CNuVector d = (*this - origin).To3DVector();
    CNuVector x(xAxis);
    CNuVector z(zAxis);
    double dZero = NuGetZero();
    if (x.Magnitude() > dZero) x.Normalise();
    if (z.Magnitude() > dZero) z.Normalise();
    CNuVector y = z * x;
    *this = CNuPoint(d % x, d % y, d % z);
}

namespace {

// (a + b) * 0.5; only where that sum overflows (both beyond half the largest double) are the
// halves added instead.
double Middle(double a, double b) {
    double d = (a + b) * 0.5;
    return std::isfinite(d) || !std::isfinite(a) || !std::isfinite(b) ? d : a * 0.5 + b * 0.5;
}

}  // namespace

CNuPoint CNuPoint::MidPoint(const CNuPoint& other) const {
    return CNuPoint(Middle(m_dX, other.m_dX), Middle(m_dY, other.m_dY), Middle(m_dZ, other.m_dZ));
}

CNuPoint CNuPoint::MidPoint(const CNuLine& line) const { return MidPoint(ProjectionOn(line)); }

CNuPoint CNuPoint::MidPoint(const CNuPlane& plane) const { return MidPoint(ProjectionOn(plane)); }

CNuPlane CNuPoint::MidPlane(const CNuPoint& other) const {
    CNuPoint m = MidPoint(other);
    CNuPoint n = *this - other;
    if (Vanishes(n.m_dX, n.m_dY, n.m_dZ)) {
        throw CNuOperationException(19, "calculation", "CNuPoint::MidPlane(CNuPoint)");
    }
    return CNuPlane(m, n.To3DVector());
}

CNuPlane CNuPoint::MidPlane(const CNuLine& line) const {
    CNuPoint m = MidPoint(line);
    CNuPoint n = *this - m;
    if (Vanishes(n.m_dX, n.m_dY, n.m_dZ)) {
        throw CNuOperationException(21, "calculation", "CNuPoint::MidPlane(CNuLine)");
    }
    return CNuPlane(m, n.To3DVector());
}

double CNuPoint::DistanceTo(const CNuPoint& other) const {
    return NuPythag(m_dX - other.m_dX, m_dY - other.m_dY, m_dZ - other.m_dZ);
}

double CNuPoint::DistanceTo(const CNuLine& line) const { return DistanceTo(Foot(*this, line)); }

double CNuPoint::DistanceTo(const CNuPlane& plane) const {
    return std::fabs(OffsetDot(*this, plane.GetPoint(), plane.GetNormal()));
}

// Circles are measured in their plane; bounded curves measure themselves.
double CNuPoint::DistanceTo(const CNuCurve& curve) const {
    switch (curve.GetType()) {
        case eTypeCircle: {
            const CNuCircle& circle = static_cast<const CNuCircle&>(curve);
            if (DistanceTo(circle.GetPlane()) > NuGetLengthTol()) {
                throw CNuOperationException(22, "calculation", "CNuPoint::DistanceTo()");
            }
            return std::fabs(DistanceTo(circle.GetCentre()) - circle.GetRadius());
        }
        case eTypePolyline:
        case eTypeLineSegment:
        case eTypeCircularArc:
        case eTypeCompositeCurve:
            return static_cast<const CNuBoundedCurve&>(curve).DistanceTo(*this);
        default:
            Unsupported("CNuPoint::DistanceTo()");
    }
}

double CNuPoint::DistanceTo(const CNuSurface& surface) const {
    switch (surface.GetType()) {
        case eTypeCylSurf: {
            const CNuCylSurf& cylinder = static_cast<const CNuCylSurf&>(surface);
            return std::fabs(FromCylinderAxis(*this, cylinder) - cylinder.GetRadius());
        }
        case eTypeSphSurf: {
            const CNuSphSurf& sphere = static_cast<const CNuSphSurf&>(surface);
            return std::fabs(DistanceTo(sphere.GetCentre()) - sphere.GetRadius());
        }
        case eTypeConSurf: {
            // Measured from the apex: |r cos(alpha) - h sin(alpha)|.
            SConeView v = ViewFromCone(*this, static_cast<const CNuConSurf&>(surface));
            double dCos = 0.0;
            double dSin = 0.0;
            NuCosSin(v.dAlpha, &dCos, &dSin);
            return std::fabs(v.r * dCos - v.h * dSin);
        }
        default:
            Unsupported("CNuPoint::DistanceTo()");
    }
}

CNuPoint CNuPoint::ProjectionOn(const CNuLine& line) const { return Foot(*this, line); }

CNuPoint CNuPoint::ProjectionOn(const CNuPlane& plane) const {
    const double* pn = plane.GetNormal().GetData();
    double t = OffsetDot(*this, plane.GetPoint(), plane.GetNormal());
    return CNuPoint(m_dX - t * pn[0], m_dY - t * pn[1], m_dZ - t * pn[2]);
}

CNuPoint CNuPoint::ProjectionOn(const CNuSurface& surface) const {
    switch (surface.GetType()) {
        case eTypeCylSurf: {
            // From the foot on the axis out along the direction to the point; a point on the axis
            // goes out along OrthonormalX of the axis.
            const CNuCylSurf& cylinder = static_cast<const CNuCylSurf&>(surface);
            CNuPoint foot = ProjectionOn(cylinder.GetAxis());
            CNuVector direction;
            if (IsEqual(foot, NuGetTol())) {
                cylinder.GetAxisDirection().OrthonormalX(&direction);
            } else {
                direction = (*this - foot).To3DVector();
                direction.Normalise();
            }
            return foot + (direction * cylinder.GetRadius()).To3DPoint();
        }
        case eTypeSphSurf: {
            // Along the ray from the centre; a point at the centre has no ray and stays there.
            const CNuSphSurf& sphere = static_cast<const CNuSphSurf&>(surface);
            CNuPoint centre = sphere.GetCentre();
            CNuVector direction = (*this - centre).To3DVector();
            direction.Normalise();
            return centre + (direction * sphere.GetRadius()).To3DPoint();
        }
        case eTypeConSurf: {
            // Behind the apex the other nappe is the near one: the axis turns round. The foot
            // lies on the generator in the half-plane of the point, the signed distance
            // d = r cos(alpha) - h sin(alpha) away along the inward normal
            // sin(alpha) a - cos(alpha) e, e the direction across the axis towards the point;
            // the cosine is taken as the sine over the tangent.
            SConeView v = ViewFromCone(*this, static_cast<const CNuConSurf&>(surface), true);
            if (v.h < 0.0) {
                v.axis = -v.axis;
                v.h = -v.h;
            }
            double dSin = std::sin(v.dAlpha);
            double dCos = dSin / std::tan(v.dAlpha);
            CNuVector across = Across(*this, v);
            double d = v.r * dCos - v.h * dSin;
            CNuVector inward = v.axis * dSin - across * dCos;
            return *this + (inward * d).To3DPoint();
        }
        default:
            Unsupported("CNuPoint::ProjectionOn(CNuSurface)");
    }
}

CNuObjArray CNuPoint::ProjectionOnCone(CNuConSurf& cone) const {
    CNuObjArray feet;
    SConeView v = ViewFromCone(*this, cone, true);
    double dLength = std::sqrt(v.h * v.h + v.r * v.r);
    double dDegrees = cone.GetSemiAngle();
    double c = std::cos(v.dAlpha);
    double s = std::sin(v.dAlpha);
    if (!(dLength > NuGetZero())) {
        // The apex itself.
        feet.Add(new CNuPoint(v.apex));
        return feet;
    }
    // The angle between the point's direction and the axis, in degrees.
    double dCosAngle = v.h / dLength;
    if (dCosAngle > 1.0) dCosAngle = 1.0;
    if (dCosAngle < -1.0) dCosAngle = -1.0;
    double dAngle = std::acos(dCosAngle) * 180.0 / Nu_PI;
    CNuVector across = Across(*this, v);
    // The foot on the generator (sign * cos(alpha) a + sin(alpha) e) of the nappe in front
    // (sign 1) or behind the apex (sign -1), held at the apex when the point is beyond it.
    auto foot = [&](double dSign) {
        CNuVector g = v.axis * (dSign * c) + across * s;
        double dAlong = dSign * v.h * c + v.r * s;
        if (dAlong < 0.0) dAlong = 0.0;
        return v.apex + (g * dAlong).To3DPoint();
    };
    if (std::fabs(dAngle) < NuGetZero() || std::fabs(dAngle - 180.0) < 1e-10) {
        // On the axis every generator is as near: the feet form a circle, and one of them, at
        // the distance |h| sin(alpha) from the point, stands for it.
        feet.Add(new CNuPoint(foot(v.h < 0.0 ? -1.0 : 1.0)));
        return feet;
    }
    if (std::fabs(dAngle - dDegrees) < 1e-05) {
        feet.Add(new CNuPoint(foot(1.0)));
        return feet;
    }
    if (std::fabs(dAngle - (180.0 - dDegrees)) < 1e-05) {
        feet.Add(new CNuPoint(foot(-1.0)));
        return feet;
    }
    // Otherwise the nearer of the feet on the two nappes, both when they are as near.
    CNuPoint candidates[2] = {foot(1.0), foot(-1.0)};
    double adDistance[2] = {DistanceTo(candidates[0]), DistanceTo(candidates[1])};
    double dNearest = 1e+300;
    int nNearest = 0;
    for (int k = 0; k < 2; ++k) {
        if (adDistance[k] < dNearest) {
            dNearest = adDistance[k];
            nNearest = k;
        }
    }
    feet.Add(new CNuPoint(candidates[nNearest]));
    if (std::fabs(adDistance[1 - nNearest] - dNearest) < NuGetLengthTol())
        feet.Add(new CNuPoint(candidates[1 - nNearest]));
    return feet;
}

CNuGeometry::ELineSideType CNuPoint::LineSide(const CNuLine& line, double dTol) const {
    return LineSide(line, CNuVector(0.0, 0.0, 1.0), dTol);
}

CNuGeometry::ELineSideType CNuPoint::LineSide(const CNuLine& line, const CNuVector& ref,
                                              double dTol) const {
    if (dTol > DistanceTo(line)) return eLineSideOn;
    CNuPoint f = Foot(*this, line);
    CNuVector c = line.GetDirection() * (*this - f).To3DVector();
    return c.AngleWith(ref) <= 90.0 ? eLineSidePositive : eLineSideNegative;
}

// Circles and conics are judged in their own plane, each by its focal property: the distance to
// the centre against the radius, the sum or difference of the distances to the foci against the
// major axis 2a, the distances to the directrix and to the focus against each other.
CNuGeometry::ECurveSideType CNuPoint::CurveSide(const CNuGeometry& curve, double dTol) const {
    const char* pszLocation = "CNuPoint::CurveSide()";
    double dOff = 0.0;    // the measure that vanishes on the curve
    bool bOuter = false;  // the side of value 1
    switch (curve.GetType()) {
        case eTypeCircle: {
            const CNuCircle& circle = static_cast<const CNuCircle&>(curve);
            CheckInPlane(*this, circle.GetPlane(), dTol, pszLocation);
            double dCentre = DistanceTo(circle.GetCentre());
            dOff = dCentre - circle.GetRadius();
            bOuter = circle.GetRadius() <= dCentre;
            break;
        }
        case eTypeEllipse: {
            const CNuEllipse& ellipse = static_cast<const CNuEllipse&>(curve);
            CheckInPlane(*this, ellipse.GetPlane(), dTol, pszLocation);
            double a = ellipse.GetXRadius();
            double dRatio = ellipse.GetYRadius() / a;
            double dSum = FocalDistances(*this, ellipse.GetCentre(), ellipse.GetXaxis(),
                                         a * std::sqrt(1.0 - dRatio * dRatio), true);
            dOff = dSum - 2.0 * a;
            bOuter = 2.0 * a <= dSum;
            break;
        }
        case eTypeHyperbola: {
            const CNuHyperbola& hyperbola = static_cast<const CNuHyperbola&>(curve);
            CheckInPlane(*this, hyperbola.GetPlane(), dTol, pszLocation);
            double a = hyperbola.GetXRadius();
            double dRatio = hyperbola.GetYRadius() / a;
            double dDifference = FocalDistances(*this, hyperbola.GetCentre(), hyperbola.GetXaxis(),
                                                a * std::sqrt(dRatio * dRatio + 1.0), false);
            dOff = dDifference - 2.0 * a;
            bOuter = 2.0 * a <= dDifference;
            break;
        }
        case eTypeParabola: {
            const CNuParabola& parabola = static_cast<const CNuParabola&>(curve);
            CheckInPlane(*this, parabola.GetPlane(), dTol, pszLocation);
            double f = parabola.GetFocalLength();
            CNuPoint vertex = parabola.GetVertex();
            CNuVector xAxis = parabola.GetXaxis();
            // The directrix is the line x = -f of the local frame, the focus (f, 0).
            double dDirectrix = std::fabs(OffsetDot(*this, vertex, xAxis) + f);
            double dFocus = DistanceTo(vertex + (xAxis * f).To3DPoint());
            dOff = dDirectrix - dFocus;
            bOuter = dDirectrix <= dFocus;
            break;
        }
        default:
            Unsupported(pszLocation);
    }
    if (dTol > std::fabs(dOff)) return eCurveSideOn;
    return bOuter ? eCurveSideOuter : eCurveSideInner;
}

CNuGeometry::ESurfaceSideType CNuPoint::SurfaceSide(const CNuGeometry& surface, double dTol) const {
    switch (surface.GetType()) {
        case eTypePlane: {
            const CNuPlane& plane = static_cast<const CNuPlane&>(surface);
            double dOffset = OffsetDot(*this, plane.GetPoint(), plane.GetNormal());
            if (dTol > std::fabs(dOffset)) return eSurfaceSideOn;
            return dOffset <= 0.0 ? eSurfaceSideInner : eSurfaceSideOuter;
        }
        case eTypeCylSurf: {
            const CNuCylSurf& cylinder = static_cast<const CNuCylSurf&>(surface);
            double dAxis = FromCylinderAxis(*this, cylinder);
            if (dTol > std::fabs(dAxis - cylinder.GetRadius())) return eSurfaceSideOn;
            return dAxis <= cylinder.GetRadius() ? eSurfaceSideInner : eSurfaceSideOuter;
        }
        case eTypeSphSurf: {
            const CNuSphSurf& sphere = static_cast<const CNuSphSurf&>(surface);
            double dCentre = DistanceTo(sphere.GetCentre());
            if (dTol > std::fabs(dCentre - sphere.GetRadius())) return eSurfaceSideOn;
            return dCentre <= sphere.GetRadius() ? eSurfaceSideInner : eSurfaceSideOuter;
        }
        case eTypeConSurf: {
            // Inside when the distance from the axis is at most h tan(alpha).
            SConeView v = ViewFromCone(*this, static_cast<const CNuConSurf&>(surface));
            double dInside = v.h * std::tan(v.dAlpha);
            if (dTol > std::fabs(v.r - dInside)) return eSurfaceSideOn;
            return v.r <= dInside ? eSurfaceSideInner : eSurfaceSideOuter;
        }
        default:
            Unsupported("CNuPoint::SurfaceSide()");
    }
}

bool CNuPoint::BinaryDump(std::ofstream& stream) const {
    const char cTag = 'p';
    stream.write(&cTag, 1);
    stream.write(reinterpret_cast<const char*>(&m_dX), sizeof m_dX);
    stream.write(reinterpret_cast<const char*>(&m_dY), sizeof m_dY);
    stream.write(reinterpret_cast<const char*>(&m_dZ), sizeof m_dZ);
    return stream.good();
}

bool CNuPoint::BinaryRead(std::ifstream& stream) {
    char cTag = '0';
    stream.read(&cTag, 1);
    if (cTag != 'p') return false;
    stream.read(reinterpret_cast<char*>(&m_dX), sizeof m_dX);
    stream.read(reinterpret_cast<char*>(&m_dY), sizeof m_dY);
    stream.read(reinterpret_cast<char*>(&m_dZ), sizeof m_dZ);
    return true;
}

// Declared with the vector; a point is where a homogeneous vector lands.
CNuPoint CNuVector::To3DPoint() const {
    CNuVector v(*this);
    v.NonHomogeneous();
    const double* pd = v.GetData();
    return CNuPoint(pd[0], pd[1], pd[2]);
}

}  // namespace numorix
