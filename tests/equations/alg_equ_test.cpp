// The algebraic equation solver: roots of polynomials built from known roots, checked against
// those roots, against GSL's companion-matrix solver and by their residuals; the separation into
// real and complex roots and their order; and the exact results of the closed forms, trimming,
// the kept Laguerre step and bad coefficients.
#include <gsl/gsl_poly.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <vector>

#include "nu_test.h"
#include "numorix/equations/alg_equ.h"

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

// Coefficients, ascending, of dLead * prod (x - r).
std::vector<Complex> Expand(const Roots& roots, double dLead = 1.0) {
    std::vector<Complex> c(1, dLead);
    for (const Complex& r : roots) {
        std::vector<Complex> next(c.size() + 1, 0.0);
        for (std::size_t i = 0; i < c.size(); ++i) {
            next[i + 1] += c[i];
            next[i] -= r * c[i];
        }
        c = next;
    }
    return c;
}

// Real coefficients of a polynomial whose complex roots come in conjugate pairs.
std::vector<double> RealExpand(const Roots& roots, double dLead = 1.0) {
    std::vector<double> c;
    for (const Complex& z : Expand(roots, dLead))
        c.push_back(z.real());
    return c;
}

CNuPolynomial Poly(const std::vector<double>& c) {
    CNuPolynomial p(static_cast<int>(c.size()) - 1);
    for (int i = 0; i <= p.GetDegree(); ++i)
        p[i] = c[i];
    return p;
}

CNuAlgEqu Solved(const std::vector<double>& c) {
    CNuAlgEqu e;
    e.Solve(Poly(c));
    return e;
}

Roots AllRoots(const CNuAlgEqu& e) {
    Roots roots;
    CNuDoubleArray real = e.GetRealRoots();
    for (int i = 0; i < real.GetSize(); ++i)
        roots.emplace_back(real[i], 0.0);
    CNuComplexArray complex = e.GetComplexRoots();
    for (int i = 0; i < complex.GetSize(); ++i)
        roots.emplace_back(complex[i].Real(), complex[i].Imaginary());
    return roots;
}

Roots GslRoots(const std::vector<double>& c) {
    std::vector<double> z(2 * (c.size() - 1));
    gsl_poly_complex_workspace* w = gsl_poly_complex_workspace_alloc(c.size());
    gsl_poly_complex_solve(c.data(), c.size(), w, z.data());
    gsl_poly_complex_workspace_free(w);
    Roots roots;
    for (std::size_t i = 0; i < z.size(); i += 2)
        roots.emplace_back(z[i], z[i + 1]);
    return roots;
}

// The largest distance from an expected root to its nearest unused computed root; infinite when
// the counts differ.
double MatchError(const Roots& computed, const Roots& expected) {
    if (computed.size() != expected.size()) return std::numeric_limits<double>::infinity();
    std::vector<bool> used(computed.size(), false);
    double dWorst = 0.0;
    for (const Complex& r : expected) {
        std::size_t nBest = 0;
        double dBest = std::numeric_limits<double>::infinity();
        for (std::size_t k = 0; k < computed.size(); ++k) {
            if (!used[k] && std::abs(computed[k] - r) < dBest) {
                dBest = std::abs(computed[k] - r);
                nBest = k;
            }
        }
        if (!(dBest < std::numeric_limits<double>::infinity())) return dBest;
        used[nBest] = true;
        dWorst = std::max(dWorst, dBest);
    }
    return dWorst;
}

double BackwardError(const std::vector<double>& c, Complex z) {
    Complex p = 0.0;
    double dScale = 0.0;
    for (int i = static_cast<int>(c.size()) - 1; i >= 0; --i) {
        p = p * z + c[i];
        dScale = dScale * std::abs(z) + std::fabs(c[i]);
    }
    return std::abs(p) == 0.0 ? 0.0 : std::abs(p) / dScale;
}

// Checks roots against the expected ones, GSL and their residuals, and the orders.
void ExpectGoodRoots(const CNuAlgEqu& e, const Roots& expected, double dTol) {
    std::vector<double> c = RealExpand(expected);
    Roots computed = AllRoots(e);
    EXPECT_LE(MatchError(computed, expected), dTol);
    EXPECT_LE(MatchError(computed, GslRoots(c)), dTol);
    for (const Complex& z : computed)
        EXPECT_LE(BackwardError(c, z), kBackward) << "root " << z;
    CNuDoubleArray real = e.GetRealRoots();
    for (int i = 1; i < real.GetSize(); ++i)
        EXPECT_LE(real[i - 1], real[i]) << "real roots out of order";
    CNuComplexArray complex = e.GetComplexRoots();
    for (int i = 1; i < complex.GetSize() && expected.size() >= 5; ++i)
        EXPECT_LE(complex[i - 1].Real(), complex[i].Real()) << "complex roots out of order";
}

