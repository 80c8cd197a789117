// Helpers of the fit tests: point sets, the PTB TraCIM reference sets read in place, and the
// independent oracles (principal axes by Eigen, minimum zones by brute force over all supports).
#ifndef NUMORIX_TESTS_FIT_FIT_TEST_SUPPORT_H
#define NUMORIX_TESTS_FIT_FIT_TEST_SUPPORT_H

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>
#include <vector>

#include "geometry_support.h"
#include "nu_test.h"
#include "numorix/fit/fit_result.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"
#include "numorix/geometry/point_array.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace test {

// PTB's acceptance limits for the TraCIM sets: positions and zones 0.1 um (data in mm), and
// directions 0.1 urad.
constexpr double kPtbPosition = 1e-4;
constexpr double kPtbAngle = 1e-7;

// Points of a TraCIM set, or an empty array when the file is absent.
inline CNuPointArray ReadAsc(const std::string& path) {
    CNuPointArray points;
    std::ifstream in(path);
    double x, y, z;
    while (in >> x >> y >> z)
        points.Add(CNuPoint(x, y, z));
    return points;
}

inline std::vector<double> ReadAnswer(const std::string& path) {
    std::vector<double> v;
    std::ifstream in(path);
    double d;
    while (in >> d)
        v.push_back(d);
    return v;
}

inline std::string TracimFile(const char* pszPackage, const char* pszFolder, const std::string& id,
                              const char* pszExt) {
    return RefDataDir() + "/" + pszPackage + "/" + pszFolder + "/" + id + pszExt;
}

inline std::string SetName(const char* pszPrefix, int n) {
    char sz[8];
    std::snprintf(sz, sizeof sz, "%s%02d", pszPrefix, n);
    return sz;
}

// A certified set of a TraCIM package ("ptb-tracim-gauss" or "ptb-tracim-chebyshev") and its
// answer of at least nValues figures; false when either is absent.
inline bool ReadTracimSet(const char* pszPackage, const std::string& id, std::size_t nValues,
                          CNuPointArray* pPoints, std::vector<double>* pAnswer) {
    *pPoints = ReadAsc(TracimFile(pszPackage, "data", id, ".asc"));
    *pAnswer = ReadAnswer(TracimFile(pszPackage, "answer", id, ".txt"));
    return pPoints->GetSize() > 0 && pAnswer->size() >= nValues;
}

// n points over a square of half-side dExtent in the plane through origin normal to normal,
// off the plane by up to dThickness either way.
inline CNuPointArray NearPlane(Random& rng, CNuVector normal, int n, double dExtent,
                               double dThickness, const CNuVector& origin = CNuVector(0, 0, 0)) {
    normal.Normalise();
    CNuVector u;
    normal.OrthonormalX(&u);
    CNuVector v = normal * u;
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        CNuVector p = u * rng.Uniform(-dExtent, dExtent) + v * rng.Uniform(-dExtent, dExtent) +
                      normal * rng.Uniform(-dThickness, dThickness) + origin;
        points.Add(p.To3DPoint());
    }
    return points;
}

// Signed distance of a point from a plane, along its normal.
inline double SignedDistance(const CNuPoint& p, const CNuPlane& plane) {
    return (p - plane.GetPoint()).To3DVector() % plane.GetNormal();
}

// Signed distance in the XY plane from a line lying in it.
inline double Side(const CNuPoint& p, const CNuLine& line) {
    const CNuVector& d = line.GetDirection();
    return d[0] * (p.y() - line.GetPoint().y()) - d[1] * (p.x() - line.GetPoint().x());
}

// A cleaned direction: its first component of largest magnitude is positive.
inline ::testing::AssertionResult IsCleaned(const CNuVector& v) {
    int nLargest = 0;
    for (int i = 1; i < 3; ++i)
        if (std::fabs(v[i]) > std::fabs(v[nLargest])) nLargest = i;
    if (v[nLargest] > 0.0) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "component " << nLargest << " of (" << v[0] << ", "
                                         << v[1] << ", " << v[2] << ") is not positive";
}

// The angle between two lines or two plane normals, sign-insensitive, in radians.
inline double AxisAngle(const CNuVector& a, const CNuVector& b) {
    CNuVector c = a * b;
    return std::atan2(c.Magnitude(), std::fabs(a % b));
}

