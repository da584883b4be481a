// Names of files as a terminal may show them.
#pragma once

#include "inspect/base/paths.h"
#include "tools/kxmath/console/fileNames.h"

namespace kxtool {

/// The text with %XX for each byte of a name that is no part of UTF-8, and ? for each control character, which would move the cursor or change colours, titles and settings of a
/// terminal. Line ends and tabs are among them.
inline QString printable(const QString& bytes) {
    QString text = KxInspect::detail::toQt(toBytes(bytes));
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control) {
            c = QLatin1Char('?');
        }
    }
    return text;
}

} // namespace kxtool
