// The defects of the treads in the report.
#include "report/train/defectPlots.h"

#include "report/elements/numbers.h"
#include "report/elements/plot.h"
#include "report/elements/svg.h"
#include "report/train/columnHeads.h"
#include "report/train/passColumns.h"
#include "report/train/passWords.h"
#include "report/train/shownWheel.h"
#include "report/train/treadMaps.h"

#include <algorithm>
#include <cmath>

namespace kxreport {

using namespace KxInspect;

namespace {

constexpr int kWidth = 540;
constexpr int kHeight = 300;

Tone toneOf(const QString& word) {
    if (word == QLatin1String("defective") || word == QLatin1String("out of round")) {
        return Tone::Bad;
    }
    if (word == QLatin1String("not judged")) {
        return Tone::Faint;
    }
    return word == QLatin1String("sound") || word == QLatin1String("round") ? Tone::Good : Tone::Plain;
}

void addTable(const PassResult& pass, const std::vector<PairColumn>& columns, Page& page) {
    std::vector<std::vector<Cell>> rows(pass.pairs.size());
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        for (const PairColumn& column : columns) {
            const QString text = textForPeople(column.value(pass, i));
            rows[i].push_back({text, toneOf(text)});
        }
    }
    page.table(headsOf(columns), rows);
}

void addVerdicts(const PassResult& pass, Page& page) {
    page.heading(QStringLiteral("Defects of the treads"));
    addTable(pass, defectColumns(), page);
    page.paragraph(
        QStringLiteral("For each side: how many profiles were judged, how many of them are defective and "
                       "which, the deviating points of all, the largest deviation in mm, the verdict. In "
                       "words: %1. Profiles that show fewer than %2 points between the lines, or less than "
                       "%3 mm of the tread, are not judged.")
            .arg(defectLimitsText(pass), QString::number(kFewestJudgedPoints), QString::number(kLeastTread)));
    addCount(pass, PassQuestion::Tread, page);
    page.heading(QStringLiteral("Roundness of the wheels"));
    addTable(pass, roundnessColumns(), page);
    page.paragraph(QStringLiteral("For each side: how many profiles show flange and tread, which ones are off the "
                                  "circle, by how much in mm, the verdict. In words: %1.")
                       .arg(roundnessLimitsText(pass)));
    addCount(pass, PassQuestion::Roundness, page);
}

bool isDeviating(const Point& point, const TreadDefects& defects) {
    return std::abs(point.y) > defects.limit;
}

QString deviationPlot(const ShownWheel& shown) {
    const double allowed = static_cast<double>(shown.wheel().defects->limit);
    Points inside;
    Points outside;
    Range x;
    Range y;
    y.include(-allowed);
    y.include(allowed);
    for (const Point& p : shown.picture.deviations) {
        const QPointF point(static_cast<double>(p.x), static_cast<double>(p.y));
        (isDeviating(p, *shown.wheel().defects) ? outside : inside).push_back(point);
        x.include(point.x());
        y.include(point.y());
    }
    Plot plot(shown.plotName("deviation"), QStringLiteral("Deviation of the tread on side ") + shown.number(), kWidth,
              kHeight, {QStringLiteral("x, mm"), x.padded(0.04)},
              {QStringLiteral("y \u2212 curve, mm"), y.padded(0.12)});
    plot.addBand(-allowed, allowed, colour::kGreen, QStringLiteral("allowed"));
    plot.addDots(inside, colour::kBlue, 2.2, QStringLiteral("point"));
    plot.addDots(outside, colour::kOrange, 3.2, QStringLiteral("deviating point"));
    return plot.svg();
}

Figure deviationFigure(const ShownWheel& shown) {
    const std::vector<Point>& points = shown.picture.deviations;
    const TreadDefects& defects = *shown.wheel().defects;
    const auto deviating =
        std::count_if(points.begin(), points.end(), [&](const Point& p) { return isDeviating(p, defects); });
    return {deviationPlot(shown),
            QStringLiteral("Side %1, wheel %2, profile %3 (record %4): %5 of %6 points deviate, the largest by %7 mm; "
                           "%8 mm count.")
                .arg(shown.number(), QString::number(shown.wheel().number), QString::number(defects.worstProfile),
                     QString::number(shown.wheel().firstRecord + defects.worstProfile - 1), QString::number(deviating),
                     QString::number(points.size()), fixedText(defects.largest, 3), fixedText(defects.limit, 3))};
}

QString radiusPlot(const ShownWheel& shown) {
    const Roundness& roundness = *shown.wheel().roundness;
    const double allowed = static_cast<double>(roundness.limit);
    Range x;
    Range y;
    y.include(-allowed);
    y.include(allowed);
    for (const RadiusDeviation& radius : roundness.radii) {
        x.include(static_cast<double>(radius.place));
        y.include(static_cast<double>(radius.deviation));
        y.include(static_cast<double>(radius.interval.low));
        y.include(static_cast<double>(radius.interval.high));
    }
    Plot plot(shown.plotName("radius"), QStringLiteral("Radius of the tread on side ") + shown.number(), kWidth,
              kHeight, {QStringLiteral("laser plane before (\u2212) or behind the axle, mm"), x.padded(0.04)},
              {QStringLiteral("radius \u2212 circle, mm"), y.padded(0.12)});
    plot.addBand(-allowed, allowed, colour::kGreen, QStringLiteral("allowed"));
    for (const RadiusDeviation& radius : roundness.radii) {
        const bool isOff = std::binary_search(roundness.profiles.begin(), roundness.profiles.end(), radius.profile);
        plot.addMark({static_cast<double>(radius.place), static_cast<double>(radius.deviation)},
                     isOff ? colour::kOrange : colour::kBlue, 3.0,
                     QStringLiteral("profile %1: %2 mm")
                         .arg(radius.profile)
                         .arg(withInterval(radius.deviation, radius.interval, 3)));
    }
    plot.addLegendMark(QStringLiteral("profile"), colour::kBlue);
    plot.addLegendMark(QStringLiteral("off the circle"), colour::kOrange);
    return plot.svg();
}

Figure radiusFigure(const ShownWheel& shown) {
    const Roundness& roundness = *shown.wheel().roundness;
    return {
        radiusPlot(shown),
        QStringLiteral("Side %1, wheel %2: %3 profiles show flange and tread, %4 to %5 mm behind the back face. The "
                       "flange tip runs on a radius of %6 mm, single tips scatter about it by %7 mm. Farthest off: "
                       "%8 mm; %9 mm count.")
                .arg(shown.number(), QString::number(shown.wheel().number), QString::number(roundness.radii.size()),
                     fixedText(roundness.bandFrom, 0), fixedText(roundness.bandTo, 0),
                     fixedText(roundness.flangeRadius, 1), fixedText(roundness.scatter, 3),
                     withInterval(roundness.largest, roundness.largestInterval, 3), fixedText(roundness.limit, 3)) +
            QStringLiteral(" Seen of the circumference: %1 mm from the place that stood on the rail.")
                .arg(arcsText(roundness.seen))};
}

void addFigures(Page& page, const QString& heading, const QString& text, const std::vector<Figure>& figures) {
    if (figures.empty()) {
        return;
    }
    page.heading(heading);
    page.paragraph(text);
    page.figures(figures);
}

void addPair(const PassResult& pass, const PairPicture& pair, Page& page) {
    std::vector<Figure> deviations;
    std::vector<Figure> radii;
    for (const WheelPicture& picture : pair.wheels) {
        const ShownWheel shown{pass, pair, picture};
        const PassWheel& wheel = shown.wheel();
        if (wheel.defects && wheel.defects->worstProfile > 0) {
            deviations.push_back(deviationFigure(shown));
        }
        if (wheel.roundness) {
            radii.push_back(radiusFigure(shown));
        }
    }
    addFigures(page, QStringLiteral("Treads of wheel pair %1").arg(pair.pair),
               QStringLiteral("Of each wheel the profile that is farthest off: how its points between the low line "
                              "and the level line of the defects stand off the curve through them, a polynomial of "
                              "degree 20."),
               deviations);
    addFigures(page, QStringLiteral("Roundness of wheel pair %1").arg(pair.pair),
               QStringLiteral("The radius of the tread around the tape circle in each profile, about the axle that "
                              "the flange tips give, against that of the whole wheel."),
               radii);
}

} // namespace

void addDefects(const PassResult& pass, Page& page) {
    addVerdicts(pass, page);
    for (const PairPicture& pair : pass.pictures) {
        addPair(pass, pair, page);
    }
    addTreadMaps(pass, page);
}

} // namespace kxreport
