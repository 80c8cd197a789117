// Geometric helpers shared by the geometry, curve and fit tests: random points, directions and
// right-handed frames built independently of the library, and point comparison with the error
// printed.
#ifndef NUMORIX_TESTS_SUPPORT_GEOMETRY_SUPPORT_H
#define NUMORIX_TESTS_SUPPORT_GEOMETRY_SUPPORT_H

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "nu_test.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace test {

// Geometric results of a few dozen operations on data of order 1: products, rotations, feet.
constexpr double kGeometry = 1e-12;
// Intersections and conversions of data of order 1 in rotated frames: a few dozen operations,
// the quadratic roots polished by the solver.
constexpr double kCurve = 1e-10;

// A point array from its points.
inline CNuPointArray Points(const std::vector<CNuPoint>& v) {
    CNuPointArray points(static_cast<int>(v.size()));
    for (const CNuPoint& p : v)
        points.Add(p);
    return points;
}

inline CNuPoint RandomPoint(Random& rng, double dRange = 5.0) {
    return CNuPoint(rng.Uniform(-dRange, dRange), rng.Uniform(-dRange, dRange),
                    rng.Uniform(-dRange, dRange));
}

inline CNuPointArray RandomPoints(Random& rng, int n) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i)
        points.Add(RandomPoint(rng));
    return points;
}

// The x coordinates of the points in use, to compare whole arrays at once.
inline std::vector<double> Xs(const CNuPointArray& points) {
    std::vector<double> x;
    for (int i = 0; i < points.GetSize(); ++i)
        x.push_back(points[i].x());
    return x;
}

inline CNuVector RandomDirection(Random& rng) {
    for (;;) {
        CNuVector v(rng.Uniform(-1.0, 1.0), rng.Uniform(-1.0, 1.0), rng.Uniform(-1.0, 1.0));
        if (v.Magnitude() > 0.1) return v;
    }
}

inline double Gap(const CNuPoint& a, const CNuPoint& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y(), a.z() - b.z());
}

inline std::string Text(const CNuPoint& p) {
    return "(" + std::to_string(p.x()) + ", " + std::to_string(p.y()) + ", " +
           std::to_string(p.z()) + ")";
}

// Two points within dTol of each other; a failure prints both and their distance.
inline ::testing::AssertionResult PointsNear(const CNuPoint& a, const CNuPoint& b, double dTol) {
    double dGap = Gap(a, b);
    if (dGap <= dTol) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "points " << Text(a) << " and " << Text(b) << " are " << dGap << " apart";
}

// Two found points are the two expected ones, in either order; a failure prints all four and
// their gaps.
inline ::testing::AssertionResult PairNear(const CNuPoint& a, const CNuPoint& b, const CNuPoint& p,
                                           const CNuPoint& q, double dTol) {
    if ((Gap(a, p) <= dTol && Gap(b, q) <= dTol) || (Gap(a, q) <= dTol && Gap(b, p) <= dTol)) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "found " << Text(a) << ", " << Text(b) << "; expected " << Text(p) << ", " << Text(q)
           << "; gaps " << Gap(a, p) << ", " << Gap(b, q) << " or crossed " << Gap(a, q) << ", "
           << Gap(b, p) << ", tolerance " << dTol;
}

// A right-handed orthonormal frame built here from a random normal, independent of the library's
// own completion of an axis.
struct Frame {
    CNuPoint origin;
    CNuVector x, y, z;

    CNuPoint World(double lx, double ly, double lz = 0.0) const {
        return origin + (x * lx + y * ly + z * lz).To3DPoint();
    }
    // Local coordinates of a world point.
    CNuPoint Local(const CNuPoint& p) const {
        CNuVector d(p.x() - origin.x(), p.y() - origin.y(), p.z() - origin.z());
        return CNuPoint(d % x, d % y, d % z);
    }
};

inline Frame RandomFrame(Random& rng) {
    Frame f;
    f.origin = RandomPoint(rng);
    f.z = RandomDirection(rng);
    f.z.Normalise();
    do {
        f.x = f.z * RandomDirection(rng);
    } while (f.x.Magnitude() < 0.1);
    f.x.Normalise();
    f.y = f.z * f.x;
    return f;
}

// The world frame carried by a rotation about the origin (degrees, about an axis through the
// origin) followed by a translation: the frame of an element built at the origin and then moved.
inline Frame MovedFrame(double dAngle, const CNuVector& axis, const CNuPoint& shift) {
    auto carry = [&](CNuPoint p) {
        p.Rotate(dAngle, axis);
        return p.To3DVector();
    };
    return {shift, carry(CNuPoint(1, 0, 0)), carry(CNuPoint(0, 1, 0)), carry(CNuPoint(0, 0, 1))};
}

// Every point lies in the frame's XY plane on the curve whose implicit equation f(x, y) = 0 is
// given in the frame's coordinates; a failure names the point and its local coordinates.
inline void ExpectOnCurve(const CNuPointArray& points, const Frame& f,
                          const std::function<double(double, double)>& implicit) {
    for (int i = 0; i < points.GetSize(); ++i) {
        CNuPoint l = f.Local(points[i]);
        EXPECT_NEAR(l.z(), 0.0, kCurve) << "point " << i;
        EXPECT_NEAR(implicit(l.x(), l.y()), 0.0, kCurve) << "point " << i << Text(l);
    }
}

}  // namespace test
}  // namespace numorix

#endif  // NUMORIX_TESTS_SUPPORT_GEOMETRY_SUPPORT_H
