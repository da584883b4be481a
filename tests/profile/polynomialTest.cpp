#include "profileSupport.h"

#include <vector>

using namespace testing_support;

namespace {

/// By squaring, as the rounding of the powers is defined.
double power(double base, unsigned exponent) {
    double result = 1.0;
    for (; exponent != 0; exponent >>= 1, base *= base) {
        result *= (exponent & 1u) != 0 ? base : 1.0;
    }
    return result;
}

bool plainCoefficients(const Points& points, unsigned degree, std::vector<double>& coeffs) {
    const unsigned size = degree + 1;
    std::vector<double> sums(2 * size - 1);
    coeffs.assign(size, 0.0);
    for (const KxPointXY& p : points) {
        for (unsigned k = 0; k < 2 * size - 1; ++k) {
            const double factor = k == 0 ? 1.0 : power(static_cast<double>(p.x), k);
            sums[k] += factor;
            if (k < size) {
                coeffs[k] += static_cast<double>(p.y) * factor;
            }
        }
    }
    std::vector<std::vector<double>> a;
    for (unsigned i = 0; i < size; ++i) {
        a.emplace_back(sums.begin() + i, sums.begin() + i + size);
    }
    for (unsigned p = 0; p < size; ++p) {
        const double pivot = a[p][p];
        if (std::abs(pivot) < 1e-100) {
            return false;
        }
        coeffs[p] /= pivot;
        std::for_each(a[p].begin(), a[p].end(), [&](double& v) { v /= pivot; });
        for (unsigned i = p + 1; i < size; ++i) {
            const double factor = a[i][p];
            coeffs[i] -= factor * coeffs[p];
            for (unsigned j = 0; j < size; ++j) {
                a[i][j] -= factor * a[p][j];
            }
        }
    }
    for (unsigned p = size; p-- > 0;) {
        for (unsigned j = p + 1; j < size; ++j) {
            coeffs[p] -= a[p][j] * coeffs[j];
        }
    }
    return true;
}

TEST(Polynomial, FitEqualsThePlainDefinition) {
    int fitted = 0;
    forNasty(81, 1500, [&](Nasty& nasty) {
        Points points = nastyPoints(nasty, 60);
        KxProfile profile = profileOf(points);
        const unsigned degree = nasty.pick(std::array{0u, 1u, 2u, 3u, 4u, 7u, 12u, 50u});
        std::vector<double> coeffs(degree + 1), plain;
        const bool isFitted = profile.calcPolynomCoeffs(static_cast<int>(degree), coeffs.data());
        ASSERT_EQ(isFitted, plainCoefficients(points, degree, plain)) << degree;
        expectPoints(profile, points);
        if (isFitted) {
            EXPECT_EXACT(QList(coeffs.begin(), coeffs.end()), QList(plain.begin(), plain.end()));
            for (KxPointXY& p : points) {
                double y = 0.0;
                for (unsigned k = 0; k <= degree; ++k) {
                    y += plain[k] * power(static_cast<double>(p.x), k);
                }
                p.y = static_cast<float>(y);
            }
            ++fitted;
        }
        ASSERT_EQ(profile.polynomFit(static_cast<int>(degree)), isFitted);
        expectPoints(profile, points);
    });
    EXPECT_GT(fitted, 300);
}

TEST(Polynomial, RefusesWhatHasNoCoefficients) {
    KxProfile two = profileOf({{1, 2}, {2, 5}});
    double coeffs[51] = {};
    for (const int degree : {2, -1, 51, INT_MIN, INT_MAX}) {
        EXPECT_FALSE(two.polynomFit(degree)) << degree;
    }
    EXPECT_FALSE(profileOf({}).calcPolynomCoeffs(50, coeffs) || profileOf({}).polynomFit(0));
    EXPECT_TRUE(two.calcPolynomCoeffs(1, coeffs) && two.polynomFit(1) && coeffs[0] == -1.0 && coeffs[1] == 3.0);
    expectPoints(two, {{1, 2}, {2, 5}});
}

} // namespace
