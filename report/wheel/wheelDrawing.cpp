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

QPointF toPoint(const KxInspect::Point& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

/// A level as a thin line across the flange up to `to`, followed by its name.
void addLevelLine(Plot& plot, double level, double to, const QString& name) {
    plot.addLine({{0.0, level}, {to, level}}, {colour::kPale, 1.0, "4 3"});
    constexpr double kHalfLetter = 0.45; // mm at the width of the drawing
    plot.addText({to + 1.0 + kHalfLetter * static_cast<double>(name.size()), level}, name, colour::kGrey);
}

void addHeight(Plot& plot, float height) {
    const double h = static_cast<double>(height);
    plot.addLine({{kTapeX, 0.0}, {kTapeX, h}}, {colour::kOrange, 2.0}, QStringLiteral("level of the tape circle, h"));
    plot.addMark({kTapeX, h}, colour::kOrange, 3.5,
                 QStringLiteral("level of the tape circle: %1").arg(lengthText(height)));
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

void addSmoothMeasures(Plot& plot, const WheelResult& result) {
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

/// A line from the tip's level down to the tape circle.
void addFlangeHeight(Plot& plot, const QPointF& tip, const QPointF& tape, float height) {
    plot.addLine({tip, {tape.x(), tip.y()}}, {colour::kPale, 1.0, "4 3"});
    plot.addLine({{tape.x(), tip.y()}, tape}, {colour::kOrange, 2.0}, QStringLiteral("flange height (Sh)"));
    plot.addMark(tip, colour::kOrange, 3.5, QStringLiteral("tip of the flange"));
    plot.addMark(tape, colour::kOrange, 3.5, QStringLiteral("flange height (Sh): %1").arg(lengthText(height)));
    plot.addText({tape.x() + 8.5, (tip.y() + tape.y()) / 2}, QStringLiteral("Sh ") + lengthText(height),
                 colour::kOrange, 12);
}

void addFlank(Plot& plot, const WheelResult& result, const QPointF& flank) {
    const KxInspect::WheelMeasures& m = result.measures;
    if (m.flangeThickness) {
        const double end = static_cast<double>(*m.flangeThickness);
        plot.addLine({{flank.x() - end, flank.y()}, flank}, {colour::kGreen, 2.0},
                     QStringLiteral("flange thickness (Sd), 10 mm above the tape circle"));
        plot.addText({flank.x() - end / 2, flank.y() + 1.7}, QStringLiteral("Sd ") + lengthText(*m.flangeThickness),
                     colour::kGreen, 12);
        plot.addMark(flank, colour::kGreen, 3.5,
                     QStringLiteral("flange thickness (Sd): %1").arg(lengthText(*m.flangeThickness)));
    }
    if (m.flangeSlope && result.places.flankTop) {
        const QPointF top = toPoint(*result.places.flankTop);
        const double level = flank.y() - 3.5; // beside the line of Sd
        plot.addLine({top, {top.x(), level}}, {colour::kPurple, 1.0, "3 3"});
        plot.addLine({{flank.x(), level}, flank}, {colour::kPurple, 1.0, "3 3"});
        plot.addLine({{top.x(), level}, {flank.x(), level}}, {colour::kPurple, 2.0},
                     QStringLiteral("flange slope (qR), from 2 mm below the tip"));
        plot.addMark(top, colour::kPurple, 3.5, QStringLiteral("2 mm below the tip"));
        plot.addText({flank.x() + 9.0, level}, QStringLiteral("qR ") + lengthText(*m.flangeSlope), colour::kPurple, 12);
    }
}

void addTread(Plot& plot, const WheelResult& result) {
    const KxInspect::WheelMeasures& m = result.measures;
    const KxInspect::WheelPlaces& places = result.places;
    if (m.treadSlope && places.tape) {
        constexpr double kHalf = 10.0; // mm
        const QPointF tape = toPoint(*places.tape);
        const double rise = static_cast<double>(*m.treadSlope) * kHalf;
        plot.addLine({{tape.x() - kHalf, tape.y() - rise}, {tape.x() + kHalf, tape.y() + rise}},
                     {colour::kGrey, 1.5, "6 3"}, QStringLiteral("tread slope at the tape circle"));
        plot.addText({tape.x(), tape.y() + 2.5}, QStringLiteral("slope ") + fixedText(*m.treadSlope, 4), colour::kGrey,
                     12);
    }
    if (m.treadHollow && places.hollowBottom && places.hollowCrest) {
        const QPointF bottom = toPoint(*places.hollowBottom);
        const QPointF crest = toPoint(*places.hollowCrest);
        plot.addLine({crest, {bottom.x(), crest.y()}}, {colour::kBlue, 1.0, "3 3"});
        plot.addLine({{bottom.x(), crest.y()}, bottom}, {colour::kBlue, 2.0}, QStringLiteral("hollow of the tread"));
        plot.addMark(crest, colour::kBlue, 3.5,
                     QStringLiteral("hollow of the tread: %1").arg(lengthText(*m.treadHollow)));
        plot.addText({(bottom.x() + crest.x()) / 2, crest.y() - 1.7},
                     QStringLiteral("hollow ") + lengthText(*m.treadHollow), colour::kBlue, 12);
    }
}

void addRimWidth(Plot& plot, const WheelResult& result) {
    if (result.measures.rimWidth && result.places.outerFace) {
        double level = 0.0; // the lowest one, where the faces are
        for (const KxInspect::Point& p : result.section) {
            level = std::max(level, static_cast<double>(p.y));
        }
        const double end = static_cast<double>(*result.places.outerFace);
        const double width = static_cast<double>(*result.measures.rimWidth);
        plot.addLine({{end - width, level}, {end, level}}, {colour::kPale, 2.0}, QStringLiteral("rim width"));
        plot.addMark({end, level}, colour::kPale, 3.5,
                     QStringLiteral("rim width: %1").arg(lengthText(*result.measures.rimWidth)));
        plot.addText({end - width / 2, level + 1.7}, QStringLiteral("rim ") + lengthText(*result.measures.rimWidth),
                     colour::kGrey, 12);
    }
}

void addRailwayMeasures(Plot& plot, const WheelResult& result) {
    const KxInspect::WheelPlaces& places = result.places;
    if (places.tip && places.tape && result.measures.flangeHeight) {
        addFlangeHeight(plot, toPoint(*places.tip), toPoint(*places.tape), *result.measures.flangeHeight);
    }
    if (places.flank) {
        addFlank(plot, result, toPoint(*places.flank));
    }
    addTread(plot, result);
    addRimWidth(plot, result);
}

/// A drawing of the points of a wheel, with equal scales.
Plot sheetFor(const WheelResult& result, const QString& id, const QString& title) {
    constexpr int kWidth = 1060;
    constexpr double kMinHeight = 260.0;
    constexpr double kMaxHeight = 620.0;
    Range x;
    Range y;
    for (const auto* const points : {&result.section, &result.measured}) {
        for (const QPointF& p : toPoints(*points)) {
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
    Plot plot(id, title, kWidth, height, {QStringLiteral("distance from the flange back, mm"), x},
              {QStringLiteral("level, mm from the flange tip"), y});
    plot.addDots(toPoints(result.section), colour::kPale, 2.5, QStringLiteral("points of the file"));
    return plot;
}

} // namespace

QString railwayDrawing(const WheelResult& result, const QString& name, const QString& id) {
    Plot plot = sheetFor(result, id, QStringLiteral("Measures of railways on ") + name);
    addRailwayMeasures(plot, result);
    return plot.svg();
}

QString wheelDrawing(const WheelResult& result, const QString& name, const QString& id) {
    Plot plot = sheetFor(result, id, QStringLiteral("Profile of ") + name);
    plot.addLine(toPoints(result.measured), {colour::kBlue, 1.8}, QStringLiteral("measured profile"));
    addSmoothMeasures(plot, result);
    return plot.svg();
}

} // namespace kxreport
