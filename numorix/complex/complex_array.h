// CNuComplexArray and CNuComplexPolarArray: growable arrays of complex numbers, in Cartesian and in
// polar form.
//
// They share the design of CNuDoubleArray: the constructor's size is a capacity (GetSize() starts
// at 0), Add grows the capacity by the constant expand step, Append to exactly the needed size,
// SetCapacity (alias SetSize) only grows and Truncate shrinks size and capacity together.
// Elements are objects, each built and destroyed individually and copied by assignment: new room
// holds (0, 0) in a CNuComplexArray and the polar number 1 in a CNuComplexPolarArray. Clear only
// sets the size to 0.
#ifndef NUMORIX_COMPLEX_COMPLEX_ARRAY_H
#define NUMORIX_COMPLEX_COMPLEX_ARRAY_H

#include "numorix/complex/complex.h"

namespace numorix {

namespace internal {
template <class T>
struct ArrayRef;
}

class CNuComplexArray {
  public:
    explicit CNuComplexArray(int nSize = 0);
    CNuComplexArray(int nSize, int nArrayExpandSize);
    CNuComplexArray(const CNuComplexArray& other);
    CNuComplexArray& operator=(const CNuComplexArray& other);
    ~CNuComplexArray();

    int GetSize() const { return m_nSize; }
    int GetCapacity() const { return m_nCapacity; }
    int GetExpandSize() const { return m_nExpandSize; }
    const CNuComplex* GetData() const { return m_pData; }
    CNuComplex* GetData() { return m_pData; }

    void SetExpandSize(int nExpandSize);
    void SetCapacity(int nCapacity);
    void SetSize(int nCapacity);  // the same operation as SetCapacity; the size is unchanged
    void Truncate(int nSize);
    void FreeExtra();
    void Clear();

    CNuComplex& operator[](int i);
    const CNuComplex& operator[](int i) const;
    CNuComplex& First();
    CNuComplex& Last();

    CNuComplexArray SubArray(int i, int j) const;

    void Add(const CNuComplex& value);
    void Append(const CNuComplexArray& other);
    void Remove(int i);

  private:
    internal::ArrayRef<CNuComplex> Ref() const;

    CNuComplex* m_pData;
    int m_nSize;
    int m_nCapacity;
    int m_nExpandSize;
};

class CNuComplexPolarArray {
  public:
    explicit CNuComplexPolarArray(int nSize = 0);
    CNuComplexPolarArray(int nSize, int nArrayExpandSize);
    CNuComplexPolarArray(const CNuComplexPolarArray& other);
    CNuComplexPolarArray& operator=(const CNuComplexPolarArray& other);
    ~CNuComplexPolarArray();

    int GetSize() const { return m_nSize; }
    int GetCapacity() const { return m_nCapacity; }
    int GetExpandSize() const { return m_nExpandSize; }
    const CNuComplexPolar* GetData() const { return m_pData; }
    CNuComplexPolar* GetData() { return m_pData; }

    void SetExpandSize(int nExpandSize);
    void SetCapacity(int nCapacity);
    void SetSize(int nCapacity);  // the same operation as SetCapacity; the size is unchanged
    void Truncate(int nSize);
    void FreeExtra();
    void Clear();

    CNuComplexPolar& operator[](int i);
    const CNuComplexPolar& operator[](int i) const;
    CNuComplexPolar& First();
    CNuComplexPolar& Last();

    CNuComplexPolarArray SubArray(int i, int j) const;

    void Add(const CNuComplexPolar& value);
    void Append(const CNuComplexPolarArray& other);
    void Remove(int i);

  private:
    internal::ArrayRef<CNuComplexPolar> Ref() const;

    CNuComplexPolar* m_pData;
    int m_nSize;
    int m_nCapacity;
    int m_nExpandSize;
};

}  // namespace numorix

#endif  // NUMORIX_COMPLEX_COMPLEX_ARRAY_H
