// The algebraic equation solver: roots of polynomials built from known roots, checked against
// those roots and by their backward error; the separation into real and complex roots and their
// order; and the exact results of the closed forms, trimming, the kept Laguerre step and bad
// coefficients.
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
        c.insert(c.begin(), 0.0);
        for (std::size_t i = 0; i + 1 < c.size(); ++i)
            c[i] -= r * c[i + 1];
    }
    return c;
}

// The real polynomial whose complex roots come in conjugate pairs, solved.
CNuAlgEqu Solved(const std::vector<Complex>& c) {
    CNuPolynomial p(static_cast<int>(c.size()) - 1);
    for (int i = 0; i <= p.GetDegree(); ++i)
        p[i] = c[i].real();
    CNuAlgEqu e;
    e.Solve(p);
    return e;
}

Roots AllRoots(const CNuAlgEqu& e) {
    Roots roots;
    for (double d : test::Elements(e.GetRealRoots()))
        roots.emplace_back(d, 0.0);
    CNuComplexArray complex = e.GetComplexRoots();
    for (int i = 0; i < complex.GetSize(); ++i)
        roots.emplace_back(complex[i].Real(), complex[i].Imaginary());
    return roots;
}

// The farthest any root of a lies from the nearest root of b.
double Farthest(const Roots& a, const Roots& b) {
    double d = 0.0;
    for (const Complex& z : a) {
        double dNearest = std::numeric_limits<double>::infinity();
        for (const Complex& w : b)
            dNearest = std::min(dNearest, std::abs(z - w));
        d = std::max(d, dNearest);
    }
    return d;
}

// Both ways; infinite when the counts differ.
double Distance(const Roots& a, const Roots& b) {
    if (a.size() != b.size()) return std::numeric_limits<double>::infinity();
    return std::max(Farthest(a, b), Farthest(b, a));
}

// Checks the roots against the expected ones and by their backward error, and their order.
void ExpectGoodRoots(const CNuAlgEqu& e, const Roots& expected, double dTol) {
    const std::vector<Complex> c = Expand(expected);
    for (const Complex& z : AllRoots(e)) {
        Complex p = 0.0;
        double dScale = 0.0;
        for (std::size_t i = c.size(); i-- > 0;) {
            p = p * z + c[i].real();
            dScale = dScale * std::abs(z) + std::fabs(c[i].real());
        }
        EXPECT_LE(std::abs(p), kBackward * dScale) << "root " << z;
    }
    EXPECT_LE(Distance(AllRoots(e), expected), dTol);
    const std::vector<double> real = test::Elements(e.GetRealRoots());
    EXPECT_TRUE(std::is_sorted(real.begin(), real.end()));
    CNuComplexArray complex = e.GetComplexRoots();
    for (int i = 1; i < complex.GetSize() && expected.size() >= 5; ++i)
        EXPECT_LE(complex[i - 1].Real(), complex[i].Real()) << "complex roots out of order";
}

TEST(AlgEqu, SolvesRandomPolynomialsOfEveryDegreeUpToTwelve) {
    test::Random random;
    for (int nDegree = 1; nDegree <= 12; ++nDegree) {
        for (int nTrial = 0; nTrial < 40; ++nTrial) {
            // Real roots and conjugate pairs in [-3, 3] x [0.2, 3], no two closer than 0.05.
            const int nReal = nDegree - 2 * random.Integer(0, nDegree / 2);
            Roots roots;
            while (static_cast<int>(roots.size()) < nDegree) {
                const bool bReal = static_cast<int>(roots.size()) < nReal;
                const Complex z(random.Uniform(-3, 3), bReal ? 0.0 : random.Uniform(0.2, 3.0));
                if (Farthest({z}, roots) < 0.05 || Farthest({std::conj(z)}, roots) < 0.05) continue;
                roots.push_back(z);
                if (!bReal) roots.push_back(std::conj(z));
            }
            const CNuAlgEqu e = Solved(Expand(roots, random.Uniform(0.5, 4.0)));
            SCOPED_TRACE(testing::Message() << "degree " << nDegree << ", " << nReal << " real");
            EXPECT_EQ(e.GetNumberRealRoots(), nReal);
            ExpectGoodRoots(e, roots, kSimpleRoot);
        }
    }
}

