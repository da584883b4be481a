// Rays on surfaces of revolution.
#include "simulator/revolution.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace kxsim {

namespace {

constexpr double kJoint = 1e-9; // mm by which segments extend beyond their ends, so that no ray passes through a joint

double valueAt(const double (&quadratic)[3], double t) {
    return (quadratic[2] * t + 2.0 * quadratic[1]) * t + quadratic[0];
}

/// The part of `range` in which the ray is between two axial positions.
HitRange clipAxially(const AxialRay& ray, double from, double to, HitRange range) {
    if (ray.axialStep == 0.0) {
        const bool isInside = ray.axial >= from && ray.axial <= to;
        return isInside ? range : HitRange{range.to, range.from};
    }
    double enter = (from - ray.axial) / ray.axialStep;
    double leave = (to - ray.axial) / ray.axialStep;
    if (enter > leave) {
        std::swap(enter, leave);
    }
    return {std::max(range.from, enter), std::min(range.to, leave)};
}

double hitDisc(const ContourPoint& a, const ContourPoint& b, const AxialRay& ray, const double (&radiusSquared)[3],
               HitRange range) {
    const double t = (a.axial - ray.axial) / ray.axialStep;
    const double radius = std::sqrt(valueAt(radiusSquared, t)); // NaN where t is not finite: fails the test
    const auto [least, most] = std::minmax(a.radius, b.radius);
    const bool isHit = t >= range.from && t < range.to && radius >= least - kJoint && radius <= most + kJoint;
    return isHit ? t : range.to;
}

/// radiusSquared(t) = (slope * axial(t) + ...)^2 solved for t.
double hitFrustum(const ContourPoint& a, const ContourPoint& b, const AxialRay& ray, const double (&radiusSquared)[3],
                  HitRange range) {
    const double slope = (b.radius - a.radius) / (b.axial - a.axial);
    const double coneRadius = a.radius + slope * (ray.axial - a.axial);
    const double coneStep = slope * ray.axialStep;
    const double c0 = radiusSquared[0] - coneRadius * coneRadius;
    const double c1 = radiusSquared[1] - coneStep * coneRadius;
    const double c2 = radiusSquared[2] - coneStep * coneStep;

    const auto [from, to] = std::minmax(a.axial, b.axial);
    const auto accept = [&, from = from, to = to](double t) {
        const double axial = ray.axialAt(t);
        const bool isOnCone = coneRadius + coneStep * t >= 0.0; // not on its mirror image beyond the apex
        return t >= range.from && t < range.to && axial >= from - kJoint && axial <= to + kJoint && isOnCone;
    };
    const double discriminant = c1 * c1 - c2 * c0;
    if (!(discriminant >= 0.0)) {
        return range.to;
    }
    // The form of the roots that does not cancel; a vanishing c2 leaves one finite root.
    const double q = -(c1 + std::copysign(std::sqrt(discriminant), c1));
    auto [first, second] = std::pair{q / c2, c0 / q};
    if (first > second) {
        std::swap(first, second);
    }
    if (accept(first)) {
        return first;
    }
    return accept(second) ? second : range.to;
}

} // namespace

SurfaceOfRevolution::SurfaceOfRevolution(const Contour& contour) : contour_(contour) {
    const std::size_t segments = contour_.size() - 1;
    nodes_.assign(2 * std::bit_ceil(segments), Node{0.0, 0.0, 0.0, 0.0, -2});
    build(0, 0, static_cast<int>(segments));
}

void SurfaceOfRevolution::build(std::size_t node, int first, int last) {
    Node& n = nodes_[node];
    n = {contour_[static_cast<std::size_t>(first)].axial, contour_[static_cast<std::size_t>(first)].axial,
         contour_[static_cast<std::size_t>(first)].radius, contour_[static_cast<std::size_t>(first)].radius, -1};
    for (int i = first; i <= last; ++i) {
        const ContourPoint& p = contour_[static_cast<std::size_t>(i)];
        n.minAxial = std::min(n.minAxial, p.axial - kJoint);
        n.maxAxial = std::max(n.maxAxial, p.axial + kJoint);
        n.minRadius = std::min(n.minRadius, p.radius - kJoint);
        n.maxRadius = std::max(n.maxRadius, p.radius + kJoint);
    }
    if (last - first == 1) {
        n.segment = first;
        return;
    }
    const int middle = (first + last) / 2;
    build(2 * node + 1, first, middle);
    build(2 * node + 2, middle, last);
}

double SurfaceOfRevolution::hitNode(std::size_t node, const AxialRay& ray, const double (&radiusSquared)[3],
                                    HitRange range) const {
    const Node& n = nodes_[node];
    const HitRange inside = clipAxially(ray, n.minAxial, n.maxAxial, range);
    if (!(inside.from <= inside.to)) {
        return range.to;
    }
    // The squared distance from the axis is convex along the ray.
    const double closest = std::clamp(-radiusSquared[1] / radiusSquared[2], inside.from, inside.to);
    if (valueAt(radiusSquared, closest) > n.maxRadius * n.maxRadius ||
        std::max(valueAt(radiusSquared, inside.from), valueAt(radiusSquared, inside.to)) < n.minRadius * n.minRadius) {
        return range.to;
    }
    if (n.segment >= 0) {
        const ContourPoint& a = contour_[static_cast<std::size_t>(n.segment)];
        const ContourPoint& b = contour_[static_cast<std::size_t>(n.segment) + 1];
        const bool isDisc = a.axial == b.axial;
        return isDisc ? hitDisc(a, b, ray, radiusSquared, range) : hitFrustum(a, b, ray, radiusSquared, range);
    }
    range.to = hitNode(2 * node + 1, ray, radiusSquared, range);
    return hitNode(2 * node + 2, ray, radiusSquared, range);
}

double SurfaceOfRevolution::hit(const AxialRay& ray, HitRange range) const {
    double radiusSquared[3] = {0.0, 0.0, 0.0};
    for (int i = 0; i < 2; ++i) {
        radiusSquared[0] += ray.across[i] * ray.across[i];
        radiusSquared[1] += ray.across[i] * ray.acrossStep[i];
        radiusSquared[2] += ray.acrossStep[i] * ray.acrossStep[i];
    }
    return hitNode(0, ray, radiusSquared, range);
}

double SurfaceOfRevolution::outerRadius(double axial) const {
    double radius = 0.0;
    for (std::size_t i = 0; i + 1 < contour_.size(); ++i) {
        const ContourPoint& a = contour_[i];
        const ContourPoint& b = contour_[i + 1];
        if (a.axial == b.axial || axial < std::min(a.axial, b.axial) || axial > std::max(a.axial, b.axial)) {
            continue;
        }
        const double t = (axial - a.axial) / (b.axial - a.axial);
        radius = std::max(radius, a.radius + t * (b.radius - a.radius));
    }
    return radius;
}

} // namespace kxsim
