#include "numorix/geometry/point_array.h"

#include <cmath>

#include "numorix/foundation/double_array.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/internal/array_storage.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

constexpr internal::ArrayTexts kTexts = {
    "CNuPointArray",
    "CNuPointArray()",
    "CNuPointArray::Copy()",
    "CNuPointArray::SetSize()",
    "CNuPointArray::SetExpandSize()",
    "CNuPointArray::Truncate(int Size)",
    "CNuPointArray::First()",
    "CNuPointArray::Last()",
    "CNuPointArray::Remove()",
    "CNuPointArray::SubArray(i, j)",
    "CNuPointArray::Append()",
    "element operator[]",
};

// Whether a differs from b by at least dTol in some coordinate: the complement of the box test.
bool Differs(const CNuPoint& a, const CNuPoint& b, double dTol) {
    return std::fabs(a.x() - b.x()) >= dTol || std::fabs(a.y() - b.y()) >= dTol ||
           std::fabs(a.z() - b.z()) >= dTol;
}

// The index k of the first point after p[0] that differs from it, n when none does, and with it
// the direction from p[0] to p[k], normalised unless its magnitude is within NuGetZero().
int FirstApart(const CNuPoint* p, int n, double dTol, CNuVector* pDirection) {
    int k = 1;
    while (k < n && !Differs(p[k], p[0], dTol))
        ++k;
    if (k == n) return n;
    *pDirection = (p[k] - p[0]).To3DVector();
    if (pDirection->Magnitude() > NuGetZero()) pDirection->Normalise();
    return k;
}

// Whether some component of a 3-vector reaches dTol in magnitude.
bool AnyReaches(const CNuVector& v, double dTol) {
    const double* pd = v.GetData();
    return std::fabs(pd[0]) >= dTol || std::fabs(pd[1]) >= dTol || std::fabs(pd[2]) >= dTol;
}

}  // namespace

internal::ArrayRef<CNuPoint> CNuPointArray::Ref() const {
    auto* self = const_cast<CNuPointArray*>(this);
    return {self->m_pData, self->m_nSize, self->m_nCapacity, self->m_nExpandSize, kTexts};
}

// The one-argument constructor names its capacity "size", the two-argument one "Size".
CNuPointArray::CNuPointArray(int nSize) { internal::Construct(Ref(), nSize, 10, "size", false); }

CNuPointArray::CNuPointArray(int nSize, int nArrayExpandSize) {
    internal::Construct(Ref(), nSize, nArrayExpandSize, "Size", true);
}

CNuPointArray::CNuPointArray(const CNuPointArray& other)
    : m_pData(nullptr), m_nSize(0), m_nCapacity(0), m_nExpandSize(10) {
    internal::Copy(Ref(), other.Ref());
}

CNuPointArray& CNuPointArray::operator=(const CNuPointArray& other) {
    if (this != &other) {
        internal::Copy(Ref(), other.Ref());
    }
    return *this;
}

CNuPointArray::~CNuPointArray() { internal::Release(m_pData); }

