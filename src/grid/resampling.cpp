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
    const Float4 a = pairAt(0);
    const Float4 b = pairAt(1);
    const Float4 c = pairAt(2);
    const Float4 d = pairAt(3);
    const Float4 leftAB = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Float4 leftCD = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const Float4 rightAB = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Float4 rightCD = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    return {__builtin_shufflevector(leftAB, leftCD, 0, 1, 4, 5), __builtin_shufflevector(leftAB, leftCD, 2, 3, 6, 7),
            __builtin_shufflevector(rightAB, rightCD, 0, 1, 4, 5),
            __builtin_shufflevector(rightAB, rightCD, 2, 3, 6, 7)};
}

/// Four heights between neighbours, with the operations of heightAt() in their order.
struct Heights4 {
    Float4 heights;
    Answers4 areRegular; ///< where the height is that: neighbours apart and in order, the sum of their x not 0
};

Heights4 heightsBetween(const Neighbours4& n, Float4 x, float maxDistance) {
    constexpr Float4 kZero = {};
    constexpr Float4 kTwo = {2.0f, 2.0f, 2.0f, 2.0f};
    constexpr Float4 kNone = {kNaN, kNaN, kNaN, kNaN};
    const Float4 limit = {maxDistance, maxDistance, maxDistance, maxDistance};
    // The sums of the line through two points start at 0.
    const Float4 sxy = (kZero + n.leftX * n.leftY) + n.rightX * n.rightY;
    const Float4 sxx = (kZero + n.leftX * n.leftX) + n.rightX * n.rightX;
    const Float4 sx = (kZero + n.leftX) + n.rightX;
    const Float4 sy = (kZero + n.leftY) + n.rightY;
    const Float4 b = (sxy - sy * sxx / sx) / (sx - sxx * kTwo / sx);
    const Float4 k = (sy - kTwo * b) / sx;
    // The positions stand between their neighbours, so that none of the two is further away than these are apart.
    const Answers4 areFar = n.rightX - n.leftX > limit; // NaN: no limit
    const Answers4 areThere = n.rightX == x;
    const Float4 between = select(areFar, kNone, k * x + b);
    return {select(areThere, n.rightY, between), areThere | ((n.leftX < n.rightX) & (sx != kZero))};
}

/// Positions that are looked up one after the other before their heights are calculated side by side.
struct Portion {
    static constexpr int kSize = 512;
    std::array<float, kSize> positions;
    std::array<qsizetype, kSize> found;
};

/// Looks up one portion after the other.
class PositionSearch {
public:
    PositionSearch(const QList<KxPointXY>& points, const Columns& columns)
        : points_(points.constData()), count_(points.size()),
          areRising_(columns.pitch > 0.0f && columns.pitch < std::numeric_limits<float>::infinity()) {} // NaN: false

    /// Finds the first point at or beyond each of the first `count` positions. Where these rise, no point that was
    /// before one of them is at or beyond a later one, whatever the order of the points.
    void find(Portion& portion, int count) {
        for (size_t j = 0; j < static_cast<size_t>(count); ++j) {
            const float x = portion.positions[j];
            if (areRising_) {
                while (at_ < count_ && !(points_[at_].x >= x)) { // NaN: true
                    ++at_;
                }
                portion.found[j] = at_;
            } else {
                portion.found[j] = findAtOrBeyond(points_, count_, x, 0);
            }
        }
    }

private:
    const KxPointXY* points_;
    qsizetype count_;
    bool areRising_;
    qsizetype at_ = 0;
};

/// The heights at the first `count` positions of a portion.
void fillPortion(const QList<KxPointXY>& points, const Portion& portion, int count, float maxDistance, float* heights) {
    const auto fill = [&](int begin, int end) {
        for (int j = begin; j < end; ++j) {
            const size_t i = static_cast<size_t>(j);
            heights[j] = heightAt(points, portion.found[i], portion.positions[i], maxDistance);
        }
    };
    int j = 0;
    for (; j + 4 <= count; j += 4) {
        const qsizetype* const found = portion.found.data() + j;
        const size_t gaps = static_cast<size_t>(std::max<qsizetype>(points.size() - 1, 0));
        const auto isBetween = [=](qsizetype at) { return static_cast<size_t>(at) - 1 < gaps; }; // 0 becomes huge
        if (!std::all_of(found, found + 4, isBetween)) {
            fill(j, j + 4);
            continue;
        }
        const Float4 x = loadFloat4(portion.positions.data() + j);
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
    Portion portion;
    PositionSearch search(points, columns);
    for (int start = 0, count = 0; start < columns.count; start += count) {
        count = std::min(Portion::kSize, columns.count - start);
        for (int j = 0; j < count; ++j) {
            portion.positions[static_cast<size_t>(j)] = gridPosition(start + j, columns.pitch, columns.origin);
        }
        search.find(portion, count);
        fillPortion(points, portion, count, maxDistance, row + start);
    }
    return countFilled(row, columns.count);
}

} // namespace KxMath::detail
