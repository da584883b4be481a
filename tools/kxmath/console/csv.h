// CSV of results: commas, decimal points, a header line, one line per row; fields as RFC 4180 (2005) has them, lines that
// end with a line feed.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <initializer_list>

namespace kxtool {

/// A text as a field: in quotes where it holds a comma, quotes or a line end. An apostrophe is put before a text that
/// begins with = + - @, a tab or a line end: a spreadsheet would run it as a formula. Numbers are no texts: they are fields
/// as shortestText() writes them, with at most 9 significant digits; a missing one is an empty field.
QString csvField(const QString& text);

/// @{ A line of fields.
QString csvLine(const QStringList& fields);
QString csvLine(std::initializer_list<QString> fields);
/// @}

} // namespace kxtool
