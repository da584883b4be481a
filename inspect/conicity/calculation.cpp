// The calculation with prepared profiles.
#include "inspect/conicity/calculation.h"

#include "inspect/base/points.h"
#include "inspect/fitting/lookUp.h"
#include "inspect/sections/plausibility.h"
#include "inspect/sections/runningSurface.h"

#include <KxInspect/KxMathTypes.h>
#include <KxInspect/Wheel.h>
#include <KxMath/KxConicity.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace KxInspect::detail {

namespace {

using KxMath::KxProfile;

/// An array that the core fills with new profiles, and that owns them.
class HandedOut {
public:
    explicit HandedOut(std::size_t size) : profiles_(size) {}
    HandedOut(const HandedOut&) = delete;
    HandedOut& operator=(const HandedOut&) = delete;
    ~HandedOut() { std::for_each(profiles_.begin(), profiles_.end(), std::default_delete<KxProfile>()); }

    KxProfile** data() { return profiles_.data(); }
    const KxProfile* operator[](std::size_t i) const { return profiles_[i]; }

private:
    std::vector<KxProfile*> profiles_;
};

/// Sufficient for all displacements of profiles of kMaxSectionWidth.
constexpr std::size_t kMostContacts = 20000;

/// The output of the core for one side.
struct Side {
    KxProfile slope;
    HandedOut contacts{kMostContacts};
    int count = 0;
};

Point toPoint(const KxMath::KxPointXY& p) {
    return {p.x, p.y};
}

/// @param outwards the sign of x outwards on this side
std::vector<Contact> contactsOf(const Side& side, float outwards) {
    std::vector<Contact> contacts;
    for (int i = 0; i < side.count; ++i) {
        const auto& pair = side.contacts[static_cast<std::size_t>(i)]->points; // of the wheel and of the rail
        const KxMath::KxPointXY slope = side.slope.points.at(i);
        const Point rail = toPoint(pair.at(1));
        const float first = contacts.empty() ? rail.x : contacts.front().rail.x;
        contacts.push_back({slope.x, slope.y, toPoint(pair.at(0)), rail, outwards * (rail.x - first)});
    }
    return contacts;
}

const char* reasonOf(const ConicityResult& result) {
    if (result.conicity.empty()) {
        return "no conicity can be calculated from these profiles";
    }
    return std::any_of(result.conicity.begin(), result.conicity.end(), hasConicity)
               ? ""
               : "no amplitude has a conicity: the difference of radii is too rough for the method";
}

/// The curve with NaN where the core gives 0 or infinity for want of a conicity, so that nothing is interpolated to that.
void dropValuesWithoutConicity(std::vector<Point>& curve) {
    for (Point& p : curve) {
        p.y = hasConicity(p) ? p.y : std::numeric_limits<float>::quiet_NaN();
    }
}

/// y of the flange tip of a wheel, which has points.
float tipOf(const std::vector<Point>& wheel) {
    return std::max_element(wheel.begin(), wheel.end(), isHigher)->y;
}

/// The height of the flange tip over the tape circle; NaN when the wheel does not reach so far.
float flangeHeight(const std::vector<Point>& wheel) {
    return tipOf(wheel) - static_cast<float>(valueAt(wheel, static_cast<double>(wheel.front().x + kTapeCircleX)));
}

/// How far the first point of a wheel is above its flange tip.
float backHeight(const std::vector<Point>& wheel) {
    return tipOf(wheel) - wheel.front().y;
}

/// What the calculation takes: it counts the radii at the first height over the flange tips that both flange backs
/// have. So both get the same first height, in front of what a rail can touch, and the difference of the radii there.
struct Wheels {
    PerWheelSetPart<Profile> sections;
    float radius1;
    float radius2;
};

Wheels countedFromFlangeBacks(const PerWheelSetPart<Profile>& sections, const ConicityInput& input) {
    Wheels wheels{sections, input.radius1, input.radius2};
    const std::vector<Point>& first = sections[Wheel1].points;
    const std::vector<Point>& second = sections[Wheel2].points;
    if (first.empty() || second.empty() || !wheelContradiction(first).isEmpty() ||
        !wheelContradiction(second).isEmpty()) {
        return wheels;
    }
    if (const float higher = flangeHeight(second) - flangeHeight(first); std::isfinite(higher)) {
        wheels.radius2 += higher;
    }
    const float height = std::max(backHeight(first), backHeight(second));
    for (const WheelSetPart part : {Wheel1, Wheel2}) {
        std::vector<Point>& points = wheels.sections[part].points;
        points.front().y -= height - backHeight(points);
    }
    return wheels;
}

/// The oscillation with the core's difference of radii.
Oscillation oscillationOf(const std::vector<Point>& deltaR) {
    constexpr float kHalf = 0.05f; // of the core's step
    std::vector<float> values;
    std::size_t centre = 0;
    for (const Point& p : deltaR) {
        centre += p.x < -kHalf ? 1 : 0;
        values.push_back(p.y);
    }
    return {values, centre};
}

/// The core's curve begins at 1 mm: the amplitudes before.
std::vector<Point> smallAmplitudes(const std::vector<Point>& curve) {
    constexpr int kFirst = 5; // tenths of a millimetre
    constexpr float kTenth = 0.1f;
    std::vector<Point> small;
    for (int i = kFirst; !curve.empty() && static_cast<float>(i) * kTenth < curve.front().x - kTenth / 2.0f; ++i) {
        small.push_back({static_cast<float>(i) * kTenth, 0.0f});
    }
    return small;
}

void fill(std::vector<Point>& curve, const Oscillation& oscillation) {
    for (Point& p : curve) {
        const auto value = oscillation.conicity(static_cast<double>(p.x));
        p.y = value ? static_cast<float>(*value) : std::numeric_limits<float>::quiet_NaN();
    }
}

/// The conicity of a curve at an amplitude, as conicityAt().
std::optional<float> conicityIn(const std::vector<Point>& curve, float amplitude) {
    const Point p{amplitude, static_cast<float>(valueAt(curve, static_cast<double>(amplitude)))};
    return hasConicity(p) ? std::optional(p.y) : std::nullopt;
}

constexpr float kLeastAmplitude = 0.5f; // mm
constexpr float kEdgeMargin = 0.001f; // mm

} // namespace

