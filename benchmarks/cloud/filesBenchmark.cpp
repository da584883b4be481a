// Writing and reading clouds, next to one call for the same bytes. Files are in memory.
#include "cloud/jobs.h"

#include <cstdio>
#include <memory>

namespace kxbench {

namespace {

std::size_t sectionBytes(int count) {
    return 5 + 12 * static_cast<std::size_t>(count);
}

struct FileJob {
    Cloud cloud;
    std::unique_ptr<char[]> bytes;
    bool isDone = false;
};

Digest digestDone(FileJob& job) {
    return Digest{job.isDone ? 1.0 : 0.0, 0.0};
}

QByteArray path() {
    return memoryFile("cloud").toLocal8Bit();
}

void addWriting(int n) {
    add<FileJob>(
        "write 3-D cloud", n, "kx", 1, [=](FileJob& j) { j.cloud.points = randomPoints(n); },
        [](FileJob& j) { j.isDone = j.cloud.writeToFile(memoryFile("cloud")); }, digestDone);
    add<FileJob>(
        "write 3-D cloud", n, "limit_one_write", 1,
        [=](FileJob& j) { j.bytes = std::make_unique<char[]>(sectionBytes(n)); },
        [=](FileJob& j) {
            std::FILE* const file = std::fopen(path().constData(), "wb");
            j.isDone = std::fwrite(j.bytes.get(), 1, sectionBytes(n), file) == sectionBytes(n);
            j.isDone = std::fclose(file) == 0 && j.isDone;
        },
        digestDone);
}

void addReading(int n) {
    const auto write = [=](FileJob&) {
        Cloud cloud;
        cloud.points = randomPoints(n);
        cloud.writeToFile(memoryFile("cloud"));
    };
    const auto readBytes = [](FileJob& j, int count) {
        j.bytes = std::make_unique_for_overwrite<char[]>(sectionBytes(count));
        std::FILE* const file = std::fopen(path().constData(), "rb");
        j.isDone = std::fread(j.bytes.get(), 1, sectionBytes(count), file) == sectionBytes(count);
        std::fclose(file);
    };
    add<FileJob>(
        "read 3-D cloud", n, "kx", 1, write,
        [=](FileJob& j) { j.isDone = j.cloud.readFromFile(memoryFile("cloud")) == n; }, digestDone);
    add<FileJob>(
        "read 3-D cloud", n, "limit_one_read", 1, write, [=](FileJob& j) { readBytes(j, n); }, digestDone);
    add<FileJob>(
        "read 3-D cloud", n, "limit_one_read_and_range", 1,
        [=](FileJob& j) {
            write(j);
            j.cloud.points = freshCopy(randomPoints(n));
        },
        [=](FileJob& j) {
            readBytes(j, n);
            j.cloud.calcRange();
        },
        digestDone);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        addWriting(n);
        addReading(n);
    }
    return true;
}();

} // namespace

} // namespace kxbench
