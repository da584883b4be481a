// The table of the keys of settings, and the check of values against it.
#include "inspect/settings/settingKeys.h"

#include "inspect/base/paths.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kMostSlope = 20.0; // 87 degrees; steeper lines are no function of x in any useful way
constexpr double kFarthest = 10000.0; // mm; sensors see much less
constexpr double kMostPoints = 65535.0; // in a record, whose count has 16 bits
constexpr double kMostProfiles = 100000.0; // of one wheel

constexpr const char* kAlways = "always";
constexpr const char* kMode3 = "mode 3";
constexpr const char* kDefects = "defects";
constexpr const char* kNever = "";
constexpr const char* kStation = "station";
constexpr const char* kBoth = "both";

std::vector<SettingKey> makeKeys() {
    constexpr bool kPerSensor = true;
    constexpr bool kGlobal = false;
    constexpr bool kWhole = true;
    constexpr bool kReal = false;
    const std::nullopt_t kNone = std::nullopt;
    const auto real = [](float value) { return static_cast<double>(value); };
    const WheelDetection d;
    const DefectLimits l;
    const double minProfiles = StationSettings().minProfilesInWheel;
    std::vector<SettingKey> keys = {
        {"calibrLines2", kGlobal, kReal, "base distance between the reference lines", "mm", kNone, 100, 10000, kAlways,
         kStation},
        {"baseUncertainty", kGlobal, kReal, "how far the base distance may be off, to both sides, with 95 %", "mm",
         kNone, 0, 100, kNever, kStation},
        {"minProfsInWheel", kGlobal, kWhole, "shorter runs of wheel profiles are no wheel", "profiles", minProfiles, 0,
         kMostProfiles, kNever, kStation},
        {"SN", kPerSensor, kWhole, "serial number; 0 ends the list of sensors", "", kNone, 0,
         std::numeric_limits<int>::max(), kAlways, kBoth},
        {"level_k", kPerSensor, kReal, "slope of the level line; for defects of the high line", "", kNone, -kMostSlope,
         kMostSlope, kAlways, kBoth},
        {"level_b", kPerSensor, kReal, "y of the level line at x = 0; for defects of the high line", "mm", kNone,
         -kFarthest, kFarthest, kAlways, kBoth},
        {"k2", kPerSensor, kReal, "slope of the reference line", "", kNone, -kMostSlope, kMostSlope, kAlways, kStation},
        {"b2", kPerSensor, kReal, "y of the reference line at x = 0", "mm", kNone, -kFarthest, kFarthest, kAlways,
         kStation},
        {"lowlevel_k", kPerSensor, kReal, "slope of the low line", "", kNone, -kMostSlope, kMostSlope, kMode3,
         kStation},
        {"lowlevel_b", kPerSensor, kReal, "y of the low line at x = 0", "mm", kNone, -kFarthest, kFarthest, kMode3,
         kStation},
        {"lowLevel_k", kPerSensor, kReal, "slope of the low line of the defects", "", kNone, -kMostSlope, kMostSlope,
         kDefects, kDefects},
        {"lowLevel_b", kPerSensor, kReal, "y of the low line of the defects at x = 0", "mm", kNone, -kFarthest,
         kFarthest, kDefects, kDefects},
        {"wndSize", kPerSensor, kWhole, "window of the noise filter; 0 for no filter", "points", double(d.noiseWindow),
         0, 1000, kNever, kStation},
        {"higherPoinInWnd", kPerSensor, kWhole, "higher steps that may be in a window", "steps", double(d.maxJumps), 0,
         1000, kNever, kStation},
        {"maxdY", kPerSensor, kReal, "what a higher step is", "mm", real(d.maxJump), 0, 1000, kNever, kStation},
        {"minPointsIn", kPerSensor, kWhole, "a profile with more points below the level line shows a wheel", "points",
         double(d.minPoints), 0, kMostPoints, kNever, kStation},
        {"maxCorr", kPerSensor, kReal, "straight parts that are removed in mode 3", "parts", double(d.maxParts), 0,
         kMostPoints, kNever, kStation},
        {"parts", kPerSensor, kReal, "correlation from which a part is straight, in mode 3", "", real(d.maxCorrelation),
         0, kMostPoints, kNever, kStation},
        {"maxDist", kPerSensor, kReal, "gap that ends a part, in mode 3", "mm", real(d.maxGap), 0, kFarthest, kNever,
         kStation},
        {"maxDeviation", kGlobal, kReal, "points farther off the curve deviate", "mm", real(l.maxDeviation), 0.001, 100,
         kNever, kDefects},
        {"pointsHigher", kGlobal, kWhole, "a profile with more deviating points is defective", "points",
         double(l.pointsHigher), 0, kMostPoints, kNever, kDefects},
        {"minimalDefectsProf", kGlobal, kWhole, "a wheel with more defective profiles is defective", "profiles",
         double(l.minProfiles), 0, kMostProfiles, kNever, kDefects},
        {"maxRadiusDeviation", kGlobal, kReal, "how far the tread may be off the circle", "mm",
         real(l.maxRadiusDeviation), 0.001, 100, kNever, kDefects},
        {"radiusProfiles", kGlobal, kWhole, "successive profiles off the circle that make a wheel out of round",
         "profiles", double(l.radiusProfiles), 1, kMostProfiles, kNever, kDefects},
        {"side",
         kPerSensor,
         kReal,
         "side of the track whose wheels the sensor sees",
         "",
         kNone,
         -kInfinity,
         kInfinity,
         kNever,
         kNever,
         {textOf(TrackSide::Left), textOf(TrackSide::Right)}},
        {"use", kGlobal, kWhole, "not read", "", kNone, -kInfinity, kInfinity, kNever, kNever},
        {"polynomDegree", kGlobal, kWhole, "not read: the degree is 20", "", kNone, -kInfinity, kInfinity, kNever,
         kNever}};
    for (const char* const pose : {"x", "y", "z", "alpha", "beta", "gamma", "position"}) {
        keys.push_back({pose, kPerSensor, kReal, "pose of the sensor, for the shape and the measures of wheels", "",
                        kNone, -kInfinity, kInfinity, kNever, kNever});
    }
    constexpr double kMostShift = 1000.0; // mm
    constexpr double kMostTurn = 45.0; // degrees
    for (const char* const length : {"xUncertainty", "yUncertainty", "zUncertainty"}) {
        keys.push_back({length, kPerSensor, kReal,
                        "how far that value of the pose may be off, to both sides, with 95 %", "mm", kNone, 0,
                        kMostShift, kNever, kNever});
    }
    for (const char* const angle : {"alphaUncertainty", "betaUncertainty", "gammaUncertainty"}) {
        keys.push_back({angle, kPerSensor, kReal, "how far that angle of the pose may be off, to both sides, with 95 %",
                        "degrees", kNone, 0, kMostTurn, kNever, kNever});
    }
    return keys;
}

