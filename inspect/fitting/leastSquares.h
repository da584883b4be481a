// Least squares with three unknowns.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace KxInspect::detail {

/// Collects equations a0 c0 + a1 c1 + a2 c2 = value and solves their normal equations for c.
class LeastSquares3 {
public:
    void add(const std::array<double, 3>& a, double value, double weight = 1.0) {
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t column = 0; column < 3; ++column) {
                sums_[row][column] += weight * a[row] * a[column];
            }
            sums_[row][3] += weight * a[row] * value;
        }
    }

    /// By Gaussian elimination with partial pivoting. Empty when the equations do not determine all unknowns.
    std::optional<std::array<double, 3>> solve() const {
        auto m = sums_;
        for (std::size_t column = 0; column < 3; ++column) {
            std::size_t pivot = column;
            for (std::size_t row = column + 1; row < 3; ++row) {
                pivot = std::abs(m[row][column]) > std::abs(m[pivot][column]) ? row : pivot;
            }
            std::swap(m[pivot], m[column]);
            for (std::size_t row = 0; row < 3; ++row) {
                const double factor = row == column ? 0.0 : m[row][column] / m[column][column];
                for (std::size_t i = column; i < 4; ++i) {
                    m[row][i] -= factor * m[column][i];
                }
            }
        }
        const std::array<double, 3> c = {m[0][3] / m[0][0], m[1][3] / m[1][1], m[2][3] / m[2][2]};
        const bool isFixed = std::isfinite(c[0]) && std::isfinite(c[1]) && std::isfinite(c[2]);
        return isFixed ? std::optional(c) : std::nullopt;
    }

private:
    std::array<std::array<double, 4>, 3> sums_ = {};
};

} // namespace KxInspect::detail
