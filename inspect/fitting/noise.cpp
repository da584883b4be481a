// The noise of measured points.
#include "inspect/fitting/noise.h"

#include "inspect/fitting/median.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace KxInspect::detail {

namespace {

using Four = std::array<const Point*, 4>;

/// The third divided difference of the distances from the chord, over the places along it, in units of the standard
/// deviation that noise of 1 mm gives it. NaN where two of the places are equal.
double difference(const Four& points) {
    const double x0 = static_cast<double>(points[0]->x);
    const double y0 = static_cast<double>(points[0]->y);
    double dx = static_cast<double>(points[3]->x) - x0;
    double dy = static_cast<double>(points[3]->y) - y0;
    const double length = std::hypot(dx, dy);
    dx /= length;
    dy /= length;
    std::array<double, 4> along;
    std::array<double, 4> across;
    for (std::size_t i = 0; i < 4; ++i) {
        const double u = static_cast<double>(points[i]->x) - x0;
        const double v = static_cast<double>(points[i]->y) - y0;
        along[i] = dx * u + dy * v;
        across[i] = dx * v - dy * u;
    }
    double sum = 0.0;
    double squares = 0.0;
    for (std::size_t i = 0; i < 4; ++i) {
        double factor = 1.0;
        for (std::size_t k = 0; k < 4; ++k) {
            factor /= k == i ? 1.0 : along[i] - along[k];
        }
        sum += factor * across[i];
        squares += factor * factor;
    }
    return sum / std::sqrt(squares);
}

float ofDeviations(std::size_t points, std::vector<double> deviations) {
    constexpr std::size_t kFewest = 20;
    constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise
    return points < kFewest || deviations.empty() ? std::numeric_limits<float>::quiet_NaN()
                                                  : static_cast<float>(kNormal * median(std::move(deviations)));
}

} // namespace

float noiseAcross(std::span<const Point> contour) {
    std::vector<double> deviations;
    Four last = {};
    std::size_t count = 0;
    for (const Point& point : contour) {
        if (count > 0 && point == *last[3]) {
            continue;
        }
        last = {last[1], last[2], last[3], &point};
        if (++count >= 4) {
            const double deviation = std::abs(difference(last));
            if (std::isfinite(deviation)) {
                deviations.push_back(deviation);
            }
        }
    }
    return ofDeviations(count, std::move(deviations));
}

float noiseAlongY(std::span<const Point> contour, float slope) {
    const double ofOne = std::sqrt(1.0 + 9.0 + 9.0 + 1.0); // what noise of 1 mm gives a third difference
    const auto offLine = [&](std::size_t i) {
        return static_cast<double>(contour[i].y) - static_cast<double>(slope) * static_cast<double>(contour[i].x);
    };
    std::vector<double> deviations;
    for (std::size_t i = 3; i < contour.size(); ++i) {
        const double difference = offLine(i) - 3.0 * offLine(i - 1) + 3.0 * offLine(i - 2) - offLine(i - 3);
        deviations.push_back(std::abs(difference) / ofOne);
    }
    return ofDeviations(contour.size(), std::move(deviations));
}

} // namespace KxInspect::detail
