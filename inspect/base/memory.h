// Memory for what does not survive without.
#pragma once

#include <cstdlib>
#include <new>

namespace KxInspect::detail {

/// Throws std::bad_alloc unless so many bytes can be allocated, after which they are free for what comes.
inline void needMemory(std::size_t bytes) {
    void* volatile block = std::malloc(bytes); // volatile: a compiler may leave out a block that nobody uses
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    std::free(block);
}

/// The memory for a QTemporaryFile and a QSettings of that many bytes. Without it their constructors crash in Qt 6.4: they
/// destroy what is half made.
inline void needMemoryForSettings(long long fileSize) {
    constexpr std::size_t kItself = std::size_t{96} * 1024; // bytes
    constexpr std::size_t kPerByte = 24;
    needMemory(kItself + kPerByte * static_cast<std::size_t>(fileSize));
}

} // namespace KxInspect::detail
