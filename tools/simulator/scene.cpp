// What the laser meets.
#include "simulator/scene.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace kxsim {

namespace {

/// The tread between the ends of the patches, raised, and joined to the tread by upright sides.
Contour raisedTread(const SurfaceOfRevolution& surface, double height) {
    constexpr double kStep = 1.0; // mm
    Contour contour = {{kPatchFrom, surface.outerRadius(kPatchFrom) - 1.0}};
    for (double axial = kPatchFrom; axial <= kPatchTo; axial += kStep) {
        contour.push_back({axial, surface.outerRadius(axial) + height});
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

void Wheel::addFlat(const TreadPatch& flat) {
    flats_.push_back(flat);
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

/// Where a ray that meets the round tread at `t` in a flat meets the bottom or a side of it; nothing outside of flats.
std::optional<double> Wheel::leaveFlats(const AxialRay& ray, double t, double turn) const {
    const double axial = ray.axialAt(t);
    if (axial <= kPatchFrom || axial >= kPatchTo) {
        return {};
    }
    for (const TreadPatch& flat : flats_) {
        // The flat is the plane at `depth` from the axle with the direction (forward, up) of its middle as its normal.
        const double forward = std::sin(flat.angle + turn);
        const double up = -std::cos(flat.angle + turn);
        const double radius = shape.diameter / 2.0;
        const double depth = std::sqrt(radius * radius - flat.halfLength * flat.halfLength);
        const double above = forward * ray.acrossAt(0, t) + up * ray.acrossAt(1, t) - depth;
        if (above <= 0.0) {
            continue;
        }
        const double sinking = -(forward * ray.acrossStep[0] + up * ray.acrossStep[1]);
        double end = sinking > 0.0 ? t + above / sinking : std::numeric_limits<double>::infinity();
        if (ray.axialStep != 0.0) {
            end = std::min(end, ((ray.axialStep > 0.0 ? kPatchTo : kPatchFrom) - ray.axial) / ray.axialStep);
        }
        return end;
    }
    return {};
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
            constexpr double kBehind = 1e-6; // mm, keeps the surface just met from being met again
            const double leave = surface_.hit(axial, {t + kBehind, first});
            t = std::min(*bottom, leave);
            if (leave < *bottom) { // out of the wheel again before the flat is met
                t = surface_.hit(axial, {leave + kBehind, first});
            }
        }
    }
    return std::min(t, first);
}

double hitBox(const Box& box, const Ray& ray, double end) {
    double enter = 0.0;
    double leave = end;
    for (double Vec3::*const axis : {&Vec3::x, &Vec3::y, &Vec3::z}) {
        const double origin = ray.origin.*axis;
        const double direction = ray.direction.*axis;
        if (direction == 0.0) {
            if (origin < box.low.*axis || origin > box.high.*axis) {
                return end;
            }
            continue;
        }
        double near = (box.low.*axis - origin) / direction;
        double far = (box.high.*axis - origin) / direction;
        if (near > far) {
            std::swap(near, far);
        }
        enter = std::max(enter, near);
        leave = std::min(leave, far);
    }
    return enter < leave ? enter : end;
}

double hitTrackBody(const TrackBody& body, const Ray& ray, double end) {
    for (std::size_t i = 0; i + 1 < body.size(); ++i) {
        const Vec3& a = body[i];
        const double dy = body[i + 1].y - a.y;
        const double dz = body[i + 1].z - a.z;
        const double determinant = ray.direction.y * dz - ray.direction.z * dy;
        if (determinant == 0.0) {
            continue;
        }
        const double oy = a.y - ray.origin.y;
        const double oz = a.z - ray.origin.z;
        const double t = (oy * dz - oz * dy) / determinant;
        const double along = (oy * ray.direction.z - oz * ray.direction.y) / determinant;
        if (t > 0.0 && t < end && along >= 0.0 && along <= 1.0) {
            end = t;
        }
    }
    return end;
}

TrackBody makeRailHead(double gauge, int side) {
    // The head of rail profile 60E1 (EN 13674-1), coarsely: the gauge is measured 14 mm below the top.
    constexpr double kHeadWidth = 72.0;
    constexpr double kCornerRadius = 13.0;
    constexpr double kHeadHeight = 37.0;
    constexpr int kCornerSteps = 8;
    const double inner = gauge / 2.0;
    TrackBody head = {{0.0, side * inner, -kHeadHeight}};
    for (int i = 0; i <= kCornerSteps; ++i) {
        const double angle = i * std::numbers::pi / 2.0 / kCornerSteps;
        head.push_back(
            {0.0, side * (inner + kCornerRadius * (1.0 - std::cos(angle))), -kCornerRadius * (1.0 - std::sin(angle))});
    }
    head.push_back({0.0, side * (inner + kHeadWidth - kCornerRadius), 0.0});
    head.push_back({0.0, side * (inner + kHeadWidth), -kCornerRadius});
    head.push_back({0.0, side * (inner + kHeadWidth), -kHeadHeight});
    return head;
}

} // namespace kxsim
