// numorix-fit: fits a geometric element to measured points by every criterion the library has
// for it, and prints the results as a table or as JSON.
//
//   numorix-fit --element line|plane|circle|cylinder|sphere|cone [--json] [--tolerance T]
//               [--max-iterations N] FILE
//
// The point file holds one point per line, "x y z" or "x,y,z"; two columns mean z = 0. Text after
// '#' is a comment and blank lines are skipped. A malformed file is reported with its name and
// line number and ends the program with status 2; a fit that fails prints the library's message
// and the other criteria still run.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <numorix/numorix.h>

#include "point_file.h"

namespace {

using numorix::CNuPoint;
using numorix::CNuPointArray;

struct Options {
    std::string sElement;
    std::string sFile;
    bool bJson = false;
    double dTolerance = 1e-9;
    long lMaxIterations = 1000;
};

// What one criterion gave.
struct Result {
    std::string sCriterion;
    std::string sStatus = "ok";  // ok, not converged, failed
    std::string sMessage;
    std::optional<CNuPoint> location;   // a point of a line or plane, a centre
    std::optional<CNuPoint> direction;  // direction of a line, normal of a plane or circle
    std::optional<double> dRadius;
    std::optional<double> dSemiAngle;  // of a cone, degrees
    std::optional<double> dForm;
    std::optional<double> dSumSquares;
    std::optional<double> dZone;
    double dMilliseconds = 0.0;
};

[[noreturn]] void Fail(const std::string& sText) {
    std::fprintf(stderr, "numorix-fit: %s\n", sText.c_str());
    std::exit(2);
}

void Usage() {
    std::fprintf(
        stderr,
        "usage: numorix-fit --element line|plane|circle|cylinder|sphere|cone [--json] "
        "[--tolerance T] [--max-iterations N] FILE\n");
    std::exit(2);
}

Options ParseArguments(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        std::string sArg = argv[i];
        auto next = [&]() -> std::string {
            if (i + 1 >= argc) Usage();
            return argv[++i];
        };
        if (sArg == "--element") {
            options.sElement = next();
        } else if (sArg == "--json") {
            options.bJson = true;
        } else if (sArg == "--tolerance") {
            std::string s = next();
            char* pEnd = nullptr;
            options.dTolerance = std::strtod(s.c_str(), &pEnd);
            if (*pEnd != '\0' || !(options.dTolerance > 0.0)) Fail("bad tolerance '" + s + "'");
        } else if (sArg == "--max-iterations") {
            std::string s = next();
            char* pEnd = nullptr;
            options.lMaxIterations = std::strtol(s.c_str(), &pEnd, 10);
            if (*pEnd != '\0' || options.lMaxIterations < 1) {
                Fail("bad iteration limit '" + s + "'");
            }
        } else if (sArg == "-h" || sArg == "--help") {
            Usage();
        } else if (!sArg.empty() && sArg[0] == '-') {
            Fail("unknown option '" + sArg + "'");
        } else if (options.sFile.empty()) {
            options.sFile = sArg;
        } else {
            Usage();
        }
    }
    if (options.sElement.empty() || options.sFile.empty()) Usage();
    return options;
}

// Sets the thread's length tolerance for the length of a fit, as the library's Ex forms do.
class ScopedLengthTolerance {
  public:
    explicit ScopedLengthTolerance(double d) : m_dSaved(numorix::NuGetLengthTol()) {
        numorix::NuSetLengthTol(d);
    }
    ~ScopedLengthTolerance() { numorix::NuSetLengthTol(m_dSaved); }

  private:
    double m_dSaved;
};

// Runs one criterion, timing it and turning a library failure into a status and its message.
Result Attempt(const std::string& sCriterion, double dTolerance,
               const std::function<void(Result&)>& fit) {
    Result result;
    result.sCriterion = sCriterion;
    auto start = std::chrono::steady_clock::now();
    try {
        ScopedLengthTolerance tolerance(dTolerance);
        fit(result);
    } catch (const numorix::CNuException& e) {
        char szMessage[512];
        e.GetErrorMessage(sizeof szMessage, szMessage);
        std::string sMessage = szMessage;
        for (char& c : sMessage) {
            if (c == '\n') c = ' ';
        }
        while (!sMessage.empty() && sMessage.back() == ' ')
            sMessage.pop_back();
        result.sStatus = e.m_nCause == 212 ? "not converged" : "failed";
        result.sMessage = sMessage;
    }
    auto stop = std::chrono::steady_clock::now();
    result.dMilliseconds = std::chrono::duration<double, std::milli>(stop - start).count();
    return result;
}

CNuPoint AsPoint(const numorix::CNuVector& v) { return CNuPoint(v[0], v[1], v[2]); }

