// The Chebyshev driver on models whose minimax is known from elsewhere in the library: the
// minimum-zone circle in the plane (centre and radius: 3 parameters) against the exchange of
// CNuCircle::FitMinZone, the zone of a line in the plane (angle and offset) against
// CNuLine::FitMinZone, the smallest enclosing circle (a residual vector per point) against
// CNuCircle::FitMin; from starts near and far from the answer.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "geometry_support.h"
#include "nu_test.h"
#include "numorix/curves/circle.h"
#include "numorix/fit/internal/minimax_driver.h"
#include "numorix/foundation/exception.h"
#include "numorix/geometry/line.h"

namespace numorix {
namespace {

constexpr double kPi = 3.14159265358979323846;
// The driver's own resolution, relative to the size of the element (its tiny).
constexpr double kTinyRelative = 1e-9;
// The exchange fits that answer are run at this tolerance, far below the driver's resolution.
constexpr double kReferenceTol = 1e-12;
// Agreement of the half widths: a few times the driver's resolution.
constexpr double kAgreement = 5e-9;

// |P - c| - R over points in the plane z = 0; parameters (cx, cy, R).
class CCircleModel : public fit::CMinimaxModel {
  public:
    CCircleModel(const CNuPointArray& points, double cx, double cy, double r)
        : m_points(points), m_q{cx, cy, r} {}
    int Parameters() const override { return 3; }
    int Points() const override { return m_points.GetSize(); }
    double Scale(int) const override { return 1.0; }
    void Evaluate(const double* pdStep, double* pdDistance, double* pdGradient) override {
        double q[3] = {m_q[0], m_q[1], m_q[2]};
        if (pdStep != nullptr)
            for (int j = 0; j < 3; ++j)
                q[j] += pdStep[j];
        for (int i = 0; i < Points(); ++i) {
            double dx = m_points[i].x() - q[0], dy = m_points[i].y() - q[1];
            double rho = std::hypot(dx, dy);
            pdDistance[i] = rho - q[2];
            if (pdGradient != nullptr) {
                pdGradient[3 * i] = -dx / rho;
                pdGradient[3 * i + 1] = -dy / rho;
                pdGradient[3 * i + 2] = -1.0;
            }
        }
    }
    void Move(const double* pdStep) override {
        for (int j = 0; j < 3; ++j)
            m_q[j] += pdStep[j];
    }
    const double* Q() const { return m_q; }

  private:
    CNuPointArray m_points;
    double m_q[3];
};

// -x sin(t) + y cos(t) - c; parameters (t, c); a unit turn moves points by up to dReach.
class CLineModel : public fit::CMinimaxModel {
  public:
    CLineModel(const CNuPointArray& points, double t, double c, double dReach)
        : m_points(points), m_q{t, c}, m_dReach(dReach) {}
    int Parameters() const override { return 2; }
    int Points() const override { return m_points.GetSize(); }
    double Scale(int j) const override { return j == 0 ? m_dReach : 1.0; }
    void Evaluate(const double* pdStep, double* pdDistance, double* pdGradient) override {
        double t = m_q[0] + (pdStep != nullptr ? pdStep[0] : 0.0);
        double c = m_q[1] + (pdStep != nullptr ? pdStep[1] : 0.0);
        for (int i = 0; i < Points(); ++i) {
            double x = m_points[i].x(), y = m_points[i].y();
            pdDistance[i] = -x * std::sin(t) + y * std::cos(t) - c;
            if (pdGradient != nullptr) {
                pdGradient[2 * i] = -x * std::cos(t) - y * std::sin(t);
                pdGradient[2 * i + 1] = -1.0;
            }
        }
    }
    void Move(const double* pdStep) override {
        m_q[0] += pdStep[0];
        m_q[1] += pdStep[1];
    }

