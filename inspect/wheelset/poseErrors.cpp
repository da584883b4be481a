// What errors of the poses of the sensors make of the measures of a wheel.
#include "inspect/wheelset/poseErrors.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace KxInspect::detail {

namespace {

/// A value of a pose on which measures depend. The steps are those of usual uncertainties: sensors that see one wheel are
/// then off each other as they are in the field.
struct PoseValue {
    double step; ///< mm or degrees
    void (*move)(SensorSettings& sensor, double by);
    double PoseUncertainty::*uncertainty;
};

constexpr std::array<PoseValue, 4> kPoseValues = {
    {{0.1, [](SensorSettings& s, double by) { s.origin->y += by; }, &PoseUncertainty::y},
     {0.05, [](SensorSettings& s, double by) { s.angles->alpha += by; }, &PoseUncertainty::alpha},
     {0.05, [](SensorSettings& s, double by) { s.angles->beta += by; }, &PoseUncertainty::beta},
     {0.05, [](SensorSettings& s, double by) { s.angles->gamma += by; }, &PoseUncertainty::gamma}}};

/// The wheel of a sensor, turned anew from where its axle was found.
TurnedWheel turnedBy(const PosedWheel& wheel, const SensorSettings& sensor, double face) {
    SensorProfiles profiles = wheel.view->profiles;
    profiles.sensor = &sensor;
    return turnWheel(trackPointsOf(profiles), static_cast<int>(profiles.profiles->size()), face, wheel.wheel);
}

} // namespace

std::array<std::optional<double>, kPassMeasures> poseErrors(const std::vector<PosedWheel>& wheels, double face,
                                                            const MeasureSection& measure) {
    const auto isUnknown = [](const PosedWheel& w) { return !w.view->profiles.sensor->poseUncertainty; };
    if (std::any_of(wheels.begin(), wheels.end(), isUnknown)) {
        return {};
    }
    std::vector<const TurnedWheel*> together;
    std::transform(wheels.begin(), wheels.end(), std::back_inserter(together), [](const auto& w) { return w.wheel; });
    std::array<std::optional<double>, kPassMeasures> squares;
    squares.fill(0.0);
    for (std::size_t i = 0; i < wheels.size(); ++i) {
        const SensorSettings& sensor = *wheels[i].view->profiles.sensor;
        for (const PoseValue& value : kPoseValues) {
            // To both sides: what the search for the axle leaves open from its start cancels.
            std::array<SectionValues, 2> off;
            for (const std::size_t side : {std::size_t(0), std::size_t(1)}) {
                SensorSettings moved = sensor;
                value.move(moved, side == 0 ? -value.step : value.step);
                const TurnedWheel wheel = turnedBy(wheels[i], moved, face);
                std::vector<const TurnedWheel*> changed = together;
                changed[i] = &wheel;
                off[side] = wheel.isFound() ? measure(changed) : SectionValues();
            }
            const double steps = *sensor.poseUncertainty.*value.uncertainty / (2.0 * value.step);
            for (std::size_t m = 0; m < kPassMeasures; ++m) {
                const bool isKnown = squares[m] && off[0][m] && off[1][m];
                const double effect = isKnown ? (*off[1][m] - *off[0][m]) * steps : 0.0;
                squares[m] = isKnown ? std::optional(*squares[m] + effect * effect) : std::nullopt;
            }
        }
    }
    for (std::optional<double>& square : squares) {
        square = square ? std::optional(std::sqrt(*square)) : std::nullopt;
    }
    return squares;
}

} // namespace KxInspect::detail
