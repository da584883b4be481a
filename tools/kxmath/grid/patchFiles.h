// The patches that were found, as cloud files.
#pragma once

#include "inspect/scan/scanGrid.h"

namespace kxtool {

/// Throws a CommandError when the folder holds seeds already: those of an earlier run could be taken for results of
/// this one.
void checkPatchFolder(const QString& folder);

/// Writes each seed as one 3-D cloud section, into a folder that is made where it is missing, and notes the file names.
/// Throws a CommandError when one could not be written; none stays then.
void writePatches(const QString& folder, ScanGrid& grid);

} // namespace kxtool
