// Polynomials: storage and simplification rules, Horner evaluation against expanded products,
// arithmetic identities, and every refusal with its stored cause and strings.
#include <cmath>
#include <vector>

#include "nu_test.h"
#include "numorix/equations/polynomial.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// Evaluations of degree-6 polynomials with coefficients of order 1 at |x| <= 2, compared in
// relative terms: a few dozen roundings.
constexpr double kEvaluation = 1e-13;

CNuPolynomial Make(std::initializer_list<double> coefficients) {
    CNuPolynomial p(static_cast<int>(coefficients.size()) - 1);
    int i = 0;
    for (double d : coefficients)
        p[i++] = d;
    return p;
}

CNuPolynomial RandomPolynomial(test::Random& random, int nDegree) {
    CNuPolynomial p(nDegree);
    for (int i = 0; i <= nDegree; ++i)
        p[i] = random.Uniform(-2.0, 2.0);
    return p;
}

// Sum of c[i] x^i with the powers formed one by one, and its derivative.
double Direct(const CNuPolynomial& p, double x) {
    double dSum = 0.0;
    for (int i = 0; i <= p.GetDegree(); ++i)
        dSum += p[i] * std::pow(x, i);
    return dSum;
}

double DirectDerivative(const CNuPolynomial& p, double x) {
    double dSum = 0.0;
    for (int i = 1; i <= p.GetDegree(); ++i)
        dSum += i * p[i] * std::pow(x, i - 1);
    return dSum;
}

// The scale of the terms of p at x, against which a rounding error is judged.
double TermScale(const CNuPolynomial& p, double x) {
    double dSum = 0.0;
    for (int i = 0; i <= p.GetDegree(); ++i)
        dSum += std::fabs(p[i]) * std::pow(std::fabs(x), i);
    return dSum + 1.0;
}

TEST(Polynomial, AFreshPolynomialHoldsZerosAndChecksItsIndex) {
    CNuPolynomial p(3);
    EXPECT_EQ(p.GetType(), CNuObject::eTypePolynomial);
    EXPECT_EQ(p.GetDegree(), 3);
    for (int i = 0; i <= 3; ++i)
        EXPECT_EQ(p[i], 0.0);
    EXPECT_EQ(CNuPolynomial().GetDegree(), 0);
    ExpectNuFailure<CNuConstructionException>([] { CNuPolynomial q(-1); }, 2, "degree",
                                              "CNuPolynomial");
    try {
        p[4] = 1.0;
        ADD_FAILURE() << "no exception";
    } catch (const CNuOperationException& e) {
        EXPECT_EQ(e.m_nCause, 103);
        EXPECT_STREQ(e.m_szName, "element operator[]");
        EXPECT_STREQ(e.m_szLocation, "CNuPolynomial");
        EXPECT_EQ(e.m_nValue1, 0);
        EXPECT_EQ(e.m_nValue2, 3);
    }
    const CNuPolynomial& c = p;
    EXPECT_NU_THROW(c[-1], CNuOperationException, 103);
}

TEST(Polynomial, CopiesAreDeep) {
    CNuPolynomial p = Make({1.0, 2.0, 3.0});
    CNuPolynomial q(p);
    CNuPolynomial r(7);
    r = p;
    q[0] = 5.0;
    r[2] = 6.0;
    EXPECT_EQ(p[0], 1.0);
    EXPECT_EQ(p[2], 3.0);
    EXPECT_EQ(r.GetDegree(), 2);
    r = r;
    EXPECT_EQ(r[2], 6.0);
}

TEST(Polynomial, SimplifyDropsOnlyLeadingTermsBelowZeroTolerance) {
    CNuPolynomial zero(2);
    zero.Simplify();
    EXPECT_EQ(zero.GetDegree(), 0);
    EXPECT_EQ(zero[0], 0.0);
    CNuPolynomial p = Make({1.0, 0.0, 2.0, 1e-301, 0.0});
    p.Simplify();
    EXPECT_EQ(p.GetDegree(), 2);
    CNuPolynomial q = Make({1.0, 1e-290});
    q.Simplify();
    EXPECT_EQ(q.GetDegree(), 1);
    NuSetZero(1e-280);  // the tolerance is read at each step
    q.Simplify();
    NuSetZero(1e-300);
    EXPECT_EQ(q.GetDegree(), 0);
}

