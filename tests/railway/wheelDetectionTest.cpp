// Wheels in recordings: what is found, which files hold it, and which settings decide.
#include "railway/workingFolder.h"

#include <KxMath/KxWheelDetection.h>

#include <algorithm>
#include <cmath>

using namespace testing_support;

namespace {

constexpr int kUntouched = -7;

/// Records, one a letter: W wheel, N no wheel, E empty; lower case with z. The first x tells the number of the record.
QByteArray recording(const char* letters) {
    QByteArray bytes;
    for (const char* c = letters; *c != '\0'; ++c) {
        const char kind = static_cast<char>(std::toupper(*c));
        KxProfile p;
        const int first = static_cast<int>(c - letters + 1) * 100;
        p.points = pointsFor(kind == 'E' ? 0 : 10, [=](int i) { return at(first + i, kind == 'W' ? 0 : 9); });
        bytes += record(p, kind != *c);
    }
    return bytes;
}

/// "file=record" for each wheel file of a directory.
QString contents(const QString& directory) {
    QStringList files;
    for (const QString& name : QDir(directory).entryList({QStringLiteral("*.bin")}, QDir::Files, QDir::Name)) {
        KxProfile p;
        p.readFromFile(directory + QLatin1Char('/') + name);
        files += QStringLiteral("%1=%2").arg(name.chopped(4)).arg(p.isEmpty() ? -1.0f : p.points[0].x / 100.0f);
    }
    return files.join(QLatin1Char(' '));
}

/// The contents of the files of wheels with a first record and a number of profiles.
QString contents(const QList<std::pair<int, int>>& wheels) {
    QStringList files;
    for (qsizetype w = 0; w < wheels.size(); ++w) {
        for (int p = 0; p < wheels[w].second; ++p) {
            files += QString::asprintf("%02d_%02d=%d", static_cast<int>(w) + 1, p + 1, wheels[w].first + p);
        }
    }
    return files.join(QLatin1Char(' '));
}

SettingsTable sensor(int number, int serial, int level = 5) {
    const QString group = QStringLiteral("SENSOR%1/").arg(number);
    return {{group + "SN", serial}, {group + "level_k", 0}, {group + "level_b", level}, {group + "minPointsIn", 5}};
}

/// The points of the wheel file that is made of a recording of one profile, none without a wheel.
QList<KxPointXY> detectIn(KxProfile& profile, int mode, const SettingsTable& ofSensor) {
    WorkingFolder folder;
    folder.write("a_1.bin", record(profile, false));
    SettingsTable values{{"SENSOR1/SN", 1}};
    for (const auto& [key, value] : ofSensor) {
        values.append({"SENSOR1/" + key, value});
    }
    int wheels = kUntouched;
    EXPECT_TRUE(METRO_detectWheels("a_1.bin", folder.settings(values).get(), mode, &wheels));
    KxProfile written;
    written.readFromFile("a_1/01_01.bin");
    EXPECT_EQ(wheels, written.isEmpty() ? 0 : 1);
    return written.points;
}

} // namespace

