// Radix sort by float and integer keys, in time that grows with the number of elements only.
#pragma once

#include "sorting/bucketSort.h"
#include "sorting/scratchBuffer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <numeric>
#include <type_traits>
#include <utility>
#include <vector>

namespace KxMath::detail {

/// An integer in the order of the float `key`, which is not NaN; 0 and -0 get the same. Falls as the key rises when not
/// `ascending`.
inline std::uint32_t orderedBits(float key, bool ascending) {
    constexpr std::uint32_t kSign = 0x80000000u;
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(key + 0.0f); // -0 becomes 0
    // The bits of positive floats rise with the float, those of negative ones fall, and are inverted.
    const std::uint32_t rising = (bits & kSign) != 0 ? ~bits : bits | kSign;
    return ascending ? rising : ~rising;
}

/// What the histograms count with: four of them fit into 4 KiB of the first-level cache.
using RadixCount = std::uint32_t;

inline bool isRadixSortable(std::size_t count) {
    return count <= std::numeric_limits<RadixCount>::max();
}

/// Stable radix sort from the lowest digit of the keys to the highest one, in O(count * digits) (D. E. Knuth, The Art of
/// Computer Programming 3, 5.2.5, 1973). A digit that is the same in all keys costs nothing.
/// @tparam kBits of a digit
/// @tparam kMostDigits of a key
/// @param digits of the keys, at most kMostDigits
/// @param keyOf gives the key of an element, an unsigned integer below 2^(kBits * digits)
/// @param scratch memory for `count` elements, isRadixSortable(count)
/// @return `first` or `scratch`: where the sorted elements are
template <int kBits, int kMostDigits, typename T, typename KeyOf>
T* radixSortByDigits(T* first, T* scratch, std::size_t count, int digits, KeyOf keyOf) {
    constexpr std::size_t kValues = std::size_t{1} << kBits;
    const auto digit = [](auto key, int d) { return static_cast<std::size_t>((key >> (kBits * d)) % kValues); };
    std::array<std::array<RadixCount, kValues>, kMostDigits> histograms; // all of them from one pass over the elements
    std::fill_n(histograms.begin(), digits, std::array<RadixCount, kValues>{});
    for (std::size_t i = 0; i < count; ++i) {
        const auto key = keyOf(first[i]);
        for (int d = 0; d < digits; ++d) {
            ++histograms[static_cast<std::size_t>(d)][digit(key, d)];
        }
    }
    T* from = first;
    T* to = scratch;
    for (int d = 0; d < digits && count > 0; ++d) {
        std::array<RadixCount, kValues>& places = histograms[static_cast<std::size_t>(d)];
        if (places[digit(keyOf(from[0]), d)] == count) {
            continue; // all have the same digit
        }
        std::exclusive_scan(places.begin(), places.end(), places.begin(), RadixCount{0}); // counts become first places
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t place = places[digit(keyOf(from[i]), d)]++;
            std::construct_at(to + place, from[i]);
        }
        std::swap(from, to);
    }
    return from;
}

/// Sorts [first, first + count) by a float key that is never NaN; equal keys keep their order.
/// @return false when this method does not apply: too few elements to pay, too many, or no memory. Nothing has changed
/// then
template <typename T, typename Key>
bool radixSort(T* first, std::size_t count, Key key, bool ascending) {
    constexpr std::size_t kWorthwhile = 64;
    // Three digits of 11 bits beat four of 8 where their counts are few beside the elements, and where the caches hold all
    // the places that a pass writes to.
    constexpr std::size_t kFewestElements = 3000;
    constexpr std::size_t kMostBytes = std::size_t{1} << 21;
    if (count < kWorthwhile || !isRadixSortable(count)) {
        return false;
    }
    ScratchBuffer<T> scratch(count);
    if (scratch.data() == nullptr) {
        return false;
    }
    if (count <= kMostInBuckets && bucketSort(first, count, key, ascending, scratch.data())) {
        return true;
    }
    const auto keyOf = [&](const T& element) { return orderedBits(key(element), ascending); };
    T* sorted = nullptr;
    if (count < kFewestElements || count * sizeof(T) > kMostBytes) {
        sorted = radixSortByDigits<8, 4>(first, scratch.data(), count, 4, keyOf);
    } else { // an odd number of digits most often: from the scratch memory, the last one ends at `first`
        std::uninitialized_copy_n(first, count, scratch.data());
        sorted = radixSortByDigits<11, 3>(scratch.data(), first, count, 3, keyOf);
    }
    if (sorted != first) {
        std::copy_n(sorted, count, first);
    }
    return true;
}

/// Sorts vectors by an integer key. Keeps its scratch memory from one use to the next.
template <typename T>
class IntegerSorter {
public:
    /// @param keyOf gives the key of an element, a std::uint64_t up to `largestKey`. Equal keys come in any order
    template <typename KeyOf>
    void sort(std::vector<T>& elements, std::uint64_t largestKey, KeyOf keyOf) {
        constexpr std::size_t kWorthwhile = 128;
        if (elements.size() < kWorthwhile || !isRadixSortable(elements.size())) {
            std::sort(elements.begin(), elements.end(), [&](const T& a, const T& b) { return keyOf(a) < keyOf(b); });
            return;
        }
        scratch_.resize(elements.size());
        const int keyBytes = (static_cast<int>(std::bit_width(largestKey)) + 7) / 8;
        if (radixSortByDigits<8, 8>(elements.data(), scratch_.data(), elements.size(), keyBytes, keyOf) !=
            elements.data()) {
            elements.swap(scratch_);
        }
    }

private:
    std::vector<T> scratch_;
};

} // namespace KxMath::detail
