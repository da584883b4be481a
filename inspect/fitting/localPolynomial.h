// A polynomial through points on a short piece of a curve.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A polynomial of least squares.
class LocalPolynomial {
public:
    static constexpr std::size_t kMostTerms = 7;

    /// Fits a polynomial of `terms` coefficients, at most kMostTerms - 2, to values at places from -reach to reach. Empty when
    /// there are too few points to look for a misfit: fewer than `terms` + 4, or too few different places.
    static std::optional<LocalPolynomial> fit(const std::vector<double>& places, const std::vector<double>& values,
                                              double reach, std::size_t terms);

    double valueAt(double place) const;
    double slopeAt(double place) const;

    /// @{ The share of each point in the value and in the slope at a place.
    std::vector<double> sharesOfValue(double place) const;
    std::vector<double> sharesOfSlope(double place) const;
    /// @}

    /// The variance of the points about the polynomial, and its degrees of freedom.
    double variance() const { return variance_; }
    double freedom() const { return freedom_; }

    /// The probability that two more terms improve the fit so much by chance, for normal noise (an F test of nested models; N. R.
    /// Draper and H. Smith, Applied Regression Analysis, 1998). Small where the polynomial does not follow the curve.
    double chanceOfMisfit() const { return chance_; }

private:
    using Terms = std::array<double, kMostTerms>;

    LocalPolynomial() = default;
    std::vector<double> shares(const Terms& terms) const;

    double reach_ = 1.0;
    std::size_t count_ = 0; ///< of coefficients
    std::vector<Terms> points_ = {}; ///< the terms at each place
    std::array<Terms, kMostTerms> factor_ = {}; ///< of Cholesky
    Terms coefficients_ = {};
    double variance_ = 0.0;
    double freedom_ = 0.0;
    double chance_ = 0.0;
};

} // namespace KxInspect::detail
