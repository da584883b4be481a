// Running a command.
#pragma once

#include "tools/kxmath/console/commandError.h"

#include <functional>

namespace kxtool {

/// Runs the body of a command and prints the CommandError or KxInspect::Error that it throws. @return the exit code
int runCommand(const char* command, const std::function<int()>& body);

} // namespace kxtool