TEST(DetectWheels, FilesCountAndTraceFollowTheRecords) {
    const struct {
        const char* description;
        const char* records;
        QByteArray tail;
        int minProfiles; // below 0: not in the settings
        QList<std::pair<int, int>> wheels; // first record and profiles
        QByteArray trace;
    } kCases[] = {
        {"no record", "", {}, -1, {}, ""},
        {"no wheel", "NnEe", {}, -1, {}, ""},
        {"both kinds of record, mixed", "nNwWwWwNe", {}, -1, {{3, 5}}, "1;3\n"},
        {"a short wheel's number is reused", "WWWWNWWWWWNWWWWWWN", {}, -1, {{6, 5}, {12, 6}}, "1;1\n1;6\n2;12\n"},
        {"a short wheel at the end deliberately stays", "NNwwww", {}, -1, {{3, 4}}, "1;3\n"},
        {"a short wheel, then the end behind a gap", "wwwwN", {}, -1, {}, "1;1\n"},
        {"an empty record ends a wheel", "WWeWW", {}, 2, {{1, 2}, {4, 2}}, "1;1\n2;4\n"},
        {"minimum 0: nothing is discarded", "WNW", {}, 0, {{1, 1}, {3, 1}}, "1;1\n2;3\n"},
        {"damage: a cut cloud", "NWW", recording("W").chopped(3), -1, {{2, 2}}, "1;2\n"},
        {"damage: a cut record with z", "NWW", recording("w").chopped(3), -1, {{2, 2}}, "1;2\n"},
        {"damage: a count without points", "WN", QByteArray("\x02\xff\xff\x00", 4), 1, {{1, 1}}, "1;1\n"},
        {"what follows damage is not read", "W", QByteArray("\x07") + recording("NW"), -1, {{1, 1}}, "1;1\n"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.description);
        WorkingFolder folder;
        folder.write("left_12.bin", recording(c.records) + c.tail);
        SettingsTable values = sensor(1, 12);
        if (c.minProfiles >= 0) {
            values.append({"minProfsInWheel", c.minProfiles});
        }
        const auto settings = folder.settings(values);
        int wheels = kUntouched;
        EXPECT_TRUE(METRO_detectWheels("left_12.bin", settings.get(), 0, &wheels));
        EXPECT_EQ(wheels, c.wheels.size());
        EXPECT_EQ(contents("left_12"), contents(c.wheels));
        EXPECT_FALSE(QFile::exists("test.csv"));

        // The test variant: the same files, and the starts besides.
        QDir("left_12").removeRecursively();
        const auto results = folder.settings({});
        EXPECT_TRUE(METRO_detectWheels_Test("left_12.bin", settings.get(), 0, &wheels, results.get()));
        EXPECT_EQ(wheels, c.wheels.size());
        EXPECT_EQ(contents("left_12"), contents(c.wheels));
        EXPECT_EQ(folder.read("test.csv"), c.trace);
        QMap<QString, QString> starts, found; // of each wheel number the last one stays
        for (const QByteArray& line : c.trace.split('\n').mid(0, c.trace.count('\n'))) {
            starts["Wheel_" + line.split(';')[0] + "/firstProfInWheel"] = line.split(';')[1];
        }
        for (const QString& key : results->allKeys()) {
            found[key] = results->value(key).toString();
        }
        EXPECT_EQ(found, starts);
    }
}

TEST(DetectWheels, WheelFilesHoldTheCleanedProfile) {
    // Windows of 4 in which one jump of more than 2 is allowed: the first has two, one of them to the point behind it;
    // the second has two; the third has one and a jump of exactly 2; the rest is the tail.
    KxProfile p;
    const double ys[] = {0, 2, 4.5, 4, 0, 3, 0, 0, 1, 1, 1, 4, 2};
    p.points = pointsFor(13, [&](int i) { return at(i, ys[i]); });
    const SettingsTable values{{"level_k", 0}, {"level_b", 5}, {"minPointsIn", 3}, {"maxdY", 2}};
    EXPECT_EXACT(detectIn(p, 0, values + SettingsTable{{"wndSize", 4}}), p.points.mid(8, 4));
    EXPECT_EQ(detectIn(p, 0, values + SettingsTable{{"wndSize", 4}, {"higherPoinInWnd", 2}}).size(), 12);
    EXPECT_EQ(detectIn(p, 0, values + SettingsTable{{"wndSize", 13}}).size(), 0);
}

TEST(DetectWheels, DefaultsOfTheSettings) {
    // Below the line y = 187 - 0.4 x, more than 2 points (1.5 rounds up), of what windows of 3 with one jump beyond 1.5
    // leave. The step to x = 100 is one. In mode 3 the low line is y = 0 by default and no parts are removed.
    for (const auto& [below, rise, isWheel] : {std::tuple(2, 1.5f, false), {3, 1.5f, true}, {3, 1.625f, false}}) {
        KxProfile p;
        p.points = pointsFor(7, [](int i) { return i < 3 ? at(0, 187) : at(100, 147.5); }); // on it and above
        for (int i = 0; i < below; ++i) {
            p.points[i].y = i == 1 ? 185.0f + rise : 185.0f;
        }
        for (const int mode : {0, 3}) {
            EXPECT_EQ(!detectIn(p, mode, {}).isEmpty(), isWheel) << below << ' ' << rise << ", mode " << mode;
        }
    }
}

