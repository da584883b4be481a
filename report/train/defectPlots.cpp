// The defects of the treads in the report.
#include "report/train/defectPlots.h"

#include "report/elements/plot.h"
#include "report/elements/svg.h"
#include "tools/kxmath/console/numbers.h"
#include "tools/kxmath/train/passTable.h"

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

using kxreport::Cell;
using kxreport::Plot;
using kxreport::Points;
using kxreport::Range;
using kxreport::Tone;

constexpr int kWidth = 540;
constexpr int kHeight = 300;

Tone toneOf(const QString& word) {
    if (word == QLatin1String("defective") || word == QLatin1String("out of round")) {
        return Tone::Bad;
    }
    return word == QLatin1String("sound") || word == QLatin1String("round") ? Tone::Good : Tone::Plain;
}

void addTable(const Pass& pass, const std::vector<PairColumn>& columns, kxreport::Page& page) {
    QStringList headers;
    for (const PairColumn& column : columns) {
        headers.append(column.title);
    }
    std::vector<std::vector<Cell>> rows(pass.pairs.size());
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        for (const PairColumn& column : columns) {
            const QString text = textForPeople(column.value(pass, i));
            rows[i].push_back({text, toneOf(text)});
        }
    }
    page.table(headers, rows);
}

void addVerdicts(const Pass& pass, kxreport::Page& page) {
    page.heading(QStringLiteral("Defects of the treads"));
    addTable(pass, defectColumns(), page);
    page.paragraph(QStringLiteral("For each side: how many profiles were judged, how many of them are defective and "
                                  "which, the deviating points of all, the largest deviation in mm, the verdict. In "
                                  "words: %1. Profiles with fewer than %2 points between the lines are not judged.")
                       .arg(defectLimitsText(pass), QString::number(kFewestJudgedPoints)));
    page.heading(QStringLiteral("Roundness of the wheels"));
    addTable(pass, roundnessColumns(), page);
    page.paragraph(QStringLiteral("For each side: how many profiles show flange and tread, which ones are off the "
                                  "circle, by how much in mm, the verdict. In words: %1.")
                       .arg(roundnessLimitsText(pass)));
}

QString deviationPlot(size_t side, const ProfileDeviation& judged, const DefectLimits& limits) {
    const double allowed = static_cast<double>(limits.maxDeviation);
    Points inside;
    Points outside;
    Range x;
    Range y;
    y.include(-allowed);
    y.include(allowed);
    for (const KxMath::KxPointXY& p : judged.deviation.points) {
        const QPointF point(static_cast<double>(p.x), static_cast<double>(p.y));
        (std::abs(p.y) > limits.maxDeviation ? outside : inside).push_back(point);
        x.include(point.x());
        y.include(point.y());
    }
    const QString number = QString::number(side + 1);
    Plot plot(QStringLiteral("deviation-") + number, QStringLiteral("Deviation of the tread on side ") + number, kWidth,
              kHeight, {QStringLiteral("x, mm"), x.padded(0.04)},
              {QStringLiteral("y \u2212 curve, mm"), y.padded(0.12)});
    plot.addBand(-allowed, allowed, kxreport::colour::kGreen, QStringLiteral("allowed"));
    plot.addDots(inside, kxreport::colour::kBlue, 2.2, QStringLiteral("point"));
    plot.addDots(outside, kxreport::colour::kOrange, 3.2, QStringLiteral("deviating point"));
    return plot.svg();
}

kxreport::Figure figureOf(const Pass& pass, size_t side, const Wheel& wheel) {
    const DefectSettings& settings = *pass.defectSettings;
    KxMath::KxProfile profile;
    readWheelProfile(pass, side, wheel.number, wheel.defects->worstProfile, profile);
    const ProfileDeviation judged = judgeProfile(profile, settings.lines[side], settings.limits);
    return {deviationPlot(side, judged, settings.limits),
            QStringLiteral("Side %1, wheel %2, profile %3 (record %4): %5 of %6 points deviate, the largest by %7 mm.")
                .arg(QString::number(side + 1), QString::number(wheel.number),
                     QString::number(wheel.defects->worstProfile),
                     QString::number(wheel.firstRecord + wheel.defects->worstProfile - 1),
                     QString::number(judged.deviating), QString::number(judged.stretch.points.size()),
                     fixedText(judged.largest, 3))};
}

