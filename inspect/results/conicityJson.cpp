// The equivalent conicity as JSON.
#include "inspect/conicity/warnings.h"
#include "inspect/results/json.h"

#include <KxInspect/Conicity.h>

namespace KxInspect {

namespace {

using detail::jsonNumber;
using detail::JsonValue;

constexpr WheelSetPart kParts[] = {Wheel1, Rail1, Wheel2, Rail2};

/// The curve, null where it has no conicity.
QJsonArray curveOf(const ConicityResult& result) {
    QJsonArray list;
    for (const Point& p : result.conicity) {
        list.append(QJsonArray{jsonNumber(p.x), hasConicity(p) ? jsonNumber(p.y) : QJsonValue()});
    }
    return list;
}

/// Why there are nulls, by the member that holds them.
QJsonObject reasonsOf(const ConicityResult& result) {
    QJsonObject reasons;
    if (!result.shownConicity) {
        reasons[QStringLiteral("shownConicity")] =
            QString::fromStdString(reasonWithoutConicity(result, result.shownAmplitude));
    }
    if (result.shownConicity && !result.shownAsMeasured) {
        reasons[QStringLiteral("shownAsMeasured")] =
            QStringLiteral("the profiles without smoothing have no conicity there");
    }
    if (result.conicity.empty()) {
        reasons[QStringLiteral("conicity")] = QString::fromStdString(result.reason);
    } else if (const QString missing = detail::missingAmplitudes(result); !missing.isEmpty()) {
        reasons[QStringLiteral("conicity")] = missing;
    }
    return reasons;
}

QJsonArray pairs(const std::vector<Point>& points) {
    QJsonArray list;
    for (const Point& p : points) {
        list.append(QJsonArray{jsonNumber(p.x), jsonNumber(p.y)});
    }
    return list;
}

std::vector<Point> readPairs(const JsonValue& value) {
    std::vector<Point> points;
    for (const JsonValue& pair : value.list()) {
        const std::vector<float> numbers = pair.numbers(2);
        points.push_back({numbers[0], numbers[1]});
    }
    return points;
}

QJsonArray intervalsOf(const ConicityResult& result) {
    QJsonArray list;
    for (const Interval& interval : result.intervals) {
        list.append(detail::jsonInterval(interval));
    }
    return list;
}

QJsonArray rowsOf(const ConicityResult& result) {
    QJsonArray list;
    for (const ConicityRow& row : result.rows) {
        QJsonObject object = {{QStringLiteral("amplitude"), jsonNumber(row.amplitude)},
                              {QStringLiteral("conicity"), jsonNumber(row.conicity)},
                              {QStringLiteral("interval"), detail::jsonInterval(row.interval)},
                              {QStringLiteral("asMeasured"), jsonNumber(row.asMeasured)}};
        if (!row.conicity) {
            object[QStringLiteral("reason")] = QString::fromStdString(reasonWithoutConicity(result, row.amplitude));
        }
        list.append(object);
    }
    return list;
}

std::vector<ConicityRow> readRows(const JsonValue& value) {
    std::vector<ConicityRow> rows;
    for (const JsonValue& row : value.list()) {
        rows.push_back({row["amplitude"].number(), row["conicity"].numberIfPresent(), row["interval"].interval(),
                        row["asMeasured"].numberIfPresent()});
    }
    return rows;
}

/// What was found about the noise of a profile, and how it was smoothed.
QJsonObject noiseOf(const PlacedSection& section) {
    const auto& windows = section.windows;
    return {{QStringLiteral("x"), jsonNumber(section.noise.x)},
            {QStringLiteral("y"), jsonNumber(section.noise.y)},
            {QStringLiteral("smoothing"),
             windows ? QJsonValue(QJsonArray{jsonNumber((*windows)[0]), jsonNumber((*windows)[1])}) : QJsonValue()}};
}

void readNoise(const JsonValue& value, PlacedSection& section) {
    section.noise = {value["x"].number(), value["y"].number()};
    if (!value["smoothing"].isNull()) {
        const std::vector<float> windows = value["smoothing"].numbers(2);
        section.windows = {windows[0], windows[1]};
    }
}

/// A row of numbers for each contact.
QJsonArray contactRows(const std::vector<Contact>& contacts) {
    QJsonArray rows;
    for (const Contact& c : contacts) {
        rows.append(QJsonArray{jsonNumber(c.displacement), jsonNumber(c.slope), jsonNumber(c.wheel.x),
                               jsonNumber(c.wheel.y), jsonNumber(c.rail.x), jsonNumber(c.rail.y),
                               jsonNumber(c.outwards)});
    }
    return rows;
}

std::vector<Contact> readContacts(const JsonValue& value) {
    std::vector<Contact> contacts;
    for (const JsonValue& row : value.list()) {
        const std::vector<float> n = row.numbers(7);
        contacts.push_back({n[0], n[1], {n[2], n[3]}, {n[4], n[5]}, n[6]});
    }
    return contacts;
}

QJsonObject picturesOf(const ConicityResult& result) {
    QJsonObject sections;
    for (const WheelSetPart part : kParts) {
        const PlacedSection& section = result.sections[part];
        sections[QLatin1String(nameOf(part))] =
            QJsonObject{{QStringLiteral("dropped"), section.dropped ? QJsonValue(*section.dropped) : QJsonValue()},
                        {QStringLiteral("isCut"), section.isCut ? QJsonValue(*section.isCut) : QJsonValue()},
                        {QStringLiteral("points"), detail::jsonPoints(section.points)},
                        {QStringLiteral("residuals"), detail::jsonPoints(section.residuals)}};
    }
    return {{QStringLiteral("sections"), sections},
            {QStringLiteral("contacts1"), contactRows(result.contacts1)},
            {QStringLiteral("contacts2"), contactRows(result.contacts2)},
            {QStringLiteral("version"), QString::fromStdString(result.version)}};
}

void readPictures(const JsonValue& pictures, ConicityResult& result) {
    for (const WheelSetPart part : kParts) {
        PlacedSection& section = result.sections[part];
        const JsonValue read = pictures["sections"][nameOf(part)];
        section.dropped = read["dropped"].isNull() ? std::nullopt : std::optional(read["dropped"].wholeNumber());
        section.isCut = read["isCut"].isNull() ? std::nullopt : std::optional(read["isCut"].flag());
        section.points = read["points"].points();
        section.residuals = read["residuals"].points();
    }
    result.contacts1 = readContacts(pictures["contacts1"]);
    result.contacts2 = readContacts(pictures["contacts2"]);
    result.version = pictures["version"].text();
}

} // namespace

std::string toJson(const ConicityResult& result, Pictures pictures) {
    QJsonObject files;
    QJsonObject noise;
    QJsonObject readings; // of texts with something to tell
    for (const WheelSetPart part : kParts) {
        if (const std::string& reading = result.sections[part].reading; !reading.empty()) {
            readings[QLatin1String(nameOf(part))] = QString::fromStdString(reading);
        }
        noise[QLatin1String(nameOf(part))] = noiseOf(result.sections[part]);
        files[QLatin1String(nameOf(part))] = QString::fromStdString(result.sections[part].file);
    }
    QJsonObject root = {{QStringLiteral("profiles"), files},
                        {QStringLiteral("gauge"), jsonNumber(result.gauge)},
                        {QStringLiteral("backToBack"), jsonNumber(result.backToBack)},
                        {QStringLiteral("radius1"), jsonNumber(result.radius1)},
                        {QStringLiteral("radius2"), jsonNumber(result.radius2)},
                        {QStringLiteral("edgeMargin"), jsonNumber(result.edgeMargin)},
                        {QStringLiteral("gaugeError"), detail::jsonGaugeError(result.gaugeError)},
                        {QStringLiteral("shownAmplitude"), jsonNumber(result.shownAmplitude)},
                        {QStringLiteral("shownConicity"), jsonNumber(result.shownConicity)},
                        {QStringLiteral("shownInterval"), detail::jsonInterval(result.shownInterval)},
                        {QStringLiteral("shownAsMeasured"), jsonNumber(result.shownAsMeasured)},
                        {QStringLiteral("rows"), rowsOf(result)},
                        {QStringLiteral("conicity"), curveOf(result)},
                        {QStringLiteral("intervals"), intervalsOf(result)},
                        {QStringLiteral("noise"), noise},
                        {QStringLiteral("readings"), readings},
                        {QStringLiteral("deltaR"), pairs(result.deltaR)},
                        {QStringLiteral("reasons"), reasonsOf(result)},
                        {QStringLiteral("warnings"), detail::jsonList(result.warnings)}};
    if (!result.isCalculated()) {
        root[QStringLiteral("reason")] = QString::fromStdString(result.reason);
    }
    if (pictures == Pictures::Included) {
        root[QStringLiteral("pictures")] = picturesOf(result);
    }
    return detail::jsonText(root);
}

ConicityResult conicityFromJson(const std::string& json) {
    const JsonValue root = JsonValue::parse(json);
    ConicityResult result;
    for (const WheelSetPart part : kParts) {
        result.sections[part].file = root["profiles"][nameOf(part)].text();
        readNoise(root["noise"][nameOf(part)], result.sections[part]);
        if (const JsonValue readings = root["readings"]; readings.has(nameOf(part))) {
            result.sections[part].reading = readings[nameOf(part)].text();
        }
    }
    result.gauge = root["gauge"].number();
    result.backToBack = root["backToBack"].number();
    result.radius1 = root["radius1"].number();
    result.radius2 = root["radius2"].number();
    result.edgeMargin = root["edgeMargin"].numberIfPresent();
    result.shownAmplitude = root["shownAmplitude"].number();
    if (root.has("gaugeError")) { // older results do not hold it
        result.gaugeError = root["gaugeError"].gaugeError();
    }
    result.conicity = readPairs(root["conicity"]);
    result.deltaR = readPairs(root["deltaR"]);
    result.warnings = root["warnings"].texts();
    result.reason = root.has("reason") ? root["reason"].text() : std::string();
    for (const JsonValue& interval : root["intervals"].list()) {
        result.intervals.push_back(interval.interval());
    }
    result.rows = readRows(root["rows"]);
    result.shownConicity = root["shownConicity"].numberIfPresent();
    result.shownInterval = root["shownInterval"].interval();
    result.shownAsMeasured = root["shownAsMeasured"].numberIfPresent();
    if (root.has("pictures")) {
        readPictures(root["pictures"], result);
    }
    return result;
}

} // namespace KxInspect
