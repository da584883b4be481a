// A pass as text: for the standard output, and as CSV.
#include "tools/kxmath/train/passText.h"

#include "report/train/passColumns.h"
#include "report/train/passWords.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textTable.h"

namespace kxtool {

using KxInspect::PassResult;
using namespace kxreport;

namespace {

QString recordingText(const PassResult& pass, size_t index) {
    const KxInspect::PassSide& side = pass.sides[index];
    return QStringLiteral("Recording %1: %2 (SENSOR%3, serial %4), %5 records, %6 wheels\n")
        .arg(QString::number(index + 1), printable(QString::fromStdString(side.file)), QString::number(side.sensor),
             QString::number(side.serial), QString::number(side.records()), QString::number(side.wheels.size()));
}

QString table(const PassResult& pass, const std::vector<PairColumn>& columns) {
    std::vector<QStringList> rows(pass.pairs.size() + 1);
    for (const PairColumn& column : columns) {
        rows[0].append(column.title);
        for (size_t i = 0; i < pass.pairs.size(); ++i) {
            rows[i + 1].append(textForPeople(column.value(pass, i)));
        }
    }
    return textTable(rows);
}

} // namespace

QString passText(const PassResult& pass) {
    QString text = recordingText(pass, 0) + recordingText(pass, 1);
    text += QStringLiteral("Tolerance: %1\n\n").arg(toleranceText(pass));
    text += table(pass, pairColumns());
    text += QStringLiteral("\n%1 distances, %2 out of tolerance. Lengths in mm.\n")
                .arg(pass.distances())
                .arg(pass.outOfTolerance());
    if (pass.defectLimits) {
        text += QStringLiteral("\nDefects: %1\n\n").arg(defectLimitsText(pass));
        text += table(pass, defectColumns());
        text += QStringLiteral("\n%1 defective wheels.\n").arg(pass.defectiveWheels());
        text += QStringLiteral("\nRoundness: %1\n\n").arg(roundnessLimitsText(pass));
        text += table(pass, roundnessColumns());
        text += QStringLiteral("\n%1 wheels out of round.\n").arg(pass.wheelsOutOfRound());
    }
    if (!pass.folder.empty()) {
        text += QStringLiteral("Wheel files: %1\n").arg(printable(QString::fromStdString(pass.folder)));
    }
    return text;
}

QString passCsv(const PassResult& pass) {
    std::vector<PairColumn> columns = pairColumns();
    if (pass.defectLimits) {
        for (const auto* const more : {&defectColumns(), &roundnessColumns()}) {
            columns.insert(columns.end(), more->begin() + 1, more->end()); // the pair is there
        }
    }
    QStringList header;
    for (const PairColumn& column : columns) {
        header.append(column.key);
    }
    QString text = header.join(QLatin1Char(',')) + QLatin1Char('\n');
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        QStringList row;
        for (const PairColumn& column : columns) {
            row.append(textForPrograms(column.value(pass, i)));
        }
        text += row.join(QLatin1Char(',')) + QLatin1Char('\n');
    }
    return text;
}

} // namespace kxtool
