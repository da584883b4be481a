// The potential of the wheel-set's oscillation.
#include "railway/conicity/steps.h"

#include "profile/area.h"
#include "profile/signChanges.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace KxMath::detail {

namespace {

constexpr float kCurveStep = 0.01f; // of the potential in mm^2, and of the amplitude in mm

/// Potentials beyond this belong to no wheel: the radii differ by less than 15 mm all the way.
constexpr float kMaxPotential = 10000.0f;

/// The index at which the radii are equal and the displacement is smallest, the first of equal ones. Radii count as
/// equal within a tolerance that grows until there is such an index, and next to a change of the sign.
std::optional<qsizetype> findCentre(const QList<KxPointXY>& deltaR) {
    if (std::none_of(deltaR.cbegin(), deltaR.cend(), [](const KxPointXY& p) { return std::isfinite(p.y); })) {
        return {};
    }
    std::optional<qsizetype> centre;
    const auto consider = [&](qsizetype candidate) {
        if (!centre || std::abs(deltaR[candidate].x) < std::abs(deltaR[*centre].x)) {
            centre = candidate;
        }
    };
    double tolerance = 0.001;
    while (!centre) {
        for (qsizetype i = 0; i < deltaR.size(); ++i) {
            const float value = deltaR[i].y;
            if (static_cast<double>(std::abs(value)) <= tolerance) { // NaN: false
                consider(i);
            } else if (i + 1 < deltaR.size() && changesSign(value, deltaR[i + 1].y)) {
                consider(std::abs(deltaR[i + 1].y) < std::abs(value) ? i + 1 : i);
            }
        }
        tolerance *= 1.25;
    }
    return centre;
}

/// The points (potential, displacement) to the right of the centre.
KxProfile potentialToTheRight(const QList<KxPointXY>& deltaR, qsizetype centre) {
    KxProfile curve;
    curve.points.append(KxPointXY(0.0f, deltaR[centre].x));
    float area = 0.0f;
    for (qsizetype p = centre + 1; p < deltaR.size(); ++p) {
        area += trapezoid(deltaR[p - 1], deltaR[p]);
        curve.points.append(KxPointXY(std::abs(area), deltaR[p].x));
    }
    return curve;
}

/// The points (potential, displacement) to the left of the centre. Each area is summed from its own left end on, so
/// that none is the continuation of another.
KxProfile potentialToTheLeft(const QList<KxPointXY>& deltaR, qsizetype centre) {
    KxProfile curve;
    curve.points.append(KxPointXY(0.0f, deltaR[centre].x));
    for (qsizetype p = centre - 1; p >= 0; --p) {
        float area = 0.0f;
        for (qsizetype i = p; i < centre; ++i) {
            area += trapezoid(deltaR[i], deltaR[i + 1]);
        }
        curve.points.append(KxPointXY(std::abs(area), deltaR[p].x));
    }
    return curve;
}

void resampleByPotential(KxProfile& curve) {
    if (curve.size() < 2 || curve.points.at(0).x == curve.points.at(1).x) {
        return; // deliberately only then
    }
    curve.interpolate(kCurveStep, 0.0f, kMaxPotential, Akima);
}

} // namespace

qsizetype Oscillation::count() const {
    return std::min({potential.points.size(), right.points.size(), left.points.size()});
}

bool findOscillation(const QList<KxPointXY>& deltaR, Oscillation& oscillation) {
    const std::optional<qsizetype> centre = findCentre(deltaR);
    if (!centre) {
        return false;
    }
    KxProfile right = potentialToTheRight(deltaR, *centre);
    KxProfile left = potentialToTheLeft(deltaR, *centre);
    resampleByPotential(right);
    resampleByPotential(left);

    const qsizetype count = std::min(right.points.size(), left.points.size());
    for (qsizetype i = 0; i < count; ++i) {
        const KxPointXY& r = right.points.at(i);
        const KxPointXY& l = left.points.at(i);
        const float amplitude = (r.y - l.y) * 0.5f;
        oscillation.potential.points.append(KxPointXY(amplitude, r.x));
        oscillation.right.points.append(KxPointXY(amplitude, r.y));
        oscillation.left.points.append(KxPointXY(amplitude, l.y));
    }
    for (KxProfile* const curve : {&oscillation.potential, &oscillation.right, &oscillation.left}) {
        curve->interpolate(kCurveStep, -kMaxWidth, kMaxWidth, Akima); // beyond, only a spline swings out
    }
    return true;
}

} // namespace KxMath::detail
