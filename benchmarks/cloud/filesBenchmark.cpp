// Writing and reading a cloud next to one fwrite or fread of the same bytes, on a file system in memory.
#include "stopwatch.h"

#include <KxMath/KxMath.h>

#include <cstdio>
#include <memory>
#include <random>
#include <unistd.h>

namespace {

using Cloud = KxMath::KxPointCloud<KxMath::KxPointXYZ>;

constexpr int kPoints = 1000000;
constexpr size_t kSectionBytes = 5 + size_t{12} * kPoints;

/// A file name that goes with its file.
class MemoryFile {
public:
    MemoryFile() : name_("/dev/shm/kxmath-benchmark-" + std::to_string(getpid())) {}
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { std::remove(name_.c_str()); }

    const char* name() const { return name_.c_str(); }

private:
    std::string name_;
};

Cloud makeCloud() {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> anywhere(-500.0f, 500.0f);
    Cloud cloud;
    cloud.points.reserve(kPoints);
    for (int i = 0; i < kPoints; ++i) {
        const float x = anywhere(random);
        const float y = anywhere(random);
        cloud.points.append(KxMath::KxPointXYZ(x, y, anywhere(random)));
    }
    return cloud;
}

void writeCloud(benchmark::State& state) {
    const MemoryFile file;
    Cloud cloud = makeCloud();
    for (auto _ : state) {
        bool isWritten = false;
        kxbench::timeIteration(state, [&] { isWritten = cloud.writeToFile(QString::fromLatin1(file.name())); });
        if (!isWritten) {
            state.SkipWithError("the file could not be written");
        }
    }
}

void writeBytes(benchmark::State& state) {
    const MemoryFile file;
    const auto bytes = std::make_unique<char[]>(kSectionBytes);
    for (auto _ : state) {
        bool isWritten = false;
        kxbench::timeIteration(state, [&] {
            FILE* const stream = std::fopen(file.name(), "wb");
            isWritten = stream != nullptr && std::fwrite(bytes.get(), 1, kSectionBytes, stream) == kSectionBytes;
            isWritten = stream != nullptr && std::fclose(stream) == 0 && isWritten;
        });
        if (!isWritten) {
            state.SkipWithError("the file could not be written");
        }
    }
}

void readCloud(benchmark::State& state) {
    const MemoryFile file;
    makeCloud().writeToFile(QString::fromLatin1(file.name()));
    for (auto _ : state) {
        Cloud cloud;
        int count = 0;
        kxbench::timeIteration(state, [&] { count = cloud.readFromFile(QString::fromLatin1(file.name())); });
        if (count != kPoints) {
            state.SkipWithError("the file could not be read");
        }
    }
}

void readBytes(benchmark::State& state) {
    const MemoryFile file;
    makeCloud().writeToFile(QString::fromLatin1(file.name()));
    for (auto _ : state) {
        std::unique_ptr<char[]> bytes;
        size_t count = 0;
        kxbench::timeIteration(state, [&] {
            bytes = std::make_unique_for_overwrite<char[]>(kSectionBytes);
            FILE* const stream = std::fopen(file.name(), "rb");
            count = stream == nullptr ? 0 : std::fread(bytes.get(), 1, kSectionBytes, stream);
            if (stream != nullptr) {
                std::fclose(stream);
            }
        });
        benchmark::DoNotOptimize(bytes.get());
        if (count != kSectionBytes) {
            state.SkipWithError("the file could not be read");
        }
    }
}

BENCHMARK(writeCloud)->Name("write 1e6 3-D points/KxMath")->UseManualTime();
BENCHMARK(writeBytes)->Name("write 1e6 3-D points/fwrite")->UseManualTime();
BENCHMARK(readCloud)->Name("read 1e6 3-D points/KxMath")->UseManualTime();
BENCHMARK(readBytes)->Name("read 1e6 3-D points/fread")->UseManualTime();

} // namespace