void calculate(const PerWheelSetPart<Profile>& sections, const ConicityInput& input, const Oscillation& oscillation,
               ConicityResult& result) {
    const Wheels wheels = countedFromFlangeBacks(sections, input);
    const auto section = [&wheels](WheelSetPart part) { return toKxProfile(wheels.sections[part]); };
    KxProfile conicity;
    KxProfile deltaR;
    HandedOut placed(sections.size());
    Side first;
    Side second;
    KxMath::EquivalentConicity(section(Wheel1), section(Wheel2), section(Rail1), section(Rail2), wheels.radius1,
                               wheels.radius2, input.gauge, input.backToBack, input.amplitudes, conicity, deltaR,
                               first.slope, second.slope, placed.data(), first.contacts.data(), first.count,
                               second.contacts.data(), second.count, input.edgeMargin.value_or(kEdgeMargin));
    for (std::size_t part = 0; part < sections.size(); ++part) {
        if (placed[part] != nullptr) {
            assign(placed[part]->points, result.sections[part].points);
        }
    }
    assign(conicity.points, result.conicity);
    assign(deltaR.points, result.deltaR);
    std::vector<Point> small = smallAmplitudes(result.conicity);
    if (input.edgeMargin) {
        dropValuesWithoutConicity(result.conicity);
        fill(small, oscillationOf(result.deltaR));
    } else {
        fill(result.conicity, oscillation);
        fill(small, oscillation);
    }
    result.conicity.insert(result.conicity.begin(), small.begin(), small.end());
    result.contacts1 = contactsOf(first, -1.0f);
    result.contacts2 = contactsOf(second, 1.0f);
    result.reason = reasonOf(result);
}

void fillRows(ConicityResult& result, const std::vector<Point>& curveAsMeasured) {
    constexpr int kLast = 10;
    const auto rowAt = [&](float amplitude) {
        return ConicityRow{amplitude, conicityIn(result.conicity, amplitude), intervalAt(result, amplitude),
                           conicityIn(curveAsMeasured, amplitude)};
    };
    const ConicityRow shown = rowAt(result.shownAmplitude);
    result.shownConicity = shown.conicity;
    result.shownInterval = shown.interval;
    result.shownAsMeasured = shown.asMeasured;
    result.rows = {rowAt(kLeastAmplitude)};
    for (int amplitude = 1; amplitude <= kLast; ++amplitude) {
        result.rows.push_back(rowAt(static_cast<float>(amplitude)));
    }
}

Interval bandAt(const ConicityResult& result, float amplitude) {
    std::vector<Point> low;
    std::vector<Point> high;
    for (std::size_t i = 0; i < std::min(result.conicity.size(), result.intervals.size()); ++i) {
        low.push_back({result.conicity[i].x, result.intervals[i].low});
        high.push_back({result.conicity[i].x, result.intervals[i].high});
    }
    const auto x = static_cast<double>(amplitude);
    return {static_cast<float>(valueAt(low, x)), static_cast<float>(valueAt(high, x))};
}

Stand standOf(const ConicityInput& input) {
    const double clearance = (static_cast<double>(input.gauge) - static_cast<double>(input.backToBack)) / 2.0;
    return {{clearance, clearance}, static_cast<double>(input.radius2) - static_cast<double>(input.radius1)};
}

} // namespace KxInspect::detail

namespace KxInspect {

std::optional<float> conicityAt(const ConicityResult& result, float amplitude) {
    return detail::conicityIn(result.conicity, amplitude);
}

Interval intervalAt(const ConicityResult& result, float amplitude) {
    return conicityAt(result, amplitude) ? detail::bandAt(result, amplitude) : Interval();
}

} // namespace KxInspect
