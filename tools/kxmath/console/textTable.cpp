// Tables for the standard output.
#include "tools/kxmath/console/textTable.h"

#include <algorithm>

namespace kxtool {

QString textTable(const std::vector<QStringList>& rows) {
    std::vector<qsizetype> widths(rows.empty() ? 0 : static_cast<size_t>(rows[0].size()));
    for (const QStringList& row : rows) {
        for (size_t column = 0; column < widths.size(); ++column) {
            widths[column] = std::max(widths[column], row.at(static_cast<qsizetype>(column)).size());
        }
    }
    QString text;
    for (const QStringList& row : rows) {
        for (size_t column = 0; column < widths.size(); ++column) {
            text += (column == 0 ? QString() : QStringLiteral("  ")) +
                    row.at(static_cast<qsizetype>(column)).rightJustified(widths[column]);
        }
        text += QLatin1Char('\n');
    }
    return text;
}

} // namespace kxtool
