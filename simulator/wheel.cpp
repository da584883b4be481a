// Intersection of rays with a wheel.
#include "simulator/wheel.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace kxsim {

namespace {

/// The tread between the ends of the patches, raised, and joined to the tread by upright sides.
Contour raisedTread(const SurfaceOfRevolution& surface, double height) {
    constexpr double kStep = 1.0; // mm
    Contour contour = {{kPatchFrom, surface.outerRadius(kPatchFrom) - 1.0}};
    double axial = kPatchFrom;
    while (axial <= kPatchTo) {
        contour.push_back({axial, surface.outerRadius(axial) + height});
        axial += kStep;
    }
    contour.push_back({contour.back().axial, surface.outerRadius(kPatchTo) - 1.0});
    return contour;
}

/// The angle of a place on the wheel from the lowest point, forward positive.
double angleFromBottom(const AxialRay& ray, double t) {
    return std::atan2(ray.acrossAt(0, t), -ray.acrossAt(1, t));
}

} // namespace

Wheel::Wheel(const WheelShape& s, int side, double backFace)
    : shape(s), contour(makeWheelContour(s)), side(side), backFace(backFace), surface_(contour) {}

void Wheel::addFlat(const TreadPatch& flat, FlatShape flatShape) {
    flats_.push_back({flat, flatShape});
}

void Wheel::addBuildUp(const TreadPatch& buildUp) {
    buildUps_.push_back({buildUp, SurfaceOfRevolution(raisedTread(surface_, buildUp.height))});
}

AxialRay Wheel::toAxial(const Ray& ray, double axleX) const {
    const double axleZ = shape.diameter / 2.0;
    return {side * ray.origin.y - backFace,
            side * ray.direction.y,
            {ray.origin.x - axleX, ray.origin.z - axleZ},
            {ray.direction.x, ray.direction.z}};
}

double Wheel::flatDepth(double length) const {
    const double radius = shape.diameter / 2.0;
    return radius - std::sqrt(radius * radius - length * length / 4.0);
}

/// How far the bottom of a flat is from the axle at an axial position.
double Wheel::bottomRadius(const Flat& flat, double axial) const {
    const double radius = flat.shape == FlatShape::Even ? surface_.outerRadius(axial) : shape.diameter / 2.0;
    return radius - flatDepth(2.0 * flat.patch.halfLength);
}

/// Where a ray that is at `t` within the patch of a flat, outside its bottom, reaches the bottom or a side; `t` itself
/// when it is not outside.
double Wheel::bottomBehind(const Flat& flat, const AxialRay& ray, double t, double turn) const {
    constexpr int kMostSteps = 60;
    constexpr double kNear = 1e-7; // mm
    // (forward, up) points from the axle to the middle of the flat.
    const double forward = std::sin(flat.patch.angle + turn);
    const double up = -std::cos(flat.patch.angle + turn);
    const double sinking = -(forward * ray.acrossStep[0] + up * ray.acrossStep[1]);
    const double edge = ray.axialStep == 0.0
                            ? std::numeric_limits<double>::infinity()
                            : ((ray.axialStep > 0.0 ? kPatchTo : kPatchFrom) - ray.axial) / ray.axialStep;
    // The slope of the tread changes the distance from the bottom little between two steps towards it.
    for (int step = 0; step < kMostSteps && t < edge; ++step) {
        const double above =
            forward * ray.acrossAt(0, t) + up * ray.acrossAt(1, t) - bottomRadius(flat, ray.axialAt(t));
        if (above <= kNear) {
            return t;
        }
        t = sinking > 0.0 ? t + above / sinking : std::numeric_limits<double>::infinity();
    }
    return std::min(t, edge);
}

/// Where a ray that hits the round tread at `t` in a flat hits the bottom or a side of the flat; empty outside of flats.
std::optional<double> Wheel::leaveFlats(const AxialRay& ray, double t, double turn) const {
    const double axial = ray.axialAt(t);
    if (axial <= kPatchFrom || axial >= kPatchTo) {
        return {};
    }
    for (const Flat& flat : flats_) {
        if (const double end = bottomBehind(flat, ray, t, turn); end > t) {
            return end;
        }
    }
    return {};
}

double Wheel::dirtBefore(const Ray& ray, double axleX, double distance) const {
    if (dirt_.empty()) {
        return 0.0;
    }
    constexpr double kSteepest = 0.3; // of the cosine: thin dirt hides nothing far behind it
    const AxialRay axial = toAxial(ray, axleX);
    const double radius = std::hypot(axial.acrossAt(0, distance), axial.acrossAt(1, distance));
    const double angle = angleFromBottom(axial, distance) + axleX / (shape.diameter / 2.0);
    double thickness = 0.0;
    for (const DirtSpot& spot : dirt_) {
        const double along = std::remainder(angle - spot.angle, 2.0 * std::numbers::pi) * radius;
        const double off = std::hypot(along, axial.axialAt(distance) - spot.axial) / spot.radius;
        thickness = std::max(thickness, spot.thickness * std::exp(-off * off));
    }
    const double cosine = std::abs(axial.acrossAt(0, distance) * axial.acrossStep[0] +
                                   axial.acrossAt(1, distance) * axial.acrossStep[1]) /
                          radius;
    return thickness / std::max(cosine, kSteepest);
}

double Wheel::hit(const Ray& ray, double axleX, double end) const {
    const AxialRay axial = toAxial(ray, axleX);
    // A wheel that rolls forward by x turns its lowest point backwards by x.
    const double turn = -axleX / (shape.diameter / 2.0);
    double first = end;
    for (const BuildUp& b : buildUps_) {
        const double t = b.surface.hit(axial, {0.0, first});
        const double distance =
            std::remainder(angleFromBottom(axial, t) - b.patch.angle - turn, 2.0 * std::numbers::pi);
        if (t < first && std::abs(distance) * shape.diameter / 2.0 <= b.patch.halfLength) {
            first = t;
        }
    }
    double t = surface_.hit(axial, {0.0, first});
    if (t < first && !flats_.empty()) {
        if (const auto bottom = leaveFlats(axial, t, turn)) {
            constexpr double kBehind = 1e-6; // prevents a second hit of the same surface
            const double leave = surface_.hit(axial, {t + kBehind, first});
            t = std::min(*bottom, leave);
            if (leave < *bottom) { // out of the wheel again before the flat is met
                t = surface_.hit(axial, {leave + kBehind, first});
            }
        }
    }
    return std::min(t, first);
}

} // namespace kxsim