void CNuPointArray::SetExpandSize(int nExpandSize) { internal::SetExpandSize(Ref(), nExpandSize); }
void CNuPointArray::SetCapacity(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuPointArray::SetSize(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuPointArray::Truncate(int nSize) { internal::Truncate(Ref(), nSize); }
void CNuPointArray::FreeExtra() { internal::FreeExtra(Ref()); }
void CNuPointArray::Clear() { m_nSize = 0; }

CNuPoint& CNuPointArray::operator[](int i) { return internal::At(Ref(), i); }
const CNuPoint& CNuPointArray::operator[](int i) const { return internal::At(Ref(), i); }
CNuPoint& CNuPointArray::First() { return internal::First(Ref()); }
CNuPoint& CNuPointArray::Last() { return internal::Last(Ref()); }

CNuPointArray CNuPointArray::SubArray(int i, int j) const {
    internal::CheckSubArray(Ref(), i, j);
    CNuPointArray result(j - i + 1, m_nExpandSize);
    internal::FillSubArray(result.Ref(), Ref(), i, j);
    return result;
}

CNuPointArray CNuPointArray::SubArray(const CNuIntArray& mask) const {
    if (mask.GetSize() != m_nSize) {
        throw CNuOperationException(5, "SubArray operation",
                                    "CNuPointArray::SubArray(const CNuIntArray& ip)");
    }
    // The capacity is the sum of the mask, which is meant to hold zeros and ones.
    CNuPointArray result(mask.Sum(), m_nExpandSize);
    const int* pnMask = mask.GetData();
    for (int k = 0; k < m_nSize; ++k)
        if (pnMask[k] != 0) result.Add(m_pData[k]);
    return result;
}

void CNuPointArray::Add(const CNuPoint& point) {
    // The point may be an element of this array, which growth moves.
    CNuPoint value(point);
    internal::Add(Ref(), value);
}

void CNuPointArray::Append(const CNuPointArray& other) {
    internal::Append(Ref(), other.m_pData, other.m_nSize, &other == this);
}

void CNuPointArray::Remove(int i) { internal::Remove(Ref(), i); }

void CNuPointArray::Insert(const CNuPoint& point, const int& nIndex) {
    if (nIndex < 0 || nIndex >= m_nSize) {
        throw CNuOperationException(3, "element operator[]", "CNuIntArray", 0, m_nSize - 1);
    }
    CNuPoint value(point);
    int nIndexAt = nIndex;
    int m = m_nSize - nIndexAt;
    CNuPoint* pBlock = internal::Allocate<CNuPoint>(m, "CNuPointArray::Insert()");
    internal::CopyElements(pBlock, m_pData + nIndexAt, m);
    if (m_nSize == m_nCapacity) {
        try {
            long long nNew = static_cast<long long>(m_nSize) + m_nExpandSize;
            if (nNew > 0x7fffffff) throw CNuMemoryException(kTexts.pszSetSize);
            internal::SetCapacity(Ref(), static_cast<int>(nNew));
        } catch (...) {
            internal::Release(pBlock);
            throw;
        }
    }
    internal::CopyElements(m_pData + nIndexAt + 1, pBlock, m);
    internal::Release(pBlock);
    m_pData[nIndexAt] = value;
    ++m_nSize;
}

CNuDoubleArray CNuPointArray::GetDataX() const {
    CNuDoubleArray result(m_nSize);
    for (int i = 0; i < m_nSize; ++i)
        result.Add(m_pData[i].x());
    return result;
}

CNuDoubleArray CNuPointArray::GetDataY() const {
    CNuDoubleArray result(m_nSize);
    for (int i = 0; i < m_nSize; ++i)
        result.Add(m_pData[i].y());
    return result;
}

CNuDoubleArray CNuPointArray::GetDataZ() const {
    CNuDoubleArray result(m_nSize);
    for (int i = 0; i < m_nSize; ++i)
        result.Add(m_pData[i].z());
    return result;
}

// A point is judged against the survivors only, so a chain of close points is not transitive.
void CNuPointArray::RemoveDuplicate(double dTol) {
    if (m_nSize < 2) return;
    int k = 1;
    for (int i = 1; i < m_nSize; ++i) {
        bool bDuplicate = false;
        for (int j = 0; j < k && !bDuplicate; ++j)
            bDuplicate = m_pData[i].IsEqual(m_pData[j], dTol) == eNuTrue;
        if (bDuplicate) continue;
        if (i != k) CNuPoint::Swap(m_pData[i], m_pData[k]);
        ++k;
    }
    m_nSize = k;
}

void CNuPointArray::RemoveAdjacentDuplicate(double dTol) {
    if (m_nSize < 2) return;
    int k = 1;
    for (int i = 1; i < m_nSize; ++i) {
        if (m_pData[i].IsEqual(m_pData[k - 1], dTol) == eNuTrue) continue;
        if (i != k) CNuPoint::Swap(m_pData[i], m_pData[k]);
        ++k;
    }
    m_nSize = k;
}

ENuBoolean CNuPointArray::IsIn(const CNuPoint& point, double dTol) const {
    int nIndex = -1;
    return IsIn(point, nIndex, dTol);
}

ENuBoolean CNuPointArray::IsIn(const CNuPoint& point, int& nIndex, double dTol) const {
    for (int i = 0; i < m_nSize; ++i) {
        if (m_pData[i].IsEqual(point, dTol) == eNuTrue) {
            nIndex = i;
            return eNuTrue;
        }
    }
    return eNuFalse;
}

void CNuPointArray::CheckNotEmpty(const char* pszName, const char* pszLocation) const {
    if (m_nSize == 0) throw CNuOperationException(8, pszName, pszLocation);
}

ENuBoolean CNuPointArray::IsNoncollinear(CNuIntArray* pIndices, double dTol) const {
    CheckNotEmpty("IsNoncollinear operation", "CNuPointArray::IsNoncollinear()");
    if (m_nSize < 3) return eNuFalse;
    const CNuPoint& p0 = m_pData[0];
    CNuVector d;
    int k = FirstApart(m_pData, m_nSize, dTol, &d);
    if (k == m_nSize) return eNuFalse;
    for (int i = k + 1; i < m_nSize; ++i) {
        if (AnyReaches(d * (m_pData[i] - p0).To3DVector(), dTol)) {
            if (pIndices != nullptr) {
                pIndices->Add(0);
                pIndices->Add(k);
                pIndices->Add(i);
            }
            return eNuTrue;
        }
    }
    return eNuFalse;
}

ENuBoolean CNuPointArray::IsNoncoplanar(CNuIntArray* pIndices, double dTol) const {
    CheckNotEmpty("IsNoncoplanar operation", "CNuPointArray::IsNoncoplanar()");
    if (m_nSize < 4) return eNuFalse;
    const CNuPoint& p0 = m_pData[0];
    CNuVector d;
    int k = FirstApart(m_pData, m_nSize, dTol, &d);
    if (k == m_nSize) return eNuFalse;
    for (int j = k + 1; j < m_nSize; ++j) {
        CNuVector n = d * (m_pData[j] - p0).To3DVector();
        if (!AnyReaches(n, dTol)) continue;
        n.Normalise();
        for (int l = j + 1; l < m_nSize; ++l) {
            if (std::fabs(n % (m_pData[l] - p0).To3DVector()) >= dTol) {
                if (pIndices != nullptr) {
                    pIndices->Add(0);
                    pIndices->Add(k);
                    pIndices->Add(j);
                    pIndices->Add(l);
                }
                return eNuTrue;
            }
        }
        return eNuFalse;
    }
    return eNuFalse;
}

ENuBoolean CNuPointArray::Is2D(double dTol) const {
    CheckNotEmpty("Is2D operation", "CNuPointArray::Is2D()");
    // A single point counts as flat only on the plane z = 0; dTol is not consulted.
    if (m_nSize == 1) return m_pData[0].z() == 0.0 ? eNuTrue : eNuFalse;
    double dZ0 = m_pData[0].z();
    for (int i = 1; i < m_nSize; ++i)
        if (!(std::fabs(m_pData[i].z() - dZ0) < dTol)) return eNuFalse;
    return eNuTrue;
}

ENuBoolean CNuPointArray::IsEqual(const CNuPointArray& other, double dTol) const {
    if (m_nSize != other.m_nSize) return eNuFalse;
    for (int i = 0; i < m_nSize; ++i) {
        if (IsIn(other.m_pData[i], dTol) == eNuFalse) return eNuFalse;
        if (other.IsIn(m_pData[i], dTol) == eNuFalse) return eNuFalse;
    }
    return eNuTrue;
}

CNuPoint CNuPointArray::MeanPoint() const {
    CheckNotEmpty("MeanPoint operation", "CNuPointArray::MeanPoint()");
    double dX = 0.0;
    double dY = 0.0;
    double dZ = 0.0;
    for (int i = 0; i < m_nSize; ++i) {
        dX += m_pData[i].x();
        dY += m_pData[i].y();
        dZ += m_pData[i].z();
    }
    return CNuPoint(dX / m_nSize, dY / m_nSize, dZ / m_nSize);
}

// Each point p becomes (x . p, y . p, z . p).
void CNuPointArray::Project(const CNuVector& xAxis, const CNuVector& yAxis,
                            const CNuVector& zAxis) {
    for (int i = 0; i < m_nSize; ++i) {
        CNuVector p = m_pData[i].To3DVector();
        m_pData[i] = CNuPoint(xAxis % p, yAxis % p, zAxis % p);
    }
}

void CNuPointArray::MoveTo(const CNuPoint& origin) {
    CheckNotEmpty("MoveTo operation", "CNuPointArray::MoveTo(const CNuPoint& origin)");
    CNuPoint o(origin);
    for (int i = 0; i < m_nSize; ++i)
        m_pData[i] -= o;
}

void CNuPointArray::MoveTo(const CNuVector& zAxis) {
    CheckNotEmpty("MoveTo operation", "CNuPointArray::MoveTo(const CNuVector& zaxis)");
    CNuVector z(zAxis);
    CNuVector x;
    z.OrthonormalX(&x);
    Project(x, z * x, z);
}

void CNuPointArray::MoveTo(const CNuPoint& origin, const CNuVector& zAxis) {
    CheckNotEmpty("MoveTo operation",
                  "CNuPointArray::MoveTo(const CNuPoint& origin, const CNuVector& zaxis)");
    CNuVector z(zAxis);
    CNuVector x;
    z.OrthonormalX(&x);
    CNuVector y = z * x;
    CNuPoint o(origin);
    for (int i = 0; i < m_nSize; ++i)
        m_pData[i] -= o;
    Project(x, y, z);
}

void CNuPointArray::MoveTo(const CNuPoint& origin, const CNuVector& xAxis, const CNuVector& zAxis) {
    CheckNotEmpty("MoveTo operation",
                  "CNuPointArray::MoveTo(const CNuPoint& origin, const CNuVector& xaxis, const "
                  "CNuVector& zaxis)");
    CNuVector x(xAxis);
    CNuVector z(zAxis);
    x.Normalise();
    z.Normalise();
    CNuVector y = z * x;
    CNuPoint o(origin);
    for (int i = 0; i < m_nSize; ++i)
        m_pData[i] -= o;
    Project(x, y, z);
}

double CNuPointArray::MaxEdge(int* pM, int* pN) const {
    CheckNotEmpty("MaxEdge operation", "CNuPointArray::MaxEdge(int* m, int* n) const");
    int nM = 0;
    int nN = 0;
    double dBest = 0.0;
    if (m_nSize > 1) {
        dBest = -0.1;
        for (int i = 0; i < m_nSize; ++i) {
            for (int j = i + 1; j < m_nSize; ++j) {
                double d = m_pData[i].DistanceTo(m_pData[j]);
                if (d > dBest) {
                    dBest = d;
                    nM = i;
                    nN = j;
                }
            }
        }
    }
    if (pM != nullptr) *pM = nM;
    if (pN != nullptr) *pN = nN;
    return dBest;
}

double CNuPointArray::MinEdge(int* pM, int* pN) const {
    CheckNotEmpty("MinEdge operation", "CNuPointArray::MinEdge(int* m, int* n) const");
    if (m_nSize == 1) {
        if (pM != nullptr) *pM = 0;
        if (pN != nullptr) *pN = 0;
        return 0.0;
    }
    double dBest = NuGetLarge();
    for (int i = 0; i < m_nSize; ++i) {
        for (int j = i + 1; j < m_nSize; ++j) {
            double d = m_pData[i].DistanceTo(m_pData[j]);
            if (d < dBest) {
                dBest = d;
                if (pM != nullptr) *pM = i;
                if (pN != nullptr) *pN = j;
            }
        }
    }
    return dBest;
}

void CNuPointArray::BoundingBox(CNuPoint* pMin, CNuPoint* pMax) const {
    CNuPoint lo(0.0, 0.0, 0.0);
    CNuPoint hi(0.0, 0.0, 0.0);
    if (m_nSize > 0) {
        lo = m_pData[0];
        hi = m_pData[0];
        for (int i = 1; i < m_nSize; ++i) {
            const CNuPoint& p = m_pData[i];
            if (p.x() < lo.x()) lo.x() = p.x();
            if (p.x() > hi.x()) hi.x() = p.x();
            if (p.y() < lo.y()) lo.y() = p.y();
            if (p.y() > hi.y()) hi.y() = p.y();
            if (p.z() < lo.z()) lo.z() = p.z();
            if (p.z() > hi.z()) hi.z() = p.z();
        }
    }
    if (pMin != nullptr) *pMin = lo;
    if (pMax != nullptr) *pMax = hi;
}

void CNuPointArray::BoundingSphere(double* pdRadius, CNuPoint* pCentre) const {
    CNuPoint lo;
    CNuPoint hi;
    BoundingBox(&lo, &hi);
    CNuPoint centre = lo.MidPoint(hi);
    if (pdRadius != nullptr) *pdRadius = centre.DistanceTo(lo);
    if (pCentre != nullptr) *pCentre = centre;
}

}  // namespace numorix
