// Rows of height maps between profiles that are further apart than the pitch.
#include "inspect/scan/rowsBetween.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr double kSamePlace = 1e-3; ///< in pitches: positions are rounded to float

/// The heights on the straight lines between two rows.
void fillBetween(const float* before, const float* after, double part, int columns, float* row) {
    for (int c = 0; c < columns; ++c) {
        const double from = static_cast<double>(before[c]);
        row[c] = static_cast<float>(from + (static_cast<double>(after[c]) - from) * part); // NaN stays
    }
}

} // namespace

float profileDistance(const Scan& scan) {
    if (std::isfinite(scan.distance)) {
        return scan.distance;
    }
    std::vector<float> positions;
    for (const Profile& profile : scan.profiles) {
        positions.push_back(profile.z);
    }
    if (!std::all_of(positions.begin(), positions.end(), [](float z) { return std::isfinite(z); })) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    std::sort(positions.begin(), positions.end());
    std::vector<float> distances;
    for (std::size_t i = 1; i < positions.size(); ++i) {
        distances.push_back(positions[i] - positions[i - 1]);
    }
    return median(distances);
}

double rowsFrom(const std::vector<float>& positions, float pitch) {
    if (positions.empty()) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const double length = static_cast<double>(positions.back()) - static_cast<double>(positions.front());
    return std::floor(length / static_cast<double>(pitch) + kSamePlace) + 1.0;
}

void interpolateRows(const std::vector<float>& positions, HeightMap& map) {
    const double pitch = static_cast<double>(map.pitch);
    const auto z = [&](std::size_t profile) { return static_cast<double>(positions[profile]); };
    const std::vector<float> profiles = std::move(map.heights);
    const auto columns = static_cast<std::size_t>(map.columns);
    map.rows = static_cast<int>(rowsFrom(positions, map.pitch));
    map.heights.assign(map.position(map.rows, 0), std::numeric_limits<float>::quiet_NaN());
    std::size_t before = 0;
    for (int r = 0; r < map.rows; ++r) {
        const double at = z(0) + r * pitch;
        while (before + 1 < positions.size() && z(before + 1) <= at + kSamePlace * pitch) {
            ++before;
        }
        const float* const heights = &profiles[before * columns];
        float* const row = &map.heights[map.position(r, 0)];
        if (at - z(before) <= kSamePlace * pitch) {
            std::copy_n(heights, columns, row);
        } else if (before + 1 < positions.size()) {
            ++map.interpolatedRows;
            const double distance = z(before + 1) - z(before);
            if (distance <= static_cast<double>(map.gap) + kSamePlace * pitch) {
                fillBetween(heights, heights + columns, (at - z(before)) / distance, map.columns, row);
            }
        }
    }
}

} // namespace KxInspect::detail
