// Profiles made from other data: level runs, differences, and the view of a cloud from above.
#include "KxMath/KxProfile.h"

#include "lists/filtering.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

using detail::kNaN;

namespace {

/// Collects a level run of points in one direction. The reference height follows the last point taken.
class LevelRun {
public:
    LevelRun(float height, float maxStep, int maxMisses) : height_(height), maxStep_(maxStep), maxMisses_(maxMisses) {}

    bool hasEnded() const { return misses_ >= maxMisses_; }

    void test(const KxPointXY& p, QList<KxPointXY>& out) {
        if (std::abs(p.y - height_) <= maxStep_) { // NaN: a miss
            out.append(p);
            height_ = p.y;
            misses_ = 0;
        } else {
            ++misses_;
        }
    }

private:
    float height_;
    const float maxStep_;
    const int maxMisses_;
    int misses_ = 0;
};

/// Appends the points around `start` to `out`: `start` and those left of it, and those right of it.
void collectAround(const QList<KxPointXY>& list, qsizetype start, LevelRun left, LevelRun right,
                   QList<KxPointXY>& out) {
    const qsizetype n = list.size();
    for (qsizetype round = 0;; ++round) {
        const qsizetype l = start - round;
        const qsizetype r = start + round;
        if (!left.hasEnded() && l >= 0) {
            left.test(list[l], out);
        }
        if (round > 0 && !right.hasEnded() && r < n) { // the start belongs to the left side
            right.test(list[r], out);
        }
        const bool isBeyondEnds = l - 1 < 0 && r + 1 >= n;
        if (isBeyondEnds || (left.hasEnded() && right.hasEnded())) {
            return;
        }
    }
}

} // namespace

bool KxProfile::calcLineSegment(float x, float maxStep, int maxMisses, KxProfile& out, float minY, float maxY,
                                float minLength, float maxLength) {
    out.clear();
    constexpr int kNotSet = -100;
    int start = kNotSet;
    const float height = calcY(x, kNaN, &start);
    if (height < minY || height > maxY) { // NaN: no bound
        return false;
    }
    if (start == kNotSet) {
        if (size() < 2) {
            return false;
        }
        start = getIndexX(x); // the point that calcY() answered with
    }
    collectAround(points, start, LevelRun(height, maxStep, maxMisses), LevelRun(height, maxStep, maxMisses),
                  out.points);
    if (out.isEmpty()) {
        return false;
    }
    out.sort(KxSortAscending, KxSortAscending);
    const float length = std::abs(out.points.constLast().x - out.points.constFirst().x);
    return !(length < minLength) && !(length > maxLength); // NaN: no bound
}

void KxProfile::calcDistance(KxProfile& other, KxProfile& out, int window, int /*reserved*/, bool cutTail) {
    const qsizetype n = std::min(points.size(), other.points.size());
    if (n < 1) {
        return;
    }
    for (qsizetype i = 0; i < n; ++i) {
        const float difference = std::as_const(points)[i].y - std::as_const(other.points)[i].y;
        out.points[i].y = difference;
    }
    const qsizetype blocks = window > 0 ? n / window : 0;
    for (qsizetype b = 0; b < blocks; ++b) {
        KxPointXY* const block = out.points.data() + b * window;
        float sum = 0.0f;
        for (qsizetype j = 0; j < window; ++j) {
            sum += block[j].y;
        }
        for (qsizetype j = 0; j < window; ++j) {
            block[j].y = std::abs(sum); // deliberately not divided: the sum of the block, no mean
        }
    }
    if (cutTail) {
        // Deliberately every second point of the tail, the first one included.
        qsizetype position = 0;
        detail::keepIf(out.points, [&](const KxPointXY&) {
            const qsizetype behind = position++ - n;
            return behind < 0 || behind % 2 != 0;
        });
    }
}

int KxProfile::makeCloudTopView(KxPointCloud<KxPointXYZ> cloud, float level) {
    points.clear(); // deliberately not clear(): the cached range stays
    for (const KxPointXYZ& p : std::as_const(cloud.points)) {
        if (std::isnan(level) || level <= p.y) { // NaN y: false
            points.append(KxPointXY(p.x, p.z));
        }
    }
    return size();
}

} // namespace KxMath
