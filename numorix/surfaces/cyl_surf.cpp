// The circular cylinder x^2 + y^2 = r^2 of its local frame: the axis is the local Z axis through
// the local origin. A cylinder built with an axis point P and a direction a has the frame
// (origin P, Z = a / |a|, X = OrthonormalX(a)), so that the world axis is { P + t a }.
#include "numorix/surfaces/cyl_surf.h"

#include "numorix/curves/internal/conic_support.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuCylSurf";

}  // namespace

CNuCylSurf::CNuCylSurf(double dRadius) : m_dRadius(dRadius) {
    m_eObjectType = eTypeCylSurf;
    conic::CheckPositive(dRadius, kLocation, "radius");
}

CNuCylSurf::CNuCylSurf(double dRadius, const CNuPoint& axisPoint, const CNuVector& axis)
    : CNuCylSurf(dRadius) {
    // The same tests and frame as the normal of a circle: size 3 (cause 4), not zero (cause 3).
    conic::Frame frame = conic::FrameFromNormal(axis, kLocation);
    SetPosition(axisPoint, frame.xAxis, frame.zAxis);
}

CNuCylSurf::CNuCylSurf(const CNuCylSurf& other) = default;
CNuCylSurf& CNuCylSurf::operator=(const CNuCylSurf& other) = default;
CNuCylSurf::~CNuCylSurf() = default;

void CNuCylSurf::GetData(double* pdRadius, CNuPoint* pAxisPoint, CNuVector* pAxis) const {
    if (pdRadius != nullptr) *pdRadius = m_dRadius;
    GetPosition(pAxisPoint, nullptr, pAxis);
}

CNuVector CNuCylSurf::GetAxisDirection() const { return GetFrameZAxis(); }

CNuPoint CNuCylSurf::GetAxisPoint() const { return GetFrameOrigin(); }

CNuLine CNuCylSurf::GetAxis() const { return CNuLine(GetAxisPoint(), GetAxisDirection()); }

}  // namespace numorix
