// The parameters of a simulated pass.
#pragma once

#include "simulator/layout.h"

#include <KxInspect/Consist.h>

#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace kxsim {

enum class RecordKind { Profile, Cloud };

/// A defect of the tread where the contact point is while the wheel passes the sensors; each pass shows only that part
/// of the circumference.
struct Defect {
    enum class Kind { Flat, BuildUp };

    Kind kind = Kind::Flat;
    int pair = 1; ///< wheel pair, from 1 in the order in which they pass
    int sensor = 1; ///< 1 for the wheel on the left, 2 on the right
    double size = 0.0; ///< length of a flat, height of a build-up, mm
    double phase = 0.0; ///< distance of its middle along the circumference from what the sensors see, mm
};

/// How deep a flat is over the width of the tread.
enum class FlatShape {
    Even, ///< equally deep everywhere: a wheel that slid on a rail of its own slope
    Plane, ///< one plane parallel to the axle: deeper where the tread is farther from it
};

/// A wheel that a sensor does not see, as if it had failed.
struct Unseen {
    int pair = 1; ///< as in Defect
    int sensor = 1;
};

struct Parameters {
    std::uint64_t seed = 1;
    int pass = 0; ///< which pass of the train: its wheels stay, what changes from pass to pass is drawn anew
    std::string prefix = "train";
    int serial1 = 101;
    int serial2 = 102;
    RecordKind records = RecordKind::Profile;

    // Pass
    double speed = 15.0; // m/s
    double rate = 2000.0; // profiles per second
    int cars = 2;
    int bogies = 2; // per car
    int axles = 2; // per bogie
    double axleSpacing = 2100.0;
    double bogieSpacing = 12600.0;
    double carLength = 19200.0;
    int idleProfiles = 10;
    std::vector<KxInspect::ListedVehicle> vehicles = {}; ///< instead of the equal cars above, if there are any
    bool isTurned = false; ///< the last vehicle comes first, and what was on the left is on the right
    std::vector<Unseen> unseen = {};

    // Wheels
    double diameter = 860.0;
    double wear = 10.0;
    double flangeWear = 3.0;
    double treadWear = 0.0; ///< at the tape circle, beyond that of the whole tread
    double rimThickness = 62.0;
    double backToBack = 1360.0;
    double distanceSpread = 0.5;
    double lateralSpread = 1.5;
    double yaw = 0.0; // mrad
    double yawSpread = 0.0; // mrad
    std::vector<Defect> defects;
    FlatShape flatShape = FlatShape::Even;
    double treadDirt = 0.0; ///< thickness of the thickest spots

    // Sensors
    int points = 1280;
    bool hasEqualAngles = true;
    double halfAngle = 11.5;
    double standOff = 140.0;
    double aimHeight = 14.5;
    double alpha = -40.0;
    double beta = 90.0;
    double gamma = 180.0;
    double along1 = 0.0; // along the track
    double along2 = 0.0;
    double turn1 = 0.0; // deg
    double turn2 = 0.0;
    double minRange = 60.0;
    double maxRange = 600.0;
    double maxLine = 120.0;
    double baseline = 60.0;
    double noise = 0.05;
    double quantum = 0.01;
    double missing = 0.005;
    double spikes = 0.0005;
    double spikeSize = 8.0;
    double windowDirt = 0.0; ///< share of the fan that it hides

    std::vector<LayoutSensor> layout = {}; ///< empty: the two sensors above

    // Surroundings
    double gauge = 1435.0;
    bool hasRails = true;
    bool hasBackground = true;
    bool hasObjects = true;

    // Calibration
    double levelMargin = 8.0;
};

/// A numeric parameter with the name of its option and its valid range.
struct NumberInfo {
    const char* name;
    std::variant<double Parameters::*, int Parameters::*> member;
    double min;
    double max;
    const char* unit; ///< empty for a plain number
    const char* help;
};

std::span<const NumberInfo> allNumbers();

/// The names of those that say where the axles of equal cars are; listed vehicles stand in their place.
inline constexpr const char* kNumbersOfCars[] = {"cars",         "bogies",        "axles",
                                                 "axle-spacing", "bogie-spacing", "car-length"};

double valueOf(const Parameters& parameters, const NumberInfo& info);

/// How many sensors the station has, counted from 1.
int sensorsOf(const Parameters& parameters);
/// The serial number of a sensor.
int serialOf(const Parameters& parameters, int sensor);

/// A fault of the parameters in one line; empty without a fault.
std::string findFault(const Parameters& parameters);

} // namespace kxsim
