// Candidate axes of a point set read from its fitted quadric
//   a x^2 + b y^2 + c z^2 + d x y + e x z + f y z + g x + h y + i z + 1 = 0
// about the mean point: the centre solves M c = -(g, h, i) with M the Hessian, and the
// singular vectors of M / 2 are the principal directions. The direction of the smallest
// curvature leads the candidates: the axis of a surface that is long in one direction, as a
// cylinder or a cone is. The candidates start the cylinder and cone fits.
#include <cmath>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"
#include "numorix/surfaces/surface.h"

namespace numorix {

void CNuSurface::QuadricAxes(const CNuPointArray& points, const CNuPoint& mean, CNuPoint* pCentres,
                             CNuVector* pAxes) {
    int n = points.GetSize();
    const CNuPoint* p = points.GetData();
    CNuMatrix A(n, 9);
    CNuVector rhs(n);
    double** ppA = A.GetData();
    for (int k = 0; k < n; ++k) {
        double x = p[k].x() - mean.x();
        double y = p[k].y() - mean.y();
        double z = p[k].z() - mean.z();
        double* pr = ppA[k];
        pr[0] = x * x;
        pr[1] = y * y;
        pr[2] = z * z;
        pr[3] = x * y;
        pr[4] = x * z;
        pr[5] = y * z;
        pr[6] = x;
        pr[7] = y;
        pr[8] = z;
        rhs[k] = -1.0;
    }
    CNuLinearEquSys system;
    system.Solve(A, rhs);
    if (system.SolutionExists() == eNuFalse)
        throw CNuOperationException(46, "QuadricAxes", "CNuSurface");
    CNuVector q = system.GetSolution();

    CNuMatrix M(3, 3);
    M.Element(0, 0) = 2.0 * q[0];
    M.Element(1, 1) = 2.0 * q[1];
    M.Element(2, 2) = 2.0 * q[2];
    M.Element(0, 1) = M.Element(1, 0) = q[3];
    M.Element(0, 2) = M.Element(2, 0) = q[4];
    M.Element(1, 2) = M.Element(2, 1) = q[5];
    CNuLinearEquSys centreSystem;
    centreSystem.Solve(M, CNuVector(-q[6], -q[7], -q[8]));
    if (centreSystem.SolutionExists() == eNuFalse)
        throw CNuOperationException(46, "QuadricAxes", "CNuSurface");
    CNuVector c = centreSystem.GetSolution();

    M *= 0.5;
    CNuVector w(3);
    CNuMatrix V(3, 3);
    M.SVD(&w, &V);

    // Indices by ascending singular value: (p, q, r).
    int anOrder[3];
    NuSort(3, w.GetData(), anOrder);
    int np = anOrder[0];
    int nq = anOrder[1];
    int nr = anOrder[2];
    int anCandidate[3] = {nr, np, nq};
    if (NuGetTol() < w[1] && w[0] / w[1] < w[1] / w[2]) {
        anCandidate[0] = np;
        anCandidate[1] = nr;
        anCandidate[2] = nq;
    }
    for (int k = 0; k < 3; ++k) {
        int j = anCandidate[k];
        CNuVector v(V.Element(0, j), V.Element(1, j), V.Element(2, j));
        double adMagnitude[3] = {std::fabs(v[0]), std::fabs(v[1]), std::fabs(v[2])};
        int anBy[3];
        NuSort(3, adMagnitude, anBy);
        if (v[anBy[2]] < 0.0) v = -v;
        double dAlong = v % c;
        pAxes[k] = v;
        pCentres[k] = CNuPoint(mean.x() + c[0] - dAlong * v[0], mean.y() + c[1] - dAlong * v[1],
                               mean.z() + c[2] - dAlong * v[2]);
    }
}

}  // namespace numorix
