#include "numorix/geometry/geometry.h"

namespace numorix {

CNuGeometry::~CNuGeometry() = default;

}  // namespace numorix
