// The measures of the wheels of a pass in words and rows.
#pragma once

#include <KxInspect/PassResult.h>

#include <QtCore/QStringList>

#include <vector>

namespace kxreport {

/// A table: the titles, and a row per wheel. Only the titles for a pass whose wheels were not measured.
std::vector<QStringList> wheelRows(const KxInspect::PassResult& pass);

/// How many columns of it are texts.
inline constexpr int kWheelTextColumns = 2;

/// Why measures are missing: each reason once, with how many there are. Sentences.
QStringList wheelNotes(const KxInspect::PassResult& pass);

} // namespace kxreport
