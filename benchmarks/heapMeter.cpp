// Takes the place of the C library's functions for memory, which do the work, and counts. By operator new, by Qt's
// containers and by other libraries memory comes from these functions as well.
#include "heapMeter.h"

#include <malloc.h>

#include <cerrno>
#include <cstring>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

/// Blocks of this size and more have pages of their own, for good: without this the library raises the bound when such
/// a block is freed. When they grow, their pages are moved and not copied.
constexpr std::size_t kPagesFrom = 128 * 1024;

kxbench::HeapMeter meter;

void raise(std::size_t size) {
    const std::size_t live = meter.live.fetch_add(size, std::memory_order_relaxed) + size;
    if (live > meter.most.load(std::memory_order_relaxed)) {
        meter.most.store(live, std::memory_order_relaxed);
    }
}

void lower(std::size_t size) {
    meter.live.fetch_sub(size, std::memory_order_relaxed);
}

void* counted(void* block) {
    raise(malloc_usable_size(block)); // 0 for null
    return block;
}

[[maybe_unused]] const bool isSet = [] {
    mallopt(M_MMAP_THRESHOLD, kPagesFrom);
    kxbench::heapMeter = &meter;
    return true;
}();

} // namespace

extern "C" {

void* malloc(std::size_t size) noexcept {
    return counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    return counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) noexcept {
    const std::size_t before = malloc_usable_size(block);
    void* const moved = __libc_realloc(block, size);
    if (moved == nullptr && size != 0) {
        return nullptr; // the block is still there
    }
    const bool isCopied = moved != block && before < kPagesFrom;
    if (!isCopied) {
        lower(before);
    }
    counted(moved);
    if (isCopied) {
        lower(before);
    }
    return moved;
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    *block = memalign(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}

void free(void* block) noexcept {
    const int error = errno; // free() leaves it as it was
    lower(malloc_usable_size(block));
    __libc_free(block);
    errno = error;
}

} // extern "C"
