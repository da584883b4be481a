// Smoothing filters over windows of points.
#include "KxMath/KxProfile.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace KxMath {

namespace {

constexpr qsizetype kTaps = 20;
constexpr std::array<float, kTaps> kTapWeights = {0.0f,    0.0013f, 0.0047f, 0.0117f, 0.0238f, 0.0407f, 0.0612f,
                                                  0.0824f, 0.1011f, 0.1139f, 0.1185f, 0.1139f, 0.1011f, 0.0824f,
                                                  0.0612f, 0.0407f, 0.0238f, 0.0117f, 0.0047f, 0.0013f};

/// The smoothed height at point i, which needs kTaps - 1 points before it.
float smoothedY(const QList<KxPointXY>& points, qsizetype i) {
    float sum = 0.0f;
    for (qsizetype k = 0; k < kTaps; ++k) {
        // Deliberately with the first weight of 0 too: a NaN shows at its own point.
        sum += kTapWeights[static_cast<size_t>(k)] * points[i - k].y;
    }
    return sum;
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
    KxPointXY* const target = out.points.data();
    for (qsizetype i = 0; i < n; ++i) {
        float y = source[i].y;
        if (i >= kTaps) {
            const bool isBehindGap = source[i].x - source[i - 1].x > maxStep; // NaN: false
            if (!isBehindGap) {
                y = smoothedY(source, i);
            }
        }
        target[i] = KxPointXY(source[i].x, y);
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
    KxPointXY* const data = out.points.data();
    for (qsizetype i = 0; i < n - w + 1; ++i) {
        float upperY = 0.0f;
        float upperX = 0.0f;
        for (qsizetype k = i + half; k < i + w; ++k) {
            upperY += data[k].y;
            upperX += data[k].x;
        }
        float lowerY = 0.0f;
        float lowerX = 0.0f;
        for (qsizetype k = i; k < i + half; ++k) {
            lowerY += data[k].y;
            lowerX += data[k].x;
        }
        data[i].y = (upperY - lowerY) / (upperX - lowerX);
    }
}

} // namespace KxMath
