// The layout of help texts.
#pragma once

#include <QtCore/QString>

namespace kxtool {

/// Breaks the lines of a help text that are longer than `width` columns. A paragraph is filled anew, an indented entry of a
/// list too, with its further lines below the beginning of its last column. What fits stays as it is, drawings included.
QString wrapped(const QString& text, qsizetype width = 80);

} // namespace kxtool
