// Linear least squares with a few unknowns.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace KxInspect::detail {

/// Collects equations a0 c0 + a1 c1 + ... = value and solves their normal equations for c.
template <std::size_t N>
class LeastSquares {
public:
    using Vector = std::array<double, N>;
    using Matrix = std::array<Vector, N>;

    void add(const Vector& a, double value, double weight = 1.0) {
        for (std::size_t row = 0; row < N; ++row) {
            for (std::size_t column = 0; column < N; ++column) {
                sums_[row][column] += weight * a[row] * a[column];
            }
            values_[row] += weight * a[row] * value;
        }
    }

    /// Empty when the equations do not determine all unknowns.
    std::optional<Vector> solve() const {
        const auto solved = eliminate<1>([&](std::size_t row, std::size_t) { return values_[row]; });
        if (!solved) {
            return {};
        }
        Vector c;
        for (std::size_t i = 0; i < N; ++i) {
            c[i] = (*solved)[i][0];
        }
        return c;
    }

    /// The covariances of the unknowns for values with a variance of 1; empty as solve() is.
    std::optional<Matrix> inverse() const {
        return eliminate<N>([](std::size_t row, std::size_t column) { return row == column ? 1.0 : 0.0; });
    }

private:
    /// By Gaussian elimination with partial pivoting, for `Sides` right-hand sides.
    template <std::size_t Sides, typename Side>
    std::optional<std::array<std::array<double, Sides>, N>> eliminate(Side side) const {
        std::array<std::array<double, N + Sides>, N> m = {};
        for (std::size_t row = 0; row < N; ++row) {
            for (std::size_t i = 0; i < N + Sides; ++i) {
                m[row][i] = i < N ? sums_[row][i] : side(row, i - N);
            }
        }
        for (std::size_t column = 0; column < N; ++column) {
            std::size_t pivot = column;
            for (std::size_t row = column + 1; row < N; ++row) {
                pivot = std::abs(m[row][column]) > std::abs(m[pivot][column]) ? row : pivot;
            }
            std::swap(m[pivot], m[column]);
            for (std::size_t row = 0; row < N; ++row) {
                const double factor = row == column ? 0.0 : m[row][column] / m[column][column];
                for (std::size_t i = column; i < N + Sides; ++i) {
                    m[row][i] -= factor * m[column][i];
                }
            }
        }
        std::array<std::array<double, Sides>, N> result;
        bool isFixed = true;
        for (std::size_t row = 0; row < N; ++row) {
            for (std::size_t i = 0; i < Sides; ++i) {
                result[row][i] = m[row][N + i] / m[row][row];
                isFixed = isFixed && std::isfinite(result[row][i]);
            }
        }
        return isFixed ? std::optional(result) : std::nullopt;
    }

    Matrix sums_ = {};
    Vector values_ = {};
};

using LeastSquares3 = LeastSquares<3>;

} // namespace KxInspect::detail
