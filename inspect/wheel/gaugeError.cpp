// What the errors of the gauge itself do to the measures of a rim.
#include "inspect/wheel/gaugeError.h"

#include "inspect/sections/gaugeDistortion.h"

#include <array>
#include <cstddef>
#include <limits>

namespace KxInspect::detail {

namespace {

struct Causes {
    GaugeDistortion against;
    GaugeDistortion along;
};

/// Both directions of each error.
std::array<Causes, 3> causesOf(const GaugeError& error) {
    const auto both = [&](double place, double turn, double scale) {
        return Causes{GaugeDistortion::times(error, -place, -turn, -scale),
                      GaugeDistortion::times(error, place, turn, scale)};
    };
    return {both(1.0, 0.0, 0.0), both(0.0, 1.0, 0.0), both(0.0, 0.0, 1.0)};
}

} // namespace

void addGaugeError(const std::vector<Point>& contour, bool isBackMeasured, const GaugeError& error, RimMeasures& rim) {
    constexpr double kKnown = 1e4; // degrees of freedom: the error is told, not estimated
    if (!rim.places.tape || !error.isSet()) {
        return;
    }
    const Point centre = {0.0f, rim.places.tape->y}; // the flange back at the level of the tape circle
    std::size_t number = std::numeric_limits<std::size_t>::max(); // no point has it
    for (const auto& [against, along] : causesOf(error)) {
        const RimMeasures less = measureRim(RimContour(against.of(contour, centre)), isBackMeasured);
        const RimMeasures more = measureRim(RimContour(along.of(contour, centre)), isBackMeasured);
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
