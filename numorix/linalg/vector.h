// CNuVector: the real vector of any size, and the direction of 3D geometry.
//
// Elements are m_pdData[0 .. m_nSize - 1]; the size is at least 1. The capacity equals the size
// except after NonHomogeneous, which leaves a 4-capacity holding 3 elements. Most operations work
// for any size; the geometric ones (cross product, rotations, angles, orthonormal frames) need
// size 3, and the homogeneous pair works on sizes 3 and 4.
//
// Operators: % is the dot product, * the cross product (and the row-vector product with a matrix),
// & the elementwise product. Rotate and AngleWith work in degrees; GetRotationMatrix,
// GetRotationAxis, IsParallelTo and IsOrthogonalTo in radians. Every tolerance is an explicit
// argument, except the fixed minimum angle of IsEqual and the zero test of NuGetZero().
#ifndef NUMORIX_LINALG_VECTOR_H
#define NUMORIX_LINALG_VECTOR_H

#include "numorix/foundation/object.h"
#include "numorix/geometry/geometry.h"

namespace numorix {

class CNuIntArray;
class CNuMatrix;
class CNuPoint;

class CNuVector : public CNuGeometry {
  public:
    CNuVector(double x = 0.0, double y = 0.0, double z = 0.0);
    explicit CNuVector(int nSize);
    CNuVector(const CNuVector& other);
    CNuVector& operator=(const CNuVector& other);
    ~CNuVector() override;

    int GetSize() const { return m_nSize; }
    int GetCapacity() const { return m_nCapacity; }
    double* GetData() { return m_pdData; }
    const double* GetData() const { return m_pdData; }
    double& operator[](int i);
    const double& operator[](int i) const;

    CNuVector SubVector(int i, int j) const;
    void Homogeneous();
    void NonHomogeneous();
    // The first three elements of a non-homogeneous copy, as a point.
    CNuPoint To3DPoint() const;

    ENuBoolean IsPositive() const;
    ENuBoolean IsNonNegative() const;
    ENuBoolean IsZero(double dTol) const;
    ENuBoolean IsEqual(const CNuVector& other, double dTol) const;
    ENuBoolean IsParallelTo(const CNuVector& other, double dAngle) const;
    ENuBoolean IsOrthogonalTo(const CNuVector& other, double dAngle) const;

    CNuVector operator+(const CNuVector& other) const;
    CNuVector operator-(const CNuVector& other) const;
    CNuVector& operator+=(const CNuVector& other);
    CNuVector& operator-=(const CNuVector& other);
    double operator%(const CNuVector& other) const;
    CNuVector operator&(const CNuVector& other) const;
    CNuVector operator*(const CNuVector& other) const;
    CNuVector operator*(const CNuMatrix& matrix) const;
    CNuVector operator*(double dFactor) const;
    CNuVector& operator*=(double dFactor);
    CNuVector operator/(double dDivisor) const;
    CNuVector& operator/=(double dDivisor);
    CNuVector operator-() const;

    // A vector is free: translating it does nothing.
    void Translate(const CNuPoint& point);
    void Translate(double dx, double dy, double dz);
    void Rotate(double dAngle, CNuGeometry::EAxisType eAxis);
    void Rotate(double dAngle, const CNuVector& axis);
    void Rotate(double dAngle, CNuGeometry::EAxisType eAxis, const CNuPoint& centre);
    void Rotate(double dAngle, const CNuVector& axis, const CNuPoint& centre);
    CNuMatrix GetRotationMatrix(const double& dAngle, const CNuVector& axis) const;
    void GetRotationAxis(const CNuVector& other, CNuVector& axis, double& dAngle) const;
    double AngleWith(const CNuVector& other) const;
    double AngleWith(const CNuVector& other, const CNuVector& axis) const;

    void Normalise();
    double Magnitude() const;
    double Sum() const;
    void OrthonormalX(CNuVector* pOut);
    void OrthonormalY(CNuVector* pOut);
    void OrthonormalXY(CNuVector* pX, CNuVector* pY);
    void SymmetricAxis(double dTol, int nSign);
    void Sort();
    void Sort(CNuIntArray* pIndex) const;
    double Max() const;
    double Min() const;

    bool BinaryDump(const char* pszFileName) const;
    bool BinaryRead(const char* pszFileName);

  private:
    // Vectors of up to kInlineSize elements (directions, homogeneous points) keep their elements
    // in m_adInline instead of a heap array; m_pdData points to whichever holds them.
    static constexpr int kInlineSize = 4;

    void Init(int nSize);
    void Copy(const CNuVector& other);
    void CheckIndex(const int& i) const;
    double* Allocate(int nSize, const char* pszWhere);
    void Release(double* pdData);

    double* m_pdData;
    int m_nSize;
    int m_nCapacity;
    double m_adInline[kInlineSize];
};

CNuVector operator*(double dFactor, const CNuVector& vector);

}  // namespace numorix

#endif  // NUMORIX_LINALG_VECTOR_H
