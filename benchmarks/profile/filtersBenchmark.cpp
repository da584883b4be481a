// Smoothing and cleaning, compared with the definitions as plain loops.
#include "profile/jobs.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kxbench {

namespace {

// Not known at compile time, as in the library.
volatile int movingWindow = 20;
volatile int slopeWindow = 10;
volatile int noiseWindow = 10;

void addMovingAverage() {
    addProfile(
        "moving average", "kx", [](ProfileJob& j) { j.profile.wndFilter(movingWindow); }, digestProfile);
    addProfile(
        "moving average", "peer_plain_loop",
        [](ProfileJob& j) {
            const int window = movingWindow;
            KxPointXY* const data = j.profile.points.data();
            for (int i = 0; i < kProfilePoints - window; ++i) {
                float sum = 0;
                for (int k = 0; k < window; ++k) {
                    sum += data[i + k].y;
                }
                data[i + window * 2 / 5].y = sum / static_cast<float>(window);
            }
        },
        digestProfile);
    // Each mean is an input of later windows: a loop-carried dependency through additions and division.
    addOnNumbers(
        "moving average", "limit_feedback_chain",
        [](ProfileJob& j) {
            const int window = movingWindow;
            const int offset = window * 2 / 5;
            float mean = 0;
            for (int i = 0; i < kProfilePoints - window; ++i) {
                const float* const ys = j.ys.data() + i;
                float sum = mean;
                for (int k = offset; k < window; ++k) {
                    sum += ys[k];
                }
                mean = sum / static_cast<float>(window);
            }
            j.values = {static_cast<double>(mean)};
        },
        nothing<ProfileJob>);
}

void addMedianPosition() {
    addProfile(
        "median position", "kx", [](ProfileJob& j) { j.profile.medFilt(j.out, 9, 0); }, digestOut);
    addProfile(
        "median position", "limit_shifted_copy",
        [](ProfileJob& j) {
            const KxPointXY* const source = j.profile.points.constData();
            KxPointXY* const target = j.out.points.data();
            for (int i = 0; i < kProfilePoints - 9; ++i) {
                target[i].y = source[i + 4].y;
            }
        },
        digestOut);
}

void addSlope() {
    addProfile(
        "windowed slope", "kx", [](ProfileJob& j) { j.profile.diffFilt(j.out, slopeWindow); }, digestOut);
    addProfile(
        "windowed slope", "peer_plain_loop",
        [](ProfileJob& j) {
            const int window = slopeWindow;
            const int half = window / 2;
            KxPointXY* const data = j.out.points.data();
            for (int i = 0; i <= kProfilePoints - window; ++i) {
                std::array<KxPointXY, 2> sums{KxPointXY(0, 0), KxPointXY(0, 0)};
                for (int k = 0; k < window; ++k) {
                    sums[k >= half].x += data[i + k].x;
                    sums[k >= half].y += data[i + k].y;
                }
                data[i].y = (sums[1].y - sums[0].y) / (sums[1].x - sums[0].x);
            }
        },
        digestOut);
}

/// In place: windows that stay move up.
void removeNoisyWindows(ProfileJob& j, float threshold) {
    const int window = noiseWindow;
    std::vector<KxPointXY>& points = j.flat;
    std::size_t kept = 0;
    const std::size_t length = static_cast<std::size_t>(window);
    for (std::size_t i = 0; i + length < points.size(); i += length) {
        int jumps = 0;
        for (std::size_t k = i; k < i + length; ++k) {
            jumps += std::abs(points[k].y - points[k + 1].y) > threshold ? 1 : 0;
        }
        if (jumps <= 3) {
            std::copy_n(points.data() + i, length, points.data() + kept);
            kept += length;
        }
    }
    points.resize(kept);
}

void addNoise(int count) {
    addBesideFlat(
        "noise removal", count, [](ProfileJob& j) { j.profile.removeNoise(noiseWindow, 3, 0.02f, 0); },
        "peer_plain_loop", [](ProfileJob& j) { removeNoisyWindows(j, 0.02f); });
    addBesideFlat(
        "noise removal, quiet", count, [](ProfileJob& j) { j.profile.removeNoise(noiseWindow, 3, 0.2f, 0); },
        "peer_plain_loop", [](ProfileJob& j) { removeNoisyWindows(j, 0.2f); });
}

double correlation(const Points& points, int begin, int end) {
    std::array<double, 5> sums{};
    for (int i = begin; i < end; ++i) {
        const double x = static_cast<double>(points[i].x);
        const double y = static_cast<double>(points[i].y);
        sums[0] += x;
        sums[1] += y;
        sums[2] += x * x;
        sums[3] += y * y;
        sums[4] += x * y;
    }
    const double n = end - begin;
    return (sums[4] / n - sums[0] / n * (sums[1] / n)) / std::sqrt(sums[3] / n - sums[1] / n * (sums[1] / n)) /
           std::sqrt(sums[2] / n - sums[0] / n * (sums[0] / n));
}

void addLineParts() {
    addProfile(
        "line parts", "kx", [](ProfileJob& j) { j.profile.removeLineParts(100, 0.9f, 0.5f, 5); }, digestProfile);
    addProfile(
        "line parts", "peer_plain_loop",
        [](ProfileJob& j) {
            const Points& points = j.profile.points;
            Points kept;
            int begin = 0;
            for (int i = 0; i < kProfilePoints - 1; ++i) {
                const float dx = points[i + 1].x - points[i].x;
                const float dy = points[i + 1].y - points[i].y;
                const bool isLast = i == kProfilePoints - 2;
                if (std::sqrt(dx * dx + dy * dy) > 0.5f || isLast) {
                    const int end = i + 1;
                    if (end - begin > 5 && std::abs(correlation(points, begin, end)) < 0.9) {
                        kept.append(points.cbegin() + begin, points.cbegin() + end);
                    }
                    begin = end;
                }
            }
            j.profile.points = kept;
        },
        digestProfile);
}

void addLevelCut() {
    addBesideFlat(
        "level cut", kProfilePoints, [](ProfileJob& j) { j.profile.removeHighLevel(KxMath::KxLine(0.01f, 30.0f)); },
        "peer_std_erase_if",
        [](ProfileJob& j) { std::erase_if(j.flat, [](const KxPointXY& p) { return !(p.y < p.x * 0.01f + 30.0f); }); });
    addProfile(
        "level cut", "peer_plain_loop",
        [](ProfileJob& j) {
            j.profile.points.removeIf([](const KxPointXY& p) { return !(p.y < p.x * 0.01f + 30.0f); });
        },
        digestProfile);
}

/// Spikes as the header defines them, with a list of second differences and one of marks.
void removeSpikes(ProfileJob& j) {
    const Points& points = j.out.points;
    const int m = kProfilePoints - 1;
    std::vector<float> bend(static_cast<std::size_t>(m));
    for (int k = 0; k + 1 < m; ++k) {
        const float next = k + 2 < m ? points[k + 2].y - points[k + 1].y : 0.0f;
        bend[static_cast<std::size_t>(k)] = next - (points[k + 1].y - points[k].y);
    }
    std::vector<bool> isMarked(static_cast<std::size_t>(kProfilePoints));
    for (int i = 0; i < m;) {
        int end = i + 1;
        if (std::abs(bend[static_cast<std::size_t>(i)]) > 1.0f) {
            float width = 0;
            for (; end < m && std::abs(bend[static_cast<std::size_t>(end)]) < 1.0f; ++end) {
                const float dx = points[end].x - points[end - 1].x;
                if (dx >= 1.0f) {
                    break;
                }
                width += dx;
            }
            for (int k = i; width <= 1.0f && k <= std::min(end, m - 1); ++k) {
                isMarked[static_cast<std::size_t>(k)] = true;
            }
        }
        i = end;
    }
    std::size_t at = 0;
    j.out.points.removeIf([&](const KxPointXY&) { return isMarked[at++]; });
}

[[maybe_unused]] const bool isRegistered = [] {
    addProfile(
        "FIR of 20 taps", "kx", [](ProfileJob& j) { j.profile.kihFilter20(j.out, 2.0f); },
        [](ProfileJob& j) { return digestWithin(heightsOf(j.out.points.sliced(20)), 1e-5); });
    addMovingAverage();
    addMedianPosition();
    addSlope();
    addNoise(kProfilePoints);
    addNoise(10 * kProfilePoints);
    addLineParts();
    addLevelCut();
    addProfile(
        "splash filter", "kx", [](ProfileJob& j) { j.profile.splashFilter(j.out, 1.0f, 1.0f); }, digestOut);
    addProfile("splash filter", "peer_plain_loop", removeSpikes, digestOut);
    return true;
}();

} // namespace

} // namespace kxbench
