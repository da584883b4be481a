// Progress of long work.
#pragma once

#include <functional>
#include <string>

namespace KxInspect {

/// Called from time to time, in the thread of the caller unless its work has a TaskRunner, with the current step, UTF-8, and
/// its completed part, from 0 to 1. An exception that it throws ends the work and leaves the call. May be empty.
using Progress = std::function<void(const std::string& step, double part)>;

} // namespace KxInspect
