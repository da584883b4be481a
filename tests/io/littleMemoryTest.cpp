// Files whose counts exceed their content, read by a process with too little memory for the counts.
#include "support/tempFiles.h"
#include "support/testing.h"

#include <cstdlib>
#include <functional>

#include <sys/resource.h>
#include <unistd.h>

using namespace testing_support;

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool kIsSanitized = true; // the sanitizer itself needs more address space
#else
constexpr bool kIsSanitized = false;
#endif

/// Address space of this process now, in bytes.
rlim_t addressSpace() {
    QFile file(QStringLiteral("/proc/self/statm"));
    return file.open(QIODevice::ReadOnly)
               ? file.readAll().split(' ').first().toULongLong() * static_cast<rlim_t>(sysconf(_SC_PAGESIZE))
               : 0;
}

/// Expects the work to return true in a process limited to `more` bytes above the use of this one.
void expectWithin(rlim_t more, const std::function<bool()>& work) {
    const auto limited = [&] {
        const rlim_t size = addressSpace() + more;
        const rlimit limit{size, size};
        return setrlimit(RLIMIT_AS, &limit) == 0 && work();
    };
    if (kIsSanitized) {
        EXPECT_TRUE(work());
    } else {
        EXPECT_EXIT(std::exit(limited() ? 0 : 1), testing::ExitedWithCode(0), "");
    }
}

constexpr rlim_t kMegabyte = 1 << 20;

TEST(LittleMemory, LargeCountsInFourBytesNeedNoMemory) {
    const TempFiles files;
    const QString space = files.write("space", QByteArray::fromHex("03ffffffff"));
    const QString colour = files.write("colour", QByteArray::fromHex("04ffffffff"));
    const QString flat = files.write("flat", QByteArray::fromHex("02ffff"));
    const QString positioned = files.write("positioned", QByteArray::fromHex("05ffff00000000"));
    expectWithin(8 * kMegabyte, [&] {
        KxPointCloud<KxPointXYZ> cloud;
        KxPointCloud<KxPointXYZRGB> colours;
        KxPointCloud<KxPointXY> plane;
        KxProfileZ profile;
        KxProfileZSet set;
        // Often, so that what each of them might keep would add up.
        for (int i = 0; i < 1000; ++i) {
            if (cloud.readFromFile(space) != -1 || colours.readFromFile(colour) != -1 ||
                plane.readFromFile(flat) != -1 || profile.readFromFile(positioned) != -1 ||
                set.readFromFile(positioned) != 0 || set.readFromFile(flat, 0, 1) != 0) {
                return false;
            }
        }
        return cloud.isEmpty() && colours.isEmpty() && plane.isEmpty() && profile.isEmpty();
    });
}

TEST(LittleMemory, PointsTakeTheirOwnSizeAndNoMore) {
    const TempFiles files;
    constexpr qsizetype kPoints = 2000000;
    const QString name = files.write("cloud", QByteArray::fromHex("03ffffffff") + QByteArray(12 * kPoints, '\1'));
    expectWithin(static_cast<quint64>(12 * kPoints) + 8 * kMegabyte, [&] {
        KxPointCloud<KxPointXYZ> cloud;
        return cloud.readFromFile(name) == -1 && cloud.size() == kPoints && cloud.points.capacity() < kPoints + 16 &&
               cloud.readFromFile(name) == -1; // again into the same cloud
    });
}

TEST(LittleMemory, ALineOfTextTakesAFewTimesItsLength) {
    const TempFiles files;
    // The realloc() of the sanitizer copies each time that the line grows.
    constexpr qsizetype kLength = kIsSanitized ? 1000000 : 50000000;
    const QString name = files.write("line.csv", "1;2\n" + QByteArray(kLength, ';') + "\n3;4\n");
    expectWithin(8 * kLength, [&] {
        KxProfile profile;
        return profile.readFromCSVFile(name, 0, 1) == 3 && profile.points[2].x == 3.0f;
    });
}

#ifndef __SANITIZE_ADDRESS__ // without a limit there is nothing to refuse
TEST(LittleMemory, GridsAndSlicesThatNeedMoreAreRefused) {
    expectWithin(850 * kMegabyte, [] {
        KxProfileZSet set;
        set.profiles.resize(3);
        for (KxProfileZ& profile : set.profiles) {
            profile.points = {{0, 1}, {1e8f, 1}};
        }
        set.setZ(0, 1);
        KxMatrixCloud matrix;
        const bool isRefused = set.toMatrixCloud(matrix, NAN, NAN) == 0 && matrix.rows == -1 && matrix.cells[1];
        set.clear();
        // Two such rows fit only if the rows of the failed grid were released.
        const bool isReleased = matrix.initMatrix(100000000, 2, 1, 0, 0, 0, 0, 0, 0);
        matrix.clear();
        KxPointCloud<KxPointXYZ> cloud;
        cloud.points = {{0, 1, 0}, {0, 2, 16777000}};
        return isRefused && isReleased && set.calcFromPointCloud(cloud, 1) == 0 && set.isEmpty();
    });
}
#endif

} // namespace
