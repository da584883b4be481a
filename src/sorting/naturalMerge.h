// Sorts sequences that consist of few runs in order by merging these.
#pragma once

#include "sorting/scratchBuffer.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace KxMath::detail {

/// Merges [first, middle) and [middle, last), both in order, where they stand; elements that are alike keep their order.
/// @param less whether one element comes before another
/// @param scratch memory for the elements of the shorter one
template <typename T, typename Less>
void mergeNeighbours(T* first, T* middle, T* last, Less less, T* scratch) {
    first = std::upper_bound(first, middle, *middle, less); // what comes before is in its place
    if (first == middle) {
        return;
    }
    last = std::lower_bound(middle, last, *(middle - 1), less); // so is what comes behind
    // Where both are mixed well no branch foretells which element is next: the loops select without one.
    if (middle - first <= last - middle) {
        const T* left = scratch;
        const T* const leftEnd = std::uninitialized_copy(first, middle, scratch);
        const T* right = middle;
        while (left != leftEnd && right != last) {
            const bool isRight = less(*right, *left);
            const T* const next = isRight ? right : left;
            *first++ = *next;
            right += isRight ? 1 : 0;
            left += isRight ? 0 : 1;
        }
        std::copy(left, leftEnd, first);
        return;
    }
    T* right = std::uninitialized_copy(middle, last, scratch); // both ends are behind the next element
    T* left = middle;
    while (right != scratch && left != first) {
        const bool isLeft = less(*(right - 1), *(left - 1));
        const T* const next = isLeft ? left - 1 : right - 1;
        *--last = *next;
        left -= isLeft ? 1 : 0;
        right -= isLeft ? 0 : 1;
    }
    std::copy_backward(scratch, right, last);
}

/// The most runs that are merged: merging them costs about as much as a radix sort.
inline constexpr std::size_t kMostMergedRuns = 16;

/// Sorts a sequence of at most kMostMergedRuns runs in order, shortest neighbours first. Elements that are alike keep their
/// order.
/// @param scratch memory for half of the elements
template <typename T, typename Less>
void mergeRuns(T* first, T* last, Less less, T* scratch) {
    std::array<T*, kMostMergedRuns + 1> starts; // of the runs, and the end
    std::size_t runs = 0;
    for (T* run = first; run != last; ++runs) {
        starts[runs] = run;
        run = std::is_sorted_until(run, last, less);
    }
    starts[runs] = last;
    for (; runs > 1; --runs) {
        std::size_t shortest = 0;
        for (std::size_t i = 1; i + 1 < runs; ++i) {
            shortest = starts[i + 2] - starts[i] < starts[shortest + 2] - starts[shortest] ? i : shortest;
        }
        mergeNeighbours(starts[shortest], starts[shortest + 1], starts[shortest + 2], less, scratch);
        std::copy(starts.begin() + shortest + 2, starts.begin() + runs + 1, starts.begin() + shortest + 1);
    }
}

} // namespace KxMath::detail
