// The minimum circumscribed torus: the thinnest tube about a circle in space that holds every
// point.
//
// A circle in space has a centre c, a unit axis n and a radius R. For a point P, with w = P - c,
//   a = n . w            its height over the circle's plane,
//   rho = |w - a n|      its distance from the axis,
//   D = sqrt((rho - R)^2 + a^2)   its distance from the circle,
// the nearest point of the circle being Q = c + R e, e = (w - a n) / rho. The torus tube is
//   min over (c, n, R) of  max_i D_i,
// and the minor radius is that largest distance. The problem is handed to the Chebyshev driver
// with the step (dc_x, dc_y, dc_z, alpha, beta, dR), the axis moving to
// (n + alpha U + beta V) / |...| with U = OrthonormalX(n), V = n x U. Each point is given to the
// driver as its residual (rho - R, a), whose length is D and which is smooth where D is not
// (a point on the circle). With e = (w - a n) / rho, and dn = U dalpha + V dbeta:
//   d(rho - R) = -e . dc - a (e . U) dalpha - a (e . V) dbeta - dR
//   da         = -n . dc + (U . w) dalpha + (V . w) dbeta
// since drho = e . d(w - a n) = e . (-dc - a dn), e being normal to n. A point on the axis
// (rho = 0) takes e = U.
//
// The start is the least-squares circle. Its form error measures the points in its plane only,
// so points off the plane can have a form error of 0: the least-squares circle is taken as the
// answer only when its form error is below 2 dTolerance and every point also lies within
// dTolerance of it in space. The work is done about the mean point of the data.
#include <algorithm>
#include <cmath>
#include <vector>

#include "numorix/curves/circle.h"
#include "numorix/fit/internal/fit_frame.h"
#include "numorix/fit/internal/minimax_driver.h"
#include "numorix/fit/internal/vec3.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/tor_surf.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuTorSurf";

using fit::Cross;
using fit::Dot;
using fit::Length;
using fit::SV3;
using fit::Unit;

// A unit vector normal to n.
SV3 Normal(SV3 n) {
    CNuVector v(3);
    v[0] = n.x;
    v[1] = n.y;
    v[2] = n.z;
    CNuVector x(3);
    v.OrthonormalX(&x);
    return {x[0], x[1], x[2]};
}

class CTubeModel : public fit::CMinimaxModel {
  public:
    CTubeModel(std::vector<SV3> points, SV3 centre, SV3 axis, double dRadius)
        : m_points(std::move(points)), m_c(centre), m_n(Unit(axis)), m_dR(dRadius) {
        Frame();
    }

    int Parameters() const override { return 6; }
    int Points() const override { return static_cast<int>(m_points.size()); }
    double Scale(int j) const override { return j == 3 || j == 4 ? std::fabs(m_dR) : 1.0; }

    // The residual of a point is (rho - R, a): its offset from the circle in the plane through
    // the axis, whose length is D.
    int Components() const override { return 2; }

    void Evaluate(const double* pdStep, double* pdValue, double* pdJacobian) override {
        SV3 c = m_c, n = m_n;
        double R = m_dR;
        if (pdStep != nullptr) Moved(pdStep, &c, &n, &R);
        for (size_t i = 0; i < m_points.size(); ++i) {
            SV3 w = m_points[i] - c;
            double a = Dot(n, w);
            SV3 radial = w - a * n;
            double rho = Length(radial);
            pdValue[2 * i] = rho - R;
            pdValue[2 * i + 1] = a;
            if (pdJacobian == nullptr) continue;
            SV3 e = rho > 0.0 ? (1.0 / rho) * radial : m_u;
            double* pG = pdJacobian + 12 * i;
            pG[0] = -e.x;
            pG[1] = -e.y;
            pG[2] = -e.z;
            pG[3] = -a * Dot(e, m_u);
            pG[4] = -a * Dot(e, m_v);
            pG[5] = -1.0;
            pG[6] = -n.x;
            pG[7] = -n.y;
            pG[8] = -n.z;
            pG[9] = Dot(m_u, w);
            pG[10] = Dot(m_v, w);
            pG[11] = 0.0;
        }
    }

    void Move(const double* pdStep) override {
        Moved(pdStep, &m_c, &m_n, &m_dR);
        Frame();
    }

