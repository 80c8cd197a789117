// CNuLinearEquSys: solves A x = b exactly (LU), in the least-squares sense (SVD) or in the
// non-negative least-squares sense (Lawson-Hanson).
#ifndef NUMORIX_LINALG_LINEAR_EQU_SYS_H
#define NUMORIX_LINALG_LINEAR_EQU_SYS_H

#include "numorix/linalg/matrix.h"

#endif  // NUMORIX_LINALG_LINEAR_EQU_SYS_H