TEST(AlgEqu, FindsZeroClusteredAndMultipleRootsWithinTheirConditioning) {
    // A double root can make one of Ferrari's quadratic factors exactly zero; its one square
    // root, 0, takes the place of the pair. A k-fold root is found to about eps^(1/k).
    const Complex i(0.0, 1.0);
    const struct {
        const char* pszName;
        Roots roots;
        double dTol;
    } cases[] = {
        {"double zero", {0.0, 0.0, 1.5, -2.0, 0.5 + i, 0.5 - i}, kDoubleRoot},
        {"simple zero", {0.0, 1.0, 2.0, 3.0, 4.0}, kSimpleRoot},
        {"cluster", {1.0, 1.001, 1.002, -1.0, 2.5, 0.3}, 10 * kSimpleRoot},
        {"double real", {1.0, 1.0, 2.0, 3.0, 4.0}, kDoubleRoot},
        {"double real, cubic", {-0.5, -0.5, 2.0}, kDoubleRoot},
        {"double real, quartic", {0.75, 0.75, -1.0, 2.0}, kDoubleRoot},
        {"double pair", {1.0 + i, 1.0 - i, 1.0 + i, 1.0 - i, 2.0, -2.0}, kDoubleRoot},
        {"double pair, quartic", {1.0 + i, 1.0 - i, 1.0 + i, 1.0 - i}, kDoubleRoot},
        {"x^4", {0.0, 0.0, 0.0, 0.0}, 0.0},
        {"(x - 1)^4", {1.0, 1.0, 1.0, 1.0}, 1e-3},
        {"wide range", {1e-3, 1.0, 1e3, -20.0, 7.0}, 1e3 * kSimpleRoot},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszName);
        ExpectGoodRoots(Solved(Expand(c.roots)), c.roots, c.dTol);
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
        EXPECT_LE(Distance(AllRoots(e), expected), kSimpleRoot) << "degree " << nDegree;
        CNuComplexArray complex = e.GetComplexRoots();
        for (int i = 1; i < complex.GetSize(); ++i)
            EXPECT_LE(complex[i - 1].Real(), complex[i].Real()) << "degree " << nDegree;
    }
}

TEST(AlgEqu, ClosedFormsTrimmingAndConstantsGiveTheirExactResults) {
    EXPECT_EQ(AllRoots(Solved({3.0, -2.0})), Roots{1.5});
    // x^2 + 1: the upper root first, and no real roots at all.
    EXPECT_EQ(Solved({1.0, 0.0, 1.0}).GetRealRoots().GetData(), nullptr);
    EXPECT_EQ(AllRoots(Solved({1.0, 0.0, 1.0})), (Roots{{0.0, 1.0}, {0.0, -1.0}}));
    // x^4 - 1: Ferrari's order for the pair.
    EXPECT_EQ(AllRoots(Solved({-1.0, 0.0, 0.0, 0.0, 1.0})),
              (Roots{-1.0, 1.0, {0.0, 1.0}, {0.0, -1.0}}));
    // Distinct roots merge only bit-equal values: (x - 1)^3, then a double root found as two.
    EXPECT_EQ(AllRoots(Solved({1.0, -2.0, 1.0})), (Roots{1.0, 1.0})) << "zero discriminant";
    EXPECT_EQ(Solved({-1.0, 3.0, -3.0, 1.0}).GetDistinctRealRoots().GetSize(), 1);
    EXPECT_EQ(Solved(Expand({1.0, 1.0, 2.0, 3.0, 4.0})).GetDistinctRealRoots().GetSize(), 5);
    // 7 (x - r)^2 whose discriminant rounds below zero stays a double real root.
    const double r = 1.0 / 977.0;
    EXPECT_EQ(Solved({7.0 * r * r, -14.0 * r, 7.0}).GetNumberRealRoots(), 2);
    // Negligible leading terms are trimmed; a constant leaves the previous roots, also in copies.
    CNuAlgEqu e = Solved({2.0, -3.0, 1.0, 1e-310, -1e-305});
    EXPECT_EQ(AllRoots(e), (Roots{1.0, 2.0}));
    CNuPolynomial constant(2);
    constant[0] = 5.0;
    e.Solve(constant);
    CNuComplexArray complexConstant(2);
    complexConstant.Add(CNuComplex(1.0, 1.0));
    complexConstant.Add(CNuComplex(0.0, 1e-301));
    e.Solve(complexConstant);
    EXPECT_EQ(AllRoots(CNuAlgEqu(e)), (Roots{1.0, 2.0}));
}

