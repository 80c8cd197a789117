#include "numorix/linalg/linear_equ_sys.h"
