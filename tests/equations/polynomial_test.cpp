// Polynomials: Horner evaluation and arithmetic against expanded sums, the simplification rules,
// and the refusals.
#include <cmath>

#include "nu_test.h"
#include "numorix/equations/polynomial.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

// Polynomials up to degree 8 with coefficients of order 1 at |x| <= 2, judged against the sum of
// the magnitudes of their terms: a few dozen roundings.
constexpr double kEvaluation = 1e-14;

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
        CNuPolynomial copy(p[0]);
        copy[0] += 1.0;
        EXPECT_NE(copy[0], p[0][0]) << "copies are deep";
    }
}

TEST(Polynomial, SumsAndProductsSimplifyButScalingDoesNot) {
    const CNuPolynomial a = Poly({1.0, 2.0, 3.0});
    const struct {
        CNuPolynomial p;
        int nDegree;
    } cases[] = {
        {CNuPolynomial(2), 2},
        {a + Poly({0.5, 1.0, -3.0}), 1},  // leading terms cancel
        {a * Poly({1.0, 0.0, 0.0, 2.0}), 5},
        {a * Poly({1.0, 0.0, 0.0, 1e-301}), 2},
        {a * 0.0, 2},
        {0.0 * a, 2},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.p.GetDegree(), c.nDegree) << c.p[0];
    CNuPolynomial zero(2), t = Poly({1.0, 1e-290});
    zero.Simplify();
    EXPECT_EQ(zero.GetDegree(), 0);
    {
        test::ScopedTolerance guard(NuGetZero, NuSetZero, 1e-280);  // read again at each step
        t.Simplify();
    }
    EXPECT_EQ(t.GetDegree(), 0);
    // Adding a number changes the constant term only.
    EXPECT_EQ(
        test::Elements(test::Doubles({(a + 2.0)[0], (a + 2.0)[2], (a - 1.0)[0], (a / 2.0)[2]})),
        (std::vector<double>{3.0, 3.0, 0.0, 1.5}));
    EXPECT_FALSE(Poly({0.0, 0.0, 1.0, 0.0}).IsEqual(Poly({0.0, 0.0, 1.0}), 1.0))
        << "degrees differ";
    EXPECT_TRUE(Poly({0.0, 0.0, 1.0}).IsEqual(Poly({0.0, 1e-13, 1.0}), 1e-12));
    EXPECT_FALSE(Poly({0.0, 0.0, 1.0}).IsEqual(Poly({0.0, 0.5, 1.0}), 0.5));
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

}  // namespace
}  // namespace numorix
