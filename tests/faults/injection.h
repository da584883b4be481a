// Calls of the C library that fail on demand: the plan. What stands in front of the C library asks it at each call.
#pragma once

#include <array>
#include <string>

namespace faults {

/// Kinds of calls that are counted and fail. Allocations count wherever they happen, all others only on what is below
/// the watched folder, and on the standard input and output.
enum class Call {
    Allocate,
    Open,
    Read,
    Write,
    Seek,
    Sync,
    Close,
    Rename,
    Truncate,
    MakeFolder,
    Link,
    Remove,
    Stat,
    List, ///< opening and reading folders
    Change, ///< permissions, owners, times
};
inline constexpr std::array kCallNames = {"allocate", "open",  "read", "write",  "seek", "sync", "close", "rename",
                                          "truncate", "mkdir", "link", "remove", "stat", "list", "change"};
inline constexpr std::size_t kCalls = kCallNames.size();

/// What happens to a call.
enum class How {
    Error, ///< it fails with an error number
    Short, ///< fewer bytes than asked for
    Zero, ///< no bytes
    Kill, ///< it succeeds, and the process is killed after it
};

struct Fault {
    Call call = Call::Allocate;
    How how = How::Error;
    int error = 0; ///< for How::Error
    long number = 0; ///< which call, from 1; 0: none
    bool isLasting = false; ///< and all after it
    long largest = 0; ///< of allocations: instead of a number, those of more bytes fail; 0: unused
};

/// The fault that a text names: CALL:NUMBER[+]:HOW, HOW being the name of an error, short, zero or kill, "+" for this and all
/// calls after it; allocate:>BYTES:ENOMEM for all allocations of more than BYTES; none. @return false for another text
bool parseFault(const char* text, Fault& fault);

/// What was seen since arm().
struct Seen {
    std::array<long, kCalls> counts{};
    bool hasFailed = false;
    char path[400] = ""; ///< of the first call that failed
};

/// Calls below this folder count. A path without a leading '/' is below it.
void watch(const char* folder);
bool isWatched(const char* path);

/// Resets `seen`, which must outlive the fault, and lets the fault happen until disarm().
void arm(const Fault& fault, Seen& seen);
void disarm();

/// Counts a call. @return the fault when this call fails, otherwise nullptr
const Fault* next(Call call, const char* path, long size = 0);

/// The number of blocks that have been allocated and not been freed.
long liveBlocks();

/// A fault in this process while the object lives. There is one at a time.
class ArmedFault {
public:
    explicit ArmedFault(const Fault& fault) { arm(fault, seen_); }
    ~ArmedFault() { disarm(); }
    ArmedFault(const ArmedFault&) = delete;
    ArmedFault& operator=(const ArmedFault&) = delete;

    const Seen& seen() const { return seen_; }
    long count(Call call) const { return seen_.counts[static_cast<std::size_t>(call)]; }

private:
    Seen seen_;
};

} // namespace faults
