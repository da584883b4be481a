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
    Gauge, ///< text of a contact profile gauge, see ProfileFile.h; one profile
    Table, ///< CSV with a header: [profile,]x,y[,z][,red,green,blue], 9 digits; an empty field is a missing value
    Npy, ///< array of NumPy: rows of 2 or 3 coordinates, or the heights of a map (HeightMapFile.h)
    Vtp, ///< VTK PolyData in XML (file version 1.0): the points
    Stl, ///< triangles; its points are their corners, each once; written from height maps
    Vti, ///< VTK ImageData in XML (file version 1.0): a height map
    Gsf, ///< Gwyddion Simple Field 1.0: a height map
    Sdf, ///< surface data file as text (ISO 25178-71:2017): a height map
};

/// All kinds, in the order above.
inline constexpr FileKind kFileKinds[] = {FileKind::Cloud, FileKind::Profiles, FileKind::Csv, FileKind::Xyzf,
                                          FileKind::Xyz,   FileKind::Ply,      FileKind::Pcd, FileKind::Gauge,
                                          FileKind::Table, FileKind::Npy,      FileKind::Vtp, FileKind::Stl,
                                          FileKind::Vti,   FileKind::Gsf,      FileKind::Sdf};

/// The name of a kind: "cloud", "profiles", "csv", "xyzf", "xyz", "ply", "pcd", "gauge", "table", "npy", "vtp", "stl",
/// "vti", "gsf", "sdf".
KXINSPECT_EXPORT std::string kindName(FileKind kind);

/// The kind with that name, empty for any other.
KXINSPECT_EXPORT std::optional<FileKind> kindByName(const std::string& name);

/// The kind by the ending of a file name in any case, nothing where it tells none: .bin .cloud (Cloud), .profiles .set
/// (Profiles), .csv, .xyzf, .xyz .txt .asc (Xyz), .ply, .pcd, .whl .ban .prw .prr .gauge (Gauge), .table, .npy, .vtp, .stl,
/// .vti, .gsf, .sdf.
KXINSPECT_EXPORT std::optional<FileKind> kindByFileName(const std::string& fileName);

/// The kind of a file by its first bytes; by the ending of its name where these leave it open or the file cannot be read.
/// A first byte 2, 3 or 4 is a Cloud, 5 is Profiles; "ply", and "VERSION", "FIELDS" or "# .PCD", begin Ply and Pcd; Npy, Vtp,
/// Vti, Gsf, Sdf and, as text, Stl have a first line of their own; a Stl of bytes is recognized by the name only; text is Gauge when it has the header of such a file, else Csv or Xyz, which are read alike. Xyzf is recognized by the name
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
/// number in each column, and as many rows as their header says. Memory follows the bytes that are there. A Cloud may have
/// any number of sections; when all are flat, or profile records, it is a recording, as Profiles are: each begins a
/// profile, whose z a section leaves NaN. Of a height map (Vti, Gsf, Sdf) each cell with a height is a point.
/// Throws an Error, with the byte or the line and column as far as they are known:
/// - NotFound, Unreadable: the file cannot be opened or read;
/// - Damaged: it breaks off, has something else where a number should be, or what it says about itself is wrong;
/// - Unsuitable: it is a folder or of another kind, has no points (kinds that are text), is empty or another number of
///   columns, cloud sections with and without colours, or what is not read of Npy, Vtp and Vti (docs/files.md);
/// - BadArgument: options that cannot be.
/// @param path see KxInspect.h
/// @param options of Csv, Xyz and Gauge
KXINSPECT_EXPORT PointSet readPoints(const std::string& path, FileKind kind, const TextOptions& options = {});

/// The record of a file of cloud sections and profile records, counted from 1; those before it are passed over.
/// Throws the errors of readPoints(), and Unsuitable when the file has fewer records or is not made of them, BadArgument (key
/// "record") for a number below 1.
/// @param path see KxInspect.h
KXINSPECT_EXPORT PointSet readRecord(const std::string& path, std::int64_t number);

/// What writePoints() leaves out of a file of that kind though the points have it: "the colours", "z", "z and the colours";
/// empty where nothing is. A z that all points lack is nothing.
KXINSPECT_EXPORT std::string partsLeftOut(FileKind kind, const PointSet& points);

/// Writes a file of a kind, replacing an existing one. What these kinds do not hold is left out: Cloud with z the profile
/// starts; Profiles, Csv, Xyzf and Xyz the colours; Csv z. Ply, Pcd, Xyzf, Npy and Vtp have z = 0 or NaN where the points
/// have none. Profiles begins a profile at each start, or wherever z changes when there are none; a Cloud without z has a
/// section for each start. The header of a Gauge is a block for names that end with .prw and .prr, else entries.
/// Throws an Error Unwritable when the file cannot be written or the kind cannot hold the points: more than 65535 in a
/// 2-D cloud or a profile, several profiles in a Csv or Gauge, several without z in other kinds but Cloud, Profiles and
/// Table, colours in a Gauge or Npy, points in Stl, Vti, Gsf and Sdf, which hold height maps; BadArgument when colours are
/// missing or starts do not rise.
/// @param path see KxInspect.h
KXINSPECT_EXPORT void writePoints(const std::string& path, FileKind kind, const PointSet& points);

} // namespace KxInspect
