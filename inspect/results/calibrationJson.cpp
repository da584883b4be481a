// The calibration of a sensor as JSON, and back.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/calibrate/flankResiduals.h"
#include "inspect/results/json.h"

#include <KxInspect/Calibration.h>

#include <QtCore/QJsonArray>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace KxInspect {

namespace {

using detail::jsonList;
using detail::jsonNumber;
using detail::JsonValue;

constexpr const char* kCommand = "calibrate";
constexpr const char* kNoY = "this position does not find y, and it was not given";
constexpr const char* kSmallerY = "smaller-y";
constexpr const char* kLargerY = "larger-y";
constexpr int kOutlier = -1; // in place of a flank
constexpr const char* kNoFlank = "no point lies on a flank of the object";

/// Throws an Error (Unsuitable) about what is not as it must be.
void require(bool isRight, const char* key, const char* what) {
    if (!isRight) {
        detail::fail(ErrorKind::Unsuitable, {"result", {}, key},
                     QStringLiteral("does not hold %1 in '%2'").arg(QLatin1String(what), QLatin1String(key)));
    }
}

/// The fields of a value, kPoseFields or kCalibrationObjectFields.
template <typename Value, typename Fields>
QJsonObject fieldsToJson(const Value& value, const Fields& fields) {
    QJsonObject json;
    for (const auto& field : fields) {
        json[QLatin1String(field.name)] = jsonNumber(value.*field.value);
    }
    return json;
}

template <typename Value, typename Fields>
void readFields(const JsonValue& json, const Fields& fields, Value& value) {
    for (const auto& field : fields) {
        value.*field.value = json[field.name].wideNumber();
    }
}

QJsonObject toJson(const SensorPose& pose) {
    return fieldsToJson(pose, kPoseFields);
}

QJsonObject intervalsToJson(const SensorPose& pose, const SensorPose& uncertainty) {
    QJsonObject json;
    for (const PoseField& field : kPoseFields) {
        json[QLatin1String(field.name)] = detail::jsonInterval(intervalOf(pose, uncertainty, field.value));
    }
    return json;
}

QJsonArray toJson(const std::array<double, 3>& moved) {
    return {moved[0], moved[1], moved[2]};
}

QJsonArray toJson(const FlankResiduals& flanks) {
    QJsonArray json;
    for (std::size_t i = 0; i < flanks.size(); ++i) {
        QJsonObject flank = {{"flank", detail::toQt(flankName(i))},
                             {"points", flanks[i].points},
                             {"mean", jsonNumber(flanks[i].mean)},
                             {"uncertainty", jsonNumber(flanks[i].uncertainty)},
                             {"interval", detail::jsonInterval(intervalOf(flanks[i]))},
                             {"rms", jsonNumber(flanks[i].rms)},
                             {"largest", jsonNumber(flanks[i].largest)},
                             {"isOff", flanks[i].isJudged() ? QJsonValue(flanks[i].isOff()) : QJsonValue()}};
        if (!flanks[i].isJudged()) {
            flank["reason"] = "no point lies on it";
        }
        json.append(flank);
    }
    return json;
}

QJsonObject toJson(const ProfilePose& profile) {
    const QString name = detail::toQt(profile.name);
    if (!profile.hasPose()) {
        return {{"name", name}, {"moved", toJson(profile.moved)}, {"fault", detail::toQt(profile.fault)}};
    }
    QJsonObject reasons;
    if (std::isnan(profile.pose.y)) {
        reasons["pose.y"] = kNoY;
    }
    if (std::isnan(profile.rms)) {
        reasons["rms"] = kNoFlank;
    }
    return {{"name", name},
            {"reasons", reasons},
            {"pose", toJson(profile.pose)},
            {"foundY", jsonNumber(profile.foundY)},
            {"rms", jsonNumber(profile.rms)},
            {"angleDeviation", jsonNumber(profile.angleDeviation)},
            {"uncertainty", toJson(profile.uncertainty)},
            {"interval", intervalsToJson(withFoundY(profile.pose, profile.foundY), profile.uncertainty)},
            {"outliers", profile.outliers},
            {"moved", toJson(profile.moved)},
            {"flanks", toJson(profile.flanks)}};
}

/// Null where none was told.
QJsonValue objectErrorToJson(const ObjectError& error) {
    return error.isSet()
               ? QJsonValue(QJsonObject{{"pitch", error.pitch}, {"slope", error.slope}, {"oblique", error.obliqueness}})
               : QJsonValue();
}

QJsonValue sideToJson(std::optional<SensorSide> side) {
    return side ? QJsonValue(*side == SensorSide::SmallerY ? kSmallerY : kLargerY) : QJsonValue();
}

std::optional<SensorSide> readSide(const JsonValue& json) {
    if (json.isNull()) {
        return std::nullopt;
    }
    const std::string side = json.text();
    require(side == kSmallerY || side == kLargerY, "side", "smaller-y or larger-y");
    return side == kSmallerY ? SensorSide::SmallerY : SensorSide::LargerY;
}

/// The mean, named by `pose`: that of the sensor, or one of profiles that are not of one pose.
void addAverage(const PoseAverage& average, QJsonObject& json) {
    json["pose"] = toJson(average.pose);
    json["uncertainty"] = toJson(average.uncertainty);
    json["interval"] = intervalsToJson(withFoundY(average.pose, average.foundY), average.uncertainty);
    json["foundY"] = jsonNumber(average.foundY);
    json["deviation"] = toJson(average.deviation);
    json["largest"] = toJson(average.largest);
    json["pointDifference"] = jsonNumber(average.pointDifference);
}

/// Why members are null, by their names.
QJsonObject reasonsToJson(const CalibrationResult& result) {
    if (!result.hasPose()) {
        return {{"pose", detail::toQt(reasonWithoutPose(result))}};
    }
    const PoseAverage& average = result.average;
    QJsonObject reasons;
    const auto add = [&reasons](bool isMissing, std::initializer_list<const char*> names, const char* reason) {
        for (const char* const name : names) {
            if (isMissing) {
                reasons[QLatin1String(name)] = QLatin1String(reason);
            }
        }
    };
    add(!result.otherPose, {"otherPose"}, "the oblique crest is known to be where the position says");
    add(std::isnan(average.pose.y), {"pose.y"}, kNoY);
    add(average.profiles == 1, {"deviation", "largest", "pointDifference"}, "a single profile has no spread");
    return reasons;
}

/// {"x": [...], "y": [...], "flank": [...], "residual": [...]}; null for a point on no flank, -1 as the flank of an
/// outlier.
QJsonObject pointsToJson(const std::vector<CalibrationPoint>& points) {
    std::vector<Point> places;
    QJsonArray flanks;
    std::vector<double> residuals;
    for (const CalibrationPoint& point : points) {
        places.push_back(point.point);
        const QJsonValue none = point.isOutlier ? QJsonValue(kOutlier) : QJsonValue();
        flanks.append(point.flank ? QJsonValue(static_cast<int>(*point.flank)) : none);
        residuals.push_back(point.residual);
    }
    QJsonObject json = detail::jsonPoints(places);
    json["flank"] = flanks;
    json["residual"] = jsonList(residuals);
    return json;
}

QJsonObject picturesToJson(const CalibrationResult& result) {
    QJsonArray profiles;
    for (const ProfilePose& profile : result.profiles) {
        profiles.append(pointsToJson(profile.points));
    }
    const std::optional<float> y = result.task.sensorY;
    QJsonObject json = {
        {"sensorY", y ? jsonNumber(*y) : QJsonValue()}, {"side", sideToJson(result.task.side)}, {"profiles", profiles}};
    if (!result.average.fault.empty()) {
        json["fault"] = detail::toQt(result.average.fault);
        addAverage(result.average, json);
    }
    return json;
}

SensorPose readPose(const JsonValue& json) {
    SensorPose pose;
    readFields(json, kPoseFields, pose);
    return pose;
}

FlankResiduals readFlanks(const JsonValue& json) {
    const std::vector<JsonValue> list = json.list();
    require(list.size() == kFlankCount, "flanks", "8 flanks");
    FlankResiduals flanks;
    for (std::size_t i = 0; i < flanks.size(); ++i) {
        flanks[i] = {list[i]["points"].wholeNumber(), list[i]["mean"].wideNumber(), list[i]["rms"].wideNumber(),
                     list[i]["largest"].wideNumber(), list[i]["uncertainty"].wideNumber()};
    }
    return flanks;
}

ProfilePose readProfile(const JsonValue& json) {
    ProfilePose profile;
    profile.name = json["name"].text();
    const std::vector<double> moved = json["moved"].wideNumbers();
    require(moved.size() == profile.moved.size(), "moved", "3 numbers");
    std::copy(moved.begin(), moved.end(), profile.moved.begin());
    if (json.has("fault")) {
        profile.fault = json["fault"].text();
        return profile;
    }
    profile.pose = readPose(json["pose"]);
    profile.foundY = json["foundY"].wideNumber();
    profile.rms = json["rms"].wideNumber();
    profile.angleDeviation = json["angleDeviation"].wideNumber();
    profile.uncertainty = readPose(json["uncertainty"]);
    profile.outliers = json["outliers"].wholeNumber();
    profile.flanks = readFlanks(json["flanks"]);
    return profile;
}

void readAverage(const JsonValue& json, PoseAverage& average) {
    average.pose = readPose(json["pose"]);
    average.uncertainty = readPose(json["uncertainty"]);
    average.foundY = json["foundY"].wideNumber();
    average.deviation = readPose(json["deviation"]);
    average.largest = readPose(json["largest"]);
    average.pointDifference = json["pointDifference"].wideNumber();
}

std::vector<CalibrationPoint> readPoints(const JsonValue& json) {
    const std::vector<Point> places = json.points();
    const std::vector<JsonValue> flanks = json["flank"].list();
    const std::vector<double> residuals = json["residual"].wideNumbers();
    require(flanks.size() == places.size() && residuals.size() == places.size(), "pictures.profiles",
            "as many flanks and residuals as points");
    std::vector<CalibrationPoint> points;
    for (std::size_t i = 0; i < places.size(); ++i) {
        CalibrationPoint point{places[i], {}, false, residuals[i]};
        if (!flanks[i].isNull()) {
            const int flank = flanks[i].wholeNumber();
            point.isOutlier = flank == kOutlier;
            require(point.isOutlier || (flank >= 0 && flank < static_cast<int>(kFlankCount)), "pictures.profiles",
                    "flanks from 0 to 7");
            if (!point.isOutlier) {
                point.flank = static_cast<std::size_t>(flank);
            }
        }
        points.push_back(point);
    }
    return points;
}

void readPictures(const JsonValue& json, CalibrationResult& result) {
    if (!json["sensorY"].isNull()) {
        result.task.sensorY = json["sensorY"].number();
    }
    result.task.side = readSide(json["side"]);
    if (json.has("fault")) {
        result.average.fault = json["fault"].text();
        readAverage(json, result.average);
    }
    const std::vector<JsonValue> profiles = json["profiles"].list();
    require(profiles.size() == result.profiles.size(), "pictures.profiles", "the points of all profiles");
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        result.profiles[i].points = readPoints(profiles[i]);
    }
}

} // namespace

