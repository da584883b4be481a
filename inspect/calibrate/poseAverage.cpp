// The mean of poses that several profiles of one pose gave.
#include "inspect/calibrate/poseAverage.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxtool {

namespace {

/// The way from one value of a pose to another; angles modulo 360 degrees.
double difference(size_t value, double from, double to) {
    return value >= kFirstAngle ? std::remainder(to - from, 360.0) : to - from;
}

double pointDifference(const PoseMeasurement& m, const PoseValues& mean) {
    const auto own = toTrack(m.points, m.pose);
    const auto averaged = toTrack(m.points, mean);
    double largest = 0.0;
    for (size_t i = 0; i < m.points.size(); ++i) {
        if (m.points[i].flank >= 0) {
            const auto& a = own.points.at(static_cast<qsizetype>(i));
            const auto& b = averaged.points.at(static_cast<qsizetype>(i));
            largest = std::max(largest, static_cast<double>(std::hypot(a.x - b.x, a.y - b.y, a.z - b.z)));
        }
    }
    return largest;
}

/// Each profile alone is certain to 0.1 degrees and 0.3 mm: twice that is too much for one pose.
QString differenceFault(const PoseMeasurement& m, const PoseValues& mean, double points) {
    constexpr double kMaxAngle = 0.2;
    constexpr double kMaxPoint = 0.6;
    double angle = 0.0;
    for (size_t i = kFirstAngle; i < mean.size(); ++i) {
        angle = std::max(angle, std::abs(difference(i, mean[i], m.pose[i])));
    }
    if (angle <= kMaxAngle && points <= kMaxPoint) {
        return {};
    }
    return QStringLiteral("the profiles are not of one pose: '%1' differs from the mean by %2 degrees and %3 mm")
        .arg(m.name)
        .arg(angle, 0, 'f', 2)
        .arg(points, 0, 'f', 2);
}

} // namespace

PoseAverage averagePoses(const std::vector<PoseMeasurement>& measurements) {
    PoseAverage average;
    const PoseValues* first = nullptr;
    PoseValues sums{};
    PoseValues squares{};
    for (const PoseMeasurement& m : measurements) {
        if (!m.fault.isEmpty()) {
            continue;
        }
        first = first == nullptr ? &m.pose : first;
        ++average.profiles;
        average.foundY += m.foundY;
        for (size_t i = 0; i < sums.size(); ++i) {
            const double d = difference(i, (*first)[i], m.pose[i]);
            sums[i] += d;
            squares[i] += d * d;
        }
    }
    const double n = average.profiles;
    if (first == nullptr) {
        return average;
    }
    average.foundY /= n;
    for (size_t i = 0; i < sums.size(); ++i) {
        average.pose[i] = (*first)[i] + sums[i] / n;
        const double variance = std::max(0.0, squares[i] - sums[i] * sums[i] / n) / (n - 1.0);
        average.deviation[i] = n > 1.0 ? std::sqrt(variance) : std::numeric_limits<double>::quiet_NaN();
    }
    for (const PoseMeasurement& m : measurements) {
        if (!m.fault.isEmpty()) {
            continue;
        }
        for (size_t i = 0; i < sums.size(); ++i) {
            average.largest[i] = std::max(average.largest[i], std::abs(difference(i, average.pose[i], m.pose[i])));
        }
        const double points = pointDifference(m, average.pose);
        average.pointDifference = std::max(average.pointDifference, points);
        if (average.fault.isEmpty()) {
            average.fault = differenceFault(m, average.pose, points);
        }
    }
    return average;
}

} // namespace kxtool
