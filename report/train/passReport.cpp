// A pass as an HTML page with plots.
#include "report/train/passReport.h"

#include "report/elements/numbers.h"
#include "report/elements/page.h"
#include "report/elements/plot.h"
#include "report/elements/svg.h"
#include "report/train/columnHeads.h"
#include "report/train/defectPlots.h"
#include "report/train/distanceNotes.h"
#include "report/train/measuredWith.h"
#include "report/train/noWheels.h"
#include "report/train/passColumns.h"
#include "report/train/passWords.h"
#include "report/train/profilePlots.h"
#include "report/train/sheetColumns.h"
#include "report/train/sheetTable.h"
#include "report/train/vehicleTable.h"
#include "report/train/verdictTable.h"
#include "report/train/wheelSections.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kxreport {

using namespace KxInspect;

namespace {

constexpr int kPageWidth = 1060;
constexpr int kModeWithStraightParts = 3; ///< of the wheel detection

QString sideTitle(const PassResult& pass, size_t side) {
    const PassSide& shown = pass.sides[side];
    return QStringLiteral("%1 (SENSOR%2)").arg(QString::fromStdString(shown.name), QString::number(shown.sensor));
}

Tone toneOf(const WheelPair& pair) {
    if (!pair.inTolerance) {
        return Tone::Faint;
    }
    return *pair.inTolerance ? Tone::Good : Tone::Bad;
}

/// How many are bad: red when some are, green only when all were judged and none is.
Fact badFact(const PassResult& pass, PassQuestion question, const QString& label) {
    const VerdictCount count = pass.count(question);
    const QString full = QStringLiteral("%1 (%2 of %3 judged)").arg(label).arg(count.judged).arg(count.asked);
    if (count.judged == 0) {
        return {full, QStringLiteral("not judged"), Tone::Bad};
    }
    const Tone rest = count.notJudged() == 0 ? Tone::Good : Tone::Plain;
    return {full, QString::number(count.bad), count.bad > 0 ? Tone::Bad : rest};
}

void addFacts(const PassResult& pass, Page& page) {
    Range distances;
    for (const WheelPair& pair : pass.pairs) {
        distances.include(static_cast<double>(pair.distance));
    }
    const size_t first = pass.sides[0].wheels.size();
    const size_t second = pass.sides[1].wheels.size();
    const auto length = [&](double value) {
        return distances.isEmpty() ? QStringLiteral("\u2013") : numberText(value, 2) + QStringLiteral(" mm");
    };
    std::vector<Fact> facts = {{QStringLiteral("Wheels found, sides 1 / 2"),
                                QStringLiteral("%1 / %2").arg(first).arg(second),
                                first == second && first > 0 ? Tone::Plain : Tone::Bad},
                               {QStringLiteral("Smallest distance"), length(distances.min)},
                               {QStringLiteral("Largest distance"), length(distances.max)},
                               badFact(pass, PassQuestion::Distance, QStringLiteral("Distances out of tolerance"))};
    if (pass.defectLimits) {
        facts.push_back(badFact(pass, PassQuestion::Tread, QStringLiteral("Defective treads")));
        facts.push_back(badFact(pass, PassQuestion::Roundness, QStringLiteral("Wheels out of round")));
    }
    if (pass.assessment) {
        facts.push_back(passVerdictFact(pass));
    }
    page.facts(facts);
}

void addRecordings(const PassResult& pass, Page& page) {
    std::vector<std::vector<Cell>> rows;
    for (const auto* const sides : {&pass.sides, &pass.further}) {
        for (const PassSide& side : *sides) {
            const bool isWhole = side.missing.empty();
            const auto ifWhole = [&](auto count) { return isWhole ? QString::number(count) : QStringLiteral("-"); };
            rows.push_back({{side.file.empty() ? QStringLiteral("none given") : QString::fromStdString(side.file)},
                            {QStringLiteral("SENSOR%1").arg(side.sensor)},
                            {QString::number(side.serial)},
                            {side.bytes > 0 ? QString::number(side.bytes) : QStringLiteral("-")},
                            {ifWhole(side.cloudSections)},
                            {ifWhole(side.profileRecords)},
                            {isWhole ? QString::number(side.wheels.size()) : QStringLiteral("not measured")}});
        }
    }
    page.table({QStringLiteral("Recording"), QStringLiteral("Sensor"), QStringLiteral("Serial number"),
                QStringLiteral("Bytes"), QStringLiteral("Cloud sections"), QStringLiteral("Profile records"),
                QStringLiteral("Wheels")},
               rows, 2);
}

/// The wheels of one side as boxes in its row.
void addWheels(const PassResult& pass, size_t side, double row, const char* colour, Plot& plot) {
    constexpr double kHalfHeight = 0.28;
    const double smallestForNumber = 16.0 * plot.range().size() / plot.areaWidth(); // records
    double labelEnd = -1e300;
    for (const WheelPair& pair : pass.pairs) {
        const PassWheel* const wheel = pass.wheelOf(pair, side);
        if (wheel == nullptr) {
            continue;
        }
        const char* const fill = pair.isComplete() ? colour : colour::kOrange;
        const double from = wheel->firstRecord - 0.5;
        const double to = wheel->lastRecord() + 0.5;
        plot.addBox(from, to, row - kHalfHeight, row + kHalfHeight, fill,
                    QStringLiteral("wheel %1: records %2 to %3")
                        .arg(wheel->number)
                        .arg(wheel->firstRecord)
                        .arg(wheel->lastRecord()));
        const double middle = (from + to) / 2;
        if (middle - smallestForNumber / 2 > labelEnd) {
            plot.addText({middle, row + kHalfHeight + 0.13}, QString::number(wheel->number), colour::kInk, 10);
            labelEnd = middle + smallestForNumber / 2;
        }
    }
}

void addWheelsAlongPass(const PassResult& pass, Page& page) {
    constexpr int kHeight = 220;
    constexpr double kRow1 = 1.0;
    constexpr double kRow2 = 0.0;
    const int records = std::max(pass.sides[0].records(), pass.sides[1].records());
    Plot plot(QStringLiteral("wheels"), QStringLiteral("Wheels along the pass"), kPageWidth, kHeight,
              {QStringLiteral("record number"), {0.0, records + 1.0}, true, true}, {QString(), {-0.5, 1.65}, false});
    addWheels(pass, 0, kRow1, colour::kBlue, plot);
    addWheels(pass, 1, kRow2, colour::kGreen, plot);
    plot.addRowLabel(kRow1, QStringLiteral("side 1"), colour::kBlue);
    plot.addRowLabel(kRow2, QStringLiteral("side 2"), colour::kGreen);
    plot.addLegend(QStringLiteral("wheel of %1").arg(sideTitle(pass, 0)), colour::kBlue);
    plot.addLegend(QStringLiteral("wheel of %1").arg(sideTitle(pass, 1)), colour::kGreen);
    const bool isAnyAlone =
        std::any_of(pass.pairs.begin(), pass.pairs.end(), [](const WheelPair& pair) { return !pair.isComplete(); });
    if (isAnyAlone) {
        plot.addLegend(QStringLiteral("wheel without partner"), colour::kOrange);
    }
    page.heading(QStringLiteral("Wheels along the pass"));
    page.figure(plot.svg(),
                QStringLiteral("Each box is one wheel: the run of records in which the sensor saw more points below "
                               "its level line than the settings ask for. Both sensors record at one rate, so the "
                               "boxes of a pair stand below each other. Numbers are those of the wheel files."));
}

void addDistances(const PassResult& pass, Page& page) {
    constexpr int kHeight = 320;
    const double nominal = static_cast<double>(pass.nominal);
    const double allowed = static_cast<double>(pass.tolerance);
    Range y;
    y.include(nominal - allowed);
    y.include(nominal + allowed);
    for (const WheelPair& pair : pass.pairs) {
        y.include(static_cast<double>(pair.distance));
    }
    Plot plot(QStringLiteral("distances"), QStringLiteral("Distance of each wheel pair"), kPageWidth, kHeight,
              {QStringLiteral("wheel pair"), {0.5, static_cast<double>(pass.pairs.size()) + 0.5}, true, true},
              {QStringLiteral("distance, mm"), y.padded(0.15)});
    plot.addBand(nominal - allowed, nominal + allowed, colour::kGreen, QStringLiteral("tolerance"));
    plot.addLevel(nominal, {colour::kGreen, 1.2, "6 4"}, QStringLiteral("nominal"));
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        const WheelPair& pair = pass.pairs[i];
        const bool isOut = toneOf(pair) == Tone::Bad;
        plot.addMark({static_cast<double>(i + 1), static_cast<double>(pair.distance)},
                     isOut ? colour::kOrange : colour::kBlue, 4.0,
                     QStringLiteral("pair %1: %2 mm").arg(i + 1).arg(fixedText(pair.distance, 3)));
    }
    plot.addLegendMark(QStringLiteral("in tolerance"), colour::kBlue);
    plot.addLegendMark(QStringLiteral("out of tolerance"), colour::kOrange);
    page.heading(QStringLiteral("Distance of each wheel pair"));
    page.figure(plot.svg(), QStringLiteral("The band is the tolerance: %1. A pair without a mark has no distance.")
                                .arg(toleranceText(pass)));
    std::vector<std::vector<Cell>> rows;
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        std::vector<Cell> row;
        for (const PairColumn& column : pairColumns()) {
            const bool isJudged = column.key == QLatin1String("verdict") || column.key == QLatin1String("distance");
            row.push_back({textForPeople(column, pass, i), isJudged ? toneOf(pass.pairs[i]) : Tone::Plain});
        }
        rows.push_back(row);
    }
    page.table(headsOf(pairColumns()), rows);
    page.paragraph(QStringLiteral("For each side: the wheel's number, its profiles, its first and last record, the "
                                  "chosen profile (the one with the most points below the level line) and the number "
                                  "of these points. Distance and deviation from the nominal distance in mm."));
    for (const QString& note : distanceNotes(pass)) {
        page.paragraph(note);
    }
    addCount(pass, PassQuestion::Distance, page);
}

