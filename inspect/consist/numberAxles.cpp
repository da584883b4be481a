// The axles of a pass numbered by their vehicles.
#include "inspect/consist/axleLayout.h"
#include "inspect/consist/listMatch.h"
#include "inspect/consist/vehiclesFromGaps.h"

#include <KxInspect/Consist.h>

#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect {

namespace {

using namespace detail;

std::string axlesText(std::size_t first, std::size_t count) {
    return count == 1 ? "axle " + std::to_string(first + 1)
                      : "axles " + std::to_string(first + 1) + " to " + std::to_string(first + count);
}

/// Numbers by the gaps alone.
void numberByGaps(const std::vector<double>& places, PassTrain& train, std::vector<AxleNumber>& numbers) {
    std::string lost; // why vehicles are no longer counted
    bool isDoubtful = false; // this vehicle or one before it
    for (const FoundVehicle& found : vehiclesFromGaps(places)) {
        if (found.layout.empty()) {
            lost =
                "the gaps about " + axlesText(found.first, found.count) + " of the pass are those of no known vehicle";
        }
        PassVehicle vehicle;
        vehicle.number = static_cast<int>(train.vehicles.size()) + 1;
        vehicle.layout = found.layout;
        vehicle.seen = static_cast<int>(found.count);
        vehicle.doubt = found.isDoubtful ? "the gaps fit other vehicles nearly as well"
                        : isDoubtful     ? "how many vehicles are before it is in doubt"
                                         : "";
        isDoubtful = isDoubtful || found.isDoubtful;
        for (std::size_t i = 0; i < found.count; ++i) {
            AxleNumber& number = numbers[found.first + i];
            if (!lost.empty()) {
                number.reason = lost;
                continue;
            }
            number.vehicle = vehicle.number;
            number.axle = found.axles[i];
            const int bogie = bogieOf(vehicle.layout, *number.axle);
            number.bogie = bogie > 0 ? std::optional(bogie) : std::nullopt;
        }
        if (lost.empty()) {
            train.vehicles.push_back(vehicle);
        }
    }
    train.reason = train.vehicles.empty() ? lost : "";
    if (!lost.empty() && !train.vehicles.empty()) {
        train.mismatches.push_back(lost);
        train.mismatches.back() += ": from there on vehicles are not counted";
    }
}

/// The axles of a list in one row.
struct ListedAxles {
    struct Axle {
        std::size_t vehicle;
        int number;
    };
    std::vector<Axle> axles;
    std::vector<double> places; ///< from the first vehicle on, mm

    explicit ListedAxles(const Consist& consist) {
        double at = 0.0;
        for (std::size_t v = 0; v < consist.vehicles.size(); ++v) {
            const ListedVehicle& vehicle = consist.vehicles[v];
            for (std::size_t i = 0; i < vehicle.axles(); ++i) {
                axles.push_back({v, static_cast<int>(i) + 1});
                places.push_back(at);
                at += i < vehicle.spacings.size() ? vehicle.spacings[i] : vehicle.toNext;
            }
        }
    }

    std::vector<double> turnedPlaces() const {
        std::vector<double> turned;
        for (std::size_t i = places.size(); i-- > 0;) {
            turned.push_back(places.back() - places[i]);
        }
        return turned;
    }
};

/// Matches of both orders of a list, in the order in which it is listed.
struct BothOrders {
    std::optional<ListMatch> listed;
    std::optional<ListMatch> turned;

    bool isTurned() const { return !listed || (turned && turned->cost < listed->cost); }
    const ListMatch& best() const { return isTurned() ? *turned : *listed; }
    /// Both orders are as likely.
    bool isOpen() const { return listed && turned && std::abs(listed->cost - turned->cost) < kMatchMargin; }

    /// An axle of the pass has one partner only which is likely.
    bool isClear(std::size_t seen) const {
        const std::size_t partner = *best().partners[seen];
        for (const auto* const order : {&listed, &turned}) {
            for (std::size_t j = 0; *order && j < (*order)->through[seen].size(); ++j) {
                if (j != partner && (*order)->through[seen][j] < best().cost + kMatchMargin) {
                    return false;
                }
            }
        }
        return true;
    }
};

ListMatch turnedBack(ListMatch match, std::size_t listed) {
    for (std::optional<std::size_t>& partner : match.partners) {
        partner = partner ? std::optional(listed - 1 - *partner) : partner;
    }
    for (std::vector<double>& row : match.through) {
        std::reverse(row.begin(), row.end());
    }
    return match;
}

BothOrders matchBoth(const std::vector<double>& places, const ListedAxles& list, ConsistOrder order) {
    BothOrders both;
    if (order != ConsistOrder::Turned) {
        both.listed = matchAxles(places, list.places);
    }
    if (order != ConsistOrder::Listed) {
        both.turned = turnedBack(matchAxles(places, list.turnedPlaces()), list.places.size());
    }
    return both;
}

std::string nameOf(const Consist& consist, std::size_t vehicle) {
    const ListedVehicle& listed = consist.vehicles[vehicle];
    QStringList names;
    for (const std::string* const name : {&listed.mark, &listed.number}) {
        if (!name->empty()) {
            names.append(QString::fromStdString(*name));
        }
    }
    const QString text = QStringLiteral("vehicle %1").arg(vehicle + 1);
    return names.isEmpty()
               ? text.toStdString()
               : (text + QStringLiteral(" (") + names.join(QLatin1Char(' ')) + QLatin1Char(')')).toStdString();
}

/// Numbers by the list.
class ListNumbering {
public:
    ListNumbering(const std::vector<double>& places, const Consist& consist, const ListedAxles& list,
                  const BothOrders& both, PassTrain& train, std::vector<AxleNumber>& numbers)
        : places_(places), consist_(consist), list_(list), both_(both), train_(train), numbers_(numbers) {}

