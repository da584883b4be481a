// What the exit codes of kxmath mean.
#pragma once

namespace kxtool {

enum ExitCode : int {
    Done = 0,
    NoResult = 1, ///< the data gave no result
    WrongUse = 2, ///< unknown option, missing argument, value out of range
    BadInput = 3, ///< input that is missing, unreadable or damaged
    OutputFailed = 4, ///< output that could not be written
};

} // namespace kxtool
