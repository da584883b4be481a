// Ranges of numbers and the ticks on them.
#include "report/elements/axis.h"

#include <algorithm>
#include <cmath>

namespace kxreport {

void Range::include(double value) {
    if (std::isfinite(value)) {
        min = std::min(min, value);
        max = std::max(max, value);
    }
}

Range Range::padded(double part) const {
    if (isEmpty()) {
        return {0.0, 1.0};
    }
    const double single = std::max(std::abs(min), 1.0) * 1e-9;
    const double padding = size() > single ? size() * part : std::max(0.5, std::abs(min) * 1e-3);
    return {min - padding, max + padding};
}

Ticks makeTicks(const Range& range, int wanted, double smallestStep) {
    Ticks ticks;
    if (range.isEmpty() || range.size() <= 0.0 || wanted < 1) {
        return ticks;
    }
    const double rough = range.size() / wanted;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    const double part = rough / power;
    const double step = std::max(power * (part < 1.5 ? 1.0 : part < 3.5 ? 2.0 : part < 7.5 ? 5.0 : 10.0), smallestStep);
    const double first = std::ceil(range.min / step);
    // Whole steps are counted, so that rounding does not decide about the last tick.
    for (int i = 0; i <= 2 * wanted + 2; ++i) {
        const double value = (first + i) * step;
        if (value > range.max) {
            break;
        }
        ticks.at.push_back(value == 0.0 ? 0.0 : value); // no -0
    }
    ticks.decimals = std::clamp(static_cast<int>(-std::floor(std::log10(step) + 1e-9)), 0, 9);
    return ticks;
}

void makeScalesEqual(Range& x, Range& y, double width, double height) {
    const double unitsPerPixel = std::max(x.size() / width, y.size() / height);
    const auto widen = [unitsPerPixel](Range& range, double pixels) {
        const double middle = range.middle();
        range = {middle - unitsPerPixel * pixels / 2, middle + unitsPerPixel * pixels / 2};
    };
    widen(x, width);
    widen(y, height);
}

} // namespace kxreport