// Random roots in [-3, 3], complex ones in pairs with imaginary parts in [0.2, 3], no two
// closer than 0.05; nReal of them real.
Roots SeparatedRoots(test::Random& random, int nDegree, int nReal) {
    Roots roots;
    auto farFromAll = [&](Complex z) {
        return std::all_of(roots.begin(), roots.end(),
                           [&](Complex r) { return std::abs(r - z) >= 0.05; });
    };
    while (static_cast<int>(roots.size()) < nDegree) {
        bool bReal = static_cast<int>(roots.size()) < nReal;
        Complex z(random.Uniform(-3.0, 3.0), bReal ? 0.0 : random.Uniform(0.2, 3.0));
        if (!farFromAll(z) || !farFromAll(std::conj(z))) continue;
        roots.push_back(z);
        if (!bReal) roots.push_back(std::conj(z));
    }
    return roots;
}

TEST(AlgEqu, SolvesRandomPolynomialsLikeTheGslOracle) {
    test::Random random;
    for (int nDegree = 1; nDegree <= 12; ++nDegree) {
        for (int nTrial = 0; nTrial < 40; ++nTrial) {
            int nReal = nDegree - 2 * random.Integer(0, nDegree / 2);
            Roots expected = SeparatedRoots(random, nDegree, nReal);
            CNuAlgEqu e = Solved(RealExpand(expected, random.Uniform(0.5, 4.0)));
            SCOPED_TRACE(testing::Message() << "degree " << nDegree << ", " << nReal << " real");
            EXPECT_EQ(e.GetNumberRealRoots(), nReal);
            EXPECT_EQ(e.GetNumberComplexRoots(), nDegree - nReal);
            ExpectGoodRoots(e, expected, kSimpleRoot);
        }
    }
}

TEST(AlgEqu, FindsZeroClusteredAndMultipleRootsWithinTheirConditioning) {
    const struct {
        const char* pszName;
        Roots roots;
        double dTol;
    } cases[] = {
        {"double zero", {0.0, 0.0, 1.5, -2.0, {0.5, 1.0}, {0.5, -1.0}}, kDoubleRoot},
        {"simple zero", {0.0, 1.0, 2.0, 3.0, 4.0}, kSimpleRoot},
        {"cluster", {1.0, 1.001, 1.002, -1.0, 2.5, 0.3}, 10 * kSimpleRoot},
        {"double real", {1.0, 1.0, 2.0, 3.0, 4.0}, kDoubleRoot},
        {"double real, cubic", {-0.5, -0.5, 2.0}, kDoubleRoot},
        {"double real, quartic", {0.7, 0.7, -1.0, 2.0}, kDoubleRoot},
        {"double pair", {{1.0, 1.0}, {1.0, -1.0}, {1.0, 1.0}, {1.0, -1.0}, 2.0, -2.0}, kDoubleRoot},
        {"wide range", {1e-3, 1.0, 1e3, -20.0, 7.0}, 1e3 * kSimpleRoot},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszName);
        ExpectGoodRoots(Solved(RealExpand(c.roots)), c.roots, c.dTol);
    }
}

TEST(AlgEqu, SolvesComplexCoefficientsByLaguerreAfterTrimming) {
    test::Random random;
    for (int nDegree = 1; nDegree <= 10; ++nDegree) {
        Roots expected;
        for (int k = 0; k < nDegree; ++k)
            expected.emplace_back(k - 4.5 + random.Uniform(0.0, 0.5), random.Uniform(-3.0, 3.0));
        CNuComplexArray coefficients(nDegree + 2);
        for (const Complex& z : Expand(expected))
            coefficients.Add(CNuComplex(z.real(), z.imag()));
        coefficients.Add(CNuComplex(1e-310, 0.0));  // a negligible leading term
        CNuAlgEqu e;
        e.Solve(coefficients);
        EXPECT_LE(MatchError(AllRoots(e), expected), kSimpleRoot) << "degree " << nDegree;
        CNuComplexArray complex = e.GetComplexRoots();
        for (int i = 1; i < complex.GetSize(); ++i)
            EXPECT_LE(complex[i - 1].Real(), complex[i].Real());
    }
}

