#include "numorix/curves/curve.h"

namespace numorix {

CNuCurve::~CNuCurve() = default;

}  // namespace numorix
