// Stretches of a row of a height map.
#include "grid/cells.h"

#include "numeric/bounds.h"
#include "numeric/float4.h"

#include <algorithm>

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

} // namespace KxMath::detail
