// Stable ordering of sequences whose keys may be NaN.
#pragma once

#include <algorithm>
#include <cmath>

namespace KxMath::detail {

/// Sorts [first, last) whose keys hold no NaN; equal keys keep their order.
template <typename T, typename Before>
void stableSortRun(T* first, T* last, Before before) {
    // Most data arrive in order; reversed runs are common too and need no comparison sort either.
    T* const unordered = std::is_sorted_until(first, last, before);
    if (unordered == last) {
        return;
    }
    if (unordered == first + 1) {
        const auto notFalling = [&](const T& a, const T& b) { return !before(b, a); };
        if (std::adjacent_find(first, last, notFalling) == last) {
            std::reverse(first, last);
            return;
        }
    }
    std::stable_sort(first, last, before);
}

/// Sorts [first, last) by `key` with the result of exchanging neighbours until none is out of order (strictly): the
/// sort is stable, an element with a NaN key is never exchanged, and so each run between two such elements is sorted on
/// its own.
template <typename T, typename Key>
void stableSortAroundNaN(T* first, T* last, Key key, bool ascending) {
    const auto isFixed = [&](const T& element) { return std::isnan(key(element)); };
    while (first != last) {
        T* const runEnd = std::find_if(first, last, isFixed);
        if (ascending) {
            stableSortRun(first, runEnd, [&](const T& a, const T& b) { return key(a) < key(b); });
        } else {
            stableSortRun(first, runEnd, [&](const T& a, const T& b) { return key(a) > key(b); });
        }
        first = std::find_if_not(runEnd, last, isFixed);
    }
}

} // namespace KxMath::detail
