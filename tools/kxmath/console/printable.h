// Names of files as a terminal may show them.
#pragma once

#include <QtCore/QString>

namespace kxtool {

/// The text with ? for each control character, which would move the cursor or change colours, titles and settings of a
/// terminal. Line ends and tabs are among them.
inline QString printable(QString text) {
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control) {
            c = QLatin1Char('?');
        }
    }
    return text;
}

} // namespace kxtool
