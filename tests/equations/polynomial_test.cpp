// Polynomials: Horner evaluation and arithmetic against expanded sums, the simplification rules,
// the refusals; and least-squares fitting: exact recovery, orthogonal residuals, minimum-norm
// solutions, the cut at 1e-10, and the NIST StRD sets Norris, Pontius and Filip.
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "nu_test.h"
#include "numorix/equations/polynomial.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

// Polynomials up to degree 8 with coefficients of order 1 at |x| <= 2, judged against the sum of
// the magnitudes of their terms: a few dozen roundings.
constexpr double kEvaluation = 1e-14;
// Well-conditioned fits of order-1 data on [-1, 2]: the decomposition's rounding amplified by
// the condition of a small Vandermonde matrix.
constexpr double kConditioned = 1e-11;

CNuPolynomial Poly(std::initializer_list<double> coefficients) {
    CNuPolynomial p(static_cast<int>(coefficients.size()) - 1);
    int i = 0;
    for (double d : coefficients)
        p[i++] = d;
    return p;
}

TEST(Polynomial, EvaluationAndArithmeticAgreeWithExpandedSums) {
    test::Random random;
    for (int k = 0; k < 200; ++k) {
        CNuPolynomial p[2] = {CNuPolynomial(random.Integer(0, 4)),
                              CNuPolynomial(random.Integer(0, 4))};
        const double x = random.Uniform(-2.0, 2.0);
        double v[2] = {0, 0}, d[2] = {0, 0}, dScale = 1.0;  // values, slopes, term magnitudes
        for (int j = 0; j < 2; ++j) {
            for (int i = 0; i <= p[j].GetDegree(); ++i) {
                p[j][i] = random.Uniform(-2.0, 2.0);
                v[j] += p[j][i] * std::pow(x, i);
                d[j] += i * p[j][i] * std::pow(x, i - 1);
                dScale += std::fabs(p[j][i]) * std::pow(std::fabs(x), i) * (i + 1) * 4;
            }
        }
        const double dTol = kEvaluation * dScale * dScale;
        EXPECT_NEAR(p[0].ValueAt(x), v[0], dTol);
        EXPECT_NEAR(p[0].DerivativeAt(x), d[0], dTol);
        EXPECT_NEAR((p[0] + p[1]).ValueAt(x), v[0] + v[1], dTol);
        EXPECT_NEAR((p[0] - p[1]).ValueAt(x), v[0] - v[1], dTol);
        EXPECT_NEAR((p[0] * p[1]).ValueAt(x), v[0] * v[1], dTol);
        EXPECT_NEAR((p[0] * p[1]).DerivativeAt(x), d[0] * v[1] + v[0] * d[1], dTol);
        EXPECT_EQ((-p[0]).ValueAt(x), -p[0].ValueAt(x));
    }
}

TEST(Polynomial, SumsAndProductsSimplifyButScalingDoesNot) {
    const CNuPolynomial a = Poly({1.0, 2.0, 3.0});
    EXPECT_EQ((a + Poly({0.5, 1.0, -3.0})).GetDegree(), 1) << "leading terms cancel";
    EXPECT_EQ((a * Poly({1.0, 0.0, 0.0, 2.0})).GetDegree(), 5);
    EXPECT_EQ((a * Poly({1.0, 0.0, 0.0, 1e-301})).GetDegree(), 2);
    EXPECT_EQ((a * 0.0).GetDegree() + (0.0 * a).GetDegree(), 4) << "scaling keeps the degree";
    CNuPolynomial zero(2), t = Poly({1.0, 1e-290});
    zero.Simplify();
    EXPECT_EQ(zero.GetDegree(), 0);
    {
        test::ScopedTolerance guard(NuGetZero, NuSetZero, 1e-280);  // read again at each step
        t.Simplify();
    }
    EXPECT_EQ(t.GetDegree(), 0);
    // Adding a number changes the constant term only.
    EXPECT_EQ(std::vector<double>({(a + 2.0)[0], (a + 2.0)[2], (a - 1.0)[0], (a / 2.0)[2]}),
              std::vector<double>({3.0, 3.0, 0.0, 1.5}));
    EXPECT_FALSE(Poly({0.0, 0.0, 1.0, 0.0}).IsEqual(Poly({0.0, 0.0, 1.0}), 1.0))
        << "degrees differ";
    EXPECT_FALSE(Poly({0.0, 0.0, 1.0}).IsEqual(Poly({0.0, 0.5, 1.0}), 0.5)) << "strictly";
    EXPECT_TRUE(Poly({1e-13, -1e-13}).IsZero(1e-12));
    EXPECT_FALSE(Poly({1e-13, 1e-12}).IsZero(1e-12));
}

TEST(Polynomial, RefusalsCarryTheirCausesStringsAndRange) {
    CNuPolynomial a = Poly({1.0, 2.0});
    test::ExpectNuFailure<CNuConstructionException>([] { CNuPolynomial q(-1); }, 2, "degree",
                                                    "CNuPolynomial");
    test::ExpectFailures<CNuOperationException>({
        {[&] { a[2] = 1.0; }, 103, "element operator[]", "CNuPolynomial", 0, 1},
        {[&] { a * 1e301; }, 107, "operator*", "CNuPolynomial"},
        {[&] { -1e301 * a; }, 107, "operator*", "CNuPolynomial"},
        {[&] { a *= 1e301; }, 107, "operator*=", "CNuPolynomial"},
        {[&] { a / 1e-301; }, 106, "operator/", "CNuPolynomial"},
        {[&] { a /= 0.0; }, 106, "operator/=", "CNuPolynomial"},
    });
    EXPECT_EQ(a[1], 2.0) << "refused scalings leave the coefficients";
}

