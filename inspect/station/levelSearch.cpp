// The level line: where it may lie so that distances do not depend on it.
#include "inspect/station/levelSearch.h"

#include "inspect/fitting/median.h"
#include "inspect/train/wheelDistance.h"

#include <KxMath/KxWheelDetection.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace KxInspect::detail {

namespace {

// The flange is 33 mm thick at most (EN 13715): beyond that, the level line would let in what is no back face.
constexpr double kMostMargin = 30.0; // mm
constexpr double kMarginStep = 0.5; // mm
// What gauges for the back-to-back distance read to; differences below it are no reason to move a line.
constexpr double kAlike = 0.1; // mm
// A range of margins that leaves 2 mm to both sides of its middle. Below that the line is turned.
constexpr double kNarrow = 4.0; // mm

double radians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}

double medianOf(const std::vector<WheelRecords>& wheels, float KxMath::KxLine::*part) {
    std::vector<double> values;
    values.reserve(wheels.size());
    for (const WheelRecords& wheel : wheels) {
        values.push_back(static_cast<double>(wheel.line.*part));
    }
    return median(values);
}

double offsetOf(const KxMath::KxLine& line, const KxMath::KxLine& reference) {
    const double across = std::cos(std::atan(static_cast<double>(reference.k)));
    return (static_cast<double>(line.b) - static_cast<double>(reference.b)) * across;
}

/// The offset as a pass is measured; NaN when no line can be fitted.
double measuredOffset(const WheelRecords& wheel, const KxMath::KxLine& level, const KxMath::KxLine& reference) {
    KxMath::KxBestWheelProfile best(level);
    KxMath::KxProfile profile;
    for (const PointList& points : wheel.profiles) {
        profile.points = points;
        best.add(profile);
    }
    KxMath::KxProfile half;
    half.points = fittedHalf(best.profile().points);
    KxMath::KxLine fit;
    return half.calcLine(fit) ? offsetOf(fit, reference) : std::numeric_limits<double>::quiet_NaN();
}

/// Least squares in double precision: there are too many points for the sums of KxProfile::calcLine().
bool fitLine(const std::vector<std::pair<double, double>>& points, KxMath::KxLine& line) {
    const double count = static_cast<double>(points.size());
    double meanX = 0.0;
    double meanY = 0.0;
    for (const auto& [x, y] : points) {
        meanX += x / count;
        meanY += y / count;
    }
    double xx = 0.0;
    double xy = 0.0;
    for (const auto& [x, y] : points) {
        xx += (x - meanX) * (x - meanX);
        xy += (x - meanX) * (y - meanY);
    }
    line.k = static_cast<float>(xy / xx);
    line.b = static_cast<float>(meanY - xy / xx * meanX);
    return std::isfinite(line.k) && std::isfinite(line.b);
}

class LevelSearch {
public:
    explicit LevelSearch(const std::vector<WheelRecords>& wheels) : wheels_(wheels) {
        reference_.k = static_cast<float>(medianOf(wheels, &KxMath::KxLine::k));
        reference_.b = static_cast<float>(medianOf(wheels, &KxMath::KxLine::b));
        std::vector<double> middles;
        std::vector<double> lengths;
        for (const WheelRecords& wheel : wheels) {
            farthest_ = std::max(farthest_, offsetOf(wheel.line, reference_));
            middles.push_back((wheel.fromX + wheel.toX) / 2.0);
            lengths.push_back((wheel.toX - wheel.fromX) / std::cos(std::atan(static_cast<double>(reference_.k))));
        }
        middle_ = median(middles);
        halfLength_ = median(lengths) / 2.0;
    }

