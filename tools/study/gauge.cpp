// A gauge that is set onto a wheel or a rail by hand.
#include "tools/study/gauge.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kxstudy {

namespace {

// Standard deviations of the gauges' own errors.
constexpr double kShift = 0.01; // mm
constexpr double kTurn = 0.1; // mrad
constexpr double kScale = 1e-4;

double distance(const kxsim::ContourPoint& a, const kxsim::ContourPoint& b) {
    return std::hypot(b.axial - a.axial, b.radius - a.radius);
}

/// A bell-shaped spot, by its place along the contour.
struct Spot {
    double place;
    double radius;
    double thickness;
};

/// Spots over a sixth of the contour.
std::vector<Spot> dirtOn(double length, double thickest, kxsim::Random& random) {
    constexpr double kShare = 1.0 / 6.0;
    std::vector<Spot> spots;
    for (double covered = 0.0; thickest > 0.0 && covered < kShare * length; covered += 2.0 * spots.back().radius) {
        spots.push_back({random.uniform(0.0, length), random.uniform(1.0, 4.0), thickest * random.uniform()});
    }
    return spots;
}

double dirtAt(const std::vector<Spot>& spots, double place) {
    double thickness = 0.0;
    for (const Spot& spot : spots) {
        const double off = (place - spot.place) / spot.radius;
        thickness = std::max(thickness, spot.thickness * std::exp(-off * off));
    }
    return thickness;
}

} // namespace

Gauge gaugeOf(int station) {
    kxsim::Random random({4000, static_cast<std::uint64_t>(station)});
    Gauge gauge;
    gauge.shift = kShift * random.normal();
    gauge.turn = kTurn * random.normal();
    gauge.scale = 1.0 + kScale * random.normal();
    return gauge;
}

KxInspect::GaugeError gaugeError() {
    const Gauge gauge;
    return {static_cast<float>(std::hypot(kShift, gauge.placementShift)),
            static_cast<float>(std::hypot(kTurn, gauge.placementTurn)), static_cast<float>(1e6 * kScale)};
}

KxInspect::Profile measuredBy(const Gauge& gauge, const kxsim::Contour& contour, kxsim::Random& random) {
    double length = 0.0;
    for (std::size_t i = 1; i < contour.size(); ++i) {
        length += distance(contour[i - 1], contour[i]);
    }
    const std::vector<Spot> dirt = dirtOn(length, gauge.dirt, random);
    const double shift = gauge.shift + gauge.placementShift * random.normal();
    const double turn = (gauge.turn + gauge.placementTurn * random.normal()) / 1000.0;
    const double sine = std::sin(turn);
    const double cosine = std::cos(turn);
    KxInspect::Profile profile;
    double place = 0.0;
    double next = gauge.spacing * random.uniform();
    for (std::size_t i = 1; i < contour.size(); ++i) {
        const kxsim::ContourPoint& a = contour[i - 1];
        const kxsim::ContourPoint& b = contour[i];
        const double step = distance(a, b);
        for (; next < place + step; next += gauge.spacing) {
            const double share = (next - place) / step;
            const double outwards = dirtAt(dirt, next) + gauge.noise * random.normal();
            const double x =
                gauge.scale * (a.axial + share * (b.axial - a.axial) - outwards * (b.radius - a.radius) / step);
            const double y =
                gauge.scale * (a.radius + share * (b.radius - a.radius) + outwards * (b.axial - a.axial) / step);
            profile.points.push_back(
                {static_cast<float>(cosine * x - sine * y + shift), static_cast<float>(sine * x + cosine * y)});
        }
        place += step;
    }
    return profile;
}

} // namespace kxstudy
