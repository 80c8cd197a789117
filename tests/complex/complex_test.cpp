// Complex scalars and arrays: division, principal root, polar powers and roots against their
// defining identities and std::complex, every refusal with its stored cause and strings, and the
// element semantics of the two complex arrays.
#include <cmath>
#include <complex>
#include <limits>

#include "nu_test.h"
#include "numorix/complex/complex.h"
#include "numorix/complex/complex_array.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// A few roundings of a double near 1: quotients, products and roots of order-1 numbers.
constexpr double kFewUlps = 8.0 * test::kUlp;
// Powers and roots go through cos, sin, pow and atan: a few dozen roundings.
constexpr double kPolar = 1e-13;

std::complex<double> Std(const CNuComplex& z) { return {z.Real(), z.Imaginary()}; }

double RelativeError(const CNuComplex& z, std::complex<double> expected) {
    return std::abs(Std(z) - expected) / std::abs(expected);
}

CNuComplex RandomComplex(test::Random& random) {
    return CNuComplex(random.Uniform(-10.0, 10.0), random.Uniform(-10.0, 10.0));
}

TEST(Complex, CarriesItsTypeTagsAndParts) {
    CNuComplex z(1.5, -2.5);
    EXPECT_EQ(z.GetType(), CNuObject::eTypeComplex);
    double dRe = 0.0, dIm = 0.0;
    z.GetData(&dRe, &dIm);
    EXPECT_EQ(dRe, 1.5);
    EXPECT_EQ(dIm, -2.5);
    CNuComplexPolar w(2.0, 0.5);
    EXPECT_EQ(w.GetType(), CNuObject::eTypeComplexPolar);
    double dModulus = 0.0, dArgument = 0.0;
    w.GetData(&dModulus, &dArgument);
    EXPECT_EQ(dModulus, 2.0);
    EXPECT_EQ(dArgument, 0.5);
}

TEST(Complex, ArithmeticAgreesWithStdComplexOnRandomNumbers) {
    test::Random random;
    for (int k = 0; k < 500; ++k) {
        CNuComplex a = RandomComplex(random);
        CNuComplex b = RandomComplex(random);
        EXPECT_LE(RelativeError(a * b, Std(a) * Std(b)), kFewUlps);
        EXPECT_LE(RelativeError(a / b, Std(a) / Std(b)), kFewUlps);
        EXPECT_LE(RelativeError((a / b) * b, Std(a)), kFewUlps);
        EXPECT_EQ(Std(a + b), Std(a) + Std(b));
        EXPECT_EQ(Std(a - b), Std(a) - Std(b));
        CNuComplex c = a;
        c += b;
        c -= b;
        EXPECT_LE(std::abs(Std(c) - Std(a)), 4.0 * test::kUlp * 10.0);
    }
}

TEST(Complex, SmithDivisionNeitherOverflowsNorTestsForZero) {
    // |b|^2 would overflow: the scaled division does not form it.
    CNuComplex q = CNuComplex(1e300, 1e300) / CNuComplex(1e300, 1e300);
    EXPECT_EQ(q.Real(), 1.0);
    EXPECT_EQ(q.Imaginary(), 0.0);
    CNuComplex r = CNuComplex(1e-300, 2e-300) / CNuComplex(0.0, 1e-300);
    EXPECT_NEAR(r.Real(), 2.0, kFewUlps);
    EXPECT_NEAR(r.Imaginary(), -1.0, kFewUlps);
    // No exception for a zero divisor: the parts are not finite.
    CNuComplex z = CNuComplex(1.0, 1.0) / CNuComplex(0.0, 0.0);
    EXPECT_FALSE(std::isfinite(z.Real()) && std::isfinite(z.Imaginary()));
}

