// The minimum-zone cone: the narrowest pair of coaxial cones of one semi-angle, offset from a
// middle cone by the same distance along its normals, that holds every point.
//
// Model. The middle cone is held as in the least-squares fit: an axis point P0, a unit axis a,
// the angle theta in (0, pi) between the axis and the generators, and the radius s of the cone in
// the plane through P0 normal to a. With U = OrthonormalX(a), V = a x U, w = P - P0,
// t = a . w, q = w - t a, rho = |q| (the distance from the axis, by the cross product) and
// n = q / rho, the signed distance of a point from the cone, positive outside, is
//   d = (rho - s) cos(theta) - t sin(theta),
// the distance from the generator in the half-plane of the point. The zone is
//   min over (P0, a, theta, s) of max_i |d_i|,
// its width twice that half width: d is linear in s with the same slope -cos(theta) for every
// point, so the middle cone settles halfway between the outermost and innermost points. The
// problem goes to the Chebyshev driver with the step (d0, d1, d2, d3, d4, d5):
//   P0 + d0 U + d1 V,   a -> (a + d2 U + d3 V) / |a + d2 U + d3 V|,   theta + d4,   s + d5,
// whose gradient at the present cone is, with u = U . w, v = V . w, e = rho sin(theta) +
// t cos(theta):
//   (-cos(theta) u / rho, -cos(theta) v / rho, -e u / rho, -e v / rho,
//    -(rho - s) sin(theta) - t cos(theta), -cos(theta)).
// The points are moved by their mean, and P0 starts at the foot of the mean on the axis of the
// least-squares cone. This parametrisation is regular near that cone for every angle: the axis
// point stays among the data, where the apex of a narrow cone runs off to infinity and its
// position and angle become one ill-conditioned pair; theta passes through 90 degrees (nearly a
// plane) as smoothly as anywhere. Only points on the axis (rho = 0) have no gradient in the axis
// point; they take n = U, as the torus does.
//
// Level. e = max(50 NuGetTol(), 1e-9); tiny = e times the first half width, max |d_i| of the
// start; h = half the least-squares form error. When tiny < h the driver starts at the level
// 10^((3 log10(h) + log10(tiny)) / 4), a quarter of the way from h down to tiny; otherwise at
// tiny.
//
// Finish: theta in degrees, an angle above 90 degrees mirrored with the axis reversed, one not
// above 0 stored 211; the apex P0 - a s / tan(theta) moved back by the mean; its coordinates
// below NuGetTol() 0, the axis snapped. A cone or zone that is not finite is 211 as well.
//
// The guard: a best-fit failure inside (the least-squares start, the driver) is stored 212
// located "CNuConSurf"; any other failure (a quadric of the start without a centre, a failure of
// the driver's arrays) ends the fit the same way, since nothing else is left to start from.
#include <algorithm>
#include <cmath>
#include <vector>

#include "numorix/fit/internal/fit_frame.h"
#include "numorix/fit/internal/minimax_driver.h"
#include "numorix/fit/internal/vec3.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/geometry/geometry.h"
#include "numorix/geometry/point_array.h"
#include "numorix/surfaces/con_surf.h"

namespace numorix {

namespace {

const char* const kLocation = "CNuConSurf";

using fit::Cross;
using fit::Dot;
using fit::Length;
using fit::SV3;
using fit::Unit;
SV3 ToV3(const CNuPoint& p) { return {p.x(), p.y(), p.z()}; }
SV3 ToV3(const CNuVector& v) { return {v[0], v[1], v[2]}; }
CNuVector ToVector(SV3 a) { return CNuVector(a.x, a.y, a.z); }

// A unit vector normal to a.
SV3 Normal(SV3 a) {
    CNuVector x(3);
    ToVector(a).OrthonormalX(&x);
    return ToV3(x);
}

class CConeModel : public fit::CMinimaxModel {
  public:
    CConeModel(std::vector<SV3> points, SV3 axisPoint, SV3 axis, double dTheta, double dRadius)
        : m_points(std::move(points)),
          m_p0(axisPoint),
          m_a(Unit(axis)),
          m_dTheta(dTheta),
          m_dS(dRadius) {
        Frame();
        // A tilt of the axis about P0 and a turn of the generators move the surface at a point
        // by up to its distance from P0.
        for (const SV3& p : m_points)
            m_dExtent = std::max(m_dExtent, Length(p - m_p0));
    }

    int Parameters() const override { return 6; }
    int Points() const override { return static_cast<int>(m_points.size()); }
    double Scale(int j) const override { return j >= 2 && j <= 4 ? m_dExtent : 1.0; }

