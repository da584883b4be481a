// Profiles on the columns of a height map.
#include "grid/resampling.h"

#include "grid/cells.h"
#include "grid/position.h"
#include "profile/lookUp.h"
#include "rounding/bounds.h"
#include "simd/float4.h"

#include <algorithm>
#include <array>
#include <limits>

namespace KxMath::detail {

namespace {

/// The neighbours of four positions.
struct Neighbours4 {
    Float4 leftX, leftY, rightX, rightY;
};

/// The points before and at four positions in a list, which have a point before them.
Neighbours4 neighboursAt(const KxPointXY* points, const qsizetype* found) {
    const auto pairAt = [&](int k) { return loadFloat4(&points[found[k] - 1].x); };
    Neighbours4 n{pairAt(0), pairAt(1), pairAt(2), pairAt(3)};
    transpose(n.leftX, n.leftY, n.rightX, n.rightY);
    return n;
}

/// Four heights between neighbours. The bits are those of heightAt(): each operation of valueAt() in lookUp.cpp and of
/// fitLine() for two points stands here once more, in the same order. Change them together;
/// the test SetToMatrix.EqualsTheHeightsOfTheSortedProfiles compares.
struct Heights4 {
    Float4 heights;
    Mask4 areRegular; ///< where the height is that: neighbours apart and in order, the sum of their x not 0
};

Heights4 heightsBetween(const Neighbours4& n, Float4 x, float maxDistance) {
    constexpr Float4 kZero = {};
    // The sums of the line through two points start at 0.
    const Float4 sxy = (kZero + n.leftX * n.leftY) + n.rightX * n.rightY;
    const Float4 sxx = (kZero + n.leftX * n.leftX) + n.rightX * n.rightX;
    const Float4 sx = (kZero + n.leftX) + n.rightX;
    const Float4 sy = (kZero + n.leftY) + n.rightY;
    const Float4 b = (sxy - sy * sxx / sx) / (sx - sxx * 2.0f / sx);
    const Float4 k = (sy - 2.0f * b) / sx;
    // A position lies between its neighbours, so that neither is further away than they are apart.
    const Mask4 areFar = n.rightX - n.leftX > maxDistance; // NaN: no limit
    const Mask4 areThere = n.rightX == x;
    const Float4 between = select(areFar, broadcast<Float4>(kNaN), k * x + b);
    return {select(areThere, n.rightY, between), areThere | ((n.leftX < n.rightX) & (sx != kZero))};
}

/// Positions that are looked up one after the other, before their heights are calculated four at a time.
struct Block {
    static constexpr int kSize = 512;
    std::array<float, kSize> positions;
    std::array<qsizetype, kSize> found;
};

/// Looks up block after block.
class PositionSearch {
public:
    PositionSearch(const QList<KxPointXY>& points, const Columns& columns)
        : points_(points.constData()), count_(points.size()),
          areRising_(columns.pitch > 0.0f && columns.pitch < std::numeric_limits<float>::infinity()) {} // NaN: false

    /// Finds the first point at or beyond each of the first `count` positions. Where these rise, no point that was
    /// before one of them is at or beyond a later one, whatever the order of the points.
    void find(Block& block, int count) {
        for (size_t j = 0; j < static_cast<size_t>(count); ++j) {
            const float x = block.positions[j];
            if (areRising_) {
                while (at_ < count_ && !(points_[at_].x >= x)) { // NaN: true
                    ++at_;
                }
                block.found[j] = at_;
            } else {
                block.found[j] = findAtOrBeyond(points_, count_, x, 0);
            }
        }
    }

private:
    const KxPointXY* points_;
    qsizetype count_;
    bool areRising_;
    qsizetype at_ = 0;
};

/// The heights at the first `count` positions of a block.
void fillBlock(const QList<KxPointXY>& points, const Block& block, int count, float maxDistance, float* heights) {
    const auto fill = [&](int begin, int end) {
        for (int j = begin; j < end; ++j) {
            const size_t i = static_cast<size_t>(j);
            heights[j] = heightAt(points, block.found[i], block.positions[i], maxDistance);
        }
    };
    int j = 0;
    for (; j + 4 <= count; j += 4) {
        const qsizetype* const found = block.found.data() + j;
        const size_t gaps = static_cast<size_t>(std::max<qsizetype>(points.size() - 1, 0));
        const auto isBetween = [=](qsizetype at) { return static_cast<size_t>(at) - 1 < gaps; }; // 0 becomes huge
        if (!std::all_of(found, found + 4, isBetween)) {
            fill(j, j + 4);
            continue;
        }
        const Float4 x = loadFloat4(block.positions.data() + j);
        const Heights4 four = heightsBetween(neighboursAt(points.constData(), found), x, maxDistance);
        storeFloat4(heights + j, four.heights);
        if (!allOf(four.areRegular)) {
            fill(j, j + 4);
        }
    }
    fill(j, count);
}

} // namespace

int fillRow(const QList<KxPointXY>& points, const Columns& columns, float maxDistance, float* row) {
    Block block;
    PositionSearch search(points, columns);
    for (int start = 0, count = 0; start < columns.count; start += count) {
        count = std::min(Block::kSize, columns.count - start);
        for (int j = 0; j < count; ++j) {
            block.positions[static_cast<size_t>(j)] = gridPosition(start + j, columns.pitch, columns.origin);
        }
        search.find(block, count);
        fillBlock(points, block, count, maxDistance, row + start);
    }
    return countFilled(row, columns.count);
}

} // namespace KxMath::detail
