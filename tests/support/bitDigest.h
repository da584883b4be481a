// A digest of numbers: equal for equal bits in the same order.
#pragma once

#include <bit>
#include <cstdint>

namespace testing_support {

/// FNV-1a (Fowler, Noll and Vo, 1991), taking in 32 bits at a time.
class BitDigest {
public:
    void add(std::uint32_t bits) { hash_ = (hash_ ^ bits) * 0x100000001b3u; }
    void add(int value) { add(static_cast<std::uint32_t>(value)); }
    void add(float value) { add(std::bit_cast<std::uint32_t>(value)); }

    std::uint64_t value() const { return hash_; }

private:
    std::uint64_t hash_ = 0xcbf29ce484222325u;
};

} // namespace testing_support
