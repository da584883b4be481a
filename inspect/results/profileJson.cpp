// A profile before and after a chain of operations as JSON.
#include "inspect/results/json.h"

#include <KxInspect/ProfileChain.h>
#include <KxMath/KxMathVersion.h>

namespace KxInspect {

namespace {

using detail::jsonNumber;
using detail::jsonPoints;

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

} // namespace

std::string toJson(const ProfileResult& result, Pictures pictures) {
    const bool isDone = result.failure.empty();
    const QJsonValue points = isDone ? QJsonValue(static_cast<qint64>(result.after.points.size())) : QJsonValue();
    QJsonObject document = {
        {QStringLiteral("command"), QStringLiteral("profile")},
        {QStringLiteral("version"), QLatin1String(KxMath_GetVersionString())},
        {QStringLiteral("file"), QString::fromStdString(result.file)},
        {QStringLiteral("record"), result.record ? QJsonValue(static_cast<qint64>(*result.record)) : QJsonValue()},
        {QStringLiteral("points"), static_cast<qint64>(result.before.points.size())},
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

} // namespace KxInspect
