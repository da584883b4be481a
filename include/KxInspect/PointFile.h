// Files of points: the kinds that are read and written.
#pragma once

#include "Export.h"
#include "Profile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// The kinds of point files.
enum class FileKind {
    Cloud, ///< one cloud section: 2-D, 3-D or 3-D with colours
    Profiles, ///< profile records, one after the other
    Csv, ///< one profile as text: x;y with decimal comma and 6 digits, so that most numbers are rounded when written
    Xyzf, ///< x, y, z and 0 as little-endian floats, nothing else
    Xyz, ///< text with the columns x y [z]
    Ply, ///< Stanford polygon format (G. Turk, 1994): the vertices
    Pcd, ///< Point Cloud Data 0.7, not compressed
};

/// All kinds, in the order above.
inline constexpr FileKind kFileKinds[] = {FileKind::Cloud, FileKind::Profiles, FileKind::Csv, FileKind::Xyzf,
                                          FileKind::Xyz,   FileKind::Ply,      FileKind::Pcd};

/// The name of a kind: "cloud", "profiles", "csv", "xyzf", "xyz", "ply", "pcd".
KXINSPECT_EXPORT std::string kindName(FileKind kind);

/// The kind with that name, empty for any other.
KXINSPECT_EXPORT std::optional<FileKind> kindByName(const std::string& name);

/// The kind by the ending of a file name in any case, empty for other endings: .bin .cloud (Cloud), .profiles .set
/// (Profiles), .csv, .xyzf, .xyz .txt .asc (Xyz), .ply, .pcd.
KXINSPECT_EXPORT std::optional<FileKind> kindByFileName(const std::string& fileName);

/// The points of a file, in its order, with their attributes.
struct PointSet {
    std::vector<Point3> points; ///< mm; z is NaN where there is none
    bool hasZ = false; ///< whether the points have a z, a missing one included
    bool hasColours = false;
    std::vector<std::uint32_t>
        colours; ///< of each point 0xRRGGBB, whatever stands above it; empty without `hasColours`
    std::vector<std::size_t> profileStarts; ///< the first point of each profile, rising; empty where there are none
};

/// Reads a file of a kind. Memory follows the bytes that are there.
/// Throws an Error, with the byte or line as far as it is known:
/// - NotFound, Unreadable: the file cannot be opened or read;
/// - Damaged: it breaks off, or what it says about itself is wrong;
/// - Unsuitable: it is of another kind or has no points (kinds that are text).
/// @param path UTF-8
KXINSPECT_EXPORT PointSet readPoints(const std::string& path, FileKind kind);

/// Writes a file of a kind, replacing an existing one. What the kind does not hold is left out: Cloud the profile
/// starts; Profiles, Csv, Xyzf and Xyz the colours; Csv z. Ply, Pcd and Xyzf have z = 0 or NaN where the points have
/// none. Profiles begins a profile at each start, or wherever z changes when there are none.
/// Throws an Error Unwritable when the file cannot be written or the kind cannot hold the points: more than 65535 in a
/// 2-D cloud or a profile, several profiles in a Csv file; BadArgument when colours are missing or starts do not rise.
/// @param path UTF-8
KXINSPECT_EXPORT void writePoints(const std::string& path, FileKind kind, const PointSet& points);

} // namespace KxInspect