QString numberText(double value) {
    return QString::number(value, 'g', 7); // of a float what it was written as
}

QString withUnit(const QString& number, const SettingKey& key) {
    return key.unit.empty() ? number : number + QLatin1Char(' ') + detail::toQt(key.unit);
}

/// The unit in which the value would be in range, as a question.
QString likelyUnit(const SettingKey& key, double value) {
    const auto fits = [&](double factor) {
        return value != 0.0 && value * factor >= key.min && value * factor <= key.max;
    };
    constexpr double kPerMetre = 1000.0;
    constexpr double kRightAngle = 90.0;
    if (key.unit == "mm" && fits(kPerMetre)) {
        return QStringLiteral(": is it in metres?");
    }
    if (key.unit == "mm" && fits(1.0 / kPerMetre)) {
        return QStringLiteral(": is it in micrometres?");
    }
    const bool isSlope = key.min == -kMostSlope;
    return isSlope && std::abs(value) < kRightAngle ? QStringLiteral(": is it an angle in degrees?") : QString();
}

} // namespace

const std::vector<SettingKey>& settingKeys() {
    static const std::vector<SettingKey> keys = makeKeys();
    return keys;
}

const SettingKey* detail::findSettingKey(const QString& key) {
    const qsizetype slash = key.indexOf(QLatin1Char('/'));
    const std::string name = key.mid(slash + 1).toStdString();
    const auto found = std::find_if(settingKeys().begin(), settingKeys().end(), [&](const SettingKey& known) {
        return known.name == name && known.isPerSensor == (slash >= 0);
    });
    return found != settingKeys().end() ? &*found : nullptr;
}

QString detail::whyOutOfRange(const QString& key, double value) {
    const SettingKey* const known = findSettingKey(key);
    if (known == nullptr || (value >= known->min && value <= known->max)) {
        return {};
    }
    return QStringLiteral("give %1 for '%2', which is outside %3 to %4%5")
        .arg(withUnit(numberText(value), *known), key, numberText(known->min), withUnit(numberText(known->max), *known),
             likelyUnit(*known, value));
}

} // namespace KxInspect
