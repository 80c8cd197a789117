// Operations of CNuVector: blocks, the homogeneous pair, predicates, arithmetic, rotations,
// angles, orthonormal frames, sorting and extremes. Storage is in vector.cpp.
#include <cmath>
#include <cstring>

#include "numorix/foundation/double_array.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

const char* const kszClass = "CNuVector";
const char* const kszAngleWith = "CNuVector::AngleWith()";

// One over 180: turns degrees into radians as Nu_PI * degrees * kdInv180.
constexpr double kdInv180 = 0.005555555555555556;

// A vector counts as zero when every element is below NuGetZero() in magnitude.
bool IsNull(const CNuVector& v) { return v.IsZero(NuGetZero()) == eNuTrue; }

// The checks that every rotation about an explicit axis makes before it uses the axis.
void CheckRotationAxis(const CNuVector& axis) {
    if (axis.GetSize() != 3) throw CNuOperationException(10, "rotation", kszClass);
    if (IsNull(axis)) throw CNuOperationException(9, "rotation", kszClass);
}

// The copy of v scaled to unit length, or v itself when it is zero.
CNuVector Normalised(const CNuVector& v) {
    CNuVector u(v);
    u.Normalise();
    return u;
}

// The component of p in the plane through the origin with unit normal n: p - (p . n) n.
CNuVector ProjectOntoPlane(const CNuVector& p, const CNuVector& n) { return p - n * (p % n); }

}  // namespace

// Blocks and the homogeneous pair ---------------------------------------------------------------

CNuVector CNuVector::SubVector(int i, int j) const {
    const char* pszWhere = "CNuVector::SubVector(i, j)";
    if (i < 0 || j >= m_nSize)
        throw CNuOperationException(3, "operation", pszWhere, 0, m_nSize - 1);
    if (i > j) throw CNuOperationException(15, "operation", pszWhere);
    CNuVector result(j - i + 1);
    std::memcpy(result.m_pdData, m_pdData + i,
                sizeof(double) * static_cast<std::size_t>(j - i + 1));
    return result;
}

void CNuVector::Homogeneous() {
    if (m_nSize != 3 && m_nSize != 4) {
        throw CNuOperationException(11, "calculation", "CNuVector::Homogeneous()");
    }
    if (m_nSize == 4) return;
    // Three elements live in the inline buffer, which already has room for the fourth.
    m_nCapacity = 4;
    m_nSize = 4;
    m_pdData[3] = 1.0;
}

void CNuVector::NonHomogeneous() {
    if (m_nSize != 3 && m_nSize != 4) {
        throw CNuOperationException(11, "calculation", "CNuVector::NonHomogeneous()");
    }
    if (m_nSize == 3) return;
    // A point at infinity (w of no magnitude) keeps its first three coordinates as they are.
    double dW = m_pdData[3];
    if (NuGetZero() > std::fabs(dW)) dW = 1.0;
    for (int i = 0; i < 3; ++i) {
        m_pdData[i] /= dW;
    }
    m_nSize = 3;  // the capacity stays 4, so that Homogeneous can reuse the array
}

// Predicates -----------------------------------------------------------------------------------

ENuBoolean CNuVector::IsPositive() const {
    for (int i = 0; i < m_nSize; ++i) {
        if (!(m_pdData[i] > 0.0)) return eNuFalse;
    }
    return eNuTrue;
}

ENuBoolean CNuVector::IsNonNegative() const {
    for (int i = 0; i < m_nSize; ++i) {
        if (m_pdData[i] < 0.0) return eNuFalse;
    }
    return eNuTrue;
}

ENuBoolean CNuVector::IsZero(double dTol) const {
    for (int i = 0; i < m_nSize; ++i) {
        if (!(dTol > std::fabs(m_pdData[i]))) return eNuFalse;
    }
    return eNuTrue;
}

ENuBoolean CNuVector::IsEqual(const CNuVector& other, double dTol) const {
    if (m_nSize != other.m_nSize) return eNuFalse;
    if (!(dTol > std::fabs(Magnitude() - other.Magnitude()))) return eNuFalse;
    // Non-zero directions in space: dTol has bounded the lengths, the fixed minimum angle bounds
    // the directions.
    if (m_nSize == 3 && !IsNull(*this) && !IsNull(other)) {
        return NuGetMinAngle() >= AngleWith(other) ? eNuTrue : eNuFalse;
    }
    return NuIsEqual(m_nSize, other.m_nSize, m_pdData, other.m_pdData, dTol);
}

