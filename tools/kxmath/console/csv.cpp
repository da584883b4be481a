// CSV of results.
#include "tools/kxmath/console/csv.h"

#include "report/elements/textList.h"

#include <algorithm>

namespace kxtool {

QString csvField(const QString& text) {
    const QString starts = QStringLiteral("=+-@\t\r\n");
    const QString quoted = QStringLiteral("\"\r\n,");
    QString field = !text.isEmpty() && starts.contains(text.front()) ? QLatin1Char('\'') + text : text;
    if (std::none_of(field.cbegin(), field.cend(), [&](QChar c) { return quoted.contains(c); })) {
        return field;
    }
    return QLatin1Char('"') + field.replace(QLatin1String("\""), QLatin1String("\"\"")) + QLatin1Char('"');
}

QString csvLine(const QStringList& fields) {
    return fields.join(QLatin1Char(',')) + QLatin1Char('\n');
}

QString csvLine(std::initializer_list<QString> fields) {
    return csvLine(kxreport::textList(fields));
}

} // namespace kxtool
