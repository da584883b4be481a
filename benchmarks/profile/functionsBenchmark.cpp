// Values, areas, splines and steps of y(x).
#include "profile/jobs.h"

#include <KxInspect/KxMathTypes.h>
#include <KxInspect/SplineArea.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace kxbench {

namespace {

constexpr std::size_t kLookUps = 100000;

/// Positions within the profile in random order.
const std::vector<float>& lookedUp() {
    static std::vector<float> xs;
    std::mt19937 random(6);
    std::uniform_real_distribution<float> anywhere(-39.0f, 39.0f);
    while (xs.size() < kLookUps) {
        xs.push_back(anywhere(random));
    }
    return xs;
}

void addLookUps() {
    const auto digest = [](ProfileJob& j) { return Digest{j.values.at(0), 1e-3}; };
    addProfile(
        "calcY, 1e5 look-ups", "kx",
        [](ProfileJob& j) {
            double sum = 0.0;
            for (const float x : lookedUp()) {
                sum += static_cast<double>(j.profile.calcY(x, 1.0f, nullptr));
            }
            j.values = {sum};
        },
        digest, 1);
    addProfile(
        "calcY, 1e5 look-ups", "peer_std_lower_bound",
        [](ProfileJob& j) {
            const Points& points = j.profile.points;
            double sum = 0.0;
            for (const float x : lookedUp()) {
                const auto right = std::lower_bound(points.cbegin(), points.cend(), x,
                                                    [](const KxPointXY& p, float v) { return p.x < v; });
                const auto left = right - 1;
                sum += static_cast<double>(left->y + (right->y - left->y) * (x - left->x) / (right->x - left->x));
            }
            j.values = {sum};
        },
        digest, 1);
}

/// The first step of the level, by running sums.
void addCutPoints() {
    addProfile(
        "cut points", "kx", [](ProfileJob& j) { j.profile.detectCutPoints(j.out, j.positions, 10, 100.0f); },
        [](ProfileJob& j) { return digestValues(j.positions); });
    addProfile(
        "cut points", "peer_one_pass",
        [](ProfileJob& j) {
            const Points& points = j.profile.points;
            constexpr int kWindow = 10;
            float after = 0.0f;
            float before = 0.0f;
            for (int k = 0; k < kWindow; ++k) {
                before += points[k].y;
                after += points[kWindow + 1 + k].y;
            }
            float left = 0.0f;
            float middle = 0.0f;
            for (int c = kWindow; c + kWindow + 1 < kProfilePoints; ++c) {
                const float right = after - before;
                if ((left > 100.0f && right < -100.0f) || (left < -100.0f && right > 100.0f)) {
                    j.positions.append(c - 1);
                    break;
                }
                left = middle;
                middle = right;
                after += points[c + kWindow + 1].y - points[c + 1].y;
                before += points[c].y - points[c - kWindow].y;
            }
        },
        [](ProfileJob& j) { return digestValues(j.positions); });
}

/// The steps of the refined integral without a spline: positions and areas are running sums. The number of rounds is that
/// of these points.
void sumAreas(ProfileJob& j) {
    constexpr int kRounds = 4;
    float step = 0.01f;
    float sum = 0.0f;
    for (int round = 0; round < kRounds; ++round, step *= 0.5f) {
        sum = 0.0f;
        for (float x = -40.0f; x < 39.9375f;) {
            const float next = x + step;
            sum += (x + next) * std::abs(next - x) * 0.5f;
            x = next;
        }
    }
    j.values = {static_cast<double>(sum)};
}

[[maybe_unused]] const bool isRegistered = [] {
    addLookUps();
    addCutPoints();
    addProfile(
        "refined integral", "kx",
        [](ProfileJob& j) { j.values = {static_cast<double>(j.profile.integral(0, kProfilePoints - 1, false))}; },
        digestNearly, 10);
    addProfile(
        "area under the spline", "kx",
        [](ProfileJob& j) {
            j.values = {KxInspect::splineArea(KxInspect::fromKxProfile(j.profile)).value_or(std::nan(""))};
        },
        digestNearly, 10);
    addProfile("refined integral", "limit_running_sums", sumAreas, nothing<ProfileJob>, 10);
    addProfile(
        "Akima spline and 3840 samples", "kx",
        [](ProfileJob& j) {
            KxMath::KxInterpolant spline(j.profile, KxMath::Akima);
            spline.generatePointCloud(j.out, 80.0f / 3840, -40, 39.9f);
        },
        [](ProfileJob& j) { return digestWithin(heightsOf(j.out.points), 1e-4); });
    return true;
}();

} // namespace

} // namespace kxbench
