// Options that describe the calibration object.
#include "tools/kxmath/calibrate/objectOptions.h"

#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/profileOptions.h"

#include <cmath>

namespace kxtool {

namespace {

constexpr const char* kPitch = "pitch";
constexpr const char* kSlope = "slope";
constexpr const char* kOblique = "oblique";
constexpr const char* kPlaneY = "plane-y";

} // namespace

void addObjectOptions(QCommandLineParser& parser) {
    const kxsim::CalibrationObject object;
    const auto add = [&](const char* name, const QString& description, const char* value) {
        parser.addOption({QLatin1String(name), description, QLatin1String(value)});
    };
    add(kPitch, QStringLiteral("Distance of the straight ridges of the calibration object [%1].").arg(object.pitch),
        "mm");
    add(kSlope, QStringLiteral("Slope of its flanks, mm of depth per mm across [%1].").arg(object.slope), "M");
    add(kOblique,
        QStringLiteral("Slope of the oblique crest as the object stands, mm of Z per mm of X (of -Z for the positions "
                       "3 and 4) [%1; %2 for the positions 2, 4 and 5, where the object is turned with the sensor].")
            .arg(object.obliqueness)
            .arg(-object.obliqueness),
        "T");
    add(kPlaneY, QStringLiteral("Y of the plane of the crests [0]."), "mm");
}

QStringList objectOptionNames() {
    return {QLatin1String(kPitch), QLatin1String(kSlope), QLatin1String(kOblique), QLatin1String(kPlaneY)};
}

int placementOption(const QCommandLineParser& parser, const QString& name) {
    bool isNumber = false;
    const int placement = parser.value(name).toInt(&isNumber);
    if (!isNumber) {
        failUse(QStringLiteral("--%1 needs a whole number, the placement code").arg(name));
    }
    return placement;
}

kxsim::CalibrationObject objectOption(const QCommandLineParser& parser, int placement) {
    constexpr float kLongest = 1e6f;
    kxsim::CalibrationObject object = kxsim::objectForPlacement(placement);
    object.crestY = 0.0;
    const auto read = [&](const char* option, double& value, float min, float max) {
        const QString name = QLatin1String(option);
        if (parser.isSet(name)) {
            value = static_cast<double>(numberOption(parser, name, min, max));
        }
    };
    read(kPitch, object.pitch, 0.1f, 1000.0f);
    read(kSlope, object.slope, 0.01f, 100.0f);
    read(kOblique, object.obliqueness, -10.0f, 10.0f);
    read(kPlaneY, object.crestY, -kLongest, kLongest);
    if (object.obliqueness == 0.0) {
        failUse(QStringLiteral("--oblique must not be 0: x could not be found"));
    }
    return object;
}

} // namespace kxtool
