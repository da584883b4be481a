// What the errors of a gauge do to a contour.
#pragma once

#include <KxInspect/CrossSection.h>
#include <KxInspect/Profile.h>

#include <cmath>
#include <vector>

namespace KxInspect::detail {

/// Errors of a gauge in mm, radians and as a share.
struct GaugeDistortion {
    double shift = 0.0; ///< mm along x
    double turn = 0.0; ///< radians
    double scale = 0.0; ///< share by which all lengths are too long

    /// So many times the standard uncertainties of a gauge.
    static GaugeDistortion times(const GaugeError& error, double place, double turn, double scale) {
        constexpr double kMilli = 1e-3;
        constexpr double kMillionth = 1e-6;
        return {place * static_cast<double>(error.place), turn * kMilli * static_cast<double>(error.turn),
                scale * kMillionth * static_cast<double>(error.scale)};
    }

    bool isNone() const { return shift == 0.0 && turn == 0.0 && scale == 0.0; }
    GaugeDistortion opposite() const { return {-shift, -turn, -scale}; }

    /// A contour as a gauge shows it that is off.
    /// @param centre the place that turn and scale leave where it is
    std::vector<Point> of(const std::vector<Point>& contour, const Point& centre) const {
        if (isNone()) {
            return contour;
        }
        std::vector<Point> moved;
        moved.reserve(contour.size());
        for (const Point& p : contour) {
            const double x = (1.0 + scale) * (static_cast<double>(p.x) - static_cast<double>(centre.x));
            const double y = (1.0 + scale) * (static_cast<double>(p.y) - static_cast<double>(centre.y));
            moved.push_back(
                {static_cast<float>(std::cos(turn) * x - std::sin(turn) * y + static_cast<double>(centre.x) + shift),
                 static_cast<float>(std::sin(turn) * x + std::cos(turn) * y + static_cast<double>(centre.y))});
        }
        return moved;
    }
};

} // namespace KxInspect::detail
