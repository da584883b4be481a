// Files of each format with flipped bits, and cut at every length, against readers that take them apart by definition.
#include "railway/workingFolder.h"

#include <QtCore/QtEndian>

using namespace testing_support;

namespace {

template <typename Number>
Number numberAt(const QByteArray& bytes, qsizetype at) {
    return qFromLittleEndian<Number>(bytes.constData() + at);
}

/// The layout of one kind of record: marker, count, for some a position, points of 32-bit fields.
struct Format {
    char marker;
    int countSize, positionSize, pointSize;

    int headSize() const { return 1 + countSize + positionSize; }
};

constexpr Format kFlat{2, 2, 0, 8}, kSpace{3, 4, 0, 12}, kColour{4, 4, 0, 16}, kPositioned{5, 2, 4, 8};

/// The result of a reader for the bytes from `at` on.
struct Outcome {
    int value = -1;
    qsizetype position = 0;
    QByteArray points; ///< the bytes of the points that were read
    QByteArray z = QByteArray::fromHex("0000c07f"); ///< the bytes of the position, at first those of NaN
};

Outcome readByDefinition(const Format& format, const QByteArray& bytes, qsizetype at) {
    Outcome outcome;
    outcome.position = at;
    if (bytes.size() < at + 1 + format.countSize || bytes[at] != format.marker) {
        return outcome;
    }
    const quint32 count = format.countSize == 2 ? numberAt<quint16>(bytes, at + 1) : numberAt<quint32>(bytes, at + 1);
    const QByteArray z = bytes.mid(at + 1 + format.countSize, format.positionSize);
    outcome.z.replace(0, z.size(), z);
    const qsizetype there = std::max<qsizetype>(0, (bytes.size() - at - format.headSize()) / format.pointSize);
    const qsizetype kept = std::min<qsizetype>(count, there);
    outcome.points = bytes.mid(at + format.headSize(), kept * format.pointSize);
    if (bytes.size() >= at + format.headSize() && there >= static_cast<qsizetype>(count)) {
        outcome.value = static_cast<int>(count);
        outcome.position = at + format.headSize() + kept * format.pointSize;
    }
    return outcome;
}

template <typename Point>
QByteArray bytesOf(const QList<Point>& points) {
    return QByteArray(reinterpret_cast<const char*>(points.constData()), points.size() * qsizetype{sizeof(Point)});
}

template <typename Reader>
Outcome readWith(const QString& name, qsizetype at) {
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly) && file.seek(at));
    Reader reader;
    reader.points.resize(3);
    Outcome outcome;
    outcome.value = reader.readFromFile(file);
    outcome.position = file.pos();
    outcome.points = bytesOf(reader.points);
    EXPECT_LT(reader.points.capacity(), 1000) << "a count is a claim";
    if constexpr (requires { reader.z; }) {
        outcome.z = QByteArray(reinterpret_cast<const char*>(&reader.z), sizeof(reader.z));
    }
    return outcome;
}

/// A record of `count` points whose bytes count up, so that no two fields look alike.
QByteArray record(const Format& format, int count) {
    QByteArray bytes(1, format.marker);
    bytes += static_cast<char>(count) + QByteArray(format.countSize - 1, '\0');
    while (bytes.size() < format.headSize() + count * format.pointSize) {
        bytes += static_cast<char>(0x11 + 3 * bytes.size());
    }
    return bytes;
}

template <typename Reader>
void expectDefinition(const TempFiles& files, const Format& format, const QByteArray& bytes, qsizetype at) {
    const Outcome expected = readByDefinition(format, bytes, at);
    const Outcome found = readWith<Reader>(files.write("file", bytes), at);
    ASSERT_EQ(found.value, expected.value) << bytes.toHex().constData();
    ASSERT_EQ(found.position, expected.position) << bytes.toHex().constData();
    ASSERT_EQ(found.points, expected.points) << bytes.toHex().constData();
    ASSERT_EQ(found.z, expected.z) << bytes.toHex().constData();
}

/// Sets end at the first damaged section or record and omit empty ones. Sections get positions by a
/// running sum that empty ones advance; those of records deliberately do not count.
void expectSet(const TempFiles& files, const Format& format, const QByteArray& bytes) {
    SCOPED_TRACE(bytes.toHex().constData());
    const bool isRecord = format.positionSize > 0;
    const QString name = files.write("set", bytes);
    KxProfileZSet set;
    set.profiles.resize(2);
    set.minX = 3;
    const int count = isRecord ? set.readFromFile(name) : set.readFromFile(name, 0.3f, 0.1f);
    ASSERT_EXACT(exact(set.minX, set.stepZ, set.size()), exact(3, isRecord ? NAN : 0.1f, count));
    int found = 0;
    float z = 0.3f;
    for (Outcome outcome; (outcome = readByDefinition(format, bytes, outcome.position)).value >= 0; z += 0.1f) {
        if (outcome.value > 0) {
            ASSERT_LT(found, count);
            const KxProfileZ& profile = set.profiles[found++];
            ASSERT_EQ(bytesOf(profile.points), outcome.points);
            ASSERT_EXACT(profile.z, isRecord ? NAN : z);
        }
    }
    ASSERT_EQ(found, count);
}

