// Smoothing filters over windows of points.
#include "KxMath/KxProfile.h"

#include "numeric/float4.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace KxMath {

namespace {

constexpr qsizetype kTaps = 20;
constexpr std::array<float, kTaps> kTapWeights = {0.0f,    0.0013f, 0.0047f, 0.0117f, 0.0238f, 0.0407f, 0.0612f,
                                                  0.0824f, 0.1011f, 0.1139f, 0.1185f, 0.1139f, 0.1011f, 0.0824f,
                                                  0.0612f, 0.0407f, 0.0238f, 0.0117f, 0.0047f, 0.0013f};

/// Outputs that are summed side by side: each sum keeps its order, and none waits for another one.
constexpr qsizetype kGroups = 4;
constexpr qsizetype kSideBySide = 4 * kGroups;

using Sums = std::array<detail::Float4, kGroups>;

float sumAt(const Sums& sums, qsizetype i) {
    return sums[static_cast<size_t>(i / 4)][i % 4];
}

/// The smoothed heights of kSideBySide points from `y` on, with kTaps - 1 heights before it.
Sums smoothedHeights(const float* y) {
    Sums sums{};
    for (qsizetype k = 0; k < kTaps; ++k) {
        // Deliberately with the first weight of 0 too: a NaN shows at its own point.
        const float weight = kTapWeights[static_cast<size_t>(k)];
        for (qsizetype group = 0; group < kGroups; ++group) {
            sums[static_cast<size_t>(group)] += weight * detail::loadFloat4(y - k + 4 * group);
        }
    }
    return sums;
}

/// Sums of `count` values: of those from `values` on, from the next one on, and so on.
Sums windowSums(const float* values, qsizetype count) {
    Sums sums{};
    for (qsizetype k = 0; k < count; ++k) {
        for (qsizetype group = 0; group < kGroups; ++group) {
            sums[static_cast<size_t>(group)] += detail::loadFloat4(values + k + 4 * group);
        }
    }
    return sums;
}

/// One coordinate of all points, with room behind it that whole groups of outputs may read.
std::vector<float> coordinatesOf(const QList<KxPointXY>& points, float KxPointXY::*coordinate) {
    std::vector<float> values(static_cast<size_t>(points.size() + kSideBySide));
    std::transform(points.cbegin(), points.cend(), values.begin(), [&](const KxPointXY& p) { return p.*coordinate; });
    return values;
}

bool isOrderedByX(const QList<KxPointXY>& points) {
    const auto isNotOrdered = [](const KxPointXY& a, const KxPointXY& b) { return !(a.x <= b.x); }; // NaN: true
    return std::adjacent_find(points.cbegin(), points.cend(), isNotOrdered) == points.cend() &&
           (points.isEmpty() || !std::isnan(points[0].x));
}

/// The y at the middle position of `window` points from `begin` on after sorting them by x. A point with NaN x keeps
/// its position, so only the run about the middle that holds no NaN matters.
float middleYByX(const KxPointXY* begin, qsizetype window, QList<int>& order) {
    const qsizetype middle = window / 2;
    if (std::isnan(begin[middle].x)) {
        return begin[middle].y;
    }
    qsizetype runBegin = middle;
    while (runBegin > 0 && !std::isnan(begin[runBegin - 1].x)) {
        --runBegin;
    }
    qsizetype runEnd = middle + 1;
    while (runEnd < window && !std::isnan(begin[runEnd].x)) {
        ++runEnd;
    }
    order.clear();
    for (qsizetype i = runBegin; i < runEnd; ++i) {
        order.append(static_cast<int>(i));
    }
    const auto nth = order.begin() + (middle - runBegin);
    std::nth_element(order.begin(), nth, order.end(), [&](int a, int b) {
        return begin[a].x < begin[b].x || (begin[a].x == begin[b].x && a < b); // equal x: list order
    });
    return begin[*nth].y;
}

} // namespace

void KxProfile::kihFilter20(KxProfile& out, float maxStep) {
    const qsizetype n = points.size();
    if (n < kTaps) {
        return;
    }
    const QList<KxPointXY> source = points; // shared, so that `out` may be this profile
    const std::vector<float> heights = coordinatesOf(source, &KxPointXY::y);
    KxPointXY* const target = out.points.data();
    std::copy(source.cbegin(), source.cbegin() + kTaps, target);
    for (qsizetype start = kTaps; start < n; start += kSideBySide) {
        const Sums smoothed = smoothedHeights(heights.data() + start);
        for (qsizetype i = start; i < std::min(n, start + kSideBySide); ++i) {
            const bool isBehindGap = source[i].x - source[i - 1].x > maxStep; // NaN: false
            target[i] = KxPointXY(source[i].x, isBehindGap ? source[i].y : sumAt(smoothed, i - start));
        }
    }
}

void KxProfile::kihFilter20(float maxStep) {
    kihFilter20(*this, maxStep);
}

void KxProfile::wndFilter(int window) {
    const qsizetype n = points.size();
    const qsizetype w = window;
    if (w < 0 || n - w < 1) {
        return;
    }
    // Deliberately 2.5 and not 2: the mean lands before the middle of its window.
    const qsizetype offset = static_cast<qsizetype>(std::floor(static_cast<float>(window) / 2.5f));
    KxPointXY* const data = points.data();
    for (qsizetype i = 0; i < n - w; ++i) {
        float sum = 0.0f;
        for (qsizetype k = i; k < i + w; ++k) {
            sum += data[k].y;
        }
        data[i + offset].y = sum / static_cast<float>(window);
    }
}

void KxProfile::medFilt(KxProfile& out, int window, int) {
    const qsizetype n = points.size();
    const qsizetype w = window;
    if (w <= 0 || w > n) {
        return;
    }
    // No feedback where `out` is this profile: window i is read before point i is written, later ones start behind it.
    KxPointXY* const target = out.points.data();
    const KxPointXY* const source = points.constData();
    if (isOrderedByX(points)) {
        for (qsizetype i = 0; i < n - w; ++i) {
            target[i].y = source[i + w / 2].y;
        }
        return;
    }
    QList<int> order;
    for (qsizetype i = 0; i < n - w; ++i) {
        target[i].y = middleYByX(source + i, w, order);
    }
}

void KxProfile::diffFilt(KxProfile& out, int window) {
    const qsizetype n = points.size();
    const qsizetype w = window;
    if (w <= 0 || w + 2 > n) {
        return;
    }
    const qsizetype half = w / 2;
    // What is written is behind all windows that are still to come.
    const std::vector<float> xs = coordinatesOf(out.points, &KxPointXY::x);
    const std::vector<float> ys = coordinatesOf(out.points, &KxPointXY::y);
    KxPointXY* const data = out.points.data();
    const qsizetype windows = n - w + 1;
    for (qsizetype start = 0; start < windows; start += kSideBySide) {
        const Sums upperY = windowSums(ys.data() + start + half, w - half);
        const Sums upperX = windowSums(xs.data() + start + half, w - half);
        const Sums lowerY = windowSums(ys.data() + start, half);
        const Sums lowerX = windowSums(xs.data() + start, half);
        for (qsizetype i = start; i < std::min(windows, start + kSideBySide); ++i) {
            const qsizetype k = i - start;
            data[i].y = (sumAt(upperY, k) - sumAt(lowerY, k)) / (sumAt(upperX, k) - sumAt(lowerX, k));
        }
    }
}

} // namespace KxMath
