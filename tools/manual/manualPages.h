// Manual pages in the language of man(7).
#pragma once

#include "tools/manual/definitions.h"

namespace kxmanual {

/// The page of the program: its commands and the topics of its help.
QByteArray programPage(const std::vector<CommandPages>& definitions);

/// The page of a command: usage, description, arguments and options, of its parts, too.
QByteArray commandPage(const CommandPages& pages);

} // namespace kxmanual
