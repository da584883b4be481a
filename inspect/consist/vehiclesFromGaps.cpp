// Vehicles found by the gaps between axles alone.
#include "inspect/consist/vehiclesFromGaps.h"

#include "inspect/consist/vehicleShapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace KxInspect::detail {

namespace {

constexpr double kNone = std::numeric_limits<double>::infinity();
constexpr double kUnknown = 6.0; // price of a run of axles that belong to no known vehicle
constexpr double kUnknownAxle = 1.0; // and of each of them
constexpr double kMargin = 1.5; // divisions that cost so much more are as likely

/// A way to go on from an axle: the next vehicle.
struct Step {
    std::size_t count = 1;
    double cost = kUnknownAxle;
    bool isKnown = false;
};

std::vector<double> gapsOf(const std::vector<double>& places) {
    std::vector<double> gaps(places.size());
    std::adjacent_difference(places.begin(), places.end(), gaps.begin());
    if (!gaps.empty()) {
        gaps.erase(gaps.begin());
    }
    return gaps;
}

class Division {
public:
    explicit Division(const std::vector<double>& gaps) : gaps_(gaps), axles_(gaps.size() + 1) {
        findSteps();
        // From the front, and from the end: the cheapest way to each axle and from it. The price of a coupling belongs to
        // the vehicle behind it; next to an unknown axle there is none.
        to_ = costs(true);
        from_ = costs(false);
    }

    std::vector<FoundVehicle> best() const {
        std::vector<FoundVehicle> vehicles;
        bool wasKnown = false;
        for (std::size_t at = 0; at < axles_;) {
            const Step* taken = nullptr;
            double least = kNone;
            for (const Step& step : steps_[at]) {
                const double cost =
                    step.cost + coupling(at, wasKnown, step.isKnown) + from_[step.isKnown ? 1 : 0][at + step.count];
                if (cost < least) {
                    least = cost;
                    taken = &step;
                }
            }
            FoundVehicle vehicle{at, taken->count, {}, {}, isDoubtful(at, *taken)};
            if (taken->isKnown) {
                vehicle.layout = layoutOfVehicle(gaps_.data() + at, taken->count - 1);
            }
            vehicles.push_back(vehicle);
            wasKnown = taken->isKnown;
            at += taken->count;
        }
        return vehicles;
    }

private:
    void findSteps() {
        steps_.resize(axles_);
        for (std::size_t at = 0; at < axles_; ++at) {
            steps_[at].push_back({});
            for (std::size_t count = 2; count <= std::min(axles_ - at, kMostAxles); ++count) {
                const double cost = costOfVehicle(gaps_.data() + at, count - 1);
                if (cost < kNone) {
                    steps_[at].push_back({count, cost, true});
                }
            }
        }
    }

    /// The price of the gap before an axle, when a known vehicle is on both sides, and of the first unknown axle.
    double coupling(std::size_t at, bool isKnownBefore, bool isKnownBehind) const {
        if (at > 0 && (isKnownBefore || isKnownBehind) && !canPart(gaps_[at - 1])) {
            return kNone;
        }
        if (!isKnownBehind) {
            return at == 0 || isKnownBefore ? kUnknown : 0.0;
        }
        return at > 0 && isKnownBefore ? costOfCoupling(gaps_[at - 1]) : 0.0;
    }

    using Costs = std::array<std::vector<double>, 2>; ///< behind an unknown axle, behind a known vehicle

    /// The cheapest way from the front to before each axle, or, the known vehicle before it given, from there to the end.
    Costs costs(bool isToFront) const {
        Costs c = {std::vector<double>(axles_ + 1, kNone), std::vector<double>(axles_ + 1, kNone)};
        if (isToFront) {
            c[0][0] = 0.0;
            for (std::size_t at = 0; at < axles_; ++at) {
                for (const Step& step : steps_[at]) {
                    double& next = c[step.isKnown ? 1 : 0][at + step.count];
                    for (const bool known : {false, true}) {
                        next = std::min(next, c[known][at] + coupling(at, known, step.isKnown) + step.cost);
                    }
                }
            }
            return c;
        }
        c[0][axles_] = c[1][axles_] = 0.0;
        for (std::size_t at = axles_; at-- > 0;) {
            for (const Step& step : steps_[at]) {
                for (const bool known : {false, true}) {
                    c[known][at] = std::min(c[known][at], coupling(at, known, step.isKnown) + step.cost +
                                                              c[step.isKnown ? 1 : 0][at + step.count]);
                }
            }
        }
        return c;
    }

    /// The cheapest division with a vehicle.
    double through(std::size_t at, const Step& step) const {
        double least = kNone;
        for (const bool known : {false, true}) {
            least = std::min(least, to_[known][at] + coupling(at, known, step.isKnown) + step.cost +
                                        from_[step.isKnown ? 1 : 0][at + step.count]);
        }
        return least;
    }

