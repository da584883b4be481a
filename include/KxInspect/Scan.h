// Scans: profiles taken one after the other along z.
#pragma once

#include "Export.h"
#include "Profile.h"
#include "Progress.h"

#include <limits>
#include <string>
#include <vector>

namespace KxInspect {

/// The positions of the profiles of a scan: profile i at firstZ + i * distance, in mm.
struct ScanPlacement {
    float firstZ = 0.0f;
    float distance = 1.0f; ///< of neighbouring profiles, above 0
};

struct Scan {
    /// In their order along the scan, each with its z. One without points keeps its place.
    std::vector<Profile> profiles;
    /// Of neighbouring profiles, mm; NaN where it is not the same for all or not known.
    float distance = std::numeric_limits<float>::quiet_NaN();
    int emptyRecords = 0; ///< records of the file without points
};

/// Reads a scan: a file of profile records, whose own positions are not used, or one of 2-D cloud sections. Points with
/// a coordinate that is not finite are left out.
/// Throws an Error with the byte and the record: NotFound, Unreadable; Damaged where no whole record begins; Unsuitable
/// for a file of another kind, of both kinds or without points. BadArgument for a placement that is not a number or a
/// distance that is not above 0.
/// @param path see KxInspect.h
KXINSPECT_EXPORT Scan readScan(const std::string& path, const ScanPlacement& placement, const Progress& progress = {});

} // namespace KxInspect
