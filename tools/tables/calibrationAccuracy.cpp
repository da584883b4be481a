// Prints how many poses kxmath calibrate finds with noise and outliers, how far they are off, and how often the 95 %
// intervals hold the truth. Ends with 1 when a row has a wrong pose, or when of all poses together an interval holds the
// truth in fewer than 93 % or more than 97 %.
#include "trials/poseTrial.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace {

constexpr int kPoses = 2400;

struct Count {
    int inView = 0;
    int found = 0;
    int hidden = 0; ///< found though not in view
    int noisy = 0; ///< found in a profile with noise
    int wrong = 0; ///< off by more than twice the half width of an interval
    std::vector<double> angles;
    std::vector<double> places;
    int held[KxInspect::kPoseFields.size()] = {};
    int flankHeld = 0; ///< the interval of the mean distance of one flank holds 0
};

/// @param flank the one that is counted: those of one profile are not independent
void add(const kxsim::PoseTrial& trial, std::size_t flank, Count& count) {
    count.inView += trial.isInView ? 1 : 0;
    if (!trial.result.hasPose()) {
        return;
    }
    (trial.isInView ? count.found : count.hidden) += 1;
    count.angles.push_back(trial.angleError());
    count.places.push_back(trial.placeError());
    bool isWrong = false;
    for (std::size_t i = 0; i < KxInspect::kPoseFields.size(); ++i) {
        const KxInspect::PoseField& field = KxInspect::kPoseFields[i];
        count.held[i] += trial.holds(field) ? 1 : 0;
        constexpr double kWide = 2.5; // 4.9 standard deviations: of normal errors one in a million
        isWrong = isWrong || std::abs(trial.error(field)) > kWide * trial.result.average.uncertainty.*field.value;
    }
    count.wrong += isWrong ? 1 : 0;
    count.flankHeld += intervalOf(trial.result.flanks[flank]).holds(0.0f) ? 1 : 0;
}

double quantile(std::vector<double> values, double part) {
    std::sort(values.begin(), values.end());
    return values.empty() ? std::nan("")
                          : values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

/// Poses of all placements; y is that by the object.
/// @param error of the object, which is told
Count tryPoses(double noise, double outliers, const KxInspect::ObjectError& error = {}) {
    Count count;
    for (std::uint64_t i = 0; i < kPoses; ++i) {
        kxsim::Random random({41, i});
        kxsim::CalibrationSensor sensor;
        sensor.noise = noise;
        sensor.spikes = outliers;
        sensor.spikeSize = random.uniform(0.5 / 0.3, 20.0); // the smallest outlier is 0.3 of it
        const int placement = 1 + static_cast<int>(i % 4);
        kxsim::PoseTrialSetup setup = kxsim::randomSetup(placement, sensor, 20.0, random);
        if (error.isSet()) {
            setup.object.pitch += error.pitch * random.normal();
            setup.object.slope += error.slope * random.normal();
            setup.object.obliqueness += error.obliqueness * random.normal();
            setup.task.objectError = error;
        }
        add(kxsim::tryPose(setup, random), i / 4 % KxInspect::kFlankCount, count);
    }
    return count;
}

void print(const Count& c) {
    std::printf(" %d | %d | %d | %d |", c.inView, c.found, c.hidden, c.wrong);
    for (const auto* const errors : {&c.angles, &c.places}) {
        for (const double part : {0.5, 0.95, 1.0}) {
            std::printf(" %.4f |", quantile(*errors, part));
        }
    }
    const double poses = std::max(1, c.found + c.hidden);
    for (const int held : c.held) {
        std::printf(" %.1f |", 100.0 * held / poses);
    }
    std::printf(" %.1f |\n", 100.0 * c.flankHeld / poses);
    std::fflush(stdout);
}

/// Whether 93 to 97 % hold the truth.
bool isRight(int held, int of) {
    return held >= 0.93 * of && held <= 0.97 * of;
}

bool areRight(const Count& c, int of) {
    return c.wrong == 0 &&
           std::all_of(std::begin(c.held), std::end(c.held), [&](int held) { return isRight(held, of); });
}

} // namespace

int main() {
    std::printf(
        "| noise, mm | outliers, %% | in view | found | found, not in view | wrong | angle off, degrees: half of "
        "the poses | 95 %% | all | place off, mm: half | 95 %% | all |");
    for (const KxInspect::PoseField& field : KxInspect::kPoseFields) {
        std::printf(" %s held, %% |", field.name);
    }
    std::printf(" mean of a flank held, %% |\n|");
    for (std::size_t column = 0; column < 13 + KxInspect::kPoseFields.size(); ++column) {
        std::printf(" --- |");
    }
    std::printf("\n");
    Count all;
    for (const double noise : {0.0, 0.02, 0.05, 0.1}) {
        for (const double outliers : {0.0, 0.01, 0.05}) {
            const Count c = tryPoses(noise, outliers);
            std::printf("| %g | %g |", noise, 100.0 * outliers);
            print(c);
            for (std::size_t i = 0; i < std::size(c.held); ++i) {
                all.held[i] += c.held[i];
            }
            all.flankHeld += noise > 0.0 ? c.flankHeld : 0; // without it, rounding makes the distances
            all.noisy += noise > 0.0 ? c.found + c.hidden : 0;
            all.found += c.found + c.hidden;
            all.wrong += c.wrong;
        }
    }
    const Count ofObject = tryPoses(0.02, 0.0, {0.01, 5e-4, 2e-4});
    std::printf("| 0.02, object off | 0 |");
    print(ofObject);
    const bool isObjectRight = areRight(ofObject, ofObject.found + ofObject.hidden);
    return areRight(all, all.found) && isRight(all.flankHeld, all.noisy) && isObjectRight ? 0 : 1;
}
