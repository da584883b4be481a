// Profiles from files of several kinds.
#pragma once

#include "Export.h"
#include "Profile.h"

#include <string>
#include <vector>

namespace KxInspect {

/// The columns of x and y in the lines of a text, counted from 0.
struct Columns {
    int x = 0;
    int y = 1;
};

/// Reads one profile, in the order of its points; its position where it is a profile record. The content determines
/// the kind:
/// - a 2-D cloud section or a profile record: the first one of the file;
/// - CSV, with a semicolon in the first line, decimal comma or point: x and y of the lines up to the first empty one;
/// - columns, the text forms of contact profile gauges (.whl, .ban, .prw, .prr and the like): the longest block of
///   lines with a number in both columns; other lines are headers and remarks.
///
/// Throws an Error, with the byte as far as it is known: NotFound, Unreadable; Damaged for a record that is cut short;
/// Unsuitable for a file without points or of more than 256 MiB; BadArgument for a column below 0.
/// @param path UTF-8
KXINSPECT_EXPORT Profile readProfile(const std::string& path, const Columns& columns = {});

/// Reads all profiles of a file: every 2-D cloud section and profile record, those without points included, or the one
/// profile of a text. Throws an Error as above, and Damaged where no whole record begins.
/// @param path UTF-8
KXINSPECT_EXPORT std::vector<Profile> readProfiles(const std::string& path, const Columns& columns = {});

} // namespace KxInspect
