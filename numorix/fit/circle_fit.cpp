#include "numorix/curves/circle.h"
