// Prints how often the 95 % intervals of the conicity hold the conicity of the profiles without noise, and how far values are off:
// conicityIntervals [WHEEL-SETS per case, 40 when left out [gauges]], with "gauges" only those with errors of the gauge. Exit code 1 when the share over all is not 93 to 97 %.
#include "simulator/measuredTracks.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace kxsim;

constexpr std::size_t kRows = 11; // 0.5, 1, 2, ... 10 mm

/// What was seen at one amplitude.
struct Count {
    int values = 0;
    int held = 0;
    int without = 0; ///< wheel-sets without a value
    double error = 0.0; ///< sum of the relative errors, likewise of those without smoothing and correction
    double square = 0.0;
    double asMeasured = 0.0;
    int measured = 0;

    void add(const KxInspect::ConicityRow& row, float truth) {
        if (!row.conicity) {
            ++without;
            return;
        }
        ++values;
        held += row.interval.holds(truth) ? 1 : 0;
        const double relative = static_cast<double>(*row.conicity / truth) - 1.0;
        error += relative;
        square += relative * relative;
        if (row.asMeasured) {
            asMeasured += static_cast<double>(*row.asMeasured / truth) - 1.0;
            ++measured;
        }
    }

    void add(const Count& other) {
        values += other.values;
        held += other.held;
        without += other.without;
        error += other.error;
        square += other.square;
        asMeasured += other.asMeasured;
        measured += other.measured;
    }
};

using Counts = std::array<Count, kRows>;

struct Case {
    std::string name;
    Counts counts = {};
};

constexpr Measuring kMeasurings[] = {{0.02, 0.1, true},
                                     {0.05, 0.05, true},
                                     {0.05, 0.3, false},
                                     {0.1, 0.15, true},
                                     {0.03, 0.5, false},
                                     {0.01, 0.2, true, {0.02f, 0.2f, 200.0f}},
                                     {0.0, 0.1, true, {0.02f, 0.2f, 200.0f}}};
constexpr std::optional<float> kSmoothings[] = {std::nullopt, 4.0f}; // mm
constexpr const char* kSmoothingNames[] = {"from the noise", "--smooth 4"};

/// What was seen on a track: by kind of measuring and by smoothing.
using Seen = std::array<std::array<Counts, std::size(kSmoothings)>, std::size(kMeasurings)>;

Seen look(TrackCase track, int runs, bool isOfGauges) {
    const auto truth = measureConicity(measured(track, {0.0, 0.05}, 0)).rows;
    std::uint64_t seed = 1000000 * static_cast<std::uint64_t>(track);
    Seen seen;
    for (std::size_t kind = 0; kind < seen.size(); ++kind) {
        for (std::size_t smoothing = 0; smoothing < seen[kind].size(); ++smoothing) {
            for (int run = 0; run < runs; ++run) {
                KxInspect::ConicityInput input = measured(track, kMeasurings[kind], ++seed);
                input.smoothing = kSmoothings[smoothing];
                input.gaugeError = kMeasurings[kind].gaugeError;
                if (isOfGauges && !input.gaugeError.isSet()) {
                    continue;
                }
                const auto rows = measureConicity(input).rows;
                for (std::size_t row = 0; row < kRows; ++row) {
                    if (truth[row].conicity) {
                        seen[kind][smoothing][row].add(rows[row], *truth[row].conicity);
                    }
                }
            }
        }
    }
    return seen;
}

double percent(double part, int whole) {
    return whole > 0 ? 100.0 * part / whole : std::nan("");
}

void print(const char* title, const std::vector<Case>& cases) {
    std::printf("| %s |", title);
    for (std::size_t row = 0; row < kRows; ++row) {
        std::printf(" %g mm |", row == 0 ? 0.5 : static_cast<double>(row));
    }
    std::printf(" all |\n| --- |");
    for (std::size_t row = 0; row <= kRows; ++row) {
        std::printf(" --- |");
    }
    for (const Case& one : cases) {
        std::printf("\n| %s |", one.name.c_str());
        int values = 0;
        int held = 0;
        for (const Count& count : one.counts) {
            values += count.values;
            held += count.held;
            count.values > 0 ? std::printf(" %.1f |", percent(count.held, count.values)) : std::printf(" - |");
        }
        std::printf(" %.1f of %d |", percent(held, values), values);
    }
    std::printf("\n\n");
}

void printErrors(const Counts& counts) {
    std::printf(
        "| amplitude, mm | values | without value | mean error | standard deviation | mean error as measured |\n"
        "| --- | --- | --- | --- | --- | --- |\n");
    for (std::size_t row = 0; row < kRows; ++row) {
        const Count& count = counts[row];
        if (count.values > 0) {
            const double mean = count.error / count.values;
            std::printf("| %g | %d | %d | %+.1f %% | %.1f %% | %+.1f %% |\n", row == 0 ? 0.5 : static_cast<double>(row),
                        count.values, count.without, 100.0 * mean,
                        100.0 * std::sqrt(std::max(count.square / count.values - mean * mean, 0.0)),
                        percent(count.asMeasured, count.measured));
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    const int runs = argc > 1 ? static_cast<int>(std::strtol(argv[1], nullptr, 10)) : 40;
    const bool isOfGauges = argc > 2 && std::string(argv[2]) == "gauges";
    std::vector<Case> tracks, measurings, smoothings, all = {{"all"}};
    for (const Measuring& m : kMeasurings) {
        char name[100];
        static_cast<void>(std::snprintf(name, sizeof name, "noise %g mm %s, points %g mm apart%s", m.noise,
                                        m.isAcrossOnly ? "in y" : "in x and y", m.spacing,
                                        m.gaugeError.isSet() ? ", gauges off as told" : ""));
        measurings.push_back({name});
    }
    for (const char* const name : kSmoothingNames) {
        smoothings.push_back({name});
    }
    std::vector<std::future<Seen>> looks;
    for (const TrackCase track : kTrackCases) {
        tracks.push_back({nameOf(track)});
        looks.push_back(std::async(std::launch::async, look, track, runs, isOfGauges));
    }
    for (std::size_t track = 0; track < tracks.size(); ++track) {
        const Seen seen = looks[track].get();
        for (std::size_t kind = 0; kind < measurings.size(); ++kind) {
            for (std::size_t smoothing = 0; smoothing < smoothings.size(); ++smoothing) {
                for (std::size_t row = 0; row < kRows; ++row) {
                    for (Case* const one : {&tracks[track], &measurings[kind], &smoothings[smoothing], &all[0]}) {
                        one->counts[row].add(seen[kind][smoothing][row]);
                    }
                }
            }
        }
    }
    print("track: % held at", tracks);
    print("measured: % held at", measurings);
    print("smoothed: % held at", smoothings);
    print("% held at", all);
    printErrors(all[0].counts);
    int values = 0;
    int held = 0;
    for (const Count& count : all[0].counts) {
        values += count.values;
        held += count.held;
    }
    const double share = percent(held, values);
    return share >= 93.0 && share <= 97.0 ? 0 : 1;
}
