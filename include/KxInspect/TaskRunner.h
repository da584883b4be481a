// Who runs independent parts of long work: the library has no threads of its own.
#pragma once

#include <functional>
#include <vector>

namespace KxInspect {

/// Runs each of the tasks once and returns when all have ended: in any order, at once in several threads if it likes. The
/// tasks do not depend on each other and throw nothing. An empty one leaves them to the thread of the caller, one after the
/// other; results are the same.
using TaskRunner = std::function<void(const std::vector<std::function<void()>>& tasks)>;

} // namespace KxInspect
