// Wheel-sets on their tracks as a gauge measures them, with noise.
#include "simulator/measuredTracks.h"

#include "simulator/random.h"
#include "simulator/wheelContour.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

namespace kxsim {

namespace {

using KxInspect::Point;
using Polyline = std::vector<Point>;

constexpr double kFine = 0.002; // mm

/// y points down.
Point pointOf(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y)};
}

/// A wheel with a tread of the given height over the tape circle, positive away from the axle; x from the flange back.
Polyline wheelOf(const std::function<double(double)>& height) {
    Polyline wheel;
    for (double down = 8.0; down > 0.0; down -= kFine) { // the flat of the back
        wheel.push_back(pointOf(0.0, height(0.0) - down));
    }
    for (double x = 0.0; x <= kRimWidth; x += kFine) {
        wheel.push_back(pointOf(x, height(x)));
    }
    return wheel;
}

double s1002(double x) {
    return s1002Height(x - kTapeCircle);
}

double bump(double x, double middle, double width) {
    return std::exp(-std::pow((x - middle) / width, 2));
}

/// A rail head of arcs that continue each other, from the crown outwards: the radii and where they end, measured from the middle
/// of the head; then a side of 1:20. Inclined towards the track.
struct Head {
    std::vector<std::pair<double, double>> arcs = {
        {300.0, 10.228}, {80.0, 26.0265}, {13.0, 36.0}}; // 60E1, EN 13674-1 (2011)
    double inclination = 1.0 / 40.0;
    double crownWear = 0.0;
};

Polyline railOf(const Head& head) {
    constexpr double kSide = 30.0; // mm
    const double sideAngle = std::numbers::pi / 2.0 - std::atan(1.0 / 20.0);
    Polyline half = {pointOf(0.0, 0.0)};
    double x = 0.0, y = 0.0, angle = 0.0;
    for (const auto& [radius, end] : head.arcs) {
        while (x < end && angle < sideAngle) {
            angle += kFine / radius;
            x += kFine * std::cos(angle);
            y += kFine * std::sin(angle);
            half.push_back(pointOf(x, y));
        }
    }
    for (double down = 0.0; down < kSide; down += kFine) {
        half.push_back(pointOf(x + down / 20.0, y + down));
    }
    Polyline rail;
    const double tilt = std::atan(head.inclination);
    const auto add = [&](double px, double py) {
        const double worn = py + head.crownWear * bump(px, -2.0, 14.0);
        // Inclined towards the track, which is on the side of negative x.
        rail.push_back(
            pointOf(px * std::cos(tilt) + worn * std::sin(tilt), worn * std::cos(tilt) - px * std::sin(tilt)));
    };
    for (std::size_t i = half.size(); i-- > 1;) {
        add(-static_cast<double>(half[i].x), static_cast<double>(half[i].y));
    }
    for (const Point& p : half) {
        add(static_cast<double>(p.x), static_cast<double>(p.y));
    }
    return rail;
}

struct Track {
    KxInspect::PerWheelSetPart<Polyline> contours;
    float gauge = 1435.0f;
    float backToBack = 1360.0f;
    float radius1 = 460.0f;
};

Track trackOf(TrackCase track) {
    const auto hollow = [](double depth, double middle) {
        return wheelOf([=](double x) { return s1002(x) - depth * bump(x, middle, 16.0); });
    };
    const auto worn = [](double flange, double field) {
        // The flange from its tip on moves towards the back.
        return wheelOf([=](double x) {
            const double moved =
                x + flange * std::clamp((x - 15.0) / 12.0, 0.0, 1.0) * std::clamp((48.0 - x) / 16.0, 0.0, 1.0);
            return s1002(moved) - field * std::clamp((x - 60.0) / 40.0, 0.0, 1.0);
        });
    };
    const auto cone = [](double slope) {
        // The flange runs into the cone without a step.
        constexpr double kRoot = 46.0; // mm
        const double step = s1002(kRoot) - (kTapeCircle - kRoot) * slope;
        return wheelOf([=](double x) {
            return x < kRoot ? s1002(x) - step * std::clamp((x - kRoot) / 8.0 + 1.0, 0.0, 1.0)
                             : (kTapeCircle - x) * slope;
        });
    };
    const Head steep = {.inclination = 1.0 / 20.0};
    const Head flat = {.crownWear = 0.4};
    const Head round = {.arcs = {{200.0, 26.0}, {13.0, 36.0}}};
    switch (track) {
    case TrackCase::NewOn40:
        return {{wheelOf(s1002), railOf({}), wheelOf(s1002), railOf({})}};
    case TrackCase::NewOn20:
        return {{wheelOf(s1002), railOf(steep), wheelOf(s1002), railOf(steep)}, 1437.0f, 1360.0f, 460.3f};
    case TrackCase::Hollow:
        return {{hollow(0.5, 70.0), railOf(flat), hollow(0.8, 74.0), railOf({})}, 1434.0f, 1360.4f};
    case TrackCase::WornFlange:
        return {{worn(3.0, 0.6), railOf(steep), worn(1.0, 0.3), railOf({})}, 1436.0f, 1359.6f};
    case TrackCase::Cones:
        return {{cone(0.05), railOf(round), cone(0.08), railOf(round)}, 1435.0f, 1360.2f, 460.1f};
    }
    return {};
}

/// The points of a fine contour that are measured: every `spacing` mm along it.
Polyline sampled(const Polyline& contour, double spacing) {
    Polyline result;
    double way = 0.0;
    for (std::size_t i = 0; i < contour.size(); ++i) {
        way += i == 0 ? spacing
                      : std::hypot(static_cast<double>(contour[i].x) - static_cast<double>(contour[i - 1].x),
                                   static_cast<double>(contour[i].y) - static_cast<double>(contour[i - 1].y));
        if (way >= spacing) {
            result.push_back(contour[i]);
            way -= spacing;
        }
    }
    return result;
}

} // namespace

const char* nameOf(TrackCase track) {
    constexpr const char* kNames[] = {"S1002 on 60E1, 1:40", "S1002 on 60E1, 1:20", "hollow", "worn flange", "cones"};
    return kNames[static_cast<std::size_t>(track)];
}

KxInspect::ConicityInput measured(TrackCase track, const Measuring& measuring, std::uint64_t seed) {
    const Track ideal = trackOf(track);
    KxInspect::ConicityInput input;
    input.gauge = ideal.gauge;
    input.backToBack = ideal.backToBack;
    input.radius1 = ideal.radius1;
    for (std::size_t part = 0; part < ideal.contours.size(); ++part) {
        Random random({seed, part});
        Polyline contour = sampled(ideal.contours[part], measuring.spacing);
        for (Point& p : contour) {
            p.x += static_cast<float>(measuring.isAcrossOnly ? 0.0 : measuring.noise * random.normal());
            p.y += static_cast<float>(measuring.noise * random.normal());
        }
        input.sections[part].profile = KxInspect::Profile{contour};
        input.sections[part].orientation = {false, false};
    }
    return input;
}

} // namespace kxsim
