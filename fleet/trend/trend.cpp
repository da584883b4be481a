// Where a value of a wheel is going, and when it reaches its limit.
#include "fleet/trend/trend.h"

#include "fleet/trend/quantiles.h"
#include "fleet/trend/step.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kxfleet {

namespace {

constexpr double kNormal = 1.959963984540054; // 97.5 % quantile

struct Series {
    std::vector<double> days; ///< before the last reading, 0 or less
    std::vector<double> values;

    /// The level at the last reading of a line with this slope.
    double levelWith(double slope) const {
        std::vector<double> levels(values);
        for (std::size_t i = 0; i < levels.size(); ++i) {
            levels[i] -= slope * days[i];
        }
        return medianOf(std::move(levels));
    }
};

/// Days until a line reaches `limit`; 0 when it is there, nothing when it never gets there.
std::optional<double> daysUntil(double limit, double level, double slope, bool isLow) {
    const double left = isLow ? level - limit : limit - level;
    const double closer = isLow ? -slope : slope; // per day
    if (left <= 0.0) {
        return 0.0;
    }
    return closer > 0.0 ? std::optional(left / closer) : std::nullopt;
}

/// `halfWidth`: of the level in the middle of the days, mm; there it does not depend on the slope.
std::optional<DaysToLimit> daysTo(double limit, bool isLow, const Series& series, const Trend& trend,
                                  double halfWidth) {
    const double soonSlope = isLow ? trend.line->low : trend.line->high;
    const double lateSlope = isLow ? trend.line->high : trend.line->low;
    const double towards = isLow ? -halfWidth : halfWidth;
    const std::optional<double> days = daysUntil(limit, trend.level, trend.line->slope, isLow);
    // A steeper line has a level of its own that fits its readings.
    const std::optional<double> bySlope = daysUntil(limit, series.levelWith(soonSlope), soonSlope, isLow);
    const std::optional<double> byLevel = daysUntil(limit, trend.level + towards, trend.line->slope, isLow);
    if (!days) {
        return std::nullopt;
    }
    DaysToLimit result;
    result.isLow = isLow;
    result.days = *days;
    const auto early = [&](const std::optional<double>& other) {
        return other ? *days - std::min(*days, *other) : 0.0;
    };
    result.soonest = std::max(0.0, *days - std::hypot(early(bySlope), early(byLevel)));
    const std::optional<double> lateBySlope = daysUntil(limit, series.levelWith(lateSlope), lateSlope, isLow);
    const std::optional<double> lateByLevel = daysUntil(limit, trend.level - towards, trend.line->slope, isLow);
    if (lateBySlope && lateByLevel) {
        const auto late = [&](double other) { return std::max(0.0, other - *days); };
        result.latest = *days + std::hypot(late(*lateBySlope), late(*lateByLevel));
    }
    return result;
}

void findDays(Trend& trend, const Limits& limits, const Series& series, double halfWidth) {
    if (!limits.low && !limits.high) {
        trend.daysReason = "the value has no limit";
        return;
    }
    for (const bool isLow : {true, false}) {
        const std::optional<double>& limit = isLow ? limits.low : limits.high;
        if (!limit) {
            continue;
        }
        const std::optional<DaysToLimit> days = daysTo(*limit, isLow, series, trend, halfWidth);
        if (days && (!trend.daysToLimit || days->days < trend.daysToLimit->days)) {
            trend.daysToLimit = days;
        }
    }
    if (!trend.daysToLimit) {
        trend.daysReason = "the value does not move towards a limit";
    }
}

/// What the readings are off the line of a trend.
std::vector<double> residualsOf(const Series& series, const Trend& trend) {
    std::vector<double> residuals;
    for (std::size_t i = 0; i < series.days.size(); ++i) {
        residuals.push_back(series.values[i] - trend.level - trend.line->slope * series.days[i]);
    }
    return residuals;
}

/// The standard deviation of readings by the differences of neighbouring ones, which no bend raises.
double noiseOfNeighbours(const std::vector<double>& values) {
    std::vector<double> differences;
    for (std::size_t i = 1; i < values.size(); ++i) {
        differences.push_back(values[i] - values[i - 1]);
    }
    return robustDeviation(differences) / std::sqrt(2.0);
}

/// Whether the newest readings leave the line.
bool isBent(const std::vector<double>& residuals, double bend) {
    constexpr std::size_t kNewest = 4;
    constexpr std::size_t kPart = 8; // or the last eighth
    const std::size_t count = std::max(kNewest, residuals.size() / kPart);
    if (residuals.size() < 2 * count) {
        return false;
    }
    const double ofNewest = medianOf({residuals.end() - static_cast<std::ptrdiff_t>(count), residuals.end()});
    const double error = noiseOfNeighbours(residuals) * std::sqrt(std::numbers::pi / 2.0 / static_cast<double>(count));
    return error > 0.0 && std::abs(ofNewest) > bend * error;
}

/// The readings from `first` on and their line, or the reason why there is none.
Series fitFrom(Trend& trend, const Readings& readings, std::size_t first, const TrendRule& rule) {
    trend.from = readings[first].day;
    Series series;
    for (std::size_t i = first; i < readings.size(); ++i) {
        series.days.push_back(readings[i].day - trend.to);
        series.values.push_back(readings[i].value);
    }
    trend.readings = series.days.size();
    trend.line.reset();
    if (trend.readings < rule.fewest) {
        trend.reason = "fewer than " + std::to_string(rule.fewest) + " readings";
    } else if (trend.to - trend.from < rule.shortest) {
        trend.reason = "the readings span less than " + std::to_string(std::lround(rule.shortest)) + " days";
    } else {
        trend.line = theilSen(series.days, series.values);
        trend.reason = trend.line ? "" : "all readings are of one time";
    }
    if (trend.line) {
        trend.level = series.levelWith(trend.line->slope);
        trend.line->intercept = trend.level;
    }
    return series;
}

} // namespace

