// Complex scalars and arrays: arithmetic and principal roots against std::complex, powers and
// roots against their defining identities, every refusal with its stored cause and strings, and
// what the complex arrays do differently from the arrays of numbers.
#include <cmath>
#include <complex>

#include "nu_test.h"
#include "numorix/complex/complex.h"
#include "numorix/complex/complex_array.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;
using Std = std::complex<double>;

// Products, quotients and square roots of order-1 numbers: a few roundings.
constexpr double kFewUlps = 8.0 * test::kUlp;
// Powers and roots go through atan, pow, cos and sin: a few dozen roundings.
constexpr double kPolar = 1e-13;

Std ToStd(const CNuComplex& z) { return {z.Real(), z.Imaginary()}; }
double RelativeError(const CNuComplex& z, Std expected) {
    return std::abs(ToStd(z) - expected) / std::abs(expected);
}

TEST(Complex, ArithmeticAndRootsAgreeWithStdComplex) {
    test::Random random;
    for (int k = 0; k < 500; ++k) {
        CNuComplex a(random.Uniform(-10, 10), random.Uniform(-10, 10));
        CNuComplex b(random.Uniform(-10, 10), random.Uniform(-10, 10));
        EXPECT_EQ(ToStd(a + b), ToStd(a) + ToStd(b));
        EXPECT_EQ(ToStd(a - b), ToStd(a) - ToStd(b));
        EXPECT_LE(RelativeError(a * b, ToStd(a) * ToStd(b)), kFewUlps);
        EXPECT_LE(RelativeError(a / b, ToStd(a) / ToStd(b)), kFewUlps);
        EXPECT_LE(RelativeError(a.Sqrt(), std::sqrt(ToStd(a))), kFewUlps);
        EXPECT_GE(a.Sqrt().Real(), 0.0);
        EXPECT_NEAR(a.Modulus(), std::abs(ToStd(a)), kFewUlps * std::abs(ToStd(a)));
    }
    EXPECT_EQ(CNuComplex(3.0, 4.0).Modulus(), 5.0);
    EXPECT_EQ(ToStd(CNuComplex(1.0, 2.0).Conjugate()), Std(1.0, -2.0));
    EXPECT_EQ(CNuComplex(1.0, 2.0).GetType(), CNuObject::eTypeComplex);
    EXPECT_EQ(CNuComplexPolar(1.0, 2.0).GetType(), CNuObject::eTypeComplexPolar);
}

TEST(Complex, ScaledFormsNeitherOverflowNorTestForAZeroDivisor) {
    CNuComplex q = CNuComplex(1e300, 1e300) / CNuComplex(1e300, 1e300);
    EXPECT_EQ(ToStd(q), Std(1.0, 0.0));
    EXPECT_NEAR(CNuComplex(3e200, -4e200).Modulus() / 5e200, 1.0, kFewUlps);
    EXPECT_EQ(CNuComplex(1e-301, 1e-302).Modulus(), 0.0);  // below NuGetZero()
    EXPECT_LE(RelativeError(CNuComplex(-1e300, 1e300).Sqrt(), std::sqrt(Std(-1e300, 1e300))),
              kFewUlps);
    CNuComplex z = CNuComplex(1.0, 1.0) / CNuComplex(0.0, 0.0);
    EXPECT_FALSE(std::isfinite(z.Real()) && std::isfinite(z.Imaginary()));
}

TEST(Complex, SqrtTakesTheUpperRootOnTheNegativeAxisAndZeroAsZero) {
    EXPECT_EQ(ToStd(CNuComplex(-4.0, 0.0).Sqrt()), Std(0.0, 2.0));
    EXPECT_EQ(ToStd(CNuComplex(-4.0, -0.0).Sqrt()), Std(0.0, 2.0));  // -0 counts as non-negative
    EXPECT_EQ(ToStd(CNuComplex(0.0, 0.0).Sqrt()), Std(0.0, 0.0));
    EXPECT_LT(CNuComplex(-4.0, -1e-9).Sqrt().Imaginary(), 0.0);
}

