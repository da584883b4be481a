// Removal of narrow spikes, in Cartesian and in polar form, and the window filter about a circle.
#include "KxMath/KxProfile.h"

#include "cloud/compaction.h"
#include "numeric/angles.h"
#include "numeric/bounds.h"

#include <cmath>

namespace KxMath {

namespace {

/// Second differences of y, one per point but the last. What lies beyond the last first difference is taken as 0.
QList<float> secondDifferences(const QList<KxPointXY>& points) {
    const qsizetype m = points.size() - 1;
    QList<float> first(m, 0.0f);
    for (qsizetype k = 0; k + 1 < m; ++k) {
        first[k] = points[k + 1].y - points[k].y;
    }
    QList<float> second(m, 0.0f);
    for (qsizetype k = 0; k + 1 < m; ++k) {
        second[k] = first.at(k + 1) - first.at(k);
    }
    return second;
}

/// Removes the spikes of `points`. @return true when points were removed
bool removeSpikes(QList<KxPointXY>& points, float threshold, float maxWidth) {
    const qsizetype m = points.size() - 1;
    if (m < 5) {
        return false;
    }
    const QList<KxPointXY>& list = points;
    const QList<float> bend = secondDifferences(list);
    QList<bool> isMarked(points.size(), false);
    for (qsizetype i = 0; i < m;) {
        if (!(std::abs(bend[i]) > threshold)) { // NaN: not a spike
            ++i;
            continue;
        }
        qsizetype j = i + 1;
        float width = 0.0f;
        while (j < m && !(std::abs(bend[j]) >= threshold)) {
            const float dx = list[j].x - list[j - 1].x;
            if (dx >= maxWidth) { // NaN: false
                break;
            }
            width += dx;
            ++j;
        }
        if (width <= maxWidth) { // NaN: false
            // Deliberately from i on, one before the point about which the curvature jumps.
            for (qsizetype k = std::min(j, m - 1); k >= i; --k) {
                isMarked[k] = true;
            }
        }
        i = j; // the index that ended the spike may begin another
    }
    qsizetype at = 0;
    return detail::keepIf(points, [&](const KxPointXY&) { return !isMarked.at(at++); }) > 0;
}

void swapCoordinates(KxProfile& profile) {
    for (KxPointXY& p : profile.points) {
        p = KxPointXY(p.y, p.x);
    }
}

/// Turns a profile into (angle, radius) about `centre`, ordered by angle.
void toAngleAndRadius(KxProfile& profile, const KxCircle& centre) {
    profile.shift(-centre.x, -centre.y, 0.0f);
    profile.toPolar();
    swapCoordinates(profile);
    profile.sort(KxSortAscending, KxSortAscending);
}

void fromAngleAndRadius(KxProfile& profile, const KxCircle& centre) {
    swapCoordinates(profile);
    profile.toEvklid();
    profile.shift(centre.x, centre.y, 0.0f);
}

/// Replaces the radii of a window that stand off its mean by the mean of the others, which is returned.
float replaceOutliers(QList<KxPointXY>& points, qsizetype begin, qsizetype window, float maxDeviation) {
    const qsizetype count = points.size();
    KxPointXY* const data = points.data();
    float sum = 0.0f;
    for (qsizetype k = 0; k < window; ++k) {
        sum += data[(begin + k) % count].y;
    }
    const float mean = sum / static_cast<float>(window);

    float goodSum = 0.0f;
    float goodCount = 0.0f;
    for (qsizetype k = 0; k < window; ++k) {
        float& radius = data[(begin + k) % count].y;
        if (std::abs(radius - mean) > maxDeviation) { // NaN: false
            radius = detail::kNaN;
        }
        if (!std::isnan(radius)) {
            goodSum += radius;
            goodCount += 1.0f;
        }
    }
    const float goodMean = goodSum / goodCount;
    for (qsizetype k = 0; k < window; ++k) {
        float& radius = data[(begin + k) % count].y;
        if (std::isnan(radius)) {
            radius = goodMean;
        }
    }
    return goodMean;
}

} // namespace

bool KxProfile::splashFilter(KxProfile& out, float threshold, float maxWidth) {
    return removeSpikes(out.points, threshold, maxWidth);
}

bool KxProfile::splashFilterPolar(KxProfile& out, float radius, float threshold, float maxWidth) {
    KxProfile work(out);
    KxCircle circle;
    circle.calcFromPointCloud(work);
    toAngleAndRadius(work, circle);
    const float maxAngle = maxWidth * 180.0f / (radius * detail::kPiF);
    const bool isChanged = removeSpikes(work.points, threshold, maxAngle);
    fromAngleAndRadius(work, circle);
    out = work;
    return isChanged;
}

void KxProfile::wndFilterPolar(KxProfile& out, float maxDeviation, int window, int offset) {
    const qsizetype count = out.points.size();
    if (window < 0 || window > count) {
        return;
    }
    KxProfile work(out);
    KxCircle circle;
    circle.calcFromPointCloud(work);
    toAngleAndRadius(work, circle);
    for (qsizetype i = 0; i < count; ++i) {
        const float mean = replaceOutliers(work.points, i, window, maxDeviation);
        qsizetype target = i + offset;
        if (target >= count) {
            target -= count;
        }
        if (target >= 0 && target < count) {
            work.points[target].y = mean;
        }
        // Deliberately inside the loop: the next window works on the Cartesian points.
        fromAngleAndRadius(work, circle);
    }
    if (count > 0) {
        out = work;
    }
}

} // namespace KxMath
