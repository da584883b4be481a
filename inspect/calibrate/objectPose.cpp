// The pose of a sensor in the frame of the calibration object.
#include "inspect/calibrate/objectPose.h"

#include "inspect/calibrate/flankPoints.h"
#include "inspect/calibrate/poseUncertainty.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace KxInspect::detail {

namespace {

using Pose = ObjectPose;

/// The inverse of the normal matrix, and the step towards the least squares.
struct Step {
    Matrix<Pose::kCount> inverse;
    Gradient step;
    double variance; ///< of the points
};

std::optional<Step> solve(const FlankPoints& points, const Pose& pose) {
    const Tangent tangent(pose);
    Matrix<Pose::kCount> normal{};
    Gradient right{};
    double squares = 0.0;
    int count = 0;
    points.forEach([&](const ReadPoint& p, std::size_t flank, double distance) {
        const Gradient gradient = tangent.gradient(p, points.plane(flank));
        addProduct(normal, gradient, gradient);
        for (std::size_t i = 0; i < gradient.size(); ++i) {
            right[i] -= gradient[i] * distance;
        }
        squares += distance * distance;
        ++count;
    });
    const auto inverse = inverseOf(normal);
    if (!inverse || count <= Pose::kCount) {
        return std::nullopt;
    }
    return Step{*inverse, *inverse * right, squares / (count - static_cast<int>(Pose::kCount))};
}

std::optional<ObjectFit> fitPose(const std::vector<ReadPoint>& points, const CalibrationObject& object,
                                 const Pose& start, double slopeFactor) {
    constexpr int kRounds = 40;
    constexpr double kSmall = 1e-3; // standard deviations
    constexpr double kAlmost = 0.3; // a point more or less among the outliers moves the values by about so much
    FlankPoints onFlanks(points, object, slopeFactor);
    Pose pose = start;
    double largest = 0.0;
    for (int round = 0; round < kRounds; ++round) {
        onFlanks.look(pose);
        const auto solution = solve(onFlanks, pose);
        if (!solution) {
            return std::nullopt;
        }
        largest = 0.0;
        for (std::size_t i = 0; i < Pose::kCount; ++i) {
            pose.values[i] += solution->step[i];
            const double variance = std::max(solution->variance, kResolution * kResolution);
            const double deviation = std::sqrt(variance * solution->inverse[i][i]);
            largest = std::max(largest, std::abs(solution->step[i]) / deviation);
        }
        if (!(largest > kSmall)) {
            break;
        }
    }
    onFlanks.look(pose);
    const auto solution = solve(onFlanks, pose);
    if (!solution || largest > kAlmost) {
        return std::nullopt;
    }
    ObjectFit fit;
    fit.pose = pose;
    fit.noise = std::sqrt(solution->variance);
    fit.areOutliers = onFlanks.areOutliers();
    judge(onFlanks, solution->inverse, fit);
    return fit;
}

} // namespace

Vec3 ObjectPose::alongX() const {
    const double sinA = std::sin(values[kAlpha]);
    const double sinB = std::sin(values[kBeta]);
    const double cosB = std::cos(values[kBeta]);
    const double sinC = std::sin(values[kGamma]);
    const double cosC = std::cos(values[kGamma]);
    return {sinA * cosB * cosC + sinB * sinC, sinA * sinB * cosC - sinC * cosB, std::cos(values[kAlpha]) * cosC};
}

Vec3 ObjectPose::alongY() const {
    const double cosA = std::cos(values[kAlpha]);
    return {cosA * std::cos(values[kBeta]), cosA * std::sin(values[kBeta]), -std::sin(values[kAlpha])};
}

Vec3 ObjectPose::at(const ReadPoint& point) const {
    const Vec3 u = alongX();
    const Vec3 v = alongY();
    return {values[kX] + point.x * u[0] + point.y * v[0], values[kY] + point.x * u[1] + point.y * v[1],
            values[kZ] + point.x * u[2] + point.y * v[2]};
}

std::optional<ObjectFit> fitObjectPose(const std::vector<ReadPoint>& points, const CalibrationObject& object,
                                       const ObjectPose& start) {
    // The oblique ridge may have the slope of the others along Z or across the ridge.
    std::optional<ObjectFit> best;
    for (const double factor : {1.0, std::hypot(1.0, object.obliqueness)}) {
        auto fit = fitPose(points, object, start, factor);
        if (fit && (!best || fit->noise < best->noise)) {
            best = std::move(fit);
        }
    }
    return best;
}

void addObjectError(const std::vector<ReadPoint>& points, const CalibrationObject& object, const ObjectError& error,
                    ObjectFit& fit) {
    const std::pair<double CalibrationObject::*, double> errors[] = {
        {&CalibrationObject::pitch, error.pitch},
        {&CalibrationObject::slope, error.slope},
        {&CalibrationObject::obliqueness, error.obliqueness}};
    for (const auto& [measure, deviation] : errors) {
        if (deviation == 0.0) {
            continue;
        }
        CalibrationObject smaller = object;
        CalibrationObject larger = object;
        smaller.*measure -= deviation;
        larger.*measure += deviation;
        const auto below = fitObjectPose(points, smaller, fit.pose);
        const auto above = fitObjectPose(points, larger, fit.pose);
        for (std::size_t i = 0; i < ObjectPose::kCount; ++i) {
            const double change = below && above ? (above->pose.values[i] - below->pose.values[i]) / 2.0
                                                 : std::numeric_limits<double>::infinity();
            fit.objectDeviations[i] = std::hypot(fit.objectDeviations[i], change);
        }
    }
}

} // namespace KxInspect::detail
