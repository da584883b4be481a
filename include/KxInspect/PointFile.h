// Files of points: the kinds that are read and written.
#pragma once

#include "Export.h"
#include "Profile.h"
#include "TextForm.h"

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
    Gauge, ///< text of a contact profile gauge, see ProfileFile.h; only read
};

/// All kinds, in the order above.
inline constexpr FileKind kFileKinds[] = {FileKind::Cloud, FileKind::Profiles, FileKind::Csv, FileKind::Xyzf,
                                          FileKind::Xyz,   FileKind::Ply,      FileKind::Pcd, FileKind::Gauge};

/// The name of a kind: "cloud", "profiles", "csv", "xyzf", "xyz", "ply", "pcd", "gauge".
KXINSPECT_EXPORT std::string kindName(FileKind kind);

/// The kind with that name, empty for any other.
KXINSPECT_EXPORT std::optional<FileKind> kindByName(const std::string& name);

/// The kind by the ending of a file name in any case, nothing where it tells none: .bin .cloud (Cloud), .profiles .set
/// (Profiles), .csv, .xyzf, .xyz .txt .asc (Xyz), .ply, .pcd, .whl .ban .prw .prr (Gauge).
KXINSPECT_EXPORT std::optional<FileKind> kindByFileName(const std::string& fileName);

/// The kind of a file by its first bytes; by the ending of its name where these leave it open or the file cannot be read.
/// A first byte 2, 3 or 4 is a Cloud, 5 is Profiles; "ply", and "VERSION", "FIELDS" or "# .PCD", begin Ply and Pcd; text
/// is Gauge when it has the header of such a file, else Csv or Xyz, which are read alike. Xyzf is recognized by the name
/// only. Nothing where neither tells.
/// @param path see KxInspect.h
KXINSPECT_EXPORT std::optional<FileKind> kindOfFile(const std::string& path);

/// The points of a file, in its order, and what it says about them.
struct PointSet {
    std::vector<Point3> points; ///< mm; z is NaN where there is none
    bool hasZ = false; ///< whether the points have a z, a missing one included
    bool hasColours = false;
    std::vector<std::uint32_t>
        colours; ///< of each point 0xRRGGBB, whatever stands above it; empty without `hasColours`
    std::vector<std::size_t> profileStarts; ///< the first point of each profile, rising; empty where there are none
    std::optional<TextForm> text; ///< how a Csv, Xyz or Gauge was read
};

/// Reads a file of a kind. Csv and Xyz are texts in which each line is a point, with 2, 3 or 6 columns of which the
/// first ones are x, y (and z), or those that the options name; ProfileFile.h says what is accepted. Ply and Pcd need a
/// number in each column, and as many rows as their header says. Memory follows the bytes that are there.
/// Throws an Error, with the byte or the line and column as far as they are known:
/// - NotFound, Unreadable: the file cannot be opened or read;
/// - Damaged: it breaks off, has something else where a number should be, or what it says about itself is wrong;
/// - Unsuitable: it is a folder or of another kind, has no points (kinds that are text), is empty or another number of columns;
/// - BadArgument: options that cannot be.
/// @param path see KxInspect.h
/// @param options of Csv, Xyz and Gauge
KXINSPECT_EXPORT PointSet readPoints(const std::string& path, FileKind kind, const TextOptions& options = {});

/// Writes a file of a kind, replacing an existing one. What the kind does not hold is left out: Cloud the profile
/// starts; Profiles, Csv, Xyzf and Xyz the colours; Csv z. Ply, Pcd and Xyzf have z = 0 or NaN where the points have
/// none. Profiles begins a profile at each start, or wherever z changes when there are none.
/// Throws an Error Unwritable when the file cannot be written or the kind cannot hold the points: more than 65535 in a
/// 2-D cloud or a profile, several profiles in a Csv file, anything in a Gauge; BadArgument when colours are missing or starts do not rise.
/// @param path see KxInspect.h
KXINSPECT_EXPORT void writePoints(const std::string& path, FileKind kind, const PointSet& points);

} // namespace KxInspect
