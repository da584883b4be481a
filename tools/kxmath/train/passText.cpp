// A pass as text: for the standard output, and as CSV.
#include "tools/kxmath/train/passText.h"

#include "report/train/distanceNotes.h"
#include "report/train/passColumns.h"
#include "report/train/passWords.h"
#include "report/train/vehicleTable.h"
#include "report/train/verdictTable.h"
#include "tools/kxmath/console/csv.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textTable.h"
#include "tools/kxmath/train/wheelMeasuresText.h"

namespace kxtool {

using KxInspect::PassResult;
using namespace kxreport;

namespace {

QString recordingText(const PassResult& pass, size_t index) {
    const size_t facing = pass.sides.size();
    const KxInspect::PassSide& side = index < facing ? pass.sides[index] : pass.further[index - facing];
    if (!side.missing.empty()) {
        return QStringLiteral("Recording %1: %2\n").arg(index + 1).arg(printable(QString::fromStdString(side.missing)));
    }
    return QStringLiteral("Recording %1: %2 (SENSOR%3, serial %4), %5 records, %6 wheels\n")
        .arg(QString::number(index + 1), printable(QString::fromStdString(side.file)), QString::number(side.sensor),
             QString::number(side.serial), QString::number(side.records()), QString::number(side.wheels.size()));
}

QString table(const PassResult& pass, const std::vector<PairColumn>& columns) {
    std::vector<QStringList> rows(pass.pairs.size() + 1);
    for (const PairColumn& column : columns) {
        rows[0].append(column.title);
        for (size_t i = 0; i < pass.pairs.size(); ++i) {
            rows[i + 1].append(textForPeople(column, pass, i));
        }
    }
    return textTable(rows);
}

/// What was judged, and why the rest was not.
QString summary(const PassResult& pass, KxInspect::PassQuestion question) {
    QString text = QLatin1Char('\n') + countText(pass, question) + QStringLiteral(".\n");
    for (const QString& line : notJudgedTexts(pass, question)) {
        text += QStringLiteral("Not judged, ") + line + QStringLiteral(".\n");
    }
    return text;
}

QString notes(const PassResult& pass) {
    QString text;
    for (const QString& note : distanceNotes(pass)) {
        text += note + QLatin1Char('\n');
    }
    return text;
}

QString verdictsText(const PassResult& pass) {
    if (!pass.assessment) {
        return {};
    }
    QString text;
    std::vector<QStringList> rows = {verdictTitles()};
    for (const VerdictRow& row : verdictRows(pass)) {
        rows.push_back(row.texts);
    }
    text += rows.size() > 1 ? QLatin1Char('\n') + textTable(rows) : QString();
    text += QLatin1Char('\n');
    for (const QString& note : verdictNotes(pass)) {
        text += printable(note) + QLatin1Char('\n');
    }
    return text;
}

QString vehiclesText(const PassResult& pass) {
    const std::vector<QStringList> rows = vehicleRows(pass);
    QString text = rows.empty() ? QString() : QLatin1Char('\n') + textTable(rows);
    text += QLatin1Char('\n');
    for (const QString& note : vehicleNotes(pass)) {
        text += printable(note) + QLatin1Char('\n');
    }
    return text;
}

} // namespace

QString passText(const PassResult& pass) {
    const QString identity = identityText(pass);
    QString text = identity.isEmpty() ? QString() : QStringLiteral("Pass: %1\n").arg(printable(identity));
    for (size_t i = 0; i < pass.sides.size() + pass.further.size(); ++i) {
        text += recordingText(pass, i);
    }
    text += QStringLiteral("Tolerance: %1. Lengths in mm.\n\n").arg(toleranceText(pass));
    text += table(pass, pairColumns()) + summary(pass, KxInspect::PassQuestion::Distance) + notes(pass);
    text += wheelMeasuresText(pass);
    if (pass.defectLimits) {
        text += QStringLiteral("\nDefects: %1\n\n").arg(defectLimitsText(pass));
        text += table(pass, defectColumns()) + summary(pass, KxInspect::PassQuestion::Tread);
        text += QStringLiteral("\nRoundness: %1\n\n").arg(roundnessLimitsText(pass));
        text += table(pass, roundnessColumns()) + summary(pass, KxInspect::PassQuestion::Roundness);
    }
    text += vehiclesText(pass) + verdictsText(pass);
    if (!pass.folder.empty()) {
        text += QStringLiteral("Folder of the pass: %1\n").arg(printable(QString::fromStdString(pass.folder)));
    }
    return text;
}

QString passCsv(const PassResult& pass) {
    std::vector<PairColumn> columns = pairColumns();
    columns.insert(columns.end(), intervalColumns().begin(), intervalColumns().end());
    if (pass.defectLimits) {
        for (const auto* const more : {&defectColumns(), &roundnessColumns()}) {
            columns.insert(columns.end(), more->begin() + 1, more->end()); // the pair is there
        }
    }
    const std::vector<PairColumn> reasons = reasonColumns(pass);
    columns.insert(columns.end(), reasons.begin(), reasons.end());
    columns.insert(columns.end(), axleColumns().begin(), axleColumns().end());
    if (pass.assessment) {
        columns.insert(columns.end(), verdictColumns().begin(), verdictColumns().end());
    }
    QStringList header;
    for (const PairColumn& column : columns) {
        header.append(column.key);
    }
    QString text = csvLine(header);
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        QStringList row;
        for (const PairColumn& column : columns) {
            const PairValue value = column.value(pass, i);
            const QString* const word = std::get_if<QString>(&value);
            row.append(word != nullptr ? csvField(*word) : textForPrograms(value));
        }
        text += csvLine(row);
    }
    return text;
}

} // namespace kxtool
