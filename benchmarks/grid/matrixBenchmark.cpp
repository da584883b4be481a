// Height maps: made from a set, counted, trimmed, converted to a cloud.
#include "grid/jobs.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

namespace kxbench {

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// The heights of a profile at the columns of the grid, both ordered by x.
void mergeWalk(const QList<KxPointXY>& points, float minX, std::vector<float>& heights) {
    qsizetype next = 0;
    for (std::size_t j = 0; j < heights.size(); ++j) {
        const float x = minX + static_cast<float>(j) * kPitch;
        while (next < points.size() && points[next].x < x) {
            ++next;
        }
        if (next == points.size() || (next == 0 && points[0].x > x)) {
            heights[j] = kNaN;
            continue;
        }
        const KxPointXY& right = points[next];
        if (right.x == x) {
            heights[j] = right.y;
            continue;
        }
        const KxPointXY& left = points[next - 1];
        const float width = right.x - left.x;
        heights[j] = width > kMaxGap ? kNaN : left.y + (right.y - left.y) * ((x - left.x) / width);
    }
}

Digest digestNumber(GridJob& j) {
    return {j.value, 1e-4}; // a line through two points is fitted in single precision there
}

void addFromSet() {
    addOnGrid(
        "set to matrix", "kx", fillSet, [](GridJob& j) { j.set.toMatrixCloud(j.matrix, kMaxGap, kPitch); },
        [](GridJob& j) {
            for (int r = 0; r < j.matrix.rows; ++r) {
                j.value = std::accumulate(j.matrix.cells[r], j.matrix.cells[r] + j.matrix.columns, j.value);
            }
            return digestNumber(j);
        });
    addOnGrid(
        "set to matrix", "peer_merge_walk", fillSet,
        [](GridJob& j) {
            const auto columns = static_cast<std::size_t>(std::ceil((j.set.maxX - j.set.minX) / kPitch));
            const auto isLess = [](const KxPointXY& a, const KxPointXY& b) { return a.x < b.x; };
            int filled = 0;
            for (KxMath::KxProfileZ& profile : j.set.profiles) {
                if (!std::is_sorted(profile.points.cbegin(), profile.points.cend(), isLess)) {
                    std::sort(profile.points.begin(), profile.points.end(), isLess);
                }
                std::vector<float> row(columns);
                mergeWalk(profile.points, j.set.minX, row);
                filled += static_cast<int>(
                    std::count_if(row.begin(), row.end(), [](float height) { return !std::isnan(height); }));
                j.heights.push_back(std::move(row));
            }
            benchmark::DoNotOptimize(filled);
        },
        [](GridJob& j) {
            for (const std::vector<float>& row : j.heights) {
                j.value = std::accumulate(row.begin(), row.end(), j.value);
            }
            return digestNumber(j);
        });
}

void addSize() {
    addOnGrid(
        "matrix size", "kx", fillMatrix, [](GridJob& j) { j.value = j.matrix.size(); }, digestValue);
    addOnGrid(
        "matrix size", "peer_plain_loop", fillMatrix,
        [](GridJob& j) {
            int count = 0;
            for (int r = 0; r < j.matrix.rows; ++r) {
                for (int c = 0; c < j.matrix.columns; ++c) {
                    if (!std::isnan(j.matrix.cells[r][c])) {
                        ++count;
                    }
                }
            }
            j.value = count;
        },
        digestValue);
}

/// Only reads the cells, 16 bytes at a time in independent chains.
void readCells(GridJob& j) {
    using Bits4 __attribute__((vector_size(16))) = unsigned;
    Bits4 all[4] = {};
    for (int r = 0; r < j.matrix.rows; ++r) {
        const float* const row = j.matrix.cells[r];
        for (int c = 0; c + 16 <= j.matrix.columns; c += 16) {
            for (int chain = 0; chain < 4; ++chain) {
                Bits4 v = {};
                std::memcpy(&v, row + c + std::ptrdiff_t{4} * chain, sizeof(v));
                all[chain] ^= v;
            }
        }
    }
    benchmark::DoNotOptimize(all);
}

constexpr int kFirstColumn = 100;
constexpr int kLastColumn = 1100;
constexpr int kFirstRow = 100;
constexpr int kLastRow = 1900;
constexpr float kMinHeight = 25.0f;
constexpr float kMaxHeight = 31.0f;

void addLimits() {
    addOnGrid("matrix size", "limit_reading", fillMatrix, readCells, nothing<GridJob>);
    addOnGrid(
        "matrix to cloud", "limit_reading_and_fresh_memory", fillMatrix,
        [](GridJob& j) {
            readCells(j);
            const std::size_t size = sizeof(KxPointXYZ) * static_cast<std::size_t>(j.matrix.rows * j.matrix.columns);
            j.bytes = std::make_unique_for_overwrite<char[]>(size);
            std::memset(j.bytes.get(), 1, size);
        },
        nothing<GridJob>);
}

void addTrim() {
    addOnGrid(
        "matrix trim", "kx", fillMatrix,
        [](GridJob& j) {
            j.value = j.matrix.trim(kFirstColumn, kLastColumn, kMinHeight, kMaxHeight, kFirstRow, kLastRow);
        },
        digestValue);
    addOnGrid(
        "matrix trim", "peer_plain_loop", fillMatrix,
        [](GridJob& j) {
            int count = 0;
            for (int r = 0; r < j.matrix.rows; ++r) {
                for (int c = 0; c < j.matrix.columns; ++c) {
                    float& cell = j.matrix.cells[r][c];
                    if (!std::isnan(cell) && (r < kFirstRow || r > kLastRow || c < kFirstColumn || c > kLastColumn ||
                                              cell < kMinHeight || cell > kMaxHeight)) {
                        cell = kNaN;
                        ++count;
                    }
                }
            }
            j.value = count;
        },
        digestValue);
}

void addToCloud() {
    addOnGrid(
        "matrix to cloud", "kx", fillMatrix, [](GridJob& j) { j.matrix.toPointCloud(j.cloud); }, digestCloud);
    addOnGrid(
        "matrix to cloud", "peer_plain_loop", fillMatrix,
        [](GridJob& j) {
            j.points.reserve(kGridPoints);
            for (int r = 0; r < j.matrix.rows; ++r) {
                for (int c = 0; c < j.matrix.columns; ++c) {
                    const float height = j.matrix.cells[r][c];
                    if (!std::isnan(height)) {
                        j.points.emplace_back(static_cast<float>(c) * kPitch, height, static_cast<float>(r) * kPitch);
                    }
                }
            }
        },
        digestPoints);
}

[[maybe_unused]] const bool isRegistered = [] {
    addFromSet();
    addSize();
    addLimits();
    addTrim();
    addToCloud();
    return true;
}();

} // namespace

} // namespace kxbench
