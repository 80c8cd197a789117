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
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using Complex = std::complex<double>;
using Roots = std::vector<Complex>;

// Simple roots of order 1, at least 0.05 apart, of polynomials up to degree 12: the error is
// the rounding of the coefficients times the root's condition number.
constexpr double kSimpleRoot = 1e-7;
// A double root moves by the square root of the coefficients' rounding (about 1.5e-8).
constexpr double kDoubleRoot = 1e-6;
// |p(z)| against sum |c_i| |z|^i: a root is exact for coefficients perturbed by this much.
constexpr double kBackward = 1e-13;

CNuPolynomial FromCoefficients(const std::vector<double>& c) {
    CNuPolynomial p(static_cast<int>(c.size()) - 1);
    for (int i = 0; i < static_cast<int>(c.size()); ++i)
        p[i] = c[i];
    return p;
}

// Real coefficients, ascending, of dLead * prod (x - r); complex roots must come in pairs.
std::vector<double> CoefficientsOf(const Roots& roots, double dLead = 1.0) {
    std::vector<Complex> c(1, Complex(dLead, 0.0));
    for (const Complex& r : roots) {
        std::vector<Complex> next(c.size() + 1, Complex(0.0, 0.0));
        for (std::size_t i = 0; i < c.size(); ++i) {
            next[i + 1] += c[i];
            next[i] -= r * c[i];
        }
        c = next;
    }
    std::vector<double> real(c.size());
    for (std::size_t i = 0; i < c.size(); ++i)
        real[i] = c[i].real();
    return real;
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
    std::size_t n = c.size();
    std::vector<double> z(2 * (n - 1));
    gsl_poly_complex_workspace* w = gsl_poly_complex_workspace_alloc(n);
    gsl_poly_complex_solve(c.data(), n, w, z.data());
    gsl_poly_complex_workspace_free(w);
    Roots roots;
    for (std::size_t i = 0; i + 1 < n; ++i)
        roots.emplace_back(z[2 * i], z[2 * i + 1]);
    return roots;
}

// The largest distance from an expected root to its nearest unused computed root; infinity when
// the counts differ.
double MatchError(const Roots& computed, const Roots& expected) {
    if (computed.size() != expected.size()) return std::numeric_limits<double>::infinity();
    std::vector<bool> used(computed.size(), false);
    double dWorst = 0.0;
    for (const Complex& r : expected) {
        double dBest = std::numeric_limits<double>::infinity();
        std::size_t nBest = 0;
        for (std::size_t k = 0; k < computed.size(); ++k) {
            if (!used[k] && std::abs(computed[k] - r) < dBest) {
                dBest = std::abs(computed[k] - r);
                nBest = k;
            }
        }
        if (!std::isfinite(dBest)) return dBest;
        used[nBest] = true;
        dWorst = std::max(dWorst, dBest);
    }
    return dWorst;
}

double BackwardError(const std::vector<double>& c, Complex z) {
    Complex p(0.0, 0.0);
    double dScale = 0.0;
    for (int i = static_cast<int>(c.size()) - 1; i >= 0; --i) {
        p = p * z + c[i];
        dScale = dScale * std::abs(z) + std::fabs(c[i]);
    }
    return std::abs(p) == 0.0 ? 0.0 : std::abs(p) / dScale;
}

// Random roots in [-3, 3] (complex pairs with imaginary parts in [0.2, 3]), no two closer than
// 0.05, nReal of them real.
Roots SeparatedRoots(test::Random& random, int nDegree, int nReal) {
    Roots roots;
    auto farFromAll = [&](Complex z) {
        for (const Complex& r : roots) {
            if (std::abs(r - z) < 0.05) return false;
        }
        return true;
    };
    while (static_cast<int>(roots.size()) < nReal) {
        Complex z(random.Uniform(-3.0, 3.0), 0.0);
        if (farFromAll(z)) roots.push_back(z);
    }
    while (static_cast<int>(roots.size()) < nDegree) {
        Complex z(random.Uniform(-3.0, 3.0), random.Uniform(0.2, 3.0));
        if (farFromAll(z) && farFromAll(std::conj(z))) {
            roots.push_back(z);
            roots.push_back(std::conj(z));
        }
    }
    return roots;
}

