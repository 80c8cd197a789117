#include "numorix/curves/ellipse.h"

#include "numorix/curves/internal/conic_support.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuEllipse";
const char* const kConversion = "CNuEllipse::ToPolyline/PointArray()";

}  // namespace

CNuEllipse::CNuEllipse(double dMajor, double dMinor) : m_dXRadius(dMajor), m_dYRadius(dMinor) {
    m_eObjectType = eTypeEllipse;
    Check();
}

CNuEllipse::CNuEllipse(double dMajor, double dMinor, const CNuPoint& centre)
    : CNuEllipse(dMajor, dMinor) {
    SetPosition(centre, CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
}

CNuEllipse::CNuEllipse(double dMajor, double dMinor, const CNuPoint& centre,
                       const CNuVector& normal)
    : CNuEllipse(dMajor, dMinor) {
    conic::Frame frame = conic::FrameFromNormal(normal, kLocation);
    SetPosition(centre, frame.xAxis, frame.zAxis);
}

CNuEllipse::CNuEllipse(double dMajor, double dMinor, const CNuPoint& centre,
                       const CNuVector& normal, const CNuVector& xAxis)
    : CNuEllipse(dMajor, dMinor) {
    conic::Frame frame = conic::FrameFromAxes(normal, xAxis, kLocation);
    SetPosition(centre, frame.xAxis, frame.zAxis);
}

CNuEllipse::CNuEllipse(const CNuEllipse& other) = default;
CNuEllipse& CNuEllipse::operator=(const CNuEllipse& other) = default;
CNuEllipse::~CNuEllipse() = default;

void CNuEllipse::Check() const {
    conic::CheckPositive(m_dXRadius, kLocation, "semi-axis");
    conic::CheckPositive(m_dYRadius, kLocation, "semi-axis");
    if (!(m_dXRadius > m_dYRadius)) throw CNuConstructionException(7, kLocation, "semi-axis");
}

CNuPoint CNuEllipse::GetCentre() const { return GetFrameOrigin(); }
CNuVector CNuEllipse::GetNormal() const { return GetFrameZAxis(); }
CNuVector CNuEllipse::GetXaxis() const { return GetFrameXAxis(); }

CNuPlane CNuEllipse::GetPlane() const { return CNuPlane(GetCentre(), GetNormal()); }

void CNuEllipse::GetData(double* pdXRadius, double* pdYRadius, CNuPoint* pCentre,
                         CNuVector* pNormal, CNuVector* pXAxis) const {
    if (pdXRadius != nullptr) *pdXRadius = m_dXRadius;
    if (pdYRadius != nullptr) *pdYRadius = m_dYRadius;
    GetPosition(pCentre, pXAxis, pNormal);
}

CNuPointArray CNuEllipse::ToPointArray(int nPoints) const {
    if (nPoints < 2) throw CNuOperationException(12, "conversion", kConversion);
    int k = nPoints - 1;
    double c = 0.0;
    double s = 0.0;
    NuCosSin(Nu_2PI / k, &c, &s);

    CNuPointArray points(nPoints);
    for (int i = 0; i < nPoints; ++i)
        points.Add(CNuPoint());
    CNuPoint* pData = points.GetData();
    pData[0] = CNuPoint(m_dXRadius, 0.0, 0.0);
    pData[k] = pData[0];
    // The recurrence runs on (cos t, sin t); each point scales it by the semi-axes.
    double dCos = 1.0;
    double dSin = 0.0;
    for (int i = 1; i < k; ++i) {
        double dCosNext = dCos * c - dSin * s;
        dSin = dCos * s + dSin * c;
        dCos = dCosNext;
        pData[i] = CNuPoint(m_dXRadius * dCos, m_dYRadius * dSin, 0.0);
    }
    conic::PlaceInWorld(*this, &points);
    return points;
}

int CNuEllipse::IntersectWith(const CNuLine& line, CNuPoint* pFirst, CNuPoint* pSecond) const {
    CNuLine local = conic::LocalLine(*this, line);
    const CNuPoint& p = local.GetPoint();
    const double* pd = local.GetDirection().GetData();
    double u = pd[0] / m_dXRadius;
    double v = pd[1] / m_dYRadius;
    double w = p.x() / m_dXRadius;
    double q = p.y() / m_dYRadius;
    return conic::IntersectLocalLine(*this, local, w * w + q * q - 1.0, 2.0 * (w * u + q * v),
                                     u * u + v * v, pFirst, pSecond);
}

int CNuEllipse::IntersectWith(const CNuPlane& plane, CNuPoint* pFirst, CNuPoint* pSecond) const {
    return conic::IntersectPlane(*this, plane, pFirst, pSecond);
}

}  // namespace numorix
