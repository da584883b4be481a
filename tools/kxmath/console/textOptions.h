// Options of the commands that read text files.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/PointFile.h>
#include <KxInspect/TextForm.h>

namespace kxtool {

/// Adds the options --columns, --separator and --decimal.
/// @param hasZ points may have a z
void addTextOptions(Options& options, bool hasZ = false);

/// Their values. Throws a CommandError when they name no columns, separator or decimal sign, and when one is set though
/// none of the files is a text. A file that does not tell its kind counts as one.
KxInspect::TextOptions textOptions(const Options& options, const QStringList& files, bool hasZ = false);

/// Throws a CommandError when one of the options is set.
/// @param what is read as which kind: "IN is read as"
void failAsNoText(const Options& options, const QString& what, KxInspect::FileKind kind);

bool isText(KxInspect::FileKind kind);

} // namespace kxtool
