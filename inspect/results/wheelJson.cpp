// Measured wheels as JSON.
#include "inspect/results/json.h"

#include <KxInspect/Wheel.h>

namespace KxInspect {

namespace {

using detail::jsonNumber;
using detail::JsonValue;

constexpr WheelVerdict kVerdicts[] = {WheelVerdict::NoLimits, WheelVerdict::Within, WheelVerdict::Outside,
                                      WheelVerdict::NotMeasured, WheelVerdict::NotRead};

/// The name of an interval among the reasons.
QString intervalName(const WheelMeasure& measure) {
    return QStringLiteral("intervals.") + QLatin1String(measure.key);
}

QJsonObject wheelObject(const WheelResult& wheel) {
    QJsonObject object = {{QStringLiteral("file"), QString::fromStdString(wheel.file)}};
    if (!wheel.error.empty()) {
        object[QStringLiteral("error")] = QString::fromStdString(wheel.error);
        return object;
    }
    QJsonObject reasons;
    QJsonObject intervals;
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        const WheelMeasure& measure = kWheelMeasures[i];
        object[QLatin1String(measure.key)] = jsonNumber(wheel.measures.*measure.value);
        if (wheel.measures.*measure.value) {
            intervals[QLatin1String(measure.key)] = detail::jsonInterval(wheel.intervals[i]);
        }
        if (!wheel.reasons[i].empty()) {
            reasons[QLatin1String(measure.key)] = QString::fromStdString(wheel.reasons[i]);
        }
        if (!wheel.intervalReasons[i].empty()) {
            reasons[intervalName(measure)] = QString::fromStdString(wheel.intervalReasons[i]);
        }
    }
    object[QStringLiteral("intervals")] = intervals;
    object[QStringLiteral("reasons")] = reasons;
    const QString verdict = QLatin1String(textOf(wheel.verdict));
    object[QStringLiteral("reading")] = wheel.reading.empty() ? QJsonValue() : QString::fromStdString(wheel.reading);
    object[QStringLiteral("verdict")] = verdict.isEmpty() ? QJsonValue() : QJsonValue(verdict);
    object[QStringLiteral("warnings")] = detail::jsonList(wheel.warnings);
    return object;
}

/// Null without limits: nothing was to be judged.
QJsonValue judgementValue(const WheelJudgement& judgement) {
    if (judgement.wheels == 0) {
        return {};
    }
    const auto number = [](std::size_t count) { return static_cast<qint64>(count); };
    return QJsonObject{
        {QStringLiteral("judged"), number(judgement.judged)},
        {QStringLiteral("of"), number(judgement.wheels)},
        {QStringLiteral("outside"), judgement.judged > 0 ? QJsonValue(number(judgement.outside)) : QJsonValue()}};
}

/// A place on the contour with its key.
struct PlaceKey {
    const char* key;
    std::optional<Point> WheelPlaces::*place;
};

constexpr PlaceKey kPlaces[] = {{"tip", &WheelPlaces::tip},
                                {"tape", &WheelPlaces::tape},
                                {"flankTop", &WheelPlaces::flankTop},
                                {"flank", &WheelPlaces::flank},
                                {"hollowBottom", &WheelPlaces::hollowBottom},
                                {"hollowCrest", &WheelPlaces::hollowCrest}};

QJsonObject placesObject(const WheelPlaces& places) {
    QJsonObject object = {{QStringLiteral("outerFace"), jsonNumber(places.outerFace)}};
    for (const auto& [key, place] : kPlaces) {
        object[QLatin1String(key)] =
            places.*place ? QJsonArray{jsonNumber((places.*place)->x), jsonNumber((places.*place)->y)} : QJsonValue();
    }
    return object;
}

WheelPlaces readPlaces(const JsonValue& object) {
    WheelPlaces places;
    places.outerFace = object["outerFace"].numberIfPresent();
    for (const auto& [key, place] : kPlaces) {
        if (!object[key].isNull()) {
            const std::vector<float> ends = object[key].numbers(2);
            places.*place = {ends[0], ends[1]};
        }
    }
    return places;
}

QJsonObject pictureOf(const WheelResult& wheel) {
    return {{QStringLiteral("section"), detail::jsonPoints(wheel.section)},
            {QStringLiteral("measured"), detail::jsonPoints(wheel.measured)},
            {QStringLiteral("places"), placesObject(wheel.places)},
            {QStringLiteral("widthStart"), jsonNumber(wheel.widthStart)}};
}

WheelVerdict readVerdict(const JsonValue& value) {
    const std::string text = value.textOrNull();
    for (const WheelVerdict verdict : kVerdicts) {
        if (text == textOf(verdict)) {
            return verdict;
        }
    }
    value.failAsNo("verdict");
}

WheelResult readWheel(const JsonValue& object) {
    WheelResult wheel;
    wheel.file = object["file"].text();
    if (object.has("error")) {
        wheel.error = object["error"].text();
        wheel.verdict = WheelVerdict::NotRead;
        return wheel;
    }
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        const char* const key = kWheelMeasures[i].key;
        wheel.measures.*kWheelMeasures[i].value = object[key].numberIfPresent();
        if (object["intervals"].has(key)) {
            wheel.intervals[i] = object["intervals"][key].interval();
        }
        const JsonValue reasons = object["reasons"];
        const auto reason = [&](const char* name) { return reasons.has(name) ? reasons[name].text() : std::string(); };
        wheel.reasons[i] = reason(key);
        wheel.intervalReasons[i] = reason(intervalName(kWheelMeasures[i]).toUtf8().constData());
    }
    wheel.reading = object["reading"].isNull() ? std::string() : object["reading"].text();
    wheel.verdict = readVerdict(object["verdict"]);
    wheel.warnings = object["warnings"].texts();
    return wheel;
}

