// Removal of narrow spikes, in Cartesian and in polar form.
#include "KxMath/KxProfile.h"

#include "lists/filtering.h"
#include "profile/angleAndRadius.h"
#include "rounding/angles.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace KxMath {

namespace {

/// Magnitudes of the second differences of y, one per point but the last. What lies beyond the last first difference is
/// taken as 0. There are at least two.
std::vector<float> bends(const KxPointXY* points, qsizetype m) {
    std::vector<float> bends(static_cast<size_t>(m));
    for (qsizetype k = 0; k + 2 < m; ++k) {
        const float first = points[k + 1].y - points[k].y;
        const float second = points[k + 2].y - points[k + 1].y;
        bends[static_cast<size_t>(k)] = std::abs(second - first);
    }
    bends[static_cast<size_t>(m - 2)] = std::abs(0.0f - (points[m - 1].y - points[m - 2].y));
    return bends;
}

/// Removes the spikes of `points`. @return true when points were removed
bool removeSpikes(QList<KxPointXY>& points, float threshold, float maxWidth) {
    const qsizetype m = points.size() - 1;
    if (m < 5) {
        return false;
    }
    const KxPointXY* const data = points.constData();
    const std::vector<float> magnitudes = bends(data, m);
    const float* const bend = magnitudes.data();
    std::vector<char> isMarked; // made with the first spike
    for (qsizetype i = 0; i < m;) {
        if (!(bend[i] > threshold)) { // NaN: not a spike
            ++i;
            continue;
        }
        qsizetype j = i + 1;
        float width = 0.0f;
        while (j < m && !(bend[j] >= threshold)) {
            const float dx = data[j].x - data[j - 1].x;
            if (dx >= maxWidth) { // NaN: false
                break;
            }
            width += dx;
            ++j;
        }
        if (width <= maxWidth) { // NaN: false
            isMarked.resize(static_cast<size_t>(points.size()));
            // Deliberately from i on, one before the point about which the curvature jumps.
            std::fill(isMarked.begin() + i, isMarked.begin() + std::min(j, m - 1) + 1, char{1});
        }
        i = j; // the index that ended the spike may begin another
    }
    if (isMarked.empty()) {
        return false;
    }
    auto mark = isMarked.cbegin();
    return detail::keepIf(points, [&](const KxPointXY&) { return *mark++ == 0; }) > 0;
}

} // namespace

bool KxProfile::splashFilter(KxProfile& out, float threshold, float maxWidth) {
    return removeSpikes(out.points, threshold, maxWidth);
}

bool KxProfile::splashFilterPolar(KxProfile& out, float radius, float threshold, float maxWidth) {
    KxProfile work(out);
    KxCircle circle;
    circle.calcFromPointCloud(work);
    detail::toAngleAndRadius(work, circle);
    const float maxAngle = maxWidth * 180.0f / (radius * detail::kPiF);
    const bool isChanged = removeSpikes(work.points, threshold, maxAngle);
    detail::fromAngleAndRadius(work, circle);
    out = work;
    return isChanged;
}

} // namespace KxMath
