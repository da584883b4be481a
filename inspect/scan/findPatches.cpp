// Finding the patches of height maps.
#include <KxInspect/Patches.h>

#include "inspect/scan/arguments.h"
#include "inspect/scan/blocks.h"
#include "inspect/scan/patchSearch.h"

#include <KxMath/KxPointCloud.h>

#include <algorithm>

namespace KxInspect {

namespace {

using KxMath::KxPointXYZ;
using PatchCloud = KxMath::KxPointCloud<KxPointXYZ>;

/// The clouds that KxMath allocates, released at the end.
struct PatchClouds {
    QList<PatchCloud*> clouds;

    PatchClouds() = default;
    PatchClouds(const PatchClouds&) = delete;
    PatchClouds& operator=(const PatchClouds&) = delete;
    ~PatchClouds() { KxMath::KxMatrixWithHistos::freePointCloudList(clouds); }
};

void checkOptions(const PatchOptions& options) {
    const std::pair<const char*, const std::optional<float>*> numbers[] = {
        {"edgeCut", &options.edgeCut}, {"start", &options.start}, {"end", &options.end}, {"step", &options.step}};
    for (const auto& [key, number] : numbers) {
        if (*number) {
            detail::checkFinite(key, **number);
        }
    }
    if (options.tolerance) {
        detail::checkAbove0("tolerance", *options.tolerance);
    }
    if (options.minCount && *options.minCount < 1) {
        detail::failArgument("minCount",
                             QStringLiteral("minCount needs a whole number above 0, got %1").arg(*options.minCount));
    }
}

/// Marks the cells that lost their height since the map was made.
void markCutCells(const HeightMap& map, const KxMath::KxMatrixCloud& matrix, PatchResult& result) {
    for (int r = 0; r < map.rows; ++r) {
        for (int c = 0; c < map.columns; ++c) {
            if (std::isnan(matrix.cells[r][c]) && !std::isnan(map.at(r, c))) {
                result.owners[map.position(r, c)] = CutAway;
                ++result.cutCells;
            }
        }
    }
}

/// Mean and standard deviation of the heights.
void measureHeights(const PatchCloud& cloud, Patch& patch) {
    double sum = 0.0;
    double squares = 0.0; // of the differences from the first height, which keeps precision
    const double first = static_cast<double>(cloud.points.first().y);
    for (const KxPointXYZ& p : cloud.points) {
        const double difference = static_cast<double>(p.y) - first;
        sum += difference;
        squares += difference * difference;
    }
    const double count = static_cast<double>(cloud.points.size());
    patch.mean = static_cast<float>(first + sum / count);
    if (cloud.points.size() > 1) { // a single height has none
        patch.deviation = static_cast<float>(std::sqrt(std::max(0.0, squares / count - sum / count * (sum / count))));
    }
}

/// Adds the points, in coordinates of the scan.
void measurePlace(const PatchCloud& cloud, Patch& patch) {
    double x = 0.0;
    double z = 0.0;
    for (const KxPointXYZ& p : cloud.points) {
        patch.points.push_back({p.x, p.y, p.z});
        patch.x.include(p.x);
        patch.y.include(p.y);
        patch.z.include(p.z);
        x += static_cast<double>(p.x);
        z += static_cast<double>(p.z);
    }
    patch.cells = cloud.points.size();
    patch.centreX = x / static_cast<double>(patch.cells);
    patch.centreZ = z / static_cast<double>(patch.cells);
}

/// Adds a patch whose points have rows and columns times the pitch as coordinates.
void addPatch(const HeightMap& map, PatchCloud& cloud, PatchResult& result) {
    const int number = static_cast<int>(result.patches.size()) + 1;
    const double pitch = static_cast<double>(map.pitch);
    for (const KxPointXYZ& p : std::as_const(cloud.points)) {
        const auto row = static_cast<int>(std::lround(static_cast<double>(p.z) / pitch));
        const auto column = static_cast<int>(std::lround(static_cast<double>(p.x) / pitch));
        result.owners[map.position(row, column)] = number;
    }
    Patch& patch = result.patches.emplace_back();
    patch.area = static_cast<float>(static_cast<double>(cloud.points.size())) * map.pitch * map.pitch;
    measureHeights(cloud, patch);
    cloud.shift(map.originX, 0.0f, map.originZ);
    measurePlace(cloud, patch);
}

void step(const Progress& progress, const char* text) {
    if (progress) {
        progress(text, 0.0);
    }
}

} // namespace

PatchResult findPatches(const HeightMap& map, const PatchOptions& options, const Progress& progress) {
    checkOptions(options);
    detail::checkAbove0("pitch", map.pitch);
    step(progress, "calculating block means");
    detail::Blocks blocks(map, options.blockSize);
    PatchResult result;
    result.blockSize = options.blockSize;
    result.edgeCut = options.edgeCut;
    result.owners.assign(map.heights.size(), InNoPatch);
    if (options.edgeCut) {
        result.cutCount = blocks.histos.cutEdgeEffects(blocks.matrix, *options.edgeCut);
        markCutCells(map, blocks.matrix, result);
    }
    blocks.forgetEmptyBlocks();
    result.means = blocks.means();
    for (const float mean : result.means) {
        result.meanRange.include(mean);
    }
    step(progress, "searching patches");
    const PatchSearch search = result.search = detail::chooseSearch(options, map, result);
    if (result.meanRange.isEmpty()) {
        return result; // nothing to search
    }
    PatchClouds found;
    blocks.histos.extractSeeds(blocks.matrix, &found.clouds, search.start, search.end, search.step, search.tolerance,
                               search.minCount, search.maxDrop);
    for (PatchCloud* const cloud : std::as_const(found.clouds)) {
        addPatch(map, *cloud, result);
    }
    return result;
}

} // namespace KxInspect
