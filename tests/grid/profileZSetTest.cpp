#include "gridSupport.h"

#include <gtest/gtest.h>

using namespace KxMath;
using namespace testing_support;

namespace {

ExactList exactSetRange(const KxProfileZSet& set) {
    return {exact(set.minX), exact(set.maxX), exact(set.minY), exact(set.maxY),
            exact(set.minZ), exact(set.maxZ), exact(set.stepZ)};
}

/// Step by step, with a removal for each point that goes.
void clearEdgesPlainly(QList<KxProfileZ>& profiles) {
    float highY = profiles[0].points[0].y;
    int highIndex = 0;
    float lowY = 0.0f;
    int lowIndex = 0;
    for (KxProfileZ& profile : profiles) {
        KxProfileZ work;
        for (int j = 0; j < profile.size(); ++j) {
            work.points.append(profile.points[j]);
            if (highY <= profile.points[j].y) {
                highIndex = j;
                highY = profile.points[j].y;
            }
        }
        for (int j = 0; j < highIndex && j < profile.size(); ++j) {
            if (lowY >= profile.points[j].y) {
                lowY = profile.points[j].y;
                lowIndex = j;
            }
        }
        for (int i = 0; i < lowIndex; ++i) {
            if (i < work.size()) {
                work.points.removeAt(i);
            }
        }
        for (int i = work.size() - 1; i > highIndex; --i) {
            work.points.removeAt(i);
        }
        profile = work;
    }
}

TEST(ProfileZSet, CopiesShareUntilOneOfThemWrites) {
    KxProfileZSet original;
    original.profiles.append(profileAt(1, {{3, 4}, {1, 2}}));
    original.profiles.append(profileAt(2, {{5, 6}}));
    original.stepZ = 1;
    const ExactList before = exact(original);
    KxPointCloud<KxPointXYZ> cloud;
    cloud.points = {{0, 0, 0}, {0, 0, 4}};
    KxMatrixCloud matrix;

    const std::vector<std::pair<const char*, std::function<void(KxProfileZSet&)>>> writes = {
        {"setZ", [](KxProfileZSet& set) { set.setZ(7, 3); }},
        {"clearEdgeEffect", [](KxProfileZSet& set) { set.clearEdgeEffect(); }},
        {"sorting by toMatrixCloud", [&](KxProfileZSet& set) { set.toMatrixCloud(matrix, kNaN, kNaN); }},
        {"calcFromPointCloud", [&](KxProfileZSet& set) { set.calcFromPointCloud(cloud, 2); }},
        {"clear", [](KxProfileZSet& set) { set.clear(); }},
        {"a point", [](KxProfileZSet& set) { set.profiles[0].points[0].y = 9; }},
        {"append", [](KxProfileZSet& set) { set.profiles.append(KxProfileZ(5)); }},
    };
    for (const auto& [desc, write] : writes) {
        SCOPED_TRACE(desc);
        KxProfileZSet copy(original);
        EXPECT_EQ(copy.profiles.constData(), original.profiles.constData());
        copy.calcRange(); // reading does not separate them
        copy.calcAverageY();
        EXPECT_EQ(copy.profiles.constData(), original.profiles.constData());
        write(copy);
        EXPECT_EQ(exact(original), before);
        EXPECT_NE(exact(copy), before);

        KxProfileZSet assigned;
        assigned.profiles.append(KxProfileZ(3));
        assigned = original;
        assigned = *&assigned;
        write(original);
        EXPECT_EQ(exact(assigned), before);
        EXPECT_EQ(assigned.stepZ, 1.0f);
        original = assigned;
    }
}

TEST(ProfileZSet, RangeOfSets) {
    KxProfileZSet set;
    EXPECT_TRUE(set.isEmpty());
    EXPECT_EQ(exactSetRange(set), ExactList(7, exact(kNaN)));
    set.minX = 5;
    set.maxZ = 8;
    set.calcRange(); // an empty set is left as it is
    EXPECT_EQ(set.minX, 5.0f);

    set.profiles.append(profileAt(kNaN, {{3, -1}, {-2, kNaN}}));
    set.profiles.append(profileAt(1, {}));
    set.profiles.append(profileAt(2, {{kNaN, 4}, {9, 9}})); // its range of x is NaN, since its first x is
    set.profiles.append(profileAt(kNaN, {{4, 2}}));
    set.calcRange();
    EXPECT_EQ(exactSetRange(set), exact(QList<float>{-2, 4, -1, 9, kNaN, 8, kNaN}));
    set.clear();
    EXPECT_EQ(exactSetRange(set), exact(QList<float>{-2, 4, -1, 9, kNaN, 8, kNaN}));
    EXPECT_EQ(set.size(), 0);
}

TEST(ProfileZSet, PositionsAreRoundedOnce) {
    KxProfileZSet set;
    set.setZ(3, 0.5f);
    EXPECT_EQ(set.stepZ, 0.5f);
    set.profiles.resize(40);
    set.minZ = 77;
    set.setZ(0.3f, 0.1f);
    for (int i = 0; i < set.size(); ++i) {
        EXPECT_EQ(set.profiles[i].z, static_cast<float>(i * static_cast<double>(0.1f) + static_cast<double>(0.3f)));
    }
    EXPECT_EQ(set.minZ, 77.0f);

    KxProfileZSet out;
    out.profiles.append(KxProfileZ(9));
    set.profiles[3].z = kNaN;
    EXPECT_EQ(set.getRange(set.profiles[2].z, set.profiles[4].z, out), 2);
    EXPECT_EQ(exact(out.profiles[1].z), exact(set.profiles[4].z));
    EXPECT_EQ(set.getRange(5, 1, out), 0);
    EXPECT_EQ(set.getRange(kNaN, 1, out), 0);
    EXPECT_EQ(set.getRange(-kInf, kInf, set), 0); // its own range: emptied first
}

TEST(ProfileZSet, MeanOfTheMeans) {
    KxProfileZSet set;
    EXPECT_EQ(set.calcAverageY(), 0.0f);
    set.profiles.append(profileAt(0, {{0, 2}, {1, 4}, {2, 6}}));
    set.profiles.append(profileAt(1, {}));
    set.profiles.append(profileAt(2, {{0, 5}}));
    EXPECT_EQ(set.calcAverageY(), 3.0f);
    set.profiles[2].points[0].y = kNaN;
    EXPECT_TRUE(std::isnan(set.calcAverageY()));
}

TEST(ProfileZSet, EdgeClearingKeepsEverySecondPointOfTheHeadAndAppends) {
    KxProfileZSet set;
    set.clearEdgeEffect();
    set.profiles.append(profileAt(1, {}));
    set.profiles.append(profileAt(2, {{0, 1}}));
    set.clearEdgeEffect(); // no first point
    EXPECT_EQ(set.profiles[1].size(), 1);

    set.clear();
    // The highest point is at 5, the lowest before it at 3: points 0, 2 and 4 go from the head, then, of the three that
    // are left, none stands behind position 5.
    set.profiles.append(profileAt(1, {{0, 0}, {1, -1}, {2, -2}, {3, -3}, {4, 3}, {5, 5}, {6, 1}, {7, 1}, {8, 1}}));
    set.profiles.append(profileAt(2, {{20, 1}, {21, 2}})); // shorter than the position kept from before
    set.clearEdgeEffect();
    QList<float> xs;
    for (const KxPointXY& p : std::as_const(set.profiles[0].points)) {
        xs.append(p.x);
    }
    EXPECT_EQ(xs, (QList<float>{0, 1, 2, 3, 4, 5, 6, 7, 8, 1, 3, 5, 6, 7, 8}));
    EXPECT_EQ(exact(set.profiles[1].points), exact(QList<KxPointXY>{{20, 1}, {21, 2}, {21, 2}}));
    EXPECT_TRUE(std::isnan(set.profiles[0].z));
}

TEST(ProfileZSet, EdgeClearingEqualsThePlainDefinition) {
    Nasty nasty(41);
    for (int round = 0; round < 2000; ++round) {
        nasty.nextCase();
        KxProfileZSet set = nastySet(nasty, 6);
        if (set.isEmpty() || set.profiles[0].points.isEmpty()) {
            continue;
        }
        KxProfileZSet expected = set;
        clearEdgesPlainly(expected.profiles);
        set.clearEdgeEffect();
        ASSERT_EQ(exact(set), exact(expected)) << "round " << round;
    }
}

} // namespace
