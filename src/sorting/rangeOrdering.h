// Sorting overlapping ranges of one sequence, one after the other.
#pragma once

#include "sorting/ordering.h"
#include "sorting/sortedSets.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

namespace KxMath::detail {

/// Positions from `first` to `last`, both included.
struct ClosedRange {
    int first;
    int last;
};

/// Sorts ranges of a sequence whose elements are named by their rank: the place that each would take if all were
/// sorted. Keeps the runs that are in order as sets, so that a range costs what it changes, not its length.
class OverlappingRanges {
public:
    static constexpr int kFixed = -1; ///< the rank of an element that never moves and that none passes

    /// The sequence, with ranks from 0 to `rankCount` - 1.
    OverlappingRanges(std::vector<int> ranks, int rankCount)
        : ranks_(std::move(ranks)), blockStart_(ranks_.size()), runs_(ranks_), sets_(rankCount) {
        for (int i = 0; i < count(); ++i) {
            const bool isFirst = i == 0 || rank(i) == kFixed || rank(i - 1) == kFixed;
            blockStart_[index(i)] = isFirst ? i : blockStart_[index(i - 1)];
            if (!isFirst) {
                joints_.insert(joints_.end(), i);
            }
        }
    }

    void sort(ClosedRange range) {
        cutBefore(range.first);
        cutBefore(range.last + 1);
        auto joint = joints_.upper_bound(range.first);
        while (joint != joints_.end() && *joint <= range.last) {
            int& run = runs_[index(runStart(*joint - 1))];
            run = sets_.unite(run, runs_[index(*joint)]);
            joint = joints_.erase(joint);
        }
    }

    /// The ranks in the order that the sequence has now.
    std::vector<int> ranks() const {
        std::vector<int> ordered;
        ordered.reserve(ranks_.size());
        const auto append = [&](int rank) { ordered.push_back(rank); };
        for (int i = 0; i < count(); i = static_cast<int>(ordered.size())) {
            if (rank(i) == kFixed) {
                append(kFixed);
            } else {
                sets_.forEach(runs_[index(i)], append);
            }
        }
        return ordered;
    }

private:
    static std::size_t index(int i) { return static_cast<std::size_t>(i); }
    int count() const { return static_cast<int>(ranks_.size()); }
    int rank(int i) const { return ranks_[index(i)]; }

    /// Where the run that holds position `i` begins.
    int runStart(int i) const {
        const auto next = joints_.upper_bound(i);
        return next == joints_.begin() ? blockStart_[index(i)] : std::max(*std::prev(next), blockStart_[index(i)]);
    }

    void cutBefore(int i) {
        if (i >= count() || rank(i) == kFixed) {
            return;
        }
        const int start = runStart(i);
        if (start < i) {
            std::tie(runs_[index(start)], runs_[index(i)]) = sets_.splitSmallest(runs_[index(start)], i - start);
            joints_.insert(i);
        }
    }

    std::vector<int> ranks_; // at first; which positions are fixed never changes
    std::vector<int> blockStart_; // of each position: the first that it could move to
    std::vector<int> runs_; // where a run begins: the set of its ranks
    std::set<int> joints_; // where a run follows another one of its block
    SortedSets sets_;
};

/// stableSortAroundNaN() of each range, in the order given.
template <typename T, typename Key>
void stableSortRanges(T* data, int count, const std::vector<ClosedRange>& ranges, Key key, bool ascending) {
    constexpr long long kWorthwhile = 16; // visits per element; a set operation costs about as much as that many
    const long long visits =
        std::accumulate(ranges.begin(), ranges.end(), 0LL,
                        [](long long sum, const ClosedRange& s) { return sum + (s.last - s.first + 1); });
    if (visits <= kWorthwhile * count) {
        for (const ClosedRange& s : ranges) {
            stableSortAroundNaN(data + s.first, data + s.last + 1, key, ascending);
        }
        return;
    }

    // Elements with equal keys never pass each other, so their first order ranks them for all ranges.
    std::vector<int> sorted;
    for (int i = 0; i < count; ++i) {
        if (!std::isnan(key(data[i]))) {
            sorted.push_back(i);
        }
    }
    std::stable_sort(sorted.begin(), sorted.end(), [&](int a, int b) {
        return ascending ? key(data[a]) < key(data[b]) : key(data[a]) > key(data[b]);
    });
    const int rankCount = static_cast<int>(sorted.size());
    std::vector<int> ranks(static_cast<std::size_t>(count), OverlappingRanges::kFixed);
    for (int rank = 0; rank < rankCount; ++rank) {
        ranks[static_cast<std::size_t>(sorted[static_cast<std::size_t>(rank)])] = rank;
    }
    OverlappingRanges sequence(std::move(ranks), rankCount);
    for (const ClosedRange& s : ranges) {
        sequence.sort(s);
    }
    const std::vector<T> before(data, data + count);
    for (const int rank : sequence.ranks()) {
        if (rank != OverlappingRanges::kFixed) {
            *data = before[static_cast<std::size_t>(sorted[static_cast<std::size_t>(rank)])];
        }
        ++data;
    }
}

} // namespace KxMath::detail
