#include "support/bits.h"
#include "support/nasty.h"
#include "support/tempFiles.h"

#include <KxMath/KxProfileZ.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

using namespace KxMath;
using namespace testing_support;

namespace {

using Points = QList<KxPointXY>;

KxProfileZ profileAt(float z, const Points& points) {
    KxProfileZ profile(z);
    profile.points = points;
    profile.minX = -101.0f;
    return profile;
}

void expectProfile(KxProfileZ& profile, const Points& points, float z) {
    EXPECT_EQ(exact(profile.points), exact(points));
    EXPECT_EQ(exact(profile.z), exact(z));
}

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// Two points at z = -2.5: 7 bytes and 16.
const QByteArray kRecord = QByteArray::fromHex("050200000020c0"
                                               "0000803f00000040"
                                               "0000c03f0000c07f");
const Points kRecordPoints = {{1, 2}, {1.5f, kNaN}};

} // namespace

TEST(ProfileZ, AssignmentAppends) {
    KxProfileZ target = profileAt(1.0f, {{1, 1}});
    const KxProfileZ other = profileAt(2.0f, {{2, 2}, {3, 3}});
    const KxProfile& base = other;
    target = other;
    expectProfile(target, {{1, 1}, {2, 2}, {3, 3}}, 2.0f);
    target = base;
    expectProfile(target, {{1, 1}, {2, 2}, {3, 3}, {2, 2}, {3, 3}}, kNaN);
    EXPECT_EQ(target.minX, -101.0f); // no range is touched
    KxProfileZ& same = target;
    target = same;
    EXPECT_EQ(target.size(), 10);
    KxProfileZ copy(other), ofBase(base);
    expectProfile(copy, other.points, 2.0f);
    expectProfile(ofBase, other.points, kNaN);
    EXPECT_TRUE(std::isnan(copy.minX)); // a copy is filled by assignment and takes no range
}

TEST(ProfileZ, ConstructionAndClear) {
    float buffer[] = {1.0f, 2.0f, 3.0f, 4.0f};
    KxProfileZ profile(5.0f, buffer, 2);
    expectProfile(profile, {{1, 2}, {3, 4}}, 5.0f);
    profile.minX = -101.0f;
    profile.clear();
    expectProfile(profile, {}, kNaN);
    EXPECT_EQ(profile.minX, -101.0f);
    KxProfileZ unset;
    expectProfile(unset, {}, kNaN);
}

TEST(ProfileZ, RecordIsTheseBytes) {
    TempFiles files;
    KxProfileZ profile = profileAt(-2.5f, kRecordPoints);
    ASSERT_TRUE(profile.writeToFile(files.path("a.bin")));
    EXPECT_EQ(files.read("a.bin").toHex(), kRecord.toHex());
    ASSERT_TRUE(KxProfileZ(0.0f).writeToFile(files.path("a.bin"))); // replaces the file
    EXPECT_EQ(files.read("a.bin").toHex(), "05000000000000");
    EXPECT_FALSE(profile.writeToFile(files.path("no folder/a.bin")));
    EXPECT_EQ(profile.readFromFile(files.path("none.bin")), -1);
    expectProfile(profile, kRecordPoints, -2.5f); // nothing was opened, nothing dropped
}

TEST(ProfileZ, WriteThenReadKeepsEveryBit) {
    TempFiles files;
    Nasty nasty(201);
    QFile file(files.path("all.bin"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QList<Points> written;
    QList<float> zs;
    for (int round = 0; round < 100; ++round) {
        nasty.nextCase();
        written.append(nasty.points<KxPointXY>(nasty.size()));
        zs.append(nasty.value());
        ASSERT_TRUE(profileAt(zs.last(), written.last()).writeToFile(file));
    }
    file.seek(0);
    KxProfileZ profile = profileAt(9.0f, {{9, 9}});
    for (int round = 0; round < 100; ++round) {
        ASSERT_EQ(profile.readFromFile(file), written[round].size());
        expectProfile(profile, written[round], zs[round]);
        ASSERT_FALSE(HasFailure()) << round;
    }
    EXPECT_EQ(profile.readFromFile(file), -1);
    EXPECT_EQ(file.pos(), file.size());
}

TEST(ProfileZ, EveryCutLengthFailsAndRewinds) {
    TempFiles files;
    const QByteArray before = "xyz"; // the record does not begin at 0
    for (int length = 0; length <= kRecord.size(); ++length) {
        SCOPED_TRACE(length);
        QFile file(files.write("cut.bin", before + kRecord.first(length)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        file.seek(before.size());
        KxProfileZ profile = profileAt(9.0f, {{9, 9}});
        const bool isWhole = length == kRecord.size();
        EXPECT_EQ(profile.readFromFile(file), isWhole ? 2 : -1);
        EXPECT_EQ(file.pos(), isWhole ? file.size() : before.size());
        EXPECT_EQ(exact(profile.points), exact(kRecordPoints.first(length < 15 ? 0 : length < 23 ? 1 : 2)));
        EXPECT_EQ(profile.minX, -101.0f);
        // The position is read straight into z: the bytes that are there replace those of NaN from the lowest on.
        const quint32 bits[] = {0x7fc00000, 0x7fc00000, 0x7fc00000, 0x7fc00000, 0x7fc00000, 0x7fc00000, 0x7f200000};
        EXPECT_EQ(std::bit_cast<quint32>(profile.z), length < 7 ? bits[length] : 0xc0200000);
    }
}

TEST(ProfileZ, ARecordWithoutPointsNeedsItsPosition) {
    TempFiles files;
    for (int length = 0; length <= 6; ++length) {
        KxProfileZ profile;
        EXPECT_EQ(profile.readFromFile(files.write("a.bin", kRecord.first(1) + QByteArray(6, '\0').first(length))),
                  length < 6 ? -1 : 0)
            << length;
    }
}

TEST(ProfileZ, AnotherMarkerOrCountIsNoRecord) {
    TempFiles files;
    for (int marker = 0; marker < 256; ++marker) {
        QByteArray bytes = kRecord;
        bytes[0] = static_cast<char>(marker);
        KxProfileZ profile = profileAt(9.0f, {{9, 9}});
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
        EXPECT_EQ(exact(profile.points), exact(kRecordPoints.first(std::min(count, 2)))) << bit;
        EXPECT_EQ(profile.z, -2.5f) << bit;
        EXPECT_LT(profile.points.capacity(), 1000) << bit; // a count is a claim
    }
}

TEST(ProfileZ, KeepsTheCountModulo65536) {
    TempFiles files;
    KxProfileZ profile(1.0f);
    profile.points.resize(65536 + 3, KxPointXY(1.0f, 2.0f));
    ASSERT_TRUE(profile.writeToFile(files.path("a.bin")));
    EXPECT_EQ(files.read("a.bin").size(), 7 + 8 * (65536 + 3));
    KxProfileZ read;
    EXPECT_EQ(read.readFromFile(files.path("a.bin")), 3);
    EXPECT_EQ(read.size(), 3);
}

TEST(ProfileZ, AFullDeviceIsAFailedWrite) {
    KxProfileZ profile = profileAt(1.0f, kRecordPoints);
    EXPECT_FALSE(profile.writeToFile(QStringLiteral("/dev/full")));
    KxProfile csv;
    csv.points = kRecordPoints;
    EXPECT_TRUE(csv.writeToCSVFile(QStringLiteral("/dev/full"))); // the text form does not tell
}