TEST(Complex, PredicatesCompareStrictly) {
    EXPECT_TRUE(CNuComplex(0.0, 0.0).IsReal(1e-12));
    EXPECT_FALSE(CNuComplex(0.0, 0.0).IsImaginary(1e-12));  // zero is real, not imaginary
    EXPECT_TRUE(CNuComplex(1e-13, 2.0).IsImaginary(1e-12));
    EXPECT_FALSE(CNuComplex(1e-12, 2.0).IsImaginary(1e-12));
    EXPECT_FALSE(CNuComplex(0.0, 1e-12).IsReal(1e-12));
    EXPECT_TRUE(CNuComplex(1e-13, -1e-13).IsZero(1e-12));
    EXPECT_FALSE(CNuComplex(1.0, 2.0).IsEqual(CNuComplex(1.0, 2.5), 0.5));
    EXPECT_TRUE(CNuComplex(1.0, 2.0).IsEqual(CNuComplex(1.0 + 1e-13, 2.0), 1e-12));
}

TEST(Complex, ScalingRefusesHugeFactorsAndTinyDivisors) {
    CNuComplex z(1.0, 2.0);
    test::ExpectFailures<CNuOperationException>({
        {[&] { z * 2e300; }, 107, "operator*", "CNuComplex"},
        {[&] { -2e300 * z; }, 107, "operator*", "CNuComplex"},
        {[&] { z *= 2e300; }, 107, "operator*=", "CNuComplex"},
        {[&] { z / 1e-301; }, 106, "operator/", "CNuComplex"},
        {[&] { z /= 0.0; }, 106, "operator/=", "CNuComplex"},
    });
    EXPECT_EQ(ToStd(z), Std(1.0, 2.0));
    z *= -3.0;
    z /= 2.0;
    EXPECT_EQ(ToStd(z), Std(-1.5, -3.0));
}

TEST(Complex, PowersAndRootsInvertEachOther) {
    test::Random random;
    for (int k = 0; k < 200; ++k) {
        CNuComplex z(random.Uniform(-10, 10), random.Uniform(-10, 10));
        int n = random.Integer(2, 7);
        Std product = 1.0;
        for (int i = 0; i < n; ++i)
            product *= ToStd(z);
        EXPECT_LE(RelativeError(z.Power(n), product), kPolar) << "n = " << n;
        CNuComplexArray roots = z.Roots(n);
        ASSERT_EQ(roots.GetSize(), n);
        for (int i = 0; i < n; ++i)
            EXPECT_LE(RelativeError(roots[i].Power(n), ToStd(z)), kPolar) << "root " << i;
        EXPECT_LE(RelativeError(z.ToPolarForm().ToCartesianForm(), ToStd(z)), kPolar);
    }
    // Roots(2) of 1 have the arguments 0 and pi; arguments are not reduced into [0, 2 pi).
    CNuComplexPolarArray unit = CNuComplexPolar(1.0, 0.0).Roots(2);
    EXPECT_EQ(unit[1].Argument(), Nu_PI);
    EXPECT_EQ(CNuComplexPolar(4.0, 1.5 * Nu_PI).Roots(2)[1].Argument(), 1.75 * Nu_PI);
    EXPECT_EQ(CNuComplex(0.0, -2.0).ToPolarForm().Argument(), 1.5 * Nu_PI);
    CNuComplexPolar a(2.0, 0.5), b(4.0, 1.5);
    EXPECT_EQ((a * b).Modulus(), 8.0);
    EXPECT_EQ((a / b).Argument(), -1.0);
}

