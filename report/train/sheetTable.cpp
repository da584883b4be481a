// The sheet of a pass on its page.
#include "report/train/sheetTable.h"

#include "report/elements/textList.h"
#include "report/train/passDrawing.h"
#include "report/train/passWords.h"
#include "report/train/sheetColumns.h"

#include <algorithm>

namespace kxreport {

using namespace KxInspect;

namespace {

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
    if (doubtful > 0) {
        text += QStringLiteral(" Doubtful, since an interval reaches across a limit: %1.").arg(doubtful);
    }
    page.verdict(text, toneOf(mark));
}

/// "flange thickness (Sd): 24.90 ± 0.12 mm, alarm".
QString causeOf(const MeasureInfo& measure, const SheetValue& value) {
    return QStringLiteral("%1: %2 %3, %4%5")
        .arg(titleOf(measure), valueText(measure, value), QString::fromStdString(measure.unit),
             wordOf(markOf(value.verdict)), value.isDoubtful == true ? QStringLiteral(", doubtful") : QString());
}

/// What the wheel is listed for: its values that are beyond limits or doubtful, and what is not measured.
QString causesOf(const SheetRow& row) {
    QStringList causes;
    QStringList missing;
    for (std::size_t i = 0; i < row.values.size(); ++i) {
        const MeasureInfo& measure = measureInfos()[i];
        const SheetValue& value = row.values[i];
        const bool isOfPart = measure.of == MeasureOf::Bogie || measure.of == MeasureOf::Vehicle;
        if (isOfPart || !value.verdict) {
            continue;
        }
        if (*value.verdict == LimitVerdict::NotMeasured) {
            missing.append(titleOf(measure));
        } else if (*value.verdict != LimitVerdict::Ok || value.isDoubtful == true) {
            causes.append(causeOf(measure, value));
        }
    }
    if (!missing.isEmpty()) {
        causes.append(QStringLiteral("not measured: ") + missing.join(QStringLiteral(", ")));
    }
    if (!row.reason.empty()) {
        causes.append(QString::fromStdString(row.reason));
    }
    return causes.join(QLatin1Char('\n'));
}

int badnessOf(const SheetRow& row) {
    return 2 * static_cast<int>(row.verdict.value_or(LimitVerdict::Ok)) + (row.isDoubtful ? 1 : 0);
}

void addWorst(const std::vector<SheetRow>& rows, Page& page) {
    constexpr std::size_t kMost = 10;
    std::vector<const SheetRow*> worst;
    for (const SheetRow& row : rows) {
        if (badnessOf(row) > 0) {
            worst.push_back(&row);
        }
    }
    if (worst.empty()) {
        return;
    }
    std::stable_sort(worst.begin(), worst.end(),
                     [](const SheetRow* a, const SheetRow* b) { return badnessOf(*a) > badnessOf(*b); });
    std::vector<std::vector<Cell>> cells;
    for (std::size_t i = 0; i < std::min(kMost, worst.size()); ++i) {
        const Mark mark = markOf(worst[i]->verdict);
        cells.push_back({{nameOf(*worst[i])}, {textOf(mark), toneOf(mark)}, {causesOf(*worst[i])}});
    }
    page.heading(QStringLiteral("Worst wheels"));
    page.table(textList({QStringLiteral("wheel"), QStringLiteral("verdict"), QStringLiteral("why")}), cells, 3);
    if (worst.size() > kMost) {
        page.paragraph(
            QStringLiteral("%1 more wheels are not ok or doubtful: see the sheet.").arg(worst.size() - kMost));
    }
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
                               " Intervals of diameters and sections hold noise only, not how far the poses of the "
                               "sensors may be off.");
    }
    return text;
}

} // namespace

void addSheet(const PassResult& pass, Page& page) {
    const std::vector<SheetRow> rows = sheetOf(pass);
    addVerdict(pass, rows, page);
    if (rows.empty()) {
        return;
    }
    addTrain(pass, rows, page);
    addWorst(rows, page);
    addRows(pass, rows, page);
    page.paragraph(intervalsText(rows));
    for (const QString& note : notesOfSheet(rows)) {
        page.paragraph(note);
    }
}

} // namespace kxreport
