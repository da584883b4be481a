// Preloaded, it refuses each block of memory larger than $KXMATH_LARGEST bytes, as a system without memory does.
#include <cerrno>
#include <cstddef>
#include <cstdlib>

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

static bool isTooLarge(std::size_t size) {
    const char* const largest = getenv("KXMATH_LARGEST");
    const bool isRefused = largest != nullptr && size > strtoul(largest, nullptr, 10);
    errno = isRefused ? ENOMEM : errno;
    return isRefused;
}

void* malloc(std::size_t size) {
    return isTooLarge(size) ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    return isTooLarge(count * size) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    return isTooLarge(size) ? nullptr : __libc_realloc(block, size);
}
}