  private:
    CNuPointArray m_points;
    double m_q[2];
    double m_dReach;
};

double StartLevel(double h, double dTiny) {
    return dTiny < h ? std::pow(10.0, (3.0 * std::log10(h) + std::log10(dTiny)) / 4.0) : dTiny;
}

struct SStart {
    const char* pszName;
    double dCentreOffset;  // in radii
    double dRadiusFactor;
};

TEST(MinimaxDriver, FindsTheMinimumZoneCircleFromNearAndFarStarts) {
    const SStart starts[] = {
        {"at the true circle", 0.0, 1.0},
        {"near", 0.01, 1.001},
        {"far", 0.3, 0.7},
        {"very far", 0.8, 1.5},
    };
    test::Random random;
    for (int trial = 0; trial < 20; ++trial) {
        const double R = random.Uniform(1.0, 100.0);
        const double cx = random.Uniform(-50.0, 50.0), cy = random.Uniform(-50.0, 50.0);
        const double dNoise = R * random.Uniform(1e-5, 1e-2);
        const int n = random.Integer(8, 60);
        const double dArc = trial % 3 == 0 ? kPi : 2.0 * kPi;  // some over half a circle only
        CNuPointArray points;
        for (int i = 0; i < n; ++i) {
            double a = random.Uniform(0.0, dArc);
            double r = R + random.Uniform(-dNoise, dNoise);
            points.Add(CNuPoint(cx + r * std::cos(a), cy + r * std::sin(a), 0.0));
        }
        CNuCircle reference(1.0);
        double dZone = 0.0;
        reference.FitMinZone(points, &dZone, kReferenceTol, 100000);
        for (const SStart& start : starts) {
            SCOPED_TRACE(std::string(start.pszName) + ", trial " + std::to_string(trial) +
                         ", n " + std::to_string(n) + ", R " + std::to_string(R));
            double a = random.Uniform(0.0, 2.0 * kPi);
            CCircleModel model(points, cx + start.dCentreOffset * R * std::cos(a),
                               cy + start.dCentreOffset * R * std::sin(a),
                               R * start.dRadiusFactor);
            std::vector<double> d(n);
            model.Evaluate(nullptr, d.data(), nullptr);
            double h0 = 0.0;
            for (double v : d)
                h0 = std::max(h0, std::fabs(v));
            const double dTiny = kTinyRelative * R;
            fit::SMinimaxResult result =
                fit::mzconp(model, StartLevel(h0, dTiny), dTiny, "CNuTorSurf");
            EXPECT_NEAR(result.dHalfWidth, 0.5 * dZone, kAgreement * R)
                << "passes " << result.nPasses;
            // The half width is that of the final circle: every point lies within it.
            model.Evaluate(nullptr, d.data(), nullptr);
            for (int i = 0; i < n; ++i)
                EXPECT_LE(std::fabs(d[i]), result.dHalfWidth) << "point " << i;
        }
    }
}

TEST(MinimaxDriver, FindsTheZoneOfALineFromNearAndFarAngles) {
    test::Random random;
    for (int trial = 0; trial < 20; ++trial) {
        const double t0 = random.Uniform(-1.0, 1.0);
        const double dLength = random.Uniform(1.0, 50.0);
        const double dNoise = random.Uniform(1e-4, 1e-1);
        const int n = random.Integer(5, 40);
        CNuPointArray points;
        for (int i = 0; i < n; ++i) {
            double s = random.Uniform(-dLength, dLength);
            double e = random.Uniform(-dNoise, dNoise);
            points.Add(CNuPoint(s * std::cos(t0) - e * std::sin(t0) + 3.0,
                                s * std::sin(t0) + e * std::cos(t0) - 2.0, 0.0));
        }
        CNuLine reference;
        double dZone = 0.0;
        reference.FitMinZone(points, &dZone, kReferenceTol, 100000);
        double dReach = 0.0;
        for (int i = 0; i < n; ++i)
            dReach = std::max(dReach, std::hypot(points[i].x(), points[i].y()));
        for (double dOffset : {0.0, 0.001, 0.2, 0.6}) {
            SCOPED_TRACE("angle off by " + std::to_string(dOffset) + ", trial " +
                         std::to_string(trial));
            CLineModel model(points, t0 + dOffset, 0.0, dReach);
            std::vector<double> d(n);
            model.Evaluate(nullptr, d.data(), nullptr);
            double h0 = 0.0;
            for (double v : d)
                h0 = std::max(h0, std::fabs(v));
            const double dTiny = kTinyRelative * dReach;
            fit::SMinimaxResult result =
                fit::mzconp(model, StartLevel(h0, dTiny), dTiny, "CNuTorSurf");
            EXPECT_NEAR(result.dHalfWidth, 0.5 * dZone, kAgreement * dReach)
                << "passes " << result.nPasses;
        }
    }
}

// P - c over points in the plane z = 0, a residual vector whose length is the distance from the
// centre c = (cx, cy): the minimax is the smallest enclosing circle, often held by two points
// only, where the linearised distances cannot fix the centre and the driver needs the cone of the
// residuals.
class CEnclosingModel : public fit::CMinimaxModel {
  public:
    CEnclosingModel(const CNuPointArray& points, double cx, double cy)
        : m_points(points), m_q{cx, cy} {}
    int Parameters() const override { return 2; }
    int Points() const override { return m_points.GetSize(); }
    int Components() const override { return 2; }
    double Scale(int) const override { return 1.0; }
    void Evaluate(const double* pdStep, double* pdValue, double* pdJacobian) override {
        double cx = m_q[0] + (pdStep != nullptr ? pdStep[0] : 0.0);
        double cy = m_q[1] + (pdStep != nullptr ? pdStep[1] : 0.0);
        for (int i = 0; i < Points(); ++i) {
            pdValue[2 * i] = m_points[i].x() - cx;
            pdValue[2 * i + 1] = m_points[i].y() - cy;
            if (pdJacobian != nullptr) {
                double* pJ = pdJacobian + 4 * i;
                pJ[0] = -1.0;
                pJ[1] = 0.0;
                pJ[2] = 0.0;
                pJ[3] = -1.0;
            }
        }
    }
    void Move(const double* pdStep) override {
        m_q[0] += pdStep[0];
        m_q[1] += pdStep[1];
    }

