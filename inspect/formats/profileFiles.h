// Profiles from files of several kinds.
#pragma once

#include <KxMath/KxProfile.h>

#include <QtCore/QString>

#include <vector>

namespace kxtool {

/// Reads one profile from a file, in the order of its points:
/// - a 2-D cloud section or a profile record (the first of the file), told by its first byte;
/// - CSV with semicolons, decimal comma or point: the columns x and y;
/// - the text forms of contact profile gauges (.whl, .ban, .prw, .prr and the like) and plain columns: header lines are
///   passed over, the longest block of lines that begin with two numbers are the points.
/// Columns are counted from 0.
/// @return what is wrong with the file, an empty text when it was read
QString readProfileFile(const QString& path, int xColumn, int yColumn, KxMath::KxProfile& profile);

/// Reads the points of all profiles of a file: every 2-D cloud section and profile record of a recording, the one
/// profile of a text. Those without points count.
/// @return what is wrong with the file, an empty text when it was read to its end
QString readProfilesOfFile(const QString& path, int xColumn, int yColumn,
                           std::vector<QList<KxMath::KxPointXY>>& profiles);

} // namespace kxtool
