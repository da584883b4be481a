// The cross-section of a wheel, merged from what its sensors see.
#include "inspect/wheelset/wheelSection.h"

#include "inspect/fitting/leastSquares.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace KxInspect::detail {

namespace {

constexpr double kLeastScatter = 0.003; // mm; keeps weights defined on perfect data

/// A point of the contour of one sensor.
struct SeenPoint {
    TurnedPoint at;
    double weight;
};

/// What one sensor sees, or the mean of several, in steps of a grid.
struct SeenStep {
    double along = 0.0;
    double off = 0.0;
    double weight = 0.0;

    bool isSeen() const { return weight > 0.0; }
    void add(const ContourCoordinates& place, double more) {
        weight += more;
        along += (place.along - along) * more / weight;
        off += (place.off - off) * more / weight;
    }
};

std::vector<SeenPoint> pointsOf(const TurnedWheel& wheel) {
    std::vector<SeenPoint> points;
    for (std::size_t i = 0; i < wheel.contour.size(); ++i) {
        const ContourBin& bin = wheel.contour[i];
        if (bin.isSeen()) {
            const double scatter = std::max(bin.scatter, kLeastScatter);
            points.push_back(
                {wheel.grid.pointAt({bin.along, bin.off}, wheel.grid.isBackBin(i)), bin.points / (scatter * scatter)});
        }
    }
    return points;
}

void addTo(std::vector<SeenStep>& steps, const ContourGrid& grid, const std::vector<SeenPoint>& points, double radius) {
    for (const SeenPoint& p : points) {
        const TurnedPoint at = {p.at.across, p.at.radius + radius};
        if (grid.holds(at)) {
            const bool isBack = grid.isBack(at);
            const ContourCoordinates place = grid.placeOf(at, isBack);
            steps[grid.binOf(place.along, isBack)].add(place, p.weight);
        }
    }
}

/// By how much the contour of one sensor differs from that of another.
struct Difference {
    double across = std::numeric_limits<double>::quiet_NaN();
    double radius = 0.0;
};

/// The line through the neighbours of a step, at a place along.
std::optional<double> offAt(const std::vector<SeenStep>& steps, std::size_t i, double along, double& slope) {
    if (i == 0 || i + 1 >= steps.size() || !steps[i - 1].isSeen() || !steps[i].isSeen() || !steps[i + 1].isSeen()) {
        return {};
    }
    slope = (steps[i + 1].off - steps[i - 1].off) / (steps[i + 1].along - steps[i - 1].along);
    return steps[i].off + slope * (along - steps[i].along);
}

/// Finds it where both are seen. Without slopes that differ, only the radius.
Difference differenceOf(const ContourGrid& grid, const std::vector<SeenPoint>& points,
                        const std::vector<SeenStep>& steps) {
    constexpr int kFewest = 20; // steps that both see
    constexpr double kFarthest = 1.0; // mm off; more is not the same surface
    LeastSquares<2> both;
    double sum = 0.0;
    double squares = 0.0;
    int count = 0;
    for (const SeenPoint& p : points) {
        if (!grid.holds(p.at)) {
            continue;
        }
        const bool isBack = grid.isBack(p.at);
        const ContourCoordinates place = grid.placeOf(p.at, isBack);
        double slope = 0.0;
        const auto off = offAt(steps, grid.binOf(place.along, isBack), place.along, slope);
        if (!off || std::abs(place.off - *off) > kFarthest) {
            continue;
        }
        const auto effect = [&](double across, double radius) {
            const ContourCoordinates step = ContourGrid::stepOf(across, radius, isBack);
            return step.off - slope * step.along;
        };
        const double perRadius = effect(0.0, 1.0);
        both.add({effect(1.0, 0.0), perRadius}, place.off - *off);
        sum += perRadius * (place.off - *off);
        squares += perRadius * perRadius;
        ++count;
    }
    if (count < kFewest) {
        return {};
    }
    constexpr double kDetermined = 5.0; // steps with 0.01 mm of noise then move the difference across by 0.05 mm
    const auto solved = both.solve();
    const auto covariance = both.inverse();
    const bool isDetermined = solved && covariance && std::sqrt((*covariance)[0][0]) < kDetermined;
    return isDetermined ? Difference{(*solved)[0], (*solved)[1]}
                        : Difference{std::numeric_limits<double>::quiet_NaN(), sum / squares};
}

} // namespace

WheelSection mergedSection(const std::vector<const TurnedWheel*>& wheels, const std::vector<double>& weights,
                           double face) {
    const ContourGrid& grid = wheels.front()->grid;
    std::vector<SeenStep> steps(grid.bins());
    WheelSection section;
    section.highest = grid.highest;
    section.face = face;
    double weight = weights.front();
    double shift = 0.0; // of the radii, from those of the first sensor to the mean
    addTo(steps, grid, pointsOf(*wheels.front()), 0.0);
    section.apart.push_back(0.0);
    for (std::size_t i = 1; i < wheels.size(); ++i) {
        const std::vector<SeenPoint> points = pointsOf(*wheels[i]);
        const Difference difference = differenceOf(grid, points, steps);
        section.apart.push_back(difference.across);
        addTo(steps, grid, points, -difference.radius);
        weight += weights[i];
        shift += (difference.radius - shift) * weights[i] / weight;
    }
    section.highest += shift;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (steps[i].isSeen()) {
            const TurnedPoint at = grid.pointAt({steps[i].along, steps[i].off}, grid.isBackBin(i));
            section.points.push_back(
                {static_cast<float>(at.across - face), static_cast<float>(grid.highest - at.radius)});
        }
    }
    return section;
}

} // namespace KxInspect::detail
