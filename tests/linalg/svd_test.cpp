// Singular value decomposition: reconstruction and orthonormality on every shape, agreement with
// LAPACK and with the known spectra of symmetric tridiagonal test matrices, the exact sign and
// rank-cut contracts, failures on non-finite data, and bit identity with the textbook loop order.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "dense_support.h"
#include "nu_test.h"
#include "numorix/foundation/exception.h"
#include "numorix/foundation/scalar.h"
#include "numorix/foundation/tolerance.h"
#include "numorix/linalg/matrix.h"
#include "numorix/linalg/vector.h"

namespace numorix {
namespace {

// Backward error of a stable decomposition of an n-column matrix: a few hundred roundings of the
// data's size.
constexpr double kReconstruction = 1e-13;
// Orthonormality of accumulated Householder and Givens transformations.
constexpr double kOrthonormal = 1e-13;
// Singular values of two backward-stable methods, relative to the largest.
constexpr double kAgainstLapack = 1e-13;

// w and V start with sizes unrelated to A: the decomposition reassigns them whatever they were.
struct SSvd {
    CNuMatrix U{1, 1};
    CNuVector w{9};
    CNuMatrix V{2, 7};
};

SSvd Decompose(const CNuMatrix& A) {
    SSvd r;
    r.U = A;
    r.U.SVD(&r.w, &r.V);
    return r;
}

// Largest |A - U diag(w) V^T| relative to the largest |A| (or absolute for a zero A).
double ReconstructionError(const CNuMatrix& A, const SSvd& r) {
    Eigen::MatrixXd E = test::ToEigen(A);
    Eigen::MatrixXd rebuilt =
        test::ToEigen(r.U) * test::ToEigen(r.w).asDiagonal() * test::ToEigen(r.V).transpose();
    double dScale = std::max(E.cwiseAbs().maxCoeff(), 1.0);
    return (E - rebuilt).cwiseAbs().maxCoeff() / dScale;
}

// Largest deviation of V^T V from I, and of U^T U from I over the columns with w > 0.
double OrthonormalityError(const SSvd& r) {
    const Eigen::MatrixXd V = test::ToEigen(r.V), U = test::ToEigen(r.U);
    const Eigen::MatrixXd G = U.transpose() * U;
    const int n = r.w.GetSize();
    double dErr = (V.transpose() * V - Eigen::MatrixXd::Identity(n, n)).cwiseAbs().maxCoeff();
    for (int j = 0; j < n; ++j)
        for (int k = 0; k < n; ++k)
            if (r.w[j] > 0.0 && r.w[k] > 0.0)
                dErr = std::max(dErr, std::fabs(G(j, k) - (j == k ? 1.0 : 0.0)));
    return dErr;
}

std::vector<double> SortedDescending(const CNuVector& w) {
    std::vector<double> v(w.GetData(), w.GetData() + w.GetSize());
    std::sort(v.begin(), v.end(), [](double a, double b) { return a > b; });
    return v;
}

TEST(Svd, RebuildsMatricesOfEveryShapeFromOrthonormalFactors) {
    test::Random rng;
    const int aShapes[][2] = {{1, 1},  {1, 6},  {6, 1},   {2, 2},  {3, 5},  {5, 3},   {4, 4},
                              {9, 17}, {17, 9}, {30, 30}, {40, 7}, {7, 40}, {60, 60}, {100000, 3}};
    for (const auto& shape : aShapes) {
        const int m = shape[0], n = shape[1];
        SCOPED_TRACE(std::to_string(m) + " x " + std::to_string(n));
        CNuMatrix A = test::RandomMatrix(rng, m, n);
        SSvd r = Decompose(A);
        ASSERT_EQ(r.w.GetSize(), n);
        ASSERT_TRUE(r.U.GetRowSize() == m && r.U.GetColumnSize() == n);
        ASSERT_TRUE(r.V.GetRowSize() == n && r.V.GetColumnSize() == n);
        EXPECT_LT(ReconstructionError(A, r), kReconstruction);
        // U^T U of the tall matrix sums 10^5 products per entry.
        EXPECT_LT(OrthonormalityError(r), m < 1000 ? kOrthonormal : 1e-11);
        EXPECT_GE(test::ToEigen(r.w).minCoeff(), 0.0);
    }
}

TEST(Svd, SingularValuesAgreeWithLapack) {
    test::Random rng;
    const int aShapes[][2] = {{5, 3}, {3, 5}, {12, 12}, {50, 20}, {20, 50}, {80, 80}};
    for (const auto& shape : aShapes) {
        CNuMatrix A = test::RandomMatrix(rng, shape[0], shape[1]);
        std::vector<double> expected = test::LapackSingularValues(A);
        SSvd r = Decompose(A);
        std::vector<double> seen = SortedDescending(r.w);
        // For m < n the trailing n - m values are zero.
        for (std::size_t k = expected.size(); k < seen.size(); ++k)
            EXPECT_EQ(seen[k], 0.0) << "surplus value " << k;
        double dErr = 0.0;
        for (std::size_t k = 0; k < expected.size(); ++k)
            dErr = std::max(dErr, std::fabs(seen[k] - expected[k]));
        EXPECT_LT(dErr / expected[0], kAgainstLapack) << shape[0] << " x " << shape[1];
    }
}

TEST(Svd, OneByOneMatricesPutTheSignIntoV) {
    for (double d : {2.0, -2.0}) {
        SSvd r = Decompose(test::Mat({{d}}));
        EXPECT_EQ(r.U.GetData()[0][0], -1.0) << "A = " << d;
        EXPECT_EQ(r.w.GetData()[0], 2.0) << "A = " << d;
        EXPECT_EQ(r.V.GetData()[0][0], -d / 2.0) << "A = " << d;
    }
}

TEST(Svd, ZeroMatrixGivesZeroValuesAndIdentityV) {
    CNuMatrix A(4, 3);
    SSvd r = Decompose(A);
    for (int j = 0; j < 3; ++j) {
        EXPECT_EQ(r.w.GetData()[j], 0.0);
        for (int k = 0; k < 3; ++k)
            EXPECT_EQ(r.V.GetData()[j][k], j == k ? 1.0 : 0.0) << "V[" << j << "][" << k << "]";
    }
}

TEST(Svd, RankDeficientMatricesGetExactZerosThroughTheCut) {
    test::Random rng;
    // Rank 1: an outer product of a 7- and a 5-vector.
    CNuMatrix A =
        test::FromEigen(Eigen::MatrixXd(test::ToEigen(test::RandomVector(rng, 7)) *
                                        test::ToEigen(test::RandomVector(rng, 5)).transpose()));
    // Rank 2 of size 6 by 6: two repeated columns, linear combinations and a zero column.
    CNuMatrix B = test::RandomMatrix(rng, 6, 6);
    for (int i = 0; i < 6; ++i) {
        double* p = B.GetData()[i];
        p[2] = p[0];
        p[3] = 2.0 * p[1];
        p[4] = p[0] + p[1];
        p[5] = 0.0;
    }
    for (const auto& c : {std::make_pair(A, 1), std::make_pair(B, 2)}) {
        SSvd r = Decompose(c.first);
        EXPECT_EQ((test::ToEigen(r.w).array() != 0.0).count(), c.second)
            << "w " << test::ToEigen(r.w).transpose();
        EXPECT_LT(ReconstructionError(c.first, r), kReconstruction);
    }
}

// Non-finite data end either at the split test's bounds-checked read (stored 103) or at the sweep
// limit (stored 146); they never loop or read outside w.
TEST(Svd, NonFiniteDataFailWithAStoredCauseAndNeverHang) {
    const double kNaN = std::numeric_limits<double>::quiet_NaN();
    const double kInf = std::numeric_limits<double>::infinity();
    test::Random rng;
    int nSeen103 = 0;
    for (double dBad : {kNaN, kInf, -kInf}) {
        for (int nCase = 0; nCase < 6; ++nCase) {
            CNuMatrix A = test::RandomMatrix(rng, 5, 4);
            A.GetData()[nCase % 5][nCase % 4] = dBad;
            CNuVector w;
            CNuMatrix V(1, 1);
            try {
                A.SVD(&w, &V);
                ADD_FAILURE() << "no failure with " << dBad << " at case " << nCase;
            } catch (const CNuOperationException& e) {
                const bool bIndex = e.m_nCause == 103;
                nSeen103 += bIndex;
                EXPECT_TRUE(bIndex || e.m_nCause == 146) << test::MessageOf(e);
                EXPECT_STREQ(e.m_szName, bIndex ? "element operator[]" : "calculation");
                EXPECT_STREQ(e.m_szLocation, bIndex ? "CNuVector" : "CNuMatrix::SVD()");
                EXPECT_TRUE(!bIndex || (e.m_nValue1 == 0 && e.m_nValue2 == 3))
                    << test::MessageOf(e);
            }
        }
    }
    EXPECT_GT(nSeen103, 0) << "a NaN norm should reach the bounds-checked read";
}

// ---------------------------------------------------------------------------------------------
// The textbook loop order: every step as a loop down the columns, every rotation applied at once.
// The library rearranges these loops for the cache; its results must be the same to the bit.

using Rows = std::vector<std::vector<double>>;

double SignOf(double b, double a) { return a >= 0.0 ? std::fabs(b) : -std::fabs(b); }
bool Small(double d) { return std::fabs(d) < NuGetZero(); }

void TextbookSvd(Rows& a, int m, int n, std::vector<double>& w, Rows& v) {
    std::vector<double> rv1(static_cast<std::size_t>(n));
    w.assign(static_cast<std::size_t>(n), 0.0);
    v.assign(static_cast<std::size_t>(n), std::vector<double>(static_cast<std::size_t>(n), 0.0));
    double g = 0.0, scale = 0.0, anorm = 0.0, s = 0.0, f = 0.0, h = 0.0;
    int l = 0;
    for (int i = 0; i < n; ++i) {
        l = i + 1;
        rv1[i] = scale * g;
        g = s = scale = 0.0;
        if (i < m) {
            for (int k = i; k < m; ++k)
                scale += std::fabs(a[k][i]);
            if (!Small(scale)) {
                for (int k = i; k < m; ++k) {
                    a[k][i] /= scale;
                    s += a[k][i] * a[k][i];
                }
                f = a[i][i];
                g = -SignOf(std::sqrt(s), f);
                h = f * g - s;
                a[i][i] = f - g;
                for (int j = l; j < n; ++j) {
                    s = 0.0;
                    for (int k = i; k < m; ++k)
                        s += a[k][i] * a[k][j];
                    f = s / h;
                    for (int k = i; k < m; ++k)
                        a[k][j] += f * a[k][i];
                }
                for (int k = i; k < m; ++k)
                    a[k][i] *= scale;
            }
        }
        w[i] = scale * g;
        g = s = scale = 0.0;
        if (i < m && i != n - 1) {
            for (int k = l; k < n; ++k)
                scale += std::fabs(a[i][k]);
            if (!Small(scale)) {
                for (int k = l; k < n; ++k) {
                    a[i][k] /= scale;
                    s += a[i][k] * a[i][k];
                }
                f = a[i][l];
                g = -SignOf(std::sqrt(s), f);
                h = f * g - s;
                a[i][l] = f - g;
                for (int k = l; k < n; ++k)
                    rv1[k] = a[i][k] / h;
                for (int j = l; j < m; ++j) {
                    s = 0.0;
                    for (int k = l; k < n; ++k)
                        s += a[j][k] * a[i][k];
                    for (int k = l; k < n; ++k)
                        a[j][k] += s * rv1[k];
                }
                for (int k = l; k < n; ++k)
                    a[i][k] *= scale;
            }
        }
        double dCand = std::fabs(w[i]) + std::fabs(rv1[i]);
        anorm = anorm > dCand ? anorm : dCand;
    }
    for (int i = n - 1; i >= 0; --i) {
        if (i < n - 1) {
            if (!Small(g)) {
                for (int j = l; j < n; ++j)
                    v[j][i] = (a[i][j] / a[i][l]) / g;
                for (int j = l; j < n; ++j) {
                    s = 0.0;
                    for (int k = l; k < n; ++k)
                        s += a[i][k] * v[k][j];
                    for (int k = l; k < n; ++k)
                        v[k][j] += s * v[k][i];
                }
            }
            for (int j = l; j < n; ++j)
                v[i][j] = v[j][i] = 0.0;
        }
        v[i][i] = 1.0;
        g = rv1[i];
        l = i;
    }
    for (int i = std::min(m, n) - 1; i >= 0; --i) {
        l = i + 1;
        g = w[i];
        for (int j = l; j < n; ++j)
            a[i][j] = 0.0;
        if (Small(g)) {
            for (int j = i; j < m; ++j)
                a[j][i] = 0.0;
        } else {
            g = 1.0 / g;
            for (int j = l; j < n; ++j) {
                s = 0.0;
                for (int k = l; k < m; ++k)
                    s += a[k][i] * a[k][j];
                f = (s / a[i][i]) * g;
                for (int k = i; k < m; ++k)
                    a[k][j] += f * a[k][i];
            }
            for (int j = i; j < m; ++j)
                a[j][i] *= g;
        }
        a[i][i] += 1.0;
    }
    auto negligible = [&](double d) { return Small((std::fabs(d) + anorm) - anorm); };
    for (int k = n - 1; k >= 0; --k) {
        for (int its = 1;; ++its) {
            bool flag = true;
            int nm = 0;
            for (l = k; l >= 0; --l) {
                nm = l - 1;
                if (negligible(rv1[l])) {
                    flag = false;
                    break;
                }
                if (nm < 0) throw CNuOperationException(3, "element operator[]", "CNuVector");
                if (negligible(w[nm])) break;
            }
            if (flag) {
                double c = 0.0;
                s = 1.0;
                for (int i = l; i <= k; ++i) {
                    f = s * rv1[i];
                    rv1[i] = c * rv1[i];
                    if (negligible(f)) break;
                    g = w[i];
                    h = NuPythag(f, g);
                    w[i] = h;
                    h = 1.0 / h;
                    c = g * h;
                    s = -f * h;
                    for (int j = 0; j < m; ++j) {
                        double y = a[j][nm], z = a[j][i];
                        a[j][nm] = y * c + z * s;
                        a[j][i] = z * c - y * s;
                    }
                }
            }
            double z = w[k];
            if (l == k) {
                if (z < 0.0) {
                    w[k] = -z;
                    for (int j = 0; j < n; ++j)
                        v[j][k] = -v[j][k];
                }
                break;
            }
            if (its >= 124) throw CNuOperationException(46, "calculation", "CNuMatrix::SVD()");
            double x = w[l];
            nm = k - 1;
            double y = w[nm];
            g = rv1[nm];
            h = rv1[k];
            f = ((y - z) * (y + z) + (g - h) * (g + h)) / (2.0 * h * y);
            g = NuPythag(f, 1.0);
            f = ((x - z) * (x + z) + h * ((y / (f + SignOf(g, f))) - h)) / x;
            double c = 1.0;
            s = 1.0;
            for (int j = l; j <= nm; ++j) {
                int i = j + 1;
                g = rv1[i];
                y = w[i];
                h = s * g;
                g = c * g;
                z = NuPythag(f, h);
                rv1[j] = z;
                c = f / z;
                s = h / z;
                f = x * c + g * s;
                g = g * c - x * s;
                h = y * s;
                y *= c;
                for (int r = 0; r < n; ++r) {
                    double xx = v[r][j], zz = v[r][i];
                    v[r][j] = xx * c + zz * s;
                    v[r][i] = zz * c - xx * s;
                }
                z = NuPythag(f, h);
                w[j] = z;
                if (z != 0.0) {
                    z = 1.0 / z;
                    c = f * z;
                    s = h * z;
                }
                f = c * g + s * y;
                x = c * y - s * g;
                for (int r = 0; r < m; ++r) {
                    double yy = a[r][j], zz = a[r][i];
                    a[r][j] = yy * c + zz * s;
                    a[r][i] = zz * c - yy * s;
                }
            }
            rv1[l] = 0.0;
            rv1[k] = f;
            w[k] = x;
        }
    }
    double wmax = 0.0;
    for (int j = 0; j < n; ++j)
        if (w[j] > wmax) wmax = w[j];
    double thresh = NuGetTol() * wmax;
    for (int j = 0; j < n; ++j)
        if (w[j] < thresh) w[j] = 0.0;
}

void ExpectBitIdenticalToTextbook(const CNuMatrix& A, const char* pszWhat) {
    const int m = A.GetRowSize();
    const int n = A.GetColumnSize();
    Rows a(static_cast<std::size_t>(m));
    for (int i = 0; i < m; ++i)
        a[i].assign(A.GetData()[i], A.GetData()[i] + n);
    std::vector<double> w;
    Rows v;
    TextbookSvd(a, m, n, w, v);
    SSvd r = Decompose(A);
    int nDiffer = 0;
    for (int j = 0; j < n; ++j)
        nDiffer += r.w.GetData()[j] != w[j];
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            nDiffer += r.U.GetData()[i][j] != a[i][j];
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            nDiffer += r.V.GetData()[i][j] != v[i][j];
    EXPECT_EQ(nDiffer, 0) << pszWhat << " " << m << " x " << n << ": elements differing";
}

TEST(Svd, IsBitIdenticalToTheTextbookLoopOrder) {
    test::Random rng;
    const int aShapes[][2] = {{1, 1},   {1, 5},   {5, 1},   {3, 3},   {4, 7},
                              {7, 4},   {25, 25}, {60, 13}, {13, 60}, {300, 2},
                              {300, 3}, {300, 4}, {200, 5}, {200, 6}, {90, 90}};
    for (const auto& shape : aShapes) {
        ExpectBitIdenticalToTextbook(test::RandomMatrix(rng, shape[0], shape[1]), "random");
    }
    // Rank-deficient data, where cancellations and exact zeros occur.
    CNuMatrix B = test::RandomMatrix(rng, 9, 6);
    for (int i = 0; i < 9; ++i) {
        B.GetData()[i][3] = B.GetData()[i][1];
        B.GetData()[i][5] = 0.0;
    }
    ExpectBitIdenticalToTextbook(B, "rank-deficient");
    // Zero columns skip the column step while the row step still runs, and the reverse.
    CNuMatrix C0 = test::RandomMatrix(rng, 40, 4), C1 = test::RandomMatrix(rng, 40, 4);
    CNuMatrix D = test::RandomMatrix(rng, 30, 5);
    for (int i = 0; i < 40; ++i)
        C0.GetData()[i][0] = C1.GetData()[i][1] = 0.0;
    for (int j = 1; j < 5; ++j)
        D.GetData()[0][j] = 0.0;
    ExpectBitIdenticalToTextbook(C0, "zero column 0");
    ExpectBitIdenticalToTextbook(C1, "zero column 1");
    ExpectBitIdenticalToTextbook(D, "zero first row tail");
    CNuMatrix Z(3, 4);
    Z.GetData()[1][2] = 1.0;
    ExpectBitIdenticalToTextbook(Z, "sparse");
}

// ---------------------------------------------------------------------------------------------
// Symmetric tridiagonal matrices with published spectra: the singular values of a symmetric T are
// the absolute eigenvalues.

struct STridiagonal {
    CNuMatrix T{1, 1};
    std::vector<double> absEigen;  // descending
};

bool ReadTridiagonal(const std::string& sDir, const std::string& sName, STridiagonal* pOut) {
    std::ifstream dat(sDir + "/" + sName + ".dat");
    std::ifstream eig(sDir + "/" + sName + ".eig");
    if (!dat || !eig) return false;
    auto readReal = [](std::istream& in, double* pd) {
        std::string s;
        if (!(in >> s)) return false;
        std::replace(s.begin(), s.end(), 'D', 'E');
        *pd = std::stod(s);
        return true;
    };
    int n = 0;
    dat >> n;
    CNuMatrix T(n, n);
    for (int k = 0; k < n; ++k) {
        int i = 0;
        double d = 0.0, e = 0.0;
        dat >> i;
        if (!readReal(dat, &d) || !readReal(dat, &e)) return false;
        T.GetData()[k][k] = d;
        if (k + 1 < n) {
            T.GetData()[k][k + 1] = e;
            T.GetData()[k + 1][k] = e;
        }
    }
    int nEig = 0;
    eig >> nEig;
    if (nEig != n) return false;
    CNuVector values(n);
    for (int k = 0; k < n; ++k) {
        if (!readReal(eig, &values[k])) return false;
        values[k] = std::fabs(values[k]);
    }
    pOut->T = T;
    pOut->absEigen = SortedDescending(values);
    return true;
}

TEST(Svd, ReproducesTheSpectraOfPublishedTridiagonalMatrices) {
    const std::string sRoot = test::RefDataDir();
    const std::string sDir = sRoot + "/stcollection-tridiag-eig";
    if (sRoot.empty() || !std::ifstream(sDir + "/README.md")) {
        GTEST_SKIP() << "reference data stcollection-tridiag-eig not found under '" << sRoot
                     << "' (set NUMORIX_REFDATA)";
    }
    // Absolute error per entry in units of eps * max|lambda| (the collection's own accuracy is
    // 3.5e-15 relative); a dense SVD does not resolve tiny values to high relative accuracy.
    constexpr double kSpectrum = 64 * test::kUlp;
    for (const char* pszName : {"T_0010", "Orti", "T_bug414", "T_0010_stexrfailure_TGK",
                                "Julien_30", "sinc41", "Fournier_100", "Moler_200"}) {
        STridiagonal data;
        ASSERT_TRUE(ReadTridiagonal(sDir, pszName, &data)) << "cannot read " << pszName;
        SSvd r = Decompose(data.T);
        std::vector<double> seen = SortedDescending(r.w);
        double dErr = 0.0;
        for (std::size_t k = 0; k < seen.size(); ++k)
            dErr = std::max(dErr, std::fabs(seen[k] - data.absEigen[k]));
        EXPECT_LT(dErr / data.absEigen[0], kSpectrum) << pszName;
    }
}

}  // namespace
}  // namespace numorix
