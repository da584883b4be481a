// passTime DIR [RUNS]: the processor time of a pass, beside a read that decodes every record once. DIR holds settings.ini and
// the recordings, in the cache of the system after the first run; each time is the least of RUNS.
#include "inspect/recordings/recordStream.h"

#include <KxInspect/Error.h>
#include <KxInspect/Settings.h>
#include <KxInspect/Train.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace KxInspect;

/// Of the process in user and system mode, s; the load of other processes does not count.
double processorTime() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

struct Least {
    double seconds = std::numeric_limits<double>::infinity();

    template <typename Step>
    void time(Step step) {
        const double start = processorTime();
        step();
        seconds = std::min(seconds, processorTime() - start);
    }
};

/// Decodes all records. @return their points
std::size_t readAll(const std::vector<std::string>& recordings, bool isHashed) {
    std::size_t points = 0;
    for (const std::string& path : recordings) {
        detail::RecordStream stream({"recording", path, {}});
        if (isHashed) {
            stream.startHash();
        }
        KxMath::KxProfileZ record;
        while (stream.next(record) != KxMath::KxNoRecord) {
            points += static_cast<std::size_t>(record.points.size());
        }
    }
    return points;
}

void print(const char* what, double seconds, double read) {
    std::printf("| %s | %.3f | %.2f |\n", what, seconds, seconds / read);
}

void measure(const std::string& folder, int runs) {
    const StationSettings settings = readStationSettings(folder + "/settings.ini");
    const std::vector<std::string> recordings = recordingsIn(folder, settings);
    Least read, hashed, pass, text;
    std::size_t points = 0;
    std::size_t bytes = 0;
    PassResult result;
    for (int run = 0; run < runs; ++run) {
        read.time([&] { points = readAll(recordings, false); });
        hashed.time([&] { points = readAll(recordings, true); });
        pass.time([&] { result = measurePass(recordings, settings); });
        text.time([&] { bytes = toJson(result).size(); });
    }
    std::printf("%zu recordings, %zu points, %zu wheels, %zu bytes of JSON, the least of %d runs\n\n",
                recordings.size(), points, result.wheels.size(), bytes, runs);
    std::printf("| step | processor time, s | by that of the read |\n| --- | ---: | ---: |\n");
    const double hash = hashed.seconds - read.seconds;
    print("read that decodes every record", read.seconds, read.seconds);
    print("hashes of the recordings", hash, read.seconds);
    print("pass: read, hashes, wheels, distances, measures, intervals", pass.seconds, read.seconds);
    print("pass without hashes", pass.seconds - hash, read.seconds);
    print("JSON", text.seconds, read.seconds);
}

} // namespace

int main(int argc, char** argv) {
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
    if (argc < 2 || argc > 3 || runs < 1) {
        std::fprintf(stderr, "Usage: passTime DIR [RUNS]\n");
        return 2;
    }
    try {
        measure(argv[1], runs);
    } catch (const Error& error) {
        std::fprintf(stderr, "passTime: %s\n", error.what());
        return 3;
    }
    return 0;
}
