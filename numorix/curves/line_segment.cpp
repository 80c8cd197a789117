#include "numorix/curves/line_segment.h"

#include <cmath>
#include <new>

#include "numorix/curves/circle.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/point_array.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuLineSegment";

bool InUnitInterval(double t) { return t >= 0.0 && t <= 1.0; }

// Each component of v below dTol in magnitude.
bool Negligible(const CNuVector& v, double dTol) {
    const double* pd = v.GetData();
    return std::fabs(pd[0]) < dTol && std::fabs(pd[1]) < dTol && std::fabs(pd[2]) < dTol;
}

}  // namespace

CNuLineSegment::CNuLineSegment() : m_start(0.0, 0.0, 0.0), m_end(1.0, 0.0, 0.0) {
    m_eObjectType = eTypeLineSegment;
}

CNuLineSegment::CNuLineSegment(const CNuPoint& start, const CNuPoint& end)
    : m_start(start), m_end(end) {
    m_eObjectType = eTypeLineSegment;
    if (start.IsEqual(end, NuGetLengthTol()) == eNuTrue) {
        throw CNuConstructionException(10, kLocation);
    }
}

CNuLineSegment::CNuLineSegment(const CNuLineSegment& other) = default;
CNuLineSegment& CNuLineSegment::operator=(const CNuLineSegment& other) = default;
CNuLineSegment::~CNuLineSegment() = default;

CNuPoint CNuLineSegment::GetStartPoint() const { return GetPointInSpace(m_start); }

CNuPoint CNuLineSegment::GetEndPoint() const { return GetPointInSpace(m_end); }

void CNuLineSegment::GetStartData(CNuPoint* pPoint, CNuVector* pTangent,
                                  CNuVector* pCurvature) const {
    if (pPoint != nullptr) *pPoint = GetStartPoint();
    if (pTangent != nullptr) *pTangent = GetTangent();
    if (pCurvature != nullptr) *pCurvature = CNuVector(0.0, 0.0, 0.0);
}

void CNuLineSegment::GetEndData(CNuPoint* pPoint, CNuVector* pTangent,
                                CNuVector* pCurvature) const {
    if (pPoint != nullptr) *pPoint = GetEndPoint();
    if (pTangent != nullptr) *pTangent = GetTangent();
    if (pCurvature != nullptr) *pCurvature = CNuVector(0.0, 0.0, 0.0);
}

void CNuLineSegment::BoundingBox(CNuPoint* pMin, CNuPoint* pMax) const {
    CNuPointArray ends(2);
    ends.Add(GetStartPoint());
    ends.Add(GetEndPoint());
    ends.BoundingBox(pMin, pMax);
}

void CNuLineSegment::BoundingCircle(double* pdRadius, CNuPoint* pCentre) const {
    CNuPoint start = GetStartPoint();
    CNuPoint end = GetEndPoint();
    if (pdRadius != nullptr) *pdRadius = 0.5 * start.DistanceTo(end);
    if (pCentre != nullptr) *pCentre = start.MidPoint(end);
}

double CNuLineSegment::DistanceTo(const CNuBoundedCurve* pCurve, CNuPoint* pOnThis,
                                  CNuPoint* pOnOther) const {
    if (pCurve->GetType() == eTypeLineSegment) {
        return DistanceTo(*static_cast<const CNuLineSegment*>(pCurve), pOnThis, pOnOther);
    }
    // The other curve measures itself against this segment, the outputs swapped.
    return pCurve->DistanceTo(this, pOnOther, pOnThis);
}

double CNuLineSegment::DistanceTo(const CNuPoint& point) const {
    CNuPoint scratch;
    return DistanceTo(point, &scratch);
}

double CNuLineSegment::Length() const {
    return NuPythag(m_end.x() - m_start.x(), m_end.y() - m_start.y(), m_end.z() - m_start.z());
}

