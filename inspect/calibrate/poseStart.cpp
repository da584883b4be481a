// The pose of a sensor in the frame of the calibration object, from lines through the flanks.
#include "inspect/calibrate/objectPose.h"
#include "inspect/calibrate/objectSurface.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

using Pose = ObjectPose;

/// Y and Z of a point (x, y) of the profile: Y = onX[0] x + onY[0] y + offset[0], Z likewise.
struct CrossSection {
    double onX[2];
    double onY[2];
    double offset[2];
};

/// The three equally spaced lines of all straight flanks on one side of their crests, as the distance
/// onX x + onY y + offset from the middle one along Y.
struct LineFamily {
    double onX;
    double onY;
    double offset;
};

LineFamily straightFlanks(const FlankLines& lines, bool isBehind, const CalibrationObject& object) {
    const std::size_t first = isBehind ? 1 : 0;
    const double slope = (lines[first].slope + lines[first + 2].slope + lines[first + 4].slope) / 3.0;
    const double middle = (lines[first].intercept + lines[first + 2].intercept + lines[first + 4].intercept) / 3.0;
    const double step = (lines[first + 4].intercept - lines[first].intercept) / 2.0;
    // From one line to the next Z grows by the pitch.
    const double onY = (isBehind ? -1.0 : 1.0) * object.slope * object.pitch / step;
    return {-slope * onY, onY, -middle * onY};
}

/// Y +- m Z from the flanks on either side of the crests, and with it Y and Z.
CrossSection crossSection(const FlankLines& lines, const CalibrationObject& object) {
    const LineFamily before = straightFlanks(lines, false, object); // Y + m Z
    const LineFamily behind = straightFlanks(lines, true, object); // Y - m Z
    CrossSection section{};
    const auto split = [&](double sum, double difference, double(&value)[2]) {
        value[0] = (sum + difference) / 2.0;
        value[1] = (sum - difference) / (2.0 * object.slope);
    };
    split(before.onX, behind.onX, section.onX);
    split(before.onY, behind.onY, section.onY);
    split(before.offset, behind.offset, section.offset);
    return section;
}

/// The parts of the directions of x and y along X: what is missing to unit vectors at right angles. The larger one is
/// certain, the other one follows from it.
struct PartsAlongX {
    double ofX;
    double ofY;
};

PartsAlongX partsAlongX(const CrossSection& s) {
    const double ofX = std::sqrt(std::max(0.0, 1.0 - s.onX[0] * s.onX[0] - s.onX[1] * s.onX[1]));
    const double ofY = std::sqrt(std::max(0.0, 1.0 - s.onY[0] * s.onY[0] - s.onY[1] * s.onY[1]));
    const double product = -s.onX[0] * s.onY[0] - s.onX[1] * s.onY[1];
    return ofX > ofY ? PartsAlongX{ofX, product / ofX} : PartsAlongX{product / ofY, ofY};
}

Pose poseFrom(const Vec3& alongX, const Vec3& alongY, const Vec3& origin) {
    Pose pose;
    const double beta = std::atan2(alongY[1], alongY[0]);
    const double alpha = -std::asin(std::clamp(alongY[2], -1.0, 1.0));
    const double sine = std::sin(beta) * alongX[0] - std::cos(beta) * alongX[1];
    pose.values = {alpha, beta, std::atan2(sine, alongX[2] / std::cos(alpha)), origin[0], origin[1], origin[2]};
    return pose;
}

} // namespace

std::optional<ObjectPose> poseFromLines(const FlankLines& lines, const CalibrationObject& object) {
    const CrossSection s = crossSection(lines, object);
    const PartsAlongX onX = partsAlongX(s);
    const FlankLine& before = lines[2 * kObliqueRidge];
    const FlankLine& behind = lines[2 * kObliqueRidge + 1];
    const double crestX = (before.intercept - behind.intercept) / (behind.slope - before.slope);
    const double crestY = before.intercept + before.slope * crestX;
    const double crestZ = s.onX[1] * crestX + s.onY[1] * crestY + s.offset[1];
    // Mirrored in X the sensor sees the straight flanks alike; the oblique ones decide.
    const auto poseWith = [&](double side) {
        const double x = (crestZ - ridgesOf(object)[kObliqueRidge + 1].crest) / object.obliqueness -
                         side * (onX.ofX * crestX + onX.ofY * crestY);
        return poseFrom({side * onX.ofX, s.onX[0], s.onX[1]}, {side * onX.ofY, s.onY[0], s.onY[1]},
                        {x, s.offset[0], s.offset[1]});
    };
    const auto slopeError = [&](const Pose& pose) {
        double error = 0.0;
        for (const std::size_t flank : {2 * kObliqueRidge, 2 * kObliqueRidge + 1}) {
            const FlankPlane plane = planeOf(object, flank, 1.0);
            const Vec3 u = pose.alongX();
            const Vec3 v = pose.alongY();
            const double slope =
                -(u[1] + plane.onX * u[0] + plane.onZ * u[2]) / (v[1] + plane.onX * v[0] + plane.onZ * v[2]);
            error += std::abs(slope - lines[flank].slope);
        }
        return error;
    };
    const Pose one = poseWith(1.0);
    const Pose other = poseWith(-1.0);
    const Pose best = slopeError(other) < slopeError(one) ? other : one;
    const bool isFinite =
        std::all_of(best.values.begin(), best.values.end(), [](double v) { return std::isfinite(v); });
    return isFinite ? std::optional(best) : std::nullopt;
}

} // namespace KxInspect::detail
