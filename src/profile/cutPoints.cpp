// Steps of the level of a profile.
#include "KxMath/KxProfile.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

namespace {

/// The sum of the `window` heights behind point c minus that of those before it; the point itself is in neither.
float windowedDifference(const KxPointXY* points, qsizetype c, qsizetype window) {
    float after = 0.0f;
    float before = 0.0f;
    for (qsizetype k = 1; k <= window; ++k) {
        after += points[c + k].y;
    }
    for (qsizetype k = c - window; k < c; ++k) {
        before += points[k].y;
    }
    return after - before;
}

/// The first position whose neighbours see differences beyond the threshold with opposite signs, -1 when there is none.
qsizetype findCut(const KxPointXY* points, qsizetype n, int window, float threshold) {
    const qsizetype w = window;
    if (w <= 0 || n < 2 * w) {
        return -1;
    }
    // Differences exist for centres from w while below n - w - 1; three of them are held at a time.
    const qsizetype end = n - w - 2;
    if (w + 1 >= end) {
        return -1;
    }
    float left = windowedDifference(points, w, w);
    float middle = windowedDifference(points, w + 1, w);
    for (qsizetype c = w + 1; c < end; ++c) {
        const float right = windowedDifference(points, c + 1, w);
        // Deliberately the neighbours of c, not c itself.
        if ((left > threshold && right < -threshold) || (left < -threshold && right > threshold)) { // NaN: false
            return c;
        }
        left = middle;
        middle = right;
    }
    return -1;
}

bool isOrderedByX(const QList<KxPointXY>& points) {
    const auto isNotOrdered = [](const KxPointXY& a, const KxPointXY& b) { return a.x > b.x; }; // NaN never moves
    return std::adjacent_find(points.cbegin(), points.cend(), isNotOrdered) == points.cend();
}

} // namespace

int KxProfile::calcCutPoint(int window, float threshold) {
    return static_cast<int>(findCut(points.constData(), points.size(), window, threshold));
}

int KxProfile::detectCutPoints(KxProfile& cutPoints, QList<int>& indices, int window, float threshold) {
    if (!cutPoints.isEmpty()) {
        cutPoints.clear(); // a profile that is its own result ends empty
    }
    // A profile that is in order already, as it should be, is searched where it stands.
    const QList<KxPointXY>& source = points;
    const bool isOrdered = isOrderedByX(source);
    KxProfile work;
    qsizetype offset = 0;
    for (qsizetype begin = 0; begin < source.size();) {
        const KxPointXY* data = source.constData() + begin;
        const qsizetype n = source.size() - begin;
        if (!isOrdered) {
            work.points = source.mid(begin);
            work.sort(KxSortAscending, KxSortAscending);
            data = work.points.constData();
        }
        const qsizetype cut = findCut(data, n, window, threshold);
        if (cut < 0) {
            break;
        }
        cutPoints.points.append(data[cut]);
        offset += cut;
        indices.append(static_cast<int>(offset));
        // Deliberately one behind the running sum, which is what makes later entries lag.
        begin = offset + 1;
    }
    return cutPoints.size();
}

} // namespace KxMath