TEST(AlgEqu, ClosedFormsGiveTheirExactResults) {
    CNuAlgEqu e = Solved({3.0, -2.0});
    EXPECT_EQ(e.GetRealRoots()[0], 1.5);
    e = Solved({1.0, -2.0, 1.0});  // zero discriminant
    ASSERT_EQ(e.GetNumberRealRoots(), 2);
    EXPECT_EQ(e.GetRealRoots()[1], 1.0);
    EXPECT_EQ(e.GetDistinctRealRoots().GetSize(), 1);
    e = Solved({1.0, 0.0, 1.0});  // x^2 + 1: the upper root first, no real roots at all
    EXPECT_EQ(e.GetRealRoots().GetData(), nullptr);
    EXPECT_EQ(AllRoots(e), (Roots{{0.0, 1.0}, {0.0, -1.0}}));
    e = Solved({0.0, 0.0, 0.0, 1.0});  // x^3: three roots at zero
    EXPECT_EQ(MatchError(AllRoots(e), {0.0, 0.0, 0.0}), 0.0);
    e = Solved({-1.0, 0.0, 0.0, 0.0, 1.0});  // x^4 - 1: Ferrari's order for the pair
    EXPECT_EQ(AllRoots(e), (Roots{-1.0, 1.0, {0.0, 1.0}, {0.0, -1.0}}));
    // Squares 7 (x - r)^2 whose discriminant rounds below zero stay double real roots.
    int nFound = 0;
    for (int k = 1; k < 2000 && nFound < 5; ++k) {
        double r = k / 977.0, c1 = -14.0 * r, c0 = 7.0 * r * r;
        if (!(c1 * c1 - c0 * 4.0 * 7.0 < -1e-300)) continue;
        ++nFound;
        e = Solved({c0, c1, 7.0});
        EXPECT_EQ(e.GetNumberRealRoots(), 2) << "r = " << r;
    }
    EXPECT_EQ(nFound, 5);
}

TEST(AlgEqu, TrimsLeadingTermsAndKeepsOldRootsForAConstant) {
    CNuPolynomial p = Poly({2.0, -3.0, 1.0, 1e-310, -1e-305});
    CNuAlgEqu e;
    e.Solve(p);  // a degree-4 object runs the quadratic branch
    EXPECT_EQ(p.GetDegree(), 4);
    EXPECT_EQ(MatchError(AllRoots(e), {1.0, 2.0}), 0.0);
    e.Solve(Poly({5.0}));
    e.Solve(Poly({0.0, 0.0, 0.0}));
    CNuComplexArray constant(2);
    constant.Add(CNuComplex(1.0, 1.0));
    constant.Add(CNuComplex(0.0, 1e-301));
    e.Solve(constant);
    CNuAlgEqu copy(e);
    EXPECT_EQ(MatchError(AllRoots(copy), {1.0, 2.0}), 0.0);
}

TEST(AlgEqu, DistinctRootsMergeOnlyBitEqualValues) {
    EXPECT_EQ(Solved({1.0, -3.0, 3.0, -1.0}).GetDistinctRealRoots().GetSize(), 1);  // (x - 1)^3
    // The double root of (x - 1)^2 (x - 2)(x - 3)(x - 4) comes out as two nearby values.
    CNuAlgEqu e = Solved(RealExpand({1.0, 1.0, 2.0, 3.0, 4.0}));
    ASSERT_EQ(e.GetNumberRealRoots(), 5);
    ASSERT_NE(e.GetRealRoots()[0], e.GetRealRoots()[1]);
    EXPECT_EQ(e.GetDistinctRealRoots().GetSize(), 5);
}

TEST(AlgEqu, OnlyThePolynomialPathPolishesRealRoots) {
    std::vector<double> c = RealExpand({0.1, 0.7, 1.3, 2.9, -1.7}, 3.0);
    CNuComplexArray complex(6);
    for (double d : c)
        complex.Add(CNuComplex(d, 0.0));
    CNuAlgEqu raw;
    raw.Solve(complex);
    CNuAlgEqu polished = Solved(c);
    ASSERT_EQ(raw.GetNumberRealRoots(), 5);
    int nMoved = 0;
    for (int i = 0; i < 5; ++i) {
        EXPECT_NEAR(polished.GetRealRoots()[i], raw.GetRealRoots()[i], kSimpleRoot);
        nMoved += polished.GetRealRoots()[i] != raw.GetRealRoots()[i] ? 1 : 0;
    }
    EXPECT_GT(nMoved, 0);
}

