// What errors of the poses of the sensors make of the measures of a wheel.
#include "inspect/wheelset/poseErrors.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr double kNormal95 = 1.959964; // half the width of a 95 % interval, in standard deviations

/// A value of a pose on which measures depend.
struct PoseValue {
    void (*move)(SensorSettings& sensor, double by);
    double PoseUncertainty::*uncertainty;
};

constexpr std::array<PoseValue, 4> kPoseValues = {
    {{[](SensorSettings& s, double by) { s.origin->y += by; }, &PoseUncertainty::y},
     {[](SensorSettings& s, double by) { s.angles->alpha += by; }, &PoseUncertainty::alpha},
     {[](SensorSettings& s, double by) { s.angles->beta += by; }, &PoseUncertainty::beta},
     {[](SensorSettings& s, double by) { s.angles->gamma += by; }, &PoseUncertainty::gamma}}};

bool isUnknown(const PosedWheel& wheel) {
    return !wheel.view->profiles.sensor->poseUncertainty;
}

/// A sensor with some of its profiles: what a pose does to a wheel needs no more.
class PoseTrial {
public:
    PoseTrial(const PosedWheel& wheel, double face) : wheel_(wheel), face_(face) {
        constexpr std::size_t kMost = 64; // profiles; the tread is seen in a sixth of them
        const SensorProfiles& all = wheel.view->profiles;
        const std::size_t step = (all.profiles->size() + kMost - 1) / kMost;
        for (std::size_t i = 0; i < all.profiles->size(); i += step) {
            profiles_.push_back((*all.profiles)[i]);
            places_.push_back((*all.places)[i]);
        }
    }

    /// The wheel when each value of the pose is off by its standard uncertainty, in the direction of its sign.
    TurnedWheel turned(const std::array<double, kPoseValues.size()>& signs) const {
        SensorSettings moved = *wheel_.view->profiles.sensor;
        for (std::size_t i = 0; i < signs.size(); ++i) {
            kPoseValues[i].move(moved, signs[i] * *moved.poseUncertainty.*kPoseValues[i].uncertainty / kNormal95);
        }
        return turnWheel(trackPointsOf({&profiles_, &places_, &moved}), static_cast<int>(profiles_.size()), face_,
                         wheel_.wheel);
    }

private:
    PosedWheel wheel_;
    double face_;
    std::vector<QList<KxMath::KxPointXY>> profiles_;
    std::vector<float> places_;
};

/// Of one value of one sensor in one of 2 n runs for n values: a column of a Hadamard matrix. The columns from n on are
/// orthogonal to each other and to all products of two of them.
double signIn(std::size_t run, std::size_t value, std::size_t half) {
    return std::popcount(run & (half + value)) % 2 == 0 ? 1.0 : -1.0;
}

/// The measures when the poses are off as in a run of the plan, or, with the factor 0, as they are.
SectionValues measuredIn(std::size_t run, double factor, const std::vector<PoseTrial>& trials,
                         const MeasureSection& measure) {
    const std::size_t half = std::bit_ceil(trials.size() * kPoseValues.size());
    std::vector<TurnedWheel> wheels;
    for (std::size_t i = 0; i < trials.size(); ++i) {
        std::array<double, kPoseValues.size()> signs = {};
        for (std::size_t k = 0; k < signs.size(); ++k) {
            signs[k] = factor * signIn(run, i * kPoseValues.size() + k, half);
        }
        wheels.push_back(trials[i].turned(signs));
        if (!wheels.back().isFound()) {
            return {};
        }
    }
    std::vector<const TurnedWheel*> together;
    together.reserve(wheels.size());
    for (const TurnedWheel& wheel : wheels) {
        together.push_back(&wheel);
    }
    return measure(together);
}

} // namespace

SectionValues poseErrors(const std::vector<PosedWheel>& wheels, double face, const MeasureSection& measure) {
    if (std::any_of(wheels.begin(), wheels.end(), isUnknown)) {
        return {};
    }
    std::vector<PoseTrial> trials;
    trials.reserve(wheels.size());
    for (const PosedWheel& wheel : wheels) {
        trials.emplace_back(wheel, face);
    }
    const SectionValues as = measuredIn(0, 0.0, trials, measure);
    SectionValues errors;
    errors.fill(0.0);
    const std::size_t runs = 2 * std::bit_ceil(trials.size() * kPoseValues.size());
    for (std::size_t run = 0; run < runs; ++run) {
        const SectionValues off = measuredIn(run, 1.0, trials, measure);
        for (std::size_t m = 0; m < kPassMeasures; ++m) {
            const bool isKnown = errors[m] && as[m] && off[m];
            const double change = isKnown ? *off[m] - *as[m] : 0.0;
            errors[m] =
                isKnown ? std::optional(*errors[m] + change * change / static_cast<double>(runs)) : std::nullopt;
        }
    }
    for (std::optional<double>& error : errors) {
        error = error ? std::optional(kNormal95 * std::sqrt(*error)) : std::nullopt;
    }
    return errors;
}

} // namespace KxInspect::detail
