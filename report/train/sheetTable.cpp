// The sheet of a pass on its page.
#include "report/train/sheetTable.h"

#include "report/elements/textList.h"
#include "report/train/passDrawing.h"
#include "report/train/passWords.h"
#include "report/train/sheetColumns.h"
#include "report/train/wheelVerdicts.h"

#include <algorithm>
#include <map>
#include <string>

namespace kxreport {

using namespace KxInspect;

namespace {

/// Whether a wheel that is judged by a limit lacks a value that it should have.
bool isPartly(const SheetRow& row) {
    const bool isBeyond = row.verdict == LimitVerdict::Alarm || row.verdict == LimitVerdict::Warning;
    return isBeyond && std::any_of(row.values.begin(), row.values.end(),
                                   [](const SheetValue& value) { return value.verdict == LimitVerdict::NotMeasured; });
}

/// The verdict of the pass in words: by limits, and without them what the tolerance says.
void addVerdict(const PassResult& pass, const std::vector<SheetRow>& rows, Page& page) {
    const auto count = [&](LimitVerdict verdict) {
        return std::count_if(rows.begin(), rows.end(), [&](const SheetRow& row) { return row.verdict == verdict; });
    };
    if (!pass.assessment) {
        page.paragraph(QStringLiteral("No verdict by limits: none were given (--limits). %1.")
                           .arg(countText(pass, PassQuestion::Distance)));
        return;
    }
    const auto doubtful = std::count_if(rows.begin(), rows.end(), [](const SheetRow& row) { return row.isDoubtful; });
    const Mark mark = markOf(pass.assessment->ofPass());
    QString text =
        QStringLiteral("Verdict of the pass: %1. Of %2 wheels: %3 with an alarm, %4 with a warning, %5 not wholly "
                       "measured, %6 ok.")
            .arg(textOf(mark), QString::number(rows.size()), QString::number(count(LimitVerdict::Alarm)),
                 QString::number(count(LimitVerdict::Warning)), QString::number(count(LimitVerdict::NotMeasured)),
                 QString::number(count(LimitVerdict::Ok)));
    if (const auto partly = std::count_if(rows.begin(), rows.end(), isPartly); partly > 0) {
        text += QStringLiteral(" Of those with an alarm or a warning %1 not wholly measured, too.")
                    .arg(partly == 1 ? QStringLiteral("one is") : QStringLiteral("%1 are").arg(partly));
    }
    if (doubtful > 0) {
        text += QStringLiteral(" Doubtful, since an interval reaches across a limit: %1.").arg(doubtful);
    }
    page.verdict(text, toneOf(mark));
}

/// Warns of sensors that have not contributed to any wheel.
void addSilentSensors(const PassResult& pass, Page& page) {
    struct Sensor {
        bool hasSeen = false;
        std::string reason = {};
    };
    std::map<int, Sensor> sensors;
    for (const PassWheelMeasures& wheel : pass.wheels) {
        for (const SensorShare& share : wheel.sensors) {
            Sensor& sensor = sensors[share.sensor];
            sensor.hasSeen = sensor.hasSeen || share.profiles > 0;
            sensor.reason = share.reason;
        }
    }
    for (const auto& [number, sensor] : sensors) {
        if (!sensor.hasSeen) {
            page.warning(
                QStringLiteral("SENSOR%1 of %2 sensors contributed nothing: %3. What only it sees of wheels is not "
                               "measured.")
                    .arg(QString::number(number), QString::number(sensors.size()),
                         QString::fromStdString(sensor.reason)));
        }
    }
}

/// A verdict for each wheel, the worst first.
void addWheelVerdicts(const std::vector<WheelVerdict>& verdicts, Page& page) {
    std::vector<std::vector<Cell>> cells;
    for (const WheelVerdict& verdict : worstFirst(verdicts)) {
        const QString doubt = verdict.row->isDoubtful ? QStringLiteral(" (doubtful)") : QString();
        const QString causes = verdict.causes.join(QLatin1Char('\n'));
        cells.push_back({{nameOf(*verdict.row)},
                         {textOf(verdict.mark) + doubt, toneOf(verdict.mark)},
                         {causes.isEmpty() ? QStringLiteral("-") : causes}});
    }
    page.heading(QStringLiteral("Verdict on each wheel, the worst first"));
    page.table(textList({QStringLiteral("wheel"), QStringLiteral("verdict"), QStringLiteral("why")}), cells, 3);
}

void addRows(const PassResult& pass, const std::vector<SheetRow>& rows, Page& page) {
    QStringList headers;
    std::vector<std::vector<Cell>> cells(rows.size());
    QStringList ids;
    for (const SheetRow& row : rows) {
        ids.append(idOf(row));
    }
    for (const SheetColumn* const column : shownColumns(rows)) {
        std::vector<Cell> shown;
        shown.reserve(rows.size());
        for (const SheetRow& row : rows) {
            shown.push_back(column->cell(pass, row));
        }
        if (std::all_of(shown.begin(), shown.end(), [](const Cell& cell) { return cell.text == QLatin1String("-"); })) {
            continue;
        }
        headers.append(column->title);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            cells[i].push_back(shown[i]);
        }
    }
    page.heading(QStringLiteral("Sheet of the wheels"));
    page.linkedTable(headers, cells, ids, 1);
}

/// What the intervals hold: of the measures of the sections, by their words.
QString intervalsText(const std::vector<SheetRow>& rows) {
    bool hasNoiseOnly = false;
    bool hasPoses = false;
    for (const SheetRow& row : rows) {
        for (std::size_t i = 0; i < row.values.size(); ++i) {
            const std::string& name = measureInfos()[i].name;
            const bool isOfSection = name != "backToBack" && name != "yaw" && name != "roundness";
            hasNoiseOnly = hasNoiseOnly || (isOfSection && row.values[i].intervalHolds == "noise only");
            hasPoses = hasPoses || row.values[i].intervalHolds == "noise and poses";
        }
    }
    QString text = QStringLiteral("Values with intervals of 95 %, to both sides.");
    if (hasPoses) {
        text += QStringLiteral(
            " Intervals of diameters and sections hold noise and the errors of the poses of the sensors; "
            "the latter are the same for all wheels of a side.");
    }
    if (hasNoiseOnly) {
        text += hasPoses ? QStringLiteral(" Of some wheels they hold noise only.")
                         : QStringLiteral(
                               " Intervals of diameters and sections hold noise only: the settings do not say how "
                               "far the poses of the sensors may be off.");
    }
    return text;
}

} // namespace

void addSheet(const PassResult& pass, Page& page) {
    const std::vector<SheetRow> rows = sheetOf(pass);
    addVerdict(pass, rows, page);
    addSilentSensors(pass, page);
    if (rows.empty()) {
        return;
    }
    const std::vector<WheelVerdict> verdicts = wheelVerdicts(pass, rows);
    addWheelVerdicts(verdicts, page);
    addTrain(pass, verdicts, page);
    addRows(pass, rows, page);
    page.paragraph(intervalsText(rows));
    for (const QString& note : notesOfSheet(rows)) {
        page.paragraph(note);
    }
}

} // namespace kxreport
