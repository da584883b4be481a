// The rotation that is measured.
#pragma once

#include "cloud/jobs.h"

namespace kxbench {

constexpr const char* kTurn = "rotate";
constexpr float kTurnXY = 10.0f; ///< degrees
constexpr float kTurnXZ = 20.0f;
constexpr float kTurnYZ = 30.0f;

/// Of the coordinates in the order of the points.
template <typename Points>
Digest digestTurned(const Points& points, double tolerance) {
    double sum = 0.0;
    int i = 0;
    for (const auto& p : points) {
        i = i % 7 + 1;
        sum += i * (static_cast<double>(p.x) + 2.0 * static_cast<double>(p.y) + 3.0 * static_cast<double>(p.z));
    }
    return {sum, tolerance};
}

} // namespace kxbench
