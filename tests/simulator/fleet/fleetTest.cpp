// A simulated fleet and what it measures.
#include "simulator/fleet/fleetPasses.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace {

using namespace kxsim;
using KxInspect::PassMeasure;

FleetPlan smallPlan() {
    FleetPlan plan;
    plan.vehicles = 8;
    plan.days = 730;
    plan.flatsPerYear = 0.5;
    return plan;
}

TEST(Fleet, WheelsWearAndAreTurned) {
    FleetPlan plan = smallPlan();
    plan.vehicles = 60;
    plan.flatsPerYear = 0.05;
    int turnings = 0;
    std::map<Crossing, int> crossings;
    for (int vehicle = 0; vehicle < plan.vehicles; ++vehicle) {
        for (const FleetWheel& wheel : wheelsOfVehicle(plan, vehicle)) {
            ASSERT_EQ(wheel.lives.back().until, plan.days);
            turnings += static_cast<int>(wheel.lives.size()) - 1;
            for (const WheelLife& life : wheel.lives) {
                const double day = std::max(life.from, 0.0);
                const double later = life.until - 0.5;
                EXPECT_LT(wheel.valueOn(later, PassMeasure::FlangeThickness),
                          wheel.valueOn(day, PassMeasure::FlangeThickness));
                EXPECT_GT(wheel.valueOn(later, PassMeasure::FlangeHeight),
                          wheel.valueOn(day, PassMeasure::FlangeHeight));
            }
            for (const CrossingTruth& crossing : wheel.crossings()) {
                ++crossings[crossing.what];
                const double before = crossing.day - 1e-6;
                const double behind = crossing.day + 1e-6;
                const auto isBeyond = [&](double day) {
                    switch (crossing.what) {
                    case Crossing::Thickness:
                        return wheel.valueOn(day, PassMeasure::FlangeThickness) < kLeastThickness;
                    case Crossing::Height:
                        return wheel.valueOn(day, PassMeasure::FlangeHeight) > kMostHeight;
                    case Crossing::Hollow:
                        return wheel.valueOn(day, PassMeasure::TreadHollow) > kMostHollow;
                    case Crossing::Flat:
                        break;
                    }
                    return wheel.offRoundOn(day) > kMostOffRound;
                };
                EXPECT_FALSE(isBeyond(before));
                EXPECT_TRUE(isBeyond(behind));
            }
        }
    }
    EXPECT_GT(turnings, 200);
    EXPECT_EQ(crossings.size(), 4u) << "each of the reasons";
}

TEST(Fleet, MeasuresWhatIsThere) {
    FleetPlan plan = smallPlan();
    plan.days = 60;
    plan.shiftsPerYear = 0.0;
    plan.dirtPerYear = 0.0;
    const Fleet fleet(plan);
    ASSERT_EQ(fleet.passes().size(), 120u);
    EXPECT_TRUE(fleet.shifts().empty());
    int values = 0;
    int missing = 0;
    for (std::size_t i = 0; i < fleet.passes().size(); ++i) {
        const KxInspect::PassResult pass = fleet.measure(i);
        ASSERT_EQ(pass.wheels.size(), 32u);
        for (std::size_t w = 0; w < pass.wheels.size(); ++w) {
            const int vehicle = fleet.passes()[i].train * plan.perTrain + static_cast<int>(w / 8);
            const double truth = fleet.wheel(vehicle, static_cast<int>(w % 8))
                                     .valueOn(fleet.passes()[i].day, PassMeasure::FlangeThickness);
            const KxInspect::PassValue& value = pass.wheels[w][PassMeasure::FlangeThickness];
            ++values;
            missing += value.value ? 0 : 1;
            EXPECT_NE(value.value.has_value(), !value.reason.empty());
            if (value.value) {
                EXPECT_NEAR(*value.value, truth, 0.15); // three deviations of the noise and of the station
            }
        }
    }
    EXPECT_GT(missing, values / 100);
    EXPECT_LT(missing, values / 20);
}

TEST(Fleet, SameSeedSameResults) {
    FleetPlan plan = smallPlan();
    plan.days = 30;
    const Fleet one(plan);
    const Fleet other(plan);
    plan.seed = 2;
    const Fleet unlike(plan);
    const std::string json = KxInspect::toJson(one.measure(20));
    one.measure(3);
    EXPECT_EQ(json, KxInspect::toJson(other.measure(20)));
    EXPECT_NE(json, KxInspect::toJson(unlike.measure(20)));
    EXPECT_EQ(KxInspect::toJson(KxInspect::passFromJson(json)), json) << "a whole result";
}

TEST(Fleet, ShiftsMoveOneSideOfAStation) {
    FleetPlan plan = smallPlan();
    plan.shiftsPerYear = 2.0;
    plan.dirtPerYear = 0.0;
    const Fleet fleet(plan);
    ASSERT_FALSE(fleet.shifts().empty());
    const FleetShift& shift = fleet.shifts().front();
    double sums[2] = {};
    int counts[2] = {};
    for (std::size_t i = 0; i < fleet.passes().size(); ++i) {
        const FleetPass& pass = fleet.passes()[i];
        if (pass.station != shift.station || std::abs(pass.day - shift.day) > 15.0) {
            continue;
        }
        for (const KxInspect::PassWheelMeasures& wheel : fleet.measure(i).wheels) {
            const auto& value = wheel[PassMeasure::FlangeThickness].value;
            if (!value || wheel.side != shift.side) {
                continue;
            }
            const int inTrain = (wheel.pair - 1) / plan.axles;
            const int number = 2 * ((wheel.pair - 1) % plan.axles) + (wheel.side == KxInspect::TrackSide::Left ? 0 : 1);
            const int behind = pass.day >= shift.day ? 1 : 0;
            sums[behind] += static_cast<double>(*value) - fleet.wheel(pass.train * plan.perTrain + inTrain, number)
                                                              .valueOn(pass.day, PassMeasure::FlangeThickness);
            ++counts[behind];
        }
    }
    ASSERT_GT(std::min(counts[0], counts[1]), 50);
    EXPECT_NEAR(sums[1] / counts[1] - sums[0] / counts[0], shift.size, 0.02);
}

} // namespace
