#include "numorix/foundation/int_array.h"

#include <cstdint>

#include "numorix/foundation/internal/array_storage.h"

namespace numorix {

namespace {

constexpr internal::ArrayTexts kTexts = {
    "CNuIntArray",
    "CNuIntArray()",
    "CNuIntArray::Copy()",
    "CNuIntArray::SetSize(int NewSize)",
    "CNuIntArray::SetExpandSize(int NewXSize)",
    "CNuIntArray::Truncate(int Size)",
    "CNuIntArray::First()",
    "CNuIntArray::Last()",
    "CNuIntArray::Remove()",
    "CNuIntArray::SubArray(i, j)",
    "CNuIntArray::Append()",
    "element operator[]",
};

// Straight insertion sort of n integers, or of an index permutation by integer keys.
void InsertionSort(int n, int* pn) {
    for (int i = 1; i < n; ++i) {
        int nKey = pn[i];
        int j = i - 1;
        while (j >= 0 && pn[j] > nKey) {
            pn[j + 1] = pn[j];
            --j;
        }
        pn[j + 1] = nKey;
    }
}

void IndexSort(int n, const int* pnKeys, int* pnIndex) {
    for (int i = 1; i < n; ++i) {
        int nKey = pnIndex[i];
        int j = i - 1;
        while (j >= 0 && pnKeys[pnIndex[j]] > pnKeys[nKey]) {
            pnIndex[j + 1] = pnIndex[j];
            --j;
        }
        pnIndex[j + 1] = nKey;
    }
}

}  // namespace

internal::ArrayRef<int> CNuIntArray::Ref() const {
    auto* self = const_cast<CNuIntArray*>(this);
    return {self->m_pData, self->m_nSize, self->m_nCapacity, self->m_nExpandSize, kTexts};
}

CNuIntArray::CNuIntArray(int nSize) { internal::Construct(Ref(), nSize, 10, "size", false); }

CNuIntArray::CNuIntArray(int nSize, int nArrayExpandSize) {
    internal::Construct(Ref(), nSize, nArrayExpandSize, "size", true);
}

CNuIntArray::CNuIntArray(const CNuIntArray& other)
    : m_pData(nullptr), m_nSize(0), m_nCapacity(0), m_nExpandSize(10) {
    internal::Copy(Ref(), other.Ref());
}

CNuIntArray& CNuIntArray::operator=(const CNuIntArray& other) {
    if (this != &other) {
        internal::Copy(Ref(), other.Ref());
    }
    return *this;
}

CNuIntArray::~CNuIntArray() { internal::Release(m_pData); }

void CNuIntArray::SetExpandSize(int nExpandSize) { internal::SetExpandSize(Ref(), nExpandSize); }
void CNuIntArray::SetCapacity(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuIntArray::SetSize(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }

void CNuIntArray::Truncate(int nSize) {
    if (CNuException::m_nAssert != 0) return;
    internal::Truncate(Ref(), nSize);
}

void CNuIntArray::FreeExtra() { internal::FreeExtra(Ref()); }
void CNuIntArray::Clear() { internal::ClearZeroed(Ref()); }

int& CNuIntArray::operator[](int i) { return internal::At(Ref(), i); }
const int& CNuIntArray::operator[](int i) const { return internal::At(Ref(), i); }
int& CNuIntArray::First() { return internal::First(Ref()); }
int& CNuIntArray::Last() { return internal::Last(Ref()); }

CNuIntArray CNuIntArray::SubArray(int i, int j) const {
    internal::CheckSubArray(Ref(), i, j);
    CNuIntArray result(j - i + 1, m_nExpandSize);
    internal::FillSubArray(result.Ref(), Ref(), i, j);
    return result;
}

void CNuIntArray::Add(int nValue) { internal::Add(Ref(), nValue); }

void CNuIntArray::Append(const CNuIntArray& other) {
    internal::Append(Ref(), other.m_pData, other.m_nSize, &other == this);
}

void CNuIntArray::Remove(int i) { internal::Remove(Ref(), i); }

int CNuIntArray::Find(int nValue) const {
    for (int i = 0; i < m_nSize; ++i) {
        if (m_pData[i] == nValue) return i;
    }
    return -1;
}

ENuBoolean CNuIntArray::IsEqual(const CNuIntArray& other) const {
    if (m_nSize != other.m_nSize) return eNuFalse;
    for (int i = 0; i < m_nSize; ++i) {
        if (m_pData[i] != other.m_pData[i]) return eNuFalse;
    }
    return eNuTrue;
}

void CNuIntArray::Sort() { InsertionSort(m_nSize, m_pData); }

void CNuIntArray::Sort(CNuIntArray* pIndex) const {
    if (pIndex == nullptr) return;
    *pIndex = CNuIntArray(m_nSize);
    for (int i = 0; i < m_nSize; ++i)
        pIndex->Add(i);
    IndexSort(m_nSize, m_pData, pIndex->m_pData);
}

int CNuIntArray::Sum() const {
    // Summed with two's-complement wrap-around, so that an overflowing sum stays defined.
    std::uint32_t nSum = 0;
    for (int i = 0; i < m_nSize; ++i)
        nSum += static_cast<std::uint32_t>(m_pData[i]);
    return static_cast<int>(nSum);
}

}  // namespace numorix
