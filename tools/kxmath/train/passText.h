// A pass as text: for the standard output, and as CSV.
#pragma once

#include <KxInspect/PassResult.h>

#include <QtCore/QString>

namespace kxtool {

/// What is printed: the recordings, the tables of pairs, the summary, where the wheel files are.
QString passText(const KxInspect::PassResult& pass);

/// A header line and one line per pair, commas between the fields, an empty field where there is no value.
QString passCsv(const KxInspect::PassResult& pass);

} // namespace kxtool