std::vector<Result> FitLine(const CNuPointArray& points, const Options& o) {
    std::vector<Result> results;
    results.push_back(Attempt("least squares", o.dTolerance, [&](Result& r) {
        numorix::CNuLine line;
        double dForm = 0.0;
        double dSumSquares = 0.0;
        line.Fit(points, &dForm, &dSumSquares);
        r.location = line.GetPoint();
        r.direction = AsPoint(line.GetDirection());
        r.dForm = dForm;
        r.dSumSquares = dSumSquares;
    }));
    results.push_back(Attempt("minimum zone", o.dTolerance, [&](Result& r) {
        numorix::CNuLine line;
        double dZone = 0.0;
        line.FitMinZone(points, &dZone, o.dTolerance, o.lMaxIterations);
        r.location = line.GetPoint();
        r.direction = AsPoint(line.GetDirection());
        r.dZone = dZone;
    }));
    return results;
}

std::vector<Result> FitPlane(const CNuPointArray& points, const Options& o) {
    std::vector<Result> results;
    results.push_back(Attempt("least squares", o.dTolerance, [&](Result& r) {
        numorix::CNuPlane plane;
        double dForm = 0.0;
        double dSumSquares = 0.0;
        plane.Fit(points, &dForm, &dSumSquares);
        r.location = plane.GetPoint();
        r.direction = AsPoint(plane.GetNormal());
        r.dForm = dForm;
        r.dSumSquares = dSumSquares;
    }));
    results.push_back(Attempt("minimum zone", o.dTolerance, [&](Result& r) {
        numorix::CNuPlane plane;
        double dZone = 0.0;
        plane.FitMinZone(points, &dZone, o.dTolerance);
        r.location = plane.GetPoint();
        r.direction = AsPoint(plane.GetNormal());
        r.dZone = dZone;
    }));
    return results;
}

std::vector<Result> FitCircle(const CNuPointArray& points, const Options& o) {
    std::vector<Result> results;
    results.push_back(Attempt("least squares", o.dTolerance, [&](Result& r) {
        numorix::CNuCircle circle(1.0);
        double dForm = 0.0;
        double dSumSquares = 0.0;
        circle.Fit(points, &dForm, &dSumSquares, o.lMaxIterations);
        r.location = circle.GetCentre();
        r.direction = AsPoint(circle.GetNormal());
        r.dRadius = circle.GetRadius();
        r.dForm = dForm;
        r.dSumSquares = dSumSquares;
    }));
    // The extreme circles: the smallest that holds every point, the largest that holds none.
    const std::pair<const char*, void (numorix::CNuCircle::*)(const CNuPointArray&, double)>
        extremes[] = {{"minimum circumscribed", &numorix::CNuCircle::FitMin},
                      {"maximum inscribed", &numorix::CNuCircle::FitMax}};
    for (const auto& extreme : extremes) {
        results.push_back(Attempt(extreme.first, o.dTolerance, [&](Result& r) {
            numorix::CNuCircle circle(1.0);
            (circle.*extreme.second)(points, o.dTolerance);
            r.location = circle.GetCentre();
            r.direction = AsPoint(circle.GetNormal());
            r.dRadius = circle.GetRadius();
        }));
    }
    results.push_back(Attempt("minimum zone", o.dTolerance, [&](Result& r) {
        numorix::CNuCircle circle(1.0);
        double dZone = 0.0;
        circle.FitMinZone(points, &dZone, o.dTolerance, o.lMaxIterations);
        r.location = circle.GetCentre();
        r.direction = AsPoint(circle.GetNormal());
        r.dRadius = circle.GetRadius();
        r.dZone = dZone;
    }));
    return results;
}

// The four cylinders: least squares, the smallest that holds every point, the largest that holds
// none, and the narrowest shell.
std::vector<Result> FitCylinder(const CNuPointArray& points, const Options& o) {
    std::vector<Result> results;
    auto store = [](Result& r, const numorix::CNuCylSurf& cylinder) {
        r.location = cylinder.GetAxisPoint();
        r.direction = AsPoint(cylinder.GetAxisDirection());
        r.dRadius = cylinder.GetRadius();
    };
    results.push_back(Attempt("least squares", o.dTolerance, [&](Result& r) {
        numorix::CNuCylSurf cylinder(1.0);
        double dForm = 0.0;
        double dSumSquares = 0.0;
        cylinder.Fit(points, &dForm, &dSumSquares, o.lMaxIterations);
        store(r, cylinder);
        r.dForm = dForm;
        r.dSumSquares = dSumSquares;
    }));
    using Extreme = void (numorix::CNuCylSurf::*)(const CNuPointArray&, double, long);
    const std::pair<const char*, Extreme> extremes[] = {
        {"minimum circumscribed", &numorix::CNuCylSurf::FitMin},
        {"maximum inscribed", &numorix::CNuCylSurf::FitMax}};
    for (const auto& extreme : extremes) {
        results.push_back(Attempt(extreme.first, o.dTolerance, [&](Result& r) {
            numorix::CNuCylSurf cylinder(1.0);
            (cylinder.*extreme.second)(points, o.dTolerance, o.lMaxIterations);
            store(r, cylinder);
        }));
    }
    results.push_back(Attempt("minimum zone", o.dTolerance, [&](Result& r) {
        numorix::CNuCylSurf cylinder(1.0);
        double dZone = 0.0;
        cylinder.FitMinZone(points, &dZone, o.dTolerance, o.lMaxIterations);
        store(r, cylinder);
        r.dZone = dZone;
    }));
    return results;
}

