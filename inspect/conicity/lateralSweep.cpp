// The difference of rolling radii over the displacement, from running surfaces.
#include "inspect/conicity/lateralSweep.h"

#include <KxInspect/Wheel.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace KxInspect::detail {

namespace {

/// The smallest of the gaps between a rail and a wheel, as the sample of the wheel.
std::size_t contactOf(const float* wheel, const std::vector<float>& rail) {
    // Lanes side by side, so that the compiler takes vector instructions.
    constexpr std::size_t kLanes = 16;
    std::array<float, kLanes> least;
    least.fill(std::numeric_limits<float>::infinity());
    std::size_t i = 0;
    for (; i + kLanes <= rail.size(); i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            const float gap = rail[i + lane] - wheel[i + lane];
            least[lane] = gap < least[lane] ? gap : least[lane];
        }
    }
    float smallest = *std::min_element(least.begin(), least.end());
    for (; i < rail.size(); ++i) {
        smallest = std::min(smallest, rail[i] - wheel[i]);
    }
    for (i = 0; i + 1 < rail.size() && rail[i] - wheel[i] > smallest; ++i) {
    }
    return i;
}

/// A wheel over its rail.
class Side {
public:
    Side(const std::vector<float>& wheel, const std::vector<float>& rail, double first, double step)
        : wheel_(wheel), rail_(rail), first_(std::lround(first / step)),
          tape_(static_cast<std::size_t>(std::lround(static_cast<double>(kTapeCircleX) / step))) {}

    /// The rolling radius beyond that of the tape circle when the wheel is `steps` further outside; empty where the rail leaves
    /// the wheel.
    std::optional<float> radius(long steps) const {
        const long start = first_ - steps;
        const auto size = static_cast<long>(wheel_.size());
        if (start < 0 || start + static_cast<long>(rail_.size()) > size || static_cast<long>(tape_) >= size) {
            return {};
        }
        const float* const over = wheel_.data() + start;
        return over[contactOf(over, rail_)] - wheel_[tape_];
    }

private:
    const std::vector<float>& wheel_;
    const std::vector<float>& rail_;
    long first_;
    std::size_t tape_;
};

} // namespace

std::vector<float> sampledSurface(const std::vector<Point>& contour, SectionKind kind, double from, double step) {
    constexpr double kTolerance = 1e-3; // of a step: where the contour itself begins there
    double last = from;
    for (const Point& p : contour) {
        last = std::max(last, static_cast<double>(p.x));
    }
    if (!(last - from <= static_cast<double>(kMaxSectionWidth))) { // NaN: true
        return {};
    }
    const float none =
        kind == SectionKind::Wheel ? -std::numeric_limits<float>::infinity() : std::numeric_limits<float>::infinity();
    std::vector<float> surface(static_cast<std::size_t>((last - from) / step + kTolerance) + 1, none);
    for (std::size_t i = 1; i < contour.size(); ++i) {
        const auto [left, right] =
            std::minmax(contour[i - 1], contour[i], [](const Point& a, const Point& b) { return a.x < b.x; });
        const double x = (static_cast<double>(left.x) - from) / step;
        const double end = (static_cast<double>(right.x) - from) / step + kTolerance;
        const double rise = left.x < right.x ? (static_cast<double>(right.y) - static_cast<double>(left.y)) /
                                                   (static_cast<double>(right.x) - static_cast<double>(left.x)) * step
                                             : 0.0;
        for (auto k = static_cast<long>(std::max(std::ceil(x - kTolerance), 0.0));
             static_cast<double>(k) <= end && k < static_cast<long>(surface.size()); ++k) {
            const auto y = static_cast<float>(static_cast<double>(left.y) + (static_cast<double>(k) - x) * rise);
            float& outside = surface[static_cast<std::size_t>(k)];
            outside = kind == SectionKind::Wheel ? std::max(outside, y) : std::min(outside, y);
        }
    }
    return surface;
}

Oscillation sweep(const PerWheelSetPart<std::vector<float>>& surfaces, const Stand& stand, double step) {
    constexpr float kMostDifference = 25.0f; // the core ends at 15 mm, with a last step of its own length
    constexpr double kMost = 60.0; // mm; no flanges have more clearance
    const Side first(surfaces[Wheel1], surfaces[Rail1], stand.first[0], step);
    const Side second(surfaces[Wheel2], surfaces[Rail2], stand.first[1], step);
    const auto difference = [&](long steps) {
        const auto inner = first.radius(-steps);
        const auto outer = inner ? second.radius(steps) : std::nullopt;
        return outer ? static_cast<float>(static_cast<double>(*outer) - static_cast<double>(*inner) +
                                          stand.radiusDifference)
                     : std::numeric_limits<float>::quiet_NaN();
    };
    const auto oneWay = [&](long from, long direction) {
        std::vector<float> values;
        for (long steps = from; static_cast<double>(std::abs(steps)) * step <= kMost; steps += direction) {
            const float value = difference(steps);
            if (!std::isfinite(value)) {
                return values;
            }
            values.push_back(value);
            if (std::abs(value) >= kMostDifference) {
                return values;
            }
        }
        return values;
    };
    std::vector<float> deltaR = oneWay(-1, -1);
    const std::size_t centre = deltaR.size();
    std::reverse(deltaR.begin(), deltaR.end());
    const std::vector<float> right = oneWay(0, 1);
    deltaR.insert(deltaR.end(), right.begin(), right.end());
    return {deltaR, centre, step};
}

} // namespace KxInspect::detail
