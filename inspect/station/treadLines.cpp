// The lines between which treads are judged.
#include "inspect/station/treadLines.h"

#include "inspect/train/flangeCircle.h"
#include "inspect/train/treadDefects.h"

#include <KxInspect/KxMathTypes.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace KxInspect::detail {

namespace {

// Rims are up to 150 mm wide; what is farther behind the back face is no wheel. Flange and fillet take 30 mm at least:
// flanges are worn down to 22 mm. Treads are cones of 1:40 to 1:6.7 (EN 13715).
constexpr double kNarrowestFlange = 30.0; // mm
constexpr double kWidestRim = 150.0; // mm
constexpr double kMostCone = 12.0; // degrees to the axle

struct TreadExtent {
    double from;
    double to;
};

/// Calls use(profile) for each record that shows the face of a wheel.
template <typename Use>
void forEachFace(const WheelRecords& wheel, Use use) {
    for (int record = wheel.face.first; record <= wheel.face.last; ++record) {
        use(wheel.profiles[static_cast<std::size_t>(record - wheel.first)]);
    }
}

/// The value that a share of the values is below.
double quantile(std::vector<double>& values, double share) {
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

/// How far behind its own back face the tread of a wheel begins and ends; NaN when it is not in view.
TreadExtent extentOf(const WheelRecords& wheel) {
    const double faceAngle = std::atan(static_cast<double>(wheel.line.k));
    std::vector<StraightPart> parts;
    forEachFace(wheel, [&](const PointList& profile) { addStraightParts(profile, 0, parts); });
    const double square = std::remainder(faceAngle * 180.0 / std::numbers::pi + 90.0, 180.0);
    const double limit = straightLimit(parts, square); // what bends is the tip of the flange
    std::vector<double> starts;
    std::vector<double> ends;
    for (const StraightPart& part : parts) {
        const double cone = std::abs(std::remainder(static_cast<double>(part.degrees) - square, 180.0));
        PointList point; // Qt 6.4 does not check the memory of a list that is made of its elements
        point.append({part.x, part.y});
        const double across = sectionOf(point, wheel.line, 1.0).front().across;
        if (cone <= kMostCone && static_cast<double>(part.deviation) <= 2.0 * limit &&
            across - kPartLength / 2.0 >= kNarrowestFlange && across <= kWidestRim) {
            starts.push_back(across - kPartLength / 2.0);
            ends.push_back(across + kPartLength / 2.0);
        }
    }
    constexpr double kStray = 0.02; // of the parts to either side
    if (starts.empty()) {
        const double none = std::numeric_limits<double>::quiet_NaN();
        return {none, none};
    }
    return {quantile(starts, kStray), quantile(ends, 1.0 - kStray)};
}

/// The nearest point behind the treads, as far behind the back face; infinity when there is none.
double nearestBehind(const WheelRecords& wheel, double end) {
    std::vector<double> behind;
    forEachFace(wheel, [&](const PointList& profile) {
        for (const SectionPoint& p : sectionOf(profile, wheel.line, 1.0)) {
            if (p.across > end + kPartLength) {
                behind.push_back(p.across);
            }
        }
    });
    constexpr double kStray = 0.01;
    return behind.empty() ? std::numeric_limits<double>::infinity() : quantile(behind, kStray);
}

/// How many profiles of the wheel have enough points between the lines.
int countJudged(const WheelRecords& wheel, const TreadLines& lines) {
    int judged = 0;
    forEachFace(wheel, [&](const PointList& profile) {
        judged += cutTread(profile, lines, {}).size() >= kFewestJudgedPoints ? 1 : 0;
    });
    return judged;
}

} // namespace

QString findTreadLines(const StationSide& side, FittedSensor& sensor) {
    const KxMath::KxLine& reference = side.lines->reference;
    const double across = std::cos(std::atan(static_cast<double>(reference.k)));
    std::vector<double> starts;
    std::vector<double> ends;
    double farthest = 0.0;
    double gap = std::numeric_limits<double>::infinity();
    for (const WheelRecords& wheel : side.wheels) {
        const TreadExtent extent = extentOf(wheel);
        if (!std::isnan(extent.from)) {
            starts.push_back(extent.from);
            ends.push_back(extent.to);
            gap = std::min(gap, nearestBehind(wheel, extent.to) - extent.to);
        }
        farthest = std::max(farthest, static_cast<double>(wheel.line.b - reference.b) * across);
    }
    if (2 * starts.size() < side.wheels.size()) {
        return QStringLiteral("sensor %1 shows the treads of %2 of %3 wheels: they are not in its view")
            .arg(side.serial)
            .arg(starts.size())
            .arg(side.wheels.size());
    }
    // Other rims may be wider by 10 mm and stand 15 mm farther out, unless something else is there.
    constexpr double kMostBehind = 25.0; // mm
    // Whole pieces begin up to their length behind the beginning of the tread.
    const double first = quantile(starts, 0.5);
    const double start = first - std::min(kPartLength, (first - kNarrowestFlange) / 2.0) + farthest;
    const double end = quantile(ends, 0.5) + farthest + std::min(kMostBehind, gap / 2.0);
    const auto behind = [&](double distance) {
        return KxMath::KxLine(reference.k, static_cast<float>(static_cast<double>(reference.b) + distance / across));
    };
    const TreadLines lines{behind(end), behind(start)};
    const bool areSeen = std::any_of(side.wheels.begin(), side.wheels.end(),
                                     [&](const WheelRecords& wheel) { return countJudged(wheel, lines) > 0; });
    if (!areSeen) {
        return QStringLiteral("sensor %1 shows no tread with %2 points: too few to be judged")
            .arg(side.serial)
            .arg(kFewestJudgedPoints);
    }
    sensor.treadHigh = fromKxLine(lines.high);
    sensor.treadLow = fromKxLine(lines.low);
    return {};
}

} // namespace KxInspect::detail
