// The measures of the wheels of a pass as JSON.
#include "inspect/results/passWheelsJson.h"

#include <algorithm>

namespace KxInspect::detail {

namespace {

constexpr const char* kInner = "inner";
constexpr const char* kField = "field";

QJsonValue reasonValue(const std::string& reason) {
    return reason.empty() ? QJsonValue() : QJsonValue(QString::fromStdString(reason));
}

/// What an interval is of; null where there is none.
QJsonValue holdsValue(const PassValue& value) {
    return value.interval.isKnown() ? QJsonValue(QLatin1String(whatIntervalHolds(value))) : QJsonValue();
}

QJsonObject shareObject(const SensorShare& share) {
    QJsonArray measures;
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        if (share.measures[static_cast<std::size_t>(info.measure)]) {
            measures.append(QLatin1String(info.key));
        }
    }
    return {{QStringLiteral("sensor"), share.sensor},
            {QStringLiteral("place"), QLatin1String(share.isOnFieldSide ? kField : kInner)},
            {QStringLiteral("wheel"), share.wheel > 0 ? QJsonValue(share.wheel) : QJsonValue()},
            {QStringLiteral("profiles"), share.profiles},
            {QStringLiteral("points"), share.points},
            {QStringLiteral("measures"), measures},
            {QStringLiteral("reason"), reasonValue(share.reason)}};
}

SensorShare readShare(const JsonValue& value) {
    constexpr int kMost = 1 << 30;
    SensorShare share;
    share.sensor = value["sensor"].wholeNumber(1, kMost);
    const std::string place = value["place"].text();
    if (place != kInner && place != kField) {
        value["place"].failAsNo(QStringLiteral("place of a sensor"));
    }
    share.isOnFieldSide = place == kField;
    share.wheel = value["wheel"].isNull() ? 0 : value["wheel"].wholeNumber(1, kMost);
    share.profiles = value["profiles"].wholeNumber(0, kMost);
    share.points = value["points"].wholeNumber(0, kMost);
    for (const std::string& key : value["measures"].texts()) {
        const auto info = std::find_if(kPassMeasureInfos.begin(), kPassMeasureInfos.end(),
                                       [&](const PassMeasureInfo& i) { return key == i.key; });
        if (info == kPassMeasureInfos.end()) {
            value["measures"].failAsNo(QStringLiteral("list of measures"));
        }
        share.measures[static_cast<std::size_t>(info->measure)] = true;
    }
    share.reason = value["reason"].textOrNull();
    return share;
}

} // namespace

QJsonArray wheelMeasuresList(const std::vector<PassWheelMeasures>& wheels, Pictures pictures) {
    QJsonArray list;
    for (const PassWheelMeasures& wheel : wheels) {
        QJsonObject measures;
        for (const PassMeasureInfo& info : kPassMeasureInfos) {
            const PassValue& value = wheel[info.measure];
            measures[QLatin1String(info.key)] = QJsonObject{{QStringLiteral("value"), jsonNumber(value.value)},
                                                            {QStringLiteral("interval"), jsonInterval(value.interval)},
                                                            {QStringLiteral("intervalHolds"), holdsValue(value)},
                                                            {QStringLiteral("byPoses"), jsonNumber(value.byPoses)},
                                                            {QStringLiteral("reason"), reasonValue(value.reason)}};
        }
        QJsonArray sensors;
        for (const SensorShare& share : wheel.sensors) {
            sensors.append(shareObject(share));
        }
        QJsonObject object = {{QStringLiteral("pair"), wheel.pair},
                              {QStringLiteral("side"), QLatin1String(textOf(wheel.side))},
                              {QStringLiteral("place"), jsonNumber(wheel.place)},
                              {QStringLiteral("measures"), measures},
                              {QStringLiteral("sensors"), sensors}};
        if (pictures == Pictures::Included) {
            object[QStringLiteral("section")] = jsonPoints(wheel.section);
            object[QStringLiteral("deviations")] = jsonPoints(wheel.deviations);
        }
        list.append(object);
    }
    return list;
}

std::vector<PassWheelMeasures> readWheelMeasures(const JsonValue& list, std::size_t pairs) {
    std::vector<PassWheelMeasures> wheels;
    for (const JsonValue& value : list.list()) {
        PassWheelMeasures wheel;
        wheel.pair = value["pair"].wholeNumber(1, static_cast<int>(pairs));
        const std::string side = value["side"].text();
        if (side != textOf(TrackSide::Left) && side != textOf(TrackSide::Right)) {
            value["side"].failAsNo(QStringLiteral("side of the track"));
        }
        wheel.side = side == textOf(TrackSide::Left) ? TrackSide::Left : TrackSide::Right;
        wheel.place = value["place"].number();
        for (const PassMeasureInfo& info : kPassMeasureInfos) {
            const JsonValue measure = value["measures"][info.key];
            wheel.values[static_cast<std::size_t>(info.measure)] = {
                measure["value"].numberIfPresent(), measure["interval"].interval(), measure["reason"].textOrNull(),
                measure["byPoses"].numberIfPresent()};
        }
        for (const JsonValue& share : value["sensors"].list()) {
            wheel.sensors.push_back(readShare(share));
        }
        if (value.has("section")) {
            wheel.section = value["section"].points();
        }
        if (value.has("deviations")) {
            wheel.deviations = value["deviations"].points();
        }
        wheels.push_back(std::move(wheel));
    }
    return wheels;
}

} // namespace KxInspect::detail
