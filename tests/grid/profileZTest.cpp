#include "gridSupport.h"
#include "support/tempFiles.h"

using namespace testing_support;

namespace {

ExactList exactProfile(const KxProfileZ& profile) {
    return exact(profile.points, profile.z);
}

} // namespace

TEST(ProfileZ, AssignmentDeliberatelyAppends) {
    KxProfileZ target = profileAt(1, {{1, 1}}), other = profileAt(2, {{2, 2}, {3, 3}});
    const KxProfile& base = other;
    target.minX = other.minX = -101;
    target = other;
    EXPECT_EXACT(exactProfile(target), exact(1, 1, 2, 2, 3, 3, 2));
    target = base;
    EXPECT_EXACT(exactProfile(target), exact(1, 1, 2, 2, 3, 3, 2, 2, 3, 3, kNaN));
    EXPECT_EQ(target.minX, -101.0f); // no range is touched
    KxProfileZ& same = target;
    target = same;
    EXPECT_EQ(target.size(), 10);
    KxProfileZ copy(other), ofBase(base);
    EXPECT_EXACT(exactProfile(copy), exact(2, 2, 3, 3, 2));
    EXPECT_EXACT(exactProfile(ofBase), exact(2, 2, 3, 3, kNaN));
    EXPECT_TRUE(std::isnan(copy.minX)); // a copy is filled by assignment and takes no range
    other.clear();
    EXPECT_EXACT(exact(other.size(), other.z, other.minX), exact(0, kNaN, -101));
    float buffer[] = {1, 2, 3, 4};
    EXPECT_EXACT(exactProfile(KxProfileZ(5, buffer, 2)), exact(1, 2, 3, 4, 5));
}

TEST(ProfileZ, RecordIsTheseBytes) {
    TempFiles files;
    KxProfileZ profile = profileAt(-2.5f, {{1, 2}, {1.5f, kNaN}});
    ASSERT_TRUE(profile.writeToFile(files.path("a.bin")));
    EXPECT_EQ(files.read("a.bin").toHex(), "050200000020c0"
                                           "0000803f00000040"
                                           "0000c03f0000c07f");
    ASSERT_TRUE(KxProfileZ(0.0f).writeToFile(files.path("a.bin"))); // replaces the file
    EXPECT_EQ(files.read("a.bin").toHex(), "05000000000000");
    EXPECT_EQ(profile.readFromFile(files.path("none.bin")), -1);
    EXPECT_EQ(profile.size(), 2); // nothing was opened or removed
    EXPECT_FALSE(profile.writeToFile(files.path("no folder/a.bin")));
    EXPECT_FALSE(profile.writeToFile(QStringLiteral("/dev/full")));
    EXPECT_TRUE(profile.writeToCSVFile(QStringLiteral("/dev/full"))); // the text form does not report it
    profile.points.fill({1, 2}, 65536 + 3);
    ASSERT_TRUE(profile.writeToFile(files.path("a.bin")));
    EXPECT_EQ(files.read("a.bin").size(), 7 + 8 * (65536 + 3));
    EXPECT_EQ(profile.readFromFile(files.path("a.bin")), 3); // the count is kept modulo 65536
}
