// Orthogonal least-squares line: the line through the mean point along the right singular vector
// of the largest singular value of the centred n by 3 data matrix, which minimises the sum of
// squared distances of the points from the line.
#include <cmath>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/matrix.h"

namespace numorix {

void CNuLine::Fit(const CNuPointArray& points) {
    fit::CheckFinite(points, "CNuLine");
    int n = points.GetSize();
    if (n < 2) throw CNuBestfitException(1, "CNuLine", 2);
    const CNuPoint* p = points.GetData();
    CNuPoint mean = points.MeanPoint();
    if (n == 2) {
        // Two points: the direction runs from the first to the second, without sign cleaning.
        CNuPoint d = p[1] - p[0];
        double dTol = NuGetLengthTol();
        if (std::fabs(d.x()) < dTol && std::fabs(d.y()) < dTol && std::fabs(d.z()) < dTol)
            throw CNuBestfitException(2, "CNuLine", 2);
        CNuVector direction = d.To3DVector();
        // A length tolerance of 0 or less lets coincident points through; a difference that
        // cannot be normalised would leave a zero or non-unit direction, so it is refused as
        // the same failure, like a decomposition with no singular value above NuGetZero().
        if (!(direction.Magnitude() > NuGetZero())) throw CNuBestfitException(2, "CNuLine", 2);
        direction.Normalise();
        m_point = mean;
        m_direction = direction;
        return;
    }
    CNuVector w(3);
    CNuMatrix V(3, 3);
    fit::CentredSvd(points, mean, &w, &V);
    int nLargest = 0;
    for (int j = 1; j < 3; ++j)
        if (w[j] > w[nLargest]) nLargest = j;
    if (!(w[nLargest] > NuGetZero())) throw CNuBestfitException(2, "CNuLine", 2);
    CNuVector direction = fit::Column3(V, nLargest);
    fit::CleanDirection(&direction);
    m_point = mean;
    m_direction = direction;
}

void CNuLine::Fit(const CNuPointArray& points, double* pdForm, double* pdSumSquares) {
    *pdForm = 0.0;
    *pdSumSquares = 0.0;
    Fit(points);
    int n = points.GetSize();
    if (n == 2) return;
    const CNuPoint* p = points.GetData();
    const double* d = m_direction.GetData();
    if (points.Is2D(NuGetZero()) == eNuFalse) {
        // In space: distances from the line; the form is the diameter of the enclosing cylinder.
        double dLargest = 0.0;
        for (int i = 0; i < n; ++i) {
            double vx = p[i].x() - m_point.x();
            double vy = p[i].y() - m_point.y();
            double vz = p[i].z() - m_point.z();
            double cx = d[1] * vz - d[2] * vy;
            double cy = d[2] * vx - d[0] * vz;
            double cz = d[0] * vy - d[1] * vx;
            double dist = fit::ScaledDistance(cx, cy, cz);
            *pdSumSquares += dist * dist;
            if (dist > dLargest) dLargest = dist;
        }
        *pdForm = 2.0 * dLargest;
        return;
    }
    // In the XY plane: the signed distance is the z component of direction x (P - location).
    double dLargest = 0.0;
    double dSmallest = 0.0;
    for (int i = 0; i < n; ++i) {
        double vx = p[i].x() - m_point.x();
        double vy = p[i].y() - m_point.y();
        double r = d[0] * vy - d[1] * vx;
        *pdSumSquares += r * r;
        if (r > dLargest) dLargest = r;
        if (r < dSmallest) dSmallest = r;
    }
    *pdForm = dLargest - dSmallest;
}

}  // namespace numorix
