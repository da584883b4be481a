// How a step of a subcommand gives up.
#pragma once

#include "tools/kxmath/console/exitCodes.h"

#include <QtCore/QString>

namespace kxtool {

/// Thrown by any step of a subcommand; the subcommand prints the message as one line and ends with the code.
struct CommandError {
    ExitCode code;
    QString message;
};

} // namespace kxtool
