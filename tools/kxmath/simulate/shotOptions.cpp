// Options of kxmath simulate for profiles of the calibration object.
#include "tools/kxmath/simulate/shotOptions.h"

#include "report/elements/textList.h"
#include "tools/kxmath/console/calibrationObjectOptions.h"

#include <array>
#include <limits>

namespace kxtool {

namespace {

constexpr const char* kCalibration = "calibration";
constexpr const char* kProfiles = "profiles";
constexpr const char* kTurn = "turn";
constexpr const char* kMove = "move";
constexpr const char* kMoved = "moved";
constexpr std::array kSharedOptions = {"seed", "points", "half-angle", "noise", "max-range", "spikes", "spike-size"};

QStringList ownOptions() {
    return kxreport::textList({kProfiles, kTurn, kMove, kMoved}) + objectOptionNames();
}

/// Refuses options of the other kind of simulation.
void checkNames(const Options& options, bool isCalibration) {
    QStringList allowed = ownOptions();
    allowed += QLatin1String(kCalibration);
    for (const char* const shared : kSharedOptions) {
        allowed += QLatin1String(shared);
    }
    const QStringList own = ownOptions();
    for (const QString& name : options.namesGiven()) {
        if (isCalibration && !allowed.contains(name)) {
            options.fail(QStringLiteral("--%1 has no meaning with --calibration").arg(name));
        }
        if (!isCalibration && own.contains(name)) {
            options.fail(QStringLiteral("--%1 has no meaning without --calibration").arg(name));
        }
    }
}

kxsim::CalibrationSensor sensorOptions(const Options& options) {
    kxsim::CalibrationSensor sensor;
    const auto read = [&](const char* name, double min, double max, double factor, double& value) {
        if (const auto number = options.numberIfSet(name, {min, max})) {
            value = factor * static_cast<double>(*number);
        }
    };
    if (options.isSet("points")) {
        sensor.points = options.wholeNumber("points", 16, 65535);
    }
    read("half-angle", 0.1, 60.0, 2.0, sensor.fan);
    read("noise", 0.0, 10.0, 1.0, sensor.noise);
    read("max-range", 1.0, 10000.0, 1.0, sensor.range);
    read("spikes", 0.0, 1.0, 1.0, sensor.spikes);
    read("spike-size", 0.0, 1000.0, 1.0, sensor.spikeSize);
    return sensor;
}

} // namespace

void addShotOptions(Options& options) {
    const auto add = [&](const char* name, const QString& description, const char* value, const char* byDefault) {
        options.addOption(name, description, value, QLatin1String(byDefault));
    };
    add(kCalibration,
        QStringLiteral("write profiles of the calibration object instead of a train, seen by a sensor with this "
                       "placement code; of the options above only --seed, --points, --half-angle, --noise, "
                       "--max-range, --spikes and --spike-size apply, with the defaults 1, 1280, 30 deg, 0.02 mm, "
                       "450 mm, 0 and 8 mm"),
        "N", "");
    add(kProfiles, QStringLiteral("number of profiles, all from one pose, for each --moved [1]"), "N", "1");
    add(kTurn, QStringLiteral("rotation of the sensor from its nominal pose in alpha, beta and gamma, deg [0,0,0]"),
        "A,B,C", "0,0,0");
    add(kMove, QStringLiteral("shift of the sensor from its nominal pose, mm [0,0,0]"), "X,Y,Z", "0,0,0");
    addMovedOption(options,
                   QStringLiteral("move the object by this from its place, mm, for the next --profiles profiles; "
                                  "may be given more than once [0,0,0]"));
    addObjectOptions(options);
}

quint64 seedOption(const Options& options) {
    bool isNumber = false;
    const QString text = options.text("seed");
    const quint64 seed = text.toULongLong(&isNumber);
    if (!isNumber) {
        options.failNeed(QStringLiteral("--seed"),
                         QStringLiteral("a whole number from 0 to %1").arg(std::numeric_limits<quint64>::max()), text);
    }
    return seed;
}

std::optional<kxsim::CalibrationShots> shotOptions(const Options& options) {
    const bool isCalibration = options.isSet(kCalibration);
    checkNames(options, isCalibration);
    if (!isCalibration) {
        return std::nullopt;
    }
    kxsim::CalibrationShots shots;
    shots.placement = options.wholeNumber(kCalibration, 1, 5);
    shots.object = objectOption(options, shots.placement);
    shots.sensor = sensorOptions(options);
    shots.profiles = options.wholeNumber(kProfiles, 1, 10000);
    shots.seed = seedOption(options);
    const auto [alpha, beta, gamma] = threeNumbers(options, options.text(kTurn), QStringLiteral("--turn"), 180.0);
    const auto [x, y, z] = threeNumbers(options, options.text(kMove), QStringLiteral("--move"), 10000.0);
    shots.alpha = alpha;
    shots.beta = beta;
    shots.gamma = gamma;
    shots.offset = {x, y, z};
    for (const auto& [moveX, moveY, moveZ] : movedOption(options)) {
        shots.moves.push_back({moveX, moveY, moveZ});
    }
    return shots;
}

} // namespace kxtool
