// A measured wheel as a drawing.
#include "report/wheel/wheelDrawing.h"

#include "report/elements/numbers.h"
#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"

#include <algorithm>

namespace kxreport {

namespace {

using KxInspect::WheelResult;

constexpr double kTapeX = static_cast<double>(KxInspect::kTapeCircleX);
constexpr double kTip = static_cast<double>(KxInspect::kTipLevel);
constexpr double kFlank = static_cast<double>(KxInspect::kFlankLevel);
constexpr double kDepth = static_cast<double>(KxInspect::kFlankDepth);
constexpr double kLevelsEnd = 48.0; // end of the level lines; level h-13 may be close to another one and goes on

QString lengthText(float value) {
    return fixedText(value, 2) + QStringLiteral(" mm");
}

/// A level as a thin line across the flange up to `to`, followed by its name.
void addLevelLine(Plot& plot, double level, double to, const QString& name) {
    plot.addLine({{0.0, level}, {to, level}}, {colour::kPale, 1.0, "4 3"});
    constexpr double kHalfLetter = 0.45; // mm at the width of the drawing
    plot.addText({to + 1.0 + kHalfLetter * static_cast<double>(name.size()), level}, name, colour::kGrey);
}

void addHeight(Plot& plot, float height) {
    const double h = static_cast<double>(height);
    plot.addLine({{kTapeX, 0.0}, {kTapeX, h}}, {colour::kOrange, 2.0}, QStringLiteral("flange height (Sh)"));
    plot.addMark({kTapeX, h}, colour::kOrange, 3.5, QStringLiteral("flange height (Sh): %1").arg(lengthText(height)));
    plot.addText({kTapeX + 6.5, h / 2}, lengthText(height), colour::kOrange, 12);
}

void addThickness(Plot& plot, float x) {
    const double end = static_cast<double>(x);
    plot.addLine({{0.0, kFlank}, {end, kFlank}}, {colour::kGreen, 2.0}, QStringLiteral("flange thickness at level 18"));
    plot.addMark({end, kFlank}, colour::kGreen, 3.5,
                 QStringLiteral("flange thickness at level 18: %1").arg(lengthText(x)));
    plot.addText({end / 2, kFlank + 1.7}, lengthText(x), colour::kGreen, 12);
}

void addWidth(Plot& plot, double from, float width, double level) {
    const double to = from + static_cast<double>(width);
    plot.addLine({{from, kTip}, {from, level}}, {colour::kPurple, 1.0, "3 3"});
    plot.addLine({{from, level}, {to, level}}, {colour::kPurple, 2.0}, QStringLiteral("flank width, level 2 to h-13"));
    plot.addMark({from, kTip}, colour::kPurple, 3.5, QStringLiteral("level 2"));
    plot.addMark({to, level}, colour::kPurple, 3.5, QStringLiteral("level h-13"));
    plot.addText({(from + to) / 2, level - 1.7}, lengthText(width), colour::kPurple, 12);
}

void addMeasures(Plot& plot, const WheelResult& result) {
    const KxInspect::WheelMeasures& m = result.measures;
    plot.addLevel(0.0, {colour::kPale, 1.0});
    addLevelLine(plot, kTip, kLevelsEnd, QStringLiteral("level 2"));
    addLevelLine(plot, kFlank, kLevelsEnd, QStringLiteral("level 18"));
    if (m.heightAt70) {
        addHeight(plot, *m.heightAt70);
    }
    if (m.xAtLevel18) {
        addThickness(plot, *m.xAtLevel18);
    }
    if (m.widthLevel2ToH13 && m.heightAt70 && result.widthStart) {
        const double level = static_cast<double>(*m.heightAt70) - kDepth;
        addLevelLine(plot, level, kLevelsEnd + 6.0, QStringLiteral("level h-13"));
        addWidth(plot, static_cast<double>(*result.widthStart), *m.widthLevel2ToH13, level);
    }
}

} // namespace

QString wheelDrawing(const WheelResult& result, const QString& id) {
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
    makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(height));
    Plot plot(id, QStringLiteral("Profile of %1").arg(QString::fromStdString(result.file)), kWidth, height,
              {QStringLiteral("distance from the flange back, mm"), x},
              {QStringLiteral("level, mm from the flange tip"), y});
    plot.addDots(section, colour::kPale, 2.5, QStringLiteral("points of the file"));
    plot.addLine(measured, {colour::kBlue, 1.8}, QStringLiteral("measured profile"));
    addMeasures(plot, result);
    return plot.svg();
}

} // namespace kxreport
