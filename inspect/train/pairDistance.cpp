// The distance across a wheel pair, and the yaw of its axle.
#include "inspect/train/pairDistance.h"

#include "inspect/fitting/studentT.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr double kMrad = 1000.0;

double halfWidth(double error, double freedom) {
    return studentT(freedom) * error;
}

/// A yaw as one wheel shows it.
struct SeenYaw {
    double yaw;
    double error; ///< standard error
    double freedom;
};

std::optional<SeenYaw> yawOf(const PairSide& side) {
    if (side.stand == nullptr || !side.stand->hasPlaces || !side.stand->line) {
        return {};
    }
    const RobustLine& line = *side.stand->line;
    // The wheel that sensor 2 sees is ahead: its face comes nearer while it passes, that of the other one goes away.
    const double sign = side.sensor == 2 ? 1.0 : -1.0;
    const double across = side.stand->across;
    return SeenYaw{sign * std::atan(across * line.slope), across * line.slopeError(), line.freedom()};
}

/// The mean by weights. Wheels that differ by more than noise explains widen its error until they fit.
SeenYaw meanOf(const SeenYaw& a, const SeenYaw& b) {
    const double least = 1e-9; // keeps weights defined on data without noise
    const double va = a.error * a.error + least * least;
    const double vb = b.error * b.error + least * least;
    const double apart = a.yaw - b.yaw;
    constexpr double kExplained = 9.0; // three standard errors
    const double ratio = apart * apart / (va + vb);
    const double widened = ratio > kExplained ? ratio : 1.0;
    return {(a.yaw * vb + b.yaw * va) / (va + vb), std::sqrt(widened * va * vb / (va + vb)), a.freedom + b.freedom};
}

std::string whyNoYaw(const std::array<PairSide, 2>& sides) {
    const auto hasNoPlaces = [](const PairSide& side) { return side.stand != nullptr && !side.stand->hasPlaces; };
    for (const PairSide& side : sides) {
        if (side.stand != nullptr && side.stand->hasPlaces) {
            return whyNoFaceLine(side.stand->face);
        }
    }
    return std::any_of(sides.begin(), sides.end(), hasNoPlaces) ? "the records of the pass have no rising z"
                                                                : "no sensor saw the wheels";
}

/// The place behind both axles nearest to them at which both back faces are seen.
double chordOf(const WheelStand& first, const WheelStand& second) {
    const double from = std::max(first.from, second.from);
    const double to = std::min(first.to, second.to);
    const bool isOneUnit = first.hasPlaces && second.hasPlaces;
    return isOneUnit && from <= to ? std::clamp(0.0, from, to) : 0.0;
}

} // namespace

void measureYaw(const std::array<PairSide, 2>& sides, WheelPair& pair) {
    const std::optional<SeenYaw> first = yawOf(sides[0]);
    const std::optional<SeenYaw> second = yawOf(sides[1]);
    if (!first && !second) {
        pair.yawReason = whyNoYaw(sides);
        return;
    }
    const SeenYaw yaw = first && second ? meanOf(*first, *second) : first ? *first : *second;
    pair.yaw = static_cast<float>(kMrad * yaw.yaw);
    pair.yawInterval = Interval::around(pair.yaw, static_cast<float>(kMrad * halfWidth(yaw.error, yaw.freedom)));
}

bool measureDistance(const std::array<PairSide, 2>& sides, double baseDistance, std::optional<float> baseUncertainty,
                     WheelPair& pair) {
    const WheelStand& first = *sides[0].stand;
    const WheelStand& second = *sides[1].stand;
    if (!first.line || !second.line) {
        return false;
    }
    const double chord = chordOf(first, second);
    double across = baseDistance;
    double squares =
        baseUncertainty ? static_cast<double>(*baseUncertainty) * static_cast<double>(*baseUncertainty) : 0.0;
    for (const WheelStand* const stand : {&first, &second}) {
        const RobustLine& line = *stand->line;
        const double place = stand->axle.place + chord;
        across += stand->across * line.at(place);
        const double byNoise = stand->across * halfWidth(line.errorAt(place), line.freedom());
        constexpr double kNormal = 1.96;
        const double byPlace = kNormal * stand->across * line.slope * stand->axle.error;
        squares += byNoise * byNoise + byPlace * byPlace;
    }
    // What is measured is across the track, between the middles of wheels that are not side by side.
    const double cosine = std::isfinite(pair.yaw) ? std::cos(static_cast<double>(pair.yaw) / kMrad) : 1.0;
    pair.distance = static_cast<float>(across / cosine);
    pair.chord = static_cast<float>(chord);
    pair.interval = Interval::around(pair.distance, static_cast<float>(std::sqrt(squares)));
    return true;
}

} // namespace KxInspect::detail
