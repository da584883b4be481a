// A pass for programs.
#include "inspect/results/passJson.h"

#include "tools/kxmath/console/numbers.h"

#include <KxMath/KxMathVersion.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

namespace kxtool {

namespace {

QJsonObject lineObject(const KxMath::KxLine& line) {
    return {{QStringLiteral("k"), jsonNumber(line.k)}, {QStringLiteral("b"), jsonNumber(line.b)}};
}

QJsonObject recordingObject(const Side& side) {
    return {{QStringLiteral("file"), side.recording.name},
            {QStringLiteral("serial"), side.recording.serial},
            {QStringLiteral("sensor"), side.sensor.number},
            {QStringLiteral("bytes"), side.recording.bytes},
            {QStringLiteral("cloudSections"), side.recording.cloudSections},
            {QStringLiteral("profileRecords"), side.recording.profileRecords},
            {QStringLiteral("level"), lineObject(side.sensor.level)},
            {QStringLiteral("reference"), lineObject(side.sensor.reference)},
            {QStringLiteral("wheelDirectory"), side.recording.wheelDirectory},
            {QStringLiteral("wheels"), static_cast<qint64>(side.wheels.size())}};
}

QJsonObject defectsObject(const WheelDefects& defects) {
    QJsonArray profiles;
    for (const int number : defects.profiles) {
        profiles.append(number);
    }
    return {{QStringLiteral("judgedProfiles"), defects.judged},
            {QStringLiteral("defectiveProfiles"), profiles},
            {QStringLiteral("deviatingPoints"), defects.deviating},
            {QStringLiteral("worstProfile"), defects.judged > 0 ? QJsonValue(defects.worstProfile) : QJsonValue()},
            {QStringLiteral("largestDeviation"), jsonNumber(defects.largest)},
            {QStringLiteral("isDefective"), defects.judged > 0 ? QJsonValue(defects.isDefective) : QJsonValue()}};
}

QJsonValue roundnessValue(const std::optional<WheelRoundness>& roundness) {
    if (!roundness || !roundness->isJudged()) {
        return QJsonValue();
    }
    QJsonArray radii;
    for (const RadiusDeviation& radius : roundness->radii) {
        radii.append(QJsonObject{{QStringLiteral("profile"), radius.profile},
                                 {QStringLiteral("fromAxle"), jsonNumber(radius.place)},
                                 {QStringLiteral("deviation"), jsonNumber(radius.deviation)}});
    }
    QJsonArray profiles;
    for (const int number : roundness->profiles) {
        profiles.append(number);
    }
    return QJsonObject{{QStringLiteral("flangeRadius"), jsonNumber(roundness->flangeRadius)},
                       {QStringLiteral("scatter"), jsonNumber(roundness->scatter)},
                       {QStringLiteral("radii"), radii},
                       {QStringLiteral("profilesOff"), profiles},
                       {QStringLiteral("largestDeviation"), jsonNumber(roundness->largest)},
                       {QStringLiteral("isOutOfRound"), roundness->isOut}};
}

QJsonValue limitsValue(const Pass& pass) {
    if (!pass.defectSettings) {
        return QJsonValue();
    }
    const DefectLimits& limits = pass.defectSettings->limits;
    return QJsonObject{{QStringLiteral("maxDeviation"), jsonNumber(limits.maxDeviation)},
                       {QStringLiteral("pointsHigher"), limits.pointsHigher},
                       {QStringLiteral("minimalDefectsProf"), limits.minProfiles},
                       {QStringLiteral("maxRadiusDeviation"), jsonNumber(limits.maxRadiusDeviation)},
                       {QStringLiteral("radiusProfiles"), limits.radiusProfiles},
                       {QStringLiteral("fromX"), jsonNumber(limits.fromX)},
                       {QStringLiteral("toX"), jsonNumber(limits.toX)}};
}

QJsonValue wheelValue(const Wheel* wheel) {
    if (wheel == nullptr) {
        return QJsonValue();
    }
    return QJsonObject{
        {QStringLiteral("wheel"), wheel->number},
        {QStringLiteral("profiles"), wheel->profiles},
        {QStringLiteral("firstRecord"), wheel->firstRecord},
        {QStringLiteral("lastRecord"), wheel->lastRecord()},
        {QStringLiteral("chosenProfile"), wheel->chosenProfile},
        {QStringLiteral("points"), wheel->pointsBelowLevel},
        {QStringLiteral("defects"), wheel->defects ? QJsonValue(defectsObject(*wheel->defects)) : QJsonValue()},
        {QStringLiteral("roundness"), roundnessValue(wheel->roundness)}};
}

QJsonObject pairObject(const Pass& pass, size_t index) {
    const MeasuredPair& pair = pass.pairs[index];
    const bool isMeasured = std::isfinite(pair.distance);
    return {
        {QStringLiteral("pair"), static_cast<qint64>(index + 1)},
        {QStringLiteral("sides"), QJsonArray{wheelValue(pass.wheelOf(pair, 0)), wheelValue(pass.wheelOf(pair, 1))}},
        {QStringLiteral("distance"), jsonNumber(pair.distance)},
        {QStringLiteral("deviation"), jsonNumber(pair.distance - pass.tolerance.nominal)},
        {QStringLiteral("inTolerance"), isMeasured ? QJsonValue(pass.tolerance.holds(pair.distance)) : QJsonValue()}};
}

} // namespace

QString passJson(const Pass& pass, const QString& folder) {
    QJsonArray pairs;
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        pairs.append(pairObject(pass, i));
    }
    const QJsonObject document = {
        {QStringLiteral("command"), QStringLiteral("train")},
        {QStringLiteral("version"), QLatin1String(KxMath_GetVersionString())},
        {QStringLiteral("mode"), pass.mode},
        {QStringLiteral("settings"), pass.settingsName},
        {QStringLiteral("folder"), folder.isEmpty() ? QJsonValue() : QJsonValue(folder)},
        {QStringLiteral("recordings"), QJsonArray{recordingObject(pass.sides[0]), recordingObject(pass.sides[1])}},
        {QStringLiteral("baseDistance"), jsonNumber(pass.baseDistance)},
        {QStringLiteral("nominal"), jsonNumber(pass.tolerance.nominal)},
        {QStringLiteral("tolerance"), jsonNumber(pass.tolerance.allowed)},
        {QStringLiteral("distances"), pass.distances()},
        {QStringLiteral("defectLimits"), limitsValue(pass)},
        {QStringLiteral("pairs"), pairs},
        {QStringLiteral("warnings"), QJsonArray::fromStringList(pass.warnings)}};
    return QString::fromUtf8(QJsonDocument(document).toJson());
}

} // namespace kxtool
