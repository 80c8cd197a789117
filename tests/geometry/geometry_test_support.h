// A test element of the geometry suite that exposes what only derived classes may touch; the
// geometric helpers come from the shared support.
#ifndef NUMORIX_TESTS_GEOMETRY_GEOMETRY_TEST_SUPPORT_H
#define NUMORIX_TESTS_GEOMETRY_GEOMETRY_TEST_SUPPORT_H

#include "geometry_support.h"
#include "numorix/geometry/non_linear_geometry.h"

namespace numorix {
namespace test {

// A positioned element whose frame the tests can set and read.
class Element : public CNuNonLinearGeometry {
  public:
    using CNuNonLinearGeometry::GetPosition;
    using CNuNonLinearGeometry::SetPosition;
};

}  // namespace test
}  // namespace numorix

#endif  // NUMORIX_TESTS_GEOMETRY_GEOMETRY_TEST_SUPPORT_H
