// How long work shows how far it is.
#pragma once

#include <functional>
#include <string>

namespace KxInspect {

/// Called from time to time in the thread of the caller: what is being done, UTF-8, and which part of it is done, from
/// 0 to 1. An exception that it throws ends the work and leaves the call. May be empty.
using Progress = std::function<void(const std::string& step, double part)>;

} // namespace KxInspect
