// The text forms of contact profile gauges.
#include "inspect/formats/gaugeText.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <algorithm>
#include <optional>

namespace KxInspect::detail {

namespace {

/// The point in a line of columns, nothing in a header or remark.
std::optional<Point> pointIn(const QString& line, const Columns& columns) {
    static const QRegularExpression separators(QStringLiteral("[\\s;]+"));
    const QStringList fields = line.split(separators, Qt::SkipEmptyParts);
    if (fields.size() <= std::max(columns.x, columns.y)) {
        return {};
    }
    bool isX = false;
    bool isY = false;
    const float x = fields[columns.x].toFloat(&isX);
    const float y = fields[columns.y].toFloat(&isY);
    return isX && isY ? std::optional<Point>({x, y}) : std::nullopt;
}

} // namespace

std::vector<Point> parseGaugeText(const QByteArray& text, const Columns& columns) {
    std::vector<Point> longest;
    std::vector<Point> block;
    const auto closeBlock = [&] {
        if (block.size() > longest.size()) {
            longest = block;
        }
        block.clear();
    };
    for (const QByteArray& line : text.split('\n')) {
        if (const auto point = pointIn(QString::fromLatin1(line), columns)) {
            block.push_back(*point);
        } else {
            closeBlock();
        }
    }
    closeBlock();
    return longest;
}

} // namespace KxInspect::detail
