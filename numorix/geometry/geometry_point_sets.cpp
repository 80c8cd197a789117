// The statics of CNuGeometry that judge or flatten whole point sets.
#include <cmath>

#include "numorix/foundation/int_array.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

// Whether v reaches dTol in some component: the complement of the box test.
bool Reaches(const CNuVector& v, double dTol) {
    const double* pd = v.GetData();
    return std::fabs(pd[0]) >= dTol || std::fabs(pd[1]) >= dTol || std::fabs(pd[2]) >= dTol;
}

}  // namespace

int CNuGeometry::AreCollinear(const CNuPointArray& points, CNuVector* pNormal, double dTol) {
    int n = points.GetSize();
    if (n < 3) return 1;
    const CNuPoint* p = points.GetData();
    int k = 1;
    while (k < n && !Reaches((p[k] - p[0]).To3DVector(), dTol))
        ++k;
    if (k == n) return 1;
    CNuVector d = (p[k] - p[0]).To3DVector();
    for (int i = k + 1; i < n; ++i) {
        CNuVector v = (p[i] - p[0]).To3DVector();
        if (!Reaches(v, dTol)) continue;
        CNuVector c = d * v;
        if (!Reaches(c, dTol)) continue;
        if (c.Magnitude() > NuGetZero()) c.Normalise();
        if (pNormal != nullptr) *pNormal = c;
        return 0;
    }
    return 1;
}

int CNuGeometry::AreCoplanar(const CNuPointArray& points, double dTol) {
    CNuPlane plane;
    return AreCoplanar(points, &plane, dTol);
}

int CNuGeometry::AreCoplanar(const CNuPointArray& points, CNuPlane* pPlane, double dTol) {
    int n = points.GetSize();
    if (n < 4) return 1;
    const CNuPoint* p = points.GetData();
    CNuVector normal;
    if (AreCollinear(points, &normal, dTol) == 0) {
        CNuPlane plane(p[0], normal);
        if (pPlane != nullptr) *pPlane = plane;
        for (int i = n - 1; i >= 3; --i)
            if (p[i].DistanceTo(plane) > dTol) return 0;
        return 1;
    }
    // On one line: any plane through it would do; the one normal to the line is taken.
    CNuVector direction = (p[n - 1] - p[0]).To3DVector();
    if (!Reaches(direction, dTol)) direction = CNuVector(0.0, 0.0, 1.0);
    CNuPlane plane(p[0], direction);
    if (pPlane != nullptr) *pPlane = plane;
    return 1;
}

int CNuGeometry::NumberDistinctPoints(const CNuPointArray& points, int nRequired, double dTol) {
    int n = points.GetSize();
    if (n < nRequired) return 0;
    if (nRequired <= 1) return 1;
    const CNuPoint* p = points.GetData();
    // Indices of the distinct points so far; at most nRequired of them are ever held.
    CNuIntArray distinct(nRequired);
    distinct.Add(0);
    for (int i = 1; i < n; ++i) {
        bool bDistinct = true;
        for (int j = 0; j < distinct.GetSize() && bDistinct; ++j) {
            const CNuPoint& q = p[distinct.GetData()[j]];
            bDistinct = !(NuPythag(p[i].x() - q.x(), p[i].y() - q.y(), p[i].z() - q.z()) < dTol);
        }
        if (!bDistinct) continue;
        distinct.Add(i);
        if (distinct.GetSize() >= nRequired) return 1;
    }
    return 0;
}

CNuPointArray CNuGeometry::Projection2D(const CNuPointArray& points, const CNuVector& zAxis) {
    CNuVector z(zAxis);
    CNuVector x;
    z.OrthonormalX(&x);
    CNuVector y = z * x;
    int n = points.GetSize();
    CNuPointArray result(n);
    for (int i = 0; i < n; ++i) {
        CNuVector p = points.GetData()[i].To3DVector();
        result.Add(CNuPoint(p % x, p % y, 0.0));
    }
    return result;
}

CNuPointArray CNuGeometry::Projection2D(const CNuPointArray& points, const CNuPoint& origin,
                                        const CNuVector& xAxis, const CNuVector& yAxis) {
    int n = points.GetSize();
    CNuPointArray result(n);
    for (int i = 0; i < n; ++i) {
        CNuVector d = (points.GetData()[i] - origin).To3DVector();
        result.Add(CNuPoint(d % xAxis, d % yAxis, 0.0));
    }
    return result;
}

}  // namespace numorix
