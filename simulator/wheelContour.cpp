// The cross-section of a wheel.
#include "simulator/wheelContour.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <span>

namespace kxsim {

namespace {

// Rolling contour S1002 after EN 13715:2006+A1, annex B: y from the tape circle, zones from the back face outwards.
constexpr double kBackFace = -70.0;
constexpr double kEndH = -62.764705882;
constexpr double kEndG = -49.662510381;
constexpr double kEndF = -39.764473993;
constexpr double kEndE = -38.426669071;
constexpr double kEndD = -35.0;
constexpr double kEndC = -26.0;
constexpr double kEndB = 32.15796;
constexpr double kChamfer = 60.0;
constexpr double kFieldSide = kRimWidth - kTapeCircle;

constexpr std::array kZoneB = {0.0,
                               -3.358537058e-2,
                               1.565681624e-3,
                               -2.810427944e-5,
                               5.844240864e-8,
                               -1.562379023e-8,
                               5.309217349e-15,
                               -5.957839843e-12,
                               2.646656573e-13};
constexpr std::array kZoneC = {-4.320221063e+3, -1.038384026e+3, -1.065501873e+2, -6.051367875,
                               -2.054332446e-1, -4.169739389e-3, -4.687195829e-5, -2.252755540e-7};

double polynomial(std::span<const double> coefficients, double y) {
    double sum = 0.0;
    for (auto c = coefficients.rbegin(); c != coefficients.rend(); ++c) {
        sum = sum * y + *c;
    }
    return sum;
}

/// The height of a circle at y: its upper half for `sign` 1, the lower one for -1.
double circle(double y, double centerY, double centerZ, double radius, double sign) {
    const double dy = y - centerY;
    return centerZ + sign * std::sqrt(std::max(0.0, radius * radius - dy * dy));
}

constexpr double kFlangeStep = 0.1; // mm along the axis, for slopes up to 2.75 on radii from 12 mm
constexpr double kTreadStep = 0.5; // mm
constexpr double kArcStep = std::numbers::pi / 120.0; // chords of the largest arc stay within 0.002 mm

/// Samples the contour in the open interval of two y and appends its end.
void appendZone(Contour& contour, double from, double to, double tapeRadius) {
    const double step = from < kEndC ? kFlangeStep : kTreadStep;
    const int steps = static_cast<int>(std::ceil((to - from) / step));
    for (int i = 1; i <= steps; ++i) {
        const double y = i == steps ? to : from + (to - from) * i / steps;
        contour.push_back({y + kTapeCircle, tapeRadius + s1002Height(y)});
    }
}

/// Appends the arc from the back face to the tip of the flange. Sampled by angle, since it starts upright.
void appendFlangeBack(Contour& contour, double tapeRadius) {
    constexpr double kCenterY = -49.5;
    constexpr double kCenterZ = 9.519259302;
    constexpr double kRadius = 20.5;
    const double last = std::acos((kCenterY - kEndH) / kRadius);
    const int steps = static_cast<int>(std::ceil(last / kArcStep));
    for (int i = 0; i <= steps; ++i) {
        const double angle = last * i / steps;
        const double y = i == 0 ? kBackFace : kCenterY - kRadius * std::cos(angle);
        contour.push_back({y + kTapeCircle, tapeRadius + kCenterZ + kRadius * std::sin(angle)});
    }
}

double smoothStep(double t) {
    const double c = std::clamp(t, 0.0, 1.0);
    return c * c * (3.0 - 2.0 * c);
}

/// Moves the front of the flange towards the back face, fading out at the flange tip and on the tread.
void wearFlange(Contour& contour, double wear) {
    constexpr double kTip = 15.0;
    constexpr double kFrontFrom = 28.0;
    constexpr double kFrontTo = 35.0;
    constexpr double kTreadFrom = 62.0;
    for (ContourPoint& p : contour) {
        const double share = smoothStep((p.axial - kTip) / (kFrontFrom - kTip)) *
                             smoothStep((kTreadFrom - p.axial) / (kTreadFrom - kFrontTo));
        p.axial -= wear * share;
    }
}

/// Wears a hollow into the tread. The diameter at the tape circle stays, the rest of the contour is higher.
void wearTread(Contour& contour, double wear) {
    constexpr double kWidth = 20.0; // mm from the tape circle to where 1/e of the hollow is left
    for (ContourPoint& p : contour) {
        const double off = (p.axial - kTapeCircle) / kWidth;
        p.radius += wear * (1.0 - std::exp(-off * off));
    }
}

} // namespace

double s1002Height(double y) {
    if (y < kEndH) {
        return circle(y, -49.5, 9.519259302, 20.5, 1.0);
    }
    if (y < kEndG) {
        return circle(y, -55.0, 16.0, 12.0, 1.0);
    }
    if (y < kEndF) {
        return circle(y, -58.558326413, 8.834924130, 20.0, 1.0);
    }
    if (y < kEndE) {
        return -93.576667419 - 2.747477419 * y;
    }
    if (y < kEndD) {
        return circle(y, -26.210665, 16.446, 13.0, -1.0);
    }
    if (y < kEndC) {
        return polynomial(kZoneC, y);
    }
    if (y < kEndB) {
        return polynomial(kZoneB, y);
    }
    const double cone = 1.364323640 - 0.066666667 * std::min(y, kChamfer);
    return cone - std::max(0.0, y - kChamfer); // chamfer of 45 degrees
}

Contour makeWheelContour(const WheelShape& shape) {
    // Web and hub are generic: they only have to be recessed and to hide what is beyond them.
    constexpr double kHubRadius = 100.0;
    constexpr double kWebBack = 30.0;
    constexpr double kWebFront = 60.0;
    constexpr double kFilletLength = 20.0;
    const double tapeRadius = shape.diameter / 2.0;
    const double rim = shape.rimInnerRadius;

    Contour contour = {{0.0, kHubRadius - 20.0},
                       {0.0, kHubRadius},
                       {kWebBack, kHubRadius + kFilletLength},
                       {kWebBack, rim - kFilletLength},
                       {kWebBack - kFilletLength / 2.0, rim - 5.0},
                       {2.0, rim - 2.0},
                       {0.0, rim}};
    const auto body = static_cast<std::ptrdiff_t>(contour.size());
    appendFlangeBack(contour, tapeRadius);
    for (const auto& [from, to] : {std::pair{kEndH, kEndG},
                                   {kEndG, kEndF},
                                   {kEndF, kEndE},
                                   {kEndE, kEndD},
                                   {kEndD, kEndC},
                                   {kEndC, kEndB},
                                   {kEndB, kChamfer},
                                   {kChamfer, kFieldSide}}) {
        appendZone(contour, from, to, tapeRadius);
    }
    if (shape.treadWear > 0.0) {
        Contour outside(contour.begin() + body, contour.end());
        wearTread(outside, shape.treadWear);
        std::copy(outside.begin(), outside.end(), contour.begin() + body);
    }
    if (shape.flangeWear > 0.0) {
        wearFlange(contour, shape.flangeWear);
    }
    contour.insert(contour.end(), {{kRimWidth, rim}, {kWebFront, rim - 5.0}, {kWebFront, kHubRadius}});
    return contour;
}

double flangeThickness(const Contour& contour, double diameter) {
    const double level = diameter / 2.0 + 10.0;
    // From the field side inwards, so that the front of the flange is found first.
    for (auto p = contour.rbegin(); p + 1 != contour.rend(); ++p) {
        const ContourPoint& outer = *p;
        const ContourPoint& inner = *(p + 1);
        if (outer.radius < level && inner.radius >= level) {
            const double t = (level - outer.radius) / (inner.radius - outer.radius);
            return outer.axial + t * (inner.axial - outer.axial);
        }
    }
    return std::numeric_limits<double>::quiet_NaN();
}

} // namespace kxsim
