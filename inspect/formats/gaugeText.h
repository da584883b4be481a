// The text forms of contact profile gauges.
#pragma once

#include <KxInspect/ProfileFile.h>

#include <QtCore/QByteArray>

namespace KxInspect::detail {

/// The points of the longest block of lines with a number in both columns, which blanks, tabs or semicolons separate.
std::vector<Point> parseGaugeText(const QByteArray& text, const Columns& columns);

} // namespace KxInspect::detail
