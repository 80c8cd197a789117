// Polynomials: Horner evaluation and arithmetic against expanded sums, the simplification rules
// and the refusals; least-squares fitting against the NIST StRD sets Norris,
// Pontius and Filip, where the cuts at 1e-10 decide how close the fit comes to the certified
// values. Also intervals, whose bounds must ascend and whose membership and overlap are closed
// whatever the open flags say.
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

#include "nu_test.h"
#include "numorix/equations/interval.h"
#include "numorix/equations/polynomial.h"

namespace numorix {
namespace {

// A polynomial from its coefficients, ascending.
CNuPolynomial Poly(const std::vector<double>& c) {
    CNuPolynomial p(static_cast<int>(c.size()) - 1);
    for (int i = 0; i <= p.GetDegree(); ++i)
        p[i] = c[i];
    return p;
}

TEST(Polynomial, EvaluationAndArithmeticAgreeExactlyWithExpandedSums) {
    // Small integer coefficients at multiples of 1/4: every value below is exact.
    test::Random random;
    for (int k = 0; k < 200; ++k) {
        const double x = random.Integer(-8, 8) / 4.0;
        CNuPolynomial p(random.Integer(0, 4)), q(random.Integer(0, 4));
        double v[2] = {0, 0}, d[2] = {0, 0};  // values and slopes of p and q
        for (CNuPolynomial* pp : {&p, &q}) {
            for (int i = 0; i <= pp->GetDegree(); ++i) {
                (*pp)[i] = random.Integer(-3, 3);
                v[pp == &q] += (*pp)[i] * std::pow(x, i);
                d[pp == &q] += i == 0 ? 0.0 : i * (*pp)[i] * std::pow(x, i - 1);
            }
        }
        EXPECT_EQ(std::vector<double>({p.ValueAt(x), p.DerivativeAt(x), (p + q).ValueAt(x),
                                       (p - q).ValueAt(x), (p * q).ValueAt(x),
                                       (p * q).DerivativeAt(x), (-p).ValueAt(x)}),
                  std::vector<double>({v[0], d[0], v[0] + v[1], v[0] - v[1], v[0] * v[1],
                                       d[0] * v[1] + v[0] * d[1], -v[0]}))
            << "x = " << x;
    }
}

TEST(Polynomial, SimplifiesSumsAndProductsComparesStrictlyAndRefusesWithItsCauses) {
    const CNuPolynomial a = Poly({1.0, 2.0, 3.0});
    // Degrees after sums and products, which simplify, and after scaling, which does not; then
    // IsZero and IsEqual, both strict, the second also on the degrees.
    EXPECT_EQ(
        std::vector<int>({(a + Poly({0.5, 1.0, -3.0})).GetDegree(),
                          (a * Poly({1.0, 0.0, 2.0})).GetDegree(),
                          (a * Poly({1.0, 0.0, 1e-301})).GetDegree(), (a * 0.0).GetDegree(),
                          Poly({1e-13, -1e-13}).IsZero(1e-12), Poly({1e-13, 1e-12}).IsZero(1e-12),
                          a.IsEqual(a + 0.49, 0.5), a.IsEqual(a + 0.5, 0.5),
                          a.IsEqual(Poly({1.0, 2.0, 3.0, 0.0}), 1.0)}),
        std::vector<int>({1, 4, 2, 2, 1, 0, 1, 0, 0}));
    EXPECT_EQ(std::vector<double>({(a + 2.0)[0], (a + 2.0)[2], (a - 1.0)[0], (a / 2.0)[2],
                                   (CNuPolynomial(a) -= 4.0)[0], (CNuPolynomial(a) += 4.0)[0],
                                   (CNuPolynomial(a) *= 2.0)[2]}),
              std::vector<double>({3.0, 3.0, 0.0, 1.5, -3.0, 5.0, 6.0}));
    CNuPolynomial b = Poly({1.0, 2.0});
    const CNuDoubleArray two = test::Doubles({1, 2}), one = test::Doubles({1});
    test::ExpectNuFailure<CNuConstructionException>([] { CNuPolynomial q(-1); }, 2, "degree",
                                                    "CNuPolynomial");
    test::ExpectFailures<CNuOperationException>({
        {[&] { b[2] = 1.0; }, 103, "element operator[]", "CNuPolynomial", 0, 1},
        {[&] { b *= 1e301; }, 107, "operator*=", "CNuPolynomial"},
        {[&] { b / 1e-301; }, 106, "operator/", "CNuPolynomial"},
        {[&] { b.Fit(two, one); }, 105, "data checking", "CNuPolynomial::Fit()"},
    });
    EXPECT_EQ(b[1], 2.0) << "refused scalings leave the coefficients";
}

// Norris is fitted to its certified values.
// Pontius: x runs to 3e6, so the column of ones is some 1e-13 of the column of x^2, and its
// singular direction falls under the cut at 1e-10 of the largest; B0 of the minimum-norm solution
// then lies below the literal 1e-10 for coefficients, as does the certified B2 (-3.2e-15): both
// become zero, leaving a line through the origin with B1 within 0.12 % of the certified slope and
// a residual over 5000 times the certified one. Filip: degree 10, whose singular values span far
// more than the 1e-10 the fit keeps; the truncated solution shares nothing with the certified
// coefficients, not even the sign of B0 (certified -1467), yet its residual is only about twice
// the certified one.
TEST(PolynomialFit, ComesAsCloseToCertifiedSetsAsTheCutsAllow) {
    const struct {
        const char* pszName;
        std::vector<double> ratios, tolerances;  // fitted / certified coefficient, and +-
        double dResidualLow, dResidualHigh;      // bounds of chi-square / certified
    } cases[] = {
        {"Norris", {1.0, 1.0}, {1e-12, 1e-12}, 1.0 - 1e-12, 1.0 + 1e-12},
        {"Pontius", {0.0, 1.0, 0.0}, {0.0, 2e-3, 0.0}, 5000.0, 1e300},
        {"Filip", {-1.0}, {1.0}, 1.0, 2.5},
    };
    for (const auto& c : cases) {
        // The certified estimates B0.., the residual sum of squares of the analysis of variance,
        // and from line 61 the data, y then x.
        std::ifstream in(std::string(NUMORIX_EQUATIONS_DATA_DIR) + "/" + c.pszName + ".dat");
        CNuDoubleArray x, y, certified;
        double a = 0.0, b = 0.0, dResidualSS = 0.0, dChiSquare = 0.0;
        int nLine = 0, k = 0;
        for (std::string s; std::getline(in, s);) {
            if (++nLine > 60 && std::sscanf(s.c_str(), "%lf %lf", &a, &b) == 2) {
                y.Add(a);
                x.Add(b);
            } else if (std::sscanf(s.c_str(), " B%d %lf", &k, &a) == 2) {
                certified.Add(a);
            }
            std::sscanf(s.c_str(), "Residual %d %lf", &k, &dResidualSS);
        }
        CNuPolynomial p(certified.GetSize() - 1);
        p.Fit(x, y, &dChiSquare);
        for (int i = 0; i < static_cast<int>(c.ratios.size()); ++i)
            EXPECT_NEAR(p[i] / certified[i], c.ratios[i], c.tolerances[i]) << c.pszName << i;
        const double dResidual = dChiSquare / dResidualSS;
        EXPECT_TRUE(dResidual >= c.dResidualLow && dResidual <= c.dResidualHigh) << dResidual;
    }
}

TEST(Interval, RefusesBoundsThatDoNotAscendAndIsClosedEvenWhenFlaggedOpen) {
    EXPECT_NU_THROW(CNuInterval(1.0, 1.0, 0, 0), CNuConstructionException, 11);
    const CNuInterval open(0.0, 1.0, 1, 1), touching(1.0, 2.0, 1, 1), apart(1.5, 2.0, 0, 0);
    EXPECT_EQ(std::vector<int>({open.IsIn(0.0), open.IsIn(1.0), open.IsIn(1.0 + 1e-15),
                                open.IsOverlapping(touching), touching.IsOverlapping(open),
                                open.IsOverlapping(apart), apart.IsOverlapping(open)}),
              std::vector<int>({1, 1, 0, 1, 1, 0, 0}));
}

}  // namespace
}  // namespace numorix
