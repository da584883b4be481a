// What the result of a pass says of itself.
#include "inspect/train/noDistance.h"

#include <algorithm>

namespace KxInspect {

namespace {

VerdictCount countDistances(const PassResult& result) {
    VerdictCount count;
    for (const WheelPair& pair : result.pairs) {
        ++count.asked;
        count.judged += pair.inTolerance ? 1 : 0;
        count.bad += pair.inTolerance && !*pair.inTolerance ? 1 : 0;
    }
    return count;
}

/// @param verdict of a wheel: true for bad, absent when it was not judged. Wheels that a sensor missed are not, either
template <typename Verdict>
VerdictCount countWheels(const PassResult& result, Verdict verdict) {
    VerdictCount count;
    for (const WheelPair& pair : result.pairs) {
        for (std::size_t side = 0; side < pair.wheels.size() && result.defectLimits; ++side) {
            const PassWheel* const wheel = result.wheelOf(pair, side);
            const std::optional<bool> isBad = wheel != nullptr ? verdict(*wheel) : std::nullopt;
            ++count.asked;
            count.judged += isBad ? 1 : 0;
            count.bad += isBad && *isBad ? 1 : 0;
        }
    }
    return count;
}

/// Of several recordings one may be missing, and with it the distances.
bool isOfSeveralSensors(const PassResult& result) {
    const auto isMissing = [](const PassSide& side) { return !side.missing.empty(); };
    return !result.further.empty() || std::any_of(result.sides.begin(), result.sides.end(), isMissing);
}

bool hasMeasure(const PassResult& result) {
    return std::any_of(result.wheels.begin(), result.wheels.end(), [](const PassWheelMeasures& wheel) {
        return std::any_of(wheel.values.begin(), wheel.values.end(), [](const PassValue& v) { return v.value; });
    });
}

} // namespace

std::string detail::whyNoDistance(const PassResult& result, const WheelPair& pair) {
    for (std::size_t side = 0; side < result.sides.size(); ++side) {
        const std::string of = "side " + std::to_string(side + 1);
        const PassWheel* const wheel = result.wheelOf(pair, side);
        if (wheel == nullptr && !result.sides[side].missing.empty()) {
            return result.sides[side].missing;
        }
        if (wheel == nullptr) {
            return "the sensor of " + of + " did not see the wheel";
        }
        if (wheel->chosenProfile == 0) {
            return "no profile of the wheel on " + of + " has a point below the level line";
        }
    }
    return "the points of a chosen profile give no line";
}

const PassWheel* PassResult::wheelOf(const WheelPair& pair, std::size_t side) const {
    const std::optional<std::size_t>& index = pair.wheels[side];
    return index ? &sides[side].wheels[*index] : nullptr;
}

const PassVehicle* PassResult::vehicleOf(const WheelPair& pair) const {
    const std::optional<int>& number = pair.axle.vehicle;
    const bool isThere = number && *number >= 1 && static_cast<std::size_t>(*number) <= train.vehicles.size();
    return isThere ? &train.vehicles[static_cast<std::size_t>(*number) - 1] : nullptr;
}

int PassResult::distances() const {
    return countDistances(*this).judged;
}

VerdictCount PassResult::count(PassQuestion question) const {
    switch (question) {
    case PassQuestion::Tread:
        return countWheels(*this, [](const PassWheel& w) { return w.defects ? w.defects->isDefective : std::nullopt; });
    case PassQuestion::Roundness:
        return countWheels(
            *this, [](const PassWheel& w) { return w.roundness ? std::optional(w.roundness->isOut) : std::nullopt; });
    case PassQuestion::Distance:
        break;
    }
    return countDistances(*this);
}

bool PassResult::hasResult() const {
    return (distances() > 0 || (isOfSeveralSensors(*this) && hasMeasure(*this))) &&
           (!defectLimits || count(PassQuestion::Tread).judged > 0 || count(PassQuestion::Roundness).judged > 0);
}

} // namespace KxInspect