void ExpectAscending(const CNuDoubleArray& a) {
    for (int i = 1; i < a.GetSize(); ++i)
        EXPECT_LE(a[i - 1], a[i]) << "real roots " << i - 1 << " and " << i;
}

TEST(AlgEqu, SolvesRandomPolynomialsLikeTheGslOracle) {
    test::Random random;
    for (int nDegree = 1; nDegree <= 12; ++nDegree) {
        for (int nTrial = 0; nTrial < 40; ++nTrial) {
            int nReal = nDegree - 2 * random.Integer(0, nDegree / 2);
            Roots expected = SeparatedRoots(random, nDegree, nReal);
            std::vector<double> c = CoefficientsOf(expected, random.Uniform(0.5, 4.0));
            CNuAlgEqu e;
            e.Solve(FromCoefficients(c));
            Roots computed = AllRoots(e);
            SCOPED_TRACE(testing::Message() << "degree " << nDegree << ", " << nReal << " real");
            EXPECT_EQ(e.GetNumberRealRoots(), nReal);
            EXPECT_EQ(e.GetNumberComplexRoots(), nDegree - nReal);
            EXPECT_LE(MatchError(computed, expected), kSimpleRoot);
            EXPECT_LE(MatchError(computed, GslRoots(c)), kSimpleRoot);
            for (const Complex& z : computed)
                EXPECT_LE(BackwardError(c, z), kBackward) << "root " << z;
            ExpectAscending(e.GetRealRoots());
        }
    }
}

TEST(AlgEqu, LaguerreOrdersComplexRootsByRealPartFromDegreeFive) {
    test::Random random;
    for (int nDegree = 5; nDegree <= 12; ++nDegree) {
        Roots expected = SeparatedRoots(random, nDegree, nDegree % 2);
        CNuAlgEqu e;
        e.Solve(FromCoefficients(CoefficientsOf(expected)));
        CNuComplexArray complex = e.GetComplexRoots();
        for (int i = 1; i < complex.GetSize(); ++i)
            EXPECT_LE(complex[i - 1].Real(), complex[i].Real()) << "degree " << nDegree;
    }
}

TEST(AlgEqu, ZeroClusteredAndDoubleRootsAreFoundWithinTheirConditioning) {
    struct Case {
        const char* pszName;
        Roots roots;
        double dTolerance;
    };
    const Case cases[] = {
        {"roots at zero", {0.0, 0.0, 1.5, -2.0, {0.5, 1.0}, {0.5, -1.0}}, kDoubleRoot},
        {"simple zero, degree 5", {0.0, 1.0, 2.0, 3.0, 4.0}, kSimpleRoot},
        {"cluster", {1.0, 1.001, 1.002, -1.0, 2.5, 0.3}, kSimpleRoot * 10.0},
        {"double real", {1.0, 1.0, 2.0, 3.0, 4.0}, kDoubleRoot},
        {"double real, cubic", {-0.5, -0.5, 2.0}, kDoubleRoot},
        {"double real, quartic", {0.7, 0.7, -1.0, 2.0}, kDoubleRoot},
        {"double pair", {{1.0, 1.0}, {1.0, -1.0}, {1.0, 1.0}, {1.0, -1.0}, 2.0, -2.0}, kDoubleRoot},
        {"wide range", {1e-3, 1.0, 1e3, -20.0, 7.0}, kSimpleRoot * 1e3},
    };
    for (const Case& c : cases) {
        std::vector<double> coefficients = CoefficientsOf(c.roots);
        CNuAlgEqu e;
        e.Solve(FromCoefficients(coefficients));
        Roots computed = AllRoots(e);
        EXPECT_LE(MatchError(computed, c.roots), c.dTolerance) << c.pszName;
        EXPECT_LE(MatchError(computed, GslRoots(coefficients)), c.dTolerance) << c.pszName;
        for (const Complex& z : computed)
            EXPECT_LE(BackwardError(coefficients, z), kBackward) << c.pszName << ": " << z;
        ExpectAscending(e.GetRealRoots());
    }
}

