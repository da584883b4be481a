// The report of measured wheels.
#include "report/wheel/wheelReport.h"

#include "report/elements/numbers.h"
#include "report/elements/page.h"
#include "report/wheel/wheelDrawing.h"
#include "report/wheel/wheelWords.h"

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

/// Some of kWheelMeasures, from one to before another.
struct Measures {
    std::size_t first;
    std::size_t end;
};

constexpr Measures kOfLibrary = {0, 4};
constexpr Measures kOfRailways = {4, kWheelMeasures.size()};

std::vector<Cell> tableRow(const QString& name, const WheelResult& result, const WheelLimits& limits,
                           const Measures& measures) {
    std::vector<Cell> row = {{name}};
    for (std::size_t i = measures.first; i < measures.end; ++i) {
        const WheelMeasure& measure = kWheelMeasures[i];
        const std::optional<float>& value = result.measures.*measure.value;
        const Limit& limit = limits.*measure.limit;
        const Tone tone = limit.holds(value) ? Tone::Good : Tone::Bad;
        row.push_back({withInterval(value.value_or(kNaN), result.intervals[i], measure.decimals),
                       limit.isSet() ? tone : Tone::Plain});
    }
    row.push_back({QLatin1String(textOf(result.verdict)), toneOf(result.verdict)});
    return row;
}

void addTable(Page& page, const WheelResults& results, const Measures& measures) {
    QStringList headers(QStringLiteral("file"));
    std::vector<Cell> limitRow = {{QStringLiteral("allowed"), Tone::Faint}};
    for (std::size_t i = measures.first; i < measures.end; ++i) {
        const WheelMeasure& measure = kWheelMeasures[i];
        headers += QLatin1String(measure.title) +
                   (qstrlen(measure.unit) > 0 ? QStringLiteral(", ") + QLatin1String(measure.unit) : QString());
        limitRow.push_back({limitText(results.limits.*measure.limit), Tone::Faint});
    }
    headers += QStringLiteral("verdict");
    limitRow.push_back({});
    std::vector<std::vector<Cell>> rows;
    const QStringList names = wheelNames(results);
    for (std::size_t i = 0; i < results.wheels.size(); ++i) {
        rows.push_back(tableRow(names[static_cast<qsizetype>(i)], results.wheels[i], results.limits, measures));
    }
    rows.push_back(limitRow);
    page.table(headers, rows, 1);
}

void addFacts(Page& page, const WheelResults& results) {
    const auto& wheels = results.wheels;
    const auto ofAll = [](std::size_t part, std::size_t all) { return QStringLiteral("%1 of %2").arg(part).arg(all); };
    const auto measured = static_cast<std::size_t>(
        std::count_if(wheels.begin(), wheels.end(), [](const WheelResult& r) { return r.isMeasured(); }));
    std::vector<Fact> facts = {{QStringLiteral("Wheels measured"), ofAll(measured, wheels.size()),
                                measured == wheels.size() ? Tone::Plain : Tone::Bad}};
    const KxInspect::WheelJudgement judgement = judgementOf(results);
    if (judgement.wheels > 0) {
        const bool isWhole = judgement.judged == judgement.wheels;
        facts.push_back({QStringLiteral("Judged by limits"), ofAll(judgement.judged, judgement.wheels),
                         isWhole ? Tone::Plain : Tone::Bad});
        const Tone none = isWhole ? Tone::Good : Tone::Plain; // what was not judged may be outside
        facts.push_back({QStringLiteral("Outside limits, of those judged"),
                         judgement.judged == 0 ? QStringLiteral("-") : ofAll(judgement.outside, judgement.judged),
                         judgement.outside > 0 ? Tone::Bad : none});
    }
    page.facts(facts);
    if (judgement.wheels > 0 && judgement.judged == 0) {
        page.failure(QStringLiteral("No wheel could be judged by the limits."));
    }
}