  private:
    CNuPointArray m_points;
    double m_q[2];
};

TEST(MinimaxDriver, FindsTheSmallestEnclosingCircleAlsoWhenTwoPointsHoldIt) {
    test::Random random;
    for (int trial = 0; trial < 30; ++trial) {
        // Odd trials: a long thin cloud whose two ends decide the circle.
        const bool bTwo = trial % 2 == 1;
        const int n = random.Integer(3, 40);
        CNuPointArray points;
        for (int i = 0; i < n; ++i)
            points.Add(CNuPoint(random.Uniform(-10.0, 10.0) + 100.0,
                                random.Uniform(-10.0, 10.0) * (bTwo ? 0.05 : 1.0) - 50.0, 0.0));
        CNuCircle reference(1.0);
        reference.FitMin(points, kReferenceTol);
        const double R = reference.GetRadius();
        SCOPED_TRACE("trial " + std::to_string(trial) + ", n " + std::to_string(n));
        CEnclosingModel model(points, 100.0 + 0.3 * R, -50.0 - 0.2 * R);
        const double dTiny = kTinyRelative * R;
        fit::SMinimaxResult result = fit::mzconp(model, StartLevel(2.0 * R, dTiny), dTiny,
                                                 "CNuTorSurf");
        EXPECT_NEAR(result.dHalfWidth, R, kAgreement * R) << "passes " << result.nPasses;
    }
}

// A model that reports NaN distances, or no parameters.
class CBrokenModel : public fit::CMinimaxModel {
  public:
    explicit CBrokenModel(int nParameters) : m_nParameters(nParameters) {}
    int Parameters() const override { return m_nParameters; }
    int Points() const override { return 3; }
    double Scale(int) const override { return 1.0; }
    void Evaluate(const double*, double* pdDistance, double* pdGradient) override {
        for (int i = 0; i < 3; ++i) {
            pdDistance[i] = std::numeric_limits<double>::quiet_NaN();
            if (pdGradient != nullptr) pdGradient[i] = 1.0;
        }
    }
    void Move(const double*) override {}

  private:
    int m_nParameters;
};

TEST(MinimaxDriver, RefusesAModelWithoutParametersAndOneWithoutNumbers) {
    CBrokenModel none(0), nan(1);
    test::ExpectFailures<CNuOperationException>({
        {[&] { fit::mzconp(none, 1e-3, 1e-9, "CNuTorSurf"); }, 103, nullptr,
         "CNuConSurf::FitMinZone()::mzconp()"},
    });
    test::ExpectFailures<CNuBestfitException>({
        {[&] { fit::mzconp(nan, 1e-3, 1e-9, "CNuTorSurf"); }, 211, nullptr, "CNuTorSurf"},
    });
}

}  // namespace
}  // namespace numorix