TEST(AlgEqu, TheKeptLaguerreStepStallsOnTheTwelfthRootsOfUnity) {
    // The step weighs the second derivative by half. It finds all roots of x^n - 1 for the
    // degrees below, but for n = 12 one deflated polynomial exhausts the 80 steps from the
    // origin, and the best point seen, the origin itself, is taken as a root.
    for (int n : {5, 8, 11, 12, 13, 16}) {
        std::vector<Complex> c(n + 1, 0.0);
        c[0] = -1.0;
        c[n] = 1.0;
        int nOffCircle = 0;
        for (const Complex& z : AllRoots(Solved(c)))
            nOffCircle += std::fabs(std::abs(z) - 1.0) > kSimpleRoot ? 1 : 0;
        EXPECT_EQ(nOffCircle > 0, n == 12) << "x^" << n << " - 1";
    }
}

TEST(AlgEqu, NonFiniteCoefficientsEndWithoutHangingWithAllTheirRoots) {
    // Degree 4 with c2 not a number is Ferrari's non-finite factor: four roots that are not
    // numbers, and no failure.
    for (double dBad : {std::numeric_limits<double>::quiet_NaN(), HUGE_VAL}) {
        for (int nDegree : {2, 3, 4, 5, 8, 12}) {
            for (int nAt = 0; nAt <= nDegree; nAt += nDegree / 2) {
                std::vector<Complex> c(nDegree + 1, 1.0);
                c[nAt] = dBad;
                const CNuAlgEqu e = Solved(c);
                EXPECT_EQ(e.GetNumberRealRoots() + e.GetNumberComplexRoots(), nDegree)
                    << "degree " << nDegree << ", bad coefficient " << nAt;
            }
        }
    }
}

TEST(AlgEqu, HugeAndTinyLeadingCoefficientsScaleAway) {
    const Roots four = {1.0, 2.0, 3.0, 4.0}, five = {1.0, 2.0, 3.0, 4.0, -5.0};
    ExpectGoodRoots(Solved(Expand(four, 1e200)), four, kSimpleRoot);
    EXPECT_LE(Distance(AllRoots(Solved(Expand(four, 1e-200))), four), kSimpleRoot);
    EXPECT_LE(Distance(AllRoots(Solved(Expand(five, 1e200))), five), kSimpleRoot);
    // Laguerre accepts |p| below NuGetTol()^2 in absolute terms: with coefficients of 1e-200
    // that is the origin at every deflation, and Newton's polish carries all five to 1.
    EXPECT_LE(Distance(AllRoots(Solved(Expand(five, 1e-200))), Roots(5, 1.0)), kSimpleRoot);
    // The quadratic's c1^2 - 4 c0 c2 overflows to NaN at 1e200: a pair at 1.5 that is not a number.
    const CNuAlgEqu huge = Solved({2e200, -3e200, 1e200});
    ASSERT_EQ(huge.GetNumberComplexRoots(), 2);
    EXPECT_EQ(huge.GetComplexRoots()[0].Real(), 1.5);
    EXPECT_TRUE(std::isnan(huge.GetComplexRoots()[0].Imaginary()));
}

}  // namespace
}  // namespace numorix