QString radiusPlot(size_t side, const WheelRoundness& roundness, const DefectLimits& limits) {
    const double allowed = static_cast<double>(limits.maxRadiusDeviation);
    Range x;
    Range y;
    y.include(-allowed);
    y.include(allowed);
    for (const RadiusDeviation& radius : roundness.radii) {
        x.include(static_cast<double>(radius.place));
        y.include(static_cast<double>(radius.deviation));
    }
    const QString number = QString::number(side + 1);
    Plot plot(QStringLiteral("radius-") + number, QStringLiteral("Radius of the tread on side ") + number, kWidth,
              kHeight, {QStringLiteral("laser plane before (\u2212) or behind the axle, mm"), x.padded(0.04)},
              {QStringLiteral("radius \u2212 circle, mm"), y.padded(0.12)});
    plot.addBand(-allowed, allowed, kxreport::colour::kGreen, QStringLiteral("allowed"));
    for (const RadiusDeviation& radius : roundness.radii) {
        const bool isOff = std::binary_search(roundness.profiles.begin(), roundness.profiles.end(), radius.profile);
        plot.addMark({static_cast<double>(radius.place), static_cast<double>(radius.deviation)},
                     isOff ? kxreport::colour::kOrange : kxreport::colour::kBlue, 3.0,
                     QStringLiteral("profile %1: %2 mm").arg(radius.profile).arg(fixedText(radius.deviation, 3)));
    }
    plot.addLegendMark(QStringLiteral("profile"), kxreport::colour::kBlue);
    plot.addLegendMark(QStringLiteral("off the circle"), kxreport::colour::kOrange);
    return plot.svg();
}

kxreport::Figure roundnessFigureOf(const Pass& pass, size_t side, const Wheel& wheel) {
    const WheelRoundness& roundness = *wheel.roundness;
    return {radiusPlot(side, roundness, pass.defectSettings->limits),
            QStringLiteral("Side %1, wheel %2: %3 profiles show flange and tread. The flange tip runs on a radius of "
                           "%4 mm, single tips scatter about it by %5 mm.")
                .arg(QString::number(side + 1), QString::number(wheel.number), QString::number(roundness.radii.size()),
                     fixedText(roundness.flangeRadius, 1), fixedText(roundness.scatter, 3))};
}

void addFigures(kxreport::Page& page, const QString& heading, const QString& text,
                const std::vector<kxreport::Figure>& figures) {
    page.heading(heading);
    page.paragraph(text);
    page.figures(figures);
}

} // namespace

void addDefects(const Pass& pass, int pairNumber, kxreport::Page& page) {
    addVerdicts(pass, page);
    if (pairNumber < 1 || static_cast<size_t>(pairNumber) > pass.pairs.size()) {
        return;
    }
    std::vector<kxreport::Figure> deviations;
    std::vector<kxreport::Figure> radii;
    for (size_t side = 0; side < pass.sides.size(); ++side) {
        const Wheel* const wheel = pass.wheelOf(pass.pairs[static_cast<size_t>(pairNumber) - 1], side);
        if (wheel != nullptr && wheel->defects && wheel->defects->worstProfile > 0) {
            deviations.push_back(figureOf(pass, side, *wheel));
        }
        if (wheel != nullptr && wheel->roundness && wheel->roundness->isJudged()) {
            radii.push_back(roundnessFigureOf(pass, side, *wheel));
        }
    }
    addFigures(page, QStringLiteral("Treads of wheel pair %1").arg(pairNumber),
               QStringLiteral("Of each wheel the profile that is farthest off: how its points between the low line "
                              "and the level line of the defects stand off the curve through them, a polynomial of "
                              "degree 20."),
               deviations);
    addFigures(page, QStringLiteral("Roundness of wheel pair %1").arg(pairNumber),
               QStringLiteral("The radius of the tread around the tape circle in each profile, about the axle that "
                              "the flange tips tell, against that of the whole wheel."),
               radii);
}

} // namespace kxtool
