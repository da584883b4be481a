// Cloud sections in files.
#include "support/bits.h"
#include "support/nasty.h"
#include "support/tempFiles.h"

#include <KxMath/KxPointCloud.h>

#include <gtest/gtest.h>

#include <QtCore/QtEndian>

#include <array>

using namespace KxMath;
using namespace testing_support;

namespace {

/// The protected members, and what differs between the sections.
template <typename Point>
struct Cloud : KxPointCloud<Point> {
    using KxPointCloud<Point>::readMarker;
    using KxPointCloud<Point>::updateRange;
    using KxPointCloud<Point>::writeMarker;

    static constexpr bool kIsFlat = std::is_same_v<Point, KxPointXY>;
    static constexpr int kHeader = kIsFlat ? 3 : 5;
    static constexpr int kRecord = static_cast<int>(sizeof(Point));

    static QByteArray header(unsigned count) {
        QByteArray bytes(kHeader, char(kRecord / 4 == 4 ? 4 : kIsFlat ? 2 : 3));
        kIsFlat ? qToLittleEndian(static_cast<quint16>(count), bytes.data() + 1)
                : qToLittleEndian(static_cast<quint32>(count), bytes.data() + 1);
        return bytes;
    }
};

int gMessages = 0;

/// Counts what the library makes Qt print.
class CloudFile : public testing::Test {
protected:
    void SetUp() override {
        gMessages = 0;
        previous_ = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++gMessages; });
    }
    void TearDown() override {
        qInstallMessageHandler(previous_);
        EXPECT_EQ(gMessages, 0) << "nothing is printed";
    }

    TempFiles files;

private:
    QtMessageHandler previous_ = nullptr;
};

template <typename Point>
class CloudFileOf : public CloudFile {};
using PointTypes = testing::Types<KxPointXY, KxPointXYZ, KxPointXYZRGB>;
TYPED_TEST_SUITE(CloudFileOf, PointTypes);

} // namespace

TEST_F(CloudFile, BytesOfSections) {
    KxPointCloud<KxPointXY> flat;
    EXPECT_TRUE(flat.writeToFile(files.path("flat")));
    EXPECT_EQ(files.read("flat"), QByteArray::fromHex("020000"));
    flat.points = {{1, -2}};
    EXPECT_TRUE(flat.writeToFile(files.path("flat")));
    EXPECT_EQ(files.read("flat"), QByteArray::fromHex("02 0100 0000803f 000000c0"));
    KxPointCloud<KxPointXYZ> space;
    EXPECT_TRUE(space.writeToFile(files.path("space")));
    EXPECT_EQ(files.read("space"), QByteArray::fromHex("0300000000"));
    KxPointCloud<KxPointXYZRGB> colour;
    colour.points = {{1, 2, 3, 0x00ff0000}};
    EXPECT_TRUE(colour.writeToFile(files.path("colour")));
    EXPECT_EQ(files.read("colour"), QByteArray::fromHex("04 01000000 0000803f 00000040 00004040 0000ff00"));

    space.points = {{1, 2, 3}, {4, 5, 6}};
    EXPECT_TRUE(space.compat_writeToXYZFile(files.path("headerless")));
    EXPECT_EQ(files.read("headerless"), QByteArray::fromHex("0000803f 00000040 00004040 00000000"
                                                            "00008040 0000a040 0000c040 00000000"));
    space.clear();
    EXPECT_TRUE(space.compat_writeToXYZFile(files.path("headerless")));
    EXPECT_EQ(files.read("headerless"), QByteArray()) << "an older, longer file is replaced";
}

