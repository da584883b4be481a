// SHA-256 of bytes that come in blocks (FIPS 180-4, 2015).
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace KxInspect::detail {

/// The hash of all bytes that were added so far. Adding needs no memory.
class Sha256 {
public:
    Sha256();
    Sha256(Sha256&&) noexcept;
    Sha256& operator=(Sha256&&) noexcept;
    ~Sha256();

    void add(const char* data, std::size_t size);

    /// 64 hexadecimal digits in lower case; more bytes may follow.
    std::string text() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The hash of a whole text.
std::string sha256Of(std::string_view bytes);

} // namespace KxInspect::detail