    /// The best margin at a turn. A turned line is farther from the faces at one end than in their middle.
    SensorLines search(double turn) const {
        const double most = kMostMargin - std::abs(std::tan(radians(turn))) * halfLength_;
        std::vector<double> deviations;
        for (double margin = kMarginStep; margin <= most || deviations.empty(); margin += kMarginStep) {
            deviations.push_back(largestDeviation(levelAt(margin, turn)));
        }
        const auto least = std::min_element(deviations.begin(), deviations.end());
        const auto isAlike = [&](double deviation) { return deviation <= *least + kAlike; }; // NaN is infinity here
        auto from = least;
        auto to = least;
        while (from != deviations.begin() && isAlike(*(from - 1))) {
            --from;
        }
        while (to + 1 != deviations.end() && isAlike(*(to + 1))) {
            ++to;
        }
        const auto marginAt = [&](auto at) { return kMarginStep * static_cast<double>(at - deviations.begin() + 1); };
        SensorLines lines;
        lines.reference = reference_;
        lines.fromMargin = marginAt(from);
        lines.toMargin = marginAt(to);
        lines.margin = (lines.fromMargin + lines.toMargin) / 2.0;
        lines.turn = turn;
        lines.level = levelAt(lines.margin, turn);
        lines.deviation = largestDeviation(lines.level);
        return lines;
    }

private:
    /// A line that is `margin` beyond the farthest face in the middle of the faces.
    KxMath::KxLine levelAt(double margin, double turn) const {
        const double angle = std::atan(static_cast<double>(reference_.k));
        const double middleY = static_cast<double>(reference_.k) * middle_ + static_cast<double>(reference_.b) +
                               (farthest_ + margin) / std::cos(angle);
        const double slope = std::tan(angle + radians(turn));
        return {static_cast<float>(slope), static_cast<float>(middleY - slope * middle_)};
    }

    double largestDeviation(const KxMath::KxLine& level) const {
        double largest = 0.0;
        for (const WheelRecords& wheel : wheels_) {
            const double deviation =
                std::abs(measuredOffset(wheel, level, reference_) - offsetOf(wheel.line, reference_));
            largest = std::isnan(deviation) ? std::numeric_limits<double>::infinity() : std::max(largest, deviation);
            if (std::isinf(largest)) {
                break;
            }
        }
        return largest;
    }

    const std::vector<WheelRecords>& wheels_;
    KxMath::KxLine reference_;
    double farthest_ = -std::numeric_limits<double>::infinity(); ///< offset of the face farthest from the sensor
    double middle_ = 0.0; ///< x of the middle of the faces
    double halfLength_ = 0.0; ///< of the faces, along them, mm
};

} // namespace

bool fitFace(const FaceLine& face, double deviation, WheelRecords& wheel) {
    constexpr std::size_t kFewestPoints = 10;
    std::vector<std::pair<double, double>> points;
    for (const PointList& profile : wheel.profiles) {
        for (const KxMath::KxPointXY& p : profile) {
            const auto [x, y] = std::pair(static_cast<double>(p.x), static_cast<double>(p.y));
            if (std::abs(face.distanceOf(x, y) - wheel.away) <= deviation) { // NaN: false
                points.emplace_back(x, y);
            }
        }
    }
    if (points.size() < kFewestPoints) {
        return false;
    }
    std::sort(points.begin(), points.end());
    const std::size_t outer = points.size() / 20; // stray points at the ends
    wheel.fromX = points[outer].first;
    wheel.toX = points[points.size() - 1 - outer].first;
    return fitLine(points, wheel.line);
}

std::optional<SensorLines> findLines(const FaceLine& face, const std::vector<WheelRecords>& wheels) {
    if (wheels.empty()) {
        return std::nullopt;
    }
    const LevelSearch search(wheels);
    const auto isGood = [](const SensorLines& lines) { return lines.deviation <= 2.0 * kAlike; };
    const auto width = [](const SensorLines& lines) { return lines.toMargin - lines.fromMargin; };
    std::optional<SensorLines> best;
    for (const double turn : {0.0, -10.0, 10.0, -20.0, 20.0, -30.0, 30.0, -45.0, 45.0}) {
        constexpr double kSteepest = 87.0;
        if (std::abs(face.degrees + turn) > kSteepest) {
            continue;
        }
        const SensorLines lines = search.search(turn);
        if (isGood(lines) && (!best || width(lines) > width(*best))) {
            best = lines;
        }
        if (best && width(*best) >= kNarrow) {
            break; // the less it is turned, the farther it is from other things
        }
    }
    return best;
}

} // namespace KxInspect::detail
