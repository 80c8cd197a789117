// Planar convex hull of a point array: division by the farthest point from a chord (the method
// of W. F. Eddy, "A new convex hull algorithm for planar sets", ACM TOMS 3, 1977), run without
// recursion, followed by an ordering of the vertices by their angle around the vertices' centroid.
//
// A subset lying outside a chord A -> B gives up its farthest point P as a new vertex between A
// and B; what lies outside A -> P and outside P -> B forms the two new subsets, and everything
// else lies in the triangle A P B and is dropped. Points exactly on a chord are dropped, so they
// never become vertices. "Outside" is above the chord for the upper hull and below it for the
// lower hull, measured by z = y - a x - b (or by a signed x offset for a vertical chord).
#include <algorithm>
#include <cmath>
#include <vector>

#include "numorix/foundation/double_array.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"

namespace numorix {

namespace {

// The result of one partition: how many points went to each side, and the position (in its
// side's list) of the farthest point of each, -1 for an empty side.
struct SSplit {
    int nUpper = 0;
    int nLower = 0;
    int nFarUpper = -1;
    int nFarLower = -1;
};

// Partitions the nCount indices of pnIn by the chord from point i1 to point i2. Code s: 0 for the
// first split, 1 and 2 on the upper hull, -1 and -2 on the lower; 2 keeps no lower list and -2 no
// upper list. The farthest point on each side is taken with "at least as far", so the last of
// equal candidates wins. pnUpper may be pnIn itself: a list is only ever written behind its
// reading position.
SSplit Split(const double* pdX, const double* pdY, const int* pnIn, int nCount, int i1, int i2,
             int s, int* pnUpper, int* pnLower) {
    SSplit r;
    double x1 = pdX[i1];
    double y1 = pdY[i1];
    double dUp = 0.0;
    double dDown = 0.0;
    bool bVertical = pdX[i2] == x1;
    double a = 0.0;
    double b = 0.0;
    double dDirection = 1.0;
    if (bVertical) {
        // The side that counts as above: the sign of s times the sign of y2 - y1 (+1 for 0).
        double dSignS = s < 0 ? -1.0 : 1.0;
        double dSignY = pdY[i2] - y1 < 0.0 ? -1.0 : 1.0;
        dDirection = dSignS * dSignY;
    } else {
        a = (pdY[i2] - y1) / (pdX[i2] - x1);
        b = y1 - a * x1;
    }
    for (int k = 0; k < nCount; ++k) {
        int j = pnIn[k];
        double z = bVertical ? (pdX[j] - x1) * dDirection : pdY[j] - a * pdX[j] - b;
        if (z > 0.0) {
            if (s == -2) continue;
            pnUpper[r.nUpper] = j;
            if (z >= dUp) {
                dUp = z;
                r.nFarUpper = r.nUpper;
            }
            ++r.nUpper;
        } else if (z < 0.0 && s != 2) {
            pnLower[r.nLower] = j;
            if (z <= dDown) {
                dDown = z;
                r.nFarLower = r.nLower;
            }
            ++r.nLower;
        }
    }
    return r;
}

// A subset waiting to be divided: its points are pnWork[nStart .. nStart + nCount), the farthest
// at nStart + nFar, outside the chord from vertex slot nA to vertex slot nB.
struct STask {
    int nStart;
    int nCount;
    int nFar;
    int nA;
    int nB;
};

// Finds the hull vertices of the n points pdX, pdY listed in pnIn (which it reorders), and writes
// them to pnVertex in hull order (starting at the rightmost point, counterclockwise). pnWork and
// pnSide are work lists of n entries. Returns the number of vertices.
int FindVertices(const double* pdX, const double* pdY, int n, int* pnIn, int* pnWork, int* pnSide,
                 int* pnVertex) {
    if (n == 1) {
        pnVertex[0] = pnIn[0];
        return 1;
    }
    if (n == 2) {
        int kn = pnIn[0];
        int kx = pnIn[1];
        pnVertex[0] = kx;
        pnVertex[1] = kn;
        return (pdX[kn] == pdX[kx] && pdY[kn] == pdY[kx]) ? 1 : 2;
    }

    // The extremes in x, in the order of the list, remembering ties with the final extremes.
    int kx = pnIn[0];
    int kn = pnIn[0];
    int mx = 0;
    int mn = 0;
    bool bMaxTie = false;
    bool bMinTie = false;
    for (int i = 1; i < n; ++i) {
        int j = pnIn[i];
        if (pdX[j] > pdX[kx]) {
            bMaxTie = false;
            mx = i;
            kx = j;
        } else if (pdX[j] == pdX[kx]) {
            bMaxTie = true;
        }
        if (pdX[j] < pdX[kn]) {
            bMinTie = false;
            mn = i;
            kn = j;
        } else if (pdX[j] == pdX[kn]) {
            bMinTie = true;
        }
    }

    if (kx == kn) {
        // All points on one vertical line: its two ends, or one point.
        kx = pnIn[0];
        kn = pnIn[0];
        for (int i = 0; i < n; ++i) {
            int j = pnIn[i];
            if (pdY[j] > pdY[kx]) kx = j;
            if (pdY[j] < pdY[kn]) kn = j;
        }
        if (kx == kn) {
            pnVertex[0] = pnIn[0];
            return 1;
        }
        pnVertex[0] = kx;
        pnVertex[1] = kn;
        return 2;
    }

    // Ties: the highest of the rightmost points and the lowest of the leftmost.
    if (bMaxTie) {
        for (int i = 0; i < n; ++i) {
            int j = pnIn[i];
            if (pdX[j] != pdX[kx] || pdY[j] <= pdY[kx]) continue;
            mx = i;
            kx = j;
        }
    }
    if (bMinTie) {
        for (int i = 0; i < n; ++i) {
            int j = pnIn[i];
            if (pdX[j] != pdX[kn] || pdY[j] >= pdY[kn]) continue;
            mn = i;
            kn = j;
        }
    }

    // The two extremes go to the end of the list; the rest is split by the chord between them.
    pnIn[mx] = pnIn[n - 1];
    pnIn[n - 1] = kx;
    if (mn == n - 1) mn = mx;
    pnIn[mn] = pnIn[n - 2];
    pnIn[n - 2] = kn;

    // The vertices form a ring through pnNext, in hull order; slot 0 is the rightmost point.
    std::vector<int> next(2);
    int nVertices = 2;
    pnVertex[0] = kx;
    pnVertex[1] = kn;
    next[0] = 1;
    next[1] = 0;

    SSplit root = Split(pdX, pdY, pnIn, n - 2, kx, kn, 0, pnWork, pnSide);
    std::copy(pnSide, pnSide + root.nLower, pnWork + root.nUpper);

    // Depth first, the upper hull before the lower hull, each subset before its right neighbour.
    struct SPending {
        STask task;
        int nSide;  // +1 upper hull, -1 lower hull
    };
    std::vector<SPending> stack;
    stack.push_back({{root.nUpper, root.nLower, root.nFarLower, 1, 0}, -1});
    stack.push_back({{0, root.nUpper, root.nFarUpper, 0, 1}, 1});
    while (!stack.empty()) {
        SPending pending = stack.back();
        stack.pop_back();
        const STask& t = pending.task;
        if (t.nFar < 0) continue;
        int* pnSet = pnWork + t.nStart;
        int p = pnSet[t.nFar];
        int nP = nVertices++;
        pnVertex[nP] = p;
        next.push_back(next[t.nA]);
        next[t.nA] = nP;
        int nCount = t.nCount - 1;
        pnSet[t.nFar] = pnSet[nCount];
        if (nCount == 0) continue;

        int a = pnVertex[t.nA];
        int b = pnVertex[t.nB];
        SSplit outerAP;
        SSplit outerPB;
        int nOuter;
        int nFarOuter;
        int nRight;
        int nFarRight;
        if (pending.nSide > 0) {
            outerAP = Split(pdX, pdY, pnSet, nCount, a, p, 1, pnSet, pnSide);
            nOuter = outerAP.nUpper;
            nFarOuter = outerAP.nFarUpper;
            outerPB = Split(pdX, pdY, pnSide, outerAP.nLower, p, b, 2, pnSet + nOuter, nullptr);
            nRight = outerPB.nUpper;
            nFarRight = outerPB.nFarUpper;
        } else {
            outerAP = Split(pdX, pdY, pnSet, nCount, a, p, -1, pnSide, pnSet);
            nOuter = outerAP.nLower;
            nFarOuter = outerAP.nFarLower;
            outerPB = Split(pdX, pdY, pnSide, outerAP.nUpper, p, b, -2, nullptr, pnSet + nOuter);
            nRight = outerPB.nLower;
            nFarRight = outerPB.nFarLower;
        }
        stack.push_back({{t.nStart + nOuter, nRight, nFarRight, nP, t.nB}, pending.nSide});
        stack.push_back({{t.nStart, nOuter, nFarOuter, t.nA, nP}, pending.nSide});
    }

    // Unroll the ring into hull order.
    std::vector<int> order(static_cast<std::size_t>(nVertices));
    for (int i = 0, k = 0; i < nVertices; ++i, k = next[k])
        order[i] = pnVertex[k];
    std::copy(order.begin(), order.end(), pnVertex);
    return nVertices;
}

}  // namespace

void CNuPointArray::ConvexHull(CNuIntArray* pHull) const {
    if (Is2D(NuGetLengthTol()) == eNuFalse) {
        throw CNuOperationException(45, "calculation of 3D convex hull", "CNuPointArray");
    }
    CNuDoubleArray xs = GetDataX();
    CNuDoubleArray ys = GetDataY();
    int n = m_nSize;
    CNuIntArray in(n);
    CNuIntArray ia(n);
    CNuIntArray ib(n);
    CNuIntArray ih(n);
    CNuIntArray il(n);
    for (int k = 0; k < n; ++k)
        in.Add(n - 1 - k);

    int h = 0;
    if (n > 0) {
        h = FindVertices(xs.GetData(), ys.GetData(), n, in.GetData(), ia.GetData(), ib.GetData(),
                         ih.GetData());
    }
    const int* pnVertex = ih.GetData();
    if (h < 3) {
        for (int i = 0; i < h; ++i)
            il.Add(pnVertex[i]);
    } else {
        // Angles around the centroid of the vertices, from the positive x direction.
        const double* pdX = xs.GetData();
        const double* pdY = ys.GetData();
        double dCx = 0.0;
        double dCy = 0.0;
        for (int i = 0; i < h; ++i) {
            dCx += pdX[pnVertex[i]];
            dCy += pdY[pnVertex[i]];
        }
        dCx /= h;
        dCy /= h;
        CNuVector xAxis(1.0, 0.0, 0.0);
        CNuVector zAxis(0.0, 0.0, 1.0);
        std::vector<double> angles(static_cast<std::size_t>(h));
        bool bOrdered = true;
        for (int i = 0; i < h; ++i) {
            CNuVector v(pdX[pnVertex[i]] - dCx, pdY[pnVertex[i]] - dCy, 0.0);
            angles[i] = xAxis.AngleWith(v, zAxis);
            bOrdered = bOrdered && !std::isnan(angles[i]);
        }
        // A stable sort orders exactly as the insertion sort of NuSort does, without its
        // quadratic cost on a hull that starts far into its turn; unordered (NaN) angles go
        // through NuSort itself.
        std::vector<int> rank(static_cast<std::size_t>(h));
        if (bOrdered) {
            for (int i = 0; i < h; ++i)
                rank[i] = i;
            std::stable_sort(rank.begin(), rank.end(),
                             [&angles](int i, int j) { return angles[i] < angles[j]; });
        } else {
            NuSort(h, angles.data(), rank.data());
        }
        for (int i = 0; i < h; ++i)
            il.Add(pnVertex[rank[i]]);
    }
    if (pHull != nullptr) *pHull = il;
}

}  // namespace numorix
