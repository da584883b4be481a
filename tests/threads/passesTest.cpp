// Two passes measured at once in two threads, and one whose wheels are measured at once, give the same as one after the other. Without GoogleTest and the
// simulator, so that it can be built with the thread sanitizer together with the library alone.
#include <KxInspect/Train.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace KxInspect;

void append(std::string& bytes, const void* value, std::size_t size) {
    bytes.append(static_cast<const char*>(value), size);
}

/// Flat wheels of 70 to 90 points with a bump, before a background; numbers in the byte order of this machine, which
/// must be that of the files.
std::string recording(unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes;
    for (int record = 0; record < 400; ++record) {
        const bool isWheel = record / 20 % 2 == 1;
        const auto points = static_cast<std::uint16_t>(70 + random() % 20);
        const float z = static_cast<float>(record);
        bytes += '\5';
        append(bytes, &points, sizeof points);
        append(bytes, &z, sizeof z);
        for (int i = 0; i < points; ++i) {
            const float noise = static_cast<float>(random() % 100) * 1e-3f;
            const float point[] = {static_cast<float>(i), (isWheel ? 50.0f : 200.0f) + noise + (i == 40 ? 0.4f : 0.0f)};
            append(bytes, point, sizeof point);
        }
    }
    return bytes;
}

void write(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

/// A folder with a pass and its settings.
struct Pass {
    Pass(const fs::path& parent, unsigned seed) : folder(parent / ("pass-" + std::to_string(seed))) {
        fs::create_directories(folder);
        write(folder / "a_1.bin", recording(seed));
        write(folder / "b_2.bin", recording(seed + 100));
        const std::string lines = "level_k=0\nlevel_b=100\nk2=-0.5\nb2=-5\nlowLevel_k=0\nlowLevel_b=10\n";
        const std::string pose = "x=0\ny=0\nz=0\nalpha=0\nbeta=0\ngamma=0\n";
        write(folder / "settings.ini", "calibrLines2=1360\npointsHigher=0\n[SENSOR1]\nSN=1\nside=left\n" + lines +
                                           pose + "[SENSOR2]\nSN=2\nside=right\n" + lines + pose);
    }

    std::string measure(const std::string& wheels, const TaskRunner& runner = {}) const {
        const std::string settings = folder / "settings.ini";
        PassOptions options;
        options.defects = readDefectSettings(settings);
        options.shownPairs = {1, 10};
        options.wheelFolder = folder / wheels;
        options.runner = runner;
        PassResult result =
            measurePass({folder / "a_1.bin", folder / "b_2.bin"}, readStationSettings(settings), options);
        result.folder.clear();
        return toJson(passFromJson(toJson(result, Pictures::Included)), Pictures::Included);
    }

    fs::path folder;
};

/// A thread for each task.
void runAtOnce(const std::vector<std::function<void()>>& tasks) {
    std::vector<std::thread> threads;
    threads.reserve(tasks.size());
    for (const std::function<void()>& task : tasks) {
        threads.emplace_back(task);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

bool isSame(const fs::path& parent) {
    const Pass first(parent, 1);
    const Pass second(parent, 2);
    const std::string expected[] = {first.measure("before"), second.measure("before")};
    std::string found[2];
    std::thread one([&] { found[0] = first.measure("after"); });
    std::thread other([&] { found[1] = second.measure("after"); });
    one.join();
    other.join();
    const bool isSameAtOnce = first.measure("at once", runAtOnce) == expected[0];
    const bool hasResults = expected[0] != expected[1] && expected[0].find("\"distances\": 10") != std::string::npos &&
                            expected[0].find("\"isDefective\": true") != std::string::npos;
    if (!hasResults) {
        std::fprintf(stderr, "%s\n", expected[0].substr(0, 3000).c_str());
    }
    return hasResults && isSameAtOnce && expected[0] == found[0] && expected[1] == found[1];
}

} // namespace

int main() {
    const fs::path folder = fs::temp_directory_path() / ("kxinspect-threads-" + std::to_string(std::random_device()()));
    const bool isGood = isSame(folder);
    fs::remove_all(folder);
    return isGood ? 0 : 1;
}
