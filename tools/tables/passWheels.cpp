// How far the measures of the wheels of simulated passes are off, and how often their 95 % intervals hold the truth.
//
//     passWheels SENSORS PASSES [FIRST_SEED [NOISE [POSES]]]
//
// SENSORS is 2 for a sensor between the rails on either side, 4 with one on the field side, 6 with two of them. Each pass has
// its own wear, yaw, shifts and noise (0.02 to 0.15 mm unless NOISE is above 0). With POSES each pass is measured so many
// times, with poses that are off by what their uncertainty says, normally distributed and each on its own. Exit code 1 when
// the intervals of a measure hold certainly fewer than 93 % of the true values.
#include "simulator/random.h"
#include "simulator/simulation.h"
#include "simulator/train.h"
#include "tools/tables/coverage.h"
#include "tools/tables/trueMeasures.h"

#include <KxInspect/Error.h>
#include <KxInspect/Train.h>

#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace KxInspect;

struct Trial {
    double error;
    double halfWidth;
    bool isHeld;
};

void print(const char* name, const std::vector<Trial>& trials, int absent) {
    double sum = 0.0, squares = 0.0, worst = 0.0;
    int held = 0;
    std::vector<double> widths;
    for (const Trial& trial : trials) {
        sum += trial.error;
        squares += trial.error * trial.error;
        worst = std::abs(trial.error) > std::abs(worst) ? trial.error : worst;
        held += trial.isHeld ? 1 : 0;
        widths.push_back(trial.halfWidth);
    }
    std::sort(widths.begin(), widths.end());
    const auto n = static_cast<double>(trials.size());
    if (trials.empty()) {
        std::printf("| %s | 0 | %d | - | - | - | - | - |\n", name, absent);
        return;
    }
    const double mean = sum / n;
    std::printf("| %s | %zu | %d | %+.4f | %.4f | %+.4f | %.4f | %.1f %% |\n", name, trials.size(), absent, mean,
                std::sqrt(std::max(0.0, squares / n - mean * mean)), worst, widths[widths.size() / 2],
                100.0 * held / n);
}

kxsim::Parameters drawPass(int sensors, std::uint64_t seed, double noise) {
    kxsim::Random random({seed, 77});
    kxsim::Parameters p;
    p.seed = seed;
    p.cars = 1;
    p.wear = random.uniform(0.0, 50.0);
    p.flangeWear = random.uniform(0.0, 6.0);
    p.treadWear = random.uniform(0.0, 4.0);
    p.yawSpread = random.uniform(0.0, 3.0);
    p.lateralSpread = random.uniform(0.0, 2.0);
    p.levelMargin = 14.0;
    p.speed = random.uniform(5.0, 20.0);
    const double drawn = std::exp(random.uniform(std::log(0.02), std::log(0.15)));
    p.noise = noise > 0.0 ? noise : drawn;
    p.layout = {{101, true, kxsim::SensorPlace::Inner}, {102, false, kxsim::SensorPlace::Inner}};
    for (int i = 2; i < sensors; ++i) {
        const int row = i / 2;
        p.layout.push_back({101 + i, i % 2 == 0, kxsim::SensorPlace::Field, 300.0 * row});
    }
    return p;
}

/// Settings with poses that are off, and their uncertainties: 0.03 to 0.2 mm and 0.01 to 0.08 degrees, to both sides with 95 %.
StationSettings withDrawnPoses(StationSettings settings, kxsim::Random& random) {
    constexpr double kNormal95 = 1.959964;
    const double place = random.uniform(0.03, 0.2);
    const double angle = random.uniform(0.01, 0.08);
    const auto off = [&](double uncertainty) { return random.normal() * uncertainty / kNormal95; };
    for (SensorSettings& sensor : settings.sensors) {
        sensor.poseUncertainty = PoseUncertainty{place, place, place, angle, angle, angle};
        for (double* const value : {&sensor.origin->x, &sensor.origin->y, &sensor.origin->z}) {
            *value += off(place);
        }
        for (double* const value : {&sensor.angles->alpha, &sensor.angles->beta, &sensor.angles->gamma}) {
            *value += off(angle);
        }
    }
    return settings;
}

double number(const char* text, double byDefault) {
    return text != nullptr ? std::strtod(text, nullptr) : byDefault;
}

} // namespace

