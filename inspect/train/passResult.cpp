// What the result of a pass says of itself.
#include "inspect/train/noDistance.h"

#include <algorithm>
#include <cmath>

namespace KxInspect {

namespace {

template <typename Condition>
int countWheels(const PassResult& result, Condition condition) {
    int count = 0;
    for (const PassSide& side : result.sides) {
        count += static_cast<int>(std::count_if(side.wheels.begin(), side.wheels.end(), condition));
    }
    return count;
}

template <typename Condition>
int countPairs(const PassResult& result, Condition condition) {
    return static_cast<int>(std::count_if(result.pairs.begin(), result.pairs.end(), condition));
}

} // namespace

std::string detail::whyNoDistance(const PassResult& result, const WheelPair& pair) {
    for (std::size_t side = 0; side < result.sides.size(); ++side) {
        const std::string of = "side " + std::to_string(side + 1);
        const PassWheel* const wheel = result.wheelOf(pair, side);
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

int PassResult::distances() const {
    return countPairs(*this, [](const WheelPair& pair) { return std::isfinite(pair.distance); });
}

int PassResult::outOfTolerance() const {
    return countPairs(*this, [](const WheelPair& pair) { return pair.inTolerance && !*pair.inTolerance; });
}

int PassResult::defectiveWheels() const {
    return countWheels(*this, [](const PassWheel& wheel) { return wheel.defects && wheel.defects->isDefective; });
}

int PassResult::wheelsOutOfRound() const {
    return countWheels(*this, [](const PassWheel& wheel) { return wheel.roundness && wheel.roundness->isOut; });
}

} // namespace KxInspect
