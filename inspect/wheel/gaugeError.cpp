// What the errors of the gauge itself do to the measures of a rim.
#include "inspect/wheel/gaugeError.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace KxInspect::detail {

namespace {

/// A contour as a gauge shows it that is off.
struct Distortion {
    double shift = 0.0; ///< mm along x
    double turn = 0.0; ///< radians, about the flange back at the level of the tape circle
    double scale = 1.0;

    std::vector<Point> of(const std::vector<Point>& contour, double tapeLevel) const {
        std::vector<Point> moved;
        moved.reserve(contour.size());
        for (const Point& p : contour) {
            const double x = scale * static_cast<double>(p.x);
            const double y = scale * (static_cast<double>(p.y) - tapeLevel);
            moved.push_back({static_cast<float>(std::cos(turn) * x - std::sin(turn) * y + shift),
                             static_cast<float>(std::sin(turn) * x + std::cos(turn) * y + tapeLevel)});
        }
        return moved;
    }
};

struct Causes {
    Distortion against;
    Distortion along;
};

/// Both directions of each error.
std::array<Causes, 3> causesOf(const GaugeError& error) {
    constexpr double kMilli = 1e-3;
    constexpr double kMillionth = 1e-6;
    const double place = static_cast<double>(error.place);
    const double turn = kMilli * static_cast<double>(error.turn);
    const double scale = kMillionth * static_cast<double>(error.scale);
    return {{{{-place}, {place}}, {{0.0, -turn}, {0.0, turn}}, {{0.0, 0.0, 1.0 - scale}, {0.0, 0.0, 1.0 + scale}}}};
}

} // namespace

void addGaugeError(const std::vector<Point>& contour, bool isBackMeasured, const GaugeError& error, RimMeasures& rim) {
    constexpr double kKnown = 1e4; // degrees of freedom: the error is told, not estimated
    if (!rim.places.tape || !error.isSet()) {
        return;
    }
    const double tapeLevel = static_cast<double>(rim.places.tape->y);
    std::size_t number = std::numeric_limits<std::size_t>::max(); // no point has it
    for (const auto& [against, along] : causesOf(error)) {
        const RimMeasures less = measureRim(RimContour(against.of(contour, tapeLevel)), isBackMeasured);
        const RimMeasures more = measureRim(RimContour(along.of(contour, tapeLevel)), isBackMeasured);
        for (std::size_t i = 0; i < rim.values.size(); ++i) {
            if (rim.values[i]) {
                // A measure that is lost by so little has no interval.
                const bool isFound = less.values[i] && more.values[i];
                const double effect = isFound ? (more.values[i]->value() - less.values[i]->value()) / 2.0
                                              : std::numeric_limits<double>::quiet_NaN();
                rim.values[i] = rim.values[i]->plus(Estimate(0.0, {{number, effect, 0.0}}, kKnown));
            }
        }
        --number;
    }
}

} // namespace KxInspect::detail
