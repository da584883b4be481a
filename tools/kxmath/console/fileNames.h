// Names of files: the bytes of the system in the strings of Qt.
#pragma once

#include <QtCore/QString>

#include <string>
#include <string_view>

namespace kxtool {

/// A text of the command line. Names of files are bytes: those that are no part of UTF-8 become the lone surrogates
/// U+DC80 to U+DCFF, which no other text holds.
QString fromBytes(std::string_view bytes);

/// The bytes of such a text. Pass names of files on to KxInspect by this.
std::string toBytes(const QString& text);

} // namespace kxtool
