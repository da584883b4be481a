// Files of height maps.
#pragma once

#include "Export.h"
#include "HeightMap.h"
#include "PointFile.h"

#include <optional>
#include <string>

namespace KxInspect {

/// Whether files of a kind hold a height map that readHeightMap() reads: Npy, Vti, Gsf, Sdf.
KXINSPECT_EXPORT bool holdsHeightMap(FileKind kind);

/// A point for each cell with a height, row by row: x of its column, the height as y, z of its row.
KXINSPECT_EXPORT PointSet pointsOf(const HeightMap& map);

/// Reads a height map. `gap` is NaN: files do not hold it. Gsf and Sdf are in metres: heights and places are rounded once
/// when written and once when read. A file without origin has the origin 0. Memory follows the bytes that are there.
/// Throws an Error:
/// - NotFound, Unreadable: the file cannot be opened or read;
/// - Damaged: it breaks off, goes on behind the map, or what it says about itself is wrong;
/// - Unsuitable: it is of another kind, has cells that are not square, other units than metres (Gsf), more than 40 million
///   cells, or what is not read (docs/files.md);
/// - BadArgument (key "pitch"): a Npy without a pitch above 0, which such a file does not hold, or a pitch for another kind.
/// @param path see KxInspect.h
/// @param pitch distance of rows and of columns of a Npy, mm
KXINSPECT_EXPORT HeightMap readHeightMap(const std::string& path, FileKind kind, std::optional<float> pitch = {});

/// Writes a height map as a file of a kind, replacing an existing one:
/// - Vti, Gsf, Sdf: all cells, with their places; a missing height is NaN;
/// - Npy: the heights as an array of rows x columns, without the places;
/// - Stl: two triangles between four neighbouring heights, one between three, none where more are missing; seen from larger
///   y counterclockwise;
/// - other kinds: pointsOf() the map.
/// Throws an Error Unwritable when the file cannot be written or the kind cannot hold the map: more than 65535 rows or columns in
/// a Sdf, 2 or 3 columns in a Npy (they would be read as points), no three neighbouring heights in a Stl; BadArgument for a
/// map whose heights are not as many as its rows and columns say, or whose pitch or origin is not known.
/// @param path see KxInspect.h
KXINSPECT_EXPORT void writeHeightMap(const std::string& path, FileKind kind, const HeightMap& map);

} // namespace KxInspect
