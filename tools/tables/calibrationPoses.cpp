// Prints how often and how well the calibration finds poses about the nominal one.
#include "trials/calibrationTrial.h"

#include <algorithm>
#include <cstdio>

namespace {

/// What became of a set of poses.
struct Count {
    int all = 0;
    int done = 0;
    int right = 0; ///< angles within 0.1 degrees and points within 0.3 mm
    int wrong = 0; ///< done, but not right
    int hidden = 0; ///< ridges out of view
    double angleError = 0.0;
    double pointError = 0.0;
};

void add(const kxsim::CalibrationTrial& trial, Count& count) {
    const bool isRight = trial.angleError <= 0.1 && trial.pointError <= 0.3;
    if (trial.isDone) {
        count.wrong += isRight ? 0 : 1;
        count.angleError = std::max(count.angleError, trial.angleError);
        count.pointError = std::max(count.pointError, trial.pointError);
    }
    if (!trial.isInView) {
        ++count.hidden;
        return;
    }
    ++count.all;
    count.done += trial.isDone ? 1 : 0;
    count.right += trial.isDone && isRight ? 1 : 0;
}

/// All combinations of -10, -5, 0, 5 and 10 degrees, each at `places` places within 50 mm in every axis.
Count tryPoses(int placement, double beta, int places) {
    const kxsim::CalibrationObject object = KxInspect::calibrationObjectFor(placement, 500.0);
    kxsim::Pose nominal = kxsim::nominalCalibrationPose(placement, object);
    nominal.origin = nominal.origin + 250.0 * nominal.v();
    nominal.beta += beta - 45.0;
    nominal.origin = nominal.origin - 250.0 * nominal.v();
    const kxsim::CalibrationSensor sensor;
    Count count;
    for (int i = 0; i < 125 * places; ++i) {
        kxsim::Random random({static_cast<std::uint64_t>(placement), static_cast<std::uint64_t>(i)});
        kxsim::Vec3 offset;
        if (places > 1) {
            offset = {random.uniform(-50, 50), random.uniform(-50, 50), random.uniform(-50, 50)};
        }
        const kxsim::Pose pose =
            kxsim::offsetPose(nominal, placement, i % 5 * 5 - 10, i / 5 % 5 * 5 - 10, i / 25 % 5 * 5 - 10, offset);
        add(kxsim::tryCalibration(object, placement, pose, sensor, random), count);
    }
    return count;
}

void print(int placement, double beta, const char* places, const Count& c) {
    std::printf("| %d | %g | %s | %d | %d | %d | %d | %d | %.3f | %.3f |\n", placement, beta, places, c.all, c.right,
                c.all - c.done, c.hidden, c.wrong, c.angleError, c.pointError);
}

} // namespace

int main() {
    std::printf("| placement | beta, degrees | place | in view | right | refused | out of view | wrong | worst angle, "
                "degrees | worst point, mm |\n");
    std::printf("| --- | --- | --- | --- | --- | --- | --- | --- | --- | --- |\n");
    for (const double beta : {45.0, -45.0}) {
        for (int placement = 1; placement <= 5; ++placement) {
            print(placement, beta, "nominal", tryPoses(placement, beta, 1));
            print(placement, beta, "within 50 mm", tryPoses(placement, beta, 8));
        }
    }
    return 0;
}
