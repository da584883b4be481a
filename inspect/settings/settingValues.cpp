// Settings as keys and values.
#include "inspect/settings/settingValues.h"

#include <KxInspect/Json.h>
#include <KxMath/KxWheelDetection.h>

#include <charconv>
#include <cmath>

namespace KxInspect::detail {

namespace {

/// The number that the shortest text of a float says: 1360.1, not 1360.0999755859375.
double asWritten(float value) {
    const std::string text = shortestText(value);
    double result = static_cast<double>(value);
    std::from_chars(text.data(), text.data() + text.size(), result);
    return result;
}

class ValueList {
public:
    void add(const char* key, double value) { addNamed(key, value); }
    void add(const char* key, float value) { addNamed(key, static_cast<double>(value)); }
    void add(int sensor, const char* key, double value) { addNamed(keyOf(sensor, key), value); }
    void add(int sensor, const char* key, float value) { addNamed(keyOf(sensor, key), static_cast<double>(value)); }
    void add(int sensor, const char* key, const char* word) { values.push_back({keyOf(sensor, key), word}); }
    void add(int sensor, const char* slope, const char* intercept, const std::optional<Line>& line) {
        if (line) {
            add(sensor, slope, line->slope);
            add(sensor, intercept, line->intercept);
        }
    }
    std::vector<SettingValue> values;

private:
    static std::string keyOf(int sensor, const char* key) { return KxMath::KxSensorKey(sensor, key).toStdString(); }
    void addNamed(const std::string& key, double value) {
        const auto narrow = static_cast<float>(value);
        if (std::isfinite(value)) {
            values.push_back({key, static_cast<double>(narrow) == value ? asWritten(narrow) : value});
        }
    }
};

void addDetection(int sensor, const WheelDetection& detection, ValueList& list) {
    list.add(sensor, "wndSize", static_cast<double>(detection.noiseWindow));
    list.add(sensor, "higherPoinInWnd", static_cast<double>(detection.maxJumps));
    list.add(sensor, "maxdY", detection.maxJump);
    list.add(sensor, "minPointsIn", static_cast<double>(detection.minPoints));
    list.add(sensor, "maxCorr", static_cast<double>(detection.maxParts));
    list.add(sensor, "parts", detection.maxCorrelation);
    list.add(sensor, "maxDist", detection.maxGap);
}

} // namespace

std::vector<SettingValue> valuesOf(const StationSettings& settings) {
    ValueList list;
    if (settings.baseDistance) {
        list.add("calibrLines2", *settings.baseDistance);
    }
    if (settings.baseUncertainty) {
        list.add("baseUncertainty", *settings.baseUncertainty);
    }
    list.add("minProfsInWheel", static_cast<double>(settings.minProfilesInWheel));
    for (const SensorSettings& sensor : settings.sensors) {
        list.add(sensor.number, "SN", static_cast<double>(sensor.serial));
        list.add(sensor.number, "level_k", "level_b", sensor.level);
        list.add(sensor.number, "lowlevel_k", "lowlevel_b", sensor.low);
        list.add(sensor.number, "k2", "b2", sensor.reference);
        addDetection(sensor.number, sensor.detection, list);
        if (sensor.angles) {
            list.add(sensor.number, "alpha", sensor.angles->alpha);
            list.add(sensor.number, "beta", sensor.angles->beta);
            list.add(sensor.number, "gamma", sensor.angles->gamma);
        }
        if (sensor.origin) {
            list.add(sensor.number, "x", sensor.origin->x);
            list.add(sensor.number, "y", sensor.origin->y);
            list.add(sensor.number, "z", sensor.origin->z);
        }
        if (sensor.poseUncertainty) {
            list.add(sensor.number, "xUncertainty", sensor.poseUncertainty->x);
            list.add(sensor.number, "yUncertainty", sensor.poseUncertainty->y);
            list.add(sensor.number, "zUncertainty", sensor.poseUncertainty->z);
            list.add(sensor.number, "alphaUncertainty", sensor.poseUncertainty->alpha);
            list.add(sensor.number, "betaUncertainty", sensor.poseUncertainty->beta);
            list.add(sensor.number, "gammaUncertainty", sensor.poseUncertainty->gamma);
        }
        if (sensor.side) {
            list.add(sensor.number, "side", textOf(*sensor.side));
        }
    }
    return list.values;
}

std::vector<SettingValue> valuesOf(const DefectSettings& settings) {
    ValueList list;
    list.add("maxDeviation", settings.limits.maxDeviation);
    list.add("pointsHigher", static_cast<double>(settings.limits.pointsHigher));
    list.add("minimalDefectsProf", static_cast<double>(settings.limits.minProfiles));
    list.add("maxRadiusDeviation", settings.limits.maxRadiusDeviation);
    list.add("radiusProfiles", static_cast<double>(settings.limits.radiusProfiles));
    for (const DefectLines& sensor : settings.sensors) {
        list.add(sensor.number, "SN", static_cast<double>(sensor.serial));
        list.add(sensor.number, "level_k", "level_b", sensor.high);
        list.add(sensor.number, "lowLevel_k", "lowLevel_b", sensor.low);
    }
    return list.values;
}

} // namespace KxInspect::detail
