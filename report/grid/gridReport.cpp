// A height map with its block means and patches as an HTML page with pictures.
#include "report/grid/gridReport.h"

#include "report/elements/numbers.h"
#include "report/elements/page.h"
#include "report/elements/svg.h"
#include "report/elements/textList.h"
#include "report/grid/gridPictures.h"
#include "report/grid/patchTable.h"
#include "report/view/mapData.h"

#include <QtCore/QFileInfo>

#include <algorithm>

namespace kxreport {

namespace {

using KxInspect::GridResult;

QString percentText(std::int64_t part, std::int64_t all) {
    return QStringLiteral("%1 %").arg(100.0 * static_cast<double>(part) / static_cast<double>(all), 0, 'f', 1);
}

void addFacts(const GridResult& grid, Page& page) {
    std::int64_t cellsInPatches = 0;
    for (const KxInspect::Patch& patch : grid.found.patches) {
        cellsInPatches += patch.cells;
    }
    const KxInspect::HeightMap& map = grid.map;
    const std::size_t patches = grid.found.patches.size();
    page.facts(
        {{QStringLiteral("Grid, rows \u00d7 columns"), QStringLiteral("%1 \u00d7 %2").arg(map.rows).arg(map.columns)},
         {QStringLiteral("Pitch"), shortestText(map.pitch) + QStringLiteral(" mm")},
         {QStringLiteral("Cells with a height"),
          percentText(grid.heights, std::int64_t{map.rows} * std::int64_t{map.columns})},
         {QStringLiteral("Lowest, highest cell"), QStringLiteral("%1, %2 mm")
                                                      .arg(numberText(static_cast<double>(grid.heightRange.min), 2),
                                                           numberText(static_cast<double>(grid.heightRange.max), 2))},
         {QStringLiteral("Seeds"), QString::number(patches), patches == 0 ? Tone::Bad : Tone::Good},
         {QStringLiteral("Heights in seeds"), percentText(cellsInPatches, grid.heights)}});
}

/// The height map, in three dimensions and with sections where scripts run.
void addHeights(const GridResult& grid, int level, const ViewSettings& settings, Page& page) {
    const QString scale = isToScale(grid) ? QString() : QStringLiteral(" The scale of x is larger than that of z.");
    page.heading(QStringLiteral("Height map"));
    const int between = grid.map.interpolatedRows;
    const QString interpolated =
        between == 0 ? QString()
                     : QStringLiteral(" %1 rows are between two profiles, with heights on the straight lines between "
                                      "theirs.")
                           .arg(between);
    Frame& frame = page.frame();
    addMapScripts(settings, frame);
    LeftOut leftOut;
    const QString without = addMap(grid.map, true, level, settings, frame, leftOut);
    page.paragraph(QStringLiteral("Heights that the map shows at the cursor and in sections are rounded to %1 mm.")
                       .arg(settings.resolution));
    if (!without.isEmpty()) {
        page.note(without);
    }
    page.live(QStringLiteral("live"), heightPicture(grid),
              QStringLiteral("The height y of each cell. Hatched cells have no height: the neighbouring points of the "
                             "profile are more than %1 mm apart.%2%3")
                  .arg(shortestText(grid.map.gap), interpolated, scale));
}

void addMeans(const GridResult& grid, Page& page) {
    page.heading(QStringLiteral("Block means"));
    page.figure(
        meansPicture(grid),
        QStringLiteral("The mean height of each block of %1 \u00d7 %1 cells, drawn at the middle of the block. The "
                       "search for seeds uses these means. Hatched: no height in the block%2.")
            .arg(QString::number(grid.found.blockSize),
                 grid.found.edgeCut ? QStringLiteral(", or cut away at an edge") : QString()));
}

void addPatches(const GridResult& grid, Page& page) {
    constexpr std::size_t kMostRows = 500;
    const std::size_t patches = grid.found.patches.size();
    std::vector<std::vector<Cell>> rows;
    for (std::size_t i = 0; i < std::min(patches, kMostRows); ++i) {
        std::vector<Cell> row;
        for (const QString& text : patchRow(grid, i)) {
            row.push_back({text});
        }
        rows.push_back(row);
    }
    if (rows.empty()) {
        return;
    }
    page.table({QStringLiteral("seed"), QStringLiteral("cells"), QStringLiteral("area, mm\u00b2"),
                QStringLiteral("mean height, mm"), QStringLiteral("standard deviation, mm"),
                QStringLiteral("lowest, mm"), QStringLiteral("highest, mm"), QStringLiteral("x from to, mm"),
                QStringLiteral("z from to, mm"), QStringLiteral("file")},
               rows);
    page.paragraph(
        QStringLiteral("Mean, standard deviation, lowest and highest are those of the heights y; x and z are "
                       "the ranges of the points."));
    if (patches > kMostRows) {
        page.paragraph(QStringLiteral("The first %1 of %2 seeds.").arg(kMostRows).arg(patches));
    }
}

QByteArray makePage(const GridResult& grid, const PageOrigin& origin, const ViewSettings& settings, int level) {
    const bool hasPictures = !grid.map.heights.empty();
    Page page(
        QStringLiteral("Height map of a scan"),
        QStringLiteral("%1, %2 records").arg(QFileInfo(QString::fromStdString(grid.scan)).fileName()).arg(grid.records),
        origin);
    addFacts(grid, page);
    for (const std::string& warning : grid.warnings) {
        page.warning(QString::fromStdString(warning));
    }
    if (hasPictures) {
        addHeights(grid, level, settings, page);
        addMeans(grid, page);
    }
    page.heading(QStringLiteral("Seeds"));
    if (hasPictures) {
        page.figure(patchPicture(grid),
                    QStringLiteral("Connected patches without steps, with their numbers. Search: %1.")
                        .arg(searchText(grid.found.search)));
    }
    addPatches(grid, page);
    if (hasPictures) {
        page.tellTime();
    }
    return page.document();
}

} // namespace

QString gridReport(const GridResult& grid, const PageOrigin& origin) {
    ViewSettings settings;
    settings.colours = ColourMap::Heights;
    return QString::fromUtf8(fittingPage(settings, [&](int level) { return makePage(grid, origin, settings, level); }));
}

} // namespace kxreport
