// Parts of a row of a height map.
#include "grid/cells.h"

#include "rounding/bounds.h"
#include "simd/float4.h"

#include <algorithm>
#include <array>
#include <memory>

namespace KxMath::detail {

namespace {

/// Counts the true lanes of masks in independent vectors.
template <std::size_t kBytes>
struct LaneCounts {
    using Mask = typename Vectors<kBytes>::FloatMask;
    static constexpr int kLanes = static_cast<int>(Vectors<kBytes>::kFloatLanes);
    static constexpr int kUnroll = 4;
    static constexpr int kBlock = kLanes * kUnroll;

    std::array<Mask, kUnroll> counts{};

    [[gnu::always_inline]] void add(int u, Mask mask) { counts[static_cast<std::size_t>(u)] -= mask; } // true is -1

    [[gnu::always_inline]] int total() const {
        const Mask sum = (counts[0] + counts[1]) + (counts[2] + counts[3]);
        int total = 0;
        for (int lane = 0; lane < kLanes; ++lane) {
            total += sum[lane];
        }
        return total;
    }
};

} // namespace

int countFilled(const float* cells, int count, InstructionSet instructions) {
    int filled = 0;
    int c = 0;
    runOn(instructions, [&]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Counts = LaneCounts<kBytes>;
        Counts counts;
        for (; count - c >= Counts::kBlock; c += Counts::kBlock) {
            for (int u = 0; u < Counts::kUnroll; ++u) {
                const auto v = loadVector<typename Vectors<kBytes>::Floats>(cells + c + Counts::kLanes * u);
                counts.add(u, v == v);
            }
        }
        filled = counts.total();
    });
    return filled + static_cast<int>(std::count_if(cells + c, cells + count, [](float v) { return v == v; }));
}

int emptyAll(float* cells, int count) {
    const int emptied = countFilled(cells, count);
    for (int c = 0; c < count && emptied > 0; ++c) {
        cells[c] = cells[c] == cells[c] ? kNaN : cells[c]; // an empty cell keeps the bits of its NaN
    }
    return emptied;
}

int emptyOutside(float* cells, int count, float min, float max, InstructionSet instructions) {
    int emptied = 0;
    int c = 0;
    runOn(instructions, [&]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        using Counts = LaneCounts<kBytes>;
        Counts counts;
        for (; count - c >= Counts::kBlock; c += Counts::kBlock) {
            for (int u = 0; u < Counts::kUnroll; ++u) {
                float* const cell = cells + c + Counts::kLanes * u;
                const Floats v = loadVector<Floats>(cell);
                const auto isOutside = (v < min) | (v > max); // NaN: false
                counts.add(u, isOutside);
                storeVector(cell, select(isOutside, broadcast<Floats>(kNaN), v));
            }
        }
        emptied = counts.total();
    });
    for (; c < count; ++c) {
        if (cells[c] < min || cells[c] > max) { // NaN: false
            cells[c] = kNaN;
            ++emptied;
        }
    }
    return emptied;
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
            const Float4 columns = convert<Float4>(Mask4{c, c + 1, c + 2, c + 3});
            storeInterleaved(columns * step, heights, broadcast<Float4>(z), &to->x);
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
