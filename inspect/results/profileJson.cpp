// A profile before and after a chain of operations as JSON.
#include "inspect/profile/findingValues.h"
#include "inspect/results/json.h"

#include <KxInspect/Error.h>
#include <KxInspect/ProfileChain.h>
#include <KxMath/KxMathVersion.h>

namespace KxInspect {

namespace {

using detail::jsonNumber;
using detail::jsonPoints;
using detail::JsonValue;

QJsonValue textOrNull(const std::string& text) {
    return text.empty() ? QJsonValue() : QJsonValue(QString::fromStdString(text));
}

QJsonObject outcomeObject(const StepOutcome& outcome) {
    return {{QStringLiteral("step"), QString::fromStdString(textOf(outcome.step))},
            {QStringLiteral("before"), static_cast<qint64>(outcome.before)},
            {QStringLiteral("after"), static_cast<qint64>(outcome.after)},
            {QStringLiteral("missing"), static_cast<qint64>(outcome.missing)},
            {QStringLiteral("isChanged"), outcome.isChanged}};
}

QJsonObject findingObject(const ProfileFinding& finding) {
    QJsonObject values;
    for (const ProfileValue& value : finding.values) {
        values[QString::fromStdString(value.key)] = jsonNumber(value.value);
    }
    return {{QStringLiteral("name"), QString::fromStdString(finding.name)},
            {QStringLiteral("reason"), textOrNull(finding.reason)},
            {QStringLiteral("values"), finding.isFound() ? QJsonValue(values) : QJsonValue()},
            {QStringLiteral("points"), jsonPoints(finding.points)}};
}

// Reading

std::optional<std::int64_t> wholeOrNull(const JsonValue& json) {
    return json.isNull() ? std::nullopt : std::optional(json.wideWholeNumber());
}

StepOutcome readOutcome(const JsonValue& json) {
    StepOutcome outcome;
    const JsonValue text = json["step"];
    try {
        const std::vector<ProfileStep> steps = profileSteps(text.text());
        if (steps.size() != 1) {
            text.failAsNo(QStringLiteral("single step"));
        }
        outcome.step = steps.front();
    } catch (const Error& error) {
        if (error.kind() != ErrorKind::BadArgument) {
            throw;
        }
        text.failAsNo(QStringLiteral("step"));
    }
    outcome.before = json["before"].wideWholeNumber();
    outcome.after = json["after"].wideWholeNumber();
    outcome.missing = json["missing"].wideWholeNumber();
    outcome.isChanged = json["isChanged"].flag();
    return outcome;
}

/// How many coefficients the values of a polynomial hold: c0, c1 and so on.
std::size_t coefficientsIn(const JsonValue& values) {
    std::size_t count = 0;
    while (values.has(QStringLiteral("c%1").arg(count).toLatin1().constData())) {
        ++count;
    }
    return count;
}

ProfileFinding readFinding(const JsonValue& json) {
    ProfileFinding finding;
    finding.name = json["name"].text();
    finding.reason = json["reason"].textOrNull();
    if (finding.isFound()) {
        const JsonValue values = json["values"];
        finding.values = detail::valuesWithoutNumbers(finding.name, coefficientsIn(values));
        if (finding.values.empty()) {
            json["name"].failAsNo(QStringLiteral("known finding"));
        }
        for (ProfileValue& value : finding.values) {
            value.value = values[value.key.c_str()].wideNumber();
        }
    }
    finding.points = json["points"].points();
    return finding;
}

} // namespace

std::string toJson(const ProfileResult& result, Pictures pictures) {
    const bool isDone = result.failure.empty();
    const QJsonValue points = isDone ? QJsonValue(static_cast<qint64>(result.pointsAfter)) : QJsonValue();
    QJsonObject document = {
        {QStringLiteral("command"), QStringLiteral("profile")},
        {QStringLiteral("version"), QLatin1String(KxMath_GetVersionString())},
        {QStringLiteral("file"), QString::fromStdString(result.file)},
        {QStringLiteral("record"), result.record ? QJsonValue(static_cast<qint64>(*result.record)) : QJsonValue()},
        {QStringLiteral("points"), static_cast<qint64>(result.pointsBefore)},
        {QStringLiteral("pointsAfter"), points},
        {QStringLiteral("reason"), textOrNull(result.failure)},
        {QStringLiteral("x"), QString::fromStdString(result.xTitle)},
        {QStringLiteral("y"), QString::fromStdString(result.yTitle)},
        {QStringLiteral("steps"), detail::listOf(result.outcomes, outcomeObject)},
        {QStringLiteral("findings"), detail::listOf(result.findings, findingObject)}};
    if (pictures == Pictures::Included) {
        document[QStringLiteral("pictures")] = QJsonObject{{QStringLiteral("before"), jsonPoints(result.before.points)},
                                                           {QStringLiteral("after"), jsonPoints(result.after.points)}};
    }
    return detail::jsonText(document);
}

ProfileResult profileFromJson(const std::string& json) {
    const JsonValue document = JsonValue::parse(json, "profile");
    ProfileResult result;
    result.file = document["file"].text();
    result.record = wholeOrNull(document["record"]);
    result.pointsBefore = document["points"].wideWholeNumber();
    result.pointsAfter = wholeOrNull(document["pointsAfter"]).value_or(0);
    result.failure = document["reason"].textOrNull();
    result.xTitle = document["x"].text();
    result.yTitle = document["y"].text();
    for (const JsonValue& step : document["steps"].list()) {
        result.outcomes.push_back(readOutcome(step));
    }
    for (const JsonValue& finding : document["findings"].list()) {
        result.findings.push_back(readFinding(finding));
    }
    if (document.has("pictures")) {
        result.before.points = document["pictures"]["before"].points();
        result.after.points = document["pictures"]["after"].points();
    }
    return result;
}

} // namespace KxInspect
