// Filters that remove sparse cells of a grid, and points that stand apart from the others of their cell.
#include "KxMath/KxPointCloud.h"

#include "cloud/axisCells.h"
#include "cloud/compaction.h"
#include "cloud/isolatedPoints.h"

#include <algorithm>
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
    bool contains(const KxPointXYZ&, const KxPointXYZ&) const { return true; } // the axes tell it all
};

/// Balls about the centres of such cubes.
struct BallCells {
    float half;
    float radius;

    explicit BallCells(float cell) : half(cell / 2.0f), radius(cell * 0.5f) {}

    /// The distance that this axis alone makes; the distance from the centre is never smaller, rounding included.
    bool reaches(float v, float center) const {
        const float difference = v - center;
        const float square = difference * difference;
        return std::sqrt(square) <= radius;
    }
    bool isBelow(float v, float start) const {
        const float center = start + half;
        return v < center && !reaches(v, center);
    }
    bool isAbove(float v, float start) const {
        const float center = start + half;
        return v > center && !reaches(v, center);
    }
    bool contains(const KxPointXYZ& p, const KxPointXYZ& start) const {
        const KxPointXYZ center(start.x + half, start.y + half, start.z + half);
        return KxPointXYZ::calcDistance(p, center) <= radius; // NaN: false
    }
};

/// Visits the occupied cells, x outermost and z innermost, and takes out what each of them gives up.
template <typename Shape>
class CellSweep {
public:
    CellSweep(KxPointCloud<KxPointXYZ>& cloud, float step, const Shape& shape)
        : cloud_(cloud), points_(cloud.points), shape_(shape),
          xCells_(detail::occupiedCells(points_, &KxPointXYZ::x, cloud.minX, cloud.maxX, step, shape)),
          yCells_(detail::occupiedCells(points_, &KxPointXYZ::y, cloud.minY, cloud.maxY, step, shape)),
          zCells_(detail::occupiedCells(points_, &KxPointXYZ::z, cloud.minZ, cloud.maxZ, step, shape)),
          isRemoved_(static_cast<std::size_t>(points_.size()), false) {}

    /// @param pick is given the positions of the points of a cell and returns those to remove
    /// @return the number of points removed from the cloud
    template <typename Pick>
    int run(Pick pick) {
        std::size_t begin = 0; // the points of a layer are neighbours in the order by x
        std::size_t end = 0;
        for (int layer = 0; layer < static_cast<int>(xCells_.starts.size()); ++layer) {
            const std::vector<int>& order = xCells_.order;
            while (end < order.size() && rangeOf(xCells_, order[end]).first <= layer) {
                ++end;
            }
            while (begin < end && rangeOf(xCells_, order[begin]).last < layer) {
                ++begin;
            }
            collectLayer(begin, end);
            visitLayer(xCells_.starts[static_cast<std::size_t>(layer)], pick);
        }
        if (removed_ > 0) {
            qsizetype position = 0;
            detail::keepIf(cloud_.points, [&](const KxPointXYZ&) { return !isRemovedAt(position++); });
            cloud_.zIndexBuilt = 0;
        }
        return removed_;
    }

private:
    /// A point in a cell of the current layer.
    struct Entry {
        std::uint64_t cell; ///< the cell along y, then that along z
        int position;
    };

    static detail::CellRange rangeOf(const detail::AxisCells& cells, int position) {
        return cells.ranges[static_cast<std::size_t>(position)];
    }

    bool isRemovedAt(qsizetype position) const { return isRemoved_[static_cast<std::size_t>(position)]; }

    void collectLayer(std::size_t begin, std::size_t end) {
        entries_.clear();
        for (std::size_t i = begin; i < end; ++i) {
            const int position = xCells_.order[i];
            if (isRemovedAt(position)) {
                continue;
            }
            const detail::CellRange ys = rangeOf(yCells_, position);
            const detail::CellRange zs = rangeOf(zCells_, position);
            for (int y = ys.first; y <= ys.last; ++y) {
                for (int z = zs.first; z <= zs.last; ++z) {
                    entries_.push_back({static_cast<std::uint64_t>(y) << 32 | static_cast<std::uint64_t>(z), position});
                }
            }
        }
        std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) { return a.cell < b.cell; });
    }

    template <typename Pick>
    void visitLayer(float startX, Pick pick) {
        std::vector<int> members;
        for (std::size_t i = 0; i < entries_.size();) {
            const std::uint64_t cell = entries_[i].cell;
            const KxPointXYZ start(startX, yCells_.starts[cell >> 32], zCells_.starts[cell & 0xffffffffu]);
            members.clear();
            for (; i < entries_.size() && entries_[i].cell == cell; ++i) {
                const int position = entries_[i].position;
                // Only what earlier cells have left.
                if (!isRemovedAt(position) && shape_.contains(points_[position], start)) {
                    members.push_back(position);
                }
            }
            for (const int position : pick(members)) {
                isRemoved_[static_cast<std::size_t>(position)] = true;
                ++removed_;
            }
        }
    }

    KxPointCloud<KxPointXYZ>& cloud_;
    const QList<KxPointXYZ>& points_;
    const Shape shape_;
    const detail::AxisCells xCells_;
    const detail::AxisCells yCells_;
    const detail::AxisCells zCells_;
    std::vector<bool> isRemoved_;
    std::vector<Entry> entries_;
    int removed_ = 0;
};

bool isFewer(const std::vector<int>& members, int minCount) {
    return static_cast<qsizetype>(members.size()) < minCount;
}

/// What a cell of cubicFilter2() gives up.
std::vector<int> pickSparseOrIsolated(const QList<KxPointXYZ>& points, const std::vector<int>& members, float maxDist,
                                      int minCount) {
    if (isFewer(members, minCount)) {
        return members;
    }
    const std::vector<int> isolated = detail::isolatedPoints(points, members, maxDist);
    const bool staysFull = static_cast<qsizetype>(members.size() - isolated.size()) >= minCount;
    return isolated.empty() || staysFull ? isolated : members;
}

void completeRange(KxPointCloud<KxPointXYZ>& cloud) {
    if (std::isnan(cloud.minX) || std::isnan(cloud.maxX) || std::isnan(cloud.minY) || std::isnan(cloud.maxY) ||
        std::isnan(cloud.minZ) || std::isnan(cloud.maxZ)) {
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
    CellSweep sweep(*this, cell, CubeCells{cell});
    return sweep.run(
        [&](const std::vector<int>& members) { return isFewer(members, minCount) ? members : std::vector<int>(); });
}

int KxPointCloud<KxPointXYZ>::cubicFilter2(float cell, float maxDist, int minCount, bool spherical) {
    if (size() < 2) {
        return 0;
    }
    completeRange(*this);
    if (cell <= 0.0f) {
        return 0;
    }
    const auto pick = [&](const std::vector<int>& members) {
        return pickSparseOrIsolated(points, members, maxDist, minCount);
    };
    if (!spherical) {
        return CellSweep(*this, cell, CubeCells{cell}).run(pick);
    }
    constexpr float kStepOfBalls = 1.4142099618911743f;
    const BallCells balls(cell);
    if (balls.radius < std::sqrt(std::numeric_limits<float>::denorm_min())) {
        return 0; // below the smallest distance other than 0, a ball would be as large as all that vanishes
    }
    return CellSweep(*this, cell / kStepOfBalls, balls).run(pick);
}

int KxPointCloud<KxPointXYZ>::sphericalFilter2(float cell, float maxDist, int minCount) {
    return cubicFilter2(cell, maxDist, minCount, true);
}

} // namespace KxMath
