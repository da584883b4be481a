// Which wheel of one recording belongs to which of the other.
#include "inspect/train/pairing.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

/// Half the smallest gap between neighbours.
double reachOf(const std::vector<double>& first, const std::vector<double>& second) {
    double smallest = std::numeric_limits<double>::infinity();
    for (const auto* const places : {&first, &second}) {
        for (size_t i = 1; i < places->size(); ++i) {
            smallest = std::min(smallest, (*places)[i] - (*places)[i - 1]);
        }
    }
    return smallest / 2;
}

/// How much further on a wheel is in the second recording than in the first.
double findShift(const std::vector<double>& first, const std::vector<double>& second, double reach) {
    constexpr size_t kMostVoters = 2000; // the cost grows with the square
    std::vector<double> shifts;
    for (size_t i = 0; i < std::min(first.size(), kMostVoters); ++i) {
        for (size_t j = 0; j < std::min(second.size(), kMostVoters); ++j) {
            shifts.push_back(second[j] - first[i]);
        }
    }
    std::sort(shifts.begin(), shifts.end());
    double best = 0.0;
    size_t bestCount = 0;
    for (size_t from = 0, to = 0; from < shifts.size(); ++from) {
        while (to < shifts.size() && shifts[to] - shifts[from] <= reach) {
            ++to;
        }
        const double middle = shifts[from + (to - from) / 2];
        const size_t count = to - from;
        if (count > bestCount || (count == bestCount && std::abs(middle) < std::abs(best))) {
            best = middle;
            bestCount = count;
        }
    }
    return best;
}

} // namespace

std::vector<PairedWheels> pairByNumber(size_t firstCount, size_t secondCount) {
    std::vector<PairedWheels> pairs;
    for (size_t i = 0; i < std::max(firstCount, secondCount); ++i) {
        pairs.push_back(
            {i < firstCount ? std::optional(i) : std::nullopt, i < secondCount ? std::optional(i) : std::nullopt});
    }
    return pairs;
}

std::vector<PairedWheels> pairByPlace(const std::vector<double>& first, const std::vector<double>& second) {
    const double reach = reachOf(first, second);
    const double shift = findShift(first, second, reach);
    std::vector<PairedWheels> pairs;
    size_t i = 0;
    size_t j = 0;
    while (i < first.size() || j < second.size()) {
        if (j == second.size()) {
            pairs.push_back({i++, std::nullopt});
            continue;
        }
        if (i == first.size()) {
            pairs.push_back({std::nullopt, j++});
            continue;
        }
        const double apart = second[j] - first[i] - shift;
        if (std::abs(apart) <= reach) {
            pairs.push_back({i++, j++});
        } else if (apart > 0.0) {
            pairs.push_back({i++, std::nullopt});
        } else {
            pairs.push_back({std::nullopt, j++});
        }
    }
    return pairs;
}

} // namespace KxInspect::detail
