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
    : CNuHyperbola(dTransverse, dConjugate) {
    SetPosition(centre, CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
}

CNuHyperbola::CNuHyperbola(double dTransverse, double dConjugate, const CNuPoint& centre,
                           const CNuVector& normal)
    : CNuHyperbola(dTransverse, dConjugate) {
    conic::Frame frame = conic::FrameFromNormal(normal, kLocation);
    SetPosition(centre, frame.xAxis, frame.zAxis);
}

CNuHyperbola::CNuHyperbola(double dTransverse, double dConjugate, const CNuPoint& centre,
                           const CNuVector& normal, const CNuVector& xAxis)
    : CNuHyperbola(dTransverse, dConjugate) {
    conic::Frame frame = conic::FrameFromAxes(normal, xAxis, kLocation);
    SetPosition(centre, frame.xAxis, frame.zAxis);
}

CNuHyperbola::CNuHyperbola(const CNuHyperbola& other) = default;
CNuHyperbola& CNuHyperbola::operator=(const CNuHyperbola& other) = default;
CNuHyperbola::~CNuHyperbola() = default;

void CNuHyperbola::Check() const {
    conic::CheckPositive(m_dXRadius, kLocation, "semi-axis");
    conic::CheckPositive(m_dYRadius, kLocation, "semi-axis");
}

CNuPoint CNuHyperbola::GetCentre() const { return GetFrameOrigin(); }
CNuVector CNuHyperbola::GetNormal() const { return GetFrameZAxis(); }
CNuVector CNuHyperbola::GetXaxis() const { return GetFrameXAxis(); }

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
    return conic::IntersectPlane(*this, plane, pFirst, pSecond);
}

}  // namespace numorix