    void run() {
        train_.order = both_.isTurned() ? VehicleOrder::Turned : VehicleOrder::Listed;
        train_.scale = both_.best().scale;
        for (std::size_t v = 0; v < consist_.vehicles.size(); ++v) {
            const ListedVehicle& listed = consist_.vehicles[v];
            train_.vehicles.push_back({static_cast<int>(v) + 1,
                                       layoutOf(listed.spacings),
                                       0,
                                       listed.mark,
                                       listed.number,
                                       listed.vehicleClass,
                                       {}});
        }
        isSeen_.assign(list_.axles.size(), false);
        for (std::size_t i = 0; i < places_.size(); ++i) {
            numberAxle(i);
        }
        noteUnseen();
        noteSpacings();
        noteScale();
    }

private:
    void note(std::string text) { train_.mismatches.push_back(std::move(text)); }

    void numberAxle(std::size_t i) {
        const std::optional<std::size_t>& partner = both_.best().partners[i];
        AxleNumber& number = numbers_[i];
        if (!partner) {
            number.reason = "the list has no axle there";
            note("axle " + std::to_string(i + 1) + " of the pass is none of the list");
            return;
        }
        isSeen_[*partner] = true;
        if (!both_.isClear(i)) {
            number.reason = "other axles of the list fit as well";
            return;
        }
        const ListedAxles::Axle& axle = list_.axles[*partner];
        PassVehicle& vehicle = train_.vehicles[axle.vehicle];
        ++vehicle.seen;
        number.vehicle = vehicle.number;
        number.axle = axle.number;
        const int bogie = bogieOf(vehicle.layout, axle.number);
        number.bogie = bogie > 0 ? std::optional(bogie) : std::nullopt;
    }

    void noteUnseen() {
        for (std::size_t j = 0; j < isSeen_.size(); ++j) {
            if (!isSeen_[j]) {
                note(nameOf(consist_, list_.axles[j].vehicle) + ": axle " + std::to_string(list_.axles[j].number) +
                     " was not seen");
            }
        }
    }

    /// Spacings between successive partners that are off the list.
    void noteSpacings() {
        constexpr double kOff = 150.0; // mm
        constexpr double kPartOff = 0.02;
        std::optional<std::size_t> last;
        for (std::size_t i = 0; i < places_.size(); ++i) {
            const std::optional<std::size_t>& partner = both_.best().partners[i];
            if (partner && last) {
                const std::size_t before = *both_.best().partners[*last];
                const double listed = std::abs(list_.places[*partner] - list_.places[before]);
                const double seen = (places_[i] - places_[*last]) / both_.best().scale;
                if (std::abs(seen - listed) > kOff + kPartOff * listed) {
                    noteSpacing(before, *partner, seen, listed);
                }
            }
            last = partner ? std::optional(i) : last;
        }
    }

    void noteSpacing(std::size_t from, std::size_t to, double seen, double listed) {
        const auto axle = [&](std::size_t j) {
            return "axle " + std::to_string(list_.axles[j].number) + " of " + nameOf(consist_, list_.axles[j].vehicle);
        };
        const auto length = [](double value) { return QString::number(value, 'f', 0).toStdString() + " mm"; };
        note(axle(from) + " and " + axle(to) + " are " + length(seen) + " apart, the list says " + length(listed));
        for (const std::size_t j : {from, to}) {
            train_.vehicles[list_.axles[j].vehicle].doubt = "spacings of its axles are not those of the list";
        }
    }

    void noteScale() {
        constexpr double kUsual = 0.02;
        if (std::abs(*train_.scale - 1.0) > kUsual) {
            note(QStringLiteral("a metre of the list is %1 m of z: is z in mm?")
                     .arg(*train_.scale, 0, 'f', 3)
                     .toStdString());
        }
    }

    const std::vector<double>& places_;
    const Consist& consist_;
    const ListedAxles& list_;
    const BothOrders& both_;
    PassTrain& train_;
    std::vector<AxleNumber>& numbers_;
    std::vector<bool> isSeen_;
};

/// Most axles of the pass have a partner, and so has half of the list.
bool isFit(const ListMatch& match, std::size_t listed) {
    const auto joined = static_cast<std::size_t>(
        std::count_if(match.partners.begin(), match.partners.end(), [](const auto& p) { return p.has_value(); }));
    const double perAxle = match.cost / static_cast<double>(match.partners.size());
    constexpr double kMostPerAxle = 12.0; // a spacing that does not fit for every second axle, or a missed one for each
    return 3 * joined >= 2 * match.partners.size() && 2 * joined >= listed && joined >= 2 && perAxle <= kMostPerAxle;
}

} // namespace

PassTrain numberAxles(const std::vector<double>& places, const Consist* consist, ConsistOrder order,
                      std::vector<AxleNumber>& numbers) {
    PassTrain train;
    numbers.assign(places.size(), {});
    if (places.empty()) {
        train.reason = "no axle was seen";
        return train;
    }
    if (consist == nullptr || consist->vehicles.empty()) {
        numberByGaps(places, train, numbers);
        return train;
    }
    train.isListed = true;
    const ListedAxles list(*consist);
    const BothOrders both = matchBoth(places, list, order);
    const bool fits = isFit(both.best(), list.places.size());
    if (fits && !both.isOpen()) {
        ListNumbering(places, *consist, list, both, train, numbers).run();
        return train;
    }
    const char* const why =
        fits ? "the list fits with either end ahead: vehicles are counted as they passed, without marks and numbers"
             : "the spacings of the axles are not those of the list: vehicles are counted as they passed";
    train.mismatches.emplace_back(why);
    numberByGaps(places, train, numbers);
    return train;
}

} // namespace KxInspect