    void Evaluate(const double* pdStep, double* pdValue, double* pdJacobian) override {
        SV3 p0 = m_p0, a = m_a;
        double dTheta = m_dTheta, s = m_dS;
        if (pdStep != nullptr) Moved(pdStep, &p0, &a, &dTheta, &s);
        const double c = std::cos(dTheta), sn = std::sin(dTheta);
        for (size_t i = 0; i < m_points.size(); ++i) {
            SV3 w = m_points[i] - p0;
            double t = Dot(a, w);
            double rho = Length(Cross(w, a));
            pdValue[i] = (rho - s) * c - t * sn;
            if (pdJacobian == nullptr) continue;
            double u = Dot(m_u, w), v = Dot(m_v, w);
            // n . U and n . V, with n = U on the axis.
            double nu = 1.0, nv = 0.0;
            if (rho > 0.0) {
                nu = u / rho;
                nv = v / rho;
            }
            double e = rho * sn + t * c;
            double* pG = pdJacobian + 6 * i;
            pG[0] = -c * nu;
            pG[1] = -c * nv;
            pG[2] = -e * nu;
            pG[3] = -e * nv;
            pG[4] = -(rho - s) * sn - t * c;
            pG[5] = -c;
        }
    }

    void Move(const double* pdStep) override {
        Moved(pdStep, &m_p0, &m_a, &m_dTheta, &m_dS);
        Frame();
    }

    SV3 AxisPoint() const { return m_p0; }
    SV3 Axis() const { return m_a; }
    double Theta() const { return m_dTheta; }
    double Radius() const { return m_dS; }

  private:
    void Frame() {
        m_u = Normal(m_a);
        m_v = Cross(m_a, m_u);
    }
    void Moved(const double* pdStep, SV3* pP0, SV3* pA, double* pdTheta, double* pdS) const {
        *pP0 = m_p0 + pdStep[0] * m_u + pdStep[1] * m_v;
        *pA = Unit(m_a + pdStep[2] * m_u + pdStep[3] * m_v);
        *pdTheta = m_dTheta + pdStep[4];
        *pdS = m_dS + pdStep[5];
    }

