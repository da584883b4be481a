// Smoothing filters over windows of points.
#include "KxMath/KxProfile.h"

#include "lists/checked.h"
#include "profile/completion.h"
#include "profile/coordinates.h"
#include "profile/fir.h"
#include "profile/order.h"
#include "simd/windowSums.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace KxMath {

namespace {

/// `sum` and the heights from `begin` up to, not including, `end`.
float orderedSum(const KxPointXY* begin, const KxPointXY* end, float sum) {
    for (; begin != end; ++begin) {
        sum += begin->y;
    }
    return sum;
}

/// A buffer for a value of each of `count` points or windows, with the padding of windowSums().
std::vector<float> paddedBuffer(qsizetype count) {
    return std::vector<float>(static_cast<size_t>(count + detail::kWindowPadding));
}

/// Sets `n` - `window` targets to the y at the middle of their windows, which is the median by x where x rises: checked
/// block by block, just ahead of the copy. @return false when x does not rise; some targets may have been set then
bool shiftYs(const KxPointXY* source, qsizetype n, qsizetype window, KxPointXY* target) {
    constexpr qsizetype kBlock = 512;
    for (qsizetype begin = 0; begin < n; begin += kBlock) {
        const qsizetype end = std::min(n, begin + kBlock);
        if (!detail::isRising(source + begin, std::min(n, end + 1) - begin)) {
            return false;
        }
        for (qsizetype i = begin; i < std::min(end, n - window); ++i) {
            target[i].y = source[i + window / 2].y;
        }
    }
    return true;
}

/// The y at the middle position of `window` points from `begin` on after sorting them by x. A point with NaN x keeps
/// its position, so only the run about the middle that holds no NaN matters.
float middleYByX(const KxPointXY* begin, qsizetype window, std::vector<int>& order) {
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
        order.push_back(static_cast<int>(i));
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
    if (n < detail::kFirTaps) {
        return;
    }
    detail::complete(out.points, points, n);
    const QList<KxPointXY> shared = points; // so that `out` may be this profile
    const KxPointXY* const source = shared.constData();
    KxPointXY* const target = detail::writable(out.points);
    std::copy(source, source + detail::kFirTaps, target);
    detail::smoothHeights(source, n, maxStep, target);
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
    KxPointXY* const data = detail::writable(points);
    const float count = static_cast<float>(window);
    if (offset == 0) {
        for (qsizetype i = 0; i < n - w; ++i) {
            data[i].y = orderedSum(data + i, data + i + w, 0.0f) / count;
        }
        return;
    }
    // Each mean is written into the next window. The sum of the points before it does not depend on it, so that the
    // processor can add them up while the mean is still being calculated; only the points behind it have to wait.
    float mean = data[offset - 1].y;
    for (qsizetype i = 0; i < n - w; ++i) {
        const float sum = orderedSum(data + i, data + i + offset - 1, 0.0f) + mean;
        mean = orderedSum(data + i + offset, data + i + w, sum) / count;
        data[i + offset].y = mean;
    }
}

void KxProfile::medFilt(KxProfile& out, int window, int) {
    const qsizetype n = points.size();
    const qsizetype w = window;
    if (w <= 0 || w > n) {
        return;
    }
    detail::complete(out.points, points, n - w);
    // `out` may be this profile: window i is read before point i is written, and later windows start behind it.
    KxPointXY* const target = detail::writable(out.points);
    const KxPointXY* const source = points.constData();
    const bool isInPlace = target == source; // a fallback after shiftYs() would read what it has written
    if ((!isInPlace || detail::isRising(source, n)) && shiftYs(source, n, w, target)) {
        return;
    }
    std::vector<int> order;
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
    detail::complete(out.points, points, n);
    const qsizetype half = w / 2;
    const qsizetype windows = n - w + 1;
    // All windows can be summed first: a target is the first point of its window, and so in no later one.
    std::vector<float> values = paddedBuffer(n);
    const auto sums = [&](qsizetype first, qsizetype length) {
        std::vector<float> sums = paddedBuffer(windows);
        detail::windowSums(values.data() + first, windows, length, sums.data());
        return sums;
    };
    detail::copyXs(out.points.constData(), n, values.data());
    const std::vector<float> lowerX = sums(0, half);
    const std::vector<float> upperX = sums(half, w - half);
    detail::copyYs(out.points.constData(), n, values.data());
    const std::vector<float> lowerY = sums(0, half);
    const std::vector<float> upperY = sums(half, w - half);
    KxPointXY* target = detail::writable(out.points);
    for (size_t i = 0; i < static_cast<size_t>(windows); ++i, ++target) {
        target->y = (upperY[i] - lowerY[i]) / (upperX[i] - lowerX[i]);
    }
}

} // namespace KxMath
