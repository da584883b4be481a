// What is on the heap, in the program that counts it.
#pragma once

#include <atomic>
#include <cstddef>

namespace kxbench {

/// Bytes on the heap of this process, with what its blocks are rounded up by.
struct HeapMeter {
    std::atomic<std::size_t> live = 0; ///< now
    std::atomic<std::size_t> most = 0; ///< at most since it was last set
};

/// Null in the program that measures times: counting would take some.
inline HeapMeter* heapMeter = nullptr;

} // namespace kxbench
