// The wheel pairs of a pass.
#include "inspect/train/wheelPairs.h"

#include "inspect/fitting/median.h"
#include "inspect/train/gapAlignment.h"

#include <QtCore/QString>

#include <algorithm>
#include <functional>

namespace KxInspect::detail {

namespace {

std::vector<double> placesOf(const MeasuredSide& side) {
    std::vector<double> axles;
    std::vector<double> middles;
    for (std::size_t i = 0; i < side.stands.size(); ++i) {
        const std::vector<float>& places = side.found.wheels()[i].places;
        axles.push_back(side.stands[i].axle.place);
        middles.push_back((static_cast<double>(places.front()) + static_cast<double>(places.back())) / 2.0);
    }
    // A wheel that was found in two parts has the axle of both.
    const bool isOrdered = std::adjacent_find(axles.begin(), axles.end(), std::greater_equal<>()) == axles.end();
    return isOrdered ? axles : middles;
}

/// The middles of the wheels in records, whatever their z.
RecordedWheels recordedWheels(const MeasuredSide& side) {
    RecordedWheels result;
    std::vector<double> lengths;
    for (const FoundWheel& wheel : side.found.wheels()) {
        result.middles.push_back((wheel.firstRecord + wheel.lastRecord()) / 2.0);
        lengths.push_back(static_cast<double>(wheel.profiles.size()));
    }
    result.length = median(lengths, 0.0);
    result.records = side.found.cloudSections() + side.found.profileRecords();
    return result;
}

} // namespace

Pairing pairWheels(const std::vector<MeasuredSide>& sides, PassResult& result) {
    const bool hasPlaces = sides[0].found.hasPlaces() && sides[1].found.hasPlaces();
    const RecordedWheels first = recordedWheels(sides[0]);
    const RecordedWheels second = recordedWheels(sides[1]);
    Pairing pairing = hasPlaces ? pairByPlace(placesOf(sides[0]), placesOf(sides[1])) : pairByGaps(first, second);
    const bool hasGaps = first.middles.size() > 1 && second.middles.size() > 1;
    if (hasPlaces && pairing.isContested && hasGaps && runAlongside(first, second)) {
        Pairing byGaps = pairByGaps(first, second); // the moments tell what the places leave open
        pairing = byGaps.doubt.empty() ? byGaps : pairing;
    }
    const auto alone = std::count_if(pairing.pairs.begin(), pairing.pairs.end(),
                                     [](const PairedWheels& p) { return !p.wheels[0] || !p.wheels[1]; });
    const bool areBoth = sides[0].input.missing.empty() && sides[1].input.missing.empty();
    if (alone > 0 && areBoth) {
        const auto number = [](std::size_t value) { return QString::number(value); };
        const std::size_t counts[] = {first.middles.size(), second.middles.size()};
        const QString which =
            counts[0] != counts[1]
                ? QStringLiteral("the recordings hold different numbers of wheels, %1 and %2")
                      .arg(number(counts[0]), number(counts[1]))
                : QStringLiteral("the recordings hold %1 wheels each, but not those of the same axles")
                      .arg(number(counts[0]));
        const QString how =
            hasPlaces ? QStringLiteral("their place along the pass") : QStringLiteral("the gaps between them");
        result.warnings.push_back((which + QStringLiteral(": wheels were paired by %1, those without partner have no "
                                                          "distance")
                                               .arg(how))
                                      .toStdString());
    }
    if (!pairing.doubt.empty()) {
        result.warnings.push_back(pairing.doubt + "; such pairs have no distance");
    }
    return pairing;
}

} // namespace KxInspect::detail
