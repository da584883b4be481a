#include "gridSupport.h"
#include "support/tempFiles.h"

#include <gtest/gtest.h>

#include <QtCore/QtEndian>

using namespace KxMath;
using namespace testing_support;

namespace {

void appendFloat(QByteArray& bytes, float v) {
    char field[4];
    qToLittleEndian(v, field);
    bytes.append(field, 4);
}

void appendPoints(QByteArray& bytes, const QList<KxPointXY>& points) {
    for (const KxPointXY& p : points) {
        appendFloat(bytes, p.x);
        appendFloat(bytes, p.y);
    }
}

QByteArray head(char marker, qsizetype count) {
    return QByteArray(1, marker) + char(count & 255) + char(count >> 8 & 255);
}

QByteArray record(float z, const QList<KxPointXY>& points) {
    QByteArray bytes = head(5, points.size());
    appendFloat(bytes, z);
    appendPoints(bytes, points);
    return bytes;
}

QByteArray section(const QList<KxPointXY>& points) {
    QByteArray bytes = head(2, points.size());
    appendPoints(bytes, points);
    return bytes;
}

QList<KxPointXY> numbered(int count, float first) {
    QList<KxPointXY> points;
    for (int i = 0; i < count; ++i) {
        points.append(KxPointXY(first + static_cast<float>(i), -first));
    }
    return points;
}

/// What the readers take out of bytes: records up to the first incomplete or foreign one, without the empty ones.
struct Plain {
    char marker;
    qsizetype headSize;

    KxProfileZSet read(const QByteArray& bytes, bool isPositioned, float z, float dz) const {
        KxProfileZSet set;
        for (qsizetype at = 0; at + headSize <= bytes.size() && bytes[at] == marker; z += dz) {
            const qsizetype count = qFromLittleEndian<quint16>(bytes.constData() + at + 1);
            at += headSize;
            if (at + 8 * count > bytes.size()) {
                break;
            }
            QList<KxPointXY> points;
            for (qsizetype i = 0; i < count; ++i, at += 8) {
                points.append(KxPointXY(qFromLittleEndian<float>(bytes.constData() + at),
                                        qFromLittleEndian<float>(bytes.constData() + at + 4)));
            }
            if (count > 0) {
                set.profiles.append(profileAt(isPositioned ? z : kNaN, points));
            }
        }
        return set;
    }
};
constexpr Plain kRecords{5, 7};
constexpr Plain kSections{2, 3};

TEST(SetFiles, WritesRecordsWithoutHeader) {
    const TempFiles files;
    KxProfileZSet set;
    EXPECT_TRUE(set.writeToFile(files.path("empty")));
    EXPECT_EQ(files.read("empty"), QByteArray());
    set.profiles.append(profileAt(1.5f, {{1, 2}, {3, 4}}));
    set.profiles.append(profileAt(kNaN, {}));
    set.profiles.append(profileAt(-2, {{5, 6}}));
    const QString name = files.write("set", QByteArray(1000, 'x')); // replaced, not overwritten
    EXPECT_TRUE(set.writeToFile(name));
    EXPECT_EQ(files.read("set"), record(1.5f, {{1, 2}, {3, 4}}) + record(kNaN, {}) + record(-2, {{5, 6}}));
    EXPECT_FALSE(set.writeToFile(files.path("no/such/folder")));
    EXPECT_FALSE(set.writeToFile("/dev/full"));
}

TEST(SetFiles, ReadsUpToTheDamageOfAnyLengthAndByte) {
    const TempFiles files;
    const QByteArray records =
        record(1, numbered(3, 10)) + record(2, {}) + record(3, numbered(2, 20)) + record(4, numbered(1, 30));
    const QByteArray sections = section(numbered(3, 10)) + section({}) + section(numbered(2, 20)) + section({{7, 8}});
    const auto check = [&](const QByteArray& bytes, const Plain& plain, bool isPositioned) {
        KxProfileZSet set;
        set.profiles.append(profileAt(9, {{9, 9}}));
        set.minX = 3;
        const QString name = files.write("file", bytes);
        const int count = isPositioned ? set.readFromFile(name, 0.3f, 0.1f) : set.readFromFile(name);
        const KxProfileZSet expected = plain.read(bytes, isPositioned, 0.3f, 0.1f);
        ASSERT_EQ(count, expected.profiles.size());
        ASSERT_EQ(exact(set), exact(expected));
        ASSERT_EQ(set.minX, 3.0f);
        ASSERT_EQ(exact(set.stepZ), exact(isPositioned ? 0.1f : kNaN));
    };
    for (const bool isPositioned : {false, true}) {
        const QByteArray& bytes = isPositioned ? sections : records;
        const Plain& plain = isPositioned ? kSections : kRecords;
        check(isPositioned ? records : sections, plain, isPositioned);
        for (qsizetype at = 0; at <= bytes.size(); ++at) {
            SCOPED_TRACE(at);
            check(bytes.first(at), plain, isPositioned);
            for (const int flip : {1, 4, 255}) {
                QByteArray flipped = bytes;
                flipped[at % bytes.size()] = static_cast<char>(flipped[at % bytes.size()] ^ flip);
                check(flipped, plain, isPositioned);
            }
        }
        EXPECT_EQ(plain.read(bytes, false, 0, 0).profiles.size(), 3); // the table is not empty
    }
}

TEST(SetFiles, PositionsAreARunningSumThatEmptySectionsAdvance) {
    const TempFiles files;
    QByteArray bytes = section(numbered(5, 0)) + section({}) + section(numbered(7, 0));
    for (int i = 0; i < 100; ++i) {
        bytes += section({{1, 1}});
    }
    KxProfileZSet set;
    EXPECT_EQ(set.readFromFile(files.write("file", bytes), 0.0f, 0.1f), 102);
    EXPECT_EQ(set.profiles[0].z, 0.0f);
    EXPECT_EQ(set.profiles[1].z, 0.1f + 0.1f);
    EXPECT_NE(set.profiles[101].z, 102 * 0.1f);

    EXPECT_EQ(set.readFromFile(files.path("missing"), 1, 0.5f), 0);
    EXPECT_EQ(set.stepZ, 0.5f);
    set.profiles.resize(3);
    EXPECT_EQ(set.readFromFile(files.path("missing")), 0);
    EXPECT_TRUE(set.isEmpty());
}

} // namespace
