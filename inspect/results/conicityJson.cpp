// The equivalent conicity as JSON.
#include "inspect/conicity/calculation.h"
#include "inspect/results/json.h"

#include <KxInspect/Conicity.h>

#include <algorithm>

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
    const auto& curve = result.conicity;
    if (!result.shownConicity) {
        reasons[QStringLiteral("shownConicity")] =
            QString::fromStdString(reasonWithoutConicity(result, result.shownAmplitude));
    }
    if (curve.empty()) {
        reasons[QStringLiteral("conicity")] = QString::fromStdString(result.reason);
    } else if (const auto none =
                   curve.size() - static_cast<std::size_t>(std::count_if(curve.begin(), curve.end(), hasConicity));
               none > 0) {
        reasons[QStringLiteral("conicity")] =
            QStringLiteral("%1 of %2 amplitudes have no conicity: the difference of radii is too rough there for the "
                           "method")
                .arg(none)
                .arg(curve.size());
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
                        {QStringLiteral("points"), detail::jsonPoints(section.points)}};
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
    }
    result.contacts1 = readContacts(pictures["contacts1"]);
    result.contacts2 = readContacts(pictures["contacts2"]);
    result.version = pictures["version"].text();
}

} // namespace

std::string toJson(const ConicityResult& result, Pictures pictures) {
    QJsonObject files;
    for (const WheelSetPart part : kParts) {
        files[QLatin1String(nameOf(part))] = QString::fromStdString(result.sections[part].file);
    }
    QJsonObject root = {{QStringLiteral("profiles"), files},
                        {QStringLiteral("gauge"), jsonNumber(result.gauge)},
                        {QStringLiteral("backToBack"), jsonNumber(result.backToBack)},
                        {QStringLiteral("radius1"), jsonNumber(result.radius1)},
                        {QStringLiteral("radius2"), jsonNumber(result.radius2)},
                        {QStringLiteral("edgeMargin"), jsonNumber(result.edgeMargin)},
                        {QStringLiteral("shownAmplitude"), jsonNumber(result.shownAmplitude)},
                        {QStringLiteral("shownConicity"), jsonNumber(result.shownConicity)},
                        {QStringLiteral("conicity"), curveOf(result)},
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
    }
    result.gauge = root["gauge"].number();
    result.backToBack = root["backToBack"].number();
    result.radius1 = root["radius1"].number();
    result.radius2 = root["radius2"].number();
    result.edgeMargin = root["edgeMargin"].number();
    result.shownAmplitude = root["shownAmplitude"].number();
    result.conicity = readPairs(root["conicity"]);
    result.deltaR = readPairs(root["deltaR"]);
    result.warnings = root["warnings"].texts();
    result.reason = root.has("reason") ? root["reason"].text() : std::string();
    detail::lookUpAmplitudes(result);
    result.shownConicity = root["shownConicity"].numberIfPresent();
    if (root.has("pictures")) {
        readPictures(root["pictures"], result);
    }
    return result;
}

} // namespace KxInspect
