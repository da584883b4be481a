// The window filter over the radii about a circle.
#include "KxMath/KxProfile.h"

#include "lists/checked.h"
#include "profile/angleAndRadius.h"
#include "rounding/bounds.h"

#include <cmath>

namespace KxMath {

namespace {

/// Replaces the radii of a window that are too far from its mean by the mean of the others, which is returned. Where the
/// window is longer than the profile its points count more than once.
float replaceOutliers(QList<KxPointXY>& points, qsizetype begin, qsizetype window, float maxDeviation) {
    const qsizetype count = points.size();
    KxPointXY* const data = detail::writable(points);
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

void KxProfile::wndFilterPolar(KxProfile& out, float maxDeviation, int window, int offset) {
    const qsizetype count = out.points.size();
    if (window < 0) {
        return;
    }
    KxProfile work(out);
    KxCircle circle;
    circle.calcFromPointCloud(work);
    detail::toAngleAndRadius(work, circle);
    for (qsizetype i = 0; i < count; ++i) {
        const float mean = replaceOutliers(work.points, i, window, maxDeviation);
        qsizetype target = i + offset;
        if (target >= count) {
            target -= count;
        }
        if (target >= 0 && target < count) {
            detail::writable(work.points)[target].y = mean;
        }
        // Deliberately inside the loop: the next window works on the Cartesian points.
        detail::fromAngleAndRadius(work, circle);
    }
    if (count > 0) {
        out = work;
    }
}

} // namespace KxMath