// The four spheres: least squares, the smallest that holds every point, the largest that holds
// none, and the narrowest shell.
std::vector<Result> FitSphere(const CNuPointArray& points, const Options& o) {
    std::vector<Result> results;
    results.push_back(Attempt("least squares", o.dTolerance, [&](Result& r) {
        numorix::CNuSphSurf sphere(1.0);
        double dForm = 0.0;
        double dSumSquares = 0.0;
        sphere.Fit(points, &dForm, &dSumSquares, o.lMaxIterations);
        r.location = sphere.GetCentre();
        r.dRadius = sphere.GetRadius();
        r.dForm = dForm;
        r.dSumSquares = dSumSquares;
    }));
    const std::pair<const char*, void (numorix::CNuSphSurf::*)(const CNuPointArray&, double)>
        extremes[] = {{"minimum circumscribed", &numorix::CNuSphSurf::FitMin},
                      {"maximum inscribed", &numorix::CNuSphSurf::FitMax}};
    for (const auto& extreme : extremes) {
        results.push_back(Attempt(extreme.first, o.dTolerance, [&](Result& r) {
            numorix::CNuSphSurf sphere(1.0);
            (sphere.*extreme.second)(points, o.dTolerance);
            r.location = sphere.GetCentre();
            r.dRadius = sphere.GetRadius();
        }));
    }
    results.push_back(Attempt("minimum zone", o.dTolerance, [&](Result& r) {
        numorix::CNuSphSurf sphere(1.0);
        double dZone = 0.0;
        sphere.FitMinZone(points, &dZone, o.dTolerance, o.lMaxIterations);
        r.location = sphere.GetCentre();
        r.dRadius = sphere.GetRadius();
        r.dZone = dZone;
    }));
    return results;
}

// The cones by least squares and the narrowest pair of coaxial cones of one angle; the location
// is the apex, the direction the axis into the opening.
std::vector<Result> FitCone(const CNuPointArray& points, const Options& o) {
    std::vector<Result> results;
    auto store = [](Result& r, const numorix::CNuConSurf& cone) {
        r.location = cone.GetApex();
        r.direction = AsPoint(cone.GetAxisDirection());
        r.dSemiAngle = cone.GetSemiAngle();
    };
    results.push_back(Attempt("least squares", o.dTolerance, [&](Result& r) {
        numorix::CNuConSurf cone(45.0);
        double dForm = 0.0;
        double dSumSquares = 0.0;
        cone.Fit(points, &dForm, &dSumSquares, o.lMaxIterations);
        store(r, cone);
        r.dForm = dForm;
        r.dSumSquares = dSumSquares;
    }));
    results.push_back(Attempt("minimum zone", o.dTolerance, [&](Result& r) {
        numorix::CNuConSurf cone(45.0);
        double dZone = 0.0;
        cone.FitMinZone(points, &dZone, o.dTolerance, o.lMaxIterations);
        store(r, cone);
        r.dZone = dZone;
    }));
    return results;
}

std::string Number(const std::optional<double>& d) {
    if (!d) return "-";
    char sz[64];
    std::snprintf(sz, sizeof sz, "%.9g", *d);
    return sz;
}

std::string Triple(const std::optional<CNuPoint>& p) {
    if (!p) return "-";
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    p->GetData(&x, &y, &z);
    char sz[128];
    std::snprintf(sz, sizeof sz, "(%.9g, %.9g, %.9g)", x, y, z);
    return sz;
}

