#include "numorix/geometry/non_linear_geometry.h"

#include <cmath>
#include <new>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/cartesian_coord.h"
#include "numorix/geometry/point.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

// A new frame, or a memory failure instead of a null frame that later use would dereference.
CNuCartesianCoord* NewFrame(const CNuCartesianCoord* pSource) {
    CNuCartesianCoord* p = pSource != nullptr ? new (std::nothrow) CNuCartesianCoord(*pSource)
                                              : new (std::nothrow) CNuCartesianCoord();
    if (p == nullptr) throw CNuMemoryException("CNuNonLinearGeometry::SetPosition()");
    return p;
}

// The rotation tests shared by the axis forms: size 3, then not zero.
void CheckRotationAxis(const CNuVector& axis) {
    if (axis.GetSize() != 3) throw CNuOperationException(10, "rotation", "CNuNonLinearGeometry");
    if (axis.IsZero(NuGetZero()) == eNuTrue) {
        throw CNuOperationException(9, "rotation", "CNuNonLinearGeometry");
    }
}

CNuPoint TimesMatrix(const CNuPoint& p, const CNuMatrix& m) {
    return (p.To3DVector() * m).To3DPoint();
}

}  // namespace

CNuNonLinearGeometry::CNuNonLinearGeometry() : m_pPosition(nullptr) {}

CNuNonLinearGeometry::CNuNonLinearGeometry(const CNuNonLinearGeometry& other)
    : CNuGeometry(other), m_pPosition(nullptr) {
    if (other.m_pPosition != nullptr) m_pPosition = NewFrame(other.m_pPosition);
}

CNuNonLinearGeometry& CNuNonLinearGeometry::operator=(const CNuNonLinearGeometry& other) {
    if (this == &other) return *this;
    CNuGeometry::operator=(other);
    CNuCartesianCoord* pNew = other.m_pPosition != nullptr ? NewFrame(other.m_pPosition) : nullptr;
    delete m_pPosition;
    m_pPosition = pNew;
    return *this;
}

CNuNonLinearGeometry::~CNuNonLinearGeometry() { delete m_pPosition; }

void CNuNonLinearGeometry::EnsurePosition() {
    if (m_pPosition == nullptr) m_pPosition = NewFrame(nullptr);
}

void CNuNonLinearGeometry::GetPosition(CNuPoint* pOrigin, CNuVector* pXAxis,
                                       CNuVector* pZAxis) const {
    if (m_pPosition != nullptr) {
        m_pPosition->GetData(pOrigin, pXAxis, pZAxis);
        return;
    }
    if (pOrigin != nullptr) *pOrigin = CNuPoint(0.0, 0.0, 0.0);
    if (pXAxis != nullptr) *pXAxis = CNuVector(1.0, 0.0, 0.0);
    if (pZAxis != nullptr) *pZAxis = CNuVector(0.0, 0.0, 1.0);
}

CNuPoint CNuNonLinearGeometry::GetFrameOrigin() const {
    CNuPoint origin;
    GetPosition(&origin, nullptr, nullptr);
    return origin;
}

CNuVector CNuNonLinearGeometry::GetFrameXAxis() const {
    CNuVector xAxis;
    GetPosition(nullptr, &xAxis, nullptr);
    return xAxis;
}

CNuVector CNuNonLinearGeometry::GetFrameZAxis() const {
    CNuVector zAxis;
    GetPosition(nullptr, nullptr, &zAxis);
    return zAxis;
}

void CNuNonLinearGeometry::SetPosition(const CNuPoint& origin, const CNuVector& xAxis,
                                       const CNuVector& zAxis) {
    CNuCartesianCoord* pNew = NewFrame(nullptr);
    pNew->SetData(origin, xAxis, zAxis);
    delete m_pPosition;
    m_pPosition = pNew;
}

void CNuNonLinearGeometry::CopyPosition(const CNuNonLinearGeometry& other) {
    if (other.m_pPosition == nullptr || &other == this) return;
    CNuCartesianCoord* pNew = NewFrame(other.m_pPosition);
    delete m_pPosition;
    m_pPosition = pNew;
}

// Absolute: the point becomes the origin, the axes stay.
void CNuNonLinearGeometry::Translate(const CNuPoint& origin) {
    EnsurePosition();
    m_pPosition->SetOrigin(origin);
}