/// What is wrong with a wheel that was read.
void addFaults(Page& page, const WheelResult& result, const WheelLimits& limits) {
    if (!result.reading.empty()) {
        page.paragraph(QStringLiteral("The file %1.").arg(QString::fromStdString(result.reading)));
    }
    for (const std::string& warning : result.warnings) {
        page.warning(QStringLiteral("The profile %1.").arg(QString::fromStdString(warning)));
    }
    if (!result.isMeasured()) {
        page.failure(QStringLiteral("The profile has no flange or tread to measure: %1.")
                         .arg(QString::fromStdString(result.reasons.front())));
        return;
    }
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        if (!result.intervalReasons[i].empty()) {
            page.paragraph(
                QStringLiteral("No interval of %1: %2.")
                    .arg(QLatin1String(kWheelMeasures[i].title), QString::fromStdString(result.intervalReasons[i])));
        }
        if (result.reasons[i].empty()) {
            continue;
        }
        const QString text =
            QStringLiteral("No %1: %2.")
                .arg(QLatin1String(kWheelMeasures[i].title), QString::fromStdString(result.reasons[i]));
        if ((limits.*kWheelMeasures[i].limit).isSet()) {
            page.warning(text);
        } else {
            page.paragraph(text);
        }
    }
}

void addWheels(Page& page, const WheelResults& results) {
    const QStringList names = wheelNames(results);
    for (std::size_t i = 0, drawing = 0; i < results.wheels.size(); ++i) {
        const WheelResult& result = results.wheels[i];
        const QString& name = names.at(static_cast<qsizetype>(i));
        page.heading(name);
        if (!result.error.empty()) {
            page.failure(QStringLiteral("The file %1.").arg(QString::fromStdString(result.error)));
            continue;
        }
        addFaults(page, result, results.limits);
        ++drawing;
        page.figure(railwayDrawing(result, name, QStringLiteral("railway%1").arg(drawing)),
                    QStringLiteral("The measures of railways, from the points themselves. The wheel as seen along the "
                                   "track: flange back on the left, flange tip at level 0."));
        page.figure(wheelDrawing(result, name, QStringLiteral("wheel%1").arg(drawing)),
                    QStringLiteral("The library's measures, from a smooth profile."));
    }
}

} // namespace

QString wheelReport(const WheelResults& results, const PageOrigin& origin) {
    Page page(QStringLiteral("Wheel profiles"),
              QStringLiteral("Measures of the rim; levels are counted from the flange tip towards the axle"), origin);
    addFacts(page, results);
    addTable(page, results, kOfRailways);
    page.paragraph(QStringLiteral(
        "From the points themselves: flange height (Sh), from the tape circle, 70 mm from the flange back, to the tip; "
        "flange thickness (Sd), from the flange back to the flank 10 mm above the tape circle; flange slope (qR), "
        "across the wheel on the flank from 2 mm below the tip to 10 mm above the tape circle; hollow, how far the "
        "tread rises again towards the field side; tread slope, positive where the radius falls outwards; rim width, "
        "from the flange back to the outer face."));
    addTable(page, results, kOfLibrary);
    page.paragraph(QStringLiteral(
        "From a moving average over 20 points, which rounds sharp edges: level of the tape circle, h; flange thickness "
        "at level 18, 18 mm from the tip, which is Sd for h = 28 mm alone; flank width, across the wheel, from level 2 "
        "to level h-13, 13 mm above the tape circle (qR ends 10 mm above it); flange height excess, h - 30 mm for h of "
        "at least 29 mm, otherwise h - 28 mm."));
    const bool isToldGauge = results.gaugeError.isSet();
    page.paragraph(
        QStringLiteral("Each value stands with the interval that holds the true value in 95 of 100 "
                       "measurements, as far as %1 go%2.")
            .arg(causesText(results.gaugeError),
                 isToldGauge ? QString() : QStringLiteral("es: what the gauge itself does wrong is not in it")));
    addWheels(page, results);
    if (!results.version.empty()) {
        page.paragraph(QStringLiteral("KxMath %1.").arg(QString::fromStdString(results.version)));
    }
    return page.html();
}

} // namespace kxreport
