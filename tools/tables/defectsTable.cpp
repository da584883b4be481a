// Prints in how many of 20 profiles the judgement finds a feature, over its place, width and height, for a largest
// allowed deviation of 0.3 mm and of 0.2 mm.
#include "inspect/train/treadDefects.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <random>

namespace {

constexpr int kSeeds = 20;
constexpr float kLength = 45.0f; // mm of the laser line on the tread
constexpr float kSpacing = 0.1f;
constexpr double kNoise = 0.05;

/// A tread with a feature of upright sides: a cone of 1 in 20 that bends away at its field side, seen by a sensor.
KxMath::KxProfile makeTread(unsigned seed, float middle, float width, float height) {
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0.0, kNoise);
    KxMath::KxProfile profile;
    const int points = static_cast<int>(kLength / kSpacing);
    for (int i = 0; i <= points; ++i) {
        const float x = static_cast<float>(i) * kSpacing;
        const float bend = std::max(0.0f, x - 30.0f);
        const bool isFeature = std::abs(x - middle) <= width / 2.0f;
        const float shape = 100.0f + x / 20.0f + bend * bend / 300.0f + (isFeature ? height : 0.0f);
        profile.points.append(KxMath::KxPointXY(x, shape + static_cast<float>(noise(random))));
    }
    return profile;
}

int countFound(float middle, float width, float height, float maxDeviation) {
    const KxInspect::detail::TreadLines lines = {{0.0f, 1000.0f}, {0.0f, 0.0f}};
    KxInspect::DefectLimits limits;
    limits.maxDeviation = maxDeviation;
    int found = 0;
    for (unsigned seed = 1; seed <= kSeeds; ++seed) {
        const KxInspect::detail::PointList tread =
            KxInspect::detail::cutTread(makeTread(seed, middle, width, height).points, lines, limits);
        found += KxInspect::detail::judgeTread(tread, limits).isSound ? 0 : 1;
    }
    return found;
}

} // namespace

int main() {
    constexpr float kHeights[] = {0.0f, 0.2f, 0.3f, 0.4f, 0.5f, 0.7f, 1.0f, 1.5f, 2.0f};
    std::printf("| x, mm | width, mm |");
    for (const float height : kHeights) {
        std::printf(" %g mm |", static_cast<double>(height));
    }
    std::printf("\n| --- | --- |");
    for (size_t i = 0; i < std::size(kHeights); ++i) {
        std::printf(" --- |");
    }
    std::printf("\n");
    for (const float middle : {2.0f, 5.0f, 10.0f, 22.0f}) {
        for (const float width : {1.0f, 2.0f, 3.0f, 5.0f, 7.0f, 10.0f, 15.0f, 20.0f}) {
            std::printf("| %g | %g |", static_cast<double>(middle), static_cast<double>(width));
            for (const float height : kHeights) {
                std::printf(" %d / %d |", countFound(middle, width, height, 0.3f),
                            countFound(middle, width, height, 0.2f));
            }
            std::printf("\n");
        }
    }
    return 0;
}
