// Wheel-sets on their tracks as a gauge measures them, with noise.
#include "simulator/measuredTracks.h"

#include "simulator/railHead.h"
#include "simulator/random.h"
#include "simulator/wheelContour.h"

#include <algorithm>
#include <cmath>
#include <functional>

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

Polyline railOf(const RailHead& head) {
    return railHeadContour(head, kFine);
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
    const RailHead steep = {.inclination = 1.0 / 20.0};
    const RailHead flat = {.crownWear = 0.4};
    const RailHead round = {.arcs = {{200.0, 26.0}, {13.0, 36.0}}};
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

/// What a gauge of such errors makes of a contour.
class OffGauge {
public:
    OffGauge(const KxInspect::GaugeError& error, Random random)
        : shift_(static_cast<double>(error.place) * random.normal()),
          turn_(1e-3 * static_cast<double>(error.turn) * random.normal()),
          scale_(1.0 + 1e-6 * static_cast<double>(error.scale) * random.normal()) {}

    Point shown(const Point& p) const {
        const double x = scale_ * static_cast<double>(p.x);
        const double y = scale_ * static_cast<double>(p.y);
        return pointOf(std::cos(turn_) * x - std::sin(turn_) * y + shift_, std::sin(turn_) * x + std::cos(turn_) * y);
    }

private:
    double shift_, turn_, scale_;
};

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
    constexpr std::uint64_t kGauges = 10; // behind the parts
    const OffGauge gauges[] = {{measuring.gaugeError, Random({seed, kGauges})},
                               {measuring.gaugeError, Random({seed, kGauges + 1})}};
    for (std::size_t part = 0; part < ideal.contours.size(); ++part) {
        Random random({seed, part});
        Polyline contour = sampled(ideal.contours[part], measuring.spacing);
        for (Point& p : contour) {
            p.x += static_cast<float>(measuring.isAcrossOnly ? 0.0 : measuring.noise * random.normal());
            p.y += static_cast<float>(measuring.noise * random.normal());
            p = measuring.gaugeError.isSet()
                    ? gauges[isWheel(static_cast<KxInspect::WheelSetPart>(part)) ? 0 : 1].shown(p)
                    : p;
        }
        input.sections[part].profile = KxInspect::Profile{contour};
        input.sections[part].orientation = {false, false};
    }
    return input;
}

} // namespace kxsim
