// Defects: one profile, and the wheel files of a train.
#include "railway/workingFolder.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <thread>

using namespace testing_support;

namespace {

constexpr unsigned char kUnmarked = 0xAA;

/// A straight profile about x = 0 and `spikes` points of it `height` off.
KxProfile tread(int spikes, float height) {
    KxProfile p;
    p.points = pointsFor(1001, [](int i) { return at((i - 500) * 0.002, 100); });
    for (int i = 1; i <= spikes; ++i) {
        p.points[qsizetype{i} * 80].y += height;
    }
    return p;
}

/// Waits until a file has been closed by a reader `count` times.
bool waitForReadings(const QString& name, int count, const std::function<void()>& start) {
    const int events = inotify_init1(IN_NONBLOCK);
    inotify_add_watch(events, name.toUtf8().constData(), IN_CLOSE_NOWRITE);
    start();
    pollfd descriptor{events, POLLIN, 0};
    bool isDone = true;
    for (int i = 0; i < count && isDone; ++i) { // each round sees one event at least
        isDone = poll(&descriptor, 1, 10000) == 1;
        char buffer[4096];
        while (read(events, buffer, sizeof buffer) > 0) {
        }
    }
    close(events);
    return isDone;
}

} // namespace

TEST(WheelDefect, CountsPointsOffTheFit) {
    struct {
        KxProfile profile;
        float maxDeviation;
        int pointsHigher;
        bool isSound;
    } cases[] = {
        {tread(5, 1), 0.3f, 5, true}, // 5 points off are not more than 5
        {tread(6, 1), 0.3f, 5, false}, // 6 are
        {tread(6, -1), 0.3f, 5, false}, // below the curve as well
        {tread(6, 0.25f), 0.3f, 0, true}, // off by less
        {tread(0, 0), 0.3f, -1, false}, // none is more than -1
        {tread(6, 1), NAN, 0, true},
        {tread(6, NAN), 0.3f, 0, true}, // heights of NaN count none
        {{}, 0.3f, 0, true}, // too few points for a fit
    };
    for (auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        const QList<KxPointXY> before = c.profile.points;
        for (const int degree : {20, 0, -1, 1000000}) { // deliberately without a say
            EXPECT_EQ(METRO_detectWheelDefect(c.profile, degree, c.maxDeviation, c.pointsHigher), c.isSound);
        }
        EXPECT_EXACT(before, c.profile.points);
    }
}

TEST(WheelDefect, ADeviationThatEqualsTheLimitDoesNotCount) {
    KxProfile p;
    p.points = pointsFor(200, [](int i) { return at(i * 0.01 - 1, std::sin(i * i)); });
    KxProfile fitted = p;
    ASSERT_TRUE(fitted.polynomFit(20));
    QList<float> deviations;
    for (int i = 0; i < p.size(); ++i) {
        deviations.append(std::fabs(p.points[i].y - fitted.points[i].y));
    }
    std::sort(deviations.begin(), deviations.end());
    const float limit = deviations[120];
    const auto beyond = deviations.cend() - std::upper_bound(deviations.cbegin(), deviations.cend(), limit);
    EXPECT_TRUE(METRO_detectWheelDefect(p, 20, limit, static_cast<int>(beyond)));
    EXPECT_FALSE(METRO_detectWheelDefect(p, 20, std::nextafter(limit, 0.0f), static_cast<int>(beyond)));
}

