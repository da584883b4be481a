// Which wheel of one recording belongs to which of the other, by the gaps between them.
#include "inspect/train/gapAlignment.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace KxInspect::detail {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kSkip = 12.0; // 3.5 squared; for a wheel without partner
constexpr double kMostGapCost = 50.0; // a recording that paused on one side only is worth four missed wheels
constexpr double kMostShiftCost = 40.0; // more than that both wheels have no partner
constexpr double kDoubt = 2.0 * kSkip + 2.0; // an axle that one sensor missed first, the other one last
constexpr std::size_t kMostSkipped = 8; // in a row, between two pairs
constexpr std::size_t kMostWheels = 2000; // memory and time grow with the square

/// Two wheels that an alignment joins.
struct Joined {
    std::size_t i;
    std::size_t j;
    bool isDoubtful;
};

/// The costs of all alignments of two sequences of wheels.
class Alignment {
public:
    Alignment(const RecordedWheels& first, const RecordedWheels& second)
        : first_(first), second_(second), rows_(first.middles.size()), columns_(second.middles.size()),
          band_(kMostApart + (rows_ > columns_ ? rows_ - columns_ : columns_ - rows_)) {
        isAlongside_ = runAlongside(first, second);
        length_ = std::max(first.length, second.length);
        smallestGap_ = kInfinity;
        for (const auto* const side : {&first.middles, &second.middles}) {
            for (std::size_t i = 1; i < side->size(); ++i) {
                smallestGap_ = std::min(smallestGap_, (*side)[i] - (*side)[i - 1]);
            }
        }
        fill();
    }

    /// The cheapest alignment.
    std::vector<Joined> cheapest() const {
        std::vector<Joined> result;
        double least = kSkip * static_cast<double>(rows_ + columns_); // none joined
        std::size_t next = before_.size();
        for (std::size_t i = 0; i < rows_; ++i) {
            for (std::size_t j = 0; j < columns_; ++j) {
                const double cost = kSkip * static_cast<double>(i + j) + joined(i, j) + behind_[at(i, j)];
                next = cost < least ? at(i, j) : next;
                least = std::min(least, cost);
            }
        }
        while (next < before_.size()) {
            const std::size_t i = next / columns_;
            const std::size_t j = next % columns_;
            result.push_back({i, j, rival(i, j) < least + kDoubt});
            next = follower(i, j).next;
        }
        return result;
    }

private:
    static constexpr std::size_t kMostApart = 64; ///< in the numbers of joined wheels

    std::size_t at(std::size_t i, std::size_t j) const { return i * columns_ + j; }
    bool isInBand(std::size_t i, std::size_t j) const { return (i > j ? i - j : j - i) <= band_; }

    /// What joining two wheels costs by itself.
    double joined(std::size_t i, std::size_t j) const {
        const double apart = 6.0 * std::abs(first_.middles[i] - second_.middles[j]) / smallestGap_;
        return isAlongside_ ? std::min(apart * apart, kMostShiftCost) : 0.0;
    }

    /// What it costs that two pairs follow each other, wheels of one side between them included.
    double step(std::size_t i, std::size_t j, std::size_t nextI, std::size_t nextJ) const {
        const double gap1 = first_.middles[nextI] - first_.middles[i];
        const double gap2 = second_.middles[nextJ] - second_.middles[j];
        const auto missed1 = static_cast<double>(nextJ - j - 1); // by the first sensor, or
        const auto missed2 = static_cast<double>(nextI - i - 1); // by the second one
        const double left1 = kTriggered * length_ * missed1; // records that the first recording may leave out
        const double left2 = kTriggered * length_ * missed2;
        const double off = std::max({0.0, gap2 - gap1 - left1, gap1 - gap2 - left2});
        const double allowed = 2.0 + 0.02 * std::max(gap1, gap2);
        return std::min(off * off / (allowed * allowed), kMostGapCost) + kSkip * (missed1 + missed2);
    }

    void fill() {
        before_.assign(rows_ * columns_, kInfinity);
        behind_.assign(rows_ * columns_, kInfinity);
        for (std::size_t i = 0; i < rows_; ++i) {
            for (std::size_t j = 0; j < columns_; ++j) {
                if (isInBand(i, j)) {
                    before_[at(i, j)] = joined(i, j) + cheapestBefore(i, j);
                }
            }
        }
        for (std::size_t i = rows_; i-- > 0;) {
            for (std::size_t j = columns_; j-- > 0;) {
                if (isInBand(i, j)) {
                    behind_[at(i, j)] = follower(i, j).cost;
                }
            }
        }
    }