ENuBoolean CNuVector::IsParallelTo(const CNuVector& other, double dAngle) const {
    double dCross = (Normalised(*this) * Normalised(other)).Magnitude();
    return std::sin(dAngle) > dCross ? eNuTrue : eNuFalse;
}

ENuBoolean CNuVector::IsOrthogonalTo(const CNuVector& other, double dAngle) const {
    double dDot = Normalised(*this) % Normalised(other);
    return std::cos(Nu_PI * 0.5 - dAngle) > std::fabs(dDot) ? eNuTrue : eNuFalse;
}

// Arithmetic -----------------------------------------------------------------------------------

CNuVector CNuVector::operator+(const CNuVector& other) const {
    if (m_nSize != other.m_nSize) throw CNuOperationException(5, "operator+", kszClass);
    CNuVector result(m_nSize);
    for (int i = 0; i < m_nSize; ++i) {
        result.m_pdData[i] = m_pdData[i] + other.m_pdData[i];
    }
    return result;
}

CNuVector CNuVector::operator-(const CNuVector& other) const {
    if (m_nSize != other.m_nSize) throw CNuOperationException(5, "operator-", kszClass);
    CNuVector result(m_nSize);
    for (int i = 0; i < m_nSize; ++i) {
        result.m_pdData[i] = m_pdData[i] - other.m_pdData[i];
    }
    return result;
}

CNuVector& CNuVector::operator+=(const CNuVector& other) {
    if (m_nSize != other.m_nSize) throw CNuOperationException(5, "operator+=", kszClass);
    for (int i = 0; i < m_nSize; ++i) {
        m_pdData[i] += other.m_pdData[i];
    }
    return *this;
}

CNuVector& CNuVector::operator-=(const CNuVector& other) {
    if (m_nSize != other.m_nSize) throw CNuOperationException(5, "operator-=", kszClass);
    for (int i = 0; i < m_nSize; ++i) {
        m_pdData[i] -= other.m_pdData[i];
    }
    return *this;
}

double CNuVector::operator%(const CNuVector& other) const {
    if (m_nSize != other.m_nSize) throw CNuOperationException(5, "operator%", kszClass);
    double dSum = 0.0;
    for (int i = 0; i < m_nSize; ++i) {
        dSum += m_pdData[i] * other.m_pdData[i];
    }
    return dSum;
}

CNuVector CNuVector::operator&(const CNuVector& other) const {
    if (m_nSize != other.m_nSize) throw CNuOperationException(5, "operator&", kszClass);
    CNuVector result(m_nSize);
    for (int i = 0; i < m_nSize; ++i) {
        result.m_pdData[i] = m_pdData[i] * other.m_pdData[i];
    }
    return result;
}

CNuVector CNuVector::operator*(const CNuVector& other) const {
    if (m_nSize != other.m_nSize) throw CNuOperationException(5, "operator*", kszClass);
    if (m_nSize != 3) throw CNuOperationException(10, "operator*", kszClass);
    const double* a = m_pdData;
    const double* b = other.m_pdData;
    return CNuVector(a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                     a[0] * b[1] - a[1] * b[0]);
}

CNuVector CNuVector::operator*(const CNuMatrix& matrix) const {
    const int nRows = matrix.GetRowSize();
    const int nColumns = matrix.GetColumnSize();
    if (m_nSize != nRows) throw CNuOperationException(5, "operator*", kszClass);
    const double* const* ppdA = matrix.GetData();
    CNuVector result(nColumns);
    for (int j = 0; j < nColumns; ++j) {
        double dSum = 0.0;
        for (int i = 0; i < nRows; ++i) {
            dSum += m_pdData[i] * ppdA[i][j];
        }
        result.m_pdData[j] = dSum;
    }
    return result;
}

CNuVector CNuVector::operator*(double dFactor) const {
    if (std::fabs(dFactor) > NuGetLarge()) throw CNuOperationException(7, "operator*", kszClass);
    CNuVector result(m_nSize);
    for (int i = 0; i < m_nSize; ++i) {
        result.m_pdData[i] = m_pdData[i] * dFactor;
    }
    return result;
}

CNuVector operator*(double dFactor, const CNuVector& vector) { return vector * dFactor; }

CNuVector& CNuVector::operator*=(double dFactor) {
    if (std::fabs(dFactor) > NuGetLarge()) throw CNuOperationException(7, "operator*=", kszClass);
    for (int i = 0; i < m_nSize; ++i) {
        m_pdData[i] *= dFactor;
    }
    return *this;
}