TEST(DefectsInTrain, MarksOfTheSensorAndFailures) {
    // Without profiles of number 0 each wheel has 0 sound readings, which is more than -1.
    const SettingsTable marking = {{"use", 1}, {"minimalDefectsProf", -1}};
    const struct {
        const char* recording;
        int sensor; // the one that made it
        SettingsTable more;
        int wheels;
        bool isDone;
        int low, high; // number of marks that become 0
    } kCases[] = {
        {"a_7.bin", 1, {{"use", 1}}, 3, true, 0, 0}, // as detection leaves it: 0 readings are not more than 1
        {"a_7.bin", 1, {{"use", 2}, {"minimalDefectsProf", 0}}, 3, true, 0, 0},
        {"a_7.bin", 1, marking, 3, true, 3, 0},
        {"a_7.bin", 10, marking, 2, true, 2, 0},
        {"a_7.bin", 11, marking, 2, true, 0, 2},
        {"a_7.bin", 50, marking, 2, true, 0, 2}, // no sensor of 49
        {"a_7.bin", 1, marking, -5, true, 0, 0},
        {"a_7.bin", 1, {{"minimalDefectsProf", -1}}, 3, false, 0, 0}, // not in use
        {"a_8.bin", 3, marking, 3, false, 0, 0}, // serial number not found
        {"b_7.bin", 1, marking, 3, false, 0, 0}, // no directory
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(&c - kCases);
        WorkingFolder folder;
        EXPECT_TRUE(QDir().mkdir("a_7") && QDir().mkdir("a_8"));
        KxProfile p = tread(0, 0);
        p.writeToFile(QStringLiteral("a_7/01_01.bin"));
        SettingsTable values = c.more;
        for (int n = 1; n <= c.sensor; ++n) {
            values.append({QStringLiteral("SENSOR%1/SN").arg(n), n < c.sensor ? 99 : 7});
        }
        const auto marksOf = [](int zeros) {
            return QByteArray(zeros, '\0') + QByteArray(4 - zeros, static_cast<char>(kUnmarked));
        };
        QByteArray low = marksOf(0), high = low;
        const auto marks = [](QByteArray& bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); };
        const auto settings = folder.settings(values);
        EXPECT_EQ(METRO_detectDefectsInTrain(c.recording, &*settings, marks(low), marks(high), c.wheels), c.isDone);
        EXPECT_EQ(low + high, marksOf(c.low) + marksOf(c.high));
    }
}

TEST(DefectsInTrain, ReadsProfileZeroAgainUntilItIsGone) {
    const std::tuple<int, float, SettingsTable, bool> kCases[] = {
        {5, 1, {}, true},
        {6, 1, {}, false},
        {6, 0.28f, {}, true},
        {6, 0.28f, {{"maxDeviation", 0.2}}, false},
        {6, 1, {{"pointsHigher", 6}}, true},
        {12, 88, {}, true}, // above the line at 187
        {12, 88, {{"SENSOR1/level_b", 200}}, false},
        {12, -34, {}, true}, // below the line at 67
        {12, -20, {}, false}, // above it
        {12, -34, {{"SENSOR1/lowLevel_b", 50}}, false},
        {12, -34, {{"SENSOR1/lowlevel_b", 50}}, true}, // the low line of the detection is another
    };
    for (const auto& [spikes, height, more, isSound] : kCases) {
        SCOPED_TRACE(testing::Message() << spikes << " spikes of " << height);
        WorkingFolder folder;
        QDir().mkdir("a_7");
        const QString file = QStringLiteral("a_7/01_00.bin");
        KxProfile p = tread(spikes, height);
        p.writeToFile(file);
        const auto settings = folder.settings(SettingsTable{{"SENSOR1/SN", 7}, {"use", 1}} + more);
        unsigned char marks[3] = {kUnmarked, kUnmarked, kUnmarked};
        std::thread judge;
        bool isDone = false;
        EXPECT_TRUE(waitForReadings(file, 3, [&] {
            judge = std::thread([&] { isDone = METRO_detectDefectsInTrain("a_7.bin", &*settings, marks, marks, 3); });
        }));
        QFile::remove(file);
        judge.join();
        EXPECT_TRUE(isDone);
        // Wheels deliberately count from 0.
        EXPECT_EXACT(exact(marks[0], marks[1], marks[2]), exact(kUnmarked, isSound ? 0 : kUnmarked, kUnmarked));
    }
}