CNuLineSegment* CNuLineSegment::Clone() const {
    CNuLineSegment* pNew = new (std::nothrow) CNuLineSegment(*this);
    if (pNew == nullptr) throw CNuMemoryException("CNuLineSegment::Offset()");
    return pNew;
}

CNuLineSegment* CNuLineSegment::ShiftedCopy(const CNuVector& shift) const {
    CNuPoint offset = shift.To3DPoint();
    CNuLineSegment* pNew = Clone();
    pNew->m_start += offset;
    pNew->m_end += offset;
    return pNew;
}

CNuBoundedCurve* CNuLineSegment::Offset(double dDistance, const CNuVector& reference,
                                        int nDimension) {
    static_cast<void>(nDimension);
    if (std::fabs(dDistance) < NuGetZero()) return Clone();
    if (reference.GetSize() != 3) throw CNuOperationException(10, "Offset", kLocation);
    if (Negligible(reference, NuGetZero())) throw CNuOperationException(9, "Offset", kLocation);
    CNuVector n(reference);
    n.Normalise();
    CNuVector u = (m_end - m_start).To3DVector();
    u.Normalise();
    CNuVector w = n * u;
    if (Negligible(w, NuGetTol())) throw CNuOperationException(26, "Offset", kLocation);
    return ShiftedCopy(w * dDistance);
}

CNuBoundedCurve* CNuLineSegment::Offset(double dDistance) {
    if (std::fabs(dDistance) < NuGetZero()) return Clone();
    CNuVector u = (m_end - m_start).To3DVector();
    u.Normalise();
    CNuVector w = CNuVector(0.0, 0.0, 1.0) * u;
    if (Negligible(w, NuGetTol())) throw CNuOperationException(26, "Offset", kLocation);
    return ShiftedCopy(w * dDistance);
}

ENuBoolean CNuLineSegment::IsEqual(const CNuLineSegment& other, double dTol) const {
    CNuPoint start = GetStartPoint();
    CNuPoint end = GetEndPoint();
    CNuPoint otherStart = other.GetStartPoint();
    CNuPoint otherEnd = other.GetEndPoint();
    if (start.IsEqual(otherStart, dTol) == eNuTrue && end.IsEqual(otherEnd, dTol) == eNuTrue) {
        return eNuTrue;
    }
    if (start.IsEqual(otherEnd, dTol) == eNuTrue && end.IsEqual(otherStart, dTol) == eNuTrue) {
        return eNuTrue;
    }
    return eNuFalse;
}

double CNuLineSegment::GetParameter(const CNuPoint& point) const {
    CNuPoint start = GetStartPoint();
    CNuPoint end = GetEndPoint();
    double dLengthTol = NuGetLengthTol();
    // The ends are recognised before the line is asked, so a point just off the line at an end
    // still gets its end's parameter.
    if (point.IsEqual(start, dLengthTol) == eNuTrue) return 0.0;
    if (point.IsEqual(end, dLengthTol) == eNuTrue) return 1.0;
    if (point.LineSide(CNuLine(start, end), dLengthTol) != eLineSideOn) {
        throw CNuOperationException(14, "calculation", "CNuLineSegment::GetParameter()");
    }
    CNuVector v = (end - start).To3DVector();
    return (v % (point - start).To3DVector()) / (v % v);
}

CNuPoint CNuLineSegment::GetPoint(double t) const {
    CNuPoint start = GetStartPoint();
    return start + (GetEndPoint() - start) * t;
}

CNuVector CNuLineSegment::GetTangent() const {
    CNuVector tangent = (GetEndPoint() - GetStartPoint()).To3DVector();
    tangent.Normalise();
    return tangent;
}

double CNuLineSegment::DistanceTo(const CNuPoint& point, CNuPoint* pClosest) const {
    CNuPoint start = GetStartPoint();
    CNuPoint end = GetEndPoint();
    CNuVector v = (end - start).To3DVector();
    double t = (v % (point - start).To3DVector()) / (v % v);
    // The lower end is judged against the tolerance, the upper one against exactly 1.
    CNuPoint closest;
    if (t < NuGetTol()) {
        closest = start;
    } else if (t >= 1.0) {
        closest = end;
    } else {
        closest = start + (v * t).To3DPoint();
    }
    if (pClosest != nullptr) *pClosest = closest;
    return NuPythag(closest.x() - point.x(), closest.y() - point.y(), closest.z() - point.z());
}

