// Profile sets: files, and conversions from and to clouds.
#include "grid/jobs.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kxbench {

namespace {

constexpr std::size_t kHeadBytes = 7;
constexpr std::size_t kRecordBytes = kHeadBytes + sizeof(KxPointXY) * kProfilePoints;
constexpr std::size_t kFileBytes = kRecordBytes * kRows;

std::FILE* openFile(const char* mode) {
    return std::fopen(memoryFile("set").toLocal8Bit().constData(), mode);
}

/// Ends the program when a file operation fails: its time would mean nothing.
void require(bool isDone) {
    if (!isDone) {
        std::perror("benchmark");
        std::abort();
    }
}

void writeAll(std::FILE* file, const void* data, std::size_t size, std::size_t count) {
    require(std::fwrite(data, size, count, file) == count);
}

void closeFile(std::FILE* file) {
    require(std::fclose(file) == 0);
}

void writeRecord(std::FILE* file, const KxMath::KxProfileZ& profile) {
    const auto count = static_cast<quint16>(profile.points.size());
    require(std::fputc(5, file) == 5);
    writeAll(file, &count, sizeof(count), 1);
    writeAll(file, &profile.z, sizeof(profile.z), 1);
    writeAll(file, profile.points.constData(), sizeof(KxPointXY), count);
}

void addWriting() {
    constexpr const char* kOperation = "write profile set";
    const auto reserve = [](GridJob& j) {
        j.bytes = std::make_unique<char[]>(kFileBytes);
        std::memset(j.bytes.get(), 1, kFileBytes);
    };
    const auto fileSize = [](GridJob&) {
        std::FILE* const file = openFile("rb");
        require(std::fseek(file, 0, SEEK_END) == 0);
        const Digest digest{static_cast<double>(std::ftell(file)), 0.0};
        closeFile(file);
        return digest;
    };
    addOnGrid(
        kOperation, "kx", fillSet, [](GridJob& j) { j.set.writeToFile(memoryFile("set")); }, fileSize);
    addOnGrid(
        kOperation, "peer_buffered_io", fillSet,
        [](GridJob& j) {
            std::FILE* const file = openFile("wb");
            for (const KxMath::KxProfileZ& profile : std::as_const(j.set.profiles)) {
                writeRecord(file, profile);
            }
            closeFile(file);
        },
        fileSize);
    addOnGrid(
        kOperation, "limit_one_write", reserve,
        [](GridJob& j) {
            std::FILE* const file = openFile("wb");
            writeAll(file, j.bytes.get(), 1, kFileBytes);
            closeFile(file);
        },
        fileSize);
}

void addReading() {
    constexpr const char* kOperation = "read profile set";
    const auto write = [](GridJob& j) {
        GridJob source;
        source.rows = j.rows;
        fillSet(source);
        source.set.writeToFile(memoryFile("set"));
    };
    addOnGrid(
        kOperation, "kx", write, [](GridJob& j) { j.set.readFromFile(memoryFile("set")); },
        [](GridJob& j) {
            BitDigest digest;
            for (const KxMath::KxProfileZ& profile : std::as_const(j.set.profiles)) {
                digest.add(profile.points.last().y);
            }
            return resultOf(digest);
        });
    addOnGrid(
        kOperation, "peer_buffered_io", write,
        [](GridJob& j) {
            std::FILE* const file = openFile("rb");
            char head[kHeadBytes];
            while (std::fread(head, sizeof(head), 1, file) == 1) {
                quint16 count;
                std::memcpy(&count, head + 1, sizeof(count));
                j.profiles.emplace_back(count);
                j.value += static_cast<double>(std::fread(j.profiles.back().data(), sizeof(KxPointXY), count, file));
            }
            closeFile(file);
        },
        [](GridJob& j) {
            BitDigest digest;
            for (const std::vector<KxPointXY>& profile : j.profiles) {
                digest.add(profile.back().y);
            }
            return resultOf(digest);
        });
    addOnGrid(
        kOperation, "limit_one_read", write,
        [](GridJob& j) {
            j.bytes = std::make_unique_for_overwrite<char[]>(kFileBytes);
            std::FILE* const file = openFile("rb");
            j.value = static_cast<double>(std::fread(j.bytes.get(), 1, kFileBytes, file));
            closeFile(file);
        },
        nothing<GridJob>);
}

void addToCloud() {
    constexpr const char* kOperation = "set to cloud";
    addOnGrid(
        kOperation, "kx", fillSet, [](GridJob& j) { j.set.toPointCloud(j.cloud); }, digestCloud);
    addOnGrid(
        kOperation, "peer_plain_loop", fillSet,
        [](GridJob& j) {
            j.points.reserve(kGridPoints);
            for (const KxMath::KxProfileZ& profile : std::as_const(j.set.profiles)) {
                for (const KxPointXY& p : profile.points) {
                    j.points.emplace_back(p.x, p.y, profile.z);
                }
            }
        },
        digestPoints);
}

void fillCloud(GridJob& j) {
    fillSet(j);
    j.set.toPointCloud(j.cloud);
    j.cloud.calcRange();
    j.set.clear();
}

void addFromCloud() {
    constexpr const char* kOperation = "set from cloud";
    const auto digestProfiles = [](const auto& profiles) {
        BitDigest digest;
        for (const auto& profile : profiles) {
            for (const KxPointXY& p : pointsOf(profile)) {
                digest.add(p.x);
                digest.add(p.y);
            }
        }
        return resultOf(digest);
    };
    addOnGrid(
        kOperation, "kx", fillCloud, [](GridJob& j) { j.set.calcFromPointCloud(j.cloud, kPitch); },
        [=](GridJob& j) { return digestProfiles(j.set.profiles); });
    addOnGrid(
        kOperation, "peer_bucket_loop", fillCloud,
        [](GridJob& j) {
            const float extent = j.cloud.maxZ - j.cloud.minZ;
            j.profiles.resize(static_cast<std::size_t>(std::ceil(extent / kPitch)) + 1);
            for (const KxPointXYZ& p : std::as_const(j.cloud.points)) {
                const auto slice = static_cast<std::size_t>(std::lround((p.z - j.cloud.minZ) / kPitch));
                j.profiles[slice].emplace_back(p.x, p.y);
            }
        },
        [=](GridJob& j) { return digestProfiles(j.profiles); });
}

void addAverage() {
    addOnGrid(
        "average of set", "kx", fillSet, [](GridJob& j) { j.value = static_cast<double>(j.set.calcAverageY()); },
        digestValue);
    addOnGrid(
        "average of set", "limit_ordered_sums", fillSet,
        [](GridJob& j) {
            float means = 0.0f;
            for (const KxMath::KxProfileZ& profile : std::as_const(j.set.profiles)) {
                float sum = 0.0f;
                for (const KxPointXY& p : profile.points) {
                    sum += p.y;
                }
                means += sum / static_cast<float>(profile.points.size());
            }
            j.value = static_cast<double>(means / kRows);
        },
        digestValue);
}

[[maybe_unused]] const bool isRegistered = [] {
    addWriting();
    addReading();
    addToCloud();
    addFromCloud();
    addAverage();
    return true;
}();

} // namespace

} // namespace kxbench
