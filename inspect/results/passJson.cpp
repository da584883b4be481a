// The result of a pass as JSON.
#include "inspect/results/assessmentJson.h"
#include "inspect/results/identityJson.h"
#include "inspect/results/json.h"
#include "inspect/results/keptJson.h"
#include "inspect/results/passWheelsJson.h"
#include "inspect/results/trainJson.h"

#include <KxInspect/PassResult.h>

#include <cmath>

namespace KxInspect {

namespace {

using namespace detail;

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

/// Null for a sensor that measures no distances.
QJsonValue referenceValue(const Line& line) {
    return std::isfinite(line.slope) ? QJsonValue(jsonLine(line)) : QJsonValue();
}

QJsonObject sideObject(const PassSide& side) {
    QJsonObject object = {{QStringLiteral("file"), text(side.file)},
                          {QStringLiteral("serial"), side.serial},
                          {QStringLiteral("sensor"), side.sensor},
                          {QStringLiteral("bytes"), static_cast<qint64>(side.bytes)},
                          {QStringLiteral("sha256"), text(side.sha256)},
                          {QStringLiteral("cloudSections"), side.cloudSections},
                          {QStringLiteral("profileRecords"), side.profileRecords},
                          {QStringLiteral("level"), jsonLine(side.level)},
                          {QStringLiteral("reference"), referenceValue(side.reference)},
                          {QStringLiteral("wheelDirectory"), text(side.wheelDirectory)},
                          {QStringLiteral("wheels"), static_cast<qint64>(side.wheels.size())}};
    if (!side.missing.empty()) {
        object[QStringLiteral("missing")] = text(side.missing);
    }
    if (side.points) {
        QJsonObject points = {{QStringLiteral("recorded"), static_cast<qint64>(side.points->recorded)},
                              {QStringLiteral("missing"), static_cast<qint64>(side.points->missing)},
                              {QStringLiteral("removed"), static_cast<qint64>(side.points->removed)},
                              {QStringLiteral("belowLevel"), static_cast<qint64>(side.points->below)}};
        if (side.points->straight) {
            points[QStringLiteral("removedAsStraight")] = static_cast<qint64>(*side.points->straight);
        }
        object[QStringLiteral("points")] = points;
    }
    return object;
}

QJsonValue defectsValue(const std::optional<TreadDefects>& defects) {
    if (!defects) {
        return QJsonValue();
    }
    const auto ifJudged = [&](const QJsonValue& value) { return defects->judged > 0 ? value : QJsonValue(); };
    const QJsonValue isDefective = defects->isDefective ? QJsonValue(*defects->isDefective) : QJsonValue();
    return QJsonObject{{QStringLiteral("judgedProfiles"), defects->judged},
                       {QStringLiteral("defectiveProfiles"), ifJudged(jsonList(defects->profiles))},
                       {QStringLiteral("deviatingPoints"), ifJudged(defects->deviating)},
                       {QStringLiteral("worstProfile"), ifJudged(defects->worstProfile)},
                       {QStringLiteral("largestDeviation"), jsonNumber(defects->largest)},
                       {QStringLiteral("limit"), jsonNumber(defects->limit)},
                       {QStringLiteral("isDefective"), isDefective}};
}

QJsonValue roundnessValue(const std::optional<Roundness>& roundness) {
    if (!roundness) {
        return QJsonValue();
    }
    QJsonArray radii;
    for (const RadiusDeviation& radius : roundness->radii) {
        radii.append(QJsonObject{{QStringLiteral("profile"), radius.profile},
                                 {QStringLiteral("fromAxle"), jsonNumber(radius.place)},
                                 {QStringLiteral("deviation"), jsonNumber(radius.deviation)},
                                 {QStringLiteral("interval"), jsonInterval(radius.interval)}});
    }
    QJsonArray seen;
    for (const SeenArc& arc : roundness->seen) {
        seen.append(jsonList(std::vector<float>{arc.from, arc.to}));
    }
    return QJsonObject{{QStringLiteral("flangeRadius"), jsonNumber(roundness->flangeRadius)},
                       {QStringLiteral("scatter"), jsonNumber(roundness->scatter)},
                       {QStringLiteral("radii"), radii},
                       {QStringLiteral("profilesOff"), jsonList(roundness->profiles)},
                       {QStringLiteral("largestDeviation"), jsonNumber(roundness->largest)},
                       {QStringLiteral("largestInterval"), jsonInterval(roundness->largestInterval)},
                       {QStringLiteral("limit"), jsonNumber(roundness->limit)},
                       {QStringLiteral("band"), jsonList(std::vector<float>{roundness->bandFrom, roundness->bandTo})},
                       {QStringLiteral("seen"), seen},
                       {QStringLiteral("isOutOfRound"), roundness->isOut},
                       {QStringLiteral("isDirty"), roundness->isDirty}};
}

QJsonValue limitsValue(const std::optional<DefectLimits>& limits) {
    if (!limits) {
        return QJsonValue();
    }
    return QJsonObject{{QStringLiteral("maxDeviation"), jsonNumber(limits->maxDeviation)},
                       {QStringLiteral("pointsHigher"), limits->pointsHigher},
                       {QStringLiteral("minimalDefectsProf"), limits->minProfiles},
                       {QStringLiteral("maxRadiusDeviation"), jsonNumber(limits->maxRadiusDeviation)},
                       {QStringLiteral("radiusProfiles"), limits->radiusProfiles},
                       {QStringLiteral("fromX"), jsonNumber(limits->fromX)},
                       {QStringLiteral("toX"), jsonNumber(limits->toX)}};
}

/// Why something was not judged, null when it was.
QJsonValue reasonValue(const std::string& reason) {
    return reason.empty() ? QJsonValue() : QJsonValue(text(reason));
}

/// How many were judged of those that the question is about; null when it was not asked.
QJsonValue judgedValue(const PassResult& result, PassQuestion question) {
    if (question != PassQuestion::Distance && !result.defectLimits) {
        return QJsonValue();
    }
    const VerdictCount count = result.count(question);
    return QJsonObject{{QStringLiteral("judged"), count.judged}, {QStringLiteral("of"), count.asked}};
}

QJsonObject judgedObject(const PassResult& result) {
    return {{QStringLiteral("distances"), judgedValue(result, PassQuestion::Distance)},
            {QStringLiteral("treads"), judgedValue(result, PassQuestion::Tread)},
            {QStringLiteral("roundness"), judgedValue(result, PassQuestion::Roundness)}};
}

QJsonValue wheelValue(const PassWheel* wheel) {
    if (wheel == nullptr) {
        return QJsonValue();
    }
    return QJsonObject{
        {QStringLiteral("wheel"), wheel->number},
        {QStringLiteral("profiles"), wheel->profiles},
        {QStringLiteral("firstRecord"), wheel->firstRecord},
        {QStringLiteral("lastRecord"), wheel->lastRecord()},
        {QStringLiteral("chosenProfile"), wheel->chosenProfile > 0 ? QJsonValue(wheel->chosenProfile) : QJsonValue()},
        {QStringLiteral("points"), wheel->points},
        {QStringLiteral("defects"), defectsValue(wheel->defects)},
        {QStringLiteral("defectsReason"), reasonValue(wheel->defectsReason)},
        {QStringLiteral("roundness"), roundnessValue(wheel->roundness)},
        {QStringLiteral("roundnessReason"), reasonValue(wheel->roundnessReason)}};
}

QJsonObject pairObject(const PassResult& result, std::size_t index) {
    const WheelPair& pair = result.pairs[index];
    QJsonArray sides;
    for (std::size_t side = 0; side < result.sides.size(); ++side) {
        sides.append(wheelValue(result.wheelOf(pair, side)));
    }
    QJsonObject object = {
        {QStringLiteral("pair"), static_cast<qint64>(index + 1)},
        {QStringLiteral("sides"), sides},
        {QStringLiteral("backToBack"), jsonNumber(pair.distance)},
        {QStringLiteral("distance"), jsonNumber(pair.distance)},
        {QStringLiteral("deviation"), jsonNumber(pair.deviation)},
        {QStringLiteral("interval"), jsonInterval(pair.interval)},
        {QStringLiteral("intervalReason"), reasonValue(pair.intervalReason)},
        {QStringLiteral("chord"), jsonNumber(pair.chord)},
        {QStringLiteral("yaw"), jsonNumber(pair.yaw)},
        {QStringLiteral("yawInterval"), jsonInterval(pair.yawInterval)},
        {QStringLiteral("yawReason"), reasonValue(pair.yawReason)},
        {QStringLiteral("reason"), reasonValue(pair.reason)},
        {QStringLiteral("inTolerance"), pair.inTolerance ? QJsonValue(*pair.inTolerance) : QJsonValue()}};
    object[QStringLiteral("place")] = pair.place ? jsonNumber(*pair.place) : QJsonValue();
    addAxleNumber(pair.axle, object);
    object[QStringLiteral("verdict")] = verdictValue(
        result.assessment ? result.assessment->ofAxle(static_cast<int>(index) + 1, "backToBack") : std::nullopt);
    return object;
}

QJsonValue lineValue(const std::optional<Line>& line) {
    return line ? QJsonValue(jsonLine(*line)) : QJsonValue();
}

QJsonValue treadValue(const TreadMap& tread) {
    if (tread.profiles == 0) {
        return QJsonValue::Null;
    }
    return QJsonObject{{QStringLiteral("profiles"), tread.profiles},
                       {QStringLiteral("columns"), tread.columns},
                       {QStringLiteral("from"), jsonNumber(tread.from)},
                       {QStringLiteral("deviations"), jsonList(tread.deviations)}};
}

QJsonObject pictureObject(const PairPicture& picture) {
    QJsonArray wheels;
    for (const WheelPicture& wheel : picture.wheels) {
        wheels.append(QJsonObject{{QStringLiteral("side"), static_cast<qint64>(wheel.side + 1)},
                                  {QStringLiteral("overlaid"), wheel.overlaid},
                                  {QStringLiteral("profiles"), jsonPoints(wheel.profiles)},
                                  {QStringLiteral("chosen"), jsonPoints(wheel.chosen)},
                                  {QStringLiteral("half"), jsonPoints(wheel.half)},
                                  {QStringLiteral("heights"), jsonList(wheel.heights)},
                                  {QStringLiteral("fit"), lineValue(wheel.fit)},
                                  {QStringLiteral("offset"), jsonNumber(wheel.offset)},
                                  {QStringLiteral("faces"), jsonPoints(wheel.faces)},
                                  {QStringLiteral("hasPlaces"), wheel.hasPlaces},
                                  {QStringLiteral("faceLine"), lineValue(wheel.faceLine)},
                                  {QStringLiteral("low"), lineValue(wheel.low)},
                                  {QStringLiteral("deviations"), jsonPoints(wheel.deviations)},
                                  {QStringLiteral("tread"), treadValue(wheel.tread)}});
    }
    return {{QStringLiteral("pair"), picture.pair}, {QStringLiteral("wheels"), wheels}};
}

QJsonObject rawObject(const RawPicture& raw) {
    return {{QStringLiteral("side"), static_cast<qint64>(raw.side + 1)},
            {QStringLiteral("profiles"), raw.profiles},
            {QStringLiteral("points"), jsonPoints(raw.points)},
            {QStringLiteral("below"), static_cast<qint64>(raw.below)},
            {QStringLiteral("all"), static_cast<qint64>(raw.all)},
            {QStringLiteral("low"), lineValue(raw.low)}};
}

/// Null without a contour.
QJsonValue contourValue(const std::optional<NominalContour>& contour, Pictures pictures) {
    if (!contour) {
        return QJsonValue();
    }
    QJsonObject object = {{QStringLiteral("file"), text(contour->file)},
                          {QStringLiteral("flangeHeight"), jsonNumber(contour->flangeHeight)}};
    if (pictures == Pictures::Included) {
        object[QStringLiteral("section")] = jsonPoints(contour->section);
    }
    return object;
}

} // namespace

std::string toJson(const PassResult& result, Pictures pictures) {
    QJsonArray pairs;
    for (std::size_t i = 0; i < result.pairs.size(); ++i) {
        pairs.append(pairObject(result, i));
    }
    QJsonObject document = {{QStringLiteral("command"), QStringLiteral("train")},
                            {QStringLiteral("version"), text(result.identity.version)},
                            {QStringLiteral("schema"), schemaObject()},
                            {QStringLiteral("identity"), identityObject(result.identity)},
                            {QStringLiteral("mode"), result.mode},
                            {QStringLiteral("settings"), text(result.settings)},
                            {QStringLiteral("recordings"), listOf(result.sides, sideObject)},
                            {QStringLiteral("baseDistance"), jsonNumber(result.baseDistance)},
                            {QStringLiteral("baseUncertainty"),
                             result.baseUncertainty ? jsonNumber(*result.baseUncertainty) : QJsonValue()},
                            {QStringLiteral("nominal"), jsonNumber(result.nominal)},
                            {QStringLiteral("tolerance"), jsonNumber(result.tolerance)},
                            {QStringLiteral("distances"), result.distances()},
                            {QStringLiteral("judged"), judgedObject(result)},
                            {QStringLiteral("defectLimits"), limitsValue(result.defectLimits)},
                            {QStringLiteral("pairs"), pairs},
                            {QStringLiteral("train"), trainObject(result.train)},
                            {QStringLiteral("assessment"), assessmentValue(result)},
                            {QStringLiteral("contour"), contourValue(result.contour, pictures)},
                            {QStringLiteral("kept"), keptObject(result.kept)},
                            {QStringLiteral("warnings"), jsonList(result.warnings)}};
    if (!result.wheels.empty()) {
        document[QStringLiteral("wheels")] = wheelMeasuresList(result.wheels, pictures);
    }
    if (!result.further.empty()) {
        document[QStringLiteral("furtherRecordings")] = listOf(result.further, sideObject);
    }
    if (pictures == Pictures::Included) {
        document[QStringLiteral("pictures")] = listOf(result.pictures, pictureObject);
        document[QStringLiteral("rawPictures")] = listOf(result.rawPictures, rawObject);
    }
    return jsonText(document);
}

} // namespace KxInspect
