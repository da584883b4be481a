#include "failingAllocations.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>

// What stands behind the functions of the C library that are replaced here. operator new calls malloc().
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

// The C library allocates before main(), so that these must need no constructor.
std::atomic<long> live{0};
std::atomic<long> failingNumber{0}; ///< 0: none fails
std::atomic<bool> isLasting{false};
std::atomic<long> seen{0};

/// Counts an allocation. @return whether it fails
bool fails() {
    const long number = seen.fetch_add(1, std::memory_order_relaxed) + 1;
    const long failing = failingNumber.load(std::memory_order_relaxed);
    if (failing == 0 || number < failing || (number > failing && !isLasting)) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

void* counted(void* block) {
    live += block != nullptr ? 1 : 0;
    return block;
}

void* aligned(std::size_t alignment, std::size_t size) {
    return fails() ? nullptr : counted(__libc_memalign(alignment, size));
}

} // namespace

extern "C" {

void* malloc(std::size_t size) {
    return fails() ? nullptr : counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
    return fails() ? nullptr : counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) {
    if (fails()) {
        return nullptr;
    }
    void* const resized = __libc_realloc(block, size);
    live += block == nullptr && resized != nullptr ? 1 : 0;
    live -= block != nullptr && resized == nullptr && size == 0 ? 1 : 0; // freed
    return resized;
}

void free(void* block) {
    live -= block != nullptr ? 1 : 0;
    __libc_free(block);
}

void* memalign(std::size_t alignment, std::size_t size) {
    return aligned(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return aligned(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    void* const allocated = aligned(alignment, size);
    if (allocated == nullptr) {
        return ENOMEM;
    }
    *block = allocated;
    return 0;
}

} // extern "C"

namespace faults {

long liveBlocks() {
    return live;
}

AllocationFault::AllocationFault(long number, Fails fails) {
    seen = 0;
    isLasting = fails == Fails::FromThenOn;
    failingNumber = number;
}

AllocationFault::~AllocationFault() {
    failingNumber = 0;
}

long AllocationFault::allocations() const {
    return seen;
}

} // namespace faults