TEST(Complex, ScalingRefusesHugeFactorsAndTinyDivisors) {
    CNuComplex z(1.0, 2.0);
    ExpectNuFailure<CNuOperationException>([&] { z * 2e300; }, 107, "operator*", "CNuComplex");
    ExpectNuFailure<CNuOperationException>([&] { -2e300 * z; }, 107, "operator*", "CNuComplex");
    ExpectNuFailure<CNuOperationException>([&] { z *= 2e300; }, 107, "operator*=", "CNuComplex");
    ExpectNuFailure<CNuOperationException>([&] { z / 1e-301; }, 106, "operator/", "CNuComplex");
    ExpectNuFailure<CNuOperationException>([&] { z /= 0.0; }, 106, "operator/=", "CNuComplex");
    EXPECT_EQ(z.Real(), 1.0);  // refused operations leave the number as it was
    CNuComplex s = 1e300 * z;  // the bound itself is allowed
    EXPECT_EQ(s.Real(), 1e300);
    z *= -3.0;
    z /= 2.0;
    EXPECT_EQ(Std(z), std::complex<double>(-1.5, -3.0));
}

TEST(Complex, PredicatesCompareStrictlyAgainstTheTolerance) {
    EXPECT_TRUE(CNuComplex(0.0, 0.0).IsReal(1e-12));
    EXPECT_FALSE(CNuComplex(0.0, 0.0).IsImaginary(1e-12));  // zero is real, not imaginary
    EXPECT_TRUE(CNuComplex(1e-13, 2.0).IsImaginary(1e-12));
    EXPECT_FALSE(CNuComplex(1e-12, 2.0).IsImaginary(1e-12));
    EXPECT_FALSE(CNuComplex(0.0, 1e-12).IsReal(1e-12));
    EXPECT_TRUE(CNuComplex(1e-13, -1e-13).IsZero(1e-12));
    EXPECT_FALSE(CNuComplex(1e-13, 1e-12).IsZero(1e-12));
    EXPECT_TRUE(CNuComplex(1.0, 2.0).IsEqual(CNuComplex(1.0 + 1e-13, 2.0), 1e-12));
    EXPECT_FALSE(CNuComplex(1.0, 2.0).IsEqual(CNuComplex(1.0, 2.5), 0.5));
    EXPECT_EQ(Std(CNuComplex(1.0, 2.0).Conjugate()), std::complex<double>(1.0, -2.0));
    EXPECT_EQ(Std(-CNuComplex(1.0, 2.0)), std::complex<double>(-1.0, -2.0));
}

TEST(Complex, ModulusIsTheScaledHypotenuse) {
    EXPECT_EQ(CNuComplex(3.0, 4.0).Modulus(), 5.0);
    EXPECT_NEAR(CNuComplex(3e200, -4e200).Modulus() / 5e200, 1.0, kFewUlps);  // no overflow
    EXPECT_EQ(CNuComplex(1e-301, 1e-302).Modulus(), 0.0);  // both parts below NuGetZero()
}

TEST(Complex, SqrtIsThePrincipalRoot) {
    EXPECT_EQ(Std(CNuComplex(-4.0, 0.0).Sqrt()), std::complex<double>(0.0, 2.0));
    // A negative zero imaginary part counts as non-negative: still the upper root.
    EXPECT_EQ(Std(CNuComplex(-4.0, -0.0).Sqrt()), std::complex<double>(0.0, 2.0));
    EXPECT_EQ(Std(CNuComplex(0.0, 0.0).Sqrt()), std::complex<double>(0.0, 0.0));
    EXPECT_EQ(Std(CNuComplex(9.0, 0.0).Sqrt()), std::complex<double>(3.0, 0.0));
    EXPECT_LE(RelativeError(CNuComplex(0.0, 2.0).Sqrt(), {1.0, 1.0}), kFewUlps);
    test::Random random;
    for (int k = 0; k < 500; ++k) {
        CNuComplex z = RandomComplex(random);
        CNuComplex r = z.Sqrt();
        EXPECT_GE(r.Real(), 0.0);
        EXPECT_LE(RelativeError(r * r, Std(z)), kFewUlps);
        EXPECT_LE(RelativeError(r, std::sqrt(Std(z))), kFewUlps);
    }
    // Huge parts: the ratio form keeps the squares from overflowing.
    CNuComplex big = CNuComplex(-1e300, 1e300).Sqrt();
    EXPECT_LE(RelativeError(big, std::sqrt(std::complex<double>(-1e300, 1e300))), kFewUlps);
}

