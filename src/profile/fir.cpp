// The FIR filter that smooths heights.
#include "profile/fir.h"

#include "profile/coordinates.h"

#include <algorithm>
#include <array>

namespace KxMath::detail {

namespace {

constexpr std::array<float, kFirTaps> kWeights = {0.0f,    0.0013f, 0.0047f, 0.0117f, 0.0238f, 0.0407f, 0.0612f,
                                                  0.0824f, 0.1011f, 0.1139f, 0.1185f, 0.1139f, 0.1011f, 0.0824f,
                                                  0.0612f, 0.0407f, 0.0238f, 0.0117f, 0.0047f, 0.0013f};

/// Vectors of sums side by side: each sum keeps its order, and none waits for another one.
constexpr std::size_t kGroups = 8;

/// So many points at a time, and behind them what whole blocks read.
constexpr std::ptrdiff_t kPortion = 512;
using Heights = std::array<float, kFirTaps + kPortion + 64>;

template <typename Floats>
[[gnu::always_inline]] inline std::array<Floats, kGroups> weightedSums(const float* heights) {
    constexpr std::ptrdiff_t kFloats = sizeof(Floats) / sizeof(float);
    std::array<Floats, kGroups> sums{};
    for (std::ptrdiff_t k = 0; k < kFirTaps; ++k) {
        // Deliberately with the first weight of 0 too: a NaN shows at its own point.
        const float weight = kWeights[static_cast<std::size_t>(k)];
        for (std::size_t group = 0; group < kGroups; ++group) {
            sums[group] += weight * loadVector<Floats>(heights + kFloats * static_cast<std::ptrdiff_t>(group) - k);
        }
    }
    return sums;
}

template <typename Floats>
[[gnu::always_inline]] inline void setTargets(const KxPointXY* sources, float maxStep, Floats sums,
                                              KxPointXY* targets) {
    const Floats xs = loadXs<Floats>(sources);
    const auto isBehindGap = xs - loadXs<Floats>(sources - 1) > maxStep; // NaN: false
    storePairs(xs, select(isBehindGap, loadYs<Floats>(sources), sums), &targets->x);
}

} // namespace

void smoothHeights(const KxPointXY* sources, std::ptrdiff_t count, float maxStep, KxPointXY* targets,
                   InstructionSet instructions) {
    runOn(instructions, [=]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        constexpr std::ptrdiff_t kFloats = Vectors<kBytes>::kFloats;
        constexpr std::ptrdiff_t kBlock = kFloats * static_cast<std::ptrdiff_t>(kGroups);
        Heights heights{};
        for (std::ptrdiff_t begin = kFirTaps; begin < count; begin += kPortion) {
            const std::ptrdiff_t end = std::min(count, begin + kPortion);
            copyYs(sources + begin - kFirTaps, end - begin + kFirTaps, heights.data());
            std::ptrdiff_t i = begin;
            for (; i + kBlock <= end; i += kBlock) {
                const auto sums = weightedSums<Floats>(heights.data() + (i - begin) + kFirTaps);
                for (std::size_t group = 0; group < kGroups; ++group) {
                    const std::ptrdiff_t first = i + kFloats * static_cast<std::ptrdiff_t>(group);
                    setTargets(sources + first, maxStep, sums[group], targets + first);
                }
            }
            if (i == end) {
                continue;
            }
            const auto rest = weightedSums<Floats>(heights.data() + (i - begin) + kFirTaps);
            for (std::ptrdiff_t k = 0; i < end; ++i, ++k) {
                const bool isBehindGap = sources[i].x - sources[i - 1].x > maxStep;
                const float sum = rest[static_cast<std::size_t>(k / kFloats)][k % kFloats];
                targets[i] = KxPointXY(sources[i].x, isBehindGap ? sources[i].y : sum);
            }
        }
    });
}

} // namespace KxMath::detail
