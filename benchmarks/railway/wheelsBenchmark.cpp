// Single profiles of wheels and of the calibration object.
#include "railway/jobs.h"

#include "inspect/wheel/rimSection.h"
#include "simulator/calibrationProfile.h"
#include "simulator/wheelContour.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kxbench {

const QList<KxMath::KxPointXYZ>& rimPoints() {
    static const QList<KxMath::KxPointXYZ> points = [] {
        std::vector<KxInspect::Point> wheel;
        for (int i = 0; i < kRimPoints; ++i) {
            const double x = 0.1 * i;
            wheel.push_back({static_cast<float>(x), static_cast<float>(kxsim::s1002Height(x - kxsim::kTapeCircle))});
        }
        KxMath::KxPointCloud<KxMath::KxPointXYZ> rim;
        KxInspect::detail::appendRimSection(wheel, rim);
        return rim.points;
    }();
    return points;
}

namespace {

void measure(RimJob& job) {
    KxMath::_WheelProfileValues values;
    KxMath::METRO_calcWheelParameters(job.rim, KxMath::KxCircle(0.0f, 0.0f, 0.0f), &values, nullptr);
    job.measures = {static_cast<double>(values.heightAt70), static_cast<double>(values.xAtLevel18),
                    static_cast<double>(values.widthLevel2ToH13)};
}

/// To polar coordinates and back.
void turn(float& a, float& b) {
    const double angle = std::atan(static_cast<double>(b / a));
    const double radius = static_cast<double>(std::sqrt(a * a + b * b));
    a = static_cast<float>(radius * std::cos(angle));
    b = static_cast<float>(radius * std::sin(angle));
}

/// Only the steps that the section needs: a rotation of the rim, one of its section, and means over 20 points that
/// include the preceding means.
void turnAndSmooth(RimJob& job) {
    for (KxMath::KxPointXYZ& p : job.rim.points) {
        turn(p.x, p.z);
        turn(p.x, p.y);
    }
    KxMath::KxPointXYZ* const points = job.rim.points.data();
    for (qsizetype i = 0; i + 20 < job.rim.points.size(); ++i) {
        float sum = 0.0f;
        for (qsizetype k = i; k < i + 20; ++k) {
            sum += points[k].y;
        }
        points[i + 8].y = sum / 20.0f;
    }
}

/// A profile of the calibration object, and of a wheel.
struct ProfileOfOne {
    KxMath::KxProfile profile;
    KxMath::_KxMETRO_SensorCoord_ coord{};
    bool isDone = false;
};

/// The minimum of a calibration: sorting the points, and the sums of lines through all of them.
void orderAndSum(ProfileOfOne& job) {
    std::vector<KxMath::KxPointXY> points(job.profile.points.cbegin(), job.profile.points.cend());
    std::sort(points.begin(), points.end(),
              [](const KxMath::KxPointXY& a, const KxMath::KxPointXY& b) { return a.x < b.x; });
    std::array<double, 5> sums{};
    for (const KxMath::KxPointXY& p : points) {
        const auto x = static_cast<double>(p.x);
        const auto y = static_cast<double>(p.y);
        sums[0] += x;
        sums[1] += y;
        sums[2] += x * x;
        sums[3] += x * y;
        sums[4] += y * y;
    }
    benchmark::DoNotOptimize(sums);
}

[[maybe_unused]] const bool isRegistered = [] {
    addOnRim("kx", measure, digestRim);
    addOnRim("limit_turn_and_smooth", turnAndSmooth, nothing<RimJob>);
    const kxsim::CalibrationObject object = KxInspect::calibrationObjectFor(2, 500.0);
    const auto takeProfile = [=](ProfileOfOne& j) {
        kxsim::Random random({1, 1});
        kxsim::takeCalibrationProfile(object, 2, kxsim::nominalCalibrationPose(2, object), kxsim::CalibrationSensor(),
                                      random, j.profile);
        j.coord.position = 2;
    };
    add<ProfileOfOne>("calibration", kProfilePoints, "limit_order_and_line_sums", 1, takeProfile, orderAndSum,
                      nothing<ProfileOfOne>);
    add<ProfileOfOne>(
        "calibration", kProfilePoints, "kx", 1, takeProfile,
        [=](ProfileOfOne& j) {
            j.isDone = KxMath::METRO_calcAnglesCoord(j.profile, static_cast<float>(object.p1()),
                                                     static_cast<float>(object.p2()), static_cast<float>(object.p3()),
                                                     static_cast<float>(object.p4()), j.coord, {}, nullptr);
        },
        digestDone<ProfileOfOne>);
    add<ProfileOfOne>(
        "wheel defect", kProfilePoints, "kx", 10,
        [](ProfileOfOne& j) { j.profile.points = freshCopy(profilePoints()); },
        [](ProfileOfOne& j) { j.isDone = KxMath::METRO_detectWheelDefect(j.profile, 20, 0.3f, 5); },
        digestDone<ProfileOfOne>);
    return true;
}();

} // namespace

} // namespace kxbench
