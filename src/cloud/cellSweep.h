// A sweep over the cells of a cloud that removes points from them.
#pragma once

#include "KxMath/KxPointCloud.h"
#include "cloud/axisCells.h"
#include "cloud/numberedPoint.h"
#include "lists/filtering.h"
#include "sorting/radixSort.h"

#include <QtCore/QList>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <span>
#include <vector>

namespace KxMath::detail {

/// The points in the order of the first one of their cells along x.
template <typename Shape>
class Layers {
public:
    Layers(const QList<KxPointXYZ>& points, const AxisCells<Shape>& xCells)
        : xCells_(xCells), ends_(static_cast<std::size_t>(xCells.size()) + 1, 0) {
        const auto forEachFirstCell = [&](auto visit) {
            for (int i = 0; i < points.size(); ++i) {
                const CellRange range = xCells.rangeOf(points[i].x);
                if (range.first <= range.last) {
                    visit(range, i);
                }
            }
        };
        forEachFirstCell([&](CellRange range, int) {
            ++ends_[static_cast<std::size_t>(range.first) + 1];
            mostBefore_ = std::max(mostBefore_, range.last - range.first);
        });
        std::partial_sum(ends_.begin(), ends_.end(), ends_.begin());
        members_ = std::make_unique_for_overwrite<NumberedPoint[]>(ends_.back());
        forEachFirstCell([&](CellRange range, int position) { // starts become ends
            const KxPointXYZ& p = points[position];
            members_[ends_[static_cast<std::size_t>(range.first)]++] = {p.x, p.y, p.z,
                                                                        static_cast<std::uint32_t>(position)};
        });
    }

    /// Calls `visit` with the points that lie in a cell: those that begin in it, and some of the cells before.
    template <typename Visit>
    void forEachIn(int cell, Visit visit) const {
        for (const NumberedPoint& member : beginningIn(std::max(cell - mostBefore_, 0), cell - 1)) {
            if (xCells_.reaches(member.x, cell)) {
                visit(member);
            }
        }
        for (const NumberedPoint& member : beginningIn(cell, cell)) {
            visit(member);
        }
    }

private:
    /// The points whose first cell is one of these.
    std::span<const NumberedPoint> beginningIn(int firstCell, int lastCell) const {
        const auto end = [&](int cell) { return cell < 0 ? 0 : ends_[static_cast<std::size_t>(cell)]; };
        const std::size_t begin = end(firstCell - 1);
        return {members_.get() + begin, std::max(end(lastCell), begin) - begin};
    }

    const AxisCells<Shape>& xCells_;
    std::vector<std::size_t> ends_;
    std::unique_ptr<NumberedPoint[]> members_;
    int mostBefore_ = 0; ///< the largest number of cells that a point lies in besides its first one
};

/// A point in a cell, by its position in the layer. A point on a shared face has an entry for each of its cells.
struct CellEntry {
    std::uint64_t cell;
    std::uint32_t member;
};

/// What a cell holds: the points of the layer that the entries refer to.
struct CellContent {
    std::span<const NumberedPoint> layer;
    std::span<const CellEntry> entries;
};

/// Visits the cells with points, x outermost and z innermost, and removes what is picked from each of them.
template <typename Shape>
class CellSweep {
public:
    CellSweep(KxPointCloud<KxPointXYZ>& cloud, float step, const Shape& shape)
        : cloud_(cloud), shape_(shape), xCells_(cloud.points, &KxPointXYZ::x, cloud.minX, cloud.maxX, step, shape),
          yCells_(cloud.points, &KxPointXYZ::y, cloud.minY, cloud.maxY, step, shape),
          zCells_(cloud.points, &KxPointXYZ::z, cloud.minZ, cloud.maxZ, step, shape),
          isRemoved_(static_cast<std::size_t>(cloud.points.size()), false) {}

    /// @param pick appends to an empty list the members of a CellContent that are to be removed
    /// @return the number of points removed from the cloud
    template <typename Pick>
    int run(Pick pick) {
        const Layers<Shape> layers(cloud_.points, xCells_);
        for (int x = 0; x < xCells_.size(); ++x) {
            collectLayer(layers, x);
            collectEntries(xCells_.start(x));
            visitLayer(pick);
        }
        if (removed_ > 0) {
            std::size_t position = 0;
            keepIf(cloud_.points, [&](const KxPointXYZ&) { return !isRemoved_[position++]; });
            cloud_.zIndexBuilt = 0;
        }
        return removed_;
    }

private:
    /// Copies the points of the layer that have not been removed.
    void collectLayer(const Layers<Shape>& layers, int x) {
        layer_.clear();
        layers.forEachIn(x, [&](const NumberedPoint& member) {
            if (!isRemoved_[member.number]) {
                layer_.push_back(member);
            }
        });
    }

    void collectEntries(float startX) {
        entries_.clear();
        for (std::uint32_t i = 0; i < layer_.size(); ++i) {
            const NumberedPoint& member = layer_[i];
            const CellRange ys = yCells_.rangeOf(member.y);
            const CellRange zs = zCells_.rangeOf(member.z);
            for (int y = ys.first; y <= ys.last; ++y) {
                for (int z = zs.first; z <= zs.last; ++z) {
                    if (shape_.contains(member, KxPointXYZ(startX, yCells_.start(y), zCells_.start(z)))) {
                        entries_.push_back({numberOf(y, z), i});
                    }
                }
            }
        }
        entrySorter_.sort(entries_, numberOf(yCells_.size(), 0), [](const CellEntry& entry) { return entry.cell; });
    }

    /// The number of a cell in a layer.
    std::uint64_t numberOf(int y, int z) const {
        return static_cast<std::uint64_t>(y) * static_cast<std::uint64_t>(zCells_.size()) +
               static_cast<std::uint64_t>(z);
    }

    template <typename Pick>
    void visitLayer(Pick& pick) {
        isGone_.assign(layer_.size(), 0);
        for (std::size_t begin = 0; begin < entries_.size();) {
            std::size_t end = begin;
            std::size_t left = begin;
            for (const std::uint64_t cell = entries_[begin].cell; end < entries_.size() && entries_[end].cell == cell;
                 ++end) {
                entries_[left] = entries_[end];
                left += isGone_[entries_[end].member] ? 0 : 1; // drops what earlier cells have removed
            }
            picked_.clear();
            pick(picked_, CellContent{layer_, {entries_.data() + begin, left - begin}});
            for (const std::uint32_t member : picked_) {
                isGone_[member] = 1;
                isRemoved_[layer_[member].number] = true;
            }
            removed_ += static_cast<int>(picked_.size());
            begin = end;
        }
    }

    KxPointCloud<KxPointXYZ>& cloud_;
    const Shape shape_;
    const AxisCells<Shape> xCells_;
    const AxisCells<Shape> yCells_;
    const AxisCells<Shape> zCells_;
    std::vector<bool> isRemoved_; // of each point of the cloud
    std::vector<NumberedPoint> layer_; // the current one
    std::vector<char> isGone_; // of its points
    std::vector<CellEntry> entries_; // of the current layer
    IntegerSorter<CellEntry> entrySorter_;
    std::vector<std::uint32_t> picked_; // of the current cell
    int removed_ = 0;
};

} // namespace KxMath::detail