TEST(Complex, ZeroHasNoPolarFormAndCountsAreChecked) {
    const CNuComplex zero(0.0, 0.0);
    ExpectNuFailure<CNuConstructionException>([&] { zero.ToPolarForm(); }, 5, "modulus",
                                              "CNuComplexPolar");
    EXPECT_NU_THROW(zero.Power(2), CNuConstructionException, 5);
    EXPECT_NU_THROW(zero.Roots(2), CNuConstructionException, 5);
    EXPECT_NU_THROW(CNuComplexPolar(-1.0, 0.0), CNuConstructionException, 5);
    struct Case {
        void (*pfRun)();
        int nBound;
        const char* pszLocation;
    };
    const Case cases[] = {
        {[] { CNuComplex(1.0, 1.0).Power(0); }, 0, "CNuComplex::Power()"},
        {[] { CNuComplex(1.0, 1.0).Roots(1); }, 1, "CNuComplex::Roots()"},
        {[] { CNuComplexPolar(1.0, 0.0).Power(-1); }, 0, "CNuComplexPolar::Power()"},
        {[] { CNuComplexPolar(1.0, 0.0).Roots(0); }, 1, "CNuComplexPolar::Roots()"},
    };
    for (const Case& c : cases) {
        try {
            c.pfRun();
            ADD_FAILURE() << "no exception from " << c.pszLocation;
        } catch (const CNuOperationException& e) {
            EXPECT_EQ(e.m_nCause, 102);
            EXPECT_EQ(e.m_nValue1, c.nBound);
            EXPECT_STREQ(e.m_szLocation, c.pszLocation);
        }
    }
    // The refusal of a huge modulus looks at the modulus, not its power, before the count.
    ExpectNuFailure<CNuOperationException>([] { CNuComplexPolar(2e300, 0.0).Power(0); }, 107,
                                           "Power operation", "CNuComplexPolar::Power()");
    EXPECT_TRUE(std::isinf(CNuComplexPolar(1e200, 0.0).Power(2).Modulus()));
}

TEST(ComplexArray, HoldsBuiltElementsAndFailsWithItsOwnTexts) {
    CNuComplexArray a(5);
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetCapacity(), 5);
    EXPECT_EQ(ToStd(a.GetData()[4]), Std(0.0, 0.0));
    EXPECT_EQ(CNuComplexPolarArray(3).GetData()[2].Modulus(), 1.0);
    CNuComplexPolarArray p;
    test::ExpectFailures<CNuOperationException>({
        {[&] { a.First(); }, 108, "element operator[]", "CNuComplexArray"},
        {[&] { a.Last(); }, 108, "element operator[]", "CNuComplexArray"},
        {[&] { p.First(); }, 108, "First operator[]", "CNuComplexPolarArray::First()"},
        {[&] { p.SetCapacity(0); }, 114, "SetSize operation", "CNuComplexPolarArray::SetSize()"},
        {[&] { a.Append(a); }, 118, "Append operation", "CNuComplexArray::Append()"},
    });
    ExpectNuFailure<CNuConstructionException>([] { CNuComplexArray b(-1); }, 2, "size",
                                              "CNuComplexArray");
}

TEST(ComplexArray, CopiesByValueAndClearKeepsTheElements) {
    CNuComplexArray a(1);
    a.Add(CNuComplex(3.0, 4.0));
    a.Add(a[0]);  // an element of the array itself, while the array grows
    for (int i = 0; i < 9; ++i)
        a.Add(CNuComplex(i, -i));
    EXPECT_EQ(ToStd(a[1]), Std(3.0, 4.0));
    EXPECT_EQ(a.GetCapacity(), 11);  // 1, then one step of 10
    CNuComplexArray b(30);
    b = a;
    b[0] = CNuComplex(7.0, 7.0);
    EXPECT_EQ(b.GetCapacity(), 30);
    EXPECT_EQ(ToStd(a[0]), Std(3.0, 4.0));
    CNuComplexArray sub = a.SubArray(2, 4);
    EXPECT_EQ(sub.GetCapacity(), 3);
    EXPECT_EQ(ToStd(sub[2]), Std(2.0, -2.0));
    a.Truncate(3);
    EXPECT_EQ(a.GetCapacity(), 3);
    a.Clear();  // only the size
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(ToStd(a.GetData()[1]), Std(3.0, 4.0));
}

}  // namespace
}  // namespace numorix
