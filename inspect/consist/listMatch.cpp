// Axles of a pass matched to those of a list by their spacing.
#include "inspect/consist/listMatch.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace KxInspect::detail {

namespace {

constexpr double kNone = std::numeric_limits<double>::infinity();
constexpr double kMissed = 10.0; // an axle of the list that was not seen
constexpr double kExtra = 14.0; // an axle of the pass that is not in the list
constexpr double kBroken = 30.0; // a spacing that does not fit
constexpr double kError = 25.0; // mm, of a spacing
constexpr double kPartError = 0.005; // of it
constexpr double kMostErrors = 5.0; // that a spacing which fits is off
constexpr std::size_t kMostSkipped = 8; // axles of the list between two that fit
constexpr std::size_t kMostExtra = 2; // of the pass

/// Both rows at one scale, with the costs of all ways to and from each pair of axles.
class Alignment {
public:
    Alignment(const std::vector<double>& seen, const std::vector<double>& listed, double scale)
        : seen_(seen), listed_(listed), scale_(scale) {
        fillForward();
        fillBackward();
    }

    double cost() const { return cost_; }

    std::vector<std::optional<std::size_t>> partners() const {
        std::vector<std::optional<std::size_t>> result(seen_.size());
        for (Cell at = last_; at.isSet; at = cameFrom_[at.seen][at.listed]) {
            result[at.seen] = at.listed;
        }
        return result;
    }

    std::vector<std::vector<double>> through() const {
        std::vector<std::vector<double>> result = to_;
        for (std::size_t i = 0; i < seen_.size(); ++i) {
            for (std::size_t j = 0; j < listed_.size(); ++j) {
                result[i][j] += from_[i][j];
            }
        }
        return result;
    }

private:
    struct Cell {
        bool isSet = false;
        std::size_t seen = 0;
        std::size_t listed = 0;
    };
    using Table = std::vector<std::vector<double>>;

    Table table() const { return Table(seen_.size(), std::vector<double>(listed_.size(), kNone)); }

    /// The cost of two pairs of axles that follow each other; infinity when their spacing does not fit.
    double link(std::size_t i, std::size_t j, std::size_t nextI, std::size_t nextJ) const {
        const double listed = scale_ * (listed_[nextJ] - listed_[j]);
        const double errors = (seen_[nextI] - seen_[i] - listed) / (kError + kPartError * listed);
        return std::abs(errors) <= kMostErrors ? errors * errors + skipped(nextI - i - 1, nextJ - j - 1) : kNone;
    }

    static double skipped(std::size_t seen, std::size_t listed) {
        return kExtra * static_cast<double>(seen) + kMissed * static_cast<double>(listed);
    }

    void fillForward() {
        to_ = table();
        cameFrom_.assign(seen_.size(), std::vector<Cell>(listed_.size()));
        for (std::size_t i = 0; i < seen_.size(); ++i) {
            double broken = kNone; // the cheapest way that ends at the axle before, plus what is skipped since
            Cell breakAt;
            for (std::size_t j = 0; j < listed_.size(); ++j) {
                double& cost = to_[i][j];
                cost = skipped(i, j);
                Cell& from = cameFrom_[i][j];
                if (broken + kBroken < cost) {
                    cost = broken + kBroken;
                    from = breakAt;
                }
                for (std::size_t di = 1; di <= std::min(i, kMostExtra + 1); ++di) {
                    for (std::size_t dj = 1; dj <= std::min(j, kMostSkipped + 1); ++dj) {
                        const double next = to_[i - di][j - dj] + link(i - di, j - dj, i, j);
                        if (next < cost) {
                            cost = next;
                            from = {true, i - di, j - dj};
                        }
                    }
                }
                broken += kMissed;
                if (i > 0 && to_[i - 1][j] < broken) {
                    broken = to_[i - 1][j];
                    breakAt = {true, i - 1, j};
                }
                const double whole = cost + skipped(seen_.size() - 1 - i, listed_.size() - 1 - j);
                if (whole < cost_) {
                    cost_ = whole;
                    last_ = {true, i, j};
                }
            }
        }
    }