    SV3 Centre() const { return m_c; }
    SV3 Axis() const { return m_n; }
    double Radius() const { return m_dR; }

  private:
    void Frame() {
        m_u = Normal(m_n);
        m_v = Cross(m_n, m_u);
    }
    void Moved(const double* pdStep, SV3* pC, SV3* pN, double* pR) const {
        *pC = m_c + SV3{pdStep[0], pdStep[1], pdStep[2]};
        *pN = Unit(m_n + pdStep[3] * m_u + pdStep[4] * m_v);
        *pR = m_dR + pdStep[5];
    }

    std::vector<SV3> m_points;
    SV3 m_c;
    SV3 m_n;
    double m_dR;
    SV3 m_u{};
    SV3 m_v{};
};

}  // namespace

void CNuTorSurf::FitMin(const CNuPointArray& points, double dTolerance, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    fit::CheckFinite(points, kLocation);
    fit::CheckTolerance(dTolerance, kLocation);
    const int n = points.GetSize();
    if (n < 3) throw CNuBestfitException(1, kLocation, 3);
    CNuIntArray triple(3);
    if (points.IsNoncollinear(&triple, dTolerance) == eNuFalse)
        throw CNuBestfitException(3, kLocation, 3);

    try {
        CNuCircle circle(1.0);
        double dForm = 0.0;
        double dSum = 0.0;
        circle.Fit(points, &dForm, &dSum, lMaxIterations);

        const CNuPoint* p = points.GetData();
        SV3 mean{0.0, 0.0, 0.0};
        for (int i = 0; i < n; ++i)
            mean = mean + SV3{p[i].x(), p[i].y(), p[i].z()};
        mean = (1.0 / n) * mean;
        std::vector<SV3> work(n);
        for (int i = 0; i < n; ++i)
            work[i] = SV3{p[i].x(), p[i].y(), p[i].z()} - mean;

        CNuPoint centre = circle.GetCentre();
        CNuVector normal = circle.GetNormal();
        CTubeModel model(std::move(work), SV3{centre.x(), centre.y(), centre.z()} - mean,
                         SV3{normal[0], normal[1], normal[2]}, circle.GetRadius());
        std::vector<double> residual(2 * static_cast<size_t>(n));
        model.Evaluate(nullptr, residual.data(), nullptr);
        double h = 0.0;
        for (int i = 0; i < n; ++i)
            h = std::max(h, fit::ScaledDistance(residual[2 * i], residual[2 * i + 1], 0.0));

        if (dForm < 2.0 * dTolerance && h < dTolerance) {
            m_dMajorRadius = circle.GetRadius();
            m_dMinorRadius = 0.0;
            CopyPosition(circle);
            return;
        }

        const double e = std::max(NuGetTol() * 50.0, 1e-9);
        const double dTiny = e * circle.GetRadius();
        double dLevel = dTiny;
        if (dTiny < h) dLevel = std::pow(10.0, (3.0 * std::log10(h) + std::log10(dTiny)) / 4.0);
        fit::SMinimaxResult result = fit::mzconp(model, dLevel, dTiny, kLocation);

        SV3 c = model.Centre() + mean;
        SV3 axis = model.Axis();
        double R = model.Radius();
        if (!(R > 0.0) || !std::isfinite(R) || !std::isfinite(result.dHalfWidth) ||
            !std::isfinite(c.x + c.y + c.z))
            throw CNuBestfitException(11, kLocation);
        CNuVector zAxis(3);
        zAxis[0] = axis.x;
        zAxis[1] = axis.y;
        zAxis[2] = axis.z;
        fit::CleanDirection(&zAxis);
        CNuVector xAxis(3);
        zAxis.OrthonormalX(&xAxis);
        m_dMajorRadius = R;
        m_dMinorRadius = result.dHalfWidth;
        SetPosition(CNuPoint(c.x, c.y, c.z), xAxis, zAxis);
    } catch (const CNuBestfitException&) {
        throw CNuBestfitException(12, kLocation);
    }
}

ENuFitResult CNuTorSurf::FitMinEx(const CNuPointArray& points, double dTolerance,
                                  long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, kLocation, dTolerance,
                                      [&] { FitMin(points, dTolerance, lMaxIterations); });
}

}  // namespace numorix
