// Writing and reading clouds, compared with a single call for the same bytes. Files are in memory.
#include "cloud/files.h"

#include <cstdio>
#include <memory>

namespace kxbench {

namespace {

template <typename Point>
struct FileJob {
    KxMath::KxPointCloud<Point> cloud;
    std::unique_ptr<char[]> bytes;
    bool isDone = false;
};

template <typename Point>
constexpr std::size_t kPointBytes = sizeof(Point); // in a file as in memory

QByteArray path() {
    return memoryFile("cloud").toLocal8Bit();
}

template <typename Point>
void addWriting(const FileKind<Point>& kind, int n) {
    using Job = FileJob<Point>;
    const std::string name = "write " + kind.name;
    const std::size_t size = kPointBytes<Point> * static_cast<std::size_t>(n);
    add<Job>(
        name, n, "kx", 1, [=](Job& j) { j.cloud.points = freshCopy(kind.points(n)); },
        [](Job& j) { j.isDone = j.cloud.writeToFile(memoryFile("cloud")); }, digestDone<Job>);
    add<Job>(
        name, n, "limit_one_write", 1, [=](Job& j) { j.bytes = std::make_unique<char[]>(size); },
        [=](Job& j) {
            std::FILE* const file = std::fopen(path().constData(), "wb");
            j.isDone = std::fwrite(j.bytes.get(), 1, size, file) == size;
            j.isDone = std::fclose(file) == 0 && j.isDone;
        },
        digestDone<Job>);
}

template <typename Point>
void addReading(const FileKind<Point>& kind, int n) {
    using Job = FileJob<Point>;
    const std::string name = "read " + kind.name;
    const std::size_t size = kPointBytes<Point> * static_cast<std::size_t>(n);
    const auto write = [=](Job&) {
        KxMath::KxPointCloud<Point> cloud;
        cloud.points = kind.points(n);
        cloud.writeToFile(memoryFile("cloud"));
    };
    const auto readBytes = [=](Job& j) {
        j.bytes = std::make_unique_for_overwrite<char[]>(size);
        std::FILE* const file = std::fopen(path().constData(), "rb");
        j.isDone = std::fread(j.bytes.get(), 1, size, file) == size;
        static_cast<void>(std::fclose(file)); // which was only read
    };
    add<Job>(
        name, n, "kx", 1, write, [=](Job& j) { j.isDone = j.cloud.readFromFile(memoryFile("cloud")) == n; },
        digestDone<Job>);
    add<Job>(name, n, "limit_one_read", 1, write, readBytes, digestDone<Job>);
    add<Job>(
        name, n, "limit_one_read_and_range", 1,
        [=](Job& j) {
            write(j);
            j.cloud.points = freshCopy(kind.points(n));
        },
        [=](Job& j) {
            readBytes(j);
            j.cloud.calcRange();
        },
        digestDone<Job>);
}

[[maybe_unused]] const bool isRegistered = [] {
    forEachFileKind([](const auto& kind, int n) {
        addWriting(kind, n);
        addReading(kind, n);
    });
    return true;
}();

} // namespace

} // namespace kxbench
