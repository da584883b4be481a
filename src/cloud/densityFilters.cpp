// Filters that remove sparse cells of a grid, and points that stand apart from the others of their cell.
#include "KxMath/KxPointCloud.h"

#include "cloud/axisCells.h"
#include "cloud/cellOrder.h"
#include "cloud/compaction.h"
#include "cloud/isolatedPoints.h"
#include "numeric/largestSquare.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <numeric>
#include <span>
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
    bool contains(const detail::CellMember&, const KxPointXYZ&) const { return true; } // the axes tell it all
};

/// Balls about the centres of such cubes.
struct BallCells {
    float half;
    float radius;
    float maxSquare; ///< of a distance that is at most the radius

    explicit BallCells(float cell) : half(cell / 2.0f), radius(cell * 0.5f), maxSquare(detail::largestSquare(radius)) {}

    /// The distance that this axis alone makes; the distance from the centre is never smaller, rounding included.
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
    bool contains(const detail::CellMember& p, const KxPointXYZ& start) const {
        const KxPointXYZ center(start.x + half, start.y + half, start.z + half);
        return detail::squareOfDistance(p.x - center.x, p.y - center.y, p.z - center.z) <= maxSquare; // NaN: false
    }
};

/// The points in the order of their cells along x. A point that lies in several of these stands in each.
class Layers {
public:
    template <typename Shape>
    Layers(const QList<KxPointXYZ>& points, const detail::AxisCells<Shape>& xCells)
        : ends_(static_cast<std::size_t>(xCells.size()) + 1, 0) {
        visitCells(points, xCells, [&](std::size_t cell, int) { ++ends_[cell + 1]; });
        std::partial_sum(ends_.begin(), ends_.end(), ends_.begin());
        members_ = std::make_unique_for_overwrite<detail::CellMember[]>(ends_.back());
        visitCells(points, xCells, [&](std::size_t cell, int position) { // starts become ends
            const KxPointXYZ& p = points[position];
            members_[ends_[cell]++] = {p.x, p.y, p.z, position};
        });
    }

    std::span<const detail::CellMember> layer(int cell) const {
        const std::size_t i = static_cast<std::size_t>(cell);
        const std::size_t begin = i > 0 ? ends_[i - 1] : 0;
        return {members_.get() + begin, ends_[i] - begin};
    }

private:
    template <typename Shape, typename Visit>
    static void visitCells(const QList<KxPointXYZ>& points, const detail::AxisCells<Shape>& xCells, Visit visit) {
        for (int i = 0; i < points.size(); ++i) {
            const detail::CellRange range = xCells.rangeOf(points[i].x);
            for (int cell = range.first; cell <= range.last; ++cell) {
                visit(static_cast<std::size_t>(cell), i);
            }
        }
    }

    std::vector<std::size_t> ends_;
    std::unique_ptr<detail::CellMember[]> members_;
};

using Members = std::vector<detail::CellMember>;

/// Visits the cells with points, x outermost and z innermost, and takes out what each of them gives up.
template <typename Shape>
class CellSweep {
public:
    CellSweep(KxPointCloud<KxPointXYZ>& cloud, float step, const Shape& shape)
        : cloud_(cloud), shape_(shape), xCells_(cloud.points, &KxPointXYZ::x, cloud.minX, cloud.maxX, step, shape),
          yCells_(cloud.points, &KxPointXYZ::y, cloud.minY, cloud.maxY, step, shape),
          zCells_(cloud.points, &KxPointXYZ::z, cloud.minZ, cloud.maxZ, step, shape),
          isRemoved_(static_cast<std::size_t>(cloud.points.size()), false) {}