void addVehicles(const PassResult& pass, Page& page) {
    page.heading(QStringLiteral("Vehicles"));
    const std::vector<QStringList> texts = vehicleRows(pass);
    std::vector<std::vector<Cell>> rows;
    for (size_t i = 1; i < texts.size(); ++i) {
        rows.emplace_back();
        for (const QString& text : texts[i]) {
            rows.back().push_back({text});
        }
    }
    if (!rows.empty()) {
        constexpr int kTextColumns = 4;
        page.table({QStringLiteral("vehicle"), QStringLiteral("mark"), QStringLiteral("number"),
                    QStringLiteral("class"), QStringLiteral("axles of its bogies"), QStringLiteral("axles"),
                    QStringLiteral("axles seen"), QStringLiteral("wheel pairs")},
                   rows, kTextColumns);
    }
    for (const QString& note : vehicleNotes(pass)) {
        page.paragraph(note);
    }
}

/// Values that are not ok by their limits, and how many there are.
void addVerdicts(const PassResult& pass, Page& page) {
    page.heading(QStringLiteral("Verdicts by limits"));
    for (const QString& note : verdictNotes(pass)) {
        page.paragraph(note);
    }
    std::vector<std::vector<Cell>> rows;
    for (const VerdictRow& row : verdictRows(pass)) {
        rows.emplace_back();
        for (const QString& text : row.texts) {
            rows.back().push_back({text});
        }
        rows.back().front().text = headOfMeasure(row.texts.front().toStdString());
        rows.back()[kLimitsColumn].text = boundsText(row.bounds);
        rows.back()[kVerdictColumn].tone = row.tone;
    }
    if (!rows.empty()) {
        constexpr int kTextColumns = 1;
        page.table({QStringLiteral("measure, unit of value and limits"), QStringLiteral("vehicle"),
                    QStringLiteral("wheel pair"), QStringLiteral("side"), QStringLiteral("value, 95 % interval"),
                    QStringLiteral("limits"), QStringLiteral("verdict"), QStringLiteral("reason")},
                   rows, kTextColumns);
    }
}

