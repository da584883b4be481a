// One watch at a time in a folder of results.
#pragma once

#include <string>

namespace kxtool {

/// Holds the folder of results for this process, until it ends in whichever way.
class WatchLock {
public:
    /// Makes the folder where it is missing. Throws a CommandError (OutputFailed) when that is not possible, or when
    /// another process holds it.
    explicit WatchLock(const std::string& folder);
    ~WatchLock();
    WatchLock(const WatchLock&) = delete;
    WatchLock& operator=(const WatchLock&) = delete;

private:
    int file_ = -1;
};

} // namespace kxtool
