// The columns of the sheet of a pass: one definition for the page and the CSV file.
#pragma once

#include "report/elements/mark.h"
#include "report/elements/page.h"
#include "report/train/passColumns.h"

#include <KxInspect/PassSheet.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <vector>

namespace kxreport {

/// A column for people, which is one or more fields for programs.
struct SheetColumn {
    QString title; ///< for people; empty for a column that only files have
    QStringList keys; ///< of the fields
    std::function<std::vector<PairValue>(const KxInspect::PassResult& pass, const KxInspect::SheetRow& row)> fields;
    std::function<Cell(const KxInspect::PassResult& pass, const KxInspect::SheetRow& row)> cell = {};
    int measure = -1; ///< the place of its measure in KxInspect::measureInfos(); negative for other columns
};

/// All columns, the same ones for every pass.
const std::vector<SheetColumn>& sheetColumns();

/// The columns that the page shows: measures of which a wheel has a value or a verdict.
std::vector<const SheetColumn*> shownColumns(const std::vector<KxInspect::SheetRow>& rows);

/// Which measures the page leaves out, and why.
QStringList notesOfSheet(const std::vector<KxInspect::SheetRow>& rows);

/// "flange thickness (Sd)".
QString titleOf(const KxInspect::MeasureInfo& measure);

/// "25.10 ± 0.12 mm".
QString valueText(const KxInspect::MeasureInfo& measure, const KxInspect::SheetValue& value);

/// "alarm ≤ 25, warning ≥ 26": what the limits allow; empty without any.
QString boundsText(const KxInspect::LimitBounds& bounds);

/// "vehicle 2, axle 3, left"; "pair 5, left" where the vehicle is not known.
QString nameOf(const KxInspect::SheetRow& row);

/// The id of the row on the page.
QString idOf(const KxInspect::SheetRow& row);

Mark markOf(const std::optional<KxInspect::LimitVerdict>& verdict);

} // namespace kxreport
