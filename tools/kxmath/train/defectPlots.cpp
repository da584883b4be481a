// The defects of the treads in the report.
#include "train/defectPlots.h"

#include "numbers.h"
#include "report/plot.h"
#include "report/svg.h"
#include "train/passTable.h"

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
    if (word == QLatin1String("defective")) {
        return Tone::Bad;
    }
    return word == QLatin1String("sound") ? Tone::Good : Tone::Plain;
}

void addVerdicts(const Pass& pass, kxreport::Page& page) {
    QStringList headers;
    for (const PairColumn& column : defectColumns()) {
        headers.append(column.title);
    }
    std::vector<std::vector<Cell>> rows(pass.pairs.size());
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        for (const PairColumn& column : defectColumns()) {
            const QString text = textForPeople(column.value(pass, i));
            rows[i].push_back({text, toneOf(text)});
        }
    }
    page.table(headers, rows);
    page.paragraph(QStringLiteral("For each side: how many profiles were judged, how many of them are defective and "
                                  "which, the deviating points of all, the largest deviation in mm, the verdict. In "
                                  "words: %1. Profiles with fewer than %2 points between the lines are not judged.")
                       .arg(defectLimitsText(pass))
                       .arg(kFewestJudgedPoints));
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

} // namespace

void addDefects(const Pass& pass, int pairNumber, kxreport::Page& page) {
    page.heading(QStringLiteral("Defects of the treads"));
    addVerdicts(pass, page);
    if (pairNumber < 1 || static_cast<size_t>(pairNumber) > pass.pairs.size()) {
        return;
    }
    std::vector<kxreport::Figure> figures;
    for (size_t side = 0; side < pass.sides.size(); ++side) {
        const Wheel* const wheel = pass.wheelOf(pass.pairs[static_cast<size_t>(pairNumber) - 1], side);
        if (wheel != nullptr && wheel->defects && wheel->defects->worstProfile > 0) {
            figures.push_back(figureOf(pass, side, *wheel));
        }
    }
    page.heading(QStringLiteral("Treads of wheel pair %1").arg(pairNumber));
    page.paragraph(QStringLiteral("Of each wheel the profile that is farthest off: how its points between the low line "
                                  "and the level line of the defects stand off the curve through them, a polynomial "
                                  "of degree 20."));
    page.figures(figures);
}

} // namespace kxtool
