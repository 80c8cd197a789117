// Storage engine shared by the growable arrays. Each array class owns four members (data pointer,
// size, capacity, expand step) and forwards to these templates, passing the strings that its own
// failures carry. Growth is by a constant step, never by doubling; SetCapacity only grows and
// zero-fills (or default-constructs) the whole new block before copying the elements in use.
//
// Elements that are trivially copyable (int, double, pointers) move by block copies and are
// resized in place; class elements are built individually and copied by assignment.
#ifndef NUMORIX_FOUNDATION_INTERNAL_ARRAY_STORAGE_H
#define NUMORIX_FOUNDATION_INTERNAL_ARRAY_STORAGE_H

#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

#include "numorix/foundation/exception.h"

namespace numorix {
namespace internal {

// The strings one array class writes into its failures.
struct ArrayTexts {
    const char* pszClass;        // construction failures and operator[] ("CNuDoubleArray")
    const char* pszAllocate;     // allocation in a constructor ("CNuDoubleArray()")
    const char* pszCopy;         // allocation in Copy ("CNuDoubleArray::Copy()")
    const char* pszSetSize;      // SetCapacity / SetSize
    const char* pszSetExpand;    // SetExpandSize
    const char* pszTruncate;     // Truncate
    const char* pszFirst;        // First
    const char* pszLast;         // Last
    const char* pszRemove;       // Remove
    const char* pszSubArray;     // SubArray(i, j)
    const char* pszAppend;       // Append
    const char* pszElementName;  // name of operator[] failures
};

template <class T>
struct ArrayRef {
    T*& pData;
    int& nSize;
    int& nCapacity;
    int& nExpandSize;
    const ArrayTexts& texts;
};

// Block-copied elements live in malloc storage so that growth and shrinking can resize in place;
// class elements are built with new[] and copied by assignment.
template <class T>
constexpr bool kBlockCopied = std::is_trivially_copyable_v<T>;

// Allocates n elements, zero-filled or default-built. Failure raises a memory exception.
template <class T>
T* Allocate(int n, const char* pszLocation) {
    T* p;
    if constexpr (kBlockCopied<T>) {
        p = static_cast<T*>(std::calloc(static_cast<std::size_t>(n), sizeof(T)));
    } else {
        p = new (std::nothrow) T[static_cast<std::size_t>(n)]();
    }
    if (p == nullptr) throw CNuMemoryException(pszLocation);
    return p;
}

template <class T>
void Release(T* p) {
    if constexpr (kBlockCopied<T>) {
        std::free(p);
    } else {
        delete[] p;
    }
}

template <class T>
void CopyElements(T* pTo, const T* pFrom, int n) {
    if (n <= 0) return;
    if constexpr (kBlockCopied<T>) {
        std::memcpy(pTo, pFrom, sizeof(T) * static_cast<std::size_t>(n));
    } else {
        for (int i = 0; i < n; ++i)
            pTo[i] = pFrom[i];
    }
}

// Gives the storage exactly n elements, keeping the first nKeep, and returns the new block. The
// contents equal those of a fresh zero-filled block into which the kept elements were copied;
// block-copied elements get there by resizing in place, which spares the copy and the page
// faults of a new block at every growth step.
template <class T>
T* Resize(T* pData, int nKeep, int n, const char* pszLocation) {
    if constexpr (kBlockCopied<T>) {
        if (pData == nullptr) return Allocate<T>(n, pszLocation);
        void* p = std::realloc(pData, sizeof(T) * static_cast<std::size_t>(n));
        if (p == nullptr) throw CNuMemoryException(pszLocation);
        T* pNew = static_cast<T*>(p);
        if (n > nKeep) {
            std::memset(static_cast<void*>(pNew + nKeep), 0,
                        sizeof(T) * static_cast<std::size_t>(n - nKeep));
        }
        return pNew;
    } else {
        T* pNew = Allocate<T>(n, pszLocation);
        CopyElements(pNew, pData, nKeep);
        delete[] pData;
        return pNew;
    }
}

// Constructor: capacity nSize, size 0.
template <class T>
void Construct(ArrayRef<T> a, int nSize, int nExpandSize, const char* pszSizeName,
               bool bCheckExpand) {
    a.pData = nullptr;
    a.nSize = 0;
    a.nCapacity = 0;
    a.nExpandSize = 10;
    if (nSize < 0) throw CNuConstructionException(2, a.texts.pszClass, pszSizeName);
    if (bCheckExpand && nExpandSize < 1) {
        throw CNuConstructionException(15, a.texts.pszClass, "nArrayExpandSize");
    }
    if (nSize > 0) a.pData = Allocate<T>(nSize, a.texts.pszAllocate);
    a.nCapacity = nSize;
    a.nExpandSize = bCheckExpand ? nExpandSize : 10;
}

// Assignment: a buffer at least as large as the source's capacity is kept; elements beyond the
// source's size are left as they were.
template <class T>
void Copy(ArrayRef<T> a, const T* pOther, int nOtherSize, int nOtherCapacity,
          int nOtherExpandSize) {
    if (pOther != nullptr) {
        if (a.pData == nullptr || a.nCapacity < nOtherCapacity) {
            T* pNew = Allocate<T>(nOtherCapacity, a.texts.pszCopy);
            Release(a.pData);
            a.pData = pNew;
            a.nCapacity = nOtherCapacity;
        }
        CopyElements(a.pData, pOther, nOtherSize);
        a.nSize = nOtherSize;
    } else {
        a.nSize = 0;
    }
    a.nExpandSize = nOtherExpandSize < 1 ? 10 : nOtherExpandSize;
}

template <class T>
void Copy(ArrayRef<T> a, ArrayRef<T> other) {
    Copy(a, other.pData, other.nSize, other.nCapacity, other.nExpandSize);
}

template <class T>
void SetExpandSize(ArrayRef<T> a, int nExpandSize) {
    if (nExpandSize < 1) {
        throw CNuOperationException(14, "SetExpandSize operation", a.texts.pszSetExpand);
    }
    a.nExpandSize = nExpandSize;
}

// Grows the capacity to exactly n. Requesting the current capacity or less is refused.
template <class T>
void SetCapacity(ArrayRef<T> a, int n) {
    if (n < 0 || n <= a.nCapacity)
        throw CNuOperationException(14, "SetSize operation", a.texts.pszSetSize);
    if (a.pData == nullptr) a.nSize = 0;
    a.pData = Resize(a.pData, a.nSize, n, a.texts.pszSetSize);
    a.nCapacity = n;
}

template <class T>
void FreeExtra(ArrayRef<T> a) {
    if (a.nSize == a.nCapacity) return;
    if (a.nSize == 0) {
        Release(a.pData);
        a.pData = nullptr;
    } else {
        a.pData = Resize(a.pData, a.nSize, a.nSize, a.texts.pszSetSize);
    }
    a.nCapacity = a.nSize;
}

// Shrinks size and capacity to n.
template <class T>
void Truncate(ArrayRef<T> a, int n) {
    if (n < 0 || n > a.nSize) {
        throw CNuOperationException(14, "Truncate operation", a.texts.pszTruncate, 0, a.nSize - 1);
    }
    if (n == 0) {
        Release(a.pData);
        a.pData = nullptr;
        a.nSize = 0;
        a.nCapacity = 0;
        return;
    }
    if (n == a.nSize) {
        FreeExtra(a);
        return;
    }
    a.pData = Resize(a.pData, n, n, a.texts.pszTruncate);
    a.nSize = n;
    a.nCapacity = n;
}

// The one growth path of Add: one step of nExpandSize elements when the array is full.
template <class T>
void Add(ArrayRef<T> a, const T& value) {
    if (a.nSize == a.nCapacity) {
        long long nNew = static_cast<long long>(a.nSize) + a.nExpandSize;
        if (nNew > INT_MAX) throw CNuMemoryException(a.texts.pszSetSize);
        SetCapacity(a, static_cast<int>(nNew));
    }
    a.pData[a.nSize] = value;
    ++a.nSize;
}

// Appends n elements from pOther; bSelf tells that they are this array's own.
template <class T>
void Append(ArrayRef<T> a, const T* pOther, int nOther, bool bSelf) {
    if (bSelf) throw CNuOperationException(18, "Append operation", a.texts.pszAppend);
    long long nTotal = static_cast<long long>(a.nSize) + nOther;
    if (nTotal > INT_MAX) throw CNuMemoryException(a.texts.pszSetSize);
    if (nTotal > a.nCapacity) SetCapacity(a, static_cast<int>(nTotal));
    CopyElements(a.pData + a.nSize, pOther, nOther);
    a.nSize = static_cast<int>(nTotal);
}

// Index test of operator[]: 108 on an empty array, else 103 with the valid range.
template <class T>
void CheckIndex(ArrayRef<T> a, int i, const char* pszName, const char* pszLocation) {
    if (a.nSize == 0) throw CNuOperationException(8, pszName, pszLocation);
    if (i < 0 || i >= a.nSize) throw CNuOperationException(3, pszName, pszLocation, 0, a.nSize - 1);
}

template <class T>
T& At(ArrayRef<T> a, int i) {
    CheckIndex(a, i, a.texts.pszElementName, a.texts.pszClass);
    return a.pData[i];
}

template <class T>
T& First(ArrayRef<T> a) {
    if (a.nSize == 0) throw CNuOperationException(8, "First operator[]", a.texts.pszFirst);
    return a.pData[0];
}

template <class T>
T& Last(ArrayRef<T> a) {
    if (a.nSize == 0) throw CNuOperationException(8, "Last operator[]", a.texts.pszLast);
    return a.pData[a.nSize - 1];
}

template <class T>
void Remove(ArrayRef<T> a, int i) {
    CheckIndex(a, i, "Remove operation", a.texts.pszRemove);
    for (int k = i; k + 1 < a.nSize; ++k)
        a.pData[k] = a.pData[k + 1];
    --a.nSize;
}

// Range test of SubArray(i, j): 103 with the valid range, then 115 for i > j.
template <class T>
void CheckSubArray(ArrayRef<T> a, int i, int j) {
    if (i < 0 || j >= a.nSize) {
        throw CNuOperationException(3, "SubArray operation", a.texts.pszSubArray, 0, a.nSize - 1);
    }
    if (i > j) throw CNuOperationException(15, "SubArray operation", a.texts.pszSubArray);
}

// The body of SubArray(i, j) after CheckSubArray: elements i to j of a into the fresh result,
// built with the capacity j - i + 1.
template <class T>
void FillSubArray(ArrayRef<T> result, ArrayRef<T> a, int i, int j) {
    CopyElements(result.pData, a.pData + i, j - i + 1);
    result.nSize = j - i + 1;
}

// Clear of the block-copied arrays: size 0 and the whole capacity zero-filled.
template <class T>
void ClearZeroed(ArrayRef<T> a) {
    a.nSize = 0;
    for (int i = 0; i < a.nCapacity; ++i)
        a.pData[i] = T();
}

}  // namespace internal
}  // namespace numorix

#endif  // NUMORIX_FOUNDATION_INTERNAL_ARRAY_STORAGE_H
