// Worn rims and their true measures.
#include "simulator/wornRim.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxsim {

namespace {

constexpr double kDepth = 30.0; // mm below the tape circle to which the faces are seen
constexpr double kStep = 0.01; // mm
constexpr double kTipAt = 15.0;

double smoothStep(double t) {
    const double c = std::clamp(t, 0.0, 1.0);
    return c * c * (3.0 - 2.0 * c);
}

/// How much of the wear of the flange a place has: all on its front, none at its tip and on the tread.
double shareOfFlange(double axial) {
    constexpr double kFrontFrom = 30.0;
    constexpr double kFrontTo = 34.0;
    constexpr double kTreadFrom = 62.0;
    return smoothStep((axial - kTipAt) / (kFrontFrom - kTipAt)) *
           smoothStep((kTreadFrom - axial) / (kTreadFrom - kFrontTo));
}

/// Appends points on the straight line to another one.
void appendLine(Contour& contour, const ContourPoint& to) {
    const ContourPoint from = contour.back();
    const int steps = static_cast<int>(std::ceil(std::hypot(to.axial - from.axial, to.radius - from.radius) / kStep));
    for (int i = 1; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        contour.push_back({from.axial + t * (to.axial - from.axial), from.radius + t * (to.radius - from.radius)});
    }
}

/// The radius at an axial place beyond the tip, on the line between neighbours.
double radiusAt(const Contour& contour, double axial) {
    for (std::size_t i = 1; i < contour.size(); ++i) {
        const ContourPoint &a = contour[i - 1], &b = contour[i];
        if (a.axial > kTipAt / 2.0 && a.axial <= axial && axial < b.axial) {
            return a.radius + (b.radius - a.radius) * (axial - a.axial) / (b.axial - a.axial);
        }
    }
    return std::numeric_limits<double>::quiet_NaN();
}

/// The axial place at which the contour falls below a radius for the last time before the tape circle.
double flankAt(const Contour& contour, double radius) {
    double found = std::numeric_limits<double>::quiet_NaN();
    for (std::size_t i = 1; i < contour.size() && contour[i].axial < kTapeCircle; ++i) {
        const ContourPoint &a = contour[i - 1], &b = contour[i];
        if (a.radius >= radius && b.radius < radius) {
            found = a.axial + (b.axial - a.axial) * (a.radius - radius) / (a.radius - b.radius);
        }
    }
    return found;
}

/// How far the tread rises again behind a lower place.
double hollowOf(const Contour& contour) {
    double lowest = std::numeric_limits<double>::infinity();
    double hollow = 0.0;
    for (const ContourPoint& p : contour) {
        if (p.axial >= kTipAt && p.radius > -kDepth / 2.0) {
            lowest = std::min(lowest, p.radius);
            hollow = std::max(hollow, p.radius - lowest);
        }
        if (p.axial >= kRimWidth - 5.0) {
            break; // the chamfer
        }
    }
    return hollow;
}

} // namespace

RimWear randomWear(Random& random) {
    return {random.uniform(0.0, 6.0), random.uniform(0.0, 5.0), random.uniform(62.0, 80.0), random.uniform(16.0, 24.0)};
}

Contour makeRimContour(const RimWear& wear) {
    constexpr double kBackEnd = 9.519259302; // where the circle behind the tip begins on the back face
    constexpr double kBackRadius = 20.5;
    constexpr double kTipZone = 7.235294118; // where that circle ends
    Contour contour = {{0.0, -kDepth}};
    appendLine(contour, {0.0, kBackEnd});
    const double last = std::acos(1.0 - kTipZone / kBackRadius);
    for (double angle = kStep / kBackRadius; angle < last; angle += kStep / kBackRadius) {
        contour.push_back({kBackRadius * (1.0 - std::cos(angle)), kBackEnd + kBackRadius * std::sin(angle)});
    }
    const int steps = static_cast<int>((kRimWidth - kTipZone) / (kStep / 2.0));
    for (int i = 0; i <= steps; ++i) {
        const double axial = kTipZone + (kRimWidth - kTipZone) * i / steps;
        const double off = (axial - wear.treadAt) / wear.treadWidth;
        contour.push_back({axial - wear.flange * shareOfFlange(axial),
                           s1002Height(axial - kTapeCircle) - wear.tread * std::exp(-off * off)});
    }
    appendLine(contour, {kRimWidth, -kDepth});
    return contour;
}

Contour rimOf(const Contour& wheel, double diameter) {
    Contour rim;
    for (const ContourPoint& p : wheel) {
        if (p.radius >= diameter / 2.0 - kDepth) {
            rim.push_back({p.axial, p.radius - diameter / 2.0});
        }
    }
    return rim;
}

RimTruth trueMeasures(const Contour& contour, double slopeBase) {
    double tip = -std::numeric_limits<double>::infinity();
    double outer = tip;
    for (const ContourPoint& p : contour) {
        tip = std::max(tip, p.radius);
        outer = std::max(outer, p.axial);
    }
    const double tape = radiusAt(contour, kTapeCircle);
    const double top = flankAt(contour, tip - 2.0);
    const double thickness = flankAt(contour, tape + 10.0);
    const double half = slopeBase / 2.0;
    return {tip - tape,
            thickness,
            thickness - top,
            hollowOf(contour),
            (radiusAt(contour, kTapeCircle - half) - radiusAt(contour, kTapeCircle + half)) / slopeBase,
            outer,
            flankAt(contour, tip - 18.0),
            flankAt(contour, tape + 13.0) - top};
}

Contour sampled(const Contour& contour, const RimSampling& sampling, Random& random) {
    Contour points;
    double next = random.uniform() * sampling.spacing;
    for (std::size_t i = 1; i < contour.size(); ++i) {
        const ContourPoint &a = contour[i - 1], &b = contour[i];
        const double length =
            sampling.isAlongX ? std::max(0.0, b.axial - a.axial) : std::hypot(b.axial - a.axial, b.radius - a.radius);
        for (; next < length; next += sampling.spacing) {
            const double t = next / length;
            const double noise = sampling.isAlongX ? 0.0 : sampling.noise * random.normal();
            points.push_back({a.axial + t * (b.axial - a.axial) + noise,
                              a.radius + t * (b.radius - a.radius) + sampling.noise * random.normal()});
        }
        next -= length;
    }
    return points;
}

} // namespace kxsim
