// What the wheels of a simulated fleet really are, day by day.
#include "simulator/fleet/fleetWheels.h"

#include "simulator/random.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace kxsim {

namespace {

using KxInspect::PassMeasure;

constexpr double kNever = std::numeric_limits<double>::infinity();

std::size_t at(PassMeasure measure) {
    return static_cast<std::size_t>(measure);
}

/// A factor about 1, twice as much as seldom as half as much.
double spread(Random& random, double logDeviation) {
    return std::exp(logDeviation * random.boundedNormal());
}

/// A wheel that was just turned. `diameter`: to which.
WheelLife turned(Random& random, double day, double diameter) {
    WheelLife life;
    life.from = day;
    life.atStart[at(PassMeasure::Diameter)] = diameter;
    life.atStart[at(PassMeasure::FlangeHeight)] = 28.0 + 0.1 * random.boundedNormal();
    life.atStart[at(PassMeasure::FlangeThickness)] = 32.0 + 0.2 * random.boundedNormal();
    life.atStart[at(PassMeasure::FlangeSlope)] = 10.5 + 0.1 * random.boundedNormal();
    life.atStart[at(PassMeasure::TreadHollow)] = 0.02;
    life.atStart[at(PassMeasure::RimWidth)] = 135.0;
    life.perDay[at(PassMeasure::FlangeHeight)] = 0.005 * spread(random, 0.5);
    life.perDay[at(PassMeasure::FlangeThickness)] = -0.010 * spread(random, 0.5);
    life.perDay[at(PassMeasure::FlangeSlope)] = -0.002 * spread(random, 0.5);
    life.perDay[at(PassMeasure::TreadHollow)] = 0.0025 * spread(random, 0.5);
    // The tape circle wears as the flange seems to grow.
    life.perDay[at(PassMeasure::Diameter)] = -2.0 * life.perDay[at(PassMeasure::FlangeHeight)];
    return life;
}

void addFlat(const FleetPlan& plan, Random& random, WheelLife& life) {
    const double perDay = plan.flatsPerYear / 365.0;
    if (!(perDay > 0.0)) {
        return;
    }
    const double from = std::max(life.from, 0.0) - std::log(1.0 - random.uniform()) / perDay;
    if (random.chance(plan.suddenFlats)) {
        life.flat = {from, 0.0, random.uniform(0.1, 0.8)};
    } else {
        life.flat = {from, kMostOffRound / random.uniform(14.0, 90.0), 0.0};
    }
}

double linearCrossing(const WheelLife& life, PassMeasure measure, double limit) {
    const double days = (limit - life.atStart[at(measure)]) / life.perDay[at(measure)];
    return days > 0.0 ? life.from + days : kNever;
}

std::vector<CrossingTruth> crossingsOf(const WheelLife& life) {
    std::vector<CrossingTruth> crossings;
    const auto add = [&](double day, Crossing what, double growing) {
        if (day < kNever) {
            crossings.push_back({day, what, growing});
        }
    };
    const std::tuple<PassMeasure, double, Crossing> limits[] = {
        {PassMeasure::FlangeThickness, kLeastThickness, Crossing::Thickness},
        {PassMeasure::FlangeHeight, kMostHeight, Crossing::Height},
        {PassMeasure::TreadHollow, kMostHollow, Crossing::Hollow}};
    for (const auto& [measure, limit, what] : limits) {
        const double day = linearCrossing(life, measure, limit);
        add(day, what, day - life.from);
    }
    if (life.flat) {
        const FleetFlat& flat = *life.flat;
        if (flat.depth > kMostOffRound) {
            add(flat.from, Crossing::Flat, 0.0);
        } else if (flat.growth > 0.0) {
            const double days = (kMostOffRound - flat.depth) / flat.growth;
            add(flat.from + days, Crossing::Flat, days);
        }
    }
    std::sort(crossings.begin(), crossings.end(),
              [](const CrossingTruth& a, const CrossingTruth& b) { return a.day < b.day; });
    return crossings;
}

} // namespace

const WheelLife& FleetWheel::lifeOn(double day) const {
    const auto next = std::find_if(lives.begin(), lives.end(), [&](const WheelLife& life) { return day < life.until; });
    return next == lives.end() ? lives.back() : *next;
}

double FleetWheel::valueOn(double day, PassMeasure measure) const {
    const WheelLife& life = lifeOn(day);
    return life.atStart[at(measure)] + life.perDay[at(measure)] * (day - life.from);
}

double FleetWheel::offRoundOn(double day) const {
    const std::optional<FleetFlat>& flat = lifeOn(day).flat;
    return flat && day >= flat->from ? flat->depth + flat->growth * (day - flat->from) : 0.0;
}

std::vector<CrossingTruth> FleetWheel::crossings() const {
    std::vector<CrossingTruth> all;
    for (const WheelLife& life : lives) {
        for (const CrossingTruth& crossing : crossingsOf(life)) {
            if (crossing.day >= 0.0 && crossing.day < life.until) {
                all.push_back(crossing);
            }
        }
    }
    return all;
}

std::vector<FleetWheel> wheelsOfVehicle(const FleetPlan& plan, int vehicle) {
    constexpr double kTurnedOff = 8.0; // mm of diameter
    Random random({plan.seed, 1, static_cast<std::uint64_t>(vehicle)});
    std::vector<FleetWheel> wheels(static_cast<std::size_t>(2 * plan.axles));
    double from = -random.uniform(0.0, 700.0);
    double diameter = random.uniform(810.0, 870.0);
    bool isFirst = true;
    while (from < plan.days) {
        double first = kNever;
        for (FleetWheel& wheel : wheels) {
            WheelLife life = turned(random, from, diameter);
            addFlat(plan, random, life);
            for (const CrossingTruth& crossing : crossingsOf(life)) {
                first = std::min(first, crossing.day);
            }
            wheel.lives.push_back(life);
        }
        // A life that would have ended before the plan begins is drawn again.
        if (isFirst && first < 0.0) {
            for (FleetWheel& wheel : wheels) {
                wheel.lives.clear();
            }
            from = -random.uniform(0.0, 300.0);
            continue;
        }
        isFirst = false;
        const double until = std::min(first + random.uniform(10.0, 40.0), static_cast<double>(plan.days));
        for (FleetWheel& wheel : wheels) {
            wheel.lives.back().until = until;
        }
        from = until;
        diameter -= kTurnedOff;
    }
    return wheels;
}

} // namespace kxsim
