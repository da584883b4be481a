// Filters that remove sparse cells of a grid, and points without a neighbour in their cell.
#include "KxMath/KxPointCloud.h"

#include "cloud/cellSweep.h"
#include "cloud/isolatedPoints.h"
#include "cloud/rangeWidening.h"
#include "geometry/squareOfDistance.h"
#include "rounding/largestSquare.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace KxMath {

namespace {

/// Cells [start, start + cell] on each axis, both ends included: a shared face belongs to both neighbours.
struct CubeCells {
    float cell;

    bool isBelow(float v, float start) const { return v < start; }
    bool isAbove(float v, float start) const {
        const float end = start + cell;
        return v > end; // NaN: false, a bound that is NaN is switched off
    }
    bool contains(const detail::NumberedPoint&, const KxPointXYZ&) const { return true; } // the axes decide
};

/// Balls about the centres of such cubes.
struct BallCells {
    float half;
    float radius;
    float maxSquare; ///< of a distance that is at most the radius

    explicit BallCells(float cell) : half(cell / 2.0f), radius(cell * 0.5f), maxSquare(detail::largestSquare(radius)) {}

    /// Whether the distance along this axis alone is within the radius. The distance from the centre is never smaller,
    /// rounding included.
    bool reaches(float v, float center) const {
        const float difference = v - center;
        return difference * difference <= maxSquare;
    }
    bool isBelow(float v, float start) const {
        const float center = start + half;
        return v < center && !reaches(v, center);
    }
    bool isAbove(float v, float start) const {
        const float center = start + half;
        return v > center && !reaches(v, center);
    }
    bool contains(const detail::NumberedPoint& p, const KxPointXYZ& start) const {
        const KxPointXYZ center(start.x + half, start.y + half, start.z + half);
        return detail::squareOfDistance(p.x - center.x, p.y - center.y, p.z - center.z) <= maxSquare; // NaN: false
    }
};

bool isFewer(const detail::CellContent& cell, int minCount) {
    return static_cast<qsizetype>(cell.entries.size()) < minCount;
}

void pickAll(std::vector<std::uint32_t>& picked, const detail::CellContent& cell) {
    picked.clear();
    for (const detail::CellEntry& entry : cell.entries) {
        picked.push_back(entry.member);
    }
}

/// Picks the points that cubicFilter2() removes from a cell.
class SparseOrIsolated {
public:
    SparseOrIsolated(float maxDist, int minCount) : maxDist_(maxDist), minCount_(minCount) {}

    void operator()(std::vector<std::uint32_t>& picked, const detail::CellContent& cell) {
        if (isFewer(cell, minCount_)) {
            pickAll(picked, cell);
            return;
        }
        members_.clear();
        for (const detail::CellEntry& entry : cell.entries) {
            const detail::NumberedPoint& p = cell.layer[entry.member];
            members_.push_back({p.x, p.y, p.z, entry.member});
        }
        detail::appendIsolated(picked, members_, maxDist_);
        const bool staysFull = static_cast<qsizetype>(members_.size() - picked.size()) >= minCount_;
        if (!picked.empty() && !staysFull) {
            pickAll(picked, cell);
        }
    }

private:
    const float maxDist_;
    const int minCount_;
    std::vector<detail::NumberedPoint> members_; // of the current cell
};

void completeRange(KxPointCloud<KxPointXYZ>& cloud) {
    if (!detail::isRangeKnown<KxPointXYZ>(cloud)) {
        cloud.calcRange();
    }
}

} // namespace

int KxPointCloud<KxPointXYZ>::cubicFilter(float cell, int minCount) {
    if (size() < minCount) {
        return 0;
    }
    completeRange(*this);
    if (!(maxX > minX) || cell <= 0.0f) { // NaN: no extent
        return 0;
    }
    detail::CellSweep sweep(*this, cell, CubeCells{cell});
    return sweep.run([&](std::vector<std::uint32_t>& picked, const detail::CellContent& content) {
        if (isFewer(content, minCount)) {
            pickAll(picked, content);
        }
    });
}

int KxPointCloud<KxPointXYZ>::cubicFilter2(float cell, float maxDistance, int minCount, bool spherical) {
    if (size() < 2) {
        return 0;
    }
    completeRange(*this);
    if (cell <= 0.0f) {
        return 0;
    }
    const SparseOrIsolated pick(maxDistance, minCount);
    if (!spherical) {
        return detail::CellSweep(*this, cell, CubeCells{cell}).run(pick);
    }
    constexpr float kStepOfBalls = 1.4142099618911743f;
    const BallCells balls(cell);
    if (balls.radius < std::sqrt(std::numeric_limits<float>::denorm_min())) {
        return 0; // squares of such distances round to 0: the ball would hold points outside it
    }
    return detail::CellSweep(*this, cell / kStepOfBalls, balls).run(pick);
}

int KxPointCloud<KxPointXYZ>::sphericalFilter2(float cell, float maxDistance, int minCount) {
    return cubicFilter2(cell, maxDistance, minCount, true);
}

} // namespace KxMath
