// Changing values in the text of settings and nothing else.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <string>

namespace KxInspect::detail {

/// A key with its value. The section "General" holds the keys before all sections, too.
struct IniValue {
    QByteArray section;
    QByteArray key;
    QByteArray text;
    bool isUnknown = false; ///< the key becomes a placeholder where it is in the text; it is not added
};

/// All keys of the text of an INI file, as QSettings reads them. Throws an Error as withValues() does.
QMap<QString, QVariant> valuesIn(const std::string& text, const std::string& file);

/// The text of an INI file with the values set: existing keys are replaced, also placeholders (";key="), the others
/// added to their sections. Everything else stays as it is, remarks and line ends included.
///
/// Throws an Error when the text is not UTF-8, is no INI file, or is written so that other keys would change
/// (Unsuitable); when a temporary file, with which the text is checked, cannot be written (Unwritable).
/// @param text may be empty
/// @param file its name, for the error
std::string withValues(const std::string& text, const QList<IniValue>& values, const std::string& file);

} // namespace KxInspect::detail
