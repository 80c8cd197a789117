// CNuIntArray: a growable array of 32-bit integers, with the growth and capacity rules of
// CNuDoubleArray. Its Truncate alone reads the library's assertion flag: while the flag is set,
// Truncate returns at once and does nothing.
#ifndef NUMORIX_FOUNDATION_INT_ARRAY_H
#define NUMORIX_FOUNDATION_INT_ARRAY_H

#include "numorix/foundation/object.h"

namespace numorix {

namespace internal {
template <class T>
struct ArrayRef;
}

class CNuIntArray {
  public:
    explicit CNuIntArray(int nSize = 0);
    CNuIntArray(int nSize, int nArrayExpandSize);
    CNuIntArray(const CNuIntArray& other);
    CNuIntArray& operator=(const CNuIntArray& other);
    ~CNuIntArray();

    int GetSize() const { return m_nSize; }
    int GetCapacity() const { return m_nCapacity; }
    int GetExpandSize() const { return m_nExpandSize; }
    const int* GetData() const { return m_pData; }
    int* GetData() { return m_pData; }

    void SetExpandSize(int nExpandSize);
    void SetCapacity(int nCapacity);
    void SetSize(int nCapacity);  // the same operation as SetCapacity; the size is unchanged
    void Truncate(int nSize);
    void FreeExtra();
    void Clear();

    int& operator[](int i);
    const int& operator[](int i) const;
    int& First();
    int& Last();

    CNuIntArray SubArray(int i, int j) const;

    void Add(int nValue);
    void Append(const CNuIntArray& other);
    void Remove(int i);

    int Find(int nValue) const;
    ENuBoolean IsEqual(const CNuIntArray& other) const;
    void Sort();
    void Sort(CNuIntArray* pIndex) const;
    int Sum() const;

  private:
    internal::ArrayRef<int> Ref() const;

    int* m_pData;
    int m_nSize;
    int m_nCapacity;
    int m_nExpandSize;
};

}  // namespace numorix

#endif  // NUMORIX_FOUNDATION_INT_ARRAY_H