    /// @param pick is given the points of a cell and appends the positions of those to remove to an empty list
    /// @return the number of points removed from the cloud
    template <typename Pick>
    int run(Pick pick) {
        const Layers layers(cloud_.points, xCells_);
        for (int x = 0; x < xCells_.size(); ++x) {
            const std::span<const detail::CellMember> layer = layers.layer(x);
            collectEntries(layer, xCells_.start(x));
            visitLayer(layer, pick);
        }
        if (removed_ > 0) {
            std::size_t position = 0;
            detail::keepIf(cloud_.points, [&](const KxPointXYZ&) { return !isRemoved_[position++]; });
            cloud_.zIndexBuilt = 0;
        }
        return removed_;
    }

private:
    bool isRemoved(const detail::CellMember& member) const {
        return isRemoved_[static_cast<std::size_t>(member.position)];
    }

    void collectEntries(std::span<const detail::CellMember> layer, float startX) {
        entries_.clear();
        for (std::uint32_t i = 0; i < layer.size(); ++i) {
            const detail::CellMember& member = layer[i];
            const detail::CellRange ys = yCells_.rangeOf(member.y);
            const detail::CellRange zs = zCells_.rangeOf(member.z);
            for (int y = ys.first; y <= ys.last; ++y) {
                for (int z = zs.first; z <= zs.last; ++z) {
                    if (shape_.contains(member, KxPointXYZ(startX, yCells_.start(y), zCells_.start(z)))) {
                        entries_.push_back({numberOf(y, z), i});
                    }
                }
            }
        }
        order_.sort(entries_, numberOf(yCells_.size(), 0));
    }

    /// The number of a cell in a layer.
    std::uint64_t numberOf(int y, int z) const {
        return static_cast<std::uint64_t>(y) * static_cast<std::uint64_t>(zCells_.size()) +
               static_cast<std::uint64_t>(z);
    }

    template <typename Pick>
    void visitLayer(std::span<const detail::CellMember> layer, Pick pick) {
        for (auto entry = entries_.cbegin(); entry != entries_.cend();) {
            const std::uint64_t cell = entry->cell;
            members_.clear();
            for (; entry != entries_.cend() && entry->cell == cell; ++entry) {
                const detail::CellMember& member = layer[entry->member];
                if (!isRemoved(member)) { // only what earlier cells have left
                    members_.push_back(member);
                }
            }
            picked_.clear();
            pick(members_, picked_);
            for (const int position : picked_) {
                isRemoved_[static_cast<std::size_t>(position)] = true;
                ++removed_;
            }
        }
    }

    KxPointCloud<KxPointXYZ>& cloud_;
    const Shape shape_;
    const detail::AxisCells<Shape> xCells_;
    const detail::AxisCells<Shape> yCells_;
    const detail::AxisCells<Shape> zCells_;
    std::vector<bool> isRemoved_;
    std::vector<detail::CellEntry> entries_; // of the current layer
    detail::CellOrder order_;
    Members members_; // of the current cell
    std::vector<int> picked_;
    int removed_ = 0;
};

bool isFewer(const Members& members, int minCount) {
    return static_cast<qsizetype>(members.size()) < minCount;
}

void pickAll(const Members& members, std::vector<int>& picked) {
    picked.clear();
    for (const detail::CellMember& member : members) {
        picked.push_back(member.position);
    }
}

/// What a cell of cubicFilter2() gives up.
void pickSparseOrIsolated(const Members& members, std::vector<int>& picked, float maxDist, int minCount) {
    if (isFewer(members, minCount)) {
        pickAll(members, picked);
        return;
    }
    detail::appendIsolated(picked, members, maxDist);
    const bool staysFull = static_cast<qsizetype>(members.size() - picked.size()) >= minCount;
    if (!picked.empty() && !staysFull) {
        pickAll(members, picked);
    }
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
    return sweep.run([&](const Members& members, std::vector<int>& picked) {
        if (isFewer(members, minCount)) {
            pickAll(members, picked);
        }
    });
}

int KxPointCloud<KxPointXYZ>::cubicFilter2(float cell, float maxDist, int minCount, bool spherical) {
    if (size() < 2) {
        return 0;
    }
    completeRange(*this);
    if (cell <= 0.0f) {
        return 0;
    }
    const auto pick = [&](const Members& members, std::vector<int>& picked) {
        pickSparseOrIsolated(members, picked, maxDist, minCount);
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
