// Ranges of numbers and the ticks on them.
#pragma once

#include <QtCore/QString>

#include <limits>
#include <vector>

namespace kxreport {

/// A range that grows with the numbers it includes. Numbers that are not finite are ignored.
struct Range {
    double min = std::numeric_limits<double>::infinity();
    double max = -std::numeric_limits<double>::infinity();

    void include(double value);
    bool isEmpty() const { return !(min <= max); }
    double size() const { return max - min; }
    double middle() const { return min + (max - min) / 2; }
    /// The range widened by a part of its size on both sides. An empty range becomes 0 to 1, and a single number is
    /// widened, so that the result can always be drawn.
    Range padded(double part) const;
};

/// An axis of a plot.
struct Axis {
    QString label; ///< with the unit
    Range range;
    bool hasTicks = true;
    bool isWhole = false; ///< ticks at whole numbers only, for counts
};

struct Ticks {
    std::vector<double> at;
    int decimals = 0; ///< decimals that distinguish neighbouring ticks
};

/// About `wanted` ticks at 1, 2 or 5 times a power of ten.
/// @param smallestStep 1 for whole numbers only, 0 for no limit
Ticks makeTicks(const Range& range, int wanted, double smallestStep = 0.0);

/// Widens one of the ranges so that both have the same scale on an area of `width` x `height`.
void makeScalesEqual(Range& x, Range& y, double width, double height);

} // namespace kxreport
