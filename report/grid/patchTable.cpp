// The patches of a height map as rows of tables.
#include "report/grid/patchTable.h"

#include "report/elements/numbers.h"
#include "report/elements/textList.h"

#include <cmath>

namespace kxreport {

namespace {

constexpr int kDecimals = 3;

QString rangeText(const KxInspect::Range& range) {
    return fixedText(range.min, 1) + QStringLiteral(" to ") + fixedText(range.max, 1);
}

} // namespace

QStringList patchColumns() {
    return textList({QStringLiteral("seed"), QStringLiteral("cells"), QStringLiteral("area, mm2"),
                     QStringLiteral("mean, mm"), QStringLiteral("sigma, mm"), QStringLiteral("lowest, mm"),
                     QStringLiteral("highest, mm"), QStringLiteral("x, mm"), QStringLiteral("z, mm"),
                     QStringLiteral("file")});
}

QStringList patchRow(const KxInspect::GridResult& grid, std::size_t index) {
    const KxInspect::Patch& patch = grid.found.patches[index];
    return textList({QString::number(index + 1), QString::number(patch.cells), fixedText(patch.area, 1),
                     fixedText(patch.mean, kDecimals), fixedText(patch.deviation, kDecimals),
                     fixedText(patch.y.min, kDecimals), fixedText(patch.y.max, kDecimals), rangeText(patch.x),
                     rangeText(patch.z),
                     index < grid.files.size() ? QString::fromStdString(grid.files[index]) : QStringLiteral("-")});
}

QString searchText(const KxInspect::PatchSearch& search) {
    if (std::isnan(search.start) || std::isnan(search.end) || std::isnan(search.tolerance)) {
        return QStringLiteral("nothing to search, no block has a height");
    }
    const auto length = [](float value) { return QString::number(static_cast<double>(value), 'g', 4); };
    QString text = QStringLiteral("levels from %1 down to %2 mm, %3 mm apart, tolerance %4 mm, at least %5 cells")
                       .arg(length(search.start), length(search.end), length(search.step), length(search.tolerance))
                       .arg(search.minCount);
    if (!std::isnan(search.maxDrop)) {
        text += QStringLiteral(", only downwards from %1 mm below the first cell").arg(length(search.maxDrop));
    }
    return text;
}

} // namespace kxreport
