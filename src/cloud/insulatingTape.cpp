// Finding a tape that is higher than the rough surface under it.
#include "KxMath/KxPointCloud.h"

#include "geometry/robustLine.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace KxMath {

namespace {

using detail::heightsAbove;
using detail::RobustLine;

constexpr std::size_t kMinSlabPoints = 16;
constexpr std::size_t kMinRunPoints = 5;
constexpr std::size_t kHalfWindow = 4; // of the running median

/// The surface under the tape.
struct Base {
    RobustLine line;
    double roughness = 0.0; ///< standard deviation
};

/// Where a third of the values lies closest together.
struct DenseThird {
    double center;
    double sigma; ///< the standard deviation of normally distributed values with such a third
};

/// The lowest third that is nearly as dense as the densest: a tape lies above the surface and may be as dense.
DenseThird lowestDenseThird(std::vector<double> values) {
    constexpr double kNearlyAsDense = 1.5;
    constexpr double kThirdOfNormal = 0.8615; // width of the middle third of a normal distribution of sigma 1
    constexpr double kMinSigma = 1e-4; // below the resolution of the sensors
    std::sort(values.begin(), values.end());
    const std::size_t span = values.size() / 3;
    const auto width = [&](std::size_t i) { return values[i + span] - values[i]; };
    double densest = width(0);
    for (std::size_t i = 1; i + span < values.size(); ++i) {
        densest = std::min(densest, width(i));
    }
    const double sigma = std::max(densest / kThirdOfNormal, kMinSigma);
    std::size_t lowest = 0;
    while (width(lowest) > std::max(densest * kNearlyAsDense, kMinSigma)) {
        ++lowest;
    }
    return {values[lowest] + 0.5 * width(lowest), sigma};
}

/// The least-squares line through the points at most `tolerance` away from `line`; `line` where they share one x.
RobustLine refitted(const std::vector<KxPointXY>& points, const RobustLine& line, double tolerance) {
    double n = 0.0;
    double sumX = 0.0;
    double sumH = 0.0;
    double sumXX = 0.0;
    double sumXH = 0.0;
    const double originX = static_cast<double>(points[points.size() / 2].x); // near the points, for the precision
    for (const KxPointXY& p : points) {
        const double height = line.heightOf(p);
        if (std::abs(height) <= tolerance) {
            const double x = static_cast<double>(p.x) - originX;
            n += 1.0;
            sumX += x;
            sumH += height;
            sumXX += x * x;
            sumXH += x * height;
        }
    }
    const double determinant = n * sumXX - sumX * sumX;
    if (!(determinant > 0.0)) {
        return line;
    }
    const double slope = (n * sumXH - sumX * sumH) / determinant;
    const double offset = (sumH - slope * sumX) / n;
    return {line.k + slope, line.b + offset - slope * originX};
}

/// The slope, among those between points of `sample` some way apart, about which 40 % of the points lie closest
/// together.
double steadiestSlope(const std::vector<KxPointXY>& sample) {
    const std::size_t span = sample.size() * 2 / 5;
    double bestSlope = 0.0;
    double bestWidth = std::numeric_limits<double>::infinity();
    for (const std::size_t part : {4U, 3U, 2U}) {
        const std::size_t distance = sample.size() / part;
        for (std::size_t i = 0; i + distance < sample.size(); ++i) {
            const KxPointXY& p = sample[i];
            const KxPointXY& q = sample[i + distance];
            const double dx = static_cast<double>(q.x) - static_cast<double>(p.x);
            if (!(dx > 0.0)) {
                continue;
            }
            const double slope = (static_cast<double>(q.y) - static_cast<double>(p.y)) / dx;
            std::vector<double> heights = heightsAbove({slope, 0.0}, sample);
            std::sort(heights.begin(), heights.end());
            for (std::size_t k = 0; k + span < heights.size(); ++k) {
                if (heights[k + span] - heights[k] < bestWidth) {
                    bestWidth = heights[k + span] - heights[k];
                    bestSlope = slope;
                }
            }
        }
    }
    return bestSlope;
}

Base fitBase(const std::vector<KxPointXY>& points) {
    constexpr std::size_t kMaxSample = 96; // the first slope takes the square of them
    constexpr int kRounds = 8;
    constexpr double kInliers = 2.5; // standard deviations
    const std::size_t stride = (points.size() + kMaxSample - 1) / kMaxSample;
    std::vector<KxPointXY> sample;
    for (std::size_t i = 0; i < points.size(); i += stride) {
        sample.push_back(points[i]);
    }
    Base base;
    base.line.k = steadiestSlope(sample);
    base.line.b = lowestDenseThird(heightsAbove(base.line, points)).center;
    for (int round = 0; round < kRounds; ++round) {
        base.roughness = lowestDenseThird(heightsAbove(base.line, points)).sigma;
        base.line = refitted(points, base.line, kInliers * base.roughness);
    }
    return base;
}

std::vector<double> runningMedians(const std::vector<double>& values) {
    std::vector<double> medians;
    medians.reserve(values.size());
    std::vector<double> window;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t begin = i - std::min(i, kHalfWindow);
        const std::size_t end = std::min(i + kHalfWindow + 1, values.size());
        window.assign(values.begin() + static_cast<std::ptrdiff_t>(begin),
                      values.begin() + static_cast<std::ptrdiff_t>(end));
        medians.push_back(detail::medianOf(window));
    }
    return medians;
}

