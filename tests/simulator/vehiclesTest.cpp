// Simulated trains of listed vehicles, turned trains, and wheels that a sensor does not see.
#include "simulator/axles.h"
#include "simulator/passSupport.h"
#include "simulator/train.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace kxsim;
using namespace simulator_test;

Parameters listedTrain() {
    Parameters p = quickPass(8);
    p.vehicles = {{"101", "7", "", {2650, 7250, 2600}, 5620}, {"W", "21", "", {6000}, 0}};
    return p;
}

std::string textOf(const std::vector<AxlePlace>& axles) {
    std::ostringstream text;
    for (const AxlePlace& axle : axles) {
        text << axle.listed << ':' << axle.car << '.' << axle.bogie << '.' << axle.axle << '@' << axle.behind << ' ';
    }
    return text.str();
}

TEST(SimulatedVehicles, StandAsListed) {
    Parameters p = listedTrain();
    EXPECT_EQ(textOf(axlesOf(p)), "1:1.1.1@0 2:1.1.2@2650 3:1.2.1@9900 4:1.2.2@12500 5:2.1.1@18120 6:2.2.1@24120 ");
    EXPECT_EQ(closestAxles(axlesOf(p)), 2600);
    p.isTurned = true;
    EXPECT_EQ(textOf(axlesOf(p)), "6:2.2.1@0 5:2.1.1@6000 4:1.2.2@11620 3:1.2.1@14220 2:1.1.2@21470 1:1.1.1@24120 ");
}

TEST(SimulatedVehicles, KeepTheirWheelsWhenTheyAreTurned) {
    Parameters p = listedTrain();
    const Train straight = makeTrain(p);
    p.isTurned = true;
    p.pass = 2;
    const Train turned = makeTrain(p);
    ASSERT_EQ(straight.pairs.size(), 6);
    ASSERT_EQ(turned.pairs.size(), 6);
    for (std::size_t i = 0; i < 6; ++i) {
        const WheelPair& one = straight.pairs[i];
        const WheelPair& other = turned.pairs[5 - i];
        EXPECT_EQ(one.backToBack, other.backToBack);
        EXPECT_NE(one.wheels[0].shape.diameter, one.wheels[1].shape.diameter);
        for (const std::size_t side : {0u, 1u}) {
            EXPECT_EQ(one.wheels[side].shape.diameter, other.wheels[1 - side].shape.diameter);
            EXPECT_EQ(one.wheels[side].shape.flangeWear, other.wheels[1 - side].shape.flangeWear);
        }
    }
}

TEST(SimulatedVehicles, AnUnseenWheelIsInNoRecord) {
    Parameters p = quickPass(3);
    p.unseen = {{3, 2}};
    const Pass pass(p);
    for (const int sensor : {1, 2}) {
        for (qsizetype pair = 0; pair < 4; ++pair) {
            EXPECT_EQ(pass.wheel(pair, sensor)["firstRecord"].toInt() == 0, pair == 2 && sensor == 2);
        }
    }
    QSettings settings(pass.path(QStringLiteral("settings.ini")), QSettings::IniFormat);
    std::vector<int> starts;
    EXPECT_EQ(pass.detect(2, 1, settings, starts), 3);
}

} // namespace
