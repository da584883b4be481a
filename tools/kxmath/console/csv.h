// Fields of CSV.
#pragma once

#include <QtCore/QString>

namespace kxtool {

/// A text as a field of CSV as RFC 4180 (2005) has it: in quotes where it holds the separator, quotes or a line end. An
/// apostrophe is put before a text that begins with = + - @, a tab or a line end: a spreadsheet would run it as a
/// formula. Numbers are no texts and stay as they are.
QString csvField(const QString& text, QChar separator);

} // namespace kxtool
