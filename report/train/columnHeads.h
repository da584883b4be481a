// The heads of tables on the page of a pass: whole words with units, where tables of text have short titles.
#pragma once

#include "report/train/passColumns.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>
#include <vector>

namespace kxreport {

/// The heads of columns of pairs: "side 1: last record", "yaw, mrad".
QStringList headsOf(const std::vector<PairColumn>& columns);

/// The head of a measure by its name in files: "flange thickness (Sd), mm". A name that is not known is its own head.
QString headOfMeasure(const std::string& name);

} // namespace kxreport