// Each length of a short file, and of a long one those about the sizes in which readers like to fetch.
TYPED_TEST(CloudFileOf, EachCutKeepsThePointsBeforeIt) {
    using C = Cloud<TypeParam>;
    for (const int size : {0, 1, 3, 9000}) {
        Nasty nasty(5);
        KxPointCloud<TypeParam> written;
        written.points = nasty.points<TypeParam>(size);
        const QByteArray bytes = [&] {
            written.writeToFile(this->files.path("whole"));
            return this->files.read("whole");
        }();
        const int full = C::kHeader + size * C::kRecord;
        ASSERT_EQ(bytes.size(), full);
        for (int length = 0; length <= full; ++length) {
            const int nearest = (length + 32768) / 65536 * 65536;
            if (size > 100 && length > 20 && length < full - 20 && std::abs(length - nearest) > 10) {
                continue;
            }
            const QByteArray before = "before!";
            const bool isWhole = length == full;
            QFile file(this->files.write("cut", before + bytes.first(length) + (isWhole ? "after" : "")));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly) && file.seek(before.size()));
            C cloud;
            cloud.points = nasty.points<TypeParam>(2);
            cloud.minX = -1e9f;
            cloud.zIndexBuilt = 1;
            ASSERT_EQ(cloud.readFromFile(file), isWhole ? size : -1) << length;
            ASSERT_EQ(file.pos(), before.size() + (isWhole ? full : 0)) << length;
            const qsizetype kept = length < C::kHeader ? 0 : (length - C::kHeader) / C::kRecord;
            C expected;
            for (TypeParam& p : written.points) {
                if (expected.points.size() < kept) {
                    expected.points.append(p);
                    expected.updateRange(p);
                }
            }
            ASSERT_EQ(cloud.points.size(), kept) << length;
            ASSERT_TRUE(size > 100 || exact(cloud.points) == exact(expected.points)) << length;
            ASSERT_TRUE(kept == 0 || std::memcmp(cloud.points.constData(), written.points.constData(),
                                                 static_cast<std::size_t>(kept) * sizeof(TypeParam)) == 0);
            ASSERT_EQ(exactRange(cloud), exactRange(expected)) << length;
            ASSERT_EQ(cloud.zIndexBuilt, C::kIsFlat ? 1 : 0);
        }
    }
}

