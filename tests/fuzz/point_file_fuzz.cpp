// Fuzz target: the point-file reader of numorix-fit on arbitrary bytes.
//
// Whatever the input: the reader either refuses the text with its own error, naming the file, or
// returns at least one point, every coordinate finite; the points it returns, written out again
// with 17 digits, read back as exactly the same points.
#include <cstdio>
#include <sstream>
#include <string>

#include "fuzz_support.h"
#include "point_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(pData), nSize));
    fuzz::CNuPointArray points;
    try {
        points = numorix_fit::ReadPoints(in, "input.txt");
    } catch (const numorix_fit::PointFileError& e) {
        NUMORIX_FUZZ_CHECK(std::string(e.what()).rfind("input.txt:", 0) == 0);
        return 0;
    }
    NUMORIX_FUZZ_CHECK(points.GetSize() > 0 && fuzz::FirstNonFinite(points) < 0);
    std::string sWritten;
    for (int i = 0; i < points.GetSize(); ++i) {
        char sz[128];
        std::snprintf(sz, sizeof sz, "%.17g %.17g %.17g\n", points[i].x(), points[i].y(), points[i].z());
        sWritten += sz;
    }
    std::istringstream again(sWritten);
    const fuzz::CNuPointArray reread = numorix_fit::ReadPoints(again, "written.txt");
    NUMORIX_FUZZ_CHECK(reread.GetSize() == points.GetSize());
    for (int i = 0; i < points.GetSize(); ++i)
        NUMORIX_FUZZ_CHECK(points[i].x() == reread[i].x() && points[i].y() == reread[i].y() &&
                           points[i].z() == reread[i].z());
    return 0;
}
