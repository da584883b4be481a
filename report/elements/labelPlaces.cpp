// Places for labels on a plot.
#include "report/elements/labelPlaces.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace kxreport {

namespace {

/// Narrows a part of a line, from 0 to 1, to where one of its coordinates is between two limits.
void narrow(std::pair<double, double>& part, double start, double length, double low, double high) {
    if (length == 0.0) {
        if (start < low || start > high) {
            part = {1.0, 0.0};
        }
        return;
    }
    const double first = (low - start) / length;
    const double second = (high - start) / length;
    part.first = std::max(part.first, std::min(first, second));
    part.second = std::min(part.second, std::max(first, second));
}

bool crosses(const QPointF& from, const QPointF& to, const QRectF& box) {
    std::pair<double, double> part{0.0, 1.0};
    narrow(part, from.x(), to.x() - from.x(), box.left(), box.right());
    narrow(part, from.y(), to.y() - from.y(), box.top(), box.bottom());
    return part.first <= part.second;
}

} // namespace

bool LabelPlaces::isFree(const QRectF& box) const {
    return area_.contains(box) &&
           std::none_of(taken_.begin(), taken_.end(), [&](const QRectF& other) { return other.intersects(box); }) &&
           std::none_of(lines_.begin(), lines_.end(),
                        [&](const Segment& line) { return crosses(line.from, line.to, box); });
}

QPointF LabelPlaces::place(const QPointF& wanted, const QSizeF& size) {
    constexpr double kStep = 3.0; // pixels
    constexpr double kUpright = 3.0; // moved aside a label keeps its height, which is that of a level, say
    constexpr int kMost = 32; // steps to each side
    const auto boxAt = [&](const QPointF& middle) {
        return QRectF(middle.x() - size.width() / 2, middle.y() - size.height() / 2, size.width(), size.height());
    };
    std::optional<QPointF> best;
    double least = 0.0;
    for (int row = -kMost; row <= kMost; ++row) {
        for (int column = -kMost; column <= kMost; ++column) {
            const double distance = std::hypot(kUpright * row, column);
            const QPointF middle = wanted + QPointF(column, row) * kStep;
            if ((!best || distance < least) && isFree(boxAt(middle))) {
                best = middle;
                least = distance;
            }
        }
    }
    const QPointF chosen = best.value_or(wanted);
    taken_.push_back(boxAt(chosen));
    return chosen;
}

} // namespace kxreport
