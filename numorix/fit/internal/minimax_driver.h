// mzconp: the Chebyshev driver of the cone zone and the torus tube (private to the fit sources).
//
// A parametric element is seen through a model: for the present parameters, every point's signed
// distance d_i from the element and its gradient g_i in a step of the parameters. The driver
// minimises the largest |d_i|, the half width h of the zone, by successive linear programmes in
// the unknowns
//   (step_0 .. step_{p-1}, h, 1)
// where the last slot is the homogeneous coordinate of the rows: each row of the linearisation
// is a row of coefficients times that vector, the distance itself in the last column. The slot
// starts at 1.0 and is pinned there, which turns the last column into the right-hand side; it
// keeps the rows in one matrix with the distances beside their gradients.
//
// A pass: the points within `level` of the active bounds (d_i >= h - level on the outer side,
// -d_i >= h - level on the inner) enter as rows
//   outer   g_i . step - h + d_i * 1 <= 0
//   inner  -g_i . step - h - d_i * 1 <= 0
// and the programme  min |h|  under them is solved by acm552m. A point left out whose
// linearised distance the step would carry past h joins and the programme is solved again, so the
// step is that of all points. A row whose multiplier comes back negative (beyond rounding: below
// -1e-12, the multipliers summing to 1) leaves and the programme is solved again.
//
// The step is bounded: |step_j| Scale(j) <= radius, two inequality rows per parameter. Without a
// bound the linear programme of a few active points is unbounded or ill-posed (its minimum lies
// at infinity as soon as fewer than p + 1 points support it), and even when bounded it trusts the
// linearisation far outside its range. The radius is a trust region: the step is kept when the
// true half width falls by at least a hundredth of what the programme predicted, and the radius
// doubles when the prediction held (three quarters) at the bound; otherwise the step is refused
// and the radius becomes a quarter of the step. Near a solution supported by p + 1 points the
// steps are Newton steps, and the bound no longer acts.
//
// Level: after each kept step it falls by  level = 10^((3 log10(level) + log10(tiny)) / 4);
// below 10 tiny it is tiny. The run ends when a step is below the level and the level is tiny,
// when the programme predicts no gain above a thousandth of tiny, or, at the level tiny, after a
// step whose predicted gain is below ten times tiny: in a valley that curves away from every step
// the passes would otherwise creep on by about the resolution each until the limit (a tube 0.29
// of its radius thick took all 80 passes at gains of 3e-13 on h = 1.6e-4). A pass is one solve of the
// programme with its additions and removals; ten passes per unknown (p + 2 of them), then stored
// 212. A programme that is not solved is stored 211. Both are located at pszLocation; failures of
// the driver's arrays are stored 103 located "CNuConSurf::FitMinZone()::mzconp()".
//
// Residual vectors. When the distance is the length of a smooth residual vector r_i (a point's
// offset from a curve, in the plane normal to it), its linearisation alone loses the curvature
// of the length: moving along a direction in which r_i has no component changes |r_i| only to
// second order, the programme sees no cost in it, and its vertex solution runs to the step
// bound there and back (progress by a fixed fraction per pass). The rows of such a point are
// then cuts of the cone |r_i + J_i step| <= h: first along r_i (the linearised distance), then,
// while the step's predicted residual is longer than h, along that predicted residual, up to
// 4 p rows per point and pass.
//
// The half width returned is the largest |d_i| over all points at the final parameters, so the
// zone holds every point.
#ifndef NUMORIX_FIT_INTERNAL_MINIMAX_DRIVER_H
#define NUMORIX_FIT_INTERNAL_MINIMAX_DRIVER_H

namespace numorix {
namespace fit {

class CMinimaxModel {
  public:
    virtual ~CMinimaxModel() = default;
    virtual int Parameters() const = 0;
    virtual int Points() const = 0;
    // 1: each point has a signed distance. More: each point has a residual vector of that many
    // components whose length is its distance (never negative then).
    virtual int Components() const { return 1; }
    // The distance moved by a point of the element under a unit step of parameter j (1 for a
    // length, the radius for an angle).
    virtual double Scale(int j) const = 0;
    // At the present parameters moved by pdStep (null: unmoved): the signed distance or the
    // residual vector of every point into pdValue (Points() x Components()), and, if pdJacobian
    // is not null, their derivatives in the step, row-major (Points() x Components()) x
    // Parameters().
    virtual void Evaluate(const double* pdStep, double* pdValue, double* pdJacobian) = 0;
    // The present parameters become those moved by pdStep.
    virtual void Move(const double* pdStep) = 0;
};

struct SMinimaxResult {
    double dHalfWidth = 0.0;
    int nPasses = 0;
};

SMinimaxResult mzconp(CMinimaxModel& model, double dLevel, double dTiny, const char* pszLocation);

}  // namespace fit
}  // namespace numorix

#endif  // NUMORIX_FIT_INTERNAL_MINIMAX_DRIVER_H