void readPictures(const JsonValue& value, std::vector<WheelResult>& wheels) {
    const std::vector<JsonValue> pictures = value.list();
    if (pictures.size() != wheels.size()) {
        value.failAsNo("picture of each wheel");
    }
    for (std::size_t i = 0; i < wheels.size(); ++i) {
        wheels[i].section = pictures[i]["section"].points();
        wheels[i].measured = pictures[i]["measured"].points();
        wheels[i].widthStart = pictures[i]["widthStart"].numberIfPresent();
        wheels[i].places = readPlaces(pictures[i]["places"]);
    }
}

} // namespace

std::string toJson(const WheelResults& results, Pictures pictures) {
    QJsonArray wheels;
    QJsonArray drawn;
    for (const WheelResult& wheel : results.wheels) {
        wheels.append(wheelObject(wheel));
        drawn.append(pictureOf(wheel));
    }
    QJsonObject limits;
    for (const WheelMeasure& measure : kWheelMeasures) {
        const Limit& limit = results.limits.*measure.limit;
        limits[QLatin1String(measure.key)] =
            QJsonObject{{QStringLiteral("min"), jsonNumber(limit.min)}, {QStringLiteral("max"), jsonNumber(limit.max)}};
    }
    QJsonObject root = {
        {QStringLiteral("wheels"), wheels},
        {QStringLiteral("limits"), limits},
        {QStringLiteral("gaugeError"), detail::jsonGaugeError(results.gaugeError)},
        {QStringLiteral("judged"), QJsonObject{{QStringLiteral("wheels"), judgementValue(judgementOf(results))}}}};
    if (pictures == Pictures::Included) {
        root[QStringLiteral("pictures")] = QJsonObject{
            {QStringLiteral("wheels"), drawn}, {QStringLiteral("version"), QString::fromStdString(results.version)}};
    }
    return detail::jsonText(root);
}

WheelResults wheelsFromJson(const std::string& json) {
    const JsonValue root = JsonValue::parse(json);
    WheelResults results;
    for (const JsonValue& wheel : root["wheels"].list()) {
        results.wheels.push_back(readWheel(wheel));
    }
    for (const WheelMeasure& measure : kWheelMeasures) {
        const JsonValue limit = root["limits"][measure.key];
        results.limits.*measure.limit = {limit["min"].numberIfPresent(), limit["max"].numberIfPresent()};
    }
    results.gaugeError = root["gaugeError"].gaugeError();
    if (root.has("pictures")) {
        readPictures(root["pictures"]["wheels"], results.wheels);
        results.version = root["pictures"]["version"].text();
    }
    return results;
}

} // namespace KxInspect
