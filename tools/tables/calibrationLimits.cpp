// Prints how the error of a calibration grows where the ridges tell less and less of an angle.
#include "trials/calibrationTrial.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace {

constexpr int kTrials = 400;
constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr double kLengthError = 0.01; // mm

/// What became of profiles from one pose.
struct Outcome {
    int done = 0;
    double angleError = 0.0;
    double pointError = 0.0;
};

Outcome tryPose(double beta, double gamma, double noise) {
    constexpr int kPlacement = 2;
    constexpr double kStandOff = 250.0;
    const kxsim::CalibrationObject object = KxInspect::calibrationObjectFor(kPlacement, 500.0);
    kxsim::Pose pose = kxsim::nominalCalibrationPose(kPlacement, object);
    pose.origin = pose.origin + kStandOff * pose.v();
    pose.beta = 180.0 + beta;
    pose.gamma = gamma;
    pose.origin = pose.origin - kStandOff * pose.v();
    kxsim::CalibrationSensor sensor;
    sensor.noise = noise;
    Outcome outcome;
    for (int i = 0; i < kTrials; ++i) {
        kxsim::Random random({17, static_cast<std::uint64_t>(i)});
        const kxsim::CalibrationTrial trial = kxsim::tryCalibration(object, kPlacement, pose, sensor, random);
        outcome.done += trial.isDone ? 1 : 0;
        outcome.angleError = std::max(outcome.angleError, trial.angleError);
        outcome.pointError = std::max(outcome.pointError, trial.pointError);
    }
    return outcome;
}

/// The error of gamma in degrees when the span between the crests, p1 / cos gamma, is measured 0.01 mm too large and
/// gamma is taken from it alone.
double arcCosineError(double gamma, const kxsim::CalibrationObject& object) {
    const double span = object.p1() / std::cos(gamma / kDegrees) + kLengthError;
    return std::acos(object.p1() / span) * kDegrees - gamma;
}

/// The error of beta in degrees when the depth of the valleys, p2 / sin beta, is measured 0.01 mm too small and beta is
/// taken from it alone.
double arcSineError(double beta, const kxsim::CalibrationObject& object) {
    const double depth = object.p2() / std::sin(beta / kDegrees) - kLengthError;
    return std::asin(std::min(1.0, object.p2() / depth)) * kDegrees - beta;
}

void printError(bool isKnown, double error) {
    if (isKnown) {
        std::printf(" %.3f |", error);
    } else {
        std::printf(" - |");
    }
}

void printRow(double beta, double gamma) {
    const kxsim::CalibrationObject object;
    std::printf("| %g | %g | %.3f | %.3f |", beta, gamma, arcCosineError(gamma, object), arcSineError(beta, object));
    const Outcome usual = tryPose(beta, gamma, 0.02);
    std::printf(" %.0f |", 100.0 * usual.done / kTrials);
    printError(usual.done > 0, usual.angleError);
    printError(usual.done > 0, usual.pointError);
    const Outcome quiet = tryPose(beta, gamma, 0.002);
    std::printf(" %.0f |", 100.0 * quiet.done / kTrials);
    printError(quiet.done > 0, quiet.angleError);
    std::printf("\n");
}

} // namespace

int main() {
    std::printf("| beta, degrees | gamma, degrees | gamma by its arc cosine alone, error, degrees | beta by its arc "
                "sine alone, error, degrees | found with noise of 0.02 mm, %% | largest error of an angle, degrees | "
                "largest error of a point, mm | found with noise of 0.002 mm, %% | largest error of an angle, degrees "
                "|\n");
    std::printf("| --- | --- | --- | --- | --- | --- | --- | --- | --- |\n");
    for (const double gamma : {27.0, 20.0, 15.0, 10.0, 7.0, 5.0, 3.0, 2.0, 1.0, 0.5, 0.2, 0.0}) {
        printRow(45.0, gamma);
    }
    for (const double beta : {15.0, 30.0, 60.0, 70.0, 75.0, 80.0, 84.0, 87.0, 89.0, 89.5, 89.9, 90.0}) {
        printRow(beta, 27.0);
    }
    return 0;
}
