// Complex scalars and arrays: arithmetic and principal roots against std::complex, powers and
// roots against their defining identities, the refusals, and what the complex arrays do that the
// arrays of numbers do not.
#include <cmath>
#include <complex>

#include "nu_test.h"
#include "numorix/complex/complex.h"
#include "numorix/complex/complex_array.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using Std = std::complex<double>;

// Products, quotients and square roots of order-1 numbers: a few roundings.
constexpr double kFewUlps = 8.0 * test::kUlp;
// Powers and roots go through atan, pow, cos and sin: a few dozen roundings.
constexpr double kPolar = 1e-13;

Std ToStd(const CNuComplex& z) { return {z.Real(), z.Imaginary()}; }
double RelativeError(const CNuComplex& z, Std expected) {
    return std::abs(ToStd(z) - expected) / std::abs(expected);
}

TEST(Complex, ArithmeticAndRootsAgreeWithStdComplexAtAnyScaleAndPredicatesAreStrict) {
    test::Random random;
    for (int k = 0; k < 500; ++k) {
        const double s = k % 2 == 0 ? 1.0 : 1e300;  // the scaled forms must not overflow
        CNuComplex a(random.Uniform(-10, 10) * s, random.Uniform(-10, 10) * s);
        CNuComplex b(random.Uniform(-10, 10), random.Uniform(-10, 10));
        EXPECT_EQ(ToStd(a + b), ToStd(a) + ToStd(b));
        EXPECT_EQ(ToStd(a - b), ToStd(a) - ToStd(b));
        EXPECT_LE(RelativeError(a * b, ToStd(a) * ToStd(b)), kFewUlps) << ToStd(a) << ToStd(b);
        EXPECT_LE(RelativeError(a / b, ToStd(a) / ToStd(b)), kFewUlps) << ToStd(a) << ToStd(b);
        EXPECT_LE(RelativeError(a.Sqrt(), std::sqrt(ToStd(a))), kFewUlps) << ToStd(a);
        EXPECT_NEAR(a.Modulus() / std::abs(ToStd(a)), 1.0, kFewUlps) << ToStd(a);
    }
    EXPECT_EQ(ToStd(CNuComplex(1.0, 2.0).Conjugate()), Std(1.0, -2.0));
    EXPECT_EQ(CNuComplex(1e-301, 1e-302).Modulus(), 0.0) << "below NuGetZero()";
    // No test for a zero divisor: the quotient is not finite.
    EXPECT_FALSE(std::isfinite(std::abs(ToStd(CNuComplex(1.0, 1.0) / CNuComplex(0.0, 0.0)))));
    // The upper root on the negative axis, where -0 counts as non-negative.
    EXPECT_EQ(ToStd(CNuComplex(-4.0, -0.0).Sqrt()), Std(0.0, 2.0));
    EXPECT_EQ(ToStd(CNuComplex(0.0, 0.0).Sqrt()), Std(0.0, 0.0));
    EXPECT_LT(CNuComplex(-4.0, -1e-9).Sqrt().Imaginary(), 0.0);
    // The predicates compare strictly, and zero is real, not imaginary.
    EXPECT_TRUE(CNuComplex(0.0, 0.0).IsReal(1e-12) && !CNuComplex(0.0, 0.0).IsImaginary(1e-12));
    EXPECT_TRUE(CNuComplex(1e-13, 2.0).IsImaginary(1e-12) &&
                !CNuComplex(1e-12, 2.0).IsImaginary(1e-12));
    EXPECT_FALSE(CNuComplex(0.0, 1e-12).IsReal(1e-12));
    EXPECT_TRUE(CNuComplex(1e-13, -1e-13).IsZero(1e-12) && !CNuComplex(1e-12, 0.0).IsZero(1e-12));
    EXPECT_FALSE(CNuComplex(1.0, 2.0).IsEqual(CNuComplex(1.0, 2.5), 0.5));
    EXPECT_TRUE(CNuComplex(1.0, 2.0).IsEqual(CNuComplex(1.0 + 1e-13, 2.0), 1e-12));
}

