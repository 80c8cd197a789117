#include "numorix/curves/parabola.h"

#include <cmath>

#include "numorix/curves/internal/conic_support.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuParabola";
const char* const kConversion = "CNuParabola::ToPolyline/PointArray()";
const char* const kName = "focal-length";

}  // namespace

CNuParabola::CNuParabola(double dFocalLength) : m_dFocalLength(dFocalLength) {
    m_eObjectType = eTypeParabola;
    conic::CheckPositive(dFocalLength, kLocation, kName);
}

CNuParabola::CNuParabola(double dFocalLength, const CNuPoint& vertex) : CNuParabola(dFocalLength) {
    SetPosition(vertex, CNuVector(1.0, 0.0, 0.0), CNuVector(0.0, 0.0, 1.0));
}

CNuParabola::CNuParabola(double dFocalLength, const CNuPoint& vertex, const CNuVector& normal)
    : CNuParabola(dFocalLength) {
    conic::Frame frame = conic::FrameFromNormal(normal, kLocation);
    SetPosition(vertex, frame.xAxis, frame.zAxis);
}

CNuParabola::CNuParabola(double dFocalLength, const CNuPoint& vertex, const CNuVector& normal,
                         const CNuVector& xAxis)
    : CNuParabola(dFocalLength) {
    conic::Frame frame = conic::FrameFromAxes(normal, xAxis, kLocation);
    SetPosition(vertex, frame.xAxis, frame.zAxis);
}

CNuParabola::CNuParabola(const CNuParabola& other) = default;
CNuParabola& CNuParabola::operator=(const CNuParabola& other) = default;
CNuParabola::~CNuParabola() = default;

CNuPoint CNuParabola::GetVertex() const { return GetFrameOrigin(); }
CNuVector CNuParabola::GetNormal() const { return GetFrameZAxis(); }
CNuVector CNuParabola::GetXaxis() const { return GetFrameXAxis(); }

CNuPlane CNuParabola::GetPlane() const { return CNuPlane(GetVertex(), GetNormal()); }

void CNuParabola::GetData(double* pdFocalLength, CNuPoint* pVertex, CNuVector* pNormal,
                          CNuVector* pXAxis) const {
    if (pdFocalLength != nullptr) *pdFocalLength = m_dFocalLength;
    GetPosition(pVertex, pXAxis, pNormal);
}

CNuPointArray CNuParabola::ToPointArray(int nPoints, double dLow, double dHigh, int nHalf) const {
    if (nPoints < 2) throw CNuOperationException(12, "conversion", kConversion);
    if (!(dLow < dHigh)) throw CNuOperationException(15, "conversion", kConversion);
    if (dLow < 0.0) throw CNuOperationException(14, "conversion", kConversion);
    double f = m_dFocalLength;
    double s1 = std::sqrt(dLow / f);
    double s2 = std::sqrt(dHigh / f);
    double h = (s2 - s1) / (nPoints - 1);

    // x = f s^2 and y = 2 f s advance by running differences: y by 2 f h, x by f h (2 s + h),
    // which itself grows by 2 f h^2 at each step.
    double x = f * s1 * s1;
    double y = 2.0 * f * s1;
    double dx = f * h * (2.0 * s1 + h);
    double ddx = 2.0 * f * h * h;
    double dy = 2.0 * f * h;
    double dSign = nHalf == 0 ? -1.0 : 1.0;

    CNuPointArray points(nPoints);
    for (int i = 0; i < nPoints; ++i) {
        points.Add(CNuPoint(x, dSign * y, 0.0));
        x += dx;
        dx += ddx;
        y += dy;
    }
    conic::PlaceInWorld(*this, &points);
    return points;
}

int CNuParabola::IntersectWith(const CNuLine& line, CNuPoint* pFirst, CNuPoint* pSecond) const {
    CNuLine local = conic::LocalLine(*this, line);
    const CNuPoint& p = local.GetPoint();
    const double* pd = local.GetDirection().GetData();
    double f4 = 4.0 * m_dFocalLength;
    return conic::IntersectLocalLine(*this, local, p.y() * p.y() - f4 * p.x(),
                                     2.0 * p.y() * pd[1] - f4 * pd[0], pd[1] * pd[1], pFirst,
                                     pSecond);
}

int CNuParabola::IntersectWith(const CNuPlane& plane, CNuPoint* pFirst, CNuPoint* pSecond) const {
    return conic::IntersectPlane(*this, plane, pFirst, pSecond);
}

}  // namespace numorix
