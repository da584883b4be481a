// A value with its uncertainty.
#include "inspect/wheel/estimate.h"

#include "inspect/fitting/studentT.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace KxInspect::detail {

namespace {

/// The variance of a sum of pulls.
double varianceOf(std::vector<Pull> pulls) {
    std::sort(pulls.begin(), pulls.end(), [](const Pull& a, const Pull& b) { return a.point < b.point; });
    double sum = 0.0;
    for (std::size_t i = 0; i < pulls.size();) {
        double x = 0.0;
        double y = 0.0;
        const std::size_t point = pulls[i].point;
        for (; i < pulls.size() && pulls[i].point == point; ++i) {
            x += pulls[i].x;
            y += pulls[i].y;
        }
        sum += x * x + y * y;
    }
    return sum;
}

/// The probability that a normal number exceeds a value.
double normalTail(double value) {
    return std::erfc(value / std::numbers::sqrt2) / 2.0;
}

constexpr double kTail = 0.025; // on each side of an interval
constexpr double kMostFreedom = 1e4;

/// The value that a normal number exceeds with a probability from kTail to twice that.
double normalQuantile(double probability) {
    double low = 1.6;
    double high = 2.0;
    for (int i = 0; i < 40; ++i) {
        const double middle = (low + high) / 2.0;
        (normalTail(middle) > probability ? low : high) = middle;
    }
    return high;
}

} // namespace

Estimate::Estimate(double value, std::vector<Pull> pulls, double freedom) : value_(value), pulls_(std::move(pulls)) {
    parts_.push_back({varianceOf(pulls_), freedom});
}

Estimate Estimate::plus(const Estimate& other, double factor) const {
    Estimate sum = *this;
    sum.value_ += factor * other.value_;
    for (const Pull& p : other.pulls_) {
        sum.pulls_.push_back({p.point, factor * p.x, factor * p.y});
    }
    for (const Part& part : other.parts_) {
        sum.parts_.push_back({factor * factor * part.variance, part.freedom});
    }
    return sum;
}

Estimate Estimate::plus(double constant) const {
    Estimate sum = *this;
    sum.value_ += constant;
    return sum;
}

double Estimate::deviation() const {
    return std::sqrt(varianceOf(pulls_));
}

double Estimate::freedom() const {
    double sum = 0.0;
    double squares = 0.0;
    for (const Part& part : parts_) {
        sum += part.variance;
        squares += part.variance * part.variance / part.freedom;
    }
    return squares > 0.0 ? std::max(1.0, sum * sum / squares) : kMostFreedom;
}

Interval Estimate::interval(float shown) const {
    const double normal = normalQuantile(kTail);
    const double half = deviation() * studentT(freedom());
    if (!std::isfinite(half)) {
        return {};
    }
    double below = half;
    double above = half;
    const double off = static_cast<double>(shown) - value_;
    if (std::abs(off) > half) {
        const double beyond = half > 0.0 ? normalTail(std::abs(off) / half * normal) : 0.0;
        const double other = half * normalQuantile(2.0 * kTail - beyond) / normal;
        below = off < 0.0 ? -off : other;
        above = off < 0.0 ? other : off;
    }
    return {std::min(static_cast<float>(value_ - below), shown), std::max(static_cast<float>(value_ + above), shown)};
}

} // namespace KxInspect::detail
