// A height map with its seeds as a table and for programs.
#include "tools/kxmath/grid/gridText.h"

#include "tools/kxmath/console/numbers.h"
#include "tools/kxmath/console/textTable.h"

#include <KxMath/KxMathVersion.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

namespace kxtool {

namespace {

constexpr int kDecimals = 3;

QString rangeText(float from, float to) {
    return fixedText(from, 1) + QStringLiteral(" to ") + fixedText(to, 1);
}

QString table(const ScanGrid& grid) {
    std::vector<QStringList> rows = {seedColumns()};
    for (size_t i = 0; i < grid.seeds.size(); ++i) {
        rows.push_back(seedRow(grid, i));
    }
    return textTable(rows);
}

QJsonArray rangeArray(float from, float to) {
    return {jsonNumber(from), jsonNumber(to)};
}

QJsonArray rangeArray(const kxreport::Range& range) {
    return rangeArray(static_cast<float>(range.min), static_cast<float>(range.max));
}

QJsonObject seedObject(const ScanGrid& grid, size_t index) {
    const Seed& seed = grid.seeds[index];
    return {{QStringLiteral("seed"), static_cast<qint64>(index + 1)},
            {QStringLiteral("cells"), static_cast<qint64>(seed.cloud.points.size())},
            {QStringLiteral("area"), jsonNumber(seed.area)},
            {QStringLiteral("mean"), jsonNumber(seed.mean)},
            {QStringLiteral("deviation"), jsonNumber(seed.deviation)},
            {QStringLiteral("x"), rangeArray(seed.cloud.minX, seed.cloud.maxX)},
            {QStringLiteral("y"), rangeArray(seed.cloud.minY, seed.cloud.maxY)},
            {QStringLiteral("z"), rangeArray(seed.cloud.minZ, seed.cloud.maxZ)},
            {QStringLiteral("file"), seed.file.isEmpty() ? QJsonValue() : QJsonValue(seed.file)}};
}

QJsonObject searchObject(const SeedSearch& search) {
    return {{QStringLiteral("start"), jsonNumber(search.start)},
            {QStringLiteral("end"), jsonNumber(search.end)},
            {QStringLiteral("step"), jsonNumber(search.step)},
            {QStringLiteral("tolerance"), jsonNumber(search.tolerance)},
            {QStringLiteral("minCount"), search.minCount},
            {QStringLiteral("maxDrop"), jsonNumber(search.maxDrop)}};
}

QJsonValue edgeCutValue(const GridOptions& options, const ScanGrid& grid) {
    if (!options.edgeCut) {
        return QJsonValue();
    }
    return QJsonObject{{QStringLiteral("threshold"), jsonNumber(*options.edgeCut)},
                       {QStringLiteral("count"), grid.cutCount},
                       {QStringLiteral("cells"), grid.cutCells}};
}

} // namespace

QStringList seedColumns() {
    return {QStringLiteral("seed"),  QStringLiteral("cells"),  QStringLiteral("area"),    QStringLiteral("mean"),
            QStringLiteral("sigma"), QStringLiteral("lowest"), QStringLiteral("highest"), QStringLiteral("x"),
            QStringLiteral("z"),     QStringLiteral("file")};
}

QStringList seedRow(const ScanGrid& grid, size_t index) {
    const Seed& seed = grid.seeds[index];
    const auto& cloud = seed.cloud;
    return {QString::number(index + 1),
            QString::number(cloud.points.size()),
            fixedText(seed.area, 1),
            fixedText(seed.mean, kDecimals),
            fixedText(seed.deviation, kDecimals),
            fixedText(cloud.minY, kDecimals),
            fixedText(cloud.maxY, kDecimals),
            rangeText(cloud.minX, cloud.maxX),
            rangeText(cloud.minZ, cloud.maxZ),
            seed.file.isEmpty() ? QStringLiteral("-") : seed.file};
}

QString searchText(const SeedSearch& search) {
    const auto length = [](float value) { return QString::number(static_cast<double>(value), 'g', 4); };
    QString text = QStringLiteral("levels from %1 down to %2 mm every %3 mm, tolerance %4 mm, at least %5 cells")
                       .arg(length(search.start), length(search.end), length(search.step), length(search.tolerance))
                       .arg(search.minCount);
    if (!std::isnan(search.maxDrop)) {
        text += QStringLiteral(", only downwards from %1 mm below the first cell").arg(length(search.maxDrop));
    }
    return text;
}

QString gridText(const GridOptions& options, const ScanGrid& grid) {
    const kxreport::Range range = grid.heights.range();
    QString text = QStringLiteral("Scan: %1, %2 records, %3 of them empty\n")
                       .arg(options.set, QString::number(grid.records), QString::number(grid.emptyRecords));
    text += QStringLiteral("Grid: %1 rows, %2 columns, %3 mm apart; %4 of %5 cells with heights from %6 to %7 mm\n")
                .arg(grid.heights.rows)
                .arg(grid.heights.columns)
                .arg(shortestText(grid.pitch))
                .arg(grid.heights.count())
                .arg(grid.heights.values.size())
                .arg(fixedText(static_cast<float>(range.min), kDecimals),
                     fixedText(static_cast<float>(range.max), kDecimals));
    if (options.edgeCut) {
        text += QStringLiteral("Edges: %1 cells cut away at steps below %2 mm\n")
                    .arg(grid.cutCells)
                    .arg(shortestText(*options.edgeCut));
    }
    text += QStringLiteral("Seeds: means of %1 x %1 cells, %2\n\n")
                .arg(QString::number(options.blockSize), searchText(grid.search));
    if (grid.seeds.empty()) {
        return text + QStringLiteral("No seeds.\n");
    }
    text += table(grid);
    text += QStringLiteral("\n%1 seeds. Lengths in mm, areas in mm2.\n").arg(grid.seeds.size());
    if (!options.seedFolder.isEmpty()) {
        text += QStringLiteral("Files of the patches: %1\n").arg(options.seedFolder);
    }
    return text;
}

QString gridJson(const GridOptions& options, const ScanGrid& grid) {
    QJsonArray seeds;
    for (size_t i = 0; i < grid.seeds.size(); ++i) {
        seeds.append(seedObject(grid, i));
    }
    const QJsonObject document = {
        {QStringLiteral("command"), QStringLiteral("grid")},
        {QStringLiteral("version"), QLatin1String(KxMath_GetVersionString())},
        {QStringLiteral("set"), options.set},
        {QStringLiteral("records"), grid.records},
        {QStringLiteral("emptyRecords"), grid.emptyRecords},
        {QStringLiteral("step"), jsonNumber(grid.pitch)},
        {QStringLiteral("gap"), jsonNumber(grid.gap)},
        {QStringLiteral("rows"), grid.heights.rows},
        {QStringLiteral("columns"), grid.heights.columns},
        {QStringLiteral("originX"), jsonNumber(grid.originX)},
        {QStringLiteral("originZ"), jsonNumber(grid.originZ)},
        {QStringLiteral("heights"), grid.heights.count()},
        {QStringLiteral("heightRange"), rangeArray(grid.heights.range())},
        {QStringLiteral("blockSize"), options.blockSize},
        {QStringLiteral("meanRange"), rangeArray(grid.means.range())},
        {QStringLiteral("edgeCut"), edgeCutValue(options, grid)},
        {QStringLiteral("search"), searchObject(grid.search)},
        {QStringLiteral("folder"), options.seedFolder.isEmpty() ? QJsonValue() : QJsonValue(options.seedFolder)},
        {QStringLiteral("seeds"), seeds},
        {QStringLiteral("warnings"), QJsonArray::fromStringList(grid.warnings)}};
    return QString::fromUtf8(QJsonDocument(document).toJson());
}

} // namespace kxtool
