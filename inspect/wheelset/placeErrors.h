// How sure the places of a cross-section are as far as the axle is uncertain.
#pragma once

#include "inspect/wheelset/turnedWheel.h"

#include <array>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// The places on a wheel from which measures are taken.
enum class WheelPlace { Back, Tip, Flank, Tape, OuterFace };

inline constexpr std::size_t kWheelPlaces = 5;

/// Where they are: across, and whether the place counts by its radius or across.
struct PlaceOnContour {
    TurnedPoint at;
    bool isAcross;
};

/// What one sensor knows of the places.
struct PlaceErrors {
    /// How the place moves with the parameters of the axle; empty where the sensor does not see it.
    std::array<std::optional<Axle::Parameters>, kWheelPlaces> gradients = {};

    bool sees(WheelPlace place) const { return gradients[static_cast<std::size_t>(place)].has_value(); }
};

PlaceErrors placeErrorsOf(const TurnedWheel& wheel,
                          const std::array<std::optional<PlaceOnContour>, kWheelPlaces>& places);

/// The variance of a sum of places times `factors`, from the axle of one wheel (jackknife: R. G. Miller, 1974). Places with the
/// factor 0 do not count. Infinite when the wheel does not see one that counts.
double axleVariance(const TurnedWheel& wheel, const PlaceErrors& errors,
                    const std::array<double, kWheelPlaces>& factors);

/// The degrees of freedom of such a variance.
double axleFreedom(const TurnedWheel& wheel);

} // namespace KxInspect::detail
