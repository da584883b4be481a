// The limits of the seed search where the user gave none.
#include "inspect/scan/seedSearch.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxtool {

namespace {

/// The median of the differences between neighbours, 0 when there are none.
float medianDifference(const CellValues& means) {
    std::vector<float> differences;
    const auto add = [&](float a, float b) {
        const float difference = std::abs(a - b);
        if (std::isfinite(difference)) {
            differences.push_back(difference);
        }
    };
    for (int r = 0; r < means.rows; ++r) {
        for (int c = 0; c < means.columns; ++c) {
            const float mean = means.values[means.position(r, c)];
            if (c > 0) {
                add(mean, means.values[means.position(r, c - 1)]);
            }
            if (r > 0) {
                add(mean, means.values[means.position(r - 1, c)]);
            }
        }
    }
    return median(differences, 0.0f);
}

float defaultTolerance(const CellValues& means, const kxreport::Range& range) {
    constexpr float kTimesMedian = 10.0f;
    constexpr double kPartOfRange = 1.0 / 500;
    constexpr double kRounding = 1e-5; // of the height itself, for a surface without noise
    const double largest = std::max(std::abs(range.min), std::abs(range.max));
    const float least = static_cast<float>(std::max(range.size() * kPartOfRange, largest * kRounding));
    return std::max({kTimesMedian * medianDifference(means), least, std::numeric_limits<float>::min()});
}

} // namespace

SeedSearch chooseSearch(const SeedOptions& options, const CellValues& means) {
    kxreport::Range range = means.range();
    if (range.isEmpty()) {
        range = {0.0, 0.0};
    }
    SeedSearch search;
    search.start = options.start.value_or(static_cast<float>(range.max));
    search.end = options.end.value_or(static_cast<float>(range.min));
    search.tolerance = options.tolerance ? *options.tolerance : defaultTolerance(means, range);
    search.step = options.step.value_or(search.tolerance);
    search.minCount = options.minCount.value_or(2 * std::max(means.rows, means.columns));
    search.maxDrop = options.maxDrop;
    return search;
}

} // namespace kxtool