void PrintTable(const Options& o, int nPoints, const std::vector<Result>& results) {
    std::printf("%s fit of %d points from %s (tolerance %g, iteration limit %ld)\n\n",
                o.sElement.c_str(), nPoints, o.sFile.c_str(), o.dTolerance, o.lMaxIterations);
    const char* pszDirection = o.sElement == "line"       ? "direction"
                               : o.sElement == "cylinder" ? "axis"
                               : o.sElement == "cone"     ? "axis"
                                                          : "normal";
    for (const Result& r : results) {
        std::printf("%s: %s", r.sCriterion.c_str(), r.sStatus.c_str());
        std::printf("  (%.3f ms)\n", r.dMilliseconds);
        if (!r.sMessage.empty()) std::printf("  %s\n", r.sMessage.c_str());
        if (r.location) {
            std::printf("  %-15s %s\n",
                        o.sElement == "circle" || o.sElement == "sphere" ? "centre"
                        : o.sElement == "cone"                               ? "apex"
                                                                             : "point",
                        Triple(r.location).c_str());
        }
        if (r.direction) std::printf("  %-15s %s\n", pszDirection, Triple(r.direction).c_str());
        if (r.dRadius) std::printf("  %-15s %s\n", "radius", Number(r.dRadius).c_str());
        if (r.dSemiAngle) std::printf("  %-15s %s\n", "semi-angle", Number(r.dSemiAngle).c_str());
        if (r.dForm) std::printf("  %-15s %s\n", "form error", Number(r.dForm).c_str());
        if (r.dSumSquares) {
            std::printf("  %-15s %s\n", "sum of squares", Number(r.dSumSquares).c_str());
        }
        if (r.dZone) std::printf("  %-15s %s\n", "zone", Number(r.dZone).c_str());
        std::printf("\n");
    }
}

std::string JsonString(const std::string& s) {
    std::string sOut = "\"";
    for (char c : s) {
        if (c == '"' || c == '\\') sOut += '\\';
        sOut += c;
    }
    return sOut + "\"";
}

std::string JsonTriple(const CNuPoint& p) {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    p.GetData(&x, &y, &z);
    char sz[128];
    std::snprintf(sz, sizeof sz, "[%.17g, %.17g, %.17g]", x, y, z);
    return sz;
}

void PrintJson(const Options& o, int nPoints, const std::vector<Result>& results) {
    std::printf("{\n  \"element\": %s,\n  \"file\": %s,\n  \"points\": %d,\n",
                JsonString(o.sElement).c_str(), JsonString(o.sFile).c_str(), nPoints);
    std::printf("  \"tolerance\": %.17g,\n  \"maxIterations\": %ld,\n  \"fits\": [\n", o.dTolerance,
                o.lMaxIterations);
    for (std::size_t i = 0; i < results.size(); ++i) {
        const Result& r = results[i];
        std::printf("    {\"criterion\": %s, \"status\": %s", JsonString(r.sCriterion).c_str(),
                    JsonString(r.sStatus).c_str());
        if (!r.sMessage.empty()) std::printf(", \"message\": %s", JsonString(r.sMessage).c_str());
        if (r.location) std::printf(", \"location\": %s", JsonTriple(*r.location).c_str());
        if (r.direction) std::printf(", \"direction\": %s", JsonTriple(*r.direction).c_str());
        if (r.dRadius) std::printf(", \"radius\": %.17g", *r.dRadius);
        if (r.dSemiAngle) std::printf(", \"semiAngle\": %.17g", *r.dSemiAngle);
        if (r.dForm) std::printf(", \"form\": %.17g", *r.dForm);
        if (r.dSumSquares) std::printf(", \"sumSquares\": %.17g", *r.dSumSquares);
        if (r.dZone) std::printf(", \"zone\": %.17g", *r.dZone);
        std::printf(", \"milliseconds\": %.6f}%s\n", r.dMilliseconds,
                    i + 1 < results.size() ? "," : "");
    }
    std::printf("  ]\n}\n");
}

}  // namespace

int main(int argc, char** argv) {
    Options options = ParseArguments(argc, argv);
    std::vector<Result> (*fit)(const CNuPointArray&, const Options&) = nullptr;
    if (options.sElement == "line") {
        fit = FitLine;
    } else if (options.sElement == "plane") {
        fit = FitPlane;
    } else if (options.sElement == "circle") {
        fit = FitCircle;
    } else if (options.sElement == "cylinder") {
        fit = FitCylinder;
    } else if (options.sElement == "sphere") {
        fit = FitSphere;
    } else if (options.sElement == "cone") {
        fit = FitCone;
    } else {
        Fail("unknown element '" + options.sElement +
             "' (line, plane, circle, cylinder, sphere, cone)");
    }
    CNuPointArray points;
    try {
        points = numorix_fit::ReadPointFile(options.sFile);
    } catch (const numorix_fit::PointFileError& e) {
        Fail(e.what());
    }
    std::vector<Result> results = fit(points, options);
    if (options.bJson) {
        PrintJson(options, points.GetSize(), results);
    } else {
        PrintTable(options, points.GetSize(), results);
    }
    return 0;
}
