// Sets of profiles: container, range, slicing by z, edge clearing.
#include "KxMath/KxProfileZ.h"

#include "grid/forReading.h"
#include "grid/position.h"
#include "lists/checked.h"
#include "lists/filtering.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

using detail::kNaN;

namespace {

/// The range of a profile between a low point and its highest one. What was found in one profile deliberately stays for
/// the next.
class EdgeSearch {
public:
    explicit EdgeSearch(float firstY) : highY_(firstY) {}

    void update(const QList<KxPointXY>& points) {
        for (qsizetype j = 0; j < points.size(); ++j) {
            if (highY_ <= points[j].y) { // NaN: false
                highIndex_ = j;
                highY_ = points[j].y;
            }
        }
        // The highest index may stem from a longer profile.
        const qsizetype end = std::min(highIndex_, points.size());
        for (qsizetype j = 0; j < end; ++j) {
            if (lowY_ >= points[j].y) { // NaN: false
                lowY_ = points[j].y;
                lowIndex_ = j;
            }
        }
    }

    void trim(QList<KxPointXY>& points) const {
        // Deliberately every second point: as if points 0, 1, 2, ... were removed from a list that shrinks each time.
        qsizetype j = 0;
        const auto isKept = [&](const KxPointXY&) {
            const qsizetype position = j++;
            return position % 2 != 0 || position / 2 >= lowIndex_;
        };
        detail::keepIf(points, isKept);
        detail::truncate(points, std::min(points.size(), highIndex_ + 1));
    }

private:
    float highY_;
    qsizetype highIndex_ = 0;
    float lowY_ = 0.0f;
    qsizetype lowIndex_ = 0;
};

} // namespace

// minY and maxY have no meaning before the first calcRange(); NaN, unlike an uninitialised value, can be copied.
KxProfileZSet::KxProfileZSet() : minX(kNaN), maxX(kNaN), minY(kNaN), maxY(kNaN), minZ(kNaN), maxZ(kNaN), stepZ(kNaN) {}

KxProfileZSet::KxProfileZSet(const KxProfileZSet& other) = default;

KxProfileZSet::~KxProfileZSet() = default;

KxProfileZSet& KxProfileZSet::operator=(const KxProfileZSet& other) = default;

void KxProfileZSet::clear() {
    profiles.clear();
}

bool KxProfileZSet::isEmpty() {
    return profiles.isEmpty();
}

int KxProfileZSet::size() {
    return static_cast<int>(profiles.size());
}

int KxProfileZSet::getRange(float zMin, float zMax, KxProfileZSet& out) {
    if (!out.isEmpty()) {
        out.clear(); // a set that is its own range ends empty
    }
    for (const KxProfileZ& profile : std::as_const(profiles)) {
        if (zMin <= profile.z && profile.z <= zMax) { // NaN: false
            out.profiles.append(profile);
        }
    }
    return out.size();
}

void KxProfileZSet::setZ(float z0, float dz) {
    qsizetype i = 0;
    for (KxProfileZ& profile : detail::writableSpan(profiles)) {
        profile.z = detail::gridPosition(i, dz, z0);
        ++i;
    }
    stepZ = dz;
}

void KxProfileZSet::calcRange() {
    if (isEmpty()) {
        return;
    }
    minX = maxX = kNaN;
    minY = maxY = kNaN;
    for (const KxProfileZ& profile : std::as_const(profiles)) {
        float lowX = kNaN;
        float lowY = kNaN;
        float highX = kNaN;
        float highY = kNaN;
        detail::forReading(profile).calcRange(&lowX, &lowY, &highX, &highY); // without points they stay NaN
        detail::widen(minX, maxX, lowX);
        detail::widen(minX, maxX, highX);
        detail::widen(minY, maxY, lowY);
        detail::widen(minY, maxY, highY);
    }
    const float firstZ = std::as_const(profiles).first().z;
    const float lastZ = std::as_const(profiles).last().z;
    // Deliberately not reset before.
    minZ = std::isnan(firstZ) ? minZ : firstZ;
    maxZ = std::isnan(lastZ) ? maxZ : lastZ;
}

float KxProfileZSet::calcAverageY() {
    if (isEmpty()) {
        return 0.0f;
    }
    float sum = 0.0f;
    for (const KxProfileZ& profile : std::as_const(profiles)) {
        sum += detail::forReading(profile).calcAverageY();
    }
    return sum / static_cast<float>(profiles.size());
}

void KxProfileZSet::clearEdgeEffect() {
    if (isEmpty() || std::as_const(profiles).first().points.isEmpty()) {
        return;
    }
    EdgeSearch search(std::as_const(profiles).first().points.first().y);
    for (KxProfileZ& profile : detail::writableSpan(profiles)) {
        search.update(profile.points);
        KxProfileZ trimmed;
        trimmed.points = profile.points;
        search.trim(trimmed.points);
        profile = trimmed; // deliberately appends; the position becomes NaN
    }
}

} // namespace KxMath
