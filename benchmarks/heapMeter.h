// The heap use, in the program that counts it.
#pragma once

#include <atomic>
#include <cstddef>

namespace kxbench {

/// Bytes on the heap of this process, including the rounding of block sizes.
struct HeapMeter {
    std::atomic<std::size_t> live = 0; ///< now
    std::atomic<std::size_t> most = 0; ///< peak since it was last set
};

/// Null in the program that measures times, because counting takes time.
inline HeapMeter* heapMeter = nullptr;

} // namespace kxbench
