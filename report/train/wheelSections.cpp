// The cross-sections of wheels on the page of a pass.
#include "report/train/wheelSections.h"

#include "report/elements/numbers.h"
#include "report/elements/page.h"
#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"

namespace kxreport {

using namespace KxInspect;

namespace {

constexpr int kWidth = 500;
constexpr int kHeight = 300;

/// The nominal contour where it is aligned with a section: flange backs and tape circles at one place.
Points alignedContour(const NominalContour& contour, const PassWheelMeasures& wheel) {
    Points points = toPoints(contour.section);
    const double lower = static_cast<double>(*wheel[PassMeasure::FlangeHeight].value - contour.flangeHeight);
    for (QPointF& p : points) {
        p.ry() += lower;
    }
    return points;
}

QString wheelText(const PassWheelMeasures& wheel) {
    return QStringLiteral("%1 wheel of pair %2").arg(QLatin1String(textOf(wheel.side))).arg(wheel.pair);
}

QString plotId(const char* kind, const PassWheelMeasures& wheel) {
    return QStringLiteral("%1-%2-%3").arg(QLatin1String(kind)).arg(wheel.pair).arg(QLatin1String(textOf(wheel.side)));
}

Figure sectionFigure(const PassResult& pass, const PassWheelMeasures& wheel) {
    const Points points = toPoints(wheel.section);
    const bool isCompared = pass.contour && !wheel.deviations.empty() && !pass.contour->section.empty();
    const Points nominal = isCompared ? alignedContour(*pass.contour, wheel) : Points();
    Range x;
    Range y;
    for (const QPointF& p : points) {
        x.include(p.x());
        y.include(p.y());
    }
    x = x.padded(0.05);
    y = y.padded(0.1);
    makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(kHeight));
    Plot plot(plotId("section", wheel), QStringLiteral("Cross-section of the %1").arg(wheelText(wheel)), kWidth,
              kHeight, {QStringLiteral("from the flange back, mm"), x},
              {QStringLiteral("above the tip of the flange, mm"), y});
    if (isCompared) {
        plot.addLine(nominal, {colour::kOrange, 1.2, "6 3"}, QStringLiteral("nominal contour"));
    }
    plot.addDots(points, colour::kBlue, 2.0, QStringLiteral("measured"));
    const QString what = !pass.contour ? QStringLiteral("; no nominal contour was given (--contour)")
                         : isCompared
                             ? QStringLiteral(" over the nominal contour, both with the flange back and the tape "
                                              "circle at one place")
                             : QStringLiteral("; without a flange height it cannot be aligned with the contour");
    return {plot.svg(), QStringLiteral("The %1%2. What no sensor sees is open.").arg(wheelText(wheel), what)};
}

Figure deviationFigure(const PassWheelMeasures& wheel) {
    const Points points = toPoints(wheel.deviations);
    Range x;
    Range y;
    y.include(0.0);
    for (const QPointF& p : points) {
        x.include(p.x());
        y.include(p.y());
    }
    Plot plot(plotId("deviation", wheel), QStringLiteral("Deviation of the %1").arg(wheelText(wheel)), kWidth, kHeight,
              {QStringLiteral("from the flange back, mm"), x.padded(0.05)},
              {QStringLiteral("off the contour, mm"), y.padded(0.1)});
    plot.addLevel(0.0, {colour::kOrange, 1.2, "6 3"}, QStringLiteral("nominal contour"));
    plot.addDots(points, colour::kBlue, 2.0, QStringLiteral("measured"));
    return {plot.svg(), QStringLiteral("How far the %1 stands off the contour, square to it: below 0 it is worn.")
                            .arg(wheelText(wheel))};
}

} // namespace

void addWheelSections(const PassResult& pass, Page& page) {
    if (pass.wheels.empty()) {
        return;
    }
    page.heading(QStringLiteral("Cross-sections of the wheels"));
    page.paragraph(
        pass.contour ? QStringLiteral("Over the nominal contour of '%1', of a flange height of %2 mm.")
                           .arg(QString::fromStdString(pass.contour->file), fixedText(pass.contour->flangeHeight, 2))
                     : QStringLiteral(
                           "All profiles of a wheel, turned about its axle into one plane: the median of the points of "
                           "each step along the contour. No nominal contour was given (--contour)."));
    std::vector<Figure> figures;
    for (const PassWheelMeasures& wheel : pass.wheels) {
        if (wheel.section.empty()) {
            continue;
        }
        figures.push_back(sectionFigure(pass, wheel));
        if (!wheel.deviations.empty()) {
            figures.push_back(deviationFigure(wheel));
        }
    }
    if (figures.empty()) {
        page.paragraph(QStringLiteral("No wheel has one."));
        return;
    }
    page.figures(figures);
}

} // namespace kxreport
