// The inputs that the benchmarks share: same seed, same numbers.
#pragma once

#include <KxMath/KxMath.h>

#include <cmath>
#include <random>

namespace kxbench {

constexpr int kProfilePoints = 1280;

/// A wheel-like profile over 80 mm: an arc with a step, noise of 0.02 mm and a spike in every 97 points.
inline QList<KxMath::KxPointXY> profilePoints(int count = kProfilePoints, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::normal_distribution<float> noise(0.0f, 0.02f);
    QList<KxMath::KxPointXY> points;
    points.reserve(count);
    for (int i = 0; i < count; ++i) {
        const float x = 80.0f * (static_cast<float>(i) / static_cast<float>(count) - 0.5f);
        const float step = i > count / 2 ? 1.5f : 0.0f;
        const float spike = i % 97 == 50 ? 3.0f : 0.0f;
        points.append(KxMath::KxPointXY(x, 30.0f - x * x / 400.0f + step + spike + noise(random)));
    }
    return points;
}

/// A scan: rows of profiles 0.5 mm apart in z, points 0.0625 mm apart in x, heights of a rough surface.
inline QList<KxMath::KxPointXYZ> scanPoints(int count, unsigned seed = 2) {
    std::mt19937 random(seed);
    std::normal_distribution<float> noise(0.0f, 0.1f);
    QList<KxMath::KxPointXYZ> points;
    points.reserve(count);
    for (int i = 0; i < count; ++i) {
        const float x = 0.0625f * static_cast<float>(i % kProfilePoints);
        const float z = 0.5f * static_cast<float>(i / kProfilePoints);
        points.append(KxMath::KxPointXYZ(x, 3.0f * std::sin(x / 9.0f) + noise(random), z));
    }
    return points;
}

/// Points anywhere in a cube of 100 mm.
inline QList<KxMath::KxPointXYZ> randomPoints(int count, unsigned seed = 3) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> anywhere(0.0f, 100.0f);
    QList<KxMath::KxPointXYZ> points;
    points.reserve(count);
    for (int i = 0; i < count; ++i) {
        const float x = anywhere(random);
        const float y = anywhere(random);
        points.append(KxMath::KxPointXYZ(x, y, anywhere(random)));
    }
    return points;
}

/// A set of `rows` profiles of `kProfilePoints` points 0.0625 mm apart.
inline void fillSet(KxMath::KxProfileZSet& set, int rows) {
    for (int row = 0; row < rows; ++row) {
        KxMath::KxProfileZ profile(0.0625f * static_cast<float>(row));
        profile.points = profilePoints(kProfilePoints, static_cast<unsigned>(row % 16));
        set.profiles.append(profile);
    }
    set.stepZ = 0.0625f; // as in x: a grid of 1280 columns
    set.calcRange();
}

} // namespace kxbench
