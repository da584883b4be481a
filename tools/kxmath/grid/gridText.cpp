// A height map with its patches as a table.
#include "tools/kxmath/grid/gridText.h"

#include "report/elements/numbers.h"
#include "report/grid/patchTable.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textTable.h"

namespace kxtool {

namespace {

using kxreport::fixedText;
using kxreport::shortestText;

QString patchText(const KxInspect::GridResult& grid) {
    std::vector<QStringList> rows = {kxreport::patchColumns()};
    for (std::size_t i = 0; i < grid.found.patches.size(); ++i) {
        rows.push_back(kxreport::patchRow(grid, i));
    }
    return textTable(rows) + QStringLiteral("\n%1 seeds\n").arg(grid.found.patches.size());
}

} // namespace

QString gridText(const KxInspect::GridResult& grid) {
    constexpr int kDecimals = 3;
    const KxInspect::HeightMap& map = grid.map;
    QString text = QStringLiteral("Scan: %1, %2 records, %3 of them empty\n")
                       .arg(printable(QString::fromStdString(grid.scan)), QString::number(grid.records),
                            QString::number(grid.emptyRecords));
    text += QStringLiteral("Grid: %1 rows, %2 columns, %3 mm apart; %4 of %5 cells with heights from %6 to %7 mm\n")
                .arg(map.rows)
                .arg(map.columns)
                .arg(shortestText(map.pitch))
                .arg(grid.heights)
                .arg(std::int64_t{map.rows} * std::int64_t{map.columns})
                .arg(fixedText(grid.heightRange.min, kDecimals), fixedText(grid.heightRange.max, kDecimals));
    if (map.interpolatedRows > 0) {
        text += QStringLiteral("Rows: %1 of %2 are between two profiles and interpolated\n")
                    .arg(map.interpolatedRows)
                    .arg(map.rows);
    }
    if (grid.found.edgeCut) {
        text += QStringLiteral("Edges: %1 cells cut away at steps below %2 mm\n")
                    .arg(grid.found.cutCells)
                    .arg(shortestText(*grid.found.edgeCut));
    }
    text += QStringLiteral("Seeds: means of %1 x %1 cells, %2\n\n")
                .arg(QString::number(grid.found.blockSize), kxreport::searchText(grid.found.search));
    text += grid.found.patches.empty() ? QStringLiteral("No seeds found\n") : patchText(grid);
    if (!grid.folder.empty() && !grid.found.patches.empty()) {
        text += QStringLiteral("Files of the seeds: %1\n").arg(printable(QString::fromStdString(grid.folder)));
    }
    return text;
}

} // namespace kxtool
