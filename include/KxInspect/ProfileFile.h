// Profiles from files of several kinds.
#pragma once

#include "Export.h"
#include "Profile.h"
#include "TextForm.h"

#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// Reads one profile, in the order of its points; its position where it is a profile record. kindOfFile() tells the kind:
/// - a 2-D cloud section or a profile record: the first one of the file;
/// - other point files: x and y of all points;
/// - text: each line is a point, behind titles;
/// - text of a contact profile gauge (.whl, .ban, .prw, .prr and the like): the points behind its header.
///
/// **Text.** Separator, decimal sign and titles are found: the reading is taken that gives every line the number of
/// columns that is wanted (2, of PointFile.h 2, 3 or 6), or the same number when the options name the columns. Accepted
/// are UTF-8 and UTF-16 (by its byte order mark), both line ends, blanks around fields, decimal points, and decimal commas
/// between two digits. Empty fields, "-" and "nan" are missing values, "inf" is a number. Titles are lines before the
/// first point that begin with #, % or //, or with a word and have no number in a field of their own. Empty lines may stand
/// before the first and behind the last point. Everything else is an error with line and column: other text, a number of
/// more than 400 characters or beyond a float, too few or too many columns, points behind an empty line, and a text that
/// two readings fit with different points, or none.
///
/// **Gauge files.** The header ends with the line `point.begin` (and the points with `point.end`), where lines NAME=VALUE
/// end, or with the first empty line; numbers in it are no points. Columns are separated by blanks or semicolons; the
/// entry ColumnDef tells them, else the first point does, and x and y are the first two. Text behind them is a remark,
/// which is counted and left out. The entry XYPoints tells how many points there are at least. All else is as above.
///
/// Throws an Error, with the byte or the line and column as far as they are known: NotFound, Unreadable; Damaged for a
/// record that is cut short and a line that is no point; Unsuitable for a file without points, with other columns than
/// wanted or of more than 256 MiB, and a text with a line of more than 1 MiB; BadArgument for options that cannot be.
/// @param path see KxInspect.h
/// @param options of texts
/// @param form if not null: gets how a text was read, nothing for other files
KXINSPECT_EXPORT Profile readProfile(const std::string& path, const TextOptions& options = {},
                                     std::optional<TextForm>* form = nullptr);

/// Reads all profiles of a file: every 2-D cloud section and profile record, those without points included, or the one
/// profile of another file. Throws an Error as above, and Damaged where no whole record begins.
/// @param path see KxInspect.h
/// @param form as above
KXINSPECT_EXPORT std::vector<Profile> readProfiles(const std::string& path, const TextOptions& options = {},
                                                   std::optional<TextForm>* form = nullptr);

} // namespace KxInspect