CNuVector CNuVector::operator/(double dDivisor) const {
    if (NuGetZero() > std::fabs(dDivisor)) throw CNuOperationException(6, "operator/", kszClass);
    CNuVector result(m_nSize);
    for (int i = 0; i < m_nSize; ++i) {
        result.m_pdData[i] = m_pdData[i] / dDivisor;
    }
    return result;
}

CNuVector& CNuVector::operator/=(double dDivisor) {
    if (NuGetZero() > std::fabs(dDivisor)) throw CNuOperationException(6, "operator/=", kszClass);
    for (int i = 0; i < m_nSize; ++i) {
        m_pdData[i] /= dDivisor;
    }
    return *this;
}

CNuVector CNuVector::operator-() const {
    CNuVector result(m_nSize);
    for (int i = 0; i < m_nSize; ++i) {
        result.m_pdData[i] = -m_pdData[i];
    }
    return result;
}

// Motions --------------------------------------------------------------------------------------

void CNuVector::Translate(const CNuPoint& /*point*/) {}

void CNuVector::Translate(double /*dx*/, double /*dy*/, double /*dz*/) {}

void CNuVector::Rotate(double dAngle, CNuGeometry::EAxisType eAxis) {
    if (IsNull(*this) || NuGetZero() > std::fabs(dAngle)) return;
    *this = *this * CNuGeometry::RotationMatrix(dAngle, eAxis);
}

void CNuVector::Rotate(double dAngle, const CNuVector& axis) {
    // Nothing to do is decided before the axis is looked at.
    if (IsNull(*this) || NuGetZero() > std::fabs(dAngle)) return;
    CheckRotationAxis(axis);
    *this = *this * CNuGeometry::RotationMatrix(dAngle, axis);
}

// A vector has no position, so the centre of rotation plays no part.
void CNuVector::Rotate(double dAngle, CNuGeometry::EAxisType eAxis, const CNuPoint& /*centre*/) {
    Rotate(dAngle, eAxis);
}

void CNuVector::Rotate(double dAngle, const CNuVector& axis, const CNuPoint& /*centre*/) {
    Rotate(dAngle, axis);
}

CNuMatrix CNuVector::GetRotationMatrix(const double& dAngle, const CNuVector& axis) const {
    if (IsNull(*this)) throw CNuOperationException(9, "rotation", kszClass);
    CNuMatrix identity = CNuMatrix::Identity(3);
    if (NuGetZero() > std::fabs(dAngle)) return identity;
    CheckRotationAxis(axis);
    return CNuGeometry::RotationMatrix(dAngle / Nu_PI * 180.0, axis);
}

void CNuVector::GetRotationAxis(const CNuVector& other, CNuVector& axis, double& dAngle) const {
    if (IsNull(*this)) throw CNuOperationException(9, "rotation", kszClass);
    // A zero `other` passes here and is refused by AngleWith below.
    if (other.m_nSize != 3) throw CNuOperationException(10, "rotation", kszClass);
    CNuVector normal = *this * other;
    normal.Normalise();
    axis = normal;
    dAngle = Nu_PI * AngleWith(other, normal) * kdInv180;
}

// Angles ---------------------------------------------------------------------------------------

double CNuVector::AngleWith(const CNuVector& other) const {
    if (m_nSize != 3 || other.m_nSize != 3) {
        throw CNuOperationException(10, "calculation", kszAngleWith);
    }
    if (IsNull(*this) || IsNull(other)) throw CNuOperationException(9, "calculation", kszAngleWith);
    double p = Magnitude();
    double q = other.Magnitude();
    double c = (*this % other) / p / q;
    double s = (*this * other).Magnitude() / p / q;
    return NuArcCosSin(c, s) / Nu_PI * 180.0;
}

double CNuVector::AngleWith(const CNuVector& other, const CNuVector& axis) const {
    double a = AngleWith(axis);
    double b = other.AngleWith(axis);
    if (!(NuGetDegreeTol() > std::fabs(a - b))) {
        throw CNuOperationException(14, "calculation", kszAngleWith);
    }
    if (NuGetZero() > std::fabs(a)) return 0.0;
    CNuVector u = Normalised(*this);
    CNuVector v = Normalised(other);
    if (u.IsEqual(v, NuGetLengthTol()) == eNuTrue) return 0.0;
    // Seen along the axis: both directions projected onto the plane through the origin that has
    // the axis as its normal.
    CNuVector normal = Normalised(axis);
    u = ProjectOntoPlane(u, normal);
    v = ProjectOntoPlane(v, normal);
    double t = u.AngleWith(v);
    CNuVector n = Normalised(u * v);
    if (n.IsEqual(-normal, NuGetLengthTol()) == eNuTrue) return 360.0 - t;
    return t;
}

