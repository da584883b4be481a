// How far the cross-section of a wheel stands off the nominal contour.
#include "inspect/wheelset/contourDeviation.h"

#include "inspect/base/error.h"
#include "inspect/identity/fileIdentity.h"

#include <KxInspect/Wheel.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

struct Vector {
    double x;
    double y;
};

/// From a chord of the contour to a point: square to it, or from its nearer end. Positive where the point is on the left of
/// the chord.
double distanceFrom(const Point& from, const Point& to, const Point& point) {
    const Vector chord = {static_cast<double>(to.x) - static_cast<double>(from.x),
                          static_cast<double>(to.y) - static_cast<double>(from.y)};
    const Vector way = {static_cast<double>(point.x) - static_cast<double>(from.x),
                        static_cast<double>(point.y) - static_cast<double>(from.y)};
    const double length = chord.x * chord.x + chord.y * chord.y;
    const double along = length > 0.0 ? std::clamp((way.x * chord.x + way.y * chord.y) / length, 0.0, 1.0) : 0.0;
    const double distance = std::hypot(way.x - along * chord.x, way.y - along * chord.y);
    return chord.x * way.y - chord.y * way.x >= 0.0 ? distance : -distance;
}

} // namespace

NominalContour nominalContour(const CrossSection& contour) {
    const WheelResult wheel = measureWheel(contour);
    const ErrorSource source = {"contour", contour.file, {}};
    if (!wheel.error.empty()) {
        fail(ErrorKind::Unsuitable, source, QString::fromStdString(wheel.error));
    }
    if (!wheel.measures.flangeHeight || wheel.section.size() < 2) {
        fail(ErrorKind::Unsuitable, source, QStringLiteral("does not show a wheel from the flange to the tape circle"));
    }
    return {bareName(contour.file), *wheel.measures.flangeHeight, wheel.section};
}

std::vector<Point> deviationsFrom(const NominalContour& contour, const std::vector<Point>& section, float height) {
    constexpr double kFarthest = 10.0; // mm
    const float lower = height - contour.flangeHeight; // the tape circle of the section below that of the contour
    std::vector<Point> deviations;
    for (const Point& at : section) {
        const Point point = {at.x, at.y - lower};
        double nearest = std::numeric_limits<double>::infinity();
        for (std::size_t i = 1; i < contour.section.size(); ++i) {
            const double distance = distanceFrom(contour.section[i - 1], contour.section[i], point);
            nearest = std::abs(distance) < std::abs(nearest) ? distance : nearest;
        }
        if (std::abs(nearest) < kFarthest) {
            // y points towards the axle, and the contour runs from the back outwards: the metal is on the left of it.
            deviations.push_back({at.x, static_cast<float>(-nearest)});
        }
    }
    return deviations;
}

} // namespace KxInspect::detail