// Relative: the offsets are added to the origin.
void CNuNonLinearGeometry::Translate(double dx, double dy, double dz) {
    EnsurePosition();
    CNuPoint origin = m_pPosition->GetOrigin();
    origin.Translate(dx, dy, dz);
    m_pPosition->SetOrigin(origin);
}

void CNuNonLinearGeometry::Rotate(double dAngle, const CNuVector& axis, const CNuPoint& centre) {
    if (NuGetZero() > std::fabs(dAngle)) return;
    CheckRotationAxis(axis);
    Rotate_2(CNuGeometry::RotationMatrix(dAngle, axis), centre);
}

void CNuNonLinearGeometry::Rotate(double dAngle, CNuGeometry::EAxisType eAxis,
                                  const CNuPoint& centre) {
    if (NuGetZero() > std::fabs(dAngle)) return;
    Rotate_2(CNuGeometry::RotationMatrix(dAngle, eAxis), centre);
}

void CNuNonLinearGeometry::Rotate(double dAngle, const CNuVector& axis) {
    if (NuGetZero() > std::fabs(dAngle)) return;
    CheckRotationAxis(axis);
    Rotate_1(CNuGeometry::RotationMatrix(dAngle, axis));
}

void CNuNonLinearGeometry::Rotate(double dAngle, CNuGeometry::EAxisType eAxis) {
    if (NuGetZero() > std::fabs(dAngle)) return;
    Rotate_1(CNuGeometry::RotationMatrix(dAngle, eAxis));
}

// About the world origin: origin and axes are each multiplied by the rotation.
void CNuNonLinearGeometry::Rotate_1(const CNuMatrix& rotation) {
    EnsurePosition();
    CNuPoint origin = TimesMatrix(m_pPosition->GetOrigin(), rotation);
    CNuVector xAxis = m_pPosition->GetLocalXaxis() * rotation;
    CNuVector zAxis = m_pPosition->GetLocalZaxis() * rotation;
    m_pPosition->SetData(origin, xAxis, zAxis);
}

// About a centre: the origin turns as (origin - centre) M + centre, the axes as free vectors.
void CNuNonLinearGeometry::Rotate_2(const CNuMatrix& rotation, const CNuPoint& centre) {
    EnsurePosition();
    CNuPoint origin = TimesMatrix(m_pPosition->GetOrigin() - centre, rotation) + centre;
    CNuVector xAxis = m_pPosition->GetLocalXaxis() * rotation;
    CNuVector zAxis = m_pPosition->GetLocalZaxis() * rotation;
    m_pPosition->SetData(origin, xAxis, zAxis);
}

CNuMatrix CNuNonLinearGeometry::GetRotation() const {
    CNuMatrix r = CNuMatrix::Identity(3);
    if (m_pPosition == nullptr) return r;
    const CNuVector& xAxis = m_pPosition->GetLocalXaxis();
    const CNuVector& zAxis = m_pPosition->GetLocalZaxis();
    CNuVector yAxis = zAxis * xAxis;
    r.SetRowVector(0, xAxis);
    r.SetRowVector(1, yAxis);
    r.SetRowVector(2, zAxis);
    return r;
}

CNuVector CNuNonLinearGeometry::GetTranslation() const {
    if (m_pPosition == nullptr) return CNuVector(0.0, 0.0, 0.0);
    return m_pPosition->GetOrigin().To3DVector();
}

CNuMatrix CNuNonLinearGeometry::GetTransformation() const {
    CNuMatrix t = CNuMatrix::Identity(4);
    t.SetSubMatrix(0, 2, 0, 2, GetRotation());
    CNuVector translation = GetTranslation();
    for (int j = 0; j < 3; ++j)
        t.Element(3, j) = translation[j];
    return t;
}

CNuMatrix CNuNonLinearGeometry::GetInverseRotation() const { return GetRotation().Transpose(); }

CNuVector CNuNonLinearGeometry::GetInverseTranslation() const { return GetTranslation() * -1.0; }

CNuMatrix CNuNonLinearGeometry::GetInverseTransformation() const {
    CNuMatrix inverseRotation = GetInverseRotation();
    CNuVector row = GetInverseTranslation() * inverseRotation;
    CNuMatrix t = CNuMatrix::Identity(4);
    t.SetSubMatrix(0, 2, 0, 2, inverseRotation);
    for (int j = 0; j < 3; ++j)
        t.Element(3, j) = row[j];
    return t;
}

}  // namespace numorix
