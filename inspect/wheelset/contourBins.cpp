// A cross-section in steps along its contour.
#include "inspect/wheelset/contourBins.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace KxInspect::detail {

namespace {

constexpr double kHalf = std::numbers::sqrt2 / 2.0;
constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise

/// The points by their steps: those of step i are order[first[i]] to order[first[i + 1] - 1].
struct Grouped {
    std::vector<std::size_t> first;
    std::vector<std::size_t> order;
};

Grouped groupByBin(const std::vector<BinnedPoint>& points, std::size_t bins) {
    Grouped grouped;
    grouped.first.assign(bins + 1, 0);
    for (const BinnedPoint& p : points) {
        ++grouped.first[p.bin + 1];
    }
    for (std::size_t i = 0; i < bins; ++i) {
        grouped.first[i + 1] += grouped.first[i];
    }
    std::vector<std::size_t> next = grouped.first;
    grouped.order.resize(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        grouped.order[next[points[i].bin]++] = i;
    }
    return grouped;
}

/// The slope of a step from its seen neighbours.
double slopeAt(const ContourGrid& grid, const std::vector<ContourBin>& bins, std::size_t i) {
    const auto isUsable = [&](std::size_t k) {
        return k < bins.size() && bins[k].isSeen() && grid.isBackBin(k) == grid.isBackBin(i);
    };
    const std::size_t before = isUsable(i - 1) ? i - 1 : i; // wraps below 0: not usable
    const std::size_t behind = isUsable(i + 1) ? i + 1 : i;
    return before == behind ? 0.0 : (bins[behind].off - bins[before].off) / (bins[behind].along - bins[before].along);
}

int profilesIn(const Grouped& grouped, const std::vector<BinnedPoint>& points, std::size_t bin) {
    int count = 0;
    int last = -1; // points come profile by profile
    for (std::size_t k = grouped.first[bin]; k < grouped.first[bin + 1]; ++k) {
        const int profile = points[grouped.order[k]].profile;
        count += profile != last ? 1 : 0;
        last = profile;
    }
    return count;
}

} // namespace

ContourCoordinates ContourGrid::placeOf(const TurnedPoint& p, bool isBack) const {
    return stepOf(p.across - tip, p.radius - highest, isBack);
}

ContourCoordinates ContourGrid::stepOf(double across, double radius, bool isBack) {
    return isBack ? ContourCoordinates{kHalf * (across + radius), kHalf * (radius - across)}
                  : ContourCoordinates{kHalf * (across - radius), kHalf * (across + radius)};
}

TurnedPoint ContourGrid::pointAt(const ContourCoordinates& place, bool isBack) const {
    return isBack ? TurnedPoint{tip + kHalf * (place.along - place.off), highest + kHalf * (place.along + place.off)}
                  : TurnedPoint{tip + kHalf * (place.along + place.off), highest + kHalf * (place.off - place.along)};
}

std::size_t ContourGrid::backBins() const {
    return static_cast<std::size_t>(kHalf * (kInwards + kDown + kBeyond) / step) + 2;
}

std::size_t ContourGrid::bins() const {
    return backBins() + static_cast<std::size_t>(kHalf * (kOutwards + kDown + kBeyond) / step) + 2;
}

std::size_t ContourGrid::binOf(double along, bool isBack) const {
    const double from = isBack ? -kHalf * (kInwards + kDown) : -kHalf * kBeyond;
    const auto bin = static_cast<std::size_t>(std::max(0.0, (along - from) / step));
    return isBack ? std::min(bin, backBins() - 1) : std::min(backBins() + bin, bins() - 1);
}

std::vector<ContourBin> medianContour(const ContourGrid& grid, const std::vector<BinnedPoint>& points, int fewest) {
    std::vector<ContourBin> bins(grid.bins());
    const Grouped grouped = groupByBin(points, bins.size());
    std::vector<double> values;
    constexpr int kRounds = 2; // first without the slopes
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t i = 0; i < bins.size(); ++i) {
            ContourBin& bin = bins[i];
            bin.slope = round > 0 && bin.isSeen() ? slopeAt(grid, bins, i) : 0.0;
        }
        for (std::size_t i = 0; i < bins.size(); ++i) {
            ContourBin& bin = bins[i];
            if (round == 0) {
                bin.points = static_cast<int>(grouped.first[i + 1] - grouped.first[i]);
                bin.profiles = bin.points < fewest ? 0 : profilesIn(grouped, points, i);
                bin.profiles = bin.profiles < fewest ? 0 : bin.profiles;
                for (std::size_t k = grouped.first[i]; k < grouped.first[i + 1]; ++k) {
                    bin.along += points[grouped.order[k]].place.along / bin.points;
                }
            }
            if (!bin.isSeen()) {
                continue;
            }
            values.clear();
            for (std::size_t k = grouped.first[i]; k < grouped.first[i + 1]; ++k) {
                const ContourCoordinates& place = points[grouped.order[k]].place;
                values.push_back(place.off - bin.slope * (place.along - bin.along));
            }
            bin.off = medianInPlace(values);
            if (round == kRounds - 1) {
                for (double& value : values) {
                    value = std::abs(value - bin.off);
                }
                bin.scatter = kNormal * medianInPlace(values);
            }
        }
    }
    return bins;
}

} // namespace KxInspect::detail
