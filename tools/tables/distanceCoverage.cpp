// Counts how often the 95 % interval of a distance holds the true one: simulates stations, fits the settings of each to
// a pass with four known distances, read with a gauge that errs, and measures one wheel pair in another pass. Each
// station counts once.
//
//     distanceCoverage [STATIONS [FIRST_SEED]]
#include "simulator/random.h"
#include "simulator/simulation.h"
#include "simulator/train.h"
#include "trials/tinyStation.h"

#include <KxInspect/Error.h>
#include <KxInspect/StationSetup.h>
#include <KxInspect/Train.h>

#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace KxInspect;

/// What is off, and half of its interval.
struct Trial {
    double error;
    double halfWidth;
};

struct Trials {
    const char* name;
    std::vector<Trial> all;

    void add(double value, double truth, const Interval& interval) {
        all.push_back({value - truth, static_cast<double>(interval.high - interval.low) / 2.0});
    }

    void print() const {
        double squares = 0.0;
        int held = 0;
        std::vector<double> widths;
        for (const Trial& trial : all) {
            squares += trial.error * trial.error;
            held += std::abs(trial.error) <= trial.halfWidth ? 1 : 0;
            widths.push_back(trial.halfWidth);
        }
        std::sort(widths.begin(), widths.end());
        const auto count = static_cast<double>(all.size());
        std::printf("| %s | %zu | %.4f | %.4f | %.1f %% |\n", name, all.size(), std::sqrt(squares / count),
                    widths[widths.size() / 2], 100.0 * held / count);
    }
};

std::vector<std::string> simulate(const kxsim::Parameters& p, const QString& folder) {
    kxsim::simulatePass(p, folder, {});
    return {(folder + QStringLiteral("/train_101.bin")).toStdString(),
            (folder + QStringLiteral("/train_102.bin")).toStdString()};
}

} // namespace

int main(int argc, char** argv) {
    const long stations = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 2000;
    const long first = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 1;
    Trials distances{"distance, base distance fitted, mm", {}};
    Trials noise{"distance, base distance exact, mm", {}};
    Trials yaws{"yaw, mrad", {}};
    int refused = 0;
    for (long i = first; i < first + stations; ++i) {
        const QTemporaryDir folder;
        const auto seed = static_cast<std::uint64_t>(i);
        const kxsim::TinyStation station = kxsim::drawStation(seed);
        KnownPass known{simulate(station.parameters, folder.filePath(QStringLiteral("known"))), {}};
        kxsim::Random gauge({seed, 103});
        for (const kxsim::WheelPair& pair : kxsim::makeTrain(station.parameters).pairs) {
            known.distances.push_back(pair.backToBack + station.gaugeError * gauge.normal());
        }
        const StationFit fit = fitStation({known});
        const kxsim::Parameters p = kxsim::drawPass(station, seed + 1000000007u);
        const std::vector<std::string> recordings = simulate(p, folder.filePath(QStringLiteral("pass")));
        const PassResult pass = fit.hasSettings() ? measurePass(recordings, settingsOf(fit)) : PassResult();
        const PassResult exact = measurePass(
            recordings, readStationSettings(folder.filePath(QStringLiteral("pass/settings.ini")).toStdString()));
        if (pass.pairs.size() != 1 || !pass.pairs[0].interval.isKnown() || exact.pairs.size() != 1) {
            ++refused;
            std::fprintf(stderr, "station %ld: %s\n", i,
                         fit.hasSettings() ? pass.pairs.empty() ? "no pair" : pass.pairs[0].reason.c_str()
                                           : fit.fault.c_str());
            continue;
        }
        const kxsim::WheelPair truth = kxsim::makeTrain(p).pairs[0];
        distances.add(static_cast<double>(pass.pairs[0].distance), truth.backToBack, pass.pairs[0].interval);
        noise.add(static_cast<double>(exact.pairs[0].distance), truth.backToBack, exact.pairs[0].interval);
        yaws.add(static_cast<double>(exact.pairs[0].yaw), 1000.0 * truth.yaw, exact.pairs[0].yawInterval);
    }
    std::printf("| value | independent values | error, rms | interval, to both sides, median | holds the truth |\n"
                "| --- | --- | --- | --- | --- |\n");
    distances.print();
    noise.print();
    yaws.print();
    std::printf("\n%d of %ld stations gave no distance.\n", refused, stations);
    return 0;
}
