#include <cmath>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/foundation/scalar.h"
#include "numorix/geometry/line.h"

namespace numorix {
namespace fit {

void CheckFinite(const CNuPointArray& points, const char* pszLocation) {
    const CNuPoint* p = points.GetData();
    for (int i = 0; i < points.GetSize(); ++i)
        if (!std::isfinite(p[i].x()) || !std::isfinite(p[i].y()) || !std::isfinite(p[i].z()))
            throw CNuBestfitException(14, pszLocation, i);
}

namespace {

// The index of the point farthest from q.
int Farthest(const CNuPoint* p, int n, const CNuPoint& q) {
    int nFar = 0;
    double dFar = -1.0;
    for (int i = 0; i < n; ++i) {
        double d = ScaledDistance(p[i].x() - q.x(), p[i].y() - q.y(), p[i].z() - q.z());
        if (d > dFar) {
            dFar = d;
            nFar = i;
        }
    }
    return nFar;
}

}  // namespace

void WideTriangle(const CNuPointArray& points, int* pnA, int* pnB, int* pnC) {
    const CNuPoint* p = points.GetData();
    int n = points.GetSize();
    *pnA = Farthest(p, n, p[0]);
    *pnB = Farthest(p, n, p[*pnA]);
    const CNuPoint& a = p[*pnA];
    CNuVector u = (p[*pnB] - a).To3DVector();
    *pnC = *pnA;
    double dFar = -1.0;
    for (int i = 0; i < n; ++i) {
        double d = (u * (p[i] - a).To3DVector()).Magnitude();
        if (d > dFar) {
            dFar = d;
            *pnC = i;
        }
    }
}

bool OnOneLine(const CNuPointArray& points, double dTolerance) {
    const CNuPoint* p = points.GetData();
    int n = points.GetSize();
    if (n < 3) return true;
    const CNuPoint a = p[Farthest(p, n, p[0])];
    const CNuPoint b = p[Farthest(p, n, a)];
    double ux = b.x() - a.x();
    double uy = b.y() - a.y();
    double uz = b.z() - a.z();
    double dLength = ScaledDistance(ux, uy, uz);
    if (!(dLength > 0.0) || !std::isfinite(dLength)) return true;
    ux /= dLength;
    uy /= dLength;
    uz /= dLength;
    double dScale = 0.0;
    for (int i = 0; i < n; ++i)
        dScale = std::fmax(dScale, std::fmax(std::fabs(p[i].x()),
                                             std::fmax(std::fabs(p[i].y()), std::fabs(p[i].z()))));
    const double dSlack = 5.0 * std::fmax(dTolerance, 0.0) + 0x1p-40 * dScale;
    for (int i = 0; i < n; ++i) {
        double wx = p[i].x() - a.x();
        double wy = p[i].y() - a.y();
        double wz = p[i].z() - a.z();
        double d = ScaledDistance(wy * uz - wz * uy, wz * ux - wx * uz, wx * uy - wy * ux);
        if (std::isfinite(d) && d > dSlack) return false;
    }
    return true;
}

void ExtremesAlongLine(const CNuPointArray& points, int* pnLow, int* pnHigh,
                       CNuVector* pDirection) {
    CNuLine line;
    line.Fit(points);
    *pDirection = line.GetDirection();
    double dLow = NuGetLarge();
    double dHigh = -NuGetLarge();
    *pnLow = 0;
    *pnHigh = 0;
    for (int i = 0; i < points.GetSize(); ++i) {
        double t = (points[i] - line.GetPoint()).To3DVector() % *pDirection;
        if (t < dLow) {
            dLow = t;
            *pnLow = i;
        }
        if (t > dHigh) {
            dHigh = t;
            *pnHigh = i;
        }
    }
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
