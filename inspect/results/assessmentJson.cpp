// Values of a pass beside their limits, in its JSON form.
#include "inspect/results/assessmentJson.h"

#include <array>

namespace KxInspect::detail {

namespace {

constexpr int kMost = 1 << 30;
constexpr std::array<LimitVerdict, 4> kVerdicts = {LimitVerdict::Ok, LimitVerdict::NotMeasured, LimitVerdict::Warning,
                                                   LimitVerdict::Alarm};

QJsonValue numberValue(const std::optional<double>& number) {
    return number ? jsonNumber(*number) : QJsonValue();
}

/// A number from 1, null for 0.
QJsonValue placeValue(int number) {
    return number > 0 ? QJsonValue(number) : QJsonValue();
}

QJsonValue textValue(const std::string& text) {
    return text.empty() ? QJsonValue() : QJsonValue(QString::fromStdString(text));
}

QJsonObject boundsObject(const LimitBounds& bounds) {
    return {{QStringLiteral("alarmLow"), numberValue(bounds.alarmLow)},
            {QStringLiteral("warningLow"), numberValue(bounds.warningLow)},
            {QStringLiteral("warningHigh"), numberValue(bounds.warningHigh)},
            {QStringLiteral("alarmHigh"), numberValue(bounds.alarmHigh)}};
}

QJsonObject limitsObject(const MeasureLimits& limits) {
    return {{QStringLiteral("measure"), QString::fromStdString(limits.measure)},
            {QStringLiteral("class"), textValue(limits.vehicleClass)},
            {QStringLiteral("limits"), boundsObject(limits.bounds)}};
}

QJsonObject valueObject(const Assessment& value) {
    // Values of results are floats, whose shortest text is that of the same value elsewhere in the document.
    const auto narrow = value.value ? std::optional(static_cast<float>(*value.value)) : std::nullopt;
    return {{QStringLiteral("measure"), QString::fromStdString(value.measure)},
            {QStringLiteral("pair"), placeValue(value.pair)},
            {QStringLiteral("side"), placeValue(value.side)},
            {QStringLiteral("vehicle"), placeValue(value.vehicle)},
            {QStringLiteral("bogie"), placeValue(value.bogie)},
            {QStringLiteral("value"), jsonNumber(narrow)},
            {QStringLiteral("interval"), jsonInterval(value.interval)},
            {QStringLiteral("limits"), boundsObject(value.bounds)},
            {QStringLiteral("verdict"), verdictValue(value.verdict)},
            {QStringLiteral("isDoubtful"), value.isDoubtful ? QJsonValue(*value.isDoubtful) : QJsonValue()},
            {QStringLiteral("reason"), textValue(value.reason)}};
}

QJsonObject verdictsObject(const PassResult& result, const PassAssessment& assessment) {
    QJsonArray vehicles;
    for (const PassVehicle& vehicle : result.train.vehicles) {
        vehicles.append(QJsonObject{{QStringLiteral("vehicle"), vehicle.number},
                                    {QStringLiteral("verdict"), verdictValue(assessment.ofVehicle(vehicle.number))}});
    }
    QJsonArray wheels;
    for (int pair = 1; pair <= static_cast<int>(result.pairs.size()); ++pair) {
        for (const int side : {1, 2}) {
            wheels.append(QJsonObject{{QStringLiteral("pair"), pair},
                                      {QStringLiteral("side"), side},
                                      {QStringLiteral("verdict"), verdictValue(assessment.ofWheel(pair, side))}});
        }
    }
    return {{QStringLiteral("pass"), verdictValue(assessment.ofPass())},
            {QStringLiteral("vehicles"), vehicles},
            {QStringLiteral("wheels"), wheels}};
}

std::optional<double> readNumber(const JsonValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.wideNumber());
}

int readPlace(const JsonValue& value) {
    return value.isNull() ? 0 : value.wholeNumber(1, kMost);
}

LimitBounds readBounds(const JsonValue& value) {
    return {readNumber(value["alarmLow"]), readNumber(value["warningLow"]), readNumber(value["warningHigh"]),
            readNumber(value["alarmHigh"])};
}

LimitVerdict readVerdict(const JsonValue& value) {
    const std::string text = value.text();
    for (const LimitVerdict verdict : kVerdicts) {
        if (text == textOf(verdict)) {
            return verdict;
        }
    }
    value.failAsNo(QStringLiteral("verdict"));
}

Assessment readValue(const JsonValue& value) {
    Assessment result;
    result.measure = value["measure"].text();
    result.pair = readPlace(value["pair"]);
    result.side = readPlace(value["side"]);
    result.vehicle = readPlace(value["vehicle"]);
    result.bogie = readPlace(value["bogie"]);
    if (const std::optional<float> number = value["value"].numberIfPresent()) {
        result.value = static_cast<double>(*number);
    }
    result.interval = value["interval"].interval();
    result.bounds = readBounds(value["limits"]);
    result.verdict = readVerdict(value["verdict"]);
    if (!value["isDoubtful"].isNull()) {
        result.isDoubtful = value["isDoubtful"].flag();
    }
    result.reason = value["reason"].textOrNull();
    return result;
}

} // namespace

QJsonValue verdictValue(const std::optional<LimitVerdict>& verdict) {
    return verdict ? QJsonValue(QLatin1String(textOf(*verdict))) : QJsonValue();
}

QJsonValue assessmentValue(const PassResult& result) {
    if (!result.assessment) {
        return QJsonValue();
    }
    return QJsonObject{{QStringLiteral("limits"), listOf(result.assessment->limits, limitsObject)},
                       {QStringLiteral("values"), listOf(result.assessment->values, valueObject)},
                       {QStringLiteral("verdicts"), verdictsObject(result, *result.assessment)}};
}

std::optional<PassAssessment> readAssessment(const JsonValue& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    PassAssessment assessment;
    for (const JsonValue& limits : value["limits"].list()) {
        assessment.limits.push_back(
            {limits["measure"].text(), limits["class"].textOrNull(), readBounds(limits["limits"])});
    }
    for (const JsonValue& item : value["values"].list()) {
        assessment.values.push_back(readValue(item));
    }
    return assessment;
}

} // namespace KxInspect::detail
