// The cells of a regular walk along one axis.
#pragma once

#include "KxMath/KxPoints.h"
#include "sorting/radixSort.h"

#include <QtCore/QList>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace KxMath::detail {

/// Cells from the first to the last, counted from 0. The default is no cell.
struct CellRange {
    int first = 0;
    int last = -1;
};

/// Walks from `min` in steps of `step` while below `max`. The starts are running single-precision sums, which cannot be
/// jumped to, and the walk ends where the sum does not advance, so that no axis takes more than some 2^25 steps.
///
/// A walk of many more cells than there are points counts only those in which points lie, so that memory follows the
/// points. The order of the cells is the same, and the others are never visited.
/// @tparam Shape has isBelow(v, start) and isAbove(v, start): on which side of a cell a coordinate lies. Both are
///         monotone in each argument. A point with a NaN coordinate is in no cell.
template <typename Shape>
class AxisCells {
public:
    AxisCells(const QList<KxPointXYZ>& points, float KxPointXYZ::*coordinate, float min, float max, float step,
              const Shape& shape)
        : shape_(shape) {
        auto all = allStarts(min, max, step, kCellsPerPoint * static_cast<std::size_t>(points.size()));
        starts_ = all ? std::move(*all) : occupiedStarts(sortedValues(points, coordinate), min, max, step);
        if (size() > 1) {
            const double first = static_cast<double>(starts_.front());
            cellsPerUnit_ = static_cast<double>(size() - 1) / (static_cast<double>(starts_.back()) - first);
        }
    }

    int size() const { return static_cast<int>(starts_.size()); }
    float start(int cell) const { return starts_[static_cast<std::size_t>(cell)]; }

    /// The cells in which `v` lies.
    CellRange rangeOf(float v) const {
        const int last = lastNotAbove(v);
        if (last < 0 || shape_.isAbove(v, start(last)) || std::isnan(v)) {
            return {};
        }
        int first = last;
        while (first > 0 && !shape_.isAbove(v, start(first - 1))) {
            --first;
        }
        return {first, last};
    }

    /// Whether the last cell in which `v` lies is this one or one behind it, for a `v` that lies in a cell.
    bool reaches(float v, int cell) const { return !shape_.isBelow(v, start(cell)); }

private:
    static constexpr std::size_t kCellsPerPoint = 4;

    /// Walks from `min` in steps of `step` while below `max`, until `visit` is false or the sum does not advance.
    template <typename Visit>
    static void forEachStart(float min, float max, float step, Visit visit) {
        for (float start = min; start < max && visit(start);) {
            const float next = start + step;
            if (!(next > start)) { // NaN: true
                break;
            }
            start = next;
        }
    }

    /// The starts of all cells, unless they are more than `most`.
    static std::optional<std::vector<float>> allStarts(float min, float max, float step, std::size_t most) {
        std::vector<float> starts;
        bool isTooMuch = false;
        forEachStart(min, max, step, [&](float start) {
            isTooMuch = starts.size() == most;
            if (!isTooMuch) {
                starts.push_back(start);
            }
            return !isTooMuch;
        });
        return isTooMuch ? std::nullopt : std::optional(std::move(starts));
    }

    static std::vector<float> sortedValues(const QList<KxPointXYZ>& points, float KxPointXYZ::*coordinate) {
        std::vector<float> values;
        values.reserve(static_cast<std::size_t>(points.size()));
        for (const KxPointXYZ& p : points) {
            if (!std::isnan(p.*coordinate)) {
                values.push_back(p.*coordinate);
            }
        }
        if (!radixSort(
                values.data(), values.size(), [](float v) { return v; }, true)) {
            std::sort(values.begin(), values.end());
        }
        return values;
    }

    /// The starts of the cells in which some of the sorted values lie.
    std::vector<float> occupiedStarts(const std::vector<float>& values, float min, float max, float step) const {
        std::vector<float> starts;
        auto v = values.begin();
        forEachStart(min, max, step, [&](float start) {
            v = std::find_if_not(v, values.end(), [&](float value) { return shape_.isBelow(value, start); });
            if (v != values.end() && !shape_.isAbove(*v, start)) {
                starts.push_back(start);
            }
            return v != values.end();
        });
        return starts;
    }

    /// The last cell that does not begin above `v`, or -1. A few steps from the cell that the distance from the first
    /// one suggests; a bisection where running sums drift or empty cells are left out.
    int lastNotAbove(float v) const {
        constexpr int kTrials = 4;
        int cell = guess(v);
        for (int trial = 0; trial < kTrials; ++trial) {
            if (cell >= 0 && shape_.isBelow(v, start(cell))) {
                --cell;
            } else if (cell + 1 < size() && !shape_.isBelow(v, start(cell + 1))) {
                ++cell;
            } else {
                return cell;
            }
        }
        const auto next = std::partition_point(starts_.begin(), starts_.end(),
                                               [&](float start) { return !shape_.isBelow(v, start); });
        return static_cast<int>(next - starts_.begin()) - 1;
    }

    int guess(float v) const {
        if (size() < 2) {
            return size() - 1;
        }
        const double cell = (static_cast<double>(v) - static_cast<double>(starts_.front())) * cellsPerUnit_;
        if (!(cell > 0.0)) { // NaN: true
            return 0;
        }
        return cell < static_cast<double>(size()) ? static_cast<int>(cell) : size() - 1;
    }

    const Shape shape_;
    std::vector<float> starts_;
    double cellsPerUnit_ = 0.0;
};

} // namespace KxMath::detail
