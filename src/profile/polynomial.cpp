// Least-squares polynomials.
#include "KxMath/KxProfile.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace KxMath {

namespace {

constexpr int kMaxDegree = 50;
constexpr int kMaxPower = 2 * kMaxDegree;

using Powers = std::array<double, kMaxPower + 1>;

/// x^0 ... x^count, each rounded as by repeated squaring from the lowest bit of the exponent up: the factor of its
/// highest bit comes last, so that it is the power without that bit times a power of two.
void fillPowers(double x, int count, Powers& powers) {
    const size_t end = static_cast<size_t>(count) + 1;
    powers[0] = 1.0;
    powers[1] = x;
    for (size_t highest = 2; highest < end; highest *= 2) {
        const double factor = powers[highest / 2] * powers[highest / 2];
        powers[highest] = factor;
        for (size_t k = highest + 1; k < std::min(end, 2 * highest); ++k) {
            powers[k] = powers[k - highest] * factor;
        }
    }
}

/// The sums of the normal equations.
struct Sums {
    std::array<double, kMaxPower + 1> power{}; ///< of x^k
    std::array<double, kMaxDegree + 1> right{}; ///< of y * x^k
};

Sums sumPowers(const QList<KxPointXY>& points, int degree) {
    Sums sums;
    sums.power[0] = static_cast<double>(points.size());
    Powers powers;
    for (const KxPointXY& p : points) {
        const double y = static_cast<double>(p.y);
        fillPowers(static_cast<double>(p.x), 2 * degree, powers);
        sums.right[0] += y;
        for (size_t k = 1; k <= static_cast<size_t>(degree); ++k) {
            sums.power[k] += powers[k];
            sums.right[k] += y * powers[k];
        }
        for (size_t k = static_cast<size_t>(degree) + 1; k <= 2 * static_cast<size_t>(degree); ++k) {
            sums.power[k] += powers[k];
        }
    }
    return sums;
}

/// Solves the normal equations without exchanging rows. @return false when a pivot vanishes
bool solve(const Sums& sums, size_t size, double* solution) {
    constexpr double kMinPivot = 1e-100;
    std::array<std::array<double, kMaxDegree + 1>, kMaxDegree + 1> a;
    std::array<double, kMaxDegree + 1> right = sums.right;
    for (size_t i = 0; i < size; ++i) {
        for (size_t j = 0; j < size; ++j) {
            a[i][j] = sums.power[i + j];
        }
    }
    for (size_t p = 0; p < size; ++p) {
        const double pivot = a[p][p];
        if (std::abs(pivot) < kMinPivot) { // NaN: false
            return false;
        }
        for (size_t j = p; j < size; ++j) {
            a[p][j] /= pivot;
        }
        right[p] /= pivot;
        for (size_t i = p + 1; i < size; ++i) {
            const double factor = a[i][p];
            for (size_t j = p; j < size; ++j) {
                a[i][j] -= factor * a[p][j];
            }
            right[i] -= factor * right[p];
        }
    }
    for (size_t p = size; p-- > 0;) {
        double value = right[p];
        for (size_t j = p + 1; j < size; ++j) {
            value -= a[p][j] * solution[j];
        }
        solution[p] = value;
    }
    return true;
}

} // namespace

bool KxProfile::calcPolynomCoeffs(int degree, double* coeffs) {
    if (degree < 0 || degree > kMaxDegree) {
        return false;
    }
    return solve(sumPowers(points, degree), static_cast<size_t>(degree) + 1, coeffs);
}

bool KxProfile::polynomFit(int degree) {
    std::array<double, kMaxDegree + 1> coeffs;
    if (!calcPolynomCoeffs(degree, coeffs.data())) {
        return false;
    }
    Powers powers;
    for (KxPointXY& p : points) {
        fillPowers(static_cast<double>(p.x), degree, powers);
        double y = 0.0;
        for (size_t k = 0; k <= static_cast<size_t>(degree); ++k) {
            y += coeffs[k] * powers[k];
        }
        p.y = static_cast<float>(y);
    }
    return true;
}

} // namespace KxMath
