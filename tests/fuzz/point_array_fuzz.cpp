// Fuzz target: the point-array operations that take a caller's data: the planar convex hull,
// duplicate removal, bounding box and sphere, longest and shortest edge, the degeneracy tests and
// the editing operations, with tolerances and indices from the input.
//
// Whatever the input: a refusal is one of the library's exceptions; indices that come back lie in
// range. On finite data of representable size, up to rounding: every point lies inside the hull
// (its vertices distinct), within the bounding box and sphere, and no farther from another point
// than the longest edge nor nearer than the shortest; no two survivors of duplicate removal are
// equal; editing leaves the size it promises.
#include "fuzz_support.h"

#include <vector>

using numorix::CNuIntArray;
using numorix::CNuPoint;
using fuzz::Real;

namespace {

Real Distance(const CNuPoint& p, const CNuPoint& q) {
    const Real d[3] = {Real(p.x()) - q.x(), Real(p.y()) - q.y(), Real(p.z()) - q.z()};
    return std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
}

void CheckIndices(const CNuIntArray& indices, int n) {
    for (int k = 0; k < indices.GetSize(); ++k) NUMORIX_FUZZ_CHECK(indices[k] >= 0 && indices[k] < n);
}

// Every point on the inner side of every hull edge of real length (the direction of an edge
// between points equal up to rounding is noise), the sense taken from the hull's area.
void CheckHull(const fuzz::CNuPointArray& points, const CNuIntArray& hull, Real dSlack) {
    const int h = hull.GetSize();
    Real dArea = 0.0L;
    for (int k = 0; k < h; ++k) {
        const CNuPoint &a = points[hull[k]], &b = points[hull[(k + 1) % h]];
        dArea += Real(a.x()) * b.y() - Real(a.y()) * b.x();
    }
    // A sliver's vertices lie at nearly one angle from its centroid, and their order by that
    // angle is rounding: nothing to judge.
    const Real dSize = fuzz::Magnitude(points);
    if (std::fabs(dArea) <= 1e-6L * dSize * dSize) return;
    for (int k = 0; k < h; ++k) {
        const CNuPoint &a = points[hull[k]], &b = points[hull[(k + 1) % h]];
        const Real ex = Real(b.x()) - a.x(), ey = Real(b.y()) - a.y(), dLength = std::hypot(ex, ey);
        if (!(dLength > 1e-6L * fuzz::Magnitude(points))) continue;
        for (int i = 0; i < points.GetSize(); ++i) {
            const Real d = (ex * (points[i].y() - Real(a.y())) - ey * (points[i].x() - Real(a.x()))) / dLength;
            NUMORIX_FUZZ_CHECK((dArea > 0 ? d : -d) >= -dSlack);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    FuzzedDataProvider fdp(pData, nSize);
    fuzz::CNuPointArray points = fuzz::Points(fdp);
    const int n = points.GetSize();
    const double dTol = fuzz::Tolerance(fdp);
    const bool bCheck = fuzz::FirstNonFinite(points) < 0 && fuzz::Representable(points);
    // Distances below NuGetZero() (1e-300) read as 0 by the library's rule.
    const Real dSlack = 1e-9L * fuzz::Magnitude(points) + 1e-290L;
    fuzz::CNuPointArray edited(points);
    CNuIntArray indices;
    CNuPoint low, high, centre;
    double d = -1.0;
    int i = -1, j = -1;
    switch (fdp.ConsumeIntegralInRange<int>(0, 7)) {
        case 0: {
            for (int k = 0; k < n && fdp.ConsumeBool(); ++k) points[k] = CNuPoint(points[k].x(), points[k].y(), 0.0);
            if (!fuzz::Attempt([&] { points.ConvexHull(&indices); })) break;
            CheckIndices(indices, n);
            std::vector<bool> seen(n, false);
            for (int k = 0; k < indices.GetSize(); ++k) {
                NUMORIX_FUZZ_CHECK(!seen[indices[k]]);
                seen[indices[k]] = true;
            }
            // Vertices at one angle from the centroid keep the order they were found in, so
            // beside a point far from the others the polygon need not be convex; and a chord
            // whose ends differ in x by a denormal has a slope of infinity, which puts every
            // point on neither side (both by the rules of the hull).
            bool bTiny = false;
            for (int k = 0; k < n; ++k)
                for (double c : {points[k].x(), points[k].y()}) bTiny = bTiny || (c != 0.0 && std::fabs(c) < 1e-280);
            if (bCheck && !bTiny && fuzz::Magnitude(points) < 1e12) CheckHull(points, indices, dSlack);
            break;
        }
        case 1:
            if (!fuzz::Attempt([&] { edited.RemoveDuplicate(dTol); }) || !bCheck || !(dTol > 0.0)) break;
            for (int p = 0; p < edited.GetSize(); ++p)
                for (int q = p + 1; q < edited.GetSize(); ++q)
                    NUMORIX_FUZZ_CHECK(edited[p].IsEqual(edited[q], dTol) != numorix::eNuTrue);
            break;
        case 2:
            if (fuzz::Attempt([&] { edited.RemoveAdjacentDuplicate(dTol); })) NUMORIX_FUZZ_CHECK(edited.GetSize() <= n);
            break;
        case 3:
            if (!fuzz::Attempt([&] { points.BoundingBox(&low, &high), points.BoundingSphere(&d, &centre); }) || !bCheck) break;
            NUMORIX_FUZZ_CHECK(d >= 0.0);
            for (int k = 0; k < n; ++k) {
                NUMORIX_FUZZ_CHECK(low.x() <= points[k].x() && low.y() <= points[k].y() && low.z() <= points[k].z());
                NUMORIX_FUZZ_CHECK(points[k].x() <= high.x() && points[k].y() <= high.y() && points[k].z() <= high.z());
                NUMORIX_FUZZ_CHECK(Distance(points[k], centre) <= d + dSlack);
            }
            break;
        case 4: {
            const bool bLongest = fdp.ConsumeBool();
            if (!fuzz::Attempt([&] { d = bLongest ? points.MaxEdge(&i, &j) : points.MinEdge(&i, &j); }) ||
                !bCheck || n < 2)
                break;
            NUMORIX_FUZZ_CHECK(i >= 0 && i < n && j >= 0 && j < n);
            for (int p = 0; p < n; ++p)
                for (int q = p + 1; q < n; ++q)
                    NUMORIX_FUZZ_CHECK(bLongest ? Distance(points[p], points[q]) <= d + dSlack
                                                : Distance(points[p], points[q]) >= d - dSlack);
            break;
        }
        case 5:
            if (fuzz::Attempt([&] { points.IsNoncollinear(&indices, dTol); })) CheckIndices(indices, n);
            indices.Clear();
            if (fuzz::Attempt([&] { points.IsNoncoplanar(&indices, dTol); })) CheckIndices(indices, n);
            fuzz::Attempt([&] { points.Is2D(dTol); });
            break;
        case 6: {
            const CNuPoint origin(fuzz::Number(fdp), fuzz::Number(fdp), fuzz::Number(fdp));
            const numorix::CNuVector axis(fuzz::Number(fdp), fuzz::Number(fdp), fuzz::Number(fdp));
            if (fuzz::Attempt([&] { low = points.MeanPoint(); }) && bCheck && n > 0) NUMORIX_FUZZ_CHECK(fuzz::IsFinite(low));
            fuzz::Attempt([&] { edited.MoveTo(origin, axis); });
            NUMORIX_FUZZ_CHECK(edited.GetSize() == n);
            break;
        }
        default: {
            i = fdp.ConsumeIntegralInRange<int>(-2, 70), j = fdp.ConsumeIntegralInRange<int>(-2, 70);
            const int nEdit = fdp.ConsumeIntegralInRange<int>(0, 3);
            if (nEdit == 0 && fuzz::Attempt([&] { edited = points.SubArray(i, j); }))
                NUMORIX_FUZZ_CHECK(i >= 0 && j < n && edited.GetSize() == j - i + 1);
            if (nEdit == 1 && fuzz::Attempt([&] { edited.Remove(i); }))
                NUMORIX_FUZZ_CHECK(i >= 0 && i < n && edited.GetSize() == n - 1);
            if (nEdit == 2 && fuzz::Attempt([&] { edited.Insert(edited[0], i); }))
                NUMORIX_FUZZ_CHECK(i >= 0 && i < n && edited.GetSize() == n + 1);
            if (nEdit == 3 && fuzz::Attempt([&] { edited.Truncate(i); }))
                NUMORIX_FUZZ_CHECK(i >= 0 && edited.GetSize() == std::min(i, n));
            break;
        }
    }
    return 0;
}
