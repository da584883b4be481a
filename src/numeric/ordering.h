// Stable ordering of sequences whose keys may be NaN.
#pragma once

#include "numeric/radixSort.h"

#include <algorithm>
#include <cmath>

namespace KxMath::detail {

/// Turns a sequence round whose equal keys are neighbours; these keep their order.
template <typename T, typename Key>
void reverseKeepingTies(T* first, T* last, Key key) {
    std::reverse(first, last);
    while (first != last) {
        T* const end = std::find_if(first, last, [&](const T& element) { return key(element) != key(*first); });
        std::reverse(first, end);
        first = end;
    }
}

/// Sorts [first, last) by keys that hold no NaN; equal keys keep their order.
template <typename T, typename Key>
void stableSortRun(T* first, T* last, Key key, bool ascending) {
    const auto before = [&](const T& a, const T& b) { return ascending ? key(a) < key(b) : key(a) > key(b); };
    // Most data arrive in order; reversed runs are common too and need no sort either.
    T* const unordered = std::is_sorted_until(first, last, before);
    if (unordered == last) {
        return;
    }
    if (std::is_sorted_until(first, last, [&](const T& a, const T& b) { return before(b, a); }) == last) {
        reverseKeepingTies(first, last, key);
        return;
    }
    if (!radixSort(first, static_cast<std::size_t>(last - first), key, ascending)) {
        std::stable_sort(first, last, before);
    }
}

/// Sorts [first, last) by `key` with the result of exchanging neighbours until none is out of order (strictly): the
/// sort is stable, an element with a NaN key is never exchanged, and so each run between two such elements is sorted on
/// its own.
template <typename T, typename Key>
void stableSortAroundNaN(T* first, T* last, Key key, bool ascending) {
    const auto isFixed = [&](const T& element) { return std::isnan(key(element)); };
    while (first != last) {
        T* const runEnd = std::find_if(first, last, isFixed);
        stableSortRun(first, runEnd, key, ascending);
        first = std::find_if_not(runEnd, last, isFixed);
    }
}

} // namespace KxMath::detail