TEST(DetectWheels, ModeThreeRemovesPartsAndUsesTheLowLine) {
    // Three groups of 8 points, 20 apart, heights 0 and 1 by turns: 12 of the first 23 points lie above 0.
    KxProfile p;
    p.points = pointsFor(24, [](int i) {
        const int group = i / 8;
        return at(i + group * 20, 1 - i % 2);
    });
    const SettingsTable all{{"level_k", 0}, {"level_b", 5}, {"wndSize", 1}, {"maxdY", 2}, {"minPointsIn", 3}};
    const std::tuple<const char*, int, int, SettingsTable> kCases[] = {
        {"mode 0 removes nothing", 0, 23, {{"maxCorr", 3}}},
        {"one part: nothing is removed", 3, 23, {{"maxCorr", 1.99}, {"lowlevel_b", -1}}},
        {"0.99 parts are none", 3, 0, {{"maxCorr", 3}, {"parts", 0.99}, {"lowlevel_b", -1}}},
        {"two parts, the third is dropped", 3, 16, {{"maxCorr", 2.99}, {"parts", 1.5}, {"lowlevel_b", -1}}},
        {"three parts, the last point is in none", 3, 22, {{"maxCorr", 3}, {"parts", 1}, {"lowlevel_b", -1}}},
        {"a gap of maxDist does not cut", 3, 22, {{"maxCorr", 2}, {"parts", 1}, {"maxDist", 22}, {"lowlevel_b", -1}}},
        {"11 above the low line are more than 10", 3, 22, {{"maxCorr", 3}, {"parts", 1}, {"minPointsIn", 10}}},
        {"but not more than 11", 3, 0, {{"maxCorr", 3}, {"parts", 1}, {"minPointsIn", 11}}},
        {"a sloped low line", 3, 0, {{"lowlevel_k", 1}, {"minPointsIn", 1}}},
        {"the low line does not count in mode 2", 2, 23, {{"lowlevel_k", 1}}},
        {"parts without bound", 3, 23, {{"maxCorr", 1e30}, {"parts", -1e30}, {"lowlevel_b", -1}}},
    };
    for (const auto& [description, mode, pointsInFile, more] : kCases) {
        EXPECT_EQ(detectIn(p, mode, all + more).size(), pointsInFile) << description;
    }
}

TEST(WheelDetector, CountsThePointsThatTheNoiseFilterLeaves) {
    KxProfile noisy; // a spike, missing points, three groups with heights 0 and 1 by turns
    noisy.points = pointsFor(24, [](int i) {
        const int group = i / 8;
        return at(i + group * 20, i == 5 ? 9 : 1 - i % 2);
    });
    noisy.points[12].y = noisy.points[20].x = NAN;
    KxWheelDetectionSettings settings;
    settings.noiseWindow = 2;
    settings.maxJumps = 0;
    settings.level = settings.low = KxLine(0, 5);
    settings.low.b = -1;
    settings.maxParts = 3;
    settings.maxCorrelation = 1;
    KxProfile withoutNoise = noisy;
    withoutNoise.removeNoise(settings.noiseWindow, settings.maxJumps, settings.maxJump, 0.0f);
    const auto expected = std::count_if(withoutNoise.points.cbegin(), withoutNoise.points.cend(),
                                        [](const KxPointXY& p) { return std::isfinite(p.x) && std::isfinite(p.y); });
    ASSERT_LT(expected, 22);
    for (const int mode : {0, 3}) {
        KxProfile counted = noisy;
        KxProfile plain = noisy;
        int count = kUntouched;
        EXPECT_EQ(KxWheelDetector(settings, mode).add(counted, count), KxWheelDetector(settings, mode).add(plain));
        EXPECT_EXACT(counted.points, plain.points);
        EXPECT_EQ(count, expected) << mode;
    }
}

