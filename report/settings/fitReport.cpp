// The page of a fit of settings.
#include "report/settings/fitReport.h"

#include "report/elements/fileNames.h"
#include "report/elements/numbers.h"
#include "report/elements/page.h"
#include "report/elements/plot.h"
#include "report/elements/svg.h"
#include "report/train/rawProfiles.h"

#include <algorithm>
#include <cmath>

namespace kxreport {

using namespace KxInspect;

namespace {

constexpr int kPageWidth = 1060;

/// Each sensor has a colour of its own.
const char* colourOf(std::size_t sensor) {
    return sensor == 0 ? colour::kBlue : colour::kPurple;
}

QString withUnit(double value, int decimals) {
    return numberText(value, decimals) + QStringLiteral(" mm");
}

void addFacts(const StationFit& fit, Page& page) {
    const bool isClose = fit.largest() <= fit.maxResidual; // NaN: false
    const bool hasPairs = !fit.pairs.empty();
    page.facts({{QStringLiteral("Settings"), fit.hasSettings() ? QStringLiteral("found") : QStringLiteral("not found"),
                 fit.hasSettings() ? Tone::Good : Tone::Bad},
                {QStringLiteral("Known distances"), QString::number(fit.known())},
                {QStringLiteral("Base distance"),
                 hasPairs ? withInterval(fit.baseDistance, Interval::around(fit.baseDistance, fit.baseUncertainty), 3) +
                                QStringLiteral(" mm")
                          : QStringLiteral("\u2013")},
                {QStringLiteral("Residuals, rms"), hasPairs ? withUnit(fit.rms(), 3) : QStringLiteral("\u2013")},
                {QStringLiteral("Largest residual"), hasPairs ? withUnit(fit.largest(), 3) : QStringLiteral("\u2013"),
                 !hasPairs ? Tone::Plain
                 : isClose ? Tone::Good
                           : Tone::Bad}});
}

void addLineRows(const FittedSensor& sensor, std::vector<std::vector<Cell>>& rows) {
    const auto add = [&](const char* name, const char* keys, const std::optional<Line>& line) {
        if (line) {
            rows.push_back({{QString::number(sensor.serial)},
                            {QLatin1String(name)},
                            {QLatin1String(keys)},
                            {shortestText(line->slope)},
                            {shortestText(line->intercept)}});
        }
    };
    add("reference", "k2, b2", sensor.reference);
    add("level", "level_k, level_b", sensor.level);
    add("low", "lowlevel_k, lowlevel_b", sensor.low);
    add("high line of the tread", "level_k, level_b of the defects", sensor.treadHigh);
    add("low line of the tread", "lowLevel_k, lowLevel_b of the defects", sensor.treadLow);
}

void addLines(const StationFit& fit, Page& page) {
    std::vector<std::vector<Cell>> lines;
    std::vector<std::vector<Cell>> quality;
    for (const FittedSensor& sensor : fit.sensors) {
        addLineRows(sensor, lines);
        quality.push_back(
            {{QString::number(sensor.serial)},
             {QString::number(sensor.records)},
             {QString::number(sensor.wheels.size())},
             {numberText(sensor.noise, 3)},
             {numberText(sensor.deviation, 3)},
             {numberText(sensor.margin, 1)},
             {numberText(sensor.fromMargin, 1) + QStringLiteral(" \u2013 ") + numberText(sensor.toMargin, 1)},
             {numberText(sensor.turn, 0)},
             {QString::number(sensor.shortestWheel)},
             {QString::number(sensor.longestOther)}});
    }
    page.heading(QStringLiteral("Lines"));
    page.table({QStringLiteral("Sensor"), QStringLiteral("Line"), QStringLiteral("Keys"), QStringLiteral("Slope"),
                QStringLiteral("Intercept, mm")},
               lines, 3);
    page.table({QStringLiteral("Sensor"), QStringLiteral("Records"), QStringLiteral("Wheels"),
                QStringLiteral("Noise, mm"), QStringLiteral("Offsets off, mm"), QStringLiteral("Margin, mm"),
                QStringLiteral("Good margins, mm"), QStringLiteral("Turn, degrees"),
                QStringLiteral("Shortest wheel, records"), QStringLiteral("Longest other, records")},
               quality, 1);
    page.paragraph(QStringLiteral(
        "Noise: of points about straight pieces of 10 mm, rms. Offsets off: the largest difference of the offset of a "
        "wheel, measured as in a pass, from that of its whole back face. Margin: of the level line beyond the farthest "
        "back face; with all good margins the offsets are alike. Turn: of the level line to the reference line. "
        "Shortest wheel, longest other: records in a row with points below the level line."));
}

RawProfiles rawProfilesOf(const FittedSensor& sensor, std::size_t index, bool areTreads) {
    std::vector<LineOver> lines;
    const auto add = [&](const std::optional<Line>& line, const char* name, const Stroke& stroke) {
        if (line) {
            lines.push_back({*line, QLatin1String(name), stroke});
        }
    };
    add(sensor.reference, "reference", kReferenceStroke);
    add(sensor.level, "level", kLevelStroke);
    if (areTreads) {
        add(sensor.treadHigh, "tread, high", {colour::kInk, 1.4, ""});
        add(sensor.treadLow, "tread, low", {colour::kInk, 1.4, "2 3"});
    }
    add(sensor.low, "low", kLowStroke);
    return {QStringLiteral("sensor%1").arg(index + 1),
            QStringLiteral("Raw profiles of sensor %1").arg(sensor.serial),
            sensor.points,
            sensor.level,
            lines,
            colourOf(index)};
}

void addProfiles(const StationFit& fit, Page& page) {
    page.heading(QStringLiteral("Raw profiles and lines"));
    std::vector<Figure> all;
    std::vector<Figure> near;
    for (std::size_t i = 0; i < fit.sensors.size(); ++i) {
        const FittedSensor& sensor = fit.sensors[i];
        all.push_back({rawProfilesPlot(rawProfilesOf(sensor, i, true)),
                       QStringLiteral("Sensor %1: %2 profiles, evenly spread over its recordings, in its own frame; it "
                                      "looks upwards in the picture.")
                           .arg(sensor.serial)
                           .arg(sensor.profiles)});
        const QString enlarged = nearProfilesPlot(rawProfilesOf(sensor, i, false));
        if (!enlarged.isEmpty()) {
            near.push_back({enlarged, QStringLiteral("The same near the back faces: %1 of %2 points are below the "
                                                     "level line.")
                                          .arg(countBelow(sensor.points, *sensor.level))
                                          .arg(sensor.points.size())});
        }
    }
    page.figures(all);
    if (!near.empty()) {
        page.figures(near);
    }
}

void addPairs(const StationFit& fit, Page& page) {
    Range y;
    y.include(-fit.maxResidual);
    y.include(fit.maxResidual);
    for (const FittedPair& pair : fit.pairs) {
        y.include(pair.residual);
    }
    Plot plot(QStringLiteral("residuals"), QStringLiteral("Residual of each wheel pair"), kPageWidth, 260,
              {QStringLiteral("wheel pair, in the order of the passes"),
               {0.5, static_cast<double>(fit.pairs.size()) + 0.5},
               true,
               true},
              {QStringLiteral("measured \u2212 given, mm"), y.padded(0.1)});
    plot.addBand(-fit.maxResidual, fit.maxResidual, colour::kGreen, QStringLiteral("allowed"));
    plot.addLevel(0.0, {colour::kGreen, 1.2, "6 4"});
    std::vector<std::vector<Cell>> rows;
    for (std::size_t i = 0; i < fit.pairs.size(); ++i) {
        const FittedPair& pair = fit.pairs[i];
        const bool isOff = std::abs(pair.residual) > fit.maxResidual; // NaN: false
        if (!std::isnan(pair.residual)) {
            plot.addMark({static_cast<double>(i + 1), pair.residual}, isOff ? colour::kOrange : colour::kBlue, 4.0,
                         QStringLiteral("pass %1, pair %2: %3 mm")
                             .arg(pair.pass)
                             .arg(pair.pair)
                             .arg(numberText(pair.residual, 3)));
        }
        rows.push_back({{QString::number(pair.pass)},
                        {QString::number(pair.pair)},
                        {numberText(pair.given, 3)},
                        {numberText(pair.measured, 3)},
                        {numberText(pair.residual, 3), std::isnan(pair.residual) ? Tone::Faint
                                                       : isOff                   ? Tone::Bad
                                                                                 : Tone::Good}});
    }
    page.heading(QStringLiteral("Distances"));
    page.figure(plot.svg(), QStringLiteral("The band is what a residual may be, %1 mm to both sides. The base distance "
                                           "makes their mean 0; when one is outside, their median.")
                                .arg(fit.maxResidual));
    page.table({QStringLiteral("Pass"), QStringLiteral("Pair"), QStringLiteral("Given, mm"),
                QStringLiteral("Measured, mm"), QStringLiteral("Residual, mm")},
               rows);
}

void addWheels(const StationFit& fit, Page& page) {
    std::vector<std::vector<Cell>> rows;
    for (const FittedSensor& sensor : fit.sensors) {
        for (const FittedWheel& wheel : sensor.wheels) {
            rows.push_back({{QString::number(sensor.serial)},
                            {QString::number(wheel.pass)},
                            {QString::number(wheel.number)},
                            {QStringLiteral("%1 \u2013 %2").arg(wheel.firstRecord).arg(wheel.lastRecord)},
                            {numberText(wheel.offset, 3)},
                            {numberText(wheel.degrees, 2)}});
        }
    }
    page.heading(QStringLiteral("Back faces"));
    page.table({QStringLiteral("Sensor"), QStringLiteral("Pass"), QStringLiteral("Wheel"),
                QStringLiteral("Records with its face"), QStringLiteral("Offset, mm"), QStringLiteral("Turn, degrees")},
               rows);
    page.paragraph(QStringLiteral("Offset and turn of each back face from the reference line, which is their median."));
}

} // namespace

QString fitReport(const StationFit& fit, const PageOrigin& origin) {
    std::vector<std::string> files;
    for (const FittedSensor& sensor : fit.sensors) {
        files.insert(files.end(), sensor.files.begin(), sensor.files.end());
    }
    const QStringList names = distinctNames(files);
    Page page(QStringLiteral("Settings of a station"), names.join(QStringLiteral(", ")), origin);
    addFacts(fit, page);
    if (!fit.hasSettings()) {
        page.failure(withNames(QString::fromStdString(fit.fault), files, names) + QLatin1Char('.'));
    }
    for (const std::string& warning : fit.warnings) {
        page.warning(withNames(QString::fromStdString(warning), files, names));
    }
    addProfiles(fit, page);
    if (std::any_of(fit.sensors.begin(), fit.sensors.end(), [](const FittedSensor& s) { return s.reference; })) {
        addLines(fit, page);
    }
    if (!fit.pairs.empty()) {
        addPairs(fit, page);
        addWheels(fit, page);
    }
    return page.html();
}

} // namespace kxreport
