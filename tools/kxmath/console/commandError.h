// The exception of the commands.
#pragma once

#include "tools/kxmath/console/exitCodes.h"

#include <QtCore/QString>

namespace kxtool {

/// Thrown by any step of a command; runCommand() prints the message as one line and returns the code.
struct CommandError {
    ExitCode code;
    QString message;
};

} // namespace kxtool