TEST(Complex, PolarFormRoundTripsAndZeroHasNone) {
    test::Random random;
    for (int k = 0; k < 200; ++k) {
        CNuComplex z = RandomComplex(random);
        CNuComplexPolar p = z.ToPolarForm();
        EXPECT_GE(p.Argument(), 0.0);
        EXPECT_LT(p.Argument(), 2.0 * Nu_PI);
        EXPECT_LE(RelativeError(p.ToCartesianForm(), Std(z)), kPolar);
    }
    EXPECT_EQ(CNuComplex(-1.0, 0.0).ToPolarForm().Argument(), Nu_PI);
    EXPECT_EQ(CNuComplex(0.0, -2.0).ToPolarForm().Argument(), Nu_PI * 1.5);
    ExpectNuFailure<CNuConstructionException>([] { CNuComplex(0.0, 0.0).ToPolarForm(); }, 5,
                                              "modulus", "CNuComplexPolar");
    ExpectNuFailure<CNuConstructionException>([] { CNuComplexPolar(0.0, 1.0); }, 5, "modulus",
                                              "CNuComplexPolar");
    ExpectNuFailure<CNuConstructionException>([] { CNuComplexPolar(-1.0, 1.0); }, 5, "modulus",
                                              "CNuComplexPolar");
    CNuComplexPolar a(2.0, 0.5), b(4.0, 1.5);
    EXPECT_EQ((a * b).Modulus(), 8.0);
    EXPECT_EQ((a * b).Argument(), 2.0);
    EXPECT_EQ((a / b).Modulus(), 0.5);
    EXPECT_EQ((a / b).Argument(), -1.0);
}

TEST(Complex, PowerMatchesRepeatedProducts) {
    test::Random random;
    for (int k = 0; k < 100; ++k) {
        CNuComplex z = RandomComplex(random);
        int n = random.Integer(1, 7);
        CNuComplex product = z;
        for (int i = 1; i < n; ++i)
            product = product * z;
        EXPECT_LE(RelativeError(z.Power(n), Std(product)), kPolar) << "n = " << n;
    }
}

TEST(Complex, RootsRaisedToTheirCountGiveTheNumberBack) {
    test::Random random;
    for (int k = 0; k < 100; ++k) {
        CNuComplex z = RandomComplex(random);
        int n = random.Integer(2, 7);
        CNuComplexArray roots = z.Roots(n);
        ASSERT_EQ(roots.GetSize(), n);
        for (int i = 0; i < n; ++i) {
            EXPECT_LE(RelativeError(roots[i].Power(n), Std(z)), kPolar) << "root " << i;
        }
    }
    // Roots(2) of 1: arguments 0 and pi.
    CNuComplexPolarArray polar = CNuComplexPolar(1.0, 0.0).Roots(2);
    EXPECT_EQ(polar[0].Argument(), 0.0);
    EXPECT_EQ(polar[1].Argument(), Nu_PI);
    CNuComplexArray unit = CNuComplex(1.0, 0.0).Roots(2);
    EXPECT_EQ(unit[0].Real(), 1.0);
    EXPECT_EQ(unit[1].Real(), -1.0);
    EXPECT_NEAR(unit[1].Imaginary(), 0.0, kFewUlps);
    // The arguments are not reduced into [0, 2 pi).
    CNuComplexPolarArray high = CNuComplexPolar(4.0, 1.5 * Nu_PI).Roots(2);
    EXPECT_EQ(high[0].Modulus(), 2.0);
    EXPECT_EQ(high[1].Argument(), (2.0 * Nu_PI + 1.5 * Nu_PI) / 2.0);
}

