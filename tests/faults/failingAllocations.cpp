// Allocations that fail as planned. operator new calls malloc().
#include "injection.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include <dlfcn.h>

// What stands behind the functions of the C library that are replaced here.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

std::atomic<long> live{0};
bool isSuspended = false; ///< no allocation fails or counts

/// @return whether an allocation fails
bool fails(std::size_t size) {
    const faults::Fault* const fault =
        isSuspended ? nullptr : faults::next(faults::Call::Allocate, "", static_cast<long>(size));
    if (fault == nullptr) {
        return false;
    }
    if (fault->how == faults::How::Kill) {
        raise(SIGKILL);
    }
    errno = ENOMEM;
    return true;
}

void* counted(void* block) {
    live += block != nullptr ? 1 : 0;
    return block;
}

void* aligned(std::size_t alignment, std::size_t size) {
    return fails(size) ? nullptr : counted(__libc_memalign(alignment, size));
}

} // namespace

extern "C" {

void* malloc(std::size_t size) {
    return fails(size) ? nullptr : counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
    return fails(count * size) ? nullptr : counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) {
    if (fails(size)) {
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

// Constructors that crash without memory in Qt 6.4: they destroy what is half made. Those who call them make sure that there is
// enough (inspect/base/memory.h), so that no allocation fails within.
#define WITH_MEMORY(function, symbol, parameters, ...)                                                                 \
    void function parameters asm(symbol);                                                                              \
    void function parameters {                                                                                         \
        static const auto behind = reinterpret_cast<decltype(&function)>(dlsym(RTLD_NEXT, symbol));                    \
        isSuspended = true;                                                                                            \
        behind(__VA_ARGS__);                                                                                           \
        isSuspended = false;                                                                                           \
    }
// QSettings(const QString&, Format, QObject*), QTemporaryFile()
WITH_MEMORY(makeSettings, "_ZN9QSettingsC1ERK7QStringNS_6FormatEP7QObject",
            (void* made, const void* name, int format, void* parent), made, name, format, parent)
WITH_MEMORY(makeTemporaryFile, "_ZN14QTemporaryFileC1Ev", (void* made), made)

long faults::liveBlocks() {
    return live;
}
