// Orthogonal least-squares plane: the plane through the mean point whose normal is the right
// singular vector of the smallest singular value of the centred n by 3 data matrix, which
// minimises the sum of squared distances of the points from the plane.
#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/matrix.h"

namespace numorix {

void CNuPlane::Fit(const CNuPointArray& points) {
    fit::CheckFinite(points, "CNuPlane");
    CNuVector normal;
    int nCollinear = CNuGeometry::AreCollinear(points, &normal, NuGetLengthTol());
    int n = points.GetSize();
    if (n < 3) throw CNuBestfitException(1, "CNuPlane", 3);
    if (nCollinear != 0) throw CNuBestfitException(3, "CNuPlane", 3);
    CNuPoint mean = points.MeanPoint();
    if (n == 3) {
        // Three points: the unit normal of the collinearity test, sign as it came.
        m_point = mean;
        m_normal = normal;
        return;
    }
    CNuVector w(3);
    CNuMatrix V(3, 3);
    fit::CentredSvd(points, mean, &w, &V);
    int nSmallest = 0;
    for (int j = 1; j < 3; ++j)
        if (w[j] < w[nSmallest]) nSmallest = j;
    CNuVector result = fit::Column3(V, nSmallest);
    fit::CleanDirection(&result);
    m_point = mean;
    m_normal = result;
}

void CNuPlane::Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares) {
    *pdForm = 0.0;
    *pdSumSquares = 0.0;
    Fit(points);
    int n = points.GetSize();
    if (n == 3) return;
    const CNuPoint* p = points.GetData();
    const double* pn = m_normal.GetData();
    double dLargest = 0.0;
    double dSmallest = 0.0;
    for (int i = 0; i < n; ++i) {
        double d = pn[0] * (p[i].x() - m_point.x()) + pn[1] * (p[i].y() - m_point.y()) +
                   pn[2] * (p[i].z() - m_point.z());
        *pdSumSquares += d * d;
        // The smallest only moves for a value that did not just become the largest.
        if (d > dLargest)
            dLargest = d;
        else if (d < dSmallest)
            dSmallest = d;
    }
    *pdForm = dLargest - dSmallest;
}

}  // namespace numorix
