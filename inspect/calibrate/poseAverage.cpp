// The mean of the poses of several profiles.
#include "inspect/calibrate/poseAverage.h"

#include "inspect/base/paths.h"
#include "inspect/calibrate/flankResiduals.h"

#include <algorithm>

namespace KxInspect::detail {

namespace {

constexpr SensorPose kZero{0.0, 0.0, 0.0, 0.0, 0.0, 0.0};

/// The difference of two values of a pose; angles modulo 360 degrees.
double difference(const PoseField& field, const SensorPose& from, const SensorPose& to) {
    const double way = to.*field.value - from.*field.value;
    return field.isAngle ? std::remainder(way, 360.0) : way;
}

double pointDifference(const ProfilePose& profile, const SensorPose& mean) {
    const std::vector<Point3> own = toTrack(profile.points, withFoundY(profile.pose, profile.foundY));
    const std::vector<Point3> averaged = toTrack(profile.points, mean);
    double largest = 0.0;
    for (std::size_t i = 0; i < profile.points.size(); ++i) {
        if (profile.points[i].flank) {
            const Point3& a = own[i];
            const Point3& b = averaged[i];
            largest = std::max(largest, static_cast<double>(std::hypot(a.x - b.x, a.y - b.y, a.z - b.z)));
        }
    }
    return largest;
}

/// A single profile is accurate to 0.1 degrees and 0.3 mm; a difference of twice that contradicts a common pose.
QString differenceFault(const ProfilePose& profile, const SensorPose& mean, double points) {
    constexpr double kMaxAngle = 0.2;
    constexpr double kMaxPoint = 0.6;
    double angle = 0.0;
    for (const PoseField& field : kPoseFields) {
        angle = field.isAngle ? std::max(angle, std::abs(difference(field, mean, profile.pose))) : angle;
    }
    if (angle <= kMaxAngle && points <= kMaxPoint) {
        return {};
    }
    return QStringLiteral("the profiles are not of one pose: '%1' differs from the mean by %2 degrees and %3 mm")
        .arg(toQt(profile.name), QString::number(angle, 'f', 2), QString::number(points, 'f', 2));
}

/// Mean and standard deviations.
void average(const std::vector<SensorPose>& poses, PoseAverage& result) {
    const double n = static_cast<double>(poses.size());
    for (const PoseField& field : kPoseFields) {
        double sum = 0.0;
        double squares = 0.0;
        for (const SensorPose& pose : poses) {
            const double d = difference(field, poses.front(), pose);
            sum += d;
            squares += d * d;
        }
        result.pose.*field.value = poses.front().*field.value + sum / n;
        const double variance = std::max(0.0, squares - sum * sum / n) / (n - 1.0);
        result.deviation.*field.value = n > 1.0 ? std::sqrt(variance) : std::numeric_limits<double>::quiet_NaN();
    }
}

/// The quotient of Student's t distribution that 95 % of values stay within, for n - 1 degrees of freedom: exact for one
/// and two, then within 1 % (M. Abramowitz, I. A. Stegun, Handbook of Mathematical Functions, 1964, 26.7.5).
double studentFactor(double freedom) {
    if (freedom < 3.0) {
        return freedom < 2.0 ? 12.706 : 4.303;
    }
    const double z = kNormal95;
    const double z3 = z * z * z;
    const double z5 = z3 * z * z;
    const double z7 = z5 * z * z;
    return z + (z3 + z) / (4.0 * freedom) + (5.0 * z5 + 16.0 * z3 + 3.0 * z) / (96.0 * freedom * freedom) +
           (3.0 * z7 + 19.0 * z5 + 17.0 * z3 - 15.0 * z) / (384.0 * freedom * freedom * freedom);
}

/// Half the widths of the intervals of the mean: from those of the profiles, whose noise is independent. Where the
/// profiles differ by certainly more than these say, their spread counts instead.
/// The error of the object is common to all, and comes on top.
SensorPose uncertaintyOfMean(const std::vector<const ProfilePose*>& profiles, const SensorPose& deviation) {
    constexpr double kCertain = 4.0; // standard deviations of the quotient of two variances
    const double n = static_cast<double>(profiles.size());
    SensorPose result;
    for (const PoseField& field : kPoseFields) {
        double squares = 0.0;
        double byObject = 0.0;
        for (const ProfilePose* const profile : profiles) {
            const double uncertainty = profile->uncertainty.*field.value;
            const double common = profile->byObject.*field.value;
            squares += uncertainty * uncertainty - common * common;
            byObject += common / n;
        }
        const double byNoise = squares / n / (kNormal95 * kNormal95); // variance of one profile
        const double bySpread = deviation.*field.value * (deviation.*field.value);
        const bool isSpread = bySpread > byNoise * (1.0 + kCertain * std::sqrt(2.0 / (n - 1.0))); // NaN for one: false
        const double own = isSpread ? studentFactor(n - 1.0) * std::sqrt(bySpread / n) : std::sqrt(squares) / n;
        result.*field.value = std::hypot(own, byObject);
    }
    return result;
}

/// The largest differences from the mean, and whether they are too large.
void judge(const ProfilePose& profile, PoseAverage& result) {
    const SensorPose pose = withFoundY(profile.pose, profile.foundY);
    for (const PoseField& field : kPoseFields) {
        double& largest = result.largest.*field.value;
        largest = std::max(largest, std::abs(difference(field, result.pose, pose)));
    }
    const double points = pointDifference(profile, result.pose);
    result.pointDifference = std::max(result.pointDifference, points);
    if (result.fault.empty()) {
        result.fault = differenceFault(profile, result.pose, points).toStdString();
    }
}

} // namespace

PoseAverage averagePoses(const std::vector<ProfilePose>& profiles, bool findsY) {
    PoseAverage result;
    std::vector<SensorPose> poses; // with y by the object
    std::vector<const ProfilePose*> withPose;
    double givenY = 0.0; // one for all
    for (const ProfilePose& profile : profiles) {
        if (profile.hasPose()) {
            poses.push_back(withFoundY(profile.pose, profile.foundY));
            withPose.push_back(&profile);
            givenY = profile.pose.y;
        }
    }
    if (poses.empty()) {
        return result;
    }
    result.profiles = static_cast<int>(poses.size());
    average(poses, result);
    result.foundY = result.pose.y;
    result.uncertainty = uncertaintyOfMean(withPose, result.deviation);
    result.largest = kZero;
    result.pointDifference = 0.0;
    for (const ProfilePose& profile : profiles) {
        if (profile.hasPose()) {
            judge(profile, result);
        }
    }
    if (poses.size() == 1) {
        result.largest = {};
        result.pointDifference = std::numeric_limits<double>::quiet_NaN();
    }
    if (!findsY) {
        result.pose.y = givenY;
    }
    return result;
}

} // namespace KxInspect::detail
