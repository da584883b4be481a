// Seeds of a height map.
#include "grid/jobs.h"

#include <cmath>

namespace kxbench {

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kStartLevel = 34.0f;
constexpr float kEndLevel = 20.0f;
constexpr float kLevelStep = 0.5f;

struct Position {
    int row;
    int column;
};

/// The region of a cell in any order, with a stack of its own.
void flood(const QList<QList<HistoCell>>& rows, Position start, std::vector<char>& visited,
           std::vector<Position>& region) {
    const int columns = static_cast<int>(rows[0].size());
    const auto flagOf = [&](Position at) -> char& {
        return visited[static_cast<std::size_t>(at.row) * static_cast<std::size_t>(columns) +
                       static_cast<std::size_t>(at.column)];
    };
    region = {start};
    flagOf(start) = true;
    for (std::size_t next = 0; next < region.size(); ++next) { // the region is its own queue
        const Position at = region[next];
        const float mean = rows[at.row][at.column].mean;
        for (const Position side : {Position{0, -1}, Position{0, 1}, Position{-1, 0}, Position{1, 0}}) {
            const Position to{at.row + side.row, at.column + side.column};
            if (to.row < 0 || to.row >= rows.size() || to.column < 0 || to.column >= columns || flagOf(to)) {
                continue;
            }
            if (std::abs(mean - rows[to.row][to.column].mean) < kTolerance) {
                flagOf(to) = true;
                region.push_back(to);
            }
        }
    }
}

/// Moves the matrix cells under a region to a patch.
void takeOut(KxMatrixCloud& matrix, const QList<QList<HistoCell>>& rows, const std::vector<Position>& region,
             std::vector<KxPointXYZ>& patch) {
    for (const Position at : region) {
        const HistoCell& block = rows[at.row][at.column];
        for (int r = block.firstRow; r < block.row; ++r) {
            for (int c = block.firstColumn; c < block.column; ++c) {
                float& height = matrix.cells[r][c];
                if (!std::isnan(height)) {
                    patch.emplace_back(static_cast<float>(c) * matrix.step, height,
                                       static_cast<float>(r) * matrix.step);
                    height = kNaN;
                }
            }
        }
    }
}

void floodFill(GridJob& j) {
    const QList<QList<HistoCell>>& rows = j.histos.histoRows;
    const int columns = static_cast<int>(rows[0].size());
    std::vector<char> visited(static_cast<std::size_t>(rows.size() * columns));
    std::vector<Position> region;
    for (float level = kStartLevel; level >= kEndLevel; level -= kLevelStep) {
        std::size_t flag = 0;
        for (int r = 0; r < rows.size(); ++r) {
            for (int c = 0; c < columns; ++c, ++flag) {
                if (visited[flag] || !(std::abs(rows[r][c].mean - level) < kTolerance)) {
                    continue;
                }
                flood(rows, {r, c}, visited, region);
                if (region.size() >= kMinCount) {
                    takeOut(j.matrix, rows, region, j.patches.emplace_back());
                }
            }
        }
    }
}

/// Sizes and heights of the patches, independent of the order of their points.
template <typename Patches>
Digest digestPatches(const Patches& patches) {
    double value = 0.0;
    for (const auto& patch : patches) {
        for (const KxPointXYZ& p : pointsOf(patch)) {
            value += static_cast<double>(p.y);
        }
        value += static_cast<double>(pointsOf(patch).size());
    }
    return {value, 1e-9};
}

[[maybe_unused]] const bool isRegistered = [] {
    addOnGrid(
        "seeds", "kx", fillMeans,
        [](GridJob& j) {
            j.histos.extractSeeds(j.matrix, &j.seeds, kStartLevel, kEndLevel, kLevelStep, kTolerance, kMinCount, kNaN);
        },
        [](GridJob& j) { return digestPatches(j.seeds); });
    addOnGrid("seeds", "peer_flood_fill", fillMeans, floodFill, [](GridJob& j) { return digestPatches(j.patches); });
    return true;
}();

} // namespace

} // namespace kxbench
