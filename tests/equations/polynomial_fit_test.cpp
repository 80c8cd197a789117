// Least-squares polynomial fitting: exact recovery of polynomials, minimum-norm solutions,
// chi-square, refusals, and the NIST StRD linear regression sets with certified values, where
// the literal cuts at 1e-10 decide how close the fit comes.
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "nu_test.h"
#include "numorix/equations/polynomial.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

// Well-conditioned fits of order-1 data: the decomposition's rounding, amplified by the
// condition of a small Vandermonde matrix on [-1, 2].
constexpr double kConditioned = 1e-11;

CNuDoubleArray ArrayOf(const std::vector<double>& values) {
    CNuDoubleArray a(static_cast<int>(values.size()));
    for (double d : values)
        a.Add(d);
    return a;
}

// One NIST StRD regression set: data columns y, x and the certified estimates and residual
// standard deviation.
struct SNistSet {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> certified;
    double dResidualSd = 0.0;
};

// The header names the line ranges of the certified values and of the data.
bool ReadNist(const std::string& sName, SNistSet* pSet) {
    std::ifstream in(std::string(NUMORIX_EQUATIONS_DATA_DIR) + "/" + sName + ".dat");
    if (!in) return false;
    std::vector<std::string> lines;
    for (std::string s; std::getline(in, s);) {
        if (!s.empty() && s.back() == '\r') s.pop_back();
        lines.push_back(s);
    }
    int nCertFirst = 0, nCertLast = 0, nDataFirst = 0, nDataLast = 0;
    for (const std::string& s : lines) {
        if (s.find("Certified Values") != std::string::npos) {
            std::sscanf(s.substr(s.find("lines")).c_str(), "lines %d to %d", &nCertFirst,
                        &nCertLast);
        }
        if (s.find("Data  ") != std::string::npos && s.find("lines") != std::string::npos) {
            std::sscanf(s.substr(s.find("lines")).c_str(), "lines %d to %d", &nDataFirst,
                        &nDataLast);
        }
    }
    if (nDataFirst < 1 || nDataLast > static_cast<int>(lines.size())) return false;
    for (int i = nCertFirst; i <= nCertLast; ++i) {
        std::istringstream row(lines[i - 1]);
        std::string sWord;
        row >> sWord;
        if (sWord.size() > 1 && sWord[0] == 'B' && std::isdigit(sWord[1])) {
            double d = 0.0;
            row >> d;
            pSet->certified.push_back(d);
        } else if (sWord == "Residual") {
            std::string sRest;
            std::getline(row, sRest);
            if (sRest.find("Standard Deviation") != std::string::npos) {
                pSet->dResidualSd = std::stod(sRest.substr(sRest.find("Deviation") + 9));
            }
        }
    }
    // "Residual" and "Standard Deviation" may stand on two lines.
    if (pSet->dResidualSd == 0.0) {
        for (int i = nCertFirst; i <= nCertLast; ++i) {
            const std::string& s = lines[i - 1];
            std::size_t at = s.find("Standard Deviation");
            if (at != std::string::npos && s.find("Residual") == std::string::npos &&
                i > nCertFirst && lines[i - 2].find("Residual") != std::string::npos) {
                pSet->dResidualSd = std::stod(s.substr(at + 18));
            }
        }
    }
    for (int i = nDataFirst; i <= nDataLast; ++i) {
        std::istringstream row(lines[i - 1]);
        double y = 0.0, x = 0.0;
        if (row >> y >> x) {
            pSet->y.push_back(y);
            pSet->x.push_back(x);
        }
    }
    return !pSet->x.empty() && !pSet->certified.empty() && pSet->dResidualSd > 0.0;
}

struct SFitResult {
    std::vector<double> coefficients;
    double dChiSquare = 0.0;
    double dWorstRelative = 0.0;  // largest relative error of a coefficient
};

