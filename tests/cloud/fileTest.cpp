// Cloud sections in files. Each bit and length of short ones is damaged in tests/io.
#include "support/tempFiles.h"
#include "support/testing.h"

using namespace testing_support;

namespace {

/// A protected member, and what differs between the sections.
template <typename Point>
struct Cloud : KxPointCloud<Point> {
    using KxPointCloud<Point>::updateRange;

    static constexpr bool kIsFlat = std::is_same_v<Point, KxPointXY>;
    static constexpr int kHeader = kIsFlat ? 3 : 5;
    static constexpr int kRecord = static_cast<int>(sizeof(Point));
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
TYPED_TEST_SUITE(CloudFileOf, PointTypes);

// The bytes of sections with points are those of docs/files.md, which tests/docs compares.
TEST_F(CloudFile, EmptyAndHugeSections) {
    KxPointCloud<KxPointXY> flat;
    KxPointCloud<KxPointXYZ> space;
    for (const char* name : {"section", "headerless"}) {
        files.write(name, "an older, longer file is replaced");
    }
    EXPECT_TRUE(space.writeToFile(files.path("section")) && space.compat_writeToXYZFile(files.path("headerless")));
    EXPECT_EQ(files.read("section").toHex() + files.read("headerless"), "0300000000");

    flat.points = Nasty(8).points<KxPointXY>(65538);
    EXPECT_TRUE(flat.writeToFile(files.path("many")));
    EXPECT_EQ(files.read("many").size(), 3 + 65538 * 8);
    QFile file(files.path("many"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(flat.readFromFile(file), 2) << "the count of a 2D cloud is written modulo 65536";
    EXPECT_EQ(file.pos(), 3 + 2 * 8) << "the records beyond the count stay unread";
}

// Cut near the ends of a long section and near common buffer sizes.
TYPED_TEST(CloudFileOf, EachCutKeepsThePointsBeforeIt) {
    using C = Cloud<TypeParam>;
    constexpr int kSize = 9000;
    constexpr int kFull = C::kHeader + kSize * C::kRecord;
    Nasty nasty(5);
    C written;
    written.points = nasty.points<TypeParam>(kSize);
    ASSERT_TRUE(written.writeToFile(this->files.path("whole")));
    const QByteArray bytes = this->files.read("whole");
    ASSERT_EQ(bytes.size(), kFull);
    for (int length = 0; length <= kFull; ++length) {
        const int nearest = (length + 32768) / 65536 * 65536;
        if (length > 20 && length < kFull - 20 && std::abs(length - nearest) > 10) {
            continue;
        }
        SCOPED_TRACE(length);
        const QByteArray before = "before!";
        const bool isWhole = length == kFull;
        QFile file(this->files.write("cut", before + bytes.first(length) + (isWhole ? "after" : "")));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly) && file.seek(before.size()));
        C cloud, expected;
        cloud.points = nasty.points<TypeParam>(2);
        cloud.minX = -1e9f;
        cloud.zIndexBuilt = 1;
        ASSERT_EQ(cloud.readFromFile(file), isWhole ? kSize : -1);
        ASSERT_EQ(file.pos(), before.size() + (isWhole ? kFull : 0));
        expected.points = written.points.first(std::max(0, (length - C::kHeader) / C::kRecord));
        for (TypeParam& p : expected.points) {
            expected.updateRange(p);
        }
        ASSERT_EXACT(cloud.points, expected.points);
        ASSERT_EXACT(exactRange(cloud), exactRange(expected));
        ASSERT_EQ(cloud.zIndexBuilt, C::kIsFlat ? 1 : 0);
    }
}

TYPED_TEST(CloudFileOf, SectionsFollowOneAnotherInOneFile) {
    QFile file(this->files.path("sections"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    KxPointCloud<TypeParam> first, cloud;
    KxPointCloud<KxPointXY> second, flat;
    first.points = Nasty(6).points<TypeParam>(40);
    second.points = Nasty(7).points<KxPointXY>(3);
    EXPECT_TRUE(first.writeToFile(file) && second.writeToFile(file) && first.writeToFile(file) && file.seek(0));
    EXPECT_TRUE(cloud.readFromFile(file) == 40 && flat.readFromFile(file) == 3);
    EXPECT_EXACT(exact(cloud.points, flat.points), exact(first.points, second.points));
    EXPECT_EQ(cloud.readFromFile(file), 40);
    EXPECT_TRUE(cloud.readFromFile(file) == -1 && file.isOpen()) << "the end of the file";
    // Overwritten at the end: a section that is read and one that is written share the device.
    EXPECT_TRUE(flat.writeToFile(file) && file.seek(file.pos() - (3 + 3 * 8)));
    EXPECT_EQ(flat.readFromFile(file), 3);
}

TYPED_TEST(CloudFileOf, FilesThatCannotBeUsed) {
    KxPointCloud<TypeParam> cloud;
    for (const int size : {1, 20000}) {
        cloud.points = Nasty(9).points<TypeParam>(size);
        cloud.minX = 7;
        for (const QString& name : {this->files.path("no folder/file"), this->files.path("."), QString()}) {
            EXPECT_FALSE(cloud.writeToFile(name));
            EXPECT_EQ(cloud.readFromFile(name), -1);
            EXPECT_TRUE(cloud.size() == size && cloud.minX == 7) << "untouched when the file cannot be opened";
        }
    }
    QFile file(this->files.path("readable"));
    EXPECT_FALSE(cloud.writeToFile(file)) << "not open";
    EXPECT_EQ(cloud.readFromFile(file), -1);
    EXPECT_TRUE(cloud.isEmpty());
    ASSERT_TRUE(file.open(QIODevice::Append));
    EXPECT_EQ(cloud.readFromFile(file), -1) << "not readable";
    EXPECT_TRUE(cloud.writeToFile(file));
    file.close();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(cloud.writeToFile(file));
}

TYPED_TEST(CloudFileOf, AFullDiskIsAFailureAndKeepsWhatFitted) {
    for (const int size : {0, 1, 9000}) {
        KxPointCloud<TypeParam> cloud;
        cloud.points = Nasty(10).points<TypeParam>(size);
        ASSERT_TRUE(cloud.writeToFile(this->files.path("whole")));
        const QByteArray whole = this->files.read("whole");
        // Data that fit into the buffer of the file are also lost, on closing.
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

} // namespace
