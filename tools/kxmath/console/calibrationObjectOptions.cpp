// The options that describe the calibration object, shared by the commands that need it.
#include "tools/kxmath/console/calibrationObjectOptions.h"

#include "report/elements/textList.h"

namespace kxtool {

namespace {

constexpr const char* kPitch = "pitch";
constexpr const char* kSlope = "slope";
constexpr const char* kOblique = "oblique";
constexpr const char* kPlaneY = "plane-y";
constexpr const char* kMoved = "moved";
constexpr double kLongest = 1e6; // mm

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
                       "3 and 4) [%1 for a sensor at smaller y than the crests, %2 for one at larger y; where the side "
                       "is not given, %1 for the positions 1 and 3, %2 for 2, 4 and 5].")
            .arg(object.obliqueness)
            .arg(-object.obliqueness),
        "T");
    options.addOption(kPlaneY, QStringLiteral("Y of the plane of the crests [0]."), "mm");
}

QStringList objectOptionNames() {
    return kxreport::textList({kPitch, kSlope, kOblique, kPlaneY});
}

KxInspect::CalibrationObject objectOption(const Options& options, int placement,
                                          std::optional<KxInspect::SensorSide> side) {
    KxInspect::CalibrationObject object =
        side ? KxInspect::calibrationObjectFacing(*side) : KxInspect::calibrationObjectFor(placement);
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

void addMovedOption(Options& options, const QString& help) {
    options.addOption(kMoved, help, "X,Y,Z");
}

std::vector<std::array<double, 3>> movedOption(const Options& options) {
    std::vector<std::array<double, 3>> moves;
    for (const QString& text : options.texts(kMoved)) {
        moves.push_back(threeNumbers(options, text, QStringLiteral("--moved"), kLongest));
    }
    return moves;
}

std::array<double, 3> threeNumbers(const Options& options, const QString& text, const QString& option, double limit) {
    const QStringList fields = text.split(QLatin1Char(','));
    std::array<double, 3> numbers{};
    if (fields.size() != static_cast<qsizetype>(numbers.size())) {
        options.failNeed(option, QStringLiteral("3 numbers separated by ','"), text);
    }
    for (size_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = options.toNumber(fields[static_cast<qsizetype>(i)], QStringLiteral("each part of ") + option,
                                      {-limit, limit});
    }
    return numbers;
}

} // namespace kxtool