TEST(Complex, PowersAndRootsRefuseBadCountsZeroAndHugeModuli) {
    CNuComplex z(1.0, 1.0);
    auto expect102 = [](auto f, int nBound, const char* pszName, const char* pszLocation) {
        try {
            f();
            ADD_FAILURE() << "no exception for " << pszLocation;
        } catch (const CNuOperationException& e) {
            EXPECT_EQ(e.m_nCause, 102);
            EXPECT_EQ(e.m_nValue1, nBound);
            EXPECT_STREQ(e.m_szName, pszName);
            EXPECT_STREQ(e.m_szLocation, pszLocation);
        }
    };
    expect102([&] { z.Power(0); }, 0, "Power operation", "CNuComplex::Power()");
    expect102([&] { z.Roots(1); }, 1, "Roots operation", "CNuComplex::Roots()");
    expect102([] { CNuComplexPolar(1.0, 0.0).Power(-1); }, 0, "Power operation",
              "CNuComplexPolar::Power()");
    expect102([] { CNuComplexPolar(1.0, 0.0).Roots(0); }, 1, "Roots operation",
              "CNuComplexPolar::Roots()");
    // Zero has no polar form, so its powers and roots fail although they exist.
    EXPECT_NU_THROW(CNuComplex(0.0, 0.0).Power(2), CNuConstructionException, 5);
    EXPECT_NU_THROW(CNuComplex(0.0, 0.0).Roots(2), CNuConstructionException, 5);
    // The refusal looks at the modulus, not at its power, and comes before the count test.
    ExpectNuFailure<CNuOperationException>([] { CNuComplexPolar(2e300, 0.0).Power(1); }, 107,
                                           "Power operation", "CNuComplexPolar::Power()");
    ExpectNuFailure<CNuOperationException>([] { CNuComplexPolar(2e300, 0.0).Power(0); }, 107,
                                           nullptr, nullptr);
    EXPECT_TRUE(std::isinf(CNuComplexPolar(1e200, 0.0).Power(2).Modulus()));
}

// ---- arrays -------------------------------------------------------------------------------------

