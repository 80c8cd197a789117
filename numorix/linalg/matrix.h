// CNuMatrix: the real dense matrix of any size, held row by row behind a table of row pointers
// (GetData() hands out the table; routines swap rows by swapping pointers). A fresh matrix holds
// zeros; the default matrix is 4 by 4.
//
// Decompositions, each in its own source file:
//   LUD          Crout factorisation with implicit (row-scaled) partial pivoting, in place;
//                a vanishing pivot sets the singular flag and scales its multipliers by
//                1 / NuGetTol()^2 instead of failing.
//   LUD2         the factors as separate matrices with P A = L U.
//   Determinant  closed forms up to 3 by 3, LU above.
//   Inverse      column by column through CNuLinearEquSys in exact mode.
//   SVD          Golub-Reinsch: A = U diag(w) V^T with U replacing A, w unsorted and
//                non-negative, singular values below NuGetTol() * max(w) cut to exactly 0.
#ifndef NUMORIX_LINALG_MATRIX_H
#define NUMORIX_LINALG_MATRIX_H

#include "numorix/foundation/object.h"
#include "numorix/linalg/vector.h"

namespace numorix {

class CNuIntArray;
class CNuMatrix;

// Cache of the last eigenanalysis of a matrix.
struct SEigen {
    ENuStatus eStatus = eNuStatusFailed;
    CNuVector values;
    CNuMatrix* pMatrix = nullptr;   // copy of the analysed matrix
    CNuMatrix* pVectors = nullptr;  // eigenvectors
};

class CNuMatrix : public CNuAlgebra {
  public:
    CNuMatrix();
    CNuMatrix(int nRows, int nColumns);
    CNuMatrix(const CNuMatrix& other);
    CNuMatrix& operator=(const CNuMatrix& other);
    ~CNuMatrix() override;

    static CNuMatrix Identity(int n);
    static CNuMatrix DiagonalMatrix(const CNuVector& diagonal);

    int GetRowSize() const { return m_nRows; }
    int GetColumnSize() const { return m_nColumns; }
    double** GetData() { return m_ppdData; }
    const double* const* GetData() const { return m_ppdData; }

    double& Element(int i, int j);
    const double& Element(int i, int j) const;
    double GetElement(int i, int j) const;
    void SetElement(int i, int j, double dValue);
    CNuVector GetRowVector(int i) const;
    CNuVector GetColumnVector(int j) const;
    void SetRowVector(int i, const CNuVector& row);
    void SetColumnVector(int j, const CNuVector& column);
    CNuMatrix SubMatrix(int r1, int r2, int c1, int c2) const;
    void SetSubMatrix(int r1, int r2, int c1, int c2, const CNuMatrix& block);

    ENuBoolean IsZero(double dTol) const;
    ENuBoolean IsEqual(const CNuMatrix& other, double dTol) const;
    ENuBoolean IsSymmetric(double dTol) const;
    ENuBoolean IsOrthogonal(double dTol) const;

    CNuMatrix operator+(const CNuMatrix& other) const;
    CNuMatrix operator-(const CNuMatrix& other) const;
    CNuMatrix& operator+=(const CNuMatrix& other);
    CNuMatrix& operator-=(const CNuMatrix& other);
    CNuMatrix operator*(const CNuMatrix& other) const;
    CNuVector operator*(const CNuVector& column) const;
    CNuMatrix operator*(double dFactor) const;
    CNuMatrix& operator*=(double dFactor);
    CNuMatrix operator/(double dDivisor) const;
    CNuMatrix& operator/=(double dDivisor);
    CNuMatrix operator-() const;
    CNuMatrix PreMultiplyTranspose() const;   // A^T A
    CNuMatrix PostMultiplyTranspose() const;  // A A^T
    CNuMatrix Transpose() const;
    double Trace() const;

    void LUD(CNuIntArray* indx, int* d, int* singular);
    void LUD2(CNuMatrix* P, CNuMatrix* L, CNuMatrix* U) const;
    double Determinant() const;
    CNuMatrix Inverse(ENuStatus* status) const;
    void SVD(CNuVector* w, CNuMatrix* V);

    bool BinaryDump(const char* pszFileName) const;
    bool BinaryRead(const char* pszFileName);

  private:
    void Init(int nRows, int nColumns);
    void Copy(const CNuMatrix& other);
    void Free();
    void CheckRowColumnIndex(const int& i, const int& j) const;

    int m_nRows;
    int m_nColumns;
    double** m_ppdData;
    SEigen* m_pEigen;
};

CNuMatrix operator*(double dFactor, const CNuMatrix& matrix);

}  // namespace numorix

#endif  // NUMORIX_LINALG_MATRIX_H
