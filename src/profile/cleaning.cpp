// Removal of noisy windows, of straight parts, and of what lies beyond a line.
#include "KxMath/KxProfile.h"

#include "geometry/squareOfDistance.h"
#include "lists/checked.h"
#include "lists/filtering.h"
#include "profile/correlation.h"
#include "rounding/largestSquare.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

namespace {

/// How many of the `window` points from `begin` on differ in y from their successor by more than `threshold`. The last
/// one is compared with the point behind the window.
int countJumps(const KxPointXY* begin, qsizetype window, float threshold) {
    int jumps = 0;
    for (qsizetype k = 0; k < window; ++k) {
        if (std::abs(begin[k].y - begin[k + 1].y) > threshold) { // NaN: false
            ++jumps;
        }
    }
    return jumps;
}

/// Positions from `begin` up to, not including, `end`: points without a gap between them.
struct Part {
    qsizetype begin;
    qsizetype end;
};

/// Cuts `points` where neighbours are more than `maxGap` apart. The last point belongs to no part, and points behind
/// the last part are dropped.
QList<Part> cutAtGaps(const QList<KxPointXY>& points, int maxParts, float maxGap) {
    // Below 0 every distance is too large, but for NaN.
    const float maxSquare = maxGap < 0.0f ? -1.0f : detail::largestSquare(maxGap);
    QList<Part> parts;
    qsizetype begin = 0;
    const qsizetype last = points.size() - 1;
    const KxPointXY* const data = points.constData();
    for (qsizetype i = 0; i < last; ++i) {
        const float square = detail::squareOfDistance(data[i + 1].x - data[i].x, data[i + 1].y - data[i].y);
        if (square > maxSquare) { // NaN: false
            parts.append({begin, i + 1});
            begin = i + 1;
            if (parts.size() >= maxParts) {
                return parts;
            }
        }
    }
    parts.append({begin, std::max(begin, last)});
    return parts;
}

} // namespace

void KxProfile::removeNoise(int window, int maxJumps, float threshold, float) {
    if (window <= 0) {
        return;
    }
    const qsizetype n = points.size();
    KxPointXY* const data = detail::writable(points);
    qsizetype kept = 0;
    qsizetype keptBegin = 0; // of the points that stay and have not been moved yet
    const auto moveUp = [&](qsizetype end) {
        if (kept < keptBegin) {
            std::copy(data + keptBegin, data + end, data + kept);
        }
        kept += end - keptBegin;
    };
    qsizetype i = 0;
    // Deliberately i + window < n: a window that is incomplete or ends at the last point is dropped.
    for (; i + window < n; i += window) {
        if (countJumps(data + i, window, threshold) > maxJumps) {
            moveUp(i);
            keptBegin = i + window;
        }
    }
    moveUp(i);
    points.resize(kept);
}

void KxProfile::removeHighLevel(KxLine line) {
    detail::keepIf(points, [&](const KxPointXY& p) { return p.y < p.x * line.k + line.b; }); // NaN is removed
}

void KxProfile::removeLowLevel(KxLine line) {
    detail::keepIf(points, [&](const KxPointXY& p) { return p.y > p.x * line.k + line.b; }); // NaN is removed
}

void KxProfile::removeLineParts(int maxParts, float maxCorrelation, float maxGap, int minPoints) {
    if (maxParts <= 1) {
        return;
    }
    sort(KxSortAscending, KxSortAscending);
    QList<KxPointXY> kept;
    for (const Part& part : cutAtGaps(points, maxParts, maxGap)) {
        const auto begin = points.constBegin() + part.begin;
        const auto end = points.constBegin() + part.end;
        if (end - begin > minPoints && std::abs(detail::correlation(begin, end)) < maxCorrelation) { // NaN: false
            kept.append(begin, end);
        }
    }
    points = kept;
}

} // namespace KxMath
