// What the examples of docs/tasks.md share.
#pragma once

#include <KxMath/KxMath.h>

#include <cmath>
#include <limits>

inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// Counts and names what does not hold.
void expect(bool holds, const char* what);

inline bool isNear(double a, double b, double tolerance) {
    return std::abs(a - b) <= tolerance; // NaN: false
}

/// The points (x, y(x)) for x = 0, step, 2 step, ...
template <typename Function>
KxMath::KxProfile sampled(int count, float step, Function y) {
    KxMath::KxProfile profile;
    for (int i = 0; i < count; ++i) {
        const float x = float(i) * step;
        profile.points.append(KxMath::KxPointXY(x, float(y(x))));
    }
    return profile;
}

// Each tries its part of the page. The current folder is a temporary one.
void tryFiles();
void tryCleaning();
void tryFits();
void tryFeatures();
void tryClouds();
void tryScans();
void tryHeightMaps();
void tryRailway();
void tryMeasuring(); ///< with the files of tryRailway()
