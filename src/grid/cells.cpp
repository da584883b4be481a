// Stretches of a row of a height map.
#include "grid/cells.h"

#include "rounding/bounds.h"
#include "simd/float4.h"

#include <algorithm>
#include <memory>

namespace KxMath::detail {

namespace {

constexpr int kGroups = 4;
constexpr int kSideBySide = 4 * kGroups;

/// Counts answers in four places at once.
struct Counter {
    Answers4 places[kGroups] = {};

    int total() const {
        const Answers4 sum = (places[0] + places[1]) + (places[2] + places[3]);
        return sum[0] + sum[1] + sum[2] + sum[3];
    }
};

/// Writes the coordinates of four points one point after the other.
void storePoints(Float4 x, Float4 y, Float4 z, float* to) {
    const Float4 low = __builtin_shufflevector(x, y, 0, 4, 1, 5);
    const Float4 high = __builtin_shufflevector(x, y, 2, 6, 3, 7);
    const Float4 endOfSecond = __builtin_shufflevector(low, z, 3, 4, 3, 4);
    storeFloat4(to, __builtin_shufflevector(low, z, 0, 1, 4, 2));
    storeFloat4(to + 4, __builtin_shufflevector(endOfSecond, high, 0, 1, 4, 5));
    storeFloat4(to + 8, __builtin_shufflevector(high, z, 4, 2, 3, 5));
}

} // namespace

int countFilled(const float* cells, int count) {
    Counter filled;
    int c = 0;
    for (; count - c >= kSideBySide; c += kSideBySide) {
        for (int group = 0; group < kGroups; ++group) {
            const Float4 v = loadFloat4(cells + c + 4 * group);
            filled.places[group] -= v == v; // -1 for yes
        }
    }
    return filled.total() + static_cast<int>(std::count_if(cells + c, cells + count, [](float v) { return v == v; }));
}

int emptyAll(float* cells, int count) {
    const int emptied = countFilled(cells, count);
    for (int c = 0; c < count && emptied > 0; ++c) {
        cells[c] = cells[c] == cells[c] ? kNaN : cells[c];
    }
    return emptied;
}

int emptyOutside(float* cells, int count, float min, float max) {
    constexpr Float4 kEmpty = {kNaN, kNaN, kNaN, kNaN};
    const Float4 lowest = {min, min, min, min};
    const Float4 highest = {max, max, max, max};
    Counter emptied;
    int c = 0;
    for (; count - c >= kSideBySide; c += kSideBySide) {
        for (int group = 0; group < kGroups; ++group) {
            float* const cell = cells + c + 4 * group;
            const Float4 v = loadFloat4(cell);
            const Answers4 isOutside = (v < lowest) | (v > highest); // NaN: false
            emptied.places[group] -= isOutside;
            storeFloat4(cell, select(isOutside, kEmpty, v));
        }
    }
    int rest = 0;
    for (; c < count; ++c) {
        if (cells[c] < min || cells[c] > max) { // NaN: false
            cells[c] = kNaN;
            ++rest;
        }
    }
    return emptied.total() + rest;
}

KxPointXYZ* writeFilled(const float* cells, int row, int begin, int end, float step, KxPointXYZ* to) {
    const float z = static_cast<float>(row) * step;
    int c = begin;
    while (c < end) {
        for (; end - c >= 4; c += 4, to += 4) { // without empty cells
            const Float4 heights = loadFloat4(cells + c);
            if (anyOf(heights != heights)) {
                break;
            }
            const Float4 columns = __builtin_convertvector((Answers4{c, c + 1, c + 2, c + 3}), Float4);
            storePoints(columns * step, heights, Float4{z, z, z, z}, &to->x);
        }
        for (const int stop = std::min(end, c + 4); c < stop; ++c) {
            const float height = cells[c];
            std::construct_at(to, static_cast<float>(c) * step, height, z);
            to += height == height ? 1 : 0;
        }
    }
    return to;
}

} // namespace KxMath::detail
