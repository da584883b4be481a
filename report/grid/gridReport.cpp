// A height map with its block means and seeds as an HTML page with pictures.
#include "report/grid/gridReport.h"

#include "report/elements/page.h"
#include "report/elements/svg.h"
#include "report/grid/gridPictures.h"
#include "tools/kxmath/console/numbers.h"
#include "tools/kxmath/grid/gridText.h"

#include <QtCore/QFileInfo>

namespace kxtool {

namespace {

using kxreport::Cell;
using kxreport::Page;
using kxreport::Tone;

QString percentText(qint64 part, size_t all) {
    return QStringLiteral("%1 %").arg(100.0 * static_cast<double>(part) / static_cast<double>(all), 0, 'f', 1);
}

void addFacts(const ScanGrid& grid, Page& page) {
    const kxreport::Range range = grid.heights.range();
    qint64 cellsInSeeds = 0;
    for (const Seed& seed : grid.seeds) {
        cellsInSeeds += seed.cloud.points.size();
    }
    page.facts(
        {{QStringLiteral("Grid, rows \u00d7 columns"),
          QStringLiteral("%1 \u00d7 %2").arg(grid.heights.rows).arg(grid.heights.columns)},
         {QStringLiteral("Pitch"), shortestText(grid.pitch) + QStringLiteral(" mm")},
         {QStringLiteral("Cells with a height"), percentText(grid.heights.count(), grid.heights.values.size())},
         {QStringLiteral("Lowest, highest"),
          QStringLiteral("%1, %2 mm").arg(kxreport::numberText(range.min, 2), kxreport::numberText(range.max, 2))},
         {QStringLiteral("Seeds"), QString::number(grid.seeds.size()), grid.seeds.empty() ? Tone::Bad : Tone::Good},
         {QStringLiteral("Heights in seeds"), percentText(cellsInSeeds, static_cast<size_t>(grid.heights.count()))}});
}

void addSeeds(const ScanGrid& grid, Page& page) {
    constexpr size_t kMostRows = 500;
    std::vector<std::vector<Cell>> rows;
    for (size_t i = 0; i < std::min(grid.seeds.size(), kMostRows); ++i) {
        std::vector<Cell> row;
        for (const QString& text : seedRow(grid, i)) {
            row.push_back({text});
        }
        rows.push_back(row);
    }
    if (rows.empty()) {
        return;
    }
    page.table(seedColumns(), rows);
    page.paragraph(
        QStringLiteral("Cells and their area in mm\u00b2; mean, standard deviation, lowest and highest of the "
                       "heights and the ranges of x and z in mm."));
    if (grid.seeds.size() > kMostRows) {
        page.paragraph(QStringLiteral("The first %1 of %2 seeds.").arg(kMostRows).arg(grid.seeds.size()));
    }
}

} // namespace

QString gridReport(const GridOptions& options, const ScanGrid& grid) {
    Page page(QStringLiteral("Height map of a scan"),
              QStringLiteral("%1, %2 records").arg(QFileInfo(options.set).fileName()).arg(grid.records));
    addFacts(grid, page);
    for (const QString& warning : grid.warnings) {
        page.warning(warning);
    }
    const QString scale =
        isToScale(grid) ? QString() : QStringLiteral(" x is drawn larger than z, for the scan is long and narrow.");
    page.heading(QStringLiteral("Height map"));
    page.figure(heightPicture(grid), QStringLiteral("The height y of each cell. White cells have none: there the "
                                                    "neighbouring points of the profile are more than %1 mm apart.%2")
                                         .arg(shortestText(grid.gap), scale));
    page.heading(QStringLiteral("Block means"));
    page.figure(
        meansPicture(grid, options.blockSize),
        QStringLiteral("The mean height of each block of %1 \u00d7 %1 cells, drawn in the middle of the block; the "
                       "seeds are searched on these means. White: no height in the block%2.")
            .arg(QString::number(options.blockSize),
                 options.edgeCut ? QStringLiteral(", or cut away at an edge") : QString()));
    page.heading(QStringLiteral("Seeds"));
    page.figure(
        seedsPicture(grid),
        QStringLiteral("Connected patches without steps, each with its number: %1.").arg(searchText(grid.search)));
    addSeeds(grid, page);
    return page.html();
}

} // namespace kxtool
