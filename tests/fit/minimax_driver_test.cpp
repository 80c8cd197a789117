// The Chebyshev driver on models whose minimax the library knows otherwise: the minimum-zone
// circle in the plane (centre and radius, a signed distance per point) against the exchange of
// CNuCircle::FitMinZone, and the smallest enclosing circle (the centre, a residual vector per
// point, often held by two points only) against CNuCircle::FitMin; from starts near and far.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "geometry_support.h"
#include "nu_test.h"
#include "numorix/curves/circle.h"
#include "numorix/fit/internal/minimax_driver.h"
#include "numorix/foundation/exception.h"

namespace numorix {
namespace {

// The driver's resolution relative to the size of the element (its tiny), and the agreement
// asked of the half widths: a few times that. The exchange fits answer at a far finer tolerance.
constexpr double kTinyRelative = 1e-9;
constexpr double kAgreement = 5e-9;
constexpr double kReferenceTol = 1e-12;

// A model of parameters q moved by q += step; values(q, value, jacobian) as Evaluate.
using Values = std::function<void(const std::vector<double>&, double*, double*)>;
class CModel : public fit::CMinimaxModel {
  public:
    CModel(std::vector<double> q, int nPoints, int nComponents, Values values)
        : m_q(std::move(q)), m_n(nPoints), m_k(nComponents), m_values(std::move(values)) {}
    int Parameters() const override { return static_cast<int>(m_q.size()); }
    int Points() const override { return m_n; }
    int Components() const override { return m_k; }
    double Scale(int) const override { return 1.0; }
    void Evaluate(const double* pdStep, double* pdValue, double* pdJacobian) override {
        std::vector<double> q = m_q;
        for (size_t j = 0; pdStep != nullptr && j < q.size(); ++j)
            q[j] += pdStep[j];
        m_values(q, pdValue, pdJacobian);
    }
    void Move(const double* pdStep) override {
        for (size_t j = 0; j < m_q.size(); ++j)
            m_q[j] += pdStep[j];
    }

  private:
    std::vector<double> m_q;
    int m_n, m_k;
    Values m_values;
};

fit::SMinimaxResult Minimise(fit::CMinimaxModel& model, double h0, double dSize) {
    const double dTiny = kTinyRelative * dSize;
    return fit::mzconp(model, std::pow(10.0, (3.0 * std::log10(h0) + std::log10(dTiny)) / 4.0),
                       dTiny, "CNuTorSurf");
}

TEST(MinimaxDriver, FindsTheMinimumZoneCircleAndTheSmallestEnclosingCircleFromAnyStart) {
    test::Random random;
    for (int trial = 0; trial < 24; ++trial) {
        const double R = random.Uniform(1.0, 100.0), cx = random.Uniform(-50, 50);
        const double cy = random.Uniform(-50, 50), dNoise = R * random.Uniform(1e-5, 1e-2);
        // Every third set covers half a circle only; odd sets are squeezed into a thin cloud
        // for the enclosing circle, which two points then hold.
        const double dArc = trial % 3 == 0 ? 3.14159 : 6.28318, dSqueeze = trial % 2 ? 0.05 : 1;
        const int n = random.Integer(8, 60);
        CNuPointArray ring, cloud;
        for (int i = 0; i < n; ++i) {
            const double a = random.Uniform(0.0, dArc), r = R + random.Uniform(-dNoise, dNoise);
            ring.Add(CNuPoint(cx + r * std::cos(a), cy + r * std::sin(a), 0.0));
            cloud.Add(CNuPoint(cx + random.Uniform(-R, R), cy + dSqueeze * random.Uniform(-R, R), 0));
        }
        auto annulus = [&](const std::vector<double>& q, double* pdD, double* pdJ) {
            for (int i = 0; i < n; ++i) {
                const double dx = ring[i].x() - q[0], dy = ring[i].y() - q[1];
                pdD[i] = std::hypot(dx, dy) - q[2];
                if (pdJ == nullptr) continue;
                pdJ[3 * i] = -dx / std::hypot(dx, dy);
                pdJ[3 * i + 1] = -dy / std::hypot(dx, dy);
                pdJ[3 * i + 2] = -1.0;
            }
        };
        auto enclosing = [&](const std::vector<double>& q, double* pdV, double* pdJ) {
            for (int i = 0; i < n; ++i) {
                pdV[2 * i] = cloud[i].x() - q[0];
                pdV[2 * i + 1] = cloud[i].y() - q[1];
                for (int c = 0; pdJ != nullptr && c < 4; ++c)
                    pdJ[4 * i + c] = c == 0 || c == 3 ? -1.0 : 0.0;
            }
        };
        CNuCircle zone(1.0), smallest(1.0);
        double dZone = 0.0;
        zone.FitMinZone(ring, &dZone, kReferenceTol, 100000);
        smallest.FitMin(cloud, kReferenceTol);
        for (double dOff : {0.0, 0.01, 0.3, 0.8}) {
            SCOPED_TRACE("trial " + std::to_string(trial) + ", start off by " +
                         std::to_string(dOff) + " radii, n " + std::to_string(n));
            const double a = random.Uniform(0.0, 6.28318);
            const double sx = cx + dOff * R * std::cos(a), sy = cy + dOff * R * std::sin(a);
            CModel ringModel({sx, sy, R * (1.0 + dOff / 2)}, n, 1, annulus);
            fit::SMinimaxResult result = Minimise(ringModel, (1.0 + dOff) * R, R);
            EXPECT_NEAR(result.dHalfWidth, 0.5 * dZone, kAgreement * R)
                << "passes " << result.nPasses;
            CModel cloudModel({sx, sy}, n, 2, enclosing);
            result = Minimise(cloudModel, 3.0 * R, R);
            EXPECT_NEAR(result.dHalfWidth, smallest.GetRadius(), kAgreement * R)
                << "passes " << result.nPasses;
        }
    }
}

TEST(MinimaxDriver, RefusesAModelWithoutParametersAndOneWithoutNumbers) {
    auto nan = [](const std::vector<double>&, double* pdD, double* pdJ) {
        for (int i = 0; i < 3; ++i) {
            pdD[i] = std::numeric_limits<double>::quiet_NaN();
            if (pdJ != nullptr) pdJ[i] = 1.0;
        }
    };
    CModel none({}, 3, 1, nan), broken({0.0}, 3, 1, nan);
    test::ExpectFailures<CNuOperationException>({
        {[&] { fit::mzconp(none, 1e-3, 1e-9, "CNuTorSurf"); }, 103, nullptr,
         "CNuConSurf::FitMinZone()::mzconp()"},
    });
    test::ExpectFailures<CNuBestfitException>({
        {[&] { fit::mzconp(broken, 1e-3, 1e-9, "CNuTorSurf"); }, 211, nullptr, "CNuTorSurf"},
    });
}

}  // namespace
}  // namespace numorix