    /// True when a division without this vehicle is nearly as cheap: one with another that shares an axle with it.
    bool isDoubtful(std::size_t at, const Step& taken) const {
        const double most = through(at, taken) + kMargin;
        const std::size_t end = at + taken.count;
        for (std::size_t other = at + 1 > kMostAxles ? at + 1 - kMostAxles : 0; other < end; ++other) {
            for (const Step& step : steps_[other]) {
                const bool isSame = other == at && step.count == taken.count;
                if (!isSame && other + step.count > at && through(other, step) < most) {
                    return true;
                }
            }
        }
        return false;
    }

    const std::vector<double>& gaps_;
    std::size_t axles_;
    std::vector<std::vector<Step>> steps_;
    Costs to_, from_;
};

/// Joins successive unknown axles to one.
std::vector<FoundVehicle> withUnknownJoined(const std::vector<FoundVehicle>& vehicles) {
    std::vector<FoundVehicle> joined;
    for (const FoundVehicle& vehicle : vehicles) {
        if (vehicle.layout.empty() && !joined.empty() && joined.back().layout.empty()) {
            joined.back().count += vehicle.count;
        } else {
            joined.push_back(vehicle);
        }
    }
    return joined;
}

/// The axles of a known vehicle of the train, as distances from the first one.
std::vector<double> offsetsOf(const FoundVehicle& vehicle, const std::vector<double>& places) {
    std::vector<double> offsets;
    for (std::size_t i = 0; i < vehicle.count; ++i) {
        offsets.push_back(places[vehicle.first + i] - places[vehicle.first]);
    }
    return offsets;
}

/// The numbers of the axles of `unknown` in a vehicle with these offsets when it fits with its axle `shift` at the first
/// one of them, and leaves room for couplings; empty when it does not.
std::vector<int> axlesIn(const std::vector<double>& offsets, std::size_t shift, const FoundVehicle& unknown,
                         const std::vector<double>& places) {
    const double start = places[unknown.first] - offsets[shift];
    std::vector<int> axles;
    std::size_t next = 0;
    for (std::size_t i = 0; i < unknown.count; ++i) {
        while (next < offsets.size() && !isSameLength(start + offsets[next], places[unknown.first + i], start)) {
            ++next;
        }
        if (next == offsets.size()) {
            return {};
        }
        axles.push_back(static_cast<int>(++next));
    }
    const std::size_t end = unknown.first + unknown.count;
    const bool fitsBefore = unknown.first == 0 || costOfCoupling(start - places[unknown.first - 1]) < kNone;
    const bool fitsBehind = end == places.size() || costOfCoupling(places[end] - start - offsets.back()) < kNone;
    return fitsBefore && fitsBehind ? axles : std::vector<int>();
}

/// Axles that make no vehicle may be one of a type that the train has elsewhere, with one that no sensor saw.
void completeUnknown(std::vector<FoundVehicle>& vehicles, const std::vector<double>& places) {
    constexpr std::size_t kFewest = 3; // two axles fit many types
    const std::vector<FoundVehicle> known = vehicles;
    for (FoundVehicle& unknown : vehicles) {
        if (!unknown.layout.empty()) {
            continue;
        }
        std::vector<FoundVehicle> fits;
        for (const FoundVehicle& type : known) {
            const std::vector<double> offsets = offsetsOf(type, places);
            const bool isLonger = type.count == unknown.count + 1 && unknown.count >= kFewest;
            for (std::size_t shift = 0; !type.layout.empty() && isLonger && shift <= 1; ++shift) {
                const std::vector<int> axles = axlesIn(offsets, shift, unknown, places);
                if (!axles.empty()) {
                    fits.push_back({unknown.first, unknown.count, type.layout, axles, false});
                }
            }
        }
        const auto isOther = [&](const FoundVehicle& fit) {
            return fit.axles != fits.front().axles || fit.layout != fits.front().layout;
        };
        if (!fits.empty() && std::none_of(fits.begin(), fits.end(), isOther)) {
            unknown = fits.front();
        }
    }
}

} // namespace

std::vector<FoundVehicle> vehiclesFromGaps(const std::vector<double>& places) {
    if (places.empty()) {
        return {};
    }
    const std::vector<double> gaps = gapsOf(places);
    std::vector<FoundVehicle> vehicles = withUnknownJoined(Division(gaps).best());
    for (FoundVehicle& vehicle : vehicles) {
        vehicle.axles.resize(vehicle.layout.empty() ? 0 : vehicle.count);
        std::iota(vehicle.axles.begin(), vehicle.axles.end(), 1);
    }
    completeUnknown(vehicles, places);
    return vehicles;
}

} // namespace KxInspect::detail
