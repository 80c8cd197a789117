// Test elements of the geometry suite that expose what only derived classes may touch; the
// geometric helpers come from the shared support.
#ifndef NUMORIX_TESTS_GEOMETRY_GEOMETRY_TEST_SUPPORT_H
#define NUMORIX_TESTS_GEOMETRY_GEOMETRY_TEST_SUPPORT_H

#include "geometry_support.h"
#include "numorix/curves/curve.h"
#include "numorix/geometry/non_linear_geometry.h"

namespace numorix {
namespace test {

// A curve of a chosen type tag, for the dispatch of the point's measures.
class TaggedCurve : public CNuCurve {
  public:
    explicit TaggedCurve(CNuObject::ENuObjectType eType) { m_eObjectType = eType; }
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
