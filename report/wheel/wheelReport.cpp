// The report of measured wheels.
#include "report/wheel/wheelReport.h"

#include "report/elements/numbers.h"
#include "report/elements/page.h"
#include "report/wheel/wheelDrawing.h"

#include <QtCore/QFileInfo>

#include <algorithm>
#include <limits>

namespace kxreport {

namespace {

using KxInspect::kWheelMeasures;
using KxInspect::Limit;
using KxInspect::WheelLimits;
using KxInspect::WheelMeasure;
using KxInspect::WheelResult;
using KxInspect::WheelResults;
using KxInspect::WheelVerdict;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

Tone toneOf(WheelVerdict verdict) {
    switch (verdict) {
    case WheelVerdict::Within:
        return Tone::Good;
    case WheelVerdict::Outside:
    case WheelVerdict::NotMeasured:
    case WheelVerdict::NotRead:
        return Tone::Bad;
    case WheelVerdict::NoLimits:
        break;
    }
    return Tone::Plain;
}

QString fileName(const WheelResult& result) {
    return QFileInfo(QString::fromStdString(result.file)).fileName();
}

std::vector<Cell> tableRow(const WheelResult& result, const WheelLimits& limits) {
    std::vector<Cell> row = {{fileName(result)}};
    for (const WheelMeasure& measure : kWheelMeasures) {
        const std::optional<float>& value = result.measures.*measure.value;
        const Limit& limit = limits.*measure.limit;
        const Tone tone = limit.holds(value) ? Tone::Good : Tone::Bad;
        row.push_back({fixedText(value.value_or(kNaN), 2), limit.isSet() ? tone : Tone::Plain});
    }
    row.push_back({QLatin1String(textOf(result.verdict)), toneOf(result.verdict)});
    return row;
}

QString limitText(const Limit& limit) {
    QStringList bounds;
    if (limit.min) {
        bounds += QStringLiteral("\u2265 ") + shortestText(*limit.min);
    }
    if (limit.max) {
        bounds += QStringLiteral("\u2264 ") + shortestText(*limit.max);
    }
    return bounds.isEmpty() ? QStringLiteral("-") : bounds.join(QStringLiteral(", "));
}

void addTable(Page& page, const WheelResults& results) {
    QStringList headers = {QStringLiteral("file")};
    std::vector<Cell> limitRow = {{QStringLiteral("allowed"), Tone::Faint}};
    for (const WheelMeasure& measure : kWheelMeasures) {
        headers += QStringLiteral("%1, mm").arg(QLatin1String(measure.title));
        limitRow.push_back({limitText(results.limits.*measure.limit), Tone::Faint});
    }
    headers += QStringLiteral("verdict");
    limitRow.push_back({});
    std::vector<std::vector<Cell>> rows;
    for (const WheelResult& result : results.wheels) {
        rows.push_back(tableRow(result, results.limits));
    }
    rows.push_back(limitRow);
    page.table(headers, rows, 1);
}

void addFacts(Page& page, const WheelResults& results) {
    const auto count = [&](const auto& condition) {
        return static_cast<int>(std::count_if(results.wheels.begin(), results.wheels.end(), condition));
    };
    const auto countOf = [&](WheelVerdict verdict) {
        return count([verdict](const WheelResult& r) { return r.verdict == verdict; });
    };
    const int measured = count([](const WheelResult& r) { return r.isMeasured(); });
    const int all = static_cast<int>(results.wheels.size());
    std::vector<Fact> facts = {{QStringLiteral("Wheels measured"), QStringLiteral("%1 of %2").arg(measured).arg(all),
                                measured == all ? Tone::Plain : Tone::Bad}};
    if (std::any_of(kWheelMeasures.begin(), kWheelMeasures.end(),
                    [&](const WheelMeasure& m) { return (results.limits.*m.limit).isSet(); })) {
        const int outside = countOf(WheelVerdict::Outside);
        facts.push_back({QStringLiteral("Within limits"), QString::number(countOf(WheelVerdict::Within)), Tone::Plain});
        facts.push_back(
            {QStringLiteral("Outside limits"), QString::number(outside), outside == 0 ? Tone::Good : Tone::Bad});
    }
    page.facts(facts);
}

} // namespace

QString wheelReport(const WheelResults& results) {
    Page page(QStringLiteral("Wheel profiles"),
              QStringLiteral("Measures of the rim; levels are counted from the flange tip towards the axle"));
    addFacts(page, results);
    addTable(page, results);
    page.paragraph(QStringLiteral(
        "Flange height (Sh), h: the level of the tape circle, 70 mm from the flange back. Flange thickness at level "
        "18: "
        "from the flange back to the flank, 18 mm from the tip; for h = 28 mm it is Sd, 10 mm above the tape circle. "
        "Flank width: across the wheel, from level 2 to level h-13, 13 mm above the tape circle (qR ends 10 mm above "
        "it). Flange height excess: h - 30 mm for h of at least 29 mm, otherwise h - 28 mm. The measured profile is a "
        "moving average over 20 points, which rounds sharp edges."));
    int number = 0;
    for (const WheelResult& result : results.wheels) {
        page.heading(fileName(result));
        if (!result.error.empty()) {
            page.warning(QStringLiteral("The file %1").arg(QString::fromStdString(result.error)));
            continue;
        }
        for (const std::string& warning : result.warnings) {
            page.warning(QStringLiteral("The profile %1").arg(QString::fromStdString(warning)));
        }
        if (!result.isMeasured()) {
            page.warning(QStringLiteral("The profile has no flange or tread to measure."));
        }
        page.figure(
            wheelDrawing(result, QStringLiteral("wheel%1").arg(++number)),
            QStringLiteral("The wheel as seen along the track: flange back on the left, flange tip at level 0."));
    }
    if (!results.version.empty()) {
        page.paragraph(QStringLiteral("KxMath %1.").arg(QString::fromStdString(results.version)));
    }
    return page.html();
}

} // namespace kxreport
