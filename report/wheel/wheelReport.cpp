// The report of measured wheels.
#include "report/wheel/wheelReport.h"

#include "report/elements/page.h"
#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"
#include "tools/kxmath/console/numbers.h"

#include <KxMath/KxMathVersion.h>

#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

using KxMath::KxPointXY;
using namespace kxreport;

namespace colour = kxreport::colour;

constexpr double kTapeCircle = 70.0;
constexpr double kTipLevel = 2.0;
constexpr double kFlankDepth = 13.0; // above the tread
constexpr double kFlankLevel = 18.0;
constexpr double kLevelsEnd =
    48.0; ///< how far the lines of the levels are drawn; the one that may meet another goes on

/// Where the measured profile first reaches the level that the width begins at, behind the tip of the flange.
double tipEnd(const QList<KxPointXY>& points) {
    const auto isLower = [](const KxPointXY& a, const KxPointXY& b) { return a.y < b.y; };
    auto p = std::min_element(points.cbegin(), points.cend(), isLower);
    while (p != points.cend() && static_cast<double>(p->y) < kTipLevel) {
        ++p;
    }
    return p == points.cend() ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(p->x);
}

QString lengthText(float value) {
    return fixedText(value, 2) + QStringLiteral(" mm");
}

/// A level as a thin line over the flange up to `to`, with its name behind it.
void addLevelLine(Plot& plot, double level, double to, const QString& name) {
    plot.addLine({{0.0, level}, {to, level}}, {colour::kPale, 1.0, "4 3"});
    plot.addText({to + 3.0, level}, name, colour::kGrey);
}

void addHeight(Plot& plot, float height) {
    const double h = static_cast<double>(height);
    plot.addLine({{kTapeCircle, 0.0}, {kTapeCircle, h}}, {colour::kOrange, 2.0}, QStringLiteral("height at 70"));
    plot.addMark({kTapeCircle, h}, colour::kOrange, 3.5, QStringLiteral("height at 70: %1").arg(lengthText(height)));
    plot.addText({kTapeCircle + 6.5, h / 2}, lengthText(height), colour::kOrange, 12);
}

void addThickness(Plot& plot, float x) {
    const double end = static_cast<double>(x);
    plot.addLine({{0.0, kFlankLevel}, {end, kFlankLevel}}, {colour::kGreen, 2.0}, QStringLiteral("x at level 18"));
    plot.addMark({end, kFlankLevel}, colour::kGreen, 3.5, QStringLiteral("x at level 18: %1").arg(lengthText(x)));
    plot.addText({end / 2, kFlankLevel + 1.7}, lengthText(x), colour::kGreen, 12);
}

void addWidth(Plot& plot, double from, float width, double level) {
    const double to = from + static_cast<double>(width);
    plot.addLine({{from, kTipLevel}, {from, level}}, {colour::kPurple, 1.0, "3 3"});
    plot.addLine({{from, level}, {to, level}}, {colour::kPurple, 2.0}, QStringLiteral("width level 2 to h-13"));
    plot.addMark({from, kTipLevel}, colour::kPurple, 3.5, QStringLiteral("level 2"));
    plot.addMark({to, level}, colour::kPurple, 3.5, QStringLiteral("level h-13"));
    plot.addText({(from + to) / 2, level - 1.7}, lengthText(width), colour::kPurple, 12);
}

void addMeasures(Plot& plot, const WheelResult& result) {
    const KxMath::_WheelProfileValues& v = result.values;
    plot.addLevel(0.0, {colour::kPale, 1.0});
    addLevelLine(plot, kTipLevel, kLevelsEnd, QStringLiteral("2"));
    addLevelLine(plot, kFlankLevel, kLevelsEnd, QStringLiteral("18"));
    if (!std::isnan(v.heightAt70)) {
        addHeight(plot, v.heightAt70);
    }
    if (!std::isnan(v.xAtLevel18)) {
        addThickness(plot, v.xAtLevel18);
    }
    if (!std::isnan(v.widthLevel2ToH13)) {
        const double level = static_cast<double>(v.heightAt70) - kFlankDepth;
        addLevelLine(plot, level, kLevelsEnd + 6.0, QStringLiteral("h-13"));
        addWidth(plot, tipEnd(result.measured), v.widthLevel2ToH13, level);
    }
}

QString drawing(const WheelResult& result, const QString& id) {
    constexpr int kWidth = 1060;
    constexpr double kMinHeight = 260.0;
    constexpr double kMaxHeight = 620.0;
    const Points section = toPoints(result.section);
    const Points measured = toPoints(result.measured);
    Range x;
    Range y;
    for (const Points* const points : {&section, &measured}) {
        for (const QPointF& p : *points) {
            x.include(p.x());
            y.include(p.y());
        }
    }
    x = x.padded(0.02);
    y = y.padded(0.05);
    const double border = -Plot::areaHeight(0);
    const double wanted = Plot::areaWidth(kWidth) * y.size() / x.size() + border;
    const int height = static_cast<int>(std::clamp(wanted, kMinHeight, kMaxHeight));
    kxreport::makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(height));
    Plot plot(id, QStringLiteral("Profile of %1").arg(result.file), kWidth, height,
              {QStringLiteral("from the flange back, mm"), x}, {QStringLiteral("over the flange tip, mm"), y});
    plot.addDots(section, colour::kPale, 2.5, QStringLiteral("points of the file"));
    plot.addLine(measured, {colour::kBlue, 1.8}, QStringLiteral("measured profile"));
    addMeasures(plot, result);
    return plot.svg();
}

