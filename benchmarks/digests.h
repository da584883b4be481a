// Digests of results: equal for equal bits.
#pragma once

#include "family.h"
#include "support/bitDigest.h"

namespace kxbench {

using testing_support::BitDigest;

/// The bits of a digest that a double holds.
inline Digest resultOf(const BitDigest& digest) {
    return {static_cast<double>(digest.value() >> 12), 0.0};
}

/// Of jobs that return only success or failure.
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
    return resultOf(digest);
}

/// Of the numbers in a list.
template <typename Values>
Digest digestValues(const Values& values) {
    BitDigest digest;
    for (const auto& value : values) {
        digest.add(value);
    }
    return resultOf(digest);
}

} // namespace kxbench