TEST(DetectWheels, SensorOfTheSerialNumber) {
    const struct {
        const char* name;
        QList<int> serials; // of the sensors from 1 on; 0 ends them
        int sensor; // the one whose settings count, 0: the search fails
        const char* directory;
    } kCases[] = {
        {"pass_12.bin", {11, 12}, 2, "pass_12"},
        {"pass_12.bin", {12, 12}, 1, "pass_12"},
        {"pass_12.bin", {11, 0, 12}, 0, "pass_12"},
        {"pass_12.bin", QList<int>(48, 5) << 12, 49, "pass_12"},
        {"pass_12.bin", QList<int>(49, 5), 50, "pass_12"}, // deliberately, without a match
        {"12", {12}, 1, "12"},
        {"a.bin_1.bin2.bin", {12}, 1, "a_12"},
        {"a_-3.bin", {7, -3}, 2, "a_-3"},
        // Not a number, or too large for one: 0, which is what a sensor without a serial number has.
        {"a_12.BIN", {12}, 2, "a_12.BIN"},
        {"a_0x12.bin", {12, 18, 0}, 3, "a_0x12"},
        {"a_4294967308.bin", {12}, 2, "a_4294967308"},
        {"pass.bin", {}, 1, "pass"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.name << ", " << c.serials.size() << " sensors");
        WorkingFolder folder;
        // A name without ".bin" is that of its own directory, which then cannot be made.
        folder.write(c.name, recording("WN"));
        SettingsTable values{{"minProfsInWheel", 1}};
        for (int n = 1; n <= 50; ++n) {
            values += sensor(n, c.serials.value(n - 1), n == c.sensor ? 5 : -5);
        }
        int wheels = kUntouched;
        EXPECT_EQ(METRO_detectWheels(c.name, folder.settings(values).get(), 0, &wheels), c.sensor != 0);
        EXPECT_EQ(wheels, c.sensor != 0 ? 1 : kUntouched);
        const bool hasDirectory = c.sensor != 0 && QString(c.name) != QLatin1String(c.directory);
        EXPECT_EQ(QDir(c.directory).exists(), hasDirectory);
        EXPECT_EQ(QFile::exists(QString(c.directory) + "/01_01.bin"), hasDirectory);
    }
}

TEST(DetectWheels, OldFilesRemainAndFailuresLeaveNoFiles) {
    WorkingFolder folder;
    const auto settings = folder.settings(sensor(1, 12));
    const auto results = folder.settings({});
    int wheels = kUntouched;
    EXPECT_FALSE(METRO_detectWheels("none_12.bin", settings.get(), 0, &wheels));
    EXPECT_TRUE(QDir("none_12").exists());
    EXPECT_FALSE(METRO_detectWheels_Test("none_13.bin", settings.get(), 0, &wheels, results.get()));
    EXPECT_FALSE(QDir("none_13").exists() || QFile::exists("test.csv"));
    EXPECT_EQ(wheels, kUntouched);

    // A discarded wheel takes away its own files only; a shorter one leaves the rest of the one before.
    QDir().mkdir("a_12");
    for (const char* name : {"a_12/01_02.bin", "a_12/01_04.bin", "a_12/02_01.bin", "a_12/07_01.bin"}) {
        folder.write(name, recording("N"));
    }
    folder.write("a_12.bin", recording("NNWWWNNNNWN"));
    EXPECT_TRUE(METRO_detectWheels("a_12.bin", settings.get(), 0, &wheels));
    EXPECT_EQ(wheels, 0);
    EXPECT_EQ(contents("a_12"), "01_04=1 02_01=1 07_01=1");
}

TEST(IsWheel, CountsStrictlyAndNeedsMore) {
    KxProfile p, none;
    p.points = {{1, 1}, {2, 1.5f}, {3, 0}, {4, 5}, {NAN, 0}, {0, NAN}}; // on the line y = x, below it, above it, NaN
    const KxLine level(1, 0);
    EXPECT_TRUE(METRO_isWheel(p, level, 1));
    EXPECT_FALSE(METRO_isWheel(p, level, 2));
    EXPECT_TRUE(METRO_isWheel(p, level, KxLine(0, -1), 1));
    EXPECT_FALSE(METRO_isWheel(p, level, KxLine(0, 0), 1)); // (3, 0) lies on the low line
    EXPECT_FALSE(METRO_isWheel(p, KxLine(), 0));
    EXPECT_FALSE(METRO_isWheel(none, level, 0));
    EXPECT_TRUE(METRO_isWheel(p, KxLine(), -1) && METRO_isWheel(none, level, KxLine(), -1));
}
