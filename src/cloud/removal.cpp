// Taking points out of clouds.
#include "KxMath/KxPointCloud.h"

#include "cloud/box.h"
#include "lists/checked.h"
#include "lists/filtering.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

namespace KxMath {

namespace {

/// Positions from `begin` up to, not including, `end`.
struct Range {
    qsizetype begin;
    qsizetype end;
};

/// Removes points by ascending positions, all of them valid and different.
template <typename Point>
void removeDifferent(QList<Point>& points, const QList<int>& positions) {
    Point* const data = detail::writable(points);
    Point* target = data + positions.first();
    for (qsizetype i = 0; i < positions.size(); ++i) {
        const qsizetype end = i + 1 < positions.size() ? positions[i + 1] : points.size();
        for (qsizetype kept = positions[i] + 1; kept < end; ++kept) {
            *target++ = data[kept];
        }
    }
    points.resize(points.size() - positions.size());
}

/// Sorts positions that are all different and below `size` by marking them in a bit set. @return false when they are
/// not; nothing has changed then
bool sortByMarking(QList<int>& positions, qsizetype size) {
    constexpr qsizetype kBits = 64;
    std::vector<std::uint64_t> marks(static_cast<std::size_t>(size / kBits + 1));
    for (const int position : std::as_const(positions)) {
        if (position < 0 || position >= size) {
            return false;
        }
        std::uint64_t& word = marks[static_cast<std::size_t>(position / kBits)];
        const std::uint64_t bit = std::uint64_t{1} << (position % kBits);
        if ((word & bit) != 0) {
            return false;
        }
        word |= bit;
    }
    int* next = detail::writable(positions);
    for (std::size_t i = 0; i < marks.size(); ++i) {
        for (std::uint64_t word = marks[i]; word != 0; word &= word - 1) { // without its lowest bit
            *next++ = static_cast<int>(i) * static_cast<int>(kBits) + std::countr_zero(word);
        }
    }
    return true;
}

/// Sorts the positions of points to remove from a cloud of `size`.
void sortPositions(QList<int>& positions, qsizetype size) {
    constexpr qsizetype kWorthwhile = 64; // marking is quicker when more than one point of this many is removed
    const bool isSorted = std::is_sorted(positions.cbegin(), positions.cend());
    if (!isSorted && (positions.size() < size / kWorthwhile || !sortByMarking(positions, size))) {
        const auto all = detail::writableSpan(positions);
        std::sort(all.begin(), all.end());
    }
}

template <typename Point>
int removePositions(QList<Point>& points, QList<int>& positions) {
    if (positions.isEmpty()) {
        return 0;
    }
    sortPositions(positions, points.size());
    const QList<int>& sorted = positions;
    if (sorted.first() >= 0 && sorted.last() < points.size() &&
        std::adjacent_find(sorted.begin(), sorted.end()) == sorted.end()) {
        removeDifferent(points, sorted);
        return static_cast<int>(sorted.size());
    }

    // The definition removes one point after the other, from the largest position on. `kept` holds the ranges that stay
    // at and behind the current position, the nearest one last. A position removes the first point of the nearest
    // range; a repeated position the point that has moved up to it.
    QList<Range> kept;
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

    Point* const data = detail::writable(points);
    Point* target = data + tailBegin;
    for (auto range = kept.crbegin(); range != kept.crend(); ++range) {
        target = std::copy(data + range->begin, data + range->end, target);
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
    // so that an entry proves nothing about its points.
    const detail::Box box{minX, maxX, minY, maxY, minZ, maxZ};
    if (&out != this) {
        const KxPointXYZ* const data = points.constData();
        const qsizetype count = points.size(); // the last one first
        out.points = detail::collectIf<KxPointXYZ>(
            count, [&](qsizetype i) { return box.contains(data[count - 1 - i]); },
            [&](qsizetype i) { return data[count - 1 - i]; });
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
    const KxPointXYZ* const data = points.constData();
    out.points = detail::collectIf<KxPointXYZ>(
        points.size(), [&](qsizetype i) { return std::abs(data[i].z - z) <= halfWidth; }, // NaN: false
        [&](qsizetype i) { return data[i]; });
    return out.size();
}

int KxPointCloud<KxPointXYZ>::removePointsByYLevel(float level, bool above) {
    if (above) {
        return detail::keepIf(points, [&](const KxPointXYZ& p) { return !(p.y >= level); }); // NaN stays
    }
    return detail::keepIf(points, [&](const KxPointXYZ& p) { return !(p.y <= level); }); // NaN stays
}

} // namespace KxMath
