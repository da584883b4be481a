// The parameters of a simulated pass.
#include "simulator/parameters.h"

#include "simulator/axles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace kxsim {

namespace {

using P = Parameters;

constexpr std::array kNumbers = {
    NumberInfo{"serial1", &P::serial1, 1, 1e9, "", "serial number of the sensor that sees the left wheels"},
    NumberInfo{"serial2", &P::serial2, 1, 1e9, "", "serial number of the sensor that sees the right wheels"},
    NumberInfo{"pass", &P::pass, 0, 1e6, "",
               "which pass of the same train: lateral shift, yaw, noise and dirt differ, the wheels do not"},
    NumberInfo{"speed", &P::speed, 0.1, 100, "m/s", "speed of the train"},
    NumberInfo{"rate", &P::rate, 10, 1e5, "Hz", "profiles per second"},
    NumberInfo{"cars", &P::cars, 1, 50, "", "number of cars"},
    NumberInfo{"bogies", &P::bogies, 1, 4, "", "bogies per car"},
    NumberInfo{"axles", &P::axles, 1, 4, "", "axles per bogie"},
    NumberInfo{"axle-spacing", &P::axleSpacing, 500, 10000, "mm", "distance of the axles of a bogie"},
    NumberInfo{"bogie-spacing", &P::bogieSpacing, 500, 50000, "mm", "distance of the bogies of a car"},
    NumberInfo{"car-length", &P::carLength, 500, 100000, "mm", "distance of the cars"},
    NumberInfo{"idle", &P::idleProfiles, 1, 1000000, "", "profiles recorded before and after the train is in view"},

    NumberInfo{"diameter", &P::diameter, 300, 1500, "mm", "diameter of a new wheel"},
    NumberInfo{"wear", &P::wear, 0, 200, "mm", "largest loss of diameter of a wheel pair"},
    NumberInfo{"flange-wear", &P::flangeWear, 0, 8, "mm", "largest loss of flange thickness"},
    NumberInfo{"tread-wear", &P::treadWear, 0, 8, "mm", "largest depth of a hollow worn into a tread"},
    NumberInfo{"rim-thickness", &P::rimThickness, 20, 150, "mm", "thickness of the rim of a new wheel below the tread"},
    NumberInfo{"back-to-back", &P::backToBack, 300, 3000, "mm", "nominal back-to-back distance of a wheel pair"},
    NumberInfo{"distance-spread", &P::distanceSpread, 0, 5, "mm", "standard deviation of the back-to-back distance"},
    NumberInfo{"lateral-spread", &P::lateralSpread, 0, 20, "mm",
               "standard deviation of the lateral shift of wheel pairs; wheels beyond --level-margin are not detected"},
    NumberInfo{"yaw", &P::yaw, -50, 50, "mrad", "yaw of the axles, positive when the right wheel is ahead"},
    NumberInfo{"yaw-spread", &P::yawSpread, 0, 10, "mrad", "standard deviation of the yaw of an axle about --yaw"},
    NumberInfo{"tread-dirt", &P::treadDirt, 0, 5, "mm", "largest thickness of spots of dirt on the treads"},

    NumberInfo{"points", &P::points, 16, 65535, "", "points per profile"},
    NumberInfo{"half-angle", &P::halfAngle, 0.1, 60, "deg", "half of the opening angle of the laser fan"},
    NumberInfo{"stand-off", &P::standOff, 10, 5000, "mm", "distance of a sensor from a nominal back face"},
    NumberInfo{"aim-height", &P::aimHeight, -100, 1000, "mm", "height above the rails at which the sensors aim"},
    NumberInfo{"alpha", &P::alpha, -89, 89, "deg", "tilt of the sensors, negative when they look up"},
    NumberInfo{"beta", &P::beta, 1, 179, "deg", "turn of the left sensor about the vertical, 90 is straight across"},
    NumberInfo{"gamma", &P::gamma, -360, 360, "deg", "turn of the left sensor about its axis, 180 is x downwards"},
    NumberInfo{"along1", &P::along1, -2000, 2000, "mm", "place of the left sensor along the track"},
    NumberInfo{"along2", &P::along2, -2000, 2000, "mm", "place of the right sensor along the track"},
    NumberInfo{"turn1", &P::turn1, -30, 30, "deg",
               "turn of the left sensor about the vertical beyond --beta, positive to the left"},
    NumberInfo{"turn2", &P::turn2, -30, 30, "deg", "turn of the right sensor likewise"},
    NumberInfo{"min-range", &P::minRange, 1, 10000, "mm", "smallest y that a sensor measures"},
    NumberInfo{"max-range", &P::maxRange, 1, 10000, "mm", "largest y that a sensor measures"},
    NumberInfo{"max-line", &P::maxLine, 1, 10000, "mm", "largest |x| that a sensor measures"},
    NumberInfo{"baseline", &P::baseline, 0, 1000, "mm",
               "distance of the camera from the laser, along the track; with 0 the camera sees all points"},
    NumberInfo{"noise", &P::noise, 0, 10, "mm", "standard deviation of y"},
    NumberInfo{"quantum", &P::quantum, 0, 10, "mm", "quantization step of x and y; 0 for no quantization"},
    NumberInfo{"missing", &P::missing, 0, 1, "", "probability that a point is missing"},
    NumberInfo{"spikes", &P::spikes, 0, 1, "", "probability that a point is a spike"},
    NumberInfo{"spike-size", &P::spikeSize, 0, 1000, "mm", "largest height of a spike"},
    NumberInfo{"window-dirt", &P::windowDirt, 0, 0.9, "",
               "part of the laser fan that is hidden by dirt on the windows of a sensor"},

    NumberInfo{"gauge", &P::gauge, 300, 3000, "mm", "gauge of the track"},
    NumberInfo{"level-margin", &P::levelMargin, 0.5, 500, "mm",
               "distance of the level line beyond a nominal back face"},
};

std::string number(double value) {
    char text[32];
    static_cast<void>(std::snprintf(text, sizeof text, "%g", value)); // at most 13 characters
    return text;
}

std::string findNumberOutOfRange(const Parameters& parameters) {
    for (const NumberInfo& info : kNumbers) {
        const double value = valueOf(parameters, info);
        if (!(value >= info.min && value <= info.max)) {
            return "--" + std::string(info.name) + " " + number(value) + " is not within " + number(info.min) + " to " +
                   number(info.max);
        }
    }
    return {};
}

std::string findDefectFault(const Parameters& p, int pairs) {
    for (const Defect& defect : p.defects) {
        if (defect.pair < 1 || defect.pair > pairs) {
            return "a defect names wheel pair " + std::to_string(defect.pair) + " of " + std::to_string(pairs);
        }
        if (defect.sensor < 1 || defect.sensor > 2) {
            return "a defect names sensor " + std::to_string(defect.sensor) + ", it must be 1 or 2";
        }
        const double most = defect.kind == Defect::Kind::Flat ? p.diameter / 4.0 : 10.0;
        if (!(defect.size > 0.0 && defect.size <= most) || !(std::abs(defect.phase) <= 1e6)) {
            return "a defect of size " + number(defect.size) + " and phase " + number(defect.phase) +
                   " is out of range: the size must be above 0 and at most " + number(most);
        }
    }
    return {};
}

std::string findUnseenFault(const Parameters& p, int pairs) {
    for (const Unseen& unseen : p.unseen) {
        if (unseen.pair < 1 || unseen.pair > pairs || unseen.sensor < 1 || unseen.sensor > sensorsOf(p)) {
            return "--unseen names wheel pair " + std::to_string(unseen.pair) + " of " + std::to_string(pairs) +
                   " and sensor " + std::to_string(unseen.sensor) + " of " + std::to_string(sensorsOf(p));
        }
    }
    return {};
}

} // namespace

