#include "numorix/curves/bounded_curve.h"

#include "numorix/linalg/matrix.h"

namespace numorix {

CNuBoundedCurve::~CNuBoundedCurve() = default;

CNuPoint CNuBoundedCurve::GetPointInSpace(const CNuPoint& local) const {
    if (!IsPositionSet()) return local;
    return (local.To4DVector() * GetTransformation()).To3DPoint();
}

CNuVector CNuBoundedCurve::GetVectorInSpace(const CNuVector& local) const {
    if (!IsPositionSet()) return local;
    return local * GetRotation();
}

}  // namespace numorix
