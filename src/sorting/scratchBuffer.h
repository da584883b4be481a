// Memory for the time of a call.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

namespace KxMath::detail {

/// Uninitialised memory for elements; null data when there is none.
template <typename T>
class ScratchBuffer {
    static_assert(std::is_trivially_copy_constructible_v<T> && std::is_trivially_destructible_v<T>);

public:
    explicit ScratchBuffer(std::size_t count) : bytes_(new (std::nothrow) std::byte[count * sizeof(T)]) {}
    T* data() { return reinterpret_cast<T*>(bytes_.get()); }

private:
    std::unique_ptr<std::byte[]> bytes_;
};

} // namespace KxMath::detail
