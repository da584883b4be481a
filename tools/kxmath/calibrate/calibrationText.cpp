// What kxmath calibrate found, for the standard output and as JSON.
#include "tools/kxmath/calibrate/calibrationResult.h"

#include "simulator/json.h"

#include <KxMath/KxMathVersion.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <cmath>

namespace kxtool {

namespace {

QString column(double value, int decimals, int width) {
    const QString text = std::isfinite(value) ? QString::number(value, 'f', decimals) : QStringLiteral("-");
    return text.rightJustified(width);
}

QString poseTable(const CalibrationResult& result) {
    const PoseAverage& average = result.average;
    QString text = QStringLiteral("pose             value   deviation     largest\n");
    for (size_t i = 0; i < kPoseNames.size(); ++i) {
        const bool isAngle = i >= kFirstAngle;
        const bool isKnown = i != 1 || result.hasY();
        const int decimals = isAngle ? 4 : 3;
        text += QStringLiteral("%1%2").arg(QLatin1String(kPoseNames[i]), -6).arg(isAngle ? "deg" : "mm ");
        text += column(isKnown ? average.pose[i] : std::nan(""), decimals, 13);
        text += column(average.deviation[i], decimals, 12) +
                column(average.profiles > 1 ? average.largest[i] : std::nan(""), decimals, 12);
        text += QLatin1Char('\n');
    }
    return text;
}

QString flankTable(const CalibrationResult& result) {
    QString text = QStringLiteral("flank                  points      mean       rms   largest, mm from the object\n");
    const auto flanks = pooled(result.measurements);
    for (int i = 0; i < kFlankCount; ++i) {
        const FlankResidual& flank = flanks[static_cast<size_t>(i)];
        text += flankName(i).leftJustified(21) + QString::number(flank.points).rightJustified(8);
        text += column(flank.mean, 3, 10) + column(flank.rms, 3, 10) + column(flank.largest, 3, 10);
        text += flank.isOff() ? QStringLiteral("  off\n") : QStringLiteral("\n");
    }
    return text;
}

QJsonValue number(double value) {
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

QJsonObject toJson(const PoseValues& values, bool hasY) {
    QJsonObject json;
    for (size_t i = 0; i < values.size(); ++i) {
        json[QLatin1String(kPoseNames[i])] = i != 1 || hasY ? number(values[i]) : QJsonValue();
    }
    return json;
}

QJsonArray toJson(const std::array<FlankResidual, kFlankCount>& flanks) {
    QJsonArray json;
    for (int i = 0; i < kFlankCount; ++i) {
        const FlankResidual& flank = flanks[static_cast<size_t>(i)];
        json.append(QJsonObject{{"flank", flankName(i)},
                                {"points", flank.points},
                                {"mean", number(flank.mean)},
                                {"rms", number(flank.rms)},
                                {"largest", number(flank.largest)},
                                {"isOff", flank.isOff()}});
    }
    return json;
}

QJsonObject toJson(const PoseMeasurement& m, bool hasY) {
    if (!m.fault.isEmpty()) {
        return {{"name", m.name}, {"fault", m.fault}};
    }
    return {{"name", m.name},
            {"pose", toJson(m.pose, hasY)},
            {"foundY", number(m.foundY)},
            {"rms", number(m.rms)},
            {"angleDeviation", number(m.angleDeviation)},
            {"flanks", toJson(m.flanks)}};
}

} // namespace

QString calibrationText(const CalibrationResult& result) {
    return QStringLiteral("position %1, profiles with a pose: %2 of %3\n")
               .arg(result.task.placement)
               .arg(result.average.profiles)
               .arg(result.measurements.size()) +
           poseTable(result) + flankTable(result);
}

QString calibrationJson(const CalibrationResult& result) {
    const PoseAverage& average = result.average;
    QJsonArray profiles;
    for (const PoseMeasurement& m : result.measurements) {
        profiles.append(toJson(m, result.hasY()));
    }
    QJsonObject json = {{"command", "calibrate"},
                        {"version", KxMath_GetVersionString()},
                        {"position", result.task.placement},
                        {"object", kxsim::toJson(result.task.object)},
                        {"pose", QJsonValue()},
                        {"profiles", profiles},
                        {"unreadable", QJsonArray::fromStringList(result.unreadable)},
                        {"warnings", QJsonArray::fromStringList(result.warnings)}};
    if (result.hasPose()) {
        json["pose"] = toJson(average.pose, result.hasY());
        json["foundY"] = number(average.foundY);
        json["deviation"] = toJson(average.deviation, true);
        json["largest"] = toJson(average.largest, true);
        json["pointDifference"] = number(average.pointDifference);
        json["flanks"] = toJson(pooled(result.measurements));
    }
    return QString::fromUtf8(QJsonDocument(json).toJson());
}

} // namespace kxtool
