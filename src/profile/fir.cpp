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

/// Independent vectors of sums: each lane keeps the order of its sum, and an addition does not wait for the one before.
constexpr std::ptrdiff_t kUnroll = 8;
constexpr std::ptrdiff_t kMaxLanes = 8;

/// The heights are copied in parts of this many points: their y alone, in the first-level cache. A whole block is read
/// behind the last one.
constexpr std::ptrdiff_t kPart = 512;
using Heights = std::array<float, kFirTaps + kPart + kMaxLanes * kUnroll>;

template <typename Floats>
[[gnu::always_inline]] inline std::array<Floats, kUnroll> weightedSums(const float* heights) {
    constexpr std::ptrdiff_t kLanes = sizeof(Floats) / sizeof(float);
    std::array<Floats, kUnroll> sums{};
    for (std::ptrdiff_t k = 0; k < kFirTaps; ++k) {
        // Deliberately with the first weight of 0 too: a NaN shows at its own point.
        const float weight = kWeights[static_cast<std::size_t>(k)];
        for (std::ptrdiff_t u = 0; u < kUnroll; ++u) {
            sums[static_cast<std::size_t>(u)] += weight * loadVector<Floats>(heights + kLanes * u - k);
        }
    }
    return sums;
}

template <typename Floats>
[[gnu::always_inline]] inline void setTargets(const KxPointXY* sources, float maxStep, Floats sums,
                                              KxPointXY* targets) {
    const Floats xs = loadXs<Floats>(sources);
    const auto isBehindGap = xs - loadXs<Floats>(sources - 1) > maxStep; // NaN: false
    storeInterleaved(xs, select(isBehindGap, loadYs<Floats>(sources), sums), &targets->x);
}

} // namespace

void smoothHeights(const KxPointXY* sources, std::ptrdiff_t count, float maxStep, KxPointXY* targets,
                   InstructionSet instructions) {
    runOn(instructions, [=]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        constexpr std::ptrdiff_t kLanes = Vectors<kBytes>::kFloatLanes;
        constexpr std::ptrdiff_t kBlock = kLanes * kUnroll;
        static_assert(kLanes <= kMaxLanes);
        Heights heights{};
        for (std::ptrdiff_t begin = kFirTaps; begin < count; begin += kPart) {
            const std::ptrdiff_t end = std::min(count, begin + kPart);
            copyYs(sources + begin - kFirTaps, end - begin + kFirTaps, heights.data());
            std::ptrdiff_t i = begin;
            for (; i + kBlock <= end; i += kBlock) {
                const auto sums = weightedSums<Floats>(heights.data() + (i - begin) + kFirTaps);
                for (std::ptrdiff_t u = 0; u < kUnroll; ++u) {
                    const std::ptrdiff_t first = i + kLanes * u;
                    setTargets(sources + first, maxStep, sums[static_cast<std::size_t>(u)], targets + first);
                }
            }
            if (i == end) {
                continue;
            }
            const auto rest = weightedSums<Floats>(heights.data() + (i - begin) + kFirTaps);
            for (std::ptrdiff_t k = 0; i < end; ++i, ++k) {
                const bool isBehindGap = sources[i].x - sources[i - 1].x > maxStep;
                const float sum = rest[static_cast<std::size_t>(k / kLanes)][k % kLanes];
                targets[i] = KxPointXY(sources[i].x, isBehindGap ? sources[i].y : sum);
            }
        }
    });
}

} // namespace KxMath::detail
