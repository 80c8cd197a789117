#include "numorix/equations/alg_equ.h"

#include <cmath>
#include <new>
#include <utility>

#include "numorix/foundation/exception.h"
#include "numorix/foundation/internal/scalar_kernels.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {

namespace {

// The square roots of one of Ferrari's quadratic factors. A factor that is exactly zero, which a
// double root of the quartic produces, has the single root 0, so that it contributes a double
// root; a factor that is not finite (from non-finite coefficients) gives a single root that is
// not a number. The solver thereby keeps its promise of no failure beyond allocation.
CNuComplexArray FactorRoots(const CNuComplex& factor) {
    const double re = factor.Real();
    const double im = factor.Imaginary();
    if ((re == 0.0 && im == 0.0) || !std::isfinite(re) || !std::isfinite(im)) {
        const double dRoot = (re == 0.0 && im == 0.0) ? 0.0 : std::nan("");
        CNuComplexArray single(1);
        single.Add(CNuComplex(dRoot, dRoot));
        return single;
    }
    return factor.Roots(2);
}

// Laguerre's iteration: at most this many steps, and every tenth step is shortened by the next
// fraction of the table, which breaks the limit cycles of the plain method.
constexpr int kLaguerreIterations = 80;
constexpr double kLaguerreFractions[9] = {0.0, 0.5, 0.25, 0.75, 0.13, 0.38, 0.62, 0.88, 1.0};

// Parts of a starting or deflation root smaller than these are set to exactly zero, so that
// real roots stay real and purely imaginary ones imaginary.
constexpr double kQuarticSnap = 5e-06;
constexpr double kDeflationSnap = 6.5e-06;

// The scan after Newton's polish tries this many points, the base step growing tenfold with each
// pair of degrees above 3.
constexpr int kScanPositions = 20;
constexpr double kScanBaseStep = 4e-08;

// The root finder's complex arithmetic works on plain pairs with inline operations. Each one
// performs the operations of the matching CNuComplex operator in the same order, so the results
// are bit-identical; it spares the out-of-line calls and object set-up that otherwise dominate
// the iteration. Scaling by a real has none of the refusal of huge factors: internal steps never
// fail.
struct SPair {
    double re;
    double im;
};

inline SPair ToPair(const CNuComplex& z) { return {z.Real(), z.Imaginary()}; }
inline CNuComplex ToComplex(SPair z) { return CNuComplex(z.re, z.im); }
inline SPair operator+(SPair a, SPair b) { return {a.re + b.re, a.im + b.im}; }
inline SPair operator-(SPair a, SPair b) { return {a.re - b.re, a.im - b.im}; }
inline SPair operator*(SPair a, SPair b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
inline SPair Scaled(SPair z, double s) { return {z.re * s, z.im * s}; }
inline CNuComplex Scaled(const CNuComplex& z, double s) {
    return CNuComplex(z.Real() * s, z.Imaginary() * s);
}

// Smith's division, as CNuComplex::operator/.
inline SPair operator/(SPair a, SPair b) {
    if (std::fabs(b.re) >= std::fabs(b.im)) {
        double r = b.im / b.re;
        double d = b.re + b.im * r;
        return {(a.re + a.im * r) / d, (a.im - a.re * r) / d};
    }
    double r = b.re / b.im;
    double d = b.re * r + b.im;
    return {(a.re * r + a.im) / d, (a.im * r - a.re) / d};
}

// The scaled hypotenuse and the principal root, by the kernels of NuPythag and CNuComplex::Sqrt.
inline double Modulus(SPair z) { return internal::Pythag(z.re, z.im); }

inline SPair Sqrt(SPair z) {
    internal::ComplexParts r = internal::ComplexSqrt(z.re, z.im);
    return {r.re, r.im};
}

inline SPair Snapped(SPair z, double dSnap) {
    return {std::fabs(z.re) < dSnap ? 0.0 : z.re, std::fabs(z.im) < dSnap ? 0.0 : z.im};
}

// A work array of pairs; allocation failure is the library's memory failure.
class CPairs {
  public:
    explicit CPairs(int n) : m_p(new (std::nothrow) SPair[static_cast<std::size_t>(n)]) {
        if (m_p == nullptr) throw CNuMemoryException("CNuAlgEqu::Solve()");
    }
    ~CPairs() { delete[] m_p; }
    CPairs(const CPairs&) = delete;
    CPairs& operator=(const CPairs&) = delete;
    SPair* Get() { return m_p; }

  private:
    SPair* m_p;
};

// p(x) by Horner's rule over the coefficients c[0..n].
double Horner(const double* pdC, int n, double x) {
    double p = pdC[n];
    for (int i = n - 1; i >= 0; --i)
        p = p * x + pdC[i];
    return p;
}

// Refines x towards a root of sum a[j] z^j, j = 0..m. The step is m / (g +- sqrt((m - 1)(m h -
// g^2))) with g = p'/p and h = g^2 - (p''/2)/p: the second derivative enters at half weight,
// which is the step this library has always taken. A root is accepted when p(x) vanishes to
// NuGetTol()^2 or the step falls below NuGetTol(); after the last step the point of smallest
// residual seen is returned, and running out of steps is not a failure.
void LaguerreRoot(const SPair* pA, int m, SPair* pX) {
    const double dTiny = NuGetTol() * NuGetTol();
    double dBestResidual = NuGetLarge();
    SPair best = {0.0, 0.0};
    SPair x = *pX;
    for (int iter = 1;; ++iter) {
        SPair b = pA[m];
        SPair d = {0.0, 0.0};
        SPair f = {0.0, 0.0};
        for (int j = m - 1; j >= 0; --j) {
            f = x * f + d;
            d = x * d + b;
            b = x * b + pA[j];
        }
        if (std::fabs(b.re) < dTiny && std::fabs(b.im) < dTiny) break;

        SPair g = d / b;
        SPair g2 = g * g;
        SPair h = g2 - f / b;
        SPair sq = Sqrt(Scaled(Scaled(h, m) - g2, m - 1));
        SPair gp = g + sq;
        SPair gm = g - sq;
        double dPlus = Modulus(gp);
        double dMinus = Modulus(gm);
        if (dMinus > dPlus) gp = gm;
        double dMax = dMinus > dPlus ? dMinus : dPlus;

        SPair dx;
        if (dMax > NuGetSqrtTol()) {
            dx = SPair{static_cast<double>(m), 0.0} / gp;
        } else {
            // Vanishing denominators: a step of the size of x in a direction that turns with
            // the iteration count.
            dx =
                Scaled(SPair{std::cos(iter), std::sin(iter)}, std::exp(std::log(1.0 + Modulus(x))));
        }
        SPair x1 = x - dx;
        SPair change = x1 - x;
        double dTol = NuGetTol();
        if (std::fabs(change.re) < dTol && std::fabs(change.im) < dTol) {
            x = x1;
            break;
        }
        double dResidual = b.re * b.re + b.im * b.im;
        if (dResidual < dBestResidual) {
            dBestResidual = dResidual;
            best = x;
        }
        if (iter % 10 != 0) {
            x = x1;
        } else {
            x = x - Scaled(dx, kLaguerreFractions[iter / 10]);
        }
        if (iter == kLaguerreIterations) {
            x = best;
            break;
        }
    }
    *pX = x;
}

// All m roots of sum a[j] z^j by Laguerre with deflation from the origin, each root then refined
// on the full polynomial unless it is real within NuGetTol(), and sorted stably by real part.
void LaguerreAllRoots(const SPair* pA, int m, SPair* pRoots) {
    CPairs work(m + 1);
    SPair* pW = work.Get();
    for (int i = 0; i <= m; ++i)
        pW[i] = pA[i];
    for (int j = m; j >= 1; --j) {
        SPair x = {0.0, 0.0};
        LaguerreRoot(pW, j, &x);
        x = Snapped(x, kDeflationSnap);
        pRoots[m - j] = x;
        // Synthetic division by (z - x): w[0..j-1] becomes the quotient.
        SPair b = pW[j];
        for (int i = j - 1; i >= 0; --i) {
            SPair c = pW[i];
            pW[i] = b;
            b = x * b + c;
        }
    }
    for (int k = 0; k < m; ++k) {
        if (!(std::fabs(pRoots[k].im) < NuGetTol())) LaguerreRoot(pA, m, &pRoots[k]);
    }
    for (int i = 1; i < m; ++i) {
        SPair key = pRoots[i];
        int j = i - 1;
        while (j >= 0 && pRoots[j].re > key.re) {
            pRoots[j + 1] = pRoots[j];
            --j;
        }
        pRoots[j + 1] = key;
    }
}

}  // namespace

// ---- storage ------------------------------------------------------------------------------------

CNuAlgEqu::CNuAlgEqu()
    : m_nRealRoots(0),
      m_nComplexRoots(0),
      m_pdRealRoots(nullptr),
      m_pComplexRoots(nullptr),
      m_nRealCapacity(0),
      m_nComplexCapacity(0) {
    m_eObjectType = eTypeAlgEqu;
}

CNuAlgEqu::CNuAlgEqu(const CNuAlgEqu& other) : CNuAlgEqu() { Copy(other); }

CNuAlgEqu& CNuAlgEqu::operator=(const CNuAlgEqu& other) {
    if (this != &other) {
        CNuAlgEqu copy(other);
        Swap(copy);
    }
    return *this;
}

CNuAlgEqu::~CNuAlgEqu() { Release(); }

void CNuAlgEqu::Release() {
    delete[] m_pdRealRoots;
    delete[] m_pComplexRoots;
    m_pdRealRoots = nullptr;
    m_pComplexRoots = nullptr;
    m_nRealRoots = 0;
    m_nComplexRoots = 0;
    m_nRealCapacity = 0;
    m_nComplexCapacity = 0;
}

void CNuAlgEqu::Reserve(int nRoots) {
    Release();
    m_pdRealRoots = new (std::nothrow) double[static_cast<std::size_t>(nRoots)]();
    m_pComplexRoots = new (std::nothrow) CNuComplex[static_cast<std::size_t>(nRoots)];
    if (m_pdRealRoots == nullptr || m_pComplexRoots == nullptr) {
        Release();
        throw CNuMemoryException("CNuAlgEqu::Solve()");
    }
    m_nRealCapacity = nRoots;
    m_nComplexCapacity = nRoots;
}

void CNuAlgEqu::Copy(const CNuAlgEqu& other) {
    Release();
    if (other.m_nRealRoots > 0) {
        m_pdRealRoots = new (std::nothrow) double[static_cast<std::size_t>(other.m_nRealRoots)];
        if (m_pdRealRoots == nullptr) throw CNuMemoryException("CNuAlgEqu::Copy()");
        for (int i = 0; i < other.m_nRealRoots; ++i)
            m_pdRealRoots[i] = other.m_pdRealRoots[i];
        m_nRealRoots = m_nRealCapacity = other.m_nRealRoots;
    }
    if (other.m_nComplexRoots > 0) {
        m_pComplexRoots =
            new (std::nothrow) CNuComplex[static_cast<std::size_t>(other.m_nComplexRoots)];
        if (m_pComplexRoots == nullptr) throw CNuMemoryException("CNuAlgEqu::Copy()");
        for (int i = 0; i < other.m_nComplexRoots; ++i)
            m_pComplexRoots[i] = other.m_pComplexRoots[i];
        m_nComplexRoots = m_nComplexCapacity = other.m_nComplexRoots;
    }
}

void CNuAlgEqu::Swap(CNuAlgEqu& other) {
    std::swap(m_nRealRoots, other.m_nRealRoots);
    std::swap(m_nComplexRoots, other.m_nComplexRoots);
    std::swap(m_pdRealRoots, other.m_pdRealRoots);
    std::swap(m_pComplexRoots, other.m_pComplexRoots);
    std::swap(m_nRealCapacity, other.m_nRealCapacity);
    std::swap(m_nComplexCapacity, other.m_nComplexCapacity);
}

// A kind of root that did not occur leaves its pointer null.
void CNuAlgEqu::DropEmpty() {
    if (m_nRealRoots == 0) {
        delete[] m_pdRealRoots;
        m_pdRealRoots = nullptr;
        m_nRealCapacity = 0;
    }
    if (m_nComplexRoots == 0) {
        delete[] m_pComplexRoots;
        m_pComplexRoots = nullptr;
        m_nComplexCapacity = 0;
    }
}

void CNuAlgEqu::AddReal(double dRoot) {
    if (m_nRealRoots < m_nRealCapacity) m_pdRealRoots[m_nRealRoots++] = dRoot;
}

void CNuAlgEqu::AddComplex(const CNuComplex& root) {
    if (m_nComplexRoots < m_nComplexCapacity) m_pComplexRoots[m_nComplexRoots++] = root;
}

CNuDoubleArray CNuAlgEqu::GetRealRoots() const {
    CNuDoubleArray roots(m_nRealRoots);
    for (int i = 0; i < m_nRealRoots; ++i)
        roots.Add(m_pdRealRoots[i]);
    return roots;
}

CNuComplexArray CNuAlgEqu::GetComplexRoots() const {
    CNuComplexArray roots(m_nComplexRoots);
    for (int i = 0; i < m_nComplexRoots; ++i)
        roots.Add(m_pComplexRoots[i]);
    return roots;
}

CNuDoubleArray CNuAlgEqu::GetDistinctRealRoots() const {
    CNuDoubleArray roots(m_nRealRoots);
    for (int i = 0; i < m_nRealRoots; ++i) {
        if (i == 0 || m_pdRealRoots[i] > roots.Last()) roots.Add(m_pdRealRoots[i]);
    }
    return roots;
}

// ---- real coefficients --------------------------------------------------------------------------

void CNuAlgEqu::Solve(const CNuPolynomial& polynomial) {
    const double* pdC = polynomial.GetData();
    int n = polynomial.GetDegree();
    while (n != 0 && std::fabs(pdC[n]) < NuGetZero())
        --n;
    if (n < 1) return;  // a constant: the previous roots stay

    // The roots are built aside, so that a failure leaves the previous ones in place.
    CNuAlgEqu work;
    switch (n) {
        case 1:
            work.Reserve(1);
            work.AddReal(-pdC[0] / pdC[1]);
            break;
        case 2:
            work.Reserve(2);
            work.SolveQuadratic(pdC);
            break;
        case 3:
            work.Reserve(3);
            work.SolveCubic(pdC);
            break;
        case 4:
            work.Reserve(4);
            work.SolveQuartic(pdC);
            break;
        default: {
            CNuComplexArray coefficients(n + 1);
            for (int i = 0; i <= n; ++i)
                coefficients.Add(CNuComplex(pdC[i], 0.0));
            work.Solve(coefficients);
            break;
        }
    }

    if (work.m_nRealRoots > 0 && n > 1) {
        for (int i = 0; i < work.m_nRealRoots; ++i) {
            double& r = work.m_pdRealRoots[i];
            // A root barely off zero moves to zero when zero is at least as good.
            if (r != 0.0 && std::fabs(r) < NuGetTol()) {
                if (std::fabs(pdC[0]) <= std::fabs(Horner(pdC, n, r))) r = 0.0;
            }
            PolishRealRoot(polynomial, n, &r);
        }
        NuSort(work.m_nRealRoots, work.m_pdRealRoots);
    }
    work.DropEmpty();
    Swap(work);
}

void CNuAlgEqu::SolveQuadratic(const double* pdC) {
    const double c0 = pdC[0], c1 = pdC[1], c2 = pdC[2];
    double dDisc = c1 * c1 - c0 * 4.0 * c2;
    double s = std::sqrt(std::fabs(dDisc));
    if (std::fabs(dDisc) < NuGetZero()) {
        double r = (c1 / c2) * (-0.5);
        AddReal(r);
        AddReal(r);
    } else if (dDisc > 0.0) {
        // q carries the sign of c1 so that no root comes from a difference of near-equal terms.
        double sg = c1 < 0.0 ? -1.0 : 1.0;
        double q = (sg * s + c1) * (-0.5);
        AddReal(c0 / q);
        AddReal(q / c2);
    } else {
        double dRe = (c1 / c2) * (-0.5);
        double dIm = (s / c2) * 0.5;
        // A discriminant negative only by rounding: the pair is a double real root.
        if (std::fabs(Horner(pdC, 2, dRe)) < NuGetTol()) {
            AddReal(dRe);
            AddReal(dRe);
        } else {
            AddComplex(CNuComplex(dRe, dIm));
            AddComplex(CNuComplex(dRe, -dIm));
        }
    }
}

// Cardano on the monic form x^3 + (c2/c3) x^2 + ...: with x = t - a the depressed cubic is
// t^3 + pp t + q; the sign of q is taken out so that the cube roots are of non-negative numbers.
void CNuAlgEqu::SolveCubic(const double* pdC) {
    const double c0 = pdC[0], c1 = pdC[1], c2 = pdC[2], c3 = pdC[3];
    const double kThird = 1.0 / 3.0;
    double a = (c2 / c3) / 3.0;
    double pp = c1 / c3 - a * a * 3.0;
    double q = (a * a * a * 2.0 - (c1 / c3) * a) + c0 / c3;
    double h = std::fabs(q) * 0.5;
    double dD = pp * pp * pp / 27.0 + h * h;
    double sD = std::sqrt(std::fabs(dD));
    const CNuComplex w(-0.5, std::sqrt(3.0) * 0.5);
    const CNuComplex wc = w.Conjugate();
    double sg = q < 0.0 ? -1.0 : 1.0;

    if (std::fabs(dD) < NuGetZero()) {
        double u = 0.0;
        if (!(std::fabs(q) < NuGetZero())) u = -sg * std::pow(h, kThird);
        AddReal(2.0 * u - a);
        AddReal(-u - a);
        AddReal(-u - a);
    } else if (dD < 0.0) {
        // Three real roots, reached through the complex cube root of h + i sD.
        CNuComplex u0 = CNuComplex(h, sD).Roots(3)[0];
        CNuComplex u = Scaled(u0, -sg);
        CNuComplex v = CNuComplex(pp / -3.0, 0.0) / u;
        AddReal((u + v).Real() - a);
        AddReal((u * w + v * wc).Real() - a);
        AddReal((u * wc + v * w).Real() - a);
    } else {
        double u = -sg * std::pow(sD + h, kThird);
        double v = (pp / u) / -3.0;
        AddReal((v + u) - a);
        AddComplex(Scaled(w, u) + Scaled(wc, v) - CNuComplex(a, 0.0));
        AddComplex(Scaled(w, v) + Scaled(wc, u) - CNuComplex(a, 0.0));
    }
}

// Ferrari: the quartic splits into two quadratics through the smallest real root y of the
// resolvent cubic; the four roots from the closed form are then refined by Laguerre on the
// quartic itself.
void CNuAlgEqu::SolveQuartic(const double* pdC) {
    const double a3 = pdC[3] / pdC[4];
    const double a2 = pdC[2] / pdC[4];
    const double a1 = pdC[1] / pdC[4];
    const double a0 = pdC[0] / pdC[4];

    CNuPolynomial resolvent(3);
    resolvent[3] = 1.0;
    resolvent[2] = -a2;
    resolvent[1] = a1 * a3 - 4.0 * a0;
    resolvent[0] = (4.0 * a2 - a3 * a3) * a0 - a1 * a1;
    CNuAlgEqu cubic;
    cubic.Solve(resolvent);
    // A cubic always has a real root; only a zero tolerance above 1, which trims the monic
    // resolvent away, leaves none, and then the quartic gives no roots.
    if (cubic.m_nRealRoots == 0) return;
    const double y = cubic.m_pdRealRoots[0];

    const double dR2 = (a3 * a3 * 0.25 - a2) + y;
    const double s = std::sqrt(std::fabs(dR2));
    const bool bFlat = std::fabs(dR2) < NuGetLengthTol();
    const CNuComplex r = (bFlat || dR2 > 0.0) ? CNuComplex(s, 0.0) : CNuComplex(0.0, s);
    CNuComplex dA;
    CNuComplex dB;
    if (bFlat) {
        dA = CNuComplex(a3 * 3.0 * a3 * 0.25 - a2 * 2.0, 0.0);
        double e = y * y - 4.0 * a0;
        double t = std::sqrt(std::fabs(e));
        dB = Scaled(
            (std::fabs(e) < NuGetZero() || e > 0.0) ? CNuComplex(t, 0.0) : CNuComplex(0.0, t), 2.0);
    } else {
        dA = CNuComplex((a3 * a3 * 0.5 - a2) - y, 0.0);
        dB = (CNuComplex((4.0 * a2 - a3 * a3) * a3 - a1 * 8.0, 0.0) / r) / 4.0;
    }
    const CNuComplex d2 = dA + dB;
    const CNuComplex e2 = dA - dB;
    const CNuComplex dRoot = FactorRoots(d2)[0];
    CNuComplexArray eRoots = FactorRoots(e2);
    CNuComplex eRoot = eRoots[0];
    if (eRoots.GetSize() > 1) {
        double d0 = std::fabs(eRoots[0].Imaginary() - dRoot.Imaginary());
        double d1 = std::fabs(eRoots[1].Imaginary() - dRoot.Imaginary());
        if (!(d0 < d1)) eRoot = eRoots[1];
    }

    const CNuComplex h2(a3 * 0.5, 0.0);
    CNuComplex z[4] = {((r + dRoot) - h2) / 2.0, ((r - dRoot) - h2) / 2.0,
                       ((r + eRoot) + h2) / -2.0, ((r - eRoot) + h2) / -2.0};

    SPair coefficients[5];
    for (int i = 0; i <= 4; ++i)
        coefficients[i] = SPair{pdC[i], 0.0};
    for (const CNuComplex& start : z) {
        SPair root = Snapped(ToPair(start), kQuarticSnap);
        LaguerreRoot(coefficients, 4, &root);
        double dTol = NuGetTol();
        if (std::fabs(root.im) < dTol) {
            AddReal(root.re);
        } else if (!(std::fabs(root.re) < dTol)) {
            AddComplex(ToComplex(root));
        } else {
            AddComplex(CNuComplex(0.0, root.im));
        }
    }
}

// Newton's method while the steps shrink, then a scan of kScanPositions points in the direction
// of the last step, keeping any point where |p| is no larger.
void CNuAlgEqu::PolishRealRoot(const CNuPolynomial& polynomial, int n, double* pdRoot) const {
    const double* pdC = polynomial.GetData();
    double x = *pdRoot;
    double dPrevious = NuGetLarge();
    bool bDown = false;
    double v = 0.0;
    for (;;) {
        v = pdC[n];
        double s = 0.0;
        for (int i = n - 1; i >= 0; --i) {
            s = s * x + v;
            v = v * x + pdC[i];
        }
        if (std::fabs(v) < NuGetZero()) {
            *pdRoot = x;
            return;
        }
        if (std::fabs(s) < NuGetZero()) break;
        double x1 = x - v / s;
        double dStep = std::fabs(x - x1);
        if (!(dStep < dPrevious)) break;
        bDown = x1 < x;
        x = x1;
        dPrevious = dStep;
    }

    double dStep = kScanBaseStep;
    for (int k = 1; k <= n / 2 - 1; ++k)
        dStep *= 10.0;
    dStep /= 20.0;
    if (bDown) dStep = -dStep;
    double dBest = std::fabs(v);
    const double x0 = x;
    for (int k = 1; k <= kScanPositions; ++k) {
        double t = x0 + k * dStep;
        double dValue = std::fabs(polynomial.ValueAt(t));
        if (dValue <= dBest) {
            x = t;
            dBest = dValue;
        }
    }
    *pdRoot = x;
}

// ---- complex coefficients -----------------------------------------------------------------------

void CNuAlgEqu::Solve(const CNuComplexArray& coefficients) {
    int m = coefficients.GetSize() - 1;
    const double dZero = NuGetZero();
    while (m > 0 && std::fabs(coefficients[m].Real()) < dZero &&
           std::fabs(coefficients[m].Imaginary()) < dZero)
        --m;
    if (m <= 0) return;  // a constant: the previous roots stay

    CPairs a(m + 1);
    for (int i = 0; i <= m; ++i)
        a.Get()[i] = ToPair(coefficients[i]);
    CPairs roots(m);
    LaguerreAllRoots(a.Get(), m, roots.Get());

    CNuAlgEqu work;
    work.Reserve(m);
    for (int k = 0; k < m; ++k) {
        SPair root = roots.Get()[k];
        if (std::fabs(root.im) < NuGetTol()) {
            work.AddReal(root.re);
        } else {
            work.AddComplex(ToComplex(root));
        }
    }
    work.DropEmpty();
    Swap(work);
}

}  // namespace numorix
