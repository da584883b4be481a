#include "gridSupport.h"
#include "support/tempFiles.h"

#include <gtest/gtest.h>

#include <QtCore/QtEndian>

using namespace KxMath;
using namespace testing_support;

namespace {

/// The bytes of records, or of cloud sections, with as many points as told, one after the other.
QByteArray bytesOf(bool isPositioned, const QList<int>& counts) {
    const TempFiles files;
    QByteArray bytes;
    for (const int count : counts) {
        KxProfileZ profile(static_cast<float>(bytes.size()));
        for (int i = 0; i < count; ++i) {
            profile.points.append(KxPointXY(profile.z + static_cast<float>(i), -profile.z));
        }
        KxProfile& section = profile;
        bytes += isPositioned ? files.bytesOf(section) : files.bytesOf(profile);
    }
    return bytes;
}

/// What the readers take out of bytes: records (or sections, which get positions) up to the first incomplete or foreign
/// one, without the empty ones. Positions in the file deliberately do not count.
KxProfileZSet readPlainly(const QByteArray& bytes, bool isPositioned, float z, float dz) {
    const auto number = [&](qsizetype at) { return qFromLittleEndian<float>(bytes.constData() + at); };
    const qsizetype headSize = isPositioned ? 3 : 7;
    KxProfileZSet set;
    for (qsizetype at = 0; at + headSize <= bytes.size() && bytes[at] == (isPositioned ? 2 : 5); z += dz) {
        const qsizetype count = qFromLittleEndian<quint16>(bytes.constData() + at + 1);
        at += headSize;
        if (at + 8 * count > bytes.size()) {
            break;
        }
        QList<KxPointXY> points;
        for (; points.size() < count; at += 8) {
            points.append(KxPointXY(number(at), number(at + 4)));
        }
        if (count > 0) {
            set.profiles.append(profileAt(isPositioned ? z : kNaN, points));
        }
    }
    return set;
}

TEST(SetFiles, WritesRecordsWithoutHeader) {
    const TempFiles files;
    KxProfileZSet set;
    const QString name = files.write("set", QByteArray(1000, 'x')); // replaced, not overwritten
    EXPECT_TRUE(set.writeToFile(name));
    EXPECT_EQ(files.read("set"), QByteArray());
    set.profiles = {profileAt(1.5f, {{1, 2}, {3, 4}}), profileAt(kNaN, {}), profileAt(-2, {{5, 6}})};
    EXPECT_TRUE(set.writeToFile(name));
    QByteArray records;
    for (KxProfileZ& profile : set.profiles) {
        records += files.bytesOf(profile);
    }
    EXPECT_EQ(files.read("set"), records);
    EXPECT_FALSE(set.writeToFile(files.path("no/such/folder")));
    EXPECT_FALSE(set.writeToFile("/dev/full"));
}

TEST(SetFiles, ReadsUpToTheDamageOfAnyLengthAndByte) {
    const TempFiles files;
    for (const bool isPositioned : {false, true}) {
        const auto check = [&](const QByteArray& bytes) {
            KxProfileZSet set;
            set.profiles.append(profileAt(9, {{9, 9}}));
            set.minX = 3;
            const QString name = files.write("file", bytes);
            const int count = isPositioned ? set.readFromFile(name, 0.3f, 0.1f) : set.readFromFile(name);
            const KxProfileZSet expected = readPlainly(bytes, isPositioned, 0.3f, 0.1f);
            ASSERT_EQ(count, expected.profiles.size());
            ASSERT_EQ(exact(set), exact(expected));
            ASSERT_EQ(exact(set.minX, set.stepZ), exact(3, isPositioned ? 0.1f : kNaN));
        };
        check(bytesOf(!isPositioned, {3}));
        const QByteArray bytes = bytesOf(isPositioned, {3, 0, 2, 1});
        EXPECT_EQ(readPlainly(bytes, isPositioned, 0, 0).profiles.size(), 3); // not nothing
        for (qsizetype at = 0; at <= bytes.size(); ++at) {
            SCOPED_TRACE(at);
            check(bytes.first(at));
            for (const int flip : {1, 4, 255}) {
                QByteArray flipped = bytes;
                flipped[at % bytes.size()] = static_cast<char>(flipped[at % bytes.size()] ^ flip);
                check(flipped);
            }
        }
    }
}

TEST(SetFiles, PositionsAreARunningSumThatEmptySectionsAdvance) {
    const TempFiles files;
    KxProfileZSet set;
    const QByteArray bytes = bytesOf(true, QList<int>{5, 0, 7} + QList<int>(100, 1));
    EXPECT_EQ(set.readFromFile(files.write("file", bytes), 0.0f, 0.1f), 102);
    EXPECT_EQ(exact(set), exact(readPlainly(bytes, true, 0.0f, 0.1f)));
    EXPECT_NE(set.profiles[101].z, 102 * 0.1f);
    EXPECT_EQ(set.readFromFile(files.path("missing"), 1, 0.5f), 0);
    EXPECT_EQ(set.stepZ, 0.5f);
    set.profiles.resize(3);
    EXPECT_EQ(set.readFromFile(files.path("missing")), 0);
    EXPECT_TRUE(set.isEmpty());
}

} // namespace
