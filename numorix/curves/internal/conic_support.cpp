#include "numorix/curves/internal/conic_support.h"

#include <cmath>

#include "numorix/equations/alg_equ.h"
#include "numorix/equations/polynomial.h"
#include "numorix/foundation/double_array.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/non_linear_geometry.h"
#include "numorix/linalg/matrix.h"

namespace numorix {
namespace conic {

namespace {

void CheckAxisVector(const CNuVector& v, const char* pszLocation) {
    if (v.GetSize() != 3) throw CNuConstructionException(4, pszLocation);
    if (v.IsZero(NuGetZero()) == eNuTrue) throw CNuConstructionException(3, pszLocation);
}

}  // namespace

void CheckPositive(double dValue, const char* pszLocation, const char* pszName) {
    if (!(dValue > 0.0)) throw CNuConstructionException(5, pszLocation, pszName);
}

Frame FrameFromNormal(const CNuVector& normal, const char* pszLocation) {
    CheckAxisVector(normal, pszLocation);
    Frame frame{CNuVector(), CNuVector(normal)};
    // OrthonormalX normalises z in place and completes it with a unit X axis.
    frame.zAxis.OrthonormalX(&frame.xAxis);
    return frame;
}

Frame FrameFromAxes(const CNuVector& normal, const CNuVector& xAxis, const char* pszLocation) {
    CheckAxisVector(normal, pszLocation);
    CheckAxisVector(xAxis, pszLocation);
    if (normal.IsOrthogonalTo(xAxis, NuGetRadianTol()) == eNuFalse) {
        throw CNuConstructionException(8, pszLocation);
    }
    Frame frame{CNuVector(xAxis), CNuVector(normal)};
    frame.xAxis.Normalise();
    frame.zAxis.Normalise();
    return frame;
}

void PlaceInWorld(const CNuNonLinearGeometry& curve, CNuPointArray* pPoints) {
    if (!curve.IsPositionSet()) return;
    CNuMatrix transformation = curve.GetTransformation();
    CNuPoint* pData = pPoints->GetData();
    for (int i = 0; i < pPoints->GetSize(); ++i) {
        pData[i] = (pData[i].To4DVector() * transformation).To3DPoint();
    }
}

CNuLine LocalLine(const CNuNonLinearGeometry& curve, const CNuLine& line) {
    CNuLine local(line);
    if (curve.IsPositionSet()) local.MoveTo(curve);
    return local;
}

int IntersectLocalLine(const CNuNonLinearGeometry& curve, const CNuLine& localLine, double dC0,
                       double dC1, double dC2, CNuPoint* pFirst, CNuPoint* pSecond) {
    CNuPolynomial polynomial(2);
    polynomial[0] = dC0;
    polynomial[1] = dC1;
    polynomial[2] = dC2;
    // A fresh solver: a polynomial that trims to a constant leaves it without roots.
    CNuAlgEqu solver;
    solver.Solve(polynomial);
    CNuDoubleArray roots = solver.GetRealRoots();

    const CNuPoint& p = localLine.GetPoint();
    const double* pd = localLine.GetDirection().GetData();
    bool bPositioned = curve.IsPositionSet();
    CNuMatrix transformation = bPositioned ? curve.GetTransformation() : CNuMatrix::Identity(4);
    double dLengthTol = NuGetLengthTol();

    int nWritten = 0;
    CNuVector firstHomogeneous(4);
    for (int i = 0; i < roots.GetSize() && nWritten < 2; ++i) {
        double t = roots[i];
        CNuPoint local(p.x() + t * pd[0], p.y() + t * pd[1], p.z() + t * pd[2]);
        // A line that leaves the plane meets the curve at most where it pierces the plane.
        if (!(std::fabs(local.z()) < dLengthTol)) continue;
        CNuVector homogeneous = local.To4DVector();
        if (bPositioned) homogeneous = homogeneous * transformation;
        if (nWritten == 1 && homogeneous.IsEqual(firstHomogeneous, dLengthTol) == eNuTrue) continue;
        CNuPoint world = homogeneous.To3DPoint();
        if (nWritten == 0) {
            firstHomogeneous = homogeneous;
            if (pFirst != nullptr) *pFirst = world;
        } else if (pSecond != nullptr) {
            *pSecond = world;
        }
        ++nWritten;
    }
    return nWritten;
}

int KeepOnPlane(const CNuPlane& plane, int nFound, CNuPoint* pFirst, CNuPoint* pSecond) {
    double dLengthTol = NuGetLengthTol();
    bool bFirst = nFound >= 1 && pFirst->DistanceTo(plane) < dLengthTol;
    bool bSecond = nFound >= 2 && pSecond->DistanceTo(plane) < dLengthTol;
    if (!bFirst && bSecond) *pFirst = *pSecond;
    return (bFirst ? 1 : 0) + (bSecond ? 1 : 0);
}

}  // namespace conic
}  // namespace numorix
