// Where the flanks of the calibration object are in a profile.
#include "inspect/calibrate/flankSearch.h"

#include "inspect/fitting/median.h"
#include "inspect/fitting/runningMedian.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>
#include <span>

namespace KxInspect::detail {

namespace {

constexpr std::size_t kCornerCount = kFlankCount + 1;

/// The points with the median of y over a window about each, which leaves straight parts as they are and removes
/// outliers that are fewer than half of a window.
/// @param half points on either side
std::vector<ReadPoint> withoutSpikes(const std::vector<ReadPoint>& points, std::size_t half) {
    std::vector<double> heights;
    heights.reserve(points.size());
    for (const ReadPoint& p : points) {
        heights.push_back(p.y);
    }
    const std::vector<double> medians = runningMedian(heights, half);
    std::vector<ReadPoint> smooth = points;
    for (std::size_t i = 0; i < points.size(); ++i) {
        smooth[i].y = medians[i];
    }
    return smooth;
}

/// The corners of the polyline that stays within `tolerance` along y of all points (U. Ramer, An iterative procedure for
/// the polygonal approximation of plane curves, 1972), ends included.
std::vector<std::size_t> cornersOf(const std::vector<ReadPoint>& points, double tolerance) {
    constexpr std::size_t kMost = 100; // a profile with more is not one of the object, and would take long
    std::vector<std::size_t> corners = {0};
    // Of the parts behind the last corner, the next one at the back.
    std::vector<std::size_t> ends = {points.size() - 1};
    while (!ends.empty() && corners.size() + ends.size() <= kMost) {
        const ReadPoint& a = points[corners.back()];
        const ReadPoint& b = points[ends.back()];
        std::size_t farthest = ends.back();
        double largest = tolerance;
        for (std::size_t i = corners.back() + 1; i < ends.back(); ++i) {
            const double part = (points[i].x - a.x) / (b.x - a.x); // NaN where all are at one x: no corner
            const double distance = std::abs(points[i].y - a.y - part * (b.y - a.y));
            if (distance > largest) {
                largest = distance;
                farthest = i;
            }
        }
        if (farthest == ends.back()) {
            corners.push_back(farthest);
            ends.pop_back();
        } else {
            ends.push_back(farthest);
        }
    }
    corners.insert(corners.end(), ends.rbegin(), ends.rend());
    return corners;
}

using Corners = std::array<ReadPoint, kCornerCount>;

/// True when nine corners may be valley, crest, valley and so on: each valley behind the line from crest to crest by
/// half of its depth at least, and the straight crests about equally far apart.
bool mayBeRidges(const Corners& corners, double depth) {
    constexpr double kMaxInequality = 0.25;
    constexpr double kLeastPart = 0.5;
    for (std::size_t valley = 2; valley + 2 < kCornerCount; valley += 2) {
        const ReadPoint& a = corners[valley - 1];
        const ReadPoint& b = corners[valley + 1];
        const double part = (corners[valley].x - a.x) / (b.x - a.x);
        if (!(corners[valley].y > a.y + part * (b.y - a.y) + kLeastPart * depth)) {
            return false;
        }
    }
    const double first = corners[3].x - corners[1].x;
    const double second = corners[5].x - corners[3].x;
    return std::abs(first - second) <= kMaxInequality * first;
}

/// Least squares of a line through points near an origin.
class LineSums {
public:
    void add(double x, double y) {
        n_ += 1.0;
        x_ += x;
        y_ += y;
        xx_ += x * x;
        xy_ += x * y;
    }
    /// Not finite without two places.
    FlankLine line() const {
        const double slope = (n_ * xy_ - x_ * y_) / (n_ * xx_ - x_ * x_);
        return {(y_ - slope * x_) / n_, slope};
    }

private:
    double n_ = 0.0, x_ = 0.0, y_ = 0.0, xx_ = 0.0, xy_ = 0.0;
};

/// The line through the points between two corners, without those near the corners and without outliers. Empty for a
/// flank with fewer than five points.
std::optional<FlankLine> lineBetween(const std::vector<ReadPoint>& points, double from, double to) {
    constexpr double kMargin = 0.15; // part of the width of a flank, at either end
    constexpr std::size_t kFewest = 5;
    constexpr int kRounds = 10;
    const double margin = kMargin * (to - from);
    const auto isBefore = [](const ReadPoint& p, double x) { return p.x < x; };
    const auto begin = std::lower_bound(points.begin(), points.end(), from + margin, isBefore);
    const auto end = std::lower_bound(begin, points.end(), to - margin, isBefore);
    const std::span<const ReadPoint> flank(begin, end);
    if (flank.size() < kFewest) {
        return std::nullopt;
    }
    // The median of the slopes of points half a flank apart, which 29 % of outliers do not spoil.
    std::vector<double> slopes;
    std::vector<double> intercepts;
    for (std::size_t i = 0; i + flank.size() / 2 < flank.size(); ++i) {
        const ReadPoint& other = flank[i + flank.size() / 2];
        slopes.push_back((other.y - flank[i].y) / (other.x - flank[i].x));
    }
    FlankLine line{0.0, median(std::move(slopes))};
    for (const ReadPoint& p : flank) {
        intercepts.push_back(p.y - line.slope * (p.x - from));
    }
    line.intercept = median(std::move(intercepts));
    for (int round = 0; round < kRounds && std::isfinite(line.slope); ++round) {
        const auto distance = [&](const ReadPoint& p) {
            return std::abs(p.y - line.intercept - line.slope * (p.x - from));
        };
        std::vector<double> distances;
        for (const ReadPoint& p : flank) {
            distances.push_back(distance(p));
        }
        const double limit = outlierLimit(std::move(distances));
        LineSums sums;
        for (const ReadPoint& p : flank) {
            if (distance(p) <= limit) {
                sums.add(p.x - from, p.y);
            }
        }
        line = sums.line();
    }
    line.intercept -= line.slope * from;
    return std::isfinite(line.intercept) ? std::optional(line) : std::nullopt;
}

std::optional<FlankLines> linesOf(const std::vector<ReadPoint>& points, const Corners& corners) {
    FlankLines lines{};
    for (std::size_t flank = 0; flank < kFlankCount; ++flank) {
        const auto line = lineBetween(points, corners[flank].x, corners[flank + 1].x);
        if (!line) {
            return std::nullopt;
        }
        lines[flank] = *line;
    }
    return lines;
}

/// Calls `use` with all choices of nine corners out of consecutive ones of which `left` between the ends are left out.
template <typename Use>
void chooseCorners(const std::vector<ReadPoint>& all, std::size_t left, Use use) {
    const std::size_t count = kCornerCount + left;
    const unsigned masks = 1u << (count - 2); // of the corners between the ends, those left out
    for (std::size_t first = 0; first + count <= all.size(); ++first) {
        for (unsigned mask = 0; mask < masks; ++mask) {
            if (static_cast<std::size_t>(std::popcount(mask)) != left) {
                continue;
            }
            Corners nine{};
            std::size_t at = 0;
            for (std::size_t i = 0; i < count; ++i) {
                if (((mask << 1) >> i & 1u) == 0) {
                    nine[at++] = all[first + i];
                }
            }
            use(nine);
        }
    }
}

} // namespace

double outlierLimit(std::vector<double> distances) {
    constexpr double kDeviations = 4.0; // of normal noise one point in 16,000 is further off
    constexpr double kNormal = 1.4826; // from the median of absolute values to the standard deviation
    return kDeviations * std::max(kResolution, kNormal * median(std::move(distances), 0.0));
}

FlankSearch searchFlanks(const std::vector<ReadPoint>& points, double depth) {
    // In y a valley lies at least its depth behind the line between its crests, wherever the sensor looks from.
    constexpr double kTolerance = 0.25; // of that
    constexpr std::size_t kMostLeftOut = 2; // a spike, or a step where a ridge hides another one, makes two corners
    constexpr std::size_t kMostCandidates = 20; // of one window; the likely ones come first
    FlankSearch search;
    if (points.size() < 2) {
        return search;
    }
    // A flank has some eight hundredths of the points: a window of one keeps narrow ones, one of two and a half stands
    // more outliers.
    for (const std::size_t part : {200U, 80U}) {
        const std::vector<ReadPoint> smooth = withoutSpikes(points, std::max<std::size_t>(2, points.size() / part));
        std::vector<ReadPoint> corners;
        for (const std::size_t corner : cornersOf(smooth, kTolerance * depth)) {
            corners.push_back(smooth[corner]);
        }
        search.apexes = std::max(search.apexes, static_cast<int>(corners.size()) - 2);
        const std::size_t most = search.candidates.size() + kMostCandidates;
        for (std::size_t left = 0; left <= kMostLeftOut; ++left) {
            chooseCorners(corners, left, [&](const Corners& nine) {
                if (search.candidates.size() < most && mayBeRidges(nine, depth)) {
                    if (const auto lines = linesOf(points, nine)) {
                        search.candidates.push_back(*lines);
                    }
                }
            });
        }
    }
    return search;
}

} // namespace KxInspect::detail
