// Removal of noisy windows, of straight parts, and of what lies beyond a line.
#include "KxMath/KxProfile.h"

#include "geometry/squareOfDistance.h"
#include "lists/checked.h"
#include "profile/correlation.h"
#include "rounding/largestSquare.h"
#include "simd/float4.h"
#include "simd/instructionSets.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

namespace {

/// How many of the `window` points from `begin` on differ in y from their successor by more than `threshold`. The last
/// one is compared with the point behind the window.
int countJumps(const KxPointXY* begin, qsizetype window, float threshold) {
    int jumps = 0;
    for (qsizetype k = 0; k < window; ++k) {
        jumps += std::abs(begin[k].y - begin[k + 1].y) > threshold ? 1 : 0; // NaN: 0
    }
    return jumps;
}

/// Removes the points that are not on the wanted side of the line: below it, or above it.
template <bool kBelow>
void keepBeside(QList<KxPointXY>& points, KxLine line) {
    const auto isKept = [=](const KxPointXY& p) {
        const float y = p.x * line.k + line.b;
        return kBelow ? p.y < y : p.y > y; // NaN is removed
    };
    const qsizetype n = points.size();
    const KxPointXY* const source = points.constData();
    const qsizetype first = std::find_if_not(source, source + n, isKept) - source;
    if (first == n) {
        return; // not touched, and so not detached from its copies
    }
    KxPointXY* const all = detail::writable(points);
    qsizetype count = 0; // of the points that stay
    detail::runOn(detail::widestInstructionSet(), [&]<std::size_t kBytes>(detail::VectorBytes<kBytes>) {
        using Floats = typename detail::Vectors<kBytes>::Floats;
        constexpr qsizetype kBlock = detail::Vectors<kBytes>::kFloatLanes;
        KxPointXY* const data = all;
        qsizetype kept = first;
        const auto keepOneByOne = [&](qsizetype begin, qsizetype end) {
            for (qsizetype k = begin; k < end; ++k) {
                const bool stays = isKept(data[k]);
                data[kept] = data[k]; // overwritten by the next one when it goes: no branch to mispredict
                kept += stays;
            }
        };
        qsizetype i = first;
        for (; i + kBlock <= n; i += kBlock) { // the points of a block usually stay or go together
            const Floats low = detail::loadVector<Floats>(&data[i].x);
            const Floats high = detail::loadVector<Floats>(&data[i + kBlock / 2].x);
            const Floats ys = detail::loadFirstsOfPairs<Floats>(&data[i].x) * line.k + line.b;
            const Floats heights = detail::loadSecondsOfPairs<Floats>(&data[i].x);
            const auto stay = kBelow ? heights < ys : heights > ys;
            if (detail::allOf(stay)) {
                detail::storeVector(&data[kept].x, low);
                detail::storeVector(&data[kept + kBlock / 2].x, high);
                kept += kBlock;
            } else if (!detail::allOf(~stay)) {
                keepOneByOne(i, i + kBlock);
            }
        }
        keepOneByOne(i, n);
        count = kept;
    });
    points.resize(count);
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
        if (kept < keptBegin && keptBegin < end) { // often nothing between two noisy windows
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
    keepBeside<true>(points, line);
}

void KxProfile::removeLowLevel(KxLine line) {
    keepBeside<false>(points, line);
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
