#include "gridSupport.h"
#include "support/tempFiles.h"

using namespace testing_support;

namespace {

TEST(ProfileZSet, CopiesShareUntilOneOfThemWrites) {
    KxProfileZSet original;
    original.profiles = {profileAt(1, {{3, 4}, {1, 2}}), profileAt(2, {{5, 6}})};
    original.stepZ = 1;
    const ExactList before = exact(original);
    SpaceCloud cloud;
    cloud.points = {{0, 0, 0}, {0, 0, 4}};
    KxMatrixCloud matrix;
    const std::function<void(KxProfileZSet&)> writes[] = {
        [](KxProfileZSet& set) { set.setZ(7, 3); },
        [](KxProfileZSet& set) { set.clearEdgeEffect(); },
        [&](KxProfileZSet& set) { set.toMatrixCloud(matrix, kNaN, kNaN); }, // sorts
        [&](KxProfileZSet& set) { set.calcFromPointCloud(cloud, 2); },
    };
    for (const auto& write : writes) {
        SCOPED_TRACE(&write - writes);
        KxProfileZSet copy(original);
        copy.calcRange(); // reading does not separate them
        copy.calcAverageY();
        EXPECT_EQ(copy.profiles.constData(), original.profiles.constData());
        write(copy);
        EXPECT_EXACT(original, before);
        EXPECT_NE(exact(copy), before);

        KxProfileZSet assigned;
        assigned.profiles.append(KxProfileZ(3));
        assigned = original;
        write(original);
        EXPECT_TRUE(exact(assigned) == before && assigned.stepZ == 1.0f);
        original = assigned;
    }
}

TEST(ProfileZSet, RangeAndMeanOfSets) {
    KxProfileZSet set;
    EXPECT_EXACT(exactRange(set), ExactList(6, exact(kNaN)));
    EXPECT_EQ(set.calcAverageY(), 0.0f);
    set.minX = 5, set.minZ = 7, set.maxZ = 8;
    set.calcRange(); // an empty set is left as it is
    EXPECT_EQ(set.minX, 5.0f);

    // The range of x of the third is NaN, since its first x is.
    set.profiles = {profileAt(kNaN, {{3, -1}, {-2, kNaN}}), profileAt(1, {}), profileAt(2, {{kNaN, 4}, {9, 9}}),
                    profileAt(kNaN, {{4, 2}})};
    set.calcRange();
    EXPECT_EXACT(exactRange(set), exact(-2, 4, -1, 9, 7, 8));
    EXPECT_TRUE(std::isnan(set.calcAverageY()));
    set.clear();
    EXPECT_TRUE(set.isEmpty());
    EXPECT_EXACT(exactRange(set), exact(-2, 4, -1, 9, 7, 8));

    set.profiles = {profileAt(0, {{0, 2}, {1, 4}, {2, 6}}), profileAt(1, {}), profileAt(2, {{0, 5}})};
    EXPECT_EQ(set.calcAverageY(), 3.0f); // the mean of the means
}

TEST(ProfileZSet, WritesRecordsWithoutHeader) {
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
    EXPECT_FALSE(set.writeToFile(files.path("no/such/folder")) || set.writeToFile("/dev/full"));
    EXPECT_EQ(set.readFromFile(files.path("missing"), 1, 0.5f), 0);
    EXPECT_TRUE(set.isEmpty() && set.stepZ == 0.5f);
    set.profiles.resize(3);
    EXPECT_EQ(set.readFromFile(files.path("missing")) + set.size(), 0);
}

TEST(ProfileZSet, PositionsAreRoundedOnce) {
    KxProfileZSet set;
    set.profiles.resize(40);
    set.minZ = 77;
    set.setZ(0.3f, 0.1f);
    for (int i = 0; i < set.size(); ++i) {
        EXPECT_EQ(set.profiles[i].z, static_cast<float>(i * static_cast<double>(0.1f) + static_cast<double>(0.3f)));
    }
    EXPECT_EXACT(exact(set.minZ, set.stepZ), exact(77, 0.1f));

    KxProfileZSet out;
    out.profiles.append(KxProfileZ(9));
    set.profiles[3].z = kNaN;
    const int count = set.getRange(set.profiles[2].z, set.profiles[4].z, out);
    EXPECT_EXACT(exact(count, out.profiles[1].z), exact(2, set.profiles[4].z));
    EXPECT_EQ(set.getRange(5, 1, out) + set.getRange(kNaN, 1, out), 0);
    EXPECT_EQ(set.getRange(-kInf, kInf, set), 0); // its own range: emptied first
}

/// What is found deliberately stays for the next profile, every second point goes, and the assignment appends.
void clearEdgesPlainly(QList<KxProfileZ>& profiles) {
    if (profiles.isEmpty() || profiles[0].points.isEmpty()) {
        return;
    }
    float highY = profiles[0].points[0].y, lowY = 0;
    int highIndex = 0, lowIndex = 0;
    for (KxProfileZ& profile : profiles) {
        KxProfileZ work;
        work.points = profile.points;
        for (int j = 0; j < profile.size(); ++j) {
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

TEST(ProfileZSet, EdgeClearingEqualsThePlainDefinition) {
    forNasty(41, 2000, [&](Nasty& nasty) {
        KxProfileZSet set = nastySet(nasty, 6), expected = set;
        clearEdgesPlainly(expected.profiles);
        set.clearEdgeEffect();
        ASSERT_EXACT(set, expected);
    });
}

} // namespace
