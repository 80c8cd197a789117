// Helpers of the fit tests: the PTB TraCIM reference sets read in place, and the independent
// oracles: minimum zones by brute force over all supports.
#ifndef NUMORIX_TESTS_FIT_FIT_TEST_SUPPORT_H
#define NUMORIX_TESTS_FIT_FIT_TEST_SUPPORT_H

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <vector>

#include "geometry_support.h"
#include "numorix/fit/fit_result.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/line.h"
#include "numorix/geometry/plane.h"

namespace numorix {
namespace test {

// PTB's acceptance limits for the TraCIM sets (data in mm): positions and sizes 0.1 um,
// directions 0.1 urad, zone widths (form deviations) 0.01 um.
constexpr double kPtbPosition = 1e-4;
constexpr double kPtbAngle = 1e-7;
constexpr double kPtbForm = 1e-5;

// A certified set of a TraCIM package ("ptb-tracim-gauss" or "ptb-tracim-chebyshev") and its
// answer of at least nValues figures; false when either is absent.
inline bool ReadTracimSet(const char* pszPackage, const std::string& id, std::size_t nValues,
                          CNuPointArray* pPoints, std::vector<double>* pAnswer) {
    std::ifstream data(RefDataDir() + "/" + pszPackage + "/data/" + id + ".asc");
    std::ifstream answer(RefDataDir() + "/" + pszPackage + "/answer/" + id + ".txt");
    double x, y, z;
    while (data >> x >> y >> z)
        pPoints->Add(CNuPoint(x, y, z));
    while (answer >> x)
        pAnswer->push_back(x);
    return pPoints->GetSize() > 0 && pAnswer->size() >= nValues;
}

// Signed distance of a point from a plane, along its normal.
inline double SignedDistance(const CNuPoint& p, const CNuPlane& plane) {
    return (p - plane.GetPoint()).To3DVector() % plane.GetNormal();
}

// The angle between two lines or two plane normals, sign-insensitive, in radians.
inline double AxisAngle(const CNuVector& a, const CNuVector& b) {
    CNuVector c = a * b;
    return std::atan2(c.Magnitude(), std::fabs(a % b));
}

// The points as the rows of an n by 3 matrix.
inline Eigen::MatrixX3d Rows(const CNuPointArray& points) {
    Eigen::MatrixX3d m(points.GetSize(), 3);
    for (int i = 0; i < points.GetSize(); ++i)
        m.row(i) << points[i].x(), points[i].y(), points[i].z();
    return m;
}

// Width of the rows of m along a direction (normalised here); 1e300 for a null direction.
inline double WidthAlong(const Eigen::MatrixX3d& m, const Eigen::Vector3d& v) {
    if (v.norm() < 1e-14) return 1e300;
    Eigen::VectorXd d = m * v.normalized();
    return d.maxCoeff() - d.minCoeff();
}

// The minimum zone of planar points (z ignored) by brute force: the strip is normal to a chord
// of two of the points.
inline double BruteLineZone(const CNuPointArray& points) {
    Eigen::MatrixX3d m = Rows(points);
    double dBest = 1e300;
    for (int i = 0; i < m.rows(); ++i)
        for (int j = i + 1; j < m.rows(); ++j)
            dBest = std::min(
                dBest, WidthAlong(m, Eigen::Vector3d(m(i, 1) - m(j, 1), m(j, 0) - m(i, 0), 0.0)));
    return dBest;
}

// The minimum zone of points in space by brute force: the slab is normal to the plane of three
// points or to the two directions of two chords.
inline double BrutePlaneZone(const CNuPointArray& points) {
    Eigen::MatrixX3d m = Rows(points);
    std::vector<Eigen::Vector3d> chords;
    for (int i = 0; i < m.rows(); ++i)
        for (int j = i + 1; j < m.rows(); ++j)
            chords.push_back((m.row(j) - m.row(i)).transpose());
    double dBest = 1e300;
    for (std::size_t a = 0; a < chords.size(); ++a)
        for (std::size_t b = a + 1; b < chords.size(); ++b)
            dBest = std::min(dBest, WidthAlong(m, chords[a].cross(chords[b])));
    return dBest;
}

// n points about the sphere of radius dRadius centred at the frame's origin, within dCap radians
// of its z axis (uniform over that cap), their radii spread uniformly over dRadius +- dSpread.
inline CNuPointArray SpherePoints(Random& rng, const Frame& f, double dRadius, int n, double dCap,
                                  double dSpread) {
    CNuPointArray points(n);
    for (int i = 0; i < n; ++i) {
        double c = rng.Uniform(std::cos(dCap), 1.0), s = std::sqrt(1.0 - c * c);
        double phi = rng.Uniform(0.0, 2.0 * M_PI), r = dRadius + rng.Uniform(-dSpread, dSpread);
        points.Add(f.World(r * s * std::cos(phi), r * s * std::sin(phi), r * c));
    }
    return points;
}

// The rule of an iteration or exchange limit: reaching it is not convergence. Finds the least
// limit in [1, lMax] at which fitEx(limit) succeeds, then expects one less to raise 212 located
// pszLocation through fit(limit) and to give eNuFitNotConverged through fitEx(limit), with the
// length tolerance restored on both paths. Returns the least sufficient limit.
template <class Fit, class FitEx>
long ExpectLimitRule(Fit&& fit, FitEx&& fitEx, long lMax, const char* pszLocation) {
    long lLeast = 1;
    while (lLeast <= lMax && fitEx(lLeast) != eNuFitOk)
        ++lLeast;
    if (lLeast < 2 || lLeast > lMax) {
        ADD_FAILURE() << "least sufficient limit " << lLeast << " not in [2, " << lMax << "]";
        return lLeast;
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
