// The sheet of a pass as CSV.
#pragma once

#include <KxInspect/PassResult.h>

#include <QtCore/QString>

namespace kxtool {

/// A line for each wheel, with the same fields for every pass.
QString sheetCsv(const KxInspect::PassResult& pass);

} // namespace kxtool
