// Which wheel of one recording belongs to which of the other, by their places.
#include "inspect/train/pairing.h"

#include <QtCore/QString>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

/// Half the smallest gap between neighbours; the least axle distance that trains have stands for it where a side has a
/// single wheel.
double reachOf(const std::vector<double>& first, const std::vector<double>& second) {
    constexpr double kLeastAxleDistance = 1000.0; // mm
    double smallest = kLeastAxleDistance;
    bool isFirst = true;
    for (const auto* const places : {&first, &second}) {
        for (size_t i = 1; i < places->size(); ++i) {
            const double gap = (*places)[i] - (*places)[i - 1];
            smallest = isFirst ? gap : std::min(smallest, gap);
            isFirst = false;
        }
    }
    return smallest / 2.0;
}

/// A shift, and how many wheels it joins.
struct Shift {
    double by = 0.0;
    size_t count = 0;
};

/// The shifts that join wheels, each the middle of those within `reach`.
std::vector<Shift> shiftsOf(const std::vector<double>& first, const std::vector<double>& second, double reach) {
    constexpr size_t kMostVoters = 2000; // the cost grows with the square
    std::vector<double> all;
    for (size_t i = 0; i < std::min(first.size(), kMostVoters); ++i) {
        for (size_t j = 0; j < std::min(second.size(), kMostVoters); ++j) {
            all.push_back(second[j] - first[i]);
        }
    }
    std::sort(all.begin(), all.end());
    std::vector<Shift> shifts;
    for (size_t from = 0, to = 0; from < all.size(); ++from) {
        while (to < all.size() && all[to] - all[from] <= reach) {
            ++to;
        }
        shifts.push_back({all[from + (to - from) / 2], to - from});
    }
    return shifts;
}

/// The one that joins most, the nearest to 0 of equal ones, among those that `isMeant`.
template <typename Condition>
Shift bestOf(const std::vector<Shift>& shifts, Condition isMeant) {
    Shift best;
    for (const Shift& shift : shifts) {
        const bool isBetter =
            shift.count > best.count || (shift.count == best.count && std::abs(shift.by) < std::abs(best.by));
        best = isMeant(shift) && isBetter ? shift : best;
    }
    return best;
}

QString joins(const Shift& shift) {
    return QStringLiteral("%1 at a shift of %2 mm").arg(shift.count).arg(shift.by, 0, 'f', 0);
}

} // namespace

std::vector<PairedWheels> pairsAtShift(const std::vector<double>& first, const std::vector<double>& second,
                                       double shift, double reach) {
    std::vector<PairedWheels> pairs;
    size_t i = 0;
    size_t j = 0;
    while (i < first.size() || j < second.size()) {
        if (i == first.size()) {
            pairs.push_back({{std::nullopt, j++}});
            continue;
        }
        if (j == second.size()) {
            pairs.push_back({{i++, std::nullopt}});
            continue;
        }
        const double apart = second[j] - first[i] - shift;
        if (std::abs(apart) <= reach) {
            pairs.push_back({{i++, j++}});
        } else if (apart > 0.0) {
            pairs.push_back({{i++, std::nullopt}});
        } else {
            pairs.push_back({{std::nullopt, j++}});
        }
    }
    return pairs;
}

Pairing pairByPlace(const std::vector<double>& first, const std::vector<double>& second) {
    const double reach = reachOf(first, second);
    const std::vector<Shift> shifts = shiftsOf(first, second, reach);
    const Shift near = bestOf(shifts, [&](const Shift& s) { return std::abs(s.by) <= reach; });
    const auto isFar = [&](const Shift& s) { return near.count == 0 || std::abs(s.by - near.by) > reach; };
    const Shift far = bestOf(shifts, isFar);
    const Shift other = bestOf(shifts, [&](const Shift& s) { return isFar(s) && std::abs(s.by - far.by) > reach; });

    constexpr size_t kMore = 2;
    const bool isExact = std::abs(near.by) <= kExactShift && 2 * near.count >= std::min(first.size(), second.size());
    const bool isNear = near.count > 0 && (near.count >= far.count || isExact);
    const bool isFarClear = far.count >= near.count + kMore && far.count >= other.count + kMore;
    const Shift& taken = isNear || (!isFarClear && near.count > 0) ? near : far;
    Pairing result{pairsAtShift(first, second, taken.by, reach), {}, near.count < far.count};
    if (!isNear && !isFarClear && far.count > 0) {
        const Shift& rival = near.count > 0 ? near : other;
        const QString text =
            rival.count > 0
                ? QStringLiteral("it is not clear which wheels belong together: of %1 and %2 wheels, places "
                                 "join %3, and %4")
                      .arg(first.size())
                      .arg(second.size())
                      .arg(joins(far), joins(rival))
                : QStringLiteral("it is not clear whether the wheels belong together: their places are %1 mm "
                                 "apart, and no second wheel confirms that")
                      .arg(far.by, 0, 'f', 0);
        result.doubt = text.toStdString();
        for (PairedWheels& pair : result.pairs) {
            pair.isDoubtful = pair.wheels[0] && pair.wheels[1];
        }
    }
    return result;
}

} // namespace KxInspect::detail