std::string toJson(const CalibrationResult& result, Pictures pictures) {
    QJsonArray profiles;
    for (const ProfilePose& profile : result.profiles) {
        profiles.append(toJson(profile));
    }
    QJsonObject json = {{"command", kCommand},
                        {"version", detail::toQt(result.version)},
                        {"position", result.task.placement},
                        {"object", fieldsToJson(result.task.object, kCalibrationObjectFields)},
                        {"objectError", objectErrorToJson(result.task.objectError)},
                        {"pose", QJsonValue()},
                        {"side", QJsonValue()},
                        {"profiles", profiles},
                        {"reasons", reasonsToJson(result)},
                        {"unreadable", jsonList(result.unreadable)},
                        {"warnings", jsonList(result.warnings)}};
    if (result.hasPose()) {
        addAverage(result.average, json);
        json["flanks"] = toJson(result.flanks);
        json["side"] = sideToJson(result.side);
        json["otherPose"] = result.otherPose ? QJsonValue(toJson(*result.otherPose)) : QJsonValue();
    }
    if (pictures == Pictures::Included) {
        json["pictures"] = picturesToJson(result);
    }
    return detail::jsonText(json);
}

CalibrationResult calibrationFromJson(const std::string& text) {
    const JsonValue json = JsonValue::parse(text, kCommand);
    CalibrationResult result;
    result.version = json["version"].text();
    result.task.placement = json["position"].wholeNumber();
    readFields(json["object"], kCalibrationObjectFields, result.task.object);
    if (const JsonValue error = json["objectError"]; !error.isNull()) {
        result.task.objectError = {error["pitch"].wideNumber(), error["slope"].wideNumber(),
                                   error["oblique"].wideNumber()};
    }
    for (const JsonValue& profile : json["profiles"].list()) {
        result.profiles.push_back(readProfile(profile));
        result.average.profiles += result.profiles.back().hasPose() ? 1 : 0;
    }
    result.flanks = detail::pooled(result.profiles);
    result.unreadable = json["unreadable"].texts();
    result.warnings = json["warnings"].texts();
    if (!json["pose"].isNull()) {
        readAverage(json, result.average);
        result.side = readSide(json["side"]);
        if (!json["otherPose"].isNull()) {
            result.otherPose = readPose(json["otherPose"]);
        }
    } else if (result.average.profiles > 0) {
        result.average.fault = json["reasons"]["pose"].text();
    }
    if (json.has("pictures")) {
        readPictures(json["pictures"], result);
    }
    return result;
}

} // namespace KxInspect
