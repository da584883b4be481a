// A polynomial through points on a short piece of a curve.
#include "inspect/fitting/localPolynomial.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

using Terms = std::array<double, LocalPolynomial::kMostTerms>;

/// The polynomials of Legendre at u, which stay independent of each other on many points.
Terms legendre(double u) {
    Terms p = {1.0, u};
    for (std::size_t k = 2; k < p.size(); ++k) {
        const auto n = static_cast<double>(k);
        p[k] = ((2.0 * n - 1.0) * u * p[k - 1] - (n - 1.0) * p[k - 2]) / n;
    }
    return p;
}

/// Their derivatives.
Terms legendreSlopes(double u) {
    const Terms p = legendre(u);
    Terms d = {0.0, 1.0};
    for (std::size_t k = 2; k < p.size(); ++k) {
        d[k] = d[k - 2] + (2.0 * static_cast<double>(k) - 1.0) * p[k - 1];
    }
    return d;
}

/// Cholesky's lower triangle of the normal equations. False where the points do not determine all terms.
bool factorise(const std::vector<Terms>& points, std::size_t count, std::array<Terms, LocalPolynomial::kMostTerms>& l) {
    constexpr double kLeastPivot = 1e-9;
    for (std::size_t row = 0; row < count; ++row) {
        for (std::size_t column = 0; column <= row; ++column) {
            double sum = 0.0;
            for (const Terms& p : points) {
                sum += p[row] * p[column];
            }
            const double whole = sum;
            for (std::size_t k = 0; k < column; ++k) {
                sum -= l[row][k] * l[column][k];
            }
            if (row != column) {
                l[row][column] = sum / l[column][column];
            } else if (sum > kLeastPivot * whole) {
                l[row][row] = std::sqrt(sum);
            } else {
                return false;
            }
        }
    }
    return true;
}

} // namespace

std::optional<LocalPolynomial> LocalPolynomial::fit(const std::vector<double>& places,
                                                    const std::vector<double>& values, double reach,
                                                    std::size_t terms) {
    const std::size_t tested = terms + 2;
    const std::size_t size = places.size();
    if (tested > kMostTerms || size < tested + 2) {
        return {};
    }
    LocalPolynomial result;
    result.reach_ = reach;
    result.count_ = terms;
    for (const double place : places) {
        result.points_.push_back(legendre(place / reach));
    }
    if (!factorise(result.points_, tested, result.factor_)) {
        return {};
    }
    // L z = A^T v: the squares of z are what each further term takes off the sum of squares.
    const auto& l = result.factor_;
    Terms z = {};
    for (std::size_t row = 0; row < tested; ++row) {
        double sum = 0.0;
        for (std::size_t i = 0; i < size; ++i) {
            sum += result.points_[i][row] * values[i];
        }
        for (std::size_t k = 0; k < row; ++k) {
            sum -= l[row][k] * z[k];
        }
        z[row] = sum / l[row][row];
    }
    for (std::size_t row = terms; row-- > 0;) {
        double sum = z[row];
        for (std::size_t k = row + 1; k < terms; ++k) {
            sum -= l[k][row] * result.coefficients_[k];
        }
        result.coefficients_[row] = sum / l[row][row];
    }
    double squares = 0.0;
    for (std::size_t i = 0; i < size; ++i) {
        const double residual = values[i] - result.valueAt(places[i]);
        squares += residual * residual;
    }
    result.freedom_ = static_cast<double>(size - terms);
    result.variance_ = squares / result.freedom_;
    const double gain = z[terms] * z[terms] + z[terms + 1] * z[terms + 1];
    const double rest = std::max(0.0, squares - gain);
    // Of F with 2 and n degrees of freedom the distribution has a closed form.
    result.chance_ = squares > 0.0 ? std::pow(rest / squares, static_cast<double>(size - tested) / 2.0) : 1.0;
    return result;
}

double LocalPolynomial::valueAt(double place) const {
    const Terms p = legendre(place / reach_);
    double sum = 0.0;
    for (std::size_t k = 0; k < count_; ++k) {
        sum += coefficients_[k] * p[k];
    }
    return sum;
}

double LocalPolynomial::slopeAt(double place) const {
    const Terms d = legendreSlopes(place / reach_);
    double sum = 0.0;
    for (std::size_t k = 0; k < count_; ++k) {
        sum += coefficients_[k] * d[k] / reach_;
    }
    return sum;
}

std::vector<double> LocalPolynomial::sharesOfValue(double place) const {
    return shares(legendre(place / reach_));
}

std::vector<double> LocalPolynomial::sharesOfSlope(double place) const {
    Terms d = legendreSlopes(place / reach_);
    for (double& term : d) {
        term /= reach_;
    }
    return shares(d);
}

std::vector<double> LocalPolynomial::shares(const Terms& terms) const {
    Terms c = {}; // L L^T c = terms
    for (std::size_t row = 0; row < count_; ++row) {
        c[row] = terms[row];
        for (std::size_t k = 0; k < row; ++k) {
            c[row] -= factor_[row][k] * c[k];
        }
        c[row] /= factor_[row][row];
    }
    for (std::size_t row = count_; row-- > 0;) {
        for (std::size_t k = row + 1; k < count_; ++k) {
            c[row] -= factor_[k][row] * c[k];
        }
        c[row] /= factor_[row][row];
    }
    std::vector<double> result(points_.size(), 0.0);
    for (std::size_t i = 0; i < points_.size(); ++i) {
        for (std::size_t k = 0; k < count_; ++k) {
            result[i] += points_[i][k] * c[k];
        }
    }
    return result;
}

} // namespace KxInspect::detail