// Lengths and sums -----------------------------------------------------------------------------

void CNuVector::Normalise() {
    double dMagnitude = Magnitude();
    if (dMagnitude > NuGetZero()) {
        for (int i = 0; i < m_nSize; ++i) {
            m_pdData[i] /= dMagnitude;
        }
    }
}

double CNuVector::Magnitude() const {
    double dSum = 0.0;
    for (int i = 0; i < m_nSize; ++i) {
        dSum += m_pdData[i] * m_pdData[i];
    }
    return std::sqrt(dSum);
}

double CNuVector::Sum() const {
    double dSum = 0.0;
    for (int i = 0; i < m_nSize; ++i) {
        dSum += m_pdData[i];
    }
    return dSum;
}

// Orthonormal frames ---------------------------------------------------------------------------

void CNuVector::OrthonormalX(CNuVector* pOut) {
    const char* pszWhere = "CNuVector::OrthonormalX()";
    if (m_nSize != 3) throw CNuOperationException(10, "calculation", pszWhere);
    if (IsNull(*this)) throw CNuOperationException(9, "calculation", pszWhere);
    // The coordinate axis in which this vector is smallest; ties go to z, then to y.
    int nIndex = std::fabs(m_pdData[0]) >= std::fabs(m_pdData[1]) ? 1 : 0;
    if (!(std::fabs(m_pdData[2]) > std::fabs(m_pdData[nIndex]))) nIndex = 2;
    CNuVector e;
    e.m_pdData[nIndex] = 1.0;
    Normalise();
    CNuVector x = e * *this;
    x.Normalise();
    if (pOut != nullptr) *pOut = x;
}

void CNuVector::OrthonormalY(CNuVector* pOut) {
    if (m_nSize != 2 && m_nSize != 3) {
        throw CNuOperationException(10, "calculation", "CNuVector::OrthonormalY()");
    }
    // A 2-vector has no third element to clear.
    if (m_nSize == 3) m_pdData[2] = 0.0;
    Normalise();
    CNuVector y(-m_pdData[1], m_pdData[0], 0.0);
    y.Normalise();
    if (pOut != nullptr) *pOut = y;
}

void CNuVector::OrthonormalXY(CNuVector* pX, CNuVector* pY) {
    CNuVector x;
    OrthonormalX(&x);
    CNuVector y = *this * x;
    if (pX != nullptr) *pX = x;
    if (pY != nullptr) *pY = y;
}

void CNuVector::SymmetricAxis(double dTol, int nSign) {
    double dBest = NuGetZero();
    int nBest = 0;
    for (int i = 0; i < m_nSize; ++i) {
        double dMagnitude = std::fabs(m_pdData[i]);
        if (dTol > dMagnitude) {
            m_pdData[i] = 0.0;
        } else if (dMagnitude > dBest) {
            dBest = dMagnitude;
            nBest = i;
        }
    }
    // The sign of a direction is fixed by its largest component.
    if (nSign != 0 && m_pdData[nBest] < 0.0) {
        for (int i = 0; i < m_nSize; ++i) {
            m_pdData[i] = -m_pdData[i];
        }
    }
}

// Order and extremes ---------------------------------------------------------------------------

void CNuVector::Sort() { NuSort(m_nSize, m_pdData); }

void CNuVector::Sort(CNuIntArray* pIndex) const {
    if (pIndex == nullptr) return;
    *pIndex = CNuIntArray(m_nSize);
    for (int i = 0; i < m_nSize; ++i) {
        pIndex->Add(i);
    }
    NuSort(m_nSize, m_pdData, pIndex->GetData());
}

double CNuVector::Max() const {
    // Elements below -NuGetLarge() are not found: the search starts there.
    double dMax = -NuGetLarge();
    for (int i = 0; i < m_nSize; ++i) {
        if (m_pdData[i] > dMax) dMax = m_pdData[i];
    }
    return dMax;
}

double CNuVector::Min() const {
    double dMin = NuGetLarge();
    for (int i = 0; i < m_nSize; ++i) {
        if (m_pdData[i] < dMin) dMin = m_pdData[i];
    }
    return dMin;
}

// The array's elements as a vector. Defined here, with the vector, so that the foundation stays
// free of linear algebra.
CNuVector CNuDoubleArray::ToVector() const {
    if (m_nSize < 1) throw CNuConstructionException(1, kszClass, "size", 0);
    CNuVector result(m_nSize);
    std::memcpy(result.GetData(), m_pData, sizeof(double) * static_cast<std::size_t>(m_nSize));
    return result;
}

}  // namespace numorix
