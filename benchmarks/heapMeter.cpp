// Replaces the memory functions of the C library by ones that call them and count. Operator new, Qt's containers and
// other libraries use these functions, too.
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

/// Blocks of at least this size always get their own pages: by default the library raises the threshold when such a block
/// is freed. When such blocks grow, their pages are remapped instead of copied.
constexpr std::size_t kPagesFrom = std::size_t{128} * 1024;

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
        return nullptr; // the old block still exists
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
    const int error = errno; // preserved by free()
    lower(malloc_usable_size(block));
    __libc_free(block);
    errno = error;
}

} // extern "C"
