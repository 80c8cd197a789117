#include "numorix/foundation/double_array.h"

#include <cmath>

#include "numorix/foundation/int_array.h"
#include "numorix/foundation/internal/array_storage.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {

namespace {

// First and Last name CNuIntArray in their locations; the texts are kept as they stand.
constexpr internal::ArrayTexts kTexts = {
    "CNuDoubleArray",
    "CNuDoubleArray()",
    "CNuDoubleArray::Copy()",
    "CNuDoubleArray::SetSize()",
    "CNuDoubleArray::SetExpandSize()",
    "CNuDoubleArray::Truncate(int Size)",
    "CNuIntArray::First()",
    "CNuIntArray::Last()",
    "CNuDoubleArray::Remove()",
    "CNuDoubleArray::SubArray(i, j)",
    "CNuDoubleArray::Append()",
    "element operator[]",
};

}  // namespace

internal::ArrayRef<double> CNuDoubleArray::Ref() const {
    auto* self = const_cast<CNuDoubleArray*>(this);
    return {self->m_pData, self->m_nSize, self->m_nCapacity, self->m_nExpandSize, kTexts};
}

CNuDoubleArray::CNuDoubleArray(int nSize) { internal::Construct(Ref(), nSize, 10, "size", false); }

CNuDoubleArray::CNuDoubleArray(int nSize, int nArrayExpandSize) {
    internal::Construct(Ref(), nSize, nArrayExpandSize, "size", true);
}

CNuDoubleArray::CNuDoubleArray(const CNuDoubleArray& other)
    : m_pData(nullptr), m_nSize(0), m_nCapacity(0), m_nExpandSize(10) {
    internal::Copy(Ref(), other.Ref());
}

CNuDoubleArray& CNuDoubleArray::operator=(const CNuDoubleArray& other) {
    if (this != &other) {
        internal::Copy(Ref(), other.Ref());
    }
    return *this;
}

CNuDoubleArray::~CNuDoubleArray() { internal::Release(m_pData); }

void CNuDoubleArray::SetExpandSize(int nExpandSize) { internal::SetExpandSize(Ref(), nExpandSize); }
void CNuDoubleArray::SetCapacity(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuDoubleArray::SetSize(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuDoubleArray::Truncate(int nSize) { internal::Truncate(Ref(), nSize); }
void CNuDoubleArray::FreeExtra() { internal::FreeExtra(Ref()); }
void CNuDoubleArray::Clear() { internal::ClearZeroed(Ref()); }

double& CNuDoubleArray::operator[](int i) { return internal::At(Ref(), i); }
const double& CNuDoubleArray::operator[](int i) const { return internal::At(Ref(), i); }
double& CNuDoubleArray::First() { return internal::First(Ref()); }
double& CNuDoubleArray::Last() { return internal::Last(Ref()); }

CNuDoubleArray CNuDoubleArray::SubArray(int i, int j) const {
    internal::CheckSubArray(Ref(), i, j);
    CNuDoubleArray result(j - i + 1, m_nExpandSize);
    internal::FillSubArray(result.Ref(), Ref(), i, j);
    return result;
}

CNuDoubleArray CNuDoubleArray::SubArray(const CNuIntArray& mask) const {
    if (mask.GetSize() != m_nSize) {
        throw CNuOperationException(5, "SubArray operation",
                                    "CNuDoubleArray::SubArray(const CNuIntArray& ip)");
    }
    // The capacity is the sum of the mask, which is meant to hold zeros and ones.
    CNuDoubleArray result(mask.Sum(), m_nExpandSize);
    for (int k = 0; k < m_nSize; ++k) {
        if (mask[k] != 0) result.Add(m_pData[k]);
    }
    return result;
}

void CNuDoubleArray::Add(double dValue) { internal::Add(Ref(), dValue); }

void CNuDoubleArray::Append(const CNuDoubleArray& other) {
    internal::Append(Ref(), other.m_pData, other.m_nSize, &other == this);
}

void CNuDoubleArray::Remove(int i) { internal::Remove(Ref(), i); }

int CNuDoubleArray::Find(double dValue, double dTol) const {
    for (int i = 0; i < m_nSize; ++i) {
        if (dTol > std::fabs(m_pData[i] - dValue)) return i;
    }
    return -1;
}

double CNuDoubleArray::Max() const {
    if (m_nSize == 0) throw CNuOperationException(8, "Max operation", "CNuDoubleArray::Max()");
    double dMax = -NuGetLarge();
    for (int i = 0; i < m_nSize; ++i) {
        if (m_pData[i] > dMax) dMax = m_pData[i];
    }
    return dMax;
}

double CNuDoubleArray::Min() const {
    if (m_nSize == 0) throw CNuOperationException(8, "Min operation", "CNuDoubleArray::Min()");
    double dMin = NuGetLarge();
    for (int i = 0; i < m_nSize; ++i) {
        if (m_pData[i] < dMin) dMin = m_pData[i];
    }
    return dMin;
}

ENuBoolean CNuDoubleArray::IsEqual(const CNuDoubleArray& other, double dTol) const {
    if (m_nSize != other.m_nSize) return eNuFalse;
    for (int i = 0; i < m_nSize; ++i) {
        if (!(dTol > std::fabs(m_pData[i] - other.m_pData[i]))) return eNuFalse;
    }
    return eNuTrue;
}

ENuBoolean CNuDoubleArray::IsMonotonicIncreasing() const {
    if (m_nSize == 0) {
        throw CNuOperationException(8, "IsMonotonicIncreasing operation",
                                    "CNuDoubleArray::IsMonotonicIncreasing()");
    }
    for (int i = 0; i + 1 < m_nSize; ++i) {
        if (m_pData[i] > m_pData[i + 1]) return eNuFalse;
    }
    return eNuTrue;
}

ENuBoolean CNuDoubleArray::IsStrictlyIncreasing() const {
    if (m_nSize == 0) {
        throw CNuOperationException(8, "IsStrictlyIncreasing operation",
                                    "CNuDoubleArray::IsStrictlyIncreasing()");
    }
    for (int i = 0; i + 1 < m_nSize; ++i) {
        if (m_pData[i] >= m_pData[i + 1]) return eNuFalse;
    }
    return eNuTrue;
}

void CNuDoubleArray::Sort() { NuSort(m_nSize, m_pData); }

void CNuDoubleArray::Sort(CNuIntArray* pIndex) const {
    if (pIndex == nullptr) return;
    *pIndex = CNuIntArray(m_nSize);
    for (int i = 0; i < m_nSize; ++i)
        pIndex->Add(i);
    NuSort(m_nSize, m_pData, pIndex->GetData());
}

double CNuDoubleArray::Sum() const {
    double dSum = 0.0;
    for (int i = 0; i < m_nSize; ++i)
        dSum += m_pData[i];
    return dSum;
}

}  // namespace numorix
