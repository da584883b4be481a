// The cells of a regular walk along one axis, as far as points lie in them.
#pragma once

#include "KxMath/KxPoints.h"

#include <QtCore/QList>

#include <algorithm>
#include <cmath>
#include <vector>

namespace KxMath::detail {

/// Occupied cells from the first to the last, counted from 0. The default is no cell.
struct CellRange {
    int first = 0;
    int last = -1;
};

/// The occupied cells of an axis in walking order, and the points in them.
struct AxisCells {
    std::vector<float> starts; ///< where each occupied cell starts
    std::vector<CellRange> ranges; ///< of each point, by its position
    std::vector<int> order; ///< the positions of the points in cells by rising coordinate; their first and last
                            ///< cells rise too
};

/// Walks from `min` in steps of `step` while below `max`. The starts are running single-precision sums, which cannot be
/// jumped to: empty cells cost an addition, but no memory. The walk ends where the sum does not advance, so that no
/// axis takes more than some 2^25 steps.
/// @param shape tells by isBelow(v, start) and isAbove(v, start) on which side of a cell a coordinate lies; both are
///        monotone in each argument. A point with a NaN coordinate is in no cell.
template <typename Shape>
AxisCells occupiedCells(const QList<KxPointXYZ>& points, float KxPointXYZ::*coordinate, float min, float max,
                        float step, const Shape& shape) {
    struct Value {
        float v;
        int position;
    };
    std::vector<Value> values;
    values.reserve(static_cast<std::size_t>(points.size()));
    for (int i = 0; i < points.size(); ++i) {
        if (!std::isnan(points[i].*coordinate)) {
            values.push_back({points[i].*coordinate, i});
        }
    }
    std::sort(values.begin(), values.end(), [](const Value& a, const Value& b) { return a.v < b.v; });

    AxisCells cells;
    cells.ranges.resize(static_cast<std::size_t>(points.size()));
    const auto rangeOf = [&](std::size_t i) -> CellRange& {
        return cells.ranges[static_cast<std::size_t>(values[i].position)];
    };
    std::size_t passed = 0; // values below the current cell
    std::size_t entered = 0; // values not above it
    for (float start = min; start < max && passed < values.size();) {
        const int cell = static_cast<int>(cells.starts.size());
        for (; passed < values.size() && shape.isBelow(values[passed].v, start); ++passed) {
            rangeOf(passed).last = passed < entered ? cell - 1 : -1;
        }
        entered = std::max(entered, passed);
        for (; entered < values.size() && !shape.isAbove(values[entered].v, start); ++entered) {
            rangeOf(entered).first = cell;
        }
        if (entered > passed) {
            cells.starts.push_back(start);
        }
        const float next = start + step;
        if (!(next > start)) { // NaN: true
            break;
        }
        start = next;
    }
    for (; passed < entered; ++passed) {
        rangeOf(passed).last = static_cast<int>(cells.starts.size()) - 1;
    }
    for (const Value& value : values) {
        const CellRange& range = cells.ranges[static_cast<std::size_t>(value.position)];
        if (range.first <= range.last) {
            cells.order.push_back(value.position);
        }
    }
    return cells;
}

} // namespace KxMath::detail
