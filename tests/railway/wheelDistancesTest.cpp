#include "railway/workingFolder.h"

using namespace testing_support;

namespace {

/// `n` points on y = b + k x; the second half lies far off.
KxProfile side(int n, int k, int b) {
    KxProfile p;
    p.points = pointsFor(n, [=](int i) { return at(i + 1, i < n / 2 ? k * (i + 1) + b : 1000 * (i + 1)); });
    return p;
}

/// A wheel file of `n` points at height `y` and `above` points at height 500.
void writeProfile(const char* name, int n, int y, int above = 0) {
    KxProfile p;
    p.points = pointsFor(n + above, [=](int i) { return at(i + 1, i < above ? 500 : y); });
    ASSERT_TRUE(p.writeToFile(QString(name)));
}

} // namespace

TEST(WheelsDist, OffsetsOfTheFirstHalvesPerpendicularToTheReferences) {
    const float diagonal = std::sqrt(0.5f);
    struct {
        KxProfile left, right;
        KxLine refLeft, refRight;
        float base, expected;
    } cases[] = {
        {side(10, 2, 3), side(20, -3, 5), {0, 1}, {0, 2}, 100, 105}, // the slopes of the fits do not count
        {side(4, 0, 9), side(4, 0, 6), {1, 1}, {0, 4}, 0, 8 * diagonal + 2}, // each side has its own slope
        {side(4, 0, 9), side(4, 0, 6), {0, 1}, {-1, 4}, 0, 8 + 2 * diagonal},
        {side(5, 0, 3), side(5, 0, 3), {0, 0}, {0, 0}, 0, 6}, // the middle of an odd count is left out
        {side(3, 0, 3), side(10, 0, 3), {0, 0}, {0, 0}, 0, kNaN}, // 1 point of 3 is no line
        {side(10, 0, 3), side(1, 0, 3), {0, 0}, {0, 0}, 0, kNaN},
        {side(0, 0, 3), side(10, 0, 3), {0, 0}, {0, 0}, 0, kNaN},
        {side(4, 0, 3), side(4, 0, 3), {0, 1e8f}, {0, 0}, 1e8f, 3}, // left, base, right: rounded in this order
        {side(4, 0, 3), side(4, 0, 3), {}, {0, 0}, 1, kNaN}, // unknown reference
    };
    for (auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        const ExactList halves = exact(c.left.size() / 2, c.right.size() / 2);
        const float distance = METRO_calcWheelsDist(c.left, c.right, c.refLeft, c.refRight, c.base);
        EXPECT_TRUE(std::isnan(c.expected) ? std::isnan(distance) : std::fabs(distance - c.expected) <= 4e-6f)
            << distance;
        EXPECT_EXACT(exact(c.left.size(), c.right.size()), halves);
    }
}

TEST(WheelsDistInTrain, BestProfilesGroupsAndFailures) {
    const SettingsTable sensors = {
        {"SENSOR1/SN", 11},     {"SENSOR2/SN", 22},       {"calibrLines2", 1000},     {"SENSOR1/b2", 1},
        {"SENSOR1/k2", 0},      {"SENSOR1/level_b", 100}, {"SENSOR2/level_b", 150},   {"SENSOR2/b2", 2},
        {"SENSOR2/level_k", 0}, {"level_b", 100},         {"SENSOR1/lowlevel_b", 90},
    };
    const float kept = -7; // what the array held before
    const struct {
        const char* description;
        const char *first, *second;
        int wheels;
        bool isDone;
        QList<float> distances;
        SettingsTable more;
    } kCases[] = {
        {"the two sensors", "l_11.bin", "r_22.bin", 2, true, {1000 + 19 + 28, 1000 + 39 + 48, kept}, {}},
        {"sides swapped: their settings go along", "r_22.bin", "l_11.bin", 1, true, {1000 + 19 + 28, kept}, {}},
        {"a negative number", "l_11.bin", "r_22.bin", -3, true, {kept}, {}},
        {"no third wheel on the right", "l_11.bin", "r_22.bin", 3, false, {1047, 1087, kept}, {}},
        {"no directory on the left", "x_11.bin", "r_22.bin", 0, false, {kept}, {}},
        {"no directory on the right", "l_11.bin", "x_22.bin", 0, false, {kept}, {}},
        {"a serial of neither", "l_11.bin", "r_22.bin", 1, true, {1000 + 19 + 30}, {{"SENSOR2/SN", 23}}}, // no group
        {"the first of one serial", "l_11.bin", "r_22.bin", 1, true, {1049}, {{"SENSOR1/SN", 22}, {"SENSOR2/SN", 22}}},
        {"nothing below on the left", "l_11.bin", "r_22.bin", 2, false, {kept}, {{"SENSOR1/level_b", 20}}},
        {"nothing below on the right", "l_11.bin", "r_22.bin", 2, false, {1047, kept}, {{"SENSOR2/level_b", 50}}},
        // Below it the profile at 60 keeps 9 points, those at 20 and 70 keep 8 and none.
        {"a slope", "l_11.bin", "r_22.bin", 1, true, {1087}, {{"SENSOR1/level_b", 0}, {"SENSOR1/level_k", 4.5}}},
        {"level 0", "l_11.bin", "r_22.bin", 1, false, {kept}, {{"SENSOR1/level_b", 0}}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.description);
        WorkingFolder folder;
        QDir().mkdir("l_11");
        QDir().mkdir("r_22");
        writeProfile("l_11/01_01.bin", 9, 60, 50);
        writeProfile("l_11/01_02.bin", 10, 20, 2); // most points below, the first of two
        writeProfile("l_11/01_03.bin", 10, 70);
        writeProfile("l_11/01_05.bin", 90, 80); // behind a gap in the numbers
        writeProfile("l_11/02_01.bin", 8, 40);
        folder.write("l_11/02_02.bin", "\x02\xff\xff"); // no profile, no points
        writeProfile("l_11/02_03.bin", 7, 41);
        writeProfile("l_11/03_01.bin", 7, 41);
        writeProfile("r_22/00_01.bin", 70, 3);
        writeProfile("r_22/01_01.bin", 6, 30);
        writeProfile("r_22/02_01.bin", 6, 50);
        writeProfile("r_22/03_02.bin", 6, 50);
        QList<float> distances(4, kept);
        const auto settings = folder.settings(sensors + c.more);
        EXPECT_EQ(METRO_calcWheelsDistInTrain(c.first, c.second, c.wheels, &*settings, distances.data()), c.isDone);
        for (int i = 0; i < c.distances.size(); ++i) {
            EXPECT_NEAR(distances[i], c.distances[i], 0.02f) << "wheel " << i + 1;
        }
    }
}
