#include "point_file.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <vector>

#include <numorix/geometry/point.h>

namespace numorix_fit {

numorix::CNuPointArray ReadPoints(std::istream& in, const std::string& sName) {
    numorix::CNuPointArray points;
    std::string sLine;
    int nLine = 0;
    while (std::getline(in, sLine)) {
        ++nLine;
        std::string::size_type nHash = sLine.find('#');
        if (nHash != std::string::npos) sLine.erase(nHash);
        for (char& c : sLine) {
            if (c == ',' || c == '\t' || c == '\r') c = ' ';
        }
        std::vector<double> values;
        const char* p = sLine.c_str();
        while (*p != '\0') {
            while (*p == ' ')
                ++p;
            if (*p == '\0') break;
            char* pEnd = nullptr;
            double d = std::strtod(p, &pEnd);
            if (pEnd == p || (*pEnd != ' ' && *pEnd != '\0') || !std::isfinite(d)) {
                const char* pWord = p;
                while (*p != ' ' && *p != '\0')
                    ++p;
                throw PointFileError(sName + ":" + std::to_string(nLine) + ": not a number: '" +
                                     std::string(pWord, p) + "'");
            }
            values.push_back(d);
            p = pEnd;
        }
        if (values.empty()) continue;
        if (values.size() != 2 && values.size() != 3) {
            throw PointFileError(sName + ":" + std::to_string(nLine) +
                                 ": expected 2 or 3 coordinates, found " +
                                 std::to_string(values.size()));
        }
        points.Add(numorix::CNuPoint(values[0], values[1], values.size() == 3 ? values[2] : 0.0));
    }
    if (points.GetSize() == 0) throw PointFileError(sName + ": no points");
    return points;
}

numorix::CNuPointArray ReadPointFile(const std::string& sFile) {
    std::ifstream in(sFile);
    if (!in) throw PointFileError(sFile + ": cannot open file");
    return ReadPoints(in, sFile);
}

}  // namespace numorix_fit
