// CNuObjArray: a growable array of pointers to CNuObject, with the growth and capacity rules of
// CNuDoubleArray. It borrows what it points to: copies share the objects, and neither Truncate,
// Clear nor the destructor deletes any object; whoever fills the array frees the objects.
#ifndef NUMORIX_FOUNDATION_OBJ_ARRAY_H
#define NUMORIX_FOUNDATION_OBJ_ARRAY_H

#include "numorix/foundation/object.h"

namespace numorix {

namespace internal {
template <class T>
struct ArrayRef;
}

class CNuObjArray {
  public:
    explicit CNuObjArray(int nSize = 0);
    CNuObjArray(int nSize, int nArrayExpandSize);
    CNuObjArray(const CNuObjArray& other);
    CNuObjArray& operator=(const CNuObjArray& other);
    ~CNuObjArray();

    int GetSize() const { return m_nSize; }
    int GetCapacity() const { return m_nCapacity; }
    int GetExpandSize() const { return m_nExpandSize; }
    CNuObject* const* GetData() const { return m_pData; }
    CNuObject** GetData() { return m_pData; }

    void SetExpandSize(int nExpandSize);
    void SetCapacity(int nCapacity);
    void SetSize(int nCapacity);  // the same operation as SetCapacity; the size is unchanged
    void Truncate(int nSize);
    void FreeExtra();
    void Clear();  // size 0; the pointer block stays as it is

    CNuObject*& operator[](int i);
    CNuObject* const& operator[](int i) const;
    CNuObject*& First();
    CNuObject*& Last();

    void Add(CNuObject* pObject);
    void Append(const CNuObjArray& other);

  private:
    internal::ArrayRef<CNuObject*> Ref() const;

    CNuObject** m_pData;
    int m_nSize;
    int m_nCapacity;
    int m_nExpandSize;
};

}  // namespace numorix

#endif  // NUMORIX_FOUNDATION_OBJ_ARRAY_H