TEST(PolynomialFit, RecoversPolynomialsExactlyAndGivesMinimumNormSolutions) {
    test::Random random;
    for (int nDegree = 0; nDegree <= 5; ++nDegree) {
        CNuPolynomial expected(nDegree), p(nDegree);
        for (int k = 0; k <= nDegree; ++k)
            expected[k] = random.Uniform(0.5, 2.0) * (random.Integer(0, 1) ? 1.0 : -1.0);
        CNuDoubleArray x, y;
        for (int i = 0; i < 3 * (nDegree + 1); ++i) {
            x.Add(random.Uniform(-1.0, 2.0));
            y.Add(expected.ValueAt(x.Last()));
        }
        double dChiSquare = -1.0;
        p.Fit(x, y, &dChiSquare);
        EXPECT_TRUE(p.IsEqual(expected, kConditioned)) << "degree " << nDegree;
        EXPECT_EQ(dChiSquare, 0.0) << "degree " << nDegree;  // below NuGetTol(): exactly 0
    }
    CNuPolynomial line(1), square(2);  // of all c0 + c1 = 2, the shortest is (1, 1)
    line.Fit(test::Doubles({1.0}), test::Doubles({2.0}));
    square.Fit(test::Doubles({-1.0, 1.0}), test::Doubles({1.0, 1.0}));  // 0.5 + 0.5 x^2
    EXPECT_TRUE(line.IsEqual(Poly({1.0, 1.0}), kConditioned) &&
                square.IsEqual(Poly({0.5, 0.0, 0.5}), kConditioned));
    test::ExpectNuFailure<CNuOperationException>(
        [&] {
            line.Fit(test::Doubles({1.0, 2.0}), test::Doubles({1.0}));
        },
        105, "data checking", "CNuPolynomial::Fit()");
    test::ExpectNuFailure<CNuConstructionException>(
        [&] { line.Fit(CNuDoubleArray(), CNuDoubleArray()); }, 1, "number of rows/columns",
        "CNuMatrix");
}

// A NIST StRD regression set: data (y x) from line 61, the certified estimates B0.. and the
// certified residual sum of squares from the analysis of variance table.
struct SNistSet {
    CNuDoubleArray x, y;
    std::vector<double> certified;
    double dResidualSS = 0.0;
};

SNistSet ReadNist(const std::string& sName) {
    std::ifstream in(std::string(NUMORIX_EQUATIONS_DATA_DIR) + "/" + sName + ".dat");
    SNistSet set;
    int nLine = 0, k = 0;
    double a = 0.0, b = 0.0;
    for (std::string s; std::getline(in, s);) {
        if (++nLine > 60 && std::sscanf(s.c_str(), "%lf %lf", &a, &b) == 2) {
            set.y.Add(a);
            set.x.Add(b);
        } else if (std::sscanf(s.c_str(), " B%d %lf", &k, &a) == 2) {
            set.certified.push_back(a);
        } else if (std::sscanf(s.c_str(), "Residual %d %lf", &k, &a) == 2) {
            set.dResidualSS = a;
        }
    }
    return set;
}

// Norris is fitted to its certified values. Pontius: x runs to 3e6, so the column of ones is some
// 1e-13 of the column of x^2, and its singular direction falls under the cut at 1e-10 of the
// largest; B0 of the minimum-norm solution then lies below the literal 1e-10 for coefficients, as
// does the certified B2 (-3.2e-15): both become zero, leaving a line through the origin with B1
// within 0.12 % of the certified slope. Filip: degree 10, whose singular values span far more
// than the 1e-10 the fit keeps; the truncated solution shares nothing with the certified
// coefficients, not even the sign of B0 (certified -1467), yet its residual is only about twice
// the certified one.
TEST(PolynomialFit, CertifiedSetsComeAsCloseAsTheCutAllows) {
    const struct {
        const char* pszName;
        int nPoints;
        std::vector<std::pair<double, double>> ratios;  // fitted / certified coefficient, +-
        double dResidualLow, dResidualHigh;             // bounds of chi-square / certified
    } cases[] = {
        {"Norris", 36, {{1.0, 1e-12}, {1.0, 1e-12}}, 1.0 - 1e-12, 1.0 + 1e-12},
        {"Pontius", 40, {{0.0, 0.0}, {1.0, 2e-3}, {0.0, 0.0}}, 5000.0, 1e300},
        {"Filip", 82, {{-1.0, 1.0}}, 1.0, 2.5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszName);
        const SNistSet set = ReadNist(c.pszName);
        ASSERT_EQ(set.x.GetSize(), c.nPoints);
        CNuPolynomial p(static_cast<int>(set.certified.size()) - 1);
        double dChiSquare = 0.0;
        p.Fit(set.x, set.y, &dChiSquare);
        for (std::size_t i = 0; i < c.ratios.size(); ++i)
            EXPECT_NEAR(p[static_cast<int>(i)] / set.certified[i], c.ratios[i].first,
                        c.ratios[i].second)
                << "B" << i;
        EXPECT_GE(dChiSquare / set.dResidualSS, c.dResidualLow);
        EXPECT_LE(dChiSquare / set.dResidualSS, c.dResidualHigh);
    }
}

}  // namespace
}  // namespace numorix
