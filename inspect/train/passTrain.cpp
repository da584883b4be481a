// The vehicles of a pass: its pairs numbered by the places of their axles.
#include "inspect/train/passTrain.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace KxInspect::detail {

namespace {

/// How much farther along the pass the second sensor sees an axle than the first one.
double shiftOf(const std::vector<MeasuredSide>& sides, const std::vector<WheelPair>& pairs) {
    std::vector<double> shifts;
    for (const WheelPair& pair : pairs) {
        if (pair.isComplete()) {
            shifts.push_back(sides[1].stands[*pair.wheels[1]].axle.place - sides[0].stands[*pair.wheels[0]].axle.place);
        }
    }
    return median(shifts, 0.0);
}

/// The place of an axle: the mean of what both sensors see, or what one sees; the flange tells it better than the middle
/// of the profiles.
double placeOf(const WheelPair& pair, const std::vector<MeasuredSide>& sides, double shift) {
    double sum = 0.0;
    double weights = 0.0;
    for (std::size_t side = 0; side < pair.wheels.size(); ++side) {
        if (pair.wheels[side]) {
            const AxlePlace& axle = sides[side].stands[*pair.wheels[side]].axle;
            constexpr double kLeastError = 1.0; // mm
            const double weight = 1.0 / std::pow(std::max(axle.error, kLeastError), 2); // NaN: that of the least
            sum += weight * (axle.place - (side == 0 ? 0.0 : shift));
            weights += weight;
        }
    }
    return sum / weights;
}

/// The records of all sides with wheels have places; a sensor that saw none, or failed, takes nothing from the others.
bool havePlaces(const std::vector<MeasuredSide>& sides) {
    const auto isGood = [](const MeasuredSide& s) { return s.found.wheels().empty() || s.found.hasPlaces(); };
    return std::all_of(sides.begin(), sides.end(), isGood);
}

} // namespace

void numberPairs(const std::vector<MeasuredSide>& sides, const PassOptions& options, PassResult& result) {
    std::vector<double> places;
    const double shift = shiftOf(sides, result.pairs);
    for (const WheelPair& pair : result.pairs) {
        places.push_back(placeOf(pair, sides, shift));
    }
    const bool hasPlaces = havePlaces(sides);
    for (std::size_t i = 0; i < places.size() && hasPlaces; ++i) {
        result.pairs[i].place = std::isfinite(places[i]) ? std::optional(places[i]) : std::nullopt;
    }
    const bool isOrdered = std::adjacent_find(places.begin(), places.end(), std::greater_equal<>()) == places.end();
    if (hasPlaces && isOrdered) {
        std::vector<AxleNumber> numbers;
        result.train =
            numberAxles(places, options.consist ? &*options.consist : nullptr, options.consistOrder, numbers);
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            result.pairs[i].axle = numbers[i];
        }
        return;
    }
    result.train.isListed = options.consist.has_value();
    result.train.reason = hasPlaces ? "the axles of the pairs are not in the order of their places"
                                    : "the records of the pass have no rising z, which gives the gaps between axles";
    for (WheelPair& pair : result.pairs) {
        pair.axle.reason = result.train.reason;
    }
}

} // namespace KxInspect::detail
