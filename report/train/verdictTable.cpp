// Verdicts by limits, for text and page.
#include "report/train/verdictTable.h"

#include "report/elements/numbers.h"
#include "report/elements/textList.h"

#include <algorithm>
#include <cmath>

namespace kxreport {

using namespace KxInspect;

namespace {

constexpr int kDecimals = 3;

Tone toneOf(LimitVerdict verdict) {
    switch (verdict) {
    case LimitVerdict::Ok:
        return Tone::Good;
    case LimitVerdict::NotMeasured:
        return Tone::Faint;
    case LimitVerdict::Warning:
    case LimitVerdict::Alarm:
        break;
    }
    return Tone::Bad;
}

QString numberOrDash(int number) {
    return number > 0 ? QString::number(number) : QStringLiteral("-");
}

/// "1357 1358 - 1364": alarm and warning below, warning and alarm above.
QString boundsText(const LimitBounds& bounds) {
    QStringList texts;
    for (const auto& bound : {bounds.alarmLow, bounds.warningLow, bounds.warningHigh, bounds.alarmHigh}) {
        texts.append(bound ? QString::number(*bound) : QStringLiteral("-"));
    }
    return texts.join(QLatin1Char(' '));
}

QString valueText(const Assessment& value) {
    const auto narrow = value.value ? static_cast<float>(*value.value) : std::numeric_limits<float>::quiet_NaN();
    return withInterval(narrow, value.interval, kDecimals);
}

QString verdictText(const Assessment& value) {
    const QString text = QLatin1String(textOf(value.verdict));
    return value.isDoubtful == true ? text + QStringLiteral(" (doubtful)") : text;
}

} // namespace

QStringList verdictTitles() {
    return textList({QStringLiteral("measure"), QStringLiteral("vehicle"), QStringLiteral("pair"),
                     QStringLiteral("side"), QStringLiteral("value"), QStringLiteral("limits"),
                     QStringLiteral("verdict"), QStringLiteral("reason")});
}

std::vector<VerdictRow> verdictRows(const PassResult& pass) {
    std::vector<VerdictRow> rows;
    for (const Assessment& value : pass.assessment->values) {
        if (value.verdict == LimitVerdict::Ok && value.isDoubtful != true) {
            continue;
        }
        const QString bogie = value.bogie > 0 ? QStringLiteral(" bogie %1").arg(value.bogie) : QString();
        const QString reason = value.reason.empty() ? QStringLiteral("-") : QString::fromStdString(value.reason);
        rows.push_back({textList({QString::fromStdString(value.measure), numberOrDash(value.vehicle) + bogie,
                                  numberOrDash(value.pair), numberOrDash(value.side), valueText(value),
                                  boundsText(value.bounds), verdictText(value), reason}),
                        toneOf(value.verdict), value.bounds});
    }
    return rows;
}

QStringList verdictNotes(const PassResult& pass) {
    const PassAssessment& assessment = *pass.assessment;
    const std::optional<LimitVerdict> whole = assessment.ofPass();
    const auto count = [&](LimitVerdict verdict) { return QString::number(assessment.count(verdict)); };
    const auto doubtful = std::count_if(assessment.values.begin(), assessment.values.end(),
                                        [](const Assessment& value) { return value.isDoubtful == true; });
    QStringList notes;
    notes.append(
        QStringLiteral("Verdict of the pass: %1. Of %2 values with limits %3 are ok, %4 warnings, %5 alarms, %6 not "
                       "measured; the interval of %7 reaches across a limit.")
            .arg(whole ? QLatin1String(textOf(*whole)) : QStringLiteral("none"),
                 QString::number(assessment.values.size()), count(LimitVerdict::Ok), count(LimitVerdict::Warning),
                 count(LimitVerdict::Alarm), count(LimitVerdict::NotMeasured), QString::number(doubtful)));
    QStringList vehicles;
    for (const PassVehicle& vehicle : pass.train.vehicles) {
        if (const std::optional<LimitVerdict> verdict = assessment.ofVehicle(vehicle.number)) {
            vehicles.append(QStringLiteral("%1 %2").arg(vehicle.number).arg(QLatin1String(textOf(*verdict))));
        }
    }
    if (!vehicles.isEmpty()) {
        notes.append(QStringLiteral("Vehicles: %1.").arg(vehicles.join(QStringLiteral(", "))));
    }
    return notes;
}

Fact passVerdictFact(const PassResult& pass) {
    const std::optional<LimitVerdict> verdict = pass.assessment->ofPass();
    return {QStringLiteral("Verdict by limits"), QLatin1String(verdict ? textOf(*verdict) : "none"),
            verdict == LimitVerdict::Ok ? Tone::Good : Tone::Bad};
}

const std::vector<PairColumn>& verdictColumns() {
    static const std::vector<PairColumn> columns = [] {
        std::vector<PairColumn> result;
        for (const int side : {1, 2}) {
            const QString name = QStringLiteral("wheel_verdict_%1").arg(side);
            result.push_back({name, name, [side](const PassResult& pass, size_t index) -> PairValue {
                                  const auto verdict = pass.assessment
                                                           ? pass.assessment->ofWheel(static_cast<int>(index) + 1, side)
                                                           : std::nullopt;
                                  return verdict ? PairValue(QLatin1String(textOf(*verdict))) : PairValue();
                              }});
        }
        return result;
    }();
    return columns;
}

} // namespace kxreport
