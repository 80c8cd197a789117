// Umbrella header: everything the library offers.
#ifndef NUMORIX_NUMORIX_H
#define NUMORIX_NUMORIX_H

#include "numorix/complex/complex.h"
#include "numorix/complex/complex_array.h"
#include "numorix/curves/curve.h"
#include "numorix/equations/alg_equ.h"
#include "numorix/equations/interval.h"
#include "numorix/equations/polynomial.h"
#include "numorix/foundation/double_array.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/obj_array.h"
#include "numorix/foundation/object.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/cartesian_coord.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/non_linear_geometry.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/linear_equ_sys.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"
#include "numorix/surfaces/surface.h"

#endif  // NUMORIX_NUMORIX_H
