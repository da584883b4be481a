// The options that describe the calibration object, shared by the commands that need it.
#include "tools/kxmath/console/calibrationObjectOptions.h"

#include "report/elements/textList.h"

namespace kxtool {

namespace {

constexpr const char* kPitch = "pitch";
constexpr const char* kSlope = "slope";
constexpr const char* kOblique = "oblique";
constexpr const char* kPlaneY = "plane-y";

} // namespace

void addObjectOptions(Options& options) {
    const KxInspect::CalibrationObject object;
    options.addOption(
        kPitch, QStringLiteral("Distance of the straight ridges of the calibration object [%1].").arg(object.pitch),
        "mm");
    options.addOption(kSlope, QStringLiteral("Slope of its flanks, mm of depth per mm across [%1].").arg(object.slope),
                      "M");
    options.addOption(
        kOblique,
        QStringLiteral("Slope of the oblique crest in the track frame, mm of Z per mm of X (of -Z for the positions "
                       "3 and 4) [%1; %2 for the positions 2, 4 and 5, where the object is turned with the sensor].")
            .arg(object.obliqueness)
            .arg(-object.obliqueness),
        "T");
    options.addOption(kPlaneY, QStringLiteral("Y of the plane of the crests [0]."), "mm");
}

QStringList objectOptionNames() {
    return kxreport::textList({kPitch, kSlope, kOblique, kPlaneY});
}

KxInspect::CalibrationObject objectOption(const Options& options, int placement) {
    constexpr double kLongest = 1e6;
    KxInspect::CalibrationObject object = KxInspect::calibrationObjectFor(placement);
    const auto read = [&](const char* name, double& value, const Bounds& bounds) {
        if (const auto number = options.numberIfSet(name, bounds)) {
            value = static_cast<double>(*number);
        }
    };
    read(kPitch, object.pitch, {0.1, 1000.0});
    read(kSlope, object.slope, {0.01, 100.0});
    read(kOblique, object.obliqueness, {-10.0, 10.0});
    read(kPlaneY, object.crestY, {-kLongest, kLongest});
    if (object.obliqueness == 0.0) {
        options.failNeed(QStringLiteral("--oblique"),
                         QStringLiteral("a number other than 0 (with 0, x cannot be found)"), options.text(kOblique));
    }
    return object;
}

} // namespace kxtool
