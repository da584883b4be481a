// Sorts few elements with evenly spread keys.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace KxMath::detail {

/// The most elements that are sorted by buckets: their counts and the elements fit into the first caches.
inline constexpr std::size_t kMostInBuckets = 2048;

inline constexpr std::size_t kBucketsPerElement = 2;

/// Sorts [first, first + count) by float keys that hold no NaN; equal keys keep their order. The elements are dealt out to
/// buckets of equal width, of which there are more than elements, and what is out of order in a bucket is put right by insertions (W.
/// Dobosiewicz, Sorting by distributive partitioning, 1978).
/// @param count from 2 to kMostInBuckets
/// @param scratch memory for as many elements
/// @return false when the keys are spread too unevenly for that, or not finite. Nothing has changed then
template <typename T, typename Key>
bool bucketSort(T* first, std::size_t count, Key key, bool ascending, T* scratch) {
    float least = key(first[0]);
    float most = least;
    for (std::size_t i = 1; i < count; ++i) {
        const float k = key(first[i]);
        least = k < least ? k : least;
        most = k > most ? k : most;
    }
    const std::size_t buckets = kBucketsPerElement * std::bit_ceil(count);
    const float scale = static_cast<float>(buckets - 1) / (most - least);
    if (!std::isfinite(scale) || !(scale > 0.0f)) { // infinite keys, or all are equal
        return false;
    }
    // Subtraction and multiplication by a positive number keep the order after rounding, too; a difference that overflows
    // has a scale of 0.
    std::array<std::uint16_t, kMostInBuckets> bucketOf;
    std::array<std::uint16_t, kBucketsPerElement * kMostInBuckets> places;
    std::fill_n(places.begin(), buckets, std::uint16_t{0});
    const auto last = static_cast<std::int32_t>(buckets) - 1;
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t rising = std::min(static_cast<std::int32_t>((key(first[i]) - least) * scale), last);
        bucketOf[i] = static_cast<std::uint16_t>(ascending ? rising : last - rising);
    }
    std::uint32_t collisions = 0; // pairs of elements in one bucket: what insertions may have to put right
    for (std::size_t i = 0; i < count; ++i) {
        collisions += places[bucketOf[i]]++;
    }
    constexpr std::uint32_t kMostCollisions = 4; // for each element; evenly spread keys have less than one
    if (collisions > kMostCollisions * count) {
        return false;
    }
    std::exclusive_scan(places.begin(), places.begin() + static_cast<std::ptrdiff_t>(buckets), places.begin(),
                        std::uint16_t{0});
    for (std::size_t i = 0; i < count; ++i) {
        std::construct_at(scratch + places[bucketOf[i]]++, first[i]);
    }
    // From one array into the other: no element stands before one of an earlier bucket.
    first[0] = scratch[0];
    for (std::size_t i = 1; i < count; ++i) {
        const T element = scratch[i];
        const float k = key(element);
        std::size_t at = i;
        for (; at > 0 && (ascending ? k < key(first[at - 1]) : k > key(first[at - 1])); --at) {
            first[at] = first[at - 1];
        }
        first[at] = element;
    }
    return true;
}

} // namespace KxMath::detail
