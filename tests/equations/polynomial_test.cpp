// Polynomials: Horner evaluation and arithmetic against expanded sums, the simplification rules,
// and every refusal with its stored cause and strings.
#include <cmath>

#include "nu_test.h"
#include "numorix/equations/polynomial.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// Polynomials up to degree 8 with coefficients of order 1 at |x| <= 2, judged against the sum of
// the magnitudes of their terms: a few dozen roundings.
constexpr double kEvaluation = 1e-14;

CNuPolynomial Make(std::initializer_list<double> coefficients) {
    CNuPolynomial p(static_cast<int>(coefficients.size()) - 1);
    int i = 0;
    for (double d : coefficients)
        p[i++] = d;
    return p;
}

CNuPolynomial Random(test::Random& random, int nDegree) {
    CNuPolynomial p(nDegree);
    for (int i = 0; i <= nDegree; ++i)
        p[i] = random.Uniform(-2.0, 2.0);
    return p;
}

// The expanded sum of p and of p' at x, and the sum of the magnitudes of the terms of p.
void Expanded(const CNuPolynomial& p, double x, double* pdValue, double* pdSlope, double* pdScale) {
    *pdValue = *pdSlope = 0.0;
    *pdScale = 1.0;
    for (int i = 0; i <= p.GetDegree(); ++i) {
        *pdValue += p[i] * std::pow(x, i);
        *pdScale += std::fabs(p[i]) * std::pow(std::fabs(x), i) * (i + 1);
        if (i > 0) *pdSlope += i * p[i] * std::pow(x, i - 1);
    }
}

TEST(Polynomial, EvaluationAndArithmeticAgreeWithExpandedSums) {
    test::Random random;
    for (int k = 0; k < 200; ++k) {
        CNuPolynomial a = Random(random, random.Integer(0, 4));
        CNuPolynomial b = Random(random, random.Integer(0, 4));
        double x = random.Uniform(-2.0, 2.0);
        double dValue, dSlope, dScale, dValueB, dSlopeB, dScaleB;
        Expanded(a, x, &dValue, &dSlope, &dScale);
        Expanded(b, x, &dValueB, &dSlopeB, &dScaleB);
        const double dTol = kEvaluation * dScale * dScaleB;
        EXPECT_NEAR(a.ValueAt(x), dValue, dTol);
        EXPECT_NEAR(a.DerivativeAt(x), dSlope, dTol);
        EXPECT_NEAR((a + b).ValueAt(x), dValue + dValueB, dTol);
        EXPECT_NEAR((a - b).ValueAt(x), dValue - dValueB, dTol);
        EXPECT_NEAR((a * b).ValueAt(x), dValue * dValueB, dTol);
        EXPECT_NEAR((a * b).DerivativeAt(x), dSlope * dValueB + dValue * dSlopeB, 8 * dTol);
        EXPECT_EQ((-a).ValueAt(x), -a.ValueAt(x));
        CNuPolynomial copy(a);
        copy[0] += 1.0;  // copies are deep
        EXPECT_NE(copy[0], a[0]);
    }
}

TEST(Polynomial, SumsAndProductsSimplifyButScalingDoesNot) {
    CNuPolynomial zero(2);
    zero.Simplify();
    EXPECT_EQ(zero.GetDegree(), 0);
    CNuPolynomial a = Make({1.0, 2.0, 3.0});
    EXPECT_EQ((a + Make({0.5, 1.0, -3.0})).GetDegree(), 1);  // leading terms cancel
    EXPECT_EQ((a * Make({1.0, 0.0, 0.0, 2.0})).GetDegree(), 5);
    EXPECT_EQ((a * Make({1.0, 0.0, 0.0, 1e-301})).GetDegree(), 2);
    EXPECT_EQ((a * 0.0).GetDegree(), 2);
    EXPECT_EQ((0.0 * a).GetDegree(), 2);
    CNuPolynomial t = Make({1.0, 1e-290});
    NuSetZero(1e-280);  // read again at each step
    t.Simplify();
    NuSetZero(1e-300);
    EXPECT_EQ(t.GetDegree(), 0);
    // Adding a number changes the constant term only.
    CNuPolynomial d = a + 2.0;
    EXPECT_EQ(d[0], 3.0);
    EXPECT_EQ(d[2], 3.0);
    d -= 3.0;
    EXPECT_EQ(d[0], 0.0);
    EXPECT_EQ((a - 1.0)[0], 0.0);
    EXPECT_EQ((a / 2.0)[2], 1.5);
}

TEST(Polynomial, EqualityNeedsTheSameDegreeAndStrictDifferences) {
    EXPECT_FALSE(Make({0.0, 0.0, 1.0, 0.0}).IsEqual(Make({0.0, 0.0, 1.0}), 1.0));
    EXPECT_TRUE(Make({0.0, 0.0, 1.0}).IsEqual(Make({0.0, 1e-13, 1.0}), 1e-12));
    EXPECT_FALSE(Make({0.0, 0.0, 1.0}).IsEqual(Make({0.0, 0.5, 1.0}), 0.5));
    EXPECT_TRUE(Make({1e-13, -1e-13}).IsZero(1e-12));
    EXPECT_FALSE(Make({1e-13, 1e-12}).IsZero(1e-12));
}

TEST(Polynomial, RefusalsCarryTheirCausesAndStrings) {
    ExpectNuFailure<CNuConstructionException>([] { CNuPolynomial q(-1); }, 2, "degree",
                                              "CNuPolynomial");
    CNuPolynomial a = Make({1.0, 2.0});
    try {
        a[2] = 1.0;
        ADD_FAILURE() << "no exception";
    } catch (const CNuOperationException& e) {
        EXPECT_EQ(e.m_nCause, 103);
        EXPECT_STREQ(e.m_szName, "element operator[]");
        EXPECT_STREQ(e.m_szLocation, "CNuPolynomial");
        EXPECT_EQ(e.m_nValue2, 1);
    }
    ExpectNuFailure<CNuOperationException>([&] { a * 1e301; }, 107, "operator*", "CNuPolynomial");
    ExpectNuFailure<CNuOperationException>([&] { -1e301 * a; }, 107, "operator*", "CNuPolynomial");
    ExpectNuFailure<CNuOperationException>([&] { a *= 1e301; }, 107, "operator*=", "CNuPolynomial");
    ExpectNuFailure<CNuOperationException>([&] { a / 1e-301; }, 106, "operator/", "CNuPolynomial");
    ExpectNuFailure<CNuOperationException>([&] { a /= 0.0; }, 106, "operator/=", "CNuPolynomial");
    EXPECT_EQ(a[1], 2.0);
}

}  // namespace
}  // namespace numorix