std::span<const NumberInfo> allNumbers() {
    return kNumbers;
}

double valueOf(const Parameters& parameters, const NumberInfo& info) {
    return std::visit([&](auto member) { return static_cast<double>(parameters.*member); }, info.member);
}

int sensorsOf(const Parameters& parameters) {
    return parameters.layout.empty() ? 2 : static_cast<int>(parameters.layout.size());
}

int serialOf(const Parameters& parameters, int sensor) {
    if (!parameters.layout.empty()) {
        return parameters.layout[static_cast<std::size_t>(sensor - 1)].serial;
    }
    return sensor == 1 ? parameters.serial1 : parameters.serial2;
}

std::string findFault(const Parameters& p) {
    if (std::string fault = findNumberOutOfRange(p); !fault.empty()) {
        return fault;
    }
    if (p.layout.empty() && p.serial1 == p.serial2) {
        return "the serial numbers of the two sensors are equal";
    }
    if (p.prefix.empty() || p.prefix.find_first_of("_/\\") != std::string::npos ||
        p.prefix.find(".bin") != std::string::npos) {
        return "--prefix must not be empty or contain '_', '/', '\\' or '.bin'";
    }
    if (p.minRange >= p.maxRange) {
        return "--min-range must be below --max-range";
    }
    constexpr double kFlange = 28.0;
    const std::vector<AxlePlace> axles = axlesOf(p);
    if (closestAxles(axles) < p.diameter + 2.0 * kFlange + 100.0) {
        return "the axles are too close for wheels of this diameter";
    }
    if (p.wear / 2.0 > p.rimThickness - 15.0) {
        return "--wear leaves less than 15 mm of the rim";
    }
    if (p.rimThickness > p.diameter / 2.0 - 150.0) {
        return "--rim-thickness leaves no space for the web";
    }
    const int pairs = static_cast<int>(axles.size());
    const std::string fault = findDefectFault(p, pairs);
    return fault.empty() ? findUnseenFault(p, pairs) : fault;
}

} // namespace kxsim
