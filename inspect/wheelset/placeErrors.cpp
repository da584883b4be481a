// How sure the places of a cross-section are as far as the axle is uncertain.
#include "inspect/wheelset/placeErrors.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace KxInspect::detail {

namespace {

/// The mean over the seen steps within reach of a place, which moves as its surroundings do; empty for fewer than kFewest.
std::optional<Axle::Parameters> gradientAt(const TurnedWheel& wheel, const PlaceOnContour& place) {
    constexpr double kReach = 4.0; // mm along the contour
    constexpr int kFewest = 4; // steps: 1 mm
    const bool isBack = wheel.grid.isBack(place.at);
    const double middle = wheel.grid.placeOf(place.at, isBack).along;
    Axle::Parameters sum = {};
    int seen = 0;
    for (std::size_t i = wheel.grid.binOf(middle - kReach, isBack); i <= wheel.grid.binOf(middle + kReach, isBack);
         ++i) {
        const ContourBin& bin = wheel.contour[i];
        if (!bin.isSeen()) {
            continue;
        }
        ++seen;
        // From a shift along `off` to one of the radius where `across` stays, or across where the radius stays.
        const double slope = bin.slope;
        const double toRadius = std::numbers::sqrt2 / (isBack ? 1.0 - slope : 1.0 + slope);
        const double toAcross = isBack ? -std::numbers::sqrt2 / (1.0 + slope) : std::numbers::sqrt2 / (1.0 - slope);
        for (std::size_t k = 0; k < sum.size(); ++k) {
            sum[k] += wheel.gradients[i][k] * (place.isAcross ? toAcross : toRadius);
        }
    }
    if (seen < kFewest) {
        return {};
    }
    for (double& part : sum) {
        part /= seen;
    }
    return sum;
}

} // namespace

PlaceErrors placeErrorsOf(const TurnedWheel& wheel,
                          const std::array<std::optional<PlaceOnContour>, kWheelPlaces>& places) {
    PlaceErrors errors;
    for (std::size_t i = 0; i < kWheelPlaces; ++i) {
        if (places[i]) {
            errors.gradients[i] = gradientAt(wheel, *places[i]);
        }
    }
    return errors;
}

double axleVariance(const TurnedWheel& wheel, const PlaceErrors& errors,
                    const std::array<double, kWheelPlaces>& factors) {
    Axle::Parameters gradient = {};
    for (std::size_t i = 0; i < kWheelPlaces; ++i) {
        if (factors[i] == 0.0) {
            continue;
        }
        if (!errors.gradients[i]) {
            return std::numeric_limits<double>::infinity();
        }
        for (std::size_t k = 0; k < gradient.size(); ++k) {
            gradient[k] += factors[i] * (*errors.gradients[i])[k];
        }
    }
    const auto groups = static_cast<double>(wheel.withoutGroup.size());
    if (!(groups >= 2.0)) {
        return std::numeric_limits<double>::infinity();
    }
    double sum = 0.0;
    double squares = 0.0;
    for (const Axle::Parameters& without : wheel.withoutGroup) {
        double change = 0.0;
        for (std::size_t k = 0; k < gradient.size(); ++k) {
            change += gradient[k] * without[k];
        }
        sum += change;
        squares += change * change;
    }
    return (groups - 1.0) / groups * (squares - sum * sum / groups);
}

double axleFreedom(const TurnedWheel& wheel) {
    return static_cast<double>(wheel.withoutGroup.size()) - 1.0;
}

} // namespace KxInspect::detail