TEST(Polynomial, HornerAgreesWithTheExpandedSumAndItsDerivative) {
    test::Random random;
    for (int k = 0; k < 200; ++k) {
        CNuPolynomial p = RandomPolynomial(random, random.Integer(0, 6));
        double x = random.Uniform(-2.0, 2.0);
        double dScale = TermScale(p, x);
        EXPECT_LE(std::fabs(p.ValueAt(x) - Direct(p, x)), kEvaluation * dScale);
        EXPECT_LE(std::fabs(p.DerivativeAt(x) - DirectDerivative(p, x)),
                  kEvaluation * dScale * (p.GetDegree() + 1));
    }
    EXPECT_EQ(Make({4.0}).DerivativeAt(3.0), 0.0);
    EXPECT_EQ(Make({1.0, -3.0, 2.0}).ValueAt(2.0), 3.0);
}

TEST(Polynomial, ProductsEvaluateToTheProductOfValues) {
    test::Random random;
    for (int k = 0; k < 100; ++k) {
        CNuPolynomial a = RandomPolynomial(random, random.Integer(0, 4));
        CNuPolynomial b = RandomPolynomial(random, random.Integer(0, 4));
        double x = random.Uniform(-2.0, 2.0);
        CNuPolynomial sum = a + b, difference = a - b, product = a * b;
        double dScale = TermScale(a, x) * TermScale(b, x);
        EXPECT_LE(std::fabs(sum.ValueAt(x) - (a.ValueAt(x) + b.ValueAt(x))), kEvaluation * dScale);
        EXPECT_LE(std::fabs(difference.ValueAt(x) - (a.ValueAt(x) - b.ValueAt(x))),
                  kEvaluation * dScale);
        EXPECT_LE(std::fabs(product.ValueAt(x) - a.ValueAt(x) * b.ValueAt(x)),
                  kEvaluation * dScale);
        EXPECT_LE(std::fabs((-a).ValueAt(x) + a.ValueAt(x)), kEvaluation * dScale);
    }
}

TEST(Polynomial, SumsAndProductsSimplifyButScalingDoesNot) {
    CNuPolynomial a = Make({1.0, 2.0, 3.0});
    CNuPolynomial b = Make({0.5, 1.0, -3.0});
    EXPECT_EQ((a + b).GetDegree(), 1);  // leading terms cancel
    EXPECT_EQ((a - a).GetDegree(), 0);
    EXPECT_EQ((a * Make({1.0, 0.0, 0.0, 2.0})).GetDegree(), 5);
    EXPECT_EQ((a * Make({1.0, 0.0, 0.0, 0.0})).GetDegree(), 2);  // simplified after the product
    CNuPolynomial scaled = a * 0.0;
    EXPECT_EQ(scaled.GetDegree(), 2);
    EXPECT_EQ((0.0 * a).GetDegree(), 2);
    CNuPolynomial c = a;
    c *= 0.0;
    EXPECT_EQ(c.GetDegree(), 2);
    // Adding a number touches the constant term only.
    CNuPolynomial d = a + 2.0;
    EXPECT_EQ(d[0], 3.0);
    EXPECT_EQ(d[1], 2.0);
    EXPECT_EQ((a - 1.0)[0], 0.0);
    d -= 3.0;
    d += 0.5;
    EXPECT_EQ(d[0], 0.5);
    EXPECT_EQ((a / 2.0)[2], 1.5);
    d /= 0.5;
    EXPECT_EQ(d[1], 4.0);
}

TEST(Polynomial, ScalingRefusesHugeFactorsAndTinyDivisors) {
    CNuPolynomial a = Make({1.0, 2.0});
    ExpectNuFailure<CNuOperationException>([&] { a * 1e301; }, 107, "operator*", "CNuPolynomial");
    ExpectNuFailure<CNuOperationException>([&] { -1e301 * a; }, 107, "operator*", "CNuPolynomial");
    ExpectNuFailure<CNuOperationException>([&] { a *= 1e301; }, 107, "operator*=", "CNuPolynomial");
    ExpectNuFailure<CNuOperationException>([&] { a / 1e-301; }, 106, "operator/", "CNuPolynomial");
    ExpectNuFailure<CNuOperationException>([&] { a /= 0.0; }, 106, "operator/=", "CNuPolynomial");
    EXPECT_EQ(a[1], 2.0);
}

TEST(Polynomial, EqualityNeedsTheSameDegreeAndStrictDifferences) {
    CNuPolynomial cubic = Make({0.0, 0.0, 1.0, 0.0});
    CNuPolynomial square = Make({0.0, 0.0, 1.0});
    EXPECT_FALSE(cubic.IsEqual(square, 1.0));  // no simplification first
    EXPECT_TRUE(square.IsEqual(Make({0.0, 1e-13, 1.0}), 1e-12));
    EXPECT_FALSE(square.IsEqual(Make({0.0, 0.5, 1.0}), 0.5));
    EXPECT_TRUE(Make({1e-13, -1e-13}).IsZero(1e-12));
    EXPECT_FALSE(Make({1e-13, 1e-12}).IsZero(1e-12));
}

}  // namespace
}  // namespace numorix
