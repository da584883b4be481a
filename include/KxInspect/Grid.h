// From the file of a scan to its height map and patches, with everything that tables, JSON and pages show.
#pragma once

#include "Export.h"
#include "HeightMap.h"
#include "Json.h"
#include "Patches.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

struct GridOptions {
    HeightMapOptions map;
    float firstZ = 0.0f; ///< position of the first profile, mm
    std::optional<float> distance = {}; ///< of neighbouring profiles, mm; default: the pitch
    PatchOptions patches;
};

struct GridResult {
    std::string scan; ///< the file, as the caller named it
    int records = 0; ///< of the file
    int emptyRecords = 0; ///< those among them without points
    HeightMap map;
    std::int64_t heights = 0; ///< how many cells have a height
    Range heightRange; ///< mm
    PatchResult found;
    std::string folder; ///< of the patch files; empty when none were written
    std::vector<std::string> files; ///< the names of the patch files in it, one for each patch, or empty
    std::vector<std::string> warnings; ///< UTF-8
};

/// Reads a scan, makes its height map and finds the patches. Throws the errors of readScan(), makeHeightMap() and
/// findPatches().
/// @param path see KxInspect.h
KXINSPECT_EXPORT GridResult measureGrid(const std::string& path, const GridOptions& options,
                                        const Progress& progress = {});

/// Throws an Error Unwritable when a folder holds files of patches (seed-*.bin): those of an earlier run could be taken
/// for results of this one.
KXINSPECT_EXPORT void checkPatchFolder(const std::string& folder);

/// Writes each patch as a 3-D cloud section, seed-001.bin and so on, into a folder that is made where it is missing,
/// and notes folder and names in the result.
/// Throws an Error Unwritable when one cannot be written; none stays then, and the result is as it was.
/// @param folder see KxInspect.h for paths
KXINSPECT_EXPORT void writePatchFiles(const std::string& folder, GridResult& result);

/// The result as JSON. The pictures are heights, means and owners of all cells and the centres of the patches. The
/// points of the patches are never in it: writePatchFiles() keeps them.
KXINSPECT_EXPORT std::string toJson(const GridResult& result, Pictures pictures = Pictures::Left);

/// Reads what toJson() wrote. Without pictures the lists of heights, means and owners are empty and the centres NaN.
/// Throws an Error Damaged when the text is not JSON, Unsuitable (with the key) when it is not such a result.
KXINSPECT_EXPORT GridResult gridFromJson(const std::string& json);

} // namespace KxInspect
