// What is in a file.
#pragma once

#include "Error.h"
#include "PointFile.h"
#include "Progress.h"
#include "Range.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// What a file is made of.
enum class PartKind {
    CloudSection2D,
    CloudSection3D,
    CloudSectionColours, ///< 3-D with colours
    ProfileRecord,
    WholeFile, ///< one of the kinds that are not made of sections and records
};

/// How many parts of a kind there are.
struct PartCount {
    PartKind kind = PartKind::WholeFile;
    std::int64_t count = 0;
};

struct FileContents {
    std::optional<FileKind> kind; ///< of a file that is a WholeFile; nothing for sections and records
    std::vector<PartCount> parts; ///< in the order in which they were met; empty for an empty file
    std::int64_t points = 0;
    std::int64_t missing = 0; ///< points with a coordinate that is NaN; z counts where the points have one of their own
    Range x, y, z; ///< mm; z of profile records is their position
    float spacing =
        std::numeric_limits<float>::quiet_NaN(); ///< median distance in x of neighbours, those of 0 left out
    std::optional<TextForm> text; ///< how a Csv, Xyz or Gauge was read
    std::optional<Error> damage; ///< what is wrong where reading ended early, with the place as far as it is known
};

/// Looks through a file: one of the kinds Csv, Xyzf, Xyz, Ply, Pcd and Gauge, as kindOfFile() tells, else cloud sections
/// and profile records of all kinds, in any order.
/// Throws an Error when the file is not found, cannot be opened or is a folder, and BadArgument for options that cannot
/// be.
/// @param path see KxInspect.h
/// @param options of Csv, Xyz and Gauge
KXINSPECT_EXPORT FileContents readFileContents(const std::string& path, const Progress& progress = {},
                                               const TextOptions& options = {});

} // namespace KxInspect
