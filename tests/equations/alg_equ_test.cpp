// The algebraic equation solver: roots of polynomials built from known roots, checked against
// those roots and by their backward error; the separation into real and complex roots and their
// order; the exact results of the closed forms, trimming and the kept Laguerre step; and an end
// to every solve on degenerate data.
#include <algorithm>
#include <cmath>
#include <complex>

#include "nu_test.h"
#include "numorix/equations/alg_equ.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using Complex = std::complex<double>;
using Roots = std::vector<Complex>;

// Simple roots of order 1, at least 0.05 apart, up to degree 12: the rounding of the
// coefficients times the roots' condition numbers.
constexpr double kSimpleRoot = 1e-7;
// A double root moves by the square root of the coefficients' rounding (about 1.5e-8).
constexpr double kDoubleRoot = 1e-6;
// |p(z)| against sum |c_i| |z|^i: each root is exact for coefficients perturbed by this much.
constexpr double kBackward = 1e-13;

bool ByReal(Complex a, Complex b) { return a.real() < b.real(); }

// Coefficients, ascending, of dLead * prod (x - r).
std::vector<Complex> Expand(const Roots& roots, double dLead = 1.0) {
    std::vector<Complex> c(1, dLead);
    for (const Complex& r : roots) {
        c.insert(c.begin(), 0.0);
        for (std::size_t i = 0; i + 1 < c.size(); ++i)
            c[i] -= r * c[i + 1];
    }
    return c;
}

// The real polynomial of the real parts of c, solved.
CNuAlgEqu Solved(const std::vector<Complex>& c) {
    CNuPolynomial p(static_cast<int>(c.size()) - 1);
    for (int i = 0; i <= p.GetDegree(); ++i)
        p[i] = c[i].real();
    CNuAlgEqu e;
    e.Solve(p);
    return e;
}

// The real roots, then the complex ones, each in the solver's order.
Roots AllRoots(const CNuAlgEqu& e) {
    Roots roots;
    for (double d : test::Elements(e.GetRealRoots()))
        roots.emplace_back(d, 0.0);
    for (int i = 0; i < e.GetNumberComplexRoots(); ++i)
        roots.emplace_back(e.GetComplexRoots()[i].Real(), e.GetComplexRoots()[i].Imaginary());
    return roots;
}

// Checks the roots against the expected ones, by their backward error, and the real ones' order.
void ExpectGoodRoots(const std::string& sName, const CNuAlgEqu& e, const Roots& want, double dTol) {
    SCOPED_TRACE(sName);
    const std::vector<Complex> c = Expand(want);
    // Each expected root against the nearest computed one not matched before, which must also
    // be a root of a polynomial near the expected one.
    const Roots roots = AllRoots(e);
    ASSERT_EQ(roots.size(), want.size());
    Roots unmatched = roots;
    for (const Complex& r : want) {
        auto nearer = [&](Complex a, Complex b) { return abs(a - r) < abs(b - r); };
        const auto z = std::min_element(unmatched.begin(), unmatched.end(), nearer);
        Complex p = 0.0, scale = 0.0;  // p(z), and sum |c_i| |z|^i
        for (std::size_t i = c.size(); i-- > 0;) {
            p = p * *z + c[i].real();
            scale = scale * abs(*z) + abs(c[i].real());
        }
        EXPECT_LE(abs(*z - r), dTol) << "expected root " << r;
        EXPECT_LE(abs(p), kBackward * scale.real()) << "root " << *z;
        unmatched.erase(z);
    }
    EXPECT_TRUE(std::is_sorted(roots.begin(), roots.begin() + e.GetNumberRealRoots(), ByReal));
}

