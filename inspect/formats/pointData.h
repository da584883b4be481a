// Points of any kind of file, on their way from one to another.
#pragma once

#include <KxMath/KxPoints.h>

#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>

namespace kxtool {

/// The kinds of files.
enum class Format {
    Cloud, ///< one cloud section: 2-D, 3-D or with colours
    Profiles, ///< profile records, one after the other
    Csv, ///< x;y with decimal comma
    HeadlessXyz, ///< x, y, z and 0 as floats, nothing else
    Xyz, ///< columns x y [z] as text
    Ply,
    Pcd,
};

/// The names of the kinds on the command line, in the order above.
QString formatName(Format format);
std::optional<Format> formatByName(const QString& name);

/// The kind that a file name stands for, nothing for an unknown ending.
std::optional<Format> formatByFileName(const QString& fileName);

/// Points with what their file said about them.
struct PointData {
    QList<KxMath::KxPointXYZRGB> points; ///< z is NaN where there is none
    bool hasZ = false;
    bool hasColour = false;
    QList<qsizetype> profileStarts; ///< first point of each profile; empty for clouds
};

/// What went wrong, for the one line that a user sees.
struct FormatError {
    QString message;
};

} // namespace kxtool
