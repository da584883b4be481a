// Options of kxmath simulate for profiles of the calibration object.
#include "tools/kxmath/simulate/shotOptions.h"

#include "tools/kxmath/calibrate/objectOptions.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/profileOptions.h"

#include <array>
#include <cmath>

namespace kxtool {

namespace {

constexpr const char* kCalibration = "calibration";
constexpr const char* kProfiles = "profiles";
constexpr const char* kTurn = "turn";
constexpr const char* kMove = "move";
constexpr std::array kSharedOptions = {"seed", "points", "half-angle", "noise", "max-range"};

/// Three numbers separated by commas, each within +-limit.
std::array<double, 3> threeNumbers(const QCommandLineParser& parser, const char* option, double limit) {
    const QStringList texts = parser.value(QLatin1String(option)).split(QLatin1Char(','));
    std::array<double, 3> numbers{};
    bool areNumbers = texts.size() == 3;
    for (size_t i = 0; areNumbers && i < numbers.size(); ++i) {
        numbers[i] = texts[static_cast<qsizetype>(i)].toDouble(&areNumbers);
        areNumbers = areNumbers && std::abs(numbers[i]) <= limit; // NaN: false
    }
    if (!areNumbers) {
        failUse(QStringLiteral("--%1 needs three numbers from -%2 to %2, like 1,-2,3")
                    .arg(QLatin1String(option))
                    .arg(limit));
    }
    return numbers;
}

QStringList ownOptions() {
    return QStringList{QLatin1String(kProfiles), QLatin1String(kTurn), QLatin1String(kMove)} + objectOptionNames();
}

/// Refuses options that belong to the other thing to simulate.
void checkNames(const QCommandLineParser& parser, bool isCalibration) {
    QStringList allowed = ownOptions() + QStringList{QLatin1String(kCalibration)};
    for (const char* const shared : kSharedOptions) {
        allowed += QLatin1String(shared);
    }
    const QStringList own = ownOptions();
    for (const QString& name : parser.optionNames()) {
        if (isCalibration && !allowed.contains(name)) {
            failUse(QStringLiteral("--%1 has no meaning with --calibration").arg(name));
        }
        if (!isCalibration && own.contains(name)) {
            failUse(QStringLiteral("--%1 has no meaning without --calibration").arg(name));
        }
    }
}

int countOption(const QCommandLineParser& parser, const char* option, int min, int max) {
    bool isNumber = false;
    const int count = parser.value(QLatin1String(option)).toInt(&isNumber);
    if (!isNumber || count < min || count > max) {
        failUse(QStringLiteral("--%1 needs a whole number from %2 to %3").arg(QLatin1String(option)).arg(min).arg(max));
    }
    return count;
}

kxsim::CalibrationSensor sensorOptions(const QCommandLineParser& parser) {
    kxsim::CalibrationSensor sensor;
    const auto read = [&](const char* option, float min, float max, double factor, double& value) {
        const QString name = QLatin1String(option);
        if (parser.isSet(name)) {
            value = factor * static_cast<double>(numberOption(parser, name, min, max));
        }
    };
    if (parser.isSet(QStringLiteral("points"))) {
        sensor.points = countOption(parser, "points", 16, 65535);
    }
    read("half-angle", 0.1f, 60.0f, 2.0, sensor.fan);
    read("noise", 0.0f, 10.0f, 1.0, sensor.noise);
    read("max-range", 1.0f, 10000.0f, 1.0, sensor.range);
    return sensor;
}

} // namespace

void addShotOptions(QCommandLineParser& parser) {
    const auto add = [&](const char* name, const QString& description, const char* value, const char* byDefault) {
        parser.addOption({QLatin1String(name), description, QLatin1String(value), QLatin1String(byDefault)});
    };
    add(kCalibration,
        QStringLiteral("write profiles of the calibration object in place of a train, seen by a sensor with this "
                       "placement code; of the options above, --seed, --points, --half-angle, --noise and --max-range "
                       "count with it, with defaults of their own: 1, 1280, 30 deg, 0.02 mm and 450 mm"),
        "N", "");
    add(kProfiles, QStringLiteral("how many, all from one pose [1]"), "N", "1");
    add(kTurn, QStringLiteral("turn of the sensor from its nominal pose in alpha, beta and gamma, deg [0,0,0]"),
        "A,B,C", "0,0,0");
    add(kMove, QStringLiteral("shift of the sensor from its nominal pose, mm [0,0,0]"), "X,Y,Z", "0,0,0");
    addObjectOptions(parser);
}

quint64 seedOption(const QCommandLineParser& parser) {
    bool isNumber = false;
    const QString text = parser.value(QStringLiteral("seed"));
    const quint64 seed = text.toULongLong(&isNumber);
    if (!isNumber) {
        failUse(QStringLiteral("--seed '%1' is no whole number from 0 on").arg(text));
    }
    return seed;
}

std::optional<kxsim::CalibrationShots> shotOptions(const QCommandLineParser& parser) {
    const bool isCalibration = parser.isSet(QLatin1String(kCalibration));
    checkNames(parser, isCalibration);
    if (!isCalibration) {
        return std::nullopt;
    }
    kxsim::CalibrationShots shots;
    shots.placement = placementOption(parser, QLatin1String(kCalibration));
    shots.object = objectOption(parser, shots.placement);
    shots.sensor = sensorOptions(parser);
    shots.profiles = countOption(parser, kProfiles, 1, 10000);
    shots.seed = seedOption(parser);
    const auto [alpha, beta, gamma] = threeNumbers(parser, kTurn, 180.0);
    const auto [x, y, z] = threeNumbers(parser, kMove, 10000.0);
    shots.alpha = alpha;
    shots.beta = beta;
    shots.gamma = gamma;
    shots.offset = {x, y, z};
    return shots;
}

} // namespace kxtool
