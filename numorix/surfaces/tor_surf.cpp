// The torus of its local frame: the points at the minor radius r from the circle of the major
// radius R about the local Z axis in the plane z = 0,
//   (sqrt(x^2 + y^2) - R)^2 + z^2 = r^2.
// A torus built with a centre C and an axis a has the frame (origin C, Z = a / |a|,
// X = OrthonormalX(a)).
#include "numorix/surfaces/tor_surf.h"

#include "numorix/curves/internal/conic_support.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuTorSurf";

}  // namespace

CNuTorSurf::CNuTorSurf(double dMajorRadius, double dMinorRadius)
    : m_dMajorRadius(dMajorRadius), m_dMinorRadius(dMinorRadius) {
    m_eObjectType = eTypeTorSurf;
    conic::CheckPositive(dMajorRadius, kLocation, "major radius");
    conic::CheckPositive(dMinorRadius, kLocation, "minor radius");
}

CNuTorSurf::CNuTorSurf(double dMajorRadius, double dMinorRadius, const CNuPoint& centre,
                       const CNuVector& axis)
    : CNuTorSurf(dMajorRadius, dMinorRadius) {
    conic::Frame frame = conic::FrameFromNormal(axis, kLocation);
    SetPosition(centre, frame.xAxis, frame.zAxis);
}

CNuTorSurf::CNuTorSurf(const CNuTorSurf& other) = default;
CNuTorSurf& CNuTorSurf::operator=(const CNuTorSurf& other) = default;
CNuTorSurf::~CNuTorSurf() = default;

void CNuTorSurf::GetData(double* pdMajorRadius, double* pdMinorRadius, CNuPoint* pCentre,
                         CNuVector* pAxis) const {
    if (pdMajorRadius != nullptr) *pdMajorRadius = m_dMajorRadius;
    if (pdMinorRadius != nullptr) *pdMinorRadius = m_dMinorRadius;
    GetPosition(pCentre, nullptr, pAxis);
}

CNuPoint CNuTorSurf::GetCentre() const { return GetFrameOrigin(); }

CNuVector CNuTorSurf::GetAxisDirection() const { return GetFrameZAxis(); }

}  // namespace numorix
