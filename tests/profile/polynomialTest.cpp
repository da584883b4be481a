#include "profileSupport.h"

#include <cmath>
#include <vector>

using namespace KxMath;
using namespace testing_support;

namespace {

double power(double base, unsigned exponent) {
    double result = 1.0;
    for (; exponent != 0; exponent >>= 1, base *= base) {
        if ((exponent & 1u) != 0) {
            result *= base;
        }
    }
    return result;
}

bool plainCoefficients(const Points& points, int degree, std::vector<double>& coeffs) {
    const auto size = static_cast<unsigned>(degree) + 1;
    std::vector<double> sums(2 * size - 1), right(size);
    sums[0] = static_cast<double>(points.size());
    for (const KxPointXY& p : points) {
        for (unsigned k = 0; k < 2 * size - 1; ++k) {
            const double factor = power(static_cast<double>(p.x), k);
            if (k > 0) {
                sums[k] += factor;
            }
            if (k < size) {
                right[k] += k == 0 ? static_cast<double>(p.y) : static_cast<double>(p.y) * factor;
            }
        }
    }
    std::vector<std::vector<double>> a(size, std::vector<double>(size));
    for (unsigned i = 0; i < size; ++i) {
        for (unsigned j = 0; j < size; ++j) {
            a[i][j] = sums[i + j];
        }
    }
    for (unsigned p = 0; p < size; ++p) {
        const double pivot = a[p][p];
        if (std::abs(pivot) < 1e-100) {
            return false;
        }
        right[p] /= pivot;
        for (unsigned j = 0; j < size; ++j) {
            a[p][j] /= pivot;
        }
        for (unsigned i = p + 1; i < size; ++i) {
            const double factor = a[i][p];
            right[i] -= factor * right[p];
            for (unsigned j = 0; j < size; ++j) {
                a[i][j] -= factor * a[p][j];
            }
        }
    }
    coeffs = right;
    for (unsigned p = size; p-- > 0;) {
        for (unsigned j = p + 1; j < size; ++j) {
            coeffs[p] -= a[p][j] * coeffs[j];
        }
    }
    return true;
}

} // namespace

TEST(Polynomial, FitFollowsItsDefinition) {
    Nasty nasty(81);
    int fitted = 0;
    for (int round = 0; round < 1500; ++round) {
        SCOPED_TRACE(round);
        Points points = nastyPoints(nasty, 60);
        KxProfile profile = profileOf(points);
        const int degree = nasty.pick(std::array{0, 1, 2, 3, 4, 7, 12, 50});
        std::vector<double> coeffs(static_cast<std::size_t>(degree) + 1), plain;
        const bool isFitted = profile.calcPolynomCoeffs(degree, coeffs.data());
        ASSERT_EQ(isFitted, plainCoefficients(points, degree, plain)) << degree;
        expectPoints(profile, points);
        if (isFitted) {
            EXPECT_EQ(exact(QList<double>(coeffs.begin(), coeffs.end())),
                      exact(QList<double>(plain.begin(), plain.end())));
            for (KxPointXY& p : points) {
                double y = 0.0;
                for (unsigned k = 0; k <= static_cast<unsigned>(degree); ++k) {
                    y += plain[k] * power(static_cast<double>(p.x), k);
                }
                p.y = static_cast<float>(y);
            }
            ++fitted;
        }
        ASSERT_EQ(profile.polynomFit(degree), isFitted);
        expectPoints(profile, points);
        ASSERT_FALSE(HasFailure()) << degree;
    }
    EXPECT_GT(fitted, 300);
}

TEST(Polynomial, ReproducesAPolynomial) {
    const double truth[] = {-3.0, 0.5, 2.0, -0.25, 0.125};
    for (int degree = 0; degree < 5; ++degree) {
        KxProfile profile;
        for (int i = -20; i <= 20; ++i) {
            const double x = i / 8.0;
            double y = 0.0;
            for (int k = degree; k >= 0; --k) {
                y = y * x + truth[k];
            }
            profile.points.append(KxPointXY(static_cast<float>(x), static_cast<float>(y)));
        }
        const Points before = profile.points;
        double coeffs[5];
        ASSERT_TRUE(profile.calcPolynomCoeffs(degree, coeffs));
        ASSERT_TRUE(profile.polynomFit(degree));
        for (int k = 0; k <= degree; ++k) {
            EXPECT_NEAR(coeffs[k], truth[k], 1e-6) << degree << ' ' << k; // heights are rounded to floats
        }
        for (qsizetype i = 0; i < before.size(); ++i) {
            EXPECT_NEAR(profile.points[i].y, before[i].y, 2e-6f) << degree;
        }
    }
}

TEST(Polynomial, RefusesWhatHasNoCoefficients) {
    KxProfile empty = profileOf({});
    KxProfile two = profileOf({{1, 2}, {2, 5}});
    double coeffs[51] = {};
    for (const int degree : {0, 1, 50}) {
        EXPECT_FALSE(empty.calcPolynomCoeffs(degree, coeffs));
        EXPECT_FALSE(empty.polynomFit(degree));
    }
    for (const int degree : {2, -1, 51, INT_MIN, INT_MAX}) {
        EXPECT_FALSE(two.polynomFit(degree)) << degree;
    }
    expectPoints(two, {{1, 2}, {2, 5}});
    EXPECT_TRUE(two.polynomFit(1));
    expectPoints(two, {{1, 2}, {2, 5}});
}
