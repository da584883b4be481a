// The exit codes of kxmath.
#pragma once

namespace kxtool {

enum ExitCode : int {
    Done = 0,
    NoResult = 1, ///< no result could be found in the data
    WrongUse = 2, ///< unknown option, missing argument, value out of range
    BadInput = 3, ///< a missing, unreadable or damaged input
    OutputFailed = 4, ///< an output could not be written
    FailOnMet = 5, ///< a verdict that --fail-on lists was given
    OutOfMemory = 6, ///< not enough memory
};

} // namespace kxtool
