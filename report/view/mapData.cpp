// A height map as numbers for the scripts of a page.
#include "report/view/mapData.h"

#include "report/elements/packedNumbers.h"
#include "report/elements/textList.h"
#include "report/view/decimation.h"
#include "report/view/pictures.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kxreport {

namespace {

/// Rows and columns of the blocks at a level of fittingPage().
int blockSize(int level) {
    constexpr std::array<int, 8> kFirst = {1, 2, 3, 4, 6, 8, 12, 16};
    const auto at = static_cast<std::size_t>(level);
    return at < kFirst.size() ? kFirst[at] : kFirst.back() << std::min(level - 7, 16);
}

QString addCells(const std::vector<float>& values, int columns, const ViewSettings& settings, Frame& frame,
                 LeftOut& leftOut) {
    NumberCoder coder(settings.resolution);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i % static_cast<std::size_t>(columns) == 0) {
            coder.beginRow();
        }
        coder.add(static_cast<double>(values[i]));
    }
    leftOut.tooFar += coder.leftOut();
    return frame.addBlock(coder.bytes());
}

} // namespace

QJsonObject jsonRange(const Range& range) {
    QJsonObject object;
    object[QStringLiteral("min")] = range.min;
    object[QStringLiteral("max")] = range.max;
    return object;
}

Range heightRange(const KxInspect::HeightMap& map) {
    Range range;
    for (const float height : map.heights) {
        range.include(static_cast<double>(height));
    }
    return range;
}

void addMapScripts(const ViewSettings& settings, Frame& frame) {
    frame.addScripts(
        textList({QStringLiteral("data"), QStringLiteral("words"), QStringLiteral("colours"), QStringLiteral("plot"),
                  QStringLiteral("eye"), QStringLiteral("plan"), QStringLiteral("surface"), QStringLiteral("map"),
                  QStringLiteral("reportMap"), QStringLiteral("main")}));
    describeNumbers(settings, frame);
}

QString addMap(const KxInspect::HeightMap& map, bool isLong, int level, const ViewSettings& settings, Frame& frame,
               LeftOut& leftOut, const QString& across) {
    const BlockMap blocks = blocksOf(map, blockSize(level));
    const double pitch = static_cast<double>(map.pitch);
    const double rowPitch = isLong ? pitch : 1.0;
    const double middle = (blocks.size - 1) / 2.0;
    QJsonObject object;
    object[QStringLiteral("rows")] = blocks.rows;
    object[QStringLiteral("columns")] = blocks.columns;
    object[QStringLiteral("pitchX")] = pitch * blocks.size;
    object[QStringLiteral("pitchZ")] = rowPitch * blocks.size;
    object[QStringLiteral("originX")] = static_cast<double>(map.originX) + middle * pitch;
    object[QStringLiteral("originZ")] = (isLong ? static_cast<double>(map.originZ) : 1.0) + middle * rowPitch;
    object[QStringLiteral("isLength")] = isLong;
    object[QStringLiteral("alongLabel")] = isLong ? QStringLiteral("z along, mm") : QStringLiteral("profile, number");
    object[QStringLiteral("acrossLabel")] = across;
    object[QStringLiteral("alongName")] = QStringLiteral("profile");
    object[QStringLiteral("heightLabel")] = mapLabel(settings.colours);
    const Range range = heightRange(map);
    object[QStringLiteral("range")] =
        jsonRange(settings.colours == ColourMap::Deviations ? aboutZero(range, settings.resolution) : range);
    object[QStringLiteral("block")] = blocks.size;
    object[QStringLiteral("recordsPerRow")] = isLong ? 0 : blocks.size;
    object[QStringLiteral("values")] = addCells(blocks.medians, blocks.columns, settings, frame, leftOut);
    if (blocks.size > 1) {
        object[QStringLiteral("low")] = addCells(blocks.lowest, blocks.columns, settings, frame, leftOut);
        object[QStringLiteral("high")] = addCells(blocks.highest, blocks.columns, settings, frame, leftOut);
    }
    frame.data()[QStringLiteral("map")] = object;
    return blocks.size == 1 ? QString()
                            : QStringLiteral("Not all cells are on this page, which would be too large: it shows the "
                                             "median, the lowest and the highest of blocks of %1 \u00d7 %1 cells.")
                                  .arg(blocks.size);
}

} // namespace kxreport
