// From the file of a scan to its height map and patches.
#include <KxInspect/Grid.h>

#include "inspect/base/paths.h"
#include "inspect/scan/arguments.h"

namespace KxInspect {

namespace {

std::string noPatchText(const PatchResult& found) {
    if (found.meanRange.isEmpty()) {
        return "no seed: no block has a height";
    }
    const PatchSearch& search = found.search;
    return QStringLiteral("no seed: no connected patch of %1 cells, with steps below %2 mm, from height %3 to %4")
        .arg(search.minCount)
        .arg(static_cast<double>(search.tolerance))
        .arg(static_cast<double>(search.start))
        .arg(static_cast<double>(search.end))
        .toStdString();
}

} // namespace

GridResult measureGrid(const std::string& path, const GridOptions& options, const Progress& progress) {
    detail::checkAbove0("pitch", options.map.pitch);
    const Scan scan = readScan(path, {options.firstZ, options.distance.value_or(options.map.pitch)}, progress);
    GridResult result;
    result.scan = detail::shown(path);
    result.records = static_cast<int>(scan.profiles.size());
    result.emptyRecords = scan.emptyRecords;
    result.map = makeHeightMap(scan, options.map, progress);
    for (const float height : result.map.heights) {
        result.heights += std::isnan(height) ? 0 : 1;
        result.heightRange.include(height);
    }
    result.found = findPatches(result.map, options.patches, progress);
    if (result.found.patches.empty()) {
        result.warnings.push_back(noPatchText(result.found));
    }
    return result;
}

} // namespace KxInspect
