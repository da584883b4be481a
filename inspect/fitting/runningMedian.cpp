// Medians over a window that moves along a series.
#include "inspect/fitting/runningMedian.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace KxInspect::detail {

namespace {

/// Which ranks are in the window, as a tree of partial sums (P. M. Fenwick, A new data structure for cumulative frequency
/// tables, 1994): adding a rank and finding the k-th one take log n steps.
class RankWindow {
public:
    explicit RankWindow(std::size_t count) : sums_(count + 1) {}

    void add(std::size_t rank, int change) {
        for (std::size_t i = rank + 1; i < sums_.size(); i += i & (~i + 1)) {
            sums_[i] += change;
        }
    }
    /// The rank with `before` ranks of the window before it.
    std::size_t at(int before) const {
        std::size_t found = 0;
        for (std::size_t step = std::bit_floor(sums_.size() - 1); step > 0; step /= 2) {
            if (found + step < sums_.size() && sums_[found + step] <= before) {
                found += step;
                before -= sums_[found];
            }
        }
        return found;
    }

private:
    std::vector<int> sums_;
};

} // namespace

std::vector<double> runningMedian(const std::vector<double>& values, std::size_t half) {
    std::vector<double> medians = values;
    if (values.size() <= 2 * half) {
        return medians;
    }
    std::vector<std::size_t> byRank(values.size());
    std::iota(byRank.begin(), byRank.end(), std::size_t{0});
    std::sort(byRank.begin(), byRank.end(), [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
    std::vector<std::size_t> ranks(values.size());
    for (std::size_t rank = 0; rank < ranks.size(); ++rank) {
        ranks[byRank[rank]] = rank;
    }
    RankWindow window(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        window.add(ranks[i], 1);
        if (i >= 2 * half) {
            medians[i - half] = values[byRank[window.at(static_cast<int>(half))]];
            window.add(ranks[i - 2 * half], -1);
        }
    }
    return medians;
}

} // namespace KxInspect::detail
