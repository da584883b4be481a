// Independent parts of a command's work at once, in threads.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/TaskRunner.h>

namespace kxtool {

/// Declares --jobs.
void addJobsOption(Options& options);

/// How many parts run at once: --jobs, else one for each processor that the program may use. Throws a CommandError when it
/// is wrong.
int jobsOf(const Options& options);

/// Runs tasks in so many threads, that of the caller among them. Where the system gives fewer, those do all of the work. Empty
/// for one.
KxInspect::TaskRunner taskRunner(int jobs);

} // namespace kxtool