TEST(Complex, PowersAndRootsInvertEachOther) {
    test::Random random;
    for (int k = 0; k < 200; ++k) {
        CNuComplex z(random.Uniform(-10, 10), random.Uniform(-10, 10));
        const int n = random.Integer(2, 7);
        EXPECT_LE(RelativeError(z.Power(n), std::pow(ToStd(z), n)), kPolar) << "n = " << n;
        CNuComplexArray roots = z.Roots(n);
        ASSERT_EQ(roots.GetSize(), n);
        for (int i = 0; i < n; ++i)
            EXPECT_LE(RelativeError(roots[i].Power(n), ToStd(z)), kPolar) << "root " << i;
        EXPECT_LE(RelativeError(z.ToPolarForm().ToCartesianForm(), ToStd(z)), kPolar);
    }
    // Arguments are not reduced into [0, 2 pi).
    EXPECT_EQ(CNuComplexPolar(1.0, 0.0).Roots(2)[1].Argument(), Nu_PI);
    EXPECT_EQ(CNuComplexPolar(4.0, 1.5 * Nu_PI).Roots(2)[1].Argument(), 1.75 * Nu_PI);
    EXPECT_EQ(CNuComplex(0.0, -2.0).ToPolarForm().Argument(), 1.5 * Nu_PI);
    CNuComplexPolar a(2.0, 0.5), b(4.0, 1.5);
    EXPECT_TRUE((a * b).Modulus() == 8.0 && (a / b).Argument() == -1.0);
    EXPECT_TRUE(std::isinf(CNuComplexPolar(1e200, 0.0).Power(2).Modulus()));
}

TEST(Complex, RefusalsCarryTheirCausesStringsAndBounds) {
    CNuComplex z(1.0, 2.0);
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuComplex(0.0, 0.0).ToPolarForm(); }, 5, "modulus", "CNuComplexPolar"},
        {[] { CNuComplexPolar(-1.0, 0.0); }, 5, "modulus", "CNuComplexPolar"},
        {[] { CNuComplexArray b(-1); }, 2, "size", "CNuComplexArray"},
        {[] { CNuComplexPolarArray b(2, 0); }, 15, "nArrayExpandSize", "CNuComplexPolarArray"},
    });
    test::ExpectFailures<CNuOperationException>({
        {[&] { z * 2e300; }, 107, "operator*", "CNuComplex"},
        {[&] { z /= 0.0; }, 106, "operator/=", "CNuComplex"},
        {[&] { z.Power(0); }, 102, "Power operation", "CNuComplex::Power()", 0},
        {[&] { z.Roots(1); }, 102, "Roots operation", "CNuComplex::Roots()", 1},
        {[] { CNuComplexPolar(1.0, 0.0).Power(-1); }, 102, nullptr, "CNuComplexPolar::Power()", 0},
        {[] { CNuComplexPolar(1.0, 0.0).Roots(0); }, 102, nullptr, "CNuComplexPolar::Roots()", 1},
        // A huge modulus is refused before the count is looked at.
        {[] { CNuComplexPolar(2e300, 0.0).Power(0); }, 107, "Power operation",
         "CNuComplexPolar::Power()"},
        {[] { CNuComplexArray().First(); }, 108, "element operator[]", "CNuComplexArray"},
        {[] { CNuComplexPolarArray().First(); }, 108, "First operator[]",
         "CNuComplexPolarArray::First()"},
    });
    EXPECT_EQ(ToStd((z *= -3.0) /= 2.0), Std(-1.5, -3.0)) << "refused scalings leave the number";
}

TEST(ComplexArray, BuildsItsOwnElementsAddsItsOwnAndClearKeepsThem) {
    EXPECT_EQ(CNuComplexPolarArray(3).GetData()[2].Modulus(), 1.0) << "a polar form needs one";
    CNuComplexArray a(1);
    a.Add(CNuComplex(3.0, 4.0));
    a.Add(a[0]);  // an element of the array itself, while the array grows
    EXPECT_EQ(ToStd(a[1]), Std(3.0, 4.0));
    EXPECT_EQ(a.GetCapacity(), 11);
    EXPECT_NU_THROW(a.Append(a), CNuOperationException, 118);
    a.Clear();  // only the size
    EXPECT_EQ(ToStd(a.GetData()[1]), Std(3.0, 4.0));
}

}  // namespace
}  // namespace numorix