/// A part of the points of a side; a dash where they were not counted.
Cell shareCell(const PassSide& side, std::int64_t part, std::int64_t all) {
    const double percent = 100.0 * static_cast<double>(part) / static_cast<double>(all);
    return {!side.points || all == 0 ? QStringLiteral("-")
                                     : QStringLiteral("%1 (%2 %)").arg(part).arg(percent, 0, 'f', 2)};
}

/// Whether the points that were removed as straight parts were counted apart.
bool areStraightPartsCounted(const PassResult& pass) {
    const auto isCounted = [](const PassSide& side) { return !side.points || side.points->straight; };
    return pass.mode == kModeWithStraightParts && std::all_of(pass.sides.begin(), pass.sides.end(), isCounted) &&
           std::all_of(pass.further.begin(), pass.further.end(), isCounted);
}

/// What became of points and profiles on the way to the measures.
void addDataQuality(const PassResult& pass, Page& page) {
    const bool hasStraight = areStraightPartsCounted(pass);
    const bool areMixed = pass.mode == kModeWithStraightParts && !hasStraight; // an older result
    std::vector<std::vector<Cell>> rows;
    for (const auto* const sides : {&pass.sides, &pass.further}) {
        for (const PassSide& side : *sides) {
            int inWheels = 0;
            for (const PassWheel& wheel : side.wheels) {
                inWheels += wheel.profiles;
            }
            const PointCounts points = side.points.value_or(PointCounts());
            const std::int64_t whole = points.recorded - points.missing;
            const std::int64_t straight = points.straight.value_or(0);
            rows.push_back({{QStringLiteral("SENSOR%1").arg(side.sensor)},
                            {QString::number(side.records())},
                            {QString::number(inWheels)},
                            {side.points ? QString::number(points.recorded) : QStringLiteral("-")},
                            shareCell(side, points.missing, points.recorded),
                            shareCell(side, points.removed - straight, whole),
                            hasStraight ? shareCell(side, straight, whole) : Cell{QStringLiteral("-"), Tone::Faint},
                            shareCell(side, points.below, whole)});
        }
    }
    page.heading(QStringLiteral("Quality of the data"));
    page.table({QStringLiteral("sensor"), QStringLiteral("profiles recorded"), QStringLiteral("profiles of wheels"),
                QStringLiteral("points recorded"), QStringLiteral("points missing"),
                areMixed ? QStringLiteral("points removed, noise and straight parts")
                         : QStringLiteral("points removed as noise"),
                QStringLiteral("points removed as straight parts"), QStringLiteral("points below the level line")},
               rows, 1);
    page.paragraph(
        QStringLiteral("Missing points have no finite x and y; the other shares are of the rest. The filters "
                       "of the detection remove noise and then, in mode 3, straight parts; points below the level "
                       "line are counted before both. How many profiles each measure is taken from is in the "
                       "sheet."));
}

} // namespace

QString passReport(const PassResult& pass, const PageOrigin& origin) {
    Page page(QStringLiteral("Wheels of a train"),
              QStringLiteral("%1 and %2, settings %3, mode %4")
                  .arg(QString::fromStdString(pass.sides[0].name), QString::fromStdString(pass.sides[1].name),
                       QString::fromStdString(pass.settings), QString::number(pass.mode)),
              origin);
    if (const QString identity = identityText(pass); !identity.isEmpty()) {
        page.paragraph(identity);
    }
    addSheet(pass, page);
    addFacts(pass, page);
    for (const std::string& warning : pass.warnings) {
        page.warning(QString::fromStdString(warning));
    }
    addRawProfiles(pass, page);
    addRecordings(pass, page);
    addDataQuality(pass, page);
    addWheelsAlongPass(pass, page);
    addDistances(pass, page);
    addVehicles(pass, page);
    if (pass.assessment) {
        addVerdicts(pass, page);
    }
    addProfiles(pass, page);
    if (pass.defectLimits) {
        addDefects(pass, page);
    }
    addWheelSections(pass, page);
    addMeasuredWith(pass, page);
    return page.html();
}

} // namespace kxreport