TEST(ComplexArray, TheConstructorSizeIsACapacityOfBuiltElements) {
    CNuComplexArray a(5);
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetCapacity(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(Std(a.GetData()[i]), std::complex<double>(0.0, 0.0));
    CNuComplexPolarArray p(3);
    EXPECT_EQ(p.GetData()[2].Modulus(), 1.0);
    EXPECT_EQ(p.GetData()[2].Argument(), 0.0);
    ExpectNuFailure<CNuConstructionException>([] { CNuComplexArray b(-1); }, 2, "size",
                                              "CNuComplexArray");
    ExpectNuFailure<CNuConstructionException>([] { CNuComplexPolarArray b(2, 0); }, 15,
                                              "nArrayExpandSize", "CNuComplexPolarArray");
    CNuComplexArray empty;
    EXPECT_EQ(empty.GetData(), nullptr);
}

TEST(ComplexArray, IndexFailuresCarryEachClassOwnTexts) {
    CNuComplexArray a;
    ExpectNuFailure<CNuOperationException>([&] { a[0]; }, 108, "element operator[]",
                                           "CNuComplexArray");
    ExpectNuFailure<CNuOperationException>([&] { a.First(); }, 108, "element operator[]",
                                           "CNuComplexArray");
    ExpectNuFailure<CNuOperationException>([&] { a.Last(); }, 108, "element operator[]",
                                           "CNuComplexArray");
    a.Add(CNuComplex(1.0, 2.0));
    try {
        a[1];
        ADD_FAILURE() << "no exception";
    } catch (const CNuOperationException& e) {
        EXPECT_EQ(e.m_nCause, 103);
        EXPECT_EQ(e.m_nValue1, 0);
        EXPECT_EQ(e.m_nValue2, 0);
    }
    CNuComplexPolarArray p;
    ExpectNuFailure<CNuOperationException>([&] { p.First(); }, 108, "First operator[]",
                                           "CNuComplexPolarArray::First()");
    ExpectNuFailure<CNuOperationException>([&] { p.Last(); }, 108, "Last operator[]",
                                           "CNuComplexPolarArray::Last()");
    ExpectNuFailure<CNuOperationException>([&] { p[0]; }, 108, "element operator[]",
                                           "CNuComplexPolarArray");
    ExpectNuFailure<CNuOperationException>([&] { p.Remove(0); }, 108, "Remove operation",
                                           "CNuComplexPolarArray::Remove()");
}

TEST(ComplexArray, GrowsByTheStepAndCopiesByValue) {
    CNuComplexArray a;
    for (int i = 0; i < 11; ++i)
        a.Add(CNuComplex(i, -i));
    EXPECT_EQ(a.GetCapacity(), 20);
    EXPECT_EQ(a.GetSize(), 11);
    EXPECT_EQ(Std(a.Last()), std::complex<double>(10.0, -10.0));
    // Adding an element of the array itself while it grows.
    CNuComplexArray b(1);
    b.Add(CNuComplex(3.0, 4.0));
    b.Add(b[0]);
    EXPECT_EQ(Std(b[1]), std::complex<double>(3.0, 4.0));

    CNuComplexArray c(30);
    c = a;  // a large enough buffer is kept
    EXPECT_EQ(c.GetCapacity(), 30);
    EXPECT_EQ(c.GetSize(), 11);
    c[0] = CNuComplex(7.0, 7.0);
    EXPECT_EQ(Std(a[0]), std::complex<double>(0.0, 0.0));  // deep copy

    CNuComplexArray sub = a.SubArray(2, 4);
    EXPECT_EQ(sub.GetCapacity(), 3);
    EXPECT_EQ(Std(sub[0]), std::complex<double>(2.0, -2.0));
    ExpectNuFailure<CNuOperationException>([&] { a.SubArray(4, 2); }, 115, "SubArray operation",
                                           "CNuComplexArray::SubArray(i, j)");
    ExpectNuFailure<CNuOperationException>([&] { a.Append(a); }, 118, "Append operation",
                                           "CNuComplexArray::Append()");
    a.Append(sub);
    EXPECT_EQ(a.GetSize(), 14);
    EXPECT_EQ(a.GetCapacity(), 20);
    a.Remove(0);
    EXPECT_EQ(Std(a[0]), std::complex<double>(1.0, -1.0));
    EXPECT_EQ(a.GetSize(), 13);
}

TEST(ComplexArray, CapacityOnlyGrowsTruncateShrinksAndClearKeepsStorage) {
    CNuComplexPolarArray p(4);
    ExpectNuFailure<CNuOperationException>([&] { p.SetCapacity(4); }, 114, "SetSize operation",
                                           "CNuComplexPolarArray::SetSize()");
    ExpectNuFailure<CNuOperationException>([&] { p.SetExpandSize(0); }, 114,
                                           "SetExpandSize operation",
                                           "CNuComplexPolarArray::SetExpandSize()");
    for (int i = 0; i < 4; ++i)
        p.Add(CNuComplexPolar(1.0 + i, 0.0));
    p.SetSize(6);
    EXPECT_EQ(p.GetCapacity(), 6);
    EXPECT_EQ(p.GetSize(), 4);
    EXPECT_EQ(p.GetData()[5].Modulus(), 1.0);  // new room holds default numbers
    ExpectNuFailure<CNuOperationException>([&] { p.Truncate(5); }, 114, "Truncate operation",
                                           "CNuComplexPolarArray::Truncate(int Size)");
    p.Truncate(3);
    EXPECT_EQ(p.GetCapacity(), 3);
    EXPECT_EQ(p[2].Modulus(), 3.0);
    p.Clear();
    EXPECT_EQ(p.GetSize(), 0);
    EXPECT_EQ(p.GetCapacity(), 3);
    EXPECT_EQ(p.GetData()[2].Modulus(), 3.0);  // Clear only resets the size
    p.FreeExtra();
    EXPECT_EQ(p.GetData(), nullptr);
    p.Truncate(0);
    EXPECT_EQ(p.GetCapacity(), 0);
}

}  // namespace
}  // namespace numorix
