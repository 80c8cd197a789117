#include "numorix/foundation/obj_array.h"

#include "numorix/foundation/internal/array_storage.h"

namespace numorix {

namespace {

constexpr internal::ArrayTexts kTexts = {
    "CNuObjArray",
    "CNuObjArray()",
    "CNuObjArray::Copy()",
    "CNuObjArray::SetSize()",
    "CNuObjArray::SetExpandSize()",
    "CNuObjArray::Truncate(int Size)",
    "CNuObjArray::First()",
    "CNuObjArray::Last()",
    "CNuObjArray::Remove()",
    "CNuObjArray::SubArray(i, j)",
    "CNuObjArray::Append()",
    "element operator[]",
};

}  // namespace

internal::ArrayRef<CNuObject*> CNuObjArray::Ref() const {
    auto* self = const_cast<CNuObjArray*>(this);
    return {self->m_pData, self->m_nSize, self->m_nCapacity, self->m_nExpandSize, kTexts};
}

// The one-argument constructor names its capacity "size", the two-argument one "Size".
CNuObjArray::CNuObjArray(int nSize) { internal::Construct(Ref(), nSize, 10, "size", false); }

CNuObjArray::CNuObjArray(int nSize, int nArrayExpandSize) {
    internal::Construct(Ref(), nSize, nArrayExpandSize, "Size", true);
}

CNuObjArray::CNuObjArray(const CNuObjArray& other)
    : m_pData(nullptr), m_nSize(0), m_nCapacity(0), m_nExpandSize(10) {
    internal::Copy(Ref(), other.Ref());
}

CNuObjArray& CNuObjArray::operator=(const CNuObjArray& other) {
    if (this != &other) {
        internal::Copy(Ref(), other.Ref());
    }
    return *this;
}

CNuObjArray::~CNuObjArray() { internal::Release(m_pData); }

void CNuObjArray::SetExpandSize(int nExpandSize) { internal::SetExpandSize(Ref(), nExpandSize); }
void CNuObjArray::SetCapacity(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuObjArray::SetSize(int nCapacity) { internal::SetCapacity(Ref(), nCapacity); }
void CNuObjArray::Truncate(int nSize) { internal::Truncate(Ref(), nSize); }
void CNuObjArray::FreeExtra() { internal::FreeExtra(Ref()); }
void CNuObjArray::Clear() { m_nSize = 0; }

CNuObject*& CNuObjArray::operator[](int i) { return internal::At(Ref(), i); }
CNuObject* const& CNuObjArray::operator[](int i) const { return internal::At(Ref(), i); }
CNuObject*& CNuObjArray::First() { return internal::First(Ref()); }
CNuObject*& CNuObjArray::Last() { return internal::Last(Ref()); }

void CNuObjArray::Add(CNuObject* pObject) { internal::Add(Ref(), pObject); }

void CNuObjArray::Append(const CNuObjArray& other) {
    internal::Append(Ref(), other.m_pData, other.m_nSize, &other == this);
}

}  // namespace numorix