TEST(AlgEqu, ComplexCoefficientsGoThroughLaguerre) {
    test::Random random;
    for (int nDegree = 1; nDegree <= 10; ++nDegree) {
        Roots expected;
        while (static_cast<int>(expected.size()) < nDegree) {
            Complex z(random.Uniform(-3.0, 3.0), random.Uniform(-3.0, 3.0));
            bool bFar = true;
            for (const Complex& r : expected)
                bFar = bFar && std::abs(r - z) > 0.05;
            if (bFar) expected.push_back(z);
        }
        std::vector<Complex> c(1, Complex(1.0, 0.0));
        for (const Complex& r : expected) {
            std::vector<Complex> next(c.size() + 1, Complex(0.0, 0.0));
            for (std::size_t i = 0; i < c.size(); ++i) {
                next[i + 1] += c[i];
                next[i] -= r * c[i];
            }
            c = next;
        }
        CNuComplexArray coefficients(nDegree + 2);
        for (const Complex& z : c)
            coefficients.Add(CNuComplex(z.real(), z.imag()));
        coefficients.Add(CNuComplex(1e-310, 0.0));  // a negligible leading term is trimmed
        CNuAlgEqu e;
        e.Solve(coefficients);
        EXPECT_LE(MatchError(AllRoots(e), expected), kSimpleRoot) << "degree " << nDegree;
        CNuComplexArray complex = e.GetComplexRoots();
        for (int i = 1; i < complex.GetSize(); ++i)
            EXPECT_LE(complex[i - 1].Real(), complex[i].Real());
    }
}

