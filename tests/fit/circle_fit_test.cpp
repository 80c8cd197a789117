#include "nu_test.h"
