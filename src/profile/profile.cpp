// Construction, range and trimming of profiles.
#include "KxMath/KxProfile.h"

#include "lists/filtering.h"
#include "lists/reserve.h"
#include "rounding/bounds.h"

#include <QtCore/QRectF>

namespace KxMath {

using detail::kNaN;

namespace {

/// The extremes of one coordinate and where they were first met.
struct Extremes {
    float min;
    float max;
    int minAt = 0;
    int maxAt = 0;

    explicit Extremes(float first) : min(first), max(first) {}

    void add(float v, int at) {
        if (v < min) { // NaN: false
            min = v;
            minAt = at;
        } else if (v > max) { // NaN: false
            max = v;
            maxAt = at;
        }
    }
};

} // namespace

KxProfile::KxProfile() = default;

KxProfile::KxProfile(float* buffer, unsigned short count) {
    copyFromXYPointsBuffer(buffer, count);
}

KxProfile::KxProfile(KxProfile& other) : KxPointCloud<KxPointXY>(other) {}

KxProfile::~KxProfile() = default;

KxProfile& KxProfile::operator=(const KxProfile& other) {
    copyFromPointCloud(other);
    return *this;
}

void KxProfile::copyFromXYPointsBuffer(float* buffer, unsigned short count) {
    detail::reserve(points, points.size() + count);
    for (qsizetype k = 0; k < count; ++k) {
        points.append(KxPointXY(buffer[2 * k], buffer[2 * k + 1]));
    }
}

bool KxProfile::calcRange(float* minX, float* minY, float* maxX, float* maxY, int* indices) {
    if (isEmpty()) {
        return false;
    }
    const QList<KxPointXY>& list = points;
    Extremes xs(list[0].x);
    Extremes ys(list[0].y);
    for (int i = 1; i < list.size(); ++i) {
        xs.add(list[i].x, i);
        ys.add(list[i].y, i);
    }
    *minX = xs.min;
    *minY = ys.min;
    *maxX = xs.max;
    *maxY = ys.max;
    if (indices != nullptr) {
        indices[0] = xs.minAt;
        indices[1] = xs.maxAt;
        indices[2] = ys.minAt;
        indices[3] = ys.maxAt;
    }
    return true;
}

bool KxProfile::calcRange() {
    return calcRange(&minX, &minY, &maxX, &maxY, nullptr);
}

bool KxProfile::calcRange(QRectF& rect, int* indices) {
    float left = kNaN;
    float bottom = kNaN;
    float right = kNaN;
    float top = kNaN;
    if (!calcRange(&left, &bottom, &right, &top, indices)) {
        return false;
    }
    // Deliberately bottom = smallest y: a y-up rectangle, whose height is zero or negative.
    rect.setLeft(static_cast<qreal>(left));
    rect.setBottom(static_cast<qreal>(bottom));
    rect.setRight(static_cast<qreal>(right));
    rect.setTop(static_cast<qreal>(top));
    return true;
}

int KxProfile::trim(float minX, float minY, float maxX, float maxY) {
    // A NaN bound is not applied, and a NaN coordinate fails no bound.
    return detail::keepIf(
        points, [=](const KxPointXY& p) { return !(p.x < minX) && !(p.x > maxX) && !(p.y < minY) && !(p.y > maxY); });
}

int KxProfile::trim(QRectF rect) {
    // Deliberately not normalised: a y-up rectangle has its y bounds swapped.
    return trim(static_cast<float>(rect.x()), static_cast<float>(rect.y()), static_cast<float>(rect.x() + rect.width()),
                static_cast<float>(rect.y() + rect.height()));
}

int KxProfile::trimLower(float level) {
    return trim(kNaN, level, kNaN, kNaN);
}

int KxProfile::trimUpper(float level) {
    return trim(kNaN, kNaN, kNaN, level);
}

int KxProfile::trimY(float minY, float maxY) {
    return trim(kNaN, minY, kNaN, maxY);
}

int KxProfile::trimX(float minX, float maxX) {
    return trim(minX, kNaN, maxX, kNaN);
}

float KxProfile::calcCenterX() {
    KxPointXY center;
    return calcCenterPoint(center) ? center.x : kNaN;
}

float KxProfile::calcCenterY() {
    KxPointXY center;
    return calcCenterPoint(center) ? center.y : kNaN;
}

bool KxProfile::calcLine(KxLine& line) {
    return line.calcFromPointCloud(*this);
}

bool KxProfile::calcCircle(KxCircle& circle) {
    return circle.calcFromPointCloud(*this);
}

} // namespace KxMath