    std::vector<SV3> m_points;
    SV3 m_p0;
    SV3 m_a;
    double m_dTheta;
    double m_dS;
    SV3 m_u{};
    SV3 m_v{};
    double m_dExtent = 0.0;
};

struct SZoneCone {
    double dDegrees = 0.0;
    CNuPoint apex;
    CNuVector axis;
    double dZone = 0.0;
};

// The driver's run from the least-squares cone (apex, unit axis into the opening, semi-angle in
// degrees, form error) over the points.
SZoneCone Chebyshev(const CNuPointArray& points, const CNuPoint& lsApex, const CNuVector& lsAxis,
                    double dLsDegrees, double dForm) {
    const int n = points.GetSize();
    const CNuPoint* p = points.GetData();
    SV3 mean{0.0, 0.0, 0.0};
    for (int i = 0; i < n; ++i)
        mean = mean + ToV3(p[i]);
    mean = (1.0 / n) * mean;
    std::vector<SV3> work(n);
    for (int i = 0; i < n; ++i)
        work[i] = ToV3(p[i]) - mean;

    // The foot of the mean (now the origin) on the axis, and the radius there.
    SV3 a = Unit(ToV3(lsAxis));
    SV3 apex = ToV3(lsApex) - mean;
    double dAlong = -Dot(a, apex);
    SV3 p0 = apex + dAlong * a;
    double dTheta = Nu_PI * dLsDegrees * 0.005555555555555556;
    CConeModel model(std::move(work), p0, a, dTheta, dAlong * std::tan(dTheta));

    std::vector<double> d(n);
    model.Evaluate(nullptr, d.data(), nullptr);
    double dBase = 0.0;
    for (double v : d)
        dBase = std::max(dBase, std::fabs(v));
    const double h = 0.5 * dForm;
    const double e = std::max(NuGetTol() * 50.0, 1e-9);
    const double dTiny = std::fabs(dBase) * e;
    double dLevel = dTiny;
    if (dTiny < h) dLevel = std::pow(10.0, (3.0 * std::log10(h) + std::log10(dTiny)) / 4.0);
    fit::SMinimaxResult result = fit::mzconp(model, dLevel, dTiny, kLocation);

    // Past 90 degrees the generators lean back towards the axis: the same cone seen from the
    // other end of its axis.
    double dFinal = model.Theta();
    SV3 axis = model.Axis();
    SV3 at = model.AxisPoint();
    double dDegrees = dFinal / Nu_PI * 180.0;
    double dTan = std::tan(dFinal);
    double s = model.Radius();
    SV3 finalApex = at - (s / dTan) * axis + mean;
    if (dDegrees > 90.0) {
        dDegrees = 180.0 - dDegrees;
        axis = -1.0 * axis;
    }
    if (!(dDegrees > 0.0)) throw CNuBestfitException(11, kLocation);
    if (!std::isfinite(finalApex.x + finalApex.y + finalApex.z) ||
        !std::isfinite(axis.x + axis.y + axis.z) || !std::isfinite(result.dHalfWidth))
        throw CNuBestfitException(11, kLocation);

    double dTol = NuGetTol();
    double adApex[3] = {finalApex.x, finalApex.y, finalApex.z};
    for (double& c : adApex)
        if (std::fabs(c) < dTol) c = 0.0;
    SZoneCone zone;
    zone.dDegrees = dDegrees;
    zone.apex = CNuPoint(adApex[0], adApex[1], adApex[2]);
    zone.axis = ToVector(axis);
    fit::SnapAxis(&zone.axis);
    zone.dZone = 2.0 * result.dHalfWidth;
    return zone;
}

}  // namespace

void CNuConSurf::FitMinZone(const CNuPointArray& points, double* pdZone, double dTolerance,
                            long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    fit::CheckFinite(points, kLocation);
    fit::CheckTolerance(dTolerance, kLocation);
    if (points.GetSize() < 6) throw CNuBestfitException(1, kLocation, 6);
    if (CNuGeometry::AreCoplanar(points, dTolerance) != 0)
        throw CNuBestfitException(4, kLocation, 4);
    if (CNuGeometry::NumberDistinctPoints(points, 6, dTolerance) == 0)
        throw CNuBestfitException(2, kLocation, 6);

    SZoneCone zone;
    try {
        CNuConSurf start(45.0);
        double dForm = 0.0;
        double dSum = 0.0;
        start.Fit(points, &dForm, &dSum, lMaxIterations);
        if (dForm < dTolerance) {
            *this = start;
            *pdZone = 0.0;
            return;
        }
        CNuPoint apex;
        CNuVector axis;
        start.GetPosition(&apex, nullptr, &axis);
        zone = Chebyshev(points, apex, axis, start.m_dSemiAngle, dForm);
    } catch (const CNuBestfitException&) {
        throw CNuBestfitException(12, kLocation);
    } catch (...) {
        throw CNuBestfitException(12, kLocation);
    }
    m_dSemiAngle = zone.dDegrees;
    CNuVector xAxis;
    zone.axis.OrthonormalX(&xAxis);
    SetPosition(zone.apex, xAxis, zone.axis);
    *pdZone = zone.dZone;
}

void CNuConSurf::FitMinZone(const CNuPointArray& points, double* pdZone, CNuConSurf* pInner,
                            CNuConSurf* pOuter, double dTolerance, long lMaxIterations) {
    fit::CheckIterations(lMaxIterations, kLocation);
    FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    if (pInner != nullptr) *pInner = *this;
    if (pOuter != nullptr) *pOuter = *this;
    if (*pdZone < NuGetTol()) return;
    // A cone whose apex moves by delta along its axis moves its surface by delta sin(alpha)
    // along the normals: inwards when the apex moves into the opening.
    CNuPoint apex;
    CNuVector xAxis;
    CNuVector axis;
    GetPosition(&apex, &xAxis, &axis);
    double dShift = 0.5 * *pdZone / std::sin(Nu_PI * m_dSemiAngle * 0.005555555555555556);
    CNuPoint move = (axis * dShift).To3DPoint();
    if (pInner != nullptr) pInner->SetPosition(apex + move, xAxis, axis);
    if (pOuter != nullptr) pOuter->SetPosition(apex - move, xAxis, axis);
}

ENuFitResult CNuConSurf::FitMinZoneEx(const CNuPointArray& points, double* pdZone,
                                      double dTolerance, long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, kLocation, dTolerance, [&] {
        FitMinZone(points, pdZone, dTolerance, lMaxIterations);
    });
}

ENuFitResult CNuConSurf::FitMinZoneEx(const CNuPointArray& points, double* pdZone,
                                      CNuConSurf* pInner, CNuConSurf* pOuter, double dTolerance,
                                      long lMaxIterations) {
    return fit::RunFitExWithTolerance(lMaxIterations, kLocation, dTolerance, [&] {
        FitMinZone(points, pdZone, pInner, pOuter, dTolerance, lMaxIterations);
    });
}

}  // namespace numorix
