// The identity and the vehicles of a pass, for text and page.
#pragma once

#include "report/train/passColumns.h"

#include <KxInspect/PassResult.h>

#include <QtCore/QStringList>

#include <vector>

namespace kxreport {

/// "Station Hof 3, track 2, 2026-03-29T01:59:07+01:00": what was said of the pass; empty when nothing was.
QString identityText(const KxInspect::PassResult& pass);

/// A row of titles and one for each vehicle; no rows where there are no vehicles.
std::vector<QStringList> vehicleRows(const KxInspect::PassResult& pass);

/// How vehicles are counted, why there are none, and what of a list and the pass have no partner.
QStringList vehicleNotes(const KxInspect::PassResult& pass);

/// Vehicle, bogie, axle, mark and number of each pair, for tables of programs.
const std::vector<PairColumn>& axleColumns();

} // namespace kxreport
