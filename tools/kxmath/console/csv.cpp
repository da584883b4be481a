// Fields of CSV.
#include "tools/kxmath/console/csv.h"

#include <algorithm>

namespace kxtool {

QString csvField(const QString& text, QChar separator) {
    const QString starts = QStringLiteral("=+-@\t\r\n");
    QString field = !text.isEmpty() && starts.contains(text.front()) ? QLatin1Char('\'') + text : text;
    const QString quoted = QStringLiteral("\"\r\n") + separator;
    if (std::none_of(field.cbegin(), field.cend(), [&](QChar c) { return quoted.contains(c); })) {
        return field;
    }
    return QLatin1Char('"') + field.replace(QLatin1String("\""), QLatin1String("\"\"")) + QLatin1Char('"');
}

} // namespace kxtool
