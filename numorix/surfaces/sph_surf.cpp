// The sphere x^2 + y^2 + z^2 = r^2 of its local frame: the centre is the local origin. A sphere
// built with a centre C has the frame (origin C, the world X and Z axes), so that the world
// sphere is { P : |P - C| = r }.
#include "numorix/surfaces/sph_surf.h"

#include "numorix/curves/internal/conic_support.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuSphSurf";

}  // namespace

CNuSphSurf::CNuSphSurf(double dRadius) : m_dRadius(dRadius) {
    m_eObjectType = eTypeSphSurf;
    conic::CheckPositive(dRadius, kLocation, "radius");
}

CNuSphSurf::CNuSphSurf(double dRadius, const CNuPoint& centre) : CNuSphSurf(dRadius) {
    SetPosition(centre, CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
}

CNuSphSurf::CNuSphSurf(const CNuSphSurf& other) = default;
CNuSphSurf& CNuSphSurf::operator=(const CNuSphSurf& other) = default;
CNuSphSurf::~CNuSphSurf() = default;

void CNuSphSurf::GetData(double* pdRadius, CNuPoint* pCentre) const {
    if (pdRadius != nullptr) *pdRadius = m_dRadius;
    GetPosition(pCentre, nullptr, nullptr);
}

CNuPoint CNuSphSurf::GetCentre() const { return GetFrameOrigin(); }

void CNuSphSurf::GetCentre(double* pdX, double* pdY, double* pdZ) const {
    CNuPoint centre = GetFrameOrigin();
    if (pdX != nullptr) *pdX = centre.x();
    if (pdY != nullptr) *pdY = centre.y();
    if (pdZ != nullptr) *pdZ = centre.z();
}

}  // namespace numorix
