#include "profileSupport.h"

using namespace testing_support;

namespace {

TEST(Duplicates, RemoveDuplicatesEqualsThePlainDefinition) {
    qsizetype removed = 0;
    forNasty(22, 2000, [&](Nasty& nasty) {
        const Points points = nastyPoints(nasty);
        KxProfile profile = profileOf(points);
        Points kept;
        for (const KxPointXY& p : points) {
            const bool isNew = std::ranges::count(kept, p.x, &KxPointXY::x) == 0;
            kept += isNew ? Points{p} : Points();
        }
        ASSERT_EQ(profile.removeDuplicates(), points.size() - kept.size());
        expectPoints(profile, kept);
        removed += points.size() - kept.size();
    });
    EXPECT_GT(removed, 1000);
}

} // namespace
