#include "numorix/curves/hyperbola.h"

#include <cmath>

#include "numorix/curves/internal/conic_support.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuHyperbola";
const char* const kConversion = "CNuHyperbola::ToPolyline/PointArray()";

}  // namespace

CNuHyperbola::CNuHyperbola(double dTransverse, double dConjugate)
    : m_dXRadius(dTransverse), m_dYRadius(dConjugate) {
    m_eObjectType = eTypeHyperbola;
    Check();
}

CNuHyperbola::CNuHyperbola(double dTransverse, double dConjugate, const CNuPoint& centre)
    : m_dXRadius(dTransverse), m_dYRadius(dConjugate) {
    m_eObjectType = eTypeHyperbola;
    Check();
    SetPosition(centre, CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
}

CNuHyperbola::CNuHyperbola(double dTransverse, double dConjugate, const CNuPoint& centre,
                           const CNuVector& normal)
    : m_dXRadius(dTransverse), m_dYRadius(dConjugate) {
    m_eObjectType = eTypeHyperbola;
    Check();
    CNuVector xAxis;
    CNuVector zAxis;
    conic::FrameFromNormal(normal, kLocation, &xAxis, &zAxis);
    SetPosition(centre, xAxis, zAxis);
}

CNuHyperbola::CNuHyperbola(double dTransverse, double dConjugate, const CNuPoint& centre,
                           const CNuVector& normal, const CNuVector& xAxis)
    : m_dXRadius(dTransverse), m_dYRadius(dConjugate) {
    m_eObjectType = eTypeHyperbola;
    Check();
    CNuVector x;
    CNuVector z;
    conic::FrameFromAxes(normal, xAxis, kLocation, &x, &z);
    SetPosition(centre, x, z);
}

CNuHyperbola::CNuHyperbola(const CNuHyperbola& other) = default;
CNuHyperbola& CNuHyperbola::operator=(const CNuHyperbola& other) = default;
CNuHyperbola::~CNuHyperbola() = default;

void CNuHyperbola::Check() const {
    conic::CheckPositive(m_dXRadius, kLocation, "semi-axis");
    conic::CheckPositive(m_dYRadius, kLocation, "semi-axis");
}

CNuPoint CNuHyperbola::GetCentre() const {
    CNuPoint centre;
    GetPosition(&centre, nullptr, nullptr);
    return centre;
}

CNuVector CNuHyperbola::GetNormal() const {
    CNuVector normal;
    GetPosition(nullptr, nullptr, &normal);
    return normal;
}

CNuVector CNuHyperbola::GetXaxis() const {
    CNuVector xAxis;
    GetPosition(nullptr, &xAxis, nullptr);
    return xAxis;
}

CNuPlane CNuHyperbola::GetPlane() const { return CNuPlane(GetCentre(), GetNormal()); }

void CNuHyperbola::GetData(double* pdXRadius, double* pdYRadius, CNuPoint* pCentre,
                           CNuVector* pNormal, CNuVector* pXAxis) const {
    if (pdXRadius != nullptr) *pdXRadius = m_dXRadius;
    if (pdYRadius != nullptr) *pdYRadius = m_dYRadius;
    GetPosition(pCentre, pXAxis, pNormal);
}

CNuPointArray CNuHyperbola::ToPointArray(int nPoints, double dLow, double dHigh, int nHalf) const {
    if (nPoints < 2) throw CNuOperationException(12, "conversion", kConversion);
    if (!(dLow < dHigh)) throw CNuOperationException(15, "conversion", kConversion);
    double a = m_dXRadius;
    double b = m_dYRadius;
    if (dLow < a || dHigh < a) throw CNuOperationException(14, "conversion", kConversion);
    double t1 = acosh(dLow / a);
    double t2 = acosh(dHigh / a);
    double h = (t2 - t1) / (nPoints - 1);
    double dCoshStep = std::cosh(h);
    double dSinhStep = std::sinh(h);

    CNuPointArray points(nPoints);
    double x = a * std::cosh(t1);
    double y = b * std::sinh(t1);
    for (int i = 0; i < nPoints; ++i) {
        if (i > 0) {
            // The hyperbolic rotation by h, scaled to the semi-axes.
            double xNext = x * dCoshStep + (a / b) * y * dSinhStep;
            y = (b / a) * x * dSinhStep + y * dCoshStep;
            x = xNext;
        }
        points.Add(CNuPoint(nHalf != 0 ? -x : x, y, 0.0));
    }
    conic::PlaceInWorld(*this, &points);
    return points;
}

int CNuHyperbola::IntersectWith(const CNuLine& line, CNuPoint* pFirst, CNuPoint* pSecond) const {
    CNuLine local = conic::LocalLine(*this, line);
    const CNuPoint& p = local.GetPoint();
    const double* pd = local.GetDirection().GetData();
    double u = pd[0] / m_dXRadius;
    double v = pd[1] / m_dYRadius;
    double w = p.x() / m_dXRadius;
    double q = p.y() / m_dYRadius;
    return conic::IntersectLocalLine(*this, local, w * w - q * q - 1.0, 2.0 * (w * u - q * v),
                                     u * u - v * v, pFirst, pSecond);
}

int CNuHyperbola::IntersectWith(const CNuPlane& plane, CNuPoint* pFirst, CNuPoint* pSecond) const {
    CNuLine line;
    if (GetPlane().IntersectWith(plane, &line) == 0) return 0;
    CNuPoint first;
    CNuPoint second;
    if (pFirst == nullptr) pFirst = &first;
    if (pSecond == nullptr) pSecond = &second;
    int nFound = IntersectWith(line, pFirst, pSecond);
    return conic::KeepOnPlane(plane, nFound, pFirst, pSecond);
}

}  // namespace numorix
