// The circular cone x^2 + y^2 = z^2 tan^2(alpha) of its local frame: the apex is the local origin
// and the axis the local Z axis, into the opening. A cone built with an apex A and a direction a
// has the frame (origin A, Z = a / |a|, X = OrthonormalX(a)), so that the world axis is
// { A + t a } and the nappe the fits describe lies at t > 0.
#include "numorix/surfaces/con_surf.h"

#include "numorix/curves/internal/conic_support.h"
#include "numorix/foundation/exception.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuConSurf";

}  // namespace

CNuConSurf::CNuConSurf(double dSemiAngle) : m_dSemiAngle(dSemiAngle) {
    m_eObjectType = eTypeConSurf;
    // Written so that NaN fails as well.
    if (!(dSemiAngle > 0.0 && dSemiAngle < 90.0)) throw CNuConstructionException(6, kLocation);
}

CNuConSurf::CNuConSurf(double dSemiAngle, const CNuPoint& apex, const CNuVector& axis)
    : CNuConSurf(dSemiAngle) {
    // The tests and frame of a cylinder's axis: size 3 (cause 4), not zero (cause 3).
    conic::Frame frame = conic::FrameFromNormal(axis, kLocation);
    SetPosition(apex, frame.xAxis, frame.zAxis);
}

CNuConSurf::CNuConSurf(const CNuConSurf& other) = default;
CNuConSurf& CNuConSurf::operator=(const CNuConSurf& other) = default;
CNuConSurf::~CNuConSurf() = default;

void CNuConSurf::GetData(double* pdSemiAngle, CNuPoint* pApex, CNuVector* pAxis) const {
    if (pdSemiAngle != nullptr) *pdSemiAngle = m_dSemiAngle;
    GetPosition(pApex, nullptr, pAxis);
}

CNuPoint CNuConSurf::GetApex() const { return GetFrameOrigin(); }

CNuVector CNuConSurf::GetAxisDirection() const { return GetFrameZAxis(); }

CNuLine CNuConSurf::GetAxis() const { return CNuLine(GetApex(), GetAxisDirection()); }

}  // namespace numorix
