// The arguments of kxmath grid.
#pragma once

#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/outputFile.h"

#include <KxInspect/Grid.h>
#include <KxInspect/PointFile.h>

#include <QtCore/QStringList>

#include <optional>

namespace kxtool {

struct GridArguments {
    QString scan;
    KxInspect::GridOptions options;
    QString patchFolder; ///< empty for no files
    QString mapFile; ///< empty for none
    KxInspect::FileKind mapKind = KxInspect::FileKind::Gsf; ///< of `mapFile`
    OutputFile json;
    OutputFile report;
    FailOn failOn;
};

/// Throws a CommandError when the arguments are wrong. Empty when --help was given and the help was printed.
std::optional<GridArguments> parseGridArguments(const QStringList& arguments);

} // namespace kxtool
