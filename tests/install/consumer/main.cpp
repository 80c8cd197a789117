// A program outside the source tree that uses the installed library.
#include <numorix/numorix.h>
#include <cstdio>

int main() {
    numorix::CNuDoubleArray values;
    values.Add(3.0);
    values.Add(4.0);
    double length = numorix::NuPythag(values[0], values[1]);
    std::printf("Numorix %u.%u.%u: |(3, 4)| = %g\n", numorix::NuMajorVersionLabel,
                numorix::NuMinorVersionLabel, numorix::NuBuildVersionLabel, length);
    return length == 5.0 ? 0 : 1;
}
