#include "numorix/surfaces/surface.h"

namespace numorix {

CNuSurface::~CNuSurface() = default;

}  // namespace numorix
