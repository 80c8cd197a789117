// Helpers shared by the geometry tests: random points and vectors, point comparison with the
// error printed, and test elements that expose what only derived classes may touch.
#ifndef NUMORIX_TESTS_GEOMETRY_GEOMETRY_TEST_SUPPORT_H
#define NUMORIX_TESTS_GEOMETRY_GEOMETRY_TEST_SUPPORT_H

#include <cmath>
#include <string>

#include "nu_test.h"
#include "numorix/curves/curve.h"
#include "numorix/geometry/non_linear_geometry.h"
#include "numorix/surfaces/surface.h"
#include "numorix/geometry/point.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace test {

// Geometric results of a few dozen operations on data of order 1: products, rotations, feet.
constexpr double kGeometry = 1e-12;

inline CNuPoint RandomPoint(Random& rng, double dRange = 5.0) {
    return CNuPoint(rng.Uniform(-dRange, dRange), rng.Uniform(-dRange, dRange),
                    rng.Uniform(-dRange, dRange));
}

inline CNuVector RandomDirection(Random& rng) {
    for (;;) {
        CNuVector v(rng.Uniform(-1.0, 1.0), rng.Uniform(-1.0, 1.0), rng.Uniform(-1.0, 1.0));
        if (v.Magnitude() > 0.1) return v;
    }
}

inline double Gap(const CNuPoint& a, const CNuPoint& b) {
    return std::sqrt((a.x() - b.x()) * (a.x() - b.x()) + (a.y() - b.y()) * (a.y() - b.y()) +
                     (a.z() - b.z()) * (a.z() - b.z()));
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

// A curve or surface of a chosen type tag, for the dispatch of the point's measures.
class TaggedCurve : public CNuCurve {
  public:
    explicit TaggedCurve(CNuObject::ENuObjectType eType) { m_eObjectType = eType; }
};

class TaggedSurface : public CNuSurface {
  public:
    explicit TaggedSurface(CNuObject::ENuObjectType eType) { m_eObjectType = eType; }
};

// A positioned element whose frame the tests can set and read.
class Element : public CNuNonLinearGeometry {
  public:
    using CNuNonLinearGeometry::GetPosition;
    using CNuNonLinearGeometry::SetPosition;
};

}  // namespace test
}  // namespace numorix

#endif  // NUMORIX_TESTS_GEOMETRY_GEOMETRY_TEST_SUPPORT_H
