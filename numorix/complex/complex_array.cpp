#include "numorix/complex/complex_array.h"

#include "numorix/foundation/internal/array_storage.h"

namespace numorix {

namespace {

constexpr internal::ArrayTexts kComplexTexts = {
    "CNuComplexArray",
    "CNuComplexArray()",
    "CNuComplexArray::Copy()",
    "CNuComplexArray::SetSize()",
    "CNuComplexArray::SetExpandSize()",
    "CNuComplexArray::Truncate(int Size)",
    "CNuComplexArray",  // unused: First and Last fail as the element operator does
    "CNuComplexArray",
    "CNuComplexArray::Remove()",
    "CNuComplexArray::SubArray(i, j)",
    "CNuComplexArray::Append()",
    "element operator[]",
};

constexpr internal::ArrayTexts kPolarTexts = {
    "CNuComplexPolarArray",
    "CNuComplexPolarArray()",
    "CNuComplexPolarArray::Copy()",
    "CNuComplexPolarArray::SetSize()",
    "CNuComplexPolarArray::SetExpandSize()",
    "CNuComplexPolarArray::Truncate(int Size)",
    "CNuComplexPolarArray::First()",
    "CNuComplexPolarArray::Last()",
    "CNuComplexPolarArray::Remove()",
    "CNuComplexPolarArray::SubArray(i, j)",
    "CNuComplexPolarArray::Append()",
    "element operator[]",
};

}  // namespace

// ---- CNuComplexArray ----------------------------------------------------------------------------

internal::ArrayRef<CNuComplex> CNuComplexArray::Ref() const {
    auto* self = const_cast<CNuComplexArray*>(this);
    return {self->m_pData, self->m_nSize, self->m_nCapacity, self->m_nExpandSize, kComplexTexts};
}

CNuComplexArray::CNuComplexArray(int nSize) {
    internal::Construct(Ref(), nSize, 10, "size", false);
}

CNuComplexArray::CNuComplexArray(int nSize, int nArrayExpandSize) {
    internal::Construct(Ref(), nSize, nArrayExpandSize, "size", true);
}

CNuComplexArray::CNuComplexArray(const CNuComplexArray& other)
    : m_pData(nullptr), m_nSize(0), m_nCapacity(0), m_nExpandSize(10) {
    internal::Copy(Ref(), other.Ref());
}

CNuComplexArray& CNuComplexArray::operator=(const CNuComplexArray& other) {
    if (this != &other) {
        internal::Copy(Ref(), other.Ref());
    }
    return *this;
}

CNuComplexArray::~CNuComplexArray() { internal::Release(m_pData); }

void CNuComplexArray::SetExpandSize(int nExpandSize) {
    internal::SetExpandSize(Ref(), nExpandSize);
}
void CNuComplexArray::SetCapacity(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuComplexArray::SetSize(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuComplexArray::Truncate(int nSize) { internal::Truncate(Ref(), nSize); }
void CNuComplexArray::FreeExtra() { internal::FreeExtra(Ref()); }
void CNuComplexArray::Clear() { m_nSize = 0; }

CNuComplex& CNuComplexArray::operator[](int i) { return internal::At(Ref(), i); }
const CNuComplex& CNuComplexArray::operator[](int i) const { return internal::At(Ref(), i); }

// First and Last fail on an empty array with the texts of the element operator.
CNuComplex& CNuComplexArray::First() { return internal::At(Ref(), 0); }
CNuComplex& CNuComplexArray::Last() { return internal::At(Ref(), m_nSize - 1); }

CNuComplexArray CNuComplexArray::SubArray(int i, int j) const {
    internal::CheckSubArray(Ref(), i, j);
    CNuComplexArray result(j - i + 1, m_nExpandSize);
    internal::FillSubArray(result.Ref(), Ref(), i, j);
    return result;
}

// The value is copied first: it may be an element of this array, whose storage a growth frees.
void CNuComplexArray::Add(const CNuComplex& value) {
    CNuComplex copy(value);
    internal::Add(Ref(), copy);
}

void CNuComplexArray::Append(const CNuComplexArray& other) {
    internal::Append(Ref(), other.m_pData, other.m_nSize, &other == this);
}

void CNuComplexArray::Remove(int i) { internal::Remove(Ref(), i); }

// ---- CNuComplexPolarArray -----------------------------------------------------------------------

internal::ArrayRef<CNuComplexPolar> CNuComplexPolarArray::Ref() const {
    auto* self = const_cast<CNuComplexPolarArray*>(this);
    return {self->m_pData, self->m_nSize, self->m_nCapacity, self->m_nExpandSize, kPolarTexts};
}

CNuComplexPolarArray::CNuComplexPolarArray(int nSize) {
    internal::Construct(Ref(), nSize, 10, "size", false);
}

CNuComplexPolarArray::CNuComplexPolarArray(int nSize, int nArrayExpandSize) {
    internal::Construct(Ref(), nSize, nArrayExpandSize, "size", true);
}

CNuComplexPolarArray::CNuComplexPolarArray(const CNuComplexPolarArray& other)
    : m_pData(nullptr), m_nSize(0), m_nCapacity(0), m_nExpandSize(10) {
    internal::Copy(Ref(), other.Ref());
}

CNuComplexPolarArray& CNuComplexPolarArray::operator=(const CNuComplexPolarArray& other) {
    if (this != &other) {
        internal::Copy(Ref(), other.Ref());
    }
    return *this;
}

CNuComplexPolarArray::~CNuComplexPolarArray() { internal::Release(m_pData); }

void CNuComplexPolarArray::SetExpandSize(int nExpandSize) {
    internal::SetExpandSize(Ref(), nExpandSize);
}
void CNuComplexPolarArray::SetCapacity(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuComplexPolarArray::SetSize(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuComplexPolarArray::Truncate(int nSize) { internal::Truncate(Ref(), nSize); }
void CNuComplexPolarArray::FreeExtra() { internal::FreeExtra(Ref()); }
void CNuComplexPolarArray::Clear() { m_nSize = 0; }

CNuComplexPolar& CNuComplexPolarArray::operator[](int i) { return internal::At(Ref(), i); }
const CNuComplexPolar& CNuComplexPolarArray::operator[](int i) const {
    return internal::At(Ref(), i);
}
CNuComplexPolar& CNuComplexPolarArray::First() { return internal::First(Ref()); }
CNuComplexPolar& CNuComplexPolarArray::Last() { return internal::Last(Ref()); }

CNuComplexPolarArray CNuComplexPolarArray::SubArray(int i, int j) const {
    internal::CheckSubArray(Ref(), i, j);
    CNuComplexPolarArray result(j - i + 1, m_nExpandSize);
    internal::FillSubArray(result.Ref(), Ref(), i, j);
    return result;
}

void CNuComplexPolarArray::Add(const CNuComplexPolar& value) {
    CNuComplexPolar copy(value);
    internal::Add(Ref(), copy);
}

void CNuComplexPolarArray::Append(const CNuComplexPolarArray& other) {
    internal::Append(Ref(), other.m_pData, other.m_nSize, &other == this);
}

void CNuComplexPolarArray::Remove(int i) { internal::Remove(Ref(), i); }

}  // namespace numorix
