// Points from text files.
#pragma once

#include "inspect/formats/openFile.h"

#include <KxInspect/PointFile.h>

namespace KxInspect::detail {

/// Reads an open text file, of the kind Gauge by its header, of others as a table. Throws the errors of readPoints().
PointSet readTextPoints(QFile& file, const ErrorSource& source, FileKind kind, const TextOptions& options);

/// The same of a profile: x and y, and how it was read. Throws the errors of readProfile().
Profile readTextProfile(QFile& file, const ErrorSource& source, FileKind kind, const TextOptions& options,
                        std::optional<TextForm>& form);

} // namespace KxInspect::detail
