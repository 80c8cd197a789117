// Least-squares polynomial fitting: exact recovery, orthogonal residuals, minimum-norm solutions,
// refusals, and the NIST StRD sets Norris, Pontius and Filip, where the literal cuts at 1e-10
// decide how close the fit comes to the certified values.
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "nu_test.h"
#include "numorix/equations/polynomial.h"

namespace numorix {
namespace {

// Well-conditioned fits of order-1 data on [-1, 2]: the decomposition's rounding amplified by
// the condition of a small Vandermonde matrix.
constexpr double kConditioned = 1e-11;

CNuDoubleArray ArrayOf(const std::vector<double>& values) {
    CNuDoubleArray a(static_cast<int>(values.size()));
    for (double d : values)
        a.Add(d);
    return a;
}

// A NIST StRD regression set: data (y x), certified estimates B0.. and the certified residual
// sum of squares from the analysis of variance table.
struct SNistSet {
    std::vector<double> x, y, certified;
    double dResidualSS = 0.0;
};

bool ReadNist(const char* pszName, SNistSet* pSet) {
    std::ifstream in(std::string(NUMORIX_EQUATIONS_DATA_DIR) + "/" + pszName + ".dat");
    std::vector<std::string> lines;
    for (std::string s; std::getline(in, s);)
        lines.push_back(s);
    if (lines.size() < 60) return false;
    int nFirst = 0, nLast = 0, nFreedom = 0;
    std::sscanf(lines[5].c_str(), " Data (lines %d to %d)", &nFirst, &nLast);
    for (int i = 30; i < nFirst - 1; ++i) {
        int k = 0;
        double d = 0.0;
        if (std::sscanf(lines[i].c_str(), " B%d %lf", &k, &d) == 2) pSet->certified.push_back(d);
        std::sscanf(lines[i].c_str(), "Residual %d %lf", &nFreedom, &pSet->dResidualSS);
    }
    for (int i = nFirst - 1; i < nLast && i < static_cast<int>(lines.size()); ++i) {
        double y = 0.0, x = 0.0;
        if (std::sscanf(lines[i].c_str(), "%lf %lf", &y, &x) == 2) {
            pSet->y.push_back(y);
            pSet->x.push_back(x);
        }
    }
    return !pSet->certified.empty() && pSet->dResidualSS > 0.0;
}

// Fits the set's model; returns the coefficients and chi-square, and prints how close they come.
std::vector<double> FitNist(const char* pszName, const SNistSet& set, double* pdChiSquare) {
    CNuPolynomial p(static_cast<int>(set.certified.size()) - 1);
    p.Fit(ArrayOf(set.x), ArrayOf(set.y), pdChiSquare);
    std::vector<double> c(p.GetData(), p.GetData() + p.GetDegree() + 1);
    double dWorst = 0.0;
    for (std::size_t i = 0; i < c.size(); ++i)
        dWorst = std::max(dWorst, std::fabs(c[i] / set.certified[i] - 1.0));
    std::printf(
        "[ numorix ] %s: worst relative coefficient error %.3g, chi-square %.9g "
        "(certified %.9g)\n",
        pszName, dWorst, *pdChiSquare, set.dResidualSS);
    return c;
}

TEST(PolynomialFit, RecoversPolynomialsFromExactSamplesWithZeroChiSquare) {
    test::Random random;
    for (int nDegree = 0; nDegree <= 5; ++nDegree) {
        std::vector<double> c(nDegree + 1), x, y;
        for (double& d : c)
            d = random.Uniform(0.5, 2.0) * (random.Integer(0, 1) ? 1.0 : -1.0);
        for (int i = 0; i < 3 * (nDegree + 1); ++i) {
            x.push_back(random.Uniform(-1.0, 2.0));
            y.push_back(0.0);
            for (int k = nDegree; k >= 0; --k)
                y.back() = y.back() * x.back() + c[k];
        }
        CNuPolynomial p(nDegree);
        double dChiSquare = -1.0;
        p.Fit(ArrayOf(x), ArrayOf(y), &dChiSquare);
        for (int k = 0; k <= nDegree; ++k)
            EXPECT_NEAR(p[k], c[k], kConditioned) << "degree " << nDegree;
        EXPECT_EQ(dChiSquare, 0.0) << "degree " << nDegree;  // below NuGetTol(): exactly 0
    }
}

TEST(PolynomialFit, LeavesResidualsOrthogonalToEveryPower) {
    test::Random random;
    std::vector<double> x, y;
    for (int i = 0; i < 30; ++i) {
        x.push_back(random.Uniform(-1.0, 1.0));
        y.push_back(std::cos(3.0 * x.back()) + random.Normal(0.0, 0.1));
    }
    CNuPolynomial p(3);
    double dChiSquare = 0.0, dSum = 0.0;
    p.Fit(ArrayOf(x), ArrayOf(y), &dChiSquare);
    std::vector<double> normal(4, 0.0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        double dResidual = y[i] - p.ValueAt(x[i]);
        dSum += dResidual * dResidual;
        for (int k = 0; k < 4; ++k)
            normal[k] += dResidual * std::pow(x[i], k);
    }
    EXPECT_NEAR(dChiSquare, dSum, kConditioned);
    for (int k = 0; k < 4; ++k)
        EXPECT_NEAR(normal[k], 0.0, kConditioned) << "power " << k;
}

TEST(PolynomialFit, UnderdeterminedFitsGiveTheMinimumNormSolution) {
    CNuPolynomial line(1);  // of all c0 + c1 = 2, the shortest is (1, 1)
    line.Fit(ArrayOf({1.0}), ArrayOf({2.0}));
    EXPECT_NEAR(line[0], 1.0, kConditioned);
    EXPECT_NEAR(line[1], 1.0, kConditioned);
    CNuPolynomial square(2);  // through (-1, 1) and (1, 1): 0.5 + 0.5 x^2
    square.Fit(ArrayOf({-1.0, 1.0}), ArrayOf({1.0, 1.0}));
    EXPECT_NEAR(square[0], 0.5, kConditioned);
    EXPECT_NEAR(square[1], 0.0, kConditioned);
    EXPECT_NEAR(square[2], 0.5, kConditioned);
}

TEST(PolynomialFit, ZeroesCoefficientsBelowTheCutAndKeepsTheDegree) {
    std::vector<double> x, y;
    for (int i = 0; i <= 10; ++i) {
        x.push_back(0.1 * i);
        y.push_back(1.0 + 1e-11 * std::pow(x.back(), 3));
    }
    CNuPolynomial p(3);
    p.Fit(ArrayOf(x), ArrayOf(y));
    EXPECT_EQ(p.GetDegree(), 3);
    EXPECT_EQ(p[3], 0.0);
    EXPECT_NEAR(p[0], 1.0, kConditioned);
    test::ExpectNuFailure<CNuOperationException>(
        [&] {
            p.Fit(ArrayOf({1.0, 2.0}), ArrayOf({1.0}));
        },
        105, "data checking", "CNuPolynomial::Fit()");
    test::ExpectNuFailure<CNuConstructionException>(
        [&] { p.Fit(CNuDoubleArray(), CNuDoubleArray()); }, 1, "number of rows/columns",
        "CNuMatrix");
}

TEST(PolynomialFit, MatchesTheCertifiedNorrisLine) {
    SNistSet set;
    ASSERT_TRUE(ReadNist("Norris", &set));
    ASSERT_EQ(set.x.size(), 36u);
    double dChiSquare = 0.0;
    std::vector<double> c = FitNist("Norris", set, &dChiSquare);
    for (int i = 0; i < 2; ++i)
        EXPECT_NEAR(c[i] / set.certified[i], 1.0, 1e-12) << "B" << i;
    EXPECT_NEAR(dChiSquare / set.dResidualSS, 1.0, 1e-12);
}

// Pontius: x runs to 3e6, so the column of ones is some 1e-13 of the column of x^2, and its
// singular direction falls under the cut at 1e-10 of the largest. B0 of the minimum-norm
// solution then lies below the literal 1e-10 for coefficients, as does the certified B2
// (-3.2e-15): both become zero, leaving a line through the origin with B1 within 0.12 % of the
// certified slope and a residual over 5000 times the certified one.
TEST(PolynomialFit, ReducesPontiusToALineThroughTheOriginByBothCuts) {
    SNistSet set;
    ASSERT_TRUE(ReadNist("Pontius", &set));
    ASSERT_EQ(set.x.size(), 40u);
    double dChiSquare = 0.0;
    std::vector<double> c = FitNist("Pontius", set, &dChiSquare);
    EXPECT_EQ(c[0], 0.0);
    EXPECT_EQ(c[2], 0.0);
    EXPECT_NEAR(c[1] / set.certified[1], 1.0, 2e-3);
    EXPECT_GT(dChiSquare, 5000.0 * set.dResidualSS);
}

// Filip: degree 10, whose singular values span far more than the 1e-10 the fit keeps. The
// truncated solution shares nothing with the certified coefficients, not even their signs, yet
// its residual is only about twice the certified one.
TEST(PolynomialFit, TruncatesTheIllConditionedFilipModel) {
    SNistSet set;
    ASSERT_TRUE(ReadNist("Filip", &set));
    ASSERT_EQ(set.x.size(), 82u);
    ASSERT_EQ(set.certified.size(), 11u);
    double dChiSquare = 0.0;
    std::vector<double> c = FitNist("Filip", set, &dChiSquare);
    EXPECT_LT(c[0] * set.certified[0], 0.0);  // B0 has the wrong sign (certified -1467)
    EXPECT_GE(dChiSquare, set.dResidualSS);
    EXPECT_LE(dChiSquare, 2.5 * set.dResidualSS);
}

}  // namespace
}  // namespace numorix
