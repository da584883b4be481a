// The verdict on each wheel of a pass.
#include "report/train/wheelVerdicts.h"

#include "report/elements/numbers.h"
#include "report/train/passWords.h"
#include "report/train/sheetColumns.h"

#include <algorithm>
#include <array>

namespace kxreport {

using namespace KxInspect;

namespace {

/// "flange thickness (Sd): 24.90 ± 0.12 mm, alarm".
QString causeOf(const MeasureInfo& measure, const SheetValue& value) {
    return QStringLiteral("%1: %2 %3, %4%5")
        .arg(titleOf(measure), valueText(measure, value), QString::fromStdString(measure.unit),
             wordOf(markOf(value.verdict)), value.isDoubtful == true ? QStringLiteral(", doubtful") : QString());
}

/// The values of the wheel that are beyond limits or doubtful, and what is not measured.
QStringList causesByLimits(const SheetRow& row) {
    QStringList causes;
    QStringList missing;
    for (std::size_t i = 0; i < row.values.size(); ++i) {
        const MeasureInfo& measure = measureInfos()[i];
        const SheetValue& value = row.values[i];
        const bool isOfPart = measure.of == MeasureOf::Bogie || measure.of == MeasureOf::Vehicle;
        if (isOfPart || !value.verdict) {
            continue;
        }
        if (*value.verdict == LimitVerdict::NotMeasured) {
            missing.append(titleOf(measure));
        } else if (*value.verdict != LimitVerdict::Ok || value.isDoubtful == true) {
            causes.append(causeOf(measure, value));
        }
    }
    if (!missing.isEmpty()) {
        causes.append(QStringLiteral("not measured: ") + missing.join(QStringLiteral(", ")));
    }
    if (!row.reason.empty()) {
        causes.append(QString::fromStdString(row.reason));
    }
    return causes;
}

/// What is wrong with the wheel by the tolerance of the distance and by the limits of defects.
QStringList findingsOf(const PassResult& pass, const SheetRow& row) {
    QStringList findings;
    if (row.pair < 1) {
        return findings;
    }
    const WheelPair& pair = pass.pairs[static_cast<std::size_t>(row.pair) - 1];
    if (pair.inTolerance == false) {
        findings.append(QStringLiteral("back-to-back out of tolerance: %1 mm, %2 mm off the nominal distance")
                            .arg(withInterval(pair.distance, pair.interval, 3), fixedText(pair.deviation, 3)));
    }
    const PassWheel* const wheel = pass.wheelOf(pair, static_cast<std::size_t>(row.side) - 1);
    if (wheel != nullptr && wheel->defects && wheel->defects->isDefective == true) {
        findings.append(QStringLiteral("tread defective: %1 of %2 profiles, the largest deviation %3 mm")
                            .arg(wheel->defects->profiles.size())
                            .arg(wheel->defects->judged)
                            .arg(fixedText(wheel->defects->largest, 3)));
    }
    if (wheel != nullptr && wheel->roundness && wheel->roundness->isOut) {
        findings.append(QStringLiteral("out of round by %1 mm")
                            .arg(withInterval(wheel->roundness->largest, wheel->roundness->largestInterval, 3)));
    }
    return findings;
}

WheelVerdict verdictOf(const PassResult& pass, const SheetRow& row) {
    WheelVerdict verdict{&row, markOf(row.verdict), causesByLimits(row)};
    const QStringList findings = findingsOf(pass, row);
    if (!findings.isEmpty() && verdict.mark != Mark::Alarm && verdict.mark != Mark::Warning) {
        verdict.mark = Mark::Finding;
    }
    verdict.causes += findings;
    return verdict;
}

int badnessOf(const WheelVerdict& verdict) {
    constexpr std::array<Mark, 6> kOrder = {Mark::Ok,      Mark::None,    Mark::NotMeasured,
                                            Mark::Finding, Mark::Warning, Mark::Alarm};
    const auto place = std::find(kOrder.begin(), kOrder.end(), verdict.mark) - kOrder.begin();
    return 2 * static_cast<int>(place) + (verdict.row->isDoubtful ? 1 : 0);
}

} // namespace

std::vector<WheelVerdict> wheelVerdicts(const PassResult& pass, const std::vector<SheetRow>& rows) {
    std::vector<WheelVerdict> verdicts;
    verdicts.reserve(rows.size());
    for (const SheetRow& row : rows) {
        verdicts.push_back(verdictOf(pass, row));
    }
    return verdicts;
}

std::vector<WheelVerdict> worstFirst(std::vector<WheelVerdict> verdicts) {
    std::stable_sort(verdicts.begin(), verdicts.end(),
                     [](const WheelVerdict& a, const WheelVerdict& b) { return badnessOf(a) > badnessOf(b); });
    return verdicts;
}

} // namespace kxreport