int main(int argc, char** argv) {
    const auto argument = [&](int i) { return i < argc ? argv[i] : nullptr; };
    const int sensors = static_cast<int>(number(argument(1), 4.0));
    const int passes = static_cast<int>(number(argument(2), 10.0));
    const auto first = static_cast<std::uint64_t>(number(argument(3), 1.0));
    const double noise = number(argument(4), 0.0);
    const int poses = static_cast<int>(number(argument(5), 0.0));
    std::array<std::vector<Trial>, kPassMeasures> trials;
    std::array<int, kPassMeasures> absent = {};
    std::array<std::map<std::string, int>, kPassMeasures> reasons;
    std::map<std::string, int> failures;
    int wheels = 0;
    double seconds = 0.0;
    for (std::uint64_t seed = first; seed < first + static_cast<std::uint64_t>(passes); ++seed) {
        const QTemporaryDir folder;
        const kxsim::Parameters p = drawPass(sensors, seed, noise);
        kxsim::simulatePass(p, folder.path(), {});
        const kxsim::Train train = kxsim::makeTrain(p);
        std::vector<std::string> recordings;
        for (int i = 1; i <= sensors; ++i) {
            recordings.push_back(
                (folder.path() + QStringLiteral("/train_%1.bin").arg(kxsim::serialOf(p, i))).toStdString());
        }
        const StationSettings settings = readStationSettings(folder.filePath("settings.ini").toStdString());
        kxsim::Random draws({seed, 78});
        for (int draw = 0; draw < std::max(1, poses); ++draw) {
            const StationSettings used = poses > 0 ? withDrawnPoses(settings, draws) : settings;
            const std::clock_t start = std::clock();
            const PassResult result = measurePass(recordings, used);
            seconds += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
            if (result.pairs.size() != train.pairs.size()) {
                std::printf("seed %d: %zu pairs instead of %zu\n", static_cast<int>(seed), result.pairs.size(),
                            train.pairs.size());
                continue;
            }
            for (const PassWheelMeasures& measured : result.wheels) {
                ++wheels;
                const kxsim::WheelPair& pair = train.pairs[static_cast<std::size_t>(measured.pair - 1)];
                const kxsim::Wheel& wheel = pair.wheels[measured.side == TrackSide::Left ? 0 : 1];
                for (const SensorShare& share : measured.sensors) {
                    if (!share.reason.empty()) {
                        ++failures["SENSOR" + std::to_string(share.sensor) + ": " + share.reason];
                    }
                }
                for (const PassMeasureInfo& info : kPassMeasureInfos) {
                    const auto i = static_cast<std::size_t>(info.measure);
                    const PassValue& value = measured[info.measure];
                    if (!value.value) {
                        ++absent[i];
                        ++reasons[i][value.reason];
                        continue;
                    }
                    const double truth = kxtables::trueMeasure(wheel, info.measure);
                    const double error = static_cast<double>(*value.value) - truth;
                    trials[i].push_back({error, static_cast<double>(value.interval.high - value.interval.low) / 2.0,
                                         value.interval.holds(static_cast<float>(truth))});
                    if (std::getenv("PASS_WHEELS_LIST") != nullptr) {
                        std::printf("%d %d %s %s %.4f %.4f\n", static_cast<int>(seed), measured.pair,
                                    textOf(measured.side), info.key, error, trials[i].back().halfWidth);
                    }
                }
            }
            for (const std::string& warning : result.warnings) {
                std::printf("seed %d: %s\n", static_cast<int>(seed), warning.c_str());
            }
        }
    }
    std::printf("%d sensors, %d wheels, %.3f s of measuring for each pass\n\n", sensors, wheels,
                seconds / passes / std::max(1, poses));
    std::printf("| measure | values | absent | mean error, mm | standard deviation, mm | worst, mm | half an interval, "
                "median, mm | holds the truth |\n| --- | --- | --- | --- | --- | --- | --- | --- |\n");
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        const auto i = static_cast<std::size_t>(info.measure);
        print(info.title, trials[i], absent[i]);
    }
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        for (const auto& [reason, count] : reasons[static_cast<std::size_t>(info.measure)]) {
            std::printf("%s, %d times: %s\n", info.title, count, reason.c_str());
        }
    }
    for (const auto& [reason, count] : failures) {
        std::printf("%d times %s\n", count, reason.c_str());
    }
    const auto isHeld = [](const std::vector<Trial>& all) {
        const auto held = std::count_if(all.begin(), all.end(), [](const Trial& trial) { return trial.isHeld; });
        return kxtables::holdsEnough(static_cast<int>(held), static_cast<int>(all.size()));
    };
    return std::all_of(trials.begin(), trials.end(), isHeld) ? 0 : 1;
}
