// Allocations of this process that fail on demand, and how many blocks are alive.
#pragma once

namespace faults {

enum class Fails { Once, FromThenOn };

/// The number of blocks that have been allocated and not been freed.
long liveBlocks();

/// While it lives, the allocation with the given number, counted from 1, has no memory; with FromThenOn none behind it
/// has either. There is one at a time.
class AllocationFault {
public:
    AllocationFault(long number, Fails fails);
    ~AllocationFault();
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;

    /// How many allocations there have been since it was made.
    long allocations() const;
};

} // namespace faults
