// Least squares with a fixed number of unknowns, and the covariance of their solution.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

namespace KxInspect::detail {

template <std::size_t N>
using Vector = std::array<double, N>;

template <std::size_t N>
using Matrix = std::array<Vector<N>, N>;

template <std::size_t N>
Vector<N> operator*(const Matrix<N>& matrix, const Vector<N>& vector) {
    Vector<N> product{};
    for (std::size_t row = 0; row < N; ++row) {
        for (std::size_t i = 0; i < N; ++i) {
            product[row] += matrix[row][i] * vector[i];
        }
    }
    return product;
}

template <std::size_t N>
Matrix<N> operator*(const Matrix<N>& a, const Matrix<N>& b) {
    Matrix<N> product{};
    for (std::size_t row = 0; row < N; ++row) {
        for (std::size_t i = 0; i < N; ++i) {
            for (std::size_t column = 0; column < N; ++column) {
                product[row][column] += a[row][i] * b[i][column];
            }
        }
    }
    return product;
}

/// Adds factor * a b' to a matrix.
template <std::size_t N>
void addProduct(Matrix<N>& matrix, const Vector<N>& a, const Vector<N>& b, double factor = 1.0) {
    for (std::size_t row = 0; row < N; ++row) {
        for (std::size_t column = 0; column < N; ++column) {
            matrix[row][column] += factor * a[row] * b[column];
        }
    }
}

/// The inverse of a symmetric positive definite matrix by Gauss-Jordan elimination. Rows and columns are scaled to a
/// diagonal of 1 first, so that unknowns of different units do not matter. Empty for a matrix that is singular to
/// twelve digits, or not finite.
template <std::size_t N>
std::optional<Matrix<N>> inverseOf(Matrix<N> matrix) {
    constexpr double kLeastPivot = 1e-12;
    Vector<N> scale{};
    for (std::size_t i = 0; i < N; ++i) {
        scale[i] = 1.0 / std::sqrt(matrix[i][i]);
    }
    Matrix<N> inverse{};
    for (std::size_t row = 0; row < N; ++row) {
        for (std::size_t column = 0; column < N; ++column) {
            matrix[row][column] *= scale[row] * scale[column];
        }
        inverse[row][row] = 1.0;
    }
    for (std::size_t p = 0; p < N; ++p) {
        const double pivot = matrix[p][p];
        if (!(pivot > kLeastPivot) || !std::isfinite(pivot)) { // NaN: singular
            return std::nullopt;
        }
        for (std::size_t column = 0; column < N; ++column) {
            matrix[p][column] /= pivot;
            inverse[p][column] /= pivot;
        }
        for (std::size_t row = 0; row < N; ++row) {
            const double factor = matrix[row][p];
            for (std::size_t column = 0; column < N && row != p; ++column) {
                matrix[row][column] -= factor * matrix[p][column];
                inverse[row][column] -= factor * inverse[p][column];
            }
        }
    }
    for (std::size_t row = 0; row < N; ++row) {
        for (std::size_t column = 0; column < N; ++column) {
            inverse[row][column] *= scale[row] * scale[column];
        }
    }
    return inverse;
}

} // namespace KxInspect::detail
