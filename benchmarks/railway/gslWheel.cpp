// The measures of a rim with an Akima spline of the GNU Scientific Library.
#include "railway/jobs.h"

#include <gsl/gsl_spline.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace kxbench {

namespace {

using Points = std::vector<std::pair<double, double>>;

/// Width and height of the points after a rotation about the origin that puts the point of smallest angle on +x.
Points section(const QList<KxMath::KxPointXYZ>& rim) {
    double minAngle = 7.0;
    for (const KxMath::KxPointXYZ& p : rim) {
        const double angle = std::atan2(static_cast<double>(p.z), static_cast<double>(p.x));
        minAngle = std::min(minAngle, angle < 0.0 ? angle + 2.0 * M_PI : angle);
    }
    const double c = std::cos(minAngle);
    const double s = std::sin(minAngle);
    Points points;
    for (const KxMath::KxPointXYZ& p : rim) {
        points.emplace_back(-(c * static_cast<double>(p.x) + s * static_cast<double>(p.z)), static_cast<double>(p.y));
    }
    std::sort(points.begin(), points.end());
    double lowest = points[0].second;
    for (const auto& [x, y] : points) {
        lowest = std::min(lowest, y);
    }
    const double firstX = points[0].first;
    for (auto& [x, y] : points) {
        x -= firstX;
        y -= lowest;
    }
    const double back = points[0].second;
    std::erase_if(points, [=](const auto& p) { return p.first < 20.0 && p.second > back; });
    return points;
}

void smooth(Points& points) {
    constexpr std::size_t kWindow = 20;
    for (std::size_t i = 0; i + kWindow < points.size(); ++i) {
        double sum = 0.0;
        for (std::size_t k = i; k < i + kWindow; ++k) {
            sum += points[k].second;
        }
        points[i + 8].second = sum / kWindow;
    }
}

/// The heights every 0.1 mm.
std::vector<double> resample(const Points& points) {
    std::vector<double> xs;
    std::vector<double> ys;
    for (const auto& [x, y] : points) {
        if (xs.empty() || x > xs.back()) {
            xs.push_back(x);
            ys.push_back(y);
        }
    }
    const std::unique_ptr<gsl_spline, void (*)(gsl_spline*)> spline(gsl_spline_alloc(gsl_interp_akima, xs.size()),
                                                                    gsl_spline_free);
    const std::unique_ptr<gsl_interp_accel, void (*)(gsl_interp_accel*)> accelerator(gsl_interp_accel_alloc(),
                                                                                     gsl_interp_accel_free);
    gsl_spline_init(spline.get(), xs.data(), ys.data(), xs.size());
    std::vector<double> heights;
    for (int i = 0; xs[0] + 0.1 * i < xs.back(); ++i) {
        heights.push_back(gsl_spline_eval(spline.get(), xs[0] + 0.1 * i, accelerator.get()));
    }
    return heights;
}

void measure(RimJob& job) {
    Points points = section(job.rim.points);
    smooth(points);
    const std::vector<double> heights = resample(points);
    std::size_t tip = 1;
    for (std::size_t i = 2; i + 1 < heights.size(); ++i) {
        tip = heights[i] > 0.0 && heights[i] < heights[tip] ? i : tip;
    }
    const auto crossing = [&](double level) {
        std::size_t i = tip + 1;
        while (!(heights[i - 1] <= level && level <= heights[i])) {
            ++i;
        }
        return i;
    };
    const std::size_t at = 700;
    const double height = (heights[at] + heights[at - 1]) / 2.0;
    const std::size_t flank = crossing(18.0);
    const double x18 =
        0.1 * (static_cast<double>(flank - 1) + (18.0 - heights[flank - 1]) / (heights[flank] - heights[flank - 1]));
    const double width = 0.1 * static_cast<double>(crossing(height - 13.0) - crossing(2.0));
    job.measures = {height, x18, width};
}

[[maybe_unused]] const bool isRegistered = [] {
    addOnRim("peer_gsl_akima", measure, digestRim);
    return true;
}();

} // namespace

} // namespace kxbench
