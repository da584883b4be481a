#include "gridSupport.h"
#include "support/tempFiles.h"

#include <gtest/gtest.h>

#include <bit>

using namespace KxMath;
using namespace testing_support;

namespace {

/// Two points at z = -2.5: 7 bytes and 16.
const QByteArray kRecord = QByteArray::fromHex("050200000020c0"
                                               "0000803f00000040"
                                               "0000c03f0000c07f");
const QList<KxPointXY> kRecordPoints = {{1, 2}, {1.5f, kNaN}};

ExactList exactProfile(const KxProfileZ& profile) {
    return exact(profile.points, profile.z);
}

} // namespace

TEST(ProfileZ, AssignmentDeliberatelyAppends) {
    KxProfileZ target = profileAt(1, {{1, 1}}), other = profileAt(2, {{2, 2}, {3, 3}});
    const KxProfile& base = other;
    target.minX = other.minX = -101;
    target = other;
    EXPECT_EQ(exactProfile(target), exact(1, 1, 2, 2, 3, 3, 2));
    target = base;
    EXPECT_EQ(exactProfile(target), exact(1, 1, 2, 2, 3, 3, 2, 2, 3, 3, kNaN));
    EXPECT_EQ(target.minX, -101.0f); // no range is touched
    KxProfileZ& same = target;
    target = same;
    EXPECT_EQ(target.size(), 10);
    KxProfileZ copy(other), ofBase(base);
    EXPECT_EQ(exactProfile(copy), exact(2, 2, 3, 3, 2));
    EXPECT_EQ(exactProfile(ofBase), exact(2, 2, 3, 3, kNaN));
    EXPECT_TRUE(std::isnan(copy.minX)); // a copy is filled by assignment and takes no range
    other.clear();
    EXPECT_EQ(exact(other.size(), other.z, other.minX), exact(0, kNaN, -101));
    float buffer[] = {1, 2, 3, 4};
    EXPECT_EQ(exactProfile(KxProfileZ(5, buffer, 2)), exact(1, 2, 3, 4, 5));
}

TEST(ProfileZ, RecordIsTheseBytes) {
    TempFiles files;
    KxProfileZ profile = profileAt(-2.5f, kRecordPoints);
    ASSERT_TRUE(profile.writeToFile(files.path("a.bin")));
    EXPECT_EQ(files.read("a.bin").toHex(), kRecord.toHex());
    ASSERT_TRUE(KxProfileZ(0.0f).writeToFile(files.path("a.bin"))); // replaces the file
    EXPECT_EQ(files.read("a.bin").toHex(), "05000000000000");
    EXPECT_EQ(profile.readFromFile(files.path("none.bin")), -1);
    EXPECT_EQ(profile.size(), 2); // nothing was opened, nothing dropped
    EXPECT_FALSE(profile.writeToFile(files.path("no folder/a.bin")));
    EXPECT_FALSE(profile.writeToFile(QStringLiteral("/dev/full")));
    EXPECT_TRUE(profile.writeToCSVFile(QStringLiteral("/dev/full"))); // the text form does not tell
    profile.points.fill({1, 2}, 65536 + 3);
    ASSERT_TRUE(profile.writeToFile(files.path("a.bin")));
    EXPECT_EQ(files.read("a.bin").size(), 7 + 8 * (65536 + 3));
    EXPECT_EQ(profile.readFromFile(files.path("a.bin")), 3); // the count is kept modulo 65536
}

TEST(ProfileZ, EveryCutLengthFailsAndRewinds) {
    TempFiles files;
    const QByteArray before = "xyz"; // the record does not begin at 0
    for (int length = 0; length <= kRecord.size(); ++length) {
        SCOPED_TRACE(length);
        QFile file(files.write("cut.bin", before + kRecord.first(length)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        file.seek(before.size());
        KxProfileZ profile = profileAt(9, {{9, 9}});
        const bool isWhole = length == kRecord.size();
        EXPECT_EQ(profile.readFromFile(file), isWhole ? 2 : -1);
        EXPECT_EQ(file.pos(), isWhole ? file.size() : before.size());
        EXPECT_EQ(exact(profile.points), exact(kRecordPoints.first(length < 15 ? 0 : length < 23 ? 1 : 2)));
        // The position is read straight into z: the bytes that are there replace those of NaN from the lowest on.
        EXPECT_EQ(std::bit_cast<quint32>(profile.z), length < 6 ? 0x7fc00000 : length < 7 ? 0x7f200000 : 0xc0200000);
        const QByteArray empty = kRecord.first(1) + QByteArray(6, '\0');
        EXPECT_EQ(profile.readFromFile(files.write("a.bin", empty.first(std::min(length, 7)))), length < 7 ? -1 : 0);
    }
}

TEST(ProfileZ, AnotherMarkerOrCountIsNoRecord) {
    TempFiles files;
    for (const int marker : {0, 2, 3, 4, 5, 6, 7, 255}) {
        QByteArray bytes = kRecord;
        bytes[0] = static_cast<char>(marker);
        KxProfileZ profile = profileAt(9, {{9, 9}});
        EXPECT_EQ(profile.readFromFile(files.write("a.bin", bytes)), marker == 5 ? 2 : -1) << marker;
        EXPECT_EQ(profile.size(), marker == 5 ? 2 : 0);
        EXPECT_EQ(std::isnan(profile.z), marker != 5);
    }
    for (int bit = 0; bit < 16; ++bit) {
        const int count = 2 ^ (1 << bit);
        QByteArray bytes = kRecord;
        bytes[1 + bit / 8] = static_cast<char>(bytes[1 + bit / 8] ^ (1 << bit % 8));
        KxProfileZ profile;
        EXPECT_EQ(profile.readFromFile(files.write("a.bin", bytes)), count <= 2 ? count : -1) << bit;
        EXPECT_EQ(exactProfile(profile), exact(kRecordPoints.first(std::min(count, 2)), -2.5f)) << bit;
        EXPECT_LT(profile.points.capacity(), 1000) << bit; // a count is a claim
    }
}