    void fillBackward() {
        from_ = table();
        for (std::size_t i = seen_.size(); i-- > 0;) {
            double broken = kNone;
            for (std::size_t j = listed_.size(); j-- > 0;) {
                double& cost = from_[i][j];
                cost = std::min(skipped(seen_.size() - 1 - i, listed_.size() - 1 - j), broken + kBroken);
                for (std::size_t di = 1; di <= std::min(seen_.size() - 1 - i, kMostExtra + 1); ++di) {
                    for (std::size_t dj = 1; dj <= std::min(listed_.size() - 1 - j, kMostSkipped + 1); ++dj) {
                        cost = std::min(cost, from_[i + di][j + dj] + link(i, j, i + di, j + dj));
                    }
                }
                broken += kMissed;
                broken = i + 1 < seen_.size() ? std::min(broken, from_[i + 1][j]) : kNone;
            }
        }
    }

    const std::vector<double>& seen_;
    const std::vector<double>& listed_;
    double scale_;
    Table to_, from_;
    std::vector<std::vector<Cell>> cameFrom_;
    double cost_ = kNone;
    Cell last_;
};

/// Scales that many spacings of both rows agree with, and 1.
std::vector<double> likelyScales(const std::vector<double>& seen, const std::vector<double>& listed) {
    constexpr double kStep = 0.004; // of the logarithm
    constexpr double kMost = 1.25;
    constexpr std::size_t kCount = 10;
    std::map<int, int> votes;
    for (std::size_t i = 1; i < seen.size(); ++i) {
        for (std::size_t j = 1; j < listed.size(); ++j) {
            const double ratio = (seen[i] - seen[i - 1]) / (listed[j] - listed[j - 1]);
            if (ratio >= 1.0 / kMost && ratio <= kMost) {
                ++votes[static_cast<int>(std::lround(std::log(ratio) / kStep))];
            }
        }
    }
    std::vector<std::pair<int, int>> bins;
    bins.reserve(votes.size());
    for (const auto& [bin, count] : votes) {
        bins.push_back({-count, bin});
    }
    std::sort(bins.begin(), bins.end());
    std::vector<double> scales = {1.0};
    for (std::size_t i = 0; i < std::min(bins.size(), kCount); ++i) {
        scales.push_back(std::exp(kStep * bins[i].second));
    }
    return scales;
}

/// The scale by which the places of all partners fit best, by least squares: x = a + scale y.
double fittedScale(const std::vector<double>& seen, const std::vector<double>& listed,
                   const std::vector<std::optional<std::size_t>>& partners, double otherwise) {
    double n = 0.0, sx = 0.0, sy = 0.0, syy = 0.0, sxy = 0.0;
    for (std::size_t i = 0; i < seen.size(); ++i) {
        if (partners[i]) {
            const double y = listed[*partners[i]];
            n += 1.0;
            sx += seen[i];
            sy += y;
            syy += y * y;
            sxy += seen[i] * y;
        }
    }
    const double width = n * syy - sy * sy;
    const double scale = width > 0.0 ? (n * sxy - sx * sy) / width : otherwise;
    return scale > 0.0 ? scale : otherwise;
}

} // namespace

ListMatch matchAxles(const std::vector<double>& seen, const std::vector<double>& listed) {
    constexpr int kRounds = 2;
    constexpr double kMostChange = 1.01; // of the scale by a fit: a break in the list is no scale
    ListMatch best;
    best.cost = kNone;
    for (const double likely : likelyScales(seen, listed)) {
        double scale = likely;
        for (int round = 0; round <= kRounds; ++round) {
            const Alignment alignment(seen, listed, scale);
            const std::vector<std::optional<std::size_t>> partners = alignment.partners();
            if (alignment.cost() < best.cost) {
                best = {partners, alignment.cost(), scale, alignment.through()};
            }
            const double fitted = fittedScale(seen, listed, partners, scale);
            scale = std::clamp(fitted, likely / kMostChange, likely * kMostChange);
        }
    }
    return best;
}

} // namespace KxInspect::detail