TEST(AlgEqu, SolvesRandomPolynomialsOfEveryDegreeUpToTwelve) {
    test::Random random;
    for (int nDegree = 1; nDegree <= 12; ++nDegree) {
        for (int nTrial = 0; nTrial < 40; ++nTrial) {
            // Real parts in distinct slots of [-3, 3], imaginary parts of pairs in [0.2, 3]: no
            // two roots closer than 0.05.
            const int nFirstSlot = random.Integer(0, 19);  // slots 7 apart modulo 20 are distinct
            const int nReal = nDegree - 2 * random.Integer(0, nDegree / 2);
            Roots roots;
            for (int k = 0; static_cast<int>(roots.size()) < nDegree; ++k) {
                const bool bReal = static_cast<int>(roots.size()) < nReal;
                roots.emplace_back(
                    -3.0 + 0.3 * ((nFirstSlot + 7 * k) % 20) + random.Uniform(0.0, 0.25),
                    bReal ? 0.0 : random.Uniform(0.2, 3.0));
                if (!bReal) roots.push_back(std::conj(roots.back()));
            }
            const CNuAlgEqu e = Solved(Expand(roots, random.Uniform(0.5, 4.0)));
            EXPECT_EQ(e.GetNumberRealRoots(), nReal) << "degree " << nDegree;
            ExpectGoodRoots("degree " + std::to_string(nDegree), e, roots, kSimpleRoot);
        }
    }
}

TEST(AlgEqu, FindsZeroClusteredMultipleAndScaledRootsWithinTheirConditioning) {
    // A double root can make one of Ferrari's quadratic factors exactly zero; its one square
    // root, 0, takes the place of the pair. A k-fold root is found to about eps^(1/k). Ferrari
    // and Laguerre are relative, so a huge or tiny leading coefficient changes nothing.
    const Complex i(0.0, 1.0);
    const struct {
        const char* pszName;
        Roots roots;
        double dTol, dLead = 1.0;
    } cases[] = {
        {"double zero", {0.0, 0.0, 1.5, -2.0, 0.5 + i, 0.5 - i}, kDoubleRoot},
        {"double real, cubic", {-0.5, -0.5, 2.0}, kDoubleRoot},
        {"double real, quartic", {0.75, 0.75, -1.0, 2.0}, kDoubleRoot},
        {"double pair, quartic", {1.0 + i, 1.0 - i, 1.0 + i, 1.0 - i}, kDoubleRoot},
        {"x^4", {0.0, 0.0, 0.0, 0.0}, 0.0},
        {"quartic, lead 1e200", {1.0, 2.0, 3.0, 4.0}, kSimpleRoot, 1e200},
        {"quintic, lead 1e200", {1.0, 2.0, 3.0, 4.0, -5.0}, kSimpleRoot, 1e200},
        {"degree 10, a pair far off the axis",  // a Laguerre step that needs its curvature
         {2.581, -1.484, 0.704, 2.915, -1.107, 1.148, -2.751, -0.799, 1.37 + 2.533 * i,
          1.37 - 2.533 * i},
         kSimpleRoot,
         0.7226},
    };
    for (const auto& c : cases)
        ExpectGoodRoots(c.pszName, Solved(Expand(c.roots, c.dLead)), c.roots, c.dTol);
}

TEST(AlgEqu, ClosedFormsTrimmingAndConstantsGiveTheirExactResults) {
    const struct {
        std::vector<Complex> c;
        Roots roots;
    } cases[] = {
        {{3.0, -2.0}, {1.5}},
        {{1.0, -2.0, 1.0}, {1.0, 1.0}},
        {{1.0, 0.0, 1.0}, {{0.0, 1.0}, {0.0, -1.0}}},                        // the upper root first
        {{-1.0, 0.0, 0.0, 0.0, 1.0}, {-1.0, 1.0, {0.0, 1.0}, {0.0, -1.0}}},  // Ferrari's order
        {{2.0, -3.0, 1.0, 1e-310, -1e-305}, {1.0, 2.0}},  // negligible leading terms
    };
    for (const auto& c : cases)
        EXPECT_EQ(AllRoots(Solved(c.c)), c.roots) << "degree " << c.c.size() - 1;
    const double r = 1.0 / 977.0;  // 7 (x - r)^2 has a discriminant that rounds below zero
    EXPECT_EQ(Solved({7.0 * r * r, -14.0 * r, 7.0}).GetNumberRealRoots(), 2);
    // Distinct roots merge only bit-equal values: (x - 1)^3, but not a double root found as two.
    EXPECT_EQ(Solved({-1.0, 3.0, -3.0, 1.0}).GetDistinctRealRoots().GetSize(), 1);
    EXPECT_EQ(Solved(Expand({1.0, 1.0, 2.0, 3.0, 4.0})).GetDistinctRealRoots().GetSize(), 5);
    // Complex coefficients go through Laguerre, their roots ordered by real part. A constant then
    // leaves the roots in place, and copies carry them.
    CNuComplexArray complex(4);  // (x - 2 - i)(x + i), after a negligible leading term
    for (const Complex& z : {Complex(1.0, -2.0), Complex(-2.0), Complex(1.0), Complex(1e-310)})
        complex.Add(CNuComplex(z.real(), z.imag()));
    CNuAlgEqu e;
    e.Solve(complex);
    const Roots roots = AllRoots(e);
    EXPECT_LE(abs(roots.at(0) - Complex(0, -1)) + abs(roots.at(1) - Complex(2, 1)), kSimpleRoot);
    e.Solve(CNuPolynomial(2));
    EXPECT_EQ(AllRoots(CNuAlgEqu(e)), roots);
}