template <typename Reader>
void expectDefinitionOfDamage(const Format& format) {
    const TempFiles files;
    const QByteArray before = "ab";
    const QByteArray whole = before + record(format, 3) + record(format, 0) + record(format, 1);
    const int fragile = 8 * (format.headSize() + format.pointSize);
    for (int bit = -1; bit < fragile; ++bit) {
        QByteArray damaged = whole;
        if (bit >= 0) {
            damaged[before.size() + bit / 8] = static_cast<char>(damaged[before.size() + bit / 8] ^ (1 << bit % 8));
        }
        // A flip in the head at every length, one in a point in the whole file.
        const bool isHead = bit < 8 * format.headSize();
        for (qsizetype length = isHead ? before.size() : whole.size(); length <= whole.size(); ++length) {
            expectDefinition<Reader>(files, format, damaged.first(length), before.size());
            if constexpr (std::is_base_of_v<KxPointCloud<KxPointXY>, Reader>) {
                expectSet(files, format, damaged.first(length).mid(before.size()));
            }
            ASSERT_FALSE(testing::Test::HasFatalFailure()) << "bit " << bit << " length " << length;
        }
    }
}

TEST(DamagedFiles, SectionsAndRecordsAtEveryBitAndLength) {
    expectDefinitionOfDamage<KxPointCloud<KxPointXY>>(kFlat);
    expectDefinitionOfDamage<KxPointCloud<KxPointXYZ>>(kSpace);
    expectDefinitionOfDamage<KxPointCloud<KxPointXYZRGB>>(kColour);
    expectDefinitionOfDamage<KxProfileZ>(kPositioned);
    const TempFiles files;
    QByteArray sections;
    for (int i = 0; i < 100; ++i) {
        sections += record(kFlat, i % 3);
    }
    expectSet(files, kFlat, sections);
    for (char marker = 0; marker < 8; ++marker) { // of the other formats too
        expectDefinition<KxProfileZ>(files, kPositioned, marker + record(kPositioned, 2).mid(1), 0);
        expectDefinition<KxPointCloud<KxPointXY>>(files, kFlat, marker + record(kFlat, 2).mid(1), 0);
        expectSet(files, kFlat, marker + record(kFlat, 2).mid(1));
        expectSet(files, kPositioned, marker + record(kPositioned, 2).mid(1));
    }
}

/// How many bytes of a recording are whole records: sections and records mixed.
qsizetype wholeRecords(const QByteArray& bytes) {
    for (qsizetype at = 0;;) {
        const Outcome outcome = readByDefinition(at < bytes.size() && bytes[at] == 5 ? kPositioned : kFlat, bytes, at);
        if (outcome.value < 0) {
            return at;
        }
        at = outcome.position;
    }
}

/// Number of wheels and all files that detection makes of a recording.
QByteArray detected(const WorkingFolder& folder, QSettings& settings, const QByteArray& recording) {
    QDir directory("left_12");
    directory.removeRecursively();
    folder.write("left_12.bin", recording);
    int wheels = -7;
    QByteArray all = METRO_detectWheels("left_12.bin", &settings, 0, &wheels) ? "found " : "failed ";
    all += QByteArray::number(wheels);
    for (const QString& name : directory.entryList(QDir::Files, QDir::Name)) {
        all += name.toLatin1() + folder.read(directory.filePath(name));
    }
    return all;
}

TEST(DamagedFiles, RecordingsAtEveryLengthAndBitOfTheirFirstRecord) {
    WorkingFolder folder;
    const auto settings =
        folder.settings(SettingsTable{{"minProfsInWheel", 1}, {"SENSOR1/SN", 12}} +
                        SettingsTable{{"SENSOR1/level_k", 0}, {"SENSOR1/level_b", 5}, {"SENSOR1/minPointsIn", 2}});
    QByteArray whole;
    for (const bool withZ : {false, true, true, false, true}) {
        KxProfile profile;
        const int size = static_cast<int>(whole.size());
        profile.points = pointsFor(7, [&](int i) { return at(size + i, size > 150 ? 9 : 1); });
        whole += testing_support::record(profile, withZ);
    }
    const auto check = [&](const QByteArray& bytes) {
        ASSERT_EQ(detected(folder, *settings, bytes), detected(folder, *settings, bytes.first(wholeRecords(bytes))));
    };
    ASSERT_EQ(wholeRecords(whole), whole.size());
    ASSERT_TRUE(detected(folder, *settings, whole).startsWith("found 1"));
    for (qsizetype length = 0; length < whole.size(); ++length) {
        check(whole.first(length));
    }
    for (int bit = 0; bit < 8 * 11; ++bit) { // the head and the first point
        QByteArray damaged = whole;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
        check(damaged);
    }
}

} // namespace
