#include "numorix/foundation/object.h"

namespace numorix {

// Out of line so that the virtual table has one home.
CNuObject::~CNuObject() = default;

}  // namespace numorix
