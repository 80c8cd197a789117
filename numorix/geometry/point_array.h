// CNuPointArray: the growable array of CNuPoint, the input of every fit.
//
// Storage follows the other growable arrays: the constructor's size is a capacity, Add grows by
// the constant expand step, Append to exactly the needed size, SetCapacity only grows. Elements
// are real points, copied by assignment. Points compare by the strict box test of
// CNuPoint::IsEqual throughout.
//
// Beyond storage: degeneracy tests (collinear, coplanar, flat in z), duplicate removal, frame
// changes of the whole set, extreme edges, the bounding box and sphere, and the planar convex
// hull (convex_hull.cpp).
#ifndef NUMORIX_GEOMETRY_POINT_ARRAY_H
#define NUMORIX_GEOMETRY_POINT_ARRAY_H

#include "numorix/foundation/object.h"
#include "numorix/geometry/point.h"

namespace numorix {

class CNuDoubleArray;
class CNuIntArray;
class CNuVector;
namespace internal {
template <class T>
struct ArrayRef;
}

class CNuPointArray {
  public:
    explicit CNuPointArray(int nSize = 0);
    CNuPointArray(int nSize, int nArrayExpandSize);
    CNuPointArray(const CNuPointArray& other);
    CNuPointArray& operator=(const CNuPointArray& other);
    ~CNuPointArray();

    int GetSize() const { return m_nSize; }
    int GetCapacity() const { return m_nCapacity; }
    int GetExpandSize() const { return m_nExpandSize; }
    const CNuPoint* GetData() const { return m_pData; }
    CNuPoint* GetData() { return m_pData; }

    void SetExpandSize(int nExpandSize);
    void SetCapacity(int nCapacity);
    void SetSize(int nCapacity);  // the same operation as SetCapacity; the size is unchanged
    void Truncate(int nSize);
    void FreeExtra();
    void Clear();  // size 0; the elements stay as they are

    CNuPoint& operator[](int i);
    const CNuPoint& operator[](int i) const;
    CNuPoint& First();
    CNuPoint& Last();

    CNuPointArray SubArray(int i, int j) const;
    CNuPointArray SubArray(const CNuIntArray& mask) const;

    void Add(const CNuPoint& point);
    void Append(const CNuPointArray& other);
    void Remove(int i);
    // Inserts before nIndex, which must lie in 0 .. size - 1.
    void Insert(const CNuPoint& point, const int& nIndex);

    CNuDoubleArray GetDataX() const;
    CNuDoubleArray GetDataY() const;
    CNuDoubleArray GetDataZ() const;

    // Keeps the first of every group of points equal (by the box test) to an earlier survivor;
    // the order of survivors stays and the capacity is kept.
    void RemoveDuplicate(double dTol);
    // Drops each point equal to the last point kept.
    void RemoveAdjacentDuplicate(double dTol);
    ENuBoolean IsIn(const CNuPoint& point, double dTol) const;
    ENuBoolean IsIn(const CNuPoint& point, int& nIndex, double dTol) const;

    ENuBoolean IsNoncollinear(CNuIntArray* pIndices, double dTol) const;
    ENuBoolean IsNoncoplanar(CNuIntArray* pIndices, double dTol) const;
    // All z within dTol of the first; a single point only at z exactly 0.
    ENuBoolean Is2D(double dTol) const;
    // The same points in any order.
    ENuBoolean IsEqual(const CNuPointArray& other, double dTol) const;
    CNuPoint MeanPoint() const;

    void MoveTo(const CNuPoint& origin);
    void MoveTo(const CNuVector& zAxis);
    void MoveTo(const CNuPoint& origin, const CNuVector& zAxis);
    void MoveTo(const CNuPoint& origin, const CNuVector& xAxis, const CNuVector& zAxis);

    double MaxEdge(int* pM, int* pN) const;
    double MinEdge(int* pM, int* pN) const;
    void BoundingBox(CNuPoint* pMin, CNuPoint* pMax) const;
    // Centre of the bounding box and the distance to its corner: not the minimal sphere.
    void BoundingSphere(double* pdRadius, CNuPoint* pCentre) const;
    // Indices of the vertices of the planar (x, y) convex hull, ordered by their angle around
    // the vertices' centroid. The points must share one z within NuGetLengthTol().
    void ConvexHull(CNuIntArray* pHull) const;

  private:
    internal::ArrayRef<CNuPoint> Ref() const;
    void CheckNotEmpty(const char* pszName, const char* pszLocation) const;
    void Project(const CNuVector& xAxis, const CNuVector& yAxis, const CNuVector& zAxis);

    CNuPoint* m_pData;
    int m_nSize;
    int m_nCapacity;
    int m_nExpandSize;
};

}  // namespace numorix

#endif  // NUMORIX_GEOMETRY_POINT_ARRAY_H
