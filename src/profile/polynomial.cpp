// Least-squares polynomials.
#include "KxMath/KxProfile.h"

#include "lists/checked.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace KxMath {

namespace {

constexpr int kMaxDegree = 50;
constexpr int kMaxPower = 2 * kMaxDegree;

/// Powers of the x of a block of points, a row for each exponent.
class PowerBlock {
public:
    static constexpr qsizetype kPoints = 32;
    using Row = std::array<double, kPoints>;

    /// x^0 ... x^count of up to kPoints points. Each is rounded as repeated squaring rounds it, from the lowest bit of
    /// the exponent to the highest: the factor of the highest bit comes last. So x^k is the row of k without its
    /// highest bit, which is there already, times the row of that bit: one multiplication each.
    void fill(const KxPointXY* points, qsizetype pointCount, int count) {
        rows_[0].fill(1.0);
        rows_[1].fill(0.0);
        for (size_t i = 0; i < static_cast<size_t>(pointCount); ++i) {
            rows_[1][i] = static_cast<double>(points[i].x);
        }
        const size_t end = static_cast<size_t>(count) + 1;
        for (size_t highest = 2; highest < end; highest *= 2) {
            multiply(rows_[highest / 2], rows_[highest / 2], rows_[highest]);
            for (size_t k = highest + 1; k < std::min(end, 2 * highest); ++k) {
                multiply(rows_[k - highest], rows_[highest], rows_[k]);
            }
        }
    }

    const Row& operator[](size_t exponent) const { return rows_[exponent]; }

    static void multiply(const Row& a, const Row& b, Row& product) {
        for (size_t i = 0; i < a.size(); ++i) {
            product[i] = a[i] * b[i];
        }
    }

private:
    std::array<Row, kMaxPower + 1> rows_; // set up to the exponent that was asked for
};

/// Calls `work(powers, begin, count)` for block after block of the points.
template <typename Work>
void forEachBlock(const QList<KxPointXY>& points, int maxPower, Work work) {
    PowerBlock block;
    const KxPointXY* const data = points.constData();
    for (qsizetype begin = 0; begin < points.size(); begin += PowerBlock::kPoints) {
        const qsizetype count = std::min(points.size() - begin, PowerBlock::kPoints);
        block.fill(data + begin, count, maxPower);
        work(block, begin, static_cast<size_t>(count));
    }
}

/// Adds the first `count` numbers of some rows to their sums, each in its order. Independent sums are interleaved, so
/// that an addition does not wait for the one before.
template <size_t kRows>
void addInterleaved(const PowerBlock::Row* rows, size_t count, double* sums) {
    std::array<double, kRows> local;
    std::copy_n(sums, kRows, local.begin());
    for (size_t i = 0; i < count; ++i) {
        for (size_t k = 0; k < kRows; ++k) {
            local[k] += rows[k][i];
        }
    }
    std::copy_n(local.begin(), kRows, sums);
}

void addRows(const PowerBlock::Row* rows, size_t rowCount, size_t count, double* sums) {
    size_t k = 0;
    for (; k + 4 <= rowCount; k += 4) {
        addInterleaved<4>(rows + k, count, sums + k);
    }
    for (; k + 2 <= rowCount; k += 2) {
        addInterleaved<2>(rows + k, count, sums + k);
    }
    for (; k < rowCount; ++k) {
        addInterleaved<1>(rows + k, count, sums + k);
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
    const size_t highest = static_cast<size_t>(degree);
    std::array<PowerBlock::Row, kMaxDegree + 1> products; // y * x^k
    forEachBlock(points, 2 * degree, [&](const PowerBlock& powers, qsizetype begin, size_t count) {
        products[0].fill(0.0);
        for (size_t i = 0; i < count; ++i) {
            products[0][i] = static_cast<double>(points[begin + static_cast<qsizetype>(i)].y);
        }
        for (size_t k = 1; k <= highest; ++k) {
            PowerBlock::multiply(products[0], powers[k], products[k]);
        }
        addRows(&powers[1], 2 * highest, count, &sums.power[1]);
        addRows(products.data(), highest + 1, count, sums.right.data());
    });
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
    KxPointXY* const data = detail::writable(points);
    forEachBlock(points, degree, [&](const PowerBlock& powers, qsizetype begin, size_t count) {
        PowerBlock::Row ys{};
        for (size_t k = 0; k <= static_cast<size_t>(degree); ++k) {
            const double coeff = coeffs[k];
            const PowerBlock::Row& row = powers[k];
            for (size_t i = 0; i < ys.size(); ++i) {
                ys[i] += coeff * row[i];
            }
        }
        for (size_t i = 0; i < count; ++i) {
            data[begin + static_cast<qsizetype>(i)].y = static_cast<float>(ys[i]);
        }
    });
    return true;
}

} // namespace KxMath
