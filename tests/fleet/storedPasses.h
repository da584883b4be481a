// Results of passes to fill stores with.
#pragma once

#include <KxInspect/PassResult.h>

#include <array>
#include <ctime>
#include <string>

namespace fleet_test {

/// Gives a wheel a value of a measure and its 95 % interval.
inline void measure(KxInspect::PassResult& pass, std::size_t wheel, KxInspect::PassMeasure measure, float value,
                    float halfWidth) {
    pass.wheels[wheel].values[static_cast<std::size_t>(measure)] = {
        value, KxInspect::Interval::around(value, halfWidth), {}, {}};
}

/// One pair of the vehicle V1, whose left wheel has a diameter and whose right one has none.
inline KxInspect::PassResult passOf(const std::string& hash, const std::string& time, float diameter) {
    KxInspect::PassResult pass;
    pass.identity.version = "1";
    pass.identity.labels.station = "north";
    pass.identity.labels.time = time;
    pass.sides.resize(2);
    for (std::size_t side = 0; side < 2; ++side) {
        pass.sides[side].sensor = static_cast<int>(side) + 1;
        pass.sides[side].sha256 = hash + std::to_string(side);
    }
    pass.identity.settings.values = {{"SENSOR1/side", std::string("left")}, {"SENSOR2/side", std::string("right")}};
    KxInspect::PassVehicle vehicle;
    vehicle.number = 1;
    vehicle.layout = {1};
    vehicle.vehicleNumber = "V1";
    pass.train.vehicles = {vehicle};
    KxInspect::WheelPair pair;
    pair.axle.vehicle = 1;
    pair.axle.axle = 1;
    pair.reason = "one side is missing";
    pass.pairs = {pair};
    for (const KxInspect::TrackSide side : {KxInspect::TrackSide::Left, KxInspect::TrackSide::Right}) {
        KxInspect::PassWheelMeasures wheel;
        wheel.pair = 1;
        wheel.side = side;
        for (KxInspect::PassValue& value : wheel.values) {
            value.reason = "no sensor shows it";
        }
        pass.wheels.push_back(wheel);
    }
    measure(pass, 0, KxInspect::PassMeasure::Diameter, diameter, 0.5f);
    return pass;
}

/// The noon of a day since 1970-01-01 as the label of a pass.
inline std::string noonOf(int day) {
    constexpr int kDay = 86400;
    const std::time_t seconds = static_cast<std::time_t>(day) * kDay + kDay / 2;
    std::array<char, 32> text{};
    const std::size_t size = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&seconds));
    return {text.data(), size};
}

} // namespace fleet_test