// Principal axis k of the centred points, by Eigen's symmetric eigen solver of the scatter
// matrix: axis 0 belongs to the smallest eigenvalue, axis 2 to the largest.
inline CNuVector PrincipalAxis(const CNuPointArray& points, int k) {
    int n = points.GetSize();
    Eigen::Vector3d mean = Eigen::Vector3d::Zero();
    for (int i = 0; i < n; ++i)
        mean += Eigen::Vector3d(points[i].x(), points[i].y(), points[i].z());
    mean /= n;
    Eigen::Matrix3d scatter = Eigen::Matrix3d::Zero();
    for (int i = 0; i < n; ++i) {
        Eigen::Vector3d d = Eigen::Vector3d(points[i].x(), points[i].y(), points[i].z()) - mean;
        scatter += d * d.transpose();
    }
    Eigen::Vector3d axis =
        Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d>(scatter).eigenvectors().col(k);
    return CNuVector(axis.x(), axis.y(), axis.z());
}

// Width of the points along a unit direction: the largest projection less the smallest.
inline double WidthAlong(const CNuPointArray& points, double nx, double ny, double nz) {
    double dMin = 1e300;
    double dMax = -1e300;
    for (int i = 0; i < points.GetSize(); ++i) {
        double d = points[i].x() * nx + points[i].y() * ny + points[i].z() * nz;
        dMin = std::min(dMin, d);
        dMax = std::max(dMax, d);
    }
    return dMax - dMin;
}

// The minimum zone of planar points (z ignored) by brute force: the strip is normal to a chord
// of two of the points.
inline double BruteLineZone(const CNuPointArray& points) {
    double dBest = 1e300;
    int n = points.GetSize();
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j) {
            double dx = points[j].x() - points[i].x();
            double dy = points[j].y() - points[i].y();
            double d = std::hypot(dx, dy);
            if (d == 0.0) continue;
            dBest = std::min(dBest, WidthAlong(points, -dy / d, dx / d, 0.0));
        }
    return dBest;
}

// The minimum zone of points in space by brute force: the slab is normal to the plane of three
// points or to the two directions of two chords.
inline double BrutePlaneZone(const CNuPointArray& points) {
    int n = points.GetSize();
    std::vector<Eigen::Vector3d> p(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        p[i] = Eigen::Vector3d(points[i].x(), points[i].y(), points[i].z());
    double dBest = 1e300;
    auto tryNormal = [&](Eigen::Vector3d v) {
        double d = v.norm();
        if (d < 1e-14) return;
        v /= d;
        dBest = std::min(dBest, WidthAlong(points, v.x(), v.y(), v.z()));
    };
    std::vector<Eigen::Vector3d> chords;
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j)
            chords.push_back(p[j] - p[i]);
    for (std::size_t a = 0; a < chords.size(); ++a)
        for (std::size_t b = a + 1; b < chords.size(); ++b)
            tryNormal(chords[a].cross(chords[b]));
    return dBest;
}

// The rule of an iteration or exchange limit: reaching it is not convergence. Finds the least
// limit in [1, lMax] at which fitEx(limit) succeeds, then expects one less to raise 212 located
// pszLocation through fit(limit) and to give eNuFitNotConverged through fitEx(limit), with the
// length tolerance restored on both paths. Returns the least sufficient limit, 0 if none.
template <class Fit, class FitEx>
long ExpectLimitRule(Fit&& fit, FitEx&& fitEx, long lMax, const char* pszLocation) {
    long lLeast = 0;
    for (long l = 1; l <= lMax && lLeast == 0; ++l)
        if (fitEx(l) == eNuFitOk) lLeast = l;
    if (lLeast == 0) {
        ADD_FAILURE() << "no limit up to " << lMax << " sufficed";
        return 0;
    }
    if (lLeast == 1) {
        ADD_FAILURE() << "a limit of 1 sufficed: no lower limit to check";
        return 1;
    }
    ExpectNuFailure<CNuBestfitException>([&] { fit(lLeast - 1); }, 212, nullptr, pszLocation);
    const double dSaved = NuGetLengthTol();
    EXPECT_EQ(fitEx(lLeast - 1), eNuFitNotConverged) << "limit " << lLeast - 1;
    EXPECT_EQ(NuGetLengthTol(), dSaved) << "length tolerance not restored";
    return lLeast;
}

}  // namespace test
}  // namespace numorix

#endif  // NUMORIX_TESTS_FIT_FIT_TEST_SUPPORT_H