/// The heights of the tape, inclusive; NaN is no bound.
struct Band {
    double min;
    double max;

    bool holds(double height, double tolerance) const {
        return !(height < min - tolerance) && !(height > max + tolerance); // NaN: no bound
    }
};

/// Indices from `begin` up to, not including, `end`.
struct Run {
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t length() const { return end - begin; }
};

/// The longest run whose running median is within the band.
Run longestRun(const std::vector<double>& heights, const Band& band, double roughness) {
    const double tolerance = 1.25 * roughness; // three standard deviations of a median of 9
    const std::vector<double> medians = runningMedians(heights);
    Run longest;
    for (std::size_t i = 0; i < medians.size();) {
        Run run{i, i};
        while (run.end < medians.size() && band.holds(medians[run.end], tolerance)) {
            ++run.end;
        }
        if (run.length() > longest.length()) {
            longest = run;
        }
        i = run.end + 1;
    }
    // Near its ends a run may have lost the median to the surface beside it.
    for (std::size_t k = 0; k < kHalfWindow && longest.length() > 0; ++k) {
        longest.begin -= longest.begin > 0 && band.holds(heights[longest.begin - 1], 0.0) ? 1 : 0;
        longest.end += longest.end < heights.size() && band.holds(heights[longest.end], 0.0) ? 1 : 0;
    }
    return longest;
}

/// The indices of the points of the tape in a slab whose points are ordered by x.
std::vector<std::size_t> findTape(const std::vector<KxPointXY>& points, const Band& band) {
    std::vector<std::size_t> tape;
    if (points.size() < kMinSlabPoints) {
        return tape;
    }
    const Base base = fitBase(points);
    const std::vector<double> heights = heightsAbove(base.line, points);
    const Run run = longestRun(heights, band, base.roughness);
    for (std::size_t i = run.begin; i < run.end; ++i) {
        if (band.holds(heights[i], 3.0 * base.roughness)) {
            tape.push_back(i);
        }
    }
    if (tape.size() < kMinRunPoints) {
        tape.clear();
    }
    return tape;
}

/// A point in its slab.
struct SlabPoint {
    double slab;
    KxPointXYZ p;
};

bool isFinite(const KxPointXYZ& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// The finite points, slab by slab and by rising x in each.
std::vector<SlabPoint> orderedBySlab(const QList<KxPointXYZ>& points, float step) {
    float minZ = detail::kNaN;
    for (const KxPointXYZ& p : points) {
        if (isFinite(p)) {
            minZ = p.z < minZ || std::isnan(minZ) ? p.z : minZ;
        }
    }
    std::vector<SlabPoint> ordered;
    ordered.reserve(static_cast<std::size_t>(points.size()));
    for (const KxPointXYZ& p : points) {
        if (isFinite(p)) {
            const double distance = static_cast<double>(p.z) - static_cast<double>(minZ);
            ordered.push_back({std::floor(distance / static_cast<double>(step)), p});
        }
    }
    std::stable_sort(ordered.begin(), ordered.end(), [](const SlabPoint& a, const SlabPoint& b) {
        return a.slab < b.slab || (a.slab == b.slab && a.p.x < b.p.x);
    });
    return ordered;
}

} // namespace

int KxPointCloud<KxPointXYZ>::extractInsulatingTape(KxPointCloud<KxPointXYZ>& tape, float step, float minHeight,
                                                    float maxHeight) {
    if (!(step > 0.0f)) { // NaN: true
        return 0;
    }
    const Band band{static_cast<double>(minHeight), static_cast<double>(maxHeight)};
    const std::vector<SlabPoint> ordered = orderedBySlab(points, step);
    std::vector<KxPointXY> slab;
    int count = 0;
    for (std::size_t begin = 0; begin < ordered.size(); begin += slab.size()) {
        slab.clear();
        for (std::size_t i = begin; i < ordered.size() && ordered[i].slab == ordered[begin].slab; ++i) {
            slab.push_back(KxPointXY(ordered[i].p.x, ordered[i].p.y));
        }
        for (const std::size_t i : findTape(slab, band)) {
            tape.points.append(ordered[begin + i].p);
            ++count;
        }
    }
    if (count > 0) {
        tape.zIndexBuilt = 0;
    }
    return count;
}

} // namespace KxMath
