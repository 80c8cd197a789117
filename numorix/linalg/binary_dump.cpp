#include "numorix/linalg/matrix.h"
