// Completions of the command line for shells.
#pragma once

#include "tools/manual/definitions.h"

namespace kxmanual {

/// @{ The file that the shell reads: it offers commands, parts and options, and files where a value is wanted.
QByteArray bashCompletion(const std::vector<CommandPages>& definitions);
QByteArray zshCompletion(const std::vector<CommandPages>& definitions);
QByteArray fishCompletion(const std::vector<CommandPages>& definitions);
/// @}

} // namespace kxmanual