    double cheapestBefore(std::size_t i, std::size_t j) const {
        double least = kSkip * static_cast<double>(i + j); // the first pair
        for (std::size_t a = 1; a <= std::min(i, kMostSkipped); ++a) {
            for (std::size_t b = 1; b <= std::min(j, kMostSkipped); ++b) {
                least = std::min(least, before_[at(i - a, j - b)] + step(i - a, j - b, i, j));
            }
        }
        return least;
    }

    /// The cost of the best alignment that joins two wheels; infinite where there is none.
    double through(std::size_t i, std::size_t j) const { return before_[at(i, j)] + behind_[at(i, j)]; }

    /// The cost of the best alignment that joins one of two wheels with another.
    double rival(std::size_t i, std::size_t j) const {
        double least = kInfinity;
        for (std::size_t other = 0; other < columns_; ++other) {
            least = other != j ? std::min(least, through(i, other)) : least;
        }
        for (std::size_t other = 0; other < rows_; ++other) {
            least = other != i ? std::min(least, through(other, j)) : least;
        }
        return least;
    }

    /// What comes behind a pair in the cheapest alignment.
    struct Rest {
        std::size_t next; ///< the pair that follows; the number of cells when there is none
        double cost;
    };

    Rest follower(std::size_t i, std::size_t j) const {
        std::size_t next = before_.size();
        double least = kSkip * static_cast<double>(rows_ - i - 1 + columns_ - j - 1);
        for (std::size_t a = 1; a <= std::min(rows_ - i - 1, kMostSkipped); ++a) {
            for (std::size_t b = 1; b <= std::min(columns_ - j - 1, kMostSkipped); ++b) {
                const double cost = behind_[at(i + a, j + b)] + step(i, j, i + a, j + b) + joined(i + a, j + b);
                next = cost < least ? at(i + a, j + b) : next;
                least = std::min(least, cost);
            }
        }
        return {next, least};
    }

    static constexpr double kTriggered = 1.5; ///< lengths of a wheel, with what is recorded before and behind it

    const RecordedWheels& first_;
    const RecordedWheels& second_;
    std::size_t rows_;
    std::size_t columns_;
    std::size_t band_;
    bool isAlongside_ = false;
    double length_ = 0.0;
    double smallestGap_ = 0.0;
    std::vector<double> before_; ///< of the cheapest alignment up to a pair, that included
    std::vector<double> behind_; ///< of the rest
};

} // namespace

bool runAlongside(const RecordedWheels& first, const RecordedWheels& second) {
    const double more = std::max(first.records, second.records);
    const double less = std::min(first.records, second.records);
    return more - less <= 0.01 * more + 3.0;
}

namespace {

/// A single wheel on each side: no gap tells whether they belong together, but the moment may.
std::vector<Joined> joinSingle(const RecordedWheels& first, const RecordedWheels& second) {
    const double apart = std::abs(first.middles[0] - second.middles[0]);
    const bool isAtOnce = runAlongside(first, second) && apart <= std::max(first.length, second.length) / 2.0;
    return {{0, 0, !isAtOnce}};
}

} // namespace

Pairing pairByGaps(const RecordedWheels& first, const RecordedWheels& second) {
    const std::size_t rows = first.middles.size();
    const std::size_t columns = second.middles.size();
    Pairing result;
    std::vector<Joined> joined;
    if (rows == 1 && columns == 1) {
        joined = joinSingle(first, second);
    } else if (std::max(rows, columns) > kMostWheels) {
        result.doubt = "more than " + std::to_string(kMostWheels) + " wheels are paired by place only";
        for (std::size_t i = 0; i < std::min(rows, columns); ++i) {
            joined.push_back({i, i, true});
        }
    } else {
        joined = Alignment(first, second).cheapest();
    }
    std::size_t i = 0;
    std::size_t j = 0;
    const auto skipTo = [&](std::size_t nextI, std::size_t nextJ) {
        // What is between two pairs has no other order.
        for (; i < nextI; ++i) {
            result.pairs.push_back({{i, std::nullopt}});
        }
        for (; j < nextJ; ++j) {
            result.pairs.push_back({{std::nullopt, j}});
        }
    };
    for (const Joined& next : joined) {
        skipTo(next.i, next.j);
        result.pairs.push_back({{i++, j++}, next.isDoubtful});
        if (next.isDoubtful && result.doubt.empty()) {
            result.doubt =
                "it is not clear which wheels belong together: the gaps between them fit in more than one way";
        }
    }
    skipTo(rows, columns);
    return result;
}

} // namespace KxInspect::detail
