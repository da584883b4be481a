// Text files of contact profile gauges.
#include "inspect/formats/gaugeText.h"

#include <QtCore/QList>

#include <algorithm>
#include <optional>

namespace KxInspect::detail {

namespace {

/// The point in a line of columns; empty for a header or remark.
std::optional<Point> pointIn(QByteArray line, const Columns& columns) {
    const QList<QByteArray> fields = line.replace(';', ' ').simplified().split(' ');
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
        if (const auto point = pointIn(line, columns)) {
            block.push_back(*point);
        } else {
            closeBlock();
        }
    }
    closeBlock();
    return longest;
}

} // namespace KxInspect::detail
