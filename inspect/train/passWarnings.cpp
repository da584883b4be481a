// What makes the results of a pass doubtful.
#include "inspect/train/passWarnings.h"

#include "inspect/base/paths.h"

#include <algorithm>

namespace KxInspect::detail {

namespace {

void warn(PassResult& result, const QString& text) {
    result.warnings.push_back(text.toStdString());
}

/// The middles of the wheels along the pass, as positions where `hasPlaces`, else as record numbers.
std::vector<double> placesOf(const std::vector<FoundWheel>& wheels, bool hasPlaces) {
    std::vector<double> places;
    for (const FoundWheel& wheel : wheels) {
        const double first = hasPlaces ? static_cast<double>(wheel.places.front()) : wheel.firstRecord;
        const double last = hasPlaces ? static_cast<double>(wheel.places.back()) : wheel.lastRecord();
        places.push_back((first + last) / 2);
    }
    return places;
}

} // namespace

std::vector<PairedWheels> pairWheels(const std::vector<MeasuredSide>& sides, PassResult& result) {
    const WheelCollector& first = sides[0].found;
    const WheelCollector& second = sides[1].found;
    const bool hasPlaces = first.hasPlaces() && second.hasPlaces();
    std::vector<PairedWheels> byPlace =
        pairByPlace(placesOf(first.wheels(), hasPlaces), placesOf(second.wheels(), hasPlaces));
    if (first.wheels().size() != second.wheels().size()) {
        warn(result, QStringLiteral("the recordings hold different numbers of wheels, %1 and %2: wheels were paired by "
                                    "their place along the pass, those without partner have no distance")
                         .arg(first.wheels().size())
                         .arg(second.wheels().size()));
        return byPlace;
    }
    std::vector<PairedWheels> byNumber = pairByNumber(first.wheels().size(), second.wheels().size());
    if (byPlace != byNumber) {
        warn(result, QStringLiteral("wheels were paired by number, but their places along the pass do not match: check "
                                    "whether the sensors missed different wheels"));
    }
    return byNumber;
}

void warnOfRoundness(const PassSide& side, bool hasPlaces, PassResult& result) {
    constexpr auto kFewest = 4; // wheels that make a majority
    const auto count = [&](auto condition) { return std::count_if(side.wheels.begin(), side.wheels.end(), condition); };
    const auto judged = count([](const PassWheel& wheel) { return wheel.roundness.has_value(); });
    const auto out = count([](const PassWheel& wheel) { return wheel.roundness && wheel.roundness->isOut; });
    if (!hasPlaces && !side.wheels.empty()) {
        warn(result, QStringLiteral("the records of '%1' have no rising z: its wheels were not compared with circles")
                         .arg(toQt(side.file)));
    } else if (judged >= kFewest && 2 * out > judged) {
        warn(result, QStringLiteral("%1 of %2 wheels in '%3' are out of round: check whether the z of its records are "
                                    "millimetres and its laser plane stands straight across")
                         .arg(QString::number(out), QString::number(judged), toQt(side.file)));
    }
}

void warnOfMissingPairs(const std::vector<int>& shownPairs, PassResult& result) {
    for (const int pair : shownPairs) {
        if (static_cast<std::size_t>(pair) > result.pairs.size() && !result.pairs.empty()) {
            warn(
                result,
                QStringLiteral("there is no wheel pair %1 to show, the last is %2").arg(pair).arg(result.pairs.size()));
        }
    }
}

} // namespace KxInspect::detail