TEST(AlgEqu, TheKeptLaguerreStepStallsOnTheTwelfthRootsOfUnity) {
    // The step weighs the second derivative by half. It finds all roots of x^n - 1 for the
    // degrees below, but for n = 12 one deflated polynomial exhausts the 80 steps from the
    // origin, and the best point seen, the origin itself, is taken as a root.
    for (int n : {5, 8, 11, 12, 13, 16}) {
        std::vector<double> c(n + 1, 0.0);
        c[0] = -1.0;
        c[n] = 1.0;
        int nOffCircle = 0;
        for (const Complex& z : AllRoots(Solved(c)))
            nOffCircle += std::fabs(std::abs(z) - 1.0) > kSimpleRoot ? 1 : 0;
        EXPECT_EQ(nOffCircle > 0, n == 12) << "x^" << n << " - 1";
    }
}

TEST(AlgEqu, QuarticsWhoseFerrariFactorVanishesSolveThroughItsSingleRootZero) {
    // A double root can make one of Ferrari's quadratic factors exactly zero; its one square
    // root, 0, takes the place of the pair. A k-fold root is found to about eps^(1/k).
    struct Case {
        const char* pszName;
        Roots roots;
        double dTol;
    };
    const std::vector<Case> cases = {
        {"x^4", {0.0, 0.0, 0.0, 0.0}, 0.0},
        {"(x - 1)^4", {1.0, 1.0, 1.0, 1.0}, 1e-3},
        {"(x - 0.75)^2 (x + 1)(x - 2)", {0.75, 0.75, -1.0, 2.0}, kDoubleRoot},
        {"(x^2 - 2x + 2)^2", {{1.0, 1.0}, {1.0, -1.0}, {1.0, 1.0}, {1.0, -1.0}}, kDoubleRoot},
    };
    for (const Case& c : cases) {
        CNuAlgEqu e = Solved(RealExpand(c.roots));
        EXPECT_EQ(AllRoots(e).size(), 4u) << c.pszName;
        EXPECT_LE(MatchError(AllRoots(e), c.roots), c.dTol) << c.pszName;
    }
}

TEST(AlgEqu, NonFiniteCoefficientsEndWithoutHangingWithAllTheirRoots) {
    // Degree 4 with c2 not a number is Ferrari's non-finite factor: four roots that are not
    // numbers, and no failure.
    for (double dBad : {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL}) {
        for (int nDegree : {2, 3, 4, 5, 8, 12}) {
            for (int nAt = 0; nAt <= nDegree; nAt += nDegree / 2) {
                std::vector<double> c(nDegree + 1, 1.0);
                c[nAt] = dBad;
                CNuAlgEqu e = Solved(c);
                EXPECT_EQ(e.GetNumberRealRoots() + e.GetNumberComplexRoots(), nDegree)
                    << "degree " << nDegree << ", bad coefficient " << nAt;
            }
        }
    }
}

TEST(AlgEqu, HugeAndTinyCoefficientsFollowTheUnscaledFormulas) {
    // Ferrari and Laguerre divide by the leading coefficient, or are relative, and cope.
    const Roots four = {1.0, 2.0, 3.0, 4.0}, five = {1.0, 2.0, 3.0, 4.0, -5.0};
    ExpectGoodRoots(Solved(RealExpand(four, 1e200)), four, kSimpleRoot);
    EXPECT_LE(MatchError(AllRoots(Solved(RealExpand(four, 1e-200))), four), kSimpleRoot);
    EXPECT_LE(MatchError(AllRoots(Solved(RealExpand(five, 1e200))), five), kSimpleRoot);
    // Laguerre accepts |p| below NuGetTol()^2 in absolute terms: with coefficients of 1e-200
    // that is the origin at every deflation, and Newton's polish carries all five to 1.
    CNuAlgEqu tiny = Solved(RealExpand(five, 1e-200));
    EXPECT_LE(MatchError(AllRoots(tiny), {1.0, 1.0, 1.0, 1.0, 1.0}), kSimpleRoot);
    // The quadratic's c1^2 - 4 c0 c2 underflows to zero at 1e-200: a double root at 1.5, which
    // the scan then carries 20 steps of 2e-9 downhill; at 1e200 it overflows to NaN.
    tiny = Solved({2e-200, -3e-200, 1e-200});
    EXPECT_EQ(MatchError(AllRoots(tiny), {1.5 + 20 * 2e-9, 1.5 + 20 * 2e-9}), 0.0);
    CNuAlgEqu huge = Solved({2e200, -3e200, 1e200});
    ASSERT_EQ(huge.GetNumberComplexRoots(), 2);
    EXPECT_EQ(huge.GetComplexRoots()[0].Real(), 1.5);
    EXPECT_TRUE(std::isnan(huge.GetComplexRoots()[0].Imaginary()));
}

}  // namespace
}  // namespace numorix
