// Digests of results: equal for equal bits.
#pragma once

#include "family.h"

#include <bit>
#include <cstdint>

namespace kxbench {

/// Takes in values one after the other; the order counts.
class BitDigest {
public:
    void add(std::uint32_t bits) { hash_ = (hash_ ^ bits) * 0x100000001b3u; } // FNV-1a, Fowler, Noll and Vo 1991
    void add(int value) { add(static_cast<std::uint32_t>(value)); }
    void add(float value) { add(std::bit_cast<std::uint32_t>(value)); }

    /// As much of it as a double holds.
    Digest result() const { return {static_cast<double>(hash_ >> 12), 0.0}; }

private:
    std::uint64_t hash_ = 0xcbf29ce484222325u;
};

/// Of jobs that only tell whether they are done.
template <typename Job>
Digest digestDone(Job& job) {
    return {job.isDone ? 1.0 : 0.0, 0.0};
}

/// Of the coordinates x and y of points.
template <typename Points>
Digest digestXY(const Points& points) {
    BitDigest digest;
    for (const auto& p : points) {
        digest.add(p.x);
        digest.add(p.y);
    }
    return digest.result();
}

/// Of the numbers in a list.
template <typename Values>
Digest digestValues(const Values& values) {
    BitDigest digest;
    for (const auto& value : values) {
        digest.add(value);
    }
    return digest.result();
}

} // namespace kxbench
