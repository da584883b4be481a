// Independent parts of a work, one after the other or at once.
#pragma once

#include <KxInspect/Progress.h>
#include <KxInspect/TaskRunner.h>

#include <cstddef>
#include <functional>

namespace KxInspect::detail {

/// Calls task(i, progress) for each i below `count`, by the runner if there is one. The tasks then report their progress one
/// at a time. When tasks throw, the exception of the lowest number leaves the call, as if they had run in their order; once
/// `progress` has thrown, it ends all tasks at their next report.
void runTasks(const TaskRunner& runner, const Progress& progress, std::size_t count,
              const std::function<void(std::size_t, const Progress&)>& task);

} // namespace KxInspect::detail
