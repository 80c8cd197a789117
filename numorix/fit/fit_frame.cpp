#include <cmath>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/scalar.h"

namespace numorix {
namespace fit {

void CheckFinite(const CNuPointArray& points, const char* pszLocation) {
    const CNuPoint* p = points.GetData();
    for (int i = 0; i < points.GetSize(); ++i)
        if (!std::isfinite(p[i].x()) || !std::isfinite(p[i].y()) || !std::isfinite(p[i].z()))
            throw CNuBestfitException(14, pszLocation, i);
}

void CleanDirection(CNuVector* pDirection) {
    double* pd = pDirection->GetData();
    double dTol = NuGetTol();
    for (int i = 0; i < 3; ++i)
        if (std::fabs(pd[i]) < dTol) pd[i] = 0.0;
    // The first component of largest magnitude decides the sign.
    double dLargest = NuGetZero();
    int nLargest = -1;
    for (int i = 0; i < 3; ++i) {
        if (std::fabs(pd[i]) > dLargest) {
            dLargest = std::fabs(pd[i]);
            nLargest = i;
        }
    }
    if (nLargest >= 0 && pd[nLargest] < 0.0) {
        for (int i = 0; i < 3; ++i)
            pd[i] = -pd[i];
    }
}

void CentredSvd(const CNuPointArray& points, const CNuPoint& mean, CNuVector* pW, CNuMatrix* pV) {
    int n = points.GetSize();
    const CNuPoint* p = points.GetData();
    CNuMatrix A(n, 3);
    double** ppA = A.GetData();
    for (int i = 0; i < n; ++i) {
        ppA[i][0] = p[i].x() - mean.x();
        ppA[i][1] = p[i].y() - mean.y();
        ppA[i][2] = p[i].z() - mean.z();
    }
    A.SVD(pW, pV);
}

CNuVector Column3(const CNuMatrix& m, int j) {
    return CNuVector(m.Element(0, j), m.Element(1, j), m.Element(2, j));
}

}  // namespace fit
}  // namespace numorix