TEST(AlgEqu, TheKeptLaguerreStepStallsAndAStallOrARoundedDiscriminantGivesRealRoots) {
    // The step weighs the second derivative by half. It finds all roots of x^n - 1 for the
    // degrees below, but for n = 12 one deflated polynomial exhausts the 80 steps from the
    // origin, and the best point seen, the origin itself, is taken as a root.
    for (int n : {5, 8, 11, 12, 13, 16}) {
        std::vector<Complex> c(n + 1, 0.0);
        c[0] = -1.0;
        c[n] = 1.0;
        const Roots roots = AllRoots(Solved(c));
        auto off = [](Complex z) { return std::fabs(std::abs(z) - 1.0) > kSimpleRoot; };
        EXPECT_EQ(std::any_of(roots.begin(), roots.end(), off), n == 12) << "x^" << n << " - 1";
    }
    // A stalled origin is real: x^12 + 1 and 474.5 (1 + x + ... + x^8) report real roots where
    // they have none, the polish and scan moving them along the axis to where |p| is smallest.
    // Cardano's discriminant of 1e-20 x^3 - 4 x^2 - 20 rounds to exactly 0: three real roots.
    EXPECT_EQ(Solved({1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}).GetNumberRealRoots(), 3);
    EXPECT_EQ(Solved(std::vector<Complex>(9, 0x1.da82828282828p+8)).GetNumberRealRoots(), 4);
    EXPECT_EQ(Solved({-20.0, 0.0, -4.0, 1e-20}).GetNumberRealRoots(), 3);
}

// Laguerre's iteration, the polish and the closed forms end on degenerate coefficients and
// tolerances: a stalled start, far-apart magnitudes, an eightfold root, non-finite coefficients,
// and a root tolerance or zero tolerance of 0 or below.
TEST(AlgEqu, EverySolveEndsOnDegenerateCoefficientsAndTolerances) {
    const double kNaN = std::nan(""), kInf = HUGE_VAL;
    const std::vector<Complex> polynomials[] = {
        {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
        {1e-300, 0, 0, 0, 0, 0, 1e300},
        Expand(Roots(8, 1.0)),
        {1, kNaN, 2, 0, 0, 3},
        {kInf, 1, 1, 1, 1, 1, -kInf},
        {1, 2, kNaN, 1},
        {1, kInf, 1, 0, 1},
    };
    using Tolerances = std::pair<double, double>;  // NuGetTol(), NuGetZero()
    for (const Tolerances& t : {Tolerances{NuGetTol(), NuGetZero()}, {0.0, 0.0}, {-1.0, -1.0}}) {
        test::ScopedTolerance tol(NuGetTol, NuSetTol, t.first),
            zero(NuGetZero, NuSetZero, t.second);
        for (const auto& c : polynomials) {
            const CNuAlgEqu e = Solved(c);
            EXPECT_LE(e.GetNumberRealRoots() + e.GetNumberComplexRoots(), int(c.size()) - 1)
                << "degree " << c.size() - 1;
        }
    }
}

}  // namespace
}  // namespace numorix