TYPED_TEST(CloudFileOf, AClaimedCountAllocatesNothing) {
    using C = Cloud<TypeParam>;
    for (const unsigned count : {1u, 65535u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        if (C::kIsFlat && count > 65535) {
            continue;
        }
        KxPointCloud<TypeParam> cloud;
        const QByteArray onePoint(C::kRecord + 3, '\x11');
        EXPECT_EQ(cloud.readFromFile(this->files.write("claim", C::header(count))), -1);
        EXPECT_LE(cloud.points.capacity(), 16);
        const int result = cloud.readFromFile(this->files.write("claim", C::header(count) + onePoint));
        EXPECT_EQ(result, count == 1 ? 1 : -1);
        EXPECT_EQ(cloud.size(), 1);
        EXPECT_LE(cloud.points.capacity(), 16);
    }
}

TYPED_TEST(CloudFileOf, SectionsFollowOneAnotherInOneFile) {
    QFile file(this->files.path("sections"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    KxPointCloud<TypeParam> first;
    KxPointCloud<KxPointXY> second;
    first.points = Nasty(6).points<TypeParam>(40);
    second.points = Nasty(7).points<KxPointXY>(3);
    EXPECT_TRUE(first.writeToFile(file));
    EXPECT_TRUE(second.writeToFile(file));
    EXPECT_TRUE(first.writeToFile(file));
    EXPECT_TRUE(file.seek(0));
    KxPointCloud<TypeParam> cloud;
    EXPECT_EQ(cloud.readFromFile(file), 40);
    EXPECT_EQ(exact(cloud.points), exact(first.points));
    // Probing: a reader of another type leaves the section to the right one.
    const qint64 position = file.pos();
    KxPointCloud<KxPointXYZ> space;
    space.points = {{1, 2, 3}};
    space.calcRange();
    EXPECT_EQ(space.readFromFile(file), -1);
    EXPECT_EQ(file.pos(), position);
    EXPECT_TRUE(space.isEmpty() && std::isnan(space.minX));
    KxPointCloud<KxPointXY> flat;
    EXPECT_EQ(flat.readFromFile(file), 3);
    EXPECT_EQ(exact(flat.points), exact(second.points));
    EXPECT_EQ(cloud.readFromFile(file), 40);
    EXPECT_EQ(cloud.readFromFile(file), -1) << "the end of the file";
    EXPECT_TRUE(file.isOpen());
    // Written over at the end: a section that is read and one that is written share the device.
    EXPECT_TRUE(flat.writeToFile(file));
    EXPECT_TRUE(file.seek(file.pos() - (3 + 3 * 8)));
    EXPECT_EQ(flat.readFromFile(file), 3);
}

TEST_F(CloudFile, CountOfA2DCloudIsWrittenModulo65536) {
    KxPointCloud<KxPointXY> cloud;
    cloud.points = Nasty(8).points<KxPointXY>(65538);
    EXPECT_TRUE(cloud.writeToFile(files.path("many")));
    EXPECT_EQ(files.read("many").size(), 3 + 65538 * 8);
    EXPECT_EQ(files.read("many").first(3), QByteArray::fromHex("020200"));
    QFile file(files.path("many"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(cloud.readFromFile(file), 2);
    EXPECT_EQ(file.pos(), 3 + 2 * 8) << "the records beyond the count stay unread";
}

TYPED_TEST(CloudFileOf, FilesThatCannotBeUsed) {
    KxPointCloud<TypeParam> cloud;
    const KxPointCloud<TypeParam>& fixed = cloud;
    for (const int size : {0, 1, 20000}) {
        cloud.points = Nasty(9).points<TypeParam>(size);
        cloud.minX = 7;
        for (const QString& name : {this->files.path("no folder/file"), this->files.path("."), QString()}) {
            EXPECT_FALSE(cloud.writeToFile(name));
            EXPECT_EQ(cloud.readFromFile(name), -1);
            EXPECT_EQ(fixed.points.size(), size) << "untouched when the file cannot be opened";
            EXPECT_EQ(cloud.minX, 7.0f);
        }
    }

    QFile file(this->files.write("readable", Cloud<TypeParam>::header(0)));
    EXPECT_FALSE(cloud.writeToFile(file)) << "not open";
    EXPECT_EQ(cloud.readFromFile(file), -1);
    EXPECT_TRUE(cloud.isEmpty());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(cloud.writeToFile(file));
    file.close();
    ASSERT_TRUE(file.open(QIODevice::Append));
    EXPECT_EQ(cloud.readFromFile(file), -1) << "not readable";
    EXPECT_TRUE(cloud.writeToFile(file));
}

TYPED_TEST(CloudFileOf, AFullDiskIsAFailureAndKeepsWhatFitted) {
    for (const int size : {0, 1, 9000}) {
        KxPointCloud<TypeParam> cloud;
        cloud.points = Nasty(10).points<TypeParam>(size);
        ASSERT_TRUE(cloud.writeToFile(this->files.path("whole")));
        const QByteArray whole = this->files.read("whole");
        // Also what fits into the buffer of the file is lost: at close.
        for (const qsizetype fits : {qsizetype(0), whole.size() / 2, whole.size() - 1, whole.size()}) {
            const FullDisk disk(static_cast<rlim_t>(fits));
            ASSERT_EQ(cloud.writeToFile(this->files.path("cut")), fits == whole.size());
            ASSERT_EQ(this->files.read("cut"), whole.first(fits));
            QFile unbuffered(this->files.path("unbuffered"));
            ASSERT_TRUE(unbuffered.open(QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered));
            ASSERT_EQ(cloud.writeToFile(unbuffered), fits == whole.size());
        }
        if constexpr (std::is_same_v<TypeParam, KxPointXYZ>) {
            const FullDisk disk(static_cast<rlim_t>(size * 16 - (size > 0)));
            ASSERT_EQ(cloud.compat_writeToXYZFile(this->files.path("headerless")), size == 0);
            ASSERT_FALSE(cloud.compat_writeToXYZFile(this->files.path("no folder/file")));
        }
    }
}

TYPED_TEST(CloudFileOf, Markers) {
    Cloud<TypeParam> cloud;
    QFile file(this->files.path("marker"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    EXPECT_TRUE(cloud.writeMarker(file, 0xfe));
    EXPECT_TRUE(file.seek(0));
    EXPECT_TRUE(cloud.readMarker(file, 0xfe));
    EXPECT_FALSE(cloud.readMarker(file, 0)) << "no byte left";
    EXPECT_TRUE(file.seek(0));
    EXPECT_FALSE(cloud.readMarker(file, 2));
    EXPECT_EQ(file.pos(), 1);
}
