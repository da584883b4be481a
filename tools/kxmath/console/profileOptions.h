// Options of the subcommands that read profiles.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/ProfileFile.h>
#include <KxMath/KxProfile.h>

#include <QtCore/QCommandLineParser>

namespace kxtool {

/// How a profile stands in its file.
struct Orientation {
    bool isUp = false; ///< y points up
    bool isMirrored = false; ///< x points inwards
};

/// Turns a profile as it stands in its file to y down and x outwards.
void orient(KxMath::KxProfile& profile, Orientation orientation);

/// Columns of a text file, counted from 0.
struct Columns {
    int x = 0;
    int y = 1;
};

/// Adds the option --columns.
void addColumnsOption(QCommandLineParser& parser);

/// The value of --columns. Throws a CommandError when it names no two columns.
Columns columnsOption(const QCommandLineParser& parser);

/// @{ The same.
void addColumnsOption(Options& options);
KxInspect::Columns columnsOption(const Options& options);
/// @}

/// A number given to an option. Throws a CommandError when it is none or beyond the limits.
float numberOption(const QCommandLineParser& parser, const QString& name, float min, float max);

} // namespace kxtool
