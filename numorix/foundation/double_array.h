// CNuDoubleArray: a growable array of doubles.
//
// The size given to a constructor is a capacity: CNuDoubleArray a(5) has room for five zeros and
// GetSize() 0. Add grows the capacity by the constant expand step (default 10) when the array is
// full; Append grows it to exactly the needed size. SetCapacity (alias SetSize) only grows: asking
// for the current capacity or less is refused. Truncate shrinks size and capacity together.
// Assignment keeps a buffer that is already large enough.
#ifndef NUMORIX_FOUNDATION_DOUBLE_ARRAY_H
#define NUMORIX_FOUNDATION_DOUBLE_ARRAY_H

#include "numorix/foundation/object.h"

namespace numorix {

class CNuIntArray;
class CNuVector;
namespace internal {
template <class T>
struct ArrayRef;
}

class CNuDoubleArray {
  public:
    explicit CNuDoubleArray(int nSize = 0);
    CNuDoubleArray(int nSize, int nArrayExpandSize);
    CNuDoubleArray(const CNuDoubleArray& other);
    CNuDoubleArray& operator=(const CNuDoubleArray& other);
    ~CNuDoubleArray();

    int GetSize() const { return m_nSize; }
    int GetCapacity() const { return m_nCapacity; }
    int GetExpandSize() const { return m_nExpandSize; }
    const double* GetData() const { return m_pData; }
    double* GetData() { return m_pData; }

    void SetExpandSize(int nExpandSize);
    void SetCapacity(int nCapacity);
    void SetSize(int nCapacity);  // the same operation as SetCapacity; the size is unchanged
    void Truncate(int nSize);
    void FreeExtra();
    void Clear();

    double& operator[](int i);
    const double& operator[](int i) const;
    double& First();
    double& Last();

    CNuDoubleArray SubArray(int i, int j) const;
    CNuDoubleArray SubArray(const CNuIntArray& mask) const;

    void Add(double dValue);
    void Append(const CNuDoubleArray& other);
    void Remove(int i);

    int Find(double dValue, double dTol) const;
    double Max() const;
    double Min() const;
    ENuBoolean IsEqual(const CNuDoubleArray& other, double dTol) const;
    ENuBoolean IsMonotonicIncreasing() const;
    ENuBoolean IsStrictlyIncreasing() const;
    void Sort();
    void Sort(CNuIntArray* pIndex) const;
    double Sum() const;
    // The elements as a vector; an empty array has none to give. Defined with the vector, so
    // that the foundation does not depend on linear algebra.
    CNuVector ToVector() const;

  private:
    internal::ArrayRef<double> Ref() const;

    double* m_pData;
    int m_nSize;
    int m_nCapacity;
    int m_nExpandSize;
};

}  // namespace numorix

#endif  // NUMORIX_FOUNDATION_DOUBLE_ARRAY_H
