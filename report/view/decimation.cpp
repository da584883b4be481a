// Fewer values for a page that would be too large.
#include "report/view/decimation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace kxreport {

namespace {

using KxInspect::HeightMap;

/// The heights of a block, rising.
void collect(const HeightMap& map, int fromRow, int fromColumn, int size, std::vector<float>& heights) {
    heights.clear();
    for (int row = fromRow; row < std::min(fromRow + size, map.rows); ++row) {
        for (int column = fromColumn; column < std::min(fromColumn + size, map.columns); ++column) {
            if (const float height = map.at(row, column); std::isfinite(height)) {
                heights.push_back(height);
            }
        }
    }
    std::sort(heights.begin(), heights.end());
}

int blockCount(int cells, int size) {
    return (cells + size - 1) / size;
}

} // namespace

BlockMap blocksOf(const HeightMap& map, int size) {
    if (size <= 1) {
        return {1, map.rows, map.columns, map.heights, {}, {}};
    }
    constexpr float kMissing = std::numeric_limits<float>::quiet_NaN();
    BlockMap blocks{size, blockCount(map.rows, size), blockCount(map.columns, size), {}, {}, {}};
    std::vector<float> heights;
    for (int row = 0; row < blocks.rows; ++row) {
        for (int column = 0; column < blocks.columns; ++column) {
            collect(map, row * size, column * size, size, heights);
            const bool isMissing = heights.empty();
            blocks.medians.push_back(isMissing ? kMissing : heights[(heights.size() - 1) / 2]);
            blocks.lowest.push_back(isMissing ? kMissing : heights.front());
            blocks.highest.push_back(isMissing ? kMissing : heights.back());
        }
    }
    return blocks;
}

std::vector<std::size_t> keptPoints(const std::vector<float>& heights, std::size_t block) {
    constexpr std::size_t kKept = 3;
    std::vector<std::size_t> kept;
    if (block <= kKept) {
        kept.resize(heights.size());
        std::iota(kept.begin(), kept.end(), std::size_t{0});
        return kept;
    }
    std::vector<std::size_t> known;
    for (std::size_t from = 0; from < heights.size(); from += block) {
        const std::size_t end = std::min(from + block, heights.size());
        known.clear();
        std::size_t gap = end;
        for (std::size_t i = from; i < end; ++i) {
            if (std::isfinite(heights[i])) {
                known.push_back(i);
            } else {
                gap = std::min(gap, i);
            }
        }
        std::stable_sort(known.begin(), known.end(),
                         [&](std::size_t a, std::size_t b) { return heights[a] < heights[b]; });
        std::vector<std::size_t> chosen;
        if (!known.empty()) {
            chosen = {known.front(), known[(known.size() - 1) / 2], known.back()};
        }
        if (gap < end) {
            chosen.push_back(gap);
        }
        std::sort(chosen.begin(), chosen.end());
        chosen.erase(std::unique(chosen.begin(), chosen.end()), chosen.end());
        kept.insert(kept.end(), chosen.begin(), chosen.end());
    }
    return kept;
}

} // namespace kxreport
