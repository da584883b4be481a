#include "gridSupport.h"

using namespace testing_support;

namespace {

float positionAt(int index, float pitch, float origin) {
    return static_cast<float>(index * static_cast<double>(pitch) + static_cast<double>(origin));
}

/// Every pair of neighbours is tried for every point.
KxProfileZSet slicePlainly(const SpaceCloud& cloud, float minZ, int count, float step) {
    KxProfileZSet set;
    for (int k = 0; k < count; ++k) {
        set.profiles.append(KxProfileZ(positionAt(k, step, minZ)));
    }
    for (const KxPointXYZ& p : cloud.points) {
        for (int k = 0; k <= count - 2; ++k) {
            if (set.profiles[k].z <= p.z && set.profiles[k + 1].z >= p.z) {
                const float t = (p.z - set.profiles[k].z) / step;
                set.profiles[t < 0.5f ? k : k + 1].points.append(KxPointXY(p.x, p.y));
                break;
            }
        }
    }
    return set;
}

TEST(SetFromCloud, EqualsThePlainDefinition) {
    int sliced = 0;
    forNasty(42, 4000, [&](Nasty& nasty) {
        SpaceCloud cloud;
        cloud.points = nasty.points<KxPointXYZ>(nasty.size(60));
        if (nasty.chance(20)) { // a range that is known is trusted
            cloud.minZ = nasty.value();
            cloud.maxZ = nasty.value();
        }
        if (nasty.chance(10)) { // positions so large that slices coincide
            cloud.shift(0, 0, 1e7f);
        }
        const float step = nasty.pick(std::array{0.1f, 0.25f, 1.0f, 3.3f, 1e-3f, 1e9f, kInf});
        SpaceCloud ranged(cloud);
        if (std::isnan(ranged.minZ)) {
            ranged.calcRange();
        }
        const float count = std::ceil((ranged.maxZ - ranged.minZ) / step) + 1;
        if (count > 3000 && count <= 16777216) {
            return;
        }
        const bool isCounted = count >= 1 && count <= 3000;
        const KxProfileZSet expected = slicePlainly(cloud, ranged.minZ, isCounted ? static_cast<int>(count) : 0, step);
        KxProfileZSet set;
        set.profiles.append(profileAt(1, {{1, 1}}));
        ASSERT_EQ(set.calcFromPointCloud(cloud, step), expected.profiles.size());
        ASSERT_EXACT(set, expected);
        ASSERT_EQ(set.stepZ, step);
        ASSERT_TRUE(std::isnan(set.minX));
        sliced += expected.profiles.size() > 1 ? 1 : 0;
    });
    EXPECT_GT(sliced, 1000);
}

TEST(SetFromCloud, StepsWithoutSlicesGiveAnEmptySet) {
    SpaceCloud cloud, empty, flat;
    cloud.points = {{0, 1, 0}, {0, 2, 1000}};
    flat.points = {{0, 1, 7}, {1, 2, 7}};
    KxProfileZSet set;
    for (const float step : {0.0f, -0.0f, -1.0f, kNaN, -kInf, 1e-30f, 5e-5f}) {
        set.profiles.append(profileAt(1, {{1, 1}}));
        EXPECT_EQ(set.calcFromPointCloud(cloud, step), 0) << step;
        EXPECT_EXACT(exact(set.size(), set.stepZ), exact(0, step));
    }
    EXPECT_TRUE(set.calcFromPointCloud(empty, 1) == 0 && set.calcFromPointCloud(flat, 1) == 1);
    EXPECT_EXACT(set, exact(0, 7)); // one slice without points
}

TEST(SetToCloud, ExtractsRangesOfProfiles) {
    KxProfileZSet set;
    set.profiles = {profileAt(1, {{1, 2}, {3, 4}}), profileAt(kNaN, {}), profileAt(5, {{6, 7}})};
    SpaceCloud cloud;
    cloud.minX = 3;
    EXPECT_EQ(set.toPointCloud(cloud), 3);
    EXPECT_EXACT(cloud.points, exact(1, 2, 1, 3, 4, 1, 6, 7, 5));
    EXPECT_TRUE(std::isnan(cloud.minX));
    EXPECT_TRUE(set.toPointCloud(cloud, 1, 2) == 1 && set.toPointCloud(cloud, 2, 1) == 0);
}

TEST(SetToMatrix, EqualsTheHeightsOfTheSortedProfiles) {
    int filled = 0;
    forNasty(43, 3000, [&](Nasty& nasty) {
        KxProfileZSet set = nastySet(nasty, 5);
        set.stepZ = nasty.pick(std::array{0.1f, 1.0f, 2.5f, 37.7f, kInf, 0.0f, -1.0f});
        if (nasty.chance(20)) { // also ranges that rise or fall against the step
            set.minX = nasty.plain();
            set.maxX = nasty.chance(80) ? nasty.plain() : kNaN;
        }
        KxProfileZSet expected = set;
        if (std::isnan(set.minX) || std::isnan(set.maxX)) {
            expected.calcRange();
        }
        const float columns = std::ceil((expected.maxX - expected.minX) / set.stepZ);
        if (columns > 2000) {
            return;
        }
        const float limit = nasty.pick(std::array{kNaN, 0.5f, 40.0f});
        KxMatrixCloud matrix;
        fill(matrix, {{7}});
        const int count = set.toMatrixCloud(matrix, limit, nasty.chance(50) ? kNaN : set.stepZ);
        if (set.isEmpty() || !(columns >= 0)) {
            ASSERT_EQ(count, 0);
            const bool isUntouched = set.isEmpty() || std::isnan(expected.maxX - expected.minX);
            ASSERT_EQ(matrix.rows, isUntouched ? 1 : -1);
            return;
        }
        Heights heights;
        for (KxProfileZ& profile : expected.profiles) {
            profile.sort(KxSortAscending, KxSortAscending);
            QList<float>& row = heights.emplaceBack();
            for (int j = 0; j < static_cast<int>(columns); ++j) {
                row.append(profile.calcY(positionAt(j, set.stepZ, expected.minX), limit, nullptr));
            }
        }
        ASSERT_EXACT(heightsOf(matrix), heights);
        ASSERT_EXACT(set, expected); // sorted
        ASSERT_EQ(count, matrix.size());
        filled += count > 0 ? 1 : 0;
    });
    EXPECT_GT(filled, 500);
}

TEST(SetToMatrix, OnePitchAndTheRangesOfTheSet) {
    KxProfileZSet set;
    KxMatrixCloud matrix;
    set.profiles = {profileAt(4, {{3, 6}, {0, 0}}), profileAt(6, {{0, 1}, {1, 1}})};
    set.stepZ = 2;
    fill(matrix, {{7}});
    EXPECT_EQ(set.toMatrixCloud(matrix, kNaN, 1), 0);
    EXPECT_EQ(matrix.cells[0][0], 7.0f); // another step: untouched
    EXPECT_EQ(set.toMatrixCloud(matrix, kNaN, 2), 4);
    EXPECT_EXACT(heightsOf(matrix), exact(0, 4, 1, 1));
    EXPECT_EXACT(exactRange(matrix), exact(0, 3, 0, 6, 4, 6));
    for (const float step : {0.0f, -2.0f, kNaN, 1e-30f, 1e-9f}) {
        set.stepZ = step;
        EXPECT_EQ(set.toMatrixCloud(matrix, kNaN, kNaN), 0) << step;
        EXPECT_EQ(matrix.rows, -1);
    }
}

} // namespace
