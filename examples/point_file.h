// The point files of numorix-fit: one point per line, "x y z" or "x,y,z"; two columns mean
// z = 0. Text after '#' is a comment and blank lines are skipped. A malformed file is refused
// with its name and line number.
#ifndef NUMORIX_EXAMPLES_POINT_FILE_H
#define NUMORIX_EXAMPLES_POINT_FILE_H

#include <istream>
#include <stdexcept>
#include <string>

#include <numorix/geometry/point_array.h>

namespace numorix_fit {

// What is wrong with a point file: "NAME: no points", "NAME:LINE: not a number: 'WORD'", ...
class PointFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Reads the points of the text in, which is named sName in messages.
numorix::CNuPointArray ReadPoints(std::istream& in, const std::string& sName);

// Opens sFile and reads its points.
numorix::CNuPointArray ReadPointFile(const std::string& sFile);

}  // namespace numorix_fit

#endif  // NUMORIX_EXAMPLES_POINT_FILE_H