SFitResult FitNist(const SNistSet& set) {
    CNuPolynomial p(static_cast<int>(set.certified.size()) - 1);
    SFitResult r;
    p.Fit(ArrayOf(set.x), ArrayOf(set.y), &r.dChiSquare);
    for (int i = 0; i <= p.GetDegree(); ++i) {
        r.coefficients.push_back(p[i]);
        double dError = std::fabs(p[i] - set.certified[i]) / std::fabs(set.certified[i]);
        r.dWorstRelative = std::max(r.dWorstRelative, dError);
    }
    return r;
}

double CertifiedChiSquare(const SNistSet& set) {
    double dFreedom = static_cast<double>(set.x.size() - set.certified.size());
    return set.dResidualSd * set.dResidualSd * dFreedom;
}

TEST(PolynomialFit, RecoversAPolynomialFromExactSamples) {
    test::Random random;
    for (int nDegree = 0; nDegree <= 5; ++nDegree) {
        std::vector<double> coefficients(nDegree + 1);
        for (double& c : coefficients)
            c = random.Uniform(0.5, 2.0) * (random.Integer(0, 1) ? 1.0 : -1.0);
        std::vector<double> x, y;
        for (int i = 0; i < 3 * (nDegree + 1); ++i) {
            x.push_back(random.Uniform(-1.0, 2.0));
            double dValue = 0.0;
            for (int k = nDegree; k >= 0; --k)
                dValue = dValue * x.back() + coefficients[k];
            y.push_back(dValue);
        }
        CNuPolynomial p(nDegree);
        double dChiSquare = -1.0;
        p.Fit(ArrayOf(x), ArrayOf(y), &dChiSquare);
        EXPECT_EQ(p.GetDegree(), nDegree);
        for (int k = 0; k <= nDegree; ++k)
            EXPECT_NEAR(p[k], coefficients[k], kConditioned) << "degree " << nDegree;
        // A residual below NuGetTol() is reported as exactly zero.
        EXPECT_EQ(dChiSquare, 0.0) << "degree " << nDegree;
    }
}

TEST(PolynomialFit, ResidualsAreOrthogonalToTheBasisAndChiSquareIsTheirSum) {
    test::Random random;
    std::vector<double> x, y;
    for (int i = 0; i < 30; ++i) {
        x.push_back(random.Uniform(-1.0, 1.0));
        y.push_back(std::cos(3.0 * x.back()) + random.Normal(0.0, 0.1));
    }
    CNuPolynomial p(3);
    double dChiSquare = 0.0;
    p.Fit(ArrayOf(x), ArrayOf(y), &dChiSquare);
    double dSum = 0.0;
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
    // The two-argument form fits the same.
    CNuPolynomial q(3);
    q.Fit(ArrayOf(x), ArrayOf(y));
    EXPECT_TRUE(q.IsEqual(p, test::kExact + 1e-300));
}

TEST(PolynomialFit, FewerPointsThanCoefficientsGiveTheMinimumNormSolution) {
    // A line through one point: of all c0 + c1 x = 2 at x = 1, the shortest is c0 = c1 = 1.
    CNuPolynomial p(1);
    double dChiSquare = -1.0;
    p.Fit(ArrayOf({1.0}), ArrayOf({2.0}), &dChiSquare);
    EXPECT_NEAR(p[0], 1.0, kConditioned);
    EXPECT_NEAR(p[1], 1.0, kConditioned);
    EXPECT_EQ(dChiSquare, 0.0);
    // A quadratic through two points: minimum norm among all interpolants.
    CNuPolynomial q(2);
    q.Fit(ArrayOf({-1.0, 1.0}), ArrayOf({1.0, 1.0}));
    EXPECT_NEAR(q[0], 0.5, kConditioned);
    EXPECT_NEAR(q[1], 0.0, kConditioned);
    EXPECT_NEAR(q[2], 0.5, kConditioned);
}

TEST(PolynomialFit, CoefficientsBelowTheCutAreZeroAndTheDegreeStays) {
    CNuPolynomial p(3);
    // y = 1 + 1e-11 x^3 on [0, 1]: the cubic term falls below the literal 1e-10 and is zeroed,
    // while the degree is kept.
    std::vector<double> x, y;
    for (int i = 0; i <= 10; ++i) {
        x.push_back(0.1 * i);
        y.push_back(1.0 + 1e-11 * x.back() * x.back() * x.back());
    }
    p.Fit(ArrayOf(x), ArrayOf(y));
    EXPECT_EQ(p.GetDegree(), 3);
    EXPECT_EQ(p[3], 0.0);
    EXPECT_NEAR(p[0], 1.0, kConditioned);
}

