// Stable ordering of sequences whose keys may be NaN.
#pragma once

#include "sorting/fewOutliers.h"
#include "sorting/naturalMerge.h"
#include "sorting/radixSort.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace KxMath::detail {

/// The first element that a pair begins for which `holds(key, key of the next element)` is false; `last - 1` when there is
/// none. A block is checked without branches, which lets the compiler use vectors. The sequence is not empty.
template <typename T, typename Key, typename Holds>
T* findAdjacent(T* first, T* last, Key key, Holds holds) {
    constexpr std::ptrdiff_t kBlock = 64;
    for (; last - first > kBlock; first += kBlock) {
        int failures = 0;
        for (std::ptrdiff_t k = 0; k < kBlock; ++k) {
            failures += holds(key(first[k]), key(first[k + 1])) ? 0 : 1;
        }
        if (failures > 0) {
            break;
        }
    }
    while (first + 1 != last && holds(key(first[0]), key(first[1]))) {
        ++first;
    }
    return first;
}

/// Whether `holds(key, key of the next element)` for all pairs of adjacent elements.
template <typename T, typename Key, typename Holds>
bool allAdjacent(const T* first, const T* last, Key key, Holds holds) {
    return first == last || findAdjacent(first, last, key, holds) + 1 == last;
}

/// Reverses each group of adjacent elements with equal keys. The sequence is not empty.
template <typename T, typename Key>
void reverseTies(T* first, T* last, Key key) {
    while (true) {
        first = findAdjacent(first, last, key, [](float a, float b) { return a != b; });
        if (first + 1 == last) {
            return;
        }
        T* const end = findAdjacent(first, last, key, [](float a, float b) { return a == b; }) + 1;
        std::reverse(first, end);
        if (end == last) {
            return;
        }
        first = end;
    }
}

/// Puts a sequence in order that is so the other way round; equal keys keep their order. False for any other.
template <typename T, typename Key>
bool reverseIfReversed(T* first, T* last, Key key, bool ascending) {
    T* const end = ascending ? findAdjacent(first, last, key, [](float a, float b) { return a > b; })
                             : findAdjacent(first, last, key, [](float a, float b) { return a < b; });
    T* const endWithTies = ascending ? findAdjacent(end, last, key, [](float a, float b) { return a >= b; })
                                     : findAdjacent(end, last, key, [](float a, float b) { return a <= b; });
    if (endWithTies + 1 != last) {
        return false;
    }
    std::reverse(first, last);
    if (end != endWithTies) {
        reverseTies(first, last, key);
    }
    return true;
}

/// The first element with a NaN key, `last` without one.
template <typename T, typename Key>
T* findNaN(T* first, T* last, Key key) {
    constexpr std::ptrdiff_t kBlock = 64;
    for (; last - first >= kBlock; first += kBlock) {
        int found = 0; // counted without branches, as above
        for (std::ptrdiff_t k = 0; k < kBlock; ++k) {
            found += key(first[k]) != key(first[k]) ? 1 : 0;
        }
        if (found > 0) {
            break;
        }
    }
    return std::find_if(first, last, [&](const T& element) { return std::isnan(key(element)); });
}

/// How often a key is followed by one that comes before it, and by one that comes behind it.
struct Steps {
    std::size_t back = 0;
    std::size_t ahead = 0;
};

/// The steps of all elements; of only a part of them as soon as more than `most` go either way.
template <typename T, typename Key>
Steps countSteps(const T* first, const T* last, Key key, bool ascending, std::size_t most) {
    constexpr std::ptrdiff_t kBlock = 256;
    std::size_t falls = 0;
    std::size_t rises = 0;
    while (last - first > 1 && std::min(falls, rises) <= most) {
        const std::ptrdiff_t pairs = std::min(kBlock, last - first - 1);
        int falling = 0; // counted without branches
        int rising = 0;
        for (std::ptrdiff_t i = 0; i < pairs; ++i) {
            falling += key(first[i]) > key(first[i + 1]) ? 1 : 0;
            rising += key(first[i]) < key(first[i + 1]) ? 1 : 0;
        }
        falls += static_cast<std::size_t>(falling);
        rises += static_cast<std::size_t>(rising);
        first += pairs;
    }
    return ascending ? Steps{falls, rises} : Steps{rises, falls};
}

/// Sorts [first, last) by keys that hold no NaN; equal keys keep their order. Which method is taken depends on what the
/// elements look like: each has the same result.
/// @param inOrder the elements up to here are in order, at least one
template <typename T, typename Key>
void stableSortRun(T* first, T* inOrder, T* last, Key key, bool ascending) {
    if (inOrder == last) {
        return;
    }
    const auto count = static_cast<std::size_t>(last - first);
    const auto less = [=](const T& a, const T& b) { return ascending ? key(a) < key(b) : key(a) > key(b); };
    constexpr std::size_t kTail = 8; // at most one element in so many is behind those that are in order
    if (const auto tail = static_cast<std::size_t>(last - inOrder); tail <= count / kTail) {
        stableSortRun(inOrder, inOrder + 1, last, key, ascending);
        if (ScratchBuffer<T> scratch(tail); scratch.data() != nullptr) {
            mergeNeighbours(first, inOrder, last, less, scratch.data());
            return;
        }
    }
    if (reverseIfReversed(first, last, key, ascending)) {
        return;
    }
    constexpr std::size_t kOutOfOrder = 16; // at most one step back in so many elements: few are out of order
    const Steps steps = countSteps(first, last, key, ascending, count / kOutOfOrder);
    if (steps.back < kMostMergedRuns) {
        if (ScratchBuffer<T> scratch(count / 2); scratch.data() != nullptr) {
            mergeRuns(first, last, less, scratch.data());
            return;
        }
    }
    if (steps.back <= count / kOutOfOrder && isRadixSortable(count) &&
        FewOutliers<T, decltype(less)>::sort(first, static_cast<std::size_t>(inOrder - first), count, less)) {
        return;
    }
    if (!radixSort(first, count, key, ascending)) {
        std::stable_sort(first, last, less);
    }
}

/// Sorts [first, last) by `key` with the result of exchanging neighbours until none is out of order (strictly): the
/// sort is stable, an element with a NaN key is never exchanged, and so each run between two such elements is sorted on
/// its own.
template <typename T, typename Key>
void stableSortAroundNaN(T* first, T* last, Key key, bool ascending) {
    const auto isFixed = [&](const T& element) { return std::isnan(key(element)); };
    for (first = std::find_if_not(first, last, isFixed); first != last;) {
        // Most data are in order already. A NaN key fails the comparison.
        T* const inOrder = (ascending ? findAdjacent(first, last, key, [](float a, float b) { return a <= b; })
                                      : findAdjacent(first, last, key, [](float a, float b) { return a >= b; })) +
                           1;
        if (inOrder == last) {
            return;
        }
        T* const runEnd = findNaN(inOrder, last, key);
        stableSortRun(first, inOrder, runEnd, key, ascending);
        first = std::find_if_not(runEnd, last, isFixed);
    }
}

} // namespace KxMath::detail
