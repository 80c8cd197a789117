// Circle fit benchmarks.
#include "peer_report.h"
