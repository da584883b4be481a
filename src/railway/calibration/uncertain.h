// Values with their covariance, and what becomes of it in a calculation.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace KxMath::detail {

template <std::size_t N>
using Vector = std::array<double, N>;

template <std::size_t Rows, std::size_t Columns>
using Matrix = std::array<std::array<double, Columns>, Rows>;

template <std::size_t N>
struct Uncertain {
    Vector<N> value{};
    Matrix<N, N> covariance{};

    double deviation(std::size_t i) const { return std::sqrt(covariance[i][i]); } // NaN where it is not known
};

/// What a function makes of uncertain values: derivatives by differences over one standard deviation to either side. A
/// covariance that cannot be calculated is NaN.
template <std::size_t M, std::size_t N, typename Function>
Uncertain<M> propagate(const Uncertain<N>& in, Function function) {
    Uncertain<M> out;
    out.value = function(in.value);
    Matrix<M, N> derivative{};
    for (std::size_t j = 0; j < N; ++j) {
        const double step = in.deviation(j);
        if (step == 0.0) {
            continue;
        }
        Vector<N> up = in.value;
        Vector<N> down = in.value;
        up[j] += step;
        down[j] -= step;
        const Vector<M> above = function(up);
        const Vector<M> below = function(down);
        for (std::size_t i = 0; i < M; ++i) {
            derivative[i][j] = (above[i] - below[i]) / (2.0 * step);
        }
    }
    for (std::size_t i = 0; i < M; ++i) {
        for (std::size_t k = 0; k < M; ++k) {
            double sum = 0.0;
            for (std::size_t j = 0; j < N; ++j) {
                for (std::size_t l = 0; l < N; ++l) {
                    sum += derivative[i][j] * in.covariance[j][l] * derivative[k][l];
                }
            }
            out.covariance[i][k] = sum;
        }
    }
    return out;
}

/// Moves values to where a quantity that depends on them vanishes, by the smallest step in terms of their covariance,
/// and reduces the covariance accordingly: the update of a Kalman filter by an exact measurement of 0. The quantity is
/// taken as linear within its standard deviation.
template <std::size_t N, typename Function>
void constrain(Uncertain<N>& values, Function quantity) {
    // The covariance of the values with the quantity comes from those of the values with each other.
    const auto both = propagate<N + 1>(values, [&](const Vector<N>& v) {
        Vector<N + 1> out;
        std::copy(v.begin(), v.end(), out.begin());
        out[N] = quantity(v);
        return out;
    });
    const double variance = both.covariance[N][N];
    if (variance == 0.0) {
        return;
    }
    for (std::size_t i = 0; i < N; ++i) {
        const double gain = both.covariance[i][N] / variance;
        values.value[i] -= gain * both.value[N];
        for (std::size_t k = 0; k < N; ++k) {
            values.covariance[i][k] -= gain * both.covariance[k][N];
        }
    }
}

} // namespace KxMath::detail
