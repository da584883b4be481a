// Text files of contact profile gauges.
#pragma once

#include <KxInspect/ProfileFile.h>

#include <QtCore/QByteArray>

namespace KxInspect::detail {

/// The points of the longest block of lines with numbers in both columns. Blanks, tabs and semicolons separate columns.
std::vector<Point> parseGaugeText(const QByteArray& text, const Columns& columns);

} // namespace KxInspect::detail
