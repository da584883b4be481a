// The level run of points about a position.
#include "KxMath/KxProfile.h"

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
        start = getIndexX(x); // the point whose y calcY() returned
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

} // namespace KxMath