Trend trendOf(const Readings& readings, const Limits& limits, const TrendRule& rule) {
    Trend trend;
    if (readings.empty()) {
        trend.reason = "there is no reading";
        trend.daysReason = "there is no trend";
        return trend;
    }
    trend.to = readings.back().day;
    std::size_t first = readings.size() > rule.most ? readings.size() - rule.most : 0;
    while (readings[first].day < trend.to - rule.window) {
        ++first;
    }
    Series series = fitFrom(trend, readings, first, rule);
    while (trend.line && isBent(residualsOf(series, trend), rule.bend)) {
        const std::size_t newer = first + trend.readings / 2;
        Trend shorter = trend;
        Series newest = fitFrom(shorter, readings, newer, rule);
        if (!shorter.line) {
            break;
        }
        first = newer;
        trend = std::move(shorter);
        series = std::move(newest);
    }
    if (!trend.line) {
        trend.daysReason = "there is no trend";
        return trend;
    }
    const std::vector<double> residuals = residualsOf(series, trend);
    trend.noise = robustDeviation(residuals);
    // In the middle of its days a line is known best: a median of n values has the standard error of their mean times
    // sqrt(pi / 2). Towards the end its slope adds to that.
    const auto count = static_cast<double>(residuals.size());
    const double inMiddle = kNormal * trend.noise * std::sqrt(std::numbers::pi / 2.0 / count);
    const double bySlope = (trend.line->high - trend.line->low) / 2.0 * medianOf(series.days);
    trend.levelHalfWidth = std::hypot(inMiddle, bySlope);
    for (std::size_t i = 0; i < residuals.size(); ++i) {
        if (std::abs(residuals[i]) > rule.ofNoise * trend.noise && trend.noise > 0.0) {
            trend.outliers.push_back(first + i);
        }
    }
    trend.changedAtOnce = isStep(series.values, residuals);
    if (trend.changedAtOnce) {
        trend.daysReason = "the value changed at once";
    } else {
        findDays(trend, limits, series, inMiddle);
    }
    return trend;
}

} // namespace kxfleet