Tone toneOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::Within:
        return Tone::Good;
    case Verdict::Outside:
    case Verdict::NotMeasured:
    case Verdict::NotRead:
        return Tone::Bad;
    case Verdict::NoLimits:
        break;
    }
    return Tone::Plain;
}

std::vector<Cell> tableRow(const WheelResult& result, const Limits& limits) {
    std::vector<Cell> row = {{QFileInfo(result.file).fileName()}};
    for (size_t i = 0; i < kWheelMeasures.size(); ++i) {
        const float value = result.values.*kWheelMeasures[i].value;
        const Tone tone = limits[i].holds(value) ? Tone::Good : Tone::Bad;
        row.push_back({fixedText(value, 2), limits[i].isSet() ? tone : Tone::Plain});
    }
    const Verdict verdict = verdictOf(result, limits);
    row.push_back({verdictText(verdict), toneOf(verdict)});
    return row;
}

QString limitText(const Limit& limit) {
    if (!limit.isSet()) {
        return QStringLiteral("-");
    }
    return (std::isnan(limit.min) ? QString() : QStringLiteral("\u2265 ") + shortestText(limit.min)) +
           (std::isnan(limit.min) || std::isnan(limit.max) ? QString() : QStringLiteral(", ")) +
           (std::isnan(limit.max) ? QString() : QStringLiteral("\u2264 ") + shortestText(limit.max));
}

void addTable(Page& page, const std::vector<WheelResult>& results, const Limits& limits) {
    QStringList headers = {QStringLiteral("file")};
    std::vector<Cell> limitRow = {{QStringLiteral("allowed"), Tone::Faint}};
    for (size_t i = 0; i < kWheelMeasures.size(); ++i) {
        headers += QStringLiteral("%1, mm").arg(QLatin1String(kWheelMeasures[i].title));
        limitRow.push_back({limitText(limits[i]), Tone::Faint});
    }
    headers += QStringLiteral("verdict");
    limitRow.push_back({});
    std::vector<std::vector<Cell>> rows;
    for (const WheelResult& result : results) {
        rows.push_back(tableRow(result, limits));
    }
    rows.push_back(limitRow);
    page.table(headers, rows, 1);
}

void addFacts(Page& page, const std::vector<WheelResult>& results, const Limits& limits) {
    const auto count = [&](const auto& condition) {
        return static_cast<int>(std::count_if(results.begin(), results.end(), condition));
    };
    const int measured = count([](const WheelResult& r) { return r.isMeasured(); });
    const int all = static_cast<int>(results.size());
    std::vector<Fact> facts = {{QStringLiteral("Wheels measured"), QStringLiteral("%1 of %2").arg(measured).arg(all),
                                measured == all ? Tone::Plain : Tone::Bad}};
    if (std::any_of(limits.begin(), limits.end(), [](const Limit& l) { return l.isSet(); })) {
        const int within = count([&](const WheelResult& r) { return verdictOf(r, limits) == Verdict::Within; });
        const int outside = count([&](const WheelResult& r) { return verdictOf(r, limits) == Verdict::Outside; });
        facts.push_back({QStringLiteral("Within limits"), QString::number(within), Tone::Plain});
        facts.push_back(
            {QStringLiteral("Outside limits"), QString::number(outside), outside == 0 ? Tone::Good : Tone::Bad});
    }
    page.facts(facts);
}

} // namespace

QString wheelReport(const std::vector<WheelResult>& results, const Limits& limits) {
    Page page(QStringLiteral("Wheel profiles"), QStringLiteral("Measures of the rim, heights over the flange tip"));
    addFacts(page, results, limits);
    addTable(page, results, limits);
    page.paragraph(QStringLiteral(
        "Height at 70: flange height h on the tape circle. x at level 18: distance of the flank from the flange back. "
        "Width 2 to h-13: from the height 2 to the height h-13 on the flank. Height excess: h less 30 from 29 on, less "
        "28 below. The measured profile is a mean over 20 points and smooths what is sharper."));
    int number = 0;
    for (const WheelResult& result : results) {
        page.heading(QFileInfo(result.file).fileName());
        if (!result.error.isEmpty()) {
            page.warning(QStringLiteral("The file %1").arg(result.error));
            continue;
        }
        for (const QString& warning : result.warnings) {
            page.warning(QStringLiteral("The profile %1").arg(warning));
        }
        if (!result.isMeasured()) {
            page.warning(QStringLiteral("No measure was found."));
        }
        page.figure(drawing(result, QStringLiteral("wheel%1").arg(++number)),
                    QStringLiteral("The wheel as it stands on the rail, seen along the track: flange back on the left, "
                                   "flange tip at height 0."));
    }
    page.paragraph(QStringLiteral("KxMath %1.").arg(QLatin1String(KxMath_GetVersionString())));
    return page.html();
}

} // namespace kxtool