double CNuLineSegment::DistanceTo(const CNuLineSegment& other, CNuPoint* pOnThis,
                                  CNuPoint* pOnOther) const {
    CNuPoint onThis;
    CNuPoint onOther;
    CNuLine thisLine(GetStartPoint(), GetEndPoint());
    CNuLine otherLine(other.GetStartPoint(), other.GetEndPoint());
    if (thisLine.IntersectWith(otherLine, &onThis) == 1 && InUnitInterval(GetParameter(onThis)) &&
        InUnitInterval(other.GetParameter(onThis))) {
        if (pOnThis != nullptr) *pOnThis = onThis;
        if (pOnOther != nullptr) *pOnOther = onThis;
        return 0.0;
    }

    // The four end-to-segment distances; a later candidate wins only when strictly nearer.
    CNuPoint closest;
    CNuPoint end = GetEndPoint();
    double dBest = other.DistanceTo(end, &closest);
    onThis = end;
    onOther = closest;
    auto consider = [&](double d, const CNuPoint& a, const CNuPoint& b) {
        if (!(d < dBest)) return;
        dBest = d;
        onThis = a;
        onOther = b;
    };
    CNuPoint start = GetStartPoint();
    consider(other.DistanceTo(start, &closest), start, closest);
    CNuPoint otherStart = other.GetStartPoint();
    consider(DistanceTo(otherStart, &closest), closest, otherStart);
    CNuPoint otherEnd = other.GetEndPoint();
    consider(DistanceTo(otherEnd, &closest), closest, otherEnd);
    if (pOnThis != nullptr) *pOnThis = onThis;
    if (pOnOther != nullptr) *pOnOther = onOther;
    return dBest;
}

int CNuLineSegment::IntersectWith(const CNuLineSegment& other, CNuPoint* pPoint) const {
    CNuPoint crossing;
    CNuLine thisLine(GetStartPoint(), GetEndPoint());
    CNuLine otherLine(other.GetStartPoint(), other.GetEndPoint());
    if (thisLine.IntersectWith(otherLine, &crossing) == 0) return 0;
    if (pPoint != nullptr) *pPoint = crossing;
    return InUnitInterval(GetParameter(crossing)) && InUnitInterval(other.GetParameter(crossing))
               ? 1
               : 0;
}

int CNuLineSegment::IntersectWith(const CNuCircle& circle, CNuPoint* pFirst,
                                  CNuPoint* pSecond) const {
    CNuPoint hits[2];
    int nHits = CNuLine(GetStartPoint(), GetEndPoint()).IntersectWith(circle, &hits[0], &hits[1]);
    int nKept = 0;
    for (int i = 0; i < nHits; ++i) {
        if (!InUnitInterval(GetParameter(hits[i]))) continue;
        CNuPoint* pTarget = nKept == 0 ? pFirst : pSecond;
        if (pTarget != nullptr) *pTarget = hits[i];
        ++nKept;
    }
    return nKept;
}

bool CNuLineSegment::BinaryDump(std::ofstream& stream) const {
    const char cTag = 'l';
    stream.write(&cTag, 1);
    GetStartPoint().BinaryDump(stream);
    GetEndPoint().BinaryDump(stream);
    return stream.good();
}

// Lenient: a point record with a wrong tag leaves that end as it was, and the read still counts.
bool CNuLineSegment::BinaryRead(std::ifstream& stream) {
    char cTag = '0';
    stream.read(&cTag, 1);
    if (cTag != 'l') return false;
    m_start.BinaryRead(stream);
    m_end.BinaryRead(stream);
    return true;
}

}  // namespace numorix