TEST(AlgEqu, ClosedFormsGiveTheirDocumentedResults) {
    CNuAlgEqu e;
    EXPECT_EQ(e.GetType(), CNuObject::eTypeAlgEqu);
    EXPECT_EQ(e.GetNumberRealRoots(), 0);

    e.Solve(FromCoefficients({3.0, -2.0}));
    ASSERT_EQ(e.GetNumberRealRoots(), 1);
    EXPECT_EQ(e.GetRealRoots()[0], 1.5);

    // x^2 - 2x + 1: a zero discriminant, two equal real roots, one distinct.
    e.Solve(FromCoefficients({1.0, -2.0, 1.0}));
    ASSERT_EQ(e.GetNumberRealRoots(), 2);
    EXPECT_EQ(e.GetRealRoots()[0], 1.0);
    EXPECT_EQ(e.GetRealRoots()[1], 1.0);
    EXPECT_EQ(e.GetDistinctRealRoots().GetSize(), 1);

    // x^2 + 1: a complex pair, upper first, and no real roots at all.
    e.Solve(FromCoefficients({1.0, 0.0, 1.0}));
    EXPECT_EQ(e.GetNumberRealRoots(), 0);
    EXPECT_EQ(e.GetRealRoots().GetData(), nullptr);
    ASSERT_EQ(e.GetNumberComplexRoots(), 2);
    EXPECT_EQ(e.GetComplexRoots()[0].Imaginary(), 1.0);
    EXPECT_EQ(e.GetComplexRoots()[1].Imaginary(), -1.0);
    EXPECT_EQ(e.GetComplexRoots()[0].Real(), 0.0);

    // x^3: both the discriminant and q vanish, three roots at 0.
    e.Solve(FromCoefficients({0.0, 0.0, 0.0, 1.0}));
    ASSERT_EQ(e.GetNumberRealRoots(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(e.GetRealRoots()[i], 0.0);
    EXPECT_EQ(e.GetNumberComplexRoots(), 0);

    // x^3 - 1: one real root and the pair from Cardano's positive discriminant.
    e.Solve(FromCoefficients({-1.0, 0.0, 0.0, 1.0}));
    ASSERT_EQ(e.GetNumberRealRoots(), 1);
    EXPECT_EQ(e.GetRealRoots()[0], 1.0);
    ASSERT_EQ(e.GetNumberComplexRoots(), 2);
    EXPECT_GT(e.GetComplexRoots()[0].Imaginary(), 0.0);

    // x^4 - 1: real roots ascending, the complex pair in the order of Ferrari's formula.
    e.Solve(FromCoefficients({-1.0, 0.0, 0.0, 0.0, 1.0}));
    ASSERT_EQ(e.GetNumberRealRoots(), 2);
    EXPECT_EQ(e.GetRealRoots()[0], -1.0);
    EXPECT_EQ(e.GetRealRoots()[1], 1.0);
    ASSERT_EQ(e.GetNumberComplexRoots(), 2);
    EXPECT_EQ(e.GetComplexRoots()[0].Real(), 0.0);
    EXPECT_EQ(e.GetComplexRoots()[0].Imaginary(), 1.0);
    EXPECT_EQ(e.GetComplexRoots()[1].Real(), 0.0);
    EXPECT_EQ(e.GetComplexRoots()[1].Imaginary(), -1.0);
}

TEST(AlgEqu, ADiscriminantNegativeOnlyByRoundingGivesADoubleRoot) {
    // Squares (x - r)^2 whose discriminant rounds below zero while p at the vertex stays below
    // NuGetTol(): they are double real roots, not complex pairs.
    int nFound = 0;
    for (int k = 1; k < 2000 && nFound < 5; ++k) {
        double r = k / 977.0;
        double c2 = 7.0, c1 = -2.0 * c2 * r, c0 = c2 * r * r;
        double dDisc = c1 * c1 - c0 * 4.0 * c2;
        if (!(dDisc < 0.0) || std::fabs(dDisc) < 1e-300) continue;
        ++nFound;
        CNuAlgEqu e;
        e.Solve(FromCoefficients({c0, c1, c2}));
        EXPECT_EQ(e.GetNumberRealRoots(), 2) << "r = " << r;
        EXPECT_EQ(e.GetNumberComplexRoots(), 0) << "r = " << r;
        EXPECT_NEAR(e.GetRealRoots()[0], r, kDoubleRoot);
    }
    EXPECT_EQ(nFound, 5);
}

TEST(AlgEqu, TrimsNegligibleLeadingCoefficientsWithoutChangingThePolynomial) {
    CNuPolynomial p = FromCoefficients({2.0, -3.0, 1.0, 1e-310, -1e-305});
    CNuAlgEqu e;
    e.Solve(p);  // runs the quadratic branch
    EXPECT_EQ(p.GetDegree(), 4);
    ASSERT_EQ(e.GetNumberRealRoots(), 2);
    EXPECT_EQ(e.GetRealRoots()[0], 1.0);
    EXPECT_EQ(e.GetRealRoots()[1], 2.0);
}

TEST(AlgEqu, AConstantLeavesThePreviousRootsInPlace) {
    CNuAlgEqu e;
    e.Solve(FromCoefficients({-6.0, 11.0, -6.0, 1.0}));
    ASSERT_EQ(e.GetNumberRealRoots(), 3);
    e.Solve(FromCoefficients({5.0}));
    e.Solve(FromCoefficients({0.0, 0.0, 0.0}));  // the zero polynomial trims to a constant
    e.Solve(FromCoefficients({1.0, 1e-301}));
    CNuComplexArray constant(2);
    constant.Add(CNuComplex(1.0, 1.0));
    constant.Add(CNuComplex(0.0, 1e-301));
    e.Solve(constant);
    e.Solve(CNuComplexArray());
    ASSERT_EQ(e.GetNumberRealRoots(), 3);
    EXPECT_LE(MatchError(AllRoots(e), {1.0, 2.0, 3.0}), kSimpleRoot);
    CNuAlgEqu copy(e);
    CNuAlgEqu assigned;
    assigned = e;
    EXPECT_EQ(copy.GetRealRoots()[2], e.GetRealRoots()[2]);
    EXPECT_EQ(assigned.GetNumberRealRoots(), 3);
}

TEST(AlgEqu, DistinctRootsMergeOnlyBitEqualValues) {
    CNuAlgEqu e;
    e.Solve(FromCoefficients({1.0, -3.0, 3.0, -1.0}));  // (x - 1)^3: Cardano gives 1 thrice
    EXPECT_EQ(e.GetNumberRealRoots(), 3);
    CNuDoubleArray distinct = e.GetDistinctRealRoots();
    ASSERT_EQ(distinct.GetSize(), 1);
    EXPECT_EQ(distinct[0], 1.0);
    // The double root of (x - 1)^2 (x - 2)(x - 3)(x - 4) comes out as two nearby values, and they
    // stay two.
    e.Solve(FromCoefficients(CoefficientsOf({1.0, 1.0, 2.0, 3.0, 4.0})));
    CNuDoubleArray real = e.GetRealRoots();
    ASSERT_EQ(real.GetSize(), 5);
    ASSERT_NE(real[0], real[1]);
    EXPECT_EQ(e.GetDistinctRealRoots().GetSize(), 5);
    EXPECT_EQ(CNuAlgEqu().GetDistinctRealRoots().GetSize(), 0);
}

TEST(AlgEqu, RealRootsOfComplexCoefficientsAreNotPolished) {
    // The same quintic both ways: Laguerre's real roots as they come, and the polynomial path,
    // whose Newton polish and scan move some of them.
    std::vector<double> c = CoefficientsOf({0.1, 0.7, 1.3, 2.9, -1.7}, 3.0);
    CNuComplexArray complex(6);
    for (double d : c)
        complex.Add(CNuComplex(d, 0.0));
    CNuAlgEqu laguerre, polished;
    laguerre.Solve(complex);
    polished.Solve(FromCoefficients(c));
    ASSERT_EQ(laguerre.GetNumberRealRoots(), 5);
    ASSERT_EQ(polished.GetNumberRealRoots(), 5);
    ExpectAscending(laguerre.GetRealRoots());
    int nMoved = 0;
    for (int i = 0; i < 5; ++i) {
        double dRaw = laguerre.GetRealRoots()[i];
        double dPolished = polished.GetRealRoots()[i];
        EXPECT_NEAR(dPolished, dRaw, kSimpleRoot) << "root " << i;
        EXPECT_LE(BackwardError(c, dPolished), kBackward) << "root " << i;
        nMoved += dPolished != dRaw ? 1 : 0;
    }
    EXPECT_GT(nMoved, 0);
}

TEST(AlgEqu, TheKeptLaguerreStepStallsOnTheTwelfthRootsOfUnity) {
    // Laguerre's step here weighs the second derivative by half. It finds every root of x^n - 1
    // for n up to 16 except n = 12, where one deflated polynomial exhausts the 80 steps from the
    // origin and the best point seen, the origin itself, is taken as a root.
    for (int n : {5, 8, 11, 13, 16}) {
        std::vector<double> c(n + 1, 0.0);
        c[0] = -1.0;
        c[n] = 1.0;
        CNuAlgEqu e;
        e.Solve(FromCoefficients(c));
        for (const Complex& z : AllRoots(e))
            EXPECT_NEAR(std::abs(z), 1.0, kSimpleRoot) << "x^" << n << " - 1";
    }
    std::vector<double> c(13, 0.0);
    c[0] = -1.0;
    c[12] = 1.0;
    CNuAlgEqu e;
    e.Solve(FromCoefficients(c));
    int nOffCircle = 0;
    for (const Complex& z : AllRoots(e))
        nOffCircle += std::fabs(std::abs(z) - 1.0) > 0.5 ? 1 : 0;
    EXPECT_GT(nOffCircle, 0);
}

TEST(AlgEqu, AQuarticWithAnExactDoubleRootFailsInFerrarisSquareRootOfZero) {
    // When a double root makes the discriminant of one of Ferrari's quadratic factors exactly
    // zero, its square root is taken through the polar form, which zero does not have: cause 5.
    // The previous roots stay.
    CNuAlgEqu e;
    e.Solve(FromCoefficients({-2.0, 1.0}));
    test::ExpectNuFailure<CNuConstructionException>(
        [&] {
            e.Solve(FromCoefficients({1.0, -4.0, 6.0, -4.0, 1.0}));
        },
        5, "modulus", "CNuComplexPolar");
    EXPECT_NU_THROW(e.Solve(FromCoefficients({0.0, 0.0, 0.0, 0.0, 1.0})), CNuConstructionException,
                    5);
    EXPECT_NU_THROW(e.Solve(FromCoefficients(CoefficientsOf({0.75, 0.75, -1.0, 2.0}))),
                    CNuConstructionException, 5);
    EXPECT_NU_THROW(e.Solve(FromCoefficients({4.0, -8.0, 8.0, -4.0, 1.0})),  // (x^2 - 2x + 2)^2
                    CNuConstructionException, 5);
    ASSERT_EQ(e.GetNumberRealRoots(), 1);
    EXPECT_EQ(e.GetRealRoots()[0], 2.0);
}

TEST(AlgEqu, NonFiniteCoefficientsEndWithoutHangingOrCrashing) {
    const double dNan = std::numeric_limits<double>::quiet_NaN();
    const double dInf = std::numeric_limits<double>::infinity();
    for (double dBad : {dNan, dInf}) {
        for (int nDegree : {2, 3, 5, 8, 12}) {
            for (int nAt = 0; nAt <= nDegree; nAt += nDegree / 2) {
                std::vector<double> c(nDegree + 1, 1.0);
                c[nAt] = dBad;
                CNuAlgEqu e;
                e.Solve(FromCoefficients(c));
                EXPECT_EQ(e.GetNumberRealRoots() + e.GetNumberComplexRoots(), nDegree)
                    << "degree " << nDegree << ", bad coefficient " << nAt;
            }
        }
        // Ferrari's square roots see a non-finite number, which has no polar form.
        CNuAlgEqu e;
        EXPECT_NU_THROW(e.Solve(FromCoefficients({1.0, 1.0, dBad, 1.0, 1.0})),
                        CNuConstructionException, 5);
        EXPECT_EQ(e.GetNumberRealRoots(), 0);
    }
}

TEST(AlgEqu, HugeAndTinyCoefficientsFollowTheUnscaledFormulas) {
    // The quartic and Laguerre paths divide by the leading coefficient and cope.
    std::vector<double> c = CoefficientsOf({1.0, 2.0, 3.0, 4.0});
    for (double dScale : {1e-200, 1e200}) {
        std::vector<double> scaled = c;
        for (double& d : scaled)
            d *= dScale;
        CNuAlgEqu e;
        e.Solve(FromCoefficients(scaled));
        EXPECT_LE(MatchError(AllRoots(e), {1.0, 2.0, 3.0, 4.0}), kSimpleRoot) << dScale;
    }
    std::vector<double> quintic = CoefficientsOf({1.0, 2.0, 3.0, 4.0, -5.0}, 1e200);
    CNuAlgEqu e;
    e.Solve(FromCoefficients(quintic));
    EXPECT_LE(MatchError(AllRoots(e), {1.0, 2.0, 3.0, 4.0, -5.0}), kSimpleRoot);
    // Laguerre accepts a point where |p| is below NuGetTol()^2 in absolute terms: with
    // coefficients of 1e-200 that is the origin at every deflation, and Newton's polish then
    // carries all five starting points to the root nearest the origin.
    e.Solve(FromCoefficients(CoefficientsOf({1.0, 2.0, 3.0, 4.0, -5.0}, 1e-200)));
    ASSERT_EQ(e.GetNumberRealRoots(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(e.GetRealRoots()[i], 1.0, kSimpleRoot);
    // The quadratic forms c1^2 - 4 c0 c2 unscaled: at 1e-200 it underflows to a zero
    // discriminant, a double root at 1.5, which the scan then carries 20 steps of 2e-9 downhill.
    CNuAlgEqu tiny;
    tiny.Solve(FromCoefficients({2e-200, -3e-200, 1e-200}));
    ASSERT_EQ(tiny.GetNumberRealRoots(), 2);
    EXPECT_EQ(tiny.GetRealRoots()[0], 1.5 + 20 * (4e-8 / 20.0));
    // At 1e200 it overflows to NaN: a complex pair with the right real part and no imaginary one.
    CNuAlgEqu huge;
    huge.Solve(FromCoefficients({2e200, -3e200, 1e200}));
    ASSERT_EQ(huge.GetNumberComplexRoots(), 2);
    EXPECT_EQ(huge.GetComplexRoots()[0].Real(), 1.5);
    EXPECT_TRUE(std::isnan(huge.GetComplexRoots()[0].Imaginary()));
}

}  // namespace
}  // namespace numorix
