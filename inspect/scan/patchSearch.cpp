// Default limits of the search for patches.
#include "inspect/scan/patchSearch.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

/// The median of the differences between neighbours, 0 when there are none.
float medianDifference(const HeightMap& map, const std::vector<float>& means) {
    std::vector<float> differences;
    const auto add = [&](float a, float b) {
        const float difference = std::abs(a - b);
        if (std::isfinite(difference)) {
            differences.push_back(difference);
        }
    };
    for (int r = 0; r < map.rows; ++r) {
        for (int c = 0; c < map.columns; ++c) {
            const float mean = means[map.position(r, c)];
            if (c > 0) {
                add(mean, means[map.position(r, c - 1)]);
            }
            if (r > 0) {
                add(mean, means[map.position(r - 1, c)]);
            }
        }
    }
    return median(std::move(differences), 0.0f);
}

float defaultTolerance(const HeightMap& map, const std::vector<float>& means, const Range& range) {
    constexpr float kTimesMedian = 10.0f;
    constexpr double kPartOfRange = 1.0 / 500;
    constexpr double kRounding = 1e-5; // relative to the height, for a surface without noise
    const double min = static_cast<double>(range.min);
    const double max = static_cast<double>(range.max);
    const double largest = std::max(std::abs(min), std::abs(max));
    const float least = static_cast<float>(std::max((max - min) * kPartOfRange, largest * kRounding));
    return std::max({kTimesMedian * medianDifference(map, means), least, std::numeric_limits<float>::min()});
}

} // namespace

PatchSearch chooseSearch(const PatchOptions& options, const HeightMap& map, const PatchResult& blocks) {
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    const bool isEmpty = blocks.meanRange.isEmpty();
    const Range range = isEmpty ? Range{kNaN, kNaN} : blocks.meanRange;
    PatchSearch search;
    search.start = options.start.value_or(range.max);
    search.end = options.end.value_or(range.min);
    search.tolerance = options.tolerance ? *options.tolerance
                       : isEmpty         ? kNaN
                                         : defaultTolerance(map, blocks.means, range);
    search.step = options.step.value_or(search.tolerance);
    search.minCount = options.minCount.value_or(2 * std::max(map.rows, map.columns));
    search.maxDrop = options.maxDrop;
    return search;
}

} // namespace KxInspect::detail
