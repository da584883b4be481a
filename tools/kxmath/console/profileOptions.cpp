// Options of the commands that read profiles.
#include "tools/kxmath/console/profileOptions.h"

#include <algorithm>

namespace kxtool {

void addColumnsOption(Options& options) {
    options.addOption("columns", QStringLiteral("The columns of x and y in text files, counted from 1."), "x,y",
                      QStringLiteral("1,2"));
}

KxInspect::Columns columnsOption(const Options& options) {
    const QString text = options.text("columns");
    const QStringList numbers = text.split(QLatin1Char(','));
    const KxInspect::Columns columns{std::max(numbers.value(0).toInt(), 0) - 1,
                                     std::max(numbers.value(1).toInt(), 0) - 1};
    if (numbers.size() != 2 || columns.x < 0 || columns.y < 0) {
        options.failNeed(QStringLiteral("--columns"),
                         QStringLiteral("two whole numbers of at least 1 separated by ','"), text);
    }
    return columns;
}

} // namespace kxtool
