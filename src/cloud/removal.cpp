// Taking points out of clouds.
#include "KxMath/KxPointCloud.h"

#include "cloud/compaction.h"
#include "cloud/pointTraits.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

namespace {

/// Positions from `begin` up to, not including, `end`.
struct Stretch {
    qsizetype begin;
    qsizetype end;
};

template <typename Point>
int removePositions(QList<Point>& points, QList<int>& positions) {
    if (positions.isEmpty()) {
        return 0;
    }
    if (!std::is_sorted(positions.cbegin(), positions.cend())) {
        std::sort(positions.begin(), positions.end());
    }
    const QList<int>& sorted = positions;

    // From the largest position on: what stays at and behind the current position, nearest stretch last. A position
    // removes the first point of the nearest stretch; repeated, the point that has moved up to it.
    QList<Stretch> kept;
    qsizetype count = points.size();
    qsizetype tailBegin = points.size();
    int counted = 0;
    for (qsizetype i = sorted.size() - 1; i >= 0; --i) {
        const qsizetype position = sorted[i];
        if (position >= count) {
            continue;
        }
        ++counted;
        if (position < 0) {
            continue;
        }
        if (position < tailBegin) {
            kept.append({position, tailBegin});
            tailBegin = position;
        }
        if (++kept.last().begin == kept.last().end) {
            kept.removeLast();
        }
        --count;
    }
    if (count == points.size()) {
        return counted;
    }

    Point* const data = points.data();
    Point* target = data + tailBegin;
    for (auto stretch = kept.crbegin(); stretch != kept.crend(); ++stretch) {
        target = std::copy(data + stretch->begin, data + stretch->end, target);
    }
    points.resize(count);
    return counted;
}

/// Clamps one side of a cached range to a bound; a bound that is switched off makes it unknown.
void clampMin(float& min, float bound) {
    if (std::isnan(bound) || min < bound) {
        min = bound;
    }
}

void clampMax(float& max, float bound) {
    if (std::isnan(bound) || max > bound) {
        max = bound;
    }
}

} // namespace

int KxPointCloud<KxPointXY>::removeIndeces(QList<int>& positions) {
    return removePositions(points, positions);
}

int KxPointCloud<KxPointXYZ>::removeIndeces(QList<int>& positions) {
    return removePositions(points, positions);
}

int KxPointCloud<KxPointXYZRGB>::removeIndeces(QList<int>& positions) {
    return removePositions(points, positions);
}

void KxPointCloud<KxPointXYZ>::trim(float minX, float maxX, float minY, float maxY, float minZ, float maxZ) {
    const detail::Box box{minX, maxX, minY, maxY, minZ, maxZ};
    detail::keepIf(points, [&](const KxPointXYZ& p) { return box.contains(p); });
    clampMin(this->minX, minX);
    clampMax(this->maxX, maxX);
    clampMin(this->minY, minY);
    clampMax(this->maxY, maxY);
    clampMin(this->minZ, minZ);
    clampMax(this->maxZ, maxZ);
}

void KxPointCloud<KxPointXYZ>::extract(KxPointCloud& out, float minX, float maxX, float minY, float maxY, float minZ,
                                       float maxZ, bool remove) {
    if (!out.isEmpty()) {
        out.clear();
    }
    // The index is deliberately not consulted: `points` is public and sorting by x can carry points out of their run,
    // so that an entry proves nothing about the points it stands for.
    const detail::Box box{minX, maxX, minY, maxY, minZ, maxZ};
    if (&out != this) {
        for (qsizetype i = points.size() - 1; i >= 0; --i) {
            const KxPointXYZ& p = std::as_const(points)[i];
            if (box.contains(p)) {
                out.points.append(p);
            }
        }
        if (remove) {
            detail::keepIf(points, [&](const KxPointXYZ& p) { return !box.contains(p); });
        }
    }
    if (remove) {
        zIndexBuilt = 0;
    }
}

int KxPointCloud<KxPointXYZ>::calcSection(KxPointCloud& out, float z, float halfWidth) {
    out.clear(); // a cloud that is its own section ends empty
    for (const KxPointXYZ& p : std::as_const(points)) {
        const float distance = p.z - z;
        if (std::abs(distance) <= halfWidth) { // NaN: false
            out.points.append(p);
        }
    }
    return out.size();
}

int KxPointCloud<KxPointXYZ>::removePointsByYLevel(float level, bool above) {
    if (above) {
        return detail::keepIf(points, [&](const KxPointXYZ& p) { return !(p.y >= level); }); // NaN stays
    }
    return detail::keepIf(points, [&](const KxPointXYZ& p) { return !(p.y <= level); }); // NaN stays
}

} // namespace KxMath
