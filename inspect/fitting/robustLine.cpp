// A straight line that single bad values do not move.
#include "inspect/fitting/robustLine.h"

#include "inspect/fitting/median.h"

#include <algorithm>

namespace KxInspect::detail {

namespace {

constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise

double medianSlope(const std::vector<Sample>& samples) {
    constexpr std::size_t kMost = 200; // the cost grows with the square
    const std::size_t step = (samples.size() + kMost - 1) / kMost;
    std::vector<double> slopes;
    for (std::size_t i = 0; i < samples.size(); i += step) {
        for (std::size_t j = i + step; j < samples.size(); j += step) {
            const double apart = samples[j].place - samples[i].place;
            if (apart != 0.0) {
                slopes.push_back((samples[j].value - samples[i].value) / apart);
            }
        }
    }
    return median(slopes); // NaN where all are in one place
}

/// The samples that are near the line through the medians.
std::vector<Sample> nearMedians(const std::vector<Sample>& samples) {
    const double slope = medianSlope(samples);
    std::vector<double> heights;
    heights.reserve(samples.size());
    for (const Sample& s : samples) {
        heights.push_back(s.value - slope * s.place);
    }
    const double height = median(heights);
    for (double& h : heights) {
        h = std::abs(h - height);
    }
    // Of normal noise 7 in a million are farther off. The median of few deviations is uncertain: the factor goes along.
    constexpr double kFar = 4.5;
    constexpr double kFew = 10.0;
    const double limit = kFar * (1.0 + kFew / static_cast<double>(samples.size())) * kNormal * median(heights);
    std::vector<Sample> near;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (heights[i] <= limit) { // NaN: none
            near.push_back(samples[i]);
        }
    }
    return near;
}

/// By how much fewer the samples are worth when neighbours deviate alike: (1 + r) / (1 - r) for a correlation r of
/// neighbours (Bartlett, Some aspects of the time-correlation problem, 1935). 1 unless r stands out.
double alike(const std::vector<double>& residuals, double squares) {
    constexpr double kStandsOut = 2.0;
    constexpr double kMost = 0.9;
    double products = 0.0;
    for (std::size_t i = 1; i < residuals.size(); ++i) {
        products += residuals[i] * residuals[i - 1];
    }
    const double r = std::min(products / squares, kMost); // NaN without residuals: 1
    return r * std::sqrt(static_cast<double>(residuals.size())) > kStandsOut ? (1.0 + r) / (1.0 - r) : 1.0;
}

} // namespace

std::optional<RobustLine> fitRobustLine(const std::vector<Sample>& samples) {
    constexpr std::size_t kFewest = 3;
    if (samples.size() < kFewest) {
        return {};
    }
    const std::vector<Sample> near = nearMedians(samples);
    RobustLine line;
    line.count = static_cast<int>(near.size());
    if (near.size() < kFewest) {
        return {};
    }
    for (const Sample& s : near) {
        line.middle += s.place / line.count;
        line.height += s.value / line.count;
    }
    double products = 0.0;
    for (const Sample& s : near) {
        line.spread += (s.place - line.middle) * (s.place - line.middle);
        products += (s.place - line.middle) * (s.value - line.height);
    }
    line.slope = products / line.spread;
    if (!std::isfinite(line.slope)) {
        return {};
    }
    std::vector<double> residuals;
    double squares = 0.0;
    for (const Sample& s : near) {
        residuals.push_back(s.value - line.at(s.place));
        squares += residuals.back() * residuals.back();
    }
    constexpr double kRounding = 1e-9; // mm; what is left of samples that are exactly in line
    line.scatter = std::sqrt(squares / line.freedom() * alike(residuals, squares));
    line.scatter = line.scatter > kRounding ? line.scatter : 0.0;
    return line;
}

} // namespace KxInspect::detail