TEST(PolynomialFit, RefusesMismatchedAndEmptyData) {
    CNuPolynomial p(2);
    ExpectNuFailure<CNuOperationException>(
        [&] {
            p.Fit(ArrayOf({1.0, 2.0}), ArrayOf({1.0}));
        },
        105, "data checking", "CNuPolynomial::Fit()");
    ExpectNuFailure<CNuConstructionException>([&] { p.Fit(CNuDoubleArray(), CNuDoubleArray()); }, 1,
                                              "number of rows/columns", "CNuMatrix");
}

// Norris: a straight line, well conditioned. Every coefficient to about 12 digits.
TEST(PolynomialFit, MatchesTheCertifiedNorrisLine) {
    SNistSet set;
    ASSERT_TRUE(ReadNist("Norris", &set));
    ASSERT_EQ(set.x.size(), 36u);
    SFitResult r = FitNist(set);
    EXPECT_LE(r.dWorstRelative, 1e-12);
    EXPECT_NEAR(r.dChiSquare / CertifiedChiSquare(set), 1.0, 1e-12);
}

// Pontius: x runs to 3e6, so the column of ones is some 1e-13 of the column of x^2 and its
// singular direction falls under the cut at 1e-10 of the largest. The minimum-norm solution
// then has B0 below the literal 1e-10 for coefficients, as is the certified B2 (-3.2e-15): both
// become zero, leaving a straight line through the origin with B1 within 0.12 % of the
// certified slope and a residual over 5000 times the certified one.
TEST(PolynomialFit, ReducesPontiusToALineThroughTheOriginByBothCuts) {
    SNistSet set;
    ASSERT_TRUE(ReadNist("Pontius", &set));
    ASSERT_EQ(set.x.size(), 40u);
    SFitResult r = FitNist(set);
    std::printf(
        "[ numorix ] Pontius: B0 %.15g, B1 %.15g, B2 %.15g, chi-square %.6g (certified "
        "%.6g)\n",
        r.coefficients[0], r.coefficients[1], r.coefficients[2], r.dChiSquare,
        CertifiedChiSquare(set));
    EXPECT_EQ(r.coefficients[0], 0.0);
    EXPECT_EQ(r.coefficients[2], 0.0);
    EXPECT_LE(std::fabs(r.coefficients[1] / set.certified[1] - 1.0), 2e-3);
    EXPECT_GT(r.dChiSquare, 5000.0 * CertifiedChiSquare(set));
}

// Filip: degree 10, with a Vandermonde matrix whose singular values span far more than the
// 1e-10 that the fit keeps. The truncated solution has nothing in common with the certified
// coefficients (not even their signs), yet its residual is only about twice the certified one.
TEST(PolynomialFit, TruncatesTheIllConditionedFilipModel) {
    SNistSet set;
    ASSERT_TRUE(ReadNist("Filip", &set));
    ASSERT_EQ(set.x.size(), 82u);
    ASSERT_EQ(set.certified.size(), 11u);
    SFitResult r = FitNist(set);
    std::printf(
        "[ numorix ] Filip: worst coefficient relative error %.3g, chi-square %.6g "
        "(certified %.6g)\n",
        r.dWorstRelative, r.dChiSquare, CertifiedChiSquare(set));
    for (int i = 0; i <= 10; ++i)
        std::printf("[ numorix ]   B%d %.15g (certified %.15g)\n", i, r.coefficients[i],
                    set.certified[i]);
    EXPECT_GT(r.dWorstRelative, 1.0);
    EXPECT_GE(r.dChiSquare, CertifiedChiSquare(set));
    EXPECT_LE(r.dChiSquare, 2.5 * CertifiedChiSquare(set));
}

}  // namespace
}  // namespace numorix
