// Stable ordering of sequences whose keys may be NaN.
#pragma once

#include "sorting/radixSort.h"

#include <algorithm>
#include <cmath>

namespace KxMath::detail {

/// Reverses a sorted sequence; elements with equal keys, which are adjacent, keep their order.
template <typename T, typename Key>
void reverseKeepingTies(T* first, T* last, Key key) {
    std::reverse(first, last);
    while (first != last) {
        T* const end = std::find_if(first, last, [&](const T& element) { return key(element) != key(*first); });
        std::reverse(first, end);
        first = end;
    }
}

/// Whether `holds(key, key of the next element)` for all pairs of adjacent elements. A block is checked without
/// branches, which lets the compiler use vectors and costs at most one block after the first pair for which it does not
/// hold.
template <typename T, typename Key, typename Holds>
bool allAdjacent(const T* first, const T* last, Key key, Holds holds) {
    constexpr std::ptrdiff_t kBlock = 64;
    for (; last - first > kBlock; first += kBlock) {
        int failures = 0;
        for (std::ptrdiff_t k = 0; k < kBlock; ++k) {
            failures += holds(key(first[k]), key(first[k + 1])) ? 0 : 1;
        }
        if (failures > 0) {
            return false;
        }
    }
    return std::adjacent_find(first, last, [&](const T& a, const T& b) { return !holds(key(a), key(b)); }) == last;
}

/// Sorts [first, last) by keys that hold no NaN; equal keys keep their order.
template <typename T, typename Key>
void stableSortRun(T* first, T* last, Key key, bool ascending) {
    if (first != last && (ascending ? key(*first) >= key(*(last - 1)) : key(*first) <= key(*(last - 1))) &&
        (ascending ? allAdjacent(first, last, key, [](float a, float b) { return a >= b; })
                   : allAdjacent(first, last, key, [](float a, float b) { return a <= b; }))) {
        reverseKeepingTies(first, last, key); // scans against the axis are common, too
        return;
    }
    if (!radixSort(first, static_cast<std::size_t>(last - first), key, ascending)) {
        std::stable_sort(first, last,
                         [&](const T& a, const T& b) { return ascending ? key(a) < key(b) : key(a) > key(b); });
    }
}

/// Sorts [first, last) by `key` with the result of exchanging neighbours until none is out of order (strictly): the
/// sort is stable, an element with a NaN key is never exchanged, and so each run between two such elements is sorted on
/// its own.
template <typename T, typename Key>
void stableSortAroundNaN(T* first, T* last, Key key, bool ascending) {
    // Most data are in order already. A NaN key fails the comparison, and leads to the search for runs below.
    if (ascending ? allAdjacent(first, last, key, [](float a, float b) { return a <= b; })
                  : allAdjacent(first, last, key, [](float a, float b) { return a >= b; })) {
        return;
    }
    const auto isFixed = [&](const T& element) { return std::isnan(key(element)); };
    while (first != last) {
        T* const runEnd = std::find_if(first, last, isFixed);
        stableSortRun(first, runEnd, key, ascending);
        first = std::find_if_not(runEnd, last, isFixed);
    }
}

} // namespace KxMath::detail
